// KyLoad.cpp: all work that is done while the library is loaded, in this order, and undone in reverse while it is
// unloaded. It stands in one file because the language orders initialisation only inside a file.

#include "base/KyMessageCatalogue.h"
#include "inventory/KyNInventoryIDs.h"

namespace KyNInventoryIDs
{
// 1. The empty map and the empty address.
KyCInventoryTagMap Map;
const KyCInventoryAddress THIS_NODE;

// 2. The predefined IDs in the order of their numbers, each with the number that its registration gives back. They are
//    built at run time even though their values are known, because a program that is not position-independent holds
//    them in its own data: copied there, they would point to elements in the library's.
namespace
{
// Not inline: 1064 copies of it would take longer to page in than to run.
__attribute__((noinline)) KyCInventoryAddress registered(unsigned int id, const char* name)
{
  return KyCInventoryAddress(Map.add(id, name));
}
}    // namespace

#define KY_PREDEFINED_ID(id, name) const KyCInventoryAddress name = registered(id, #name);
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID
}    // namespace KyNInventoryIDs

// 3. The message catalogue, last on purpose: reports of step 2 are sent before their texts are known. The object
//    withdraws it.
namespace
{
KyInventoryTree::KyCErrMsgResourceHandler registerCatalogue()
{
  KyInventoryTree::registerMessages();
  return {};
}

const KyInventoryTree::KyCErrMsgResourceHandler s_messageCatalogue = registerCatalogue();
}    // namespace
