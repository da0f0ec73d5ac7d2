// What costs heap blocks, and what does not. A program of its own: it counts every allocation of the process.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyBlockCount.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "tree/KyPlaceText.h"

using namespace KyNInventoryIDs;

namespace
{
class KyCInventoryAllocation : public testing::Test
{
protected:
  void SetUp() override
  {
    if (KY_COUNTS_BLOCKS == 0) GTEST_SKIP() << "a sanitizer has the allocator";
  }
};
}    // namespace

TEST_F(KyCInventoryAllocation, theCounterCounts)
{
  const KyCBlockCount blocks;
  void* volatile block = std::malloc(1);    // volatile: the compiler may leave out a pair that it sees through
  std::free(block);
  EXPECT_EQ(blocks.get(), 1u);
}

TEST_F(KyCInventoryAllocation, aNumericParameterWithItsPredefinedDescriptionIsOneBlock)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  const KyCInventoryAddress address = SIZE;
  const KyCBlockCount blocks;
  KyCInventoryParameter* const size = root.createParameter<long long>(pool, address, 1, "sixsix", true, 1);
  EXPECT_EQ(blocks.get(), 1u);
  EXPECT_NE(size, nullptr);
}

TEST_F(KyCInventoryAllocation, aNumericParameterBelowAnExistingItemIsOneBlock)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2]/IOCHANNEL");
  const KyCInventoryAddress address = BOARD[2] / IOCHANNEL / SIZE;
  const KyCBlockCount blocks;
  sample.root().createParameter<double>(pool, address, 1.0, "mV", false, 0);
  EXPECT_EQ(blocks.get(), 1u);
}

TEST_F(KyCInventoryAllocation, anItemIsOneBlock)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  const KyCInventoryAddress path = BOARD[2] / IOCHANNEL / DEVICE;
  const KyCBlockCount blocks;
  sample.root().addPath(pool, path);
  EXPECT_EQ(blocks.get(), 3u);
}

TEST_F(KyCInventoryAllocation, lookUpsOfItemsParametersAndNumbersAllocateNothing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2]/IOCHANNEL SIZE=5 NAME=\"a text of more than six characters\"");
  const KyCInventoryAddress item = BOARD[2] / IOCHANNEL;
  const KyCInventoryAddress missing = BOARD[2] / IOCHANNEL / DEVICE / SIZE;
  const KyCInventoryAddress size = BOARD[2] / IOCHANNEL / SIZE;
  const KyCInventoryAddress name = BOARD[2] / IOCHANNEL / NAME;
  const KyCBlockCount blocks;
  EXPECT_NE(sample.root().getItem(item), nullptr);
  EXPECT_EQ(sample.root().getItem(missing), nullptr);
  EXPECT_NE(sample.root().getParameter(size), nullptr);
  EXPECT_EQ(sample.root().getParameter(missing), nullptr);
  EXPECT_EQ(sample.root().getValue<int>(pool, size), 5);
  EXPECT_NE(sample.root().setValue<int>(pool, size, 6), nullptr);
  EXPECT_STRNE(sample.root().getValue<const char*>(pool, name), "");
  EXPECT_EQ(sample.root().getValue<KyCString>(pool, name).length(), 34u);
  EXPECT_EQ(sample.root().addPath(pool, item), sample.root().getItem(item));
  EXPECT_EQ(blocks.get(), 0u);
}

TEST_F(KyCInventoryAllocation, lookUpsAmongManySiblingsAllocateNothingOnceTheyAreIndexed)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  for (unsigned int n = 1; n <= 1000; ++n)
    sample.root().addPath(pool, BOARD[n]);
  sample.root().getItem(BOARD[1000]);
  const KyCBlockCount blocks;
  for (unsigned int n = 1; n <= 1001; ++n)
    EXPECT_EQ(sample.root().getItem(KyCInventoryAddress(585, n)) != nullptr, n <= 1000);
  EXPECT_EQ(blocks.get(), 0u);
}

TEST_F(KyCInventoryAllocation, anAddressIsAtMostOneBlock)
{
  KySampleTree sample("ROOT SIZE=1; BOARD[2]/IOCHANNEL/DEVICE SIZE=1");
  KyCInventoryItem* const board = sample.item("BOARD[2]");
  KyCInventoryItem* const device = sample.item("BOARD[2]/IOCHANNEL/DEVICE");
  const KyCInventoryParameter* const size = sample.parameter("SIZE");
  const KyCInventoryParameter* const deep = sample.parameter("BOARD[2]/IOCHANNEL/DEVICE/SIZE");
  {
    const KyCBlockCount blocks;
    EXPECT_EQ(sample.root().getAddress().getLength(), 0u);
    EXPECT_EQ(board->getAddress().getLength(), 1u);
    EXPECT_EQ(size->getAddress().getLength(), 1u);
    EXPECT_EQ(board->getID().getLength(), 1u);
    EXPECT_EQ(blocks.get(), 0u);
  }
  const KyCBlockCount blocks;
  EXPECT_EQ(device->getAddress().getLength(), 3u);
  EXPECT_EQ(blocks.get(), 1u);
  EXPECT_EQ(deep->getAddress().getLength(), 4u);
  EXPECT_EQ(blocks.get(), 2u);
}

namespace
{
// The text of the place of an address, item or parameter.
template <typename T>
std::string placeWithoutMemory(const T& what)
{
  char text[300] = "";
  {
    const KyCBlockLimit limit(0);
    std::snprintf(text, sizeof text, "%s", KyPlaceText(what).c_str());
  }
  return text;
}

void expectTheEndOf(const KyCInventoryAddress& address, const std::string& place)
{
  const std::string whole = address.toString().c_str();
  EXPECT_EQ(place.substr(0, 3), "...");
  EXPECT_GT(place.size(), 200u);
  EXPECT_EQ(whole.substr(whole.size() - (place.size() - 3)), place.substr(3));
}
}    // namespace

TEST_F(KyCInventoryAllocation, aLongPlaceIsNamedByItsEndWhenThereIsNoMemory)
{
  KyCInventoryAddress address;
  for (unsigned int n = 0; n < 100; ++n)
    address.append(BOARD[10 + n % 90]);
  KyTestPool pool;
  KySampleTree sample("ROOT");
  KyCInventoryParameter* const parameter = sample.root().createParameter(pool, address / SIZE, 1, "", false, 0);
  ASSERT_NE(parameter, nullptr);
  expectTheEndOf(address, placeWithoutMemory(address));
  expectTheEndOf(address, placeWithoutMemory(*parameter->getParent()));
  expectTheEndOf(address / SIZE, placeWithoutMemory(*parameter));
}

TEST_F(KyCInventoryAllocation, aPlaceWhoseLastElementIsTooLongIsTheMarkAloneWhenThereIsNoMemory)
{
  static const std::string s_name(300, 'X');
  const KyCInventoryAddress id(Map.add(Map.getCount(), s_name.c_str()));
  KyTestPool pool;
  KySampleTree sample("ROOT");
  const KyCInventoryParameter* const parameter = sample.root().createParameter(pool, id, 1, "", false, 0);
  ASSERT_NE(parameter, nullptr);
  EXPECT_EQ(placeWithoutMemory(id), "...");
  EXPECT_EQ(placeWithoutMemory(*parameter), "...");
}
