// What the deserializer makes of streams, sound and damaged. The bytes are written by hand after docs/stream-format.md.
#include "composite/KyCBinDeserializer.h"

#include <cstdint>
#include <memory>
#include <stdexcept>

#include "KyStreamBench.h"

namespace
{
using KyTree = std::unique_ptr<KyCComposite>;
using KyParameter = std::unique_ptr<KyCParam>;

// Reads a parameter that is stored alone; there may be no report.
KyParameter readSound(const std::string& hex)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyParameter parameter(bench.readParameter(hex));
  EXPECT_EQ(bench.buffer.getReadPosition(), bench.buffer.getWritePosition());
  EXPECT_TRUE(parameter != nullptr);
  return parameter;
}

struct KyDamage
{
  const char* hex;
  unsigned int offset;
  const char* function;
  const char* reason;
};

std::string damageText(unsigned int offset, const char* reason)
{
  return "The stream is damaged at byte " + std::to_string(offset) + ": " + reason + ".";
}

void expectDamage(const KyDamage& damage)
{
  SCOPED_TRACE(damage.hex);
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read(damage.hex));
  EXPECT_REPORTS(pool, {0x01101807, damage.function, damageText(damage.offset, damage.reason)});
}

// As many levels, each of class 1, unit 1, without description; ended or not.
KyBytes chainBytes(unsigned int levels)
{
  KyBytes bytes = {0x01};
  for (unsigned int n = 0; n < levels; ++n)
  {
    for (const unsigned char byte : bytesOf("01 01 01 01"))
      bytes.push_back(byte);
  }
  for (unsigned int n = 0; n < levels; ++n)
    bytes.push_back(0x02);
  return bytes;
}
}    // namespace

// ---- Records and values ----

TEST(KyCBinDeserializer, compositeComesBackWithItsIdsAndDescription)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read("01 01 FF FF FF FF 0F AC 02 00 02 41 42 02"));
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getClassId(), 0xFFFFFFFFu);
  EXPECT_EQ(tree->getUnitId(), 300u);
  EXPECT_STREQ(tree->getDescription(), "AB");
  EXPECT_EQ(tree->getParent(), nullptr);
  EXPECT_EQ(tree->getChild(), nullptr);
}

TEST(KyCBinDeserializer, emptyTextMayAlsoStandAsANewOneAndGetsNoNumber)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read("01 01 01 01 00 00 01 01 01 00 01 41 02 01 01 01 02 02 02"));
  ASSERT_NE(tree, nullptr);
  EXPECT_STREQ(tree->getDescription(), "");
  EXPECT_STREQ(tree->getChild()->getSibling()->getDescription(), "A");    // number 2
}

TEST(KyCBinDeserializer, integersComeBack)
{
  KyTestPool pool;
  EXPECT_EQ(readSound("01 10 05 01 FF")->getValueInt8(pool), -1);
  EXPECT_EQ(readSound("01 11 05 01 FF FE")->getValueInt16(pool), -2);
  EXPECT_EQ(readSound("01 12 05 01 01 02 03 04")->getValueInt32(pool), 0x01020304);
  EXPECT_EQ(readSound("01 13 05 01 FF FF FF FF FF FF FF FD")->getValueLong64(pool), -3LL);
  EXPECT_EQ(readSound("01 14 05 01 C8")->getValueUInt8(pool), 200);
  EXPECT_EQ(readSound("01 15 05 01 12 34")->getValueUInt16(pool), 0x1234);
  EXPECT_EQ(readSound("01 16 05 01 FF FF FF FE")->getValueUInt32(pool), 0xFFFFFFFEu);
  EXPECT_EQ(readSound("01 17 05 01 01 02 03 04 05 06 07 08")->getValueULong64(pool), 0x0102030405060708ULL);
}

