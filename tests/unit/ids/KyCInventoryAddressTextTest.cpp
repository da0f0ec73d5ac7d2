#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyCapturedOutput.h"
#include "support/KyPrintAddress.h"

using KyNInventoryIDs::BOARD;
using KyNInventoryIDs::DEVICE;
using KyNInventoryIDs::NAME;

namespace
{
std::string textOf(const KyCInventoryAddress& address) { return address.toString().c_str(); }

// Reads into an address that holds something else before.
KyCInventoryAddress read(const char* text)
{
  KyCInventoryAddress address = NAME / NAME[9];
  address.readFromString(text);
  return address;
}

std::string printed(const KyCInventoryAddress& address)
{
  KyCapturedOutput output;
  address.print();
  return output.take();
}
}    // namespace

// ---- address to text

TEST(KyCInventoryAddressText, toStringJoinsNamesWithSlashes)
{
  EXPECT_EQ(textOf(DEVICE / BOARD / NAME), "DEVICE/BOARD/NAME");
}

TEST(KyCInventoryAddressText, toStringOfTheEmptyAddressIsEmpty)
{
  EXPECT_EQ(textOf(KyCInventoryAddress()), "");
  EXPECT_EQ(textOf(KyNInventoryIDs::THIS_NODE), "");
}

TEST(KyCInventoryAddressText, toStringShowsAnIndexOnlyWhenItIsNotOne)
{
  EXPECT_EQ(textOf(DEVICE[1] / BOARD[3]), "DEVICE/BOARD[3]");
  EXPECT_EQ(textOf(DEVICE / BOARD[2]), "DEVICE/BOARD[2]");
  EXPECT_EQ(textOf(BOARD[0] / NAME), "BOARD[0]/NAME");
  EXPECT_EQ(textOf(BOARD[0xFFFFFFFF]), "BOARD[4294967295]");
}

TEST(KyCInventoryAddressText, toStringShowsAnIdWithoutANameInDecimal)
{
  EXPECT_EQ(textOf(KyCInventoryAddress(65536)), "65536");
  EXPECT_EQ(textOf(BOARD / KyCInventoryAddress(0xFFFFFFFF, 2)), "BOARD/4294967295[2]");
}

TEST(KyCInventoryAddressText, toStringNamesIdZero) { EXPECT_EQ(textOf(KyCInventoryAddress(0)), "DUMMY"); }

TEST(KyCInventoryAddressText, toStringOfALongAddressIsComplete)
{
  KyCInventoryAddress address(BOARD[2]);
  std::string expected = "BOARD[2]";
  for (int doubling = 0; doubling < 10; ++doubling)
  {
    address.append(address);
    expected += "/" + expected;
  }
  EXPECT_EQ(textOf(address), expected);
  EXPECT_EQ(read(expected.c_str()), address);
}

TEST(KyCInventoryAddressText, getCategoryNameCStrNamesTheLastElement)
{
  EXPECT_STREQ((DEVICE / BOARD[2]).getCategoryNameCStr(), "BOARD");
}

TEST(KyCInventoryAddressText, getCategoryNameCStrIsEmptyForAnUnknownId)
{
  EXPECT_STREQ(KyCInventoryAddress(65536).getCategoryNameCStr(), "");
}

TEST(KyCInventoryAddressText, getCategoryNameCStrOfTheEmptyAddressIsTheNameOfIdZeroKeptOnPurpose)
{
  EXPECT_STREQ(KyCInventoryAddress().getCategoryNameCStr(), "DUMMY");
}

TEST(KyCInventoryAddressText, printWritesTheTextAndALineEnd)
{
  EXPECT_EQ(printed(DEVICE / BOARD[2]), "DEVICE/BOARD[2]\n");
}

TEST(KyCInventoryAddressText, printOfTheEmptyAddressWritesAnEmptyLine)
{
  EXPECT_EQ(printed(KyCInventoryAddress()), "\n");
}

// ---- text to address

TEST(KyCInventoryAddressText, readFromStringOfTheEmptyTextGivesTheEmptyAddress) { EXPECT_TRUE(read("").isEmpty()); }

TEST(KyCInventoryAddressText, readFromStringOfANameGivesItsIdWithTheIndexOne)
{
  EXPECT_EQ(read("BOARD"), KyCInventoryAddress(585, 1));
}

TEST(KyCInventoryAddressText, readFromStringOfAPathReadsEveryElement)
{
  EXPECT_EQ(read("DEVICE/BOARD[2]/NAME"), DEVICE / BOARD[2] / NAME);
}

TEST(KyCInventoryAddressText, readFromStringAcceptsAHexadecimalIndex) { EXPECT_EQ(read("NAME[0x10]"), NAME[16]); }

TEST(KyCInventoryAddressText, readFromStringAcceptsAnOctalIndex) { EXPECT_EQ(read("NAME[010]"), NAME[8]); }

