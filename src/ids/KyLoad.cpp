// KyLoad.cpp: all work that is done while the library is loaded, in this order, and undone in reverse while it is
// unloaded. It stands in one file because the language orders initialisation only inside a file.

#include "base/KyMessageCatalogue.h"
#include "ids/KyPredefinedIDs.h"
#include "inventory/KyNInventoryIDs.h"

// 1. The empty map. The empty address and the predefined IDs are in the library's file, ready to use
//    (KyPredefinedIDs.cpp).
KyCInventoryTagMap KyNInventoryIDs::Map;

// 2. The names of the predefined IDs in the order of their numbers.
struct KyTagMapAccess
{
  // As if each were added by itself. As long as there is room, though, nothing can be reported, and nothing has to be
  // sent after the first.
  static bool addAll(KyCInventoryTagMap& map, const KyIDNames& names)
  {
    for (unsigned int id = 0; id < names.count; ++id)
    {
      if (map.m_count == id && id < map.m_capacity)
        map.m_names[map.m_count++] = names[id];
      else
        map.add(id, names[id]);
    }
    return true;
  }
};

namespace
{
[[maybe_unused]] const bool s_namesAreRegistered = KyTagMapAccess::addAll(KyNInventoryIDs::Map, kyPredefinedIDNames);

// 3. The message catalogue, last on purpose: reports of step 2 are sent before their texts are known. The object
//    withdraws it.
KyInventoryTree::KyCErrMsgResourceHandler registerCatalogue()
{
  KyInventoryTree::registerMessages();
  return {};
}

const KyInventoryTree::KyCErrMsgResourceHandler s_messageCatalogue = registerCatalogue();
}    // namespace
