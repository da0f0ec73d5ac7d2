// The memory of a plug-in board: a block of fixed size that begins with the board's inventory.
#include <cstdio>
#include <cstring>
#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

// The board's EEPROM: erased bytes are 0xFF.
struct BoardMemory
{
  unsigned char bytes[512];

  BoardMemory() { std::memset(bytes, 0xFF, sizeof(bytes)); }

  // False when the tree cannot be stored or does not fit; the memory is as it was then.
  bool write(KyCErrorListPool& pool, KyCInventoryItem& board)
  {
    const unsigned int before = pool.getErrorCount();
    KyCBuffer section(pool);
    KyCInventoryData::generateInventorySection(pool, section, &board);
    if (pool.getErrorCount() != before || section.getWritePosition() > sizeof(bytes)) return false;
    std::memcpy(bytes, section.getStorage(), section.getWritePosition());
    return true;
  }

  // Null for an erased memory, without a report, and for a damaged one, with reports.
  KyCInventoryItem* read(KyCErrorListPool& pool) const
  {
    KyCInventoryItem* board = nullptr;
    KyCInventoryData::extractInventoryTreeFromMem(pool, bytes, sizeof(bytes), board);
    return board;
  }
};

int main()
{
  KyCErrorListPool pool;
  BoardMemory memory;
  std::printf("new board: %s\n", memory.read(pool) == nullptr ? "empty" : "written");

  KyCInventoryItem board(pool, BOARD, "BOARD");
  board.createParameter(pool, SERIAL_NUMBER, KyCString("AO-0117"), "", false, 1);
  if (!memory.write(pool, board)) return 1;
  KyCInventoryItem* const read = memory.read(pool);
  if (read == nullptr) return 1;
  std::printf("after the end test: %s\n", read->getValue<const char*>(pool, SERIAL_NUMBER));

  // The board goes into a slot of the rack.
  KyCInventoryItem rack(pool, ROOT, "ROOT");
  read->setID(BOARD[4]);
  if (rack.addItem(THIS_NODE, read) == nullptr)
  {
    delete read;    // the slot is taken: still ours
    return 1;
  }
  std::printf("%s: %s\n", read->getAddress().toString().c_str(),
              rack.getValue<const char*>(pool, BOARD[4] / SERIAL_NUMBER));

  memory.bytes[14] = 0x7F;    // the header now says more bytes than there are
  std::printf("damaged: %s\n", memory.read(pool) == nullptr ? "nothing is read" : "something is read");
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
    std::printf("  0x%X %s\n", pool.getEntry(n).code, pool.getEntry(n).text);
}
