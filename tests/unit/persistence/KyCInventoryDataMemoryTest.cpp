#include "inventory/KyCInventoryData.h"

#include "errorhandling/KyNPoolAllocator.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyStoredBytes.h"

namespace
{
constexpr const char* IN_MEM_AT_END = "seekInventoryDataTrailerInMem";
constexpr const char* IN_MEM_AT_START = "seekInventoryDataHeaderInMem";
constexpr const char* SIZES = "getInventorySectionSizeFromMem";

constexpr long NOT_FOUND = -1;

// Where in the block the data starts; NOT_FOUND when nothing is found. dataSize starts poisoned.
using TSeek = const unsigned char* (*)(KyCErrorListPool&, const unsigned char*, unsigned int, unsigned int&);

long seek(TSeek operation, KyCErrorListPool& pool, const KyBytes& block, unsigned int& dataSize)
{
  dataSize = 0xDEADBEEF;
  const unsigned char* const data = operation(pool, block.data(), static_cast<unsigned int>(block.size()), dataSize);
  return data != nullptr ? static_cast<long>(data - block.data()) : NOT_FOUND;
}

long seekEnd(KyCErrorListPool& pool, const KyBytes& block, unsigned int& dataSize)
{
  return seek(KyCInventoryData::seekInventoryDataTrailerInMem, pool, block, dataSize);
}

long seekStart(KyCErrorListPool& pool, const KyBytes& block, unsigned int& dataSize)
{
  return seek(KyCInventoryData::seekInventoryDataHeaderInMem, pool, block, dataSize);
}

void readBlock(KyCErrorListPool& pool, const KyBytes& block, KyCBuffer& buffer)
{
  KyCInventoryData::readInventoryDataFromMem(pool, block.data(), static_cast<unsigned int>(block.size()), buffer);
}

KyBytes readBlock(KyCErrorListPool& pool, const KyBytes& block)
{
  KyCBuffer buffer(pool);
  readBlock(pool, block, buffer);
  return bytesOf(buffer);
}

struct RecordedSizes
{
  unsigned int byHeader = 0xDEADBEEF;
  unsigned int byTrailer = 0xDEADBEEF;
};

RecordedSizes recordedSizes(KyCErrorListPool& pool, const KyBytes& block)
{
  RecordedSizes result;
  KyCInventoryData::getInventorySectionSizeFromMem(pool, reinterpret_cast<const char*>(block.data()),
                                                   static_cast<unsigned int>(block.size()), result.byHeader,
                                                   result.byTrailer);
  return result;
}
}    // namespace

// --- Seeking ------------------------------------------------------------------------------------------------------------

TEST(KyCInventoryDataMemory, dataOfAWholeSectionIsFoundFromBothEnds)
{
  KyTestPool pool;
  unsigned int dataSize;
  EXPECT_EQ(seekStart(pool, sectionAround(FIVE_BYTES), dataSize), 24);
  EXPECT_EQ(dataSize, 5u);
  EXPECT_EQ(seekEnd(pool, sectionAround(FIVE_BYTES), dataSize), 24);
  EXPECT_EQ(dataSize, 5u);
}

TEST(KyCInventoryDataMemory, headerAndDataWithoutATrailerAreAcceptedAndTheOtherWayRound)
{
  KyTestPool pool;
  unsigned int dataSize;
  EXPECT_EQ(seekStart(pool, headerBytes(sizesOf(5)) + FIVE_BYTES, dataSize), 24);
  EXPECT_EQ(dataSize, 5u);
  EXPECT_EQ(seekEnd(pool, FIVE_BYTES + trailerBytes(sizesOf(5)), dataSize), 0);
  EXPECT_EQ(dataSize, 5u);
}

TEST(KyCInventoryDataMemory, longerRecordsAreSkipped)
{
  KyTestPool pool;
  unsigned int dataSize;
  EXPECT_EQ(seekStart(pool, headerBytes(sizesOf(5, 32)) + KyBytes(8, 0xEE) + FIVE_BYTES, dataSize), 32);
  EXPECT_EQ(dataSize, 5u);
  EXPECT_EQ(
      seekEnd(pool, KyBytes(3, 0xEE) + FIVE_BYTES + KyBytes(8, 0xEE) + trailerBytes(sizesOf(5, 24, 32)), dataSize), 3);
  EXPECT_EQ(dataSize, 5u);
}

