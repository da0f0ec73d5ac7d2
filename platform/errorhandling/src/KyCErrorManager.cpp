// KyCErrorManager.cpp: the process-wide error manager.
#include "errorhandling/KyCErrorManager.h"

#include <cstdarg>
#include <mutex>
#include <new>

#include "KyCStderrListener.h"
#include "KyErrorEntries.h"
#include "KyErrorHandlingMessages.h"
#include "KyMessageTables.h"

KyCErrorManager* KyCErrorManager::s_pErrorManager = nullptr;

// A list made by createErrorList, in the chain of those alive. KyCErrorList::m_created points to it, so that a list can
// be told from one that somebody else made without a search.
struct KyCreatedErrorList
{
  KyCErrorListPool list;
  KyCreatedErrorList* previous = nullptr;
  KyCreatedErrorList* next = nullptr;
};

struct KyCErrorManager::State
{
  KyCErrorListPool masterList;

  std::recursive_mutex listenerMutex;    // held during a call, so that a listener replaced is no longer being called;
                                         // recursive, because a listener may report and send itself
  KyCStderrListener defaultListener;
  KyIErrorListener* listener = &defaultListener;

  std::mutex listsMutex;
  KyCreatedErrorList* firstList = nullptr;
};

namespace
{
// The manager and its state live in static storage: nothing to leak, and no address that could go stale.
template <typename T>
struct KyStorage
{
  alignas(T) unsigned char bytes[sizeof(T)];
};
KyStorage<KyCErrorManager> s_managerStorage;

// Unsent entries in the hands of sendErrorList; freed also when a listener throws.
struct KyTakenEntries
{
  KyErrorEntry** entries;
  unsigned int count;
  ~KyTakenEntries() { KyNErrorEntries::destroy(entries, count); }
};
}    // namespace

KyCErrorManager::KyCErrorManager()
{
  static KyStorage<State> storage;
  m_state = new (storage.bytes) State;
}

KyCErrorManager* KyCErrorManager::getSingleton()
{
  static KyCErrorManager* const manager = []
  {
    s_pErrorManager = new (s_managerStorage.bytes) KyCErrorManager;
    return s_pErrorManager;
  }();
  return manager;
}

// Runs when this library is unloaded or the process ends: behind all exit handlers and behind the destructors of every
// library that depends on this one. The destructor of a static object would run in the order of first use instead, ahead
// of the destructors of those who came before. The manager stays usable for whoever comes even later.
__attribute__((destructor)) void kyReleaseErrorManager() noexcept
{
  if (KyCErrorManager::s_pErrorManager != nullptr) KyCErrorManager::s_pErrorManager->release();
  KyNMessageTables::clear();
}

void KyCErrorManager::release() noexcept
{
  while (m_state->firstList != nullptr)
    deleteErrorList(m_state->firstList->list);
  const KyCErrorList::KyEntries unsent = m_state->masterList.takeEntries();
  KyNErrorEntries::destroy(unsent.entries, unsent.count);
}

KyCErrorListPool& KyCErrorManager::getMasterErrorList() const { return m_state->masterList; }

KyCErrorListPool* KyCErrorManager::createErrorList(unsigned int, unsigned int, unsigned int entryCapacity, unsigned int,
                                                   unsigned int)
{
  constexpr unsigned int mostReserved = 1024;    // a larger wish is met by growing
  KyCreatedErrorList* const created = new (std::nothrow) KyCreatedErrorList;
  if (created == nullptr) return nullptr;
  created->list.m_created = created;
  created->list.reserve(entryCapacity < mostReserved ? entryCapacity : mostReserved);

  const std::lock_guard<std::mutex> lock(m_state->listsMutex);
  created->next = m_state->firstList;
  if (created->next != nullptr) created->next->previous = created;
  m_state->firstList = created;
  return &created->list;
}

void KyCErrorManager::deleteErrorList(KyCErrorListPool& list)
{
  KyCreatedErrorList* const created = list.m_created;
  if (created == nullptr)
  {
    sendWarning(KY_MSG_ERRORHANDLING_FOREIGN_LIST, __LINE__, "deleteErrorList", nullptr);
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(m_state->listsMutex);
    (created->previous != nullptr ? created->previous->next : m_state->firstList) = created->next;
    if (created->next != nullptr) created->next->previous = created->previous;
  }
  delete created;
}

void KyCErrorManager::sendErrorList(KyCErrorListPool& list, unsigned int)
{
  if (list.m_entryCount == 0) return;
  // Taken out of the list first: the listener may record into it, send it again or delete it.
  const KyCErrorList::KyEntries taken = list.takeEntries();
  const KyTakenEntries owner{taken.entries, taken.count};
  const std::lock_guard<std::recursive_mutex> lock(m_state->listenerMutex);
  for (unsigned int n = 0; n < taken.count; ++n)
    m_state->listener->onError(*taken.entries[n]);
}

void KyCErrorManager::sendWarning(unsigned int code, unsigned int line, const char* function, const char* argFormat,
                                  ...)
{
  std::va_list values;
  va_start(values, argFormat);
  KyErrorEntry* const entry = KyNErrorEntries::create(code, line, function, argFormat, values);
  va_end(values);
  const std::lock_guard<std::recursive_mutex> lock(m_state->listenerMutex);
  if (entry == nullptr)
  {
    m_state->listener->onWarning({code, line, function != nullptr ? function : "", ""});
    return;
  }
  const struct KyOwner
  {
    KyErrorEntry* entry;
    ~KyOwner() { KyNErrorEntries::destroy(entry); }
  } owner{entry};
  m_state->listener->onWarning(*entry);
}

KyIErrorListener* KyCErrorManager::setListener(KyIErrorListener* listener)
{
  const std::lock_guard<std::recursive_mutex> lock(m_state->listenerMutex);
  KyIErrorListener* const before = m_state->listener;
  m_state->listener = listener != nullptr ? listener : &m_state->defaultListener;
  return before != &m_state->defaultListener ? before : nullptr;
}

void KyCErrorManager::_registerMessages(const KyResText* table) { KyNMessageTables::add(table); }

void KyCErrorManager::_unregisterMessages(const KyResText* table) { KyNMessageTables::remove(table); }
