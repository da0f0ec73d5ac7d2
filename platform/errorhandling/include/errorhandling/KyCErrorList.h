// KyCErrorList.h: a list of recorded errors, each with its finished text.
#pragma once

#include "errorhandling/KyErrorHandlingApi.h"

// One recorded error or warning. The texts belong to the list (or, in a listener's call, to the caller) and are never
// null.
struct KyErrorEntry
{
  unsigned int code;       // message code, unique over all registered catalogues
  unsigned int line;       // source line of the reporting site
  const char* function;    // plain name of the reporting function
  const char* text;        // message text with its placeholders filled
};

class KY_ERRORHANDLING_API KyCErrorList
{
 public:
  KyCErrorList() noexcept;
  ~KyCErrorList();
  KyCErrorList(const KyCErrorList&) = delete;
  KyCErrorList& operator=(const KyCErrorList&) = delete;

  // argFormat: one conversion per placeholder, in order, of "%d" (int), "%u" (unsigned int), "%s" (const char*), ...; null: none
  void setError(unsigned int code, unsigned int line, const char* function, const char* argFormat, ...) noexcept;
  unsigned int getErrorCount() const noexcept;     // only grows
  unsigned int getEntryCount() const noexcept;     // entries at hand; fewer than errors after sendErrorList or without memory
  const KyErrorEntry& getEntry(unsigned int n) const noexcept;    // beyond the end: an entry of code 0 and empty texts

 private:
  friend class KyCErrorManager;
  KyErrorEntry** m_entries = nullptr;
  unsigned int m_entryCount = 0;
  unsigned int m_entryCapacity = 0;
  unsigned int m_errorCount = 0;
};
