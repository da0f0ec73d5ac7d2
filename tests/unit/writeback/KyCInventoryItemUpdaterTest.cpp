// The updater of an update element.

#include <memory>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"
#include "unit/writeback/KyDestructionCounters.h"

using namespace KyNInventoryIDs;

TEST(KyCInventoryItemUpdater, isTakenByAnUpdateElementOfAnyIndex)
{
  for (const unsigned int index : {1u, 7u, 0u})
  {
    KyTestPool pool;
    unsigned int destroyed = 0;
    KyCInventoryItem item(pool, UPDATE_ELEMENT[index], "UPDATE_ELEMENT");
    KyIUpdater* const updater = new KyCCountedUpdater(destroyed);
    item.setUpdater(pool, updater);
    EXPECT_EQ(item.getUpdater(), updater) << index;
  }
}

TEST(KyCInventoryItemUpdater, isDestroyedWithItsItem)
{
  unsigned int destroyed = 0;
  {
    KyTestPool pool;
    KySampleTree sample("ROOT/BOARD/UPDATE_ELEMENT[2]");
    sample.item("BOARD/UPDATE_ELEMENT[2]")->setUpdater(pool, new KyCCountedUpdater(destroyed));
    EXPECT_EQ(destroyed, 0u);
  }
  EXPECT_EQ(destroyed, 1u);
}

TEST(KyCInventoryItemUpdater, isRefusedByAnyOtherItemAndStaysTheCallers)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  {
    KyCCountedUpdater updater(destroyed);
    KySampleTree sample("ROOT/BOARD[2]");
    sample.item("BOARD[2]")->setUpdater(pool, &updater);
    EXPECT_REPORTS(pool, {0x1300818, "setUpdater",
                          "Internal error. Kyrel Support information: Cannot set updater for item BOARD[2]."});
    EXPECT_EQ(sample.item("BOARD[2]")->getUpdater(), nullptr);
    sample.root().setUpdater(pool, &updater);
    EXPECT_REPORTS(
        pool, {0x1300818, "setUpdater", "Internal error. Kyrel Support information: Cannot set updater for item ."});
    EXPECT_EQ(destroyed, 0u);
  }
  EXPECT_EQ(destroyed, 1u);
}

TEST(KyCInventoryItemUpdater, aSecondOneIsRefusedAndTheFirstStays)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCCountedUpdater second(destroyed);
  KySampleTree sample("ROOT/UPDATE_ELEMENT");
  KyCInventoryItem* const item = sample.item("UPDATE_ELEMENT");
  KyIUpdater* const first = new KyCCountedUpdater(destroyed);
  item->setUpdater(pool, first);
  item->setUpdater(pool, &second);
  EXPECT_REPORTS(pool, {0x1300818, "setUpdater",
                        "Internal error. Kyrel Support information: Cannot set updater for item UPDATE_ELEMENT."});
  EXPECT_EQ(item->getUpdater(), first);
  EXPECT_EQ(destroyed, 0u);
}

TEST(KyCInventoryItemUpdater, aNullOneIsReportedOnAnUpdateElement)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/UPDATE_ELEMENT[3]");
  sample.item("UPDATE_ELEMENT[3]")->setUpdater(pool, nullptr);
  EXPECT_REPORTS(pool, {0x1300817, "setUpdater",
                        "Internal error. Kyrel Support information: Cannot set update create method for item "
                        "UPDATE_ELEMENT[3]."});
  EXPECT_EQ(sample.item("UPDATE_ELEMENT[3]")->getUpdater(), nullptr);
}

TEST(KyCInventoryItemUpdater, aNullOneIsReportedLikeAnyOtherWhereNoneIsTaken)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KySampleTree sample("ROOT/BOARD; UPDATE_ELEMENT");
  sample.item("BOARD")->setUpdater(pool, nullptr);
  EXPECT_REPORTS(
      pool, {0x1300818, "setUpdater", "Internal error. Kyrel Support information: Cannot set updater for item BOARD."});
  sample.item("UPDATE_ELEMENT")->setUpdater(pool, new KyCCountedUpdater(destroyed));
  sample.item("UPDATE_ELEMENT")->setUpdater(pool, nullptr);
  EXPECT_REPORTS(pool, {0x1300818, "setUpdater",
                        "Internal error. Kyrel Support information: Cannot set updater for item UPDATE_ELEMENT."});
}

TEST(KyCInventoryItemUpdater, infoOfAnyKindKeepsAnotherOneOut)
{
  KyTestPool pool;
  unsigned int destroyed = 0;
  KyCCountedUpdater updater(destroyed);
  KyCInventoryItem item(pool, UPDATE_ELEMENT, "UPDATE_ELEMENT");
  KyInventoryAccess::setAuxInfo(item, new KyNInventoryParameter::KyCAuxInfoParamUpdate(nullptr));
  item.setUpdater(pool, &updater);
  EXPECT_REPORTS(pool,
                 {0x1300818, "setUpdater", "Internal error. Kyrel Support information: Cannot set updater for item ."});
  EXPECT_EQ(item.getUpdater(), nullptr);    // the info is of another kind
}
