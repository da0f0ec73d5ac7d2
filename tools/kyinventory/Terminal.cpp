#include "Terminal.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace
{
std::string withoutControls(const char* text, std::size_t length)
{
  std::string safe;
  safe.reserve(length);
  for (std::size_t n = 0; n < length; ++n)
  {
    const unsigned char byte = static_cast<unsigned char>(text[n]);
    if ((byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F)
    {
      char escaped[5];
      std::snprintf(escaped, sizeof(escaped), "\\x%02X", byte);
      safe += escaped;
    }
    else
    {
      safe += text[n];
    }
  }
  return safe;
}
}    // namespace

void complain(const std::string& message)
{
  const std::string line = "kyinventory: " + withoutControls(message.data(), message.size()) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void complainAbout(const std::string& subject, const KyCErrorList& reports)
{
  for (unsigned int n = 0; n < reports.getEntryCount(); ++n)
  {
    const KyErrorEntry& entry = reports.getEntry(n);
    char origin[32];
    std::snprintf(origin, sizeof(origin), " (0x%X, ", entry.code);
    complain(subject + ": " + entry.text + origin + entry.function + ")");
  }
}

bool printText(const KyCString& text)
{
  std::size_t written = 0;
  std::size_t length = text.length();
  if (::isatty(STDOUT_FILENO) != 0)
  {
    const std::string safe = withoutControls(text.c_str(), length);
    length = safe.size();
    written = std::fwrite(safe.data(), 1, length, stdout);
  }
  else
  {
    written = std::fwrite(text.c_str(), 1, length, stdout);
  }
  if (written == length && std::fflush(stdout) == 0) return true;
  complain(std::string("standard output: ") + std::strerror(errno));
  return false;
}
