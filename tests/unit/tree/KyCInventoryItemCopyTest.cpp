// Deep copies of a subtree: copyTree.

#include <memory>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyDeepAddress.h"
#include "support/KyPendingValue.h"
#include "support/KySampleTree.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"
#include "unit/persistence/KyStoredBytes.h"
#include "unit/tree/KyMasterReports.h"
#include "unit/writeback/KyDestructionCounters.h"

using namespace KyNInventoryIDs;

namespace
{
const char s_everyType[] =
    "ROOT/BOARD[2] description=\"the second board\"\n"
    "BOARD[2] NAME String \"I/O <fast>\" unit=\"a unit of more than six characters\" modifiable relevance=7 "
    "description=\"what it is called\"\n"
    "BOARD[2] SIZE:Int8=-1 OFFSET:Int16=-2 ID:Int32=-3 TYPE_ID:Long64=-4\n"
    "BOARD[2]/CPU SIZE:UInt8=1 OFFSET:UInt16=2 ID:UInt32=3 TYPE_ID:ULong64=4\n"
    "BOARD[2]/CPU VOLTAGE_MAX:Float32=1.5 VERSION:Version=1.2.3.4 ACTIVE:Float64=2.5\n"
    "BOARD[2]/CPU BOARD_TYPE 0x777 0 relevance=4294967295\n"
    "BOARD[1]; DEVICE/IOCHANNEL[9]/CPU";

const KyReport s_outOfMemory = {0x1000000, "", "Out of memory."};
const KyReport s_cannotAllocate = {
    0x130080C, "copyTree", "Internal error. Kyrel Support information: Cannot allocate KyCInventoryItem object."};
const KyReport s_cannotHook = {0x130080E, "copyTree",
                               "Internal error. Kyrel Support information: Cannot hook KyCInventoryParameter object."};
const KyReport s_cannotCopySubtree = {0x130080F, "copyTree",
                                      "Internal error. Kyrel Support information: Cannot copy subtree."};

KyReport cannotAdd(const std::string& id, const std::string& parent)
{
  return {0x1300816, "copyTree",
          "Internal error. Kyrel Support information: Cannot add item " + id + " to inventory tree below item " +
              parent + "."};
}

KyItemPtr copyOf(KyCErrorListPool& pool, const KyCInventoryItem& original)
{
  KyCInventoryItem poison(pool, DUMMY, "");
  KyCInventoryItem* copy = &poison;
  original.copyTree(pool, copy);
  EXPECT_NE(copy, &poison);
  return KyItemPtr(copy);
}

// Two parameters of one ID in an item, which only an assignment brings about.
void makeLike(KyCInventoryParameter& parameter, const KyCInventoryParameter& other) { parameter = other; }

// A sibling or parameter of the same ID comes about by renaming.
void rename(KyCInventoryItem& item, const KyCInventoryAddress& id)
{
  KyMasterReports master;
  item.setID(id);
  EXPECT_EQ(master.takeReports().size(), 1u) << "renamed all the same";
}
}    // namespace

TEST(KyCInventoryItemCopy, hasTheSameIDsDescriptionsValuesUnitsFlagsAndRelevancesInTheSameOrder)
{
  KyTestPool pool;
  const KySampleTree sample(s_everyType);
  const KyItemPtr copy = copyOf(pool, sample.root());
  EXPECT_EQ(KyTreeDifference(*copy, sample.root()), "");
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree(s_everyType).root()), "") << "the original is as it was";
}

TEST(KyCInventoryItemCopy, ofAnInnerItemIsARootOfItsOwn)
{
  KyTestPool pool;
  KySampleTree sample(s_everyType);
  const KyItemPtr copy = copyOf(pool, *sample.item("DEVICE/IOCHANNEL[9]"));
  EXPECT_EQ(copy->getParent(), nullptr);
  EXPECT_EQ(copy->getNext(), nullptr);
  EXPECT_TRUE(copy->getAddress().isEmpty());
  EXPECT_EQ(copy->getFirstSubItem()->getAddress(), CPU);
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("IOCHANNEL[9]/CPU").root()), "");
}

TEST(KyCInventoryItemCopy, ofAnItemWithNothingInItIsThatItem)
{
  KyTestPool pool;
  const KyItemPtr copy = copyOf(pool, KySampleTree("BOARD[4]").root());
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("BOARD[4]").root()), "");
}

