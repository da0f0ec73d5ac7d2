// The updater of an update element.

#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "tree/KyPlaceText.h"
#include "writeback/KyAuxInfoKinds.h"

void KyCInventoryItem::setUpdater(KyCErrorListPool& pool, KyIUpdater* updater)
{
  const bool isUpdateElement = getID()[1] == KyNInventoryIDs::UPDATE_ELEMENT;
  if (!isUpdateElement || m_auxInfo != nullptr)
  {
    pool.setError(KY_MSG_CANNOT_SET_UPDATER, __LINE__, "setUpdater", "%s", KyPlaceText(*this).c_str());
    return;
  }
  if (updater == nullptr)
  {
    pool.setError(KY_MSG_CANNOT_SET_UPDATE_CREATE_METHOD, __LINE__, "setUpdater", "%s", KyPlaceText(*this).c_str());
    return;
  }
  m_auxInfo = new KyNInventoryItem::KyCAuxInfoUpdate(updater);
}

KyIUpdater* KyCInventoryItem::getUpdater() const
{
  const KyNInventoryItem::KyCAuxInfoUpdate* const info = kyAsItemUpdate(m_auxInfo);
  return info != nullptr ? info->getUpdater() : nullptr;
}
