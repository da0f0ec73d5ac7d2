#include "Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Command.h"
#include "Terminal.h"

namespace
{
constexpr std::size_t s_blockSize = 1 << 16;

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
}    // namespace

Output::Output() : m_isTerminal(::isatty(STDOUT_FILENO) != 0) {}

Output::~Output() { flush(); }

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
  const char* const escape = m_isTerminal ? escapeOf(style) : nullptr;
  if (escape != nullptr) m_buffer += escape;
  m_buffer += text;
  if (escape != nullptr) m_buffer += "\x1B[0m";
  if (m_buffer.size() >= s_blockSize) flush();
  return *this;
}

void Output::flush()
{
  std::size_t done = 0;
  while (!m_hasFailed && done < m_buffer.size())
  {
    const ssize_t written = ::write(STDOUT_FILENO, m_buffer.data() + done, m_buffer.size() - done);
    if (written < 0 && errno == EINTR) continue;
    m_hasFailed = written < 0;
    m_reason = errno;
    if (!m_hasFailed) done += static_cast<std::size_t>(written);
  }
  m_buffer.clear();
}

int Output::finish(int exitCode)
{
  flush();
  if (!m_hasFailed) return exitCode;
  complain(std::string("standard output: ") + std::strerror(m_reason));
  return EXIT_OUTPUT;
}
