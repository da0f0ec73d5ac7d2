// Explanations of message codes: those of every library, and no others.
#include "inventorykit/KyExplain.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <set>

#include "inventory/KyCInventoryItem.h"
#include "support/KyFiles.h"
#include "support/KyRegisteredText.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
constexpr unsigned int hostLibrary = 0x14;
#ifdef KY_HAVE_HOST
constexpr bool hasHost = true;
#else
constexpr bool hasHost = false;
#endif

bool isRegistered(unsigned int code) { return registeredText(code).compare(0, 10, "Message 0x") != 0; }
}    // namespace

TEST(KyExplain, tellsTextLibraryReportersCauseAndRemedy)
{
  Explanation explanation = {};
  ASSERT_TRUE(explain(0x1300001, explanation));
  EXPECT_EQ(explanation.code, 0x1300001u);
  EXPECT_STREQ(explanation.library, "libKyInventoryTree");
  EXPECT_STREQ(explanation.text, "Cannot open file %1.");
  EXPECT_STREQ(explanation.reporters, "readInventoryDataFromFile");
  EXPECT_STREQ(explanation.cause, "There is no such file, or it may not be read.");
  EXPECT_STREQ(explanation.remedy, "Check the path and the permissions.");
}

TEST(KyExplain, marksOfThePageAreTakenAwayAndQuotesStay)
{
  Explanation explanation = {};
  ASSERT_TRUE(explain(0x1000000, explanation));
  EXPECT_STREQ(explanation.reporters,
               "pool allocations, as \"operator new\", \"operator new[]\", \"allocate\" or \"reallocate\"");
  ASSERT_TRUE(explain(0x1300802, explanation));
  EXPECT_STREQ(explanation.remedy, "") << "nothing can be done";
}

// "Reported by" is what stands in reports as their function. Functions that are handed on stand in the second list.
TEST(KyExplain, everyFunctionOfTheKitThatReportsIsNamed)
{
  namespace fs = std::filesystem;
  std::map<std::string, unsigned int> codes;
  std::vector<std::pair<std::string, std::string>> reports;    // code's name, function
  for (const auto& entry : fs::directory_iterator(KY_SOURCE_DIR "/kit/src"))
  {
    const std::string source = contentOf(entry.path());
    for (std::size_t at = 0; (at = source.find("_MSG_", at)) != source.npos; ++at)
    {
      const std::size_t begin = source.rfind("KY_", at);
      const std::size_t end = source.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", begin);
      const std::string name = source.substr(begin, end - begin);
      const std::string line = ", __LINE__, \"";
      if (source.compare(end, line.size(), line) == 0)
        reports.emplace_back(name,
                             source.substr(end + line.size(), source.find('"', end + line.size()) - end - line.size()));
      const std::size_t number = source.find_first_not_of("= \n", end);
      if (source[end] == ' ' && source.compare(number, 2, "0x") == 0)
        codes[name] = static_cast<unsigned int>(std::stoul(source.substr(number, 9), nullptr, 16));
    }
  }
  for (const char* function : {"inspectBytes", "extractSection", "stripSection", "appendSection", "checkBytes"})
    reports.emplace_back("KY_KIT_MSG_NO_SECTION", function);
  for (const char* function : {"extractSection", "stripSection", "appendSection"})
    reports.emplace_back("KY_CHECK_MSG_CANNOT_BE_FOUND", function);
  for (const char* function : {"stripSection", "replaceTree"})
    reports.emplace_back("KY_CHECK_MSG_NOT_BOUNDED", function);
  EXPECT_GT(reports.size(), 50u);
  for (const auto& [name, function] : reports)
  {
    Explanation explanation = {};
    ASSERT_TRUE(explain(codes[name], explanation)) << name;
    EXPECT_NE(std::strstr(explanation.reporters, function.c_str()), nullptr) << name << " " << function;
  }
}

