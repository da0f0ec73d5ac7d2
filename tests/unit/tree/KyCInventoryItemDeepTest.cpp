// Trees far deeper than any stack would allow to recurse.

#include <memory>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyDeepAddress.h"
#include "support/KySampleTree.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int DEPTH = 100000;

void buildWithOneAddress()
{
  KyTestPool pool;
  const KyCInventoryAddress deep = deepAddress(DEPTH);
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCInventoryItem* const last = root.addPath(pool, deep);
  ASSERT_NE(last, nullptr);
  EXPECT_TRUE(last->getAddress() == deep);
  EXPECT_EQ(root.getItem(deep), last);
  EXPECT_EQ(root.addPath(pool, deep), last);
  EXPECT_EQ(root.getItem(deep / BOARD), nullptr);

  KyCInventoryParameter* const size = root.createParameter<int>(pool, deep / SIZE, 7, "", false, 0);
  ASSERT_NE(size, nullptr);
  EXPECT_EQ(size->getParent(), last);
  EXPECT_TRUE(size->getAddress() == deep / SIZE);
  EXPECT_EQ(root.getValue<int>(pool, deep / SIZE), 7);
}

void buildWithManySteps()
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCInventoryItem* item = &root;
  for (unsigned int n = 0; n < DEPTH; ++n)
    item = item->addPath(pool, BOARD[n % 3 + 1]);
  EXPECT_EQ(item->getAddress().getLength(), DEPTH);
}

void compareAndDetach()
{
  KyTestPool pool;
  const KyCInventoryAddress deep = deepAddress(DEPTH);
  KyCInventoryItem a(pool, ROOT, "ROOT");
  KyCInventoryItem b(pool, ROOT, "ROOT");
  a.addPath(pool, deep);
  b.addPath(pool, deep);
  EXPECT_EQ(KyTreeDifference(a, b), "");

  const std::unique_ptr<KyCInventoryItem> half(a.getFirstSubItem());
  half->detach();
  EXPECT_EQ(b.addItem(deep, half.get()), b.getItem(deep));
  EXPECT_EQ(half->getParent(), b.getItem(deep));
  half->detach();
}
}    // namespace

TEST(KyCInventoryItemDeep, aPathOfAHundredThousandLevelsIsBuiltAndFoundOnASmallStack)
{
  onASmallStack(buildWithOneAddress);
}

TEST(KyCInventoryItemDeep, aHundredThousandStepsOfOneLevelRunOnASmallStack) { onASmallStack(buildWithManySteps); }

TEST(KyCInventoryItemDeep, deepTreesAreComparedAttachedAndDetachedOnASmallStack) { onASmallStack(compareAndDetach); }
