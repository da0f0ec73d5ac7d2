// What differs between two trees, and how it is told.
#include "inventorykit/KyDiff.h"

#include "inventorykit/KyValueText.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
// Lines such as "~ BOARD/SIZE: 1 -> 2", moves included.
std::string diffOf(const KyCInventoryItem& before, const KyCInventoryItem& after)
{
  const char marks[] = {'+', '-', '~', '>'};
  const Difference difference = compareTrees(before, after);
  std::string text;
  for (const Change& change : difference.changes())
    text += std::string(1, marks[static_cast<int>(change.kind)]) + " " + difference.addressOf(change) + ": " +
            changeText(change) + "\n";
  return text;
}

std::string diffOf(const std::string& before, const std::string& after)
{
  return diffOf(KySampleTree(before).root(), KySampleTree(after).root());
}
}    // namespace

TEST(KyDiff, equalTreesHaveNoChanges)
{
  const char* const text = "ROOT NAME=\"x\"; BOARD SIZE=1; BOARD[2]/CPU OFFSET:Float32=1.5";
  EXPECT_EQ(diffOf(text, text), "");
  EXPECT_EQ(diffOf("ROOT", "ROOT"), "");
  const KySampleTree sample(text);
  const Difference difference = compareTrees(sample.root(), sample.root());
  EXPECT_TRUE(difference.isEqual());
  EXPECT_EQ(differenceToJson(difference),
            "{\n  \"format\": \"kyinventory-diff\",\n  \"version\": 1,\n  \"changes\": []\n}\n");
}

TEST(KyDiff, aChangedValueIsShownWithItsUnit)
{
  EXPECT_EQ(diffOf("ROOT/BOARD SIZE Int32 1 unit=\"kB\"", "ROOT/BOARD SIZE Int32 2 unit=\"kB\""),
            "~ BOARD/SIZE: 1 kB -> 2 kB\n");
  EXPECT_EQ(diffOf("ROOT NAME=\"a\"", "ROOT NAME=\"b\\n\\\"\\x1B\""), "~ NAME: \"a\" -> \"b\\n\\\"\\x1B\"\n");
  EXPECT_EQ(diffOf("ROOT SIZE:Float64=0.0", "ROOT SIZE:Float64=-0.0"), "~ SIZE: 0 -> -0\n");
}

TEST(KyDiff, everyBitOfANumberThatIsNoneCounts)
{
  KySampleTree before("ROOT SIZE:Float32=0.0");
  KySampleTree after("ROOT SIZE:Float32=0.0");
  KyTestPool pool;
  EXPECT_TRUE(setValueText(pool, *before.parameter("SIZE"), "nan(0x7fa00001)"));    // signalling
  EXPECT_TRUE(setValueText(pool, *after.parameter("SIZE"), "nan(0x7fe00001)"));
  EXPECT_EQ(diffOf(before.root(), after.root()), "~ SIZE: nan(0x7fa00001) -> nan(0x7fe00001)\n");
}

TEST(KyDiff, aChangedTypeIsShownWithBothTypes)
{
  EXPECT_EQ(diffOf("ROOT SIZE:Int32=1", "ROOT SIZE:UInt32=1"), "~ SIZE: Int32 1 -> UInt32 1\n");
}

TEST(KyDiff, everyOtherAttributeIsToldByName)
{
  EXPECT_EQ(diffOf("ROOT SIZE Int32 1 unit=\"V\"", "ROOT SIZE Int32 1 unit=\"mV\""), "~ SIZE: unit \"V\" -> \"mV\"\n");
  EXPECT_EQ(diffOf("ROOT SIZE Int32 1", "ROOT SIZE Int32 1 modifiable"), "~ SIZE: modifiable no -> yes\n");
  EXPECT_EQ(diffOf("ROOT SIZE Int32 1 relevance=7", "ROOT SIZE Int32 1"), "~ SIZE: relevance 7 -> 0\n");
  EXPECT_EQ(diffOf("ROOT SIZE Int32 1", "ROOT SIZE Int32 1 description=\"s\""),
            "~ SIZE: description \"SIZE\" -> \"s\"\n");
  EXPECT_EQ(diffOf("ROOT SIZE Int32 1 unit=\"V\"", "ROOT SIZE Int32 2 unit=\"mV\" modifiable relevance=1"),
            "~ SIZE: 1 V -> 2 mV, modifiable no -> yes, relevance 0 -> 1\n");
}

TEST(KyDiff, whatIsAddedIsListedWithEverythingBelowIt)
{
  EXPECT_EQ(diffOf("ROOT/BOARD",
                   "ROOT/BOARD; BOARD[2] description=\"spare\"; BOARD[2] SIZE Int32 4 unit=\"kB\" "
                   "modifiable relevance=7 description=\"s\"; BOARD[2]/CPU NAME=\"x\""),
            "+ BOARD[2]: item \"spare\"\n"
            "+ BOARD[2]/SIZE: Int32 4 kB, modifiable, relevance 7, description \"s\"\n"
            "+ BOARD[2]/CPU: item\n"
            "+ BOARD[2]/CPU/NAME: String \"x\"\n");
}

