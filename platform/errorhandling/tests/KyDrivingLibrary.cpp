// KyDrivingLibrary.cpp: brings libKyErrorHandling into a program that is not linked to it, and calls it there.
#include "errorhandling/KyErrorHandling.h"

#define KY_DRIVING_FUNCTION extern "C" __attribute__((visibility("default")))

KY_DRIVING_FUNCTION bool kyHasManager() { return KyCErrorManager::s_pErrorManager != nullptr; }

KY_DRIVING_FUNCTION KyCErrorListPool* kyNewPool() { return new KyCErrorListPool; }

KY_DRIVING_FUNCTION void kyDeletePool(KyCErrorListPool* pool) { delete pool; }

KY_DRIVING_FUNCTION void kySetError(KyCErrorListPool* pool, unsigned int code)
{
  pool->setError(code, 1, "kySetError", nullptr);
}

KY_DRIVING_FUNCTION const KyErrorEntry* kyGetEntry(const KyCErrorListPool* pool, unsigned int n)
{
  return &pool->getEntry(n);
}

// A list that nobody deletes and an error in the master list that nobody sends.
KY_DRIVING_FUNCTION void kyLeaveThingsBehind()
{
  KyCErrorManager& manager = *KyCErrorManager::getSingleton();
  manager.createErrorList(0, 1, 20, 5, 300)->setError(17, 1, "kyLeaveThingsBehind", nullptr);
  manager.getMasterErrorList().setError(18, 1, "kyLeaveThingsBehind", nullptr);
}
