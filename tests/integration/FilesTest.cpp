// How the sub-commands treat files: several at once, signals, limits, outputs that are inputs, terminals.
#include <fcntl.h>
#include <sys/file.h>

#include <csignal>
#include <random>

#include "integration/KyTerminalTest.h"

namespace
{
namespace fs = std::filesystem;

class Files : public ToolAtTerminal
{
protected:
  // Runs a shell script as the tool is run.
  Outcome runScript(const std::string& script) const { return run("--version >/dev/null; { " + script + "; }"); }

  unsigned int filesLike(const std::string& beginning) const
  {
    unsigned int count = 0;
    for (const auto& entry : fs::directory_iterator(m_folder.path()))
      count += entry.path().filename().string().rfind(beginning, 0) == 0;
    return count;
  }

  // Starts the tool and sends it a signal a little later.
  static void interrupt(const std::vector<std::string>& arguments, int number, unsigned int microseconds)
  {
    const pid_t process = ::fork();
    if (process == 0)
    {
      std::vector<char*> words = {const_cast<char*>(kyToolPath)};
      for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
      words.push_back(nullptr);
      ::execv(kyToolPath, words.data());
      ::_exit(127);
    }
    ::usleep(microseconds);
    ::kill(process, number);
    ::waitpid(process, nullptr, 0);
  }
};

TEST_F(Files, changesOfSeveralCommandsAtOnceAreAllKept)
{
  const std::string file = store("m.ky", "ROOT");
  const Outcome outcome = runScript("for i in 1 2 3 4 5 6 7 8; do " + tool("set " + file) +
                                    " BOARD[$i]/SIZE=$i --create UInt32 & done; wait");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(runScript(tool("get " + file) + " 'BOARD[1]/SIZE' 'BOARD[2]/SIZE' 'BOARD[3]/SIZE' 'BOARD[4]/SIZE' "
                                            "'BOARD[5]/SIZE' 'BOARD[6]/SIZE' 'BOARD[7]/SIZE' 'BOARD[8]/SIZE'")
                .out,
            "1\n2\n3\n4\n5\n6\n7\n8\n");
}

TEST_F(Files, commandsOfAllKindsWaitForEachOther)
{
  const std::string file = store("m.ky", "ROOT/BOARD[1] SIZE=1; BOARD[2] SIZE=2; BOARD[3] SIZE=3; CPU SIZE=1");
  store("before.ky", "ROOT/CPU SIZE=1");
  store("after.ky", "ROOT/CPU SIZE=7");
  fs::create_symlink("m.ky", path("link.ky"));
  const Outcome outcome =
      runScript(tool("diff --json " + path("before.ky") + " " + path("after.ky") + " >" + path("d.json")) + "; " +
                tool("rm " + file + " BOARD[1] & ") + tool("rename " + path("link.ky") + " BOARD[2] BOARD[5] & ") +
                tool("patch " + file + " " + path("d.json") + " & ") + tool("set " + file + " BOARD[3]/SIZE=4 & wait"));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(difference("m.ky", "ROOT/BOARD[5] SIZE=2; BOARD[3] SIZE=4; CPU SIZE=7"), "");
}

TEST_F(Files, patchLeavesTheFileToOthersUntilTheChangesHaveCome)
{
  const std::string file = store("m.ky", "ROOT/CPU SIZE=1");
  store("after.ky", "ROOT/CPU SIZE=7; BOARD[1] SIZE=1");
  const Outcome outcome = runScript("{ sleep 0.2; " + tool("set " + file + " 'BOARD[1]/SIZE=1' --create UInt32; ") +
                                    tool("diff --json " + file + " " + path("after.ky")) + "; } | timeout 50 " +
                                    tool("patch " + file + " -"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(run("get " + file + " CPU/SIZE 'BOARD[1]/SIZE'").out, "7\n1\n");
}

TEST_F(Files, whoeverWaitsForAFileIsTold)
{
  const std::string file = store("m.ky", "ROOT SIZE=1");
  const int holder = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(holder, LOCK_EX), 0);
  KyTerminal terminal(tool("set " + file + " SIZE=2"));
  terminal.waitFor("waiting for " + file + " ... 1 s");
  EXPECT_EQ(run("get " + file + " SIZE").out, "1\n") << "readers do not wait";
  ::close(holder);
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(run("get " + file + " SIZE").out, "2\n");
}

TEST_F(Files, signalsLeaveNoTemporaryFileBehind)
{
  const std::string file = store("m.ky", "ROOT SIZE=1");
  const std::string section = contentOf(file);
  write("m.ky", std::string(1 << 20, 'f') + section);
  std::mt19937 random(7);
  for (unsigned int n = 0; n < 60; ++n)
    interrupt({"set", file, "SIZE=" + std::to_string(n)}, std::vector<int>{SIGTERM, SIGINT, SIGHUP}[n % 3],
              static_cast<unsigned int>(2000 + random() % 20000));
  EXPECT_EQ(filesLike("m.ky"), 1u);
  EXPECT_EQ(run("get " + file + " SIZE").exitCode, 0);
}

TEST_F(Files, aLimitOfFileSizesIsReported)
{
  const std::string file = store("m.ky", "ROOT SIZE=1");
  const std::string bytes = std::string(100000, 'f') + contentOf(file);
  write("m.ky", bytes);
  Outcome outcome = runScript("ulimit -f 8; " + tool("set " + file + " SIZE=2"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: Cannot write " + file +
                             ": File too large. (0x1500003, writeBytes)\n"
                             "kyinventory: what to do: Check the folder, its permissions and the free space.\n");
  EXPECT_EQ(contentOf(file), bytes);
  EXPECT_EQ(filesLike("m.ky"), 1u);
  outcome = runScript("ulimit -f 8; " + tool("strip " + file + " -o - >" + path("copy")));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err,
            "kyinventory: Cannot write standard output: File too large. (0x1500003, writeBytes)\n"
            "kyinventory: what to do: Check the folder, its permissions and the free space.\n");
}

TEST_F(Files, whatIsBinaryIsNotSentToATerminal)
{
  const std::string file = store("m.ky", "ROOT NAME=\"a\"; BOARD[1] SIZE=1");
  store("other.ky", "ROOT/CPU");
  run("export " + file + " -o " + path("m.json"));
  const std::string other = path("other.ky");
  for (const std::string& arguments :
       {"set " + file + " NAME=b", "rm " + file + " BOARD[1]", "rename " + file + " BOARD[1] CPU",
        "patch " + file + " missing", "extract " + file, "import " + path("m.json"), "merge " + file + " " + other,
        "anonymize " + file, "append " + file + " " + other, "strip " + file})
  {
    KyTerminal terminal(tool(arguments + " -o -"));
    EXPECT_EQ(terminal.waitForEnd(), 2) << arguments;
    EXPECT_EQ(terminal.output(),
              "kyinventory: standard output is a terminal, and the result is binary; redirect it, or name a file with "
              "-o\n")
        << arguments;
  }
  KyTerminal text(tool("export " + file + " --format csv -o -"));
  EXPECT_EQ(text.waitForEnd(), 0);
  KyTerminal redirected(tool("extract " + file + " -o - | cat >" + path("copy.ky")));
  EXPECT_EQ(redirected.waitForEnd(), 0);
  EXPECT_EQ(contentOf(path("copy.ky")), contentOf(file));
}

TEST_F(Files, anInputIsNoOutputEvenWhenForced)
{
  const std::string file = store("m.ky", "ROOT/BOARD[1]");
  const std::string bytes = contentOf(file);
  store("other.ky", "ROOT/BOARD[2]");
  fs::create_symlink("m.ky", path("link.ky"));
  fs::create_hard_link(file, path("hard.ky"));
  write("key", "a long and secret key");
  for (const std::string& output : {file, path("link.ky"), path("hard.ky")})
    for (const std::string& arguments :
         {"export " + file, "import " + file, "import - <" + file, "anonymize " + file, "extract " + file,
          "merge " + file + " " + path("other.ky"), "merge " + path("other.ky") + " " + file,
          "anonymize " + path("other.ky") + " --key-file " + file})
      for (const std::string force : {"", " --force"})
      {
        const Outcome outcome = runScript(tool(arguments + " -o " + output + force));
        EXPECT_EQ(outcome.exitCode, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_EQ(outcome.err, "kyinventory: " + output + ": is an input as well; name another file with -o\n")
            << arguments;
      }
  EXPECT_EQ(contentOf(file), bytes);
}

#ifdef KY_HAVE_HOST
TEST_F(Files, aScanGoesToNoTerminalAndOverNoInput)
{
  KyTerminal terminal(tool("scan --topology missing -o -"));
  EXPECT_EQ(terminal.waitForEnd(), 2);
  write("rack.xml", "<topology/>");
  EXPECT_EQ(run("scan --topology " + path("rack.xml") + " --force -o " + path("rack.xml")).exitCode, 2);
  EXPECT_EQ(contentOf(path("rack.xml")), "<topology/>");
}
#endif

#ifndef KY_TOOL_NEEDS_MUCH_MEMORY
TEST_F(Files, tooLittleMemoryIsToldWithWhatToDo)
{
  write("large", "");
  fs::resize_file(path("large"), std::uintmax_t{1} << 30);
  const Outcome outcome = runScript("ulimit -v 300000; " + tool("strip " + path("large")));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err,
            "kyinventory: strip: out of memory\n"
            "kyinventory: what to do: Free memory, or take a smaller file.\n");
}
#endif

TEST_F(Files, theNullDeviceMayBeBoth) { EXPECT_EQ(run("import /dev/null -o /dev/null").exitCode, 3); }
}    // namespace
