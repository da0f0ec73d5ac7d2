#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryData.h"
#include "inventory/KyNInventoryIDs.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KySectionFolder.h"
#include "unit/persistence/KyStoredBytes.h"
#include "unit/persistence/KyTreeText.h"

namespace
{
using namespace KyNInventoryIDs;

constexpr const char* FROM_FILE = "extractInventoryTreeFromFile";
constexpr const char* FROM_MEMORY = "extractInventoryTreeFromMem";

KyItemPtr sampleTree(int size = 4096)
{
  KyTestPool pool;
  KyItemPtr root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  root->createParameter<KyCString>(pool, NAME, KyCString("a system"), "", true, 1);
  root->createParameter<int>(pool, BOARD[2] / SIZE, size, "kB", false, 0xDEADBEEF);
  root->createParameter<KyCVersion>(pool, BOARD[2] / IOCHANNEL[3] / VERSION, KyCVersion(1, 2, 3, 4), "", false, 0);
  return root;
}

// The section of the sample tree with the unit length of its one unit overwritten: 101 is more than there may be.
KyBytes sectionOfTooLongAUnit()
{
  KyBytes section = storedSection(sampleTree().get());
  section[onlyPlaceOf({0x02, 'k', 'B', 0x00, 0xDE, 0xAD, 0xBE, 0xEF}, section)] = 101;
  return section;
}

// A tree and no reports, or reports and no tree, or neither.
void expectNeverBoth(KyTestPool& pool, const KyItemPtr& root)
{
  const std::vector<KyReport> reports = pool.takeReports();
  EXPECT_TRUE(root == nullptr || sameReports(reports, {}));
}

std::string textOf(const KyItemPtr& root)
{
  std::string text;
  for (const std::string& line : treeText(root.get()))
    text += line + "\n";
  return text;
}
}    // namespace

// --- Success, and nothing there -----------------------------------------------------------------------------------------

TEST(KyCInventoryDataExtract, treeOfAWholeSectionIsRead)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes section = storedSection(sampleTree().get());
  EXPECT_EQ(textOf(extractFromMemory(pool, section)), textOf(sampleTree()));
  EXPECT_EQ(textOf(extractFromFile(pool, folder.file(section))), textOf(sampleTree()));
}

TEST(KyCInventoryDataExtract, fileOf23BytesGivesNoTreeAndNoReport)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(extractFromFile(pool, folder.file(lastBytes(trailerBytes({}), 23))), nullptr);
  EXPECT_EQ(extractFromMemory(pool, lastBytes(trailerBytes({}), 23)), nullptr);
}

TEST(KyCInventoryDataExtract, headerOfDataSize0ThatIsLongerThanTheFileGivesNoTreeAndNoReport)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(extractFromFile(pool, folder.file(headerBytes(sizesOf(0, 100)) + KyBytes(24, 0))), nullptr);
}

TEST(KyCInventoryDataExtract, nothingStoredAnywhereGivesNoTreeAndNoReport)
{
  KyTestPool pool;
  const KySectionFolder folder;
  for (const KyBytes& bytes : {KyBytes(), KyBytes(24, 'x'), KyBytes(4711, 'x')})
  {
    EXPECT_EQ(extractFromFile(pool, folder.file(bytes)), nullptr);
    EXPECT_EQ(extractFromMemory(pool, bytes), nullptr);
  }
  KyCInventoryItem poison(pool, ROOT, "");
  KyCInventoryItem* root = &poison;
  KyCInventoryData::extractInventoryTreeFromMem(pool, nullptr, 100, root);
  EXPECT_EQ(root, nullptr);
}

TEST(KyCInventoryDataExtract, sectionWithDataSize0GivesNoTreeAndNoReport)
{
  KyTestPool pool;
  const KySectionFolder folder;
  EXPECT_EQ(extractFromFile(pool, folder.file(storedSection(nullptr))), nullptr);
  EXPECT_EQ(extractFromMemory(pool, storedSection(nullptr)), nullptr);
}

TEST(KyCInventoryDataExtract, sectionBehindOtherContentIsReadThroughItsTrailer)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes larger = KyBytes(12345, 'x') + storedSection(sampleTree().get());
  EXPECT_EQ(textOf(extractFromFile(pool, folder.file(larger))), textOf(sampleTree()));
  EXPECT_EQ(textOf(extractFromMemory(pool, larger)), textOf(sampleTree()));
}

