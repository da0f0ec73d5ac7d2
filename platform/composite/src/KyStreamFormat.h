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

// 0 .. TYPE_COUNT-1; TYPE_COUNT for a code that is none of the twelve.
inline unsigned int typeNumber(unsigned int type) noexcept
{
  switch (type)
  {
    case KyCParam::TYPE_INT8:
      return 0;
    case KyCParam::TYPE_INT16:
      return 1;
    case KyCParam::TYPE_INT32:
      return 2;
    case KyCParam::TYPE_LONG64:
      return 3;
    case KyCParam::TYPE_UINT8:
      return 4;
    case KyCParam::TYPE_UINT16:
      return 5;
    case KyCParam::TYPE_UINT32:
      return 6;
    case KyCParam::TYPE_ULONG64:
      return 7;
    case KyCParam::TYPE_FLOAT32:
      return 8;
    case KyCParam::TYPE_FLOAT64:
      return 9;
    case KyCParam::TYPE_STRING:
      return 10;
    case KyCParam::TYPE_VERSION:
      return 11;
    default:
      return TYPE_COUNT;
  }
}

// Bytes of a number's value: the low four bits of its type code.
inline unsigned int numberSize(unsigned int type) noexcept { return type & 0xFu; }

// Numbers travel as bit patterns in integer registers: a floating-point register may change a signalling NaN.
inline std::uint64_t bitsOf(const void* number, unsigned int size) noexcept
{
  std::uint8_t bits8;
  std::uint16_t bits16;
  std::uint32_t bits32;
  std::uint64_t bits64;
  switch (size)
  {
    case 1:
      std::memcpy(&bits8, number, 1);
      return bits8;
    case 2:
      std::memcpy(&bits16, number, 2);
      return bits16;
    case 4:
      std::memcpy(&bits32, number, 4);
      return bits32;
    default:
      std::memcpy(&bits64, number, 8);
      return bits64;
  }
}

// Each writer returns the place behind what it wrote. Big-endian numbers have 1, 2, 4 or 8 bytes.
inline unsigned char* putBig(unsigned char* to, std::uint64_t bits, unsigned int size) noexcept
{
  const auto half = [](unsigned char* p, std::uint32_t value)
  {
    p[0] = static_cast<unsigned char>(value >> 24);
    p[1] = static_cast<unsigned char>(value >> 16);
    p[2] = static_cast<unsigned char>(value >> 8);
    p[3] = static_cast<unsigned char>(value);
  };
  switch (size)
  {
    case 1:
      to[0] = static_cast<unsigned char>(bits);
      break;
    case 2:
      to[0] = static_cast<unsigned char>(bits >> 8);
      to[1] = static_cast<unsigned char>(bits);
      break;
    case 4:
      half(to, static_cast<std::uint32_t>(bits));
      break;
    default:
      half(to, static_cast<std::uint32_t>(bits >> 32));
      half(to + 4, static_cast<std::uint32_t>(bits));
      break;
  }
  return to + size;
}

// Stores what putBig wrote as a number of the host.
inline void moveBig(void* number, const unsigned char* from, unsigned int size) noexcept
{
  const auto half = [](const unsigned char* p)
  { return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | std::uint32_t{p[3]}; };
  std::uint16_t bits16;
  std::uint32_t bits32;
  std::uint64_t bits64;
  switch (size)
  {
    case 1:
      std::memcpy(number, from, 1);
      break;
    case 2:
      bits16 = static_cast<std::uint16_t>(from[0] << 8 | from[1]);
      std::memcpy(number, &bits16, 2);
      break;
    case 4:
      bits32 = half(from);
      std::memcpy(number, &bits32, 4);
      break;
    default:
      bits64 = std::uint64_t{half(from)} << 32 | half(from + 4);
      std::memcpy(number, &bits64, 8);
      break;
  }
}

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
