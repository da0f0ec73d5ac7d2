// What the serializer writes, byte by byte. Expected bytes are written by hand after docs/stream-format.md.
#include "composite/KyCBinSerializer.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "KyLargeText.h"
#include "KyStreamBench.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{
// A parameter alone: version, record.
template <typename T>
std::string storedParameter(const T& value, unsigned int flags = 0)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyCParam parameter(pool, 5, "", flags, value, nullptr);
  return bench.store(parameter);
}

// Stores a floating-point number of this bit pattern, which never passes through a register.
template <typename T, typename TBits>
std::string storedPattern(TBits bits)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  T location{};
  const KyCParam parameter(pool, 5, "", 0, T{}, &location);
  std::memcpy(&location, &bits, sizeof bits);
  return bench.store(parameter);
}

std::string storedNode(unsigned int classId, unsigned int unitId, const char* description)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyCComposite node(pool, classId, unitId, description);
  return bench.store(&node);
}
}    // namespace

// ---- Records and values ----

TEST(KyCBinSerializer, compositeIsStartAndEndWithClassIdUnitIdAndText)
{
  EXPECT_EQ(storedNode(1, 2, "AB"), "01 01 01 02 00 02 41 42 02");
}

TEST(KyCBinSerializer, emptyDescriptionIsOneByte)
{
  EXPECT_EQ(storedNode(0, 0, ""), "01 01 00 00 01 02");
  EXPECT_EQ(storedNode(0, 0, nullptr), "01 01 00 00 01 02");
}

TEST(KyCBinSerializer, numbersTakeAsManyBytesAsTheyNeed)
{
  EXPECT_EQ(storedNode(127, 128, ""), "01 01 7F 80 01 01 02");
  EXPECT_EQ(storedNode(16383, 16384, ""), "01 01 FF 7F 80 80 01 01 02");
  EXPECT_EQ(storedNode(2097151, 2097152, ""), "01 01 FF FF 7F 80 80 80 01 01 02");
  EXPECT_EQ(storedNode(268435455, 268435456, ""), "01 01 FF FF FF 7F 80 80 80 80 01 01 02");
  EXPECT_EQ(storedNode(0xFFFFFFFFu, 300, ""), "01 01 FF FF FF FF 0F AC 02 01 02");
}

TEST(KyCBinSerializer, integersAreBigEndianInTheirWidth)
{
  EXPECT_EQ(storedParameter(static_cast<signed char>(-1)), "01 10 05 01 FF");
  EXPECT_EQ(storedParameter(static_cast<short>(-2)), "01 11 05 01 FF FE");
  EXPECT_EQ(storedParameter(0x01020304), "01 12 05 01 01 02 03 04");
  EXPECT_EQ(storedParameter(-3LL), "01 13 05 01 FF FF FF FF FF FF FF FD");
  EXPECT_EQ(storedParameter(static_cast<unsigned char>(200)), "01 14 05 01 C8");
  EXPECT_EQ(storedParameter(static_cast<unsigned short>(0x1234)), "01 15 05 01 12 34");
  EXPECT_EQ(storedParameter(0xFFFFFFFEu), "01 16 05 01 FF FF FF FE");
  EXPECT_EQ(storedParameter(0x0102030405060708ULL), "01 17 05 01 01 02 03 04 05 06 07 08");
}

TEST(KyCBinSerializer, floatingPointNumbersAreTheirBitPatterns)
{
  EXPECT_EQ(storedParameter(1.5f), "01 18 05 01 3F C0 00 00");
  EXPECT_EQ(storedParameter(-2.0), "01 19 05 01 C0 00 00 00 00 00 00 00");
}

TEST(KyCBinSerializer, signallingNaNsKeepTheirBits)
{
  EXPECT_EQ(storedPattern<float>(std::uint32_t{0x7FA00001}), "01 18 05 01 7F A0 00 01");
  EXPECT_EQ(storedPattern<double>(std::uint64_t{0x7FF4000000000001}), "01 19 05 01 7F F4 00 00 00 00 00 01");
}

TEST(KyCBinSerializer, stringIsLengthAndBytesWithZerosAmongThem)
{
  EXPECT_EQ(storedParameter(KyCString("ab\0c", 4)), "01 1A 05 01 04 61 62 00 63");
  EXPECT_EQ(storedParameter(KyCString()), "01 1A 05 01 00");
}

TEST(KyCBinSerializer, longStringHasALengthOfTwoBytes)
{
  const std::string text(200, 'x');
  std::string expected = "01 1A 05 01 C8 01";
  for (int n = 0; n < 200; ++n)
    expected += " 78";
  EXPECT_EQ(storedParameter(KyCString(text.c_str())), expected);
}

