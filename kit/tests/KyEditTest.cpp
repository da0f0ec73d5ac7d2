// Changing, removing and renaming by address.
#include "inventorykit/KyEdit.h"

#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyFind.h"
#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyValueText.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/persistence/KyRandomTree.h"

using namespace KyNInventoryKit;

namespace
{
ParameterChange valueChange(const std::string& value, const std::string& createType = "")
{
  ParameterChange change;
  change.value = value;
  change.createType = typeOfName(createType);
  return change;
}

std::string difference(KySampleTree& sample, const std::string& text)
{
  return KyTreeDifference(sample.root(), KySampleTree(text).root());
}

std::vector<KyCInventoryAddress> addresses(const std::vector<std::string>& texts)
{
  std::vector<KyCInventoryAddress> read;
  for (const std::string& text : texts)
    read.push_back(kyAddress(text));
  return read;
}
}    // namespace

TEST(KyEdit, aValueIsReadByTheParametersOwnType)
{
  KySampleTree sample("ROOT/BOARD SIZE:UInt8=1");
  KyTestPool pool;
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/SIZE"), valueChange("0xFF")),
            sample.parameter("BOARD/SIZE"));
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/SIZE"), valueChange("256")), nullptr);
  EXPECT_REPORTS(pool, {0x1500803, "setValueText",
                        "\"256\" is not a value of type UInt8, which takes whole numbers from 0 to 255."});
  EXPECT_EQ(difference(sample, "ROOT/BOARD SIZE:UInt8=255"), "");
}

TEST(KyEdit, unitFlagAndRelevanceChangeWithoutTheValue)
{
  KySampleTree sample("ROOT SIZE=7");
  KyTestPool pool;
  ParameterChange change;
  change.unit = "kB";
  change.isModifiable = true;
  change.relevance = 4294967295u;
  EXPECT_NE(changeParameter(pool, sample.root(), kyAddress("SIZE"), change), nullptr);
  EXPECT_EQ(difference(sample, "ROOT SIZE Int32 7 unit=\"kB\" modifiable relevance=4294967295"), "");
}

TEST(KyEdit, aRefusedValueLeavesTheRestAsItWasToo)
{
  KySampleTree sample("ROOT SIZE=7");
  KyTestPool pool;
  ParameterChange change = valueChange("x");
  change.unit = "kB";
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("SIZE"), change), nullptr);
  EXPECT_REPORTS(pool, {0x1500803, "setValueText", ""});
  EXPECT_EQ(difference(sample, "ROOT SIZE=7"), "");
}

TEST(KyEdit, aUnitOf100BytesIsTakenAndALongerOneRefused)
{
  KySampleTree sample("ROOT SIZE=7");
  KyTestPool pool;
  ParameterChange change;
  change.unit = std::string(100, 'u');
  EXPECT_NE(changeParameter(pool, sample.root(), kyAddress("SIZE"), change), nullptr);
  change.unit = std::string(101, 'u');
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("SIZE"), change), nullptr);
  EXPECT_REPORTS(pool,
                 {0x1504006, "changeParameter",
                  "The unit \"" + std::string(101, 'u') + "\" is longer than the 100 bytes that a stored tree keeps."});
}

TEST(KyEdit, aMissingParameterIsCreatedWhenATypeIsGivenAlone)
{
  KySampleTree sample("ROOT/BOARD SIZE=7");
  KyTestPool pool;
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/NAME"), valueChange("x")), nullptr);
  EXPECT_REPORTS(pool, {0x1504000, "lookUp", "BOARD/NAME does not exist: BOARD has no NAME."});
  ParameterChange change = valueChange("x", "String");
  change.unit = "u";
  EXPECT_NE(changeParameter(pool, sample.root(), kyAddress("BOARD[2]/CPU/NAME"), change), nullptr);
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(difference(sample, "ROOT/BOARD SIZE=7; BOARD[2]/CPU NAME String \"x\" unit=\"u\""), "");
}

