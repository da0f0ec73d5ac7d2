// Every allocation of copying and linking fails once. A program of its own: it replaces the global operator new.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

namespace
{
constexpr unsigned int NEVER = 0xFFFFFFFF;
unsigned int s_left = NEVER;

void* allocateUnlessItsTurn(std::size_t size) noexcept
{
  if (s_left != NEVER && s_left-- == 0)
  {
    s_left = NEVER;
    return nullptr;
  }
  return std::malloc(size != 0 ? size : 1);
}

// The (n+1)-th allocation from here on fails.
class KyCFailingAllocation
{
public:
  explicit KyCFailingAllocation(unsigned int n) { s_left = n; }
  ~KyCFailingAllocation() { s_left = NEVER; }
  KyCFailingAllocation(const KyCFailingAllocation&) = delete;
  KyCFailingAllocation& operator=(const KyCFailingAllocation&) = delete;

  bool wasHit() const { return s_left == NEVER; }
};
}    // namespace

void* operator new(std::size_t size)
{
  void* const block = allocateUnlessItsTurn(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocateUnlessItsTurn(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocateUnlessItsTurn(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

using namespace KyNInventoryIDs;

namespace
{
const char s_text[] =
    "ROOT SIZE=1; BOARD NAME=\"a text of more than six characters\"; BOARD/CPU VERSION:Version=1.2.3.4";

const KyReport s_cannotAllocate = {
    0x130080C, "copyTree", "Internal error. Kyrel Support information: Cannot allocate KyCInventoryItem object."};
const KyReport s_cannotHook = {0x130080E, "copyTree",
                               "Internal error. Kyrel Support information: Cannot hook KyCInventoryParameter object."};
const KyReport s_cannotCopySubtree = {0x130080F, "copyTree",
                                      "Internal error. Kyrel Support information: Cannot copy subtree."};

// Copies with the (n+1)-th allocation failing; null when n is beyond the last one or the root could not be copied.
struct TCopy
{
  std::unique_ptr<KyCInventoryItem> tree;
  bool wasHit = false;
};

TCopy copyWithFailure(KyCErrorListPool& pool, const KyCInventoryItem& original, unsigned int n)
{
  TCopy result;
  KyCInventoryItem* copy = nullptr;
  {
    const KyCFailingAllocation failing(n);
    original.copyTree(pool, copy);
    result.wasHit = failing.wasHit();
  }
  result.tree.reset(copy);
  return result;
}
}    // namespace

TEST(KyCInventoryItemCopyMemory, withNoBlockForTheRootGivesNull)
{
  KyTestPool pool;
  const KySampleTree sample(s_text);
  EXPECT_EQ(copyWithFailure(pool, sample.root(), 0).tree, nullptr);
  EXPECT_REPORTS(pool, s_cannotAllocate);
}

TEST(KyCInventoryItemCopyMemory, withNoBlockForAParameterLeavesItOut)
{
  KyTestPool pool;
  const KySampleTree sample("ROOT SIZE=1 OFFSET=2; BOARD");
  const TCopy copy = copyWithFailure(pool, sample.root(), 1);
  EXPECT_REPORTS(pool, s_cannotHook);
  EXPECT_EQ(KyTreeDifference(*copy.tree, KySampleTree("ROOT OFFSET=2; BOARD").root()), "");
}

TEST(KyCInventoryItemCopyMemory, withNoBlockForASubItemLeavesItOut)
{
  KyTestPool pool;
  const KySampleTree sample("ROOT/BOARD/CPU; DEVICE");
  const TCopy copy = copyWithFailure(pool, sample.root(), 1);
  EXPECT_REPORTS(pool, s_cannotAllocate, s_cannotCopySubtree);
  EXPECT_EQ(KyTreeDifference(*copy.tree, KySampleTree("ROOT/DEVICE").root()), "");
}

TEST(KyCInventoryItemCopyMemory, whicheverAllocationFailsIsReportedAndNothingElseIsLost)
{
  const KySampleTree sample(s_text);
  unsigned int n = 0;
  for (bool wasHit = true; wasHit; ++n)
  {
    KyTestPool pool;
    const TCopy copy = copyWithFailure(pool, sample.root(), n);
    wasHit = copy.wasHit;
    const bool isWhole = copy.tree != nullptr && KyTreeDifference(*copy.tree, sample.root()).empty();
    EXPECT_EQ(isWhole, !wasHit) << n;
    EXPECT_EQ(pool.takeReports().empty(), !wasHit) << n;
  }
  EXPECT_GE(n, 7u) << "three items, three parameters";
}

TEST(KyCInventoryItemSharedDataMemory, theFormWithoutAPoolLinksEvenWithNoMemoryForAnErrorList)
{
  unsigned int n = 0;
  for (bool wasHit = true; wasHit; ++n)
  {
    KyTestPool pool;
    KySampleTree sample("ROOT/SHARED_DATA SIZE=7; BOARD SHARED_DATA_INDEX:UInt32=1");
    {
      const KyCFailingAllocation failing(n);
      sample.root().linkSharedData(nullptr);
      wasHit = failing.wasHit();
    }
    EXPECT_EQ(sample.root().getValue<int>(pool, BOARD / SIZE), 7) << n;
  }
  EXPECT_GE(n, 2u) << "at least the list";
}

// A parameter whose description, value and unit have blocks of their own. The texts of value and unit are shared by copies.
TEST(KyCInventoryParameterMemory, aCopyWithoutMemoryThrows)
{
  KyTestPool pool;
  const KyCInventoryParameter original(pool, SIZE, "not the name of the ID", KyCString("many characters"), "", true, 3);
  const KyCFailingAllocation failing(0);
  EXPECT_THROW(KyCInventoryParameter copy(original), std::bad_alloc);
}

TEST(KyCInventoryParameterMemory, anAssignmentWithoutMemoryThrowsAndChangesNothing)
{
  KyTestPool pool;
  const KyCInventoryParameter source(pool, SIZE, "not the name of the ID", 12, "kB", true, 3);
  KyCInventoryParameter target(pool, OFFSET, "OFFSET", 7.5, "mV", false, 1);
  const KyCInventoryParameter::TMethod write = [](KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*)
  { return true; };
  target.setCheckAndWriteMethod(pool, nullptr, write, THIS_NODE, nullptr);
  {
    const KyCFailingAllocation failing(0);
    EXPECT_THROW(target = source, std::bad_alloc);
  }
  EXPECT_EQ(target.getID(), KyCInventoryAddress(OFFSET));
  EXPECT_STREQ(target.getDescription(), "OFFSET");
  EXPECT_EQ(target.getValue<double>(pool), 7.5);
  EXPECT_STREQ(target.getUnit(), "mV");
  EXPECT_FALSE(target.isModifiable());
  EXPECT_EQ(target.getRelevance(), 1u);
  EXPECT_EQ(target.getWriteMethod(), write);
  EXPECT_NO_REPORTS(pool);
}
