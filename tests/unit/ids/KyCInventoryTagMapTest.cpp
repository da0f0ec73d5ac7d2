#include "inventory/KyCInventoryTagMap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "errorhandling/KyErrorHandling.h"
#include "support/KyRecordingListener.h"

namespace
{
// The fields of a map in their order.
struct KyMapFields
{
  const char** names;
  unsigned int capacity;
  unsigned int count;
};
static_assert(sizeof(KyMapFields) == sizeof(KyCInventoryTagMap), "names, capacity, count");
static_assert(!std::is_copy_constructible_v<KyCInventoryTagMap>, "a map owns its list");

KyMapFields fieldsOf(const KyCInventoryTagMap& map)
{
  KyMapFields fields;
  std::memcpy(&fields, &map, sizeof fields);
  return fields;
}

void setFields(KyCInventoryTagMap& map, const KyMapFields& fields)
{
  std::memcpy(reinterpret_cast<char*>(&map), &fields, sizeof fields);
}

const char* const MESSAGE_56 =
    "Internal error. Kyrel Support information: Cannot allocate memory during initialization of inventory ID SEVEN.";
const char* const MESSAGE_57 =
    "Internal error. Kyrel Support information: Invalid category value for inventory ID FIVE.";
const KyReport OUT_OF_MEMORY{0x1000000, "operator new[]", "Out of memory."};

class KyCInventoryTagMapTest : public ::testing::Test
{
protected:
  ~KyCInventoryTagMapTest() override { KyNPoolAllocator::reset(); }

  void addNames(unsigned int from, unsigned int to)
  {
    for (unsigned int n = from; n < to; ++n)
      ASSERT_EQ(m_map.add(n, nameOf(n)), n);
  }

  // Names of their own, so that a mix-up shows.
  const char* nameOf(unsigned int n)
  {
    static const std::vector<std::string> names = []
    {
      std::vector<std::string> made;
      for (unsigned int number = 0; number < 3000; ++number)
        made.push_back("N" + std::to_string(number));
      return made;
    }();
    return names.at(n).c_str();
  }

  KyRecordingListener m_listener;
  KyCInventoryTagMap m_map;
};
}    // namespace

TEST_F(KyCInventoryTagMapTest, freshMapIsEmpty)
{
  EXPECT_EQ(m_map.getCount(), 0u);
  EXPECT_EQ(m_map.get(0), nullptr);
  EXPECT_EQ(fieldsOf(m_map).names, nullptr);
  EXPECT_EQ(fieldsOf(m_map).capacity, 0u);
  EXPECT_EQ(fieldsOf(m_map).count, 0u);
}

TEST_F(KyCInventoryTagMapTest, firstAddMakesRoomFor1024Names)
{
  addNames(0, 1);
  EXPECT_EQ(fieldsOf(m_map).capacity, 1024u);
  EXPECT_EQ(fieldsOf(m_map).count, 1u);
}

TEST_F(KyCInventoryTagMapTest, add1025thNameDoublesTheListAndKeepsTheNames)
{
  addNames(0, 1024);
  const char** const before = fieldsOf(m_map).names;
  EXPECT_EQ(fieldsOf(m_map).capacity, 1024u);
  EXPECT_EQ(fieldsOf(m_map).names[1023], before[1023]);
  addNames(1024, 1025);
  EXPECT_EQ(fieldsOf(m_map).capacity, 2048u);
  EXPECT_EQ(m_map.getCount(), 1025u);
  for (unsigned int n = 0; n < 1025; ++n)
    ASSERT_EQ(m_map.get(n), nameOf(n)) << "the pointer itself, not a copy";
  addNames(1025, 2049);
  EXPECT_EQ(fieldsOf(m_map).capacity, 4096u);
  EXPECT_STREQ(m_map.get(2048), "N2048");
}

