// KyCInventoryDataMemory.cpp: finding sections in memory blocks.
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryData.h"
#include "persistence/KyBigEndian.h"
#include "persistence/KyInventorySection.h"

namespace
{
// Records are copied out: a block has any alignment.
KyInventorySectionHeader firstRecord(const void* block)
{
  KyInventorySectionHeader header;
  std::memcpy(&header, block, sizeof header);
  return header;
}

KyInventorySectionTrailer lastRecord(const void* block, unsigned int length)
{
  KyInventorySectionTrailer trailer;
  std::memcpy(&trailer, static_cast<const unsigned char*>(block) + (length - sizeof trailer), sizeof trailer);
  return trailer;
}

// The three sizes of a record as one; in 64 bits, since stored sizes may add up to more than 32 bits hold.
template <typename TRecord>
std::uint64_t sectionSize(const TRecord& record)
{
  return std::uint64_t{kyFromStored(record.headerSize)} + kyFromStored(record.dataSize) +
         kyFromStored(record.trailerSize);
}

unsigned int limitTo32Bits(std::uint64_t size)
{
  constexpr unsigned int most = std::numeric_limits<unsigned int>::max();
  return size < most ? static_cast<unsigned int>(size) : most;
}
}    // namespace

const unsigned char* KyCInventoryData::seekInventoryDataHeaderInMem(KyCErrorListPool& pool, const unsigned char* block,
                                                                    unsigned int length, unsigned int& dataSize)
{
  dataSize = 0;
  if (block == nullptr || length < KY_SECTION_HEADER_SIZE) return nullptr;
  const KyInventorySectionHeader header = firstRecord(block);
  if (!checkHeader(pool, header)) return nullptr;
  const unsigned int headerSize = kyFromStored(header.headerSize);
  const unsigned int size = kyFromStored(header.dataSize);
  if (std::uint64_t{headerSize} + size > length)
  {
    pool.setError(KY_MSG_SECTION_CORRUPT, __LINE__, "seekInventoryDataHeaderInMem", nullptr);
    return nullptr;
  }
  dataSize = size;
  return block + headerSize;
}

const unsigned char* KyCInventoryData::seekInventoryDataTrailerInMem(KyCErrorListPool& pool, const unsigned char* block,
                                                                     unsigned int length, unsigned int& dataSize)
{
  dataSize = 0;
  if (block == nullptr || length < KY_SECTION_TRAILER_SIZE) return nullptr;
  const KyInventorySectionTrailer trailer = lastRecord(block, length);
  if (!checkTrailer(pool, trailer)) return nullptr;
  const unsigned int size = kyFromStored(trailer.dataSize);
  const std::uint64_t fromEnd = std::uint64_t{kyFromStored(trailer.trailerSize)} + size;
  if (fromEnd > length)
  {
    pool.setError(KY_MSG_SECTION_CORRUPT, __LINE__, "seekInventoryDataTrailerInMem", nullptr);
    return nullptr;
  }
  dataSize = size;
  return block + (length - static_cast<unsigned int>(fromEnd));
}

void KyCInventoryData::readInventoryDataFromMem(KyCErrorListPool& pool, const unsigned char* block, unsigned int length,
                                                KyCBuffer& buffer)
{
  unsigned int dataSize = 0;
  unsigned int errors = pool.getErrorCount();
  const unsigned char* data = seekInventoryDataTrailerInMem(pool, block, length, dataSize);
  if (pool.getErrorCount() != errors)
    pool.setError(KY_MSG_ERROR_SEEKING_IN_MEMORY, __LINE__, "readInventoryDataFromMem", nullptr);
  if (data == nullptr)
  {
    errors = pool.getErrorCount();
    data = seekInventoryDataHeaderInMem(pool, block, length, dataSize);
    if (pool.getErrorCount() != errors)
      pool.setError(KY_MSG_ERROR_SEEKING_IN_MEMORY, __LINE__, "readInventoryDataFromMem", nullptr);
    if (data == nullptr) return;
  }

  errors = pool.getErrorCount();
  buffer.writeBuffer(pool, data, dataSize, 1, -1);
  if (pool.getErrorCount() != errors)
    pool.setError(KY_MSG_CANNOT_WRITE_BUFFER, __LINE__, "readInventoryDataFromMem", nullptr);
}

void KyCInventoryData::getInventorySectionSizeFromMem(KyCErrorListPool& pool, const char* block, unsigned int length,
                                                      unsigned int& sizeByHeader, unsigned int& sizeByTrailer)
{
  sizeByHeader = 0;
  sizeByTrailer = 0;
  if (block == nullptr || length < KY_SECTION_HEADER_SIZE) return;

  const KyInventorySectionHeader header = firstRecord(block);
  if (checkHeader(pool, header))
  {
    const std::uint64_t size = sectionSize(header);
    sizeByHeader = limitTo32Bits(size);
    if (size > length)
    {
      pool.setError(KY_MSG_SECTION_CORRUPT, __LINE__, "getInventorySectionSizeFromMem", nullptr);
      return;
    }
  }

  const KyInventorySectionTrailer trailer = lastRecord(block, length);
  if (checkTrailer(pool, trailer))
  {
    const std::uint64_t size = sectionSize(trailer);
    sizeByTrailer = limitTo32Bits(size);
    if (size > length) pool.setError(KY_MSG_SECTION_CORRUPT, __LINE__, "getInventorySectionSizeFromMem", nullptr);
  }
}
