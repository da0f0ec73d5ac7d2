// What the walks cost in heap blocks, and what they do when there are none. A program of its own: it counts every
// allocation of the process.

#include <gtest/gtest.h>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyBlockCount.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
bool accept(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

class KyWriteBackAllocation : public testing::Test
{
protected:
  void SetUp() override
  {
    if (KY_COUNTS_BLOCKS == 0) GTEST_SKIP() << "a sanitizer has the allocator";
  }

  // ROOT/BOARD[n]/IOCHANNEL/CPU, each with a pending number and a parameter to update.
  void build()
  {
    for (unsigned int n = 1; n <= 100; ++n)
    {
      KyCInventoryItem* item = m_root.addPath(m_pool, BOARD[n] / IOCHANNEL / CPU);
      for (; item != &m_root; item = item->getParent())
      {
        KyCInventoryParameter* const size = item->createParameter<double>(m_pool, SIZE, 1.0, "", false, 0);
        size->setCheckAndWriteMethod(m_pool, accept, accept, BOARD / SIZE, nullptr);
        size->setDesignatedValue(m_pool, 2.0);
        item->createParameter<int>(m_pool, OFFSET, 1, "", false, 0)->setUpdateMethod(m_pool, accept);
      }
    }
  }

  KyTestPool m_pool;
  KyCInventoryItem m_root{m_pool, ROOT, "ROOT"};
};
}    // namespace

TEST_F(KyWriteBackAllocation, checkAllocatesNothing)
{
  build();
  const KyCBlockCount blocks;
  m_root.check(m_pool, &m_root);
  EXPECT_EQ(blocks.get(), 0u);
}

TEST_F(KyWriteBackAllocation, applyOfNumbersAllocatesNothing)
{
  build();
  const KyCBlockCount blocks;
  m_root.apply(m_pool, &m_root);
  EXPECT_EQ(blocks.get(), 0u);
  EXPECT_EQ(m_root.getValue<double>(m_pool, BOARD / SIZE), 2.0);
}

TEST_F(KyWriteBackAllocation, updateParametersAllocatesNothing)
{
  build();
  const KyCBlockCount blocks;
  m_root.updateParameters(m_pool, &m_root);
  EXPECT_EQ(blocks.get(), 0u);
}

TEST_F(KyWriteBackAllocation, deleteDesignatedValuesAllocatesNothing)
{
  build();
  const KyCBlockCount blocks;
  m_root.deleteDesignatedValues();
  EXPECT_EQ(blocks.get(), 0u);
}

TEST_F(KyWriteBackAllocation, anItemWithManyParametersIsIndexedOnceAtMost)
{
  for (unsigned int n = 0; n < 1000; ++n)
  {
    auto* const parameter =
        new (m_pool) KyCInventoryParameter(m_pool, KyCInventoryAddress(2000000 + n), nullptr, 1, nullptr, false, 0);
    m_root.addParameter(m_pool, THIS_NODE, parameter);
    parameter->setUpdateMethod(m_pool, accept);
  }
  m_root.updateParameters(m_pool, nullptr);
  const KyCBlockCount blocks;
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_EQ(blocks.get(), 0u);
}

TEST_F(KyWriteBackAllocation, aPendingNumberIsOneBlockAndReplacingItNone)
{
  KyCInventoryParameter* const size = m_root.createParameter<double>(m_pool, SIZE, 1.0, "", false, 0);
  size->setCheckAndWriteMethod(m_pool, accept, accept, BOARD / SIZE, nullptr);
  {
    const KyCBlockCount blocks;
    size->setDesignatedValue(m_pool, 2.0);
    EXPECT_EQ(blocks.get(), 1u);
  }
  const KyCBlockCount blocks;
  size->setDesignatedValue(m_pool, 3.0);
  EXPECT_EQ(size->getDesignatedValue<double>(m_pool), 3.0);
  size->adoptDesignatedValue(m_pool);
  EXPECT_EQ(blocks.get(), 0u);
}

// ---- Without memory: reports may be missing from the list, but they are counted, and nothing else changes ----