TEST(KyCBinSerializer, versionIsFourNumbers)
{
  EXPECT_EQ(storedParameter(KyCVersion(1, 2, 3, 300)), "01 1B 05 01 01 02 03 AC 02");
  EXPECT_EQ(storedParameter(KyCVersion(0xFFFFFFFFu, 0, 0, 0)), "01 1B 05 01 FF FF FF FF 0F 00 00 00");
}

TEST(KyCBinSerializer, customParametersHaveKindsOfTheirOwn)
{
  EXPECT_EQ(storedParameter(static_cast<signed char>(1), KyCParam::FLAG_CUSTOM), "01 20 05 01 01");
  EXPECT_EQ(storedParameter(KyCVersion(), KyCParam::FLAG_CUSTOM), "01 2B 05 01 00 00 00 00");
}

TEST(KyCBinSerializer, otherFlagsAreNotStored)
{
  EXPECT_EQ(storedParameter(static_cast<signed char>(1), KyCParam::FLAG_STATIC_DESCRIPTION | 0x40000),
            "01 10 05 01 01");
}

TEST(KyCBinSerializer, externalValuesAreStoredAsTheyAreNow)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  int number = 0;
  KyCString text;
  KyCVersion version;
  const KyCParam numberParameter(pool, 5, "", 0, 1, &number);
  const KyCParam textParameter(pool, 5, "", 0, KyCString("old"), &text);
  const KyCParam versionParameter(pool, 5, "", 0, KyCVersion(9, 9, 9, 9), &version);
  number = 258;
  text = "n";
  version = KyCVersion(1, 2, 3, 4);
  EXPECT_EQ(bench.store(numberParameter), "01 12 05 01 00 00 01 02");
  EXPECT_EQ(bench.store(textParameter), "01 1A 05 01 01 6E");
  EXPECT_EQ(bench.store(versionParameter), "01 1B 05 01 01 02 03 04");
}

TEST(KyCBinSerializer, parametersStandInFrontOfChildren)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "");
  addNode(pool, addNode(pool, &root, 2, 1, ""), 3, 1, "");
  addNode(pool, &root, 4, 1, "");
  addParam(pool, &root, 9, "", static_cast<unsigned char>(7));
  addParam(pool, &root, 8, "", static_cast<unsigned char>(6));
  EXPECT_EQ(bench.store(&root),
            "01 01 01 01 01 14 09 01 07 14 08 01 06 01 02 01 01 01 03 01 01 02 02 01 04 01 01 02 02");
}

TEST(KyCBinSerializer, siblingsOfTheRootAreNotStored)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite above(pool, 9, 9, "");
  KyCComposite* const root = addNode(pool, &above, 1, 1, "");
  addNode(pool, &above, 2, 2, "");
  EXPECT_EQ(bench.store(root), "01 01 01 01 01 02");
}

// ---- Texts ----

TEST(KyCBinSerializer, repeatedDescriptionsAreWrittenOnce)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "A");
  addParam(pool, &root, 1, "B", static_cast<unsigned char>(0));
  addParam(pool, &root, 2, "A", static_cast<unsigned char>(0));
  addNode(pool, &root, 1, 2, "B");
  EXPECT_EQ(bench.store(&root), "01 01 01 01 00 01 41 14 01 00 01 42 00 14 02 02 00 01 01 02 03 02 02");
}

TEST(KyCBinSerializer, sameTextAtAnotherAddressIsTheSameText)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const char first[] = "A";
  const char second[] = "A";
  const char longer[] = "AB";
  const unsigned int flags = KyCParam::FLAG_STATIC_DESCRIPTION;
  KyCComposite root(pool, 1, 1, "");
  addParam(pool, &root, 1, first, static_cast<unsigned char>(0), flags);
  addParam(pool, &root, 2, second, static_cast<unsigned char>(0), flags);
  addParam(pool, &root, 3, longer, static_cast<unsigned char>(0), flags);
  addParam(pool, &root, 4, first, static_cast<unsigned char>(0), flags);
  EXPECT_EQ(bench.store(&root), "01 01 01 01 01 14 01 00 01 41 00 14 02 02 00 14 03 00 02 41 42 00 14 04 02 00 02");
}

TEST(KyCBinSerializer, anotherTextAtTheSameAddressIsAnotherText)
{
  // The address alone proves nothing: a hook may change a text between two parameters.
  class KyCChangingSerializer : public KyCBinSerializer
  {
  public:
    KyCChangingSerializer(KyCErrorListPool& pool, char* text) : KyCBinSerializer(pool), m_text(text) {}
    void handleCustomParameter(KyCErrorListPool&, const KyCParam*) override { *m_text = 'B'; }

  private:
    char* m_text;
  };

  KyTestPool pool;
  KyStreamBench bench(pool);
  char text[] = "A";
  KyCChangingSerializer serializer(pool, text);
  bench.factory.setBinarySerializer(pool, &serializer);
  const unsigned int flags = KyCParam::FLAG_STATIC_DESCRIPTION | KyCParam::FLAG_CUSTOM;
  KyCComposite root(pool, 1, 1, "");
  addParam(pool, &root, 1, text, static_cast<unsigned char>(0), flags);
  addParam(pool, &root, 2, text, static_cast<unsigned char>(0), flags);
  EXPECT_EQ(bench.store(&root), "01 01 01 01 01 24 01 00 01 41 00 24 02 00 01 42 00 02");
}