TEST(KyCInventoryDataExtract, sectionInFrontOfOtherContentIsReadThroughItsHeader)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes larger = storedSection(sampleTree().get()) + KyBytes(12345, 'x');
  EXPECT_EQ(textOf(extractFromFile(pool, folder.file(larger))), textOf(sampleTree()));
  EXPECT_EQ(textOf(extractFromMemory(pool, larger)), textOf(sampleTree()));
}

TEST(KyCInventoryDataExtract, ofTwoSectionsTheLastIsRead)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes both = storedSection(sampleTree(1).get()) + storedSection(sampleTree(2).get());
  EXPECT_EQ(textOf(extractFromFile(pool, folder.file(both))), textOf(sampleTree(2)));
  EXPECT_EQ(textOf(extractFromMemory(pool, both)), textOf(sampleTree(2)));
}

TEST(KyCInventoryDataExtract, emptySectionAtTheEndStopsTheSearchInMemoryButNotInAFile)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes both = storedSection(sampleTree().get()) + storedSection(nullptr);
  EXPECT_EQ(textOf(extractFromFile(pool, folder.file(both))), textOf(sampleTree()));
  EXPECT_EQ(extractFromMemory(pool, both), nullptr);
}

TEST(KyCInventoryDataExtract, dataBehindTheTreeWithinTheSectionIsIgnored)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes section = sectionAround(storedTree(sampleTree().get()) + KyBytes(50, 'x'));
  EXPECT_EQ(textOf(extractFromFile(pool, folder.file(section))), textOf(sampleTree()));
  EXPECT_EQ(textOf(extractFromMemory(pool, section)), textOf(sampleTree()));
}

TEST(KyCInventoryDataExtract, earlierReportsInThePoolDoNotCount)
{
  KyTestPool pool;
  pool.setError(0x1300006, 1, "before", nullptr);
  EXPECT_NE(extractFromMemory(pool, storedSection(sampleTree().get())), nullptr);
  EXPECT_REPORTS(pool, outOfMemory("before"));
}

// --- Failure ------------------------------------------------------------------------------------------------------------

TEST(KyCInventoryDataExtract, missingFileGivesNoTree)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.path("missing.kyinv");
  EXPECT_EQ(extractFromFile(pool, path), nullptr);
  EXPECT_REPORTS(pool, cannotOpenFile(path));
}

TEST(KyCInventoryDataExtract, nullPathIsTakenAsEmpty)
{
  KyTestPool pool;
  KyCInventoryItem poison(pool, ROOT, "");
  KyCInventoryItem* root = &poison;
  KyCInventoryData::extractInventoryTreeFromFile(pool, nullptr, root);
  EXPECT_EQ(root, nullptr);
  EXPECT_REPORTS(pool, cannotOpenFile(""));
}

TEST(KyCInventoryDataExtract, trailerOfVersion2IsReportedAndAValidStartGivesNoTreeEither)
{
  KyTestPool pool;
  const KySectionFolder folder;
  KySizes wrong;
  wrong.version = 2;
  const KyBytes both = storedSection(sampleTree().get()) + trailerBytes(wrong);
  const std::string path = folder.file(both);
  EXPECT_EQ(extractFromFile(pool, path), nullptr);
  EXPECT_REPORTS(pool, versionIncompatible("checkTrailer", "2"), errorWhileReading(path));
  EXPECT_EQ(extractFromMemory(pool, both), nullptr);
  EXPECT_REPORTS(pool, versionIncompatible("checkTrailer", "2"), errorWhileSeeking());
}

TEST(KyCInventoryDataExtract, corruptEndGivesNoTreeAlthoughTheStartIsValid)
{
  KyTestPool pool;
  KySizes wrong;
  wrong.dataSize = 100000;
  EXPECT_EQ(extractFromMemory(pool, storedSection(sampleTree().get()) + trailerBytes(wrong)), nullptr);
  EXPECT_REPORTS(pool, sectionCorrupt("seekInventoryDataTrailerInMem"), errorWhileSeeking());
}

