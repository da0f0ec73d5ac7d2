// How values are written: each type, escaping, and values of several lines.
#include <climits>

#include "KyDumpTest.h"

using DumpValue = KyDumpTest;

TEST_F(DumpValue, eachTypeHasItsNameAndItsText)
{
  root.createParameter<signed char>(pool, KyNInventoryIDs::TEST_I8, -128, "", false, 0);
  root.createParameter<short>(pool, KyNInventoryIDs::TEST_I16, -32768, "", false, 0);
  root.createParameter<int>(pool, KyNInventoryIDs::TEST_I32, INT_MIN, "", false, 0);
  root.createParameter<long long>(pool, KyNInventoryIDs::TEST_I64, LLONG_MIN, "", false, 0);
  root.createParameter<unsigned char>(pool, KyNInventoryIDs::TEST_UI8, 255, "", false, 0);
  root.createParameter<unsigned short>(pool, KyNInventoryIDs::TEST_UI16, 65535, "", false, 0);
  root.createParameter<unsigned int>(pool, KyNInventoryIDs::TEST_UI32, UINT_MAX, "", false, 0);
  root.createParameter<unsigned long long>(pool, KyNInventoryIDs::TEST_UI64, ULLONG_MAX, "", false, 0);
  root.createParameter<float>(pool, KyNInventoryIDs::TEST_F32, 0.1f, "", false, 0);
  root.createParameter<double>(pool, KyNInventoryIDs::TEST_F64, -2.5, "", false, 0);
  root.createParameter<KyCString>(pool, KyNInventoryIDs::TEST_S, "text", "", false, 0);
  root.createParameter<KyCVersion>(pool, KyNInventoryIDs::TEST_V, KyCVersion(1, 22, 333, 4444), "", false, 0);
  EXPECT_EQ(dump(0x80 | 0x1 | 0x10 | 0xC0000),
            "TEST_I8 Int8\n"
            "-128\n"
            "TEST_I16 Int16\n"
            "-32768\n"
            "TEST_I32 Int32\n"
            "-2147483648\n"
            "TEST_I64 Long64\n"
            "-9223372036854775808\n"
            "TEST_UI8 UInt8\n"
            "255\n"
            "TEST_UI16 UInt16\n"
            "65535\n"
            "TEST_UI32 UInt32\n"
            "4294967295\n"
            "TEST_UI64 ULong64\n"
            "18446744073709551615\n"
            "TEST_F32 Float32\n"
            "0.1\n"
            "TEST_F64 Float64\n"
            "-2.5\n"
            "TEST_S String\n"
            "text\n"
            "TEST_V Version\n"
            "1.22.333.4444\n");
}

TEST_F(DumpValue, anEmptyStringIsAnEmptyLine)
{
  EXPECT_EQ(dumpValue(""), "\n");
  root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "", "", false, 0);
  EXPECT_EQ(dump(0x10 | 0xE0000),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE></VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpValue, aStringEndsAtItsFirstZeroByte) { EXPECT_EQ(dumpValue(KyCString("ab\0cd", 5)), "ab\n"); }

TEST_F(DumpValue, theFiveSpecialCharactersBecomeEntities)
{
  EXPECT_EQ(dumpValue("\"&'<>"), "&quot;&amp;&apos;&lt;&gt;\n");
  EXPECT_EQ(dumpValue("if (a < b && c > 'd') \"e\""), "if (a &lt; b &amp;&amp; c &gt; &apos;d&apos;) &quot;e&quot;\n");
}

TEST_F(DumpValue, entitiesInAValueAreEscapedOnceMore) { EXPECT_EQ(dumpValue("&lt;"), "&amp;lt;\n"); }

TEST_F(DumpValue, option0x100000LeavesTheFiveSpecialCharactersAlone)
{
  EXPECT_EQ(dumpValue("\"&'<>", 0x100000), "\"&'<>\n");
}

TEST_F(DumpValue, aLoneByte0xE9BecomesTheTwoBytesOfItsLatin1Character)
{
  EXPECT_EQ(dumpValue("caf\xE9"), "caf\xC3\xA9\n");
  EXPECT_EQ(dumpValue("caf\xE9", 0x100000), "caf\xE9\n");
}

TEST_F(DumpValue, everyLoneByteFrom0x80OnBecomesTwoBytes)
{
  EXPECT_EQ(dumpValue("\x80"), "\xC2\x80\n");
  EXPECT_EQ(dumpValue("\xBF"), "\xC2\xBF\n");
  EXPECT_EQ(dumpValue("\xC0"), "\xC3\x80\n");
  EXPECT_EQ(dumpValue("\xFF"), "\xC3\xBF\n");
}

