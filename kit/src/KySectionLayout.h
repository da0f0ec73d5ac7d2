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

// The section as it can be read from the side that it was found from: one found by its header without a trailer, and with a
// zero, which ends no trailer, in its place.
std::string kyReadableSection(const std::string& bytes, const KySectionLayout& layout);

// The record at the other side of a readable section: the header of one at the end, the trailer of one at the start.
struct KyFarRecord
{
  const char* name = nullptr;
  std::size_t begin = 0;    // of the record, or of what there is of it
  bool isSound = false;     // it is usable, or not there at all: the file begins, or ends, with the data
};
KyFarRecord kyFarRecordOf(const std::string& bytes, const KySectionLayout& layout);

// Whether it is certain where a readable section begins and ends, so that no dead bytes stay when it is taken away; a report
// of what stands there otherwise.
bool kyIsBounded(KyCErrorListPool& pool, const std::string& bytes, const std::string& name,
                 const KySectionLayout& layout, const char* function);

// What keeps a section that is there from being read, with its place: "its header, at byte 0, is of version 2".
std::string kyLeadingDamageOf(const std::string& bytes, const KySectionLayout& layout);

// Whether the section that the header at the start of a file is about takes in the one found at its end: both are one then.
bool kyIsSameSection(const KySectionLayout& atStart, const KySectionLayout& atEnd);

// A file that may be too large for memory blocks: 32 bits of size.
bool kyReadSmallFile(KyCErrorListPool& pool, const std::string& path, std::string& bytes);
}    // namespace KyNInventoryKit
