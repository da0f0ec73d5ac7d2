#include "Numbers.h"

#include <charconv>

std::optional<unsigned int> parseWholeNumber(std::string_view text, unsigned int lowest, unsigned int highest)
{
  unsigned int number = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  if (error != std::errc() || end != last || number < lowest || number > highest) return std::nullopt;
  return number;
}

CLI::Validator wholeNumber(unsigned int lowest, unsigned int highest)
{
  const std::string refusal =
      "must be a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
  return CLI::Validator([lowest, highest, refusal](const std::string& text)
                        { return parseWholeNumber(text, lowest, highest) ? std::string() : refusal; },
                        "");
}