TEST(KyCBinDeserializer, floatingPointNumbersComeBack)
{
  KyTestPool pool;
  EXPECT_EQ(readSound("01 18 05 01 3F C0 00 00")->getValueFloat32(pool), 1.5f);
  EXPECT_EQ(readSound("01 19 05 01 C0 00 00 00 00 00 00 00")->getValueFloat64(pool), -2.0);
}

TEST(KyCBinDeserializer, signallingNaNsKeepTheirBits)
{
  for (const std::string hex : {"01 18 05 01 7F A0 00 01", "01 19 05 01 7F F4 00 00 00 00 00 01"})
  {
    KyTestPool pool;
    KyStreamBench bench(pool);
    const KyParameter parameter(bench.readParameter(hex));
    ASSERT_NE(parameter, nullptr);
    EXPECT_EQ(bench.store(*parameter), hex);
  }
}

TEST(KyCBinDeserializer, stringComesBackWithZerosAmongItsBytes)
{
  KyTestPool pool;
  EXPECT_EQ(readSound("01 1A 05 01 04 61 62 00 63")->getValueKyCString(pool), KyCString("ab\0c", 4));
  EXPECT_EQ(readSound("01 1A 05 01 00")->getValueKyCString(pool), KyCString());
}

TEST(KyCBinDeserializer, versionComesBack)
{
  KyTestPool pool;
  EXPECT_EQ(readSound("01 1B 05 01 01 02 03 AC 02")->getValueKyCVersion(pool), KyCVersion(1, 2, 3, 300));
  EXPECT_EQ(readSound("01 1B 05 01 FF FF FF FF 0F 00 00 00")->getValueKyCVersion(pool),
            KyCVersion(0xFFFFFFFFu, 0, 0, 0));
}

TEST(KyCBinDeserializer, parameterComesBackWithIdDescriptionAndType)
{
  const KyParameter parameter = readSound("01 16 AC 02 00 02 41 42 00 00 00 00");
  EXPECT_EQ(parameter->getId(), 300u);
  EXPECT_STREQ(parameter->getDescription(), "AB");
  EXPECT_EQ(parameter->getType(), 0x124u);
  EXPECT_FALSE(parameter->isCustom());
}

TEST(KyCBinDeserializer, customParametersAreMadeByTheBaseToo)
{
  for (const char* hex : {"01 20 05 01 01", "01 21 05 01 00 01", "01 22 05 01 00 00 00 01",
                          "01 23 05 01 00 00 00 00 00 00 00 01", "01 24 05 01 01", "01 25 05 01 00 01",
                          "01 26 05 01 00 00 00 01", "01 27 05 01 00 00 00 00 00 00 00 01", "01 28 05 01 00 00 00 01",
                          "01 29 05 01 00 00 00 00 00 00 00 01", "01 2A 05 01 01 41", "01 2B 05 01 01 00 00 00"})
  {
    const KyParameter parameter = readSound(hex);
    EXPECT_TRUE(parameter->isCustom());
    KyTestPool pool;
    KyStreamBench bench(pool);
    EXPECT_EQ(bench.store(*parameter), hex);
  }
}

TEST(KyCBinDeserializer, parametersAndChildrenKeepTheirOrder)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(
      bench.read("01 01 01 01 01 14 09 01 07 14 08 01 06 01 02 01 01 01 03 01 01 02 02 01 04 01 01 02 02"));
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getParameterByIndex(0)->getId(), 9u);
  EXPECT_EQ(tree->getParameterByIndex(1)->getId(), 8u);
  EXPECT_EQ(tree->getParameterByIndex(2), nullptr);
  const KyCComposite* const first = tree->getChild();
  EXPECT_EQ(first->getClassId(), 2u);
  EXPECT_EQ(first->getChild()->getClassId(), 3u);
  EXPECT_EQ(first->getSibling()->getClassId(), 4u);
  EXPECT_EQ(first->getSibling()->getSibling(), nullptr);
}

