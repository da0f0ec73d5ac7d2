// What checks find, where, and that they agree with the library's own reader on every damaged byte.
#include "inventorykit/KyCheck.h"

#include <filesystem>
#include <string>
#include <vector>

#include "KySectionBytes.h"
#include "inventory/KyInventoryTree.h"
#include "inventorykit/KyInspect.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KyStreamReader.h"
#include "support/KyFiles.h"
#include "support/KyRecordingListener.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "threads/KyThreads.h"
#include "unit/persistence/KyRandomTree.h"

using namespace KyNInventoryKit;

namespace
{
namespace fs = std::filesystem;

// One line a finding: "warning 0x150200A @25 BOARD: text", "@-" for no offset.
std::string linesOf(const CheckResult& result)
{
  std::string lines;
  for (const Finding& finding : result.findings)
  {
    char code[16];
    std::snprintf(code, sizeof(code), "0x%X", finding.code);
    const std::string offset = finding.offset == Finding::NOWHERE ? "-" : std::to_string(finding.offset);
    lines += std::string(severityName(finding.severity)) + " " + code + " @" + offset + " " + finding.address + ": " +
             finding.text + "\n";
    EXPECT_NE(finding.remedy, "") << lines;
  }
  return lines;
}

std::string check(const std::string& bytes) { return linesOf(checkBytes(bytes, "f", {})); }
std::string checkData(const std::string& hex) { return check(sectionOfData(bytesOfHex(hex))); }

std::string sectionOfSample(const std::string& text)
{
  KyTestPool pool;
  KySampleTree sample(text);
  return sectionOf(pool, sample.root());
}

const std::string sample = sectionOfData(sampleStream);
const std::string root = "01 01 01 01 00 04 52 4F 4F 54 ";    // version; ROOT
const std::string name = "24 03 00 04 4E 41 4D 45 05 ";       // NAME, UInt8, 5, no custom part
const std::string custom = "00 00 00 00 00 00 ";              // no unit
const std::string startIsSound =
    "note 0x1502017 @0 : The section at the start of the file reads as a tree; what is damaged at the end keeps it "
    "from "
    "being read.\n";
const std::string sharedIndex = "B7 04 00 11 53 48 41 52 45 44 5F 44 41 54 41 5F 49 4E 44 45 58 ";    // ID, description
}    // namespace

TEST(KyCheck, soundSectionHasNoFindings)
{
  const CheckResult result = checkBytes(sample, "f", {});
  EXPECT_EQ(linesOf(result), "");
  EXPECT_EQ(result.verdict, Verdict::FINE);
  EXPECT_EQ(result.name, "f");
}

TEST(KyCheck, sectionsInImagesAreSoundAtBothEnds)
{
  EXPECT_EQ(check("firmware that holds INVE by chance" + sample), "");
  EXPECT_EQ(check(sample + "firmware that holds INVE by chance"), "");
}

TEST(KyCheck, fileWithoutASectionIsDamaged)
{
  EXPECT_EQ(check(""), "error 0x1500002 @- : f holds no inventory section, neither at its end nor at its start.\n");
  EXPECT_EQ(checkBytes("x", "f", {}).verdict, Verdict::DAMAGED);
  EXPECT_EQ(
      check("12" + sample + "34"),
      "error 0x1500002 @- : f holds no inventory section, neither at its end nor at its start.\n"
      "note 0x1502015 @2 : Here is what looks like a header; sections are read only from the start and the end of "
      "a file.\n");
}

TEST(KyCheck, sectionWithoutDataHoldsNoTree)
{
  EXPECT_EQ(check(sectionOfData("")), "error 0x1502002 @24 : The section holds no tree: its data size is 0.\n");
}

TEST(KyCheck, headerOrTrailerThatIsMissingIsAWarningWhenTheOtherOneIsThere)
{
  const CheckResult result = checkBytes(sample.substr(24), "f", {});
  EXPECT_EQ(linesOf(result), "warning 0x1502006 @0 : The header of the section is missing or damaged.\n");
  EXPECT_EQ(result.verdict, Verdict::FINDINGS);
  EXPECT_EQ(check(sample.substr(0, 63)), "warning 0x1502006 @63 : The trailer of the section is missing or damaged.\n");
}

