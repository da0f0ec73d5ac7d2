// Values as texts, and back.
#include "inventorykit/KyValueText.h"

#include <cmath>
#include <limits>

#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
// Sets the value of a parameter of this type to what the text names and gives it back as text; "refused" with a report.
std::string roundTrip(const std::string& type, const std::string& text, const std::string& zero = "0")
{
  KySampleTree sample("ROOT SIZE " + type + " " + zero);
  KyCErrorListPool pool;
  const bool isSet = setValueText(pool, *sample.parameter("SIZE"), text);
  EXPECT_EQ(isSet, pool.getErrorCount() == 0);
  return isSet ? valueText(*sample.parameter("SIZE")) : "refused";
}
}    // namespace

TEST(KyValueText, everyIntegerTypeTakesItsBoundsAndNothingBeyond)
{
  EXPECT_EQ(roundTrip("Int8", "-128"), "-128");
  EXPECT_EQ(roundTrip("Int8", "127"), "127");
  EXPECT_EQ(roundTrip("Int8", "128"), "refused");
  EXPECT_EQ(roundTrip("Int16", "-32769"), "refused");
  EXPECT_EQ(roundTrip("Int32", "2147483647"), "2147483647");
  EXPECT_EQ(roundTrip("Long64", "-9223372036854775808"), "-9223372036854775808");
  EXPECT_EQ(roundTrip("Long64", "9223372036854775808"), "refused");
  EXPECT_EQ(roundTrip("UInt8", "255"), "255");
  EXPECT_EQ(roundTrip("UInt8", "-1"), "refused");
  EXPECT_EQ(roundTrip("UInt16", "65536"), "refused");
  EXPECT_EQ(roundTrip("UInt32", "4294967295"), "4294967295");
  EXPECT_EQ(roundTrip("ULong64", "18446744073709551615"), "18446744073709551615");
  EXPECT_EQ(roundTrip("ULong64", "18446744073709551616"), "refused");
}

TEST(KyValueText, integersMayBeHexadecimalOrHaveASign)
{
  EXPECT_EQ(roundTrip("Int32", "0x7FFFFFFF"), "2147483647");
  EXPECT_EQ(roundTrip("UInt8", "0xff"), "255");
  EXPECT_EQ(roundTrip("Int32", "+5"), "5");
  EXPECT_EQ(roundTrip("Int32", "010"), "10");
  for (const char* text : {"", " 5", "5 ", "+-5", "--5", "0x", "-0x5", "5.0", "1e3", "five"})
    EXPECT_EQ(roundTrip("Int32", text), "refused") << text;
}

TEST(KyValueText, floatingPointNumbersAreTheShortestTextThatReadsBack)
{
  EXPECT_EQ(roundTrip("Float32", "0.1"), "0.1");
  EXPECT_EQ(roundTrip("Float64", "0.1"), "0.1");
  EXPECT_EQ(roundTrip("Float64", "1e300"), "1e+300");
  EXPECT_EQ(roundTrip("Float32", "1e39"), "refused");
  EXPECT_EQ(roundTrip("Float64", "-0"), "-0");
  EXPECT_EQ(roundTrip("Float64", "+2.5"), "2.5");
  EXPECT_EQ(roundTrip("Float64", "0x1p-1"), "0.5");
  EXPECT_EQ(roundTrip("Float64", "-0x1.8p1"), "-3");
  EXPECT_EQ(roundTrip("Float64", "inf"), "inf");
  EXPECT_EQ(roundTrip("Float32", "-inf"), "-inf");
  for (const char* text : {"", "1,5", "+-1", "1.5V", "nan(", "nan(0x1)", "nan(0x7ff8000000000001", "0x"})
    EXPECT_EQ(roundTrip("Float64", text), "refused") << text;
}

