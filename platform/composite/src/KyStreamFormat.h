// KyStreamFormat.h: the constants and byte movers that writing and reading a stream share. docs/stream-format.md tells
// the whole encoding.
#pragma once

#include <cstdint>
#include <cstring>

#include "composite/KyCParam.h"

namespace KyStreamFormat
{
constexpr unsigned char VERSION = 0x01;    // first byte of every stream

// Record kinds; the two parameter kinds carry the value type's number in their low four bits.
constexpr unsigned char RECORD_START = 0x01;
constexpr unsigned char RECORD_END = 0x02;
constexpr unsigned char RECORD_PARAMETER = 0x10;
constexpr unsigned char RECORD_CUSTOM_PARAMETER = 0x20;

constexpr unsigned int MAX_DEPTH = 4096;    // levels of composites; the root is level 1

// What a text's first number says; 2 and above name a text written before.
constexpr std::uint32_t TEXT_NEW = 0;
constexpr std::uint32_t TEXT_EMPTY = 1;
constexpr std::uint32_t TEXT_FIRST = 2;

// Texts named by number are copied into the nodes that are read, so a short stream could ask for any amount of memory.
// All texts named so far, the one at hand included, may be this many times as long as the stream in front of the record.
constexpr std::uint64_t MAX_TEXT_EXPANSION = 64;

constexpr unsigned int MAX_VARINT_SIZE = 5;

// Value types in the order of their numbers in record kinds.
constexpr unsigned int TYPE_COUNT = 12;
constexpr unsigned int TYPES[TYPE_COUNT] = {KyCParam::TYPE_INT8,    KyCParam::TYPE_INT16,   KyCParam::TYPE_INT32,
                                            KyCParam::TYPE_LONG64,  KyCParam::TYPE_UINT8,   KyCParam::TYPE_UINT16,
                                            KyCParam::TYPE_UINT32,  KyCParam::TYPE_ULONG64, KyCParam::TYPE_FLOAT32,
                                            KyCParam::TYPE_FLOAT64, KyCParam::TYPE_STRING,  KyCParam::TYPE_VERSION};

// The numbers of the codes of number types, which all are small; TYPE_COUNT for the others.
struct TTypeNumbers
{
  unsigned char numbers[KyCParam::TYPE_FLOAT64 + 1];

  constexpr TTypeNumbers() noexcept : numbers{}
  {
    for (unsigned char& number : numbers)
      number = TYPE_COUNT;
    for (unsigned int n = 0; n < TYPE_COUNT; ++n)
    {
      if (TYPES[n] <= KyCParam::TYPE_FLOAT64) numbers[TYPES[n]] = static_cast<unsigned char>(n);
    }
  }
};
inline constexpr TTypeNumbers TYPE_NUMBERS;

// 0 .. TYPE_COUNT-1; TYPE_COUNT for a code that is none of the twelve.
inline unsigned int typeNumber(unsigned int type) noexcept
{
  if (type <= KyCParam::TYPE_FLOAT64) return TYPE_NUMBERS.numbers[type];
  return type == KyCParam::TYPE_STRING ? 10 : type == KyCParam::TYPE_VERSION ? 11 : TYPE_COUNT;
}

// Bytes of a number's value: the low four bits of its type code.
inline unsigned int numberSize(unsigned int type) noexcept { return type & 0xFu; }

// Moves a number of 1, 2, 4 or 8 bytes between the host's byte order and the stream's, which is big-endian; the way back
// is the same. Numbers travel in integer registers: a floating-point register may change a signalling NaN.
inline void moveBig(void* to, const void* from, unsigned int size) noexcept
{
  const unsigned char* const bytes = static_cast<const unsigned char*>(from);
  const auto half = [](const unsigned char* p)
  { return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | std::uint32_t{p[3]}; };
  std::uint16_t bits16;
  std::uint32_t bits32;
  std::uint64_t bits64;
  switch (size)
  {
    case 1:
      std::memcpy(to, from, 1);
      break;
    case 2:
      bits16 = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
      std::memcpy(to, &bits16, 2);
      break;
    case 4:
      bits32 = half(bytes);
      std::memcpy(to, &bits32, 4);
      break;
    default:
      bits64 = std::uint64_t{half(bytes)} << 32 | half(bytes + 4);
      std::memcpy(to, &bits64, 8);
      break;
  }
}

// Each writer returns the place behind what it wrote.
inline unsigned char* putVarint(unsigned char* to, std::uint32_t value) noexcept
{
  while (value >= 0x80)
  {
    *to++ = static_cast<unsigned char>(value | 0x80);
    value >>= 7;
  }
  *to++ = static_cast<unsigned char>(value);
  return to;
}

inline unsigned char* putBytes(unsigned char* to, const char* bytes, std::size_t length) noexcept
{
  if (length != 0) std::memcpy(to, bytes, length);
  return to + length;
}
}    // namespace KyStreamFormat
