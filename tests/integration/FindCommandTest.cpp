// kyinventory find: patterns, conditions and forms of output.
#include "integration/KyToolTest.h"

namespace
{
class FindCommand : public Tool
{
protected:
  std::string sample() const
  {
    return store("a.kyinv",
                 "ROOT NAME=\"rack\"; BOARD/IOCHANNEL[2] VOLTAGE_MAX Float64 10.5 unit=\"V\"; BOARD/IOCHANNEL[2] "
                 "NAME=\"AI\\t2\"; BOARD/IOCHANNEL[9] VOLTAGE_MAX=5; BOARD[2]/IOCHANNEL VOLTAGE_MIN=20 NAME=\"AO1\"");
  }
};
}    // namespace

TEST_F(FindCommand, printsAddressValueAndUnit)
{
  const Outcome outcome = run("find " + sample() + " 'BOARD[*]/IOCHANNEL[1-8]/VOLTAGE_*'");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "BOARD/IOCHANNEL[2]/VOLTAGE_MAX\t10.5\tV\nBOARD[2]/IOCHANNEL/VOLTAGE_MIN\t20\t\n");
}

TEST_F(FindCommand, itemsHaveAnAddressAlone)
{
  const std::string a = sample();
  EXPECT_EQ(run("find " + a + " '**' --items").out,
            ".\t\t\nBOARD\t\t\nBOARD/IOCHANNEL[2]\t\t\nBOARD/IOCHANNEL[9]\t\t\nBOARD[2]\t\t\nBOARD[2]/IOCHANNEL\t\t\n");
  EXPECT_EQ(run("find " + a + " '*' --parameters").out, "NAME\track\t\n");
  EXPECT_EQ(run("find " + a + " '*' --parameters --items").out, "NAME\track\t\nBOARD\t\t\nBOARD[2]\t\t\n");
}

TEST_F(FindCommand, conditionsCompareValues)
{
  const std::string a = sample();
  EXPECT_EQ(run("find " + a + " '**/IOCHANNEL' --where 'VOLTAGE_MAX > 10 and NAME ~ \"^AI\"'").out,
            "BOARD/IOCHANNEL[2]\t\t\n");
  EXPECT_EQ(run("find " + a + " '**/VOLTAGE_*' --where '. <= 10.5'").out,
            "BOARD/IOCHANNEL[2]/VOLTAGE_MAX\t10.5\tV\nBOARD/IOCHANNEL[9]/VOLTAGE_MAX\t5\t\n");
  EXPECT_EQ(run("find " + a + " '**/NAME' --where '. == \"AO1\"'").out, "BOARD[2]/IOCHANNEL/NAME\tAO1\t\n");
}

TEST_F(FindCommand, everyRowIsOneLine)
{
  EXPECT_EQ(run("find " + sample() + " 'BOARD[1]/IOCHANNEL/NAME'").out, "BOARD/IOCHANNEL[2]/NAME\tAI\\t2\t\n");
}

TEST_F(FindCommand, jsonHasEverything)
{
  EXPECT_EQ(run("find --json " + sample() + " 'BOARD[2]/IOCHANNEL/**' --where 'VOLTAGE_MIN'").out,
            "[\n"
            "  {\"address\": \"BOARD[2]/IOCHANNEL\", \"description\": \"IOCHANNEL\"},\n"
            "  {\"address\": \"BOARD[2]/IOCHANNEL/VOLTAGE_MIN\", \"type\": \"Int32\", \"value\": 20, \"unit\": \"\", "
            "\"modifiable\": false, \"relevance\": 0, \"description\": \"VOLTAGE_MIN\"},\n"
            "  {\"address\": \"BOARD[2]/IOCHANNEL/NAME\", \"type\": \"String\", \"value\": \"AO1\", \"unit\": \"\", "
            "\"modifiable\": false, \"relevance\": 0, \"description\": \"NAME\"}\n"
            "]\n");
}

TEST_F(FindCommand, findingNothingGivesExitCode1)
{
  const std::string a = sample();
  Outcome outcome = run("find " + a + " 'BOARD[3]'");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out + outcome.err, "");
  outcome = run("find --json " + a + " 'BOARD[3]'");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "[\n]\n");
}

TEST_F(FindCommand, addressesOfConditionsDoNotStartFromTheRoot)
{
  const Outcome outcome = run("find " + path("missing.kyinv") + " '**' --where '/NAME'");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')),
            "kyinventory: find: \"/NAME\" is not a condition: an address relative to what is found is expected at "
            "character 1. (0x150400A, readCondition)");
}

TEST_F(FindCommand, longPatternsAndConditionsAreQuotedByTheirBeginning)
{
  const std::string missing = path("missing.kyinv");
  const std::string blanks(200, ' ');
  Outcome outcome = run("find " + missing + " '**' --where 'SIZE >" + blanks + "'");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')),
            "kyinventory: find: \"SIZE >" + blanks.substr(0, 54) +
                "...\" is not a condition: an address, a number or a text in quotes is expected at character 207. "
                "(0x150400A, readCondition)");
  outcome = run("find " + missing + " '**' --where '" + std::string(100000, 'Q') + "'");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')),
            "kyinventory: find: " + std::string(60, 'Q') + "... is not an inventory ID. (0x1500800, readAddress)");
  EXPECT_LT(outcome.err.size(), 600u);
  outcome = run("find " + missing + " " + std::string(61, 'Q') + "*");
  EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')),
            "kyinventory: find: No inventory ID matches \"" + std::string(60, 'Q') + "...\". (0x1504009, readPattern)");
}

TEST_F(FindCommand, wrongPatternsAndConditionsAreWrongUsageBeforeTheFileIsRead)
{
  const std::string missing = path("missing.kyinv");
  Outcome outcome = run("find " + missing + " 'BOARD[2'");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(
      outcome.err,
      "kyinventory: find: \"BOARD[2\" is not a pattern of addresses: \"]\", \",\" or \"-\" is expected at character "
      "8. (0x1504008, readPattern)\n"
      "kyinventory: what to do: Write it like BOARD[*]/IOCHANNEL[2-8]/VOLTAGE_* or **/SERIAL_NUMBER.\n");
  outcome = run("find " + missing + " BOARD --where 'SIZE >'");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(
      outcome.err,
      "kyinventory: find: \"SIZE >\" is not a condition: an address, a number or a text in quotes is expected at "
      "character 7. (0x150400A, readCondition)\n"
      "kyinventory: what to do: Write it like VOLTAGE_MAX > 10 and not NAME ~ \"^spare\", with texts in quotes.\n");
  EXPECT_EQ(run("find " + missing + " BOARD --where ''").exitCode, 2);
  EXPECT_EQ(run("find " + missing + " 'NO_SUCH_*'").exitCode, 2);
  EXPECT_EQ(run("find " + missing).exitCode, 2);
  EXPECT_EQ(run("find " + missing + " BOARD").exitCode, 3);
}
