#include "inventory/KyCInventoryBinDeSerializer.h"

#include <string>

#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyNInventoryIDs.h"
#include "unit/persistence/KyPersistenceReports.h"
#include "unit/persistence/KyStoredBytes.h"

namespace
{
constexpr unsigned int NAME_ID = 3;    // KyNInventoryIDs::NAME

// A stored parameter up to its custom part.
KyBytes standardPart()
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, KyCInventoryAddress(NAME_ID), "NAME", 7, "", false, 0);
  const KyBytes bytes = storedParameter(parameter);
  return firstBytes(bytes, bytes.size() - 6);
}

// What reading a custom part by itself leaves in a parameter that starts with the unit "old", modifiable, relevance 9.
class CustomPart : public KyCInventoryBinDeSerializer
{
public:
  explicit CustomPart(KyCErrorListPool& pool)
      : KyCInventoryBinDeSerializer(pool),
        m_bytes(pool),
        m_parameter(createCustomParameter(pool, NAME_ID, 0x114, "NAME"))
  {
  }

  KyParameterPtr read(KyCErrorListPool& pool, const KyBytes& bytes)
  {
    put(pool, m_bytes, bytes);
    m_buffer = &m_bytes;
    KyParameterPtr parameter(asParameter(m_parameter));
    parameter->setUnit("old");
    parameter->setModifiableFlag(true);
    parameter->setRelevance(9);
    handleCustomParameter(pool, m_parameter);
    m_buffer = nullptr;
    return parameter;
  }

  unsigned int readPosition() const { return m_bytes.getReadPosition(); }

private:
  KyCBuffer m_bytes;
  KyCParam* m_parameter;
};

// The report of a read behind the end of the buffer.
KyReport nothingLeft() { return {0x1100007, "readBuffer", ""}; }
}    // namespace

TEST(KyCInventoryBinDeSerializer, customPartIsReadBack)
{
  KyTestPool pool;
  const KyParameterPtr parameter =
      readParameter(pool, standardPart() + KyBytes{0x02, 'm', 'V', 0xFF, 0x01, 0x02, 0x03, 0x04});
  ASSERT_NE(parameter, nullptr);
  EXPECT_STREQ(parameter->getUnit(), "mV");
  EXPECT_TRUE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0x01020304u);
  EXPECT_EQ(parameter->getValue<int>(pool), 7);
}

TEST(KyCInventoryBinDeSerializer, anyFlagByteButZeroIsModifiable)
{
  KyTestPool pool;
  for (unsigned int flag = 0; flag < 256; ++flag)
  {
    const KyParameterPtr parameter =
        readParameter(pool, standardPart() + KyBytes{0x00, static_cast<unsigned char>(flag), 0, 0, 0, 0});
    ASSERT_NE(parameter, nullptr);
    EXPECT_EQ(parameter->isModifiable(), flag != 0) << flag;
  }
}

TEST(KyCInventoryBinDeSerializer, unitOf100BytesIsReadWhole)
{
  KyTestPool pool;
  const std::string unit(100, 'u');
  const KyParameterPtr parameter = readParameter(pool, standardPart() + KyBytes{100} + bytesOf(unit) + KyBytes(5, 0));
  ASSERT_NE(parameter, nullptr);
  EXPECT_EQ(parameter->getUnit(), unit);
}

TEST(KyCInventoryBinDeSerializer, unitLengthOf101ReportsAndLeavesUnitFlagAndRelevance)
{
  KyTestPool pool;
  CustomPart part(pool);
  const KyParameterPtr parameter = part.read(pool, KyBytes{101} + KyBytes(101, 'x') + KyBytes{0, 0, 0, 0, 1});
  EXPECT_REPORTS(pool, unitTooLong());
  EXPECT_STREQ(parameter->getUnit(), "old");
  EXPECT_TRUE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 9u);
  EXPECT_EQ(part.readPosition(), 1u);    // behind the length
}

TEST(KyCInventoryBinDeSerializer, unitLengthOf255ReportsTheSame)
{
  KyTestPool pool;
  CustomPart part(pool);
  const KyParameterPtr parameter = part.read(pool, KyBytes{255} + KyBytes(300, 'x'));
  EXPECT_REPORTS(pool, unitTooLong());
  EXPECT_STREQ(parameter->getUnit(), "old");
  EXPECT_EQ(part.readPosition(), 1u);
}

TEST(KyCInventoryBinDeSerializer, readParameterWithTooLongAUnitIsStillHandedOut)
{
  KyTestPool pool;
  const KyParameterPtr parameter = readParameter(pool, standardPart() + KyBytes{101} + KyBytes(110, 'x'));
  EXPECT_REPORTS(pool, unitTooLong(), cannotDeserializeParameter());
  ASSERT_NE(parameter, nullptr);
  EXPECT_STREQ(parameter->getUnit(), "");
  EXPECT_FALSE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0u);
}

TEST(KyCInventoryBinDeSerializer, unitEndsAtItsFirstNul)
{
  KyTestPool pool;
  const KyParameterPtr parameter =
      readParameter(pool, standardPart() + KyBytes{0x05, 'm', 'V', 0, 'x', 'y', 0xFF, 0, 0, 0, 8});
  ASSERT_NE(parameter, nullptr);
  EXPECT_STREQ(parameter->getUnit(), "mV");
  EXPECT_EQ(parameter->getRelevance(), 8u);
}

