// Signals that wait.
#include "EndSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace
{
volatile sig_atomic_t s_caught = 0;
int s_nowhere = -1;    // /dev/null; opened before the handler is set

void endOutput(int number)
{
  const int error = errno;
  s_caught = number;
  if (s_nowhere >= 0) dup2(s_nowhere, STDOUT_FILENO);
  errno = error;
}
}    // namespace

EndSignals::EndSignals()
{
  s_nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  struct sigaction action = {};
  action.sa_handler = endOutput;    // without SA_RESTART: a write that waits is to end
  sigemptyset(&action.sa_mask);
  struct sigaction* before = m_before;
  for (const int number : s_numbers)
  {
    sigaction(number, nullptr, before);
    if (before->sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
    ++before;
  }
}

EndSignals::~EndSignals()
{
  const struct sigaction* before = m_before;
  for (const int number : s_numbers)
    sigaction(number, before++, nullptr);
  if (s_nowhere >= 0) close(s_nowhere);
  if (s_caught != 0) raise(s_caught);
}