TEST(KyEdit, creatingWhatIsThereSetsItWhenTheTypeIsTheSame)
{
  KySampleTree sample("ROOT SIZE=7");
  KyTestPool pool;
  EXPECT_NE(changeParameter(pool, sample.root(), kyAddress("SIZE"), valueChange("8", "Int32")), nullptr);
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("SIZE"), valueChange("9", "UInt32")), nullptr);
  EXPECT_REPORTS(pool,
                 {0x1504004, "changeParameter", "SIZE exists and is of type Int32; it cannot be created as UInt32."});
  EXPECT_EQ(difference(sample, "ROOT SIZE=8"), "");
}

TEST(KyEdit, creatingThatFailsLeavesNoItemsBehind)
{
  KySampleTree sample("ROOT/BOARD SIZE=7");
  KyTestPool pool;
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/CPU/DEVICE/NAME"), valueChange("x", "Int8")),
            nullptr);
  EXPECT_REPORTS(pool, {0x1500803, "createParameter", ""});
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/CPU/DEVICE/5000"), valueChange("1", "Int8")),
            nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "createParameter", ""});
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/CPU/5000/SIZE"), valueChange("1", "Int8")), nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "addPath", ""}, {0x1300809, "createParameter", ""});
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("BOARD/SIZE/NAME"), valueChange("1", "Int8")), nullptr);
  EXPECT_REPORTS(pool, {0x130081A, "addPath", ""}, {0x1300809, "createParameter", ""});
  EXPECT_EQ(difference(sample, "ROOT/BOARD SIZE=7"), "");
}

TEST(KyEdit, itemsHaveNoValue)
{
  KySampleTree sample("ROOT/BOARD");
  KyTestPool pool;
  for (const char* address : {"", "BOARD"})
    EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress(address), valueChange("1", "Int8")), nullptr);
  EXPECT_EQ(changeParameter(pool, sample.root(), kyAddress("SIZE[2]"), valueChange("1", "Int8")), nullptr);
  const std::string names = " names an item; only parameters have a value, a unit, a modifiable flag and a relevance.";
  EXPECT_REPORTS(pool, {0x1504005, "changeParameter", "." + names}, {0x1504005, "changeParameter", "BOARD" + names},
                 {0x1504005, "changeParameter", "SIZE[2]" + names});
}

TEST(KyEdit, itemsAndParametersAreRemovedInAnyOrder)
{
  KySampleTree sample("ROOT NAME=\"a\"; BOARD SIZE=1 ID=2; BOARD/CPU/DEVICE SIZE=3; BOARD[2]");
  KyTestPool pool;
  EXPECT_TRUE(removeNodes(
      pool, sample.root(),
      addresses({"BOARD/CPU", "BOARD/CPU/DEVICE/SIZE", "BOARD/SIZE", "BOARD/CPU/DEVICE", "BOARD/CPU", "NAME"}),
      Ambiguity::REFUSED));
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(difference(sample, "ROOT; BOARD ID=2; BOARD[2]"), "");
}

TEST(KyEdit, nothingIsRemovedWhenOneAddressIsWrong)
{
  KySampleTree sample("ROOT NAME=\"a\"; BOARD");
  KyTestPool pool;
  EXPECT_FALSE(removeNodes(pool, sample.root(), addresses({"NAME", "BOARD[2]", "", "BOARD/SIZE"}), Ambiguity::REFUSED));
  EXPECT_REPORTS(pool,
                 {0x1504000, "lookUp", "BOARD[2] does not exist: the root item has no BOARD[2]. Did you mean BOARD?"},
                 {0x1504002, "removeNodes", "The root item cannot be removed."},
                 {0x1504000, "lookUp", "BOARD/SIZE does not exist: BOARD has no SIZE."});
  EXPECT_EQ(difference(sample, "ROOT NAME=\"a\"; BOARD"), "");
}

TEST(KyEdit, siblingsThatShareAnAddressAreRemovedTogetherOrNotAtAll)
{
  KySampleTree sample("ROOT/BOARD ID=1; BOARD[2] ID=2; BOARD[3] ID=3");
  sample.item("BOARD[3]")->setID(KyNInventoryIDs::BOARD[1]);
  KyTestPool pool;
  EXPECT_FALSE(removeNodes(pool, sample.root(), addresses({"BOARD"}), Ambiguity::REFUSED));
  EXPECT_REPORTS(pool, {0x1504001, "removeNodes", "BOARD names 2 items and parameters."});
  EXPECT_TRUE(removeNodes(pool, sample.root(), addresses({"BOARD"}), Ambiguity::REMOVE_ALL));
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2] ID=2"), "");
}

