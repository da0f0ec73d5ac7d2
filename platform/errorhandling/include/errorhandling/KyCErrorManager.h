// KyCErrorManager.h: the process-wide error manager.
//
//   KyCErrorManager& manager = *KyCErrorManager::getSingleton();
//   manager.setListener(&myLog);
//   manager.sendErrorList(pool, 0);    // myLog.onError() for each error in the pool
#pragma once

#include "errorhandling/KyCErrorListPool.h"
#include "errorhandling/KyIErrorListener.h"
#include "errorhandling/KyResText.h"

// Knows the message tables of the libraries that are loaded, owns the master error list, and passes what is sent to it
// to one listener. Exists once per process; nobody deletes it. It outlives the static objects of every library and
// program that depends on this library. Any thread may call any method at any time; a list handed over is subject to
// its own rule, one thread at a time, and so is the master list.
class KY_ERRORHANDLING_API KyCErrorManager
{
public:
  // The manager, null until getSingleton() is called first. Reading it while another thread makes that very first call
  // is a race; a library that depends on this one and registers messages while it is loaded has made it already.
  static KyCErrorManager* s_pErrorManager;

  // The manager; the first call creates it and sets s_pErrorManager. Never null, cannot fail.
  static KyCErrorManager* getSingleton();

  KyCErrorManager(const KyCErrorManager&) = delete;
  KyCErrorManager& operator=(const KyCErrorManager&) = delete;

  // The list for operations that have no pool of their own. Always the same one, the manager's; cannot fail. What is
  // still in it when the process ends is dropped unreported.
  KyCErrorListPool& getMasterErrorList() const;

  // Makes an empty error list, for code that wants one off the stack.
  //
  //   ownerId, listId  identity, for the caller's own use; lists of the same identity are different lists
  //   entryCapacity    expected number of entries: room for that many, 1024 at most, is made at once
  //   entryGrowth      expected number of further entries
  //   textCapacity     expected length of a text in bytes
  // The three sizes are hints: however wrong they are, nothing is lost or cut short.
  //
  // Result:    the list; null when memory is exhausted.
  // Errors:    none; there is no pool to record them in.
  // Ownership: end it with deleteErrorList. Lists still alive when the process ends are freed then.
  KyCErrorListPool* createErrorList(unsigned int ownerId, unsigned int listId, unsigned int entryCapacity,
                                    unsigned int entryGrowth, unsigned int textCapacity);

  // Deletes a list made by createErrorList, with its errors, unreported. Any other list, such as one on the stack or
  // the master list, is left untouched.
  // Errors: 0x1000001 as a warning: the list is not one of createErrorList's.
  // Cost:   does not depend on the number of lists.
  void deleteErrorList(KyCErrorListPool& list);

  // Reports the list's entries, in order, to the listener, and takes them away from the list. The list's error count
  // stays. What the listener records into the list during the call stays there for the next one.
  //
  //   options  reserved: pass 0
  //
  // Errors: none of its own.
  // Cost:   next to nothing for a list without entries.
  void sendErrorList(KyCErrorListPool& list, unsigned int options);

  // Reports a warning to the listener, without a list. Arguments as for KyCErrorList::setError.
  // Errors: none. Without memory the listener gets the warning with an empty text.
  void sendWarning(unsigned int code, unsigned int line, const char* function, const char* argFormat, ...)
      __attribute__((format(printf, 5, 6)));

  // Replaces the receiver of errors and warnings; null restores the default, which writes each as one line to standard
  // error. When it returns, no other thread is inside the listener before.
  //
  // Result:    the listener before; null if that was the default. Cannot fail.
  // Ownership: the caller's; keep it alive until another one is set.
  KyIErrorListener* setListener(KyIErrorListener* listener);

  // Registers a message table: from now on texts are found by its codes. A null table is ignored. A table registered
  // twice needs two withdrawals. Where two tables have the same code, the one registered last counts.
  // Errors:    none. Without memory the table is not registered, and its codes show as numbers.
  // Ownership: borrowed, with everything it points to, until it is withdrawn.
  void _registerMessages(const KyResText* table);

  // Withdraws a message table; nothing happens for one that is not registered. Afterwards nothing points to it or its
  // texts: recorded errors have their own copies. Cannot fail.
  void _unregisterMessages(const KyResText* table);

private:
  struct State;

  KyCErrorManager();
  ~KyCErrorManager() = delete;
  friend void kyReleaseErrorManager() noexcept;    // when this library is unloaded
  void release() noexcept;

  State* m_state;
};
