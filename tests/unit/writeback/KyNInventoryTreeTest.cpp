// The standard parameters of an update element.

#include "inventory/KyNInventoryTree.h"

#include <string>
#include <vector>

#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
// What is reported of a parameter that the item has already.
std::vector<KyReport> refusal(const std::string& id, const std::string& name)
{
  return {{0x1101002, "addParameter",
           "Parameter " + id + " cannot be added to composite (692, 3), which has one of that id."},
          {0x1300812, "addParameter", "Cannot add parameter with ID " + name + " at UPDATE_ELEMENT[3]."},
          {0x130080B, "createParameter", "Cannot create parameter " + name + "."}};
}

class KyNInventoryTreeUpdateElement : public testing::Test
{
protected:
  void add(bool valid, bool active, unsigned int hardware, unsigned int software)
  {
    KyNInventoryTree::addUpdateElementParameters(m_element, m_pool, 3, 0xFFFFFFFFu, "FIRMWARE", 0, "ANALOG", valid,
                                                 active, hardware, software);
  }

  // The parameters in their order, such as "ID:UInt32".
  std::vector<std::string> parameters() const
  {
    std::vector<std::string> result;
    for (unsigned int n = 0; m_element->getParameterByOrdinalNumber(n) != nullptr; ++n)
    {
      const KyCInventoryParameter& parameter = *m_element->getParameterByOrdinalNumber(n);
      result.push_back(std::string(parameter.getIDString()) + ":" + parameter.getTypeAsCString());
    }
    return result;
  }

  KyTestPool m_pool;
  KySampleTree m_sample{"ROOT/UPDATE_ELEMENT[3]"};
  KyCInventoryItem* m_element = m_sample.item("UPDATE_ELEMENT[3]");
};

const std::vector<std::string> s_always = {"ID:UInt32",         "CONFIGURATION:UInt32", "NAME:String", "TYPE_ID:UInt32",
                                           "BOARD_TYPE:String", "VALID:UInt8",          "ACTIVE:UInt8"};
std::vector<std::string> always(std::initializer_list<std::string> more)
{
  std::vector<std::string> result = s_always;
  result.insert(result.end(), more);
  return result;
}
}    // namespace

TEST_F(KyNInventoryTreeUpdateElement, hasSevenParametersInOrderWithoutCompatibilityIDs)
{
  add(true, true, 0, 0);
  EXPECT_EQ(parameters(), s_always);
}

TEST_F(KyNInventoryTreeUpdateElement, hasNineParametersInOrderWithBothCompatibilityIDs)
{
  add(true, true, 5, 6);
  EXPECT_EQ(parameters(), always({"HW_COMPATIBILITY_ID:UInt32", "SW_COMPATIBILITY_ID:UInt32"}));
  EXPECT_EQ(m_element->getValue<unsigned int>(m_pool, HW_COMPATIBILITY_ID), 5u);
  EXPECT_EQ(m_element->getValue<unsigned int>(m_pool, SW_COMPATIBILITY_ID), 6u);
}

TEST_F(KyNInventoryTreeUpdateElement, hasTheSoftwareCompatibilityIDForItsEighthWhenThatAloneIsNotZero)
{
  add(true, true, 0, 0xFFFFFFFFu);
  EXPECT_EQ(parameters(), always({"SW_COMPATIBILITY_ID:UInt32"}));
  EXPECT_EQ(m_element->getValue<unsigned int>(m_pool, SW_COMPATIBILITY_ID), 0xFFFFFFFFu);
}

TEST_F(KyNInventoryTreeUpdateElement, hasTheHardwareCompatibilityIDForItsEighthWhenThatAloneIsNotZero)
{
  add(true, true, 1, 0);
  EXPECT_EQ(parameters(), always({"HW_COMPATIBILITY_ID:UInt32"}));
}

TEST_F(KyNInventoryTreeUpdateElement, hasTheValuesThatWereGiven)
{
  add(true, false, 0, 0);
  EXPECT_EQ(m_element->getValue<unsigned int>(m_pool, ID), 3u);
  EXPECT_EQ(m_element->getValue<unsigned int>(m_pool, CONFIGURATION), 0xFFFFFFFFu);
  EXPECT_STREQ(m_element->getValue<const char*>(m_pool, NAME), "FIRMWARE");
  EXPECT_EQ(m_element->getValue<unsigned int>(m_pool, TYPE_ID), 0u) << "0 leaves out compatibility IDs alone";
  EXPECT_STREQ(m_element->getValue<const char*>(m_pool, BOARD_TYPE), "ANALOG");
  EXPECT_EQ(m_element->getValue<unsigned char>(m_pool, VALID), 1u);
  EXPECT_EQ(m_element->getValue<unsigned char>(m_pool, ACTIVE), 0u);
}