TEST(KyCInventoryItemCopy, leavesOutUpdatersMethodsPendingValuesAndSharedData)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KySampleTree sample("ROOT SIZE=1 OFFSET=2; UPDATE_ELEMENT; SHARED_DATA NAME=\"x\"");
  sample.item("UPDATE_ELEMENT")->setUpdater(pool, new KyCCountedUpdater(destroyed));
  sample.parameter("SIZE")->setCheckAndWriteMethod(pool, neverCalled, neverCalled, BOARD / NAME, &destroyed);
  sample.parameter("OFFSET")->setUpdateMethod(pool, neverCalled);
  auto* const pending = new KyCInventoryParameter(pool, KyCInventoryAddress(0u), nullptr, 7, nullptr, true, 0);
  writeInfoOf(*sample.parameter("SIZE"))->setDesignatedValue(pending);
  KyInventoryAccess::setFriend(*sample.item("UPDATE_ELEMENT"), sample.item("SHARED_DATA"));
  KyItemPtr copy = copyOf(pool, sample.root());

  EXPECT_EQ(KyTreeDifference(*copy, sample.root()), "");
  EXPECT_EQ(copy->getItem(UPDATE_ELEMENT)->getUpdater(), nullptr);
  EXPECT_EQ(writeInfoOf(*copy->getParameter(SIZE)), nullptr) << "so nothing is pending in the copy";
  EXPECT_EQ(writeInfoOf(*sample.parameter("SIZE"))->getDesignatedValue(), pending);
  EXPECT_EQ(copy->getParameter(SIZE)->getCheckMethod(), nullptr);
  EXPECT_EQ(copy->getParameter(SIZE)->getWriteMethod(), nullptr);
  EXPECT_EQ(copy->getParameter(SIZE)->getCustomPointer(), nullptr);
  EXPECT_TRUE(copy->getParameter(SIZE)->getRelativeAddress().isEmpty());
  EXPECT_EQ(copy->getParameter(OFFSET)->getUpdateMethod(), nullptr);
  EXPECT_EQ(copy->getParameter(UPDATE_ELEMENT / NAME), nullptr);
  EXPECT_EQ(KyInventoryAccess::getFriend(*copy->getItem(UPDATE_ELEMENT)), nullptr);
  copy.reset();
  EXPECT_EQ(destroyed, 0u) << "the updater is the original's alone";
}

TEST(KyCInventoryItemCopy, itsChangesNeverShowInTheOriginal)
{
  KyTestPool pool;
  KySampleTree sample(s_everyType);
  const KyItemPtr copy = copyOf(pool, sample.root());
  copy->setValue<KyCString>(pool, BOARD[2] / NAME, "changed");
  copy->setValue<KyCVersion>(pool, BOARD[2] / CPU / VERSION, KyCVersion(9, 9, 9, 9));
  copy->getParameter(BOARD[2] / NAME)->setUnit("another unit of more than six characters");
  copy->getItem(BOARD[1])->setID(BOARD[5]);
  copy->createParameter<int>(pool, DEVICE / SIZE, 1, "", false, 0);
  delete copy->getItem(DEVICE / IOCHANNEL[9]);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree(s_everyType).root()), "");
}

TEST(KyCInventoryItemCopy, outlivesTheOriginal)
{
  KyTestPool pool;
  KyItemPtr copy;
  {
    const KySampleTree sample(s_everyType);
    copy = copyOf(pool, sample.root());
  }
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree(s_everyType).root()), "");
}

TEST(KyCInventoryItemCopy, storesAsTheSameBytesAndReadsBackEqual)
{
  KyTestPool pool;
  KySampleTree sample("ROOT NAME=\"x\"; BOARD[2] SIZE=4 OFFSET:Float32=1.5; BOARD[2]/CPU VERSION:Version=1.2.3.4");
  const KyItemPtr copy = copyOf(pool, sample.root());
  const KyBytes stored = storedSection(copy.get());
  EXPECT_EQ(stored, storedSection(&sample.root()));
  EXPECT_EQ(KyTreeDifference(*extractFromMemory(pool, stored), sample.root()), "");
}

TEST(KyCInventoryItemCopy, aParameterThatCannotBeAddedIsReportedAndMissing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2] SIZE=1 OFFSET=2 ID=3");
  makeLike(*sample.parameter("BOARD[2]/OFFSET"), *sample.parameter("BOARD[2]/SIZE"));
  const KyItemPtr copy = copyOf(pool, *sample.item("BOARD[2]"));
  const std::string size = std::to_string(SIZE.getCategory());
  const std::string board = std::to_string(BOARD.getCategory());
  EXPECT_REPORTS(pool,
                 {0x1101002, "addParameter",
                  "Parameter " + size + " cannot be added to composite (" + board + ", 2), which has one of that id."},
                 {0x1300812, "addParameter", "Cannot add parameter with ID SIZE at root item."}, s_cannotHook);
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("BOARD[2] SIZE=1 ID=3").root()), "");
}

TEST(KyCInventoryItemCopy, whatIsMissingBelowIsReportedOnceForEachLevelAbove)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD/CPU SIZE=1 OFFSET=2; BOARD/CPU/DEVICE; BOARD/IOCHANNEL; BOARD[2]");
  makeLike(*sample.parameter("BOARD/CPU/OFFSET"), *sample.parameter("BOARD/CPU/SIZE"));
  const KyItemPtr copy = copyOf(pool, sample.root());
  EXPECT_REPORTS(pool, {0x1101002, "addParameter", ""},
                 {0x1300812, "addParameter", "Cannot add parameter with ID SIZE at root item."}, s_cannotHook,
                 s_cannotCopySubtree, s_cannotCopySubtree);
  EXPECT_EQ(KyTreeDifference(*copy,
                             KySampleTree("ROOT/BOARD/CPU SIZE=1; BOARD/CPU/DEVICE; BOARD/IOCHANNEL; BOARD[2]").root()),
            "")
      << "the copy goes on behind the gap";
}

