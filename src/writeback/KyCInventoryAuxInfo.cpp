// The auxiliary info records and the interface of updaters.

#include "inventory/KyCInventoryAuxInfo.h"

#include <utility>

KyNInventoryItem::KyCVirtualClass::~KyCVirtualClass() = default;

KyIUpdater::~KyIUpdater() = default;

KyCInventoryAuxInfo::KyCInventoryAuxInfo(TType type) noexcept : m_type(type) {}

KyCInventoryAuxInfo::~KyCInventoryAuxInfo() = default;

namespace KyNInventoryItem
{
KyCAuxInfoUpdate::KyCAuxInfoUpdate(KyIUpdater* updater) noexcept
    : KyCInventoryAuxInfo(AUX_ITEM_UPDATE), m_updater(updater)
{
}

KyCAuxInfoUpdate::~KyCAuxInfoUpdate()
{
  delete m_updater;
  m_updater = nullptr;
}
}    // namespace KyNInventoryItem

namespace KyNInventoryParameter
{
KyCAuxInfoWrite::KyCAuxInfoWrite(KyCInventoryParameter::TMethod checkMethod, KyCInventoryParameter::TMethod writeMethod,
                                 KyCInventoryAddress relativeAddress, void* customPointer)
    : KyCInventoryAuxInfo(AUX_PARAM_WRITE),
      m_checkMethod(checkMethod),
      m_writeMethod(writeMethod),
      m_relativeAddress(std::move(relativeAddress)),
      m_customPointer(customPointer)
{
}

KyCAuxInfoWrite::~KyCAuxInfoWrite() { setDesignatedValue(nullptr); }

void KyCAuxInfoWrite::setDesignatedValue(KyCInventoryParameter* value) noexcept
{
  if (value == m_designatedValue) return;
  delete m_designatedValue;
  m_designatedValue = value;
}

KyCAuxInfoParamUpdate::KyCAuxInfoParamUpdate(KyCInventoryParameter::TMethod updateMethod) noexcept
    : KyCInventoryAuxInfo(AUX_PARAM_UPDATE), m_updateMethod(updateMethod)
{
}

KyCAuxInfoParamUpdate::~KyCAuxInfoParamUpdate() = default;
}    // namespace KyNInventoryParameter
