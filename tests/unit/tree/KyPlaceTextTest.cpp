// The places that reports name.
#include "tree/KyPlaceText.h"

#include <gtest/gtest.h>

#include <memory>

#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

TEST(KyPlaceText, isTheTextOfAnAddress)
{
  EXPECT_STREQ(KyPlaceText(KyCInventoryAddress()).c_str(), "");
  EXPECT_STREQ(KyPlaceText(BOARD).c_str(), "BOARD");
  EXPECT_STREQ(KyPlaceText(BOARD[0] / IOCHANNEL[4294967295u] / SIZE).c_str(), "BOARD[0]/IOCHANNEL[4294967295]/SIZE");
  EXPECT_STREQ(KyPlaceText(KyCInventoryAddress(4294967295u, 10) / KyCInventoryAddress(2000)).c_str(),
               "4294967295[10]/2000");
}

TEST(KyPlaceText, isTheTextOfAnItemsAndAParametersAddress)
{
  KySampleTree sample("ROOT/BOARD[2]/CPU SIZE=1; ROOT NAME=\"x\"");
  EXPECT_STREQ(KyPlaceText(sample.root()).c_str(), "");
  EXPECT_STREQ(KyPlaceText(*sample.item("BOARD[2]/CPU")).c_str(), "BOARD[2]/CPU");
  EXPECT_STREQ(KyPlaceText(*sample.parameter("BOARD[2]/CPU/SIZE")).c_str(), "BOARD[2]/CPU/SIZE");
  EXPECT_STREQ(KyPlaceText(*sample.parameter("NAME")).c_str(), "NAME");
  EXPECT_STREQ(KyItemPlace(sample.root()).c_str(), "root item");
  EXPECT_STREQ(KyItemPlace(*sample.item("BOARD[2]")).c_str(), "BOARD[2]");
}

TEST(KyPlaceText, aFreeParameterIsNamedByItsIDWhereValuesAreConcerned)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  EXPECT_STREQ(KyPlaceText(parameter).c_str(), "");
  EXPECT_STREQ(KyParameterPlace(parameter).c_str(), "SIZE");
}

TEST(KyPlaceText, longAddressesAreWhole)
{
  KyCInventoryAddress address;
  for (unsigned int n = 1; n <= 200; ++n)
  {
    address.append(KyCInventoryAddress(n, n));
    EXPECT_STREQ(KyPlaceText(address).c_str(), address.toString().c_str()) << n;
  }
}
