// Texts and values as JSON, and back.
#include "KyJsonValue.h"

#include <gtest/gtest.h>

#include "composite/KyCParam.h"
#include "support/KySampleTree.h"

using namespace KyNInventoryKit;

namespace
{
std::string dumped(const std::string& type, const std::string& value)
{
  KySampleTree sample("ROOT SIZE " + type + " " + value);
  return jsonOfValue(*sample.parameter("SIZE")).dump();
}

std::string textOf(const char* json, unsigned int type)
{
  std::string text;
  return valueTextOfJson(Json::parse(json), type, text) ? text : "refused";
}

std::string roundTripOf(const std::string& text)
{
  std::string back;
  EXPECT_TRUE(textOfJson(Json::parse(jsonOfText(text).dump()), back));
  return back;
}
}    // namespace

TEST(KyJsonValue, integersOfUpTo32BitsAreNumbersAndThoseOf64BitsAreStrings)
{
  EXPECT_EQ(dumped("Int8", "-128"), "-128");
  EXPECT_EQ(dumped("Int16", "-32768"), "-32768");
  EXPECT_EQ(dumped("Int32", "-2147483648"), "-2147483648");
  EXPECT_EQ(dumped("UInt8", "255"), "255");
  EXPECT_EQ(dumped("UInt16", "65535"), "65535");
  EXPECT_EQ(dumped("UInt32", "4294967295"), "4294967295");
  EXPECT_EQ(dumped("Long64", "-9223372036854775808"), "\"-9223372036854775808\"");
  EXPECT_EQ(dumped("ULong64", "18446744073709551615"), "\"18446744073709551615\"");
}

TEST(KyJsonValue, floatingPointNumbersAndVersionsAreStrings)
{
  EXPECT_EQ(dumped("Float32", "0.1"), "\"0.1\"");
  EXPECT_EQ(dumped("Float64", "-0.0"), "\"-0\"");
  EXPECT_EQ(dumped("Version", "1.2.3.4"), "\"1.2.3.4\"");
}

TEST(KyJsonValue, aTypeWithoutValuesIsNullAndNamedByItsCode)
{
  KySampleTree sample("ROOT SIZE 0x777 0");
  EXPECT_EQ(jsonOfValue(*sample.parameter("SIZE")).dump(), "null");
  EXPECT_EQ(typeText(*sample.parameter("SIZE")), "0x777");
}

TEST(KyJsonValue, textsThatAreUtf8AreStringsAndOthersAreBytes)
{
  EXPECT_EQ(jsonOfText("").dump(), "\"\"");
  EXPECT_EQ(jsonOfText("a\"\n\x1B\xC3\xA9").dump(), "\"a\\\"\\n\\u001b\xC3\xA9\"");
  EXPECT_EQ(jsonOfText(std::string("a\0b", 3)).dump(), "{\"bytes\":\"YQBi\"}");
  EXPECT_EQ(jsonOfText("\xFF").dump(), "{\"bytes\":\"/w==\"}");
  EXPECT_EQ(jsonOfText("ab\xFF").dump(), "{\"bytes\":\"YWL/\"}");
  EXPECT_EQ(jsonOfText("abc\xFF").dump(), "{\"bytes\":\"YWJj/w==\"}");
}

TEST(KyJsonValue, utf8IsTakenInItsShortestFormAndWithoutSurrogatesAlone)
{
  for (const char* text : {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                           "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
    EXPECT_TRUE(isPlainUtf8(text)) << text;
  for (const char* text :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x7F", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF0\x90\x80", "\xFE"})
    EXPECT_FALSE(isPlainUtf8(text)) << text;
  EXPECT_FALSE(isPlainUtf8(std::string_view("\0", 1)));
}

TEST(KyJsonValue, everyByteSurvivesInTextsOfEveryLength)
{
  std::string text;
  for (int n = 0; n < 300; ++n)
  {
    EXPECT_EQ(roundTripOf(text), text);
    text += static_cast<char>(n * 7);
  }
}

TEST(KyJsonValue, whatIsNoTextIsRefused)
{
  std::string text;
  for (const char* json :
       {"null", "1", "[]", "{}", "{\"bytes\":1}", "{\"bytes\":\"YQ=\"}", "{\"bytes\":\"YQ\"}", "{\"bytes\":\"YR==\"}",
        "{\"bytes\":\"YWJ=\"}", "{\"bytes\":\"Y===\"}", "{\"bytes\":\"YQ==YQ==\"}", "{\"bytes\":\"Y Q=\"}",
        "{\"bytes\":\"\",\"more\":1}", "{\"byte\":\"\"}"})
    EXPECT_FALSE(textOfJson(Json::parse(json), text)) << json;
}

TEST(KyJsonValue, numbersAreTakenAsNumbersAndAsStrings)
{
  EXPECT_EQ(textOf("5", KyCParam::TYPE_INT8), "5");
  EXPECT_EQ(textOf("\"5\"", KyCParam::TYPE_INT8), "5");
  EXPECT_EQ(textOf("18446744073709551615", KyCParam::TYPE_ULONG64), "18446744073709551615");
  EXPECT_EQ(textOf("-9223372036854775808", KyCParam::TYPE_LONG64), "-9223372036854775808");
  EXPECT_EQ(textOf("0.1", KyCParam::TYPE_FLOAT32), "0.1");
  EXPECT_EQ(textOf("7", KyCParam::TYPE_FLOAT64), "7");
  EXPECT_EQ(textOf("\"nan\"", KyCParam::TYPE_FLOAT64), "nan");
  EXPECT_EQ(textOf("\"1.2\"", KyCParam::TYPE_VERSION), "1.2");
}

TEST(KyJsonValue, otherKindsOfJsonAreRefused)
{
  EXPECT_EQ(textOf("0.5", KyCParam::TYPE_INT32), "refused");
  EXPECT_EQ(textOf("18446744073709551616", KyCParam::TYPE_ULONG64), "refused");
  EXPECT_EQ(textOf("1.2", KyCParam::TYPE_VERSION), "refused");
  EXPECT_EQ(textOf("1", KyCParam::TYPE_STRING), "refused");
  EXPECT_EQ(textOf("true", KyCParam::TYPE_INT32), "refused");
  EXPECT_EQ(textOf("null", KyCParam::TYPE_FLOAT64), "refused");
  EXPECT_EQ(textOf("[1]", KyCParam::TYPE_INT32), "refused");
  EXPECT_EQ(textOf("{\"bytes\":\"\"}", KyCParam::TYPE_INT32), "refused");
}
