// Each value type through the whole cycle: designated, read, checked, written and adopted.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"
#include "unit/tree/KyValueTypes.h"

using namespace KyNInventoryIDs;

namespace
{
// What the methods have seen: who was called, the pending value and the parameter's own at that time.
template <typename T>
struct Sight
{
  std::string method;
  T pending;
  T own;
};
template <typename T>
std::vector<Sight<T>>& sights()
{
  static std::vector<Sight<T>> list;
  return list;
}

template <typename T>
bool checkAs(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  sights<T>().push_back({"check", parameter->getDesignatedValue<T>(pool), parameter->getValue<T>(pool)});
  return sights<T>().back().pending == KyValueCase<T>::second();
}

template <typename T>
bool writeAs(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  sights<T>().push_back({"write", parameter->getDesignatedValue<T>(pool), parameter->getValue<T>(pool)});
  return true;
}

template <typename T>
class KyWriteBackTypes : public testing::Test
{
protected:
  KyWriteBackTypes()
  {
    sights<T>().clear();
    m_parameter->setCheckAndWriteMethod(m_pool, checkAs<T>, writeAs<T>, THIS_NODE, nullptr);
  }

  void expectSight(std::size_t n, const char* method, const T& pending) const
  {
    ASSERT_GT(sights<T>().size(), n);
    EXPECT_EQ(sights<T>()[n].method, method);
    EXPECT_TRUE(sights<T>()[n].pending == pending);
    EXPECT_TRUE(sights<T>()[n].own == KyValueCase<T>::first()) << "not before it is adopted";
  }

  KyTestPool m_pool;
  KyCInventoryItem m_root{m_pool, ROOT, "ROOT"};
  KyCInventoryParameter* m_parameter =
      m_root.createParameter<T>(m_pool, BOARD[2] / SIZE, KyValueCase<T>::first(), "mV", true, 3);
};

template <typename... T>
testing::Types<T...> asGoogleTestHasThem(KyTypeList<T...>);
struct TTypeName
{
  template <typename T>
  static std::string GetName(int)
  {
    return KyValueCase<T>::name;
  }
};
TYPED_TEST_SUITE(KyWriteBackTypes, decltype(asGoogleTestHasThem(KyValueTypes())), TTypeName);
}    // namespace

TYPED_TEST(KyWriteBackTypes, eachIsReadByTheMethodsAndIsTheParametersOwnAfterwards)
{
  using T = TypeParam;
  KyCInventoryParameter* const parameter = this->m_parameter;
  parameter->template setDesignatedValue<T>(this->m_pool, KyValueCase<T>::second());
  EXPECT_TRUE(parameter->template getDesignatedValue<T>(this->m_pool) == KyValueCase<T>::second());

  this->m_root.check(this->m_pool, nullptr);
  ASSERT_EQ(sights<T>().size(), 1u);
  this->expectSight(0, "check", KyValueCase<T>::second());
  EXPECT_TRUE(parameter->isDesignatedValueValid());

  this->m_root.apply(this->m_pool, nullptr);
  ASSERT_EQ(sights<T>().size(), 2u);
  this->expectSight(1, "write", KyValueCase<T>::second());
  EXPECT_FALSE(parameter->isDesignatedValueValid());
  EXPECT_TRUE(parameter->template getValue<T>(this->m_pool) == KyValueCase<T>::second());
  EXPECT_EQ(parameter->getType(), KyValueCase<T>::code);
  EXPECT_STREQ(parameter->getUnit(), "mV");
  EXPECT_NO_REPORTS(this->m_pool);
}

TYPED_TEST(KyWriteBackTypes, eachIsKeptWhereTheCheckSaysNo)
{
  using T = TypeParam;
  KyCInventoryParameter* const parameter = this->m_parameter;
  parameter->template setDesignatedValue<T>(this->m_pool, KyValueCase<T>::first());
  this->m_root.check(this->m_pool, nullptr);
  this->m_root.apply(this->m_pool, nullptr);
  ASSERT_EQ(sights<T>().size(), 1u) << "nothing is left to write";
  this->expectSight(0, "check", KyValueCase<T>::first());
  EXPECT_FALSE(parameter->isDesignatedValueValid());
  EXPECT_TRUE(parameter->template getValue<T>(this->m_pool) == KyValueCase<T>::first());
  EXPECT_REPORTS(this->m_pool, {0x1300811, "check", "Check failed for parameter BOARD[2]/SIZE."});
}
