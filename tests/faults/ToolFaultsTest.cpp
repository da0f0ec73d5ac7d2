// ToolFaultsTest.cpp: the command-line tool while allocations and writing calls fail, and while it is killed. What it is run
// with stands in KyFaultyCalls.cpp. CI takes some of the allocations of each command; KY_FAULTS=all takes every one.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "inventory/KyInventoryTree.h"
#include "inventorykit/KyInventoryKit.h"
#include "support/KyFiles.h"
#include "support/KySampleTree.h"

namespace
{
using Words = std::vector<std::string>;
using Files = std::map<std::string, std::string>;    // content by name

struct Command
{
  const char* name;
  Words words;             // "@name" stands for a file in the folder
  const char* target;      // the file that it changes or makes; null: none
  bool isSteady = true;    // prints the same in every run

  // As part of a test's name.
  friend void PrintTo(const Command& command, std::ostream* out)
  {
    for (const char* c = command.name; *c != '\0'; ++c)
      *out << (std::isalnum(static_cast<unsigned char>(*c)) != 0 ? *c : '_');
  }
};

// Every sub-command; those that write, each in the way it writes.
const Command s_commands[] = {
    {"show", {"show", "@a"}, nullptr},
    {"show --plain --shared", {"show", "--plain", "--shared", "@a"}, nullptr},
    {"get", {"get", "--all", "@a", "BOARD"}, nullptr},
    {"find", {"find", "@a", "**", "--where", "VALUE ~ \"fast\" or SIZE > 3"}, nullptr},
    {"find --json", {"find", "--json", "@a", "BOARD/**"}, nullptr},
    {"diff", {"diff", "@a", "@b"}, nullptr},
    {"diff --json", {"diff", "--json", "@a", "@b"}, nullptr},
    {"check", {"check", "@a"}, nullptr},
    {"check --json", {"check", "--json", "@a", "@b"}, nullptr},
    {"inspect", {"inspect", "@a"}, nullptr},
    {"inspect --json", {"inspect", "--json", "@a"}, nullptr},
    {"inspect --bytes", {"inspect", "--bytes", "@a"}, nullptr},
    {"ids", {"ids", "BOARD*"}, nullptr},
    {"explain", {"explain", "0x1300801"}, nullptr},
    {"export to standard output", {"export", "--format", "jsonl", "@a"}, nullptr},
    {"--help", {"set", "--help"}, nullptr},
    {"complete-address", {"complete-address", "@a", "BOARD/"}, nullptr},
    {"set", {"set", "@a", "BOARD/SIZE=7"}, "a"},
    {"set -o", {"set", "@a", "BOARD/SIZE=7", "-o", "@new"}, "new"},
    {"rm", {"rm", "@a", "BOARD[2]"}, "a"},
    {"rename", {"rename", "@a", "BOARD[2]", "BOARD[9]"}, "a"},
    {"merge", {"merge", "@a", "@b", "-o", "@new"}, "new"},
    {"patch", {"patch", "@a", "@patch"}, "a"},
    {"export", {"export", "@a", "--format", "csv", "-o", "@old", "--force"}, "old"},
    {"import", {"import", "@json", "-o", "@old", "--force"}, "old"},
#ifdef KY_HAVE_PUGIXML
    {"import of mark-up", {"import", "@markup", "-o", "@new"}, "new"},
#endif
    {"anonymize", {"anonymize", "@a", "--key", "abc", "-o", "@new"}, "new"},
    {"append", {"append", "@image", "@a"}, "image"},
    {"append --at start", {"append", "--at", "start", "@image", "@a"}, "image"},
    {"extract", {"extract", "@a", "-o", "@old", "--force"}, "old"},
    {"strip", {"strip", "@imageWithSection"}, "imageWithSection"},
    {"shell", {"shell", "@a", "-c", "set BOARD/SIZE=9; save"}, "a"},
#ifdef KY_HAVE_HOST
    {"scan", {"scan", "--topology", KY_SOURCE_DIR "/host/tests/data/small-machine.xml", "-o", "@new"}, "new"},
    {"scan --anonymize",
     {"scan", "--topology", KY_SOURCE_DIR "/host/tests/data/small-machine.xml", "--anonymize", "--key", "abc"},
     nullptr},
    {"watch", {"watch", "--count", "1", "--interval", "0.01", "--initial"}, nullptr, false},
#endif
};

struct Outcome
{
  int exitCode = -1;
  int signal = 0;
  std::string out;
  std::string err;
  Files files;           // without those that the tool is not given to change
  bool isHit = false;    // the fault has happened
};

bool isAllWanted()
{
  const char* const wish = std::getenv("KY_FAULTS");
  return wish != nullptr && std::strcmp(wish, "all") == 0;
}

std::string sectionOf(const char* text)
{
  KyCErrorListPool pool;
  KySampleTree sample(text);
  return KyNInventoryKit::sectionOf(pool, sample.root());
}

// The files that commands find in their folder.
const Files& givenFiles()
{
  static const Files files = []
  {
    const std::string a = sectionOf(
        "ROOT/BOARD SIZE=4 NAME=\"I/O <fast>\" VERSION:Version=1.2.3.4 SERIAL_NUMBER=\"4711-0815-4711\"; "
        "BOARD[2]/IOCHANNEL "
        "VOLTAGE_MAX=10.5; BOARD[2]/IOCHANNEL[2] VOLTAGE_MAX=5.5");
    const std::string b = sectionOf("ROOT/BOARD SIZE=5 NAME=\"I/O <fast>\"; BOARD[3]/IOCHANNEL VOLTAGE_MAX=1.5");
    KyCErrorListPool pool;
    const auto treeA = KyNInventoryKit::readTreeFromBytes(pool, a, "a");
    const auto treeB = KyNInventoryKit::readTreeFromBytes(pool, b, "b");
    std::string json;
    std::string markup;
    KyNInventoryKit::exportTree(pool, *treeA, KyNInventoryKit::Format::JSON, json);
    KyNInventoryKit::exportTree(pool, *treeA, KyNInventoryKit::Format::MARKUP, markup);
    const std::string patch = KyNInventoryKit::differenceToJson(KyNInventoryKit::compareTrees(*treeA, *treeB));
    return Files{{"a", a},
                 {"b", b},
                 {"json", json},
                 {"markup", markup},
                 {"patch", patch},
                 {"old", "old\n"},
                 {"image", std::string(3000, 'x')},
                 {"imageWithSection", std::string(3000, 'x') + a}};
  }();
  return files;
}

class ToolFaults : public ::testing::Test
{
protected:
  // Runs a command in a fresh folder with these variables.
  Outcome run(const Command& command, const Words& variables) { return run(command, variables, givenFiles()); }

