#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyFiles.h"

namespace
{
struct KyRow
{
  unsigned int id;
  const char* name;
  const KyCInventoryAddress* object;
};

const std::vector<KyRow>& rows()
{
  static const std::vector<KyRow> table = {
#define KY_PREDEFINED_ID(id, name) {id, #name, &KyNInventoryIDs::name},
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID
  };
  return table;
}

// The list that everything is generated from: line n is the name of ID n-1.
const std::vector<std::string>& listedNames()
{
  static const std::vector<std::string> names = []
  {
    std::vector<std::string> lines;
    std::ifstream file(KY_SOURCE_DIR "/src/ids/predefined-ids.txt");
    for (std::string line; std::getline(file, line);)
      lines.push_back(line);
    return lines;
  }();
  return names;
}

std::string outputOf(const std::string& command)
{
  FILE* const pipe = popen(command.c_str(), "r");
  std::string output;
  char part[4096];
  for (std::size_t size; (size = std::fread(part, 1, sizeof part, pipe)) > 0;)
    output.append(part, size);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return output;
}

// The object as a program finds it that knows nothing but the name.
const KyCInventoryAddress* exportedObject(const std::string& name)
{
  const std::string symbol = "_ZN15KyNInventoryIDs" + std::to_string(name.size()) + name + "E";
  return static_cast<const KyCInventoryAddress*>(dlsym(RTLD_DEFAULT, symbol.c_str()));
}

// A new ID changes these two and nothing else here.
constexpr unsigned int COUNT = 1064;
const char* const LAST = "TOPOLOGY";

const char* const GENERATOR = KY_SOURCE_DIR "/scripts/generate-ids";
}    // namespace

TEST(PredefinedIds, mapHoldsTheirNamesAndNoMore)
{
  EXPECT_EQ(KyNInventoryIDs::Map.getCount(), COUNT);
  EXPECT_STREQ(KyNInventoryIDs::Map.get(0), "DUMMY");
  EXPECT_STREQ(KyNInventoryIDs::Map.get(1), "ROOT");
  EXPECT_STREQ(KyNInventoryIDs::Map.get(COUNT - 1), LAST);
  EXPECT_EQ(KyNInventoryIDs::Map.get(COUNT), nullptr);
}

TEST(PredefinedIds, rootIsOneElementOfIdOneAndIndexOne)
{
  EXPECT_EQ(KyNInventoryIDs::ROOT.getLength(), 1u);
  EXPECT_EQ(KyNInventoryIDs::ROOT.getCategory(), 1u);
  EXPECT_EQ(KyNInventoryIDs::ROOT.getIndex(), 1u);
}

TEST(PredefinedIds, thisNodeIsEmpty) { EXPECT_TRUE(KyNInventoryIDs::THIS_NODE.isEmpty()); }

// Picked by hand from all parts of the table; the numbers are part of the stored format.
TEST(PredefinedIds, numbersAreTheKnownOnes)
{
  EXPECT_EQ(KyNInventoryIDs::DUMMY.getCategory(), 0u);
  EXPECT_EQ(KyNInventoryIDs::ANGLE_WIN_MEMORY_WORD_WIDTH.getCategory(), 350u);
  EXPECT_EQ(KyNInventoryIDs::ACTIVE_FPGA.getCategory(), 399u);
  EXPECT_EQ(KyNInventoryIDs::CRANKCAM_OUT.getCategory(), 449u);
  EXPECT_EQ(KyNInventoryIDs::SENT_OUT.getCategory(), 499u);
  EXPECT_EQ(KyNInventoryIDs::SHARED_DATA.getCategory(), 566u);
  EXPECT_EQ(KyNInventoryIDs::SHARED_DATA_INDEX.getCategory(), 567u);
  EXPECT_EQ(KyNInventoryIDs::BOARD.getCategory(), 585u);
  EXPECT_EQ(KyNInventoryIDs::BACKPLANE.getCategory(), 599u);
  EXPECT_EQ(KyNInventoryIDs::IOMODULE.getCategory(), 649u);
  EXPECT_EQ(KyNInventoryIDs::UPDATE_ELEMENT.getCategory(), 692u);
  EXPECT_EQ(KyNInventoryIDs::MAX_HW_COMPATIBILITY_ID.getCategory(), 699u);
  EXPECT_EQ(KyNInventoryIDs::HAS_HAL_IPCTRL.getCategory(), 749u);
  EXPECT_EQ(KyNInventoryIDs::SYSMESHEXTENSION.getCategory(), 799u);
  EXPECT_EQ(KyNInventoryIDs::BAUD_RATE.getCategory(), 849u);
  EXPECT_EQ(KyNInventoryIDs::SEQUENCE_LENGTH.getCategory(), 899u);
  EXPECT_EQ(KyNInventoryIDs::MGT.getCategory(), 949u);
  EXPECT_EQ(KyNInventoryIDs::ACCELERATION_IN.getCategory(), 999u);
  EXPECT_EQ(KyNInventoryIDs::___NOT_USED___01.getCategory(), 1007u);
  EXPECT_EQ(KyNInventoryIDs::IMPLEMENTATION_TYPE.getCategory(), 1049u);
  EXPECT_EQ(KyNInventoryIDs::OPEN.getCategory(), 1061u);
  EXPECT_EQ(KyNInventoryIDs::CLOSE.getCategory(), 1062u);
  EXPECT_EQ(KyNInventoryIDs::TOPOLOGY.getCategory(), 1063u);
}

