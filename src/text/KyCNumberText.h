// KyCNumberText.h: the numbers and versions of a dump as text.
#pragma once

#include <charconv>

#include "inventory/KyCInventoryParameter.h"

// A short text that is formatted in place, without the heap. Its forms are those of KyCParam::getValueAsString.
class KyCNumberText
{
public:
  static constexpr unsigned int size = 48;    // bytes; a version has four numbers of ten digits and three dots

  KyCNumberText() : m_length(0) { m_text[0] = '\0'; }

  const char* c_str() const { return m_text; }    // followed by size bytes to read, whatever the length
  unsigned int length() const { return m_length; }

  // Behind what is there already.
  void append(char character)
  {
    m_text[m_length++] = character;
    m_text[m_length] = '\0';
  }
  template <typename T>
  void appendNumber(T number)
  {
    char* const end = std::to_chars(m_text + m_length, m_text + size - 1, number).ptr;
    *end = '\0';
    m_length = static_cast<unsigned int>(end - m_text);
  }

  // The value of a parameter; false for one whose type is neither a number nor a version.
  bool appendValue(KyCErrorListPool& pool, const KyCInventoryParameter& parameter);

private:
  void appendVersion(const KyCVersion& version);

  char m_text[size];
  unsigned int m_length;
};
