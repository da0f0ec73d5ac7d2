// Folding one tree into another: mergeTree.

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
const KyReport s_cannotMerge = {0x1300803, "mergeTree",
                                "Internal error. Kyrel Support information: Cannot merge inventory tree."};

KyReport alreadyExists(const char* function, const std::string& id, const std::string& place)
{
  return {0x130081A, function,
          "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID " + id + " at " +
              place + ". The ID already exists."};
}

// The target and the source of one merge; what is left of them when the test ends is deleted.
class KyCMerge
{
public:
  KyCMerge(const char* targetText, const char* sourceText)
      : target(KySampleTree(targetText).release()), source(KySampleTree(sourceText).release())
  {
  }
  ~KyCMerge()
  {
    delete source;
    delete target;
  }
  KyCMerge(const KyCMerge&) = delete;
  KyCMerge& operator=(const KyCMerge&) = delete;

  void merge(KyCErrorListPool& pool, unsigned int flags) { KyCInventoryItem::mergeTree(pool, target, source, flags); }
  void mergeWithoutReports(unsigned int flags)
  {
    KyTestPool pool;
    merge(pool, flags);
  }
  std::string difference(const char* expected) const
  {
    return KyTreeDifference(*target, KySampleTree(expected).root());
  }

  KyCInventoryItem* target;
  KyCInventoryItem* source;
};

// BOARD of the target has its shared data item for a friend, as linking makes it.
void link(KyCMerge& trees)
{
  KyInventoryAccess::setFriend(*trees.target->getItem(BOARD), trees.target->getItem(SHARED_DATA));
}
}    // namespace

TEST(KyCInventoryItemMerge, intoANullTargetHandsOverTheSourceUnchangedWhateverTheFlags)
{
  for (unsigned int flags : {0u, 1u})
  {
    KyTestPool pool;
    KyCInventoryItem* target = nullptr;
    KyCInventoryItem* source = KySampleTree("ROOT NAME=\"a\"; BOARD[2] SIZE=4").release();
    KyCInventoryItem* const root = source;
    KyCInventoryItem::mergeTree(pool, target, source, flags);
    EXPECT_EQ(target, root);
    EXPECT_EQ(source, nullptr);
    EXPECT_EQ(KyTreeDifference(*target, KySampleTree("ROOT NAME=\"a\"; BOARD[2] SIZE=4").root()), "");
    delete target;
  }
}

TEST(KyCInventoryItemMerge, ofANullSourceChangesNothing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT NAME=\"a\"");
  KyCInventoryItem* target = &sample.root();
  KyCInventoryItem* source = nullptr;
  KyCInventoryItem::mergeTree(pool, target, source, 1);
  EXPECT_EQ(target, &sample.root());
  EXPECT_EQ(source, nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT NAME=\"a\"").root()), "");
  target = nullptr;
  KyCInventoryItem::mergeTree(pool, target, source, 1);
  EXPECT_EQ(target, nullptr);
  EXPECT_EQ(source, nullptr);
}

TEST(KyCInventoryItemMerge, ofATreeIntoItselfClearsTheSourceAndChangesNothing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT NAME=\"a\"; BOARD[2] SIZE=4");
  KyCInventoryItem* target = &sample.root();
  KyCInventoryItem* source = target;
  KyCInventoryItem::mergeTree(pool, target, source, 1);
  EXPECT_EQ(target, &sample.root());
  EXPECT_EQ(source, nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT NAME=\"a\"; BOARD[2] SIZE=4").root()), "");
}

TEST(KyCInventoryItemMerge, withoutBit0DropsTheSourcesParametersAlsoAtLowerLevels)
{
  KyCMerge trees("ROOT NAME=\"a\"; BOARD SIZE=1", "ROOT OFFSET=7; BOARD OFFSET=8; BOARD/CPU");
  trees.mergeWithoutReports(0);
  EXPECT_EQ(trees.difference("ROOT NAME=\"a\"; BOARD SIZE=1; BOARD/CPU"), "");
}

