// kyinventory shell from a script: what each command prints, and the exit codes.
#include "integration/KyToolTest.h"

namespace
{
class Shell : public Tool
{
protected:
  void SetUp() override
  {
    m_file = store("a.kyinv",
                   "ROOT NAME=\"rack 7\"; BOARD[2] SIZE=1 OFFSET:Float32=1.5\n"
                   "BOARD[2] VOLTAGE_MAX Float64 10.5 unit=\"V\" modifiable\n"
                   "BOARD[2]/CPU; BOARD[3]; CPU");
  }

  // Runs commands; they must not have a ' in them.
  Outcome carryOut(const std::string& commands) const { return run("shell " + m_file + " -c '" + commands + "'"); }

  // Runs shell text whose standard input is its own.
  Outcome runCommand(const std::string& command) const
  {
    const int status = std::system((command + " >" + path("own.out") + " 2>" + path("own.err")).c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(path("own.out")), contentOf(path("own.err"))};
  }

  std::string m_file;
};

TEST_F(Shell, listsItemsAndThenParametersWithTypeValueAndUnit)
{
  Outcome outcome = carryOut("ls");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "BOARD[2]/\n"
            "BOARD[3]/\n"
            "CPU/\n"
            "NAME  String   \"rack 7\"\n");
  outcome = carryOut("ls BOARD[2]/");
  EXPECT_EQ(outcome.out,
            "CPU/\n"
            "SIZE         Int32    1\n"
            "OFFSET       Float32  1.5\n"
            "VOLTAGE_MAX  Float64  10.5 V\n");
  EXPECT_EQ(carryOut("ls CPU").out, "");
}

TEST_F(Shell, goesToItemsAndBack)
{
  const Outcome outcome = carryOut("cd BOARD[2]/CPU; pwd; cd ..; pwd; cd /BOARD[3]; pwd; cd; pwd");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "/BOARD[2]/CPU\n/BOARD[2]\n/BOARD[3]\n/\n");
}

TEST_F(Shell, getPrintsValuesByThemselves)
{
  const Outcome outcome = carryOut("cd BOARD[2]; get SIZE VOLTAGE_MAX /NAME");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "1\n10.5\nrack 7\n");
}

TEST_F(Shell, getOfAnItemPrintsItsParametersAsTheSubCommandDoes)
{
  const std::string lines = "BOARD[2]/SIZE\t1\nBOARD[2]/OFFSET\t1.5\nBOARD[2]/VOLTAGE_MAX\t10.5\n";
  EXPECT_EQ(carryOut("get BOARD[2]").out, lines);
  EXPECT_EQ(run("get " + m_file + " BOARD[2]").out, lines);
  EXPECT_EQ(carryOut("get BOARD[2] NAME").out, lines + "NAME\track 7\n");
  EXPECT_EQ(carryOut("get .").out, "NAME\track 7\n");
  const Outcome empty = carryOut("get CPU");
  EXPECT_EQ(empty.exitCode, 0);
  EXPECT_EQ(empty.out, "");
  EXPECT_EQ(empty.err, "");
}

TEST_F(Shell, addressesArePrintedRelativeToTheCurrentItemAndOthersFromTheRoot)
{
  EXPECT_EQ(carryOut("cd BOARD[2]; get . /").out, "SIZE\t1\nOFFSET\t1.5\nVOLTAGE_MAX\t10.5\n/NAME\track 7\n");
  EXPECT_EQ(carryOut("cd CPU; get ../BOARD[2]").out,
            "/BOARD[2]/SIZE\t1\n/BOARD[2]/OFFSET\t1.5\n/BOARD[2]/VOLTAGE_MAX\t10.5\n");
}

