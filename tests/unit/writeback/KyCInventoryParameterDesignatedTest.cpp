// Designated values: pending new values of one parameter, and the clearing of those of a whole subtree.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryItemFactory.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyPendingValue.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/tree/KyValueTypes.h"
#include "unit/writeback/KyWriteBackReports.h"

using namespace KyNInventoryIDs;

namespace
{
const KyCInventoryAddress s_place = BOARD[2] / SIZE;
const char s_address[] = "BOARD[2]/SIZE";

// One parameter below a tree's root, with a write method.
template <typename T>
struct TPlace
{
  KyTestPool pool;
  KyCInventoryItem root{pool, ROOT, "ROOT"};
  KyCInventoryParameter* parameter = root.createParameter<T>(pool, s_place, KyValueCase<T>::first(), "mV", false, 3);

  TPlace() { parameter->setCheckAndWriteMethod(pool, neverCalled, neverCalled, THIS_NODE, nullptr); }

  KyCInventoryParameter* holder() const { return writeInfoOf(*parameter)->getDesignatedValue(); }
  // Puts in a pending value whose type is not looked at.
  template <typename TOther>
  void forcePending(const TOther& value)
  {
    writeInfoOf(*parameter)
        ->setDesignatedValue(
            new KyCInventoryParameter(pool, KyCInventoryAddress(0u), nullptr, value, nullptr, true, 0));
  }
};

template <typename T>
std::string getterName()
{
  if (std::is_same_v<T, KyCString>) return "getDesignatedValue<KyCString>";
  if (std::is_same_v<T, KyCVersion>) return "getDesignatedValue<KyCVersion>";
  return "getDesignatedValue";
}

// Typed tests run once for each of the twelve value types.
template <typename T>
class KyCInventoryParameterDesignatedTypes : public testing::Test
{
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
TYPED_TEST_SUITE(KyCInventoryParameterDesignatedTypes, decltype(asGoogleTestHasThem(KyValueTypes())), TTypeName);

class KyCInventoryParameterDesignated : public testing::Test
{
protected:
  TPlace<int> m_place;
  KyTestPool& m_pool = m_place.pool;
  KyCInventoryParameter* m_size = m_place.parameter;
};
}    // namespace

// ---- Setting and reading ----

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachIsSetReadAndAdopted)
{
  using T = TypeParam;
  TPlace<T> place;
  KyCInventoryParameter* const parameter = place.parameter;
  EXPECT_FALSE(parameter->isDesignatedValueValid());
  parameter->setDesignatedValue<T>(place.pool, KyValueCase<T>::second());
  EXPECT_TRUE(parameter->isDesignatedValueValid());
  EXPECT_TRUE(parameter->getDesignatedValue<T>(place.pool) == KyValueCase<T>::second());
  EXPECT_TRUE(parameter->getValue<T>(place.pool) == KyValueCase<T>::first()) << "not before it is adopted";
  parameter->adoptDesignatedValue(place.pool);
  EXPECT_TRUE(parameter->getValue<T>(place.pool) == KyValueCase<T>::second());
  EXPECT_FALSE(parameter->isDesignatedValueValid());
  EXPECT_EQ(parameter->getType(), KyValueCase<T>::code);
}

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachIsHeldByAFreeParameterOfIDZeroAndOfItsType)
{
  using T = TypeParam;
  TPlace<T> place;
  place.parameter->template setDesignatedValue<T>(place.pool, KyValueCase<T>::second());
  KyCInventoryParameter* const holder = place.holder();
  ASSERT_NE(holder, nullptr);
  EXPECT_EQ(holder->getType(), KyValueCase<T>::code);
  EXPECT_EQ(holder->getID().getLength(), 1u);
  EXPECT_EQ(holder->getID().getCategory(), 0u);
  EXPECT_EQ(holder->getID().getIndex(), 1u);
  EXPECT_STREQ(holder->getDescription(), "");
  EXPECT_STREQ(holder->getUnit(), "");
  EXPECT_TRUE(holder->isModifiable());
  EXPECT_EQ(holder->getRelevance(), 0u);
  EXPECT_EQ(holder->getParent(), nullptr);
  EXPECT_TRUE(holder->getAddress().isEmpty());
  EXPECT_EQ(holder->getNext(), nullptr);
  EXPECT_EQ(KyInventoryAccess::getAuxInfo(*holder), nullptr);
  EXPECT_TRUE(holder->template getValue<T>(place.pool) == KyValueCase<T>::second());
}

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachReplacesAPendingOneInTheSameHolder)
{
  using T = TypeParam;
  TPlace<T> place;
  place.parameter->template setDesignatedValue<T>(place.pool, KyValueCase<T>::second());
  const KyCInventoryParameter* const holder = place.holder();
  place.parameter->template setDesignatedValue<T>(place.pool, KyValueCase<T>::first());
  EXPECT_EQ(place.holder(), holder);
  EXPECT_TRUE(place.parameter->template getDesignatedValue<T>(place.pool) == KyValueCase<T>::first());
}

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachReportsThatNothingIsPendingUnderItsNameAndGivesItsZero)
{
  using T = TypeParam;
  TPlace<T> place;
  EXPECT_TRUE(place.parameter->template getDesignatedValue<T>(place.pool) == T());
  EXPECT_REPORTS(place.pool, noDesignatedValueSpecified(getterName<T>()));
}

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachIsRefusedWithoutAWriteMethod)
{
  using T = TypeParam;
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCInventoryParameter* const parameter = root.createParameter<T>(pool, s_place, KyValueCase<T>::first(), "", true, 0);
  parameter->template setDesignatedValue<T>(pool, KyValueCase<T>::second());
  EXPECT_REPORTS(pool, cannotSetDesignatedValue(s_address));
  EXPECT_FALSE(parameter->isDesignatedValueValid());
}