TEST(KyValueText, aNaNIsToldWithItsBitsUnlessItIsTheUsualOne)
{
  EXPECT_EQ(roundTrip("Float64", "nan"), "nan");
  EXPECT_EQ(roundTrip("Float64", "nan(0x7ff8000000000000)"), "nan");
  EXPECT_EQ(roundTrip("Float64", "nan(0xfff8000000000007)"), "nan(0xfff8000000000007)");
  EXPECT_EQ(roundTrip("Float32", "nan(0xffc00001)"), "nan(0xffc00001)");
  EXPECT_EQ(roundTrip("Float32", "nan(0x7fa00001)"), "nan(0x7fa00001)") << "signalling";
  EXPECT_EQ(roundTrip("Float64", "nan(0x7ff4000000000001)"), "nan(0x7ff4000000000001)") << "signalling";
}

TEST(KyValueText, versionsHaveOneToFourNumbers)
{
  EXPECT_EQ(roundTrip("Version", "1.2.3.4", "0.0.0.0"), "1.2.3.4");
  EXPECT_EQ(roundTrip("Version", "7", "0.0.0.0"), "7.0.0.0");
  EXPECT_EQ(roundTrip("Version", "1.4294967295", "0.0.0.0"), "1.4294967295.0.0");
  for (const char* text : {"", ".", "1.", "1..2", "1.2.3.4.5", "1.-2", "1.4294967296", "v1"})
    EXPECT_EQ(roundTrip("Version", text, "0.0.0.0"), "refused") << text;
}

TEST(KyValueText, stringsAreTakenByteByByte)
{
  EXPECT_EQ(roundTrip("String", "a \"b\"\n\x80 %s", "\"\""), "a \"b\"\n\x80 %s");
  EXPECT_EQ(roundTrip("String", "", "\"x\""), "");
  EXPECT_EQ(roundTrip("String", std::string("a\0b\0", 4), "\"x\""), std::string("a\0b\0", 4));
}

TEST(KyValueText, aParameterWithMethodsTakesNoTextWithNulCharacters)
{
  KySampleTree sample("ROOT NAME=\"x\"");
  KyTestPool pool;
  KyCInventoryParameter& name = *sample.parameter("NAME");
  name.setUpdateMethod(pool, [](KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; });
  EXPECT_FALSE(setValueText(pool, name, std::string("a\0b", 3)));
  EXPECT_REPORTS(pool, {0x1500803, "setValueText",
                        "\"a\" is not a value of type String, which takes no NUL characters where the parameter has "
                        "methods."});
  EXPECT_EQ(valueText(name), "x");
}

TEST(KyValueText, aRefusedTextIsReportedWithTypeAndBoundsAndTheValueStays)
{
  KySampleTree sample("ROOT SIZE:Int16=7");
  KyTestPool pool;
  EXPECT_FALSE(setValueText(pool, *sample.parameter("SIZE"), "70000"));
  EXPECT_REPORTS(pool, {0x1500803, "setValueText",
                        "\"70000\" is not a value of type Int16, which takes whole numbers from -32768 to 32767."});
  EXPECT_EQ(valueText(*sample.parameter("SIZE")), "7");
}

TEST(KyValueText, aParameterOfUnknownTypeHasNoValue)
{
  KySampleTree sample("ROOT SIZE 0x777 0");
  KyTestPool pool;
  EXPECT_EQ(valueText(*sample.parameter("SIZE")), "");
  EXPECT_FALSE(setValueText(pool, *sample.parameter("SIZE"), "1"));
  EXPECT_REPORTS(pool, {0x1500804, "setValueText", "A parameter of type 0x777 has no value."});
}

