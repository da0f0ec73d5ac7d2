// KyMessageTables.h: the message tables that are registered at the moment, and the look-up of a code in them.
//
// One registry for the process, usable from any thread at any time: before the error manager exists and after it has
// gone.
#pragma once

#include <mutex>

#include "errorhandling/KyResText.h"

namespace KyNMessageTables
{
void add(const KyResText* table) noexcept;       // without memory: the table is not there, its codes show as numbers
void remove(const KyResText* table) noexcept;    // takes back one add; nothing for a table that is not there
void clear() noexcept;                           // all but this library's own table

// Holds the registry still, so that the text found stays valid: a table may be withdrawn, and its library unloaded, by
// another thread.
class KyCLookup
{
public:
  explicit KyCLookup(unsigned int code);
  // The message text with its placeholders; null when no registered table has the code.
  const char* getMessage() const noexcept { return m_message; }

private:
  std::lock_guard<std::mutex> m_lock;
  const char* m_message;
};
}    // namespace KyNMessageTables