TEST(KyCInventoryDataMemory, nullBlockAndShortBlockGiveNothingSilently)
{
  KyTestPool pool;
  for (TSeek operation :
       {&KyCInventoryData::seekInventoryDataHeaderInMem, &KyCInventoryData::seekInventoryDataTrailerInMem})
  {
    unsigned int dataSize = 0xDEADBEEF;
    EXPECT_EQ(operation(pool, nullptr, 1000, dataSize), nullptr);
    EXPECT_EQ(dataSize, 0u);
    EXPECT_EQ(seek(operation, pool, {}, dataSize), NOT_FOUND);
    EXPECT_EQ(seek(operation, pool, firstBytes(headerBytes({}), 23), dataSize), NOT_FOUND);
    EXPECT_EQ(seek(operation, pool, lastBytes(trailerBytes({}), 23), dataSize), NOT_FOUND);
    EXPECT_EQ(dataSize, 0u);
  }
}

TEST(KyCInventoryDataMemory, blockWithoutMarksGivesNothingSilently)
{
  KyTestPool pool;
  unsigned int dataSize;
  EXPECT_EQ(seekStart(pool, KyBytes(100, 0), dataSize), NOT_FOUND);
  EXPECT_EQ(dataSize, 0u);
  EXPECT_EQ(seekEnd(pool, KyBytes(100, 0), dataSize), NOT_FOUND);
  EXPECT_EQ(dataSize, 0u);
}

TEST(KyCInventoryDataMemory, sectionWithoutDataIsFound)
{
  KyTestPool pool;
  unsigned int dataSize;
  EXPECT_EQ(seekStart(pool, headerBytes({}), dataSize), 24);
  EXPECT_EQ(dataSize, 0u);
  EXPECT_EQ(seekEnd(pool, trailerBytes({}), dataSize), 0);
  EXPECT_EQ(dataSize, 0u);
}

TEST(KyCInventoryDataMemory, sizesThatExceedTheBlockAreCorruptAndGiveNothing)
{
  KyTestPool pool;
  unsigned int dataSize;
  for (const KySizes& wrong :
       {sizesOf(6), sizesOf(0xFFFFFFFF), sizesOf(0xFFFFFFE8), sizesOf(0xFFFFFFF0, 45, 45), sizesOf(5, 25, 25),
        sizesOf(0, 0xFFFFFFFF, 0xFFFFFFFF), sizesOf(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF)})
  {
    EXPECT_EQ(seekStart(pool, headerBytes(wrong) + FIVE_BYTES, dataSize), NOT_FOUND);
    EXPECT_REPORTS(pool, sectionCorrupt(IN_MEM_AT_START));
    EXPECT_EQ(dataSize, 0u);
    EXPECT_EQ(seekEnd(pool, FIVE_BYTES + trailerBytes(wrong), dataSize), NOT_FOUND);
    EXPECT_REPORTS(pool, sectionCorrupt(IN_MEM_AT_END));
    EXPECT_EQ(dataSize, 0u);
  }
}

TEST(KyCInventoryDataMemory, recordThatFailsItsCheckLeavesThatReportAlone)
{
  KyTestPool pool;
  unsigned int dataSize;
  KySizes wrong;
  wrong.version = 3;
  EXPECT_EQ(seekStart(pool, headerBytes(wrong), dataSize), NOT_FOUND);
  EXPECT_REPORTS(pool, versionIncompatible("checkHeader", "3"));
  EXPECT_EQ(seekEnd(pool, trailerBytes(wrong), dataSize), NOT_FOUND);
  EXPECT_REPORTS(pool, versionIncompatible("checkTrailer", "3"));
}

TEST(KyCInventoryDataMemory, blockMayHaveAnyAlignment)
{
  KyTestPool pool;
  for (std::size_t shift = 0; shift < 8; ++shift)
  {
    const KyBytes shifted = KyBytes(shift, 0) + sectionAround(FIVE_BYTES);
    const unsigned char* const block = shifted.data() + shift;
    unsigned int dataSize = 0;
    EXPECT_EQ(KyCInventoryData::seekInventoryDataHeaderInMem(pool, block, 53, dataSize), block + 24);
    EXPECT_EQ(KyCInventoryData::seekInventoryDataTrailerInMem(pool, block, 53, dataSize), block + 24);
    unsigned int byHeader = 0;
    unsigned int byTrailer = 0;
    KyCInventoryData::getInventorySectionSizeFromMem(pool, reinterpret_cast<const char*>(block), 53, byHeader,
                                                     byTrailer);
    EXPECT_EQ(byHeader, 53u);
    EXPECT_EQ(byTrailer, 53u);
  }
}

