// KyHostTextTest.cpp: untrusted texts.
#include "KyHostText.h"

#include <gtest/gtest.h>

using namespace KyNHostText;

TEST(KyHostText, cleanTrimsAndTurnsControlCharactersIntoSpaces)
{
  EXPECT_EQ(clean(" \t Intel Corporation \n"), "Intel Corporation");
  EXPECT_EQ(clean("a\tb\x01"
                  "c\x7F"
                  "d"),
            "a b c d");
  EXPECT_EQ(clean("\n\t  "), "");
  EXPECT_EQ(clean(""), "");
}

TEST(KyHostText, cleanEndsAtTheFirstNul) { EXPECT_EQ(clean(std::string_view("abc\0def", 7)), "abc"); }

TEST(KyHostText, cleanKeepsUtf8AndReplacesOtherBytes)
{
  EXPECT_EQ(clean("M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80"), "M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80");
  EXPECT_EQ(clean("M\xFCller"), "M?ller");         // Latin-1
  EXPECT_EQ(clean("a\xC3"), "a?");                 // cut in the middle
  EXPECT_EQ(clean("\xC0\xAF"), "??");              // overlong
  EXPECT_EQ(clean("\xE0\x80\xAF"), "???");         // overlong
  EXPECT_EQ(clean("\xED\xA0\x80"), "???");         // a surrogate
  EXPECT_EQ(clean("\xF4\x90\x80\x80"), "????");    // beyond 0x10FFFF
  EXPECT_EQ(clean("\xF0\x80\x80\x80\xFF"), "?????");
}

TEST(KyHostText, cleanKeepsAtMost1024BytesAndNoHalfCharacter)
{
  EXPECT_EQ(clean(std::string(1024, 'a')).size(), 1024u);
  EXPECT_EQ(clean(std::string(5000, 'a')).size(), 1024u);
  EXPECT_EQ(clean(std::string(1023, 'a') + "\xC3\xBC"), std::string(1023, 'a'));
  EXPECT_EQ(clean(std::string(1020, 'a') + "          b"), std::string(1020, 'a'));    // no spaces at the end
}

TEST(KyHostText, toldIsEmptyForPlaceholdersInAnyCase)
{
  for (const char* const text : {"To Be Filled By O.E.M.",
                                 "To be filled by O.E.M.",
                                 "Not Specified",
                                 "Default string",
                                 "DEFAULT STRING",
                                 "System manufacturer",
                                 "System Product Name",
                                 "Unknown",
                                 "unknown\n",
                                 "None",
                                 "N/A",
                                 "0123456789",
                                 "        ",
                                 "0",
                                 "00000000",
                                 "0000-0000",
                                 "00:00:00:00:00:00",
                                 "XXXXXXXX",
                                 "xxxx",
                                 "....",
                                 "FFFFFFFF",
                                 ""})
    EXPECT_EQ(told(text), "") << text;
}

TEST(KyHostText, toldKeepsWhatTellsSomething)
{
  for (const char* const text :
       {"ASUSTeK", "1.0c", "10", "F", "F0", "0001", "X9DRG-HF", "none such", "-[A3E164AUS-1.11]-"})
    EXPECT_EQ(told(text), text);
}

TEST(KyHostText, toNumberReadsDecimalNumbersAlone)
{
  EXPECT_EQ(toNumber("1500\n"), 1500ull);
  EXPECT_EQ(toNumber(" 0 "), 0ull);
  EXPECT_EQ(toNumber("18446744073709551615"), 18446744073709551615ull);
  EXPECT_FALSE(toNumber("18446744073709551616"));
  EXPECT_FALSE(toNumber("99999999999999999999999999"));
  for (const char* const text : {"", "-1", "+1", "0x10", "1 2", "12kB", "1.5"})
    EXPECT_FALSE(toNumber(text)) << text;
}

TEST(KyHostText, toFixedPointTakesDecimalNumbersWithAPoint)
{
  EXPECT_EQ(toFixedPoint("2249.998", 6), 2249998000ull);
  EXPECT_EQ(toFixedPoint(" 2249 \n", 6), 2249000000ull);
  EXPECT_EQ(toFixedPoint("13493.83", 3), 13493830ull);
  EXPECT_EQ(toFixedPoint("0.00", 3), 0ull);
  EXPECT_EQ(toFixedPoint("1.23456", 3), 1234ull);
  EXPECT_EQ(toFixedPoint("18446744073709551.615", 3), 18446744073709551615ull);
  EXPECT_FALSE(toFixedPoint("18446744073709551.616", 3));
  for (const char* const text :
       {"", ".", "1.", ".5", "-1.5", "+1", "1.5.2", "1e3", "1,5", "1 2", "nan", "0x1.8", "1.5x"})
    EXPECT_FALSE(toFixedPoint(text, 3)) << text;
}

TEST(KyHostText, scaledGivesNothingForZeroAndBeyond64Bits)
{
  EXPECT_EQ(scaled(4ull, 1024), 4096ull);
  EXPECT_FALSE(scaled(0ull, 1024));
  EXPECT_FALSE(scaled(std::nullopt, 1024));
  EXPECT_EQ(scaled(0x3FFFFFFFFFFFFFull, 1024), 0xFFFFFFFFFFFFFC00ull);
  EXPECT_FALSE(scaled(0x40000000000000ull, 1024));
}

TEST(KyHostText, valueOfKeyFindsWholeKeysAndTakesQuotesOff)
{
  const char* const file = "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nVERSION_ID='12'\nVERSION=\nNAME=Debian";
  EXPECT_EQ(valueOfKey(file, "PRETTY_NAME", '='), "Debian GNU/Linux 12 (bookworm)");
  EXPECT_EQ(valueOfKey(file, "VERSION_ID", '='), "12");
  EXPECT_EQ(valueOfKey(file, "VERSION", '='), "");
  EXPECT_EQ(valueOfKey(file, "NAME", '='), "Debian");
  EXPECT_EQ(valueOfKey(file, "ID", '='), "");
  EXPECT_EQ(valueOfKey("MemTotal:  10 kB\nMemFree: 1 kB\n", "MemTotal", ':'), "10 kB");
  EXPECT_EQ(valueOfKey("model name\t: X\n", "model name", ':'), "X");
  EXPECT_EQ(valueOfKey("NAME=\"", "NAME", '='), "\"");
  EXPECT_EQ(valueOfKey("", "NAME", '='), "");
}
