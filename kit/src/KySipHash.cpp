#include "KySipHash.h"

namespace KyNInventoryKit
{
namespace
{
std::uint64_t rotated(std::uint64_t value, unsigned int count) { return value << count | value >> (64 - count); }

struct State
{
  std::uint64_t v0, v1, v2, v3;

  void round()
  {
    v0 += v1;
    v1 = rotated(v1, 13) ^ v0;
    v0 = rotated(v0, 32);
    v2 += v3;
    v3 = rotated(v3, 16) ^ v2;
    v0 += v3;
    v3 = rotated(v3, 21) ^ v0;
    v2 += v1;
    v1 = rotated(v1, 17) ^ v2;
    v2 = rotated(v2, 32);
  }

  void take(std::uint64_t word)
  {
    v3 ^= word;
    round();
    round();
    v0 ^= word;
  }
};

// Up to eight bytes, the lowest first.
std::uint64_t wordOf(std::string_view bytes)
{
  std::uint64_t word = 0;
  for (std::size_t n = 0; n < bytes.size(); ++n)
    word |= std::uint64_t{static_cast<unsigned char>(bytes[n])} << (8 * n);
  return word;
}
}    // namespace

std::uint64_t sipHash(const SipKey& key, std::string_view data)
{
  State state = {key[0] ^ 0x736f6d6570736575, key[1] ^ 0x646f72616e646f6d, key[0] ^ 0x6c7967656e657261,
                 key[1] ^ 0x7465646279746573};
  const std::size_t whole = data.size() / 8 * 8;
  for (std::size_t at = 0; at < whole; at += 8)
    state.take(wordOf(data.substr(at, 8)));
  state.take(wordOf(data.substr(whole)) | std::uint64_t{data.size() & 0xFF} << 56);
  state.v2 ^= 0xFF;
  for (int n = 0; n < 4; ++n)
    state.round();
  return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}
}    // namespace KyNInventoryKit
