#include <sys/types.h>
#include <unistd.h>

#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryData.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyScriptedStream.h"
#include "unit/persistence/KySectionFolder.h"
#include "unit/persistence/KyStoredBytes.h"

namespace
{
constexpr const char* IN_FILE_AT_END = "readInventoryDataTrailerFromFile";
constexpr const char* IN_FILE_AT_START = "readInventoryDataHeaderFromFile";

// One attempt on bytes or a scripted stream, into a buffer that holds "old" before.
struct Attempt
{
  Attempt() : buffer(pool) { put(pool, buffer, bytesOf("old")); }

  unsigned int atEnd(KyScriptedStream& stream)
  {
    return KyCInventoryData::readInventoryDataTrailerFromFile(pool, stream.file(), buffer);
  }
  unsigned int atEnd(const KyBytes& bytes)
  {
    KyScriptedStream stream(bytes);
    return atEnd(stream);
  }
  unsigned int atStart(KyScriptedStream& stream)
  {
    return KyCInventoryData::readInventoryDataHeaderFromFile(pool, stream.file(), buffer);
  }
  unsigned int atStart(const KyBytes& bytes)
  {
    KyScriptedStream stream(bytes);
    return atStart(stream);
  }
  KyBytes held() const { return bytesOf(buffer); }

  KyTestPool pool;
  KyCBuffer buffer;
};

const KyBytes OLD = {'o', 'l', 'd'};
}    // namespace

// --- One end ------------------------------------------------------------------------------------------------------------

TEST(KyCInventoryDataFile, trailerGivesTheDataInFrontOfItAndReplacesTheBuffersContent)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atEnd(sectionAround(FIVE_BYTES)), 5u);
  EXPECT_EQ(attempt.held(), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, headerGivesTheDataBehindItAndReplacesTheBuffersContent)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(sectionAround(FIVE_BYTES)), 5u);
  EXPECT_EQ(attempt.held(), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, headerNeedsNoTrailerAndTrailerNoHeader)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(5)) + FIVE_BYTES), 5u);
  EXPECT_EQ(attempt.held(), FIVE_BYTES);
  EXPECT_EQ(attempt.atEnd(FIVE_BYTES + trailerBytes(sizesOf(5))), 5u);
  EXPECT_EQ(attempt.held(), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, longerHeaderIsSkipped)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(5, 32)) + KyBytes(8, 0xEE) + FIVE_BYTES + KyBytes(3, 0xEE)), 5u);
  EXPECT_EQ(attempt.held(), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, longerTrailerIsSkippedAndTheRecordedHeaderSizeIsNotUsed)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atEnd(FIVE_BYTES + KyBytes(8, 0xEE) + trailerBytes(sizesOf(5, 0xFFFFFFFF, 32))), 5u);
  EXPECT_EQ(attempt.held(), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, fileOf23BytesGivesNothingAndNoReport)
{
  Attempt attempt;
  for (std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{23}})
  {
    EXPECT_EQ(attempt.atEnd(lastBytes(trailerBytes({}), size)), 0u);
    EXPECT_EQ(attempt.atStart(firstBytes(headerBytes({}), size)), 0u);
  }
  EXPECT_EQ(attempt.held(), OLD);
}

TEST(KyCInventoryDataFile, fileWithoutMarksGivesNothingAndNoReport)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atEnd(KyBytes(1000, 0x20)), 0u);
  EXPECT_EQ(attempt.atStart(KyBytes(1000, 0x20)), 0u);
  EXPECT_EQ(attempt.held(), OLD);
}

TEST(KyCInventoryDataFile, recordThatFailsItsCheckLeavesThatReportAlone)
{
  Attempt attempt;
  KySizes wrong;
  wrong.version = 2;
  EXPECT_EQ(attempt.atEnd(trailerBytes(wrong)), 0u);
  EXPECT_REPORTS(attempt.pool, versionIncompatible("checkTrailer", "2"));
  EXPECT_EQ(attempt.atStart(headerBytes(wrong)), 0u);
  EXPECT_REPORTS(attempt.pool, versionIncompatible("checkHeader", "2"));
  EXPECT_EQ(attempt.atEnd(trailerBytes(sizesOf(0, 24, 23))), 0u);
  EXPECT_REPORTS(attempt.pool, trailerSizeIncompatible("23"));
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(0, 23))), 0u);
  EXPECT_REPORTS(attempt.pool, headerSizeIncompatible("23"));
  EXPECT_EQ(attempt.held(), OLD);
}

