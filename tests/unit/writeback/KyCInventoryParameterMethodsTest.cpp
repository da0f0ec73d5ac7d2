// The checkValue, write and update methods of a parameter.

#include <memory>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"
#include "unit/writeback/KyDestructionCounters.h"

using namespace KyNInventoryIDs;

namespace
{
bool checkValue(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }
bool writeValue(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return false; }
bool updateValue(KyCErrorListPool&, KyCInventoryItem* item, KyCInventoryParameter*) { return item != nullptr; }

constexpr const char* s_refusal =
    "Internal error. Kyrel Support information: Cannot set write or update method for parameter BOARD[2]/SIZE.";

class KyCInventoryParameterMethods : public testing::Test
{
protected:
  KySampleTree m_sample{"ROOT/BOARD[2] SIZE=1"};
  KyCInventoryParameter* m_size = m_sample.parameter("BOARD[2]/SIZE");
  KyTestPool m_pool;
};
}    // namespace

TEST_F(KyCInventoryParameterMethods, areNullBeforeTheyAreSet)
{
  EXPECT_EQ(m_size->getCheckMethod(), nullptr);
  EXPECT_EQ(m_size->getWriteMethod(), nullptr);
  EXPECT_EQ(m_size->getUpdateMethod(), nullptr);
  EXPECT_EQ(m_size->getCustomPointer(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, checkAndWriteMethodAreKeptWithAddressAndPointer)
{
  int mark = 0;
  m_size->setCheckAndWriteMethod(m_pool, checkValue, writeValue, BOARD[4] / IOCHANNEL, &mark);
  EXPECT_EQ(m_size->getCheckMethod(), checkValue);
  EXPECT_EQ(m_size->getWriteMethod(), writeValue);
  EXPECT_EQ(m_size->getRelativeAddress(), BOARD[4] / IOCHANNEL);
  EXPECT_EQ(m_size->getCustomPointer(), &mark);
  EXPECT_EQ(m_size->getUpdateMethod(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, aNullCheckMethodIsAccepted)
{
  m_size->setCheckAndWriteMethod(m_pool, nullptr, writeValue, THIS_NODE, nullptr);
  EXPECT_EQ(m_size->getCheckMethod(), nullptr);
  EXPECT_EQ(m_size->getWriteMethod(), writeValue);
  EXPECT_TRUE(m_size->getRelativeAddress().isEmpty());
}

TEST_F(KyCInventoryParameterMethods, aNullWriteMethodIsReportedAndNothingChanges)
{
  m_size->setCheckAndWriteMethod(m_pool, checkValue, nullptr, BOARD, nullptr);
  EXPECT_REPORTS(m_pool, {0x1301009, "setCheckAndWriteMethod", s_refusal});
  EXPECT_EQ(m_size->getCheckMethod(), nullptr);
  EXPECT_EQ(KyInventoryAccess::getAuxInfo(*m_size), nullptr);
}

TEST_F(KyCInventoryParameterMethods, theUpdateMethodIsKept)
{
  m_size->setUpdateMethod(m_pool, updateValue);
  EXPECT_EQ(m_size->getUpdateMethod(), updateValue);
  EXPECT_EQ(m_size->getCheckMethod(), nullptr);
  EXPECT_EQ(m_size->getWriteMethod(), nullptr);
  EXPECT_EQ(m_size->getCustomPointer(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, relevanceAndModifiableFlagStayAsTheyAre)
{
  m_size->setRelevance(4294967295u);
  m_size->setModifiableFlag(true);
  m_size->setUpdateMethod(m_pool, updateValue);
  EXPECT_EQ(m_size->getRelevance(), 4294967295u);
  EXPECT_TRUE(m_size->isModifiable());
  m_size->setRelevance(7);
  m_size->setModifiableFlag(false);
  EXPECT_EQ(m_size->getRelevance(), 7u);
  EXPECT_FALSE(m_size->isModifiable());
  EXPECT_EQ(m_size->getUpdateMethod(), updateValue);

  const KyCInventoryParameter copy(*m_size);
  EXPECT_EQ(copy.getRelevance(), 7u);
  EXPECT_EQ(copy.getUpdateMethod(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, anAssignmentBringsRelevanceAndFlagAndNoMethods)
{
  const KyCInventoryParameter other(m_pool, SIZE, "SIZE", 2, "", true, 9);
  m_size->setRelevance(5);
  m_size->setUpdateMethod(m_pool, updateValue);
  const std::unique_ptr<KyCInventoryAuxInfo> dropped(KyInventoryAccess::getAuxInfo(*m_size));
  *m_size = other;
  EXPECT_EQ(m_size->getRelevance(), 9u);
  EXPECT_TRUE(m_size->isModifiable());
  EXPECT_EQ(m_size->getUpdateMethod(), nullptr);

  m_size->setUpdateMethod(m_pool, updateValue);
  KyCInventoryParameter target(other);
  target = *m_size;
  EXPECT_EQ(target.getRelevance(), 9u);
  EXPECT_EQ(target.getUpdateMethod(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, flagsThatACallerInventsAreNoMethodsAndDoNotMakeItModifiable)
{
  const KyCInventoryParameter parameter(m_pool, SIZE, "SIZE", 0xFFFF0114u);
  EXPECT_EQ(parameter.getType(), 0x114u);
  EXPECT_FALSE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 0u);
  EXPECT_EQ(parameter.getUpdateMethod(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, aNullUpdateMethodIsReportedAndNothingChanges)
{
  m_size->setUpdateMethod(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, {0x1301009, "setUpdateMethod", s_refusal});
  EXPECT_EQ(KyInventoryAccess::getAuxInfo(*m_size), nullptr);
}

TEST_F(KyCInventoryParameterMethods, anUpdateMethodIsRefusedBesideAWriteMethod)
{
  m_size->setCheckAndWriteMethod(m_pool, checkValue, writeValue, BOARD, nullptr);
  m_size->setUpdateMethod(m_pool, updateValue);
  EXPECT_REPORTS(m_pool, {0x1301009, "setUpdateMethod", s_refusal});
  EXPECT_EQ(m_size->getUpdateMethod(), nullptr);
  EXPECT_EQ(m_size->getWriteMethod(), writeValue);
}

TEST_F(KyCInventoryParameterMethods, aWriteMethodIsRefusedBesideAnUpdateMethod)
{
  m_size->setUpdateMethod(m_pool, updateValue);
  m_size->setCheckAndWriteMethod(m_pool, checkValue, writeValue, BOARD, nullptr);
  EXPECT_REPORTS(m_pool, {0x1301009, "setCheckAndWriteMethod", s_refusal});
  EXPECT_EQ(m_size->getCheckMethod(), nullptr);
  EXPECT_EQ(m_size->getUpdateMethod(), updateValue);
}

TEST_F(KyCInventoryParameterMethods, aSecondSetOfTheSameKindIsRefusedAndTheFirstStays)
{
  m_size->setCheckAndWriteMethod(m_pool, nullptr, writeValue, BOARD, nullptr);
  m_size->setCheckAndWriteMethod(m_pool, checkValue, checkValue, SIZE, this);
  EXPECT_REPORTS(m_pool, {0x1301009, "setCheckAndWriteMethod", s_refusal});
  EXPECT_EQ(m_size->getCheckMethod(), nullptr);
  EXPECT_EQ(m_size->getWriteMethod(), writeValue);
  EXPECT_EQ(m_size->getCustomPointer(), nullptr);
}

TEST_F(KyCInventoryParameterMethods, aSecondUpdateMethodIsRefusedAndTheFirstStays)
{
  m_size->setUpdateMethod(m_pool, updateValue);
  m_size->setUpdateMethod(m_pool, checkValue);
  EXPECT_REPORTS(m_pool, {0x1301009, "setUpdateMethod", s_refusal});
  EXPECT_EQ(m_size->getUpdateMethod(), updateValue);
}

TEST_F(KyCInventoryParameterMethods, aFreeParameterIsReportedWithoutAnAddress)
{
  KyCInventoryParameter parameter(m_pool, SIZE, "SIZE", 1, "", false, 0);
  parameter.setUpdateMethod(m_pool, nullptr);
  EXPECT_REPORTS(m_pool,
                 {0x1301009, "setUpdateMethod",
                  "Internal error. Kyrel Support information: Cannot set write or update method for parameter ."});
}

TEST_F(KyCInventoryParameterMethods, aPendingValueIsDestroyedWithItsParameter)
{
  unsigned int destroyed = 0;
  {
    KyCInventoryParameter parameter(m_pool, SIZE, "SIZE", 1, "", false, 0);
    parameter.setCheckAndWriteMethod(m_pool, checkValue, writeValue, BOARD, nullptr);
    static_cast<KyNInventoryParameter::KyCAuxInfoWrite*>(KyInventoryAccess::getAuxInfo(parameter))
        ->setDesignatedValue(new KyCCountedParameter(m_pool, destroyed));
    EXPECT_EQ(destroyed, 0u);
  }
  EXPECT_EQ(destroyed, 1u);
}