TEST(KyCBinSerializer, longerTextsAtTheSameAddressAreComparedToTheirEnds)
{
  // What is left of the text after each parameter: changed in the first eight bytes, behind them, longer, shorter.
  class KyCChangingSerializer : public KyCBinSerializer
  {
  public:
    KyCChangingSerializer(KyCErrorListPool& pool, char* text) : KyCBinSerializer(pool), m_text(text) {}
    void handleCustomParameter(KyCErrorListPool&, const KyCParam*) override
    {
      static constexpr const char* s_texts[] = {"ABCDEFGHIJ", "xBCDEFGHIJ", "xBCDEFGHIy", "xBCDEFGHIyz", "xBC", "xBC"};
      std::strcpy(m_text, s_texts[m_count++]);
    }

  private:
    char* m_text;
    unsigned int m_count = 0;
  };

  KyTestPool pool;
  KyStreamBench bench(pool);
  char text[] = "ABCDEFGHIJ ";
  text[10] = '\0';
  KyCChangingSerializer serializer(pool, text);
  bench.factory.setBinarySerializer(pool, &serializer);
  const unsigned int flags = KyCParam::FLAG_STATIC_DESCRIPTION | KyCParam::FLAG_CUSTOM;
  KyCComposite root(pool, 1, 1, "");
  for (unsigned int id = 1; id <= 6; ++id)
    addParam(pool, &root, id, text, static_cast<unsigned char>(0), flags);
  EXPECT_EQ(bench.store(&root),
            "01 01 01 01 01 "
            "24 01 00 0A 41 42 43 44 45 46 47 48 49 4A 00 "
            "24 02 02 00 "
            "24 03 00 0A 78 42 43 44 45 46 47 48 49 4A 00 "
            "24 04 00 0A 78 42 43 44 45 46 47 48 49 79 00 "
            "24 05 00 0B 78 42 43 44 45 46 47 48 49 79 7A 00 "
            "24 06 00 03 78 42 43 00 02");
}

TEST(KyCBinSerializer, textsOfTheLastStreamAreForgotten)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyCComposite root(pool, 1, 1, "A");
  EXPECT_EQ(bench.store(&root), "01 01 01 01 00 01 41 02");
  EXPECT_EQ(bench.store(&root), "01 01 01 01 00 01 41 02");
}

TEST(KyCBinSerializer, thousandsOfTextsAreEachWrittenOnce)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "");
  for (int round = 0; round < 2; ++round)
    for (unsigned int n = 0; n < 5000; ++n)
      addNode(pool, &root, 1, 1, ("text " + std::to_string(10000 + n)).c_str());
  bench.store(&root);
  // Start and end of the root 6; new: start 3, number and length 2, text 10, end 1; repeated: the number takes 1 byte
  // for the texts 2 .. 127, else 2, besides start 3 and end 1.
  EXPECT_EQ(bench.buffer.getWritePosition(), 6u + 5000u * 16u + 126u * 5u + 4874u * 6u);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBinSerializer, smallStreamBehindALargeOneIsWrittenAsEver)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite large(pool, 1, 1, "A");
  for (unsigned int n = 0; n < 1000; ++n)
    addNode(pool, &large, 1, 1, std::to_string(n).c_str());
  const std::string expected = bench.store(&large);
  const KyCComposite small(pool, 1, 1, "A");
  EXPECT_EQ(bench.store(&small), "01 01 01 01 00 01 41 02");
  EXPECT_EQ(bench.store(&large), expected);
}

TEST(KyCBinSerializer, longTextsAreWrittenAgainBeforeTheirRepetitionsOutgrowTheStream)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, std::string(1000, 'x').c_str());
  for (int n = 0; n < 95; ++n)
    addNode(pool, &root, 1, 1, root.getDescription());
  bench.store(&root);
  // 94 repetitions of 1000 bytes are within 64 times the stream in front of the last of them (1472 bytes); 95 are not
  // within 64 times 1477 bytes. The 95th child has the text as a new one: 3 + 3 + 1000 + 1.
  EXPECT_EQ(bench.buffer.getWritePosition(), 1u + 1006u + 94u * 5u + 1007u + 1u);
  EXPECT_EQ(hexOf(bench.buffer.getStorage() + 1477, 8), "01 01 01 00 E8 07 78 78");

  std::unique_ptr<KyCComposite> back(bench.factory.deserialize(pool, nullptr, &bench.buffer));
  EXPECT_NO_REPORTS(pool);
  ASSERT_NE(back, nullptr);
  KyStreamBench second(pool);
  EXPECT_EQ(second.store(back.get()), hexOf(bench.buffer));
}

