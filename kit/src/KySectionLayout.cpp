// On x86 the size of a file of 2 GiB or more can only be told this way.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64    // NOLINT: a name of the C library
#endif

#include "KySectionLayout.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <limits>

#include "KyCheckMessages.h"
#include "inventory/KyCInventoryData.h"

namespace KyNInventoryKit
{
namespace
{
constexpr char s_marks[] = {'I', 'N', 'V', 'E', '\x55', '\x4B', '\x59', '\xAA'};

unsigned int numberAt(const std::string& bytes, std::size_t at)
{
  unsigned int number = 0;
  for (std::size_t n = 0; n < 4; ++n)
    number = number << 8 | static_cast<unsigned char>(bytes[at + n]);
  return number;
}

bool hasMarks(const std::string& bytes, std::size_t at)
{
  return std::memcmp(bytes.data() + at, s_marks, sizeof(s_marks)) == 0;
}

KySectionRecord trailerAt(const std::string& bytes, std::uint64_t at)
{
  KySectionRecord record;
  if (at + s_recordSize > bytes.size()) return record;
  record.begin = static_cast<std::size_t>(at);
  record.isThere = hasMarks(bytes, record.begin + offsetof(KyInventorySectionTrailer, magicText));
  record.version = numberAt(bytes, record.begin + offsetof(KyInventorySectionTrailer, version));
  record.headerSize = numberAt(bytes, record.begin + offsetof(KyInventorySectionTrailer, headerSize));
  record.dataSize = numberAt(bytes, record.begin + offsetof(KyInventorySectionTrailer, dataSize));
  record.trailerSize = numberAt(bytes, record.begin + offsetof(KyInventorySectionTrailer, trailerSize));
  record.isUsable = record.isThere && record.trailerSize >= s_recordSize && record.version == s_sectionVersion;
  return record;
}

std::string hexOf(const std::string& bytes, std::size_t at, std::size_t count)
{
  std::string text;
  for (std::size_t n = at; n < at + count; ++n)
  {
    char digits[4];
    std::snprintf(digits, sizeof(digits), " %02X", static_cast<unsigned int>(static_cast<unsigned char>(bytes[n])));
    text += digits;
  }
  return text;
}

// What stands where a record must be.
std::string whatStandsAt(const std::string& bytes, const KySectionLayout& layout, const KyFarRecord& far)
{
  const KySectionRecord& record = layout.isAtEnd ? layout.header : layout.trailer;
  const unsigned int size = layout.isAtEnd ? layout.trailer.headerSize : layout.header.trailerSize;
  const std::size_t room = layout.isAtEnd ? layout.dataBegin : bytes.size() - layout.dataEnd;
  if (size < s_recordSize || size > room)
    return std::string("none: the ") + (layout.isAtEnd ? "trailer" : "header") + " gives its size as " +
           std::to_string(size) + " bytes, and there are " + std::to_string(room);
  if (record.isThere && record.version != s_sectionVersion) return "one of version " + std::to_string(record.version);
  if (record.isThere) return "one that gives its own size as too few bytes";
  const std::size_t marks = far.begin + (layout.isAtEnd ? 0 : offsetof(KyInventorySectionTrailer, magicText));
  return "none: its mark reads" + hexOf(bytes, marks, sizeof(s_marks));
}
}    // namespace

KySectionRecord kyHeaderAt(const std::string& bytes, std::uint64_t at)
{
  KySectionRecord record;
  if (at + s_recordSize > bytes.size()) return record;
  record.begin = static_cast<std::size_t>(at);
  record.isThere = hasMarks(bytes, record.begin);
  record.version = numberAt(bytes, record.begin + offsetof(KyInventorySectionHeader, version));
  record.headerSize = numberAt(bytes, record.begin + offsetof(KyInventorySectionHeader, headerSize));
  record.dataSize = numberAt(bytes, record.begin + offsetof(KyInventorySectionHeader, dataSize));
  record.trailerSize = numberAt(bytes, record.begin + offsetof(KyInventorySectionHeader, trailerSize));
  record.isUsable = record.isThere && record.headerSize >= s_recordSize && record.version == s_sectionVersion;
  return record;
}

KySectionLayout kyLayoutAtEnd(const std::string& bytes)
{
  KySectionLayout layout;
  layout.isAtEnd = true;
  layout.end = bytes.size();
  if (bytes.size() < s_recordSize) return layout;
  layout.trailer = trailerAt(bytes, bytes.size() - s_recordSize);
  layout.isThere = layout.trailer.isThere;
  if (!layout.isThere) return layout;
  const std::uint64_t fromEnd = std::uint64_t{layout.trailer.trailerSize} + layout.trailer.dataSize;
  layout.isReadable = layout.trailer.isUsable && fromEnd <= bytes.size();
  if (!layout.isReadable)
  {
    layout.begin = layout.dataBegin = layout.dataEnd = layout.trailer.begin;
    return layout;
  }
  layout.dataBegin = bytes.size() - static_cast<std::size_t>(fromEnd);
  layout.dataEnd = layout.dataBegin + layout.trailer.dataSize;
  layout.begin = layout.dataBegin;
  if (layout.trailer.headerSize <= layout.dataBegin)
    layout.header = kyHeaderAt(bytes, layout.dataBegin - layout.trailer.headerSize);
  if (layout.header.isUsable) layout.begin = layout.header.begin;
  return layout;
}

KySectionLayout kyLayoutAtStart(const std::string& bytes)
{
  KySectionLayout layout;
  layout.header = kyHeaderAt(bytes, 0);
  layout.isThere = layout.header.isThere;
  if (!layout.isThere) return layout;
  const std::uint64_t dataEnd = std::uint64_t{layout.header.headerSize} + layout.header.dataSize;
  layout.isReadable = layout.header.isUsable && dataEnd <= bytes.size();
  layout.dataBegin = layout.dataEnd = layout.end = s_recordSize;
  if (!layout.header.isUsable) return layout;
  layout.dataBegin = layout.header.headerSize < bytes.size() ? layout.header.headerSize : bytes.size();
  layout.dataEnd = dataEnd < bytes.size() ? static_cast<std::size_t>(dataEnd) : bytes.size();
  layout.end = layout.dataEnd;
  if (!layout.isReadable || layout.header.trailerSize < s_recordSize) return layout;
  layout.trailer = trailerAt(bytes, dataEnd + layout.header.trailerSize - s_recordSize);
  if (layout.trailer.isUsable) layout.end = layout.trailer.begin + s_recordSize;
  return layout;
}

KySectionLayout kyLayoutOf(const std::string& bytes)
{
  const KySectionLayout atEnd = kyLayoutAtEnd(bytes);
  const bool isEmpty = atEnd.isReadable && atEnd.dataBegin == atEnd.dataEnd;
  if (atEnd.isThere && !isEmpty) return atEnd;
  const KySectionLayout atStart = kyLayoutAtStart(bytes);
  const bool isNothing = !atStart.isThere || (atStart.isReadable && atStart.dataBegin == atStart.dataEnd);
  return isEmpty && isNothing ? atEnd : atStart;
}

std::string kyReadableSection(const std::string& bytes, const KySectionLayout& layout)
{
  if (layout.isAtEnd) return bytes.substr(layout.begin, layout.end - layout.begin);
  return bytes.substr(layout.begin, layout.dataEnd - layout.begin) + '\0';
}

KyFarRecord kyFarRecordOf(const std::string& bytes, const KySectionLayout& layout)
{
  KyFarRecord far;
  if (layout.isAtEnd)
  {
    far.name = "header";
    far.begin = layout.trailer.headerSize < layout.dataBegin ? layout.dataBegin - layout.trailer.headerSize : 0;
    far.isSound = layout.header.isUsable || layout.dataBegin == 0;
    return far;
  }
  const std::uint64_t begin = std::uint64_t{layout.dataEnd} + layout.header.trailerSize - s_recordSize;
  const bool isInFile = layout.header.trailerSize >= s_recordSize && begin + s_recordSize <= bytes.size();
  far.name = "trailer";
  far.begin = isInFile ? static_cast<std::size_t>(begin) : layout.dataEnd;
  far.isSound = layout.trailer.isUsable || layout.dataEnd == bytes.size();
  return far;
}

bool kyIsBounded(KyCErrorListPool& pool, const std::string& bytes, const std::string& name,
                 const KySectionLayout& layout, const char* function)
{
  const KyFarRecord far = kyFarRecordOf(bytes, layout);
  if (far.isSound) return true;
  pool.setError(KY_CHECK_MSG_NOT_BOUNDED, __LINE__, function, "%s%s%s%s", name.c_str(),
                std::to_string(far.begin).c_str(), far.name, whatStandsAt(bytes, layout, far).c_str());
  return false;
}

std::string kyLeadingDamageOf(const std::string& bytes, const KySectionLayout& layout)
{
  const KySectionRecord& record = layout.leading();
  const unsigned int ownSize = layout.isAtEnd ? record.trailerSize : record.headerSize;
  const std::string place =
      std::string("its ") + (layout.isAtEnd ? "trailer" : "header") + ", at byte " + std::to_string(record.begin);
  if (ownSize < s_recordSize) return place + ", gives its own size as " + std::to_string(ownSize) + " bytes";
  if (!record.isUsable) return place + ", is of version " + std::to_string(record.version);
  return place + ", asks for " + std::to_string(std::uint64_t{ownSize} + record.dataSize) +
         " bytes, and the file has " + std::to_string(bytes.size());
}

bool kyIsSameSection(const KySectionLayout& atStart, const KySectionLayout& atEnd)
{
  const KySectionRecord& header = atStart.header;
  const std::uint64_t end = std::uint64_t{header.headerSize} + header.dataSize + header.trailerSize;
  const bool isItsHeader = atEnd.isReadable && atEnd.trailer.headerSize == atEnd.dataBegin;
  return isItsHeader || end > atEnd.begin;
}

bool kyReadSmallFile(KyCErrorListPool& pool, const std::string& path, std::string& bytes)
{
  constexpr std::uint64_t most = std::numeric_limits<unsigned int>::max();
  struct stat file = {};
  const bool isLarge = path != "-" && ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && file.st_size > 0 &&
                       static_cast<std::uint64_t>(file.st_size) > most;
  if (!isLarge && !readBytes(pool, path, bytes)) return false;
  if (!isLarge && bytes.size() <= most) return true;
  pool.setError(KY_CHECK_MSG_TOO_LARGE, __LINE__, "readBytes", "%s", path == "-" ? "standard input" : path.c_str());
  return false;
}
}    // namespace KyNInventoryKit
