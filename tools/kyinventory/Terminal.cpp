#include "Terminal.h"

#include <cstdio>
#include <string_view>

#include "Progress.h"
#include "inventorykit/KyExplain.h"

namespace
{
// The length of the control character that the bytes start with; 0: none. Terminals obey U+0080 .. U+009F, too, which are
// two bytes in UTF-8.
std::size_t controlLength(const char* bytes, std::size_t length)
{
  const unsigned char first = static_cast<unsigned char>(bytes[0]);
  if (first < 0x20 || first == 0x7F) return 1;
  const bool isTwoBytes = first == 0xC2 && length > 1 && (static_cast<unsigned char>(bytes[1]) & 0xE0) == 0x80;
  return isTwoBytes ? 2 : 0;
}
}    // namespace

std::string withoutControls(std::string_view text, std::string_view kept)
{
  std::string safe;
  safe.reserve(text.size());
  std::size_t n = 0;
  while (n < text.size())
  {
    const std::size_t controls = kept.find(text[n]) == kept.npos ? controlLength(&text[n], text.size() - n) : 0;
    if (controls == 0) safe += text[n++];
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
  const bool isNamed = text.find(subject) != std::string::npos;
  complain((isNamed ? "" : subject + ": ") + text + origin + entry.function + ")");
}

void complainAbout(const std::string& subject, const KyCErrorList& reports)
{
  for (unsigned int n = 0; n < reports.getEntryCount(); ++n)
    complainAbout(subject, reports.getEntry(n));
  KyNInventoryKit::Explanation cause;
  const bool isExplained = reports.getEntryCount() != 0 && KyNInventoryKit::explain(reports.getEntry(0).code, cause);
  if (isExplained && *cause.remedy != '\0') complain(std::string("what to do: ") + cause.remedy);
}