// --- Reading ------------------------------------------------------------------------------------------------------------

TEST(KyCInventoryDataMemory, sectionAtEitherEndIsRead)
{
  KyTestPool pool;
  EXPECT_EQ(readBlock(pool, sectionAround(FIVE_BYTES)), FIVE_BYTES);
  EXPECT_EQ(readBlock(pool, KyBytes(77, 'x') + sectionAround(FIVE_BYTES)), FIVE_BYTES);
  EXPECT_EQ(readBlock(pool, sectionAround(FIVE_BYTES) + KyBytes(77, 'x')), FIVE_BYTES);
}

TEST(KyCInventoryDataMemory, sectionAtTheEndWins)
{
  KyTestPool pool;
  EXPECT_EQ(readBlock(pool, sectionAround(bytesOf("first")) + sectionAround(bytesOf("last"))), bytesOf("last"));
}

TEST(KyCInventoryDataMemory, sectionWithoutDataAtTheEndStopsTheSearch)
{
  KyTestPool pool;
  EXPECT_EQ(readBlock(pool, sectionAround(FIVE_BYTES) + sectionAround({})), KyBytes());
}

TEST(KyCInventoryDataMemory, blockWithoutASectionAddsNothing)
{
  KyTestPool pool;
  EXPECT_EQ(readBlock(pool, KyBytes(100, 'x')), KyBytes());
  EXPECT_EQ(readBlock(pool, {}), KyBytes());
  KyCBuffer buffer(pool);
  KyCInventoryData::readInventoryDataFromMem(pool, nullptr, 100, buffer);
  EXPECT_EQ(bytesOf(buffer), KyBytes());
}

TEST(KyCInventoryDataMemory, readingTwiceWithoutAResetLeavesTheDataTwiceKeptOnPurpose)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  readBlock(pool, sectionAround(FIVE_BYTES), buffer);
  readBlock(pool, sectionAround(FIVE_BYTES), buffer);
  EXPECT_EQ(bytesOf(buffer), FIVE_BYTES + FIVE_BYTES);
}

TEST(KyCInventoryDataMemory, blockOf100BytesWhoseTrailerClaims224IsReportedAndTheStartTriedNext)
{
  KyTestPool pool;
  const KyBytes wrong = KyBytes(76, 'x') + trailerBytes(sizesOf(200));
  ASSERT_EQ(wrong.size(), 100u);
  EXPECT_EQ(readBlock(pool, wrong), KyBytes());
  EXPECT_REPORTS(pool, sectionCorrupt(IN_MEM_AT_END), errorWhileSeeking());

  const KyBytes withStart = headerBytes(sizesOf(5)) + FIVE_BYTES + KyBytes(47, 'x') + trailerBytes(sizesOf(200));
  ASSERT_EQ(withStart.size(), 100u);
  EXPECT_EQ(readBlock(pool, withStart), FIVE_BYTES);
  EXPECT_REPORTS(pool, sectionCorrupt(IN_MEM_AT_END), errorWhileSeeking());
}

TEST(KyCInventoryDataMemory, failuresAtBothEndsAreReportedEachWithASummary)
{
  KyTestPool pool;
  EXPECT_EQ(readBlock(pool, headerBytes(sizesOf(1000)) + trailerBytes(sizesOf(0, 24, 3))), KyBytes());
  EXPECT_REPORTS(pool, trailerSizeIncompatible("3"), errorWhileSeeking(), sectionCorrupt(IN_MEM_AT_START),
                 errorWhileSeeking());
}

TEST(KyCInventoryDataMemory, failureAtTheStartAloneIsReportedOnce)
{
  KyTestPool pool;
  EXPECT_EQ(readBlock(pool, headerBytes(sizesOf(1000)) + KyBytes(50, 'x')), KyBytes());
  EXPECT_REPORTS(pool, sectionCorrupt(IN_MEM_AT_START), errorWhileSeeking());
}

TEST(KyCInventoryDataMemory, noMemoryForTheDataIsReportedBehindTheAllocator)
{
  KyTestPool pool;
  const KyBytes block = sectionAround(KyBytes(100000, 'x'));
  KyCBuffer buffer(pool);
  KyNPoolAllocator::failAfter(0);
  readBlock(pool, block, buffer);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotWriteBuffer("readInventoryDataFromMem"));
  EXPECT_EQ(bytesOf(buffer), KyBytes());
}