TEST(KyCBinDeserializer, readPositionStandsRightBehindTheStream)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree first(bench.read("01 01 01 01 00 01 41 02 01 01 02 01 00 01 42 02 AA"));
  EXPECT_EQ(bench.buffer.getReadPosition(), 8u);
  const KyTree second(bench.factory.deserialize(pool, nullptr, &bench.buffer));
  EXPECT_EQ(bench.buffer.getReadPosition(), 16u);
  EXPECT_STREQ(first->getDescription(), "A");
  EXPECT_STREQ(second->getDescription(), "B");
}

TEST(KyCBinDeserializer, rootIsAttachedToTheParentGiven)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite parent(pool, 9, 9, "");
  fill(pool, bench.buffer, bytesOf("01 01 01 01 01 01 02 01 01 02 02"));
  KyCComposite* const root = bench.factory.deserialize(pool, &parent, &bench.buffer);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->getParent(), &parent);
  EXPECT_EQ(parent.getChild(), root);
  EXPECT_EQ(root->getChild()->getClassId(), 2u);
}

// ---- Nothing and other versions ----

TEST(KyCBinDeserializer, emptyBufferGivesNullAndAReport)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  EXPECT_EQ(bench.factory.deserialize(pool, nullptr, &bench.buffer), nullptr);
  EXPECT_REPORTS(pool, {0x01101805, "begin", "The stream is empty."});
}

TEST(KyCBinDeserializer, bufferThatWasReadToItsEndGivesNullAndAReport)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read("01 01 01 01 01 02"));
  EXPECT_EQ(bench.factory.deserialize(pool, nullptr, &bench.buffer), nullptr);
  EXPECT_REPORTS(pool, {0x01101805, "begin", "The stream is empty."});
}

TEST(KyCBinDeserializer, otherVersionsAreRefusedAndLeftUnread)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  EXPECT_EQ(bench.read("02 01 01 01 01 02"), nullptr);
  EXPECT_REPORTS(pool, {0x01101806, "begin", "The stream has version 2; version 1 is expected."});
  EXPECT_EQ(bench.buffer.getReadPosition(), 0u);
}

// ---- Damage ----

TEST(KyCBinDeserializer, streamThatEndsBetweenRecordsIsDamaged)
{
  expectDamage({"01", 1, "nextRecord", "the stream ends too early"});
  expectDamage({"01 01 01 01 01", 5, "nextRecord", "the stream ends too early"});
  expectDamage({"01 01 01 01 01 01 01 01 01 02", 10, "nextRecord", "the stream ends too early"});
}

TEST(KyCBinDeserializer, unknownRecordKindsAreDamage)
{
  for (unsigned int kind = 0; kind <= 0xFF; ++kind)
  {
    const bool known = kind == 1 || kind == 2 || (kind >= 0x10 && kind <= 0x1B) || (kind >= 0x20 && kind <= 0x2B);
    if (known) continue;
    const KyBytes bytes = {0x01, static_cast<unsigned char>(kind)};
    expectDamage({hexOf(bytes).c_str(), 1, "nextRecord", "the record is of an unknown kind"});
  }
}

TEST(KyCBinDeserializer, recordsOutOfPlaceAreDamage)
{
  expectDamage({"01 02", 1, "nextRecord", "a composite is expected"});
  expectDamage({"01 14 05 01 00", 1, "nextRecord", "a composite is expected"});
  expectDamage({"01 24 05 01 00", 1, "nextRecord", "a composite is expected"});
  expectDamage({"01 01 01 01 01 01 02 01 01 02 14 05 01 00 02", 10, "nextRecord", "a parameter stands behind a child"});
}

TEST(KyCBinDeserializer, parameterAloneHasToBeAParameter)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  EXPECT_EQ(bench.readParameter("01 01 01 01 01 02"), nullptr);
  EXPECT_REPORTS(pool, {0x01101807, "nextRecord", "The stream is damaged at byte 1: a parameter is expected."});
  EXPECT_EQ(bench.readParameter(""), nullptr);
  EXPECT_REPORTS(pool, {0x01101805, "begin", "The stream is empty."});
  EXPECT_EQ(bench.readParameter("01"), nullptr);
  EXPECT_REPORTS(pool, {0x01101807, "nextRecord", "The stream is damaged at byte 1: the stream ends too early."});
}

