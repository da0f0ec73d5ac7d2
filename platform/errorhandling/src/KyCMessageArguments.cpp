// KyCMessageArguments.cpp: reads a report's variable arguments.
#include "KyCMessageArguments.h"

#include <cstdio>
#include <cstring>

KyCMessageArguments::KyCMessageArguments(const char* argFormat, std::va_list values) noexcept
{
  std::va_list rest;    // an own copy, because a va_list parameter may be an array that cannot be passed by reference
  va_copy(rest, values);
  const char* at = argFormat != nullptr ? argFormat : "";
  while (m_count < maxCount && (at = std::strchr(at, '%')) != nullptr)
  {
    ++at;
    if (*at == '%')
      ++at;
    else if (!read(at, rest))
      break;
  }
  va_end(rest);
}

// conversion stands behind the '%' and is moved behind the conversion.
bool KyCMessageArguments::read(const char*& conversion, std::va_list& values) noexcept
{
  enum class Size
  {
    Int,
    Long,
    LongLong,
    SizeT
  } size = Size::Int;
  if (*conversion == 'z')
  {
    size = Size::SizeT;
    ++conversion;
  }
  else if (*conversion == 'l')
  {
    const bool twice = conversion[1] == 'l';
    size = twice ? Size::LongLong : Size::Long;
    conversion += twice ? 2 : 1;
  }
  switch (*conversion++)
  {
    case 'd':
    case 'i':
      if (size == Size::Int) addNumber("%d", va_arg(values, int));
      if (size == Size::Long) addNumber("%ld", va_arg(values, long));
      if (size == Size::LongLong) addNumber("%lld", va_arg(values, long long));
      if (size == Size::SizeT) addNumber("%td", va_arg(values, std::ptrdiff_t));
      return true;
    case 'u':
      if (size == Size::Int) addNumber("%u", va_arg(values, unsigned int));
      if (size == Size::Long) addNumber("%lu", va_arg(values, unsigned long));
      if (size == Size::LongLong) addNumber("%llu", va_arg(values, unsigned long long));
      if (size == Size::SizeT) addNumber("%zu", va_arg(values, std::size_t));
      return true;
    case 'x':
      if (size == Size::Int) addNumber("%x", va_arg(values, unsigned int));
      if (size == Size::Long) addNumber("%lx", va_arg(values, unsigned long));
      if (size == Size::LongLong) addNumber("%llx", va_arg(values, unsigned long long));
      if (size == Size::SizeT) addNumber("%zx", va_arg(values, std::size_t));
      return true;
    case 'X':
      if (size == Size::Int) addNumber("%X", va_arg(values, unsigned int));
      if (size == Size::Long) addNumber("%lX", va_arg(values, unsigned long));
      if (size == Size::LongLong) addNumber("%llX", va_arg(values, unsigned long long));
      if (size == Size::SizeT) addNumber("%zX", va_arg(values, std::size_t));
      return true;
    case 's':
      if (size != Size::Int) return false;
      addText(va_arg(values, const char*));
      return true;
    case 'c':
      if (size != Size::Int) return false;
      addCharacter(va_arg(values, int));
      return true;
    case 'p':
      if (size != Size::Int) return false;
      addNumber("%p", va_arg(values, const void*));
      return true;
    case 'f':
      if (size != Size::Int && size != Size::Long) return false;
      addNumber("%f", va_arg(values, double));
      return true;
    case 'g':
      if (size != Size::Int && size != Size::Long) return false;
      addNumber("%g", va_arg(values, double));
      return true;
    default:
      return false;
  }
}

// Used with the literals above alone.
template <typename T>
void KyCMessageArguments::addNumber(const char* format, T value) noexcept
{
  char* const text = m_numbers[m_count];
  const int length = std::snprintf(text, numberSize, format, value);
  const std::size_t held = length < 0 ? 0 : static_cast<std::size_t>(length);
  add(text, held < numberSize ? held : numberSize - 1);
}

void KyCMessageArguments::addCharacter(int character) noexcept
{
  char* const text = m_numbers[m_count];
  text[0] = static_cast<char>(character);
  add(text, text[0] != '\0' ? 1 : 0);
}

void KyCMessageArguments::addText(const char* text) noexcept
{
  const char* const held = text != nullptr ? text : "";
  add(held, std::strlen(held));
}

void KyCMessageArguments::add(const char* text, std::size_t length) noexcept
{
  m_texts[m_count] = text;
  m_lengths[m_count] = length;
  ++m_count;
}