// Two words that the table's hash does not tell apart.
TEST(KyCBinSerializer, differentTextsOfOneHashAreEachWritten)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "liquid");
  addNode(pool, &root, 1, 2, "costarring");
  addNode(pool, &root, 1, 3, "costarring");
  addNode(pool, &root, 1, 4, "liquid");
  EXPECT_EQ(bench.store(&root),
            "01 01 01 01 00 06 6C 69 71 75 69 64 "
            "01 01 02 00 0A 63 6F 73 74 61 72 72 69 6E 67 02 "
            "01 01 03 03 02 01 01 04 02 02 02");
}

TEST(KyCBinSerializer, textsThatCrowdOnePlaceOfTheTableAreWrittenAgainFromThe65thOn)
{
  // The last 12 bits of the hash are the same for all: more than a table for 100 texts looks at.
  std::vector<std::string> crowd;
  for (unsigned int n = 1000000; crowd.size() < 100; ++n)
  {
    const std::string text = std::to_string(n);
    std::uint32_t hash = 2166136261u;
    for (const char c : text)
      hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    if (((hash ^ hash >> 15) & 0xFFF) == 0x123) crowd.push_back(text);
  }
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "");
  for (int round = 0; round < 2; ++round)
    for (const std::string& text : crowd)
      addNode(pool, &root, 1, 1, text.c_str());
  bench.store(&root);
  // Version, start and end of the root 6; a text written: start 3, number and length 2, text 7, end 1; a known one:
  // start 3, number 1, end 1.
  EXPECT_EQ(bench.buffer.getWritePosition(), 6u + (100u + 36u) * 13u + 64u * 5u);

  std::unique_ptr<KyCComposite> back(bench.factory.deserialize(pool, nullptr, &bench.buffer));
  EXPECT_NO_REPORTS(pool);
  ASSERT_NE(back, nullptr);
  const KyCComposite* node = back->getChild();
  for (unsigned int n = 0; n < 200; ++n, node = node->getSibling())
    EXPECT_STREQ(node->getDescription(), crowd[n % 100].c_str());
}

// Then nothing of it can be referred to any longer.
TEST(KyCBinSerializer, textsThatAHookHasTakenFromTheBufferAreWrittenAgain)
{
  class KyCEmptyingSerializer : public KyCBinSerializer
  {
  public:
    using KyCBinSerializer::KyCBinSerializer;
    void handleCustomParameter(KyCErrorListPool&, const KyCParam*) override { getBuffer()->reset(); }
  };

  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCEmptyingSerializer serializer(pool);
  bench.factory.setBinarySerializer(pool, &serializer);
  const char longer[] = "longer";
  const char last[] = "Z";
  const unsigned int lasting = KyCParam::FLAG_STATIC_DESCRIPTION;
  KyCComposite root(pool, 1, 1, "");
  addParam(pool, &root, 1, longer, static_cast<unsigned char>(0), lasting);
  addParam(pool, &root, 2, "other", static_cast<unsigned char>(0));
  addParam(pool, &root, 3, last, static_cast<unsigned char>(0), lasting);
  addParam(pool, &root, 4, "", static_cast<unsigned char>(0), KyCParam::FLAG_CUSTOM);    // empty from here on
  addParam(pool, &root, 5, longer, static_cast<unsigned char>(0), lasting);
  addParam(pool, &root, 6, last, static_cast<unsigned char>(0), lasting);
  addParam(pool, &root, 7, "other", static_cast<unsigned char>(0));
  addParam(pool, &root, 8, "longer", static_cast<unsigned char>(0));
  EXPECT_EQ(bench.store(&root),
            "14 05 00 06 6C 6F 6E 67 65 72 00 "
            "14 06 00 01 5A 00 "
            "14 07 00 05 6F 74 68 65 72 00 "
            "14 08 05 00 02");
}

// ---- Placement in the buffer ----

TEST(KyCBinSerializer, streamIsAppendedBehindWhatTheBufferHolds)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyCComposite root(pool, 1, 1, "A");
  fill(pool, bench.buffer, bytesOf("AA BB"));
  bench.factory.serialize(pool, &root, 0, &bench.buffer);
  bench.factory.serialize(pool, &root, 0, &bench.buffer);
  EXPECT_EQ(hexOf(bench.buffer), "AA BB 01 01 01 01 00 01 41 02 01 01 01 01 00 01 41 02");
}

