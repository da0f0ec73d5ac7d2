// kyinventory: looks at inventories and stores them.
#include "Command.h"

namespace
{
constexpr void (*commands[])(CLI::App&, int&) = {addScanCommand, addShowCommand, addMergeCommand, addWatchCommand};
}

int main(int argc, char** argv)
{
  CLI::App program("Takes, stores and shows inventories of real-time test systems.", "kyinventory");
  program.set_version_flag("--version", "kyinventory " KY_VERSION);
  program.require_subcommand(1);
  program.footer(
      "Exit codes: 0 done, 1 not found, or merged with reports, 2 wrong usage, 3 input unusable, 4 output failed.");

  int exitCode = EXIT_OK;
  for (auto add : commands)
    add(program, exitCode);
  try
  {
    program.parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    return program.exit(error) == 0 ? EXIT_OK : EXIT_USAGE;
  }
  catch (const std::bad_alloc&)
  {
    std::fputs("kyinventory: out of memory\n", stderr);
    return EXIT_OUTPUT;
  }
  return exitCode;
}