TEST(KyDiff, whatIsRemovedStandsWhereItWas)
{
  EXPECT_EQ(diffOf("ROOT NAME=\"r\"; BOARD; CPU SIZE=1; DEVICE", "ROOT/BOARD SIZE=1; DEVICE ID=2"),
            "- NAME: String \"r\"\n"
            "+ BOARD/SIZE: Int32 1\n"
            "- CPU: item\n"
            "- CPU/SIZE: Int32 1\n"
            "+ DEVICE/ID: Int32 2\n");
}

TEST(KyDiff, descriptionsOfItemsAndTheRootsOwnIdAreCompared)
{
  EXPECT_EQ(diffOf("ROOT/BOARD", "ROOT/BOARD description=\"spare\""), "~ BOARD: description \"BOARD\" -> \"spare\"\n");
  EXPECT_EQ(diffOf("ROOT/BOARD", "DEVICE[2]/BOARD"), "~ .: ID ROOT -> DEVICE[2], description \"ROOT\" -> \"DEVICE\"\n");
}

TEST(KyDiff, anotherOrderIsNoDifferenceButIsTold)
{
  const KySampleTree before("ROOT NAME=\"n\" SIZE=1; BOARD; CPU; DEVICE");
  const KySampleTree after("ROOT SIZE=1 NAME=\"n\"; DEVICE; BOARD; CPU");
  EXPECT_EQ(diffOf(before.root(), after.root()),
            "> SIZE: parameter in another place\n"
            "> DEVICE: item in another place\n");
  const Difference difference = compareTrees(before.root(), after.root());
  EXPECT_TRUE(difference.isEqual());
  EXPECT_EQ(difference.items().moved, 1u);
  EXPECT_EQ(difference.parameters().moved, 1u);
}

TEST(KyDiff, siblingsOfOneNameArePairedByTheirNumber)
{
  KySampleTree before("ROOT/BOARD[2] SIZE=1; CPU; BOARD[3] SIZE=2");
  KySampleTree after("ROOT/BOARD[2] SIZE=1; CPU; BOARD[3] SIZE=3; BOARD[4] SIZE=4");
  before.item("BOARD[3]")->setID(kyAddress("BOARD[2]"));    // reports into the master list, and does it
  after.item("BOARD[4]")->setID(kyAddress("BOARD[2]"));
  after.item("BOARD[3]")->setID(kyAddress("BOARD[2]"));
  EXPECT_EQ(diffOf(before.root(), after.root()),
            "~ BOARD[2]#2/SIZE: 2 -> 3\n"
            "+ BOARD[2]#3: item\n"
            "+ BOARD[2]#3/SIZE: Int32 4\n");
  EXPECT_EQ(diffOf(after.root(), before.root()),
            "~ BOARD[2]#2/SIZE: 3 -> 2\n"
            "- BOARD[2]#3: item\n"
            "- BOARD[2]#3/SIZE: Int32 4\n");
}

TEST(KyDiff, anItemAndAParameterOfOneIdAreDifferentThings)
{
  EXPECT_EQ(diffOf("ROOT/NAME", "ROOT NAME=1"), "+ NAME: Int32 1\n- NAME: item\n");
}

TEST(KyDiff, idsThatAreNotPredefinedAreNumbers)
{
  EXPECT_EQ(diffOf("ROOT", "ROOT/5000[2] 6000=1"), "+ 5000[2]: item\n+ 5000[2]/6000: Int32 1\n");
}

TEST(KyDiff, theJsonNamesPlacesAndOldAndNewValues)
{
  const KySampleTree before("ROOT/BOARD SIZE:ULong64=1; CPU; DEVICE");
  const KySampleTree after("ROOT/BOARD SIZE:Float32=0.5; DEVICE NAME=\"\\xFF\"; CPU");
  EXPECT_EQ(
      differenceToJson(compareTrees(before.root(), after.root())),
      "{\n"
      "  \"format\": \"kyinventory-diff\",\n"
      "  \"version\": 1,\n"
      "  \"changes\": [\n"
      "    {\"change\":\"changed\",\"parameter\":\"BOARD/SIZE\",\"old\":{\"type\":\"ULong64\",\"value\":\"1\"},"
      "\"new\":{\"type\":\"Float32\",\"value\":\"0.5\"}},\n"
      "    {\"change\":\"moved\",\"item\":\"DEVICE\",\"old\":{\"after\":\"CPU\"},\"new\":{\"after\":\"BOARD\"}},\n"
      "    {\"change\":\"added\",\"parameter\":\"DEVICE/NAME\",\"after\":null,\"type\":\"String\","
      "\"value\":{\"bytes\":\"/w==\"},\"unit\":\"\",\"modifiable\":false,\"relevance\":0,"
      "\"description\":\"NAME\"}\n"
      "  ]\n"
      "}\n");
}
