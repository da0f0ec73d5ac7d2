// Counts, places and the meaning of bytes.
#include "inventorykit/KyInspect.h"

#include <filesystem>

#include "KySectionBytes.h"
#include "inventorykit/KyTree.h"
#include "support/KyFiles.h"
#include "support/KyTestPool.h"
#include "unit/persistence/KyRandomTree.h"

using namespace KyNInventoryKit;

namespace
{
const std::string sample = sectionOfData(sampleStream);

Inspection inspect(const std::string& bytes, SectionEnd at = SectionEnd::READ)
{
  KyTestPool pool;
  Inspection inspection;
  EXPECT_TRUE(inspectBytes(pool, bytes, "f", at, inspection));
  return inspection;
}

// "24+1 stream: version 1 [address]", a line each.
std::string notesOf(const std::string& bytes)
{
  KyTestPool pool;
  std::string lines;
  annotateBytes(pool, bytes, "f", SectionEnd::READ,
                [&lines](const ByteNote& note)
                {
                  lines += std::to_string(note.offset) + "+" + std::to_string(note.bytes.size()) + " " + note.meaning +
                           (note.address.empty() ? "" : " [" + note.address + "]") + "\n";
                  return true;
                });
  return lines;
}

void expectCountsOf(const KyCInventoryItem& tree, const Inspection& inspection)
{
  const TreeSize size = measure(tree);
  EXPECT_EQ(inspection.items, size.items);
  EXPECT_EQ(inspection.parameters, size.parameters);
  EXPECT_EQ(inspection.depth, size.depth);
  std::map<std::string, std::uint64_t> types;
  std::map<std::string, std::uint64_t> ids;
  for (const KyCInventoryItem* item = &tree; item != nullptr; item = nextItem(*item, tree))
  {
    ++ids[item->getID()[1].toString().c_str()];
    for (KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
    {
      ++types[p->getTypeAsCString()];
      ++ids[p->getID().toString().c_str()];
    }
  }
  EXPECT_EQ(inspection.countOfType, types);
  ASSERT_EQ(inspection.countOfID.size(), ids.size());
  for (const auto& [id, count] : inspection.countOfID)
    EXPECT_EQ(count.items + count.parameters, ids[id]) << id;
}
}    // namespace

TEST(KyInspect, placesSizesAndCountsOfASample)
{
  const Inspection inspection = inspect("image" + sample);
  EXPECT_EQ(inspection.name, "f");
  EXPECT_EQ(inspection.fileSize, 92u);
  EXPECT_EQ(inspection.begin, 5u);
  EXPECT_EQ(inspection.dataBegin, 29u);
  EXPECT_EQ(inspection.dataEnd, 68u);
  EXPECT_EQ(inspection.end, 92u);
  EXPECT_TRUE(inspection.isAtEnd);
  EXPECT_TRUE(inspection.header.isThere);
  EXPECT_EQ(inspection.header.offset, 5u);
  EXPECT_EQ(inspection.trailer.offset, 68u);
  EXPECT_EQ(inspection.trailer.dataSize, 39u);
  EXPECT_EQ(inspection.sha256, "b57d76d9595105cb9f43a83cb862a337a2a8a09446d8f4b178719e9407ffac94");
  EXPECT_EQ(inspection.streamVersion, 1u);
  EXPECT_EQ(inspection.treeSize, 39u);
  EXPECT_EQ(inspection.behindTree, 0u);
  EXPECT_EQ(inspection.damage, "");
  EXPECT_EQ(inspection.items, 2u);
  EXPECT_EQ(inspection.parameters, 1u);
  EXPECT_EQ(inspection.depth, 2u);
  EXPECT_EQ(inspection.storedTexts, 3u);
  EXPECT_EQ(inspection.repeatedTexts, 0u);
  EXPECT_EQ(inspection.distinctTexts, 3u);
  EXPECT_EQ(inspection.countOfType, (std::map<std::string, std::uint64_t>{{"String", 1}}));
  EXPECT_EQ(inspection.countOfID.at("NAME").parameters, 1u);
  EXPECT_EQ(inspection.countOfID.at("CPU").items, 1u);
}

TEST(KyInspect, sectionAtTheStartEndsWithItsTrailer)
{
  const Inspection inspection = inspect(sample + "image");
  EXPECT_EQ(inspection.begin, 0u);
  EXPECT_EQ(inspection.end, 87u);
  EXPECT_FALSE(inspection.isAtEnd);
}

TEST(KyInspect, oneOfTwoSectionsIsChosen)
{
  const std::string other = sectionOfData(bytesOfHex("01 01 01 01 01 02"));
  EXPECT_EQ(inspect(other + "image" + sample).items, 2u);
  EXPECT_EQ(inspect(other + "image" + sample, SectionEnd::END).items, 2u);
  EXPECT_EQ(inspect(other + "image" + sample, SectionEnd::START).items, 1u);
}

TEST(KyInspect, missingSectionIsReported)
{
  KyTestPool pool;
  Inspection inspection;
  EXPECT_FALSE(inspectBytes(pool, "x", "f", SectionEnd::READ, inspection));
  EXPECT_REPORTS(pool,
                 {0x1500002, "inspectBytes", "f holds no inventory section, neither at its end nor at its start."});
  EXPECT_FALSE(inspectBytes(pool, "image" + sample, "f", SectionEnd::START, inspection));
  EXPECT_REPORTS(pool, {0x1502802, "inspectBytes", "f has no section at its start."});
}

TEST(KyInspect, fileIsReadAndNamed)
{
  KyTestPool pool;
  const KyTemporaryFolder folder;
  Inspection inspection;
  EXPECT_TRUE(inspectFile(pool, folder.write("a", sample), SectionEnd::READ, inspection));
  EXPECT_EQ(inspection.name, folder.path("a"));
  EXPECT_EQ(inspection.items, 2u);
  EXPECT_FALSE(inspectFile(pool, folder.path("missing"), SectionEnd::READ, inspection));
  EXPECT_REPORTS(pool,
                 {0x1500000, "readBytes", "Cannot read " + folder.path("missing") + ": No such file or directory."});
  EXPECT_EQ(inspection.items, 0u);
}

TEST(KyInspect, damageIsToldAndWhatIsInFrontIsCounted)
{
  std::string bytes = sample;
  bytes[24 + 29] = '\x07';
  const Inspection inspection = inspect(bytes);
  EXPECT_EQ(inspection.damage, "the record is of an unknown kind");
  EXPECT_EQ(inspection.damageOffset, 53u);
  EXPECT_EQ(inspection.items, 1u);
  EXPECT_EQ(inspection.parameters, 1u);
  EXPECT_EQ(inspection.treeSize, 29u);
  EXPECT_EQ(inspection.behindTree, 10u);
}

TEST(KyInspect, countsOfGoldenAndRandomTreesAreThoseOfAWalk)
{
  for (const auto& entry : std::filesystem::directory_iterator(KY_SOURCE_DIR "/tests/golden/sections"))
  {
    if (entry.path().extension() != ".kyinv") continue;
    KyTestPool pool;
    const KyItemPtr tree = extractFromFile(pool, entry.path().string());
    if (tree) expectCountsOf(*tree, inspect(contentOf(entry.path().string())));
  }
  for (unsigned int seed = 1; seed <= 20; ++seed)
  {
    KyTestPool pool;
    const KyItemPtr tree = KyRandomTree(seed).make(pool, 30);
    const KyBytes bytes = storedSection(tree.get());
    expectCountsOf(*tree, inspect(std::string(bytes.begin(), bytes.end())));
  }
}

TEST(KyAnnotate, everyByteOfASampleHasItsMeaning)
{
  EXPECT_EQ(notesOf(sample),
            "0+4 header: mark INVE\n"
            "4+4 header: mark 0x554B59AA\n"
            "8+4 header: version 1\n"
            "12+4 header: header size 24\n"
            "16+4 header: data size 39\n"
            "20+4 header: trailer size 24\n"
            "24+1 stream: version 1\n"
            "25+1 an item starts [.]\n"
            "26+1 ID ROOT [.]\n"
            "27+1 index 1 [.]\n"
            "28+1 description: a new text [.]\n"
            "29+1 description: length 4 [.]\n"
            "30+4 description: \"ROOT\" [.]\n"
            "34+1 a parameter of type String [NAME]\n"
            "35+1 ID NAME [NAME]\n"
            "36+1 description: a new text [NAME]\n"
            "37+1 description: length 4 [NAME]\n"
            "38+4 description: \"NAME\" [NAME]\n"
            "42+1 value: length 2 [NAME]\n"
            "43+2 value: \"A1\" [NAME]\n"
            "45+1 unit: length 2 [NAME]\n"
            "46+2 unit: \"mV\" [NAME]\n"
            "48+1 modifiable [NAME]\n"
            "49+4 relevance 7 [NAME]\n"
            "53+1 an item starts [CPU[2]]\n"
            "54+1 ID CPU [CPU[2]]\n"
            "55+1 index 2 [CPU[2]]\n"
            "56+1 description: a new text [CPU[2]]\n"
            "57+1 description: length 3 [CPU[2]]\n"
            "58+3 description: \"CPU\" [CPU[2]]\n"
            "61+1 the item ends [CPU[2]]\n"
            "62+1 the item ends [.]\n"
            "63+4 trailer: header size 24\n"
            "67+4 trailer: data size 39\n"
            "71+4 trailer: trailer size 24\n"
            "75+4 trailer: version 1\n"
            "79+4 trailer: mark INVE\n"
            "83+4 trailer: mark 0x554B59AA\n");
}

TEST(KyAnnotate, valuesAreThoseOfTheirTypes)
{
  const std::string custom = " 00 00 00 00 00 00 ";
  const std::string notes = notesOf(sectionOfData(bytesOfHex(
      "01 01 01 01 01"
      "20 03 01 FE" +
      custom + "21 04 01 80 00" + custom + "27 05 01 FF FF FF FF FF FF FF FF" + custom + "28 06 01 3F C0 00 00" +
      custom + "28 07 01 7F A0 00 01" + custom + "29 08 01 FF F0 00 00 00 00 00 00" + custom +
      "2B 09 01 01 02 03 AC 02" + custom + "2A 0A 01 05 0A 22 C2 85 FF" + custom + "02")));
  EXPECT_NE(notes.find("value: -2 ["), std::string::npos);
  EXPECT_NE(notes.find("value: -32768 ["), std::string::npos);
  EXPECT_NE(notes.find("value: 18446744073709551615 ["), std::string::npos);
  EXPECT_NE(notes.find("value: 1.5 ["), std::string::npos);
  EXPECT_NE(notes.find("value: nan ["), std::string::npos);
  EXPECT_NE(notes.find("value: -inf ["), std::string::npos);
  EXPECT_NE(notes.find("value: maintenance 3 ["), std::string::npos);
  EXPECT_NE(notes.find("+2 value: build 300 ["), std::string::npos);
  EXPECT_NE(notes.find("value: \"\\x0A\\\"\\xC2\\x85\\xFF\" ["), std::string::npos) << notes;
}

TEST(KyAnnotate, whatIsBehindDamageIsNotRead)
{
  std::string bytes = sample;
  bytes[24 + 29] = '\x07';
  const std::string notes = notesOf(bytes);
  EXPECT_NE(notes.find("49+4 relevance 7 [NAME]\n"
                       "53+10 not read: damaged, the record is of an unknown kind\n"
                       "63+4 trailer: header size 24\n"),
            std::string::npos)
      << notes;
}

TEST(KyAnnotate, whatIsMoreThanExpectedIsNotRead)
{
  const SectionSizes sizes = {41, 26, 25};
  const std::string notes = notesOf(headerOf(sizes) + "ab" + sampleStream + "cd" + "e" + trailerOf(sizes));
  EXPECT_NE(notes.find("24+2 header: not read\n26+1 stream: version 1\n"), std::string::npos) << notes;
  EXPECT_NE(notes.find("65+2 not read: behind the stored tree\n67+1 trailer: not read\n68+4 trailer: header size 26\n"),
            std::string::npos)
      << notes;
}

TEST(KyAnnotate, addressesOfDeepItemsAreCutInFront)
{
  std::string stream = bytesOfHex("01 01 01 01 01");
  for (int n = 0; n < 100; ++n)
    stream += bytesOfHex("01 02 01 01");
  const std::string notes = notesOf(sectionOfData(stream + std::string(101, '\x02')));
  EXPECT_NE(notes.find("the item ends [.../CPU/CPU/"), std::string::npos);
  for (std::size_t at = 0; at < notes.size(); at = notes.find('\n', at) + 1)
    EXPECT_LT(notes.find('\n', at) - at, 200u);
}

TEST(KyAnnotate, sinkEndsTheNotes)
{
  KyTestPool pool;
  int count = 0;
  EXPECT_TRUE(annotateBytes(pool, sample, "f", SectionEnd::READ, [&count](const ByteNote&) { return ++count < 3; }));
  EXPECT_EQ(count, 3);
}

TEST(KyAnnotate, noteAsJsonIsOneLine)
{
  ByteNote note;
  note.offset = 30;
  note.bytes = "RO";
  note.meaning = "description: \"RO\"";
  note.address = ".";
  EXPECT_EQ(
      noteAsJson(note),
      "{\"offset\":30,\"length\":2,\"bytes\":\"524F\",\"meaning\":\"description: \\\"RO\\\"\",\"address\":\".\"}\n");
}