TEST(KyCheck, recordsThatDisagreeAreWarnings)
{
  const std::string bytes = headerOf({40, 24, 25, 2}) + sampleStream + trailerOf({39});
  EXPECT_EQ(check("image" + bytes),
            "warning 0x1502007 @5 : Header and trailer disagree about the version: 2 and 1.\n"
            "warning 0x1502007 @5 : Header and trailer disagree about the data size: 40 and 39.\n"
            "warning 0x1502007 @5 : Header and trailer disagree about the trailer size: 25 and 24.\n");
}

TEST(KyCheck, unusableTrailerIsAnErrorAlsoWhenTheHeaderIsFine)
{
  EXPECT_EQ(check(headerOf({39}) + sampleStream + trailerOf({39, 24, 24, 2})),
            "error 0x1502004 @63 : The trailer is of version 2; only version 1 can be read.\n" + startIsSound);
  EXPECT_EQ(check(sampleStream + trailerOf({39, 24, 23, 2})),
            "error 0x1502003 @39 : The trailer gives its own size as 23 bytes; 24 are the least.\n");
  EXPECT_EQ(check(sampleStream + trailerOf({40})),
            "error 0x1502005 @39 : By the trailer, 64 bytes are needed; the file has 63.\n");
  EXPECT_EQ(check(trailerOf({0xFFFFFFFF, 24, 0xFFFFFFFF})),
            "error 0x1502005 @0 : By the trailer, 8589934590 bytes are needed; the file has 24.\n");
}

TEST(KyCheck, unusableHeaderIsAnErrorWhenThereIsNoTrailer)
{
  EXPECT_EQ(check(headerOf({39, 23}) + sampleStream),
            "error 0x1502003 @0 : The header gives its own size as 23 bytes; 24 are the least.\n");
  EXPECT_EQ(check(headerOf({39, 24, 24, 3}) + sampleStream),
            "error 0x1502004 @0 : The header is of version 3; only version 1 can be read.\n");
}

TEST(KyCheck, cutFileTellsWhereItEndsAndWhatStandsBefore)
{
  EXPECT_EQ(check(sample.substr(0, 24 + 36)),
            "error 0x1502005 @0 : By the header, 63 bytes are needed; the file has 60.\n"
            "error 0x1502000 @57 NAME: The stored tree is damaged: a text is longer than what is left; what was read "
            "last is NAME.\n");
}

TEST(KyCheck, longHeaderAndTrailerAreNotes)
{
  const SectionSizes sizes = {39, 26, 25};
  EXPECT_EQ(check(headerOf(sizes) + "ab" + sampleStream + "c" + trailerOf(sizes)),
            "note 0x1502014 @0 : The header has 26 bytes; 24 are usual.\n"
            "note 0x1502014 @66 : The trailer has 25 bytes; 24 are usual.\n");
}

TEST(KyCheck, sectionsAtBothEndsAreAWarning)
{
  EXPECT_EQ(check(sample + "image" + sample),
            "warning 0x1502008 @0 : The file has a section at its start, too; only the one at its end is read.\n");
}

TEST(KyCheck, oneSectionSeenFromBothEndsIsOne)
{
  // The trailer is damaged: the tree can be saved from the start.
  EXPECT_EQ(check(headerOf({39}) + sampleStream + trailerOf({9999})),
            "error 0x1502005 @63 : By the trailer, 10023 bytes are needed; the file has 87.\n" + startIsSound);
  EXPECT_EQ(check(headerOf({39}) + sampleStream + trailerOf({35})),
            "warning 0x1502006 @4 : The header of the section is missing or damaged.\n"
            "error 0x1502001 @28 : The stored tree is of version 0; only version 1 can be read.\n" +
                startIsSound);
  // The header is: it is read from the end all the same.
  EXPECT_EQ(check(headerOf({39, 24, 24, 9}) + sampleStream + trailerOf({39})),
            "warning 0x1502007 @0 : Header and trailer disagree about the version: 9 and 1.\n");
  EXPECT_EQ(check(headerOf({39, 23}) + sampleStream + trailerOf({39})),
            "warning 0x1502007 @0 : Header and trailer disagree about the header size: 23 and 24.\n");
  EXPECT_EQ(check(headerOf({0, 0, 0}) + sampleStream + trailerOf({39})),
            "warning 0x1502007 @0 : Header and trailer disagree about the header size: 0 and 24.\n"
            "warning 0x1502007 @0 : Header and trailer disagree about the data size: 0 and 39.\n"
            "warning 0x1502007 @0 : Header and trailer disagree about the trailer size: 0 and 24.\n");
}