TEST_F(Shell, upwardElementsMayStandAnywhereInAnAddress)
{
  const Outcome outcome = carryOut("cd /CPU/..; pwd; cd BOARD[2]/CPU/../../BOARD[3]; pwd; get ../BOARD[2]/../NAME");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "/\n/BOARD[3]\nrack 7\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Shell, whatIsMissingIsReportedWithTheNearestAddressesThatTheShellTakes)
{
  const struct
  {
    const char* commands;
    const char* message;
  } cases[] = {
      {"get BOARD[2]/VOLTAGE_MIN",
       "There is no parameter BOARD[2]/VOLTAGE_MIN. Did you mean BOARD[2]/VOLTAGE_MAX? "
       "(0x1503003, node)"},
      {"cd BOARD[3]; set ../BOARD[2]/VOLTAGE_MIN=1",
       "There is no parameter ../BOARD[2]/VOLTAGE_MIN. Did you mean ../BOARD[2]/VOLTAGE_MAX? (0x1503003, parameter)"},
      {"cd BOARD[3]; set /BOARD/SIZE --relevance 1",
       "There is no parameter /BOARD/SIZE. Did you mean /BOARD[2] or /BOARD[3]? (0x1503003, parameter)"},
      {"get CPU[2]", "There is no item CPU[2]. Did you mean CPU? (0x1503001, node)"},
      {"ls BOARD[2]/CPU[7]/..",
       "BOARD[2]/CPU[7]/..: There is no item BOARD[2]/CPU[7]. Did you mean BOARD[2]/CPU? (0x1503001, item)"},
  };
  for (const auto& one : cases)
  {
    const Outcome outcome = carryOut(one.commands);
    EXPECT_EQ(outcome.exitCode, 1) << one.commands;
    EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')), std::string("kyinventory: ") + one.message);
  }
}

TEST_F(Shell, setChangesUnitRelevanceAndModifiableFlagAsTheSubCommandDoes)
{
  const std::string all = " BOARD[2]/SIZE BOARD[2]/OFFSET CPU/COUNT --all";
  const Outcome outcome = carryOut(
      "set BOARD[2]/SIZE BOARD[2]/OFFSET=2.5 --unit=mm --relevance 7 --modifiable yes; set CPU/COUNT=1 --create Int8; "
      "save");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  const Outcome changed = run("get " + m_file + all);
  EXPECT_EQ(changed.out.substr(0, changed.out.find('\n')), "BOARD[2]/SIZE\t1\tInt32\tmm\tyes\t7\tSIZE");
  EXPECT_NE(changed.out.find("BOARD[2]/OFFSET\t2.5\tFloat32\tmm\tyes\t7\t"), std::string::npos) << changed.out;
  EXPECT_NE(changed.out.find("CPU/COUNT\t1\tInt8\t\tno\t0\t"), std::string::npos) << changed.out;
  EXPECT_EQ(carryOut("set BOARD[2]/SIZE --unit mm --relevance 7 --modifiable yes").exitCode, 0) << "nothing changed";
  EXPECT_EQ(carryOut("set BOARD[2]/SIZE --unit \"\"").exitCode, 1) << "a change that is not saved";
}

TEST_F(Shell, aBackslashInAWordIsTakenAwayAsItsHelpSays)
{
  EXPECT_EQ(carryOut("set NAME=C:\\tmp; get NAME; quit!").out, "C:tmp\n");
  EXPECT_EQ(carryOut("set NAME=C:\\\\tmp; get NAME; set NAME=\"C:\\tmp\"; get NAME; quit!").out, "C:\\tmp\nC:\\tmp\n");
  EXPECT_EQ(run("shell " + m_file + " -c \"set NAME='C:\\tmp'; get NAME; quit!\"").out, "C:\\tmp\n");
  const std::string rule =
      "set VENDOR=C:\\tmp stores C:tmp; for C:\\tmp write set VENDOR='C:\\tmp' or set VENDOR=C:\\\\tmp.\n";
  EXPECT_NE(carryOut("help").out.find(rule), std::string::npos);
  EXPECT_NE(run("shell --help").out.find("set VENDOR=C:\\tmp stores C:tmp"), std::string::npos);
}

TEST_F(Shell, theFirstFailureEndsItWithItsExitCode)
{
  Outcome outcome = carryOut("get BOARD[2]/SIZE BOARD[2]/NAME BOARD[2]/SIZE; pwd");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "1\n1\n");
  EXPECT_EQ(outcome.err,
            "kyinventory: There is no parameter BOARD[2]/NAME. (0x1503003, node)\n"
            "kyinventory: what to do: See what ls lists; set --create TYPE makes a parameter.\n");
  outcome = carryOut("cd BOARD[9]; pwd");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: There is no item BOARD[9]. Did you mean BOARD[3] or BOARD[2]? (0x1503001, item)\n"
            "kyinventory: what to do: See what ls lists; addresses are relative to the current item.\n");
  outcome = carryOut("cd BORD; pwd");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_NE(outcome.err.find("BOARD"), std::string::npos) << outcome.err;
}