TEST(KyCInventoryItemMerge, withBit0MovesTheSourcesParametersAlsoAtLowerLevels)
{
  KyCMerge trees("ROOT NAME=\"a\"; BOARD SIZE=1", "ROOT OFFSET=7; BOARD OFFSET=8; BOARD/CPU");
  KyCInventoryParameter* const moved = trees.source->getParameter(BOARD / OFFSET);
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT NAME=\"a\" OFFSET=7; BOARD SIZE=1 OFFSET=8; BOARD/CPU"), "");
  EXPECT_EQ(trees.target->getParameter(BOARD / OFFSET), moved);
}

TEST(KyCInventoryItemMerge, aParameterOnBothSidesKeepsTheTargetsValueAndType)
{
  KyCMerge trees("ROOT NAME=\"a\"; BOARD SIZE=1", "ROOT NAME=\"b\"; BOARD SIZE=\"large\"");
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT NAME=\"a\"; BOARD SIZE=1"), "");
}

TEST(KyCInventoryItemMerge, ignoresAllFlagsButBit0)
{
  KyCMerge without("ROOT", "ROOT SIZE=1");
  without.mergeWithoutReports(0xFFFFFFFE);
  EXPECT_EQ(without.difference("ROOT"), "");
  KyCMerge with("ROOT", "ROOT SIZE=1");
  with.mergeWithoutReports(0xFFFFFFFF);
  EXPECT_EQ(with.difference("ROOT SIZE=1"), "");
}

TEST(KyCInventoryItemMerge, aSubItemOfTheSameIDAndIndexIsMergedIntoTheTargets)
{
  KyCMerge trees("ROOT/BOARD[2]/CPU[1]", "ROOT/BOARD[2]/CPU[2]");
  KyCInventoryItem* const board = trees.target->getItem(BOARD[2]);
  KyCInventoryItem* const cpu = trees.source->getItem(BOARD[2] / CPU[2]);
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT/BOARD[2]/CPU[1]; BOARD[2]/CPU[2]"), "");
  EXPECT_EQ(trees.target->getItem(BOARD[2]), board);
  EXPECT_EQ(trees.target->getItem(BOARD[2] / CPU[2]), cpu);
}

TEST(KyCInventoryItemMerge, aSubItemOfAnotherIndexIsMovedBesideTheTargets)
{
  KyCMerge trees("ROOT/BOARD[1] SIZE=1", "ROOT/BOARD[2] SIZE=2; BOARD[2]/CPU NAME=\"x\"");
  KyCInventoryItem* const board = trees.source->getItem(BOARD[2]);
  trees.mergeWithoutReports(0);
  EXPECT_EQ(trees.target->getItem(BOARD[2]), board);
  EXPECT_EQ(trees.difference("ROOT/BOARD[1] SIZE=1; BOARD[2] SIZE=2; BOARD[2]/CPU NAME=\"x\""), "");
}

TEST(KyCInventoryItemMerge, whatIsMovedKeepsItsAuxiliaryInfoAndPendingValue)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCMerge trees("ROOT", "ROOT SIZE=1; UPDATE_ELEMENT OFFSET=2");
  auto* const updater = new KyCCountedUpdater(destroyed);
  trees.source->getItem(UPDATE_ELEMENT)->setUpdater(pool, updater);
  trees.source->getParameter(SIZE)->setCheckAndWriteMethod(pool, nullptr, neverCalled, BOARD / NAME, &destroyed);
  trees.source->getParameter(UPDATE_ELEMENT / OFFSET)->setUpdateMethod(pool, neverCalled);
  auto* const pending = new KyCInventoryParameter(pool, KyCInventoryAddress(0u), nullptr, 7, nullptr, true, 0);
  writeInfoOf(*trees.source->getParameter(SIZE))->setDesignatedValue(pending);
  trees.merge(pool, 1);
  EXPECT_EQ(writeInfoOf(*trees.target->getParameter(SIZE))->getDesignatedValue(), pending);
  EXPECT_EQ(trees.target->getItem(UPDATE_ELEMENT)->getUpdater(), updater);
  EXPECT_EQ(trees.target->getParameter(SIZE)->getWriteMethod(), &neverCalled);
  EXPECT_EQ(trees.target->getParameter(SIZE)->getCustomPointer(), &destroyed);
  EXPECT_EQ(trees.target->getParameter(UPDATE_ELEMENT / OFFSET)->getUpdateMethod(), &neverCalled);
  EXPECT_EQ(destroyed, 0u);
}