TEST(KyCBinSerializer, nullRootWritesNothingAndReportsNothing)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  EXPECT_EQ(bench.store(nullptr), "");
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBinSerializer, bufferIsKnownDuringAStreamOnly)
{
  class KyCWatchingSerializer : public KyCBinSerializer
  {
  public:
    using KyCBinSerializer::KyCBinSerializer;
    void handleCustomParameter(KyCErrorListPool&, const KyCParam*) override { seen = getBuffer(); }
    KyCBuffer* seen = nullptr;
  };

  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCWatchingSerializer serializer(pool);
  bench.factory.setBinarySerializer(pool, &serializer);
  EXPECT_EQ(serializer.getBuffer(), nullptr);
  bench.store(KyCParam(pool, 1, "", KyCParam::FLAG_CUSTOM, static_cast<signed char>(0), nullptr));
  EXPECT_EQ(serializer.seen, &bench.buffer);
  EXPECT_EQ(serializer.getBuffer(), nullptr);
}

// ---- The example of the documentation ----

TEST(KyCBinSerializer, documentedExampleIsWhatIsWritten)
{
  std::ifstream document(KY_SOURCE_DIR "/docs/stream-format.md");
  std::string line;
  while (std::getline(document, line) && line != "```hexdump")
  {
  }
  std::string expected;
  while (std::getline(document, line) && line != "```")
  {
    const std::string bytes = line.substr(0, line.find("   "));
    if (!expected.empty() && !bytes.empty()) expected += ' ';
    expected += bytes;
  }
  ASSERT_FALSE(expected.empty());

  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "BOARD");
  addParam(pool, &root, 7, "width", 16);
  addParam(pool, &root, 9, "", KyCVersion(1, 2, 3, 300), KyCParam::FLAG_CUSTOM);
  KyCComposite* const port = addNode(pool, &root, 2, 300, "PORT");
  addParam(pool, port, 7, "width", static_cast<unsigned char>(8));
  addParam(pool, port, 8, "", KyCString("A1"));
  addParam(pool, port, 10, "gain", 1.5f);
  EXPECT_EQ(bench.store(&root), expected);
}

// ---- Hooks ----

namespace
{
// Writes down the calls in order.
class KyCRecordingSerializer : public KyCBinSerializer
{
public:
  using KyCBinSerializer::KyCBinSerializer;
  void CompositeStart(KyCErrorListPool& pool, const KyCComposite* composite) override
  {
    calls += "start" + std::to_string(composite->getClassId()) + " ";
    KyCBinSerializer::CompositeStart(pool, composite);
  }
  void CompositeEnd(KyCErrorListPool& pool, const KyCComposite* composite) override
  {
    calls += "end" + std::to_string(composite->getClassId()) + " ";
    KyCBinSerializer::CompositeEnd(pool, composite);
  }
  void CompositeParameter(KyCErrorListPool& pool, const KyCParam* parameter) override
  {
    calls += "param" + std::to_string(parameter->getId()) + " ";
    KyCBinSerializer::CompositeParameter(pool, parameter);
  }
  void handleCustomParameter(KyCErrorListPool& pool, const KyCParam* parameter) override
  {
    calls += "custom" + std::to_string(parameter->getId()) + " ";
    const unsigned char byte = 0xEE;
    getBuffer()->writeBuffer(pool, &byte, 1, 0, -1);
    if (reportAt == parameter->getId()) pool.setError(1, 1, "hook", nullptr);
    if (throwAt == parameter->getId()) throw std::runtime_error("hook");
  }
  std::string calls;
  unsigned int reportAt = 0;
  unsigned int throwAt = 0;
};

class KyCRecordingTree
{
public:
  explicit KyCRecordingTree(KyCErrorListPool& pool) : bench(pool), serializer(pool), root(pool, 1, 1, "")
  {
    bench.factory.setBinarySerializer(pool, &serializer);
    addParam(pool, &root, 1, "", static_cast<unsigned char>(0));
    addParam(pool, &root, 2, "", static_cast<unsigned char>(0), KyCParam::FLAG_CUSTOM);
    addParam(pool, &root, 3, "", static_cast<unsigned char>(0));
    addNode(pool, &root, 2, 1, "");
  }
  KyStreamBench bench;
  KyCRecordingSerializer serializer;
  KyCComposite root;
};
}    // namespace

TEST(KyCBinSerializer, operationsAreCalledInTreeOrder)
{
  KyTestPool pool;
  KyCRecordingTree tree(pool);
  EXPECT_EQ(tree.bench.store(&tree.root), "01 01 01 01 01 14 01 01 00 24 02 01 00 EE 14 03 01 00 01 02 01 01 02 02");
  EXPECT_EQ(tree.serializer.calls, "start1 param1 param2 custom2 param3 start2 end2 end1 ");
}

