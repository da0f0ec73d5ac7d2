// EndSignals.h: keeps the signals that ask a program to end waiting until everything is tidied up.
#pragma once

#include <signal.h>

// For as long as it lives, they only end the standard output: what is printed from then on is lost, and what is stuck at
// printing goes on. The signal comes again, and is obeyed, at the end of its life. So what was made after it is cleared
// away before. A signal that is ignored stays ignored. One at a time.
class EndSignals
{
public:
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

private:
  static constexpr int s_numbers[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};
  struct sigaction m_before[4] = {};
};
