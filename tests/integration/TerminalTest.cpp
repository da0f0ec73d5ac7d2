// What the tool does at a terminal: colour, the pager, progress, and control characters of stored texts.
#include <sys/stat.h>

#include <ctime>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "integration/KyTerminalTest.h"

namespace
{
unsigned int linesOf(const std::string& text)
{
  unsigned int lines = 0;
  for (const char c : text)
    lines += c == '\n';
  return lines;
}

TEST_F(ToolAtTerminal, outputHasColourThere)
{
  const std::string file = store("a.kyinv", "ROOT/BOARD[2]");
  KyTerminal terminal(tool("shell " + file + " -c ls"));
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output(), "\x1B[36mBOARD[2]\x1B[0m/\n");
}

TEST_F(ToolAtTerminal, outputHasNoColourElsewhereOrWhenItIsNotWanted)
{
  const std::string shell = tool("shell " + store("a.kyinv", "ROOT/BOARD[2]") + " -c ls");
  for (const std::string& command : {shell + " | cat", "NO_COLOR=1 " + shell, "TERM=dumb " + shell})
  {
    KyTerminal terminal(command);
    EXPECT_EQ(terminal.waitForEnd(), 0);
    EXPECT_EQ(terminal.output(), "BOARD[2]/\n") << command;
  }
  KyTerminal terminal("NO_COLOR= " + shell);
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output(), "\x1B[36mBOARD[2]\x1B[0m/\n") << "an empty NO_COLOR is none";
}

TEST_F(ToolAtTerminal, controlCharactersOfStoredTextsAreShownAndNotSent)
{
  const std::string file = store("a.kyinv", "ROOT NAME=\"a\\x1B[31mb\\x07\\xC2\\x9Bc\\td\\ne\"");
  KyTerminal shown(tool("show " + file + " NAME --plain --options 0xC0101"));
  EXPECT_EQ(shown.waitForEnd(), 0);
  EXPECT_EQ(shown.output(), "NAME String\na\\x1B[31mb\\x07\\xC2\\x9Bc\td\ne\n");
  KyTerminal got(tool("shell " + file + " -c 'get NAME'"));
  EXPECT_EQ(got.waitForEnd(), 0);
  EXPECT_EQ(got.output(), "a\\x1B[31mb\\x07\\xC2\\x9Bc\\x09d\\x0Ae\n");
  KyTerminal listed(tool("shell " + file + " -c ls"));
  EXPECT_EQ(listed.waitForEnd(), 0);
  EXPECT_EQ(listed.output(), "\x1B[36mNAME\x1B[0m  String   \"a\\x1B[31mb\\x07\\xC2\\x9Bc\\x09d\\x0Ae\"\n");
}

TEST_F(ToolAtTerminal, elsewhereStoredTextsAreWhatTheyAre)
{
  const std::string file = store("a.kyinv", "ROOT NAME=\"a\\x1B[31mb\"");
  EXPECT_EQ(run("show " + file + " NAME --plain --options 0xC0001").out, "NAME String\na\x1B[31mb\n");
  EXPECT_EQ(run("shell " + file + " -c 'get NAME'").out, "a\x1B[31mb\n");
}

TEST_F(ToolAtTerminal, fileNamesInMessagesCannotSteerTheTerminal)
{
  KyTerminal terminal(tool("show \"$(printf 'a\\033c')\""));
  EXPECT_EQ(terminal.waitForEnd(), 3);
  EXPECT_EQ(terminal.output(),
            "kyinventory: Cannot read a\\x1Bc: No such file or directory. (0x1500000, readBytes)\n"
            "kyinventory: what to do: Check the path and the permissions; see what the system says.\n");
}

TEST_F(ToolAtTerminal, argumentsInMessagesOfWrongUsageCannotSteerTheTerminal)
{
  KyTerminal terminal(tool("show a \"$(printf -- '--b\\033c')\""));
  EXPECT_EQ(terminal.waitForEnd(), 2);
  EXPECT_EQ(terminal.output().find('\x1B'), std::string::npos) << terminal.output();
}

TEST_F(ToolAtTerminal, outputOfMoreLinesThanTheTerminalGoesThroughThePager)
{
  const std::string show = tool("show " + storeLines(24) + s_lines);
  KyTerminal terminal("PAGER='sed s/^/paged:/' " + show);
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(linesOf(terminal.output()), 24u);
  EXPECT_EQ(terminal.output().substr(0, 18), "paged:1\npaged:2\npa");
}

TEST_F(ToolAtTerminal, outputThatFitsGoesThroughNoPager)
{
  const std::string show = tool("show " + storeLines(23) + s_lines);
  KyTerminal terminal("PAGER='sed s/^/paged:/' " + show);
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output().substr(0, 6), "1\n2\n3\n");
  EXPECT_EQ(linesOf(terminal.output()), 23u);
}

