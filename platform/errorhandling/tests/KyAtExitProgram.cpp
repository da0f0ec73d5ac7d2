// KyAtExitProgram.cpp: uses the error manager at the very end of a program, from a static object that was there before
// the manager and from an exit handler that was. Its output is compared.
#include <cstdlib>

#include "errorhandling/KyErrorHandling.h"

namespace
{
const char* const s_messages[] = {"Late report %1."};
const unsigned int s_boundaries[] = {0, 1};
const KyResText s_table{s_messages, s_boundaries, 1, 0x3000000};

void report(int n)
{
  KyCErrorManager& manager = *KyCErrorManager::getSingleton();
  KyCErrorListPool& master = manager.getMasterErrorList();
  master.setError(0x3000000, 1, "report", "%d", n);
  manager.sendErrorList(master, 0);
  manager.createErrorList(0, 1, 20, 5, 300)->setError(0x3000000, 1, "left", nullptr);
}

struct KyLate
{
  KyLate()
  {
    std::atexit([] { report(1); });
  }
  ~KyLate()
  {
    report(2);
    KyCErrorManager::getSingleton()->_unregisterMessages(&s_table);
    report(3);
  }
} s_late;
}    // namespace

int main()
{
  KyCErrorManager::getSingleton()->_registerMessages(&s_table);
  return 0;
}
