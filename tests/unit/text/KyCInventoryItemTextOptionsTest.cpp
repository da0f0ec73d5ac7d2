// Every option bit alone, and the combinations in which bits act on each other. All on one tree, whose full mark-up is
// the first test.
#include "KyDumpTest.h"

class DumpOption : public KyDumpTest
{
public:
  void SetUp() override
  {
    addParameter(root, KyNInventoryIDs::VOLTAGE_MIN, "lowest voltage", -5, "V", true, 1);    // ID 45
    addParameter(root, KyCInventoryAddress(7000), "my name", KyCString("<A>\nB"));
    addItem(root, KyNInventoryIDs::BOARD[2], "second board");    // ID 585
    addItem(root, KyCInventoryAddress(5000), "my item");
  }

  // Heads alone; what the bits about IDs, descriptions and types act on.
  std::string heads(int options) { return dump(options | 0xF0000); }
  std::string plainHeads(int options) { return dump(options | 0xF0080); }
};

TEST_F(DumpOption, noneGivesTheFullMarkUp)
{
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <VALUE>-5</VALUE>\n"
            "        <UNIT>V</UNIT>\n"
            "        <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "        <RELEVANCE>1</RELEVANCE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            &lt;A&gt;\n"
            "            B\n"
            "        </VALUE>\n"
            "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "        <RELEVANCE>0</RELEVANCE>\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x1TakesAwayTheIndentationOfNestedLevels)
{
  EXPECT_EQ(dump(0x1),
            "<ITEM ID=\"ROOT\">\n"
            "<PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "<VALUE>-5</VALUE>\n"
            "<UNIT>V</UNIT>\n"
            "<ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "<RELEVANCE>1</RELEVANCE>\n"
            "</PARAM>\n"
            "<PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "<VALUE>\n"
            "&lt;A&gt;\n"
            "B\n"
            "</VALUE>\n"
            "<ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "<RELEVANCE>0</RELEVANCE>\n"
            "</PARAM>\n"
            "<ITEM ID=\"BOARD[2]\">\n"
            "</ITEM>\n"
            "<ITEM ID=\"my item\" Descr=\"my item\">\n"
            "</ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x2WritesEmptyUnits)
{
  EXPECT_EQ(dump(0x2 | 0x10000 | 0xC0000),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <UNIT>V</UNIT>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <UNIT></UNIT>\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, withoutBit0x2AParameterWithAnEmptyUnitHasNoUnitLine)
{
  EXPECT_EQ(dump(0x10000 | 0xC0000),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <UNIT>V</UNIT>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x4WritesTheIndexOfItemsEvenWhenItIs1)
{
  EXPECT_EQ(heads(0x4),
            "<ITEM ID=\"ROOT[1]\">\n"
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item[1]\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x8LeavesOutParameters)
{
  EXPECT_EQ(dump(0x8),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x10LeavesOutTheLinesOfItemsButNotTheirIndentation)
{
  addParameter(*root.getItem(KyNInventoryIDs::BOARD[2]), KyNInventoryIDs::NAME, "NAME", KyCString("x"));
  EXPECT_EQ(heads(0x10),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n"
            "        <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        </PARAM>\n");
}

TEST_F(DumpOption, bit0x20WritesTheIndexBehindADot)
{
  EXPECT_EQ(dump(0x28),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD.2\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x40WritesIDsAsNumbers)
{
  EXPECT_EQ(heads(0x40),
            "<ITEM ID=\"1\">\n"
            "    <PARAM ID=\"45\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"7000\" Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"585[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"5000\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

// Descriptions are written by default for the IDs without a name, directly behind them; a value of several lines is
// followed by an empty line.
TEST_F(DumpOption, bit0x80IsPlainMode)
{
  EXPECT_EQ(dump(0x80),
            "ROOT\n"
            "    VOLTAGE_MIN Int32\n"
            "        -5\n"
            "        V\n"
            "        Yes\n"
            "        1\n"
            "    my namemy name String\n"
            "        \n"
            "            &lt;A&gt;\n"
            "            B\n"
            "\n"
            "        No\n"
            "        0\n"
            "    BOARD[2]\n"
            "    my itemmy item\n");
}

TEST_F(DumpOption, bits0x80And0x2WriteAnEmptyUnitAsItsIndentation)
{
  EXPECT_EQ(dump(0x82 | 0x10000 | 0xC0000),
            "ROOT\n"
            "    VOLTAGE_MIN Int32\n"
            "        V\n"
            "    my namemy name String\n"
            "        \n"
            "    BOARD[2]\n"
            "    my itemmy item\n");
}

TEST_F(DumpOption, bits0x80And0x1WritePlainLinesWithoutIndentation)
{
  EXPECT_EQ(dump(0x81),
            "ROOT\n"
            "VOLTAGE_MIN Int32\n"
            "-5\n"
            "V\n"
            "Yes\n"
            "1\n"
            "my namemy name String\n"
            "\n"
            "&lt;A&gt;\n"
            "B\n"
            "\n"
            "No\n"
            "0\n"
            "BOARD[2]\n"
            "my itemmy item\n");
}

TEST_F(DumpOption, bit0x100LeavesStringValuesInOnePiece)
{
  EXPECT_EQ(dump(0x100 | 0xE0000),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <VALUE>-5</VALUE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <VALUE>&lt;A&gt;\n"
            "B</VALUE>\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x200LeavesOutTheIDOfItems)
{
  EXPECT_EQ(dump(0x208),
            "<ITEM>\n"
            "    <ITEM>\n"
            "    </ITEM>\n"
            "    <ITEM Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bits0x80And0x200WriteTheHeadLineAllTheSame)
{
  EXPECT_EQ(dump(0x288),
            "\n"
            "    \n"
            "    my item\n");
}

TEST_F(DumpOption, bit0x400LeavesOutTheDescriptionOfItems)
{
  EXPECT_EQ(dump(0x408),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bit0x400WinsOver0x800)
{
  EXPECT_EQ(dump(0xC08),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bits0x80And0x400LeaveTheIDAlone)
{
  EXPECT_EQ(dump(0x488),
            "ROOT\n"
            "    BOARD[2]\n"
            "    my item\n");
}

TEST_F(DumpOption, bits0x200And0x400LeaveTheMarkOfItemsAlone)
{
  EXPECT_EQ(dump(0x608),
            "<ITEM>\n"
            "    <ITEM>\n"
            "    </ITEM>\n"
            "    <ITEM>\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bits0x80And0x200And0x400SkipTheHeadsOfItems)
{
  EXPECT_EQ(dump(0x688), "");
  EXPECT_EQ(dump(0xE88), "") << "0x400 wins over 0x800 here too";
  EXPECT_EQ(plainHeads(0x600),
            "    VOLTAGE_MIN Int32\n"
            "    my namemy name String\n");
}

TEST_F(DumpOption, bit0x800WritesTheDescriptionOfEveryItem)
{
  EXPECT_EQ(dump(0x808),
            "<ITEM ID=\"ROOT\" Descr=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD[2]\" Descr=\"second board\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"my item\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bits0x80And0x800WriteTheDescriptionBehindASpace)
{
  EXPECT_EQ(dump(0x888),
            "ROOT ROOT\n"
            "    BOARD[2] second board\n"
            "    my item my item\n");
}

TEST_F(DumpOption, bits0x80And0x200And0x800KeepTheSpaceBeforeTheDescription)
{
  EXPECT_EQ(dump(0xA88),
            " ROOT\n"
            "     second board\n"
            "     my item\n");
}

TEST_F(DumpOption, bit0x1000LeavesOutTheIDOfParameters)
{
  EXPECT_EQ(heads(0x1010),
            "    <PARAM Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bits0x80And0x1000KeepTheSpaceBeforeTheType)
{
  EXPECT_EQ(plainHeads(0x1010),
            "     Int32\n"
            "    my name String\n");
}

TEST_F(DumpOption, bit0x2000LeavesOutTheDescriptionOfParameters)
{
  EXPECT_EQ(heads(0x2010),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bit0x2000WinsOver0x4000)
{
  EXPECT_EQ(heads(0x6010),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bit0x4000WritesTheDescriptionOfEveryParameter)
{
  EXPECT_EQ(heads(0x4010),
            "    <PARAM ID=\"VOLTAGE_MIN\" Descr=\"lowest voltage\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bits0x80And0x4000WriteTheDescriptionBehindASpace)
{
  EXPECT_EQ(plainHeads(0x4010),
            "    VOLTAGE_MIN lowest voltage Int32\n"
            "    my name my name String\n");
}

TEST_F(DumpOption, bits0x80And0x1000And0x4000KeepTheSpaceBeforeTheDescription)
{
  EXPECT_EQ(plainHeads(0x5010),
            "     lowest voltage Int32\n"
            "     my name String\n");
}

TEST_F(DumpOption, bit0x8000LeavesOutTheType)
{
  EXPECT_EQ(heads(0x8010),
            "    <PARAM ID=\"VOLTAGE_MIN\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\">\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bits0x80And0x8000LeaveIDAndDescription)
{
  EXPECT_EQ(plainHeads(0x8010),
            "    VOLTAGE_MIN\n"
            "    my namemy name\n");
}

TEST_F(DumpOption, bits0x80And0x1000And0x8000WriteTheHeadLineAllTheSame)
{
  EXPECT_EQ(plainHeads(0x9010),
            "    \n"
            "    my name\n");
}

TEST_F(DumpOption, bits0x1000And0x2000And0x8000LeaveTheMarkOfParametersAlone)
{
  EXPECT_EQ(heads(0xB010),
            "    <PARAM>\n"
            "    </PARAM>\n"
            "    <PARAM>\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bits0x80And0x1000And0x2000And0x8000SkipTheHeadsOfParameters)
{
  EXPECT_EQ(plainHeads(0xB010), "");
  EXPECT_EQ(plainHeads(0xF010), "") << "0x2000 wins over 0x4000 here too";
  EXPECT_EQ(dump(0x80 | 0x10 | 0xB000 | 0xC0000 | 0x100),
            "        -5\n"
            "        V\n"
            "        &lt;A&gt;\n"
            "B\n");
}

TEST_F(DumpOption, bit0x10000LeavesOutTheValue)
{
  EXPECT_EQ(dump(0x10010),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <UNIT>V</UNIT>\n"
            "        <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "        <RELEVANCE>1</RELEVANCE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "        <RELEVANCE>0</RELEVANCE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bit0x20000LeavesOutTheUnitEvenUnder0x2)
{
  const char* const withoutUnits =
      "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
      "        <VALUE>-5</VALUE>\n"
      "        <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
      "        <RELEVANCE>1</RELEVANCE>\n"
      "    </PARAM>\n"
      "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
      "        <VALUE>\n"
      "            &lt;A&gt;\n"
      "            B\n"
      "        </VALUE>\n"
      "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
      "        <RELEVANCE>0</RELEVANCE>\n"
      "    </PARAM>\n";
  EXPECT_EQ(dump(0x20010), withoutUnits);
  EXPECT_EQ(dump(0x20012), withoutUnits);
}

TEST_F(DumpOption, bit0x40000LeavesOutTheModifiableFlag)
{
  EXPECT_EQ(dump(0x50010),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <UNIT>V</UNIT>\n"
            "        <RELEVANCE>1</RELEVANCE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <RELEVANCE>0</RELEVANCE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bit0x80000LeavesOutTheRelevance)
{
  EXPECT_EQ(dump(0x90010),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <UNIT>V</UNIT>\n"
            "        <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bit0x100000LeavesStringValuesUnescaped)
{
  EXPECT_EQ(dump(0x100000 | 0x10 | 0xE0000),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <VALUE>-5</VALUE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            <A>\n"
            "            B\n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bits0x100000And0x100GiveTheValueItself)
{
  EXPECT_EQ(dump(0x100100 | 0x10 | 0xE0000),
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <VALUE>-5</VALUE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"my name\" Descr=\"my name\" Type=\"String\">\n"
            "        <VALUE><A>\n"
            "B</VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpOption, bit0x200000WritesTheNumberOfAnIDWithoutAName)
{
  EXPECT_EQ(heads(0x200000),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"7000\" Descr=\"my name\" Type=\"String\">\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"5000\" Descr=\"my item\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(DumpOption, bits0x80And0x200000WriteTheDescriptionDirectlyBehindTheNumber)
{
  EXPECT_EQ(plainHeads(0x200000),
            "ROOT\n"
            "    VOLTAGE_MIN Int32\n"
            "    7000my name String\n"
            "    BOARD[2]\n"
            "    5000my item\n");
}

TEST_F(DumpOption, bits0x80And0x4And0x40WriteNumbersAndIndices)
{
  EXPECT_EQ(plainHeads(0x44),
            "1[1]\n"
            "    45 Int32\n"
            "    7000my name String\n"
            "    585[2]\n"
            "    5000[1]my item\n");
}

TEST_F(DumpOption, allBitsTogetherGiveNothing) { EXPECT_EQ(dump(0x3FFFFF), ""); }
