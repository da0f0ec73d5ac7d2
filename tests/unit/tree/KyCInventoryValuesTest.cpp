// Typed reading and writing of values, through the parameter and through an item.

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/tree/KyValueTypes.h"

using namespace KyNInventoryIDs;

namespace
{
const KyCInventoryAddress s_place = BOARD[2] / SIZE;

template <typename T>
T readBack(KyCErrorListPool& pool, const T& value)
{
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", T(), "", false, 0);
  parameter.setValue<T>(pool, value);
  return parameter.getValue<T>(pool);
}

std::string mismatch(const char* own, const char* what, const char* other)
{
  return std::string("Parameter 98 is of type ") + own + "; it cannot be " + what + " as " + other + ".";
}

// A parameter of type TOwn hears of reading and writing as TOther, gives nothing and keeps its value.
template <typename TOwn, typename TOther>
void expectMismatch()
{
  const char* const own = KyValueCase<TOwn>::name;
  const char* const other = KyValueCase<TOther>::name;
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", KyValueCase<TOwn>::first(), "", true, 0);

  EXPECT_TRUE(parameter.getValue<TOther>(pool) == TOther()) << own << " as " << other;
  EXPECT_REPORTS(pool, {0x1100800, KyValueCase<TOther>::getter, mismatch(own, "read", other)},
                 {0x1301008, "getValue", "Cannot get value of parameter SIZE."});

  parameter.setValue<TOther>(pool, KyValueCase<TOther>::second());
  EXPECT_REPORTS(pool, {0x1100801, KyValueCase<TOther>::setter, mismatch(own, "set", other)},
                 {0x1301007, "setValue", "Cannot set value of parameter SIZE."});
  EXPECT_TRUE(parameter.getValue<TOwn>(pool) == KyValueCase<TOwn>::first()) << own << " as " << other;
}

template <typename TOwn, typename TOther>
void expectMismatchAtItem()
{
  const char* const own = KyValueCase<TOwn>::name;
  const char* const other = KyValueCase<TOther>::name;
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  KyCInventoryParameter* const parameter =
      root.createParameter<TOwn>(pool, s_place, KyValueCase<TOwn>::first(), "", true, 0);

  EXPECT_TRUE(root.getValue<TOther>(pool, s_place) == TOther()) << own << " as " << other;
  EXPECT_REPORTS(pool, {0x1100800, KyValueCase<TOther>::getter, mismatch(own, "read", other)},
                 {0x1301008, "getValue", "Cannot get value of parameter BOARD[2]/SIZE."});

  EXPECT_EQ(root.setValue<TOther>(pool, s_place, KyValueCase<TOther>::second()), parameter);    // all the same
  EXPECT_REPORTS(pool, {0x1100801, KyValueCase<TOther>::setter, mismatch(own, "set", other)},
                 {0x1301007, "setValue", "Cannot set value of parameter BOARD[2]/SIZE."});
  EXPECT_TRUE(root.getValue<TOwn>(pool, s_place) == KyValueCase<TOwn>::first()) << own << " as " << other;
}
}    // namespace

TEST(KyCInventoryParameterValues, everyTypeIsSetAndReadBack)
{
  KyValueTypes::forEach(
      [](auto* typed)
      {
        using T = std::remove_pointer_t<decltype(typed)>;
        KyTestPool pool;
        EXPECT_TRUE(readBack<T>(pool, KyValueCase<T>::first()) == KyValueCase<T>::first()) << KyValueCase<T>::name;
        EXPECT_TRUE(readBack<T>(pool, KyValueCase<T>::second()) == KyValueCase<T>::second()) << KyValueCase<T>::name;
        EXPECT_TRUE(readBack<T>(pool, T()) == T()) << KyValueCase<T>::name;
      });
}

TEST(KyCInventoryParameterValues, floatingPointNumbersComeBackToTheBit)
{
  KyTestPool pool;
  EXPECT_TRUE(std::signbit(readBack<double>(pool, -0.0)));
  EXPECT_TRUE(std::signbit(readBack<float>(pool, -0.0f)));
  EXPECT_EQ(readBack<double>(pool, std::numeric_limits<double>::denorm_min()),
            std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(readBack<float>(pool, std::numeric_limits<float>::denorm_min()), std::numeric_limits<float>::denorm_min());
  EXPECT_EQ(readBack<double>(pool, std::numeric_limits<double>::infinity()), std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(readBack<float>(pool, std::numeric_limits<float>::quiet_NaN())));
}

TEST(KyCInventoryParameterValues, aStringIsReadInPlaceAsConstChar)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, NAME, "NAME", KyCString("a text of more than six characters"), "", false, 0);
  EXPECT_STREQ(parameter.getValue<const char*>(pool), "a text of more than six characters");
  EXPECT_EQ(parameter.getValue<const char*>(pool), parameter.getValue<const char*>(pool));
}

