// Reads a section file, changes a value in the tree, and stores the tree again. Without a file it makes one first.
#include <unistd.h>
#include <cstdio>
#include <string>
#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

// The new file takes the place of the old one when it is on the disk: whatever happens on the way, one of the two is there.
bool store(KyCErrorListPool& pool, KyCInventoryItem& root, const std::string& path)
{
  const unsigned int errors = pool.getErrorCount();
  KyCBuffer section(pool);
  KyCInventoryData::generateInventorySection(pool, section, &root);
  if (pool.getErrorCount() != errors) return false;

  const std::string temporary = path + ".new";
  std::FILE* const file = std::fopen(temporary.c_str(), "wb");
  if (file == nullptr) return false;
  const unsigned int size = section.getWritePosition();
  const bool isWritten =
      std::fwrite(section.getStorage(), 1, size, file) == size && std::fflush(file) == 0 && fsync(fileno(file)) == 0;
  const bool isClosed = std::fclose(file) == 0;
  return isWritten && isClosed && std::rename(temporary.c_str(), path.c_str()) == 0;
}

bool change(KyCErrorListPool& pool, const std::string& path)
{
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path.c_str(), root);
  if (root == nullptr) return false;    // a damaged file has left a report, one without a section has not

  const KyCInventoryAddress limit = BOARD[2] / IOCHANNEL / VOLTAGE_MAX;
  const double before = root->getValue<double>(pool, limit);
  root->setValue(pool, limit, before / 2);
  const bool isStored = pool.getErrorCount() == 0 && store(pool, *root, path);
  if (isStored) std::printf("%s: %g, was %g\n", limit.toString().c_str(), root->getValue<double>(pool, limit), before);
  delete root;
  return isStored;
}

int main(int count, char** arguments)
{
  KyCErrorListPool pool;
  const std::string path = count > 1 ? arguments[1] : "change_value.kyinv";
  if (count <= 1)
  {
    KyCInventoryItem rack(pool, ROOT, "ROOT");
    rack.createParameter(pool, BOARD[2] / IOCHANNEL / VOLTAGE_MAX, 10.0, "V", true, 1);
    if (!store(pool, rack, path)) return 1;
  }
  const bool isDone = change(pool, path) && change(pool, path);
  if (count <= 1) std::remove(path.c_str());
  KyCErrorManager::getSingleton()->sendErrorList(pool, 0);    // to standard error, a line each
  return isDone ? 0 : 1;
}
