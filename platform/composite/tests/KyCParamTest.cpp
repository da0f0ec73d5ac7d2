// KyCParamTest.cpp: description, value, external location, copies and failures of a parameter.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include "composite/KyCComposite.h"
#include "composite/KyCParam.h"
#include "support/KyPoolFailure.h"
#include "support/KyTestPool.h"

namespace
{

constexpr unsigned int UNKNOWN_TYPE = 0x01100802;

constexpr unsigned int OWN = 0;    // flags: nothing special

template <typename T>
std::string textOf(T value)
{
  KyTestPool pool;
  const KyCParam parameter(pool, 1, "", OWN, value, nullptr);
  return parameter.getValueAsString(pool).c_str();
}

std::string textOfBits(std::uint64_t bits)
{
  double value;
  std::memcpy(&value, &bits, sizeof(value));
  return textOf(value);
}

std::string valueText(const KyCParam& parameter)
{
  KyTestPool pool;
  return parameter.getValueAsString(pool).c_str();
}

}    // namespace

TEST(KyCParam, isAsSmallAsItsFields) { EXPECT_EQ(sizeof(void*) == 8 ? 48u : 32u, sizeof(KyCParam)); }

TEST(KyCParam, keepsIdTypeAndCustomFlag)
{
  KyTestPool pool;
  const KyCParam plain(pool, 4294967295u, "plain", OWN, 1, nullptr);
  EXPECT_EQ(4294967295u, plain.getId());
  EXPECT_EQ(0x114u, plain.getType());
  EXPECT_FALSE(plain.isCustom());
  const KyCParam custom(pool, 0, "custom", KyCParam::FLAG_CUSTOM, 1.0f, nullptr);
  EXPECT_EQ(0u, custom.getId());
  EXPECT_EQ(0x214u, custom.getType());
  EXPECT_TRUE(custom.isCustom());
  const KyCParam untyped(pool, 1, "untyped", KyCParam::FLAG_CUSTOM | 0x218u);
  EXPECT_EQ(0x218u, untyped.getType());
  EXPECT_TRUE(untyped.isCustom());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, typeFollowsFromTheValueWhateverTheFlagsSay)
{
  KyTestPool pool;
  const KyCParam parameter(pool, 1, "", 0x2000u, 5u, nullptr);
  EXPECT_EQ(0x124u, parameter.getType());
  EXPECT_EQ(5u, parameter.getValueUInt32(pool));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, ignoresTheFlagThatIsItsOwn)
{
  KyTestPool pool;
  const KyCParam typed(pool, 1, "", 0xFFFD0000u, 5u, nullptr);
  EXPECT_EQ(5u, typed.getValueUInt32(pool));
  const KyCParam untyped(pool, 1, "", 0xFFFD0000u | KyCParam::TYPE_STRING);
  EXPECT_STREQ("", untyped.getValueConstChar(pool));
  EXPECT_NO_REPORTS(pool);
}

// ---- Description ----

TEST(KyCParam, copiesTheDescription)
{
  KyTestPool pool;
  char description[] = "voltage";
  const KyCParam parameter(pool, 1, description, OWN, 1, nullptr);
  std::memcpy(description, "changed", 7);
  EXPECT_STREQ("voltage", parameter.getDescription());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, keepsThePointerOfAStaticDescription)
{
  KyTestPool pool;
  static const char description[] = "voltage";
  const KyCParam parameter(pool, 1, description, KyCParam::FLAG_STATIC_DESCRIPTION, 1, nullptr);
  EXPECT_EQ(description, parameter.getDescription());
  const KyCParam copy(parameter);
  EXPECT_EQ(description, copy.getDescription());
  KyCParam assigned(pool, 2, "own description", OWN, 1, nullptr);
  assigned = parameter;
  EXPECT_EQ(description, assigned.getDescription());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, nullDescriptionReadsBackAsEmpty)
{
  KyTestPool pool;
  const KyCParam own(pool, 1, nullptr, OWN, 1, nullptr);
  EXPECT_STREQ("", own.getDescription());
  const KyCParam fixed(pool, 1, nullptr, KyCParam::FLAG_STATIC_DESCRIPTION, 1, nullptr);
  EXPECT_STREQ("", fixed.getDescription());
  const KyCParam untyped(pool, 1, nullptr, KyCParam::TYPE_FLOAT32);
  EXPECT_STREQ("", untyped.getDescription());
  EXPECT_STREQ("", KyCParam(own).getDescription());
  EXPECT_NO_REPORTS(pool);
}

