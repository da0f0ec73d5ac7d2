// On x86 the size of a file of 2 GiB or more can only be told this way.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif

#include "KySectionLayout.h"

#include <sys/stat.h>

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
