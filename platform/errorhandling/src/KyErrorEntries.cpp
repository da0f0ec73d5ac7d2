// KyErrorEntries.cpp: fills a message's placeholders and keeps the finished report.
#include "KyErrorEntries.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "KyCMessageArguments.h"
#include "KyMessageTables.h"

namespace
{
// Text that is counted first and written next, by the same steps, so that both always agree.
class KyCTextSink
{
public:
  explicit KyCTextSink(char* target) noexcept : m_target(target) {}
  void append(const char* text, std::size_t length) noexcept
  {
    if (m_target != nullptr) std::memcpy(m_target + m_length, text, length);
    m_overflow = m_overflow || length > SIZE_MAX / 4 - m_length;    // hostile lengths on a 32-bit machine
    m_length += length;
  }
  std::size_t getLength() const noexcept { return m_length; }
  bool hasOverflow() const noexcept { return m_overflow; }

private:
  char* m_target;    // null: count only
  std::size_t m_length = 0;
  bool m_overflow = false;
};

// The message with %1 .. %9 replaced. What an argument brings along is never looked at again; a placeholder without an
// argument stays as it is, so that it can be seen.
void fillPlaceholders(KyCTextSink& sink, const char* message, const KyCMessageArguments& arguments) noexcept
{
  while (const char* const percent = std::strchr(message, '%'))
  {
    sink.append(message, static_cast<std::size_t>(percent - message));
    const unsigned int n = static_cast<unsigned int>(static_cast<unsigned char>(percent[1])) - '1';
    if (n < arguments.getCount())
    {
      sink.append(arguments.getText(n), arguments.getLength(n));
      message = percent + 2;
    }
    else
    {
      sink.append("%", 1);
      message = percent + 1;
    }
  }
  sink.append(message, std::strlen(message));
}

// Stands in for a message that no table has: "Message 0x1300808 (%1, %2)" with one placeholder per argument.
class KyCStandIn
{
public:
  KyCStandIn(unsigned int code, unsigned int argumentCount) noexcept
  {
    int length = std::snprintf(m_message, sizeof m_message, "Message 0x%X", code);
    for (unsigned int n = 0; n < argumentCount; ++n)
    {
      length += std::snprintf(m_message + length, sizeof m_message - static_cast<std::size_t>(length), "%s%%%u",
                              n == 0 ? " (" : ", ", n + 1);
    }
    if (argumentCount > 0) std::strcpy(m_message + length, ")");
  }
  const char* getMessage() const noexcept { return m_message; }

private:
  char m_message[64];    // 18 characters, 9 times 4, ")" and the end
};

KyErrorEntry* createWith(const char* message, const KyErrorEntry& head, const KyCMessageArguments& arguments) noexcept
{
  KyCTextSink counter(nullptr);
  fillPlaceholders(counter, message, arguments);
  const std::size_t functionSize = std::strlen(head.function) + 1;
  if (counter.hasOverflow() || functionSize > SIZE_MAX / 4) return nullptr;
  void* const block = std::malloc(sizeof(KyErrorEntry) + functionSize + counter.getLength() + 1);
  if (block == nullptr) return nullptr;

  char* const function = static_cast<char*>(block) + sizeof(KyErrorEntry);
  char* const text = function + functionSize;
  std::memcpy(function, head.function, functionSize);
  KyCTextSink writer(text);
  fillPlaceholders(writer, message, arguments);
  text[writer.getLength()] = '\0';
  return new (block) KyErrorEntry{head.code, head.line, function, text};
}
}    // namespace

KyErrorEntry* KyNErrorEntries::create(unsigned int code, unsigned int line, const char* function, const char* argFormat,
                                      std::va_list values) noexcept
{
  const KyCMessageArguments arguments(argFormat, values);
  const KyErrorEntry head{code, line, function != nullptr ? function : "", ""};
  {
    const KyNMessageTables::KyCLookup lookup(code);
    if (lookup.getMessage() != nullptr) return createWith(lookup.getMessage(), head, arguments);
  }
  return createWith(KyCStandIn(code, arguments.getCount()).getMessage(), head, arguments);
}

void KyNErrorEntries::destroy(KyErrorEntry* entry) noexcept { std::free(entry); }

void KyNErrorEntries::destroy(KyErrorEntry** entries, unsigned int count) noexcept
{
  for (unsigned int n = 0; n < count; ++n)
    destroy(entries[n]);
  std::free(entries);
}