TEST(KyCheck, ofTwoSectionsTheSoundOneIsNotToBeStripped)
{
  const std::string damagedTrailer = headerOf({39}) + sampleStream + trailerOf({39, 24, 24, 3});
  EXPECT_EQ(check(sample + "image" + damagedTrailer),
            "error 0x1502004 @155 : The trailer is of version 3; only version 1 can be read.\n" + startIsSound);
  const std::string damagedHeader = headerOf({39, 24, 24, 9}) + sampleStream + trailerOf({39});
  EXPECT_EQ(check(damagedHeader + "image" + sample),
            "warning 0x1502018 @0 : The file starts with the header of another section, which is damaged; the one at "
            "the end is read.\n");
}

TEST(KyCheck, everyFlippedBitOfASectionLeavesItOneSection)
{
  const KyRecordingListener listener;
  for (std::size_t bit = 0; bit < 8 * sample.size(); ++bit)
  {
    std::string bytes = sample;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8);
    const std::string lines = check(bytes);
    EXPECT_EQ(lines.find("0x1502008"), std::string::npos) << bit << "\n" << lines;
    EXPECT_EQ(lines.find("0x1502018"), std::string::npos) << bit << "\n" << lines;
  }
}

TEST(KyCheck, damagedHeaderMarkIsFoundWhereTheHeaderBegins)
{
  std::string bytes = sample;
  bytes[2] = 'W';
  EXPECT_EQ(check(bytes), "warning 0x1502006 @0 : The header of the section is missing or damaged.\n");
  EXPECT_EQ(check("image" + bytes), "warning 0x1502006 @5 : The header of the section is missing or damaged.\n");
}

TEST(KyCheck, damageHasItsOffsetInTheFileAndTheAddressInFrontOfIt)
{
  std::string bytes = sample;
  bytes[24 + 29] = '\x07';    // the start of CPU[2]
  EXPECT_EQ(
      check("image" + bytes),
      "error 0x1502000 @58 NAME: The stored tree is damaged: the record is of an unknown kind; what was read last "
      "is NAME.\n");
  bytes = sample;
  bytes[24 + 38] = '\x07';    // the end of the root
  EXPECT_EQ(check(bytes),
            "error 0x1502000 @62 CPU[2]: The stored tree is damaged: the record is of an unknown kind; what was read "
            "last is CPU[2].\n");
  bytes[24 + 1] = '\x07';
  EXPECT_EQ(check(bytes),
            "error 0x1502000 @25 : The stored tree is damaged: the record is of an unknown kind; nothing could be "
            "read.\n");
  bytes[24] = '\x02';
  EXPECT_EQ(check(bytes), "error 0x1502001 @24 : The stored tree is of version 2; only version 1 can be read.\n");
}

TEST(KyCheck, bytesBehindTheTreeAreAWarning)
{
  EXPECT_EQ(check(sectionOfData(sampleStream + "abc")),
            "warning 0x1502009 @63 : 3 bytes stand behind the stored tree, inside the section; nothing reads them.\n");
}

TEST(KyCheck, unknownIDsAreWarnings)
{
  EXPECT_EQ(checkData("01 01 FF FF 7F 01 01 24 FF FE 7F 01 05" + custom + "01 00 01 01 02 02"),
            "warning 0x150200A @25 .: The ID 2097151 is not predefined.\n"
            "warning 0x150200A @31 2097023: The ID 2097023 is not predefined.\n"
            "warning 0x150200A @43 DUMMY: The ID 0 is not predefined.\n");
}