TEST(KyCInventoryDataFile, dataSize0GivesNothingAndEmptiesTheBuffer)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atEnd(sectionAround({})), 0u);
  EXPECT_EQ(attempt.held(), KyBytes());
  put(attempt.pool, attempt.buffer, OLD);
  EXPECT_EQ(attempt.atStart(sectionAround({})), 0u);
  EXPECT_EQ(attempt.held(), KyBytes());
}

// No byte is asked for, so none is missing.
TEST(KyCInventoryDataFile, headerOfDataSize0GivesNothingAndNoReportWhereverItsDataWouldStart)
{
  for (unsigned int headerSize : {25u, 48u, 49u, 100u, 0x7FFFFFFFu})
  {
    Attempt attempt;
    EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(0, headerSize)) + KyBytes(24, 0xEE)), 0u);
    EXPECT_EQ(attempt.held(), KyBytes());
  }
}

TEST(KyCInventoryDataFile, dataReadIsTheFilesLastByte)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(5)) + FIVE_BYTES), 5u);    // one byte less is reported, see below
  EXPECT_EQ(attempt.atEnd(FIVE_BYTES + trailerBytes(sizesOf(5))), 5u);
}

TEST(KyCInventoryDataFile, headerWhoseDataExceedsTheFileCannotBeReadAndEmptiesTheBuffer)
{
  for (unsigned int dataSize : {6u, 1000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
  {
    Attempt attempt;
    KyNPoolAllocator::failAfter(0);    // nothing is to be allocated for what cannot be there
    EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(dataSize)) + FIVE_BYTES), 0u);
    KyNPoolAllocator::reset();
    EXPECT_REPORTS(attempt.pool, cannotRead(IN_FILE_AT_START));
    EXPECT_EQ(attempt.held(), KyBytes());
  }
}

TEST(KyCInventoryDataFile, headerWhoseDataStartsBehindTheFileCannotBeRead)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(5, 100)) + FIVE_BYTES), 0u);
  EXPECT_REPORTS(attempt.pool, cannotRead(IN_FILE_AT_START));
  EXPECT_EQ(attempt.held(), KyBytes());
}

TEST(KyCInventoryDataFile, headerSizeThatLongDoesNotHoldIsAPositionThatCannotBeSet)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(5, 0xFFFFFFFF)) + FIVE_BYTES), 0u);
  if (sizeof(long) == 4)
  {
    EXPECT_REPORTS(attempt.pool, cannotSetPosition(IN_FILE_AT_START));
    EXPECT_EQ(attempt.held(), OLD);
  }
  else
  {
    EXPECT_REPORTS(attempt.pool, cannotRead(IN_FILE_AT_START));
    EXPECT_EQ(attempt.held(), KyBytes());
  }
}

TEST(KyCInventoryDataFile, trailerWhoseDataWouldBeginBeforeTheFileIsAPositionThatCannotBeSet)
{
  for (const KyBytes& trailer :
       {trailerBytes(sizesOf(6)), trailerBytes(sizesOf(0x7FFFFFFF)), trailerBytes(sizesOf(0xFFFFFFFF)),
        trailerBytes(sizesOf(5, 24, 25)), trailerBytes(sizesOf(0, 24, 0xFFFFFFFF)),
        trailerBytes(sizesOf(0xFFFFFFF0, 24, 45)),    // adds up to 29 in 32 bits
        trailerBytes(sizesOf(0xFFFFFFFF, 24, 0xFFFFFFFF))})
  {
    Attempt attempt;
    EXPECT_EQ(attempt.atEnd(FIVE_BYTES + trailer), 0u);
    EXPECT_REPORTS(attempt.pool, cannotSetPosition(IN_FILE_AT_END));
    EXPECT_EQ(attempt.held(), OLD);
  }
}

TEST(KyCInventoryDataFile, headerSizesThatWrapIn32BitsCannotBeRead)
{
  Attempt attempt;
  EXPECT_EQ(attempt.atStart(headerBytes(sizesOf(0xFFFFFFE8, 29)) + FIVE_BYTES), 0u);    // adds up to 5 in 32 bits
  EXPECT_REPORTS(attempt.pool, cannotRead(IN_FILE_AT_START));
}

TEST(KyCInventoryDataFile, everySeekThatFailsIsReported)
{
  const KyBytes file = sectionAround(FIVE_BYTES);
  for (int step = 0; step < 3; ++step)    // to the end, to the record, to the data
  {
    Attempt attempt;
    KyScriptedStream end(file);
    end.failingSeek = step;
    EXPECT_EQ(attempt.atEnd(end), 0u);
    EXPECT_REPORTS(attempt.pool, cannotSetPosition(IN_FILE_AT_END));
    EXPECT_EQ(end.getStep(), step);

    KyScriptedStream start(file);
    start.failingSeek = step;
    EXPECT_EQ(attempt.atStart(start), 0u);
    EXPECT_REPORTS(attempt.pool, cannotSetPosition(IN_FILE_AT_START));
    EXPECT_EQ(start.getStep(), step);
    EXPECT_EQ(attempt.held(), OLD);    // the buffer is emptied only behind the last seek
  }
}

