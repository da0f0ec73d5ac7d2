// kyinventory: looks at inventories, compares, changes and stores them.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <new>
#include <sstream>

#include "Output.h"
#include "Program.h"
#include "Terminal.h"

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

// What the parser has to say: help for those who asked for it, otherwise what is wrong.
int answer(const CLI::App& program, const CLI::ParseError& error)
{
  std::ostringstream help;
  std::ostringstream wrong;
  const bool isHelp = program.exit(error, help, wrong) == 0;
  const std::string message = withoutControls(wrong.str(), "\n");
  std::fwrite(message.data(), 1, message.size(), stderr);
  Output out;
  out.text(help.str());
  return out.finish(isHelp ? EXIT_OK : EXIT_USAGE);
}
}    // namespace

int main(int argc, char** argv)
{
  occupyStandardStreams();
  std::signal(SIGPIPE, SIG_DFL);    // whatever the caller has made of it
  int exitCode = EXIT_OK;
  try
  {
    const std::unique_ptr<CLI::App> program = makeProgram(exitCode);
    try
    {
      program->parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
      return answer(*program, error);
    }
  }
  catch (const std::bad_alloc&)
  {
    std::fputs("kyinventory: out of memory\n", stderr);
    return EXIT_OUTPUT;
  }
  return exitCode;
}
