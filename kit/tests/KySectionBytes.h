// KySectionBytes.h: stored sections written by hand, byte by byte.
#pragma once

#include <string>

// The bytes of hexadecimal digits; blanks are skipped.
inline std::string bytesOfHex(const std::string& text)
{
  std::string bytes;
  int high = -1;
  for (const char c : text)
  {
    if (c == ' ') continue;
    const int digit = c <= '9' ? c - '0' : c - 'A' + 10;
    if (high >= 0) bytes += static_cast<char>(16 * high + digit);
    high = high >= 0 ? -1 : digit;
  }
  return bytes;
}

inline std::string bigEndian32(std::size_t number)
{
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

const std::string sectionMarks = bytesOfHex("49 4E 56 45 55 4B 59 AA");

struct SectionSizes
{
  std::size_t data;
  std::size_t header = 24;
  std::size_t trailer = 24;
  std::size_t version = 1;
};

inline std::string headerOf(const SectionSizes& sizes)
{
  return sectionMarks + bigEndian32(sizes.version) + bigEndian32(sizes.header) + bigEndian32(sizes.data) +
         bigEndian32(sizes.trailer);
}

inline std::string trailerOf(const SectionSizes& sizes)
{
  return bigEndian32(sizes.header) + bigEndian32(sizes.data) + bigEndian32(sizes.trailer) + bigEndian32(sizes.version) +
         sectionMarks;
}

inline std::string sectionOfData(const std::string& data)
{
  const SectionSizes sizes = {data.size()};
  return headerOf(sizes) + data + trailerOf(sizes);
}

// ROOT with NAME = "A1" (mV, modifiable, relevance 7) and the sub-item CPU[2].
const std::string sampleStream = bytesOfHex(
    "01"
    "01 01 01 00 04 52 4F 4F 54"
    "2A 03 00 04 4E 41 4D 45 02 41 31 02 6D 56 FF 00 00 00 07"
    "01 02 02 00 03 43 50 55"
    "02"
    "02");
