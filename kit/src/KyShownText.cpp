#include "KyShownText.h"

#include <cstdio>
#include <cstring>

#include "KyJsonValue.h"

namespace KyNInventoryKit
{
namespace
{
// The part of a text in front of the character that goes beyond so many bytes.
std::string_view beginningOf(std::string_view text, std::size_t longest)
{
  std::size_t end = longest;
  for (unsigned int n = 0; n < 3 && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80; ++n)
    --end;
  return text.substr(0, end);
}

void appendEscaped(std::string& text, char c)
{
  const char* const known = std::strchr("\"\"\\\\\nn\tt\rr", c);
  if (c != '\0' && known != nullptr)
  {
    text += '\\';
    text += known[1];
    return;
  }
  char escaped[5];
  std::snprintf(escaped, sizeof(escaped), "\\x%02X", static_cast<unsigned int>(static_cast<unsigned char>(c)));
  text += escaped;
}

bool isControl(std::string_view character)
{
  const auto byte = static_cast<unsigned char>(character[0]);
  if (character.size() == 1) return byte < 0x20 || byte == 0x7F;
  return byte == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;    // U+0080 .. U+009F
}

}    // namespace

std::string quotedText(std::string_view text)
{
  std::string result = "\"";
  for (std::size_t n = 0; n < text.size();)
  {
    const std::size_t length = utf8Length(text, n);
    if (length == 0 || isControl(text.substr(n, length)) || text[n] == '"' || text[n] == '\\')
    {
      for (const char c : text.substr(n, length == 0 ? 1 : length))
        appendEscaped(result, c);
    }
    else
    {
      result += text.substr(n, length);
    }
    n += length == 0 ? 1 : length;
  }
  return result + "\"";
}

std::string quotedText(std::string_view text, std::size_t longest)
{
  if (text.size() <= longest) return quotedText(text);
  std::string shown = quotedText(beginningOf(text, longest));
  return shown.insert(shown.size() - 1, "...");
}

std::string shortenedText(std::string_view text, std::size_t longest)
{
  return text.size() <= longest ? std::string(text) : std::string(beginningOf(text, longest)) + "...";
}
}    // namespace KyNInventoryKit
