// KyRecordingListener.h: keeps what the error manager reports while it lives, for tests to compare.
#pragma once

#include <utility>
#include <vector>

#include "errorhandling/KyErrorHandling.h"
#include "support/KyTestPool.h"

class KyRecordingListener : public KyIErrorListener
{
public:
  KyRecordingListener() : m_before(KyCErrorManager::getSingleton()->setListener(this)) {}
  ~KyRecordingListener() override
  {
    KyCErrorManager::getSingleton()->setListener(m_before);
    for (const KyReport& report : m_errors)
      ADD_FAILURE() << "unread error " << report;
    for (const KyReport& report : m_warnings)
      ADD_FAILURE() << "unread warning " << report;
  }
  KyRecordingListener(const KyRecordingListener&) = delete;
  KyRecordingListener& operator=(const KyRecordingListener&) = delete;

  void onError(const KyErrorEntry& entry) override { m_errors.push_back({entry.code, entry.function, entry.text}); }
  void onWarning(const KyErrorEntry& entry) override { m_warnings.push_back({entry.code, entry.function, entry.text}); }

  // The errors since the last call; so EXPECT_REPORTS(listener, ...) works as for a pool.
  std::vector<KyReport> takeReports() { return std::exchange(m_errors, {}); }
  std::vector<KyReport> takeWarnings() { return std::exchange(m_warnings, {}); }

private:
  std::vector<KyReport> m_errors;
  std::vector<KyReport> m_warnings;
  KyIErrorListener* m_before;    // last: from then on, other threads call this object
};
