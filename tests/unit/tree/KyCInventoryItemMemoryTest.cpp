// Every pool allocation of the building operations fails once.

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyPoolFailure.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
const KyReport s_outOfMemory = {0x1000000, "", "Out of memory."};
const KyReport s_noPath = {0x1300809, "createParameter", "Cannot find or create path."};

// A value that needs a block of its own, in a unit that needs one too.
KyCInventoryParameter* createVersion(KyCErrorListPool& pool, KyCInventoryItem& root)
{
  return root.createParameter<KyCVersion>(pool, BOARD / IOCHANNEL / VERSION, KyCVersion(1, 2, 3, 4),
                                          "a unit of more than six characters", true, 1);
}
}    // namespace

TEST(KyCInventoryItemMemory, addPathKeepsTheLevelsBeforeTheFailedAllocation)
{
  const char* const expected[] = {"ROOT", "ROOT/BOARD", "ROOT/BOARD/IOCHANNEL"};
  for (unsigned int n = 0; n < 3; ++n)
  {
    KyTestPool pool;
    KySampleTree sample("ROOT");
    {
      const KyFailNext fail(n);
      EXPECT_EQ(sample.root().addPath(pool, BOARD / IOCHANNEL / DEVICE), nullptr);
    }
    EXPECT_REPORTS(pool, s_outOfMemory);
    EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree(expected[n]).root()), "") << n;
  }
}

TEST(KyCInventoryItemMemory, addPathNeedsOneAllocationForEachNewItem)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  const KyFailNext fail(3);
  EXPECT_NE(sample.root().addPath(pool, BOARD / IOCHANNEL / DEVICE), nullptr);
}

TEST(KyCInventoryItemMemory, createParameterReportsThePathWhenAnItemFails)
{
  const char* const expected[] = {"ROOT", "ROOT/BOARD"};
  for (unsigned int n = 0; n < 2; ++n)
  {
    KyTestPool pool;
    KySampleTree sample("ROOT");
    {
      const KyFailNext fail(n);
      EXPECT_EQ(createVersion(pool, sample.root()), nullptr);
    }
    EXPECT_REPORTS(pool, s_outOfMemory, s_noPath);
    EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree(expected[n]).root()), "") << n;
  }
}

// The parameter itself, its version, its unit.
TEST(KyCInventoryItemMemory, createParameterReportsAndFreesTheParameterWhenAnyPartOfItFails)
{
  for (unsigned int n = 2; n < 5; ++n)
  {
    KyTestPool pool;
    KySampleTree sample("ROOT");
    {
      const KyFailNext fail(n);
      EXPECT_EQ(createVersion(pool, sample.root()), nullptr) << n;
    }
    EXPECT_REPORTS(pool, s_outOfMemory, {0x130080B, "createParameter", "Cannot create parameter VERSION."});
    EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD/IOCHANNEL").root()), "") << n;
  }
}

TEST(KyCInventoryItemMemory, createParameterNeedsNoMoreAllocationsThanThese)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  const KyFailNext fail(5);
  EXPECT_NE(createVersion(pool, sample.root()), nullptr);
}

TEST(KyCInventoryItemMemory, anItemWhoseDescriptionCannotBeCopiedIsBuiltWithoutIt)
{
  KyTestPool pool;
  const KyFailNext fail(0);
  const KyCInventoryItem item(pool, BOARD, "not the name of the ID");
  EXPECT_REPORTS(pool, s_outOfMemory);
  EXPECT_STREQ(item.getDescription(), "");
}

TEST(KyCInventoryItemMemory, aStringThatCannotBeSetKeepsItsValueAndReports)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD NAME=\"old\"");
  const KyFailNext fail(0);
  sample.root().setValue<KyCString>(pool, BOARD / NAME, "a new text of more than six characters");
  EXPECT_REPORTS(pool, s_outOfMemory, {0x1301007, "setValue", "Cannot set value of parameter BOARD/NAME."});
  EXPECT_STREQ(sample.root().getValue<const char*>(pool, BOARD / NAME), "old");
}
