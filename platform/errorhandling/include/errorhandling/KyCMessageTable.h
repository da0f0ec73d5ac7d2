// KyCMessageTable.h: keeps a message table registered while a library is loaded.
//
//   const KyResText s_table = {s_messages, s_groups, 2, 0x01500000};
//   const KyCMessageTable s_registration(s_table);    // at namespace scope, behind the table
#pragma once

#include "errorhandling/KyCErrorManager.h"

// Registers the table with the error manager for as long as the object lives. Without memory for an error manager, and
// when the manager has ended before, it does nothing. Made and destroyed by the loader, which uses one thread.
class KyCMessageTable
{
public:
  explicit KyCMessageTable(const KyResText& table) : m_table(table)
  {
    KyCErrorManager* manager = KyCErrorManager::s_pErrorManager;
    if (manager == nullptr) manager = KyCErrorManager::getSingleton();
    if (manager != nullptr) manager->_registerMessages(&m_table);
  }
  ~KyCMessageTable()
  {
    if (KyCErrorManager::s_pErrorManager != nullptr) KyCErrorManager::s_pErrorManager->_unregisterMessages(&m_table);
  }
  KyCMessageTable(const KyCMessageTable&) = delete;
  KyCMessageTable& operator=(const KyCMessageTable&) = delete;

private:
  const KyResText& m_table;
};
