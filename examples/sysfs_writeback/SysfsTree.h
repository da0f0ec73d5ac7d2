// SysfsTree.h: attribute files below a directory as an inventory tree.
#pragma once

#include <string>

#include "inventory/KyCInventoryItem.h"

// The tree and the context of its walks:
//
//   SysfsTree tree(pool, "/sys");
//   tree.designate(pool, "LED_OUT/VALUE=128");
//   tree.check(pool);
//   tree.root().apply(pool, &tree.context());
//
// One item for each device, with its folder's name and a parameter for each attribute file that it has. A file that can
// be set is a parameter with a check and a write method; it is modifiable. A file that is only read is a parameter with
// an update method. Nothing is both.
class SysfsTree
{
public:
  // Takes in the devices of the directory: a sysfs or a copy of a part of it ("/sys"), a folder of devices
  // ("/sys/class/leds") or a single device. A file that cannot be read is reported and left out.
  SysfsTree(KyCErrorListPool& pool, const std::string& directory);

  KyCInventoryItem& root() { return m_root; }
  KyCInventoryItem& context() { return m_context; }    // its updater knows the files: what the update methods need

  // Makes a value pending that is given as "ADDRESS=VALUE".
  // Errors:  MSG_NO_SUCH_PARAMETER, MSG_NO_NUMBER, and what setDesignatedValue reports for a file that is only read
  void designate(KyCErrorListPool& pool, const std::string& wish);

  // Runs the check walk until it has nothing to say any more: a value may have been found good beside another pending
  // value that was vetoed later.
  void check(KyCErrorListPool& pool);

  // One line for each parameter: address, value, pending value, kind and file.
  std::string toText();

private:
  KyCInventoryItem m_context;    // owns the files that parameters of the tree lead to, so it goes after the tree
  KyCInventoryItem m_root;
};