TEST(KyCBinSerializer, reportOfTheHookEndsTheSerialization)
{
  KyTestPool pool;
  KyCRecordingTree tree(pool);
  tree.serializer.reportAt = 2;
  EXPECT_EQ(tree.bench.store(&tree.root), "01 01 01 01 01 14 01 01 00 24 02 01 00 EE");
  EXPECT_EQ(tree.serializer.calls, "start1 param1 param2 custom2 ");
  EXPECT_REPORTS(pool, {1, "hook", ""});
}

TEST(KyCBinSerializer, exceptionOfTheHookLeavesTheSerializerReadyForTheNextStream)
{
  KyTestPool pool;
  KyCRecordingTree tree(pool);
  tree.serializer.throwAt = 2;
  EXPECT_THROW(tree.bench.store(&tree.root), std::runtime_error);
  EXPECT_EQ(tree.serializer.getBuffer(), nullptr);
  tree.serializer.throwAt = 0;
  EXPECT_EQ(tree.bench.store(&tree.root), "01 01 01 01 01 14 01 01 00 24 02 01 00 EE 14 03 01 00 01 02 01 01 02 02");
}

TEST(KyCBinSerializer, reportsFromBeforeDoNotStopTheWalk)
{
  KyTestPool pool;
  KyCRecordingTree tree(pool);
  pool.setError(1, 1, "before", nullptr);
  tree.bench.store(&tree.root);
  EXPECT_EQ(tree.serializer.calls, "start1 param1 param2 custom2 param3 start2 end2 end1 ");
  EXPECT_REPORTS(pool, {1, "before", ""});
}

TEST(KyCBinSerializer, operationsStandInTheirSlots)
{
  using TSlot = void (*)();
  using TNode = void (*)(KyCBinSerializer*, KyCErrorListPool&, const KyCComposite*);
  using TParam = void (*)(KyCBinSerializer*, KyCErrorListPool&, const KyCParam*);
  struct KyCSlots : KyCBinSerializer    // bases do nothing: no stream is open
  {
    using KyCBinSerializer::KyCBinSerializer;
    void CompositeStart(KyCErrorListPool&, const KyCComposite*) override { calls += "start "; }
    void CompositeEnd(KyCErrorListPool&, const KyCComposite*) override { calls += "end "; }
    void CompositeParameter(KyCErrorListPool&, const KyCParam*) override { calls += "param "; }
    void handleCustomParameter(KyCErrorListPool&, const KyCParam*) override { calls += "custom "; }
    std::string calls;
  };

  KyTestPool pool;
  KyCSlots slots(pool);
  const TSlot* const table = *reinterpret_cast<TSlot**>(&slots);    // 0 and 1 are the destructors
  reinterpret_cast<TNode>(table[2])(&slots, pool, nullptr);
  reinterpret_cast<TNode>(table[3])(&slots, pool, nullptr);
  reinterpret_cast<TParam>(table[4])(&slots, pool, nullptr);
  reinterpret_cast<TParam>(table[5])(&slots, pool, nullptr);
  EXPECT_EQ(slots.calls, "start end param custom ");
}

// ---- Refusals ----

TEST(KyCBinSerializer, unknownTypeIsReportedWithTheParametersName)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite root(pool, 1, 1, "");
  KyCParam* const parameter = new (pool) KyCParam(pool, 7, "width", 0x119);
  pool.takeReports();    // whatever the constructor thinks of the type
  root.addParameter(pool, parameter);
  EXPECT_EQ(bench.store(&root), "01 01 01 01 01");
  EXPECT_REPORTS(pool, {0x01101803, "CompositeParameter",
                        "Parameter 7 (width) has the unknown value type 281; it cannot be stored."});
}

TEST(KyCBinSerializer, depthOf4096LevelsIsStored)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const std::unique_ptr<KyCComposite> root(makeChain(pool, 4096));
  bench.store(root.get());
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(bench.buffer.getWritePosition(), 1u + 4096u * 5u);
}

TEST(KyCBinSerializer, depthOf4097LevelsIsRefused)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const std::unique_ptr<KyCComposite> root(makeChain(pool, 4097));
  bench.store(root.get());
  EXPECT_REPORTS(pool, {0x01101802, "CompositeStart", "Composites nested deeper than 4096 levels cannot be stored."});
  EXPECT_EQ(bench.buffer.getWritePosition(), 1u + 4096u * 4u);
  // The refusal does not outlive the stream.
  EXPECT_EQ(bench.store(root->getChild()).size(), (1u + 4096u * 5u) * 3u - 1u);
}