TEST(PredefinedIds, listMapAndObjectsAgreeInEveryRow)
{
  ASSERT_EQ(listedNames().size(), COUNT);
  ASSERT_EQ(rows().size(), COUNT);
  for (unsigned int id = 0; id < COUNT; ++id)
  {
    const KyRow& row = rows()[id];
    ASSERT_EQ(row.id, id);
    ASSERT_STREQ(row.name, listedNames()[id].c_str());
    ASSERT_STREQ(KyNInventoryIDs::Map.get(id), row.name);
    ASSERT_EQ(row.object->getLength(), 1u) << row.name;
    ASSERT_EQ(row.object->getCategory(), id) << row.name;
    ASSERT_EQ(row.object->getIndex(), 1u) << row.name;
  }
}

TEST(PredefinedIds, everyObjectIsExportedUnderItsName)
{
  for (const KyRow& row : rows())
  {
    const KyCInventoryAddress* const object = exportedObject(row.name);
    ASSERT_NE(object, nullptr) << row.name;
    ASSERT_EQ(object, row.object) << row.name;
  }
  EXPECT_EQ(exportedObject("THIS_NODE"), &KyNInventoryIDs::THIS_NODE);
}

TEST(PredefinedIds, everyObjectPrintsAsItsNameAndReadsBackExceptIdZero)
{
  for (const KyRow& row : rows())
  {
    ASSERT_STREQ(row.object->toString().c_str(), row.name);
    ASSERT_STREQ(row.object->getCategoryNameCStr(), row.name);
    KyCInventoryAddress read;
    read.readFromString(row.name);
    if (row.id == 0)
      ASSERT_TRUE(read.isEmpty());
    else
      ASSERT_EQ(read, *row.object) << row.name;
  }
}

TEST(PredefinedIds, noTwoRowsShareAName)
{
  const std::set<std::string> names(listedNames().begin(), listedNames().end());
  EXPECT_EQ(names.size(), COUNT);
}

TEST(PredefinedIds, generatingTheTableAgainGivesTheCommittedOne)
{
  EXPECT_EQ(outputOf(std::string(GENERATOR) + " --print"),
            contentOf(KY_SOURCE_DIR "/include/inventory/KyPredefinedIDs.inc"));
  EXPECT_EQ(outputOf(std::string(GENERATOR) + " --check"), "");
}

TEST(PredefinedIds, generatorPrintsItsUsageAndRefusesUnknownOptions)
{
  EXPECT_EQ(outputOf(std::string(GENERATOR) + " --help").rfind("usage: scripts/generate-ids", 0), 0u);
  EXPECT_EQ(outputOf(std::string(GENERATOR) + " 2>/dev/null; echo $?"), "2\n");
  EXPECT_EQ(outputOf(std::string(GENERATOR) + " --no-such-option 2>/dev/null; echo $?"), "2\n");
}