namespace
{
bool refuse(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return false; }
bool fail(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter*)
{
  pool.setError(0x7000000, __LINE__, "fail", nullptr);
  return true;
}

constexpr unsigned int MOST_BLOCKS = 40;    // more than any of the operations takes

// A pending text five levels down, in a tree of its own.
struct KyPendingText
{
  explicit KyPendingText(KyCInventoryParameter::TMethod check = accept, KyCInventoryParameter::TMethod write = accept)
  {
    parameter =
        root.createParameter<KyCString>(pool, BOARD[2] / IOCHANNEL[3] / CPU[4] / RAM[5] / NAME, "old", "", true, 0);
    parameter->setCheckAndWriteMethod(pool, check, write, THIS_NODE, nullptr);
  }
  void designate() { parameter->setDesignatedValue<KyCString>(pool, "a text that needs a block of its own"); }

  KyCErrorListPool pool;
  KyCInventoryItem root{pool, ROOT, "ROOT"};
  KyCInventoryParameter* parameter;
};
}    // namespace

TEST_F(KyWriteBackAllocation, aValueThatCannotBeStoredIsReportedAndNotPending)
{
  bool isStored = false;
  for (unsigned int blocks = 0; !isStored; ++blocks)
  {
    ASSERT_LT(blocks, MOST_BLOCKS);
    KyPendingText text;
    const KyCString value = "a text that needs a block of its own";
    {
      const KyCBlockLimit limit(blocks);
      text.parameter->setDesignatedValue<KyCString>(text.pool, value);
    }
    isStored = text.parameter->isDesignatedValueValid();
    EXPECT_EQ(text.pool.getErrorCount() == 0, isStored) << blocks;
  }
}

TEST_F(KyWriteBackAllocation, aVetoEndsThePendingValueWithoutMemoryToo)
{
  for (unsigned int blocks = 0; blocks < MOST_BLOCKS; ++blocks)
  {
    KyPendingText text(refuse);
    text.designate();
    {
      const KyCBlockLimit limit(blocks);
      text.root.check(text.pool, nullptr);
    }
    EXPECT_FALSE(text.parameter->isDesignatedValueValid()) << blocks;
    EXPECT_EQ(text.pool.getErrorCount(), 1u) << blocks;
  }
}

TEST_F(KyWriteBackAllocation, aFailedWriteEndsThePendingValueWithoutMemoryToo)
{
  for (unsigned int blocks = 0; blocks < MOST_BLOCKS; ++blocks)
  {
    KyPendingText text(accept, fail);
    text.designate();
    {
      const KyCBlockLimit limit(blocks);
      text.root.apply(text.pool, nullptr);
    }
    EXPECT_FALSE(text.parameter->isDesignatedValueValid()) << blocks;
    EXPECT_EQ(text.pool.getErrorCount(), 2u) << blocks;
  }
}

TEST_F(KyWriteBackAllocation, aValueThatCannotBeAdoptedStaysPendingAndALaterApplyAdoptsIt)
{
  bool isAdopted = false;
  for (unsigned int blocks = 0; !isAdopted; ++blocks)
  {
    ASSERT_LT(blocks, MOST_BLOCKS);
    KyPendingText text;
    text.designate();
    {
      const KyCBlockLimit limit(blocks);
      text.root.apply(text.pool, nullptr);
    }
    isAdopted = !text.parameter->isDesignatedValueValid();
    EXPECT_EQ(text.pool.getErrorCount() == 0, isAdopted) << blocks;
    if (isAdopted) break;
    text.root.apply(text.pool, nullptr);
    EXPECT_FALSE(text.parameter->isDesignatedValueValid()) << blocks;
  }
}

TEST_F(KyWriteBackAllocation, refusalsAreCountedWithoutMemory)
{
  for (unsigned int blocks = 0; blocks < MOST_BLOCKS; ++blocks)
  {
    KyPendingText text;
    const auto countOf = [&](const auto& operation)
    {
      const unsigned int before = text.pool.getErrorCount();
      const KyCBlockLimit limit(blocks);
      operation();
      return text.pool.getErrorCount() - before;
    };
    EXPECT_EQ(countOf([&] { text.parameter->setUpdateMethod(text.pool, accept); }), 1u) << blocks;
    // The number's own block first: without it, the allocator reports too.
    EXPECT_EQ(countOf([&] { text.parameter->setDesignatedValue<int>(text.pool, 1); }), blocks == 0 ? 2u : 1u) << blocks;
    EXPECT_EQ(countOf([&] { text.parameter->adoptDesignatedValue(text.pool); }), 1u) << blocks;
    EXPECT_EQ(countOf([&] { text.root.setUpdater(text.pool, nullptr); }), 1u) << blocks;
  }
}
