// KySectionLayout.h: header and trailer of a section as numbers, also where they are wrong.
#pragma once

#include <cstdint>
#include <string>

#include "inventorykit/KySectionFile.h"

namespace KyNInventoryKit
{
constexpr unsigned int s_recordSize = 24;    // of a header or trailer as it is written, and the least
constexpr unsigned int s_sectionVersion = 1;

struct KySectionRecord
{
  bool isThere = false;     // its marks are right
  bool isUsable = false;    // its own size and version, too
  std::size_t begin = 0;    // of the 24 bytes
  unsigned int version = 0;
  unsigned int headerSize = 0;
  unsigned int dataSize = 0;
  unsigned int trailerSize = 0;
};

// begin <= dataBegin <= dataEnd <= end: what is in front of the data is the header, what is behind it is the trailer.
// Where the leading record says what cannot be, the layout holds as much of the section as there is.
struct KySectionLayout
{
  bool isThere = false;
  bool isReadable = false;    // the record that leads to it is usable, and the file holds all the data
  bool isAtEnd = false;
  std::size_t begin = 0;
  std::size_t dataBegin = 0;
  std::size_t dataEnd = 0;
  std::size_t end = 0;
  KySectionRecord header;
  KySectionRecord trailer;

  const KySectionRecord& leading() const { return isAtEnd ? trailer : header; }
};

KySectionRecord kyHeaderAt(const std::string& bytes, std::uint64_t at);
KySectionLayout kyLayoutAtEnd(const std::string& bytes);
KySectionLayout kyLayoutAtStart(const std::string& bytes);

// The one that reading takes, or fails at: at the end, if something says that it is a section, else at the start. One at the end
// that is empty counts only when there is none at the start, or another empty one.
KySectionLayout kyLayoutOf(const std::string& bytes);

// A file that may be too large for memory blocks: 32 bits of size.
bool kyReadSmallFile(KyCErrorListPool& pool, const std::string& path, std::string& bytes);
}    // namespace KyNInventoryKit