namespace
{
// A parameter of type TOwn hears of TOther with nothing pending, on reading what is pending, and on replacing it.
template <typename TOwn, typename TOther>
void expectMismatch()
{
  const char* const own = KyValueCase<TOwn>::name;
  const char* const other = KyValueCase<TOther>::name;
  SCOPED_TRACE(std::string(own) + " as " + other);
  TPlace<TOwn> place;
  KyCInventoryParameter* const parameter = place.parameter;

  parameter->template setDesignatedValue<TOther>(place.pool, KyValueCase<TOther>::first());
  EXPECT_REPORTS(place.pool, incompatibleType(s_address));
  EXPECT_FALSE(parameter->isDesignatedValueValid());

  parameter->template setDesignatedValue<TOwn>(place.pool, KyValueCase<TOwn>::second());
  const KyCInventoryParameter* const holder = place.holder();
  EXPECT_TRUE(parameter->template getDesignatedValue<TOther>(place.pool) == TOther());
  EXPECT_REPORTS(place.pool, cannotBeRead(KyValueCase<TOther>::getter, "0", own, other), cannotGetValueOfHolder());

  parameter->template setDesignatedValue<TOther>(place.pool, KyValueCase<TOther>::first());
  EXPECT_REPORTS(place.pool, cannotBeSet(KyValueCase<TOther>::setter, "0", own, other), cannotSetValueOfHolder());
  EXPECT_EQ(place.holder(), holder);
  EXPECT_TRUE(parameter->template getDesignatedValue<TOwn>(place.pool) == KyValueCase<TOwn>::second());
  EXPECT_TRUE(parameter->template getValue<TOwn>(place.pool) == KyValueCase<TOwn>::first());
}
}    // namespace

TEST_F(KyCInventoryParameterDesignated, everyOtherTypeIsReportedAndChangesNothing)
{
  EXPECT_EQ(KyValueTypes::forEachPair(
                [](auto* own, auto* other)
                { expectMismatch<std::remove_pointer_t<decltype(own)>, std::remove_pointer_t<decltype(other)>>(); }),
            132u);
}

