// Addresses without the predefined IDs: this program has their sources and a map of its own, which starts empty.
#include <gtest/gtest.h>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyPrintAddress.h"

KyCInventoryTagMap KyNInventoryIDs::Map;

namespace
{
KyCInventoryAddress read(const char* text)
{
  KyCInventoryAddress address;
  address.readFromString(text);
  return address;
}
}    // namespace

// One test, because its steps need their order.
TEST(EmptyMap, namesAppearAsTheyAreRegistered)
{
  EXPECT_STREQ(KyCInventoryAddress().getCategoryNameCStr(), "") << "no name for category 0 yet";
  EXPECT_STREQ(KyCInventoryAddress(1).getCategoryNameCStr(), "");
  EXPECT_STREQ((KyCInventoryAddress(1) / KyCInventoryAddress(0, 2)).toString().c_str(), "1/0[2]");
  EXPECT_TRUE(read("ONE").isEmpty());
  EXPECT_EQ(read("1[3]"), KyCInventoryAddress(1, 3));

  EXPECT_EQ(KyNInventoryIDs::Map.add(0, "ZERO"), 0u);
  EXPECT_STREQ(KyCInventoryAddress().getCategoryNameCStr(), "ZERO");
  EXPECT_TRUE(read("ZERO").isEmpty()) << "the name of ID 0 is never found";

  EXPECT_EQ(KyNInventoryIDs::Map.add(1, "ONE"), 1u);
  EXPECT_EQ(KyNInventoryIDs::Map.add(2, "ONE"), 2u);
  EXPECT_EQ(read("ONE"), KyCInventoryAddress(1)) << "the first of two equal names";
  EXPECT_STREQ((KyCInventoryAddress(1) / KyCInventoryAddress(0, 2)).toString().c_str(), "ONE/ZERO[2]");
}