// ---- Values at the limits ----

template <typename T>
class KyCParamNumber : public ::testing::Test
{
};

template <typename T>
struct KyAccess;

#define KY_ACCESS(T, NAME)                                                                                           \
  template <>                                                                                                        \
  struct KyAccess<T>                                                                                                 \
  {                                                                                                                  \
    static std::string name() { return #NAME; }                                                                      \
    static T get(const KyCParam& parameter, KyCErrorListPool& pool) { return parameter.getValue##NAME(pool); }       \
    static void set(KyCParam& parameter, KyCErrorListPool& pool, T value) { parameter.setValue##NAME(pool, value); } \
  };
KY_ACCESS(signed char, Int8)
KY_ACCESS(short, Int16)
KY_ACCESS(int, Int32)
KY_ACCESS(long long, Long64)
KY_ACCESS(unsigned char, UInt8)
KY_ACCESS(unsigned short, UInt16)
KY_ACCESS(unsigned int, UInt32)
KY_ACCESS(unsigned long long, ULong64)
KY_ACCESS(float, Float32)
KY_ACCESS(double, Float64)

using KyNumberTypes = ::testing::Types<signed char, short, int, long long, unsigned char, unsigned short, unsigned int,
                                       unsigned long long, float, double>;

struct KyNumberNames
{
  template <typename T>
  static std::string GetName(int)
  {
    return KyAccess<T>::name();
  }
};

TYPED_TEST_SUITE(KyCParamNumber, KyNumberTypes, KyNumberNames);

TYPED_TEST(KyCParamNumber, keepsEveryValueInside)
{
  using T = TypeParam;
  const T values[] = {T(0),
                      T(1),
                      T(100),
                      std::numeric_limits<T>::lowest(),
                      std::numeric_limits<T>::min(),
                      std::numeric_limits<T>::max()};
  KyTestPool pool;
  for (const T value : values)
  {
    KyCParam parameter(pool, 1, "number", OWN, value, nullptr);
    EXPECT_EQ(value, KyAccess<T>::get(parameter, pool));
    KyAccess<T>::set(parameter, pool, T(7));
    EXPECT_EQ(T(7), KyAccess<T>::get(parameter, pool));
    KyAccess<T>::set(parameter, pool, value);
    EXPECT_EQ(value, KyAccess<T>::get(parameter, pool));
    const KyCParam copy(parameter);
    EXPECT_EQ(value, KyAccess<T>::get(copy, pool));
  }
  EXPECT_NO_REPORTS(pool);
}

TYPED_TEST(KyCParamNumber, livesAtTheExternalLocation)
{
  using T = TypeParam;
  KyTestPool pool;
  T places[3] = {T(11), T(12), T(13)};    // the middle one is the parameter's
  KyCParam parameter(pool, 1, "number", OWN, T(5), &places[1]);
  EXPECT_EQ(T(5), places[1]);
  places[1] = T(6);
  EXPECT_EQ(T(6), KyAccess<T>::get(parameter, pool));
  KyAccess<T>::set(parameter, pool, T(7));
  EXPECT_EQ(T(7), places[1]);

  KyCParam copy(parameter);
  KyAccess<T>::set(copy, pool, T(8));
  EXPECT_EQ(T(8), KyAccess<T>::get(copy, pool));
  EXPECT_EQ(T(7), places[1]);

  const KyCParam other(pool, 2, "other", OWN, T(9), nullptr);
  parameter = other;    // inside from now on
  EXPECT_EQ(T(9), KyAccess<T>::get(parameter, pool));
  EXPECT_EQ(T(7), places[1]);
  EXPECT_EQ(T(11), places[0]);
  EXPECT_EQ(T(13), places[2]);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, keepsStringsInsideAndAtTheExternalLocation)
{
  KyTestPool pool;
  KyCString place("before");
  KyCParam external(pool, 1, "text", OWN, KyCString("a long text value"), &place);
  EXPECT_STREQ("a long text value", place.c_str());
  external.setValueConstChar(pool, "changed by the parameter");
  EXPECT_STREQ("changed by the parameter", place.c_str());
  place = "changed by its owner";
  EXPECT_STREQ("changed by its owner", external.getValueConstChar(pool));
  EXPECT_STREQ("changed by its owner", external.getValueKyCString(pool).c_str());

  KyCParam copy(external);
  copy.setValueConstChar(pool, "the copy's own text");
  EXPECT_STREQ("changed by its owner", place.c_str());
  EXPECT_STREQ("the copy's own text", copy.getValueConstChar(pool));
  external = copy;
  external.setValueConstChar(pool, "inside now");
  EXPECT_STREQ("changed by its owner", place.c_str());
  EXPECT_STREQ("inside now", external.getValueConstChar(pool));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, keepsVersionsInsideAndAtTheExternalLocation)
{
  KyTestPool pool;
  KyCVersion place(9, 9, 9, 9);
  KyCParam external(pool, 1, "version", OWN, KyCVersion(1, 2, 3, 4), &place);
  EXPECT_EQ(KyCVersion(1, 2, 3, 4), place);
  external.setValueKyCVersion(pool, KyCVersion(2, 0, 0, 0));
  EXPECT_EQ(KyCVersion(2, 0, 0, 0), place);
  KyCParam copy(external);
  place = KyCVersion(3, 0, 0, 0);
  EXPECT_EQ(KyCVersion(3, 0, 0, 0), external.getValueKyCVersion(pool));
  EXPECT_EQ(KyCVersion(2, 0, 0, 0), copy.getValueKyCVersion(pool));
  external = copy;
  EXPECT_EQ(KyCVersion(2, 0, 0, 0), external.getValueKyCVersion(pool));
  EXPECT_EQ(KyCVersion(3, 0, 0, 0), place);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, stringValueTakesNullAsEmptyAndPartsOfItself)
{
  KyTestPool pool;
  KyCParam parameter(pool, 1, "text", OWN, KyCString("abcdefghijkl"), nullptr);
  parameter.setValueConstChar(pool, parameter.getValueConstChar(pool) + 2);
  EXPECT_STREQ("cdefghijkl", parameter.getValueConstChar(pool));
  parameter.setValueConstChar(pool, parameter.getValueConstChar(pool) + 7);
  EXPECT_STREQ("jkl", parameter.getValueConstChar(pool));
  parameter.setValueConstChar(pool, parameter.getValueConstChar(pool) + 1);
  EXPECT_STREQ("kl", parameter.getValueConstChar(pool));
  parameter.setValueConstChar(pool, nullptr);
  EXPECT_STREQ("", parameter.getValueConstChar(pool));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, signallingNanKeepsItsBitsWhereverItIsCopied)
{
  KyTestPool pool;
  const std::uint32_t bits32 = 0x7FA00001;
  const std::uint64_t bits64 = 0x7FF4000000000001;
  float float32;
  double float64;
  std::memcpy(&float32, &bits32, sizeof(float32));
  std::memcpy(&float64, &bits64, sizeof(float64));
  float place32 = 0;
  double place64 = 0;
  const KyCParam first32(pool, 1, "", OWN, float32, &place32);
  const KyCParam first64(pool, 1, "", OWN, float64, &place64);
  EXPECT_EQ(0, std::memcmp(&bits32, &place32, sizeof(bits32)));
  EXPECT_EQ(0, std::memcmp(&bits64, &place64, sizeof(bits64)));

  // Back out through another parameter's external location, by assignment and by setter.
  const KyCParam copy32(first32);
  const KyCParam copy64(first64);
  KyCParam target32(pool, 2, "", OWN, 0.0f, nullptr);
  KyCParam target64(pool, 2, "", OWN, 0.0, nullptr);
  target32 = copy32;
  target64 = copy64;
  float set32 = 0;
  double set64 = 0;
  KyCParam setter32(pool, 3, "", OWN, 0.0f, &set32);
  KyCParam setter64(pool, 3, "", OWN, 0.0, &set64);
  setter32.setValueFloat32(pool, float32);
  setter64.setValueFloat64(pool, float64);
  EXPECT_EQ(0, std::memcmp(&bits32, &set32, sizeof(bits32)));
  EXPECT_EQ(0, std::memcmp(&bits64, &set64, sizeof(bits64)));
  EXPECT_NE(target32.getValueFloat32(pool), target32.getValueFloat32(pool));
  EXPECT_NE(target64.getValueFloat64(pool), target64.getValueFloat64(pool));
  EXPECT_NO_REPORTS(pool);
}

// ---- Value as text ----

TEST(KyCParam, integersReadAsDecimalText)
{
  EXPECT_EQ("-128", textOf<signed char>(-128));
  EXPECT_EQ("65", textOf<signed char>('A'));
  EXPECT_EQ("255", textOf<unsigned char>(255));
  EXPECT_EQ("-32768", textOf<short>(-32768));
  EXPECT_EQ("65535", textOf<unsigned short>(65535));
  EXPECT_EQ("-2147483648", textOf<int>(-2147483647 - 1));
  EXPECT_EQ("4294967295", textOf<unsigned int>(4294967295u));
  EXPECT_EQ("-9223372036854775808", textOf<long long>(-9223372036854775807LL - 1));
  EXPECT_EQ("18446744073709551615", textOf<unsigned long long>(18446744073709551615ULL));
  EXPECT_EQ("0", textOf<int>(0));
}

TEST(KyCParam, floatingPointNumbersReadAsTheShortestTextThatReadsBack)
{
  EXPECT_EQ("0.1", textOf(0.1f));
  EXPECT_EQ("0.1", textOf(0.1));
  EXPECT_EQ("0.30000000000000004", textOfBits(0x3FD3333333333334));
  EXPECT_EQ("16777216", textOf(16777216.0f));
  EXPECT_EQ("1e+22", textOf(1e22));
  EXPECT_EQ("0", textOf(0.0));
  EXPECT_EQ("-0", textOf(-0.0));
  EXPECT_EQ("-1.5", textOf(-1.5f));
  EXPECT_EQ("3.4028235e+38", textOf(std::numeric_limits<float>::max()));
  EXPECT_EQ("1e-45", textOf(std::numeric_limits<float>::denorm_min()));
  EXPECT_EQ("-1.7976931348623157e+308", textOf(std::numeric_limits<double>::lowest()));
  EXPECT_EQ("5e-324", textOf(std::numeric_limits<double>::denorm_min()));
  EXPECT_EQ("inf", textOf(std::numeric_limits<double>::infinity()));
  EXPECT_EQ("-inf", textOf(-std::numeric_limits<float>::infinity()));
  EXPECT_EQ("nan", textOf(std::numeric_limits<double>::quiet_NaN()));
}

TEST(KyCParam, stringsAndVersionsReadAsTheirText)
{
  EXPECT_EQ("any text, as it is: %1 %s", textOf(KyCString("any text, as it is: %1 %s")));
  EXPECT_EQ("", textOf(KyCString()));
  EXPECT_EQ("1.20.3.4", textOf(KyCVersion(1, 20, 3, 4)));
  EXPECT_EQ("4294967295.4294967295.4294967295.4294967295",
            textOf(KyCVersion(4294967295u, 4294967295u, 4294967295u, 4294967295u)));
}

TEST(KyCParam, valueAsTextIsReadFromTheExternalLocation)
{
  KyTestPool pool;
  int number = 0;
  KyCString text;
  KyCVersion version;
  const KyCParam numberParameter(pool, 1, "", OWN, 1, &number);
  const KyCParam textParameter(pool, 1, "", OWN, KyCString("x"), &text);
  const KyCParam versionParameter(pool, 1, "", OWN, KyCVersion(1, 1, 1, 1), &version);
  number = 42;
  text = "forty-two";
  version = KyCVersion(4, 2, 0, 0);
  EXPECT_EQ("42", valueText(numberParameter));
  EXPECT_EQ("forty-two", valueText(textParameter));
  EXPECT_EQ("4.2.0.0", valueText(versionParameter));
  EXPECT_NO_REPORTS(pool);
}

// ---- Copies ----

TEST(KyCParam, copyHasEverythingButTheOwner)
{
  KyTestPool pool;
  KyCComposite node(pool, 1, 1, "node");
  KyCParam* const original =
      new (pool) KyCParam(pool, 5, "description", KyCParam::FLAG_CUSTOM, KyCString("a longer value"), nullptr);
  node.addParameter(pool, original);
  KyCParam* const copy = new KyCParam(*original);
  EXPECT_EQ(5u, copy->getId());
  EXPECT_STREQ("description", copy->getDescription());
  EXPECT_NE(original->getDescription(), copy->getDescription());
  EXPECT_EQ(0x2000u, copy->getType());
  EXPECT_TRUE(copy->isCustom());
  EXPECT_STREQ("a longer value", copy->getValueConstChar(pool));
  KyCComposite other(pool, 2, 2, "other");
  other.addParameter(pool, copy);    // it is free
  EXPECT_EQ(copy, other.getParameterById(5));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, assignmentBetweenAllTypesTakesTypeAndValue)
{
  KyTestPool pool;
  const auto make = [&pool](unsigned int n) -> std::unique_ptr<KyCParam>
  {
    switch (n)
    {
      case 0:
        return std::make_unique<KyCParam>(pool, 10, "byte", OWN, static_cast<signed char>(-1), nullptr);
      case 1:
        return std::make_unique<KyCParam>(pool, 11, "wide", OWN, 123456789012LL, nullptr);
      case 2:
        return std::make_unique<KyCParam>(pool, 12, "double", OWN, 0.5, nullptr);
      case 3:
        return std::make_unique<KyCParam>(pool, 13, "short text", OWN, KyCString("abc"), nullptr);
      case 4:
        return std::make_unique<KyCParam>(pool, 14, "long text", KyCParam::FLAG_CUSTOM, KyCString("a long text here"),
                                          nullptr);
      case 5:
        return std::make_unique<KyCParam>(pool, 15, "version", OWN, KyCVersion(1, 2, 3, 4), nullptr);
      default:
        return std::make_unique<KyCParam>(pool, 16, "unknown", 0x777u);
    }
  };
  const char* const descriptions[] = {"byte", "wide", "double", "short text", "long text", "version", "unknown"};
  const char* const values[] = {"-1", "123456789012", "0.5", "abc", "a long text here", "1.2.3.4"};
  for (unsigned int from = 0; from < 7; ++from)
  {
    for (unsigned int to = 0; to < 7; ++to)
    {
      const std::unique_ptr<KyCParam> target = make(from);
      const std::unique_ptr<KyCParam> source = make(to);
      *target = *source;
      EXPECT_EQ(10 + to, target->getId());
      EXPECT_STREQ(descriptions[to], target->getDescription());
      EXPECT_EQ(source->getType(), target->getType());
      EXPECT_EQ(to == 4, target->isCustom());
      if (to == 6) continue;
      EXPECT_EQ(values[to], valueText(*target));
      EXPECT_EQ(values[to], valueText(*source));
    }
  }
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, assignmentToItselfChangesNothing)
{
  KyTestPool pool;
  int place = 0;
  KyCParam parameter(pool, 1, "external", OWN, 5, &place);
  const KyCParam& alias = parameter;
  parameter = alias;
  place = 6;
  EXPECT_EQ(6, parameter.getValueInt32(pool));    // still external
  EXPECT_STREQ("external", parameter.getDescription());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, assignmentLeavesTheTargetWhereItHangs)
{
  KyTestPool pool;
  KyCComposite node(pool, 1, 1, "node");
  KyCParam* const first = new (pool) KyCParam(pool, 1, "first", OWN, 1, nullptr);
  KyCParam* const second = new (pool) KyCParam(pool, 2, "second", OWN, 2, nullptr);
  node.addParameter(pool, first);
  node.addParameter(pool, second);
  *first = KyCParam(pool, 7, "seventh", OWN, 7.5, nullptr);
  EXPECT_EQ(first, node.getParameterById(7));
  EXPECT_EQ(nullptr, node.getParameterById(1));
  EXPECT_EQ(first, node.getParameterByIndex(0));
  EXPECT_EQ(second, node.getParameterByIndex(1));
  EXPECT_NO_REPORTS(pool);
}

// ---- Untyped parameters and unknown types ----

TEST(KyCParam, untypedConstructorStartsEveryTypeAtZeroOrEmpty)
{
  KyTestPool pool;
  const unsigned int numbers[] = {0x111, 0x112, 0x114, 0x118, 0x121, 0x122, 0x124, 0x128, 0x214, 0x218};
  for (const unsigned int type : numbers)
  {
    const KyCParam parameter(pool, 1, "number", type);
    EXPECT_EQ(type, parameter.getType());
    EXPECT_EQ("0", valueText(parameter));
  }
  EXPECT_EQ("", valueText(KyCParam(pool, 1, "text", 0x2000)));
  EXPECT_EQ("0.0.0.0", valueText(KyCParam(pool, 1, "version", 0x4000)));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, unknownTypeReportsOnEveryAccess)
{
  KyTestPool pool;
  KyCParam parameter(pool, 77, "strange", KyCParam::FLAG_CUSTOM | 0x113u);
  EXPECT_EQ(0x113u, parameter.getType());
  EXPECT_STREQ("strange", parameter.getDescription());
  EXPECT_NO_REPORTS(pool);

  const std::string text = "Parameter 77 has the unknown type code 0x113 and no value.";
  EXPECT_EQ(0, parameter.getValueInt8(pool));
  EXPECT_EQ(0, parameter.getValueInt16(pool));
  EXPECT_EQ(0, parameter.getValueInt32(pool));
  EXPECT_EQ(0, parameter.getValueLong64(pool));
  EXPECT_EQ(0u, parameter.getValueUInt8(pool));
  EXPECT_EQ(0u, parameter.getValueUInt16(pool));
  EXPECT_EQ(0u, parameter.getValueUInt32(pool));
  EXPECT_EQ(0u, parameter.getValueULong64(pool));
  EXPECT_EQ(0.0f, parameter.getValueFloat32(pool));
  EXPECT_EQ(0.0, parameter.getValueFloat64(pool));
  EXPECT_STREQ("", parameter.getValueConstChar(pool));
  EXPECT_STREQ("", parameter.getValueKyCString(pool).c_str());
  EXPECT_EQ(KyCVersion(), parameter.getValueKyCVersion(pool));
  EXPECT_STREQ("", parameter.getValueAsString(pool).c_str());
  EXPECT_REPORTS(pool, {UNKNOWN_TYPE, "getValueInt8", text}, {UNKNOWN_TYPE, "getValueInt16", text},
                 {UNKNOWN_TYPE, "getValueInt32", text}, {UNKNOWN_TYPE, "getValueLong64", text},
                 {UNKNOWN_TYPE, "getValueUInt8", text}, {UNKNOWN_TYPE, "getValueUInt16", text},
                 {UNKNOWN_TYPE, "getValueUInt32", text}, {UNKNOWN_TYPE, "getValueULong64", text},
                 {UNKNOWN_TYPE, "getValueFloat32", text}, {UNKNOWN_TYPE, "getValueFloat64", text},
                 {UNKNOWN_TYPE, "getValueConstChar", text}, {UNKNOWN_TYPE, "getValueKyCString", text},
                 {UNKNOWN_TYPE, "getValueKyCVersion", text}, {UNKNOWN_TYPE, "getValueAsString", text});

  parameter.setValueInt8(pool, 1);
  parameter.setValueInt16(pool, 1);
  parameter.setValueInt32(pool, 1);
  parameter.setValueLong64(pool, 1);
  parameter.setValueUInt8(pool, 1);
  parameter.setValueUInt16(pool, 1);
  parameter.setValueUInt32(pool, 1);
  parameter.setValueULong64(pool, 1);
  parameter.setValueFloat32(pool, 1);
  parameter.setValueFloat64(pool, 1);
  parameter.setValueConstChar(pool, "a text of many characters");
  parameter.setValueKyCVersion(pool, KyCVersion(1, 0, 0, 0));
  EXPECT_REPORTS(pool, {UNKNOWN_TYPE, "setValueInt8", text}, {UNKNOWN_TYPE, "setValueInt16", text},
                 {UNKNOWN_TYPE, "setValueInt32", text}, {UNKNOWN_TYPE, "setValueLong64", text},
                 {UNKNOWN_TYPE, "setValueUInt8", text}, {UNKNOWN_TYPE, "setValueUInt16", text},
                 {UNKNOWN_TYPE, "setValueUInt32", text}, {UNKNOWN_TYPE, "setValueULong64", text},
                 {UNKNOWN_TYPE, "setValueFloat32", text}, {UNKNOWN_TYPE, "setValueFloat64", text},
                 {UNKNOWN_TYPE, "setValueConstChar", text}, {UNKNOWN_TYPE, "setValueKyCVersion", text});
  const KyCParam copy(parameter);
  EXPECT_EQ(0x113u, copy.getType());
}

// ---- No memory ----

TEST(KyCParam, constructionFailsCleanlyAtEveryAllocation)
{
  // A version with its own description: object, description, version. Which one fails shows in what reads back.
  for (unsigned int n = 0; n < 4; ++n)
  {
    KyTestPool pool;
    KyNPoolAllocator::failAfter(n);
    KyCParam* const parameter = new (pool) KyCParam(pool, 1, "description", OWN, KyCVersion(1, 2, 3, 4), nullptr);
    KyNPoolAllocator::reset();
    EXPECT_EQ(n < 3 ? 1u : 0u, pool.getErrorCount());
    for (const KyReport& report : pool.takeReports())
      EXPECT_EQ(OUT_OF_MEMORY, report.code);
    EXPECT_EQ(n == 0, parameter == nullptr);
    if (parameter == nullptr) continue;
    EXPECT_STREQ(n == 1 ? "" : "description", parameter->getDescription());
    EXPECT_EQ(n == 2 ? "0.0.0.0" : "1.2.3.4", valueText(*parameter));
    EXPECT_EQ(n == 2 ? "0.0.0.0" : "1.2.3.4", valueText(KyCParam(*parameter)));
    KyCParam assigned(pool, 2, "x", OWN, 1, nullptr);
    assigned = *parameter;
    EXPECT_EQ(n == 2 ? "0.0.0.0" : "1.2.3.4", valueText(assigned));
    parameter->setValueKyCVersion(pool, KyCVersion(5, 6, 7, 8));    // takes the missing block now
    EXPECT_EQ("5.6.7.8", valueText(*parameter));
    EXPECT_NO_REPORTS(pool);
    delete parameter;
  }
}

TEST(KyCParam, numberWithAStaticDescriptionIsOneBlock)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(1);    // the second one would fail
  const std::unique_ptr<KyCParam> typed(
      new (pool) KyCParam(pool, 1, "static", KyCParam::FLAG_STATIC_DESCRIPTION, 5.0, nullptr));
  KyNPoolAllocator::failAfter(1);
  const std::unique_ptr<KyCParam> untyped(new (pool)
                                              KyCParam(pool, 1, "static", KyCParam::FLAG_STATIC_DESCRIPTION | 0x128u));
  KyNPoolAllocator::reset();
  EXPECT_NE(nullptr, typed);
  EXPECT_NE(nullptr, untyped);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCParam, settersWithoutMemoryReportAndKeepTheValue)
{
  KyTestPool pool;
  KyCParam text(pool, 1, "text", OWN, KyCString("before"), nullptr);
  KyNPoolAllocator::failAfter(0);
  text.setValueConstChar(pool, "after, and much longer");
  KyNPoolAllocator::reset();
  EXPECT_STREQ("before", text.getValueConstChar(pool));
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."});

  KyNPoolAllocator::failAfter(0);
  KyCParam version(pool, 1, nullptr, KyCParam::TYPE_VERSION);
  KyNPoolAllocator::failAfter(0);
  version.setValueKyCVersion(pool, KyCVersion(1, 0, 0, 0));
  KyNPoolAllocator::reset();
  EXPECT_EQ(KyCVersion(), version.getValueKyCVersion(pool));
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."}, {OUT_OF_MEMORY, "", "Out of memory."});
}

TEST(KyCParam, valueAsTextWithoutMemoryReportsAndIsEmpty)
{
  KyTestPool pool;
  const KyCParam number(pool, 1, "number", OWN, 1234567, nullptr);
  const KyCParam version(pool, 1, "version", OWN, KyCVersion(10, 20, 30, 40), nullptr);
  KyNPoolAllocator::failAfter(0);
  EXPECT_STREQ("", number.getValueAsString(pool).c_str());
  KyNPoolAllocator::failAfter(0);
  EXPECT_STREQ("", version.getValueAsString(pool).c_str());
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."}, {OUT_OF_MEMORY, "", "Out of memory."});
}

// ---- Life in a composite ----

TEST(KyCParam, deletionUnlinksItFromItsComposite)
{
  KyTestPool pool;
  KyCComposite node(pool, 1, 1, "node");
  KyCParam* parameters[4];
  for (unsigned int n = 0; n < 4; ++n)
  {
    parameters[n] = new (pool) KyCParam(pool, n, "", OWN, static_cast<int>(n), nullptr);
    node.addParameter(pool, parameters[n]);
  }
  delete parameters[1];    // middle
  EXPECT_EQ(parameters[2], node.getParameterByIndex(1));
  delete parameters[3];    // last
  EXPECT_EQ(nullptr, node.getParameterByIndex(2));
  delete parameters[0];    // first
  EXPECT_EQ(parameters[2], node.getParameterByIndex(0));
  node.addParameter(pool, new (pool) KyCParam(pool, 9, "", OWN, 9, nullptr));
  EXPECT_EQ(9u, node.getParameterByIndex(1)->getId());
  delete parameters[2];
  EXPECT_EQ(9u, node.getParameterByIndex(0)->getId());
  EXPECT_NO_REPORTS(pool);
}