// An assignment brings two parameters of one id about, which no stream can be read back with.
TEST(KyCBinSerializer, twoParametersOfOneIdAreRefused)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  const std::unique_ptr<KyCComposite> root(addNode(pool, nullptr, 1, 1, ""));
  KyCComposite* const board = addNode(pool, root.get(), 2, 3, "");
  addParam(pool, board, 7, "", 1);
  addParam(pool, board, 8, "", 2);
  KyCParam* const last = addParam(pool, board, 9, "", 3);
  *last = *board->getParameterById(7);
  EXPECT_EQ(bench.store(root.get()), "01 01 01 01 01");
  EXPECT_REPORTS(
      pool, {0x0110180A, "CompositeStart", "Composite (2, 3) has two parameters of the id 7; it cannot be stored."});

  // Not any longer when one of them is gone.
  delete last;
  EXPECT_EQ(bench.store(root.get()), "01 01 01 01 01 01 02 03 01 12 07 01 00 00 00 01 12 08 01 00 00 00 02 02 02");
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBinSerializer, twoParametersOfOneIdAreRefusedAmongManyToo)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite board(pool, 2, 3, "");
  for (unsigned int id = 1000; id != 0; --id)
    addParam(pool, &board, id, "", 1);
  *board.getParameterById(500) = *board.getParameterById(999);
  bench.store(&board);
  EXPECT_REPORTS(
      pool, {0x0110180A, "CompositeStart", "Composite (2, 3) has two parameters of the id 999; it cannot be stored."});
}

TEST(KyCBinSerializer, twoParametersOfOneIdAreRefusedAlsoWithoutMemoryToLookForThem)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite board(pool, 2, 3, "");
  addParam(pool, &board, 7, "", 1);
  *addParam(pool, &board, 8, "", 2) = *board.getParameterById(7);
  bench.store(&board);    // the buffer has its room now
  EXPECT_REPORTS(pool, {0x0110180A, "CompositeStart", ""});
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(bench.store(&board), "01");
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, {0x01000000, "allocate", "Out of memory."});
}

// A new id by assignment alone is no reason to refuse, also where the same number was a parameter's or a child's before.
TEST(KyCBinSerializer, newIdsThatAreDifferentAreStored)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCComposite board(pool, 2, 3, "");
  addNode(pool, &board, 4, 1, "");
  KyCParam* const parameter = addParam(pool, &board, 7, "", 1);
  for (unsigned int id = 1; id <= 200; ++id)
    *parameter = KyCParam(pool, id, "", 0, 1, nullptr);
  *parameter = KyCParam(pool, 7, "", 0, 1, nullptr);
  EXPECT_EQ(bench.store(&board), "01 01 02 03 01 12 07 01 00 00 00 01 01 04 01 01 02 02");
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBinSerializer, streamWithinAStreamOfTheSameSerializerIsRefused)
{
  class KyCNestingSerializer : public KyCBinSerializer
  {
  public:
    KyCNestingSerializer(KyCErrorListPool& pool, KyCCompositeFactory& factory)
        : KyCBinSerializer(pool), m_factory(factory)
    {
    }
    void handleCustomParameter(KyCErrorListPool& pool, const KyCParam* parameter) override
    {
      m_factory.serializeParameter(pool, getBuffer(), parameter);
    }

  private:
    KyCCompositeFactory& m_factory;
  };

  KyTestPool pool;
  KyStreamBench bench(pool);
  KyCNestingSerializer serializer(pool, bench.factory);
  bench.factory.setBinarySerializer(pool, &serializer);
  const KyCParam parameter(pool, 1, "", KyCParam::FLAG_CUSTOM, static_cast<signed char>(0), nullptr);
  EXPECT_EQ(bench.store(parameter), "01 20 01 01 00");
  EXPECT_REPORTS(pool, {0x01101800, "begin", "The serializer is in use or could not be constructed."});
}

// ---- Exhausted memory ----

TEST(KyCBinSerializer, constructionWithoutMemoryIsReportedAndStreamsAreRefused)
{
  for (unsigned int n = 0; n < 3; ++n)    // the table and its two blocks
  {
    KyTestPool pool;
    KyStreamBench bench(pool);
    KyNPoolAllocator::failAfter(n);
    KyCBinSerializer serializer(pool);
    KyNPoolAllocator::reset();
    EXPECT_EQ(pool.takeReports().size(), 1u);
    bench.factory.setBinarySerializer(pool, &serializer);
    const KyCComposite root(pool, 1, 1, "");
    EXPECT_EQ(bench.store(&root), "");
    EXPECT_REPORTS(pool, {0x01101800, "begin", "The serializer is in use or could not be constructed."});
  }
}

