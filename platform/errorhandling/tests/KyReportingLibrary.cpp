// KyReportingLibrary.cpp: a library that registers messages while it is loaded, for tests that load and unload it.
#include "errorhandling/KyErrorHandling.h"

namespace
{
const char* const s_messages[] = {"Report of a library: %1."};
const unsigned int s_boundaries[] = {0, 1};
const KyResText s_table{s_messages, s_boundaries, 1, 0x3000000};

struct KyRegistration
{
  KyRegistration() { KyCErrorManager::getSingleton()->_registerMessages(&s_table); }
  ~KyRegistration() { KyCErrorManager::getSingleton()->_unregisterMessages(&s_table); }
  KyRegistration(const KyRegistration&) = delete;
  KyRegistration& operator=(const KyRegistration&) = delete;
};
const KyRegistration s_registration;
}    // namespace

extern "C" __attribute__((visibility("default"))) void kyReport(KyCErrorListPool* pool)
{
  pool->setError(0x3000000, 5, "kyReport", "%s", "argument");
}
