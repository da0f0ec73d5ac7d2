// KyTerminalTest.h: runs the command-line tool at a terminal of its own, and types.
//
//   KyTerminal terminal(tool("shell " + file));
//   terminal.waitFor("> ");
//   terminal.type("quit\n");
//   EXPECT_EQ(terminal.waitForEnd(), 0);
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>

#include "integration/KyToolTest.h"

// A shell command at a pseudo-terminal. Nothing here sleeps: whoever waits, waits for a text, until a deadline that only a
// broken program meets.
class KyTerminal
{
public:
  explicit KyTerminal(const std::string& command, unsigned short rows = 24, unsigned short columns = 200)
  {
    struct winsize size = {};
    size.ws_row = rows;
    size.ws_col = columns;
    m_process = ::forkpty(&m_terminal, nullptr, nullptr, &size);
    if (m_process != 0) return;
    for (const char* const name : {"PAGER", "LESS", "NO_COLOR", "HOME"})
      ::unsetenv(name);
    ::setenv("TERM", "xterm", 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  ~KyTerminal()
  {
    if (!m_isEnded && m_process > 0)
    {
      ADD_FAILURE() << "nobody has waited for the end";
      ::kill(m_process, SIGKILL);
      ::waitpid(m_process, nullptr, 0);
    }
    if (m_terminal >= 0) ::close(m_terminal);
  }
  KyTerminal(const KyTerminal&) = delete;
  KyTerminal& operator=(const KyTerminal&) = delete;

  void type(const std::string& keys) const
  {
    EXPECT_EQ(::write(m_terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // Waits until the text stands on the terminal, behind what was waited for before.
  void waitFor(const std::string& text)
  {
    while (m_output.find(text, m_seen) == std::string::npos)
    {
      if (read()) continue;
      ADD_FAILURE() << "\"" << text << "\" has not come; what came is: " << m_output.substr(m_seen);
      return;
    }
    m_seen = m_output.find(text, m_seen) + text.size();
  }

  // Waits until the program ends; its exit code, -1 when a signal has ended it.
  int waitForEnd()
  {
    while (read())
    {
    }
    int status = 0;
    if (m_isLate) ::kill(m_process, SIGKILL);
    ::waitpid(m_process, &status, 0);
    m_isEnded = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  // Everything that came, with line ends as "\n".
  std::string output() const
  {
    std::string text;
    for (const char c : m_output)
      if (c != '\r') text += c;
    return text;
  }

private:
  // More output; false at its end, and after the deadline.
  bool read()
  {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(m_deadline - Clock::now()).count();
    struct pollfd terminal = {m_terminal, POLLIN, 0};
    const int ready = left <= 0 ? 0 : ::poll(&terminal, 1, static_cast<int>(left));
    if (ready < 0 && errno == EINTR) return true;
    if (ready <= 0)
    {
      ADD_FAILURE() << "the deadline is over; what came is: " << m_output;
      m_isLate = true;
      return false;
    }
    char block[4096];
    const ssize_t got = ::read(m_terminal, block, sizeof(block));
    if (got > 0) m_output.append(block, static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
  }

  using Clock = std::chrono::steady_clock;

  const Clock::time_point m_deadline = Clock::now() + std::chrono::seconds(60);
  int m_terminal = -1;
  pid_t m_process = 0;
  std::string m_output;
  std::size_t m_seen = 0;
  bool m_isEnded = false;
  bool m_isLate = false;
};

// The tool at a terminal.
class ToolAtTerminal : public Tool
{
protected:
  // The shell command that runs it.
  static std::string tool(const std::string& arguments) { return std::string(kyToolPath) + " " + arguments; }

  // A file with one parameter a line when it is shown with `s_lines`.
  std::string storeLines(unsigned int count) const
  {
    std::string text = "ROOT";
    for (unsigned int n = 1; n <= count; ++n)
      text += "\nROOT/BOARD[" + std::to_string(n) + "] SIZE=" + std::to_string(n);
    return store("lines.kyinv", text);
  }
  static constexpr const char* s_lines = " --plain --options 0xEB011";    // values alone, not indented
};
