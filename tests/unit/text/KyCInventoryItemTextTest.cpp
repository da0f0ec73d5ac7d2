// The shape of a dump: heads, closing lines, order, indentation, and which part of the tree it covers.
#include "KyDumpTest.h"
#include "support/KyCapturedOutput.h"
#include "tree/KyInventoryAccess.h"

using KyCInventoryItemText = KyDumpTest;

TEST_F(KyCInventoryItemText, aBareRootIsAHeadLineAndAClosingLine)
{
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, option0x4WritesTheIndex1)
{
  EXPECT_EQ(dump(0x4),
            "<ITEM ID=\"ROOT[1]\">\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, option0x24WritesTheIndex1BehindADot)
{
  EXPECT_EQ(dump(0x24),
            "<ITEM ID=\"ROOT.1\">\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, depth2IsEightSpacesForTheItemTwelveForItsParametersSixteenForTheirValues)
{
  root.createParameter<int>(pool, KyNInventoryIDs::VOLTAGE_MIN, -5, "V", true, 1);
  EXPECT_EQ(dump(0, 2),
            "        <ITEM ID=\"ROOT\">\n"
            "            <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "                <VALUE>-5</VALUE>\n"
            "                <UNIT>V</UNIT>\n"
            "                <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "                <RELEVANCE>1</RELEVANCE>\n"
            "            </PARAM>\n"
            "        </ITEM>\n");
}

TEST_F(KyCInventoryItemText, depth2UnderOption0x1StaysAtEightSpaces)
{
  root.createParameter<int>(pool, KyNInventoryIDs::BOARD / KyNInventoryIDs::VOLTAGE_MIN, -5, "V", true, 1);
  EXPECT_EQ(dump(0x1, 2),
            "        <ITEM ID=\"ROOT\">\n"
            "        <ITEM ID=\"BOARD\">\n"
            "        <PARAM ID=\"VOLTAGE_MIN\" Type=\"Int32\">\n"
            "        <VALUE>-5</VALUE>\n"
            "        <UNIT>V</UNIT>\n"
            "        <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "        <RELEVANCE>1</RELEVANCE>\n"
            "        </PARAM>\n"
            "        </ITEM>\n"
            "        </ITEM>\n");
}

TEST_F(KyCInventoryItemText, aNegativeDepthIsCountedUpFrom)
{
  root.addPath(pool, KyNInventoryIDs::BOARD / KyNInventoryIDs::CPU / KyNInventoryIDs::DEVICE);
  EXPECT_EQ(dump(0, -2),
            "<ITEM ID=\"ROOT\">\n"
            "<ITEM ID=\"BOARD\">\n"
            "<ITEM ID=\"CPU\">\n"
            "    <ITEM ID=\"DEVICE\">\n"
            "    </ITEM>\n"
            "</ITEM>\n"
            "</ITEM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, parametersComeBeforeSubItemsBothInListOrder)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::BOARD[3] / KyNInventoryIDs::NAME, "c", "", false, 0);
  root.createParameter<KyCString>(pool, KyNInventoryIDs::BOARD / KyNInventoryIDs::NAME, "a", "", false, 0);
  root.createParameter<KyCString>(pool, KyNInventoryIDs::TYPE, "t", "", false, 0);
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "n", "", false, 0);
  const int namesAndValues = 0x80 | 0x8000 | 0x40000 | 0x80000;
  EXPECT_EQ(dump(namesAndValues),
            "ROOT\n"
            "    TYPE\n"
            "        t\n"
            "    NAME\n"
            "        n\n"
            "    BOARD[3]\n"
            "        NAME\n"
            "            c\n"
            "    BOARD\n"
            "        NAME\n"
            "            a\n");
}

TEST_F(KyCInventoryItemText, theDumpOfASubItemLeavesOutItsSiblings)
{
  root.addPath(pool, KyNInventoryIDs::BOARD[1]);
  root.addPath(pool, KyNInventoryIDs::BOARD[2] / KyNInventoryIDs::CPU);
  root.addPath(pool, KyNInventoryIDs::BOARD[3]);
  EXPECT_EQ(dump(*root.getItem(KyNInventoryIDs::BOARD[2]), 0),
            "<ITEM ID=\"BOARD[2]\">\n"
            "    <ITEM ID=\"CPU\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
  EXPECT_EQ(dump(*root.getItem(KyNInventoryIDs::BOARD[1]), 0),
            "<ITEM ID=\"BOARD\">\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, everyBranchIsClosedBeforeTheNextOneBegins)
{
  root.addPath(pool, KyNInventoryIDs::BOARD[1] / KyNInventoryIDs::CPU / KyNInventoryIDs::DEVICE);
  root.addPath(pool, KyNInventoryIDs::BOARD[1] / KyNInventoryIDs::IOCHANNEL);
  root.addPath(pool, KyNInventoryIDs::BOARD[2]);
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD\">\n"
            "        <ITEM ID=\"CPU\">\n"
            "            <ITEM ID=\"DEVICE\">\n"
            "            </ITEM>\n"
            "        </ITEM>\n"
            "        <ITEM ID=\"IOCHANNEL\">\n"
            "        </ITEM>\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, sharedDataOfAnItemIsNotPartOfItsDump)
{
  KyCInventoryItem shared(pool, KyNInventoryIDs::DEVICE, "DEVICE");
  shared.addPath(pool, KyNInventoryIDs::CPU);
  shared.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "shared", "", false, 0);
  KyInventoryAccess::setFriend(root, &shared);
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "</ITEM>\n");
  KyInventoryAccess::setFriend(root, nullptr);
}

TEST_F(KyCInventoryItemText, theDescriptionStandsInForAnIDWithoutAName)
{
  addItem(root, KyCInventoryAddress(5000, 2), "my board");
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"my board[2]\" Descr=\"my board\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, theDescriptionOfAnIDWithANameIsNotWritten)
{
  addItem(root, KyNInventoryIDs::BOARD, "my board");
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, anIDWithoutANameAndWithoutADescriptionIsEmpty)
{
  addItem(root, KyCInventoryAddress(5000), "");
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"\" Descr=\"\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, theDescriptionStandsInForAParametersIDWithoutAName)
{
  addParameter(root, KyCInventoryAddress(5000), "my value", 7);
  EXPECT_EQ(dump(0xF0000),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"my value\" Descr=\"my value\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, aParametersIDHasNoIndexEvenUnderOption0x4)
{
  root.createParameter<int>(pool, KyNInventoryIDs::SIZE[3], 7, "", false, 0);
  EXPECT_EQ(dump(0xF0004),
            "<ITEM ID=\"ROOT[1]\">\n"
            "    <PARAM ID=\"SIZE\" Type=\"Int32\">\n"
            "    </PARAM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, descriptionsAndUnitsAreNotEscaped)
{
  addItem(root, KyCInventoryAddress(5000), "a<b>&\"c\"");
  root.createParameter<int>(pool, KyNInventoryIDs::SIZE, 7, "<\xE9>", false, 0);
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"SIZE\" Type=\"Int32\">\n"
            "        <VALUE>7</VALUE>\n"
            "        <UNIT><\xE9></UNIT>\n"
            "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "        <RELEVANCE>0</RELEVANCE>\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"a<b>&\"c\"\" Descr=\"a<b>&\"c\"\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, longTextsAreNotCut)
{
  const std::string description(3000, 'd');
  const std::string unit(3000, 'u');
  const std::string value(3000, 'v');
  addItem(root, KyCInventoryAddress(5000), description.c_str());
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, value.c_str(), unit.c_str(), false, 0);
  EXPECT_EQ(dump(0x80 | 0x1 | 0x400 | 0xC0000),
            "ROOT\n"
            "NAME String\n" +
                value + "\n" + unit + "\n" + description + "\n");
}

TEST_F(KyCInventoryItemText, theLargestNumbersAreWrittenWhole)
{
  KyCInventoryItem item(pool, KyCInventoryAddress(0xFFFFFFFF, 0xFFFFFFFF), "last");
  item.createParameter<int>(pool, KyNInventoryIDs::SIZE, 7, "", false, 0xFFFFFFFF);
  EXPECT_EQ(dump(item, 0x40 | 0x400 | 0x10000),
            "<ITEM ID=\"4294967295[4294967295]\">\n"
            "    <PARAM ID=\"98\" Type=\"Int32\">\n"
            "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "        <RELEVANCE>4294967295</RELEVANCE>\n"
            "    </PARAM>\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, anIndex0IsWritten)
{
  KyCInventoryItem item(pool, KyNInventoryIDs::BOARD[0], "BOARD");
  EXPECT_EQ(dump(item, 0),
            "<ITEM ID=\"BOARD[0]\">\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, bitsBeyondTheListedOnesAreIgnored)
{
  EXPECT_EQ(dump(static_cast<int>(0xFFC00000u)),
            "<ITEM ID=\"ROOT\">\n"
            "</ITEM>\n");
}

TEST_F(KyCInventoryItemText, errorsOfTheGettersGoToThePoolAndTheDumpGoesOn)
{
  auto* parameter = new KyCInventoryParameter(pool, KyNInventoryIDs::SIZE, "SIZE", 0x999u);
  ASSERT_EQ(root.addParameter(pool, KyNInventoryIDs::THIS_NODE, parameter), &root);
  ASSERT_EQ(pool.takeReports().size(), 0u);
  EXPECT_EQ(dump(0),
            "<ITEM ID=\"ROOT\">\n"
            "    <PARAM ID=\"SIZE\" Type=\"\">\n"
            "        <VALUE></VALUE>\n"
            "        <ISMODIFIABLE>No</ISMODIFIABLE>\n"
            "        <RELEVANCE>0</RELEVANCE>\n"
            "    </PARAM>\n"
            "</ITEM>\n");
  const std::string id = std::to_string(KyNInventoryIDs::SIZE.getCategory());
  EXPECT_REPORTS(pool,
                 {0x1100802, "getValueAsString", "Parameter " + id + " has the unknown type code 0x999 and no value."});
}

TEST_F(KyCInventoryItemText, writeIndentToStreamWritesFourSpacesForEachLevelAndNoneBelow1)
{
  KyCInventoryItem::MyStream stream(false);
  EXPECT_TRUE(root.writeIndentToStream(3, stream));
  EXPECT_TRUE(stream.write("|"));
  EXPECT_TRUE(root.writeIndentToStream(0, stream));
  EXPECT_TRUE(root.writeIndentToStream(-1, stream));
  EXPECT_STREQ(stream.getString().c_str(), "            |");
}

TEST_F(KyCInventoryItemText, writeToStreamAddsToWhatTheStreamHolds)
{
  KyCInventoryItem::MyStream stream(false);
  EXPECT_TRUE(stream.write("before\n"));
  EXPECT_TRUE(root.writeToStream(pool, 0x80, 1, stream));
  EXPECT_TRUE(root.writeToStream(pool, 0x84, 0, stream));
  EXPECT_STREQ(stream.getString().c_str(),
               "before\n"
               "    ROOT\n"
               "ROOT[1]\n");
}

TEST_F(KyCInventoryItemText, printTreePrintsWhatToStringGives)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::BOARD[2] / KyNInventoryIDs::NAME, "a\n<b>", "V", true, 3);
  KyCapturedOutput output;
  root.printTree(pool, 0, 1);
  EXPECT_EQ(output.take(),
            "    <ITEM ID=\"ROOT\">\n"
            "        <ITEM ID=\"BOARD[2]\">\n"
            "            <PARAM ID=\"NAME\" Type=\"String\">\n"
            "                <VALUE>\n"
            "                    a\n"
            "                    &lt;b&gt;\n"
            "                </VALUE>\n"
            "                <UNIT>V</UNIT>\n"
            "                <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
            "                <RELEVANCE>3</RELEVANCE>\n"
            "            </PARAM>\n"
            "        </ITEM>\n"
            "    </ITEM>\n");
}

TEST_F(KyCInventoryItemText, inPrintModeAValueWithAPercentSignIsAFormatKeptOnPurpose)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "100%%", "%%", false, 0);
  addItem(root, KyCInventoryAddress(5000), "50%%");
  const int options = 0x1 | 0x80 | 0x400 | 0xC0000;
  KyCapturedOutput output;
  root.printTree(pool, options, 0);
  EXPECT_EQ(output.take(),
            "ROOT\n"
            "NAME String\n"
            "100%\n"
            "%\n"
            "50%\n");
  EXPECT_EQ(dump(options),
            "ROOT\n"
            "NAME String\n"
            "100%%\n"
            "%%\n"
            "50%%\n");
}

TEST_F(KyCInventoryItemText, inPrintModeEachLineOfAValueIsAFormatKeptOnPurpose)
{
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "1%%\n2%%", "", false, 0);
  KyCapturedOutput output;
  root.printTree(pool, 0x1 | 0x10 | 0xE0000, 0);
  EXPECT_EQ(output.take(),
            "<PARAM ID=\"NAME\" Type=\"String\">\n"
            "<VALUE>\n"
            "1%\n"
            "2%\n"
            "</VALUE>\n"
            "</PARAM>\n");
}