TEST_F(Shell, wrongUsageOfACommandGivesExitCode2)
{
  const struct
  {
    const char* commands;
    const char* message;
  } cases[] = {
      {"dance", "dance: no such command; help lists them all"},
      {"cd CPU CPU", "wrong usage: cd [ADDRESS]"},
      {"get", "wrong usage: get ADDRESS..."},
      {"pwd now", "wrong usage: pwd "},
      {"set",
       "wrong usage: set ADDRESS[=VALUE]... [--create TYPE] [--unit UNIT] [--relevance NUMBER] [--modifiable yes|no]"},
      {"set NAME", "set: NAME: a value is missing: write NAME=VALUE"},
      {"set NAME=a --create", "set: --create needs a value"},
      {"set --unit V", "set: nothing to set"},
      {"set NAME --unit V --create String", "set: NAME: a value is missing: write NAME=VALUE"},
      {"set NAME=a --create Int7",
       "Int7: is no type; the types are Int8, Int16, Int32, Long64, UInt8, UInt16, UInt32, ULong64, Float32, Float64, "
       "String, Version"},
      {"quit now", "quit: now: only --force may stand here"},
      {"exit now", "exit: now: only --force may stand here"},
      {"get --json NAME", "get: --json: no such option"},
      {"get NAME \"\"", "get: an address must not be empty; . is the current item, / the root"},
      {"ls -l", "ls: -l: no such option"},
      {"ls \"\"", "ls: an address must not be empty; . is the current item, / the root"},
      {"cd --", "cd: --: no such option"},
      {"cd \"\"", "cd: an address must not be empty; . is the current item, / the root"},
      {"find -x", "find: -x: no such option"},
      {"find \"\"", "find: an address must not be empty; . is the current item, / the root"},
      {"set BOARD[2]/SIZE=5 --units=V", "set: --units: no such option"},
      {"set NAME --relevance", "set: --relevance needs a value"},
      {"set --relevance=-1 NAME=a", "set: --relevance: -1: must be a whole number from 0 to 4294967295"},
      {"set --relevance 4294967296 NAME=a",
       "set: --relevance: 4294967296: must be a whole number from 0 to 4294967295"},
      {"set --modifiable true NAME=a", "set: --modifiable: true: must be yes or no"},
      {"get NAME BORD",
       "BORD is not an inventory ID. Did you mean BOARD? (0x1500800, readAddress)\n"
       "kyinventory: what to do: Correct the name; kyinventory ids lists all of them."},
      {"set =5", "set: an address must not be empty; . is the current item, / the root"},
      {"get BOARD[2]//SIZE",
       "\"BOARD[2]//SIZE\" is not an address: the name of an ID is expected at character 10. (0x1500801, readAddress)\n"
       "kyinventory: what to do: Write it like BOARD[2]/SERIAL_NUMBER."},
      {"get BORD",
       "BORD is not an inventory ID. Did you mean BOARD? (0x1500800, readAddress)\n"
       "kyinventory: what to do: Correct the name; kyinventory ids lists all of them."},
      {"set BOARD[2]/SIZE=x",
       "BOARD[2]/SIZE: \"x\" is not a value of type Int32, which takes whole numbers from -2147483648 to 2147483647. "
       "(0x1500803, setValueText)\nkyinventory: what to do: Give a value that the type takes."},
      {"set CPU/SIZE=300 --create Int8",
       "CPU/SIZE: \"300\" is not a value of type Int8, which takes whole numbers from -128 to 127. (0x1500803, "
       "createParameter)\nkyinventory: what to do: Give a value that the type takes."},
      {"save now", "save: now: only --force may stand here"},
      {"set NAME=\"a",
       "shell: The quote \" is not closed. (0x1503000, splitCommands)\nkyinventory: what to do: "
       "Close the quote; a \\ in front of a quote takes its meaning away."},
  };
  for (const auto& one : cases)
  {
    const Outcome outcome = carryOut(one.commands);
    EXPECT_EQ(outcome.exitCode, 2) << one.commands;
    EXPECT_EQ(outcome.out, "") << one.commands;
    EXPECT_EQ(outcome.err, std::string("kyinventory: ") + one.message + "\n") << one.commands;
  }
}

