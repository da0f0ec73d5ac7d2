// kyinventory get: values, columns, JSON, and what is missing.
#include "integration/KyToolTest.h"
#include "support/KyTerminal.h"

namespace
{
class GetCommand : public Tool
{
protected:
  std::string sample() const
  {
    return store("a.kyinv",
                 "ROOT NAME=\"rack\"; BOARD NAME String \"a\\tb\\n\\\\\" unit=\"u\" modifiable relevance=7\n"
                 "BOARD VOLTAGE_MAX Float32 0.1 unit=\"V\"; BOARD/CPU; BOARD[2] SIZE:ULong64=18446744073709551615");
  }
};

const std::string s_whatToDo =
    "kyinventory: what to do: Correct the address; kyinventory find lists what is there. To set a "
    "parameter that is not there yet, use kyinventory set --create.\n";
}    // namespace

TEST_F(GetCommand, printsValuesOneALineByteByByte)
{
  const Outcome outcome = run("get " + sample() + " BOARD/VOLTAGE_MAX BOARD[2]/SIZE BOARD/NAME NAME");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "0.1\n18446744073709551615\na\tb\n\\\nrack\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(GetCommand, typeAndUnitStandBehindTheValue)
{
  const std::string file = sample();
  EXPECT_EQ(run("get --type " + file + " BOARD/VOLTAGE_MAX").out, "0.1\tFloat32\n");
  EXPECT_EQ(run("get --unit " + file + " BOARD/VOLTAGE_MAX NAME").out, "0.1\tV\nrack\t\n");
  EXPECT_EQ(run("get --unit --type " + file + " BOARD/VOLTAGE_MAX").out, "0.1\tFloat32\tV\n");
}

TEST_F(GetCommand, severalColumnsKeepEveryRowInOneLine)
{
  EXPECT_EQ(run("get --all " + sample() + " BOARD/NAME BOARD[2]/SIZE").out,
            "BOARD/NAME\ta\\tb\\n\\\\\tString\tu\tyes\t7\tNAME\n"
            "BOARD[2]/SIZE\t18446744073709551615\tULong64\t\tno\t0\tSIZE\n");
}

TEST_F(GetCommand, anItemStandsForItsParametersWithTheirAddresses)
{
  const std::string file = sample();
  EXPECT_EQ(run("get " + file + " BOARD").out, "BOARD/NAME\ta\\tb\\n\\\\\nBOARD/VOLTAGE_MAX\t0.1\n");
  EXPECT_EQ(run("get " + file + " . BOARD[2]/SIZE").out, "NAME\track\nBOARD[2]/SIZE\t18446744073709551615\n");
  const Outcome empty = run("get " + file + " BOARD/CPU");
  EXPECT_EQ(empty.exitCode, 0);
  EXPECT_EQ(empty.out, "");
}

TEST_F(GetCommand, jsonHasEverythingOfEachParameter)
{
  EXPECT_EQ(
      run("get --json " + sample() + " BOARD BOARD[2]/SIZE").out,
      "[\n"
      "  {\"address\": \"BOARD/NAME\", \"type\": \"String\", \"value\": \"a\\tb\\n\\\\\", \"unit\": \"u\", "
      "\"modifiable\": true, \"relevance\": 7, \"description\": \"NAME\"},\n"
      "  {\"address\": \"BOARD/VOLTAGE_MAX\", \"type\": \"Float32\", \"value\": \"0.1\", \"unit\": \"V\", "
      "\"modifiable\": false, \"relevance\": 0, \"description\": \"VOLTAGE_MAX\"},\n"
      "  {\"address\": \"BOARD[2]/SIZE\", \"type\": \"ULong64\", \"value\": \"18446744073709551615\", \"unit\": \"\", "
      "\"modifiable\": false, \"relevance\": 0, \"description\": \"SIZE\"}\n"
      "]\n");
}

TEST_F(GetCommand, jsonLosesNothingOfTextsAndNumbers)
{
  const std::string file =
      store("b.kyinv",
            "ROOT NAME=\"\\xFFx\" SERIAL=\"\\x00\\x1b\\x7f\\xc2\\x85\\xc3\\xa9\\\"\"; ROOT ID Version "
            "1.2.3.4");
  const std::string json = run("get --json " + file + " .").out;
  EXPECT_NE(json.find("\"value\": {\"bytes\": \"/3g=\"}"), std::string::npos) << json;
  EXPECT_NE(json.find("\"value\": \"\\u0000\\u001b\\u007f\\u0085\xC3\xA9\\\"\""), std::string::npos) << json;
  EXPECT_NE(json.find("\"value\": \"1.2.3.4\""), std::string::npos) << json;
}

TEST_F(GetCommand, whatIsMissingGivesExitCode1AndTheNearestNamesAndTheOthersArePrinted)
{
  const std::string file = sample();
  const Outcome outcome = run("get " + file + " BOARD[3]/NAME NAME BOARD/SIZE");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "rack\n");
  EXPECT_EQ(outcome.err, "kyinventory: " + file +
                             ": BOARD[3]/NAME does not exist: the root item has no BOARD[3]. Did you mean BOARD[2] or "
                             "BOARD? (0x1504000, lookUp)\n"
                             "kyinventory: " +
                             file + ": BOARD/SIZE does not exist: BOARD has no SIZE. (0x1504000, lookUp)\n" +
                             s_whatToDo);
  EXPECT_EQ(run("get --json " + file + " CPU").out, "[\n]\n");
}

