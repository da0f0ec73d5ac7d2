// kyinventory watch: shows how the live values of this machine change.
#include "Command.h"
#include "Numbers.h"
#include "Terminal.h"
#ifdef KY_HAVE_HOST
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>

#include "Files.h"
#include "LiveValues.h"
#include "Output.h"
#include "inventoryhost/KyNInventoryHost.h"
#endif
#include <charconv>
#include <optional>
#include <string>

namespace
{
constexpr double shortestInterval = 0.01;    // seconds
constexpr double longestInterval = 86400;
constexpr unsigned int mostRounds = 1000000000;

struct WatchArguments
{
  std::string interval = "1";
  std::string count;    // rounds; empty: for ever
  bool initial = false;
};

// The number of seconds; negative when the text is none, or none in range.
double parseInterval(const std::string& text)
{
  double seconds = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, seconds, std::chars_format::fixed);
  const bool isNumber = error == std::errc() && end == last;
  return isNumber && seconds >= shortestInterval && seconds <= longestInterval ? seconds : -1;
}

#ifdef KY_HAVE_HOST
using SteadyTime = std::chrono::steady_clock::time_point;

volatile sig_atomic_t s_isToEnd = 0;

// Changes what SIGINT and SIGTERM do. A signal that whoever started the program has it ignore stays ignored. May be
// called by a signal's handler.
void setSignals(void (*handler)(int))
{
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaddset(&action.sa_mask, SIGINT);
  sigaddset(&action.sa_mask, SIGTERM);
  for (const int number : {SIGINT, SIGTERM})
  {
    struct sigaction old = {};
    if (sigaction(number, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
}

// The program ends after the current round; a second signal of either kind ends it at once, in case the output is stuck.
void askForEnd(int)
{
  const int error = errno;
  s_isToEnd = 1;
  setSignals(SIG_DFL);
  errno = error;
}

// False when the program was asked to end. The signals are let in only while it sleeps, so that none comes between the
// question and the sleep.
bool sleepUntil(SteadyTime time)
{
  sigset_t ours;
  sigset_t before;
  sigemptyset(&ours);
  sigaddset(&ours, SIGINT);
  sigaddset(&ours, SIGTERM);
  sigprocmask(SIG_BLOCK, &ours, &before);
  while (s_isToEnd == 0)
  {
    const auto rest =
        std::chrono::duration_cast<std::chrono::nanoseconds>(time - std::chrono::steady_clock::now()).count();
    if (rest <= 0) break;
    const timespec timeout = {static_cast<std::time_t>(rest / 1000000000), static_cast<long>(rest % 1000000000)};
    ppoll(nullptr, 0, &timeout, &before);
  }
  sigprocmask(SIG_SETMASK, &before, nullptr);
  return s_isToEnd == 0;
}

// "2026-03-01T12:00:00.123Z", or for people at a terminal "12:00:00.123" of their own time zone.
std::string timeText(bool isTerminal)
{
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now - std::chrono::system_clock::from_time_t(seconds));
  std::tm parts = {};
  if (isTerminal)
    localtime_r(&seconds, &parts);
  else
    gmtime_r(&seconds, &parts);
  char text[64];
  const std::size_t length = std::strftime(text, sizeof text, isTerminal ? "%H:%M:%S" : "%Y-%m-%dT%H:%M:%S", &parts);
  char fraction[16];
  std::snprintf(fraction, sizeof fraction, ".%03d%s", static_cast<int>(milliseconds.count()), isTerminal ? "" : "Z");
  return std::string(text, length) + fraction;
}

// One line for each value: aligned for people, tab-separated for programs.
class Lines
{
public:
  Lines(const std::vector<LiveValues::Value>& values, bool isTerminal) : m_isTerminal(isTerminal)
  {
    for (const LiveValues::Value& value : values)
    {
      m_addressWidth = std::max(m_addressWidth, value.address.size());
      m_valueWidth = std::max(m_valueWidth, value.value.size());
    }
  }

  void begin()
  {
    m_text.clear();
    m_time = timeText(m_isTerminal);
  }

  // Without an old value: what it is at the start.
  void add(const std::string& address, const std::string& oldValue, const std::string& newValue,
           const std::string& unit)
  {
    const std::string from = withoutControls(oldValue);
    const std::string to = withoutControls(newValue);
    if (m_isTerminal)
    {
      m_text += m_time + "  " + address + blanks(m_addressWidth, address) + "  ";
      m_text += blanks(m_valueWidth, from) + from + (from.empty() ? "    " : " -> ");
      m_text += blanks(m_valueWidth, to) + to + (unit.empty() ? "" : " " + unit) + "\n";
    }
    else
    {
      m_text += m_time + "\t" + address + "\t" + from + "\t" + to + "\t" + withoutControls(unit) + "\n";
    }
  }

  // False, with a message, when the output cannot be written.
  bool print() const
  {
    Output out;
    out.lines(m_text).flush();
    return out.finish(EXIT_OK) == EXIT_OK;
  }

private:
  static std::string blanks(std::size_t width, const std::string& text)
  {
    return std::string(width - std::min(width, text.size()), ' ');
  }

  const bool m_isTerminal;
  std::size_t m_addressWidth = 0;
  std::size_t m_valueWidth = 0;
  std::string m_time;
  std::string m_text;
};

bool printInitial(const LiveValues& live, Lines& lines)
{
  lines.begin();
  for (const LiveValues::Value& value : live.values())
    lines.add(value.address, "", value.value, value.unit);
  return lines.print();
}

bool printRound(LiveValues& live, Lines& lines)
{
  const LiveValues::Round round = live.update();
  for (const LiveValues::Failure& failure : round.failures)
    for (const KyErrorEntry& report : failure.reports)
      complainAbout(failure.address, report);
  lines.begin();
  for (const LiveValues::Change& change : round.changes)
    lines.add(change.address, change.oldValue, change.newValue, change.unit);
  return lines.print();
}

int watch(const WatchArguments& arguments)
{
  setSignals(askForEnd);
  KyCErrorListPool pool;
  const TreePointer tree(KyNInventoryHost::scanMachine(pool));
  complainAbout("this machine", pool);
  if (!tree) return EXIT_INPUT;
  LiveValues live(*tree);
  if (live.values().empty())
  {
    complain("this machine shows no values that change");
    return EXIT_NOT_FOUND;
  }
  Lines lines(live.values(), ::isatty(STDOUT_FILENO) != 0);
  if (arguments.initial && !printInitial(live, lines)) return EXIT_OUTPUT;

  const auto interval = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
      std::chrono::duration<double>(parseInterval(arguments.interval)));
  SteadyTime next = std::chrono::steady_clock::now();
  const std::optional<unsigned int> count = parseWholeNumber(arguments.count, 1, mostRounds);
  for (unsigned int round = 0; !count || round < *count; round += count ? 1 : 0)
  {
    // Rounds that were missed (a stopped program, a stuck output) are not made up for.
    next = std::max(next + interval, std::chrono::steady_clock::now());
    if (!sleepUntil(next)) break;
    if (!printRound(live, lines)) return EXIT_OUTPUT;
  }
  return EXIT_OK;
}
#else
int watch(const WatchArguments&)
{
  complain("this build cannot take inventories: the hwloc library was not there when it was built");
  return EXIT_INPUT;
}
#endif
}    // namespace