TEST_F(Shell, whatIsNotThereGivesExitCode1)
{
  for (const char* const commands : {"get CPU/SIZE", "cd CPU/CPU", "cd BOARD/..", "cd NAME/..", "cd NAME", "ls BOARD",
                                     "set CPU/SIZE=1", "set CPU=1", "find COUNT"})
    EXPECT_EQ(carryOut(commands).exitCode, 1) << commands;
}

TEST_F(Shell, aUnitThatIsTooLongIsRefusedBeforeAnythingIsSet)
{
  const std::string unit(101, 'u');
  const Outcome outcome = carryOut("set CPU/SIZE=1 --create Int8 --unit " + unit);
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: set: The unit \"" + unit +
                             "\" is longer than the 100 bytes that a stored tree keeps. (0x1504006, changeParameter)\n"
                             "kyinventory: what to do: Choose a shorter unit.\n");
}

TEST_F(Shell, aBrokenScriptIsNotBegun)
{
  const Outcome outcome = carryOut("set NAME=b; save; \"");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(carryOut("get NAME").out, "rack 7\n");
}

TEST_F(Shell, setAndSaveChangeTheFile)
{
  const Outcome outcome = carryOut("set NAME=\"a b\" BOARD[2]/SIZE=0x10; set BOARD[2]/OFFSET=-0.25; get NAME; save");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "a b\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(carryOut("get NAME BOARD[2]/SIZE BOARD[2]/OFFSET").out, "a b\n16\n-0.25\n");
}

TEST_F(Shell, setOfSeveralIsDoneWhollyOrNotAtAll)
{
  write("commands", "set NAME=b BOARD[2]/VENDOR=x");
  Outcome outcome = runCommand(std::string(kyToolPath) + " shell " + m_file + " <" + path("commands"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err.find("the changes were not saved"), std::string::npos) << "there is nothing to save";
  outcome = carryOut("set NAME=b BOARD[2]/SIZE=5 --unit mm; diff; quit!");
  EXPECT_NE(outcome.out, "");
  EXPECT_EQ(carryOut("set NAME=b BOARD[2]/SIZE=many").exitCode, 2);
}

TEST_F(Shell, setTakesEqualSignsAndNothingAsValues)
{
  EXPECT_EQ(carryOut("set NAME=a=b; save").exitCode, 0);
  EXPECT_EQ(carryOut("get NAME").out, "a=b\n");
  EXPECT_EQ(carryOut("set NAME=; save").exitCode, 0);
  EXPECT_EQ(carryOut("get NAME").out, "\n");
}

TEST_F(Shell, setOfAWrongValueNamesTypeAndBoundsAndSavesNothing)
{
  const Outcome outcome = carryOut("set NAME=b; set BOARD[2]/SIZE=3000000000; save");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "kyinventory: BOARD[2]/SIZE: \"3000000000\" is not a value of type Int32, which takes whole numbers from "
            "-2147483648 to 2147483647. (0x1500803, setValueText)\n"
            "kyinventory: what to do: Give a value that the type takes.\nkyinventory: " +
                m_file + ": the changes were not saved\n");
  EXPECT_EQ(carryOut("get NAME").out, "rack 7\n");
}

TEST_F(Shell, setCreatesParametersOfATypeAndUnit)
{
  EXPECT_EQ(carryOut("cd BOARD[3]; set CPU[4]/FREQUENCY=66 --create uint16 --unit MHz; save").exitCode, 0);
  EXPECT_EQ(carryOut("ls BOARD[3]/CPU[4]").out, "FREQUENCY  UInt16   66 MHz\n");
}

