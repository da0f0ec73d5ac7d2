// What the walks cost in heap blocks. A program of its own: it counts every allocation of the process.

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
