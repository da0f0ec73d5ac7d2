// Dumps and lines of any length: nothing is lost or moved where the text is put together from parts.
#include "KyDumpTest.h"

using DumpLength = KyDumpTest;

TEST_F(DumpLength, aValueOfAnyLengthComesOutWhole)
{
  for (const std::size_t middle : {100u, 1024u, 4096u, 8192u, 16384u, 32768u, 65536u})
  {
    for (std::size_t length = middle - 100; length <= middle + 100; ++length)
    {
      const std::string value(length, 'x');
      ASSERT_TRUE(dumpValue(value.c_str()) == value + "\n") << length;
      ASSERT_TRUE(dumpValue((value + "\n<").c_str()) == "\n" + value + "\n&lt;\n\n") << length;
    }
  }
}

TEST_F(DumpLength, everyTextOfAParameterComesOutWhole)
{
  for (const std::size_t length : {1000u, 2000u, 2800u, 4100u, 8192u, 70000u})
  {
    const std::string text(length, 'x');
    const std::string unit(length, 'u');
    KyCInventoryItem item(pool, KyCInventoryAddress(5000), text.c_str());
    addParameter(item, KyCInventoryAddress(7000), text.c_str(), 5, unit.c_str());
    ASSERT_TRUE(dump(item, 0x1) == "<ITEM ID=\"" + text + "\" Descr=\"" + text +
                                       "\">\n"
                                       "<PARAM ID=\"" +
                                       text + "\" Descr=\"" + text +
                                       "\" Type=\"Int32\">\n"
                                       "<VALUE>5</VALUE>\n"
                                       "<UNIT>" +
                                       unit +
                                       "</UNIT>\n"
                                       "<ISMODIFIABLE>No</ISMODIFIABLE>\n"
                                       "<RELEVANCE>0</RELEVANCE>\n"
                                       "</PARAM>\n"
                                       "</ITEM>\n")
        << length;
  }
}

TEST_F(DumpLength, theLongestNumbersAndNamesOfAHeadFit)
{
  KyCInventoryItem item(pool, KyCInventoryAddress(4294967295u, 4294967295u), "d");
  std::string expected;
  for (unsigned int n = 0; n < 500; ++n)
  {
    addParameter(item, KyCInventoryAddress(4294967295u - n), "d", KyCVersion(4294967295u, 1, 2, 4294967295u), "", true,
                 4294967295u);
    expected += "    <PARAM ID=\"" + std::to_string(4294967295u - n) +
                "\" Descr=\"d\" Type=\"Version\">\n"
                "        <VALUE>4294967295.1.2.4294967295</VALUE>\n"
                "        <UNIT></UNIT>\n"
                "        <ISMODIFIABLE>Yes</ISMODIFIABLE>\n"
                "        <RELEVANCE>4294967295</RELEVANCE>\n"
                "    </PARAM>\n";
  }
  EXPECT_EQ(dump(item, 0x2 | 0x40 | 0x800 | 0x4000),
            "<ITEM ID=\"4294967295[4294967295]\" Descr=\"d\">\n" + expected + "</ITEM>\n");
}

TEST_F(DumpLength, aDepthBeyondAnyLineIsIndentedInFull)
{
  addParameter(root, KyNInventoryIDs::SIZE, "SIZE", 7);
  for (const int depth : {7, 8, 9, 1000, 2046, 2047, 2048, 2049, 20000})
  {
    const std::string blanks(static_cast<std::size_t>(4 * depth), ' ');
    ASSERT_TRUE(dump(0xF0000, depth) == blanks + "<ITEM ID=\"ROOT\">\n" + blanks +
                                            "    <PARAM ID=\"SIZE\" Type=\"Int32\">\n" + blanks + "    </PARAM>\n" +
                                            blanks + "</ITEM>\n")
        << depth;
  }
}

TEST_F(DumpLength, manyLinesComeOutInOrder)
{
  std::string expected = "ROOT\n";
  for (unsigned int n = 2; n <= 20001; ++n)
  {
    ASSERT_NE(root.addPath(pool, KyNInventoryIDs::BOARD[n]), nullptr);
    expected += "    BOARD[" + std::to_string(n) + "]\n";
    if (n % 1000 == 0)
    {
      ASSERT_TRUE(dump(0x80) == expected) << n;
    }
  }
}

TEST_F(DumpLength, theStringOfALongDumpIsLikeAnyOther)
{
  const std::string value(100000, 'x');
  addParameter(root, KyNInventoryIDs::NAME, "NAME", KyCString(value.c_str()));
  const int valueLineOnly = 0x1 | 0x10 | 0x80 | 0x1000 | 0x2000 | 0x8000 | 0x20000 | 0x40000 | 0x80000;
  KyCString text = root.toString(pool, valueLineOnly, 0);
  const KyCString copy = text;
  text += "end";
  EXPECT_TRUE(value + "\nend" == text.c_str());
  EXPECT_TRUE(value + "\n" == copy.c_str());
  EXPECT_EQ(copy.length(), 100001u);
  text = "short";
  EXPECT_STREQ(text.c_str(), "short");
}