TEST_F(Shell, changesThatAreNotSavedGiveExitCode1)
{
  Outcome outcome = carryOut("set NAME=b");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "kyinventory: " + m_file + ": the changes were not saved\n");
  outcome = carryOut("set NAME=b; quit");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "kyinventory: there are unsaved changes; save stores them, quit! drops them\nkyinventory: " +
                             m_file + ": the changes were not saved\n");
  EXPECT_EQ(carryOut("set NAME=b; exit").err, outcome.err);
  for (const char* const left : {"set NAME=b; quit!; dance", "set NAME=b; quit --force; dance", "quit; dance",
                                 "exit; dance", "set NAME=b; exit --force; dance"})
  {
    outcome = carryOut(left);
    EXPECT_EQ(outcome.exitCode, 0) << left;
    EXPECT_EQ(outcome.err, "") << left;
  }
  EXPECT_EQ(carryOut("get NAME").out, "rack 7\n");
}

TEST_F(Shell, readsItsCommandsFromAPipe)
{
  write("commands", "# a comment\ncd BOARD[2]\n\nget SIZE   # the size\nset SIZE=\"2\"\nsave");
  const Outcome outcome = run("shell " + m_file + " <" + path("commands") + " >" + path("printed") + " ; exit $? #");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(contentOf(path("printed")), "1\n");
  EXPECT_EQ(carryOut("get BOARD[2]/SIZE").out, "2\n");
}

TEST_F(Shell, answersEachCommandOfAPipeBeforeTheNextOneComes)
{
  write("talk",
        "mkfifo " + path("in") + " " + path("out") + "\n" + kyToolPath + " shell " + m_file + " <" + path("in") + " >" +
            path("out") + " 2>" + path("errors") + " &\n" + "exec 3>" + path("in") + " 4<" + path("out") +
            "\n"
            "echo 'get NAME' >&3; read -r first <&4\n"
            "printf 'cd BOARD[2]; get SIZE;' >&3; read -r second <&4\n"    // no line end is needed
            "printf ' set SI' >&3; printf 'ZE=\"2\"\\nget SIZE\\n' >&3; read -r third <&4\n"
            "echo \"$first,$second,$third\"\n"
            "echo 'save' >&3; exec 3>&-; cat <&4; wait $!; echo $?\n");
  const Outcome outcome = runCommand("timeout 60 sh " + path("talk"));
  EXPECT_EQ(outcome.out, "rack 7,1,2\n0\n");
  EXPECT_EQ(contentOf(path("errors")), "");
  EXPECT_EQ(carryOut("get BOARD[2]/SIZE").out, "2\n");
}

TEST_F(Shell, aPipeEndsAtTheFirstFailureAndKeepsNothing)
{
  const struct
  {
    const char* commands;
    int exitCode;
    std::string out;
    std::string err;
  } cases[] = {
      {"pwd\nset NAME=b\ndance\npwd\n", 2, "/\n",
       "kyinventory: dance: no such command; help lists them all\nkyinventory: " + m_file +
           ": the changes were not saved\n"},
      {"pwd\nset NAME=\"b\nsave\n", 2, "/\n",
       "kyinventory: shell: The quote \" is not closed. (0x1503000, splitCommands)\nkyinventory: what to do: Close the "
       "quote; a \\ in front of a quote takes its meaning away.\n"},
      {"set NAME=b", 1, "", "kyinventory: " + m_file + ": the changes were not saved\n"},
      {"pwd; quit\ndance\n", 0, "/\n", ""},
      {"", 0, "", ""},
  };
  for (const auto& one : cases)
  {
    write("commands", one.commands);
    const Outcome outcome = runCommand(std::string(kyToolPath) + " shell " + m_file + " <" + path("commands"));
    EXPECT_EQ(outcome.exitCode, one.exitCode) << one.commands;
    EXPECT_EQ(outcome.out, one.out) << one.commands;
    EXPECT_EQ(outcome.err, one.err) << one.commands;
  }
  EXPECT_EQ(carryOut("get NAME").out, "rack 7\n");
}

TEST_F(Shell, aTextInQuotesReachesOverLinesOfAPipe)
{
  write("commands", "set NAME='a;\n# b'\nget NAME\nquit!\n");
  EXPECT_EQ(runCommand(std::string(kyToolPath) + " shell " + m_file + " <" + path("commands")).out, "a;\n# b\n");
}

TEST_F(Shell, unreadableStandardInputGivesExitCode3)
{
  const Outcome outcome = runCommand(std::string(kyToolPath) + " shell " + m_file + " <" + path("."));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "kyinventory: standard input: Is a directory\n");
}

