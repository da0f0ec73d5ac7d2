#include "inventorykit/KyExplain.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

#include "KyEditMessages.h"

namespace KyNInventoryKit
{
namespace
{
constexpr Explanation s_explanations[] = {
#include "KyExplanations.inc"
};

// The number of a text that is one from its first to its last character; 0 for any other, and for 0 itself.
unsigned int numberOf(const std::string& text, int base)
{
  unsigned int number = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number, base);
  return error == std::errc() && end == last ? number : 0;
}

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// The first "0x..." of a text that fits a code; 0 when there is none.
unsigned int codeInside(const std::string& text)
{
  for (std::size_t at = 0; at + 2 < text.size(); ++at)
  {
    if (text[at] != '0' || (text[at + 1] != 'x' && text[at + 1] != 'X')) continue;
    std::size_t end = at + 2;
    while (end < text.size() && isHexDigit(text[end]))
      ++end;
    const unsigned int code = numberOf(text.substr(at + 2, end - at - 2), 16);
    if (code != 0) return code;
    at = end - 1;
  }
  return 0;
}

std::string hex(unsigned int code)
{
  char text[16];
  std::snprintf(text, sizeof(text), "0x%X", code);
  return text;
}

// " Did you mean 0x1300005?", where 1300005 was typed; else empty.
std::string suggestion(const std::string& text)
{
  Explanation meant;
  const unsigned int code = numberOf(text, 16);
  return explain(code, meant) ? " Did you mean " + hex(code) + "?" : "";
}
}    // namespace

bool explain(unsigned int code, Explanation& explanation)
{
  const auto found =
      std::lower_bound(std::begin(s_explanations), std::end(s_explanations), code,
                       [](const Explanation& known, unsigned int wanted) { return known.code < wanted; });
  if (found == std::end(s_explanations) || found->code != code) return false;
  explanation = *found;
  return true;
}

std::vector<Explanation> allExplanations() { return {std::begin(s_explanations), std::end(s_explanations)}; }

unsigned int readCode(KyCErrorListPool& pool, const std::string& text)
{
  unsigned int code = numberOf(text, 10);
  if (code == 0) code = codeInside(text);
  if (code == 0) pool.setError(KY_EDIT_MSG_NOT_A_CODE, __LINE__, "readCode", "%s", text.c_str());
  return code;
}

bool explainText(KyCErrorListPool& pool, const std::string& text, Explanation& explanation)
{
  const unsigned int code = readCode(pool, text);
  if (code == 0) return false;
  if (explain(code, explanation)) return true;
  pool.setError(KY_EDIT_MSG_NO_SUCH_CODE, __LINE__, "explainText", "%s%s", hex(code).c_str(), suggestion(text).c_str());
  return false;
}
}    // namespace KyNInventoryKit