// --- Section sizes ------------------------------------------------------------------------------------------------------

TEST(KyCInventoryDataMemory, sizesOfASectionIncludeBothRecords)
{
  KyTestPool pool;
  const RecordedSizes found = recordedSizes(pool, sectionAround(FIVE_BYTES));
  EXPECT_EQ(found.byHeader, 53u);
  EXPECT_EQ(found.byTrailer, 53u);
}

TEST(KyCInventoryDataMemory, sizesAreThoseOfTheSectionsAtEachEnd)
{
  KyTestPool pool;
  const RecordedSizes found = recordedSizes(pool, sectionAround({}) + KyBytes(9, 'x') + sectionAround(FIVE_BYTES));
  EXPECT_EQ(found.byHeader, 48u);
  EXPECT_EQ(found.byTrailer, 53u);
}

TEST(KyCInventoryDataMemory, sizesAre0WithoutSections)
{
  KyTestPool pool;
  for (const KyBytes& block : {KyBytes(), KyBytes(23, 'x'), KyBytes(100, 'x')})
  {
    const RecordedSizes found = recordedSizes(pool, block);
    EXPECT_EQ(found.byHeader, 0u);
    EXPECT_EQ(found.byTrailer, 0u);
  }
  unsigned int byHeader = 1;
  unsigned int byTrailer = 1;
  KyCInventoryData::getInventorySectionSizeFromMem(pool, nullptr, 100, byHeader, byTrailer);
  EXPECT_EQ(byHeader, 0u);
  EXPECT_EQ(byTrailer, 0u);
}

TEST(KyCInventoryDataMemory, aBlockOfNothingButAHeaderIsLookedAt)
{
  KyTestPool pool;
  const RecordedSizes found = recordedSizes(pool, headerBytes(sizesOf(5)));
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(found.byHeader, 53u);
  EXPECT_EQ(found.byTrailer, 0u);
}

TEST(KyCInventoryDataMemory, sizeByTheHeaderThatExceedsTheBlockIsReportedAndTheEndNotLookedAt)
{
  KyTestPool pool;
  const RecordedSizes found = recordedSizes(pool, headerBytes(sizesOf(1000)) + sectionAround(FIVE_BYTES));
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(found.byHeader, 1048u);
  EXPECT_EQ(found.byTrailer, 0u);
}

TEST(KyCInventoryDataMemory, sizeByTheTrailerThatExceedsTheBlockIsReported)
{
  KyTestPool pool;
  const RecordedSizes found = recordedSizes(pool, sectionAround(FIVE_BYTES) + trailerBytes(sizesOf(1000)));
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(found.byHeader, 53u);
  EXPECT_EQ(found.byTrailer, 1048u);
}

TEST(KyCInventoryDataMemory, sizesCountTheOppositeRecord)
{
  KyTestPool pool;
  const RecordedSizes byHeader = recordedSizes(pool, headerBytes(sizesOf(5)) + FIVE_BYTES);    // the trailer is missing
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(byHeader.byHeader, 53u);
  const RecordedSizes byTrailer = recordedSizes(pool, FIVE_BYTES + trailerBytes(sizesOf(5)));
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(byTrailer.byTrailer, 53u);
}

TEST(KyCInventoryDataMemory, failedHeaderCheckDoesNotStopTheTrailerStep)
{
  KyTestPool pool;
  KySizes wrong;
  wrong.version = 2;
  const RecordedSizes found = recordedSizes(pool, headerBytes(wrong) + sectionAround(FIVE_BYTES));
  EXPECT_REPORTS(pool, versionIncompatible("checkHeader", "2"));
  EXPECT_EQ(found.byHeader, 0u);
  EXPECT_EQ(found.byTrailer, 53u);
}

TEST(KyCInventoryDataMemory, sizesBeyond32BitsCountAsTooLarge)
{
  KyTestPool pool;
  // These add up to 48 in 32 bits.
  const RecordedSizes byHeader = recordedSizes(pool, headerBytes(sizesOf(0, 0xFFFFFFF0, 64)) + KyBytes(100, 'x'));
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(byHeader.byHeader, 0xFFFFFFFFu);
  const RecordedSizes byTrailer = recordedSizes(pool, KyBytes(100, 'x') + trailerBytes(sizesOf(0xFFFFFFF0, 32, 32)));
  EXPECT_REPORTS(pool, sectionCorrupt(SIZES));
  EXPECT_EQ(byTrailer.byTrailer, 0xFFFFFFFFu);
}
