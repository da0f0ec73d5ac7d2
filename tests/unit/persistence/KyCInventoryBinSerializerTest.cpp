#include "inventory/KyCInventoryBinSerializer.h"

#include <string>

#include "errorhandling/KyNPoolAllocator.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyStoredBytes.h"

namespace
{
// The custom part stands at the end of a stored parameter.
KyBytes customPart(const std::string& unit, bool modifiable, unsigned int relevance, std::size_t expectedSize)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, KyCInventoryAddress(3), "NAME", 7, unit.c_str(), modifiable, relevance);
  return lastBytes(storedParameter(parameter), expectedSize);
}

std::string unitOf(std::size_t length)
{
  std::string unit;
  for (std::size_t n = 0; n < length; ++n)
    unit += static_cast<char>('!' + n % 90);
  return unit;
}

// How many bytes a unit adds to a stored parameter, compared with an empty one.
std::size_t storedUnitLength(const std::string& unit)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, KyCInventoryAddress(3), "NAME", 7, "", false, 0);
  const std::size_t without = storedParameter(parameter).size();
  parameter.setUnit(unit.c_str());
  return storedParameter(parameter).size() - without;
}
}    // namespace

TEST(KyCInventoryBinSerializer, emptyUnitIsStoredAsSixCustomBytes)
{
  EXPECT_EQ(customPart("", false, 0x01020304, 6), (KyBytes{0x00, 0x00, 0x01, 0x02, 0x03, 0x04}));
}

TEST(KyCInventoryBinSerializer, customPartIsUnitThenModifiableThenRelevance)
{
  EXPECT_EQ(customPart("mV", true, 0xFFFFFFFF, 8), (KyBytes{0x02, 'm', 'V', 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(KyCInventoryBinSerializer, modifiableIsStoredAsFFAndTheOtherAs00)
{
  EXPECT_EQ(customPart("", true, 0, 6), (KyBytes{0x00, 0xFF, 0x00, 0x00, 0x00, 0x00}));
  EXPECT_EQ(customPart("", false, 0, 6), (KyBytes{0x00, 0x00, 0x00, 0x00, 0x00, 0x00}));
}

TEST(KyCInventoryBinSerializer, unitOf100BytesIsStoredWhole)
{
  const std::string unit = unitOf(100);
  EXPECT_EQ(customPart(unit, false, 0, 106), KyBytes{100} + bytesOf(unit) + KyBytes(5, 0));
  EXPECT_EQ(storedUnitLength(unit), 100u);
}

TEST(KyCInventoryBinSerializer, unitOf101BytesIsStoredAsItsFirst100)
{
  EXPECT_EQ(customPart(unitOf(101), false, 0, 106), KyBytes{100} + bytesOf(unitOf(100)) + KyBytes(5, 0));
  EXPECT_EQ(storedUnitLength(unitOf(101)), 100u);
}

TEST(KyCInventoryBinSerializer, unitOf300BytesIsStoredAsItsFirst44KeptOnPurpose)
{
  EXPECT_EQ(customPart(unitOf(300), false, 0, 50), KyBytes{44} + bytesOf(unitOf(44)) + KyBytes(5, 0));
  EXPECT_EQ(storedUnitLength(unitOf(300)), 44u);
}

TEST(KyCInventoryBinSerializer, unitOf256BytesIsStoredAsEmptyKeptOnPurpose)
{
  EXPECT_EQ(customPart(unitOf(256), false, 0, 6), KyBytes(6, 0));
  EXPECT_EQ(storedUnitLength(unitOf(256)), 0u);
}

TEST(KyCInventoryBinSerializer, unitLengthsAroundTheLimitsAreReducedBeforeTheyAreLimited)
{
  EXPECT_EQ(storedUnitLength(unitOf(1)), 1u);
  EXPECT_EQ(storedUnitLength(unitOf(99)), 99u);
  EXPECT_EQ(storedUnitLength(unitOf(128)), 100u);
  EXPECT_EQ(storedUnitLength(unitOf(255)), 100u);
  EXPECT_EQ(storedUnitLength(unitOf(257)), 1u);
  EXPECT_EQ(storedUnitLength(unitOf(356)), 100u);
  EXPECT_EQ(storedUnitLength(unitOf(357)), 100u);
  EXPECT_EQ(storedUnitLength(unitOf(512)), 0u);
  EXPECT_EQ(storedUnitLength(unitOf(65536)), 0u);
}

TEST(KyCInventoryBinSerializer, unitBytesAreStoredAsTheyAre)
{
  EXPECT_EQ(customPart("\xC2\xB5\x01\xFF", false, 0, 10),
            (KyBytes{0x04, 0xC2, 0xB5, 0x01, 0xFF, 0x00, 0x00, 0x00, 0x00, 0x00}));
}

TEST(KyCInventoryBinSerializer, constructionWithoutMemoryReportsTheAllocatorAlone)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  {
    const KyCInventoryBinSerializer serializer(pool);
    EXPECT_EQ(serializer.getBuffer(), nullptr);
  }
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory());
}
