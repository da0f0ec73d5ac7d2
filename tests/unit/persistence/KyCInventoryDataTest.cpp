#include "inventory/KyCInventoryData.h"
#include "support/KyFarBuffer.h"

#include <string>

#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyNInventoryIDs.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyStoredBytes.h"
#include "unit/persistence/KyTreeText.h"

namespace
{
bool checksAsHeader(KyCErrorListPool& pool, const KyBytes& bytes)
{
  return KyCInventoryData::checkHeader(pool, recordOf<KyInventorySectionHeader>(bytes));
}

bool checksAsTrailer(KyCErrorListPool& pool, const KyBytes& bytes)
{
  return KyCInventoryData::checkTrailer(pool, recordOf<KyInventorySectionTrailer>(bytes));
}

KySizes sizes(unsigned int headerSize, unsigned int trailerSize, unsigned int version)
{
  KySizes result;
  result.headerSize = headerSize;
  result.trailerSize = trailerSize;
  result.version = version;
  return result;
}

// A string parameter of this many characters makes a tree of about that size.
KyItemPtr treeOf(KyCErrorListPool& pool, std::size_t characters)
{
  KyItemPtr root(new KyCInventoryItem(pool, KyNInventoryIDs::ROOT, "ROOT"));
  root->createParameter<KyCString>(pool, KyNInventoryIDs::NAME, KyCString(std::string(characters, 'n').c_str()), "",
                                   false, 0);
  return root;
}
}    // namespace

// --- Checking -----------------------------------------------------------------------------------------------------------

TEST(KyCInventoryData, checkHeaderAcceptsTheBytesOfAHeader)
{
  KyTestPool pool;
  EXPECT_TRUE(checksAsHeader(pool, {0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA, 0, 0, 0, 1,
                                    0,    0,    0,    24,   0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 24}));
}

TEST(KyCInventoryData, checkTrailerAcceptsTheBytesOfATrailer)
{
  KyTestPool pool;
  EXPECT_TRUE(checksAsTrailer(pool, {0, 0, 0, 24, 0xFF, 0xFF, 0xFF, 0xFF, 0,    0,    0,    24,
                                     0, 0, 0, 1,  0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA}));
}

TEST(KyCInventoryData, checksAreSilentlyFalseForEveryOtherByteInTheMarks)
{
  KyTestPool pool;
  for (std::size_t n = 0; n < 8; ++n)
  {
    KyBytes header = headerBytes({});
    header[n] = static_cast<unsigned char>(header[n] ^ 0x20);
    EXPECT_FALSE(checksAsHeader(pool, header)) << n;
    KyBytes trailer = trailerBytes({});
    trailer[16 + n] = static_cast<unsigned char>(trailer[16 + n] ^ 0x20);
    EXPECT_FALSE(checksAsTrailer(pool, trailer)) << n;
  }
}

TEST(KyCInventoryData, checksAreSilentlyFalseForOtherMarksWhateverStandsBehind)
{
  KyTestPool pool;
  KyBytes header = headerBytes(sizes(0, 0, 99));
  header[0] = 'i';
  EXPECT_FALSE(checksAsHeader(pool, header));
  KyBytes trailer = trailerBytes(sizes(0, 0, 99));
  trailer[23] = 0xAB;
  EXPECT_FALSE(checksAsTrailer(pool, trailer));
}

TEST(KyCInventoryData, headerOfSize32AndVersion1Passes)
{
  KyTestPool pool;
  EXPECT_TRUE(checksAsHeader(pool, headerBytes(sizes(32, 24, 1))));
  EXPECT_TRUE(checksAsHeader(pool, headerBytes(sizes(0xFFFFFFFF, 24, 1))));
}

TEST(KyCInventoryData, headerOfSize23FailsForItsSizeEvenWithAnotherVersion)
{
  KyTestPool pool;
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(23, 24, 1))));
  EXPECT_REPORTS(pool, headerSizeIncompatible("23"));
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(23, 24, 2))));
  EXPECT_REPORTS(pool, headerSizeIncompatible("23"));
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(0, 24, 1))));
  EXPECT_REPORTS(pool, headerSizeIncompatible("0"));
}

