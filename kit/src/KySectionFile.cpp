#include "inventorykit/KySectionFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include "KyFileReplacement.h"
#include "KyKitMessages.h"
#include "KySectionLayout.h"
#include "composite/KyCBuffer.h"
#include "inventory/KyCInventoryData.h"

namespace KyNInventoryKit
{
namespace
{
const char* nameOf(const std::string& path) { return path == "-" ? "standard input" : path.c_str(); }

bool cannotRead(KyCErrorListPool& pool, const std::string& path, int reason)
{
  if (reason == EISDIR)
    pool.setError(KY_KIT_MSG_IS_FOLDER, __LINE__, "readBytes", "%s", nameOf(path));
  else
    pool.setError(KY_KIT_MSG_CANNOT_READ, __LINE__, "readBytes", "%s%s", nameOf(path), std::strerror(reason));
  return false;
}

bool readAll(int file, std::string& bytes)
{
  struct stat status = {};
  if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
  {
    bytes.reserve(static_cast<std::size_t>(status.st_size));
  }
  char block[1 << 16];
  for (;;)
  {
    const ssize_t got = ::read(file, block, sizeof(block));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    bytes.append(block, static_cast<std::size_t>(got));
  }
}

const unsigned char* dataOf(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

// Memory blocks are limited to 32 bits.
bool isTooLarge(KyCErrorListPool& pool, const std::string& bytes, const std::string& name)
{
  if (bytes.size() <= std::numeric_limits<unsigned int>::max()) return false;
  pool.setError(KY_KIT_MSG_CANNOT_READ, __LINE__, "readTreeFromBytes", "%s%s", name.c_str(), std::strerror(EFBIG));
  return true;
}

bool isHeader(const std::string& bytes, std::size_t at)
{
  KyCErrorListPool ignored;
  KyInventorySectionHeader header;
  if (at + sizeof(header) > bytes.size()) return false;
  std::memcpy(&header, bytes.data() + at, sizeof(header));
  return KyCInventoryData::checkHeader(ignored, header);
}

bool isTrailer(const std::string& bytes, std::size_t at)
{
  KyCErrorListPool ignored;
  KyInventorySectionTrailer trailer;
  if (at + sizeof(trailer) > bytes.size()) return false;
  std::memcpy(&trailer, bytes.data() + at, sizeof(trailer));
  return KyCInventoryData::checkTrailer(ignored, trailer);
}

unsigned int bigEndian(const unsigned char* p)
{
  return static_cast<unsigned int>(p[0]) << 24 | static_cast<unsigned int>(p[1]) << 16 |
         static_cast<unsigned int>(p[2]) << 8 | p[3];
}

// The header is not needed for reading a section at the end; where it is missing, the section begins with its data.
SectionPlace placeAtEnd(const std::string& bytes, const unsigned char* data)
{
  SectionPlace place;
  place.isAtEnd = true;
  place.end = bytes.size();
  place.begin = static_cast<std::size_t>(data - dataOf(bytes));
  const unsigned int headerSize = bigEndian(dataOf(bytes) + bytes.size() - sizeof(KyInventorySectionTrailer));
  if (headerSize <= place.begin && isHeader(bytes, place.begin - headerSize)) place.begin -= headerSize;
  return place;
}

// As above, for the trailer of a section at the start.
SectionPlace placeAtStart(const std::string& bytes, const unsigned char* data, unsigned int dataSize)
{
  SectionPlace place;
  place.end = static_cast<std::size_t>(data - dataOf(bytes)) + dataSize;
  const unsigned int trailerSize = bigEndian(dataOf(bytes) + offsetof(KyInventorySectionHeader, trailerSize));
  if (trailerSize >= sizeof(KyInventorySectionTrailer) && trailerSize <= bytes.size() - place.end &&
      isTrailer(bytes, place.end + trailerSize - sizeof(KyInventorySectionTrailer)))
  {
    place.end += trailerSize;
  }
  return place;
}

void extract(KyCErrorListPool& pool, const std::string& bytes, KyCInventoryItem*& root)
{
  KyCInventoryData::extractInventoryTreeFromMem(pool, dataOf(bytes), static_cast<unsigned int>(bytes.size()), root);
}

bool hasEmptySectionAtEnd(const std::string& bytes)
{
  KyCErrorListPool ignored;
  unsigned int size = 0;
  return KyCInventoryData::seekInventoryDataTrailerInMem(ignored, dataOf(bytes),
                                                         static_cast<unsigned int>(bytes.size()), size) != nullptr &&
         size == 0;
}

// Of a file, the section at the start is read then; of a memory block, none is. Here both are the same: what was read from a
// file and what came through a pipe is one tree.
void extractBehindEmptySection(KyCErrorListPool& pool, const std::string& bytes, KyCInventoryItem*& root)
{
  unsigned int size = 0;
  const unsigned char* const data = KyCInventoryData::seekInventoryDataHeaderInMem(
      pool, dataOf(bytes), static_cast<unsigned int>(bytes.size()), size);
  if (data == nullptr || size == 0) return;
  // A zero behind it is the end of no trailer.
  extract(pool, bytes.substr(0, static_cast<std::size_t>(data - dataOf(bytes)) + size) + '\0', root);
}

TreePointer treeOrNoSection(KyCErrorListPool& pool, unsigned int errorCount, KyCInventoryItem* root,
                            const std::string& name)
{
  if (root == nullptr && pool.getErrorCount() == errorCount)
    pool.setError(KY_KIT_MSG_NO_SECTION, __LINE__, "readTree", "%s", name.c_str());
  return TreePointer(root);
}
// What makes a report keeps the tree from being read, even where the other end has a whole section.
bool locate(KyCErrorListPool& pool, const std::string& bytes, SectionPlace& place, unsigned int& dataSize)
{
  if (isTooLarge(pool, bytes, "input")) return false;
  const unsigned int errorCount = pool.getErrorCount();
  const unsigned int size = static_cast<unsigned int>(bytes.size());
  const unsigned char* const atEnd =
      KyCInventoryData::seekInventoryDataTrailerInMem(pool, dataOf(bytes), size, dataSize);
  const unsigned char* atStart = nullptr;
  if (dataSize == 0 && pool.getErrorCount() == errorCount)
    atStart = KyCInventoryData::seekInventoryDataHeaderInMem(pool, dataOf(bytes), size, dataSize);
  if (pool.getErrorCount() != errorCount || (atEnd == nullptr && atStart == nullptr)) return false;
  const bool isAtStart = atStart != nullptr && (atEnd == nullptr || dataSize != 0);
  place = isAtStart ? placeAtStart(bytes, atStart, dataSize) : placeAtEnd(bytes, atEnd);
  return true;
}

// Reading a pipe takes away what is in it, and what is written there is another thing.
bool isOrdinaryOrMissing(KyCErrorListPool& pool, const std::string& path)
{
  struct stat file = {};
  if (path == "-" || ::stat(path.c_str(), &file) != 0 || S_ISREG(file.st_mode) || S_ISDIR(file.st_mode)) return true;
  pool.setError(KY_KIT_MSG_NO_ORDINARY_FILE, __LINE__, "replaceTree", "%s", path.c_str());
  return false;
}

// Whether the section reads as a tree: what cannot be read must not be written over. An empty one holds nothing to lose. Nor
// may a damaged header or trailer stay beside a new section.
bool mayReplace(KyCErrorListPool& pool, const std::string& bytes, const std::string& path, SectionPlace& place)
{
  const unsigned int errorCount = pool.getErrorCount();
  unsigned int dataSize = 0;
  if (locate(pool, bytes, place, dataSize))
  {
    const bool isSafe = dataSize == 0 || readTreeFromBytes(pool, bytes, path) != nullptr;
    const KySectionLayout layout = place.isAtEnd ? kyLayoutAtEnd(bytes) : kyLayoutAtStart(bytes);
    return isSafe && kyIsBounded(pool, bytes, path, layout, "replaceTree");
  }
  if (pool.getErrorCount() == errorCount)
    pool.setError(KY_KIT_MSG_NO_SECTION, __LINE__, "replaceTree", "%s", path.c_str());
  return false;
}
}    // namespace

bool readBytes(KyCErrorListPool& pool, const std::string& path, std::string& bytes)
{
  bytes.clear();
  const bool isInput = path == "-";
  const int file = isInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return cannotRead(pool, path, errno);
  const bool isRead = readAll(file, bytes);
  const int reason = errno;
  if (!isInput) ::close(file);
  return isRead || cannotRead(pool, path, reason);
}

bool mayWrite(KyCErrorListPool& pool, const std::string& path, Overwrite overwrite)
{
  struct stat existing = {};
  if (overwrite == Overwrite::YES || path == "-" || ::stat(path.c_str(), &existing) != 0 || !S_ISREG(existing.st_mode))
  {
    return true;
  }
  pool.setError(KY_KIT_MSG_EXISTS, __LINE__, "mayWrite", "%s", path.c_str());
  return false;
}

bool writeBytes(KyCErrorListPool& pool, const std::string& path, const std::string& bytes, Overwrite overwrite)
{
  return mayWrite(pool, path, overwrite) && replaceFile(pool, path, bytes);
}

bool findSection(KyCErrorListPool& pool, const std::string& bytes, SectionPlace& place)
{
  unsigned int dataSize = 0;
  return locate(pool, bytes, place, dataSize);
}

TreePointer readTreeFromBytes(KyCErrorListPool& pool, const std::string& bytes, const std::string& name)
{
  if (isTooLarge(pool, bytes, name)) return nullptr;
  const unsigned int errorCount = pool.getErrorCount();
  KyCInventoryItem* root = nullptr;
  if (!hasEmptySectionAtEnd(bytes))
    extract(pool, bytes, root);
  else
    extractBehindEmptySection(pool, bytes, root);
  return treeOrNoSection(pool, errorCount, root, name);
}

TreePointer readTree(KyCErrorListPool& pool, const std::string& path)
{
  struct stat file = {};
  if (path == "-" || (::stat(path.c_str(), &file) == 0 && !S_ISREG(file.st_mode)))    // a pipe cannot be searched
  {
    std::string bytes;
    return readBytes(pool, path, bytes) ? readTreeFromBytes(pool, bytes, nameOf(path)) : nullptr;
  }
  const unsigned int errorCount = pool.getErrorCount();
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  return treeOrNoSection(pool, errorCount, root, path);
}

std::string sectionOf(KyCErrorListPool& pool, KyCInventoryItem& root)
{
  const unsigned int errorCount = pool.getErrorCount();
  KyCBuffer buffer(pool);
  if (pool.getErrorCount() == errorCount) KyCInventoryData::generateInventorySection(pool, buffer, &root);
  if (pool.getErrorCount() != errorCount) return {};

  const std::string bytes(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
  const TreePointer stored = readTreeFromBytes(pool, bytes, "the new section");
  if (!stored) return {};
  const std::string difference = firstDifference(root, *stored);
  if (difference.empty()) return bytes;
  pool.setError(KY_KIT_MSG_NOT_EQUAL, __LINE__, "sectionOf", "%s", difference.c_str());
  return {};
}

bool writeTree(KyCErrorListPool& pool, const std::string& path, KyCInventoryItem& root, Overwrite overwrite)
{
  if (!mayWrite(pool, path, overwrite)) return false;
  const std::string section = sectionOf(pool, root);
  return !section.empty() && writeBytes(pool, path, section, overwrite);
}

bool replaceTree(KyCErrorListPool& pool, const std::string& path, KyCInventoryItem& root)
{
  std::string bytes;
  SectionPlace place;
  if (!isOrdinaryOrMissing(pool, path)) return false;
  const std::string section = sectionOf(pool, root);
  if (section.empty() || !readBytes(pool, path, bytes) || !mayReplace(pool, bytes, path, place)) return false;
  bytes.replace(place.begin, place.end - place.begin, section);
  return writeBytes(pool, path, bytes, Overwrite::YES);
}
}    // namespace KyNInventoryKit