TEST(KyCheck, siblingsOfOneIDAndIndexAreAWarning)
{
  EXPECT_EQ(checkData(root + "01 02 01 00 03 43 50 55 02 01 02 02 03 02 01 02 01 03 02 02"),
            "warning 0x150200B @48 CPU: The item above has a sub-item of this ID and index already.\n");
}

TEST(KyCheck, parameterAndSubItemOfOneNameAreAWarning)
{
  EXPECT_EQ(checkData(root + name + custom + "01 03 01 03 02 01 03 02 03 02 02"),
            "warning 0x150200C @49 NAME: The item has a parameter and a sub-item of this ID.\n");
}

TEST(KyCheck, unitsThatLoseSomethingAreFound)
{
  std::string unit100;
  for (int n = 0; n < 100; ++n)
    unit100 += "6D ";
  EXPECT_EQ(checkData(root + name + "64" + unit100 + "00 00 00 00 00 02"),
            "note 0x150200E @34 NAME: The unit has 100 bytes, the most that are stored; it may have been cut.\n");
  EXPECT_EQ(checkData(root + name + "03 6D 00 56 00 00 00 00 00 02"),
            "warning 0x150200F @34 NAME: The unit holds a zero byte; what stands behind it is not read.\n");
  EXPECT_EQ(checkData(root + name + "65" + unit100 + "6D 00 00 00 00 00 02"),
            "error 0x1502000 @43 .: The stored tree is damaged: a unit is longer than 100 bytes; what was read last is "
            "..\n");
}

TEST(KyCheck, modifiableFlagsThatAreNeverWrittenAreNotes)
{
  EXPECT_EQ(checkData(root + name + "00 01 00 00 00 00 02"),
            "note 0x1502010 @34 NAME: The modifiable flag is stored as 01; only 00 and FF are written.\n");
}

TEST(KyCheck, textsThatAreNotUtf8AreNotes)
{
  EXPECT_EQ(checkData(root + "2A 03 00 02 C3 28 01 FF 01 C0 00 00 00 00 00 02"),
            "note 0x1502012 @34 NAME: The description is not the name of the ID, NAME.\n"
            "note 0x1502011 @38 NAME: The description is not valid UTF-8.\n"
            "note 0x1502011 @41 NAME: The value is not valid UTF-8.\n"
            "note 0x1502011 @43 NAME: The unit is not valid UTF-8.\n");
  EXPECT_EQ(checkData(root + "2A 03 00 04 4E 41 4D 45 03 E2 82 AC 02 C2 B5 00 00 00 00 00 02"), "");
}

TEST(KyCheck, nestingNearTheLimitIsANote)
{
  const auto nested = [](int levels)
  {
    std::string starts = bytesOfHex(root);
    for (int n = 1; n < levels; ++n)
      starts += bytesOfHex(n == 1 ? "01 02 01 00 03 43 50 55" : "01 02 01 03");
    return check(sectionOfData(starts + std::string(static_cast<std::size_t>(levels), '\x02')));
  };
  EXPECT_EQ(nested(4000), "");
  EXPECT_EQ(nested(4001),
            "note 0x1502013 @16034 : The tree has 4001 levels of items; 4096 are the most that can be "
            "stored.\n");
}

