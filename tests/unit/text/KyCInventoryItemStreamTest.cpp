// The sink of a dump, seen from outside.
#include "inventory/KyCInventoryItemStream.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "support/KyCapturedOutput.h"

using MyStream = KyCInventoryItem::MyStream;

namespace
{
std::string textOf(const MyStream& stream)
{
  const KyCString text = stream.getString();
  return std::string(text.c_str(), text.length());
}
}    // namespace

static_assert(sizeof(void*) != 4 || sizeof(MyStream) == 16, "a flag, a pointer and two numbers on x86");
static_assert(!std::is_copy_constructible<MyStream>::value && !std::is_copy_assignable<MyStream>::value,
              "the buffer has one owner");

TEST(MyStream, isEmptyAtFirst)
{
  const MyStream stream(false);
  EXPECT_EQ(textOf(stream), "");
}

TEST(MyStream, collectsWhatIsWrittenInOrder)
{
  MyStream stream(false);
  EXPECT_TRUE(stream.write("one "));
  EXPECT_TRUE(stream.write(""));
  EXPECT_TRUE(stream.writef("%s %u", "two", 3u));
  EXPECT_EQ(textOf(stream), "one two 3");
}

TEST(MyStream, takesANullTextAsEmpty)
{
  MyStream stream(false);
  EXPECT_TRUE(stream.write(nullptr));
  EXPECT_EQ(textOf(stream), "");
}

TEST(MyStream, collectsPercentSignsAsTheyAre)
{
  MyStream stream(false);
  EXPECT_TRUE(stream.write("100%s %n %%"));
  EXPECT_EQ(textOf(stream), "100%s %n %%");
}

TEST(MyStream, writeNeverCutsAText)
{
  const std::string longText(100000, 'x');
  MyStream stream(false);
  EXPECT_TRUE(stream.write(longText.c_str()));
  EXPECT_TRUE(stream.write("end"));
  EXPECT_EQ(textOf(stream), longText + "end");
}

TEST(MyStream, writefKeeps1022Characters)
{
  const std::string text(1022, 'x');
  MyStream stream(false);
  EXPECT_TRUE(stream.writef("%s", text.c_str()));
  EXPECT_EQ(textOf(stream), text);
}

TEST(MyStream, aFormattedPieceLongerThan1022CharactersIsCutAt1022)
{
  const std::string text(1022, 'x');
  MyStream stream(false);
  EXPECT_TRUE(stream.writef("%sy", text.c_str()));
  EXPECT_TRUE(stream.writef("|%s|", std::string(5000, 'z').c_str()));
  EXPECT_EQ(textOf(stream), text + "|" + std::string(1021, 'z'));
}

TEST(MyStream, writefFailsWhenTheArgumentsCannotBeFormatted)
{
  MyStream stream(false);
  const wchar_t outsideTheLocale[] = {0x20AC, 0};
  EXPECT_FALSE(stream.writef("never%ls", outsideTheLocale));
  EXPECT_TRUE(stream.write("goes on"));
  EXPECT_EQ(textOf(stream), "goes on");
}

TEST(MyStream, printModeSendsEveryPieceToStandardOutput)
{
  KyCapturedOutput output;
  MyStream stream(true);
  EXPECT_TRUE(stream.write("one "));
  EXPECT_TRUE(stream.writef("[%u]", 2u));
  EXPECT_EQ(output.take(), "one [2]");
}

TEST(MyStream, printModeHandsTheTextToPrintfAsItsFormatKeptOnPurpose)
{
  KyCapturedOutput output;
  MyStream stream(true);
  EXPECT_TRUE(stream.write("100%%"));
  EXPECT_TRUE(stream.writef(" %u%%%%", 5u));    // formatted to "5%%", which is then a format once more
  EXPECT_EQ(output.take(), "100% 5%");
}

TEST(MyStream, printModeCollectsNothing)
{
  KyCapturedOutput output;
  MyStream stream(true);
  EXPECT_TRUE(stream.write("printed"));
  EXPECT_EQ(textOf(stream), "");
  EXPECT_EQ(output.take(), "printed");
}

TEST(MyStream, namesEveryOptionBitByItsNumber)
{
  EXPECT_EQ(MyStream::NO_INDENT, 0x1);
  EXPECT_EQ(MyStream::EMPTY_UNITS, 0x2);
  EXPECT_EQ(MyStream::INDEX_ALWAYS, 0x4);
  EXPECT_EQ(MyStream::NO_PARAMETERS, 0x8);
  EXPECT_EQ(MyStream::NO_ITEM_LINES, 0x10);
  EXPECT_EQ(MyStream::INDEX_WITH_DOT, 0x20);
  EXPECT_EQ(MyStream::ID_AS_NUMBER, 0x40);
  EXPECT_EQ(MyStream::PLAIN, 0x80);
  EXPECT_EQ(MyStream::NO_LINE_BREAKING, 0x100);
  EXPECT_EQ(MyStream::ITEM_NO_ID, 0x200);
  EXPECT_EQ(MyStream::ITEM_NO_DESCRIPTION, 0x400);
  EXPECT_EQ(MyStream::ITEM_DESCRIPTION, 0x800);
  EXPECT_EQ(MyStream::PARAMETER_NO_ID, 0x1000);
  EXPECT_EQ(MyStream::PARAMETER_NO_DESCRIPTION, 0x2000);
  EXPECT_EQ(MyStream::PARAMETER_DESCRIPTION, 0x4000);
  EXPECT_EQ(MyStream::PARAMETER_NO_TYPE, 0x8000);
  EXPECT_EQ(MyStream::NO_VALUE, 0x10000);
  EXPECT_EQ(MyStream::NO_UNIT, 0x20000);
  EXPECT_EQ(MyStream::NO_MODIFIABLE, 0x40000);
  EXPECT_EQ(MyStream::NO_RELEVANCE, 0x80000);
  EXPECT_EQ(MyStream::NO_ESCAPING, 0x100000);
  EXPECT_EQ(MyStream::UNNAMED_ID_AS_NUMBER, 0x200000);
}
