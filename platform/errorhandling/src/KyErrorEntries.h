// KyErrorEntries.h: makes and frees the entries of error lists.
#pragma once

#include <cstdarg>

#include "errorhandling/KyCErrorList.h"

namespace KyNErrorEntries
{
// One report with its finished text, in one block: nothing of it points to the caller, to a message table or to the
// reporting library, any of which may be gone when it is read. Null without memory.
KyErrorEntry* create(unsigned int code, unsigned int line, const char* function, const char* argFormat,
                     std::va_list values) noexcept;
void destroy(KyErrorEntry* entry) noexcept;
// Frees the entries and the array.
void destroy(KyErrorEntry** entries, unsigned int count) noexcept;
}    // namespace KyNErrorEntries