TEST(KyCBinDeserializer, numbersInAnotherFormAreDamage)
{
  const char* const tooLong = "a number is longer than it needs to be";
  const char* const tooLarge = "a number exceeds 32 bits";
  expectDamage({"01 01 80 00 01 01 02", 2, "CompositeStart", tooLong});
  expectDamage({"01 01 01 FF 80 00 01 02", 3, "CompositeStart", tooLong});
  expectDamage({"01 01 80 80 80 80 00 01 01 02", 2, "CompositeStart", tooLong});
  expectDamage({"01 01 FF FF FF FF 10 01 01 02", 2, "CompositeStart", tooLarge});
  expectDamage({"01 01 80 80 80 80 80 01 01 01 02", 2, "CompositeStart", tooLarge});
  expectDamage({"01 01 01 01 01 14 80 00 01 00 02", 6, "CompositeParameter", tooLong});
}

TEST(KyCBinDeserializer, numbersThatEndWithTheStreamAreDamage)
{
  expectDamage({"01 01", 2, "CompositeStart", "the stream ends inside a number"});
  expectDamage({"01 01 80", 3, "CompositeStart", "the stream ends inside a number"});
  expectDamage({"01 01 01 01", 4, "CompositeStart", "the stream ends inside a number"});
  expectDamage({"01 01 01 01 01 1B 05 01 01 02 03", 11, "CompositeParameter", "the stream ends inside a number"});
}

TEST(KyCBinDeserializer, valuesThatEndWithTheStreamAreDamage)
{
  const char* const reason = "the stream ends inside a value";
  expectDamage({"01 01 01 01 01 10 05 01", 8, "CompositeParameter", reason});
  expectDamage({"01 01 01 01 01 12 05 01 00 00 00", 11, "CompositeParameter", reason});
  expectDamage({"01 01 01 01 01 19 05 01 00 00 00 00 00 00 00", 15, "CompositeParameter", reason});
}

TEST(KyCBinDeserializer, textsLongerThanWhatIsLeftAreDamage)
{
  const char* const reason = "a text is longer than what is left";
  expectDamage({"01 01 01 01 00 02 41", 5, "CompositeStart", reason});
  expectDamage({"01 01 01 01 00 FF FF FF FF 0F 41", 5, "CompositeStart", reason});
  expectDamage({"01 01 01 01 01 1A 05 01 03 41 42", 8, "CompositeParameter", reason});
  expectDamage({"01 01 01 01 01 1A 05 01 FF FF FF FF 0F", 8, "CompositeParameter", reason});
}

TEST(KyCBinDeserializer, zeroByteInADescriptionIsDamage)
{
  expectDamage({"01 01 01 01 00 03 41 00 42 02", 7, "CompositeStart", "a description holds a zero byte"});
}

TEST(KyCBinDeserializer, textNumberThatWasNotGivenIsDamage)
{
  const char* const reason = "a text is named that was not there before";
  expectDamage({"01 01 01 01 02 02", 4, "CompositeStart", reason});
  expectDamage({"01 01 01 01 00 01 41 14 05 03 00 02", 9, "CompositeParameter", reason});
  expectDamage({"01 01 01 01 FF FF FF FF 0F 02", 4, "CompositeStart", reason});
}

TEST(KyCBinDeserializer, textsRepeatedOutOfProportionAreDamage)
{
  KyBytes bytes = bytesOf("01 01 01 01 00 E8 07");    // a root with a description of 1000 bytes
  bytes.insert(bytes.end(), 1000, 'x');
  for (int n = 0; n < 100; ++n)
  {
    for (const unsigned char byte : bytesOf("01 01 01 02 02"))
      bytes.push_back(byte);
  }
  bytes.push_back(0x02);

  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read(bytes));
  // The 95th child begins at byte 1007 + 94 * 5, and 95000 is more than 64 times that.
  EXPECT_REPORTS(pool, {0x01101807, "CompositeStart", damageText(1480, "long texts are repeated too often")});
  unsigned int children = 0;
  for (const KyCComposite* child = tree->getChild(); child != nullptr; child = child->getSibling())
    ++children;
  EXPECT_EQ(children, 94u);
}

