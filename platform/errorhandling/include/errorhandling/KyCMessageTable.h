// KyCMessageTable.h: keeps a message table registered while a library is loaded.
//
//   const KyResText s_table = {s_messages, s_groups, 2, 0x01500000};
//   const KyCMessageTable s_registration(s_table);    // at namespace scope, behind the table
#pragma once

#include "errorhandling/KyCErrorManager.h"

// Registers the table with the error manager, which is always there, for as long as the object lives. Without memory the
// table is not registered, and its codes show as numbers; nothing is reported. Made and destroyed by the loader, which
// uses one thread.
class KyCMessageTable
{
public:
  explicit KyCMessageTable(const KyResText& table) : m_table(table)
  {
    KyCErrorManager* manager = KyCErrorManager::s_pErrorManager;
    if (manager == nullptr) manager = KyCErrorManager::getSingleton();
    manager->_registerMessages(&m_table);
  }
  ~KyCMessageTable() { KyCErrorManager::s_pErrorManager->_unregisterMessages(&m_table); }
  KyCMessageTable(const KyCMessageTable&) = delete;
  KyCMessageTable& operator=(const KyCMessageTable&) = delete;

private:
  const KyResText& m_table;
};