TEST_F(KyNInventoryTreeUpdateElement, hasAnUnsignedCharOfZeroForNotValid)
{
  add(false, true, 0, 0);
  EXPECT_EQ(m_element->getParameter(VALID)->getType(), 0x121u);
  EXPECT_EQ(m_element->getValue<unsigned char>(m_pool, VALID), 0u);
  EXPECT_EQ(m_element->getValue<unsigned char>(m_pool, ACTIVE), 1u);
}

TEST_F(KyNInventoryTreeUpdateElement, hasParametersWithoutUnitNotModifiableAndOfRelevanceTwo)
{
  add(true, true, 1, 1);
  for (unsigned int n = 0; n < 9; ++n)
  {
    const KyCInventoryParameter* const parameter = m_element->getParameterByOrdinalNumber(n);
    ASSERT_NE(parameter, nullptr) << n;
    EXPECT_STREQ(parameter->getUnit(), "") << n;
    EXPECT_FALSE(parameter->isModifiable()) << n;
    EXPECT_EQ(parameter->getRelevance(), 2u) << n;
    EXPECT_STREQ(parameter->getDescription(), parameter->getIDString()) << n;
    EXPECT_EQ(parameter->getWriteMethod(), nullptr) << n;
    EXPECT_EQ(parameter->getUpdateMethod(), nullptr) << n;
  }
}

TEST_F(KyNInventoryTreeUpdateElement, aSecondTimeReportsEachParameterAndChangesNothing)
{
  add(true, true, 5, 6);
  KyNInventoryTree::addUpdateElementParameters(m_element, m_pool, 4, 4, "other", 4, "other", false, false, 4, 4);
  std::vector<KyReport> expected;
  for (const auto& [id, name] :
       std::initializer_list<std::pair<const char*, const char*>>{{"539", "ID"},
                                                                  {"8", "CONFIGURATION"},
                                                                  {"3", "NAME"},
                                                                  {"693", "TYPE_ID"},
                                                                  {"149", "BOARD_TYPE"},
                                                                  {"697", "VALID"},
                                                                  {"696", "ACTIVE"},
                                                                  {"694", "HW_COMPATIBILITY_ID"},
                                                                  {"695", "SW_COMPATIBILITY_ID"}})
  {
    const std::vector<KyReport> chain = refusal(id, name);
    expected.insert(expected.end(), chain.begin(), chain.end());
  }
  EXPECT_TRUE(sameReports(m_pool.takeReports(), expected));

  KySampleTree once("ROOT/UPDATE_ELEMENT[3]");
  KyNInventoryTree::addUpdateElementParameters(once.item("UPDATE_ELEMENT[3]"), m_pool, 3, 0xFFFFFFFFu, "FIRMWARE", 0,
                                               "ANALOG", true, true, 5, 6);
  EXPECT_EQ(KyTreeDifference(m_sample.root(), once.root()), "");
}

TEST_F(KyNInventoryTreeUpdateElement, aSecondTimeStillAddsWhatTheFirstLeftOut)
{
  add(true, true, 0, 0);
  add(true, true, 0, 7);
  EXPECT_EQ(m_pool.takeReports().size(), 21u) << "three for each of the seven";
  EXPECT_EQ(parameters(), always({"SW_COMPATIBILITY_ID:UInt32"}));
}

TEST_F(KyNInventoryTreeUpdateElement, goesOnBehindAParameterWhoseIDASubItemHas)
{
  m_element->addPath(m_pool, NAME);
  add(true, true, 0, 0);
  EXPECT_REPORTS(m_pool,
                 {0x130081A, "addParameter",
                  "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID NAME at "
                  "UPDATE_ELEMENT[3]. The ID already exists."},
                 {0x130080B, "createParameter", "Cannot create parameter NAME."});
  EXPECT_EQ(parameters(), (std::vector<std::string>{"ID:UInt32", "CONFIGURATION:UInt32", "TYPE_ID:UInt32",
                                                    "BOARD_TYPE:String", "VALID:UInt8", "ACTIVE:UInt8"}));
}

TEST_F(KyNInventoryTreeUpdateElement, goesOnBehindAParameterWithoutMemory)
{
  KyNPoolAllocator::failAfter(0);
  add(true, true, 0, 0);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(m_pool, {0x1000000, "operator new", "Out of memory."},
                 {0x130080B, "createParameter", "Cannot create parameter ID."});
  EXPECT_EQ(parameters(), std::vector<std::string>(s_always.begin() + 1, s_always.end()));
}

TEST_F(KyNInventoryTreeUpdateElement, mayBeAnyItem)
{
  KySampleTree sample("BOARD[2] SIZE=1");
  KyNInventoryTree::addUpdateElementParameters(&sample.root(), m_pool, 1, 2, "", 3, "", false, false, 0, 0);
  EXPECT_EQ(sample.root().getParameterByOrdinalNumber(0), sample.parameter("SIZE")) << "behind what is there already";
  EXPECT_EQ(sample.root().getParameterByOrdinalNumber(7)->getID(), ACTIVE);
  EXPECT_STREQ(sample.root().getValue<const char*>(m_pool, NAME), "");
}