TEST(KyCInventoryData, headerOfVersion2FailsWith2And1)
{
  KyTestPool pool;
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(24, 24, 2))));
  EXPECT_REPORTS(pool, versionIncompatible("checkHeader", "2"));
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(24, 24, 0))));
  EXPECT_REPORTS(pool, versionIncompatible("checkHeader", "0"));
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(24, 24, 0x01000000))));    // 1 in the other byte order
  EXPECT_REPORTS(pool, versionIncompatible("checkHeader", "16777216"));
}

TEST(KyCInventoryData, versionIsReportedAsASignedNumber)
{
  KyTestPool pool;
  EXPECT_FALSE(checksAsHeader(pool, headerBytes(sizes(24, 24, 0xFFFFFFFF))));
  EXPECT_REPORTS(pool, versionIncompatible("checkHeader", "-1"));
}

TEST(KyCInventoryData, headerIsCheckedWithoutItsTrailerSize)
{
  KyTestPool pool;
  EXPECT_TRUE(checksAsHeader(pool, headerBytes(sizes(24, 0, 1))));
}

TEST(KyCInventoryData, trailerOfSize32AndVersion1Passes)
{
  KyTestPool pool;
  EXPECT_TRUE(checksAsTrailer(pool, trailerBytes(sizes(24, 32, 1))));
  EXPECT_TRUE(checksAsTrailer(pool, trailerBytes(sizes(24, 0xFFFFFFFF, 1))));
}

TEST(KyCInventoryData, trailerOfSize23FailsForItsSizeEvenWithAnotherVersion)
{
  KyTestPool pool;
  EXPECT_FALSE(checksAsTrailer(pool, trailerBytes(sizes(24, 23, 1))));
  EXPECT_REPORTS(pool, trailerSizeIncompatible("23"));
  EXPECT_FALSE(checksAsTrailer(pool, trailerBytes(sizes(24, 23, 2))));
  EXPECT_REPORTS(pool, trailerSizeIncompatible("23"));
}

TEST(KyCInventoryData, trailerOfVersion2FailsWith2And1)
{
  KyTestPool pool;
  EXPECT_FALSE(checksAsTrailer(pool, trailerBytes(sizes(24, 24, 2))));
  EXPECT_REPORTS(pool, versionIncompatible("checkTrailer", "2"));
}

TEST(KyCInventoryData, trailerIsCheckedWithoutItsHeaderSize)
{
  KyTestPool pool;
  EXPECT_TRUE(checksAsTrailer(pool, trailerBytes(sizes(0, 24, 1))));
}

// --- Writing records ----------------------------------------------------------------------------------------------------

TEST(KyCInventoryData, writeHeaderAppendsTheseBytes)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::writeHeader(pool, buffer, 0x12345678, 0xFFFFFFFF);
  EXPECT_EQ(bytesOf(buffer), (KyBytes{0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA, 0, 0, 0, 1,
                                      0,    0,    0,    24,   0x12, 0x34, 0x56, 0x78, 0, 0, 0, 24}));
}

TEST(KyCInventoryData, writeTrailerAppendsTheseBytes)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  put(pool, buffer, {9});
  KyCInventoryData::writeTrailer(pool, buffer, 0x12345678);
  EXPECT_EQ(bytesOf(buffer), (KyBytes{9, 0, 0, 0, 24,   0x12, 0x34, 0x56, 0x78, 0,    0,    0,   24,
                                      0, 0, 0, 1, 0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA}));
}

TEST(KyCInventoryData, writeHeaderAtAPositionOverwrites24BytesAndLeavesTheWritePosition)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  put(pool, buffer, KyBytes(30, 0xEE));
  KyCInventoryData::writeHeader(pool, buffer, 7, 3);
  KySizes expected;
  expected.dataSize = 7;
  EXPECT_EQ(bytesOf(buffer), KyBytes(3, 0xEE) + headerBytes(expected) + KyBytes(3, 0xEE));
  KyCInventoryData::writeHeader(pool, buffer, 7, 0);
  EXPECT_EQ(firstBytes(bytesOf(buffer), 24), headerBytes(expected));
}

