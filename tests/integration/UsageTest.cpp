// What all sub-commands have in common: what they say of a wrong command line, standard input as a file, empty addresses,
// and files that may not be written to.
#include "integration/KyToolTest.h"

namespace
{
class Usage : public Tool
{
protected:
  void expectWrong(const std::string& arguments, const std::string& message, const std::string& help) const
  {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_EQ(outcome.err,
              "kyinventory: " + message + "\nkyinventory: what to do: See kyinventory " + help + "--help.\n");
  }

  // Runs the tool with a file as its standard input.
  Outcome runWithInput(const std::string& arguments, const std::string& input) const
  {
    const std::string exit = path("exit.txt");
    run(arguments + " <" + input + " >" + path("out.txt") + " 2>" + path("err.txt") + "; echo $? >" + exit + " #");
    return {std::atoi(contentOf(exit).c_str()), contentOf(path("out.txt")), contentOf(path("err.txt"))};
  }
};

const std::string s_noSuchAddress =
    "kyinventory: what to do: Correct the address; kyinventory find lists what is there. To set a "
    "parameter that is not there yet, use kyinventory set --create.\n";
}    // namespace

TEST_F(Usage, anUnknownCommandIsNamedWithTheNearest)
{
  expectWrong("shwo", "shwo is no command. Did you mean show?", "");
  expectWrong("--no-pager shwo a.kyinv NAME", "shwo is no command. Did you mean show?", "");
  expectWrong("anon a.kyinv", "anon is no command. Did you mean anonymize?", "");
  expectWrong("complete-adress", "complete-adress is no command.", "");    // hidden: for scripts of the tool's own
  expectWrong("dance", "dance is no command.", "");
  expectWrong("\"$(printf 'a\\033b')\"", "a\\x1Bb is no command.", "");
  expectWrong("--verison", "--verison is no option of kyinventory itself.", "");
  expectWrong("", "A subcommand is required", "");
}

TEST_F(Usage, whatIsWrongInACommandLineNamesTheCommandAndItsHelp)
{
  expectWrong("show", "show: FILE is required", "show ");
  expectWrong("show a.kyinv NAME SIZE", "show: The following argument was not expected: SIZE", "show ");
  expectWrong("show a.kyinv --depth x", "show: --depth: must be a whole number from 0 to 1000000000", "show ");
  expectWrong("set a.kyinv NAME=x --modifiable maybe", "set: --modifiable: maybe not in {yes,no}", "set ");
  expectWrong("set a.kyinv NAME=x --create Text",
              "set: --create: must be one of Int8, Int16, Int32, Long64, UInt8, UInt16, UInt32, ULong64, Float32, "
              "Float64, String, Version",
              "set ");
}

TEST_F(Usage, anEmptyOutputIsRefusedInTheSameWordsEverywhere)
{
  for (const std::string command : {"extract", "anonymize", "import", "export", "strip"})
    expectWrong(command + " a.kyinv -o ''", command + ": --output: must not be empty", command + " ");
}

TEST_F(Usage, anEmptyFileIsRefusedInTheSameWordsEverywhere)
{
  const std::vector<std::pair<std::string, std::string>> all = {
      {"show", "'' NAME"},      {"get", "'' NAME"},     {"set", "'' NAME=a"}, {"rm", "'' NAME"}, {"find", "'' NAME"},
      {"rename", "'' A B"},     {"merge", "a '' -o b"}, {"patch", "'' a"},    {"export", "''"},  {"import", "'' -o a"},
      {"anonymize", "'' -o a"}, {"check", "''"},        {"shell", "''"},      {"append", "a ''"}};
  for (const auto& [command, arguments] : all)
    expectWrong(command + " " + arguments, command + ": FILE: must not be empty", command + " ");
  for (const std::string command : {"strip ''", "extract '' -o a", "append '' a"})
  {
    const std::string name = command.substr(0, command.find(' '));
    expectWrong(command, name + ": IMAGE: must not be empty", name + " ");
  }
  expectWrong("diff '' b", "diff: A: must not be empty", "diff ");
  expectWrong("diff a ''", "diff: B: must not be empty", "diff ");
  expectWrong("patch a ''", "patch: DIFF: must not be empty", "patch ");
}