TEST(KyEdit, parametersThatShareAnIdAreRemovedTogether)
{
  KySampleTree sample("ROOT SIZE=1 ID=2 OFFSET=3");
  *sample.parameter("OFFSET") = KyCInventoryParameter(*sample.parameter("SIZE"));
  KyTestPool pool;
  EXPECT_FALSE(removeNodes(pool, sample.root(), addresses({"SIZE"}), Ambiguity::REFUSED));
  EXPECT_REPORTS(pool, {0x1504001, "removeNodes", "SIZE names 2 items and parameters."});
  EXPECT_TRUE(removeNodes(pool, sample.root(), addresses({"SIZE", "SIZE"}), Ambiguity::REMOVE_ALL));
  EXPECT_EQ(difference(sample, "ROOT ID=2"), "");
}

TEST(KyEdit, anItemAndAParameterOfOneIdAreToldApartByNobody)
{
  KySampleTree sample("ROOT SIZE=1; CPU ID=2");
  sample.item("CPU")->setID(KyNInventoryIDs::SIZE);
  KyTestPool pool;
  EXPECT_FALSE(removeNodes(pool, sample.root(), addresses({"SIZE"}), Ambiguity::REFUSED));
  EXPECT_REPORTS(pool, {0x1504001, "removeNodes", "SIZE names 2 items and parameters."});
  EXPECT_TRUE(renameItem(pool, sample.root(), kyAddress("SIZE"), KyNInventoryIDs::CPU[4]));
  EXPECT_EQ(difference(sample, "ROOT SIZE=1; CPU[4] ID=2"), "");
}

TEST(KyEdit, removingManyAddressesOfOneItemIsNotQuadratic)
{
  KySampleTree sample("ROOT");
  KyTestPool pool;
  std::vector<KyCInventoryAddress> all;
  for (unsigned int n = 1; n <= 50000; ++n)
  {
    all.push_back(KyNInventoryIDs::BOARD[n]);
    sample.root().addPath(pool, all.back());
  }
  EXPECT_TRUE(removeNodes(pool, sample.root(), all, Ambiguity::REFUSED));
  EXPECT_EQ(sample.root().getFirstSubItem(), nullptr);
}

TEST(KyEdit, anItemGetsAnotherIdAndItsName)
{
  KySampleTree sample("ROOT/BOARD[2] ID=1");
  KyTestPool pool;
  EXPECT_TRUE(renameItem(pool, sample.root(), kyAddress("BOARD[2]"), KyNInventoryIDs::DEVICE[5]));
  EXPECT_TRUE(renameItem(pool, sample.root(), KyCInventoryAddress(), KyNInventoryIDs::CPU));
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(difference(sample, "CPU/DEVICE[5] ID=1"), "");
}

TEST(KyEdit, theIdZeroIsTakenLikeOthers)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=1; CPU");
  KyTestPool pool;
  KyCInventoryAddress dummy;
  ASSERT_TRUE(readElement(pool, "DUMMY[3]", dummy));
  EXPECT_TRUE(renameItem(pool, sample.root(), kyAddress("BOARD[2]"), dummy));
  EXPECT_FALSE(renameItem(pool, sample.root(), kyAddress("CPU"), dummy));
  EXPECT_REPORTS(pool,
                 {0x1504003, "renameItem",
                  "CPU cannot get the ID DUMMY[3]: the root item has an item or a parameter of this ID already."});
  EXPECT_STREQ(sample.root().getFirstSubItem()->getDescription(), "DUMMY");
  KyCInventoryAddress size;
  ASSERT_TRUE(readAddress(pool, "DUMMY[3]/SIZE", size));
  EXPECT_NE(changeParameter(pool, sample.root(), size, valueChange("2")), nullptr);
  EXPECT_TRUE(renameItem(pool, sample.root(), dummy, KyNInventoryIDs::BOARD[2]));
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2] SIZE=2; CPU"), "");
}