TEST_F(KyCInventoryParameterDesignated, isValidOnlyWhilePendingOnAParameterWithAWriteMethod)
{
  KySampleTree sample("ROOT SIZE=1 OFFSET=2");
  EXPECT_FALSE(sample.parameter("SIZE")->isDesignatedValueValid()) << "no info at all";
  sample.parameter("OFFSET")->setUpdateMethod(m_pool, neverCalled);
  EXPECT_FALSE(sample.parameter("OFFSET")->isDesignatedValueValid()) << "info of another kind";
  EXPECT_FALSE(m_size->isDesignatedValueValid()) << "nothing pending";
  m_size->setDesignatedValue(m_pool, 5);
  EXPECT_TRUE(m_size->isDesignatedValueValid());
}

TEST_F(KyCInventoryParameterDesignated, isRefusedBesideAnUpdateMethod)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=1");
  KyCInventoryParameter* const size = sample.parameter(s_address);
  size->setUpdateMethod(m_pool, neverCalled);
  size->setDesignatedValue(m_pool, 5);
  EXPECT_REPORTS(m_pool, cannotSetDesignatedValue(s_address));
  EXPECT_FALSE(size->isDesignatedValueValid());
  EXPECT_EQ(size->getDesignatedValue<int>(m_pool), 0);
  EXPECT_REPORTS(m_pool, noDesignatedValueSpecified("getDesignatedValue"));
  EXPECT_EQ(size->getUpdateMethod(), neverCalled);
}

TEST_F(KyCInventoryParameterDesignated, ofAParameterWithoutInfoIsReportedOnReading)
{
  KyCInventoryParameter name(m_pool, NAME, "NAME", KyCString("own"), "", false, 0);
  EXPECT_STREQ(name.getDesignatedValue<KyCString>(m_pool).c_str(), "");
  EXPECT_REPORTS(m_pool, noDesignatedValueSpecified("getDesignatedValue<KyCString>"));
}

TEST_F(KyCInventoryParameterDesignated, ofAFreeParameterWorksAndIsReportedWithoutAnAddress)
{
  KyCInventoryParameter size(m_pool, SIZE, "SIZE", 1, "", false, 0);
  size.setDesignatedValue(m_pool, 5);
  EXPECT_REPORTS(m_pool, cannotSetDesignatedValue(""));
  size.adoptDesignatedValue(m_pool);
  EXPECT_REPORTS(m_pool, noDesignatedValueDefined(""));
  size.setCheckAndWriteMethod(m_pool, nullptr, neverCalled, THIS_NODE, nullptr);
  size.setDesignatedValue(m_pool, 5.0);
  EXPECT_REPORTS(m_pool, incompatibleType(""));
  size.setDesignatedValue(m_pool, 5);
  size.adoptDesignatedValue(m_pool);
  EXPECT_EQ(size.getValue<int>(m_pool), 5);
}

TEST_F(KyCInventoryParameterDesignated, doubleIsRefusedByAnInt32Parameter)
{
  m_size->setDesignatedValue<double>(m_pool, 1.0);
  EXPECT_REPORTS(m_pool, incompatibleType(s_address));
  EXPECT_FALSE(m_size->isDesignatedValueValid());
}

TEST_F(KyCInventoryParameterDesignated, stillWorksAfterARefusal)
{
  m_size->setDesignatedValue<double>(m_pool, 1.0);
  EXPECT_REPORTS(m_pool, incompatibleType(s_address));
  m_size->setDesignatedValue<int>(m_pool, 7);
  EXPECT_EQ(m_size->getDesignatedValue<int>(m_pool), 7);
}

TEST_F(KyCInventoryParameterDesignated, isRefusedByAParameterOfAnUnknownType)
{
  KyCInventoryParameter odd(m_pool, SIZE, "SIZE", 0x777u);
  odd.setCheckAndWriteMethod(m_pool, nullptr, neverCalled, THIS_NODE, nullptr);
  odd.setDesignatedValue(m_pool, 1);
  EXPECT_REPORTS(m_pool, incompatibleType(""));
  EXPECT_FALSE(odd.isDesignatedValueValid());
}

TEST_F(KyCInventoryParameterDesignated, andTheOwnValueChangeIndependently)
{
  m_size->setDesignatedValue(m_pool, 5);
  m_size->setValue(m_pool, 9);
  EXPECT_EQ(m_size->getDesignatedValue<int>(m_pool), 5);
  m_size->setDesignatedValue(m_pool, 6);
  EXPECT_EQ(m_size->getValue<int>(m_pool), 9);
}