TEST_F(Usage, whatIsTakenForAnOptionGetsAHint)
{
  const auto expectHint = [this](const std::string& arguments, const std::string& message)
  {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(outcome.err, "kyinventory: " + message +
                               "--help. Put -- in front of a file or another argument that "
                               "begins with -.\n");
  };
  const std::string help = "\nkyinventory: what to do: See kyinventory ";
  expectHint("get -x.ky NAME", "get: ADDRESS is required" + help + "get ");
  expectHint("export -x.ky", "export: FILE is required" + help + "export ");
  expectHint("show a.kyinv --bogus", "show: The following argument was not expected: --bogus" + help + "show ");
  const std::string file = store("-x.ky", "ROOT SIZE=1");
  EXPECT_EQ(run("--version >/dev/null; cd " + m_folder.path() + "; " + kyToolPath + " get -- -x.ky SIZE").out, "1\n");
}

TEST_F(Usage, anEmptyAddressOrPatternIsRefused)
{
  const std::string empty = "must not be empty; \".\" is the root item";
  expectWrong("get missing ''", "get: ADDRESS: " + empty, "get ");
  expectWrong("get missing NAME ''", "get: ADDRESS: " + empty, "get ");
  expectWrong("show missing ''", "show: ADDRESS: " + empty, "show ");
  expectWrong("find missing ''", "find: PATTERN: " + empty, "find ");
  expectWrong("rm missing NAME ''", "rm: ADDRESS: " + empty, "rm ");
  expectWrong("rename missing '' BOARD", "rename: ADDRESS: " + empty, "rename ");
  expectWrong("rename missing BOARD ''", "rename: ID: must not be empty", "rename ");
  Outcome outcome = run("set missing =5");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: =5: the address " + empty + "\n");
  outcome = run("set missing ''");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: ADDRESS=VALUE: the address " + empty + "\n");
}

TEST_F(Usage, theRootItemHasADotForItsAddress)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"rack\"");
  EXPECT_EQ(run("get " + a + " .").out, "NAME\track\n");
  EXPECT_EQ(run("find " + a + " .").out, ".\t\t\n");
  EXPECT_EQ(run("show --options 0x8 " + a + " .").out, run("show --options 0x8 " + a).out);
}

TEST_F(Usage, showTellsWrongAddressesAsGetDoes)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD[2] SIZE=1; BOARD[3]");
  for (const std::string command : {"show ", "get "})
  {
    Outcome outcome = run(command + path("missing.kyinv") + " BORD");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.err,
              "kyinventory: BORD is not an inventory ID. Did you mean BOARD? (0x1500800, readAddress)\n"
              "kyinventory: what to do: Correct the name; kyinventory ids lists all of them.\n");
    outcome = run(command + path("missing.kyinv") + " BOARD//SIZE");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.err,
              "kyinventory: \"BOARD//SIZE\" is not an address: the name of an ID is expected at character 7. "
              "(0x1500801, readAddress)\n"
              "kyinventory: what to do: Write it like BOARD[2]/SERIAL_NUMBER.\n");
    outcome = run(command + a + " BOARD");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "kyinventory: " + a +
                               ": BOARD does not exist: the root item has no BOARD. Did you mean BOARD[2] or "
                               "BOARD[3]? (0x1504000, lookUp)\n" +
                               s_noSuchAddress);
  }
}

TEST_F(Usage, standardInputStandsForOneFileOnly)
{
  for (const std::string arguments : {"merge - - -o x", "merge a - -o x -", "anonymize - --key-file - -o x",
                                      "patch - -", "patch - - -o x", "append - -", "diff - -", "check a - -"
#ifdef KY_HAVE_HOST
                                      ,
                                      "scan --topology - --anonymize --key-file -"
#endif
       })
  {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_EQ(outcome.err, "kyinventory: standard input can stand for one file only\n") << arguments;
  }
}