TEST(KyCInventoryData, writeHeaderAtAPositionThatIsNotHeldReports)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  put(pool, buffer, KyBytes(30, 0xEE));
  for (unsigned int position : {7u, 1000u, 0x80000000u, 0xFFFFFFFEu})
  {
    KyCInventoryData::writeHeader(pool, buffer, 7, position);
    const std::vector<KyReport> reports = pool.takeReports();
    ASSERT_EQ(reports.size(), 2u) << position;    // the buffer's own stands in front
    EXPECT_TRUE(sameReports({reports[1]}, {cannotWriteBuffer("writeHeader")}));
  }
  EXPECT_EQ(bytesOf(buffer), KyBytes(30, 0xEE));
}

// The header is written again with the data size, at a position that int does not hold. Pages that nothing is written to
// take no memory.
TEST(KyCInventoryData, sectionBehind2GiBOfABufferHasItsDataSize)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  constexpr unsigned int START = 0x80000000u;
  if (const char* const reason = kyReserveFar(pool, buffer, START + 4096)) GTEST_SKIP() << reason;
  buffer.incrementWritePointer(pool, START);
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "");
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  EXPECT_NO_REPORTS(pool);
  const KyBytes held(buffer.getStorage() + START, buffer.getStorage() + buffer.getWritePosition());
  EXPECT_EQ(held, storedSection(&root));
}

TEST(KyCInventoryData, writingWithoutMemoryReports)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  bool headerReported = false;
  bool trailerReported = false;
  for (int n = 0; n < 1000 && !(headerReported && trailerReported); ++n)    // until the storage has to grow
  {
    KyNPoolAllocator::failAfter(0);
    KyCInventoryData::writeHeader(pool, buffer, 0, 0xFFFFFFFF);
    KyNPoolAllocator::reset();
    if (pool.getErrorCount() != 0 && !headerReported)
    {
      headerReported = true;
      EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotWriteBuffer("writeHeader"));
      KyNPoolAllocator::failAfter(0);
      KyCInventoryData::writeTrailer(pool, buffer, 0);
      KyNPoolAllocator::reset();
      trailerReported = true;
      EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotWriteBuffer("writeTrailer"));
    }
  }
  EXPECT_TRUE(headerReported && trailerReported);
}

// --- Generating ---------------------------------------------------------------------------------------------------------

TEST(KyCInventoryData, emptyStreamGivesASectionOf48BytesWithDataSize0InBothRecords)
{
  EXPECT_EQ(storedSection(nullptr), headerBytes({}) + trailerBytes({}));
  EXPECT_EQ(storedSection(nullptr).size(), 48u);
}

TEST(KyCInventoryData, sectionIsHeaderStoredTreeTrailer)
{
  KyTestPool pool;
  const KyItemPtr root = treeOf(pool, 1000);
  EXPECT_EQ(storedSection(root.get()), sectionAround(storedTree(root.get())));
}

TEST(KyCInventoryData, sectionStartsAndEndsWithItsMarks)
{
  KyTestPool pool;
  const KyBytes section = storedSection(treeOf(pool, 3).get());
  EXPECT_EQ(firstBytes(section, 12), (KyBytes{0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA, 0x00, 0x00, 0x00, 0x01}));
  EXPECT_EQ(lastBytes(section, 8), (KyBytes{0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA}));
}

TEST(KyCInventoryData, generatingBehind100BytesPutsTheHeaderAtOffset100AndLeavesThem)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  const KyBytes before(100, 0xA5);
  put(pool, buffer, before);
  const KyItemPtr root = treeOf(pool, 10);
  KyCInventoryData::generateInventorySection(pool, buffer, root.get());
  EXPECT_EQ(bytesOf(buffer), before + sectionAround(storedTree(root.get())));
}

TEST(KyCInventoryData, generatingWithoutMemoryForTheFactoryLeavesTheBuffer)
{
  KyTestPool pool;
  const KyItemPtr root = treeOf(pool, 10);
  KyCBuffer buffer(pool);
  put(pool, buffer, {1, 2, 3});
  KyNPoolAllocator::failAfter(0);
  KyCInventoryData::generateInventorySection(pool, buffer, root.get());
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateFactory("generateInventorySection"));
  EXPECT_EQ(bytesOf(buffer), (KyBytes{1, 2, 3}));
}

