// Builds the inventory of a small rack and stores it as a section file.
#include <cstdio>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

// What all boards of the rack have in common.
void addBoard(KyCErrorListPool& pool, KyCInventoryItem& root, unsigned int slot, const char* serialNumber)
{
  const KyCInventoryAddress board = BOARD[slot];
  root.createParameter(pool, board / NAME, KyCString("Analog output"), "", false, 1);
  root.createParameter(pool, board / SERIAL_NUMBER, KyCString(serialNumber), "", false, 1);
  root.createParameter(pool, board / FIRMWARE / VERSION, KyCVersion(2, 1, 0, 417), "", false, 2);
  for (unsigned int channel = 1; channel <= 2; ++channel)
    root.createParameter(pool, board / IOCHANNEL[channel] / VOLTAGE_MAX, 10.0, "V", true, 1);
}

int main(int count, char** arguments)
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  addBoard(pool, root, 1, "AO-0117");
  addBoard(pool, root, 2, "AO-0118");

  KyCBuffer section(pool);
  KyCInventoryData::generateInventorySection(pool, section, &root);
  if (pool.getErrorCount() != 0) return 1;    // what went wrong: see handle_errors.cpp

  std::FILE* const file = count > 1 ? std::fopen(arguments[1], "wb") : std::tmpfile();
  if (file == nullptr) return 1;
  const unsigned int size = section.getWritePosition();
  const bool isWritten = std::fwrite(section.getStorage(), 1, size, file) == size;
  if (std::fclose(file) != 0 || !isWritten) return 1;
  std::printf("stored 2 boards in %u bytes\n", size);
}
