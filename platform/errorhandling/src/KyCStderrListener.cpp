// KyCStderrListener.cpp: reports as lines on standard error.
#include "KyCStderrListener.h"

#include <cstddef>
#include <cstdio>

namespace
{
// Collects a line and writes it in one piece, or in few when it is very long; asks for no memory.
class KyCLine
{
public:
  ~KyCLine() { flush(); }
  void append(const char* text)
  {
    for (; *text != '\0'; ++text)
      append(static_cast<unsigned char>(*text));
  }
  void appendNumber(const char* format, unsigned int number)
  {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    append(text);
  }
  void end() { put('\n'); }

private:
  void append(unsigned char character)
  {
    static const char digits[] = "0123456789abcdef";
    if (character >= 0x20 && character != 0x7F)
    {
      put(static_cast<char>(character));
      return;
    }
    put('\\');
    put('x');
    put(digits[character >> 4]);
    put(digits[character & 0xF]);
  }
  void put(char character)
  {
    if (m_length == sizeof m_text) flush();
    m_text[m_length++] = character;
  }
  void flush()
  {
    std::fwrite(m_text, 1, m_length, stderr);
    m_length = 0;
  }

  char m_text[1024];
  std::size_t m_length = 0;
};

void write(const char* kind, const KyErrorEntry& entry)
{
  KyCLine line;
  line.append(kind);
  line.appendNumber(" 0x%X", entry.code);
  line.append(" in ");
  line.append(entry.function);
  line.appendNumber(" (line %u): ", entry.line);
  line.append(entry.text);
  line.end();
}
}    // namespace

void KyCStderrListener::onError(const KyErrorEntry& entry) { write("error", entry); }

void KyCStderrListener::onWarning(const KyErrorEntry& entry) { write("warning", entry); }
