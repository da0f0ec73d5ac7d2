// KyMasterReports.h: the reports that reach the master error list, for the operations that take no pool.
#pragma once

#include <vector>

#include "support/KyTestPool.h"

// Sees the reports from its construction on. As with KyTestPool, no report may go unread.
class KyMasterReports
{
public:
  KyMasterReports() : m_list(KyCErrorManager::getSingleton()->getMasterErrorList()), m_read(m_list.getEntryCount()) {}
  ~KyMasterReports()
  {
    for (const KyReport& report : takeReports())
      ADD_FAILURE() << "unread report " << report;
  }
  KyMasterReports(const KyMasterReports&) = delete;
  KyMasterReports& operator=(const KyMasterReports&) = delete;

  std::vector<KyReport> takeReports()
  {
    std::vector<KyReport> reports = readReports(m_list, m_read);
    m_read = m_list.getEntryCount();
    return reports;
  }

private:
  const KyCErrorList& m_list;
  unsigned int m_read;
};
