// KyErrorManagerAccess.h: how this library reaches the error manager.
#pragma once

#include "errorhandling/KyCErrorManager.h"

// The process-wide manager: s_pErrorManager when somebody has created it already, else getSingleton(), which creates it.
inline KyCErrorManager& kyErrorManager()
{
  KyCErrorManager* const manager = KyCErrorManager::s_pErrorManager;
  return manager != nullptr ? *manager : *KyCErrorManager::getSingleton();
}
