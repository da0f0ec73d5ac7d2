#include "KySha256.h"

#include <array>
#include <cstdint>

namespace KyNInventoryKit
{
namespace
{
constexpr std::size_t s_blockSize = 64;

// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
constexpr std::uint32_t s_constants[s_blockSize] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

using State = std::array<std::uint32_t, 8>;

std::uint32_t rotate(std::uint32_t word, unsigned int by) { return word >> by | word << (32 - by); }

std::array<std::uint32_t, s_blockSize> schedule(const char* block)
{
  std::array<std::uint32_t, s_blockSize> words;
  for (std::size_t n = 0; n < 16; ++n)
  {
    words[n] = 0;
    for (std::size_t m = 0; m < 4; ++m)
      words[n] = words[n] << 8 | static_cast<unsigned char>(block[4 * n + m]);
  }
  for (std::size_t n = 16; n < s_blockSize; ++n)
  {
    const std::uint32_t a = words[n - 15];
    const std::uint32_t b = words[n - 2];
    words[n] = words[n - 16] + (rotate(a, 7) ^ rotate(a, 18) ^ a >> 3) + words[n - 7] +
               (rotate(b, 17) ^ rotate(b, 19) ^ b >> 10);
  }
  return words;
}

void addBlock(State& state, const char* block)
{
  const auto words = schedule(block);
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t n = 0; n < s_blockSize; ++n)
  {
    const std::uint32_t first =
        h + (rotate(e, 6) ^ rotate(e, 11) ^ rotate(e, 25)) + ((e & f) ^ (~e & g)) + s_constants[n] + words[n];
    const std::uint32_t second = (rotate(a, 2) ^ rotate(a, 13) ^ rotate(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + first;
    d = c;
    c = b;
    b = a;
    a = first + second;
  }
  const State added = {a, b, c, d, e, f, g, h};
  for (std::size_t n = 0; n < state.size(); ++n)
    state[n] += added[n];
}

// What is behind the last whole block, a one bit, zeros, and the number of bits.
std::string lastBlocks(std::string_view bytes)
{
  std::string blocks(bytes.substr(bytes.size() - bytes.size() % s_blockSize));
  blocks += '\x80';
  while (blocks.size() % s_blockSize != s_blockSize - 8)
    blocks += '\0';
  const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
  for (unsigned int shift = 64; shift != 0;)
    blocks += static_cast<char>(bits >> (shift -= 8) & 0xFF);
  return blocks;
}
}    // namespace

std::string kySha256(std::string_view bytes)
{
  // The first 32 bits of the fractional parts of the square roots of the first 8 primes.
  State state = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  for (std::size_t at = 0; at + s_blockSize <= bytes.size(); at += s_blockSize)
    addBlock(state, bytes.data() + at);
  const std::string last = lastBlocks(bytes);
  for (std::size_t at = 0; at < last.size(); at += s_blockSize)
    addBlock(state, last.data() + at);

  std::string text;
  for (const std::uint32_t word : state)
    for (unsigned int shift = 32; shift != 0;)
      text += "0123456789abcdef"[word >> (shift -= 4) & 0xF];
  return text;
}
}    // namespace KyNInventoryKit
