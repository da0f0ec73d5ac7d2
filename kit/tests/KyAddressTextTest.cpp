// Addresses that people type.
#include "inventorykit/KyAddressText.h"

#include "inventory/KyNInventoryIDs.h"
#include "support/KyPrintAddress.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;
using namespace KyNInventoryIDs;

TEST(KyAddressText, namesNumbersAndIndicesAreRead)
{
  KyTestPool pool;
  KyCInventoryAddress address;
  EXPECT_TRUE(readAddress(pool, "BOARD[2]/IOCHANNEL/SERIAL_NUMBER", address));
  EXPECT_EQ(address, BOARD[2] / IOCHANNEL / SERIAL_NUMBER);
  EXPECT_TRUE(readAddress(pool, "0x1F[0x10]/037[0]", address));
  EXPECT_EQ(address, KyCInventoryAddress(31, 16) / KyCInventoryAddress(31, 0));
}

TEST(KyAddressText, theEmptyTextAndADotNameTheRootItem)
{
  KyTestPool pool;
  KyCInventoryAddress address = BOARD;
  EXPECT_TRUE(readAddress(pool, "", address));
  EXPECT_TRUE(address.isEmpty());
  address = BOARD;
  EXPECT_TRUE(readAddress(pool, ".", address));
  EXPECT_TRUE(address.isEmpty());
  EXPECT_EQ(addressText(address), ".");
  EXPECT_EQ(addressText(BOARD[3] / SIZE), "BOARD[3]/SIZE");
}

TEST(KyAddressText, aMisspelledIDGetsTheNearestNames)
{
  KyTestPool pool;
  KyCInventoryAddress address;
  EXPECT_FALSE(readAddress(pool, "BAORD[2]/SIZE", address));
  EXPECT_REPORTS(pool, {0x1500800, "readAddress", "BAORD is not an inventory ID. Did you mean BOARD?"});
  EXPECT_TRUE(address.isEmpty());
  EXPECT_FALSE(readAddress(pool, "board", address));
  EXPECT_REPORTS(pool, {0x1500800, "readAddress", "board is not an inventory ID. Did you mean BOARD?"});
  EXPECT_FALSE(readAddress(pool, "BOARD/XYZZYXYZZYXYZZY", address));
  EXPECT_REPORTS(pool, {0x1500800, "readAddress", "XYZZYXYZZYXYZZY is not an inventory ID."});
}

TEST(KyAddressText, whatHasNoFormOfAnAddressIsReportedWithThePlace)
{
  KyTestPool pool;
  KyCInventoryAddress address;
  const struct
  {
    const char* text;
    const char* reason;
  } cases[] = {
      {"BOARD//SIZE", "the name of an ID is expected at character 7"},
      {"//BOARD", "the name of an ID is expected at character 2"},
      {"DUMMY/", "the name of an ID is expected at character 7"},
      {"BOARD/", "the name of an ID is expected at character 7"},
      {"BOARD[2", "an index from 0 to 4294967295 and \"]\" is expected at character 7"},
      {"BOARD[]", "an index from 0 to 4294967295 and \"]\" is expected at character 7"},
      {"BOARD[x]", "an index from 0 to 4294967295 and \"]\" is expected at character 7"},
      {"BOARD[4294967296]", "an index from 0 to 4294967295 and \"]\" is expected at character 7"},
      {"BOARD[2]SIZE", "\"/\" or \"[\" is expected at character 9"},
      {"4294967296", "an ID from 0 to 4294967295 is expected at character 1"},
      {"BOARD SIZE", "\"/\" or \"[\" is expected at character 6"},
  };
  for (const auto& one : cases)
  {
    EXPECT_FALSE(readAddress(pool, one.text, address)) << one.text;
    EXPECT_REPORTS(
        pool, {0x1500801, "readAddress", "\"" + std::string(one.text) + "\" is not an address: " + one.reason + "."});
  }
}