TEST(KyCInventoryItemMerge, theTargetRootKeepsItsIDAndDescription)
{
  KyCMerge trees("ROOT description=\"mine\"", "BOARD[7] description=\"yours\"; BOARD[7]/CPU");
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT description=\"mine\"; CPU"), "");
}

TEST(KyCInventoryItemMerge, withoutAFailureTheSourceRootIsGone)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCMerge trees("ROOT/UPDATE_ELEMENT", "UPDATE_ELEMENT NAME=\"x\"; UPDATE_ELEMENT/UPDATE_ELEMENT");
  KyCInventoryItem* const merged = trees.source->getFirstSubItem();
  trees.source->setUpdater(pool, new KyCCountedUpdater(destroyed));
  merged->setUpdater(pool, new KyCCountedUpdater(destroyed));
  trees.merge(pool, 1);
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(destroyed, 2u) << "the root and the sub-item that was merged";
  EXPECT_EQ(trees.target->getItem(UPDATE_ELEMENT)->getUpdater(), nullptr) << "stays the target's";
}

TEST(KyCInventoryItemMerge, aSourceThatHangsInATreeIsTakenOutOfIt)
{
  KyTestPool pool;
  KySampleTree other("ROOT/BOARD[1]; BOARD[2]/CPU");
  KySampleTree sample("ROOT");
  KyCInventoryItem* target = &sample.root();
  KyCInventoryItem* source = other.item("BOARD[2]");
  KyCInventoryItem::mergeTree(pool, target, source, 1);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/CPU").root()), "");
  EXPECT_EQ(KyTreeDifference(other.root(), KySampleTree("ROOT/BOARD[1]").root()), "");
}

TEST(KyCInventoryItemMerge, ofTwoLikeSubItemsTheSecondIsMergedIntoTheFirst)
{
  KyCMerge trees("ROOT", "ROOT/BOARD[1] SIZE=1; BOARD[2] OFFSET=2");
  KyMasterReports master;
  trees.source->getItem(BOARD[2])->setID(BOARD[1]);
  EXPECT_EQ(master.takeReports().size(), 1u) << "renamed all the same";
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT/BOARD[1] SIZE=1 OFFSET=2"), "");
}

TEST(KyCInventoryItemMerge, aSubItemWithTheIDOfATargetParameterIsReportedAndFoundInNeitherTree)
{
  KyTestPool pool;
  KyCMerge trees("ROOT BOARD=1", "ROOT/BOARD[2]/CPU; DEVICE");
  const std::unique_ptr<KyCInventoryItem> givenUp(trees.source->getItem(BOARD[2]));
  trees.merge(pool, 1);
  EXPECT_REPORTS(pool, alreadyExists("mergeTree", "BOARD[2]", "root item"));
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(trees.difference("ROOT BOARD=1; DEVICE"), "") << "the level goes on";
  EXPECT_EQ(givenUp->getParent(), nullptr);
  EXPECT_EQ(KyTreeDifference(*givenUp, KySampleTree("BOARD[2]/CPU").root()), "") << "and it is not deleted";
}