TEST(KyCInventoryItemCopy, ofTwoLikeSubItemsTheSecondIsReportedByIDsAndMissing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/DEVICE/BOARD[3]/CPU[1]; DEVICE/BOARD[3]/CPU[2]/IOCHANNEL; DEVICE/BOARD[3]/CPU[4]");
  rename(*sample.item("DEVICE/BOARD[3]/CPU[2]"), CPU[1]);
  const KyItemPtr copy = copyOf(pool, sample.root());
  EXPECT_REPORTS(pool, cannotAdd("CPU", "BOARD[3]"), s_cannotCopySubtree, s_cannotCopySubtree);
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("ROOT/DEVICE/BOARD[3]/CPU[1]; DEVICE/BOARD[3]/CPU[4]").root()), "");
}

TEST(KyCInventoryItemCopy, aSubItemWithTheIDOfAParameterIsReportedAndMissing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT BOARD=1; CPU/DEVICE");
  rename(*sample.item("CPU"), BOARD[2]);
  const KyItemPtr copy = copyOf(pool, sample.root());
  EXPECT_REPORTS(pool, cannotAdd("BOARD[2]", "ROOT"));
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("ROOT BOARD=1").root()), "");
}

TEST(KyCInventoryItemCopy, aFailedSubtreeThatCannotBeAddedEitherReportsBothInThisOrder)
{
  KyTestPool pool;
  KySampleTree sample("ROOT BOARD=1; CPU SIZE=1 OFFSET=2");
  makeLike(*sample.parameter("CPU/OFFSET"), *sample.parameter("CPU/SIZE"));
  rename(*sample.item("CPU"), BOARD);
  const KyItemPtr copy = copyOf(pool, sample.root());
  EXPECT_REPORTS(pool, {0x1101002, "addParameter", ""}, {0x1300812, "addParameter", ""}, s_cannotHook,
                 s_cannotCopySubtree, cannotAdd("BOARD", "ROOT"));
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("ROOT BOARD=1").root()), "");
}

TEST(KyCInventoryItemCopy, aRootThatCannotBeCopiedGivesNull)
{
  KyTestPool pool;
  KySampleTree sample("ROOT description=\"needs a block\"; BOARD SIZE=1");
  KyCInventoryItem* copy = &sample.root();
  KyNPoolAllocator::failAfter(0);
  sample.root().copyTree(pool, copy);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, s_outOfMemory, s_cannotAllocate);
  EXPECT_EQ(copy, nullptr);
}

TEST(KyCInventoryItemCopy, aSubItemThatCannotBeCopiedIsMissingAndTheRestGoesOn)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD/CPU description=\"needs a block\"; BOARD/CPU/IOCHANNEL; BOARD/DEVICE; BOARD[2]");
  KyNPoolAllocator::failAfter(0);
  const KyItemPtr copy = copyOf(pool, sample.root());
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, s_outOfMemory, s_cannotAllocate, s_cannotCopySubtree, s_cannotCopySubtree);
  EXPECT_EQ(KyTreeDifference(*copy, KySampleTree("ROOT/BOARD/DEVICE; BOARD[2]").root()), "");
}

TEST(KyCInventoryItemCopy, withNoMemoryForTheLevelsOfADeepTreeTheCopyEndsThere)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  sample.root().addPath(pool, deepAddress(40));
  KyNPoolAllocator::failAfter(0);
  const KyItemPtr copy = copyOf(pool, sample.root());
  KyNPoolAllocator::reset();
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), 34u);
  EXPECT_EQ(reports[0].code, 0x1000000u);
  for (std::size_t n = 1; n < reports.size(); ++n)
    EXPECT_TRUE(sameReports({reports[n]}, {s_cannotCopySubtree})) << n;
  EXPECT_NE(copy->getItem(deepAddress(32)), nullptr);
  EXPECT_EQ(copy->getItem(deepAddress(33)), nullptr);
}

TEST(KyCInventoryItemCopy, deepTreesAreCopiedOnASmallStack)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        KySampleTree sample("ROOT");
        sample.root().createParameter<int>(pool, deepAddress(100000) / SIZE, 7, "", false, 0);
        const KyItemPtr copy = copyOf(pool, sample.root());
        EXPECT_EQ(KyTreeDifference(*copy, sample.root()), "");
      });
}

// Quadratic, this would take minutes.
TEST(KyCInventoryItemCopy, wideTreesAreCopiedInNearLinearTime)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  for (unsigned int n = 1; n <= 100000; ++n)
    sample.root().addPath(pool, BOARD[n]);
  const KyItemPtr copy = copyOf(pool, sample.root());
  EXPECT_EQ(KyTreeDifference(*copy, sample.root()), "");
}
