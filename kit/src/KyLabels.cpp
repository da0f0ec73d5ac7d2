#include "KyLabels.h"

#include <algorithm>
#include <string>

#include "KyIdentifiers.h"
#include "KyPseudonyms.h"

namespace KyNInventoryKit
{
namespace
{
struct Label
{
  std::string_view name;    // a blank stands for one of " _-", or for nothing
  bool isHost;
  bool isEnough;    // alone, without ":", "=" or "#" behind it
  bool isSure;      // with one of them, a word without digits is taken, too
};

// Where one begins like another, the longer one stands first.
constexpr Label s_labels[] = {
    {"serial number", false, true, true},
    {"serial num", false, true, true},
    {"serial no", false, true, true},
    {"serial nr", false, true, true},
    {"serial", false, false, false},
    {"s/n", false, true, true},
    {"sn", false, true, false},
    {"asset tag", false, true, true},
    {"asset number", false, true, true},
    {"asset no", false, true, true},
    {"asset id", false, true, true},
    {"asset", false, false, false},
    {"inventory number", false, true, true},
    {"inventory no", false, true, true},
    {"uuid", false, true, false},
    {"partuuid", false, true, false},
    {"guid", false, true, false},
    {"machine id", false, false, false},
    {"hostname", true, true, true},
    {"host name", true, true, true},
    {"host", true, false, true},
    {"nodename", true, false, true},
    {"node name", true, false, true},
    {"computer name", true, false, true},
};

constexpr std::size_t s_shortestAlone = 4;    // of a word that only blanks part from its label
constexpr std::size_t s_mostSeparators = 32;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isWord(char c) { return isDigit(c) || isUpper(c) || isLower(c); }
bool isOneOf(char c, std::string_view set) { return c != '\0' && set.find(c) != std::string_view::npos; }

char charAt(std::string_view text, std::size_t at) { return at < text.size() ? text[at] : '\0'; }
char lowerAt(std::string_view text, std::size_t at)
{
  const char c = charAt(text, at);
  return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

// Words also begin inside of "ProductUUID".
bool beginsWord(std::string_view text, std::size_t at)
{
  return isWord(text[at]) && (at == 0 || !isWord(text[at - 1]) || (isUpper(text[at]) && isLower(text[at - 1])));
}

// The end of a label that begins here; 0 when it is another text.
std::size_t endOfLabel(std::string_view text, std::size_t at, std::string_view name)
{
  for (const char c : name)
  {
    if (c == ' ')
      at += isOneOf(charAt(text, at), " _-") ? 1 : 0;
    else if (lowerAt(text, at++) != c)
      return 0;
  }
  return isWord(charAt(text, at)) ? 0 : at;
}

// Passes over what stands between a label and its word.
std::size_t skip(std::string_view text, std::size_t at, std::string_view set, std::size_t end)
{
  while (at < end && isOneOf(charAt(text, at), set))
    ++at;
  return at;
}

bool isCommonWord(const std::string& word)
{
  for (const char* const common : {"a",
                                   "an",
                                   "and",
                                   "are",
                                   "as",
                                   "at",
                                   "be",
                                   "by",
                                   "default",
                                   "empty",
                                   "for",
                                   "from",
                                   "has",
                                   "in",
                                   "is",
                                   "invalid",
                                   "missing",
                                   "n/a",
                                   "na",
                                   "no",
                                   "none",
                                   "not",
                                   "null",
                                   "of",
                                   "on",
                                   "or",
                                   "please",
                                   "see",
                                   "system",
                                   "tbd",
                                   "the",
                                   "this",
                                   "to",
                                   "true",
                                   "false",
                                   "undefined",
                                   "unset",
                                   "unknown",
                                   "will",
                                   "with",
                                   "yes",
                                   "localhost",
                                   "localhost.localdomain"})
    if (word == common) return true;
  return false;
}

// "serial: 115200", "Serial: 8250/16550 driver": of the port, not of the machine.
bool isAboutPorts(const std::string& word)
{
  for (const char* const start : {"tty", "com", "uart", "rs232", "rs-232", "rs485", "rs-485", "8250", "16550"})
    if (word.compare(0, std::char_traits<char>::length(start), start) == 0) return true;
  for (const char* const rate :
       {"1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200", "230400", "460800", "921600"})
    if (word == rate) return true;
  return false;
}

// "Host: bridge", "host=8080", "host: 10.0.0.1": the kind of a device, a number, or an address, which its form tells.
bool isNoHost(std::string_view text, std::size_t begin, const std::string& word)
{
  Identifier ignored;
  if (identifierAt(text, begin, false, ignored)) return true;
  const bool isHexNumber = word.compare(0, 2, "0x") == 0;
  if (isHexNumber || word.find_first_not_of("0123456789.") == std::string::npos) return true;
  for (const char* const kind :
       {"adapter",  "ahci",   "any",  "bridge",  "bus",  "channel", "controller", "cpu",     "device",
        "disabled", "driver", "ehci", "enabled", "hci",  "host",    "interface",  "memory",  "mode",
        "name",     "nvme",   "off",  "ohci",    "ok",   "only",    "os",         "pci",     "pcie",
        "port",     "ready",  "sata", "scsi",    "side", "uhci",    "usb",        "virtual", "xhci"})
    if (word == kind) return true;
  return false;
}

std::size_t lengthOfWord(std::string_view text, std::size_t begin, bool isHost)
{
  std::size_t end = begin;
  while (end < text.size() && (isWord(text[end]) || isOneOf(text[end], isHost ? "._-" : "._-+/")))
    ++end;
  while (end > begin && !isWord(text[end - 1]))
    --end;
  return end - begin;
}

bool isLabel(std::string_view text, std::size_t at)
{
  return std::any_of(std::begin(s_labels), std::end(s_labels),
                     [&](const Label& label) { return endOfLabel(text, at, label.name) != 0; });
}

bool findWord(std::string_view text, std::size_t behindLabel, const Label& label, LabelledWord& found)
{
  const std::size_t limit = std::min(text.size(), behindLabel + s_mostSeparators);
  const std::size_t separator = skip(text, behindLabel, " \t\"').]", limit);
  const std::size_t behind = skip(text, separator, ":=#", limit);
  const bool isNamed = behind != separator;
  const std::string_view between = text.substr(behindLabel, separator - behindLabel);
  if (!isNamed && (!label.isEnough || between.find_first_of(" \t") == std::string_view::npos)) return false;
  found.begin = skip(text, behind, " \t\"'([{<", limit);
  if (found.begin == limit || !isWord(text[found.begin])) return false;
  found.length = lengthOfWord(text, found.begin, label.isHost);
  found.isHost = label.isHost;
  const std::string word = lowerCase(text.substr(found.begin, found.length));
  const bool hasDigit = std::any_of(word.begin(), word.end(), isDigit);
  if (isCommonWord(word) || (label.name == "serial" && isAboutPorts(word))) return false;
  if (label.name == "host" && isNoHost(text, found.begin, word)) return false;
  const bool isNextName = !hasDigit && isOneOf(charAt(text, found.begin + found.length), ":=");
  if (isNextName || isLabel(text, found.begin)) return false;    // an empty field, and the next one
  return isNamed ? hasDigit || label.isSure : hasDigit && word.size() >= s_shortestAlone;
}
}    // namespace

std::vector<LabelledWord> labelledWords(std::string_view text)
{
  std::vector<LabelledWord> words;
  for (std::size_t at = 0; at < text.size(); ++at)
  {
    if (!beginsWord(text, at)) continue;
    for (const Label& label : s_labels)
    {
      if (lowerAt(text, at) != label.name[0]) continue;
      const std::size_t end = endOfLabel(text, at, label.name);
      LabelledWord word;
      if (end == 0 || !findWord(text, end, label, word)) continue;
      words.push_back(word);
      at = word.begin + word.length - 1;
      break;
    }
  }
  return words;
}
}    // namespace KyNInventoryKit