TEST(KyCInventoryAddressText, readFromStringTakesAnEmptyIndexForZero) { EXPECT_EQ(read("NAME[]"), NAME[0]); }

TEST(KyCInventoryAddressText, readFromStringTakesAnIndexThatIsNoNumberForZero)
{
  EXPECT_EQ(read("NAME[x]"), NAME[0]);
  EXPECT_EQ(read("NAME[/]"), NAME[0]) << "a slash inside the brackets separates nothing";
  EXPECT_EQ(read("NAME[[5]"), NAME[0]);
}

TEST(KyCInventoryAddressText, readFromStringStopsAnIndexAtTheFirstCharacterThatDoesNotFit)
{
  EXPECT_EQ(read("NAME[12x]"), NAME[12]);
  EXPECT_EQ(read("NAME[089]"), NAME[0]);
  EXPECT_EQ(read("NAME[0x]"), NAME[0]);
  EXPECT_EQ(read("NAME[0xg]"), NAME[0]);
  EXPECT_EQ(read("NAME[0b11]"), NAME[0]);
}

TEST(KyCInventoryAddressText, readFromStringAcceptsWhiteSpaceAndASignInFrontOfAnIndex)
{
  EXPECT_EQ(read("NAME[ \t\n\v\f\r5]"), NAME[5]);
  EXPECT_EQ(read("NAME[+5]"), NAME[5]);
  EXPECT_EQ(read("NAME[ +0x1F ]"), NAME[31]);
  EXPECT_EQ(read("NAME[+ 5]"), NAME[0]);
  EXPECT_EQ(read("NAME[+-5]"), NAME[0]);
}

TEST(KyCInventoryAddressText, readFromStringReadsANegativeIndexModuloThirtyTwoBits)
{
  EXPECT_EQ(read("NAME[-1]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[-0x10]"), NAME[0xFFFFFFF0]);
  EXPECT_EQ(read("NAME[-4294967295]"), NAME[1]);
  EXPECT_EQ(read("NAME[-0]"), NAME[0]);
}

