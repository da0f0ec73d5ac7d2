// KyCInventoryDataFile.cpp: reading the data of a section from a file.

// On x86 a file of 2 GiB or more can only be opened this way; that its size does not fit long is reported later.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64    // NOLINT: a name of the C library
#endif

#include <climits>
#include <cstdint>
#include <cstdio>

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryData.h"
#include "persistence/KyBigEndian.h"
#include "persistence/KyInventorySection.h"

namespace
{
// Positions are the C library's long, 32 bits on x86; sums of stored sizes need more.
bool setPosition(std::FILE* file, std::int64_t position)
{
  return position >= 0 && position <= LONG_MAX && std::fseek(file, static_cast<long>(position), SEEK_SET) == 0;
}

// One attempt to read a section from an open file, with the name of the public operation in its reports.
class SectionReader
{
public:
  SectionReader(KyCErrorListPool& pool, std::FILE* file, const char* function)
      : m_pool(pool), m_file(file), m_function(function)
  {
  }

  bool findFileSize();
  std::int64_t fileSize() const { return m_fileSize; }

  // Reads a header or trailer.
  template <typename TRecord>
  bool readRecord(TRecord& record, std::int64_t position)
  {
    return seek(position) && read(&record, sizeof record);
  }

  // Reads the data into the buffer; the number of bytes read, 0 on failure.
  unsigned int readData(KyCBuffer& buffer, std::int64_t position, unsigned int size);

private:
  bool seek(std::int64_t position)
  {
    if (setPosition(m_file, position)) return true;
    return report(KY_MSG_CANNOT_SET_FILE_POSITION);
  }
  bool read(void* target, std::size_t size)
  {
    if (std::fread(target, 1, size, m_file) == size) return true;
    return report(KY_MSG_CANNOT_READ_FILE);
  }
  bool report(unsigned int code)
  {
    m_pool.setError(code, __LINE__, m_function, nullptr);
    return false;
  }

  KyCErrorListPool& m_pool;
  std::FILE* m_file;
  const char* m_function;
  std::int64_t m_fileSize = 0;
};

bool SectionReader::findFileSize()
{
  if (std::fseek(m_file, 0, SEEK_END) != 0) return report(KY_MSG_CANNOT_SET_FILE_POSITION);
  m_fileSize = std::ftell(m_file);
  if (m_fileSize == -1) return report(KY_MSG_CANNOT_GET_FILE_POSITION);
  return true;
}

unsigned int SectionReader::readData(KyCBuffer& buffer, std::int64_t position, unsigned int size)
{
  if (!seek(position)) return 0;
  buffer.reset();
  if (size != 0 && position + size > m_fileSize)    // before a damaged size asks for memory that nothing could fill
  {
    report(KY_MSG_CANNOT_READ_FILE);
    return 0;
  }
  const unsigned int errors = m_pool.getErrorCount();
  buffer.allocateBuffer(m_pool, size);
  if (m_pool.getErrorCount() != errors)
  {
    report(KY_MSG_OUT_OF_MEMORY);
    return 0;
  }
  if (!read(buffer.getStorage() + buffer.getWritePosition(), size)) return 0;
  buffer.incrementWritePointer(m_pool, size);
  return size;
}
}    // namespace

unsigned int KyCInventoryData::readInventoryDataHeaderFromFile(KyCErrorListPool& pool, std::FILE* file,
                                                               KyCBuffer& buffer)
{
  SectionReader reader(pool, file, "readInventoryDataHeaderFromFile");
  KyInventorySectionHeader header;
  if (!reader.findFileSize() || reader.fileSize() < KY_SECTION_HEADER_SIZE) return 0;
  if (!reader.readRecord(header, 0) || !checkHeader(pool, header)) return 0;
  return reader.readData(buffer, kyFromStored(header.headerSize), kyFromStored(header.dataSize));
}

unsigned int KyCInventoryData::readInventoryDataTrailerFromFile(KyCErrorListPool& pool, std::FILE* file,
                                                                KyCBuffer& buffer)
{
  SectionReader reader(pool, file, "readInventoryDataTrailerFromFile");
  KyInventorySectionTrailer trailer;
  if (!reader.findFileSize() || reader.fileSize() < KY_SECTION_TRAILER_SIZE) return 0;
  if (!reader.readRecord(trailer, reader.fileSize() - KY_SECTION_TRAILER_SIZE) || !checkTrailer(pool, trailer))
    return 0;
  const unsigned int dataSize = kyFromStored(trailer.dataSize);
  const std::int64_t fromEnd = std::int64_t{kyFromStored(trailer.trailerSize)} + dataSize;
  return reader.readData(buffer, reader.fileSize() - fromEnd, dataSize);
}

void KyCInventoryData::readInventoryDataFromFile(KyCErrorListPool& pool, const char* path, KyCBuffer& buffer)
{
  const char* const name = path != nullptr ? path : "";
  std::FILE* const file = std::fopen(name, "rb");
  if (file == nullptr)
  {
    pool.setError(KY_MSG_CANNOT_OPEN_FILE, __LINE__, "readInventoryDataFromFile", "%s", name);
    return;
  }
  buffer.reset();

  unsigned int errors = pool.getErrorCount();
  const unsigned int size = readInventoryDataTrailerFromFile(pool, file, buffer);
  if (pool.getErrorCount() != errors)
    pool.setError(KY_MSG_ERROR_READING_FILE, __LINE__, "readInventoryDataFromFile", "%s", name);
  if (size == 0)
  {
    errors = pool.getErrorCount();
    readInventoryDataHeaderFromFile(pool, file, buffer);
    if (pool.getErrorCount() != errors)
      pool.setError(KY_MSG_ERROR_READING_FILE, __LINE__, "readInventoryDataFromFile", "%s", name);
  }
  std::fclose(file);
}
