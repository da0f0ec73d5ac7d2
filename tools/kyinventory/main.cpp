// kyinventory: looks at inventories, compares, changes and stores them.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <new>

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
}    // namespace

int main(int argc, char** argv)
{
  occupyStandardStreams();
  std::signal(SIGPIPE, SIG_DFL);    // whatever the caller has made of it
  std::signal(SIGXFSZ, SIG_IGN);    // a file that may not grow is told as what cannot be written
  try
  {
    return runProgram(argc, argv);
  }
  catch (const std::bad_alloc&)
  {
    std::fputs("kyinventory: out of memory\n", stderr);
    return EXIT_OUTPUT;
  }
}
