// Printable.h: texts from outside on their way to a terminal.
#pragma once

#include <string>

// The text with its control characters as \xNN: folders and files may be named, and hold, whatever they like, line feeds
// and escape sequences for terminals too. U+0080 .. U+009F count as control characters as well.
std::string printable(const std::string& text);
