// KyTestPool.h: an error pool for tests: no report may go unread, and a test names whole lists of reports in order.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "errorhandling/KyErrorHandling.h"

// One report as tests name it. An empty function or text in an expectation means "whatever it is".
struct KyReport
{
  unsigned int code;
  std::string function;
  std::string text;
};

inline std::ostream& operator<<(std::ostream& out, const KyReport& report)
{
  return out << "0x" << std::hex << report.code << std::dec << " " << report.function << ": " << report.text;
}

// Copies the reports of any error list, from the given position on.
inline std::vector<KyReport> readReports(const KyCErrorList& list, unsigned int from = 0)
{
  std::vector<KyReport> reports;
  for (unsigned int n = from; n < list.getEntryCount(); ++n)
  {
    const KyErrorEntry& entry = list.getEntry(n);
    reports.push_back({entry.code, entry.function, entry.text});
  }
  return reports;
}

class KyTestPool : public KyCErrorListPool
{
public:
  ~KyTestPool()
  {
    for (const KyReport& report : takeReports())
      ADD_FAILURE() << "unread report " << report;
  }

  // The reports recorded since the last call.
  std::vector<KyReport> takeReports()
  {
    std::vector<KyReport> reports = readReports(*this, m_read);
    m_read = getEntryCount();
    return reports;
  }

private:
  unsigned int m_read = 0;
};

inline ::testing::AssertionResult sameReports(const std::vector<KyReport>& actual,
                                              const std::vector<KyReport>& expected)
{
  bool same = actual.size() == expected.size();
  for (std::size_t n = 0; same && n < actual.size(); ++n)
  {
    same = actual[n].code == expected[n].code &&
           (expected[n].function.empty() || actual[n].function == expected[n].function) &&
           (expected[n].text.empty() || actual[n].text == expected[n].text);
  }
  if (same) return ::testing::AssertionSuccess();
  ::testing::AssertionResult result = ::testing::AssertionFailure();
  result << "expected " << expected.size() << " report(s):";
  for (const KyReport& report : expected)
    result << "\n  " << report;
  result << "\nbut found " << actual.size() << ":";
  for (const KyReport& report : actual)
    result << "\n  " << report;
  return result;
}

// The reports since the last check are exactly these, in this order:
//   EXPECT_REPORTS(pool, {0x1300808, "createParameter", "Internal error. ..."}, {...});
#define EXPECT_REPORTS(pool, ...) EXPECT_TRUE(sameReports((pool).takeReports(), {__VA_ARGS__}))
#define EXPECT_NO_REPORTS(pool) EXPECT_TRUE(sameReports((pool).takeReports(), {}))