TEST_F(KyCInventoryParameterDesignated, goesBySilentlyWhereThePoolHasErrorsAlready)
{
  m_pool.setError(0x5000001, 1, "before", nullptr);
  m_size->setDesignatedValue(m_pool, 5);
  m_size->adoptDesignatedValue(m_pool);
  EXPECT_REPORTS(m_pool, {0x5000001, "before", ""});
  EXPECT_EQ(m_size->getValue<int>(m_pool), 5);
  EXPECT_FALSE(m_size->isDesignatedValueValid());
}

TEST_F(KyCInventoryParameterDesignated, floatingPointNumbersComeThroughToTheBit)
{
  TPlace<double> place;
  place.parameter->setDesignatedValue(place.pool, -0.0);
  EXPECT_TRUE(std::signbit(place.parameter->getDesignatedValue<double>(place.pool)));
  place.parameter->adoptDesignatedValue(place.pool);
  EXPECT_TRUE(std::signbit(place.parameter->getValue<double>(place.pool)));
  TPlace<float> single;
  single.parameter->setDesignatedValue(single.pool, std::numeric_limits<float>::quiet_NaN());
  single.parameter->adoptDesignatedValue(single.pool);
  EXPECT_TRUE(std::isnan(single.parameter->getValue<float>(single.pool)));
}

// The stored bytes: a value that a function gives back passes through the x87 on x86,
// which sets the bit that makes a signalling NaN a quiet one.
template <typename T, typename TBits>
void expectAdoptedToTheBit(TBits bits)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCInventoryParameter* const parameter = root.createParameter<T>(pool, s_place, T(1), "", false, 0);
  parameter->setCheckAndWriteMethod(pool, neverCalled, neverCalled, THIS_NODE, nullptr);
  T value;
  std::memcpy(&value, &bits, sizeof bits);
  for (int n = 0; n < 2; ++n)    // the second one goes into a holder that is there already
    parameter->setDesignatedValue<T>(pool, value);
  parameter->adoptDesignatedValue(pool);
  EXPECT_FALSE(parameter->isDesignatedValueValid());

  KyCBuffer buffer(pool);
  KyCInventoryItemFactory factory(pool);
  factory.serializeInventoryParameter(pool, &buffer, parameter);
  // Behind the value: a unit of no length, the modifiable flag and the relevance.
  TBits stored = 0;
  buffer.readBuffer(pool, &stored, sizeof stored, 0, static_cast<int>(buffer.getWritePosition() - 6 - sizeof stored));
  EXPECT_EQ(stored, bits);
}

TEST_F(KyCInventoryParameterDesignated, signallingNaNsComeThroughToTheBit)
{
  expectAdoptedToTheBit<float>(std::uint32_t{0x7F800001});
  expectAdoptedToTheBit<float>(std::uint32_t{0xFFBFFFFF});
  expectAdoptedToTheBit<double>(std::uint64_t{0x7FF0000000000001});
  expectAdoptedToTheBit<double>(std::uint64_t{0xFFF7FFFFFFFFFFFF});
}

TEST_F(KyCInventoryParameterDesignated, aStringIsAdoptedUpToItsFirstZeroByte)
{
  TPlace<KyCString> place;
  place.parameter->setDesignatedValue(place.pool, KyCString("ab\0cd", 5));
  place.parameter->adoptDesignatedValue(place.pool);
  EXPECT_EQ(place.parameter->getValue<KyCString>(place.pool).length(), 2u);
  EXPECT_STREQ(place.parameter->getValue<const char*>(place.pool), "ab");
}

