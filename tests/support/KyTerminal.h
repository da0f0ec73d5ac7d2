// KyTerminal.h: what a program prints when its standard output is a terminal.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>

// Runs a shell command with a pseudo-terminal as its standard output, which holds what a screen holds and no more. Line
// ends are "\n".
inline std::string printedOnTerminal(const std::string& command)
{
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0)
  {
    ADD_FAILURE() << "no pseudo-terminal";
    return {};
  }
  const std::string name = ::ptsname(terminal);
  const int screen = ::open(name.c_str(), O_RDWR | O_NOCTTY);    // open, so that what is printed waits for its reader
  EXPECT_NE(std::system((command + " >" + name + " </dev/null").c_str()), -1);
  ::fcntl(terminal, F_SETFL, O_NONBLOCK);
  std::string text;
  char bytes[4096];
  for (ssize_t count = 0; (count = ::read(terminal, bytes, sizeof(bytes))) > 0;)
    text.append(bytes, static_cast<std::size_t>(count));
  ::close(screen);
  ::close(terminal);
  for (std::size_t n = 0; (n = text.find("\r\n", n)) != std::string::npos;)
    text.erase(n, 1);
  return text;
}
