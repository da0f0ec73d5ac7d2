// IDs by name, form and number.
#include "inventorykit/KyIDs.h"

#include <gtest/gtest.h>

#include "inventory/KyNInventoryIDs.h"

using namespace KyNInventoryKit;

namespace
{
std::string namesOf(const std::string& pattern)
{
  std::string names;
  for (const NamedID& id : findIDs(pattern))
    names += std::string(id.name) + "=" + std::to_string(id.id) + " ";
  return names;
}
}    // namespace

TEST(KyIDs, aFormNamesTheIdsOfThisFormInAnyCase)
{
  EXPECT_EQ(namesOf("voltage_m*"), "VOLTAGE_MIN=45 VOLTAGE_MAX=74 ");
  EXPECT_EQ(namesOf("VOLTAGE_MI?"), "VOLTAGE_MIN=45 ");
  EXPECT_EQ(namesOf("*serial"), "SERIAL=387 ");
}

TEST(KyIDs, aTextWithoutWildcardsNamesTheIdsThatContainIt)
{
  EXPECT_EQ(namesOf("Number_Plugon"), "SERIAL_NUMBER_PLUGON=176 SERIAL_NUMBER_PLUGON2=656 ");
  EXPECT_EQ(namesOf("no such name"), "");
}

TEST(KyIDs, aNumberNamesItsIdAlone)
{
  EXPECT_EQ(namesOf("585"), "BOARD=585 ");
  EXPECT_EQ(namesOf("0x249"), "BOARD=585 ");
  EXPECT_EQ(namesOf("4294967295"), "");
}

TEST(KyIDs, theNumberZeroIsAnIdLikeOthers)
{
  EXPECT_EQ(namesOf("dummy"), "DUMMY=0 ");
  EXPECT_EQ(namesOf("D?MMY"), "DUMMY=0 ");
  EXPECT_EQ(namesOf("0"), "DUMMY=0 ");
  EXPECT_EQ(namesOf("0x0"), "DUMMY=0 ");
}

TEST(KyIDs, theEmptyTextNamesAllOfThem)
{
  EXPECT_EQ(findIDs("").size(), 1064u);
  EXPECT_EQ(findIDs("").front().id, 0u);
}