TEST_F(ToolAtTerminal, linesThatTheTerminalBreaksCountAsSeveral)
{
  const std::string file = store("a.kyinv", "ROOT NAME=\"" + std::string(400, 'x') + "\"");
  KyTerminal terminal("PAGER='sed s/^/paged:/' " + tool("shell " + file + " -c 'get NAME'"), 5, 80);
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output(), "paged:" + std::string(400, 'x') + "\n");
}

TEST_F(ToolAtTerminal, thePagerIsLeftOutOnRequest)
{
  const std::string file = storeLines(40);
  const std::string show = tool("show " + file + s_lines);
  const std::string mark = "PAGER='sed s/^/paged:/' ";
  for (const std::string& command :
       {mark + tool("--no-pager show " + file + s_lines), mark + tool("show --no-pager " + file + s_lines),
        mark + tool("show " + file + s_lines + " --no-pager"), "PAGER= " + show, "PAGER=cat " + show,
        mark + show + " | cat"})
  {
    KyTerminal terminal(command);
    EXPECT_EQ(terminal.waitForEnd(), 0);
    EXPECT_EQ(linesOf(terminal.output()), 40u) << command;
    EXPECT_EQ(terminal.output().substr(0, 6), "1\n2\n3\n") << command;
  }
}

TEST_F(ToolAtTerminal, aPagerThatIsNotThereIsNamedAndTheOutputIsPrinted)
{
  KyTerminal terminal("PAGER='no-such-pager -x' " + tool("show " + storeLines(40) + s_lines));
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output().find("kyinventory: the pager of PAGER is not there: no-such-pager -x\n1\n2\n"), 0u);
  EXPECT_EQ(linesOf(terminal.output()), 41u);
}

TEST_F(ToolAtTerminal, leavingThePagerEarlyIsNoFailure)
{
  KyTerminal terminal("PAGER='head -n 1' " + tool("show " + storeLines(20000)));
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output(), "<ITEM ID=\"ROOT\">\n");
}

TEST_F(ToolAtTerminal, thePagerIsLessWhenNoneIsNamed)
{
  if (std::system("command -v less >/dev/null") != 0) GTEST_SKIP() << "less is not here";
  KyTerminal terminal(tool("show " + storeLines(100) + s_lines));
  terminal.waitFor("23");
  terminal.waitFor(":");
  terminal.type("G");
  terminal.waitFor("100");
  terminal.waitFor("END");
  terminal.type("q");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ToolAtTerminal, theInterruptKeyIsThePagersAndTheToolWaitsForIt)
{
  KyTerminal terminal("exec env PAGER='trap : INT; echo paging; read answer </dev/tty; echo $answer; cat' " +
                      tool("show " + storeLines(100) + s_lines));
  terminal.waitFor("paging");
  terminal.type("\x03");
  terminal.waitFor("^C");
  terminal.type("on\n");
  terminal.waitFor("100\r\n");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(ToolAtTerminal, helpGoesThroughThePagerToo)
{
  KyTerminal terminal("PAGER='sed s/^/paged:/' " + tool("show --help"), 5);
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output().find("paged:Print the tree of a section file\n"), 0u);
}