TEST(KyCInventoryDataFile, everyReadThatFailsOrFallsShortIsReported)
{
  const KyBytes file = sectionAround(FIVE_BYTES);
  for (int step = 1; step < 3; ++step)    // of the record, of the data
  {
    for (bool isShort : {false, true})
    {
      Attempt attempt;
      KyScriptedStream end(file);
      (isShort ? end.shortRead : end.failingRead) = step;
      EXPECT_EQ(attempt.atEnd(end), 0u);
      EXPECT_REPORTS(attempt.pool, cannotRead(IN_FILE_AT_END));
      EXPECT_EQ(end.getStep(), step);
      EXPECT_EQ(attempt.held(), step == 1 ? OLD : KyBytes());

      Attempt other;
      KyScriptedStream start(file);
      (isShort ? start.shortRead : start.failingRead) = step;
      EXPECT_EQ(other.atStart(start), 0u);
      EXPECT_REPORTS(other.pool, cannotRead(IN_FILE_AT_START));
      EXPECT_EQ(start.getStep(), step);
      EXPECT_EQ(other.held(), step == 1 ? OLD : KyBytes());
    }
  }
}

TEST(KyCInventoryDataFile, sizeThatCannotBeToldIsReported)
{
  Attempt attempt;
  KyScriptedStream end(sectionAround(FIVE_BYTES));
  end.failingTell = true;
  EXPECT_EQ(attempt.atEnd(end), 0u);
  EXPECT_REPORTS(attempt.pool, cannotGetPosition(IN_FILE_AT_END));
  EXPECT_EQ(end.getStep(), 0);
  KyScriptedStream start(sectionAround(FIVE_BYTES));
  start.failingTell = true;
  EXPECT_EQ(attempt.atStart(start), 0u);
  EXPECT_REPORTS(attempt.pool, cannotGetPosition(IN_FILE_AT_START));
  EXPECT_EQ(start.getStep(), 0);
  EXPECT_EQ(attempt.held(), OLD);
}

TEST(KyCInventoryDataFile, noMemoryForTheDataIsReportedBehindTheAllocator)
{
  const KyBytes data(100000, 'x');
  Attempt attempt;
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(attempt.atEnd(sectionAround(data)), 0u);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(attempt.pool, allocatorOutOfMemory(), outOfMemory(IN_FILE_AT_END));
  EXPECT_EQ(attempt.held(), KyBytes());    // emptied before

  put(attempt.pool, attempt.buffer, OLD);
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(attempt.atStart(sectionAround(data)), 0u);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(attempt.pool, allocatorOutOfMemory(), outOfMemory(IN_FILE_AT_START));
  EXPECT_EQ(attempt.held(), KyBytes());
}

TEST(KyCInventoryDataFile, streamThatCannotSeekIsReported)
{
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::FILE* const file = fdopen(ends[0], "rb");
  Attempt attempt;
  EXPECT_EQ(KyCInventoryData::readInventoryDataTrailerFromFile(attempt.pool, file, attempt.buffer), 0u);
  EXPECT_REPORTS(attempt.pool, cannotSetPosition(IN_FILE_AT_END));
  std::fclose(file);
  close(ends[1]);
}

// --- Both ends ----------------------------------------------------------------------------------------------------------

namespace
{
// What reading a file with these bytes leaves in a buffer that holds "old" before.
KyBytes readFile(KyTestPool& pool, const std::string& path)
{
  KyCBuffer buffer(pool);
  put(pool, buffer, OLD);
  KyCInventoryData::readInventoryDataFromFile(pool, path.c_str(), buffer);
  return bytesOf(buffer);
}
}    // namespace

TEST(KyCInventoryDataFile, fileThatIsNotThereIsReportedWithItsPathAndLeavesTheBuffer)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.path("missing %1 %s.kyinv");
  EXPECT_EQ(readFile(pool, path), OLD);
  EXPECT_REPORTS(pool, cannotOpenFile(path));
}

TEST(KyCInventoryDataFile, nullPathIsTakenAsEmpty)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::readInventoryDataFromFile(pool, nullptr, buffer);
  EXPECT_REPORTS(pool, cannotOpenFile(""));
}

TEST(KyCInventoryDataFile, wholeSectionFileIsRead)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file(sectionAround(FIVE_BYTES))), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, fileWithoutASectionEmptiesTheBufferWithoutAReport)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file({})), KyBytes());
  EXPECT_EQ(readFile(pool, folder.file(KyBytes(23, 'x'))), KyBytes());
  EXPECT_EQ(readFile(pool, folder.file(KyBytes(5000, 'x'))), KyBytes());
}