TEST_F(DumpValue, sequencesOfTwoThreeAndFourBytesAreCopied)
{
  EXPECT_EQ(dumpValue("\xC3\xA9"), "\xC3\xA9\n");
  EXPECT_EQ(dumpValue("\xE2\x82\xAC"), "\xE2\x82\xAC\n");
  EXPECT_EQ(dumpValue("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80\n");
  EXPECT_EQ(dumpValue("\xC2\xB5V <\xE2\x82\xAC>"), "\xC2\xB5V &lt;\xE2\x82\xAC&gt;\n");
}

TEST_F(DumpValue, sequencesAreToldByTheirBitPatternsAlone)
{
  EXPECT_EQ(dumpValue("\xC0\x80"), "\xC0\x80\n") << "overlong";
  EXPECT_EQ(dumpValue("\xE0\x80\x80"), "\xE0\x80\x80\n") << "overlong";
  EXPECT_EQ(dumpValue("\xED\xA0\x80"), "\xED\xA0\x80\n") << "surrogate";
  EXPECT_EQ(dumpValue("\xF7\xBF\xBF\xBF"), "\xF7\xBF\xBF\xBF\n") << "beyond the last character";
}

TEST_F(DumpValue, aByteThatLeadsNoSequenceIsTakenAsLatin1)
{
  EXPECT_EQ(dumpValue("\xF8\x80\x80\x80\x80"), "\xC3\xB8\xC2\x80\xC2\x80\xC2\x80\xC2\x80\n") << "five bytes";
  EXPECT_EQ(dumpValue("\xC3\xA9\xA9"), "\xC3\xA9\xC2\xA9\n") << "one continuation too many";
}

TEST_F(DumpValue, aSequenceThatTheEndOfTheTextCutsIsTakenAsLatin1)
{
  EXPECT_EQ(dumpValue("\xC3"), "\xC3\x83\n");
  EXPECT_EQ(dumpValue("\xE2\x82"), "\xC3\xA2\xC2\x82\n");
  EXPECT_EQ(dumpValue("\xF0\x9F\x98"), "\xC3\xB0\xC2\x9F\xC2\x98\n");
}

TEST_F(DumpValue, aSequenceThatAnotherByteCutsIsTakenAsLatin1)
{
  EXPECT_EQ(dumpValue("\xC3<"), "\xC3\x83&lt;\n");
  EXPECT_EQ(dumpValue("\xE2\x82X"), "\xC3\xA2\xC2\x82X\n");
  EXPECT_EQ(dumpValue("\xE2\xC3\xA9"), "\xC3\xA2\xC3\xA9\n");
  EXPECT_EQ(dumpValue("\xF0\x9F\n\x80"),
            "\n"
            "\xC3\xB0\xC2\x9F\n"
            "\xC2\x80\n"
            "\n");
}

TEST_F(DumpValue, otherControlCharactersAreCopied) { EXPECT_EQ(dumpValue("a\tb\rc\x01\x7F"), "a\tb\rc\x01\x7F\n"); }

class DumpLines : public KyDumpTest
{
public:
  // The value of BOARD/NAME in mark-up, with nothing else around it but its parameter's lines.
  std::string lines(const char* value, int options = 0, int depth = 0)
  {
    KyCInventoryItem board(pool, KyNInventoryIDs::BOARD, "BOARD");
    board.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, value, "", false, 0);
    return dump(board, options | 0x10 | 0xE0000, depth);
  }
};

TEST_F(DumpLines, standAloneThreeLevelsBelowTheItem)
{
  EXPECT_EQ(lines("one\ntwo"),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            one\n"
            "            two\n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpLines, followTheDepth)
{
  EXPECT_EQ(lines("one\ntwo", 0, 1),
            "        <PARAM ID=\"NAME\" Type=\"String\">\n"
            "            <VALUE>\n"
            "                one\n"
            "                two\n"
            "            </VALUE>\n"
            "        </PARAM>\n");
}

TEST_F(DumpLines, standAtTheDepthItselfUnderOption0x1)
{
  EXPECT_EQ(lines("one\ntwo", 0x1, 2),
            "        <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "        one\n"
            "        two\n"
            "        </VALUE>\n"
            "        </PARAM>\n");
}

TEST_F(DumpLines, aLineFeedAtTheEndAddsNoLine)
{
  EXPECT_EQ(lines("one\ntwo\n"),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            one\n"
            "            two\n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpLines, aLoneLineFeedIsOneEmptyLine)
{
  EXPECT_EQ(lines("\n"),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            \n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpLines, emptyLinesKeepTheirIndentation)
{
  EXPECT_EQ(lines("\none\n\n\ntwo"),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            \n"
            "            one\n"
            "            \n"
            "            \n"
            "            two\n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpLines, areEscaped)
{
  EXPECT_EQ(lines("<a>\n\xE9"),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            &lt;a&gt;\n"
            "            \xC3\xA9\n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpLines, areNotEscapedUnderOption0x100000)
{
  EXPECT_EQ(lines("<a>\n\xE9", 0x100000),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>\n"
            "            <a>\n"
            "            \xE9\n"
            "        </VALUE>\n"
            "    </PARAM>\n");
}

TEST_F(DumpLines, longerThanAnyBufferAreNotCut)
{
  const std::string value = std::string(5000, 'x') + "\n" + std::string(5000, 'y');
  EXPECT_EQ(lines(value.c_str(), 0x1),
            "<PARAM ID=\"NAME\" Type=\"String\">\n"
            "<VALUE>\n" +
                value +
                "\n"
                "</VALUE>\n"
                "</PARAM>\n");
}

TEST_F(DumpLines, inPlainModeAreFollowedByAnEmptyLine)
{
  EXPECT_EQ(lines("one\ntwo", 0x80),
            "    NAME String\n"
            "        \n"
            "            one\n"
            "            two\n"
            "\n");
}

TEST_F(DumpLines, inPlainModeAreFollowedByAnEmptyLineAlsoBehindALineFeed)
{
  EXPECT_EQ(lines("one\n", 0x80),
            "    NAME String\n"
            "        \n"
            "            one\n"
            "\n");
}

TEST_F(DumpLines, areNotBrokenUnderOption0x100)
{
  EXPECT_EQ(lines("one\ntwo\n", 0x100),
            "    <PARAM ID=\"NAME\" Type=\"String\">\n"
            "        <VALUE>one\n"
            "two\n"
            "</VALUE>\n"
            "    </PARAM>\n");
  EXPECT_EQ(lines("one\ntwo", 0x180),
            "    NAME String\n"
            "        one\n"
            "two\n");
}
