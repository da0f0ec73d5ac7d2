#include "Pager.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "Terminal.h"

namespace
{
constexpr int s_signals[] = {SIGPIPE, SIGINT, SIGQUIT};
void (*s_handlers[3])(int) = {SIG_DFL, SIG_DFL, SIG_DFL};

bool isProgram(const std::string& name)
{
  if (name.find('/') != name.npos) return ::access(name.c_str(), X_OK) == 0;
  const char* const path = std::getenv("PATH");
  const std::string folders = path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
  for (std::size_t begin = 0; begin <= folders.size();)
  {
    const std::size_t end = std::min(folders.find(':', begin), folders.size());
    const std::string folder = end == begin ? "." : folders.substr(begin, end - begin);
    if (::access((folder + "/" + name).c_str(), X_OK) == 0) return true;
    begin = end + 1;
  }
  return false;
}

// Whether a command is one that the shell cannot find. Only plain words are looked at; the rest is the shell's to know.
bool isMissing(const std::string& command)
{
  const std::size_t begin = command.find_first_not_of(" \t");
  if (begin == command.npos || command.find_first_of("'\"\\$`;&|<>(){}*?[#~=\n") != command.npos) return false;
  return !isProgram(command.substr(begin, command.find_first_of(" \t", begin) - begin));
}

[[noreturn]] void becomePager(const char* command, int input)
{
  for (const int number : s_signals)
    std::signal(number, SIG_DFL);
  if (::dup2(input, STDIN_FILENO) >= 0) ::execl("/bin/sh", "sh", "-c", command, static_cast<char*>(nullptr));
  ::_exit(127);
}
}    // namespace

std::string pagerCommand()
{
  const char* const chosen = std::getenv("PAGER");
  if (chosen == nullptr)
  {
    if (isProgram("less")) return "less -FRX";
    return isProgram("more") ? "more" : "";
  }
  const std::string command = chosen;
  if (command == "cat" || command.find_first_not_of(" \t") == command.npos) return {};
  if (!isMissing(command)) return command;
  complain("the pager of PAGER is not there: " + command);
  return {};
}

pid_t startPager(const std::string& command, int& input)
{
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return 0;
  ::setenv("LESS", "FRX", 0);    // colours, and no screen of its own for what fits; whoever has set it knows better
  const pid_t pager = ::fork();
  if (pager == 0) becomePager(command.c_str(), ends[0]);
  ::close(ends[0]);
  if (pager < 0)
  {
    ::close(ends[1]);
    return 0;
  }
  for (unsigned int n = 0; n < 3; ++n)
    s_handlers[n] = std::signal(s_signals[n], SIG_IGN);
  input = ends[1];
  return pager;
}

void waitForPager(pid_t pager, int input)
{
  ::close(input);
  int status = 0;
  while (::waitpid(pager, &status, 0) < 0 && errno == EINTR)
  {
  }
  for (unsigned int n = 0; n < 3; ++n)
    std::signal(s_signals[n], s_handlers[n]);
}
