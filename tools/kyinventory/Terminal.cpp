#include "Terminal.h"

#include <cstdio>
#include <new>
#include <string_view>

#include "Progress.h"
#include "inventorykit/KyExplain.h"

namespace
{
bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The code point that the bytes start with, and its length in UTF-8; the length is 0 when they are none.
std::size_t decode(std::string_view bytes, unsigned int& point)
{
  const unsigned char first = static_cast<unsigned char>(bytes[0]);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || bytes.size() < length) return 0;
  point = length == 1 ? first : first & (0x7Fu >> length);
  for (std::size_t n = 1; n < length; ++n)
  {
    if (!isContinuation(bytes[n])) return 0;
    point = point << 6 | (static_cast<unsigned char>(bytes[n]) & 0x3Fu);
  }
  const bool isOverlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
  const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
  return isOverlong || isSurrogate || point > 0x10FFFF ? 0 : length;
}

// What a terminal obeys, or what changes the order in which a line is read.
bool isControl(unsigned int point)
{
  return point < 0x20 || (point >= 0x7F && point <= 0x9F) || point == 0x61C || point == 0x200E || point == 0x200F ||
         (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

// Whether a text has a name in it as a word of its own, or as the last part of a path: "a" stands in "Cannot read /tmp/a.",
// and not in "Cannot read that.".
bool names(const std::string& text, const std::string& name)
{
  for (std::size_t at = text.find(name); at != text.npos; at = text.find(name, at + 1))
  {
    const std::string_view behind = std::string_view(text).substr(at + name.size());
    const bool isStart = at == 0 || std::string_view(" \"'(/").find(text[at - 1]) != std::string_view::npos;
    const bool isEnd = behind.empty() || std::string_view(" :,;\"')").find(behind[0]) != std::string_view::npos ||
                       behind == "." || behind.substr(0, 2) == ". ";
    if (isStart && isEnd) return true;
  }
  return false;
}

// The length of the control character that the bytes start with; 0: none. A byte that is no UTF-8 counts as one: terminals
// of other encodings obey the bytes 80 .. 9F.
std::size_t controlLength(std::string_view bytes, std::size_t& ordinary)
{
  unsigned int point = 0;
  ordinary = decode(bytes, point);
  if (ordinary == 0) return 1;
  return isControl(point) ? ordinary : 0;
}
}    // namespace

std::string withoutControls(std::string_view text, std::string_view kept)
{
  std::string safe;
  safe.reserve(text.size());
  for (std::size_t n = 0; n < text.size();)
  {
    std::size_t ordinary = 1;
    const bool isKept = kept.find(text[n]) != kept.npos;
    const std::size_t controls = isKept ? 0 : controlLength(text.substr(n), ordinary);
    if (controls == 0)
    {
      safe += text.substr(n, ordinary);
      n += ordinary;
    }
    for (const std::size_t end = n + controls; n < end; ++n)
    {
      char escaped[5];
      std::snprintf(escaped, sizeof(escaped), "\\x%02X",
                    static_cast<unsigned int>(static_cast<unsigned char>(text[n])));
      safe += escaped;
    }
  }
  return safe;
}

void complain(const std::string& message)
{
  const std::string line = "kyinventory: " + withoutControls(message) + "\n";
  Progress::hide();
  std::fwrite(line.data(), 1, line.size(), stderr);
}

void complainAbout(const std::string& subject, const KyErrorEntry& entry)
{
  char origin[32];
  std::snprintf(origin, sizeof(origin), " (0x%X, ", entry.code);
  const std::string text = entry.text;
  complain((names(text, subject) ? "" : subject + ": ") + text + origin + entry.function + ")");
}

void complainAbout(const std::string& subject, const KyCErrorList& reports)
{
  if (reports.getEntryCount() == 0 && reports.getErrorCount() != 0) throw std::bad_alloc();
  for (unsigned int n = 0; n < reports.getEntryCount(); ++n)
    complainAbout(subject, reports.getEntry(n));
  KyNInventoryKit::Explanation cause;
  const bool isExplained = reports.getEntryCount() != 0 && KyNInventoryKit::explain(reports.getEntry(0).code, cause);
  if (isExplained && *cause.remedy != '\0') complain(std::string("what to do: ") + cause.remedy);
}

bool isOutOfMemory(const KyCErrorList& reports)
{
  constexpr unsigned int codeOutOfMemory = 0x1000000;
  for (unsigned int n = 0; n < reports.getEntryCount(); ++n)
    if (reports.getEntry(n).code == codeOutOfMemory) return true;
  return reports.getEntryCount() < reports.getErrorCount();
}

int failWith(const std::string& subject, const KyCErrorList& reports, ExitCode otherwise)
{
  complainAbout(subject, reports);
  return isOutOfMemory(reports) ? EXIT_OUTPUT : otherwise;
}