TEST(KyAddressText, theID0HasANameAndANumber)
{
  KyTestPool pool;
  KyCInventoryAddress address;
  const KyCInventoryAddress wanted = BOARD / KyCInventoryAddress(0, 2) / KyCInventoryAddress(0);
  for (const char* text : {"BOARD/DUMMY[2]/DUMMY", "BOARD/0[2]/0", "BOARD/0x0[2]/00"})
  {
    EXPECT_TRUE(readAddress(pool, text, address)) << text;
    EXPECT_EQ(address, wanted) << text;
  }
  EXPECT_EQ(addressText(address), "BOARD/DUMMY[2]/DUMMY");
  EXPECT_TRUE(readElement(pool, "DUMMY[2]", address));
  EXPECT_EQ(address, KyCInventoryAddress(0, 2));
  unsigned int id = 7;
  EXPECT_TRUE(findID("DUMMY", id));
  EXPECT_EQ(id, 0u);
  id = 7;
  EXPECT_FALSE(findID("dummy", id));
  EXPECT_EQ(id, 7u);
}

TEST(KyAddressText, aSlashMayStandInFront)
{
  KyTestPool pool;
  KyCInventoryAddress address;
  EXPECT_TRUE(readAddress(pool, "/BOARD[2]/SIZE", address));
  EXPECT_EQ(address, BOARD[2] / SIZE);
  EXPECT_TRUE(readAddress(pool, "/", address));
  EXPECT_TRUE(address.isEmpty());
  EXPECT_FALSE(readElement(pool, "/BOARD", address));
  EXPECT_REPORTS(
      pool, {0x1500801, "readElement", "\"/BOARD\" is not an address: the name of an ID is expected at character 1."});
}

TEST(KyAddressText, longTextsAreQuotedByTheirBeginning)
{
  KyTestPool pool;
  KyCInventoryAddress address;
  EXPECT_FALSE(readAddress(pool, "BOARD/" + std::string(70, '!'), address));
  EXPECT_REPORTS(pool, {0x1500801, "readAddress",
                        "\"BOARD/" + std::string(54, '!') +
                            "...\" is not an address: the name of an ID is expected at character 7."});
  EXPECT_FALSE(readAddress(pool, std::string(70, 'q'), address));
  EXPECT_REPORTS(pool, {0x1500800, "readAddress", std::string(60, 'q') + "... is not an inventory ID."});
}

TEST(KyAddressText, anElementIsExactlyOne)
{
  KyTestPool pool;
  KyCInventoryAddress element;
  EXPECT_TRUE(readElement(pool, "BOARD[2]", element));
  EXPECT_EQ(element, BOARD[2]);
  for (const char* text : {"", ".", "BOARD/SIZE"})
  {
    EXPECT_FALSE(readElement(pool, text, element));
    EXPECT_REPORTS(pool, {0x1500802, "readElement",
                          "\"" + std::string(text) + "\" is not one element of an address, such as BOARD[2]."});
  }
}

TEST(KyAddressText, namesAreFound)
{
  EXPECT_EQ(idOfName("BOARD"), BOARD.getCategory());
  EXPECT_EQ(idOfName("board"), 0u);
  EXPECT_EQ(idOfName(""), 0u);
  EXPECT_EQ(nearestNames("SERIAL_NUMBR", 1), std::vector<std::string>{"SERIAL_NUMBER"});
  EXPECT_TRUE(nearestNames("SERIAL_NUMBER", 0).empty());
}

TEST(KyAddressText, nearNamesDifferInFewLettersOrBeginAlike)
{
  using Names = std::vector<std::string>;
  EXPECT_EQ(nearestNames("SERIAL_NUMBR", 9), Names{"SERIAL_NUMBER"});
  EXPECT_EQ(nearestNames("BORD", 9), Names{"BOARD"});
  EXPECT_EQ(nearestNames("voltage_ma", 9), (Names{"VOLTAGE_MAX", "VOLTAGE_MIN"}));
  EXPECT_EQ(nearestNames("VOLTAGE_UPP", 1), Names{"VOLTAGE_UPPER_MAX"});
  EXPECT_EQ(nearestNames("SERIAL_NUMBER_PLUG", 9), (Names{"SERIAL_NUMBER_PLUGON", "SERIAL_NUMBER_PLUGON2"}));
  EXPECT_EQ(nearestNames("Q", 9), Names());
  EXPECT_EQ(nearestNames("", 9), Names());
  EXPECT_EQ(nearestNames("ZZZZZZZZZZZZ", 9), Names());
  EXPECT_EQ(nearestOf("shwo", {"show", "scan", "shell"}, 9), Names{"show"});
  EXPECT_EQ(nearestOf("anon", {"show", "anonymize"}, 9), Names{"anonymize"});
  EXPECT_EQ(nearestOf("DIFF", {"diff", "differ"}, 9), Names{"diff"});
}
