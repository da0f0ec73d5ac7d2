#include <cstdint>
#include <cstdio>
#include <cstring>

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyNInventoryIDs.h"

namespace
{
bool isDigit(char character) noexcept { return character >= '0' && character <= '9'; }

// Value of the character as a digit of numbers up to base 16; 16 for anything else.
unsigned int digitValue(char character) noexcept
{
  if (isDigit(character)) return static_cast<unsigned int>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<unsigned int>(character - 'a') + 10;
  if (character >= 'A' && character <= 'F') return static_cast<unsigned int>(character - 'A') + 10;
  return 16;
}

// strtoul(text, nullptr, 0) of a machine whose long has 32 bits, on any machine and in any locale: white space and a
// sign in front are accepted, too large a number gives 0xFFFFFFFF, and no digit at all gives 0.
unsigned int readNumber(const char* text) noexcept
{
  text += std::strspn(text, " \t\n\v\f\r");
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;

  unsigned int base = 10;
  if (*text == '0')
  {
    const bool hexadecimal = (text[1] == 'x' || text[1] == 'X') && digitValue(text[2]) < 16;
    base = hexadecimal ? 16 : 8;
    if (hexadecimal) text += 2;
  }
  std::uint64_t number = 0;
  for (; digitValue(*text) < base; ++text)
  {
    number = number * base + digitValue(*text);
    if (number > UINT32_MAX) return UINT32_MAX;    // with a minus in front, too
  }
  const auto value = static_cast<unsigned int>(number);
  return negative ? 0u - value : value;
}

// The registered ID of this name. 0: there is none; and the name of ID 0 is not found either.
unsigned int findName(const char* token, std::size_t length) noexcept
{
  const unsigned int count = KyNInventoryIDs::Map.getCount();
  for (unsigned int id = 1; id < count; ++id)
  {
    const char* const name = KyNInventoryIDs::Map.get(id);
    if (*name == *token && std::strncmp(name, token, length) == 0 && name[length] == '\0') return id;
  }
  return 0;
}

// Where the parts of one element stand in a text.
struct KyElementText
{
  const char* token;
  std::size_t tokenLength;
  const char* index;    // null: no index given
  const char* next;     // where the next element begins
};

KyElementText splitElement(const char* cursor) noexcept
{
  KyElementText element{cursor, std::strcspn(cursor, "/["), nullptr, nullptr};
  cursor += element.tokenLength;
  if (*cursor == '[')
  {
    element.index = ++cursor;
    cursor += std::strcspn(cursor, "]");
    if (*cursor == ']') ++cursor;
  }
  if (*cursor == '/') ++cursor;
  element.next = cursor;
  return element;
}

unsigned int countElements(const char* text) noexcept
{
  unsigned int count = 0;
  for (; *text != '\0'; text = splitElement(text).next)
    ++count;
  return count;
}

KyCInventoryAddress::TElement readElement(const KyElementText& text) noexcept
{
  return {isDigit(*text.token) ? readNumber(text.token) : findName(text.token, text.tokenLength),
          text.index != nullptr ? readNumber(text.index) : 1};
}
}    // namespace

const char* KyCInventoryAddress::getCategoryNameCStr() const noexcept
{
  const char* const name = KyNInventoryIDs::Map.get(getCategory());
  return name != nullptr ? name : "";
}

KyCString KyCInventoryAddress::toString() const
{
  KyCString text;
  for (unsigned int n = 0; n < m_length; ++n)
  {
    if (n != 0) text += "/";
    const char* const name = KyNInventoryIDs::Map.get(m_elements[n].id);
    if (name != nullptr)
      text += name;
    else
      text += m_elements[n].id;
    if (m_elements[n].index != 1)
    {
      text += "[";
      text += m_elements[n].index;
      text += "]";
    }
  }
  return text;
}

void KyCInventoryAddress::print() const { std::puts(toString().c_str()); }

void KyCInventoryAddress::readFromString(const KyCString& text)
{
  clear();
  const char* cursor = text.c_str();
  // Counted first: the array gets its exact size at once, and one element needs none.
  if (!reserve(countElements(cursor))) return;
  while (*cursor != '\0')
  {
    const KyElementText elementText = splitElement(cursor);
    const TElement element = readElement(elementText);
    if (element.id == 0)
    {
      clear();
      return;
    }
    m_elements[m_length++] = element;
    cursor = elementText.next;
  }
}
