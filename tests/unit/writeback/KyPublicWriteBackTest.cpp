// Updaters, pending values and the walks as a user of the library has them: the umbrella header and the shared library.

#include <gtest/gtest.h>

#include "inventory/KyInventoryTree.h"

namespace
{
class KyCFirmwareUpdater : public KyIUpdater
{
};

bool acceptUpTo5000(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return parameter->getDesignatedValue<int>(pool) <= 5000;
}

bool writeToTheDevice(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  *static_cast<int*>(parameter->getCustomPointer()) = parameter->getDesignatedValue<int>(pool);
  return true;
}

bool readFromTheDevice(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter)
{
  parameter->setValue<KyCString>(pool, context->getDescription());
  return true;
}

using namespace KyNInventoryIDs;

class KyPublicWriteBack : public testing::Test
{
protected:
  KyCErrorListPool m_pool;
  KyCInventoryItem m_root{m_pool, ROOT, "ROOT"};
};

template <typename T>
void expectADesignatedValue(const T& own, const T& pending)
{
  KyCErrorListPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", own, "", true, 0);
  parameter.setCheckAndWriteMethod(pool, nullptr, writeToTheDevice, THIS_NODE, nullptr);
  parameter.setDesignatedValue<T>(pool, pending);
  EXPECT_TRUE(parameter.getDesignatedValue<T>(pool) == pending);
  parameter.adoptDesignatedValue(pool);
  EXPECT_TRUE(parameter.getValue<T>(pool) == pending);
  EXPECT_EQ(pool.getErrorCount(), 0u);
}
}    // namespace

TEST_F(KyPublicWriteBack, anUpdateElementGetsItsParametersAndUpdater)
{
  KyCInventoryItem* const element = m_root.addPath(m_pool, UPDATE_ELEMENT[3]);
  KyNInventoryTree::addUpdateElementParameters(element, m_pool, 3, 1, "FIRMWARE", 17, "ANALOG", true, false, 0, 4);
  EXPECT_EQ(m_root.getValue<unsigned int>(m_pool, UPDATE_ELEMENT[3] / TYPE_ID), 17u);
  EXPECT_EQ(m_root.getValue<unsigned char>(m_pool, UPDATE_ELEMENT[3] / ACTIVE), 0u);
  auto* const updater = new KyCFirmwareUpdater;
  element->setUpdater(m_pool, updater);
  EXPECT_EQ(element->getUpdater(), updater);
  EXPECT_EQ(m_pool.getErrorCount(), 0u);
}

TEST_F(KyPublicWriteBack, aPendingValueIsCheckedWrittenAndAdopted)
{
  int device = 0;
  KyCInventoryParameter* const voltage =
      m_root.createParameter<int>(m_pool, BOARD[2] / VOLTAGE_UPPER_MAX, 5000, "mV", true, 0);
  voltage->setCheckAndWriteMethod(m_pool, acceptUpTo5000, writeToTheDevice, THIS_NODE, &device);
  voltage->setDesignatedValue(m_pool, 3300);
  m_root.check(m_pool, &m_root);
  m_root.apply(m_pool, &m_root);
  EXPECT_EQ(device, 3300);
  EXPECT_EQ(voltage->getValue<int>(m_pool), 3300);
  EXPECT_EQ(m_pool.getErrorCount(), 0u);

  voltage->setDesignatedValue(m_pool, 6000);
  m_root.check(m_pool, &m_root);
  ASSERT_EQ(m_pool.getEntryCount(), 1u);
  EXPECT_EQ(m_pool.getEntry(0).code, 0x1300811u);
  EXPECT_STREQ(m_pool.getEntry(0).text, "Check failed for parameter BOARD[2]/VOLTAGE_UPPER_MAX.");
  EXPECT_FALSE(voltage->isDesignatedValueValid());
}

TEST_F(KyPublicWriteBack, valuesAreUpdatedAndPendingOnesDeleted)
{
  m_root.createParameter<KyCString>(m_pool, NAME, "", nullptr, false, 0)->setUpdateMethod(m_pool, readFromTheDevice);
  KyCInventoryParameter* const size = m_root.createParameter<int>(m_pool, SIZE, 1, nullptr, false, 0);
  size->setCheckAndWriteMethod(m_pool, nullptr, writeToTheDevice, BOARD / SIZE, nullptr);
  size->setDesignatedValue(m_pool, 2);
  m_root.updateParameters(m_pool, &m_root);
  EXPECT_STREQ(m_root.getValue<const char*>(m_pool, NAME), "ROOT");
  m_root.deleteDesignatedValues();
  EXPECT_FALSE(size->isDesignatedValueValid());
  EXPECT_EQ(m_pool.getErrorCount(), 0u);
}

TEST_F(KyPublicWriteBack, theDesignatedValuesOfAllTwelveTypesAreExported)
{
  expectADesignatedValue<signed char>(1, 2);
  expectADesignatedValue<short>(1, 2);
  expectADesignatedValue<int>(1, 2);
  expectADesignatedValue<long long>(1, 2);
  expectADesignatedValue<unsigned char>(1, 2);
  expectADesignatedValue<unsigned short>(1, 2);
  expectADesignatedValue<unsigned int>(1, 2);
  expectADesignatedValue<unsigned long long>(1, 2);
  expectADesignatedValue<float>(1, 2);
  expectADesignatedValue<double>(1, 2);
  expectADesignatedValue<KyCString>("1", "2");
  expectADesignatedValue<KyCVersion>(KyCVersion(1, 0, 0, 0), KyCVersion(2, 0, 0, 0));
}