// Work that takes as long as the test wants: reading from a pipe that it fills.
class SlowReading : public ToolAtTerminal
{
protected:
  void SetUp() override
  {
    m_bytes = storeSample("a.kyinv");
    ASSERT_EQ(::mkfifo(path("slow").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(path("slower").c_str(), 0600), 0);
  }

  void fill(const std::string& pipe) const { std::ofstream(path(pipe), std::ios::binary) << m_bytes; }

  std::string show(const std::string& pipe) const { return tool("show " + path(pipe) + " BOARD[2] --options 0x8"); }

  static constexpr const char* s_shown = "<ITEM ID=\"BOARD[2]\">\n</ITEM>\n";
  std::string m_bytes;
};

TEST_F(SlowReading, showsItsProgressAfterASecondAndTakesItAwayAgain)
{
  KyTerminal terminal(show("slow"));
  terminal.waitFor("reading " + path("slow") + " ... 1 s");
  terminal.waitFor("\rreading " + path("slow") + " ... 2 s");
  fill("slow");
  EXPECT_EQ(terminal.waitForEnd(), 0);
  const std::string output = terminal.output();
  const std::string erased(("reading " + path("slow") + " ... 2 s").size(), ' ');
  EXPECT_NE(output.find(erased + s_shown), std::string::npos) << output;
  EXPECT_EQ(output.substr(output.size() - std::string(s_shown).size()), s_shown);
}

TEST_F(SlowReading, commandsThatReadOtherwiseShowTheirProgressToo)
{
  KyTerminal checked(tool("check " + path("slow")));
  KyTerminal inspected(tool("inspect --json " + path("slower") + " | cat"));
  checked.waitFor("checking " + path("slow") + " ... 1 s");
  inspected.waitFor("inspecting " + path("slower") + " ... 1 s");
  fill("slow");
  fill("slower");
  EXPECT_EQ(checked.waitForEnd(), 0);
  EXPECT_EQ(inspected.waitForEnd(), 0);
  const std::string fine = " " + path("slow") + ": fine\n";
  EXPECT_EQ(checked.output().substr(checked.output().size() - fine.size()), fine) << checked.output();
  EXPECT_NE(inspected.output().find(" {"), std::string::npos) << inspected.output();
}

TEST_F(SlowReading, importShowsItsProgressAndTakesItAwayBeforeAMessage)
{
  KyTerminal terminal(tool("import " + path("slow") + " -o " + path("b.kyinv")));
  terminal.waitFor("importing " + path("slow") + " ... 1 s");
  std::ofstream(path("slow")) << "what";
  EXPECT_EQ(terminal.waitForEnd(), 3);
  const std::string message =
      " kyinventory: " + path("slow") +
      ": The text is of no format that can be imported: neither JSON, JSON lines nor mark-up. "
      "(0x1505003, importTree)\n"
      "kyinventory: what to do: Check that it is the right file; kyinventory export writes these "
      "formats.\n";
  const std::string output = terminal.output();
  EXPECT_NE(output.find(message), std::string::npos) << output;
}

TEST_F(SlowReading, showsNoProgressWhereNobodySeesIt)
{
  KyTerminal quiet(show("slow") + " 2>" + path("errors.txt"));
  KyTerminal watched(show("slower"));
  watched.waitFor("... 1 s");
  watched.waitFor("... 2 s");    // the quiet one has had its second, too
  fill("slow");
  fill("slower");
  EXPECT_EQ(quiet.waitForEnd(), 0);
  EXPECT_EQ(watched.waitForEnd(), 0);
  EXPECT_EQ(quiet.output(), s_shown);
  EXPECT_EQ(contentOf(path("errors.txt")), "");
}

TEST_F(SlowReading, progressThatIsLongerThanTheTerminalIsCut)
{
  KyTerminal terminal(show("slow"), 24, 20);
  terminal.waitFor("\rreading " + path("slow").substr(0, 3) + " ... 1 s");
  fill("slow");
  EXPECT_EQ(terminal.waitForEnd(), 0);
}

TEST_F(SlowReading, progressIsTakenAwayBeforeAMessage)
{
  KyTerminal terminal(show("slow"));
  terminal.waitFor("... 1 s");
  std::ofstream(path("slow")) << "nothing";
  EXPECT_EQ(terminal.waitForEnd(), 3);
  const std::string output = terminal.output();
  EXPECT_NE(output.find(" kyinventory: " + path("slow") + " holds no inventory section"), std::string::npos) << output;
}

TEST_F(ToolAtTerminal, quickWorkShowsNoProgress)
{
  storeSample("a.kyinv");
  KyTerminal terminal(tool("show " + path("a.kyinv") + " BOARD[2] --options 0x8"));
  EXPECT_EQ(terminal.waitForEnd(), 0);
  EXPECT_EQ(terminal.output(), "<ITEM ID=\"BOARD[2]\">\n</ITEM>\n");
}

#ifdef KY_HAVE_HOST
// The second of a day 13 hours and 37 minutes ahead of UTC.
long aheadOfUtc(std::time_t time) { return static_cast<long>((time + 13 * 3600 + 37 * 60) % 86400); }

TEST_F(ToolAtTerminal, watchAlignsItsLinesAndTellsTheLocalTime)
{
  const std::time_t before = std::time(nullptr);
  // Complaints about what this machine does not let us read are none of its lines.
  KyTerminal terminal("PAGER= TZ=AHEAD-13:37 " + tool("watch --initial --interval 0.05 --count 1 2>/dev/null"));
  EXPECT_EQ(terminal.waitForEnd(), 0);
  const std::time_t after = std::time(nullptr);

  const std::regex initial(R"((\d\d):(\d\d):(\d\d)\.\d{3}  (\S+ +)    ( *\S+)( \S+)?)");
  const std::regex change(R"(\d\d:\d\d:\d\d\.\d{3}  \S+ +\S+ -> +\S+( \S+)?)");
  std::set<std::size_t> endsOfValues;
  bool isTimerThere = false;
  unsigned int changes = 0;
  std::istringstream lines(terminal.output());
  for (std::string line; std::getline(lines, line);)
  {
    std::smatch parts;
    if (line.find(" -> ") != line.npos)
    {
      EXPECT_TRUE(std::regex_match(line, change)) << line;
      ++changes;
      continue;
    }
    ASSERT_TRUE(std::regex_match(line, parts, initial)) << line;
    const long shown = std::stol(parts[1]) * 3600 + std::stol(parts[2]) * 60 + std::stol(parts[3]);
    EXPECT_LE((shown - aheadOfUtc(before) + 86400) % 86400, after - before) << line;
    endsOfValues.insert(static_cast<std::size_t>(parts.position(5) + parts.length(5)));
    isTimerThere |= line.find("  OS_INFO/TIMER ") != line.npos;
  }
  EXPECT_EQ(endsOfValues.size(), 1u) << terminal.output();
  EXPECT_TRUE(isTimerThere) << terminal.output();
  EXPECT_GE(changes, 1u) << terminal.output();
}
#endif
}    // namespace