TEST(KyCInventoryDataExtract, damagedTreeIsReportedByEveryLayerAndDeleted)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const KyBytes tree = storedTree(sampleTree().get());
  const KyBytes section = sectionAround(firstBytes(tree, tree.size() - 1));
  const KyReport base = {0x1101807, "", ""};
  const std::string path = folder.file(section);
  EXPECT_EQ(extractFromFile(pool, path), nullptr);
  EXPECT_REPORTS(pool, base, cannotDeserializeTree(), cannotDeserializeFile(path));
  EXPECT_EQ(extractFromMemory(pool, section), nullptr);
  EXPECT_REPORTS(pool, base, cannotDeserializeTree(), cannotDeserializeMemory());
}

TEST(KyCInventoryDataExtract, tooLongAUnitIsReportedByEveryLayer)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.file(sectionOfTooLongAUnit());
  EXPECT_EQ(extractFromFile(pool, path), nullptr);
  EXPECT_REPORTS(pool, unitTooLong(), cannotDeserializeTree(), cannotDeserializeFile(path));
  EXPECT_EQ(extractFromMemory(pool, sectionOfTooLongAUnit()), nullptr);
  EXPECT_REPORTS(pool, unitTooLong(), cannotDeserializeTree(), cannotDeserializeMemory());
}

TEST(KyCInventoryDataExtract, noMemoryForTheBufferIsReported)
{
  KyTestPool pool;
  const KySectionFolder folder;
  const std::string path = folder.file(storedSection(sampleTree().get()));
  KyCInventoryItem* root = nullptr;
  KyNPoolAllocator::failAfter(0);
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  KyNPoolAllocator::reset();
  EXPECT_EQ(root, nullptr);
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateBuffer(FROM_FILE));

  KyNPoolAllocator::failAfter(0);
  KyCInventoryData::extractInventoryTreeFromMem(pool, nullptr, 0, root);
  KyNPoolAllocator::reset();
  EXPECT_EQ(root, nullptr);
  EXPECT_REPORTS(pool, allocatorOutOfMemory(), cannotCreateBuffer(FROM_MEMORY));
}

TEST(KyCInventoryDataExtract, everyFailingAllocationIsReportedByItsLayersAndGivesNoTree)
{
  const KySectionFolder folder;
  const KyBytes section = storedSection(sampleTree().get());
  const std::string path = folder.file(section);
  for (bool fromFile : {true, false})
  {
    const char* const function = fromFile ? FROM_FILE : FROM_MEMORY;
    const KyReport damaged = fromFile ? cannotDeserializeFile(path) : cannotDeserializeMemory();
    bool bufferSeen = false;
    bool factorySeen = false;
    bool deserializerSeen = false;
    bool treeSeen = false;
    unsigned int n = 0;
    for (;; ++n)
    {
      KyTestPool pool;
      KyCInventoryItem* root = nullptr;
      KyNPoolAllocator::failAfter(n);
      if (fromFile)
        KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
      else
        KyCInventoryData::extractInventoryTreeFromMem(pool, section.data(), static_cast<unsigned int>(section.size()),
                                                      root);
      KyNPoolAllocator::reset();
      const KyItemPtr owner(root);
      const std::vector<KyReport> reports = pool.takeReports();
      if (reports.empty()) break;
      EXPECT_EQ(root, nullptr) << n;
      if (sameReports(reports, {allocatorOutOfMemory(), cannotCreateBuffer(function)}))
        bufferSeen = true;
      else if (sameReports(reports, {allocatorOutOfMemory(), cannotCreateFactory(function)}))
        factorySeen = true;
      else if (sameReports(reports, {allocatorOutOfMemory(), cannotCreateSerializer("deserialize"), damaged}))
        deserializerSeen = true;
      else if (reports.size() >= 3 && sameReports({reports.front()}, {allocatorOutOfMemory()}) &&
               sameReports({reports[reports.size() - 2], reports.back()}, {cannotDeserializeTree(), damaged}))
        treeSeen = true;
      else
        ADD_FAILURE() << "allocation " << n << ": " << sameReports(reports, {}).message();
    }
    EXPECT_TRUE(bufferSeen && factorySeen && deserializerSeen && treeSeen) << function;
    EXPECT_GE(n, 8u);
  }
}