TEST(KyCInventoryBinDeSerializer, missingCustomPartCountsAsEmptyNotModifiableAndZero)
{
  KyTestPool pool;
  CustomPart part(pool);
  const KyParameterPtr parameter = part.read(pool, {});
  EXPECT_REPORTS(pool, nothingLeft(), nothingLeft(), nothingLeft());    // length, flag, relevance; a unit of 0 is there
  EXPECT_STREQ(parameter->getUnit(), "");
  EXPECT_FALSE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0u);
}

TEST(KyCInventoryBinDeSerializer, unitCutShortCountsAsEmptyAndReadingGoesOn)
{
  KyTestPool pool;
  CustomPart part(pool);
  const KyParameterPtr parameter = part.read(pool, {50, 'm', 'V', 1, 2});
  // The unit is not there; flag and relevance are then read from what follows the length.
  EXPECT_REPORTS(pool, nothingLeft(), nothingLeft());
  EXPECT_STREQ(parameter->getUnit(), "");
  EXPECT_TRUE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0u);
}

TEST(KyCInventoryBinDeSerializer, unitOf100BytesInFrontOfNothingIsRead)
{
  KyTestPool pool;
  CustomPart part(pool);
  const std::string unit(100, 'u');
  const KyParameterPtr parameter = part.read(pool, KyBytes{100} + bytesOf(unit));
  EXPECT_REPORTS(pool, nothingLeft(), nothingLeft());    // flag and relevance
  EXPECT_EQ(parameter->getUnit(), unit);
  EXPECT_FALSE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0u);
}

TEST(KyCInventoryBinDeSerializer, relevanceCutShortCountsAsZero)
{
  KyTestPool pool;
  CustomPart part(pool);
  const KyParameterPtr parameter = part.read(pool, {1, 'V', 1, 0xAA, 0xBB, 0xCC});
  EXPECT_REPORTS(pool, nothingLeft());
  EXPECT_STREQ(parameter->getUnit(), "V");
  EXPECT_TRUE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0u);
}

TEST(KyCInventoryBinDeSerializer, everyTruncationOfAParameterIsReportedAndReadsNothingElse)
{
  const KyBytes whole = standardPart() + KyBytes{0x02, 'm', 'V', 0xFF, 0x01, 0x02, 0x03, 0x04};
  for (std::size_t size = 0; size < whole.size(); ++size)
  {
    KyTestPool pool;
    const KyParameterPtr parameter = readParameter(pool, firstBytes(whole, size));
    const std::vector<KyReport> reports = pool.takeReports();
    ASSERT_GE(reports.size(), 2u) << size;
    EXPECT_TRUE(sameReports({reports.back()}, {cannotDeserializeParameter()})) << size;
  }
}

TEST(KyCInventoryBinDeSerializer, createdParameterHasTheStoredIdWithIndexOneAndTheCustomFlag)
{
  KyTestPool pool;
  KyCInventoryBinDeSerializer deserializer(pool);
  KyCParam* const param = deserializer.createCustomParameter(pool, 77, 0x124, "some text");
  ASSERT_NE(param, nullptr);
  const KyParameterPtr parameter(asParameter(param));
  EXPECT_TRUE(param->isCustom());
  EXPECT_EQ(parameter->getID(), KyCInventoryAddress(77, 1));
  EXPECT_EQ(parameter->getType(), 0x124u);
  EXPECT_STREQ(parameter->getDescription(), "some text");
  EXPECT_STREQ(parameter->getUnit(), "");
  EXPECT_FALSE(parameter->isModifiable());
  EXPECT_EQ(parameter->getRelevance(), 0u);
  EXPECT_EQ(parameter->getParent(), nullptr);
}

TEST(KyCInventoryBinDeSerializer, createdParameterKeepsTheRegisteredNameByPointerAndCopiesOtherTexts)
{
  KyTestPool pool;
  KyCInventoryBinDeSerializer deserializer(pool);
  const std::string name = "NAME";
  const KyParameterPtr named(asParameter(deserializer.createCustomParameter(pool, NAME_ID, 0x124, name.c_str())));
  EXPECT_EQ(named->getDescription(), KyNInventoryIDs::Map.get(NAME_ID));

  std::string other = "other";
  const KyParameterPtr copied(asParameter(deserializer.createCustomParameter(pool, NAME_ID, 0x124, other.c_str())));
  other = "gone!";
  EXPECT_STREQ(copied->getDescription(), "other");
}

TEST(KyCInventoryBinDeSerializer, createdParameterIgnoresAStaticDescriptionFlagInTheStream)
{
  KyTestPool pool;
  KyCInventoryBinDeSerializer deserializer(pool);
  std::string text = "text of the stream";
  const KyParameterPtr parameter(
      asParameter(deserializer.createCustomParameter(pool, NAME_ID, 0x20000 | 0x124, text.c_str())));
  text = "memory used otherwise";
  EXPECT_STREQ(parameter->getDescription(), "text of the stream");
}

TEST(KyCInventoryBinDeSerializer, createdParameterIsNullWithoutMemory)
{
  KyTestPool pool;
  KyCInventoryBinDeSerializer deserializer(pool);
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(deserializer.createCustomParameter(pool, NAME_ID, 0x124, "NAME"), nullptr);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory());    // the allocator's, and none of its own
}

TEST(KyCInventoryBinDeSerializer, constructionWithoutMemoryReportsTheAllocatorAlone)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  {
    const KyCInventoryBinDeSerializer deserializer(pool);
  }
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, allocatorOutOfMemory());
}