TEST(KyCInventoryParameterValues, aStringIsSetUpToItsFirstZeroByte)
{
  KyTestPool pool;
  EXPECT_STREQ(readBack<KyCString>(pool, KyCString("ab\0cd", 5)).c_str(), "ab");
  EXPECT_EQ(readBack<KyCString>(pool, KyCString("ab\0cd", 5)).length(), 2u);
}

TEST(KyCInventoryParameterValues, theModifiableFlagIsNotEnforced)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  parameter.setValue<int>(pool, 2);
  EXPECT_EQ(parameter.getValue<int>(pool), 2);
}

TEST(KyCInventoryParameterValues, everyOtherTypeIsReportedBehindTheBaseAndChangesNothing)
{
  EXPECT_EQ(KyValueTypes::forEachPair(
                [](auto* own, auto* other)
                { expectMismatch<std::remove_pointer_t<decltype(own)>, std::remove_pointer_t<decltype(other)>>(); }),
            132u);
}

TEST(KyCInventoryParameterValues, constCharOfAnyOtherTypeIsReportedFromGetValueAndEmpty)
{
  KyValueTypes::forEach(
      [](auto* typed)
      {
        using T = std::remove_pointer_t<decltype(typed)>;
        if constexpr (!std::is_same_v<T, KyCString>)
        {
          KyTestPool pool;
          const KyCInventoryParameter parameter(pool, SIZE, "SIZE", KyValueCase<T>::first(), "", false, 0);
          EXPECT_STREQ(parameter.getValue<const char*>(pool), "");
          EXPECT_REPORTS(pool, {0x1100800, "getValueConstChar", mismatch(KyValueCase<T>::name, "read", "String")},
                         {0x1301008, "getValue", "Cannot get value of parameter SIZE."});
        }
      });
}

TEST(KyCInventoryParameterValues, aParameterOfAnUnknownTypeHasNoValue)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 0x777u);
  EXPECT_EQ(parameter.getValue<int>(pool), 0);
  EXPECT_REPORTS(pool, {0x1100802, "getValueInt32", "Parameter 98 has the unknown type code 0x777 and no value."},
                 {0x1301008, "getValue", "Cannot get value of parameter SIZE."});
  parameter.setValue<KyCString>(pool, "text");
  EXPECT_REPORTS(pool, {0x1100802, "setValueConstChar", "Parameter 98 has the unknown type code 0x777 and no value."},
                 {0x1301007, "setValue", "Cannot set value of parameter SIZE."});
}

TEST(KyCInventoryParameterValues, aFreeParameterIsNamedByItsIDAnOwnedOneByItsAddress)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1; BOARD[2]/IOCHANNEL[3] SIZE=1");
  const KyCInventoryParameter unknown(pool, KyCInventoryAddress(5000), "", 1, "", false, 0);
  unknown.getValue<float>(pool);
  sample.parameter("SIZE")->getValue<float>(pool);
  sample.parameter("BOARD[2]/IOCHANNEL[3]/SIZE")->getValue<float>(pool);
  EXPECT_REPORTS(pool, {0x1100800, "getValueFloat32", ""},
                 {0x1301008, "getValue", "Cannot get value of parameter 5000."}, {0x1100800, "getValueFloat32", ""},
                 {0x1301008, "getValue", "Cannot get value of parameter SIZE."}, {0x1100800, "getValueFloat32", ""},
                 {0x1301008, "getValue", "Cannot get value of parameter BOARD[2]/IOCHANNEL[3]/SIZE."});
}

