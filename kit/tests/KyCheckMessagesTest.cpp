// Messages, remedies and docs/error-codes.md say the same.
#include "KyCheckMessages.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "support/KyFiles.h"
#include "support/KyTestPool.h"

namespace
{
// The columns of a row of the page; empty for any other line.
std::vector<std::string> columnsOf(const std::string& line)
{
  std::vector<std::string> columns;
  if (line.rfind("| `0x1502", 0) != 0) return columns;
  for (std::size_t begin = 2, end = 0; (end = line.find(" |", begin)) != line.npos; begin = end + 3)
    columns.push_back(line.substr(begin, end - begin));
  return columns;
}
}    // namespace

TEST(KyCheckMessages, standInTheErrorCodesPageWithTheSameTextsAndRemedies)
{
  std::istringstream page(contentOf(KY_SOURCE_DIR "/docs/error-codes.md"));
  unsigned int count = 0;
  for (std::string line; std::getline(page, line);)
  {
    const std::vector<std::string> columns = columnsOf(line);
    if (columns.empty()) continue;
    ASSERT_EQ(columns.size(), 5u) << line;
    ++count;
    const auto code = static_cast<unsigned int>(std::stoul(columns[0].substr(1), nullptr, 16));
    KyTestPool pool;
    pool.setError(code, 1, "test", "%s%s%s", "%1", "%2", "%3");
    EXPECT_REPORTS(pool, {code, "test", columns[1].substr(1, columns[1].size() - 2)});
    EXPECT_EQ(code < 0x1502800 ? kyRemedyOf(code) : columns[4], columns[4]);
  }
  EXPECT_EQ(count, 31u);
}

TEST(KyCheckMessages, codesOfNoFindingHaveNoRemedy) { EXPECT_STREQ(kyRemedyOf(0x1300000), ""); }