// ---- Without memory ----

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachOfItsBlocksCanFailAndNothingIsPendingThen)
{
  using T = TypeParam;
  const unsigned int blocks = std::is_same_v<T, KyCVersion> ? 2 : 1;    // a version has a block of its own
  for (unsigned int n = 0; n <= blocks; ++n)
  {
    TPlace<T> place;
    const T value = KyValueCase<T>::second();
    KyNPoolAllocator::failAfter(n);
    place.parameter->template setDesignatedValue<T>(place.pool, value);
    KyNPoolAllocator::reset();
    EXPECT_EQ(place.parameter->isDesignatedValueValid(), n == blocks);
    if (n == blocks) break;
    EXPECT_REPORTS(place.pool, outOfMemory(), cannotCreateDesignatedParameter(s_address));
  }
}

TEST(KyCInventoryParameterDesignatedMemory, aStringThatCannotBeReplacedStaysPending)
{
  TPlace<KyCString> place;
  place.parameter->setDesignatedValue<KyCString>(place.pool, "one");
  const KyCInventoryParameter* const holder = place.holder();
  KyNPoolAllocator::failAfter(0);
  place.parameter->setDesignatedValue<KyCString>(place.pool, "a text of more than six characters");
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(place.pool, outOfMemory(), cannotSetValueOfHolder());
  EXPECT_EQ(place.holder(), holder);
  EXPECT_STREQ(place.parameter->getDesignatedValue<KyCString>(place.pool).c_str(), "one");
}

TEST(KyCInventoryParameterDesignatedMemory, aStringThatCannotBeAdoptedStaysPendingAndIsAdoptedLater)
{
  TPlace<KyCString> place;
  place.parameter->setValue<KyCString>(place.pool, "own");
  place.parameter->setDesignatedValue<KyCString>(place.pool, "another text of more than six characters");
  KyNPoolAllocator::failAfter(0);
  place.parameter->adoptDesignatedValue(place.pool);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(place.pool, outOfMemory(), cannotSetValue("setValue", s_address),
                 cannotSetValue("adoptDesignatedValue", s_address));
  EXPECT_STREQ(place.parameter->getValue<const char*>(place.pool), "own");
  EXPECT_STREQ(place.parameter->getDesignatedValue<KyCString>(place.pool).c_str(),
               "another text of more than six characters");
  place.parameter->adoptDesignatedValue(place.pool);
  EXPECT_STREQ(place.parameter->getValue<const char*>(place.pool), "another text of more than six characters");
  EXPECT_FALSE(place.parameter->isDesignatedValueValid());
}

// The own value is set anew here, in a block that could not be had before. A free parameter is named by its ID where a
// value is set, and by its address, which is empty, where one is adopted.
TEST(KyCInventoryParameterDesignatedMemory, aVersionThatCannotBeAdoptedStaysPending)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  KyCInventoryParameter version(pool, VERSION, "VERSION", KyCVersion(1, 0, 0, 0), "", false, 0);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, outOfMemory());
  version.setCheckAndWriteMethod(pool, nullptr, neverCalled, THIS_NODE, nullptr);
  version.setDesignatedValue(pool, KyCVersion(2, 0, 0, 0));
  KyNPoolAllocator::failAfter(0);
  version.adoptDesignatedValue(pool);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, outOfMemory(), cannotSetValue("setValue", "VERSION"),
                 cannotSetValue("adoptDesignatedValue", ""));
  EXPECT_EQ(version.getDesignatedValue<KyCVersion>(pool), KyCVersion(2, 0, 0, 0));
  version.adoptDesignatedValue(pool);
  EXPECT_EQ(version.getValue<KyCVersion>(pool), KyCVersion(2, 0, 0, 0));
}

// ---- Adopting ----

TEST_F(KyCInventoryParameterDesignated, adoptingWithNothingPendingIsReported)
{
  m_size->adoptDesignatedValue(m_pool);
  EXPECT_REPORTS(m_pool, noDesignatedValueDefined(s_address));
  EXPECT_EQ(m_size->getValue<int>(m_pool), KyValueCase<int>::first());
}

TEST_F(KyCInventoryParameterDesignated, adoptingWithoutAWriteMethodIsReported)
{
  KySampleTree sample("ROOT SIZE=1 OFFSET=2");
  sample.parameter("OFFSET")->setUpdateMethod(m_pool, neverCalled);
  sample.parameter("SIZE")->adoptDesignatedValue(m_pool);
  sample.parameter("OFFSET")->adoptDesignatedValue(m_pool);
  EXPECT_REPORTS(m_pool, noDesignatedValueDefined("SIZE"), noDesignatedValueDefined("OFFSET"));
}