TEST_F(KyCInventoryTagMapTest, getBeyondTheEndGivesNull)
{
  addNames(0, 3);
  EXPECT_STREQ(m_map.get(2), "N2");
  EXPECT_EQ(m_map.get(3), nullptr);
  EXPECT_EQ(m_map.get(1024), nullptr);
  EXPECT_EQ(m_map.get(0xFFFFFFFF), nullptr);
}

TEST_F(KyCInventoryTagMapTest, addWithAWrongIndexReportsAndStoresTheNameAtTheNextPosition)
{
  addNames(0, 3);
  EXPECT_EQ(m_map.add(5, "FIVE"), 5u);
  EXPECT_REPORTS(m_listener, {0x1301801, "add", MESSAGE_57});
  EXPECT_STREQ(m_map.get(3), "FIVE");
  EXPECT_EQ(m_map.get(5), nullptr);
  EXPECT_EQ(m_map.getCount(), 4u);
}

TEST_F(KyCInventoryTagMapTest, addWithAnIndexAlreadyTakenReportsToo)
{
  addNames(0, 3);
  EXPECT_EQ(m_map.add(0, "FIVE"), 0u);
  EXPECT_REPORTS(m_listener, {0x1301801, "add", MESSAGE_57});
  EXPECT_STREQ(m_map.get(0), "N0");
  EXPECT_STREQ(m_map.get(3), "FIVE");
}

TEST_F(KyCInventoryTagMapTest, addWithoutMemoryReportsAndStoresNothing)
{
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(m_map.add(0, "SEVEN"), 0u);
  EXPECT_REPORTS(m_listener, OUT_OF_MEMORY, {0x1301800, "add", MESSAGE_56});
  EXPECT_EQ(m_map.getCount(), 0u);
  EXPECT_EQ(m_map.get(0), nullptr);
  addNames(0, 2);
  EXPECT_STREQ(m_map.get(0), "N0");
}

TEST_F(KyCInventoryTagMapTest, addWithoutMemoryReportsNoWrongIndexBesides)
{
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(m_map.add(99, "SEVEN"), 99u);
  EXPECT_REPORTS(m_listener, OUT_OF_MEMORY, {0x1301800, "add", MESSAGE_56});
}

TEST_F(KyCInventoryTagMapTest, add1025thNameWithoutMemoryKeepsTheFirst1024)
{
  addNames(0, 1024);
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(m_map.add(1024, "SEVEN"), 1024u);
  EXPECT_REPORTS(m_listener, OUT_OF_MEMORY, {0x1301800, "add", MESSAGE_56});
  EXPECT_EQ(m_map.getCount(), 1024u);
  EXPECT_EQ(fieldsOf(m_map).capacity, 1024u);
  for (unsigned int n = 0; n < 1024; ++n)
    ASSERT_EQ(m_map.get(n), nameOf(n));
  addNames(1024, 1025);
  EXPECT_STREQ(m_map.get(1024), "N1024");
}

TEST_F(KyCInventoryTagMapTest, addSendsTheMasterListWhetherOrNotAnythingIsReported)
{
  KyCErrorListPool& master = KyCErrorManager::getSingleton()->getMasterErrorList();
  master.setError(0x1300808, 1, "somebody", nullptr);
  addNames(0, 1);
  EXPECT_REPORTS(m_listener, {0x1300808, "somebody", ""});
  EXPECT_EQ(master.getEntryCount(), 0u);
}

TEST_F(KyCInventoryTagMapTest, addBeyondTheLargestListThrowsWhatNewThrows)
{
  const char* names[1] = {"N0"};
  setFields(m_map, {names, 0x10000000, 0x10000000});    // as full as a list can be
  EXPECT_THROW(m_map.add(0x10000000, "MORE"), std::bad_array_new_length);
  EXPECT_EQ(m_map.getCount(), 0x10000000u);
  EXPECT_EQ(fieldsOf(m_map).names, names);
  setFields(m_map, {nullptr, 0, 0});
}
