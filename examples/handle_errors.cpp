// What can go wrong, how a program notices, and where the reports go.
#include <cstdio>
#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

// A log instead of standard error. The manager calls it from whichever thread reports, one call at a time.
class Log : public KyIErrorListener
{
public:
  void onError(const KyErrorEntry& entry) override { print("error", entry); }
  void onWarning(const KyErrorEntry& entry) override { print("warning", entry); }

private:
  static void print(const char* kind, const KyErrorEntry& entry)
  {
    std::printf("%s 0x%X in %s: %s\n", kind, entry.code, entry.function, entry.text);
  }
};

// A call has failed if the count has grown. The value alone does not tell: 0 may be what the parameter holds.
bool read(KyCErrorListPool& pool, const KyCInventoryItem& root, const KyCInventoryAddress& address, int& value)
{
  const unsigned int before = pool.getErrorCount();
  value = root.getValue<int>(pool, address);
  return pool.getErrorCount() == before;
}

int main()
{
  Log log;
  KyCErrorManager* const manager = KyCErrorManager::getSingleton();
  manager->setListener(&log);

  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  root.createParameter(pool, BOARD[2] / SIZE, 4096, "kB", false, 0);

  int size = 0;
  std::printf("board 2: %s\n", read(pool, root, BOARD[2] / SIZE, size) ? "there" : "missing");
  std::printf("board 3: %s\n", read(pool, root, BOARD[3] / SIZE, size) ? "there" : "missing");
  root.setValue(pool, BOARD[2] / SIZE, 0.5);                            // of another type: refused, never converted
  root.createParameter(pool, BOARD[2] / SIZE, 8192, "kB", false, 0);    // there is one already

  manager->sendErrorList(pool, 0);    // reports and forgets them; the count stays
  std::printf("%u errors, %u still to be sent\n", pool.getErrorCount(), pool.getEntryCount());
  manager->setListener(nullptr);    // the log ends here
}