TEST(KyCInventoryItemValues, everyTypeIsCreatedSetAndReadByAddress)
{
  KyValueTypes::forEach(
      [](auto* typed)
      {
        using T = std::remove_pointer_t<decltype(typed)>;
        KyTestPool pool;
        KyCInventoryItem root(pool, ROOT, "ROOT");
        KyCInventoryParameter* const parameter =
            root.createParameter<T>(pool, s_place, KyValueCase<T>::first(), "mV", false, 2);
        ASSERT_NE(parameter, nullptr);
        EXPECT_EQ(parameter->getType(), KyValueCase<T>::code);
        EXPECT_STREQ(parameter->getUnit(), "mV");
        EXPECT_EQ(parameter->getRelevance(), 2u);
        EXPECT_TRUE(root.getValue<T>(pool, s_place) == KyValueCase<T>::first()) << KyValueCase<T>::name;
        EXPECT_EQ(root.setValue<T>(pool, s_place, KyValueCase<T>::second()), parameter);
        EXPECT_TRUE(root.getValue<T>(pool, s_place) == KyValueCase<T>::second()) << KyValueCase<T>::name;
      });
}

TEST(KyCInventoryItemValues, aStringIsReadAsConstCharByAddress)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD NAME=\"a text of more than six characters\"");
  EXPECT_STREQ(sample.root().getValue<const char*>(pool, BOARD / NAME), "a text of more than six characters");
}

TEST(KyCInventoryItemValues, aValueIsFoundThroughTheItemsOwnAddressToo)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD/IOCHANNEL SIZE=3");
  EXPECT_EQ(sample.item("BOARD")->getValue<int>(pool, IOCHANNEL / SIZE[4]), 3);
}

TEST(KyCInventoryItemValues, everyOtherTypeIsReportedBehindTheBaseAndChangesNothing)
{
  EXPECT_EQ(KyValueTypes::forEachPair(
                [](auto* own, auto* other) {
                  expectMismatchAtItem<std::remove_pointer_t<decltype(own)>, std::remove_pointer_t<decltype(other)>>();
                }),
            132u);
}

TEST(KyCInventoryItemValues, aMissingParameterIsReportedForEveryTypeAndNeverCreated)
{
  KyValueTypes::forEach(
      [](auto* typed)
      {
        using T = std::remove_pointer_t<decltype(typed)>;
        KyTestPool pool;
        KySampleTree sample("ROOT/BOARD[2]");
        EXPECT_TRUE(sample.root().getValue<T>(pool, s_place) == T()) << KyValueCase<T>::name;
        EXPECT_REPORTS(pool, {0x1300801, "getValue", "Parameter BOARD[2]/SIZE does not exist at item ."});
        EXPECT_EQ(sample.root().setValue<T>(pool, s_place, KyValueCase<T>::first()), nullptr);
        EXPECT_REPORTS(pool, {0x1300801, "setValue", "Parameter BOARD[2]/SIZE does not exist at item ."});
        EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD[2]").root()), "");
      });
}

TEST(KyCInventoryItemValues, aMissingParameterIsReportedWithTheAddressOfTheItemAsked)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2]/IOCHANNEL");
  EXPECT_EQ(sample.item("BOARD[2]/IOCHANNEL")->getValue<int>(pool, SIZE[3]), 0);
  EXPECT_REPORTS(pool, {0x1300801, "getValue", "Parameter SIZE[3] does not exist at item BOARD[2]/IOCHANNEL."});
}

TEST(KyCInventoryItemValues, constCharOfAMissingParameterIsEmptyAndReportedUnderItsOwnName)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD");
  const char* const text = sample.item("BOARD")->getValue<const char*>(pool, NAME);
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text, "");
  EXPECT_REPORTS(pool, {0x1300801, "getValue<const char*>", "Parameter NAME does not exist at item BOARD."});
}

TEST(KyCInventoryItemValues, constCharOfAnotherTypeIsReportedFromGetValue)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1");
  EXPECT_STREQ(sample.root().getValue<const char*>(pool, SIZE), "");
  EXPECT_REPORTS(pool, {0x1100800, "getValueConstChar", "Parameter 98 is of type Int32; it cannot be read as String."},
                 {0x1301008, "getValue", "Cannot get value of parameter SIZE."});
}

TEST(KyCInventoryItemValues, theEmptyAddressNamesNoParameter)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1");
  EXPECT_EQ(sample.root().getValue<int>(pool, THIS_NODE), 0);
  EXPECT_EQ(sample.root().setValue<int>(pool, THIS_NODE, 1), nullptr);
  EXPECT_REPORTS(pool, {0x1300801, "getValue", "Parameter  does not exist at item ."},
                 {0x1300801, "setValue", "Parameter  does not exist at item ."});
}
