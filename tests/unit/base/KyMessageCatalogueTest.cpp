// KyMessageCatalogueTest.cpp: the registered catalogue of the inventory library: numbers, codes and texts.
#include <elf.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#include "KyCatalogueTexts.h"
#include "errorhandling/KyErrorHandling.h"
#include "support/KyFiles.h"
#include "support/KyRegisteredText.h"
#include "support/KyTestPool.h"

namespace
{
constexpr unsigned int messageCount = 66;

// The ELF records of this program's word size; the library has the same.
using KyElfHeader = std::conditional_t<sizeof(void*) == 4, Elf32_Ehdr, Elf64_Ehdr>;
using KyElfSection = std::conditional_t<sizeof(void*) == 4, Elf32_Shdr, Elf64_Shdr>;

template <typename Record>
Record readRecord(const std::string& file, std::size_t offset)
{
  Record record{};
  if (offset + sizeof record <= file.size()) std::memcpy(&record, file.data() + offset, sizeof record);
  return record;
}

// The section of that name in the built library; all zero when there is none.
KyElfSection findSection(const std::string& name)
{
  const std::string file = contentOf(KY_INVENTORY_LIBRARY);
  const auto header = readRecord<KyElfHeader>(file, 0);
  const auto sectionAt = [&file, &header](std::size_t n)
  { return readRecord<KyElfSection>(file, header.e_shoff + n * sizeof(KyElfSection)); };
  const KyElfSection names = sectionAt(header.e_shstrndx);
  for (std::size_t n = 0; n < header.e_shnum; ++n)
  {
    const KyElfSection section = sectionAt(n);
    const std::size_t at = names.sh_offset + section.sh_name;
    if (at < file.size() && name == file.data() + at) return section;
  }
  return {};
}
}    // namespace

TEST(KyMessageCatalogue, hasSixtySixMessages) { EXPECT_EQ(std::size(s_catalogueRows), messageCount); }

TEST(KyMessageCatalogue, everyCodeHasItsText)
{
  for (const KyCatalogueRow& row : s_catalogueRows)
    EXPECT_EQ(registeredText(row.code), row.text) << row.number;
}

TEST(KyMessageCatalogue, everyNameHasItsCode)
{
  for (const KyCatalogueRow& row : s_catalogueRows)
    EXPECT_EQ(row.namedCode, row.code) << row.number;
}

TEST(KyMessageCatalogue, codesFollowFromNumberAndGroup)
{
  const unsigned int boundaries[] = {0, 17, 45, 56, 58, 59, 66};
  unsigned int group = 0;
  for (unsigned int number = 0; number < messageCount; ++number)
  {
    if (number == boundaries[group + 1]) ++group;
    EXPECT_EQ(s_catalogueRows[number].number, number);
    EXPECT_EQ(s_catalogueRows[number].code, 0x1300000 + group * 0x800 + number - boundaries[group]) << number;
  }
}

TEST(KyMessageCatalogue, message17IsTheFirstAndMessage44TheLastOfGroup1)
{
  EXPECT_EQ(s_catalogueRows[17].code, 0x1300800u);
  EXPECT_EQ(s_catalogueRows[44].code, 0x130081Bu);
  EXPECT_EQ(registeredText(0x1300800),
            "Internal error. Kyrel Support information: Initializing item or parameter of category %1: ID has not "
            "exactly one element.");
  EXPECT_EQ(registeredText(0x130081B),
            "Internal error. Kyrel Support information: Cannot change ID of %1 to %2. The ID already exists at the "
            "parent item.");
}

TEST(KyMessageCatalogue, message45OpensGroup2)
{
  EXPECT_EQ(s_catalogueRows[45].code, 0x1301000u);
  EXPECT_EQ(registeredText(0x1301000),
            "Internal error. Kyrel Support information: Initializing parameter %1: ID has not exactly one element.");
}

TEST(KyMessageCatalogue, message58IsAllOfGroup4)
{
  EXPECT_EQ(s_catalogueRows[58].code, 0x1302000u);
  EXPECT_EQ(registeredText(0x1302000), "Unit serialization length exceeds limit of %1 bytes.");
  EXPECT_EQ(registeredText(0x1302001), "Message 0x1302001");
}