TEST_F(Usage, standardInputIsNamedInReports)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"rack\"; BOARD");
  const std::string missing =
      "kyinventory: standard input: CPU does not exist: the root item has no CPU. (0x1504000, lookUp)\n" +
      s_noSuchAddress;
  for (const std::string arguments : {"get - CPU", "show - CPU", "rm - CPU -o -", "rename - CPU DEVICE -o -"})
  {
    const Outcome outcome = runWithInput(arguments, a);
    EXPECT_EQ(outcome.exitCode, 1) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_EQ(outcome.err, missing) << arguments;
  }
  EXPECT_EQ(runWithInput("set - BOARD=1 -o -", a).err,
            "kyinventory: standard input: BOARD names an item; only parameters have a value, a unit, a modifiable flag "
            "and a relevance. (0x1504005, changeParameter)\n"
            "kyinventory: what to do: Name a parameter.\n");
  write("key", "\n");
  const Outcome noKey = runWithInput("anonymize " + a + " --key-file - -o " + path("b.kyinv"), path("key"));
  EXPECT_EQ(noKey.exitCode, 3);
  EXPECT_EQ(noKey.err, "kyinventory: standard input: holds no key\n");
  for (const std::string arguments : {"get - NAME", "show -", "export -", "anonymize - -o -", "find - NAME",
                                      "merge - a.kyinv -o -", "diff - a.kyinv"})
  {
    const Outcome outcome = runWithInput(arguments, "/dev/null");
    EXPECT_EQ(outcome.exitCode, 3) << arguments;
    EXPECT_EQ(outcome.err.rfind("kyinventory: standard input holds no inventory section, neither at its end nor at its "
                                "start. (0x1500002, readTree)\n",
                                0),
              0u)
        << arguments << ": " << outcome.err;
  }
}

TEST_F(Usage, aFullStandardOutputIsNamed)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"rack\"");
  run("set " + a + " NAME=b -o - >/dev/full 2>" + path("err.txt") + " #");
  const std::string err = contentOf(path("err.txt"));
  EXPECT_EQ(
      err.rfind("kyinventory: Cannot write standard output: No space left on device. (0x1500003, writeBytes)\n", 0), 0u)
      << err;
}

TEST_F(Usage, aFileThatCannotBeReadIsToldWithTheReasonOfTheSystem)
{
  const std::string missing = path("missing.kyinv");
  const std::string expected = "kyinventory: Cannot read " + missing +
                               ": No such file or directory. (0x1500000, readBytes)\n"
                               "kyinventory: what to do: Check the path and the permissions; see what the system "
                               "says.\n";
  for (const std::string& arguments : {"show " + missing, "get " + missing + " NAME", "set " + missing + " NAME=x",
                                       "export " + missing, "strip " + missing, "find " + missing + " NAME"})
  {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 3) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_EQ(outcome.err, expected) << arguments;
  }
}

TEST_F(Usage, aShortFileNameIsNamedAlthoughItsLettersStandInTheReport)
{
  store("a", "ROOT NAME=\"rack\"");
  const std::string tool = std::string("cd ") + m_folder.path() + " && " + kyToolPath;
  const int status = std::system((tool + " get a CPU 2>err.txt").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(contentOf(path("err.txt")),
            "kyinventory: a: CPU does not exist: the root item has no CPU. (0x1504000, lookUp)\n" + s_noSuchAddress);
}

TEST_F(Usage, helpSaysWhereADashIsStandardInput)
{
  for (const std::string command : {"show", "export", "anonymize", "scan", "merge", "get", "diff", "patch", "check"})
    EXPECT_NE(run(command + " --help").out.find("- is standard input"), std::string::npos) << command;
}

TEST_F(Usage, aFileThatCannotBeWrittenIsNamedOnce)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"rack\"");
  std::filesystem::create_directory(path("folder"));
  const std::string tool = std::string("cd ") + m_folder.path() + " && " + kyToolPath;
  const int status = std::system((tool + " set a.kyinv NAME=b -o folder 2>err.txt").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 4);
  const std::string err = contentOf(path("err.txt"));
  EXPECT_EQ(err.substr(0, err.find('\n')), "kyinventory: Cannot write " +
                                               std::filesystem::canonical(path("folder")).string() +
                                               ": Is a directory. (0x1500003, writeBytes)");
}

