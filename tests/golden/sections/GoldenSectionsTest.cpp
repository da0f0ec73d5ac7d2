// GoldenSectionsTest.cpp: the committed sections are what this build stores, and read back as the trees they came from.
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "golden/sections/KyGoldenTrees.h"
#include "unit/persistence/KyStoredBytes.h"
#include "unit/persistence/KyTreeText.h"

namespace
{
std::string pathOf(const std::string& name) { return KY_SOURCE_DIR "/tests/golden/sections/" + name + ".kyinv"; }

KyBytes fileBytes(const std::string& path)
{
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.is_open()) << path;
  return KyBytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void expectSameTree(const KyCInventoryItem* read, const KyCInventoryItem* expected)
{
  ASSERT_EQ(read == nullptr, expected == nullptr);
  const std::vector<std::string> readText = treeText(read);
  const std::vector<std::string> expectedText = treeText(expected);
  ASSERT_EQ(readText.size(), expectedText.size());
  for (std::size_t n = 0; n < readText.size(); ++n)
    ASSERT_EQ(readText[n], expectedText[n]) << "line " << n;
}

class GoldenSections : public ::testing::TestWithParam<KyGoldenTree>
{
};

std::string nameOf(const ::testing::TestParamInfo<KyGoldenTree>& info) { return info.param.name; }
}    // namespace

void PrintTo(const KyGoldenTree& tree, std::ostream* out) { *out << tree.name << ": " << tree.about; }

TEST_P(GoldenSections, treeIsStoredAsTheCommittedBytes)
{
  KyTestPool pool;
  const KyItemPtr root = GetParam().make(pool, KyForm::GIVEN);
  const KyBytes stored = kyStoredSection(pool, root.get());
  const KyBytes committed = fileBytes(pathOf(GetParam().name));
  ASSERT_EQ(stored.size(), committed.size());
  for (std::size_t n = 0; n < stored.size(); ++n)
    ASSERT_EQ(stored[n], committed[n]) << "byte " << n;
}

TEST_P(GoldenSections, committedFileReadsBackAsTheTree)
{
  KyTestPool pool;
  const KyItemPtr read = extractFromFile(pool, pathOf(GetParam().name));
  expectSameTree(read.get(), GetParam().make(pool, KyForm::READ).get());
}

TEST_P(GoldenSections, committedBytesReadBackAsTheTreeFromMemory)
{
  KyTestPool pool;
  const KyItemPtr read = extractFromMemory(pool, fileBytes(pathOf(GetParam().name)));
  expectSameTree(read.get(), GetParam().make(pool, KyForm::READ).get());
}

TEST_P(GoldenSections, treeReadFromTheCommittedFileStoresAsTheSameBytes)
{
  KyTestPool pool;
  const KyBytes committed = fileBytes(pathOf(GetParam().name));
  const KyItemPtr read = extractFromMemory(pool, committed);
  EXPECT_TRUE(kyStoredSection(pool, read.get()) == committed);
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenSections, ::testing::ValuesIn(kyGoldenTrees()), nameOf);

TEST(GoldenSectionFiles, everyFileOfTheFolderHasItsTree)
{
  unsigned int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KY_SOURCE_DIR "/tests/golden/sections"))
    if (entry.path().extension() == ".kyinv") ++files;
  EXPECT_EQ(files, kyGoldenTrees().size());
}

// By hand, byte for byte.
TEST(GoldenSectionFiles, bytesOfTheRootAlone)
{
  const KyBytes expected = {
      0x49, 0x4E, 0x56, 0x45,                                  // INVE
      0x55, 0x4B, 0x59, 0xAA,                                  // second mark
      0x00, 0x00, 0x00, 0x01,                                  // version
      0x00, 0x00, 0x00, 0x18,                                  // header size
      0x00, 0x00, 0x00, 0x0B,                                  // data size
      0x00, 0x00, 0x00, 0x18,                                  // trailer size
      0x01,                                                    // version of the stream
      0x01, 0x01, 0x01, 0x00, 0x04, 0x52, 0x4F, 0x4F, 0x54,    // an item starts: class 1, unit 1, new text: ROOT
      0x02,                                                    // it ends
      0x00, 0x00, 0x00, 0x18,                                  // header size
      0x00, 0x00, 0x00, 0x0B,                                  // data size
      0x00, 0x00, 0x00, 0x18,                                  // trailer size
      0x00, 0x00, 0x00, 0x01,                                  // version
      0x49, 0x4E, 0x56, 0x45,                                  // INVE
      0x55, 0x4B, 0x59, 0xAA,                                  // second mark
  };
  EXPECT_EQ(fileBytes(pathOf("root")), expected);
}

TEST(GoldenSectionFiles, recordsOfTheTypes)
{
  const KyBytes section = fileBytes(pathOf("types"));
  EXPECT_EQ(section.size(), 48u + 0x148);
  EXPECT_EQ(firstBytes(section, 24), (KyBytes{0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA, 0x00, 0x00, 0x00, 0x01,
                                              0x00, 0x00, 0x00, 0x18, 0x00, 0x00, 0x01, 0x48, 0x00, 0x00, 0x00, 0x18}));
  EXPECT_EQ(lastBytes(section, 24), (KyBytes{0x00, 0x00, 0x00, 0x18, 0x00, 0x00, 0x01, 0x48, 0x00, 0x00, 0x00, 0x18,
                                             0x00, 0x00, 0x00, 0x01, 0x49, 0x4E, 0x56, 0x45, 0x55, 0x4B, 0x59, 0xAA}));
}