TEST(KyCInventoryAddressText, readFromStringTakesNumbersBeyondThirtyTwoBitsForTheLargest)
{
  EXPECT_EQ(read("NAME[4294967295]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[4294967296]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[4294967297]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[0x100000000]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[-4294967296]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[18446744073709551616]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("NAME[-99999999999999999999999999]"), NAME[0xFFFFFFFF]);
  EXPECT_EQ(read("4294967296"), KyCInventoryAddress(0xFFFFFFFF));
  EXPECT_EQ(read("037777777777"), KyCInventoryAddress(0xFFFFFFFF));
  EXPECT_EQ(read("040000000000"), KyCInventoryAddress(0xFFFFFFFF));
}

// Where long has 32 bits, strtoul is asked as well.
TEST(KyCInventoryAddressText, readFromStringReadsNumbersAsAThirtyTwoBitStrtoulDoes)
{
  const struct
  {
    const char* text;
    unsigned int number;
  } cases[] = {
      {"", 0},
      {"0", 0},
      {"1", 1},
      {"007", 7},
      {"08", 0},
      {"0x", 0},
      {"0xF", 15},
      {"0XfF", 255},
      {"0xg", 0},
      {"00x5", 0},
      {" 5", 5},
      {"+5", 5},
      {"-5", 0xFFFFFFFB},
      {"--5", 0},
      {"- 5", 0},
      {"1e3", 1},
      {"12 3", 12},
      {"4294967294", 0xFFFFFFFE},
      {"4294967295", 0xFFFFFFFF},
      {"4294967296", 0xFFFFFFFF},
      {"-4294967295", 1},
      {"-4294967296", 0xFFFFFFFF},
      {"0xFFFFFFFF", 0xFFFFFFFF},
      {"0x100000000", 0xFFFFFFFF},
      {"037777777777", 0xFFFFFFFF},
      {"040000000000", 0xFFFFFFFF},
      {"-0x80000000", 0x80000000},
      {"99999999999999999999", 0xFFFFFFFF},
      {"\v-1", 0xFFFFFFFF},
      {"\xA0"
       "1",
       0},
  };
  for (const auto& one : cases)
  {
    EXPECT_EQ(read((std::string("NAME[") + one.text + "]").c_str()).getIndex(), one.number) << one.text;
    if (sizeof(unsigned long) == 4)
    {
      EXPECT_EQ(std::strtoul(one.text, nullptr, 0), one.number) << one.text;
    }
  }
}

TEST(KyCInventoryAddressText, readFromStringAcceptsAMissingClosingBracketAtTheEnd)
{
  EXPECT_EQ(read("NAME[5"), NAME[5]);
  EXPECT_EQ(read("NAME["), NAME[0]);
  EXPECT_EQ(read("NAME[5/BOARD"), NAME[5]) << "all of the rest belongs to the index";
}

TEST(KyCInventoryAddressText, readFromStringAcceptsASlashAtTheEnd)
{
  EXPECT_EQ(read("NAME/"), NAME);
  EXPECT_EQ(read("DEVICE/NAME[2]/"), DEVICE / NAME[2]);
}

TEST(KyCInventoryAddressText, readFromStringGivesTheEmptyAddressForALeadingSlash)
{
  EXPECT_TRUE(read("/NAME").isEmpty());
}

TEST(KyCInventoryAddressText, readFromStringGivesTheEmptyAddressForADoubledSlash)
{
  EXPECT_TRUE(read("NAME//NAME").isEmpty());
  EXPECT_TRUE(read("NAME//").isEmpty());
  EXPECT_TRUE(read("/").isEmpty());
}

TEST(KyCInventoryAddressText, readFromStringGivesTheEmptyAddressForAnUnregisteredName)
{
  EXPECT_TRUE(read("NO_SUCH_NAME").isEmpty());
  EXPECT_TRUE(read("DEVICE/BOARD/NO_SUCH_NAME").isEmpty()) << "even behind valid elements";
  EXPECT_TRUE(read("NO_SUCH_NAME/BOARD").isEmpty());
}

TEST(KyCInventoryAddressText, readFromStringComparesNamesExactly)
{
  EXPECT_TRUE(read("name").isEmpty());
  EXPECT_TRUE(read("NAM").isEmpty());
  EXPECT_TRUE(read("NAMES").isEmpty());
  EXPECT_TRUE(read(" NAME").isEmpty());
  EXPECT_TRUE(read("NAME ").isEmpty());
  EXPECT_TRUE(read("]").isEmpty());
  EXPECT_TRUE(read("-1").isEmpty()) << "a number begins with a digit";
}

TEST(KyCInventoryAddressText, readFromStringTakesNumbersForIdsWhetherOrNotTheyAreRegistered)
{
  EXPECT_EQ(read("12"), KyCInventoryAddress(12, 1));
  EXPECT_EQ(read("5000[3]/BOARD"), KyCInventoryAddress(5000, 3) / BOARD);
}

TEST(KyCInventoryAddressText, readFromStringAcceptsHexadecimalAndOctalIds)
{
  EXPECT_EQ(read("0x1F"), KyCInventoryAddress(31));
  EXPECT_EQ(read("010"), KyCInventoryAddress(8));
  EXPECT_EQ(read("0X1f/010[010]"), KyCInventoryAddress(31) / KyCInventoryAddress(8, 8));
}

TEST(KyCInventoryAddressText, readFromStringSkipsWhatStandsBehindTheDigitsOfAnId)
{
  EXPECT_EQ(read("12abc/BOARD"), KyCInventoryAddress(12) / BOARD);
  EXPECT_EQ(read("12]/BOARD"), KyCInventoryAddress(12) / BOARD);
  EXPECT_TRUE(read("08").isEmpty()) << "octal 0, then an 8 that does not fit";
}

TEST(KyCInventoryAddressText, readFromStringDoesNotFindTheNameOfIdZeroKeptOnPurpose)
{
  EXPECT_TRUE(read("DUMMY").isEmpty());
}

TEST(KyCInventoryAddressText, readFromStringGivesTheEmptyAddressForTheNumberZero)
{
  EXPECT_TRUE(read("0").isEmpty());
  EXPECT_TRUE(read("BOARD/0x0").isEmpty());
}

TEST(KyCInventoryAddressText, readFromStringGivesTheEmptyAddressForAnIndexWithoutAName)
{
  EXPECT_TRUE(read("[2]").isEmpty());
  EXPECT_TRUE(read("BOARD[2][3]").isEmpty());
}

TEST(KyCInventoryAddressText, readFromStringNeedsNoSlashBehindAnIndex)
{
  EXPECT_EQ(read("BOARD[2]NAME"), BOARD[2] / NAME);
}

TEST(KyCInventoryAddressText, readFromStringEndsAtANulCharacter)
{
  KyCInventoryAddress address;
  address.readFromString(KyCString("BOARD\0/NAME", 11));
  EXPECT_EQ(address, BOARD);
}

TEST(KyCInventoryAddressText, readFromStringOfItsOwnTextGivesTheAddressBack)
{
  for (const KyCInventoryAddress& address :
       {KyCInventoryAddress(), BOARD[0], DEVICE / BOARD[7] / NAME, KyCInventoryAddress(4000, 0xFFFFFFFF) / NAME})
  {
    KyCInventoryAddress again = NAME;
    again.readFromString(address.toString());
    EXPECT_EQ(again, address);
  }
}

TEST(KyCInventoryAddressText, readFromStringIsLinearInTheText)
{
  std::string text;
  for (int n = 0; n < 300000; ++n)
    text += "ROOT/";
  const KyCInventoryAddress address = read(text.c_str());
  EXPECT_EQ(address.getLength(), 300000u);
  EXPECT_EQ(address.getLastElement(), KyNInventoryIDs::ROOT);
}
