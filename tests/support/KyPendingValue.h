// KyPendingValue.h: the pending new value of a parameter, as its write info holds it, and a method to hang it beside.
#pragma once

#include <gtest/gtest.h>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryParameter.h"
#include "tree/KyInventoryAccess.h"

// The write info of a parameter that has one; null for every other.
inline KyNInventoryParameter::KyCAuxInfoWrite* writeInfoOf(const KyCInventoryParameter& parameter)
{
  KyCInventoryAuxInfo* const info = KyInventoryAccess::getAuxInfo(parameter);
  const bool isWrite = info != nullptr && info->getType() == KyCInventoryAuxInfo::AUX_PARAM_WRITE;
  return isWrite ? static_cast<KyNInventoryParameter::KyCAuxInfoWrite*>(info) : nullptr;
}

// A check, write or update method that nobody is expected to call.
inline bool neverCalled(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*)
{
  ADD_FAILURE() << "a method was called";
  return false;
}
