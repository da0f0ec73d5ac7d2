// Makes the file that the commands of the tool are measured with, and reads it as a program without the tool does.
#include <cstdio>
#include <cstring>
#include <string>

#include "inventory/KyInventoryTree.h"
#include "inventorykit/KySectionFile.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int BOARDS = 100;
constexpr unsigned int CHANNELS = 1000;    // of each board, with ten parameters each: a million

void addChannel(KyCErrorListPool& pool, KyCInventoryItem& channel, unsigned int number)
{
  channel.createParameter(pool, NAME, KyCString(("AI " + std::to_string(number)).c_str()), "", true, 1);
  channel.createParameter(pool, SERIAL_NUMBER, KyCString(("S" + std::to_string(number * 7919)).c_str()), "", false, 1);
  channel.createParameter(pool, VOLTAGE_MIN, -10.0, "V", true, 2);
  channel.createParameter(pool, VOLTAGE_MAX, 10.0 + number % 5, "V", true, 2);
  channel.createParameter(pool, CURRENT_MAX, 0.5f, "A", true, 2);
  channel.createParameter(pool, FREQUENCY, number * 1000u, "Hz", false, 3);
  channel.createParameter(pool, SIZE, static_cast<unsigned long long>(number) << 20, "", false, 3);
  channel.createParameter(pool, TYPE, static_cast<short>(number % 16), "", false, 4);
  channel.createParameter(pool, STATUS, static_cast<signed char>(number % 3), "", false, 4);
  channel.createParameter(pool, VERSION, KyCVersion(1, 2, 0, number), "", false, 5);
}

int make(const char* path)
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  for (unsigned int board = 1; board <= BOARDS; ++board)
    for (unsigned int channel = 1; channel <= CHANNELS; ++channel)
    {
      KyCInventoryItem* const item = root.addPath(pool, BOARD[board] / IOCHANNEL[channel]);
      if (item != nullptr) addChannel(pool, *item, board * CHANNELS + channel);
    }
  KyNInventoryKit::writeTree(pool, path, root, KyNInventoryKit::Overwrite::YES);
  return pool.getErrorCount() == 0 ? 0 : 1;
}

int read(const char* path)
{
  KyCErrorListPool pool;
  KyCInventoryItem* root = nullptr;
  KyCInventoryData::extractInventoryTreeFromFile(pool, path, root);
  const bool isRead = root != nullptr;
  delete root;
  return isRead ? 0 : 1;
}
}    // namespace

int main(int argc, char** argv)
{
  if (argc == 3 && std::strcmp(argv[1], "make") == 0) return make(argv[2]);
  if (argc == 3 && std::strcmp(argv[1], "read") == 0) return read(argv[2]);
  std::fputs("usage: ky_bench_site make|read FILE\n", stderr);
  return 2;
}