TEST(KyCBinDeserializer, offsetsCountFromTheStartOfTheStream)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree first(bench.read("01 01 01 01 01 02 01 01 01 01 01 03"));
  const KyTree second(bench.factory.deserialize(pool, nullptr, &bench.buffer));
  EXPECT_REPORTS(pool, {0x01101807, "nextRecord", damageText(5, "the record is of an unknown kind")});
}

TEST(KyCBinDeserializer, readPositionStaysInFrontOfTheDamagedRecord)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read("01 01 01 01 01 12 05 01 00 00 00"));
  EXPECT_EQ(bench.buffer.getReadPosition(), 5u);
  EXPECT_EQ(pool.takeReports().size(), 1u);
}

TEST(KyCBinDeserializer, whatWasReadBeforeTheDamageIsReturned)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read("01 01 01 01 01 14 05 01 07 01 02 01 01 14 06 01 08 12 07 01 00 00"));
  EXPECT_EQ(pool.takeReports().size(), 1u);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getParameterById(5)->getValueUInt8(pool), 7);
  ASSERT_NE(tree->getChild(), nullptr);
  EXPECT_EQ(tree->getChild()->getParameterById(6)->getValueUInt8(pool), 8);
  EXPECT_EQ(tree->getChild()->getParameterById(7), nullptr);
}

TEST(KyCBinDeserializer, secondParameterOfTheSameIdEndsTheReading)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read("01 01 02 03 01 14 05 01 07 14 05 01 08 14 06 01 09 02"));
  EXPECT_REPORTS(pool, {0x01101002, "addParameter", ""});
  EXPECT_EQ(tree->getParameterById(5)->getValueUInt8(pool), 7);
  EXPECT_EQ(tree->getParameterById(6), nullptr);
}

TEST(KyCBinDeserializer, depthOf4096LevelsIsRead)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyBytes bytes = chainBytes(4096);
  const KyTree tree(bench.read(bytes));
  EXPECT_NO_REPORTS(pool);
  unsigned int levels = 0;
  for (const KyCComposite* node = tree.get(); node != nullptr; node = node->getChild())
    ++levels;
  EXPECT_EQ(levels, 4096u);
  EXPECT_EQ(bench.store(tree.get()), hexOf(bytes));
}

TEST(KyCBinDeserializer, depthOf4097LevelsIsRefused)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree tree(bench.read(chainBytes(4097)));
  EXPECT_REPORTS(
      pool, {0x01101807, "CompositeStart", damageText(1 + 4096 * 4, "composites are nested deeper than 4096 levels")});
  unsigned int levels = 0;
  for (const KyCComposite* node = tree.get(); node != nullptr; node = node->getChild())
    ++levels;
  EXPECT_EQ(levels, 4096u);
}