TEST(KyCInventoryItemMerge, aSubItemGivenUpNamesTheTargetsAddressAndEndsEveryLevelAbove)
{
  KyTestPool pool;
  KyCMerge trees("ROOT/BOARD[1]/IOCHANNEL[3] CPU=1",
                 "ROOT/BOARD[1]/IOCHANNEL[3]/CPU; BOARD[1]/IOCHANNEL[3]/DEVICE; BOARD[1]/IOCHANNEL[4]; BOARD[2]");
  const std::unique_ptr<KyCInventoryItem> givenUp(trees.source->getItem(BOARD / IOCHANNEL[3] / CPU));
  trees.merge(pool, 1);
  EXPECT_REPORTS(pool, alreadyExists("mergeTree", "CPU", "BOARD/IOCHANNEL[3]"), s_cannotMerge, s_cannotMerge);
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(trees.difference("ROOT/BOARD[1]/IOCHANNEL[3] CPU=1; BOARD[1]/IOCHANNEL[3]/DEVICE"), "");
}

TEST(KyCInventoryItemMerge, aParameterThatCannotBeMovedIsReportedAndDeletedAndItsLevelGoesOn)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCMerge trees("ROOT/SIZE", "ROOT NAME=\"x\"");
  trees.source->addParameter(pool, THIS_NODE, new (pool) KyCCountedParameter(pool, destroyed));    // SIZE
  trees.source->createParameter<int>(pool, OFFSET, 3, "", false, 0);
  trees.source->addPath(pool, BOARD);
  trees.merge(pool, 1);
  EXPECT_REPORTS(pool, alreadyExists("addParameter", "SIZE", "root item"), s_cannotMerge);
  EXPECT_EQ(destroyed, 1u);
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(KyTreeDifference(*trees.target, KySampleTree("ROOT NAME=\"x\" OFFSET=3; SIZE; BOARD").root()), "");
}

TEST(KyCInventoryItemMerge, aParameterThatCannotBeMovedEndsEveryLevelAboveItsOwnKeptOnPurpose)
{
  KyTestPool pool;
  KyCMerge trees("ROOT/BOARD[1]/IOCHANNEL/SIZE",
                 "ROOT/BOARD[1]/IOCHANNEL SIZE=1 OFFSET=2; BOARD[1]/IOCHANNEL/CPU; BOARD[1]/DEVICE; BOARD[2]");
  trees.merge(pool, 1);
  EXPECT_REPORTS(pool, alreadyExists("addParameter", "SIZE", "BOARD/IOCHANNEL"), s_cannotMerge, s_cannotMerge,
                 s_cannotMerge);
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(trees.difference("ROOT/BOARD[1]/IOCHANNEL OFFSET=2; BOARD[1]/IOCHANNEL/SIZE; BOARD[1]/IOCHANNEL/CPU"), "");
}

TEST(KyCInventoryItemMerge, reportsFromBeforeTheMergeDoNotCount)
{
  KyTestPool pool;
  KyCMerge trees("ROOT/BOARD[1]/SIZE", "ROOT/BOARD[1]/CPU; BOARD[2]");
  trees.target->getValue<int>(pool, NAME);
  EXPECT_EQ(pool.takeReports().size(), 1u);
  trees.merge(pool, 1);
  EXPECT_EQ(trees.difference("ROOT/BOARD[1]/SIZE; BOARD[1]/CPU; BOARD[2]"), "");
}

TEST(KyCInventoryItemMerge, aTargetInsideTheSourceIsDestroyedWithTheSourceKeptOnPurpose)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCInventoryItem* source = KySampleTree("ROOT/DEVICE; BOARD/UPDATE_ELEMENT; CPU").release();
  KyCInventoryItem* target = source->getItem(BOARD / UPDATE_ELEMENT);
  target->setUpdater(pool, new KyCCountedUpdater(destroyed));
  KyCInventoryItem::mergeTree(pool, target, source, 1);
  EXPECT_REPORTS(pool, s_cannotMerge);
  EXPECT_EQ(source, nullptr);
  EXPECT_EQ(destroyed, 1u);
}

