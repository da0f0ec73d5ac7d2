// KyMessageCatalogue.h: the inventory library's message texts, known to the error manager while the library is loaded.
//
// src/ids/KyLoad.cpp does it, as the last step of loading:
//   KyInventoryTree::registerMessages();
//   static KyInventoryTree::KyCErrMsgResourceHandler s_messages;    // withdraws them when the library is unloaded
#pragma once

#include "errorhandling/KyResText.h"

namespace KyInventoryTree
{
// The 66 messages, codes 0x1300000 to 0x1302806 (KyMessageCodes.h). Constant, for the life of the library.
extern const KyResText messageCatalogue;

// Registers the catalogue with the error manager. Once per load of the library. Not seen to fail: without memory the
// codes show as numbers.
void registerMessages();

// Its destructor withdraws the catalogue. One static object of the library; not copied.
class KyCErrMsgResourceHandler
{
public:
  KyCErrMsgResourceHandler() noexcept {}
  ~KyCErrMsgResourceHandler();
  KyCErrMsgResourceHandler(const KyCErrMsgResourceHandler&) = delete;
  KyCErrMsgResourceHandler& operator=(const KyCErrMsgResourceHandler&) = delete;
};
}    // namespace KyInventoryTree