TEST(KyCBinDeserializer, everyTruncationOfATreeIsReported)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree sample(makeSampleTree(pool));
  bench.store(sample.get());
  const KyBytes whole = bytesOf(bench.buffer);
  for (std::size_t length = 0; length < whole.size(); ++length)
  {
    const KyTree tree(bench.read(KyBytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))));
    EXPECT_EQ(pool.takeReports().size(), 1u) << length;
  }
  const KyTree tree(bench.read(whole));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBinDeserializer, everyFlippedByteGivesATreeOrAReport)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyTree sample(makeSampleTree(pool));
  bench.store(sample.get());
  const KyBytes whole = bytesOf(bench.buffer);
  for (std::size_t at = 0; at < whole.size(); ++at)
  {
    for (const unsigned int mask : {0x01u, 0x02u, 0x04u, 0x08u, 0x10u, 0x20u, 0x40u, 0x80u, 0xFFu})
    {
      KyBytes bytes = whole;
      bytes[at] = static_cast<unsigned char>(bytes[at] ^ mask);
      const KyTree tree(bench.read(bytes));
      const std::size_t reports = pool.takeReports().size();
      EXPECT_LE(reports, 1u) << at << " ^ " << mask;
      EXPECT_TRUE(tree != nullptr || reports == 1) << at << " ^ " << mask;
      // What was read without a report is a tree like any other: stored and read again it is the same.
      if (reports != 0) continue;
      const KyBytes read(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(bench.buffer.getReadPosition()));
      const KyBytes canonical = bytesOf(bench.store(tree.get()));
      const KyTree again(bench.read(canonical));
      EXPECT_EQ(bench.store(again.get()), hexOf(canonical)) << at << " ^ " << mask;
    }
  }
  EXPECT_NO_REPORTS(pool);
}

// ---- Hooks ----

namespace
{
class KyCRecordingDeserializer : public KyCBinDeserializer
{
public:
  using KyCBinDeserializer::KyCBinDeserializer;
  void CompositeStart(KyCErrorListPool& pool) override
  {
    calls += "start ";
    KyCBinDeserializer::CompositeStart(pool);
  }
  void CompositeEnd(KyCErrorListPool& pool) override
  {
    calls += "end ";
    KyCBinDeserializer::CompositeEnd(pool);
  }
  void CompositeParameter(KyCErrorListPool& pool) override
  {
    calls += "param ";
    KyCBinDeserializer::CompositeParameter(pool);
  }
  KyCParam* createCustomParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type,
                                  const char* description) override
  {
    calls += "create(" + std::to_string(id) + "," + std::to_string(type) + "," + description + ") ";
    if (reportWhenCreating) pool.setError(1, 1, "hook", nullptr);
    if (giveNull) return nullptr;
    return new (pool) KyCParam(pool, id, description, (giveType != 0 ? giveType : type) | KyCParam::FLAG_CUSTOM);
  }
  void handleCustomParameter(KyCErrorListPool& pool, KyCParam* parameter) override
  {
    unsigned char byte = 0;
    m_buffer->readBuffer(pool, &byte, 1, 0, -1);
    calls += "custom(" + std::to_string(parameter->getId()) + "," + std::to_string(parameter->getValueUInt8(pool)) +
             "," + std::to_string(byte) + ") ";
    if (reportWhenHandling) pool.setError(2, 1, "hook", nullptr);
    if (throwWhenHandling) throw std::runtime_error("hook");
  }
  KyCBuffer* buffer() const { return m_buffer; }
  void refuseOthers() { m_customParametersOnly = true; }

  std::string calls;
  bool reportWhenCreating = false;
  bool giveNull = false;
  unsigned int giveType = 0;
  bool reportWhenHandling = false;
  bool throwWhenHandling = false;
};

// A node with the parameters 1 (plain), 2 (custom, "AB", value 9, custom part EE) and 3 (plain), and a child.
constexpr const char* HOOK_STREAM = "01 01 01 01 01 14 01 01 00 24 02 00 02 41 42 09 EE 14 03 01 00 01 02 01 01 02 02";

class KyCRecordingReader
{
public:
  explicit KyCRecordingReader(KyCErrorListPool& pool) : bench(pool), deserializer(pool)
  {
    bench.factory.setBinaryDeserializer(pool, &deserializer);
  }
  KyStreamBench bench;
  KyCRecordingDeserializer deserializer;
};
}    // namespace

TEST(KyCBinDeserializer, operationsAreCalledInStreamOrder)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_EQ(reader.deserializer.calls,
            "start param param create(2,289,AB) custom(2,9,238) param start end end ");    // 289: 0x121, UInt8
  EXPECT_TRUE(tree->getParameterById(2)->isCustom());
}

