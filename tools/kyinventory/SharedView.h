// SharedView.h: a tree as look-ups see it once its shared data is linked.
#pragma once

#include <string>

#include "inventorykit/KyTree.h"

using KyNInventoryKit::TreePointer;

// Links the shared data of the tree, with the warnings of that on standard error under the path's name, and gives a copy
// in which every item also holds what it has from its shared data item, behind its own. Each parameter and sub-item added
// so is described by "shared: " and the address that it comes from. Null, after a message, when there is no memory.
TreePointer withSharedData(KyCInventoryItem& root, const std::string& path);