TEST(KyCInventoryItemMerge, aTargetThatIsTheSourcesSubItemIsDestroyedWithTheSourceKeptOnPurpose)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCInventoryItem* source = KySampleTree("ROOT/UPDATE_ELEMENT/UPDATE_ELEMENT/CPU").release();
  KyCInventoryItem* target = source->getItem(UPDATE_ELEMENT);
  target->setUpdater(pool, new KyCCountedUpdater(destroyed));
  KyCInventoryItem::mergeTree(pool, target, source, 1);
  EXPECT_REPORTS(pool, s_cannotMerge, s_cannotMerge);    // the level below the like-named one fails first
  EXPECT_EQ(source, nullptr);
  EXPECT_EQ(destroyed, 1u);
}

TEST(KyCInventoryItemMerge, aSourceInsideTheTargetGivesWhatItHasToTheTarget)
{
  KyCMerge trees("ROOT/BOARD[1]; BOARD[2]/CPU; BOARD[2]/BOARD[2]/DEVICE", "ROOT");
  delete trees.source;
  trees.source = trees.target->getItem(BOARD[2]);
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(trees.difference("ROOT/BOARD[1]; CPU; DEVICE"), "");
}

TEST(KyCInventoryItemMerge, aParameterThatTheTargetsFriendHasStaysInTheSource)
{
  KyCMerge trees("ROOT/BOARD; SHARED_DATA SIZE=1", "ROOT/BOARD SIZE=2 OFFSET=3");
  link(trees);
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT/BOARD OFFSET=3; SHARED_DATA SIZE=1"), "");
}

TEST(KyCInventoryItemMerge, aSubItemThatTheTargetsFriendHasIsMergedIntoTheSharedData)
{
  KyCMerge trees("ROOT/BOARD; SHARED_DATA/CPU SIZE=1", "ROOT/BOARD/CPU OFFSET=2");
  link(trees);
  trees.mergeWithoutReports(1);
  EXPECT_EQ(trees.difference("ROOT/BOARD; SHARED_DATA/CPU SIZE=1 OFFSET=2"), "");
}

TEST(KyCInventoryItemMerge, aSubItemWithTheIDOfAParameterOfTheTargetsFriendIsGivenUp)
{
  KyTestPool pool;
  KyCMerge trees("ROOT/BOARD; SHARED_DATA CPU=1", "ROOT/BOARD/CPU[4]");
  link(trees);
  const std::unique_ptr<KyCInventoryItem> givenUp(trees.source->getItem(BOARD / CPU[4]));
  trees.merge(pool, 1);
  EXPECT_REPORTS(pool, alreadyExists("mergeTree", "CPU[4]", "BOARD"), s_cannotMerge);
  EXPECT_EQ(trees.difference("ROOT/BOARD; SHARED_DATA CPU=1"), "");
}

TEST(KyCInventoryItemMerge, aParameterWithTheIDOfAnItemOfTheTargetsFriendCannotBeMoved)
{
  KyTestPool pool;
  KyCMerge trees("ROOT/BOARD; SHARED_DATA/SIZE", "ROOT/BOARD SIZE=1");
  link(trees);
  trees.merge(pool, 1);
  EXPECT_REPORTS(pool, alreadyExists("addParameter", "SIZE", "BOARD"), s_cannotMerge, s_cannotMerge);
  EXPECT_EQ(trees.difference("ROOT/BOARD; SHARED_DATA/SIZE"), "");
}

TEST(KyCInventoryItemMerge, aMovedItemKeepsItsFriend)
{
  KyTestPool pool;
  KyCMerge trees("ROOT", "ROOT/BOARD; SHARED_DATA SIZE=1");
  KyInventoryAccess::setFriend(*trees.source->getItem(BOARD), trees.source->getItem(SHARED_DATA));
  trees.merge(pool, 1);
  EXPECT_EQ(trees.target->getValue<int>(pool, BOARD / SIZE), 1);
}

