// KyMessageTables.cpp: the registry of message tables.
#include "KyMessageTables.h"

#include <cstdlib>
#include <cstring>

#include "KyErrorHandlingMessages.h"

namespace
{
constexpr unsigned int codesPerGroup = 0x800;

// All constant-initialised and without destructors: there before the first and after the last line of anybody's code.
std::mutex s_mutex;
const KyResText** s_tables = nullptr;
unsigned int s_count = 0;
unsigned int s_capacity = 0;

bool reserveOne() noexcept
{
  if (s_count < s_capacity) return true;
  const unsigned int capacity = s_capacity == 0 ? 8 : 2 * s_capacity;
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers
  void* const grown = std::realloc(s_tables, capacity * sizeof *s_tables);
  if (grown == nullptr) return false;
  s_tables = static_cast<const KyResText**>(grown);
  s_capacity = capacity;
  return true;
}

const char* findIn(const KyResText& table, unsigned int code) noexcept
{
  if (code < table.codeBase) return nullptr;
  const unsigned int group = (code - table.codeBase) / codesPerGroup;
  if (group >= table.groupCount) return nullptr;
  const unsigned int first = table.groupBoundaries[group];
  const unsigned int end = table.groupBoundaries[group + 1];
  const unsigned int position = (code - table.codeBase) % codesPerGroup;
  return first < end && position < end - first ? table.messages[first + position] : nullptr;
}

const char* find(unsigned int code) noexcept
{
  for (unsigned int n = s_count; n-- > 0;)    // the table registered last comes first
  {
    if (const char* message = findIn(*s_tables[n], code)) return message;
  }
  return findIn(kyErrorHandlingMessages, code);
}
}    // namespace

void KyNMessageTables::add(const KyResText* table) noexcept
{
  const std::lock_guard<std::mutex> lock(s_mutex);
  if (table != nullptr && reserveOne()) s_tables[s_count++] = table;
}

void KyNMessageTables::remove(const KyResText* table) noexcept
{
  const std::lock_guard<std::mutex> lock(s_mutex);
  unsigned int n = s_count;
  while (n > 0 && s_tables[n - 1] != table)
    --n;
  if (n == 0) return;
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers
  std::memmove(s_tables + n - 1, s_tables + n, (s_count - n) * sizeof *s_tables);
  --s_count;
}

void KyNMessageTables::clear() noexcept
{
  const std::lock_guard<std::mutex> lock(s_mutex);
  std::free(s_tables);
  s_tables = nullptr;
  s_count = 0;
  s_capacity = 0;
}

KyNMessageTables::KyCLookup::KyCLookup(unsigned int code) : m_lock(s_mutex), m_message(find(code)) {}