namespace
{
void expectTheStartOfTheStreamWhateverAllocationFails(const KyCComposite& root)
{
  KyTestPool pool;
  KyStreamBench whole(pool);
  const std::string expected = whole.store(&root);
  for (unsigned int n = 0;; ++n)
  {
    KyStreamBench bench(pool);
    KyNPoolAllocator::failAfter(n);
    const std::string stored = bench.store(&root);
    KyNPoolAllocator::reset();
    if (pool.takeReports().empty())
    {
      EXPECT_EQ(stored, expected);
      EXPECT_GT(n, 4u);
      break;
    }
    EXPECT_EQ(stored, expected.substr(0, stored.size()));    // what was written stays
    ASSERT_LT(n, 100u);
  }
}

// Until it has room for this many bytes alone, and cannot get more.
void fillUp(KyTestPool& pool, KyCBuffer& buffer, unsigned int left)
{
  const unsigned int errors = pool.getErrorCount();
  const unsigned char byte = 0xEE;
  buffer.reset();
  buffer.allocateBuffer(pool, left + 1);
  KyNPoolAllocator::failAfter(0);
  while (pool.getErrorCount() == errors)
    buffer.writeBuffer(pool, &byte, 1, 0, -1);
  const unsigned int size = buffer.getWritePosition();
  pool.takeReports();
  KyNPoolAllocator::reset();
  buffer.reset();
  for (unsigned int n = left; n < size; ++n)
    buffer.writeBuffer(pool, &byte, 1, 0, -1);
  KyNPoolAllocator::failAfter(0);
}
}    // namespace

TEST(KyCBinSerializer, everyAllocationMayFail)
{
  KyTestPool pool;
  KyCComposite nodes(pool, 1, 1, "");
  KyCComposite parameters(pool, 1, 1, "");
  for (unsigned int n = 0; n < 300; ++n)
  {
    const std::string text = "text " + std::to_string(n);
    addNode(pool, &nodes, 1, n, text.c_str());
    addParam(pool, &parameters, n, text.c_str(), 1);
  }
  expectTheStartOfTheStreamWhateverAllocationFails(nodes);
  expectTheStartOfTheStreamWhateverAllocationFails(parameters);
}

// Each record, the smallest too, may be the one that the buffer has no room for.
TEST(KyCBinSerializer, aBufferThatCannotGrowHoldsTheStartOfTheStream)
{
  constexpr unsigned int LEVELS = 40;
  KyTestPool pool;
  const std::unique_ptr<KyCComposite> root(makeChain(pool, LEVELS));
  KyStreamBench whole(pool);
  const std::string expected = whole.store(root.get());
  for (unsigned int left = 0; left < 1 + LEVELS * 5; ++left)
  {
    KyStreamBench bench(pool);
    fillUp(pool, bench.buffer, left);
    const unsigned int start = bench.buffer.getWritePosition();
    bench.factory.serialize(pool, root.get(), 0, &bench.buffer);
    KyNPoolAllocator::reset();
    EXPECT_REPORTS(pool, {0x01000000, "reallocate", "Out of memory."}) << left;
    const std::string stored = hexOf(bench.buffer.getStorage() + start, bench.buffer.getWritePosition() - start);
    EXPECT_EQ(stored, expected.substr(0, stored.size())) << left;
    EXPECT_LE(bench.buffer.getWritePosition(), start + left);
    EXPECT_EQ(hexOf(bench.buffer.getStorage(), start), hexOf(KyBytes(start, 0xEE))) << left;
    // The serializer is ready for the next stream.
    EXPECT_EQ(bench.store(root.get()), expected) << left;
  }
}

TEST(KyCBinSerializer, aVersionThatGotNoMemoryIsStoredAsZeros)
{
  KyTestPool pool;
  KyStreamBench bench(pool);
  KyNPoolAllocator::failAfter(0);
  const KyCParam parameter(pool, 5, "", 0, KyCVersion(1, 2, 3, 4), nullptr);
  KyNPoolAllocator::reset();
  EXPECT_EQ(pool.takeReports().size(), 1u);
  EXPECT_EQ(bench.store(parameter), "01 1B 05 01 00 00 00 00");
  EXPECT_NO_REPORTS(pool);
}

#if UINTPTR_MAX > 0xFFFFFFFFu    // otherwise no text is so long

namespace
{
class KyDescribedNode : public KyCComposite
{
public:
  KyDescribedNode(KyCErrorListPool& pool, const char* description) : KyCComposite(pool, 1, 1, TStaticText{description})
  {
  }
};
}    // namespace

TEST(KyCBinSerializer, aNodeThatAStreamCannotHoldIsReported)
{
  if (std::getenv("KY_LARGE") == nullptr) GTEST_SKIP() << "takes 20 seconds; set KY_LARGE to have it run";
  const KyLargeText large;
  KyTestPool pool;
  KyStreamBench bench(pool);
  const KyDescribedNode node(pool, large.text());
  bench.factory.serialize(pool, &node, 0, &bench.buffer);
  EXPECT_REPORTS(pool, {0x01101804, "reserve", "A stream cannot hold more than 4294967295 bytes."});
  EXPECT_EQ(bench.buffer.getWritePosition(), 1u) << "the version, and nothing of the node";
}

#endif