TEST(KyCInventoryItemMerge, withNoMemoryForItsLevelsGivesUpAllOfThem)
{
  KyTestPool pool;
  KyCMerge trees("ROOT", "ROOT");
  trees.target->addPath(pool, deepAddress(40));
  trees.source->addPath(pool, deepAddress(40) / CPU);
  KyNPoolAllocator::failAfter(0);
  trees.merge(pool, 0);
  KyNPoolAllocator::reset();
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), 33u);
  EXPECT_EQ(reports[0].code, 0x1000000u);
  for (std::size_t n = 1; n < reports.size(); ++n)
    EXPECT_TRUE(sameReports({reports[n]}, {s_cannotMerge})) << n;
  EXPECT_EQ(trees.source, nullptr);
  EXPECT_EQ(trees.target->getItem(deepAddress(40) / CPU), nullptr);
}

TEST(KyCInventoryItemMerge, deepTreesAreMergedOnASmallStack)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyCInventoryAddress deep = deepAddress(100000);
        KyCMerge trees("ROOT", "ROOT");
        trees.target->addPath(pool, deep);
        trees.source->createParameter<int>(pool, deep / SIZE, 7, "", false, 0);
        trees.source->addPath(pool, deep / CPU);
        trees.merge(pool, 1);
        EXPECT_EQ(trees.source, nullptr);
        EXPECT_EQ(trees.target->getValue<int>(pool, deep / SIZE), 7);
        EXPECT_NE(trees.target->getItem(deep / CPU), nullptr);
      });
}

TEST(KyCInventoryItemMerge, aFailureInADeepTreeEndsAllItsLevelsOnASmallStack)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyCInventoryAddress deep = deepAddress(100000);
        KyCMerge trees("ROOT", "ROOT");
        trees.target->addPath(pool, deep / SIZE);
        trees.source->createParameter<int>(pool, deep / SIZE, 7, "", false, 0);
        trees.merge(pool, 1);
        EXPECT_EQ(trees.source, nullptr);
        EXPECT_EQ(pool.takeReports().size(), 100002u);    // the parameter's two, and one for each level above its own
      });
}

// Quadratic, this would take minutes.
TEST(KyCInventoryItemMerge, wideTreesAreMergedInNearLinearTime)
{
  KyTestPool pool;
  KyCMerge trees("ROOT", "ROOT");
  for (unsigned int n = 1; n <= 50000; ++n)
  {
    trees.target->addPath(pool, BOARD[n]);
    trees.source->addPath(pool, BOARD[n] / CPU);
    trees.source->addPath(pool, DEVICE[n]);
  }
  trees.merge(pool, 1);
  EXPECT_NE(trees.target->getItem(BOARD[50000] / CPU), nullptr);
  EXPECT_NE(trees.target->getItem(DEVICE[50000]), nullptr);
}

TEST(KyCInventoryItemMerge, manyParametersAreMovedInNearLinearTime)
{
  KyTestPool pool;
  KyCMerge trees("ROOT", "ROOT");
  for (unsigned int id = 10000; id < 110000; ++id)
  {
    KyCInventoryItem& item = id % 2 == 0 ? *trees.target : *trees.source;
    item.addParameter(pool, THIS_NODE,
                      new (pool) KyCInventoryParameter(pool, KyCInventoryAddress(id), "", 1, "", false, 0));
  }
  trees.merge(pool, 1);
  EXPECT_NE(trees.target->getParameterByOrdinalNumber(99999), nullptr);
  EXPECT_EQ(trees.target->getParameterByOrdinalNumber(100000), nullptr);
}

TEST(KyCInventoryItemMerge, aMergedTreeStoresAndReadsBackEqual)
{
  KyCMerge trees("ROOT NAME=\"a\"; BOARD[2] SIZE=4",
                 "ROOT OFFSET:Float32=1.5; BOARD[2]/CPU VERSION:Version=1.2.3.4; BOARD");
  trees.mergeWithoutReports(1);
  KyTestPool pool;
  const KyBytes stored = storedSection(trees.target);
  const KyItemPtr read = extractFromMemory(pool, stored);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(KyTreeDifference(*trees.target, *read), "");
  EXPECT_EQ(storedSection(read.get()), stored);
}