TEST(KyEdit, renamingToTheOwnIdChangesNothing)
{
  KySampleTree sample("ROOT/BOARD[2] description=\"mine\"");
  KyTestPool pool;
  EXPECT_TRUE(renameItem(pool, sample.root(), kyAddress("BOARD[2]"), KyNInventoryIDs::BOARD[2]));
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2] description=\"mine\""), "");
}

TEST(KyEdit, renamingIsRefusedBeforeAnythingChanges)
{
  KySampleTree sample("ROOT/BOARD SIZE=1; BOARD/CPU; BOARD/CPU[2]");
  KyTestPool pool;
  const KyCInventoryAddress cpu = kyAddress("BOARD/CPU");
  EXPECT_FALSE(renameItem(pool, sample.root(), cpu, KyNInventoryIDs::CPU[2]));
  EXPECT_FALSE(renameItem(pool, sample.root(), cpu, KyNInventoryIDs::SIZE[3]));
  EXPECT_FALSE(renameItem(pool, sample.root(), cpu, 5000));
  EXPECT_FALSE(renameItem(pool, sample.root(), cpu, kyAddress("CPU/CPU")));
  EXPECT_FALSE(renameItem(pool, sample.root(), kyAddress("BOARD/SIZE"), KyNInventoryIDs::ID));
  EXPECT_FALSE(renameItem(pool, sample.root(), kyAddress("BOARD[2]"), KyNInventoryIDs::ID));
  EXPECT_REPORTS(pool,
                 {0x1504003, "renameItem",
                  "BOARD/CPU cannot get the ID CPU[2]: BOARD has an item or a parameter of this ID already."},
                 {0x1504003, "renameItem",
                  "BOARD/CPU cannot get the ID SIZE[3]: BOARD has an item or a parameter of this ID already."},
                 {0x1500800, "renameItem", "5000 is not an inventory ID."},
                 {0x1500802, "renameItem", "\"CPU/CPU\" is not one element of an address, such as BOARD[2]."},
                 {0x1504007, "renameItem", "BOARD/SIZE names a parameter; only items can get another ID."},
                 {0x1504000, "lookUp", "BOARD[2] does not exist: the root item has no BOARD[2]. Did you mean BOARD?"});
  EXPECT_EQ(difference(sample, "ROOT/BOARD SIZE=1; BOARD/CPU; BOARD/CPU[2]"), "");
}

// Every node is what its own address names, every value is what its own text says, and all of it can be removed again.
TEST(KyEdit, randomTreesTakeTheirOwnValuesAndCanBeTakenApart)
{
  for (unsigned int seed = 1; seed <= 60; ++seed)
  {
    KyTestPool pool;
    const KyItemPtr tree = KyRandomTree(seed).make(pool, 1 + seed);
    KyCInventoryItem* copied = nullptr;
    tree->copyTree(pool, copied);
    const KyItemPtr before(copied);
    std::vector<KyCInventoryAddress> all;
    AddressTexts texts;
    for (const Node& node : find(*tree, Query()))
    {
      const KyCInventoryAddress address =
          node.parameter != nullptr ? node.parameter->getAddress() : node.item->getAddress();
      const Node named = lookUp(*tree, address);
      EXPECT_TRUE(named.item == node.item && named.parameter == node.parameter) << texts.of(node);
      if (node.item != tree.get() || node.parameter != nullptr) all.push_back(address);
      if (node.parameter == nullptr) continue;
      ParameterChange change = valueChange(valueText(*node.parameter));
      change.createType = node.parameter->getType();
      EXPECT_EQ(changeParameter(pool, *tree, address, change), node.parameter) << texts.of(node);
    }
    EXPECT_EQ(KyTreeDifference(*tree, *before), "") << "seed " << seed;
    EXPECT_TRUE(removeNodes(pool, *tree, all, Ambiguity::REFUSED)) << "seed " << seed;
    EXPECT_EQ(find(*tree, Query()).size(), 1u) << "seed " << seed;
  }
}
