// KyShownText.h: texts of files and command lines, as they stand in lines for people.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KyNInventoryKit
{
// What messages quote of a command line, in bytes.
constexpr std::size_t LONGEST_QUOTE = 60;

// The text in double quotes. What would end the quotes or the line, control characters and bytes that are no UTF-8 are
// escaped: \" \\ \n \t \r \x1B.
std::string quotedText(std::string_view text);

// As quotedText; of a text of more bytes than `longest` only the beginning, with "..." in front of the closing quotes.
std::string quotedText(std::string_view text, std::size_t longest);

// The text, or the beginning of one of more bytes than `longest`, with "..." behind it. Characters of UTF-8 stay whole.
std::string shortenedText(std::string_view text, std::size_t longest = LONGEST_QUOTE);
}    // namespace KyNInventoryKit
