// KyCInventoryItemFactoryAttachTest.cpp: a program of its own, in which the libraries find this KyCComposite::attach
// instead of the base library's, and this operator delete. A parent can refuse a new item for a reason that never
// occurs otherwise, and we see whether the item is deleted.
#include <cstdlib>
#include <new>

#include "inventory/KyCInventoryItemFactory.h"
#include "inventory/KyNInventoryIDs.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyStoredBytes.h"

namespace
{
int s_attachResult = 0;
KyCComposite* s_child = nullptr;    // of the last attach
bool s_childDeleted = false;
}    // namespace

int KyCComposite::attach(KyCComposite* child) noexcept
{
  s_child = child;
  s_childDeleted = false;
  return s_attachResult;
}

void* operator new(std::size_t size)
{
  if (void* const block = std::malloc(size != 0 ? size : 1)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size != 0 ? size : 1); }

void operator delete(void* block) noexcept
{
  if (block != nullptr && block == s_child) s_childDeleted = true;
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { ::operator delete(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { ::operator delete(block); }

namespace
{
class KyCInventoryItemFactoryAttach : public ::testing::TestWithParam<int>
{
};

KyReport reportOf(int result) { return cannotAttach(std::to_string(result).c_str()); }
}    // namespace

TEST_P(KyCInventoryItemFactoryAttach, refusedItemIsDeletedAndReportedWithTheResult)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
  s_attachResult = GetParam();
  EXPECT_EQ(factory.createComposite(pool, 48, 1, "BOARD", asComposite(&root)), nullptr);
  EXPECT_REPORTS(pool, reportOf(GetParam()));
  EXPECT_NE(s_child, nullptr);
  EXPECT_TRUE(s_childDeleted);
}
INSTANTIATE_TEST_SUITE_P(Results, KyCInventoryItemFactoryAttach, ::testing::Values(-1, -2, -4, 1, 2147483647));

TEST(KyCInventoryItemFactoryAttached, itemThatHasAnotherOwnerIsReportedAndLeftAliveKeptOnPurpose)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
  s_attachResult = -3;
  EXPECT_EQ(factory.createComposite(pool, 48, 1, "BOARD", asComposite(&root)), nullptr);
  EXPECT_REPORTS(pool, cannotAttach("-3"));
  ASSERT_NE(s_child, nullptr);
  EXPECT_FALSE(s_childDeleted);
  EXPECT_STREQ(s_child->getDescription(), "BOARD");
  delete asItem(s_child);
  EXPECT_TRUE(s_childDeleted);
}

TEST(KyCInventoryItemFactoryAttached, attachedItemIsTheResult)
{
  KyTestPool pool;
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
  s_attachResult = 0;
  KyCComposite* const node = factory.createComposite(pool, 48, 1, "BOARD", asComposite(&root));
  EXPECT_EQ(node, s_child);
  EXPECT_FALSE(s_childDeleted);
  delete asItem(node);    // nothing was really attached
}