TEST(KyCInventoryData, generatingWithoutMemoryForTheSerializerLeavesTheProvisionalHeader)
{
  KyTestPool pool;
  const KyItemPtr root = treeOf(pool, 10);
  KyCBuffer buffer(pool);
  buffer.allocateBuffer(pool, 1000);    // the header needs no memory then
  KyNPoolAllocator::failAfter(1);       // the factory has its one
  KyCInventoryData::generateInventorySection(pool, buffer, root.get());
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateSerializer("serialize"), cannotSerializeSection());
  EXPECT_EQ(bytesOf(buffer), headerBytes({}));
}

TEST(KyCInventoryData, failedSerializingLeavesProvisionalHeaderAndPartialStreamWithoutATrailer)
{
  KyTestPool pool;
  const KyItemPtr root = treeOf(pool, 100000);
  const KyBytes tree = storedTree(root.get());
  bool seen = false;
  for (unsigned int n = 1; n < 20 && !seen; ++n)
  {
    KyCBuffer buffer(pool);
    buffer.allocateBuffer(pool, 1000);
    KyNPoolAllocator::failAfter(n);
    KyCInventoryData::generateInventorySection(pool, buffer, root.get());
    KyNPoolAllocator::reset();
    if (buffer.getWritePosition() <= 24 || pool.getErrorCount() == 0)
    {
      pool.takeReports();
      continue;
    }
    seen = true;
    EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotSerializeTree(), cannotSerializeSection());
    EXPECT_EQ(bytesOf(buffer), headerBytes({}) + firstBytes(tree, buffer.getWritePosition() - 24));
  }
  EXPECT_TRUE(seen);
}

TEST(KyCInventoryData, provisionalHeaderThatCannotBeWrittenIsReportedAndGeneratingGoesOn)
{
  // Fill a buffer to the last byte of its storage, so that the header is the first to need more.
  KyTestPool pool;
  for (unsigned int held = 0; held < 4096; ++held)
  {
    KyCBuffer buffer(pool);
    const KyBytes before(held, 0xA5);
    put(pool, buffer, before);
    KyNPoolAllocator::failAfter(1);    // the factory has its one
    KyCInventoryData::generateInventorySection(pool, buffer, nullptr);
    KyNPoolAllocator::reset();
    const std::vector<KyReport> reports = pool.takeReports();
    if (reports.size() < 2 || reports[1].function != "writeHeader") continue;

    // Header missing; the rewriting at its place then has no header there either, and the trailer stands alone.
    ASSERT_EQ(reports.size(), 4u);
    EXPECT_TRUE(sameReports({reports[0], reports[1]}, {allocatorOutOfMemory(), cannotWriteBuffer("writeHeader")}));
    EXPECT_TRUE(sameReports({reports[3]}, {cannotWriteBuffer("writeHeader")}));
    EXPECT_EQ(bytesOf(buffer), before + trailerBytes({}));
    return;
  }
  FAIL() << "the header always had room";
}

TEST(KyCInventoryData, everyFailingAllocationOfGeneratingIsReportedLastByGeneratingOrItsWriters)
{
  KyTestPool treePool;
  const KyItemPtr root = treeOf(treePool, 20000);
  for (unsigned int n = 0;; ++n)
  {
    KyTestPool pool;
    KyCBuffer buffer(pool);
    KyNPoolAllocator::failAfter(n);
    KyCInventoryData::generateInventorySection(pool, buffer, root.get());
    KyNPoolAllocator::reset();
    const std::vector<KyReport> reports = pool.takeReports();
    if (reports.empty())
    {
      EXPECT_GE(n, 3u);
      break;
    }
    EXPECT_TRUE(sameReports({reports.front()}, {allocatorOutOfMemory()})) << n;
    EXPECT_GE(reports.back().code, 0x1300004u) << n;
    EXPECT_LE(reports.back().code, 0x130000Fu) << n;
  }
}

TEST(KyCInventoryData, storingTheSameTreeTwiceGivesTheSameBytes)
{
  KyTestPool pool;
  const KyItemPtr root = treeOf(pool, 500);
  EXPECT_EQ(storedSection(root.get()), storedSection(root.get()));
}