TEST(KyCInventoryDataFile, sectionAppendedToALargerFileIsReadThroughItsTrailer)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file(KyBytes(100000, 0x7F) + sectionAround(FIVE_BYTES))), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, sectionAtTheEndWinsAndTheStartIsNotExamined)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file(sectionAround(bytesOf("first")) + sectionAround(bytesOf("last")))),
            bytesOf("last"));
  KySizes wrong;
  wrong.version = 2;    // would be reported if it were looked at
  EXPECT_EQ(readFile(pool, folder.file(headerBytes(wrong) + sectionAround(FIVE_BYTES))), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, fileThatDoesNotEndWithATrailerIsReadThroughItsHeader)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file(sectionAround(FIVE_BYTES) + KyBytes(1, 'x'))), FIVE_BYTES);
  EXPECT_EQ(readFile(pool, folder.file(sectionAround(FIVE_BYTES) + KyBytes(70000, 'x'))), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, sectionInTheMiddleIsNotSearchedFor)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file(KyBytes(1, 'x') + sectionAround(FIVE_BYTES) + KyBytes(1, 'x'))), KyBytes());
}

TEST(KyCInventoryDataFile, sectionWithoutDataAtTheEndLetsTheStartBeRead)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(readFile(pool, folder.file(sectionAround(FIVE_BYTES) + sectionAround({}))), FIVE_BYTES);
}

TEST(KyCInventoryDataFile, failureAtTheEndIsReportedAndTheStartIsReadAllTheSame)
{
  KyTestPool pool;
  const KySectionFolder folder;
  KySizes wrong;
  wrong.version = 2;
  const std::string path = folder.file(sectionAround(FIVE_BYTES) + trailerBytes(wrong));
  EXPECT_EQ(readFile(pool, path), FIVE_BYTES);
  EXPECT_REPORTS(pool, versionIncompatible("checkTrailer", "2"), errorWhileReading(path));
}

TEST(KyCInventoryDataFile, failuresAtBothEndsAreReportedEachWithTheFile)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.file(headerBytes(sizesOf(1000)) + trailerBytes(sizesOf(2000)));
  EXPECT_EQ(readFile(pool, path), KyBytes());
  EXPECT_REPORTS(pool, cannotSetPosition(IN_FILE_AT_END), errorWhileReading(path), cannotRead(IN_FILE_AT_START),
                 errorWhileReading(path));
}

TEST(KyCInventoryDataFile, failureAtTheStartAloneIsReportedOnce)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.file(headerBytes(sizesOf(5, 23)) + FIVE_BYTES);
  EXPECT_EQ(readFile(pool, path), KyBytes());
  EXPECT_REPORTS(pool, headerSizeIncompatible("23"), errorWhileReading(path));
}

TEST(KyCInventoryDataFile, pathIsReportedAsItIsAndNeverTakenAsAFormat)
{
  KyTestPool pool;
  const KySectionFolder folder;
  std::filesystem::rename(folder.file(headerBytes(sizesOf(5, 23)) + FIVE_BYTES), folder.path("%s%n%2 %1"));
  const std::string path = folder.path("%s%n%2 %1");
  readFile(pool, path);
  EXPECT_REPORTS(pool, headerSizeIncompatible("23"), errorWhileReading(path));
}

TEST(KyCInventoryDataFile, fileIsClosedOnEveryPath)
{
  const KySectionFolder folder;
  const std::string path = folder.file(headerBytes(sizesOf(1000)) + trailerBytes(sizesOf(2000)));
  for (int n = 0; n < 2000; ++n)    // more than there are file descriptors
  {
    KyTestPool pool;
    readFile(pool, path);
    ASSERT_EQ(pool.takeReports().size(), 4u);
  }
}

TEST(KyCInventoryDataFile, fileBeyondTheRangeOfLongIsOpenedAndItsSizeReported)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.file(sectionAround(FIVE_BYTES));
  if (truncate64(path.c_str(), 3LL * 1024 * 1024 * 1024) != 0) GTEST_SKIP() << "no file of 3 GiB here";
  if (sizeof(long) == 4)
  {
    EXPECT_EQ(readFile(pool, path), KyBytes());
    EXPECT_REPORTS(pool, cannotGetPosition(IN_FILE_AT_END), errorWhileReading(path),
                   cannotGetPosition(IN_FILE_AT_START), errorWhileReading(path));
  }
  else
    EXPECT_EQ(readFile(pool, path), FIVE_BYTES);
}
