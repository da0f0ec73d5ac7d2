// Sessions of `kyinventory shell` at a terminal: prompt, history, completion, and the ways out.
#include <fcntl.h>
#include <sys/file.h>

#include <vector>

#include "integration/KyTerminalTest.h"

namespace
{
namespace fs = std::filesystem;

class ShellAtTerminal : public ToolAtTerminal
{
protected:
  void SetUp() override
  {
    m_file = store("rack.kyinv", "ROOT/BOARD[2] SIZE=1 SLOT_COUNT=7; BOARD[2]/CPU; BOARD[3] NAME=\"b\"; CPU");
  }

  static void skipWithoutEditing()
  {
#ifndef KY_HAVE_EDITLINE
    GTEST_SKIP() << "libedit was not there when the tool was built";
#endif
  }

  // Without colour, so that the texts are easy to read.
  std::string shell() const { return "NO_COLOR=1 " + shellProgram(); }
  std::string shellProgram() const { return tool("shell " + m_file); }

  // With an editor of lines, where there is one, and without. The interrupt key reaches no shell in between.
  static std::vector<std::string> environments() { return {"exec env ", "exec env TERM=dumb "}; }

  std::string m_file;
};

TEST_F(ShellAtTerminal, asksForCommandsUntilItIsLeft)
{
  KyTerminal terminal(shell());
  terminal.waitFor("rack.kyinv:/> ");
  terminal.type("cd BOARD[2]\n");
  terminal.waitFor("rack.kyinv:/BOARD[2]> ");
  terminal.type("get SLOT_COUNT\n");
  terminal.waitFor("\n7\r\n");
  terminal.waitFor("> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ShellAtTerminal, goesOnAfterAFailure)
{
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("dance\n");
  terminal.waitFor("kyinventory: dance: no such command; help lists them all\r\n");
  terminal.waitFor("> ");
  terminal.type("set 'A\n");
  terminal.waitFor("kyinventory: shell: The quote ' is not closed. (0x1503000, splitCommands)\r\n");
  terminal.waitFor("> ");
  terminal.type("pwd\n");
  terminal.waitFor("\n/\r\n");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ShellAtTerminal, theArrowKeyBringsFormerCommandsBack)
{
  skipWithoutEditing();
  if (IsSkipped()) return;
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("get BOARD[2]/SLOT_COUNT\n");
  terminal.waitFor("\n7\r\n");
  terminal.waitFor("> ");
  terminal.type("pwd\n");
  terminal.waitFor("\n/\r\n");
  terminal.waitFor("> ");
  terminal.type("\x1B[A\x1B[A\n");
  terminal.waitFor("\n7\r\n");
  terminal.waitFor("> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ShellAtTerminal, theTabKeyCompletesCommandsAndAddresses)
{
  skipWithoutEditing();
  if (IsSkipped()) return;
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("g\t BOARD[2]/SL\t\n");
  terminal.waitFor("\n7\r\n");
  terminal.waitFor("> ");
  terminal.type("set BOARD[2]/SI\t=5; pw\t\n");
  terminal.waitFor("\n/\r\n");
  terminal.waitFor("rack.kyinv:/ *> ");
  terminal.type("cd ../BOARD[3\t\n");
  terminal.waitFor("rack.kyinv:/BOARD[3] *> ");
  terminal.type("get ../BOARD[2]/SI\t\n");
  terminal.waitFor("\n5\r\n");
  terminal.waitFor("> ");
  terminal.type("quit!\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ShellAtTerminal, theTabKeyListsWhatThereIsToChooseFrom)
{
  skipWithoutEditing();
  if (IsSkipped()) return;
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("ls BO\t");
  terminal.waitFor("ARD[");    // what both have in common
  terminal.type("\t");
  terminal.waitFor("\nBOARD[2]\r\nBOARD[3]\r\n");
  terminal.waitFor("> ls BOARD[");
  terminal.type("3]\n");
  terminal.waitFor("NAME  String   \"b\"\r\n");
  terminal.waitFor("> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ShellAtTerminal, quitAsksForADecisionAboutUnsavedChanges)
{
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("set BOARD[2]/SIZE=5\n");
  terminal.waitFor("rack.kyinv:/ *> ");
  terminal.type("quit\n");
  terminal.waitFor("kyinventory: there are unsaved changes; save stores them, quit! drops them\r\n");
  terminal.waitFor("rack.kyinv:/ *> ");
  terminal.type("save\n");
  terminal.waitFor("rack.kyinv:/> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(run("shell " + m_file + " -c 'get BOARD[2]/SIZE'").out, "5\n");
}

TEST_F(ShellAtTerminal, theEndOfInputLeaves)
{
  for (const std::string& environment : environments())
  {
    KyTerminal terminal(environment + shell());
    terminal.waitFor("> ");
    terminal.type("\x04");
    EXPECT_EQ(terminal.waitForEnd(), 0) << environment;
  }
}

TEST_F(ShellAtTerminal, theEndOfInputWarnsOnceOfUnsavedChangesAndThenLeaves)
{
  for (const std::string& environment : environments())
  {
    KyTerminal terminal(environment + shell());
    terminal.waitFor("> ");
    terminal.type("set BOARD[2]/SIZE=5\n");
    terminal.waitFor(" *> ");
    for (int n = 0; n < 2; ++n)    // a command in between takes the first one back
    {
      terminal.type("\x04");
      terminal.waitFor(
          "\nkyinventory: there are unsaved changes; save stores them, quit! or Ctrl-D once more drops them\r\n");
      terminal.waitFor(" *> ");
      terminal.type("get BOARD[2]/SIZE\n");
      terminal.waitFor("\n5\r\n");
      terminal.waitFor(" *> ");
    }
    terminal.type("\x04");
    terminal.waitFor("Ctrl-D once more drops them\r\n");
    terminal.waitFor(" *> ");
    terminal.type("\x04");
    terminal.waitFor("kyinventory: " + m_file + ": the changes were not saved\r\n");
    EXPECT_EQ(terminal.waitForEnd(), 1) << environment;
    EXPECT_EQ(run("shell " + m_file + " -c 'get BOARD[2]/SIZE'").out, "1\n");
  }
}

TEST_F(ShellAtTerminal, theInterruptKeyGivesUpTheLineAndNotTheSession)
{
  for (const std::string& environment : environments())
  {
    KyTerminal terminal(environment + shell());
    terminal.waitFor("> ");
    terminal.type("set BOARD[2]/SIZE=5\n");
    terminal.waitFor(" *> ");
    terminal.type("set BOARD[2]/SIZE=6");
    terminal.waitFor("SIZE=6");
    terminal.type("\x03");
    terminal.waitFor("^C");
    terminal.waitFor("\nrack.kyinv:/ *> ");
    for (int n = 0; n < 3; ++n)    // also where nothing is typed
    {
      terminal.type("\x03");
      terminal.waitFor("^C");
      terminal.waitFor("\nrack.kyinv:/ *> ");
    }
    terminal.type("get BOARD[2]/SIZE\n");
    terminal.waitFor("\n5\r\n");
    terminal.waitFor(" *> ");
    terminal.type("save\n");
    terminal.waitFor("rack.kyinv:/> ");
    terminal.type("quit\n");
    EXPECT_EQ(terminal.waitForEnd(), 0) << environment;
    EXPECT_EQ(run("shell " + m_file + " -c 'get BOARD[2]/SIZE; set BOARD[2]/SIZE=1; save'").out, "5\n");
  }
}

TEST_F(ShellAtTerminal, anInterruptFromElsewhereDoesNotEndTheSession)
{
  for (const std::string& environment : environments())
  {
    KyTerminal terminal(environment + "NO_COLOR=1 sh -c 'echo $$ >" + path("pid") + "; exec " + shellProgram() + "'");
    terminal.waitFor("> ");
    terminal.type("set BOARD[2]/SIZE=5\n");
    terminal.waitFor(" *> ");
    for (int n = 0; n < 3; ++n)
      EXPECT_EQ(std::system(("kill -INT $(cat " + path("pid") + ")").c_str()), 0);
    terminal.type("pwd\n");
    terminal.waitFor("/\r\n");    // behind a prompt perhaps, where the last interrupt came late
    terminal.waitFor(" *> ");
    terminal.type("quit!\n");
    EXPECT_EQ(terminal.waitForEnd(), 0) << environment;
  }
}

TEST_F(ShellAtTerminal, longOutputGoesThroughThePagerAndTheSessionGoesOn)
{
  KyTerminal terminal("NO_COLOR=1 PAGER='sed s/^/paged:/' " + tool("shell " + storeLines(40)));
  terminal.waitFor("> ");
  terminal.type("ls\n");
  terminal.waitFor("paged:BOARD/\r\n");
  terminal.waitFor("paged:BOARD[40]/\r\n");
  terminal.waitFor("> ");
  terminal.type("pwd\n");
  terminal.waitFor("\n/\r\n");
  terminal.waitFor("> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ShellAtTerminal, saveDoesNotWriteOverWhatSomeoneElseHasStored)
{
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("set BOARD[2]/SIZE=5\n");
  terminal.waitFor(" *> ");
  store("rack.kyinv", "ROOT/BOARD[2] SIZE=9");
  terminal.type("save\n");
  terminal.waitFor("kyinventory: " + m_file +
                   " has been changed by someone else since it was read. (0x1503005, save)\r\n");
  terminal.waitFor(" *> ");
  EXPECT_EQ(run("shell " + m_file + " -c 'get BOARD[2]/SIZE'").out, "9\n");
  terminal.type("save --force\n");
  terminal.waitFor("rack.kyinv:/> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(run("shell " + m_file + " -c 'get BOARD[2]/SIZE'").out, "5\n");
}

TEST_F(ShellAtTerminal, saveWaitsForWhoeverChangesTheFileAndKeepsTheirChange)
{
  const int other = ::open(m_file.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(other, LOCK_EX), 0);
  KyTerminal terminal(shell());
  terminal.waitFor("> ");
  terminal.type("set BOARD[2]/SIZE=5; save\n");
  terminal.waitFor("waiting for " + m_file + " ... 1 s");
  store("rack.kyinv", "ROOT/BOARD[2] SIZE=9");
  ::close(other);
  terminal.waitFor("kyinventory: " + m_file +
                   " has been changed by someone else since it was read. (0x1503005, save)\r\n");
  terminal.waitFor("> ");
  EXPECT_EQ(difference("rack.kyinv", "ROOT/BOARD[2] SIZE=9"), "");
  const int next = ::open(m_file.c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(::flock(next, LOCK_EX | LOCK_NB), 0) << "not locked any longer";
  ::close(next);
  terminal.type("save --force; quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(run("get " + m_file + " BOARD[2]/SIZE").out, "5\n");
}

TEST_F(ShellAtTerminal, theNameOfTheFileCannotSteerTheTerminal)
{
  fs::copy_file(m_file, path("a\x1B[31mb"));
  KyTerminal terminal("NO_COLOR=1 " + tool("shell \"" + path("a\x1B[31mb") + "\""));
  terminal.waitFor("a\\x1B[31mb:/> ");
  terminal.type("quit\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}
}    // namespace