TEST_F(Shell, keepsTheImageAroundTheSection)
{
  write("image.bin", std::string(1000, 'x') + contentOf(m_file));
  EXPECT_EQ(run("shell " + path("image.bin") + " -c 'set NAME=b; save'").exitCode, 0);
  EXPECT_EQ(contentOf(path("image.bin")).substr(0, 1004), std::string(1000, 'x') + "INVE");
  EXPECT_EQ(run("shell " + path("image.bin") + " -c 'get NAME'").out, "b\n");
}

TEST_F(Shell, standardInputIsNoFileForIt)
{
  const Outcome outcome = run("shell - -c ls");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: standard input has no place to save to; name a file\n");
}

TEST_F(Shell, anUnreadableFileGivesExitCode3)
{
  write("plain.txt", "nothing");
  EXPECT_EQ(run("shell " + path("plain.txt") + " -c ls").exitCode, 3);
  const Outcome missing = run("shell " + path("missing") + " -c ls");
  EXPECT_EQ(missing.exitCode, 3);
  EXPECT_EQ(missing.err,
            "kyinventory: Cannot read " + path("missing") +
                ": No such file or directory. (0x1500000, readBytes)\n"
                "kyinventory: what to do: Check the path and the permissions; see what the system says.\n");
}

TEST_F(Shell, helpListsEveryCommand)
{
  const Outcome outcome = carryOut("help");
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* const command :
       {"cd", "ls", "get", "set", "find", "diff", "save", "pwd", "help", "quit", "quit!", "exit"})
    EXPECT_NE(("\n" + outcome.out).find(std::string("\n") + command), std::string::npos) << command;
}

TEST_F(Shell, findListsAddressesBelowTheCurrentItem)
{
  EXPECT_EQ(carryOut("find *").out, "NAME\track 7\t\nBOARD[2]\t\t\nBOARD[3]\t\t\nCPU\t\t\n");
  EXPECT_EQ(carryOut("find **/VOLTAGE_*").out, "BOARD[2]/VOLTAGE_MAX\t10.5\tV\n");
  EXPECT_EQ(carryOut("find **/VOLTAGE_*").out, run("find " + m_file + " '**/VOLTAGE_*'").out);
  EXPECT_EQ(carryOut("cd BOARD[2]; find **/V* --where \"VOLTAGE_MAX > 10\"").out, "VOLTAGE_MAX\t10.5\tV\n");
  EXPECT_EQ(carryOut("find .").out, ".\t\t\n");
  EXPECT_EQ(carryOut("cd BOARD[2]; find **").out, ".\t\t\nSIZE\t1\t\nOFFSET\t1.5\t\nVOLTAGE_MAX\t10.5\tV\nCPU\t\t\n");
  EXPECT_EQ(carryOut("find **/SLOT_COUNT").exitCode, 1);
  EXPECT_EQ(carryOut("find A[").exitCode, 2);
  EXPECT_EQ(carryOut("find * --where").exitCode, 2);
}

TEST_F(Shell, diffShowsWhatDiffersFromTheStoredTree)
{
  const Outcome outcome = carryOut("diff; set BOARD[2]/SIZE=2; set CPU/COUNT=1 --create Int8; diff; save; diff");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "~ BOARD[2]/SIZE  1 -> 2\n+ CPU/COUNT  Int8 1\n");
}

TEST_F(Shell, addressesAreCompletedForTheCommandLineShells)
{
  EXPECT_EQ(run("complete-address " + m_file + " B").out, "BOARD[2]\nBOARD[3]\n");
  EXPECT_EQ(run("complete-address " + m_file + " BOARD[2]").out,
            "BOARD[2]/CPU\nBOARD[2]/SIZE\nBOARD[2]/OFFSET\nBOARD[2]/VOLTAGE_MAX\n");
  EXPECT_EQ(run("complete-address '' VOLTAGE_UPPER_MA").out, "VOLTAGE_UPPER_MAX\n");
  const Outcome unreadable = run("complete-address " + path("missing") + " B");
  EXPECT_EQ(unreadable.out, "");
  EXPECT_EQ(unreadable.err, "");
}
}    // namespace