TEST(KyValueText, createParameterMakesNothingOfARefusedText)
{
  KySampleTree sample("ROOT");
  KyTestPool pool;
  const KyCInventoryAddress address = kyAddress("BOARD[2]/SIZE");
  EXPECT_EQ(createParameter(pool, sample.root(), address, typeOfName("uint8"), "256", "B", true, 3), nullptr);
  EXPECT_REPORTS(pool, {0x1500803, "createParameter",
                        "\"256\" is not a value of type UInt8, which takes whole numbers from 0 to 255."});
  EXPECT_EQ(sample.root().getFirstSubItem(), nullptr);
  ASSERT_NE(createParameter(pool, sample.root(), address, typeOfName("UInt8"), "255", "B", true, 3), nullptr);
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(KyTreeDifference(sample.root(),
                             KySampleTree("ROOT/BOARD[2] SIZE UInt8 255 unit=\"B\" modifiable relevance=3").root()),
            "");
}

TEST(KyValueText, typesAreKnownByName)
{
  EXPECT_EQ(typeOfName("Int8"), 0x111u);
  EXPECT_EQ(typeOfName("version"), 0x4000u);
  EXPECT_EQ(typeOfName("Int"), 0u);
  EXPECT_EQ(typeNames(),
            "Int8, Int16, Int32, Long64, UInt8, UInt16, UInt32, ULong64, Float32, Float64, String, Version");
}

TEST(KyValueText, aTextWithZeroBytesIsSetWholeAndTheRestOfTheParameterStays)
{
  KySampleTree sample("ROOT NAME String \"x\" unit=\"mV\" modifiable relevance=7 description=\"d\"");
  KyTestPool pool;
  KyCInventoryParameter& parameter = *sample.parameter("NAME");
  EXPECT_TRUE(setValueText(pool, parameter, std::string("a\0b\0", 4)));
  EXPECT_EQ(valueText(parameter), std::string("a\0b\0", 4));
  EXPECT_STREQ(parameter.getUnit(), "mV");
  EXPECT_STREQ(parameter.getDescription(), "d");
  EXPECT_TRUE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 7u);
  EXPECT_EQ(sample.parameter("NAME"), &parameter);
}

TEST(KyValueText, textsAsJsonAreEscapedStringsAndElseBytes)
{
  EXPECT_EQ(jsonText(""), "\"\"");
  EXPECT_EQ(jsonText("a\"\\\n\t\x1B\x7F\xC3\xA9\xE2\x82\xAC"), "\"a\\\"\\\\\\n\\t\\u001b\\u007f\xC3\xA9\xE2\x82\xAC\"");
  EXPECT_EQ(jsonText(std::string("a\0b", 3)), "\"a\\u0000b\"");
  EXPECT_EQ(jsonText("\xC2\x85\xC2\x9F\xC2\xA0"), "\"\\u0085\\u009f\xC2\xA0\"");
  EXPECT_EQ(jsonText("a\xE2\x80\xAE\xE2\x81\xA6\xD8\x9C\xE2\x80\x90"), "\"a\\u202e\\u2066\\u061c\xE2\x80\x90\"")
      << "what turns the direction, and a hyphen";
  EXPECT_EQ(jsonText("\xF0\x9F\x98\x80"), "\"\xF0\x9F\x98\x80\"");
  EXPECT_EQ(jsonText("ab\xFF"), "{\"bytes\": \"YWL/\"}");
  EXPECT_EQ(jsonText("\xC3"), "{\"bytes\": \"ww==\"}");
}

TEST(KyValueText, valuesAsJsonAreNumbersWhereEveryReaderKeepsThem)
{
  const auto json = [](const std::string& value)
  { return jsonValueText(*KySampleTree("ROOT SIZE " + value).parameter("SIZE")); };
  EXPECT_EQ(json("Int8 -5"), "-5");
  EXPECT_EQ(json("UInt32 4294967295"), "4294967295");
  EXPECT_EQ(json("Long64 5"), "\"5\"");
  EXPECT_EQ(json("ULong64 18446744073709551615"), "\"18446744073709551615\"");
  EXPECT_EQ(json("Float32 0.1"), "\"0.1\"");
  EXPECT_EQ(json("Version 1.2.3.4"), "\"1.2.3.4\"");
  EXPECT_EQ(json("String \"x\""), "\"x\"");
}
