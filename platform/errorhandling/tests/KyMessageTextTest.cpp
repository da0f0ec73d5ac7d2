// KyMessageTextTest.cpp: how a report's text comes from message and arguments.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <string>

#include "KyErrorHandlingSupport.h"

namespace
{
constexpr unsigned int code = 0x3000000;

// The text of a report with the given message, argument format and arguments. The format is no literal here, so that
// the compiler lets broken ones pass.
template <typename... Values>
std::string render(const char* message, const std::string& argFormat, Values... values)
{
  const KyTestTable table(code, message);
  KyCErrorListPool pool;
  pool.setError(code, 1, "render", argFormat.c_str(), values...);
  return pool.getEntry(0).text;
}

template <typename... Values>
std::string renderUnknown(const std::string& argFormat, Values... values)
{
  KyCErrorListPool pool;
  pool.setError(0x1300808, 1, "render", argFormat.c_str(), values...);
  return pool.getEntry(0).text;
}
}    // namespace

TEST(KyMessageText, aMessageWithoutPlaceholdersIsTakenAsItIs)
{
  const KyTestTable table(code, "Inventory section is corrupt.");
  KyCErrorListPool pool;
  pool.setError(code, 1, "render", nullptr);
  EXPECT_STREQ(pool.getEntry(0).text, "Inventory section is corrupt.");
}

TEST(KyMessageText, placeholdersAreFilledInTheirOwnOrder)
{
  EXPECT_EQ(render("Parameter %1 does not exist at item %2.", "%s%s", "A", "B"),
            "Parameter A does not exist at item B.");
  EXPECT_EQ(render("%2 before %1", "%s%s", "A", "B"), "B before A");
}

TEST(KyMessageText, aPlaceholderMayStandTwiceAtTheEdgesAndAlone)
{
  EXPECT_EQ(render("%1 and %1", "%s", "A"), "A and A");
  EXPECT_EQ(render("%1", "%s", "A"), "A");
  EXPECT_EQ(render("%1%1%2", "%s%s", "A", "B"), "AAB");
}

