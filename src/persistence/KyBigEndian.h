// KyBigEndian.h: numbers as they are stored, whatever the byte order of the host.
#pragma once

#include <cstdint>

inline std::uint32_t kyLoadBig32(const unsigned char* p) noexcept    // any alignment
{
  return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | std::uint32_t{p[3]};
}

inline void kyStoreBig32(unsigned char* p, std::uint32_t value) noexcept
{
  p[0] = static_cast<unsigned char>(value >> 24);
  p[1] = static_cast<unsigned char>(value >> 16);
  p[2] = static_cast<unsigned char>(value >> 8);
  p[3] = static_cast<unsigned char>(value);
}

// For the fields of a stored record, which hold the stored bytes and not a number of the host.
inline std::uint32_t kyFromStored(const unsigned int& field) noexcept
{
  return kyLoadBig32(reinterpret_cast<const unsigned char*>(&field));
}

inline unsigned int kyToStored(std::uint32_t value) noexcept
{
  unsigned int field;
  kyStoreBig32(reinterpret_cast<unsigned char*>(&field), value);
  return field;
}
