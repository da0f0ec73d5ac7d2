// The sink of a dump: collects text in one growing block, or prints it at once.
#include "inventory/KyCInventoryItemStream.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace
{
constexpr unsigned int growthReserve = 1024;     // bytes: the first block, and what each growth adds to the need
constexpr unsigned int formattedSize = 1024;     // bytes of writef's local buffer
constexpr unsigned int formattedLimit = 1023;    // bytes of it that are used, the terminator included
constexpr unsigned int takenOverFrom = 65536;    // bytes: from here on the finished string takes over the buffer
}    // namespace

KyCInventoryItem::MyStream::MyStream(bool print) : m_print(print), m_buffer(nullptr), m_capacity(0), m_length(0)
{
  if (m_print) return;
  m_buffer = static_cast<char*>(std::malloc(growthReserve));
  if (m_buffer != nullptr) m_capacity = growthReserve;
}

KyCInventoryItem::MyStream::~MyStream() { std::free(m_buffer); }

bool KyCInventoryItem::MyStream::write(const char* text)
{
  if (text == nullptr) text = "";
  if (m_print)
  {
    // The text is the format: this is what print mode does, and the header warns of it. The compilers' warning is
    // right everywhere else, so it is silenced for this one call.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::printf(text);
#pragma GCC diagnostic pop
    return true;
  }
  if (m_buffer == nullptr) return false;
  const unsigned int textLength = KyCString::strlen(text);
  if (m_capacity - m_length < textLength && !grow(textLength)) return false;
  std::memcpy(m_buffer + m_length, text, textLength);
  m_length += textLength;
  return true;
}

bool KyCInventoryItem::MyStream::writef(const char* format, ...)
{
  char formatted[formattedSize];
  std::va_list arguments;
  va_start(arguments, format);
  const int result = std::vsnprintf(formatted, formattedLimit, format, arguments);
  va_end(arguments);
  return result >= 0 && write(formatted);
}

KyCString KyCInventoryItem::MyStream::getString() const
{
  if (m_buffer == nullptr) return KyCString();
  return KyCString(m_buffer, m_length);
}

// A long text is not copied: with two blocks of it, half the time of a dump would go into fresh pages.
bool KyCInventoryItem::MyStream::takeString(KyCErrorListPool& pool, KyCString& text)
{
  if (m_buffer == nullptr) return false;
  return (m_length >= takenOverFrom && text.takeOver(m_buffer, m_length)) || text.assign(pool, m_buffer, m_length);
}

// Makes room for a text that does not fit; without memory the sink is left without a buffer.
bool KyCInventoryItem::MyStream::grow(unsigned int textLength)
{
  const std::uint64_t needed = std::uint64_t{m_capacity} + textLength + growthReserve;
  const bool possible = needed <= std::numeric_limits<unsigned int>::max();
  void* const grown = possible ? std::realloc(m_buffer, static_cast<std::size_t>(needed)) : nullptr;
  if (grown == nullptr)
  {
    std::free(m_buffer);
    m_buffer = nullptr;    // which ends the sink, whatever the numbers say
    return false;
  }
  m_buffer = static_cast<char*>(grown);
  m_capacity = static_cast<unsigned int>(needed);
  return true;
}
