// The keyed hash, against the vectors that its authors published: key 00 01 .. 0F, message 00 01 02 ... of n bytes.
#include "KySipHash.h"

#include <gtest/gtest.h>

#include <string>

using namespace KyNInventoryKit;

TEST(KySipHash, agreesWithThePublishedVectors)
{
  const SipKey key = {0x0706050403020100, 0x0F0E0D0C0B0A0908};
  const struct
  {
    std::size_t length;
    std::uint64_t hash;
  } vectors[] = {{0, 0x726fdb47dd0e0e31},  {1, 0x74f839c593dc67fd}, {2, 0x0d6c8009d9a94f5a}, {3, 0x85676696d7fb7e2d},
                 {7, 0xab0200f58b01d137},  {8, 0x93f5f5799a932462}, {9, 0x9e0082df0ba9e4b0}, {15, 0xa129ca6149be45e5},
                 {16, 0x3f2acc7f57c29bdb}, {63, 0x958a324ceb064572}};
  std::string message;
  for (int n = 0; n < 64; ++n)
    message += static_cast<char>(n);
  for (const auto& vector : vectors)
    EXPECT_EQ(sipHash(key, message.substr(0, vector.length)), vector.hash) << vector.length;
}