TEST(KyCheck, sharedDataThatCannotBeLinkedIsAWarningAtTheItem)
{
  const std::string bytes = sectionOfSample("ROOT/BOARD[2] SHARED_DATA_INDEX:UInt32=7");
  EXPECT_EQ(
      check(bytes),
      "warning 0x1300815 @34 BOARD[2]: Internal error. Kyrel Support information: Item BOARD[2] references shared "
      "data item SHARED_DATA[7], but the shared data item does not exist.\n");
  EXPECT_EQ(check(sectionOfSample("ROOT/SHARED_DATA[2]/CPU; BOARD SHARED_DATA_INDEX:UInt32=2; "
                                  "BOARD/CPU SHARED_DATA_INDEX:UInt32=2")),
            "warning 0x1300814 @104 BOARD/CPU: Internal error. Kyrel Support information: Item BOARD/CPU has a "
            "SHARED_DATA_INDEX parameter although one of its ancestors already does.\n");
  EXPECT_EQ(
      check(sectionOfSample("ROOT/SHARED_DATA; SHARED_DATA[2] SHARED_DATA_INDEX:UInt32=1")),
      "warning 0x1300813 @52 SHARED_DATA[2]: Internal error. Kyrel Support information: Shared data items may not "
      "reference each other. Item SHARED_DATA[2] or one of its ancestors has a SHARED_DATA_INDEX parameter.\n");
}

TEST(KyCheck, sharedDataIndexOfAnotherTypeIsAWarning)
{
  EXPECT_EQ(
      checkData(root + "01 02 01 00 03 43 50 55 24" + sharedIndex + "02" + custom + "02 02"),
      "warning 0x150200D @42 CPU/SHARED_DATA_INDEX: The index of the shared data item is of type UInt8; only "
      "UInt32 is read.\n"
      "warning 0x1300815 @34 CPU: Internal error. Kyrel Support information: Item CPU references shared data item "
      "SHARED_DATA[0], but the shared data item does not exist.\n");
}

TEST(KyCheck, checksInSeveralThreadsAndTheWarningsOfOthersStayApart)
{
  static constexpr unsigned int rounds = 100;
  static constexpr unsigned int items = 500;
  KyRecordingListener listener;
  inThreads(3,
            [](unsigned int thread)
            {
              KyTestPool pool;
              KyCInventoryItem tree(pool, KyNInventoryIDs::ROOT, "ROOT");
              const KyCInventoryAddress& id = thread == 0 ? KyNInventoryIDs::CPU : KyNInventoryIDs::BOARD;
              for (unsigned int n = 1; n <= items; ++n)
                tree.createParameter(pool, id[n + thread] / KyNInventoryIDs::SHARED_DATA_INDEX, 7u, "", false, 0);
              const std::string bytes = sectionOf(pool, tree);
              for (unsigned int n = 0; n < rounds; ++n)
              {
                if (thread == 0)
                {
                  tree.linkSharedData(pool, nullptr);
                  continue;
                }
                const CheckResult result = checkBytes(bytes, "f", {});
                ASSERT_EQ(result.warnings, items);
                ASSERT_EQ(result.findings.at(0).address, "BOARD[" + std::to_string(thread + 1) + "]");
              }
            });
  EXPECT_NO_REPORTS(listener);
  const std::vector<KyReport> warnings = listener.takeWarnings();
  EXPECT_EQ(warnings.size(), rounds * items);
  for (const KyReport& warning : warnings)
    ASSERT_NE(warning.text.find("Item CPU"), std::string::npos) << warning;
}

TEST(KyCheck, warningsOfOthersAndTheListenerStayWhatTheyWere)
{
  KyRecordingListener listener;
  check(sectionOfSample("ROOT/BOARD[2] SHARED_DATA_INDEX:UInt32=7"));
  KyCErrorManager* const manager = KyCErrorManager::getSingleton();
  KyIErrorListener* const current = manager->setListener(nullptr);
  EXPECT_EQ(current, &listener);
  manager->setListener(current);
}

TEST(KyCheck, findingsOfOneCodeAreListedUpToALimitAndCounted)
{
  std::string stream = bytesOfHex(root);
  for (int n = 0; n < 30; ++n)
    stream += bytesOfHex("01 00 01 01 02");
  const std::string bytes = sectionOfData(stream + '\x02');
  const CheckResult some = checkBytes(bytes, "f", {});
  EXPECT_EQ(some.warnings, 59u);    // 30 IDs, 29 siblings of one ID
  ASSERT_EQ(some.findings.size(), 40u);
  EXPECT_EQ(some.findings[38].more, 10u);
  EXPECT_EQ(some.findings[39].more, 9u);
  EXPECT_EQ(some.findings[37].more, 0u);
  EXPECT_EQ(checkBytes(bytes, "f", {0, 0}).findings.size(), 59u);
}