void addWatchCommand(CLI::App& program, int& exitCode)
{
  const CLI::Validator interval(
      [](const std::string& text)
      { return std::string(parseInterval(text) < 0 ? "must be a number of seconds from 0.01 to 86400" : ""); },
      "SECONDS");
  auto arguments = std::make_shared<WatchArguments>();
  CLI::App* command = program.add_subcommand("watch", "Show how values of this machine change while it runs");
  command->add_option("--interval", arguments->interval, "Seconds from round to round, 0.01 to 86400; default: 1")
      ->check(interval);
  command->add_option("--count", arguments->count, "Rounds; default: until interrupted")
      ->check(wholeNumber(1, mostRounds))
      ->type_name("UINT");
  command->add_flag("--initial", arguments->initial, "Print all values that can change first");
  setManual(
      *command,
      {"Takes the inventory of this machine, reads its live values again every SECONDS and prints those that "
       "changed: available memory, clock frequencies, state, speed and duplex mode of network links, temperatures, "
       "the time since the start. The first round compares with the inventory as it was taken. SIGINT and SIGTERM "
       "end it after the current round, with exit code 0; a second signal ends it at once.\n\n"
       "A program that was built without the hwloc library takes no inventories: it says so, with exit code 3.\n\n"
       "On a terminal the lines are aligned and begin with the local time. Elsewhere each change is one line of "
       "five fields separated by tabs: UTC time with milliseconds, address, old value, new value, unit. Control "
       "characters in values are shown as \\xNN. A value that cannot be read is complained about once, until it can "
       "be read again. A run on a virtual machine, into a pipe:\n\n"
       "  $ kyinventory watch --count 3 | cat\n"
       "  2026-11-21T05:30:06.676Z\tAVAILABLE\t24688963584\t24697106432\tB\n"
       "  2026-11-21T05:30:06.676Z\tOS_INFO/TIMER\t14042050\t14043050\tms\n"
       "  2026-11-21T05:30:07.676Z\tAVAILABLE\t24697106432\t24712757248\tB\n"
       "  2026-11-21T05:30:07.676Z\tOS_INFO/TIMER\t14043050\t14044050\tms\n"
       "  2026-11-21T05:30:08.676Z\tAVAILABLE\t24712757248\t24728346624\tB\n"
       "  2026-11-21T05:30:08.676Z\tOS_INFO/TIMER\t14044050\t14045050\tms",
       {{"kyinventory watch", "shows changes until it is interrupted"},
        {"kyinventory watch --interval 0.5 --count 10", "watches for five seconds"},
        {"kyinventory watch --initial --count 1", "prints every live value first"}}});
  command->callback([arguments, &exitCode]() { exitCode = watch(*arguments); });
}
