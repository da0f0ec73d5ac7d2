// KyCErrorList.cpp: the growing list of reports.
#include "errorhandling/KyCErrorList.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "KyErrorEntries.h"

KyCErrorList::KyCErrorList() noexcept = default;

KyCErrorList::~KyCErrorList() { KyNErrorEntries::destroy(m_entries, m_entryCount); }

void KyCErrorList::setError(unsigned int code, unsigned int line, const char* function, const char* argFormat,
                            ...) noexcept
{
  ++m_errorCount;    // first and always: callers see a failure by it, whatever memory is left
  std::va_list values;
  va_start(values, argFormat);
  KyErrorEntry* const entry = KyNErrorEntries::create(code, line, function, argFormat, values);
  va_end(values);
  if (entry == nullptr) return;
  if (m_entryCount == m_entryCapacity && !reserve(m_entryCapacity == 0 ? 4 : 2 * m_entryCapacity))
  {
    KyNErrorEntries::destroy(entry);
    return;
  }
  m_entries[m_entryCount++] = entry;
}

bool KyCErrorList::reserve(unsigned int capacity) noexcept
{
  if (capacity <= m_entryCapacity) return true;
  // NOLINTBEGIN(bugprone-sizeof-expression): an array of pointers
  const std::size_t count = capacity;
  if (count > SIZE_MAX / sizeof *m_entries) return false;    // on a 32-bit machine
  void* const grown = std::realloc(m_entries, count * sizeof *m_entries);
  // NOLINTEND(bugprone-sizeof-expression)
  if (grown == nullptr) return false;
  m_entries = static_cast<KyErrorEntry**>(grown);
  m_entryCapacity = capacity;
  return true;
}

KyCErrorList::KyEntries KyCErrorList::takeEntries() noexcept
{
  m_entryCapacity = 0;
  return {std::exchange(m_entries, nullptr), std::exchange(m_entryCount, 0U)};
}

unsigned int KyCErrorList::getEntryCount() const noexcept { return m_entryCount; }

const KyErrorEntry& KyCErrorList::getEntry(unsigned int n) const noexcept
{
  static const KyErrorEntry none{0, 0, "", ""};
  return n < m_entryCount ? *m_entries[n] : none;
}
