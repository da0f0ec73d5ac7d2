// Standard output that is not what it should be: pipes that nobody reads, full disks, streams that are closed.
#include "integration/KyToolTest.h"

namespace
{
class Stream : public Tool
{
protected:
  // More than a pipe holds.
  std::string storeMany(const std::string& name) const
  {
    std::string text = "ROOT";
    for (unsigned int n = 1; n <= 4000; ++n)
      text += "\nROOT/BOARD[" + std::to_string(n) + "] SIZE=" + std::to_string(n);
    return store(name, text);
  }

  // Runs a shell text; $TOOL is the tool.
  Outcome shell(const std::string& text) const
  {
    const std::string script = m_folder.write("script", "TOOL=" + std::string(kyToolPath) + "\n" + text);
    const int status = std::system(("sh " + script + " >" + path("out") + " 2>" + path("err") + " </dev/null").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(path("out")), contentOf(path("err"))};
  }
};

TEST_F(Stream, aReaderThatIsGoneEndsTheToolQuietlyBySIGPIPE)
{
  const std::string file = storeMany("a.kyinv");
  for (const char* const setting : {"", "trap '' PIPE\n"})
  {
    const Outcome outcome =
        shell(setting + ("{ $TOOL show " + file + "; echo $? >" + path("code") + "; } | head -n 1"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "<ITEM ID=\"ROOT\">\n");
    EXPECT_EQ(outcome.err, "") << setting;
    EXPECT_EQ(contentOf(path("code")), "141\n") << setting;
  }
}

TEST_F(Stream, aFullDiskIsExitCode4WithItsReason)
{
  const std::string file = storeMany("a.kyinv");
  for (const std::string& command : {"show " + file, std::string("show --help"), std::string("--help"),
                                     std::string("--version"), "shell " + file + " -c ls"})
  {
    const Outcome outcome = shell("$TOOL " + command + " >/dev/full");
    EXPECT_EQ(outcome.exitCode, 4) << command;
    EXPECT_EQ(outcome.err, "kyinventory: standard output: No space left on device\n") << command;
  }
}

TEST_F(Stream, aClosedStandardOutputIsExitCode4AndNoFileTakesItsPlace)
{
  const std::string file = storeMany("a.kyinv");
  Outcome outcome = shell("$TOOL show " + file + " >&-");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: standard output: Bad file descriptor\n");
  outcome = shell("$TOOL shell " + file + " -c 'set BOARD[2]/SIZE=7; save; pwd' >&-");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(run("shell " + file + " -c 'get BOARD[2]/SIZE'").out, "7\n");
}

TEST_F(Stream, closedStandardInputAndErrorAreNoReasonToFail)
{
  const std::string file = store("a.kyinv", "ROOT");
  const Outcome outcome = shell("$TOOL show " + file + " <&- 2>&-");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "<ITEM ID=\"ROOT\">\n</ITEM>\n");
  EXPECT_EQ(shell("$TOOL show - <&-").exitCode, 3);
}

TEST_F(Stream, anEmptyNameForTheOutputIsWrongUsage)
{
  const std::string file = store("a.kyinv", "ROOT");
  const Outcome outcome = run("merge " + file + " " + file + " -o ''");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_NE(outcome.err.find("must not be empty"), std::string::npos);
}
// U+202E, U+2066 and U+009B, in the file and in its name.
TEST_F(Stream, jsonOfEveryCommandHasNoCharacterThatSteersATerminalOrTurnsALine)
{
  const std::string controls = "\xE2\x80\xAE\xE2\x81\xA6\xC2\x9B";
  const std::string unit = controls.substr(0, 6);
  const std::string name = "a" + controls;
  const std::string file =
      store(name, "ROOT/BOARD NAME String \"" + controls + "\" unit=\"" + unit + "\" description=\"" + controls +
                      "\"\nROOT/BOARD description=\"" + controls + "\"");
  const std::string other = store("b", "ROOT/BOARD NAME=\"b\"");
  for (const std::string& arguments :
       {"get " + file + " BOARD/NAME --json", "find " + file + " '**' --json", "diff " + file + " " + other + " --json",
        "check " + file + " --json", "inspect " + file + " --json", "inspect " + file + " --bytes --json",
        "export " + file + " --format json", "export " + file + " --format jsonl"})
  {
    const Outcome outcome = run(arguments);
    EXPECT_LE(outcome.exitCode, 1) << outcome.err;
    for (const std::string& one : {controls.substr(0, 3), controls.substr(3, 3), controls.substr(6)})
      EXPECT_EQ(outcome.out.find(one), std::string::npos) << arguments << "\n" << outcome.out;
    EXPECT_NE(outcome.out.find("\\u202e\\u2066"), std::string::npos) << arguments << "\n" << outcome.out;
  }
  const std::string json = path("a.json");
  EXPECT_EQ(run("export " + file + " -o " + json).exitCode, 0);
  EXPECT_EQ(run("import " + json + " -o " + path("again")).exitCode, 0);
  EXPECT_EQ(run("diff " + file + " " + path("again")).exitCode, 0) << "nothing is lost on the way";
}
}    // namespace
