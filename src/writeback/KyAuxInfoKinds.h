// KyAuxInfoKinds.h: auxiliary info as the kind that it is. Each function gives null for no info and for another kind.
#pragma once

#include "inventory/KyCInventoryAuxInfo.h"

inline KyNInventoryItem::KyCAuxInfoUpdate* kyAsItemUpdate(KyCInventoryAuxInfo* info) noexcept
{
  if (info == nullptr || info->getType() != KyCInventoryAuxInfo::AUX_ITEM_UPDATE) return nullptr;
  return static_cast<KyNInventoryItem::KyCAuxInfoUpdate*>(info);
}

inline KyNInventoryParameter::KyCAuxInfoWrite* kyAsWrite(KyCInventoryAuxInfo* info) noexcept
{
  if (info == nullptr || info->getType() != KyCInventoryAuxInfo::AUX_PARAM_WRITE) return nullptr;
  return static_cast<KyNInventoryParameter::KyCAuxInfoWrite*>(info);
}

inline KyNInventoryParameter::KyCAuxInfoParamUpdate* kyAsParamUpdate(KyCInventoryAuxInfo* info) noexcept
{
  if (info == nullptr || info->getType() != KyCInventoryAuxInfo::AUX_PARAM_UPDATE) return nullptr;
  return static_cast<KyNInventoryParameter::KyCAuxInfoParamUpdate*>(info);
}