TEST_F(GetCommand, aWrongAddressIsWrongUsageBeforeTheFileIsRead)
{
  Outcome outcome = run("get " + path("missing.kyinv") + " BOARD/SIZ");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "kyinventory: BOARD/SIZ: SIZ is not an inventory ID. Did you mean SIZE? (0x1500800, readAddress)\n"
            "kyinventory: what to do: Correct the name; kyinventory ids lists all of them.\n");
  outcome = run("get " + path("missing.kyinv") + " BOARD//SIZE");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "kyinventory: \"BOARD//SIZE\" is not an address: the name of an ID is expected at character 7. (0x1500801, "
            "readAddress)\n"
            "kyinventory: what to do: Write it like BOARD[2]/SERIAL_NUMBER.\n");
  EXPECT_EQ(run("get " + path("missing.kyinv")).exitCode, 2);
  EXPECT_EQ(run("get " + path("missing.kyinv") + " BOARD").exitCode, 3);
}

TEST_F(GetCommand, readsStandardInputAndTellsWhenTheOutputIsFull)
{
  const std::string file = sample();
  EXPECT_EQ(run("get - NAME <" + file + " >" + path("out.txt") + " #").exitCode, 0);
  EXPECT_EQ(contentOf(path("out.txt")), "rack\n");
  const Outcome full = run("get " + file + " NAME >/dev/full 2>" + path("full.txt") + " #");
  EXPECT_EQ(full.exitCode, 4);
  EXPECT_EQ(contentOf(path("full.txt")), "kyinventory: standard output: No space left on device\n");
}

TEST_F(GetCommand, onATerminalControlCharactersAreShownAndColumnsAligned)
{
  const std::string file =
      store("b.kyinv", "ROOT NAME=\"\\x1b[31m\\xc3\\xa9\\n\"; BOARD[2] SIZE Int32 5 unit=\"\\x07\"");
  const std::string tool = kyToolPath;
  EXPECT_EQ(printedOnTerminal(tool + " get " + file + " NAME"), "\\x1B[31m\xC3\xA9\\x0A\n");
  EXPECT_EQ(printedOnTerminal(tool + " get --unit " + file + " . BOARD[2]"),
            "\x1B[1mADDRESS\x1B[0m        \x1B[1mVALUE\x1B[0m          \x1B[1mUNIT\x1B[0m\n"
            "\x1B[36mNAME\x1B[0m           \\x1B[31m\xC3\xA9\\x0A  \n"
            "\x1B[36mBOARD[2]/SIZE\x1B[0m  5              \\x07\n");
}

#ifdef KY_HAVE_HOST
TEST_F(GetCommand, givesEveryValueThatFindGivesForRealMachines)
{
  const std::filesystem::path folder = std::filesystem::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  for (const auto& entry : std::filesystem::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml") continue;
    const std::string file = path("machine.kyinv");
    ASSERT_EQ(run("scan --force --topology " + entry.path().string() + " -o " + file).exitCode, 0);
    const Outcome found = run("find --parameters " + file + " '**'");
    EXPECT_EQ(found.exitCode, 0) << entry.path();
    EXPECT_EQ(run("get --unit " + file + " $(" + kyToolPath + " find --items " + file + " '**' | cut -f1)").out,
              found.out);
  }
}
#endif
