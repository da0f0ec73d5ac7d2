// sysfs_writeback: attribute files as the parameters of an inventory tree, looked at and set.
#include <signal.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "Demo.h"
#include "Messages.h"
#include "Printable.h"
#include "ReportPrinter.h"
#include "SysfsTree.h"

namespace
{
enum ExitCode
{
  EXIT_OK = 0,
  EXIT_REPORTS = 1,
  EXIT_USAGE = 2,
  EXIT_INPUT = 3,
  EXIT_OUTPUT = 4
};

const char s_usage[] =
    "usage: sysfs_writeback [DIRECTORY [ADDRESS=VALUE]...]\n"
    "\n"
    "Shows the LEDs, fans, GPIO lines and processor frequencies of a sysfs (/sys), of a class (/sys/class/leds) or\n"
    "of a single device as parameters, and sets those that are named: sysfs_writeback /sys LED_OUT/VALUE=1. All\n"
    "values are checked first; when one of them is vetoed, none is written. Without ADDRESS=VALUE nothing is ever\n"
    "written.\n"
    "Without DIRECTORY: a demonstration on a made-up sysfs in a temporary directory.\n"
    "\n"
    "Exit codes: 0 done, 1 something could not be read or set, 2 wrong usage, 3 no such directory or nothing in it,\n"
    "4 output failed.\n";

// Sets all of the values or, when the check says no to one of them, none.
void setValues(KyCErrorListPool& pool, SysfsTree& tree, const std::vector<std::string>& wishes)
{
  const unsigned int errorCount = pool.getErrorCount();
  for (const std::string& wish : wishes)
    tree.designate(pool, wish);
  tree.check(pool);
  if (pool.getErrorCount() == errorCount)
    tree.root().apply(pool, &tree.context());
  else
    tree.root().deleteDesignatedValues();
}

int showAndSet(const std::string& directory, const std::vector<std::string>& wishes)
{
  std::error_code error;
  if (!std::filesystem::is_directory(directory, error))
  {
    std::fprintf(stderr, "sysfs_writeback: %s: %s\n", printable(directory).c_str(),
                 error ? error.message().c_str() : "no directory");
    return EXIT_INPUT;
  }
  const ReportPrinter printer(stderr);
  KyCErrorListPool pool;
  SysfsTree tree(pool, directory);
  if (tree.root().getFirstSubItem() == nullptr)
  {
    std::fprintf(stderr, "sysfs_writeback: %s: no LED, fan, GPIO line or processor in it\n",
                 printable(directory).c_str());
    return EXIT_INPUT;
  }
  setValues(pool, tree, wishes);
  printReports(pool);
  std::fputs(tree.toText().c_str(), stdout);
  return pool.getErrorCount() != 0 ? EXIT_REPORTS : EXIT_OK;
}

int run(const std::vector<std::string>& arguments)
{
  if (arguments.empty())
  {
    const ReportPrinter printer(stdout);
    return runDemo() ? EXIT_OK : EXIT_OUTPUT;
  }
  if (arguments[0] == "-h" || arguments[0] == "--help")
  {
    std::fputs(s_usage, stdout);
    return EXIT_OK;
  }
  const std::vector<std::string> wishes(arguments.begin() + 1, arguments.end());
  for (const std::string& wish : wishes)
  {
    if (wish.find('=') != std::string::npos) continue;
    std::fprintf(stderr, "sysfs_writeback: %s: not ADDRESS=VALUE\n%s", printable(wish).c_str(), s_usage);
    return EXIT_USAGE;
  }
  if (arguments[0].empty() || arguments[0][0] == '-')
  {
    std::fputs(s_usage, stderr);
    return EXIT_USAGE;
  }
  return showAndSet(arguments[0], wishes);
}
}    // namespace

int main(int argc, char** argv)
{
  // What cannot be written is a failure to be told, and no reason to leave things behind.
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  const MessageTable messages;
  const int exitCode = run(std::vector<std::string>(argv + 1, argv + argc));
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return exitCode;
  std::fputs("sysfs_writeback: cannot write the output\n", stderr);
  return EXIT_OUTPUT;
}