TEST(KyExplain, anUnknownCodeLeavesTheExplanationAlone)
{
  Explanation explanation = {7, "library", "text", "reporters", "cause", "remedy"};
  EXPECT_FALSE(explain(0, explanation));
  EXPECT_FALSE(explain(0x1300011, explanation));
  EXPECT_FALSE(explain(0xFFFFFFFF, explanation));
  EXPECT_EQ(explanation.code, 7u);
  EXPECT_STREQ(explanation.remedy, "remedy");
}

TEST(KyExplain, everyExplanationIsOfARegisteredMessageWithThisText)
{
  unsigned int last = 0;
  for (const Explanation& explanation : allExplanations())
  {
    EXPECT_GT(explanation.code, last) << "ordered by code";
    last = explanation.code;
    if (hasHost || explanation.code >> 20 != hostLibrary)
    {
      EXPECT_EQ(registeredText(explanation.code), explanation.text) << std::hex << explanation.code;
    }
    EXPECT_NE(*explanation.cause, '\0') << std::hex << explanation.code;
    EXPECT_EQ(std::strncmp(explanation.library, "libKy", 5), 0) << explanation.library;
    EXPECT_EQ(std::strstr(explanation.remedy, "As above"), nullptr) << "it stands alone: " << explanation.remedy;
    EXPECT_EQ(std::strstr(explanation.cause, "As above"), nullptr) << "it stands alone: " << explanation.cause;
  }
}

TEST(KyExplain, everyRegisteredMessageIsExplained)
{
  Explanation explanation = {};
  std::set<unsigned int> libraries;
  for (unsigned int code = 0x1000000; code < 0x1600000; code += 0x800)
  {
    for (unsigned int place = 0; isRegistered(code + place); ++place)
    {
      EXPECT_TRUE(explain(code + place, explanation)) << std::hex << code + place;
      libraries.insert(code >> 20);
    }
  }
  EXPECT_EQ(libraries, hasHost ? (std::set<unsigned int>{0x10, 0x11, 0x12, 0x13, 0x14, 0x15})
                               : (std::set<unsigned int>{0x10, 0x11, 0x12, 0x13, 0x15}));
}

TEST(KyExplain, everyRowOfThePageIsExplained)
{
  std::ifstream page(KY_SOURCE_DIR "/docs/error-codes.md");
  std::size_t rows = 0;
  for (std::string line; std::getline(page, line);)
    rows += line.compare(0, 5, "| `0x") == 0;
  EXPECT_EQ(allExplanations().size(), rows);
}

TEST(KyExplain, codesAreReadAsNumbersAndOutOfTexts)
{
  KyTestPool pool;
  EXPECT_EQ(readCode(pool, "19922949"), 0x1300005u);
  EXPECT_EQ(readCode(pool, "0x1300005"), 0x1300005u);
  EXPECT_EQ(readCode(pool, "0X130000a"), 0x130000Au);
  EXPECT_EQ(readCode(pool, "kyinventory: 0x: a.kyinv: Cannot read from file. (0x1300005, read) (0x1300003, x)"),
            0x1300005u);
  EXPECT_EQ(readCode(pool, "Message 0x1300808 (first, second)"), 0x1300808u);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyExplain, aTextWithoutACodeIsReported)
{
  KyTestPool pool;
  for (const char* text : {"", "0", "0x", "-5", "five", "0xFFFFFFFFF", "99999999999"})
  {
    EXPECT_EQ(readCode(pool, text), 0u) << text;
    EXPECT_REPORTS(pool,
                   {0x150400C, "readCode", "\"" + std::string(text) + "\" is not a message code, such as 0x1300005."});
  }
}

TEST(KyExplain, aCodeThatNoMessageHasIsReportedWithTheOneThatWasMeant)
{
  KyTestPool pool;
  Explanation explanation = {};
  EXPECT_FALSE(explainText(pool, "0x1300011", explanation));
  EXPECT_FALSE(explainText(pool, "1300005", explanation));
  EXPECT_REPORTS(pool, {0x150400D, "explainText", "No message has the code 0x1300011."},
                 {0x150400D, "explainText", "No message has the code 0x13D625. Did you mean 0x1300005?"});
}
