// kyinventory: looks at inventories, compares, changes and stores them.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>

#include "ExitCode.h"
#include "Program.h"

namespace
{
// A standard stream that the caller has closed must not become the number of a file: what is printed would go there.
// Each is opened the wrong way round, so that using it fails as before.
void occupyStandardStreams()
{
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
  {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    const int opened = ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    static_cast<void>(opened);    // the lowest free number is this one
  }
}

// The sub-command, as far as the first word is one; for where there is no memory to look it up.
const char* commandOf(int argc, char** argv)
{
  const char* const word = argc > 1 ? argv[1] : "";
  return word[std::strspn(word, "abcdefghijklmnopqrstuvwxyz")] == '\0' ? word : "";
}

const char* s_command = "";

int complainOfMemory()
{
  for (const char* part : {"kyinventory: ", s_command, *s_command == '\0' ? "" : ": ",
                           "out of memory\nkyinventory: what to do: Free memory, or take a smaller file.\n"})
    std::fputs(part, stderr);
  return EXIT_OUTPUT;
}

// The option parser copies words in functions that may not throw: without memory it ends here.
[[noreturn]] void endProgram()
{
  try
  {
    // cppcheck-suppress rethrowNoCurrentException ; there is one, and std::rethrow_exception would need memory
    if (std::current_exception() != nullptr) throw;
  }
  catch (const std::bad_alloc&)
  {
    ::_exit(complainOfMemory());
  }
  catch (...)
  {
  }
  std::abort();
}
}    // namespace

int main(int argc, char** argv)
{
  occupyStandardStreams();
  s_command = commandOf(argc, argv);
  std::set_terminate(endProgram);
  std::signal(SIGPIPE, SIG_DFL);    // whatever the caller has made of it
  std::signal(SIGXFSZ, SIG_IGN);    // a file that may not grow is told as what cannot be written
  try
  {
    return runProgram(argc, argv);
  }
  catch (const std::bad_alloc&)
  {
    return complainOfMemory();
  }
  catch (const std::length_error&)    // more than the address space could hold, with 32 bits
  {
    return complainOfMemory();
  }
}
