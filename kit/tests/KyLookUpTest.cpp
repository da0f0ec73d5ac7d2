// What addresses name, and what they may have been meant to name.
#include "inventorykit/KyLookUp.h"

#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

using Texts = std::vector<std::string>;

TEST(KyLookUp, anAddressNamesAnItemOrAParameter)
{
  KySampleTree sample("ROOT NAME=\"a\"; BOARD[2] SIZE=1");
  EXPECT_EQ(lookUp(sample.root(), kyAddress("BOARD[2]")).item, sample.item("BOARD[2]"));
  EXPECT_EQ(lookUp(sample.root(), kyAddress("BOARD[2]")).parameter, nullptr);
  const Node size = lookUp(sample.root(), kyAddress("BOARD[2]/SIZE"));
  EXPECT_EQ(size.item, sample.item("BOARD[2]"));
  EXPECT_EQ(size.parameter, sample.parameter("BOARD[2]/SIZE"));
  EXPECT_EQ(lookUp(sample.root(), KyCInventoryAddress()).item, &sample.root());
  EXPECT_EQ(lookUp(sample.root(), kyAddress("BOARD")).item, nullptr);
}

TEST(KyLookUp, aParameterHasTheIndex1Alone)
{
  KySampleTree sample("ROOT SIZE=1; CPU");
  sample.item("CPU")->setID(KyNInventoryIDs::SIZE[2]);
  EXPECT_NE(lookUp(sample.root(), kyAddress("SIZE")).parameter, nullptr);
  EXPECT_EQ(lookUp(sample.root(), kyAddress("SIZE[2]")).item, sample.root().getFirstSubItem());
  EXPECT_EQ(lookUp(sample.root(), kyAddress("SIZE[3]")).item, nullptr);
}

TEST(KyLookUp, whatIsMissingIsReportedWithTheNearestThatExists)
{
  KySampleTree sample("ROOT NAME=\"a\"; BOARD[2] SIZE=1 SERIAL_NUMBER=2; BOARD[9]; BOARD[30]; BOARD[31]; CPU");
  KyTestPool pool;
  EXPECT_EQ(lookUp(pool, sample.root(), kyAddress("BOARD[8]/NAME")).item, nullptr);
  EXPECT_EQ(lookUp(pool, sample.root(), kyAddress("BOARD[2]/SERIAL")).item, nullptr);
  EXPECT_EQ(lookUp(pool, sample.root(), kyAddress("CPU/NAME")).item, nullptr);
  EXPECT_REPORTS(pool,
                 {0x1504000, "lookUp",
                  "BOARD[8]/NAME does not exist: the root item has no BOARD[8]. Did you mean BOARD[9], BOARD[2] or "
                  "BOARD[30]?"},
                 {0x1504000, "lookUp",
                  "BOARD[2]/SERIAL does not exist: BOARD[2] has no SERIAL. Did you mean "
                  "BOARD[2]/SERIAL_NUMBER?"},
                 {0x1504000, "lookUp", "CPU/NAME does not exist: CPU has no NAME."});
}

TEST(KyLookUp, nearestAreTheSameIdAndThenSimilarNames)
{
  KySampleTree sample("ROOT NAME=\"a\" VOLTAGE_MIN=1; VOLTAGE_MAX[7]; VOLTAGE_MAX[3]; VOLTAGE_MAX[4]");
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("VOLTAGE_MAX[5]"), 4),
            (Texts{"VOLTAGE_MAX[4]", "VOLTAGE_MAX[7]", "VOLTAGE_MAX[3]", "VOLTAGE_MIN"}));
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("VOLTAGE_MAX[5]/CPU"), 9),
            (Texts{"VOLTAGE_MAX[4]", "VOLTAGE_MAX[7]", "VOLTAGE_MAX[3]"}));
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("VOLTAGE_MAX[4]/CPU"), 9), Texts());
}

TEST(KyLookUp, whatHasLittleInCommonIsNotNamed)
{
  KySampleTree sample("ROOT NAME=\"a\" SIZE=1 SERIAL_NUMBER=2 VOLTAGE_MAX=1; CPU");
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("BOARD"), 9), Texts());
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("ID"), 9), Texts());
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("CPLD"), 9), Texts());
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("CPU[2]"), 9), Texts{"CPU"});
}

TEST(KyLookUp, aNameThatBeginsWithTheOtherIsNearWhereNothingIsNearer)
{
  KySampleTree sample("ROOT SERIAL_NUMBER=2 SERIAL_NUMBER_PLUGON=1 VOLTAGE_MAX=1; SIZE");
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("SERIAL"), 9), (Texts{"SERIAL_NUMBER", "SERIAL_NUMBER_PLUGON"}));
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("VOLTAGE_MAX[2]/CPU"), 9), Texts());
  EXPECT_EQ(nearestExisting(sample.root(), kyAddress("SERIAL_NUMBER_PLUGON2"), 9), Texts{"SERIAL_NUMBER_PLUGON"});
}

TEST(KyLookUp, addressTextsAreThoseOfTheNodes)
{
  KySampleTree sample("ROOT NAME=\"a\"; BOARD[2] SIZE=1 ID=2");
  AddressTexts texts;
  EXPECT_EQ(texts.of({&sample.root(), nullptr}), ".");
  EXPECT_EQ(texts.of({&sample.root(), sample.parameter("NAME")}), "NAME");
  EXPECT_EQ(texts.of({sample.item("BOARD[2]"), nullptr}), "BOARD[2]");
  EXPECT_EQ(texts.of({sample.item("BOARD[2]"), sample.parameter("BOARD[2]/SIZE")}), "BOARD[2]/SIZE");
  EXPECT_EQ(texts.of({sample.item("BOARD[2]"), sample.parameter("BOARD[2]/ID")}), "BOARD[2]/ID");
  EXPECT_EQ(texts.of({&sample.root(), nullptr}), ".");
}
