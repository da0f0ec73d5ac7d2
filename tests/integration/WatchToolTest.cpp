// kyinventory watch: its numbers, and signals while its output is stuck.
#include <fcntl.h>
#include <signal.h>

#include <chrono>
#include <fstream>
#include <thread>
#include <utility>

#include "integration/KyToolTest.h"

namespace
{
TEST_F(Tool, watchRefusesCountsThatAreNoDecimalNumbers)
{
  for (const char* const count : {"0", "00", "-1", "+1", "0x10", "1e1", "1_000", "10k", "''", "' 1'", "0b1"})
  {
    const Outcome outcome = run(std::string("watch --count=") + count);
    EXPECT_EQ(outcome.exitCode, 2) << count;
    EXPECT_EQ(outcome.out, "") << count;
  }
}

#ifdef KY_HAVE_HOST
// The lines that tell the time since the start, which changes from round to round.
unsigned int roundsIn(const std::string& text)
{
  unsigned int rounds = 0;
  for (std::size_t at = text.find("\tOS_INFO/TIMER\t"); at != text.npos; at = text.find("\tOS_INFO/TIMER\t", at + 1))
    ++rounds;
  return rounds;
}

TEST_F(Tool, watchTakesACountWithLeadingZerosAsDecimal)
{
  const Outcome ten = run("watch --interval 0.05 --count 010");
  EXPECT_EQ(ten.exitCode, 0) << ten.err;
  EXPECT_EQ(roundsIn(ten.out), 10u) << ten.out;
  const Outcome eight = run("watch --interval 0.05 --count 08");
  EXPECT_EQ(eight.exitCode, 0) << eight.err;
  EXPECT_EQ(roundsIn(eight.out), 8u) << eight.out;
}

// The tool watching into a pipe that is full and that nobody reads.
class StuckWatch
{
public:
  explicit StuckWatch(bool ignoresInterrupts)
  {
    if (::pipe2(m_pipe, O_CLOEXEC) != 0) return;
    ::fcntl(m_pipe[1], F_SETFL, O_NONBLOCK);
    const std::string block(4096, 'x');
    while (::write(m_pipe[1], block.data(), block.size()) > 0)
    {
    }
    ::fcntl(m_pipe[1], F_SETFL, 0);
    m_child = ::fork();
    if (m_child == 0) become(ignoresInterrupts);
  }
  ~StuckWatch()
  {
    if (m_child > 0)
    {
      ::kill(m_child, SIGKILL);
      ::waitpid(m_child, nullptr, 0);
    }
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
  }
  StuckWatch(const StuckWatch&) = delete;
  StuckWatch& operator=(const StuckWatch&) = delete;

  // Whether it has been asleep for a while, which it is only when its output is stuck.
  bool waitUntilStuck() const
  {
    unsigned int asleep = 0;
    for (unsigned int n = 0; n < 1500 && asleep < 25; ++n)
    {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      asleep = state() == 'S' ? asleep + 1 : 0;
    }
    return asleep == 25;
  }

  void send(int signal) const { ::kill(m_child, signal); }

  // The signal that has ended it; 0 when it ended otherwise.
  int waitForEnd()
  {
    int status = 0;
    ::waitpid(std::exchange(m_child, -1), &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }

private:
  void become(bool ignoresInterrupts) const
  {
    ::signal(SIGINT, ignoresInterrupts ? SIG_IGN : SIG_DFL);
    ::signal(SIGTERM, SIG_DFL);
    ::dup2(m_pipe[1], STDOUT_FILENO);
    ::alarm(60);    // in case that nothing else ends it
    ::execl(kyToolPath, kyToolPath, "watch", "--initial", "--interval", "86400", static_cast<char*>(nullptr));
    ::_exit(127);
  }

  // As /proc has it: "pid (name) state ...".
  char state() const
  {
    std::ifstream file("/proc/" + std::to_string(m_child) + "/stat");
    std::string pid;
    std::string name;
    char letter = '?';
    file >> pid >> name >> letter;
    return name == "(kyinventory)" ? letter : '?';
  }

  int m_pipe[2] = {-1, -1};
  pid_t m_child = -1;
};

TEST_F(Tool, watchIsEndedByASecondSignalWhenItsOutputIsStuck)
{
  const int pairs[][2] = {{SIGINT, SIGTERM}, {SIGTERM, SIGINT}, {SIGINT, SIGINT}, {SIGTERM, SIGTERM}};
  for (const auto& [first, second] : pairs)
  {
    StuckWatch watch(false);
    ASSERT_TRUE(watch.waitUntilStuck());
    watch.send(first);
    EXPECT_TRUE(watch.waitUntilStuck()) << "the first one waits for the output";
    watch.send(second);
    EXPECT_EQ(watch.waitForEnd(), second) << first;
  }
}

TEST_F(Tool, watchThatIsToIgnoreInterruptsIgnoresThemAfterASignalToo)
{
  StuckWatch watch(true);
  ASSERT_TRUE(watch.waitUntilStuck());
  watch.send(SIGINT);
  watch.send(SIGTERM);
  EXPECT_TRUE(watch.waitUntilStuck());
  watch.send(SIGINT);
  EXPECT_TRUE(watch.waitUntilStuck());
  watch.send(SIGTERM);
  EXPECT_EQ(watch.waitForEnd(), SIGTERM);
}
#endif
}    // namespace
