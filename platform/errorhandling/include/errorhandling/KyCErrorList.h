// KyCErrorList.h: a list of recorded errors, each with its finished text.
//
//   #include "errorhandling/KyCErrorListPool.h"
//   KyCErrorListPool pool;
//   const unsigned int before = pool.getErrorCount();
//   tree.createParameter(pool, address, 12, "mV", true, 0);
//   if (pool.getErrorCount() != before) std::puts(pool.getEntry(pool.getEntryCount() - 1).text);
#pragma once

#include "errorhandling/KyErrorHandlingApi.h"

struct KyCreatedErrorList;

// One recorded error or warning. The texts belong to the list (or, in a listener's call, to the caller) and are never
// null.
struct KyErrorEntry
{
  unsigned int code;       // message code, unique over all registered catalogues
  unsigned int line;       // source line of the reporting site
  const char* function;    // plain name of the reporting function
  const char* text;        // message text with its placeholders filled
};

// Errors in the order in which they were recorded. Whoever makes a list owns it, on the stack too; the list owns its
// entries. One thread at a time may use a list; different lists may be used by different threads at once.
class KY_ERRORHANDLING_API KyCErrorList
{
public:
  KyCErrorList() noexcept;
  ~KyCErrorList();
  KyCErrorList(const KyCErrorList&) = delete;
  KyCErrorList& operator=(const KyCErrorList&) = delete;

  // Records one error. Its text is finished now: the placeholders %1 .. %9 of the message that is registered for the
  // code are replaced by the arguments. Without such a message the code and the arguments stand in: "Message 0x1300808
  // (first, second)". An argument's own text is taken as it is, with whatever percent signs it holds; a placeholder
  // without an argument stays as it is.
  //
  //   code       message code
  //   line       source line of the reporting site
  //   function   plain name of the reporting function, copied; null is taken as ""
  //   argFormat  one conversion per placeholder, in order; null for none. The first nine count. Conversions, without
  //              flags, widths and precisions:
  //                %d %i    int              with l: long, with ll: long long, with z: ptrdiff_t
  //                %u %x %X unsigned int     with l: unsigned long, with ll: unsigned long long, with z: size_t
  //                %s       const char*, copied; null reads as ""
  //                %c       char             the NUL character reads as ""
  //                %f %g    double
  //                %p       const void*
  //              What stands between conversions does not count; an unknown one ends the arguments.
  //
  // Errors: none; never throws. Without memory the entry is missing and the count grows all the same.
  // Cost:   one block, and now and then a larger array of entries.
  void setError(unsigned int code, unsigned int line, const char* function, const char* argFormat, ...) noexcept
      __attribute__((format(printf, 5, 6)));

  // The number of errors recorded so far. It only grows, also where the entry could not be kept: a call failed if it
  // has grown. Cannot fail.
  unsigned int getErrorCount() const noexcept { return m_errorCount; }

  // The number of entries at hand: fewer than errors after KyCErrorManager::sendErrorList, which takes them away, or
  // when memory was exhausted. Cannot fail.
  unsigned int getEntryCount() const noexcept;

  // The entry at position n, 0 .. getEntryCount() - 1, in the order of recording. Beyond the end: an entry of code 0,
  // line 0 and empty texts. Cannot fail.
  // Ownership: the list's; holds until the list is sent or destroyed, also when further errors are recorded.
  const KyErrorEntry& getEntry(unsigned int n) const noexcept;

private:
  friend class KyCErrorManager;
  struct KyEntries
  {
    KyErrorEntry** entries;
    unsigned int count;
  };
  bool reserve(unsigned int capacity) noexcept;
  KyEntries takeEntries() noexcept;

  KyErrorEntry** m_entries = nullptr;
  unsigned int m_entryCount = 0;
  unsigned int m_entryCapacity = 0;
  unsigned int m_errorCount = 0;
  KyCreatedErrorList* m_created = nullptr;    // the error manager's record of a list that it made
};
