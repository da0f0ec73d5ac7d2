// A tree to be looked at in gdb: test-printers stops in look().
#include <limits>

#include "inventory/KyInventoryTree.h"
using namespace KyNInventoryIDs;

extern "C" void look() { asm volatile(""); }

int main()
{
  KyCErrorListPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  const KyCInventoryAddress address = BOARD[2] / IOCHANNEL[3] / VOLTAGE_MAX;
  KyCInventoryParameter* const parameter = root.createParameter(pool, address, 10.25, "V", true, 1);
  root.createParameter(pool, NAME, KyCString("a rack of a certain length"), "", false, 1);
  root.createParameter(pool, VERSION, KyCVersion(2, 1, 0, 417), "", false, 1);
  root.createParameter<signed char>(pool, BOARD[2] / TEMPERATURE, -5, "C", false, 1);
  root.createParameter(pool, BOARD[2] / IOCHANNEL[4] / VOLTAGE_MAX, 0.1, "V", false, 1);
  root.createParameter(pool, BOARD[2] / IOCHANNEL[4] / VOLTAGE_MIN, -100.0, "V", false, 1);
  root.createParameter(pool, BOARD[2] / IOCHANNEL[4] / RESOLUTION, 0.1f, "", false, 1);
  root.createParameter(pool, BOARD[2] / IOCHANNEL[4] / MAX, std::numeric_limits<float>::max(), "", false, 1);
  root.createParameter(pool, BOARD[2] / IOCHANNEL[4] / OFFSET, std::numeric_limits<float>::infinity(), "", false, 1);
  root.createParameter(pool, BOARD[2] / IOCHANNEL[4] / MIN, std::numeric_limits<double>::quiet_NaN(), "", false, 1);
  const KyCString text("short");
  const KyCString longText("longer than six characters");
  const KyCInventoryAddress empty;
  look();
  return parameter == nullptr || text.isEmpty() || longText.isEmpty() || !empty.isEmpty() ? 1 : 0;
}
