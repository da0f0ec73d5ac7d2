// The second reader of stored trees: every field where docs/stream-format.md puts it, and every damage.
#include "inventorykit/KyStreamReader.h"

#include <gtest/gtest.h>

#include "KySectionBytes.h"

using namespace KyNInventoryKit;

namespace
{
const unsigned char* dataOf(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

// Their texts are parts of the stream.
std::vector<StreamRecord> recordsOf(const std::string& stream)
{
  StreamReader reader(dataOf(stream), stream.size());
  std::vector<StreamRecord> records;
  StreamRecord record;
  while (reader.next(record))
    records.push_back(record);
  EXPECT_FALSE(reader.isDamaged()) << reader.damage().reason;
  return records;
}

std::string fieldsOf(const StreamRecord& record)
{
  std::string text;
  for (const StreamField& field : record.fields)
    text += (text.empty() ? "" : ", ") + std::to_string(field.offset) + "+" + std::to_string(field.length) + "=" +
            std::to_string(field.number);
  return text;
}

// "5: the stream ends too early"
std::string damageOf(const std::string& stream)
{
  StreamReader reader(dataOf(stream), stream.size());
  StreamRecord record;
  std::size_t next = 0;
  while (reader.next(record))
  {
    EXPECT_EQ(record.offset, next);
    next = reader.position();
  }
  return reader.isDamaged() ? std::to_string(reader.damage().offset) + ": " + reader.damage().reason : "none";
}

std::string damageOfHex(const std::string& text) { return damageOf(bytesOfHex(text)); }

const std::string root = "01 01 01 01 01";                        // version; ROOT without description
const std::string parameter = "24 03 01 05 00 00 00 00 00 00";    // NAME, UInt8, 5
}    // namespace

TEST(KyStreamReader, everyFieldHasItsOffsetItsLengthAndItsNumber)
{
  const std::vector<StreamRecord> records = recordsOf(sampleStream);
  ASSERT_EQ(records.size(), 6u);
  EXPECT_EQ(fieldsOf(records[0]), "0+1=1");
  EXPECT_EQ(fieldsOf(records[1]), "1+1=1, 2+1=1, 3+1=1, 4+1=0, 5+1=4, 6+4=0");
  EXPECT_EQ(fieldsOf(records[2]),
            "10+1=42, 11+1=3, 12+1=0, 13+1=4, 14+4=0, 18+1=2, 19+2=0, 21+1=2, 22+2=0, 24+1=255, 25+4=7");
  EXPECT_EQ(fieldsOf(records[3]), "29+1=1, 30+1=2, 31+1=2, 32+1=0, 33+1=3, 34+3=0");
  EXPECT_EQ(fieldsOf(records[4]), "37+1=2");
  EXPECT_EQ(fieldsOf(records[5]), "38+1=2");
}

TEST(KyStreamReader, recordsCarryWhatTheirFieldsSay)
{
  const std::vector<StreamRecord> records = recordsOf(sampleStream);
  ASSERT_EQ(records.size(), 6u);
  EXPECT_EQ(records[2].id, 3u);
  EXPECT_EQ(records[2].type, 0x2000u);
  EXPECT_EQ(records[2].description, "NAME");
  EXPECT_EQ(records[2].value, "A1");
  EXPECT_EQ(records[2].unit, "mV");
  EXPECT_EQ(records[2].modifiable, 0xFFu);
  EXPECT_EQ(records[2].relevance, 7u);
  EXPECT_EQ(records[3].id, 2u);
  EXPECT_EQ(records[3].index, 2u);
  EXPECT_EQ(records[3].description, "CPU");
  EXPECT_EQ(records[4].id, 2u);    // what ends
}

TEST(KyStreamReader, pathHoldsTheItemsThatAreOpen)
{
  StreamReader reader(dataOf(sampleStream), sampleStream.size());
  StreamRecord record;
  std::vector<std::size_t> levels;
  while (reader.next(record))
    levels.push_back(reader.path().size());
  EXPECT_EQ(levels, (std::vector<std::size_t>{0, 1, 1, 2, 1, 0}));
  EXPECT_TRUE(reader.isOver());
}

TEST(KyStreamReader, versionHasFourNumbersAndNumbersAreBigEndian)
{
  const auto records = recordsOf(
      bytesOfHex(root + "2B 03 01 01 02 03 AC 02 00 00 00 00 00 00" + "22 04 01 FF FF FF FE 00 00 00 00 00 00" + "02"));
  ASSERT_EQ(records.size(), 5u);
  EXPECT_EQ(fieldsOf(records[2]), "5+1=43, 6+1=3, 7+1=1, 8+1=1, 9+1=2, 10+1=3, 11+2=300, 13+1=0, 14+1=0, 15+4=0");
  EXPECT_EQ(fieldsOf(records[3]), "19+1=34, 20+1=4, 21+1=1, 22+4=4294967294, 26+1=0, 27+1=0, 28+4=0");
}

TEST(KyStreamReader, repeatedTextIsTheOneOfThatNumber)
{
  const std::string stream = bytesOfHex("01  01 01 01 00 01 41  01 02 01 00 01 42  01 02 01 03  02 02 02");
  const auto records = recordsOf(stream);
  ASSERT_EQ(records.size(), 7u);
  EXPECT_EQ(records[3].description, "B");
}

TEST(KyStreamReader, bytesBehindTheTreeAreNotRead)
{
  const std::string stream = sampleStream + "more";
  StreamReader reader(dataOf(stream), stream.size());
  StreamRecord record;
  while (reader.next(record))
    continue;
  EXPECT_TRUE(reader.isOver());
  EXPECT_FALSE(reader.isDamaged());
  EXPECT_EQ(reader.position(), 39u);
}

TEST(KyStreamReader, everyDamageIsNamedWithItsOffset)
{
  EXPECT_EQ(damageOfHex(""), "0: there is nothing to read");
  EXPECT_EQ(damageOfHex("02"), "0: the stream is of another version");
  EXPECT_EQ(damageOfHex("01"), "1: the stream ends too early");
  EXPECT_EQ(damageOfHex(root), "5: the stream ends too early");
  EXPECT_EQ(damageOfHex("01 07"), "1: the record is of an unknown kind");
  EXPECT_EQ(damageOfHex(root + "2C"), "5: the record is of an unknown kind");
  EXPECT_EQ(damageOfHex("01 02"), "1: a composite is expected");
  EXPECT_EQ(damageOfHex("01" + parameter), "1: a composite is expected");
  EXPECT_EQ(damageOfHex(root + "14 03 01 05"), "5: a parameter is not a custom one");
  EXPECT_EQ(damageOfHex(root + "01 02 01 01 02" + parameter), "10: a parameter stands behind a child");
  EXPECT_EQ(damageOfHex("01 01 80"), "3: the stream ends inside a number");
  EXPECT_EQ(damageOfHex("01 01 80 00 01"), "2: a number is longer than it needs to be");
  EXPECT_EQ(damageOfHex("01 01 FF FF FF FF 10"), "2: a number exceeds 32 bits");
  EXPECT_EQ(damageOfHex("01 01 01 01 00 05 41"), "5: a text is longer than what is left");
  EXPECT_EQ(damageOfHex("01 01 01 01 00 02 41 00"), "7: a description holds a zero byte");
  EXPECT_EQ(damageOfHex("01 01 01 01 02"), "4: a text is named that was not there before");
  EXPECT_EQ(damageOfHex(root + "24 03 01"), "8: the stream ends inside a value");
  EXPECT_EQ(damageOfHex(root + "2A 03 01 02 41"), "8: a text is longer than what is left");
  EXPECT_EQ(damageOfHex(root + "24 03 01 05 65"), "9: a unit is longer than 100 bytes");
  EXPECT_EQ(damageOfHex(root + "24 03 01 05 02 6D"), "11: the stream ends inside a value");
  EXPECT_EQ(damageOfHex(root + parameter + parameter), "16: two parameters of one item have the same ID");
}

TEST(KyStreamReader, parametersOfDifferentItemsMayHaveOneID)
{
  EXPECT_EQ(damageOfHex(root + parameter + "01 02 01 01" + parameter + "02 02"), "none");
}

TEST(KyStreamReader, nestingEndsAt4096Levels)
{
  std::string starts(1, '\x01');
  for (int n = 0; n < 4096; ++n)
    starts += bytesOfHex("01 02 01 01");
  EXPECT_EQ(damageOf(starts + std::string(4096, '\x02')), "none");
  EXPECT_EQ(damageOf(starts + bytesOfHex("01 02 01 01")), "16385: composites are nested deeper than 4096 levels");
}

// 300 k bytes by the k-th repetition, at most 64 times the 307 + 4 (k - 1) bytes in front of its record: k <= 440.
TEST(KyStreamReader, textsAreRepeated64TimesTheBytesInFrontAndNoMore)
{
  std::string stream = bytesOfHex("01 01 01 01 00 AC 02") + std::string(300, 'x');
  for (int n = 0; n < 440; ++n)
    stream += bytesOfHex("01 02 01 02");
  EXPECT_EQ(damageOf(stream + std::string(441, '\x02')), "none");
  EXPECT_EQ(damageOf(stream + bytesOfHex("01 02 01 02")), "2070: long texts are repeated too often");
}

TEST(KyStreamReader, damagedRecordHoldsTheFieldsInFrontOfTheDamage)
{
  const std::string stream = bytesOfHex(root + "24 03 01");
  StreamReader reader(dataOf(stream), stream.size());
  StreamRecord record;
  while (reader.next(record))
    continue;
  EXPECT_EQ(fieldsOf(record), "5+1=36, 6+1=3, 7+1=1");
}

TEST(KyStreamReader, manySmallItemsBehindALargeOneTakeLinearTime)
{
  std::string stream = bytesOfHex(root);
  for (unsigned int id = 128; id < 16384; ++id)
    stream += std::string("\x24") + static_cast<char>(0x80 | (id & 0x7F)) + static_cast<char>(id >> 7) +
              bytesOfHex("01 05 00 00 00 00 00 00");
  for (int n = 0; n < 200000; ++n)
    stream += bytesOfHex("01 02 01 01 24 03 01 05 00 00 00 00 00 00 02");
  EXPECT_EQ(damageOf(stream + '\x02'), "none");
}