TEST_F(KyCInventoryParameterDesignated, adoptingTwiceIsReportedTheSecondTime)
{
  m_size->setDesignatedValue(m_pool, 5);
  m_size->adoptDesignatedValue(m_pool);
  EXPECT_NO_REPORTS(m_pool);
  m_size->adoptDesignatedValue(m_pool);
  EXPECT_REPORTS(m_pool, noDesignatedValueDefined(s_address));
  EXPECT_EQ(m_size->getValue<int>(m_pool), 5);
}

TEST_F(KyCInventoryParameterDesignated, adoptingChangesTheValueAloneAndCallsNoMethod)
{
  m_size->setDesignatedValue(m_pool, 5);
  m_size->adoptDesignatedValue(m_pool);
  EXPECT_EQ(m_size->getValue<int>(m_pool), 5) << "although it is not modifiable";
  EXPECT_FALSE(m_size->isModifiable());
  EXPECT_STREQ(m_size->getUnit(), "mV");
  EXPECT_EQ(m_size->getRelevance(), 3u);
  EXPECT_STREQ(m_size->getDescription(), "SIZE");
  EXPECT_EQ(m_size->getAddress(), s_place);
  EXPECT_EQ(m_size->getWriteMethod(), neverCalled);
  EXPECT_EQ(m_size->getCheckMethod(), neverCalled);
}

TEST_F(KyCInventoryParameterDesignated, adoptingForAnUnknownTypeIsReportedAndTheValueStaysPending)
{
  KyCInventoryItem root(m_pool, ROOT, "ROOT");
  auto* const odd = new KyCInventoryParameter(m_pool, SIZE, "SIZE", 0x777u);
  root.addParameter(m_pool, THIS_NODE, odd);
  odd->setCheckAndWriteMethod(m_pool, nullptr, neverCalled, THIS_NODE, nullptr);
  auto* const pending = new KyCInventoryParameter(m_pool, KyCInventoryAddress(0u), nullptr, 7, nullptr, true, 0);
  writeInfoOf(*odd)->setDesignatedValue(pending);
  odd->adoptDesignatedValue(m_pool);
  EXPECT_REPORTS(m_pool, unknownType("SIZE"));
  EXPECT_EQ(writeInfoOf(*odd)->getDesignatedValue(), pending);
}

TYPED_TEST(KyCInventoryParameterDesignatedTypes, eachIsNotAdoptedFromAPendingValueOfAnotherType)
{
  using T = TypeParam;
  using TOther = std::conditional_t<std::is_same_v<T, int>, double, int>;
  TPlace<T> place;
  place.forcePending(KyValueCase<TOther>::first());
  const KyCInventoryParameter* const holder = place.holder();
  place.parameter->adoptDesignatedValue(place.pool);
  EXPECT_REPORTS(place.pool, cannotBeRead(KyValueCase<T>::getter, "0", KyValueCase<TOther>::name, KyValueCase<T>::name),
                 cannotGetValueOfHolder(), cannotRetrieveDesignatedValue(s_address));
  EXPECT_EQ(place.holder(), holder);
  EXPECT_TRUE(place.parameter->template getValue<T>(place.pool) == KyValueCase<T>::first());
}

// ---- Deleting ----

TEST_F(KyCInventoryParameterDesignated, deletingEndsItAndLeavesTheRest)
{
  m_size->setDesignatedValue(m_pool, 5);
  m_size->deleteDesignatedValue();
  EXPECT_FALSE(m_size->isDesignatedValueValid());
  EXPECT_EQ(m_size->getValue<int>(m_pool), KyValueCase<int>::first());
  EXPECT_EQ(m_size->getWriteMethod(), neverCalled);
  m_size->deleteDesignatedValue();
  EXPECT_FALSE(m_size->isDesignatedValueValid());
  m_size->setDesignatedValue(m_pool, 6);
  EXPECT_EQ(m_size->getDesignatedValue<int>(m_pool), 6);
}