TEST(KyMessageText, nineArgumentsFillNinePlaceholders)
{
  EXPECT_EQ(render("%9%8%7%6%5%4%3%2%1", "%d%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5, 6, 7, 8, 9), "987654321");
}

TEST(KyMessageText, aTenthArgumentIsLeftOutAndPercentTenIsPlaceholderOneAndAZero)
{
  EXPECT_EQ(render("%9 %10", "%d%d%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5, 6, 7, 8, 9, 10), "9 10");
}

TEST(KyMessageText, aPlaceholderWithoutArgumentStaysVisible)
{
  EXPECT_EQ(render("%1 and %2", "%s", "A"), "A and %2");
  EXPECT_EQ(render("%1 and %2", "", "unread"), "%1 and %2");
}

TEST(KyMessageText, anArgumentWithoutPlaceholderIsLeftOut) { EXPECT_EQ(render("Only %2", "%s%s", "A", "B"), "Only B"); }

TEST(KyMessageText, percentSignsThatArePlaceholdersOfNothingStay)
{
  EXPECT_EQ(render("100%", "%s", "A"), "100%");
  EXPECT_EQ(render("100% of %1", "%s", "A"), "100% of A");
  EXPECT_EQ(render("%%1 %0 %a %", "%s", "A"), "%A %0 %a %");
}

TEST(KyMessageText, anEmptyMessageGivesAnEmptyText) { EXPECT_EQ(render("", "%s", "A"), ""); }

TEST(KyMessageText, aPlaceholderInsideAnArgumentIsNotFilledAgain)
{
  EXPECT_EQ(render("%1 %2", "%s%s", "%2", "%1"), "%2 %1");
  EXPECT_EQ(render("%1%2", "%s%s", "%", "1"), "%1");    // the two meet and still mean nothing
  EXPECT_EQ(render("%%1", "%s%s", "1", "B"), "%1");
}

TEST(KyMessageText, conversionsInsideAnArgumentAreText)
{
  EXPECT_EQ(render("File %1.", "%s", "%s%n%1000000d%p"), "File %s%n%1000000d%p.");
  EXPECT_EQ(renderUnknown("%s", "%s%n"), "Message 0x1300808 (%s%n)");
}

TEST(KyMessageText, conversionsInsideAMessageAreText) { EXPECT_EQ(render("%s %n %1", "%s", "A"), "%s %n A"); }

TEST(KyMessageText, bytesOfAnArgumentStayAsTheyAre)
{
  EXPECT_EQ(render("<%1>", "%s", "a\nb\t\x1B[31m\xFF\xC3\xA9"), "<a\nb\t\x1B[31m\xFF\xC3\xA9>");
}

TEST(KyMessageText, aNullTextReadsAsAnEmptyOne)
{
  EXPECT_EQ(render("<%1>", "%s", static_cast<const char*>(nullptr)), "<>");
}

TEST(KyMessageText, aLongArgumentIsKeptWhole)
{
  const std::string longText(1000000, 'x');
  EXPECT_EQ(render("<%1>", "%s", longText.c_str()), "<" + longText + ">");
}

TEST(KyMessageText, intConversions)
{
  EXPECT_EQ(render("%1 %2 %3 %4", "%d%i%d%d", 0, -1, INT_MAX, INT_MIN), "0 -1 2147483647 -2147483648");
}

TEST(KyMessageText, unsignedConversions)
{
  EXPECT_EQ(render("%1 %2 %3 %4", "%u%u%x%X", 0u, 4294967295u, 0xABCDEFu, 0xABCDEFu), "0 4294967295 abcdef ABCDEF");
}

TEST(KyMessageText, longConversionsReadLongs)
{
  EXPECT_EQ(render("%1 %2 %3 %4", "%ld%li%lu%lx", -2147483647L, 5L, 4294967295UL, 0xFFUL),
            "-2147483647 5 4294967295 ff");
  EXPECT_EQ(render("%1 %2", "%lX%s", 0xABCUL, "A"), "ABC A");
}

TEST(KyMessageText, longLongConversionsReadLongLongsAndWhatFollowsIsReadRightly)
{
  EXPECT_EQ(render("%1 %2 %3 %4", "%lld%s%llu%d", LLONG_MIN, "A", ULLONG_MAX, 7),
            "-9223372036854775808 A 18446744073709551615 7");
  EXPECT_EQ(render("%1 %2 %3", "%lli%llx%llX", -1LL, 0xABCDEF0123456789ULL, 0xABCDEF0123456789ULL),
            "-1 abcdef0123456789 ABCDEF0123456789");
}

TEST(KyMessageText, sizeConversionsReadSizes)
{
  EXPECT_EQ(render("%1 %2 %3", "%zu%zd%zx", std::size_t{4294967295u}, std::ptrdiff_t{-5}, std::size_t{255}),
            "4294967295 -5 ff");
  EXPECT_EQ(render("%1 %2", "%zX%s", std::size_t{0xABC}, "A"), "ABC A");
}

TEST(KyMessageText, characterConversions)
{
  EXPECT_EQ(render("<%1%2%3>", "%c%c%c", 'a', '%', 'z'), "<a%z>");
  EXPECT_EQ(render("<%1>", "%c", '\0'), "<>");
}

TEST(KyMessageText, floatingPointConversions)
{
  EXPECT_EQ(render("%1 %2 %3", "%f%lf%g", 0.5, -2.25, 1.5), "0.500000 -2.250000 1.5");
  EXPECT_EQ(render("%1 %2", "%lg%s", 1.5, "A"), "1.5 A");
}

TEST(KyMessageText, theLargestNumberFits)
{
  const std::string text = render("%1", "%f", -1.7976931348623157e308);
  EXPECT_EQ(text.size(), 317u);    // a sign, 309 digits, a point, six digits
  EXPECT_EQ(text.substr(0, 18), "-17976931348623157");
  EXPECT_EQ(text.substr(310), ".000000");
}

TEST(KyMessageText, pointerConversionShowsTheAddress)
{
  EXPECT_EQ(render("%1", "%p", reinterpret_cast<const void*>(std::size_t{0xABC0})), "0xabc0");
}

TEST(KyMessageText, charactersBetweenConversionsDoNotCount)
{
  EXPECT_EQ(render("%1-%2", "%s, 100%% of %d units", "A", 7), "A-7");
}

TEST(KyMessageText, anUnknownConversionEndsTheArguments)
{
  EXPECT_EQ(render("%1-%2-%3", "%s%y%s", "A", 5, "C"), "A-%2-%3");
  EXPECT_EQ(render("%1-%2", "%n%s", "A", "B"), "%1-%2");
  EXPECT_EQ(render("%1-%2", "%s%5d", "A", 5), "A-%2");    // no widths
  EXPECT_EQ(render("%1-%2", "%s%*d", "A", 5), "A-%2");
  EXPECT_EQ(render("%1-%2", "%s%hd", "A", 5), "A-%2");
  // Sizes that the conversion does not have.
  EXPECT_EQ(render("%1-%2", "%s%ls", "A", "B"), "A-%2");
  EXPECT_EQ(render("%1-%2", "%s%lc", "A", 'B'), "A-%2");
  EXPECT_EQ(render("%1-%2", "%s%zp", "A", nullptr), "A-%2");
  EXPECT_EQ(render("%1-%2", "%s%llf", "A", 1.5), "A-%2");
  EXPECT_EQ(render("%1-%2", "%s%zg", "A", 1.5), "A-%2");
}

TEST(KyMessageText, aFormatThatEndsInsideAConversionEndsTheArguments)
{
  for (const char* argFormat : {"%s%", "%s%l", "%s%ll", "%s%z"})
  {
    EXPECT_EQ(render("%1-%2", argFormat, "A", 5), "A-%2") << argFormat;
  }
}

TEST(KyMessageText, anUnknownCodeShowsAsNumberWithItsArguments)
{
  EXPECT_EQ(renderUnknown("%s%s", "first", "second"), "Message 0x1300808 (first, second)");
  EXPECT_EQ(renderUnknown("%d", -5), "Message 0x1300808 (-5)");
  EXPECT_EQ(renderUnknown("%d%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5, 6, 7, 8, 9),
            "Message 0x1300808 (1, 2, 3, 4, 5, 6, 7, 8, 9)");
  EXPECT_EQ(renderUnknown("%s", ""), "Message 0x1300808 ()");
}

TEST(KyMessageText, anUnknownCodeWithoutArgumentsShowsAsNumberAlone)
{
  KyCErrorListPool pool;
  pool.setError(0x1300808, 1, "render", nullptr);
  EXPECT_STREQ(pool.getEntry(0).text, "Message 0x1300808");
  pool.setError(0xFFFFFFFFu, 1, "render", "%d%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5, 6, 7, 8, 9);
  EXPECT_STREQ(pool.getEntry(1).text, "Message 0xFFFFFFFF (1, 2, 3, 4, 5, 6, 7, 8, 9)");
}