TEST(KyCBinDeserializer, reportOfTheCustomPartKeepsTheParameterAndEndsTheReading)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.reportWhenHandling = true;
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_REPORTS(pool, {2, "hook", ""});
  EXPECT_EQ(tree->getParameterById(2)->getValueUInt8(pool), 9);
  EXPECT_EQ(tree->getParameterById(3), nullptr);
  EXPECT_EQ(tree->getChild(), nullptr);
}

TEST(KyCBinDeserializer, reportOfTheCustomPartKeepsAParameterAlone)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.reportWhenHandling = true;
  const KyParameter parameter(reader.bench.readParameter("01 24 02 01 09 EE"));
  EXPECT_REPORTS(pool, {2, "hook", ""});
  ASSERT_NE(parameter, nullptr);
  EXPECT_EQ(parameter->getValueUInt8(pool), 9);
}

TEST(KyCBinDeserializer, parameterThatIsNotCreatedIsReported)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.giveNull = true;
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_REPORTS(pool, {0x01101808, "CompositeParameter", "Custom parameter 2 was not created."});
  EXPECT_NE(tree->getParameterById(1), nullptr);
  EXPECT_EQ(tree->getParameterById(2), nullptr);
}

TEST(KyCBinDeserializer, nullWithAReportIsNotReportedAgain)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.giveNull = reader.deserializer.reportWhenCreating = true;
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_REPORTS(pool, {1, "hook", ""});
}

TEST(KyCBinDeserializer, parameterCreatedWithAReportIsDeleted)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.reportWhenCreating = true;
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_REPORTS(pool, {1, "hook", ""});
  EXPECT_EQ(tree->getParameterById(2), nullptr);
}

TEST(KyCBinDeserializer, parameterCreatedWithAnotherTypeIsReportedAndDeleted)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.giveType = KyCParam::TYPE_STRING;
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_REPORTS(
      pool, {0x01101809, "CompositeParameter", "Custom parameter 2 was created with value type 8192 instead of 289."});
  EXPECT_EQ(tree->getParameterById(2), nullptr);
}

TEST(KyCBinDeserializer, plainParametersAreDamageForADeserializerThatRefusesThem)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.refuseOthers();
  const KyTree tree(reader.bench.read(HOOK_STREAM));
  EXPECT_REPORTS(pool, {0x01101807, "nextRecord", damageText(5, "a parameter is not a custom one")});
}

TEST(KyCBinDeserializer, truncatedCustomPartIsTheHooksReport)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  const KyTree tree(reader.bench.read("01 01 01 01 01 24 02 01 09"));
  EXPECT_REPORTS(pool, {0x01100007, "readBuffer", ""});
  EXPECT_NE(tree->getParameterById(2), nullptr);
}

TEST(KyCBinDeserializer, exceptionOfTheHookLeavesTheDeserializerReadyForTheNextStream)
{
  KyTestPool pool;
  KyCRecordingReader reader(pool);
  reader.deserializer.throwWhenHandling = true;
  EXPECT_THROW(reader.bench.readParameter("01 24 02 01 09 EE"), std::runtime_error);
  EXPECT_EQ(reader.deserializer.buffer(), nullptr);
  reader.deserializer.throwWhenHandling = false;
  const KyParameter parameter(reader.bench.readParameter("01 24 02 01 09 EE"));
  EXPECT_NE(parameter, nullptr);
}

TEST(KyCBinDeserializer, streamWithinAStreamOfTheSameDeserializerIsRefused)
{
  class KyCNestingDeserializer : public KyCBinDeserializer
  {
  public:
    KyCNestingDeserializer(KyCErrorListPool& pool, KyCCompositeFactory& factory)
        : KyCBinDeserializer(pool), m_factory(factory)
    {
    }
    void handleCustomParameter(KyCErrorListPool& pool, KyCParam*) override
    {
      EXPECT_EQ(m_factory.deserialize(pool, nullptr, m_buffer), nullptr);
    }

  private:
    KyCCompositeFactory& m_factory;
  };

  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCNestingDeserializer deserializer(pool, bench.factory);
  bench.factory.setBinaryDeserializer(pool, &deserializer);
  const KyParameter parameter(bench.readParameter("01 24 02 01 09"));
  EXPECT_NE(parameter, nullptr);
  EXPECT_REPORTS(pool, {0x01101801, "begin", "The deserializer is in use or could not be constructed."});
}

