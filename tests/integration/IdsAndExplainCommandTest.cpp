// kyinventory ids and explain.
#include "integration/KyToolTest.h"

namespace
{
class IdsAndExplain : public Tool
{
};
}    // namespace

TEST_F(IdsAndExplain, idsPrintsNamesAndNumbers)
{
  const Outcome outcome = run("ids 'voltage_m*'");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "VOLTAGE_MIN\t45\nVOLTAGE_MAX\t74\n");
  EXPECT_EQ(run("ids number_plugon").out, "SERIAL_NUMBER_PLUGON\t176\nSERIAL_NUMBER_PLUGON2\t656\n");
  EXPECT_EQ(run("ids 585").out, "BOARD\t585\n");
  EXPECT_EQ(run("ids").out.substr(0, 15), "DUMMY\t0\nROOT\t1\n");
  EXPECT_EQ(run("ids 0").out, "DUMMY\t0\n");
}

TEST_F(IdsAndExplain, idsAsJson)
{
  EXPECT_EQ(run("ids --json VOLTAGE_M*").out,
            "[\n  {\"name\": \"VOLTAGE_MIN\", \"id\": 45},\n  {\"name\": \"VOLTAGE_MAX\", \"id\": 74}\n]\n");
}

TEST_F(IdsAndExplain, idsNamesTheNearestWhenNoneMatchesWithExitCode1)
{
  Outcome outcome = run("ids serial_numbr");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "kyinventory: serial_numbr: no inventory ID matches. Nearest: SERIAL_NUMBER\n");
  outcome = run("ids --json 'no such'");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "[\n]\n");
  EXPECT_EQ(outcome.err, "kyinventory: no such: no inventory ID matches.\n");
}

TEST_F(IdsAndExplain, explainTellsCauseAndRemedy)
{
  const std::string expected =
      "0x1300005  Cannot read from file.\n"
      "Library:      libKyInventoryTree\n"
      "Reported by:  readInventoryDataHeaderFromFile, readInventoryDataTrailerFromFile\n"
      "Cause:        The file is shorter than its section says, or the medium failed.\n"
      "What to do:   kyinventory check FILE tells where; restore the file, and check the medium.\n";
  for (const char* code : {"0x1300005", "19922949", "'kyinventory: a: Cannot read from file. (0x1300005, read)'"})
  {
    const Outcome outcome = run(std::string("explain ") + code);
    EXPECT_EQ(outcome.exitCode, 0) << code;
    EXPECT_EQ(outcome.out, expected) << code;
    EXPECT_EQ(outcome.err, "") << code;
  }
}

TEST_F(IdsAndExplain, explainLeavesOutARemedyThatThereIsNot)
{
  EXPECT_EQ(run("explain 0x1300802").out,
            "0x1300802  Internal error. Kyrel Support information: Cannot attach inventory tree.\n"
            "Library:      libKyInventoryTree\n"
            "Reported by:  nobody\n"
            "Cause:        Reserved: it keeps the codes behind it in place.\n");
}

TEST_F(IdsAndExplain, explainAsJson)
{
  EXPECT_EQ(run("explain --json 0x1300005").out,
            "{\n"
            "  \"code\": \"0x1300005\",\n"
            "  \"library\": \"libKyInventoryTree\",\n"
            "  \"text\": \"Cannot read from file.\",\n"
            "  \"reportedBy\": \"readInventoryDataHeaderFromFile, readInventoryDataTrailerFromFile\",\n"
            "  \"cause\": \"The file is shorter than its section says, or the medium failed.\",\n"
            "  \"remedy\": \"kyinventory check FILE tells where; restore the file, and check the medium.\"\n"
            "}\n");
}

TEST_F(IdsAndExplain, explainTellsAnUnknownCodeFromNone)
{
  Outcome outcome = run("explain 1300005");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: 1300005: No message has the code 0x13D625. Did you mean 0x1300005? (0x150400D, explainText)\n"
            "kyinventory: what to do: Check the code; hexadecimal ones have 0x in front.\n");
  outcome = run("explain five");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "kyinventory: \"five\" is not a message code, such as 0x1300005. (0x150400C, readCode)\n"
            "kyinventory: what to do: Give the code of a report, decimal or with 0x in front.\n");
  EXPECT_EQ(run("explain").exitCode, 2);
}

TEST_F(IdsAndExplain, theRemedyOfTheFirstReportStandsBehindTheList)
{
  std::string section = storeSample("a.kyinv");
  section[24] = '\x7F';    // the stream's version
  write("a.kyinv", section);
  const std::string err = run("get " + path("a.kyinv") + " .").err;
  const std::size_t last = err.rfind("kyinventory: ");
  EXPECT_EQ(err.substr(last),
            "kyinventory: what to do: Read it with the version that wrote it; of a damaged file, kyinventory check "
            "FILE tells where.\n")
      << err;
  EXPECT_EQ(err.find("what to do"), last + 13) << err;
}
