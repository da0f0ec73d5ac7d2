// The tree builder and comparer that many tests rest on.

#include "support/KySampleTree.h"

#include <gtest/gtest-spi.h>

#include <memory>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
std::string difference(const char* a, const char* b)
{
  const KySampleTree first(a);
  const KySampleTree second(b);
  return KyTreeDifference(first.root(), second.root());
}
}    // namespace

TEST(KySampleTree, buildsItemsAndShortParameters)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[1] SIZE=-1 OFFSET=1.5 NAME=\"a b;c\" VERSION:Version=1.2; BOARD[2]");
  EXPECT_EQ(sample.root().getID(), KyCInventoryAddress(1));
  EXPECT_EQ(sample.root().getValue<int>(pool, BOARD / SIZE), -1);
  EXPECT_EQ(sample.root().getValue<double>(pool, BOARD / OFFSET), 1.5);
  EXPECT_STREQ(sample.root().getValue<const char*>(pool, BOARD / NAME), "a b;c");
  EXPECT_EQ(sample.root().getValue<KyCVersion>(pool, BOARD / VERSION), KyCVersion(1, 2, 0, 0));
  EXPECT_EQ(sample.item("BOARD[1]")->getNext(), sample.item("BOARD[2]"));
}

TEST(KySampleTree, buildsLongParametersFromLines)
{
  KyTestPool pool;
  KySampleTree sample(
      "# two boards\nROOT/BOARD[2]  NAME  String  \"I/O \\\"fast\\\"\\n\\xE9\"  unit=\"mV\" modifiable\n\n"
      "ROOT/BOARD[2] SIZE ULong64 18446744073709551615 relevance=7 description=\"how large\"\n");
  const KyCInventoryParameter* const name = sample.parameter("BOARD[2]/NAME");
  EXPECT_STREQ(name->getValue<const char*>(pool), "I/O \"fast\"\n\xE9");
  EXPECT_STREQ(name->getUnit(), "mV");
  EXPECT_TRUE(name->isModifiable());
  EXPECT_STREQ(name->getDescription(), "NAME");
  const KyCInventoryParameter* const size = sample.parameter("BOARD[2]/SIZE");
  EXPECT_EQ(size->getValue<unsigned long long>(pool), 18446744073709551615ull);
  EXPECT_EQ(size->getRelevance(), 7u);
  EXPECT_STREQ(size->getDescription(), "how large");
}

TEST(KySampleTree, buildsWhatTheBuildersOfTheLibraryRefuse)
{
  KySampleTree sample("ROOT/5000[2] description=\"unknown\" 5001=1; ROOT 5002 0x777 0");
  EXPECT_STREQ(sample.item("5000[2]")->getDescription(), "unknown");
  EXPECT_EQ(sample.parameter("5000[2]/5001")->getType(), 0x114u);
  EXPECT_EQ(sample.parameter("5002")->getType(), 0x777u);
}

TEST(KySampleTree, releaseHandsTheTreeOver)
{
  KySampleTree sample("ROOT/BOARD");
  const std::unique_ptr<KyCInventoryItem> root(sample.release());
  EXPECT_NE(root->getItem(BOARD), nullptr);
}

TEST(KySampleTree, whatCannotBeReadFailsTheTest)
{
  EXPECT_NONFATAL_FAILURE(KySampleTree("ROOT SIZE=1 SIZE=2"), "no parameter can be added as SIZE");
  EXPECT_NONFATAL_FAILURE(KySampleTree("ROOT NO_SUCH_NAME Int32 1"), "no address: NO_SUCH_NAME");
  EXPECT_NONFATAL_FAILURE(KySampleTree("ROOT SIZE Int32"), "ID, type and value expected");
  EXPECT_NONFATAL_FAILURE(KySampleTree("ROOT").item("BOARD"), "no item BOARD");
}

TEST(KyTreeDifference, isEmptyForEqualTrees)
{
  EXPECT_EQ(difference("ROOT/BOARD[2] SIZE=1; DEVICE/IOCHANNEL", "ROOT/BOARD[2] SIZE=1; DEVICE/IOCHANNEL"), "");
}

TEST(KyTreeDifference, namesTheFirstDifferenceByAddress)
{
  EXPECT_EQ(difference("ROOT", "BOARD"), "root item: ID ROOT, BOARD");
  EXPECT_EQ(difference("ROOT/BOARD", "ROOT/BOARD[2]"), "BOARD: ID BOARD, BOARD[2]");
  EXPECT_EQ(difference("ROOT/BOARD; DEVICE", "ROOT/DEVICE; BOARD"), "BOARD: ID BOARD, DEVICE");
  EXPECT_EQ(difference("ROOT/BOARD description=\"a\"", "ROOT/BOARD"), "BOARD: description a, BOARD");
  EXPECT_EQ(difference("ROOT/BOARD/DEVICE", "ROOT/BOARD"), "BOARD/DEVICE: only in the first");
  EXPECT_EQ(difference("ROOT/BOARD/DEVICE", "ROOT/BOARD/DEVICE; CAN"), "CAN: only in the second");
  EXPECT_EQ(difference("ROOT SIZE=1", "ROOT"), "root item: parameter SIZE only in the first");
  EXPECT_EQ(difference("ROOT/BOARD SIZE=1", "ROOT/BOARD SIZE=1 5000=2"), "BOARD: parameter 5000 only in the second");
}

TEST(KyTreeDifference, comparesEverythingOfAParameter)
{
  EXPECT_EQ(difference("ROOT/BOARD SIZE=1", "ROOT/BOARD OFFSET=1"), "BOARD/SIZE: ID SIZE, OFFSET");
  EXPECT_EQ(difference("ROOT SIZE=1", "ROOT SIZE:UInt32=1"), "SIZE: type 276, 292");
  EXPECT_EQ(difference("ROOT SIZE=1", "ROOT SIZE=2"), "SIZE: value 1 (bits 1), 2 (bits 2)");
  EXPECT_NE(difference("ROOT SIZE:Float64=0.0", "ROOT SIZE:Float64=-0.0"), "");
  EXPECT_EQ(difference("ROOT SIZE=\"a\"", "ROOT SIZE=\"b\""), "SIZE: value a, b");
  EXPECT_EQ(difference("ROOT SIZE:Version=1.2", "ROOT SIZE:Version=1.3"), "SIZE: value 1.2.0.0, 1.3.0.0");
  EXPECT_EQ(difference("ROOT SIZE Int32 1 unit=\"A\"", "ROOT SIZE=1"), "SIZE: unit A, ");
  EXPECT_EQ(difference("ROOT SIZE Int32 1 modifiable", "ROOT SIZE=1"), "SIZE: modifiable 1, 0");
  EXPECT_EQ(difference("ROOT SIZE Int32 1 relevance=4", "ROOT SIZE=1"), "SIZE: relevance 4, 0");
  EXPECT_EQ(difference("ROOT SIZE Int32 1 description=\"x\"", "ROOT SIZE=1"), "SIZE: description x, SIZE");
}