TEST(KyCBinDeserializer, operationsStandInTheirSlots)
{
  using TSlot = void (*)();
  using TRecord = void (*)(KyCBinDeserializer*, KyCErrorListPool&);
  using TCreate = KyCParam* (*)(KyCBinDeserializer*, KyCErrorListPool&, unsigned int, unsigned int, const char*);
  using THandle = void (*)(KyCBinDeserializer*, KyCErrorListPool&, KyCParam*);
  struct KyCSlots : KyCBinDeserializer    // bases do nothing: no stream is open
  {
    using KyCBinDeserializer::KyCBinDeserializer;
    void CompositeStart(KyCErrorListPool&) override { calls += "start "; }
    void CompositeEnd(KyCErrorListPool&) override { calls += "end "; }
    void CompositeParameter(KyCErrorListPool&) override { calls += "param "; }
    KyCParam* createCustomParameter(KyCErrorListPool&, unsigned int id, unsigned int, const char*) override
    {
      calls += "create" + std::to_string(id) + " ";
      return nullptr;
    }
    void handleCustomParameter(KyCErrorListPool&, KyCParam*) override { calls += "custom "; }
    std::string calls;
  };

  KyTestPool pool;
  KyCSlots slots(pool);
  const TSlot* const table = *reinterpret_cast<TSlot**>(&slots);    // 0 and 1 are the destructors
  reinterpret_cast<TRecord>(table[2])(&slots, pool);
  reinterpret_cast<TRecord>(table[3])(&slots, pool);
  reinterpret_cast<TRecord>(table[4])(&slots, pool);
  reinterpret_cast<TCreate>(table[5])(&slots, pool, 77, 0x111, "");
  reinterpret_cast<THandle>(table[6])(&slots, pool, nullptr);
  EXPECT_EQ(slots.calls, "start end param create77 custom ");
}

// ---- Exhausted memory ----

TEST(KyCBinDeserializer, constructionWithoutMemoryIsReportedAndStreamsAreRefused)
{
  for (unsigned int n = 0; n < 3; ++n)    // the list and its two blocks
  {
    KyTestPool pool;
    KyStreamBench bench(pool);
    KyNPoolAllocator::failAfter(n);
    KyCBinDeserializer deserializer(pool);
    KyNPoolAllocator::reset();
    EXPECT_EQ(pool.takeReports().size(), 1u);
    bench.factory.setBinaryDeserializer(pool, &deserializer);
    EXPECT_EQ(bench.read("01 01 01 01 01 02"), nullptr);
    EXPECT_REPORTS(pool, {0x01101801, "begin", "The deserializer is in use or could not be constructed."});
  }
}

TEST(KyCBinDeserializer, everyAllocationMayFail)
{
  KyTestPool pool;
  const KyTree sample(makeSampleTree(pool));
  for (unsigned int n = 0; n < 100; ++n)
    addNode(pool, sample.get(), 1, n, ("a longer text " + std::to_string(n)).c_str());
  KyStreamBench whole(pool);
  const std::string expected = whole.store(sample.get());
  for (unsigned int n = 0;; ++n)
  {
    KyStreamBench bench(pool);
    fill(pool, bench.buffer, bytesOf(expected));
    KyNPoolAllocator::failAfter(n);
    const KyTree tree(bench.factory.deserialize(pool, nullptr, &bench.buffer));
    KyNPoolAllocator::reset();
    if (pool.takeReports().empty())
    {
      EXPECT_EQ(bench.store(tree.get()), expected);
      EXPECT_GT(n, 200u);
      break;
    }
    ASSERT_LT(n, 1000u);
  }
}
