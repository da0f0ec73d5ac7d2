// KyErrorCodesPageTest.cpp: the page docs/error-codes.md and the registered catalogues say the same.
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyCInventoryData.h"
#include "support/KyFiles.h"
#include "support/KyRegisteredText.h"
#include "support/KyTestPool.h"

namespace
{
// Code and text of each row "| `0x1300000` | `text` | ..." of the page.
std::map<unsigned int, std::string> readPage()
{
  std::map<unsigned int, std::string> rows;
  std::ifstream page(KY_SOURCE_DIR "/docs/error-codes.md");
  const std::string separator = "` | `";
  for (std::string line; std::getline(page, line);)
  {
    const std::size_t codeEnd = line.find(separator);
    if (line.compare(0, 5, "| `0x") != 0 || codeEnd == std::string::npos) continue;
    const std::size_t textBegin = codeEnd + separator.size();
    const std::size_t textEnd = line.find("` | ", textBegin);
    const auto code = static_cast<unsigned int>(std::stoul(line.substr(3, codeEnd - 3), nullptr, 16));
    EXPECT_TRUE(rows.emplace(code, line.substr(textBegin, textEnd - textBegin)).second) << "twice: " << line;
  }
  return rows;
}

bool isRegistered(const std::string& text) { return text.compare(0, 10, "Message 0x") != 0; }

// The libraries that this program is linked to.
struct KyLibraryMessages
{
  unsigned int codeBase;
  const char* name;
};
// clang-format off
const KyLibraryMessages s_libraries[] = {{0x1000000, "libKyErrorHandling"},
                                         {0x1100000, "libKyComposite"},
                                         {0x1200000, "libKyCompositeFactory"},
                                         {0x1300000, "libKyInventoryTree"},
#if KY_HAVE_HOST
                                         {0x1400000, "libKyInventoryHost"},
#endif
#if KY_HAVE_KIT
                                         {0x1500000, "libKyInventoryKit"},
#endif
};
// clang-format on
constexpr unsigned int codesPerLibrary = 0x100000;
constexpr unsigned int codesPerGroup = 0x800;

bool isOfLinkedLibrary(unsigned int code)
{
  for (const KyLibraryMessages& library : s_libraries)
  {
    if (code - library.codeBase < codesPerLibrary) return true;
  }
  return false;
}
}    // namespace

TEST(KyErrorCodesPage, everyRowHasTheRegisteredText)
{
  const auto rows = readPage();
  EXPECT_GT(rows.size(), 66u);
  for (const auto& [code, text] : rows)
  {
    if (!isOfLinkedLibrary(code)) continue;
    EXPECT_EQ(registeredText(code), text) << std::hex << code;
  }
}

TEST(KyErrorCodesPage, everyRowIsOfAKnownLibrary)
{
  for (const auto& row : readPage())
  {
    EXPECT_TRUE(row.first >= 0x1000000 && row.first < 0x1600000) << std::hex << row.first;
  }
}

TEST(KyErrorCodesPage, everyRegisteredMessageHasItsRow)
{
  const auto rows = readPage();
  for (const KyLibraryMessages& library : s_libraries)
  {
    unsigned int found = 0;
    for (unsigned int group = 0; group < 16; ++group)
    {
      for (unsigned int place = 0; place < 128; ++place)
      {
        const unsigned int code = library.codeBase + group * codesPerGroup + place;
        const std::string text = registeredText(code);
        if (!isRegistered(text)) break;
        ++found;
        EXPECT_EQ(rows.count(code), 1u) << std::hex << code << " is missing: " << text;
      }
    }
    EXPECT_GT(found, 0u) << library.name << " has registered nothing";
  }
}

TEST(KyErrorCodesPage, theExampleIsWhatAFileCutShortGives)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryItem root(pool, KyCInventoryAddress(1), "ROOT");
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  const KyTemporaryFolder folder;
  const unsigned int length = buffer.getWritePosition() - 24 - 1;    // the trailer is gone, and one byte more
  const std::string path =
      folder.write("rack.inv", std::string(reinterpret_cast<const char*>(buffer.getStorage()), length));

  KyCInventoryData::readInventoryDataFromFile(pool, path.c_str(), buffer);
  std::ostringstream example;
  example << "A file cut short gives\n\n```text\n";
  for (KyReport report : pool.takeReports())
  {
    const std::size_t place = report.text.find(path);
    if (place != std::string::npos) report.text.replace(place, path.size(), "rack.inv");
    example << report << "\n";
  }
  example << "```\n";
  EXPECT_NE(contentOf(KY_SOURCE_DIR "/docs/error-codes.md").find(example.str()), std::string::npos) << example.str();
}