  Outcome run(const Command& command, const Words& variables, const Files& files)
  {
    const std::string folder = m_folder.path("work");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    for (const auto& [name, content] : files)
      m_folder.write("work/" + name, content);
    std::filesystem::remove_all(m_folder.path("mark"));
    Outcome outcome = start(command, variables);
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      outcome.files[entry.path().filename()] = contentOf(entry.path());
    outcome.isHit = std::filesystem::exists(m_folder.path("mark"));
    return outcome;
  }

  Outcome start(const Command& command, const Words& variables)
  {
    Words words = {KY_TOOL};
    for (const std::string& word : command.words)
      words.push_back(word[0] == '@' ? m_folder.path("work/" + word.substr(1)) : word);
    Words environment = variables;
    environment.push_back("KY_FAULT_MARK=" + m_folder.path("mark"));
    environment.push_back("PATH=/usr/bin:/bin");
    if (!variables.empty()) environment.push_back("LD_PRELOAD=" KY_FAULTY_CALLS);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (m_pipe >= 0)
      posix_spawn_file_actions_adddup2(&actions, m_pipe, 1);
    else
      posix_spawn_file_actions_addopen(&actions, 1, m_out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, m_err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t child = 0;
    const int error =
        ::posix_spawn(&child, KY_TOOL, &actions, nullptr, pointersTo(words).data(), pointersTo(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    Outcome outcome;
    EXPECT_EQ(error, 0);
    if (error != 0) return outcome;
    int status = 0;
    ::waitpid(child, &status, 0);
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    if (m_pipe < 0 && m_out.rfind("/dev/", 0) != 0) outcome.out = contentOf(m_out);
    outcome.err = contentOf(m_err);
    return outcome;
  }

  static std::vector<char*> pointersTo(Words& words)
  {
    std::vector<char*> pointers;
    for (std::string& word : words)
      pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
  }

  // Every file is as it was given, but the target, which may also be new and whole; nothing else is there.
  static void expectWhole(const Command& command, const Outcome& outcome, const Files& whole)
  {
    const Files& given = givenFiles();
    for (const auto& [name, content] : outcome.files)
    {
      const bool isTarget = command.target != nullptr && name == command.target;
      const auto old = given.find(name);
      const bool isOld = old != given.end() && content == old->second;
      EXPECT_TRUE(isOld || (isTarget && content == whole.at(name))) << name << " of " << content.size() << " bytes";
    }
    for (const auto& [name, content] : given)
      EXPECT_EQ(outcome.files.count(name), 1u) << name << " is gone";
  }

  KyTemporaryFolder m_folder;
  int m_pipe = -1;    // standard output, in place of m_out
  std::string m_out = m_folder.path("stdout.txt");
  std::string m_err = m_folder.path("stderr.txt");
};

bool isSameOutput(const Command& command, const Outcome& a, const Outcome& b)
{
  return !command.isSteady || a.out == b.out;
}

std::string traceOf(const Command& command, const std::string& fault)
{
  return std::string("kyinventory ") + command.name + ", " + fault;
}

// In CI, those commands that write in ways of their own stand for the others.
bool isLeftOut(const Command& command)
{
  const char* const taken[] = {"show", "set", "merge", "export", "append", "shell"};
  return !isAllWanted() && std::none_of(std::begin(taken), std::end(taken),
                                        [&](const char* name) { return std::strcmp(name, command.name) == 0; });
}
}    // namespace

// Whether it fails once or with all behind it: no signal, no half result. It is done as if nothing had failed, or ends with
// exit code 3 or 4 and tells why.
class ToolWithoutMemory : public ToolFaults, public testing::WithParamInterface<Command>
{
protected:
  // False when the command makes fewer allocations.
  bool failAt(const Command& command, const Outcome& whole, unsigned int n, const char* end)
  {
    const std::string fault = "KY_FAIL_ALLOCATION=" + std::to_string(n) + end;
    SCOPED_TRACE(traceOf(command, fault));
    const Outcome outcome = run(command, {fault});
    if (!outcome.isHit) return false;
    EXPECT_EQ(outcome.signal, 0);
    const bool isDone =
        outcome.exitCode == whole.exitCode && isSameOutput(command, outcome, whole) && outcome.files == whole.files;
    if (!isDone && outcome.exitCode == 0 && std::strncmp(command.name, "scan", 4) == 0)
      return isWholeTree(command, outcome);
    // The C library's stream that could not be had once is had when the reason is looked for; hwloc gives no reason.
    const char* const reasons[] = {"emory", "Cannot open file", "Cannot copy subtree", "that hwloc can read"};
    const bool isReason =
        std::any_of(std::begin(reasons), std::end(reasons),
                    [&](const char* reason) { return outcome.err.find(reason) != std::string::npos; });
    // The parser makes the text of a help in streams of its own, which are cut in silence.
    const bool isCutHelp = std::strcmp(command.name, "--help") == 0 && outcome.exitCode == 0;
    const bool isTold = (outcome.exitCode == 3 || outcome.exitCode == 4) && isReason;
    // What completions ask for says nothing but what they can use.
    const bool isSilent = std::strcmp(command.name, "complete-address") == 0 && outcome.exitCode == 3;
    EXPECT_TRUE(isDone || isTold || isCutHelp || isSilent) << "exit code " << outcome.exitCode << "\n" << outcome.err;
    expectWhole(command, outcome, whole.files);
    return !HasFailure();
  }

  // hwloc leaves out what it has no memory for, and says nothing; of what it gives, nothing is lost.
  static bool isWholeTree(const Command& command, const Outcome& outcome)
  {
    KyCErrorListPool pool;
    const std::string end = "</ITEM>\n";
    if (command.target != nullptr)
      EXPECT_NE(KyNInventoryKit::readTreeFromBytes(pool, outcome.files.at(command.target), "new"), nullptr);
    else
      EXPECT_EQ(outcome.out.substr(outcome.out.size() - std::min(outcome.out.size(), end.size())), end);
    return !HasFailure();
  }

  bool makes(const Command& command, unsigned int allocations)
  {
    return run(command, {"KY_FAIL_ALLOCATION=" + std::to_string(allocations)}).isHit;
  }

  // The allocations that all commands have in front: those of reading the options, but for some of the last.
  unsigned int commonAllocations()
  {
    const Command none = {"--version", {"--version"}, nullptr};
    constexpr unsigned int margin = 300;
    unsigned int made = 0;
    unsigned int notMade = 1u << 20;
    while (notMade - made > 1)
    {
      const unsigned int middle = made + (notMade - made) / 2;
      (makes(none, middle) ? made : notMade) = middle;
    }
    return made > margin ? made - margin : 0;
  }
};

TEST_P(ToolWithoutMemory, isDoneOrTellsWhy)
{
  const Command& command = GetParam();
  const unsigned int common = commonAllocations();
  ASSERT_GT(common, 0u);
  unsigned int runs = 0;
  const bool isFirst = std::strcmp(command.name, s_commands[0].name) == 0;
  const Outcome whole = run(command, {});
  for (const char* end : {"", "+"})
  {
    // In CI, ever larger steps; what is common is tried with the first command.
    unsigned int step = 1;
    for (unsigned int n = isFirst ? 1 : common; failAt(command, whole, n, end); n += step)
    {
      ++runs;
      if (!isAllWanted()) step *= 2;
    }
    if (HasFailure()) return;
  }
  std::printf("%u runs; %u allocations are common to all commands\n", runs, common);
}

// And what is no command, but not watch: that has hwloc look at the running machine, in its own process, and hwloc ends that
// without memory (KyNInventoryHost.h); faults_host tries what comes behind it.
std::vector<Command> commandsWithoutWatch()
{
  std::vector<Command> commands = {{"no command", {"what-is-no-command"}, nullptr}};
  for (const Command& command : s_commands)
    if (std::strcmp(command.name, "watch") != 0) commands.push_back(command);
  return commands;
}

INSTANTIATE_TEST_SUITE_P(Commands, ToolWithoutMemory, testing::ValuesIn(commandsWithoutWatch()),
                         testing::PrintToStringParamName());

TEST_F(ToolFaults, killedAtAnyCallTheTargetIsTheOldOneOrTheNewOneAndTheCommandCanBeRunAgain)
{
  unsigned int runs = 0;
  for (const Command& command : s_commands)
  {
    if (command.target == nullptr || isLeftOut(command)) continue;
    const Outcome whole = run(command, {});
    ASSERT_EQ(whole.exitCode, 0) << command.name << "\n" << whole.err;
    for (const char* when : {"before", "amid", "after"})
    {
      for (unsigned int n = 1;; ++n)
      {
        const std::string fault = "KY_KILL_CALL=" + std::to_string(n) + ":" + when;
        SCOPED_TRACE(traceOf(command, fault));
        Outcome outcome = run(command, {fault});
        if (!outcome.isHit) break;
        ++runs;
        // A topology is tried out in a process of its own first: scan tells of that one's end.
        EXPECT_TRUE(outcome.signal == SIGKILL || outcome.exitCode == 3);
        const Files left = outcome.files;
        const std::string temporary = std::string(command.target) + ".";
        for (auto file = outcome.files.begin(); file != outcome.files.end();)
          file = file->first.rfind(temporary, 0) == 0 ? outcome.files.erase(file) : std::next(file);
        expectWhole(command, outcome, whole.files);
        // Again, with what was left behind; where the target is done already, there is another result.
        const auto target = left.find(command.target);
        const bool isNew = target != left.end() && target->second == whole.files.at(command.target);
        const Outcome again = run(command, {}, left);
        if (!isNew)
        {
          EXPECT_EQ(again.exitCode, 0) << again.err;
          EXPECT_TRUE(again.files.at(command.target) == whole.files.at(command.target));
        }
        EXPECT_EQ(again.signal, 0);
        if (HasFailure()) return;
      }
    }
  }
  std::printf("%u runs\n", runs);
}

TEST_F(ToolFaults, whateverCallFailsTheTargetIsTheOldOneOrTheNewOneAndNothingStaysBeside)
{
  unsigned int runs = 0;
  for (const Command& command : s_commands)
  {
    if (command.target == nullptr || isLeftOut(command)) continue;
    const Outcome whole = run(command, {});
    for (const int error : {ENOSPC, EIO})
    {
      for (unsigned int n = 1;; ++n)
      {
        const std::string fault = "KY_FAIL_CALL=" + std::to_string(n) + ":" + std::to_string(error);
        SCOPED_TRACE(traceOf(command, fault));
        const Outcome outcome = run(command, {fault});
        if (!outcome.isHit) break;
        ++runs;
        const bool isDone = outcome.exitCode == 0 && outcome.files == whole.files;    // the folder could not be flushed
        const bool isReason = outcome.err.find(std::strerror(error)) != std::string::npos;
        // What scan hands to hwloc is written as well.
        const bool isTold = outcome.exitCode == 4 ? isReason : outcome.exitCode == 3 && !outcome.err.empty();
        EXPECT_TRUE(isDone || isTold) << "exit code " << outcome.exitCode << "\n" << outcome.err;
        expectWhole(command, outcome, whole.files);
        if (HasFailure()) return;
      }
    }
  }
  std::printf("%u runs\n", runs);
}

TEST_F(ToolFaults, aWriteThatFallsShortIsGoneOnWith)
{
  for (const Command& command : s_commands)
  {
    if (isLeftOut(command)) continue;
    const Outcome whole = run(command, {});
    for (unsigned int n = 1;; ++n)
    {
      const std::string fault = "KY_SHORT_WRITE=" + std::to_string(n);
      SCOPED_TRACE(traceOf(command, fault));
      const Outcome outcome = run(command, {fault});
      if (!outcome.isHit) break;
      EXPECT_EQ(outcome.exitCode, whole.exitCode);
      EXPECT_TRUE(isSameOutput(command, outcome, whole) && outcome.files == whole.files);
      if (HasFailure()) return;
    }
  }
}

TEST_F(ToolFaults, onAFullDiskStandardOutputIsExitCode4)
{
  m_out = "/dev/full";
  for (const Command& command : s_commands)
  {
    SCOPED_TRACE(command.name);
    if (command.target != nullptr) continue;    // writes a file, and little else
    const Outcome outcome = run(command, {});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_NE(outcome.err.find("standard output: No space left on device"), std::string::npos) << outcome.err;
  }
}

TEST_F(ToolFaults, aFileThatMayNotGrowLeavesTheOldOne)
{
  for (const Command& command : s_commands)
  {
    if (command.target == nullptr) continue;
    SCOPED_TRACE(command.name);
    struct rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const Files files = givenFiles();
    const std::string folder = m_folder.path("work");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    for (const auto& [name, content] : files)
      m_folder.write("work/" + name, content);
    const struct rlimit none = {40, before.rlim_max};    // bytes; a message has more, and is cut
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &none);
    const Outcome outcome = start(command, {});
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(outcome.exitCode, 4);
    Files left;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      left[entry.path().filename()] = contentOf(entry.path());
    EXPECT_TRUE(left == files);
  }
}

// Root may write everywhere: the tool runs as another user then.
TEST_F(ToolFaults, aFolderWithoutPermissionLeavesTheOldFile)
{
  const bool isRoot = ::geteuid() == 0;
  if (isRoot && std::system("setpriv --reuid=65534 --regid=65534 --clear-groups true 2>/dev/null") != 0)
    GTEST_SKIP() << "root may write everywhere, and there is no setpriv to be another user";
  for (const Command& command : s_commands)
  {
    if (command.target == nullptr) continue;
    SCOPED_TRACE(command.name);
    const std::string folder = m_folder.path("work");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    std::string line = isRoot ? "setpriv --reuid=65534 --regid=65534 --clear-groups " KY_TOOL : KY_TOOL;
    for (const auto& [name, content] : givenFiles())
      m_folder.write("work/" + name, content);
    for (const std::string& word : command.words)
      line += " '" + (word[0] == '@' ? folder + "/" + word.substr(1) : word) + "'";
    std::filesystem::permissions(m_folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    const int status = std::system((line + " >" + m_out + " 2>" + m_err).c_str());
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 4) << contentOf(m_err);
    const std::string message = contentOf(m_err);
    EXPECT_TRUE(message.find("ermission") != std::string::npos || message.find("write-protected") != std::string::npos)
        << message;
    Files left;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      left[entry.path().filename()] = contentOf(entry.path());
    EXPECT_TRUE(left == givenFiles());
  }
}

TEST_F(ToolFaults, aClosedPipeEndsTheCommandQuietlyBySIGPIPE)
{
  for (const Command& command : s_commands)
  {
    if (command.target != nullptr) continue;
    SCOPED_TRACE(command.name);
    int ends[2] = {};
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ::close(ends[0]);    // the reader is gone before the command begins
    m_pipe = ends[1];
    const Outcome outcome = run(command, {});
    ::close(ends[1]);
    EXPECT_EQ(outcome.signal, SIGPIPE);
    EXPECT_EQ(outcome.err, "");
  }
}
