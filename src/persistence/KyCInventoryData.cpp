// KyCInventoryData.cpp: writing and checking sections.
#include "inventory/KyCInventoryData.h"

#include <cstring>

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryItemFactory.h"
#include "persistence/KyBigEndian.h"
#include "persistence/KyInventorySection.h"

namespace
{
constexpr unsigned int APPEND = 0xFFFFFFFF;

bool hasMarks(const char (&magicText)[4], const unsigned int& magicNumber)
{
  return std::memcmp(magicText, KY_SECTION_MAGIC_TEXT, sizeof magicText) == 0 &&
         kyFromStored(magicNumber) == KY_SECTION_MAGIC_NUMBER;
}

bool checkVersion(KyCErrorListPool& pool, const unsigned int& storedVersion, const char* function)
{
  const unsigned int version = kyFromStored(storedVersion);
  if (version == KY_SECTION_VERSION) return true;
  pool.setError(KY_MSG_SECTION_VERSION_INCOMPATIBLE, __LINE__, function, "%d%d", static_cast<int>(version),
                static_cast<int>(KY_SECTION_VERSION));
  return false;
}

template <typename TRecord>
void writeRecord(KyCErrorListPool& pool, KyCBuffer& buffer, const TRecord& record, unsigned int position,
                 const char* function)
{
  const unsigned int errors = pool.getErrorCount();
  buffer.writeBuffer(pool, &record, sizeof record, 1, static_cast<int>(position));    // APPEND is -1
  if (pool.getErrorCount() != errors) pool.setError(KY_MSG_CANNOT_WRITE_BUFFER, __LINE__, function, nullptr);
}
}    // namespace

bool KyCInventoryData::checkHeader(KyCErrorListPool& pool, const KyInventorySectionHeader& header)
{
  if (!hasMarks(header.magicText, header.magicNumber)) return false;
  const unsigned int size = kyFromStored(header.headerSize);
  if (size < KY_SECTION_HEADER_SIZE)
  {
    pool.setError(KY_MSG_HEADER_SIZE_INCOMPATIBLE, __LINE__, "checkHeader", "%d%d", static_cast<int>(size),
                  static_cast<int>(KY_SECTION_HEADER_SIZE));
    return false;
  }
  return checkVersion(pool, header.version, "checkHeader");
}

bool KyCInventoryData::checkTrailer(KyCErrorListPool& pool, const KyInventorySectionTrailer& trailer)
{
  if (!hasMarks(trailer.magicText, trailer.magicNumber)) return false;
  const unsigned int size = kyFromStored(trailer.trailerSize);
  if (size < KY_SECTION_TRAILER_SIZE)
  {
    pool.setError(KY_MSG_TRAILER_SIZE_INCOMPATIBLE, __LINE__, "checkTrailer", "%d%d", static_cast<int>(size),
                  static_cast<int>(KY_SECTION_TRAILER_SIZE));
    return false;
  }
  return checkVersion(pool, trailer.version, "checkTrailer");
}

void KyCInventoryData::writeHeader(KyCErrorListPool& pool, KyCBuffer& buffer, unsigned int dataSize,
                                   unsigned int position)
{
  KyInventorySectionHeader header;
  std::memcpy(header.magicText, KY_SECTION_MAGIC_TEXT, sizeof header.magicText);
  header.magicNumber = kyToStored(KY_SECTION_MAGIC_NUMBER);
  header.version = kyToStored(KY_SECTION_VERSION);
  header.headerSize = kyToStored(KY_SECTION_HEADER_SIZE);
  header.dataSize = kyToStored(dataSize);
  header.trailerSize = kyToStored(KY_SECTION_TRAILER_SIZE);
  writeRecord(pool, buffer, header, position, "writeHeader");
}

void KyCInventoryData::writeTrailer(KyCErrorListPool& pool, KyCBuffer& buffer, unsigned int dataSize)
{
  KyInventorySectionTrailer trailer;
  trailer.headerSize = kyToStored(KY_SECTION_HEADER_SIZE);
  trailer.dataSize = kyToStored(dataSize);
  trailer.trailerSize = kyToStored(KY_SECTION_TRAILER_SIZE);
  trailer.version = kyToStored(KY_SECTION_VERSION);
  std::memcpy(trailer.magicText, KY_SECTION_MAGIC_TEXT, sizeof trailer.magicText);
  trailer.magicNumber = kyToStored(KY_SECTION_MAGIC_NUMBER);
  writeRecord(pool, buffer, trailer, APPEND, "writeTrailer");
}

void KyCInventoryData::generateInventorySection(KyCErrorListPool& pool, KyCBuffer& buffer, KyCInventoryItem* root)
{
  unsigned int errors = pool.getErrorCount();
  KyCInventoryItemFactory factory(pool);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_CREATE_ITEM_FACTORY, __LINE__, "generateInventorySection", nullptr);
    return;
  }

  // The data size is known only when the tree is written: the header is written with 0 first and again at the end.
  const unsigned int sectionStart = buffer.getWritePosition();
  writeHeader(pool, buffer, 0, APPEND);
  const unsigned int dataStart = buffer.getWritePosition();

  errors = pool.getErrorCount();
  factory.serialize(pool, &buffer, root);
  if (pool.getErrorCount() != errors)
  {
    pool.setError(KY_MSG_CANNOT_SERIALIZE_SECTION, __LINE__, "generateInventorySection", nullptr);
    return;
  }

  const unsigned int dataSize = buffer.getWritePosition() - dataStart;
  writeHeader(pool, buffer, dataSize, sectionStart);
  writeTrailer(pool, buffer, dataSize);
}
