// SectionRoundTripTest.cpp: stored and read again, a tree is the same field by field and stores as the same bytes.
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyRandomTree.h"
#include "unit/persistence/KyStoredBytes.h"
#include "unit/persistence/KyTreeText.h"

namespace
{
// What a stored unit keeps: see KyCInventoryBinSerializer.h.
std::string storedUnit(const std::string& unit)
{
  return unit.substr(0, std::min<std::size_t>(unit.size() % 256, 100));
}

void shortenUnits(KyCInventoryItem* root)
{
  KyCInventoryItem* item = root;
  while (item != nullptr)
  {
    for (KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      p->setUnit(storedUnit(p->getUnit()).c_str());
    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      continue;
    }
    while (item != root && item->getNext() == nullptr)
      item = item->getParent();
    item = item != root ? item->getNext() : nullptr;
  }
}

void expectRoundTrip(const KyCInventoryItem* expected, const KyBytes& section)
{
  KyTestPool pool;
  const KyItemPtr read = extractFromMemory(pool, section);
  ASSERT_NE(read, nullptr);
  const std::vector<std::string> expectedText = treeText(expected);
  const std::vector<std::string> readText = treeText(read.get());
  ASSERT_EQ(readText.size(), expectedText.size());
  for (std::size_t n = 0; n < readText.size(); ++n)
    ASSERT_EQ(readText[n], expectedText[n]) << "line " << n;
  EXPECT_TRUE(storedSection(read.get()) == section) << "stores as other bytes";
}

// The bits of a number as it is stored: big-endian, in front of the 6 bytes of the custom part.
template <typename T, typename TBits>
TBits storedBits(TBits bits)
{
  KyTestPool pool;
  T value;
  copyBits(value, bits);
  const KyCInventoryParameter parameter(pool, KyCInventoryAddress(3), "NAME", value, "", false, 0);
  const KyBytes stored = storedParameter(parameter);
  const KyParameterPtr read = readParameter(pool, stored);
  EXPECT_EQ(storedParameter(*read), stored);
  TBits result = 0;
  for (unsigned char byte : firstBytes(lastBytes(stored, sizeof value + 6), sizeof value))
    result = static_cast<TBits>(result << 8 | byte);
  return result;
}
}    // namespace

TEST(SectionRoundTrip, floatBitsAreStoredAsTheyAre)
{
  for (std::uint32_t bits : FLOAT_PATTERNS)
    EXPECT_EQ(storedBits<float>(bits), bits) << std::hex << bits;
}

TEST(SectionRoundTrip, doubleBitsAreStoredAsTheyAre)
{
  for (std::uint64_t bits : DOUBLE_PATTERNS)
    EXPECT_EQ(storedBits<double>(bits), bits) << std::hex << bits;
}

TEST(SectionRoundTrip, stringsKeepNulsAndEveryByteAndLength)
{
  for (unsigned int length : {0u, 1u, 5u, 6u, 7u, 127u, 128u, 255u, 256u, 16383u, 16384u, 1000000u})
  {
    KyTestPool pool;
    std::string text;
    for (unsigned int n = 0; n < length; ++n)
      text += static_cast<char>(n % 256);
    KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
    root.createParameter<KyCString>(pool, KyNInventoryIDs::NAME, KyCString(text.data(), length), "", false, 0);
    const KyItemPtr read = extractFromMemory(pool, storedSection(&root));
    ASSERT_NE(read, nullptr);
    const KyCString value = read->getValue<KyCString>(pool, KyNInventoryIDs::NAME);
    EXPECT_EQ(std::string(value.c_str(), value.length()), text) << length;
  }
}

TEST(SectionRoundTrip, unitsOf0To300BytesKeepWhatIsStoredOfThem)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
  KyCInventoryParameter* const parameter =
      root.createParameter<int>(pool, KyNInventoryIDs::SIZE, 5, "", true, 0xFFFFFFFF);
  std::string unit;
  for (unsigned int length = 0; length <= 300; ++length)
  {
    parameter->setUnit(unit.c_str());
    const KyItemPtr read = extractFromMemory(pool, storedSection(&root));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->getParameterByOrdinalNumber(0)->getUnit(), storedUnit(unit)) << length;
    unit += static_cast<char>('A' + length % 26);
  }
}

class SectionRoundTripOfRandomTrees : public ::testing::TestWithParam<unsigned int>
{
};

TEST_P(SectionRoundTripOfRandomTrees, treeIsTheSameFieldByFieldAndInItsBytes)
{
  KyTestPool pool;
  const unsigned int seed = GetParam();
  const KyItemPtr tree = KyRandomTree(seed).make(pool, 1 + seed % 97);
  const KyBytes section = storedSection(tree.get());
  shortenUnits(tree.get());
  EXPECT_TRUE(storedSection(tree.get()) == section) << "a shortened unit stores as itself";
  expectRoundTrip(tree.get(), section);
}
INSTANTIATE_TEST_SUITE_P(Seeds, SectionRoundTripOfRandomTrees, ::testing::Range(1u, 101u));

TEST(SectionRoundTrip, randomTreesWithAChangedByteGiveATreeOrReports)
{
  std::mt19937 random(4711);
  for (unsigned int seed = 1; seed <= 300; ++seed)
  {
    KyTestPool pool;
    KyBytes tree = storedTree(KyRandomTree(seed).make(pool, 8).get());
    tree[random() % tree.size()] = static_cast<unsigned char>(random());
    const KyItemPtr root = extractFromMemory(pool, sectionAround(tree));
    const std::vector<KyReport> reports = pool.takeReports();
    EXPECT_NE(root == nullptr, reports.empty()) << seed;
    if (root != nullptr) treeText(root.get());
  }
}