TEST(KyMessageCatalogue, message65IsTheLast)
{
  EXPECT_EQ(s_catalogueRows[65].code, 0x1302806u);
  EXPECT_EQ(registeredText(0x1302806),
            "Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: %1");
  EXPECT_EQ(registeredText(0x1302807), "Message 0x1302807");
}

TEST(KyMessageCatalogue, codesBesideTheGroupsHaveNoText)
{
  EXPECT_EQ(registeredText(0x12FFFFF), "Message 0x12FFFFF");
  EXPECT_EQ(registeredText(0x1300011), "Message 0x1300011");
  EXPECT_EQ(registeredText(0x13007FF), "Message 0x13007FF");
  EXPECT_EQ(registeredText(0x130081C), "Message 0x130081C");
  EXPECT_EQ(registeredText(0x130100B), "Message 0x130100B");
  EXPECT_EQ(registeredText(0x1301802), "Message 0x1301802");
  EXPECT_EQ(registeredText(0x1303000), "Message 0x1303000");
}

TEST(KyMessageCatalogue, aReportWithoutPlaceholderPassesNoArguments)
{
  KyTestPool pool;
  pool.setError(KY_MSG_SECTION_CORRUPT, __LINE__, "seekInventoryDataTrailerInMem", nullptr);
  EXPECT_REPORTS(pool, {0x130000C, "seekInventoryDataTrailerInMem", "Inventory section is corrupt."});
}

TEST(KyMessageCatalogue, twoTextsFillTheirPlaceholdersInOrder)
{
  KyTestPool pool;
  pool.setError(KY_MSG_PARAMETER_DOES_NOT_EXIST, __LINE__, "getValue", "%s%s", "SERIAL_NUMBER", "BOARD[2]");
  EXPECT_REPORTS(pool, {0x1300801, "getValue", "Parameter SERIAL_NUMBER does not exist at item BOARD[2]."});
}

TEST(KyMessageCatalogue, twoNumbersFillTheirPlaceholdersInOrder)
{
  KyTestPool pool;
  pool.setError(KY_MSG_SECTION_VERSION_INCOMPATIBLE, __LINE__, "checkHeader", "%d%d", 2, 1);
  EXPECT_REPORTS(pool, {0x1300009, "checkHeader",
                        "Inventory data file is incompatible. Kyrel Support information: Inventory section has "
                        "incompatible version 2 (expected 1)."});
}

// The two that nobody reports keep their places: the codes behind them depend on it.
TEST(KyMessageCatalogue, theReservedMessagesAreRegistered)
{
  EXPECT_EQ(registeredText(0x1300802), "Internal error. Kyrel Support information: Cannot attach inventory tree.");
  EXPECT_EQ(registeredText(0x130080D),
            "Internal error. Kyrel Support information: Cannot allocate KyCInventoryParameter object.");
}

TEST(KyMessageCatalogue, codes1300802And130080DAreNeverReported)    // no source but the list of codes names them
{
  std::vector<std::string> found;
  for (const char* folder : {KY_SOURCE_DIR "/src", KY_SOURCE_DIR "/include"})
  {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
      if (!entry.is_regular_file()) continue;
      const std::string text = contentOf(entry.path().string());
      for (const char* name :
           {"KY_MSG_CANNOT_ATTACH_TREE", "KY_MSG_CANNOT_ALLOCATE_PARAMETER", "0x1300802", "0x130080D"})
      {
        if (text.find(name) != std::string::npos) found.push_back(entry.path().filename().string() + " " + name);
      }
    }
  }
  EXPECT_EQ(found, (std::vector<std::string>{"KyMessageCodes.h KY_MSG_CANNOT_ATTACH_TREE",
                                             "KyMessageCodes.h KY_MSG_CANNOT_ALLOCATE_PARAMETER",
                                             "KyMessageCodes.h 0x1300802", "KyMessageCodes.h 0x130080D"}));
}

TEST(KyMessageCatalogue, theTableHasADataSectionOfItsOwn)
{
  const KyElfSection section = findSection(".dataMSG");
  EXPECT_EQ(section.sh_type, static_cast<unsigned int>(SHT_PROGBITS));
  EXPECT_EQ(section.sh_size, messageCount * sizeof(void*));
  EXPECT_EQ(section.sh_flags, static_cast<unsigned int>(SHF_ALLOC | SHF_WRITE));
}