TEST(KyCheck, missingFileAndFolderAreFindings)
{
  KyTemporaryFolder folder;
  const std::string missing = folder.path("missing");
  EXPECT_EQ(linesOf(checkFile(missing, {})),
            "error 0x1500000 @- : Cannot read " + missing + ": No such file or directory.\n");
  EXPECT_EQ(checkFile(missing, {}).verdict, Verdict::UNREADABLE);
  EXPECT_EQ(checkFile(folder.path(), {}).verdict, Verdict::UNREADABLE);
  EXPECT_STREQ(verdictName(Verdict::UNREADABLE), "unreadable");
  EXPECT_EQ(linesOf(checkFile(folder.path(), {})), "error 0x1500001 @- : " + folder.path() + " is a folder.\n");
}

TEST(KyCheck, filesOfMoreThan4GiBAreRefused)
{
  KyTemporaryFolder folder;
  const std::string large = folder.write("large", "");
  std::error_code error;
  fs::resize_file(large, std::uintmax_t{1} << 32, error);
  if (error) GTEST_SKIP() << "no sparse files here: " << error.message();
  EXPECT_EQ(
      linesOf(checkFile(large, {})),
      "error 0x1502800 @- : " + large + " has more than 4294967295 bytes, the most that sections can be read from.\n");
}

TEST(KyCheck, jsonHasEveryFindingWithItsPlace)
{
  EXPECT_EQ(checkAsJson({checkBytes(sample.substr(24), "f\xFF", {})}),
            "[\n"
            "  {\n"
            "    \"file\": {\n"
            "      \"bytes\": \"Zv8=\"\n"
            "    },\n"
            "    \"verdict\": \"findings\",\n"
            "    \"errors\": 0,\n"
            "    \"warnings\": 1,\n"
            "    \"notes\": 0,\n"
            "    \"findings\": [\n"
            "      {\n"
            "        \"severity\": \"warning\",\n"
            "        \"code\": 22028294,\n"
            "        \"codeText\": \"0x1502006\",\n"
            "        \"offset\": 0,\n"
            "        \"text\": \"The header of the section is missing or damaged.\",\n"
            "        \"remedy\": \"Save the section: kyinventory extract FILE -o NEW. Compare the tree with "
            "what it should hold, and use NEW.\"\n"
            "      }\n"
            "    ]\n"
            "  }\n"
            "]\n");
  EXPECT_EQ(checkAsJson({}), "[]\n");
}

// --- A second opinion on the library's reader ---------------------------------------------------------------------------

