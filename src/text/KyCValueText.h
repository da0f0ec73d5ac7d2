// KyCValueText.h: a string value on its way into a dump.
#pragma once

#include <cstddef>

// A private copy of a value's text, escaped or as it is. Lives for the writing of one value; owns its copy.
class KyCValueText
{
public:
  //   text     the value, up to its zero byte
  //   escape   true: mark-up characters become entities, stray bytes of 0x80 or above their UTF-8 form
  KyCValueText(const char* text, bool escape);
  ~KyCValueText();
  KyCValueText(const KyCValueText&) = delete;
  KyCValueText& operator=(const KyCValueText&) = delete;

  // How many bytes at the start of a text stay as they are: up to its zero byte, or up to the first byte that escaping
  // looks at, or the first line feed.
  static std::size_t unchangedLength(const char* text, bool escape, bool breakLines);

  bool isValid() const { return m_text != nullptr; }    // false: there was no memory for the copy
  const char* c_str() const { return m_text; }
  std::size_t length() const { return m_length; }
  bool hasLineFeed() const;

  // Hands each line in order to writeLine(const char* line, std::size_t length, bool ended): with ended true, the line
  // includes the line feed at its end; the text behind the last line feed, unless it is empty, comes last with ended
  // false. The result is false as soon as writeLine yields false.
  template <typename TWriteLine>
  bool forEachLine(TWriteLine writeLine);

private:
  char* m_text;
  std::size_t m_length;
};

// A line needs a terminator of its own only while it is written, so each is cut out of the copy and put back.
template <typename TWriteLine>
bool KyCValueText::forEachLine(TWriteLine writeLine)
{
  char* line = m_text;
  while (*line != '\0')
  {
    char* end = line + unchangedLength(line, false, true);
    const bool ended = *end == '\n';
    if (ended) ++end;
    const char next = *end;
    *end = '\0';
    const bool written = writeLine(static_cast<const char*>(line), static_cast<std::size_t>(end - line), ended);
    *end = next;
    if (!written) return false;
    line = end;
  }
  return true;
}