#ifdef KY_HAVE_HOST
TEST_F(Usage, scanReadsTheTopologyFromStandardInput)
{
  const std::string topology = KY_SOURCE_DIR "/host/tests/data/small-machine.xml";
  ASSERT_EQ(run("scan --topology " + topology + " -o " + path("a.kyinv")).exitCode, 0);
  const Outcome outcome = runWithInput("scan --topology - -o " + path("b.kyinv"), topology);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err,
            "kyinventory: stored 22 items with 83 parameters in " + path("b.kyinv") + "; read back equal\n");
  EXPECT_EQ(contentOf(path("b.kyinv")), contentOf(path("a.kyinv")));
  run("scan --topology - -o - < " + topology + " | cat >" + path("c.kyinv") + " #");
  EXPECT_EQ(contentOf(path("c.kyinv")), contentOf(path("a.kyinv")));
}

TEST_F(Usage, scanNamesStandardInputWhenItIsNoTopology)
{
  const Outcome outcome = runWithInput("scan --topology -", "/dev/null");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: File standard input is not a hardware topology that hwloc can read. (0x1400003, "
            "scanTopologyStream)\n"
            "kyinventory: what to do: Write it with lstopo --of xml.\n");
}
#endif

// ---- files that may not be written to

namespace
{
class WriteProtected : public Tool
{
protected:
  void SetUp() override
  {
    m_file = store("a.kyinv", "ROOT NAME=\"rack\"; BOARD SIZE=1");
    m_section = store("b.kyinv", "ROOT NAME=\"other\"");
    ASSERT_EQ(::chmod(m_file.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(m_section.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(m_folder.path().c_str(), 0777), 0);
    if (::geteuid() != 0) return;
    // Nothing is write-protected for root.
    m_user = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    if (std::system((m_user + kyToolPath + " --version >/dev/null 2>&1").c_str()) != 0)
      GTEST_SKIP() << "root cannot run the tool as another user here";
  }

  Outcome runAsUser(const std::string& arguments) const
  {
    const std::string command =
        m_user + kyToolPath + " " + arguments + " >" + path("out.txt") + " 2>" + path("err.txt");
    const int status = std::system((command + " </dev/null").c_str());
    return {WEXITSTATUS(status), contentOf(path("out.txt")), contentOf(path("err.txt"))};
  }

  std::string m_user;
  std::string m_file;
  std::string m_section;
};
}    // namespace

TEST_F(WriteProtected, aFileIsNotChangedInPlace)
{
  const std::string before = contentOf(m_file);
  run("diff --json " + m_section + " " + m_section + " >" + path("d.json") + " #");
  for (const std::string& arguments : {"set " + m_file + " NAME=x", "rm " + m_file + " NAME",
                                       "rename " + m_file + " BOARD CPU", "patch " + m_file + " " + path("d.json"),
                                       "strip " + m_file, "append " + m_file + " " + m_section + " --replace"})
  {
    const Outcome outcome = runAsUser(arguments);
    EXPECT_EQ(outcome.exitCode, 4) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_EQ(outcome.err, "kyinventory: " + m_file + ": is write-protected; name a file with -o\n") << arguments;
    EXPECT_EQ(contentOf(m_file), before) << arguments;
  }
}

TEST_F(WriteProtected, aCopyIsMadeWhereTheOptionSays)
{
  const std::string before = contentOf(m_file);
  EXPECT_EQ(runAsUser("set " + m_file + " NAME=x -o " + path("c.kyinv")).exitCode, 0);
  EXPECT_EQ(difference("c.kyinv", "ROOT NAME=\"x\"; BOARD SIZE=1"), "");
  EXPECT_EQ(contentOf(m_file), before);
  EXPECT_EQ(runAsUser("patch --dry-run " + m_file + " /dev/null").exitCode, 3);    // writes nothing
}

TEST_F(WriteProtected, theShellDoesNotSaveIt)
{
  const std::string before = contentOf(m_file);
  const Outcome outcome = runAsUser("shell " + m_file + " -c 'set NAME=x; save'");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: " + m_file + ": is write-protected\nkyinventory: " + m_file +
                             ": the changes were not saved\n");
  EXPECT_EQ(contentOf(m_file), before);
}

TEST_F(WriteProtected, aFileThatMayNotEvenBeReadIsUnreadable)
{
  ASSERT_EQ(::chmod(m_file.c_str(), 0), 0);
  const Outcome outcome = runAsUser("set " + m_file + " NAME=x");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, "kyinventory: Cannot read " + m_file +
                             ": Permission denied. (0x1500000, readBytes)\n"
                             "kyinventory: what to do: Check the path and the permissions; see what the system "
                             "says.\n");
}