namespace
{
KyItemPtr extract(KyCErrorListPool& pool, const std::string& bytes)
{
  KyCInventoryItem* read = nullptr;
  KyCInventoryData::extractInventoryTreeFromMem(pool, reinterpret_cast<const unsigned char*>(bytes.data()),
                                                static_cast<unsigned int>(bytes.size()), read);
  return KyItemPtr(read);
}

// The offset and the reason of the library's report about a damaged stream, as it words them.
std::string damageReport(const CheckResult& result, std::uint64_t streamOffset)
{
  for (const Finding& finding : result.findings)
  {
    if (finding.code != 0x1502000) continue;
    const std::string reason = finding.text.substr(28, finding.text.find(';') - 28);
    return "The stream is damaged at byte " + std::to_string(finding.offset - streamOffset) + ": " + reason + ".";
  }
  return {};
}

// Both readers say the same, and every byte is told about once. True when the bytes are damaged.
bool expectAgreement(const std::string& bytes)
{
  KyCErrorListPool pool;
  const KyItemPtr tree = extract(pool, bytes);
  const CheckResult result = checkBytes(bytes, "f", {});
  EXPECT_EQ(result.verdict == Verdict::DAMAGED, tree == nullptr || pool.getErrorCount() != 0) << linesOf(result);
  for (const Finding& finding : result.findings)
    EXPECT_NE(finding.code, 0x1502016u) << finding.text;

  KyCErrorListPool inspectionPool;
  Inspection inspection;
  if (!inspectBytes(inspectionPool, bytes, "f", SectionEnd::READ, inspection))
    return result.verdict == Verdict::DAMAGED;
  const bool isEmpty = linesOf(result).find("0x1502002") != std::string::npos;
  EXPECT_EQ(inspection.damage.empty(), tree != nullptr || isEmpty) << linesOf(result);
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
  {
    if (pool.getEntry(n).code != 0x1101807) continue;
    EXPECT_EQ(pool.getEntry(n).text, damageReport(result, inspection.dataBegin));
  }

  std::size_t next = static_cast<std::size_t>(inspection.begin);
  bool isEachByteOnce = true;
  annotateBytes(inspectionPool, bytes, "f", SectionEnd::READ,
                [&](const ByteNote& note)
                {
                  isEachByteOnce = isEachByteOnce && note.offset == next && !note.bytes.empty() &&
                                   note.bytes.data() == bytes.data() + next && !note.meaning.empty();
                  next += note.bytes.size();
                  return true;
                });
  EXPECT_TRUE(isEachByteOnce);
  EXPECT_EQ(next, inspection.end);
  return result.verdict == Verdict::DAMAGED;
}

std::vector<std::string> sections()
{
  std::vector<std::string> all;
  for (const char* folder : {"/tests/golden/sections", "/tests/fuzz/corpus/fuzzSection"})
    for (const auto& entry : fs::directory_iterator(KY_SOURCE_DIR + std::string(folder)))
      if (entry.path().extension() == ".kyinv" || std::string(folder).find("fuzz") != std::string::npos)
        all.push_back(contentOf(entry.path().string()));
  for (unsigned int seed = 1; seed <= 16; ++seed)
  {
    KyTestPool pool;
    const KyItemPtr tree = KyRandomTree(seed).make(pool, 2 * seed);
    const KyBytes bytes = storedSection(tree.get());
    if (bytes.size() < 5000) all.emplace_back(bytes.begin(), bytes.end());    // each is read hundreds of times
  }
  return all;
}

std::size_t strideOf(const std::string& bytes) { return 1 + bytes.size() / 60; }
}    // namespace

TEST(KyCheckAgreement, soundSectionsAreTakenByBothReaders)
{
  for (const std::string& bytes : sections())
    expectAgreement(bytes);
}

TEST(KyCheckAgreement, changedBytesAreDamageForBothReadersOrForNone)
{
  const KyRecordingListener listener;
  unsigned int damaged = 0;
  for (std::string bytes : sections())
  {
    for (std::size_t at = 0; at < bytes.size(); at += strideOf(bytes))
    {
      const char before = bytes[at];
      for (const int mask : {0x01, 0x80, 0xFF})
      {
        bytes[at] = static_cast<char>(before ^ mask);
        damaged += expectAgreement(bytes) ? 1 : 0;
      }
      bytes[at] = before;
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(damaged, 500u);
}

TEST(KyCheckAgreement, cutFilesAreDamageForBothReaders)
{
  const KyRecordingListener listener;
  for (const std::string& bytes : sections())
  {
    for (std::size_t size = 0; size < bytes.size(); size += strideOf(bytes))
    {
      expectAgreement(bytes.substr(0, size));    // the end is missing
      expectAgreement(bytes.substr(size));       // the start is missing
      if (HasFailure()) return;
    }
  }
}

TEST(KyCheckAgreement, shorterDataUnderWholeRecordsIsDamageForBothReadersOrForNone)
{
  const KyRecordingListener listener;
  for (const std::string& bytes : sections())
  {
    if (bytes.size() < 48) continue;
    const std::string data = bytes.substr(24, bytes.size() - 48);
    for (std::size_t size = 0; size < data.size(); size += strideOf(bytes))
    {
      expectAgreement(sectionOfData(data.substr(0, size)));
      expectAgreement(sectionOfData(data.substr(0, size) + data.substr(size + 1)));
      if (HasFailure()) return;
    }
  }
}
