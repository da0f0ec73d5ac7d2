// kyinventory: looks at inventories, compares, changes and stores them.
#include <new>

#include "Program.h"

int main(int argc, char** argv)
{
  int exitCode = EXIT_OK;
  const std::unique_ptr<CLI::App> program = makeProgram(exitCode);
  try
  {
    program->parse(argc, argv);
  }
  catch (const CLI::ParseError& error)
  {
    return program->exit(error) == 0 ? EXIT_OK : EXIT_USAGE;
  }
  catch (const std::bad_alloc&)
  {
    std::fputs("kyinventory: out of memory\n", stderr);
    return EXIT_OUTPUT;
  }
  return exitCode;
}