TEST(KyCInventoryDataExtract, everyChangedByteGivesATreeOrReportsOrNeither)
{
  KyBytes section = storedSection(sampleTree().get());
  for (unsigned char& byte : section)
  {
    for (unsigned int change : {0x01u, 0x80u, 0xFFu})
    {
      byte = static_cast<unsigned char>(byte ^ change);
      KyTestPool pool;
      const KyItemPtr root = extractFromMemory(pool, section);
      expectNeverBoth(pool, root);
      treeText(root.get());    // whatever was read can be walked
      byte = static_cast<unsigned char>(byte ^ change);
    }
  }
}

TEST(KyCInventoryDataExtract, everyChangedByteOfTheTreeAloneGivesATreeOrReports)
{
  KyBytes tree = storedTree(sampleTree().get());
  for (unsigned char& byte : tree)
  {
    for (unsigned int value = 0; value < 256; ++value)
    {
      const unsigned char kept = byte;
      byte = static_cast<unsigned char>(value);
      KyTestPool pool;
      const KyItemPtr root = extractFromMemory(pool, sectionAround(tree));
      if (root == nullptr)
        EXPECT_FALSE(pool.takeReports().empty());
      else
        treeText(root.get());
      byte = kept;
    }
  }
}

TEST(KyCInventoryDataExtract, everyTruncationOfAFileGivesReportsOrNeither)
{
  const KySectionFolder folder;
  const KyBytes section = storedSection(sampleTree().get());
  for (std::size_t size = 0; size < section.size(); ++size)
  {
    KyTestPool pool;
    const KyItemPtr root = extractFromFile(pool, folder.file(firstBytes(section, size)));
    // Without its trailer, a section is read through its header as soon as the data is whole.
    EXPECT_TRUE(root == nullptr || size >= section.size() - 24) << size;
    expectNeverBoth(pool, root);
  }
}

// --- Depth --------------------------------------------------------------------------------------------------------------

namespace
{
// A chain of items; the root is level 1.
KyItemPtr chain(unsigned int levels)
{
  KyTestPool pool;
  KyItemPtr top(new KyCInventoryItem(pool, BOARD, "BOARD"));
  for (unsigned int level = 1; level < levels; ++level)
  {
    KyItemPtr next(new KyCInventoryItem(pool, BOARD, "BOARD"));
    EXPECT_EQ(next->addItem(KyCInventoryAddress(), top.get()), next.get());
    top.release();
    top = std::move(next);
  }
  return top;
}
}    // namespace

TEST(KyCInventoryDataExtract, deepestTreeThatIsStoredIsReadBack)
{
  KyTestPool pool;
  const KyBytes section = storedSection(chain(4096).get());
  const KyItemPtr root = extractFromMemory(pool, section);
  EXPECT_EQ(treeText(root.get()).size(), 4096u);
  EXPECT_EQ(storedSection(root.get()), section);
}

TEST(KyCInventoryDataExtract, treeWithTwoParametersOfOneIdIsNotStored)
{
  KyTestPool pool;
  const KyItemPtr root = sampleTree();
  root->createParameter<int>(pool, BOARD[2] / OFFSET, 1, "", true, 0);
  *root->getParameter(BOARD[2] / OFFSET) = *root->getParameter(BOARD[2] / SIZE);
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, root.get());
  const std::string ids = "(" + std::to_string(BOARD.getCategory()) + ", 2) has two parameters of the id " +
                          std::to_string(SIZE.getCategory());
  EXPECT_REPORTS(pool, {0x110180A, "CompositeStart", "Composite " + ids + "; it cannot be stored."},
                 cannotSerializeTree(), cannotSerializeSection());

  // A copy lacks the second one, with a report, and is stored.
  KyCInventoryItem* copy = nullptr;
  root->copyTree(pool, copy);
  const KyItemPtr owner(copy);
  pool.takeReports();
  storedSection(copy);    // expects no report
}

TEST(KyCInventoryDataExtract, treeBeyondTheDepthLimitIsNotStored)
{
  KyTestPool pool;
  const KyItemPtr root = chain(4097);
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, root.get());
  EXPECT_REPORTS(pool, {0x1101802, "", ""}, cannotSerializeTree(), cannotSerializeSection());
}
