#include "Output.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "Command.h"
#include "Pager.h"
#include "Progress.h"
#include "Terminal.h"

namespace
{
constexpr std::size_t s_blockSize = 1 << 16;
bool s_isPagerForbidden = false;

const char* escapeOf(Style style)
{
  switch (style)
  {
    case Style::HEADING:
      return "\x1B[1m";
    case Style::NAME:
      return "\x1B[36m";
    case Style::ADDED:
      return "\x1B[32m";
    case Style::REMOVED:
      return "\x1B[31m";
    case Style::CHANGED:
      return "\x1B[33m";
    case Style::WARNING:
      return "\x1B[1;33m";
    case Style::PLAIN:
    case Style::VALUE:
      break;
  }
  return nullptr;
}

// What reads a pipe may show it on the terminal that progress is shown on.
bool isOrdinaryFile(int target)
{
  struct stat file = {};
  return ::fstat(target, &file) == 0 && S_ISREG(file.st_mode);
}

bool isColourWanted()
{
  const char* const noColour = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return (noColour == nullptr || *noColour == '\0') && (terminal == nullptr || std::strcmp(terminal, "dumb") != 0);
}
}    // namespace

Output::Output()
    : m_isTerminal(::isatty(STDOUT_FILENO) != 0),
      m_hasColour(m_isTerminal && isColourWanted()),
      m_mayPage(m_isTerminal && !s_isPagerForbidden),
      m_target(STDOUT_FILENO)
{
  struct winsize size = {};
  const bool isKnown = m_mayPage && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0;
  m_rows = isKnown && size.ws_row != 0 ? size.ws_row : 24;
  m_columns = isKnown && size.ws_col != 0 ? size.ws_col : 80;
}

Output::~Output()
{
  writeOut();
  endPager();
}

void Output::forbidPager() { s_isPagerForbidden = true; }

Output& Output::data(std::string_view text, Style style)
{
  return m_isTerminal ? write(withoutControls(text, ""), style) : write(text, style);
}

Output& Output::lines(std::string_view text)
{
  return m_isTerminal ? write(withoutControls(text, "\n\t"), Style::PLAIN) : write(text, Style::PLAIN);
}

Output& Output::write(std::string_view text, Style style)
{
  const char* const escape = m_hasColour ? escapeOf(style) : nullptr;
  if (m_mayPage) count(text);
  if (escape != nullptr) m_buffer += escape;
  m_buffer += text;
  if (escape != nullptr) m_buffer += "\x1B[0m";
  // The prompt that follows takes a line of the terminal, too.
  if (m_mayPage && m_row >= m_rows) startPager();
  if (m_buffer.size() >= s_blockSize) writeOut();
  return *this;
}

// Bytes inside a character of UTF-8 take no column.
void Output::count(std::string_view text)
{
  for (const char c : text)
  {
    if (c == '\n')
    {
      ++m_row;
      m_column = 0;
    }
    else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80 && ++m_column > m_columns)
    {
      ++m_row;
      m_column = 1;
    }
  }
}

void Output::startPager()
{
  m_mayPage = false;
  const std::string command = pagerCommand();
  if (command.empty()) return;
  Progress::hide();
  int input = -1;
  m_pager = ::startPager(command, input);
  if (m_pager != 0) m_target = input;
}

void Output::endPager()
{
  if (m_pager == 0) return;
  waitForPager(m_pager, m_target);
  m_pager = 0;
  m_target = STDOUT_FILENO;
}

void Output::flush() { writeOut(); }

void Output::writeOut()
{
  m_mayPage = false;
  if (!m_buffer.empty() && !isOrdinaryFile(m_target)) Progress::hide();
  std::size_t done = 0;
  while (!m_hasFailed && done < m_buffer.size())
  {
    const ssize_t written = ::write(m_target, m_buffer.data() + done, m_buffer.size() - done);
    if (written < 0 && errno == EINTR) continue;
    m_hasFailed = written < 0;
    m_reason = errno;
    if (!m_hasFailed) done += static_cast<std::size_t>(written);
  }
  m_buffer.clear();
}

int Output::finish(int exitCode)
{
  writeOut();
  const bool isLeft = m_pager != 0 && m_reason == EPIPE;
  endPager();
  if (!m_hasFailed || isLeft) return exitCode;
  complain(std::string("standard output: ") + std::strerror(m_reason));
  return EXIT_OUTPUT;
}