TEST_F(KyCInventoryParameterDesignated, deletingOnAParameterWithoutAWriteMethodDoesNothing)
{
  KySampleTree sample("ROOT SIZE=1 OFFSET=2");
  sample.parameter("OFFSET")->setUpdateMethod(m_pool, neverCalled);
  sample.parameter("SIZE")->deleteDesignatedValue();
  sample.parameter("OFFSET")->deleteDesignatedValue();
  EXPECT_EQ(sample.parameter("OFFSET")->getUpdateMethod(), neverCalled);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT SIZE=1 OFFSET=2").root()), "");
}

namespace
{
void designate(KySampleTree& sample, const std::string& address)
{
  KyTestPool pool;
  KyCInventoryParameter* const parameter = sample.parameter(address);
  if (parameter->getWriteMethod() == nullptr)
    parameter->setCheckAndWriteMethod(pool, neverCalled, neverCalled, THIS_NODE, nullptr);
  parameter->setDesignatedValue(pool, 5);
}
}    // namespace

TEST(KyCInventoryItemDesignated, deletingOnALeafWithoutParametersDoesNothing)
{
  KySampleTree sample("ROOT/BOARD");
  sample.item("BOARD")->deleteDesignatedValues();
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD").root()), "");
}

TEST(KyCInventoryItemDesignated, deletingReachesTheWholeSubtreeAndNothingBesideOrAboveIt)
{
  KySampleTree sample(
      "ROOT SIZE=1; BOARD[1] SIZE=1; BOARD[2] SIZE=1 OFFSET=2; BOARD[2]/CPU SIZE=1; BOARD[2]/CPU/IOCHANNEL SIZE=1; "
      "BOARD[3] SIZE=1");
  const std::vector<std::string> inside = {"BOARD[2]/SIZE", "BOARD[2]/OFFSET", "BOARD[2]/CPU/SIZE",
                                           "BOARD[2]/CPU/IOCHANNEL/SIZE"};
  const std::vector<std::string> outside = {"SIZE", "BOARD[1]/SIZE", "BOARD[3]/SIZE"};
  for (const std::string& address : inside)
    designate(sample, address);
  for (const std::string& address : outside)
    designate(sample, address);
  sample.item("BOARD[2]")->deleteDesignatedValues();
  for (const std::string& address : inside)
    EXPECT_FALSE(sample.parameter(address)->isDesignatedValueValid()) << address;
  for (const std::string& address : outside)
    EXPECT_TRUE(sample.parameter(address)->isDesignatedValueValid()) << address;
}

TEST(KyCInventoryItemDesignated, deletingLeavesMethodsValuesAndOtherInfoAlone)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1 OFFSET=2 NAME=\"x\"");
  designate(sample, "SIZE");
  sample.parameter("OFFSET")->setUpdateMethod(pool, neverCalled);
  sample.root().deleteDesignatedValues();
  EXPECT_EQ(sample.parameter("SIZE")->getWriteMethod(), neverCalled);
  EXPECT_EQ(sample.parameter("OFFSET")->getUpdateMethod(), neverCalled);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT SIZE=1 OFFSET=2 NAME=\"x\"").root()), "");
}

TEST(KyCInventoryItemDesignated, deletingDoesNotVisitFriends)
{
  KySampleTree sample("ROOT/BOARD SIZE=1; SHARED_DATA SIZE=1; SHARED_DATA/CPU OFFSET=1");
  KyInventoryAccess::setFriend(*sample.item("BOARD"), sample.item("SHARED_DATA"));
  for (const char* const address : {"BOARD/SIZE", "SHARED_DATA/SIZE", "SHARED_DATA/CPU/OFFSET"})
    designate(sample, address);
  sample.item("BOARD")->deleteDesignatedValues();
  EXPECT_FALSE(sample.parameter("BOARD/SIZE")->isDesignatedValueValid());
  EXPECT_TRUE(sample.parameter("SHARED_DATA/SIZE")->isDesignatedValueValid());
  EXPECT_TRUE(sample.parameter("SHARED_DATA/CPU/OFFSET")->isDesignatedValueValid());
}
