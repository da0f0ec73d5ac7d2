// What the library hands to the error lists and the manager: argument formats, and its own temporary list. Linked with
// --wrap against the library's objects, so that its calls come here first.
#include <string>
#include <vector>

#include "base/KyMessageCatalogue.h"
#include "inventory/KyCInventoryData.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyRecordingListener.h"
#include "support/KySampleTree.h"

using namespace KyNInventoryIDs;

namespace
{
struct TReportCall
{
  unsigned int code;
  bool hasFormat;
};
std::vector<TReportCall> s_reports;

struct TCreateCall
{
  std::vector<unsigned int> arguments;
  KyCErrorListPool* result;
};
std::vector<TCreateCall> s_created;

struct TDeleteCall
{
  KyCErrorListPool* list;
  unsigned int errors;
};
std::vector<TDeleteCall> s_deleted;
}    // namespace

// setError, createErrorList and deleteErrorList, as the compiler names them. A report goes on without its arguments.
extern "C"
{
  void __real__ZN12KyCErrorList8setErrorEjjPKcS1_z(KyCErrorList* list, unsigned int code, unsigned int line,
                                                   const char* function, const char* format, ...);
  void __wrap__ZN12KyCErrorList8setErrorEjjPKcS1_z(KyCErrorList* list, unsigned int code, unsigned int line,
                                                   const char* function, const char* format, ...);
  KyCErrorListPool* __real__ZN15KyCErrorManager15createErrorListEjjjjj(KyCErrorManager* manager, unsigned int a,
                                                                       unsigned int b, unsigned int c, unsigned int d,
                                                                       unsigned int e);
  KyCErrorListPool* __wrap__ZN15KyCErrorManager15createErrorListEjjjjj(KyCErrorManager* manager, unsigned int a,
                                                                       unsigned int b, unsigned int c, unsigned int d,
                                                                       unsigned int e);
  void __real__ZN15KyCErrorManager15deleteErrorListER16KyCErrorListPool(KyCErrorManager* manager,
                                                                        KyCErrorListPool* list);
  void __wrap__ZN15KyCErrorManager15deleteErrorListER16KyCErrorListPool(KyCErrorManager* manager,
                                                                        KyCErrorListPool* list);
}

void __wrap__ZN12KyCErrorList8setErrorEjjPKcS1_z(KyCErrorList* list, unsigned int code, unsigned int line,
                                                 const char* function, const char* format, ...)
{
  s_reports.push_back({code, format != nullptr});
  __real__ZN12KyCErrorList8setErrorEjjPKcS1_z(list, code, line, function, nullptr);
}

KyCErrorListPool* __wrap__ZN15KyCErrorManager15createErrorListEjjjjj(KyCErrorManager* manager, unsigned int a,
                                                                     unsigned int b, unsigned int c, unsigned int d,
                                                                     unsigned int e)
{
  KyCErrorListPool* const list = __real__ZN15KyCErrorManager15createErrorListEjjjjj(manager, a, b, c, d, e);
  s_created.push_back({{a, b, c, d, e}, list});
  return list;
}

void __wrap__ZN15KyCErrorManager15deleteErrorListER16KyCErrorListPool(KyCErrorManager* manager, KyCErrorListPool* list)
{
  s_deleted.push_back({list, list->getErrorCount()});
  __real__ZN15KyCErrorManager15deleteErrorListER16KyCErrorListPool(manager, list);
}

namespace
{
class KyErrorHandlingCalls : public testing::Test
{
protected:
  void SetUp() override
  {
    s_reports.clear();
    s_created.clear();
    s_deleted.clear();
  }
};

bool accept(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

bool hasPlaceholder(unsigned int code)
{
  const KyResText& table = KyInventoryTree::messageCatalogue;
  const unsigned int offset = code - table.codeBase;
  const std::string text = table.messages[table.groupBoundaries[offset / 0x800] + offset % 0x800];
  return text.find("%1") != std::string::npos;
}

// The library's reports since the last call; each has a format when its text has a placeholder, and null otherwise.
std::vector<unsigned int> takeCodes()
{
  std::vector<unsigned int> codes;
  for (const TReportCall& report : s_reports)
  {
    EXPECT_EQ(report.hasFormat, hasPlaceholder(report.code)) << std::hex << report.code;
    codes.push_back(report.code);
  }
  s_reports.clear();
  return codes;
}

using TCodes = std::vector<unsigned int>;
}    // namespace

TEST_F(KyErrorHandlingCalls, reportsOfBuildingHaveAFormatOnlyForAPlaceholder)
{
  KyCErrorListPool pool;
  KySampleTree tree("ROOT/BOARD SIZE=1");
  tree.root().createParameter<int>(pool, KyCInventoryAddress(), 1, "", false, 0);
  EXPECT_EQ(takeCodes(), TCodes({0x1300808}));
  tree.root().createParameter<int>(pool, BOARD / SIZE, 1, "", false, 0);
  EXPECT_EQ(takeCodes(), TCodes({0x1300812, 0x130080B}));
  tree.root().getValue<int>(pool, OFFSET);
  EXPECT_EQ(takeCodes(), TCodes({0x1300801}));
}

TEST_F(KyErrorHandlingCalls, reportsOfCopyingHaveAFormatOnlyForAPlaceholder)
{
  KyCErrorListPool pool;
  KySampleTree tree("ROOT/BOARD SIZE=1 OFFSET=2");
  *tree.parameter("BOARD/OFFSET") = *tree.parameter("BOARD/SIZE");
  KyCInventoryItem* copy = nullptr;
  tree.root().copyTree(pool, copy);
  delete copy;
  EXPECT_EQ(takeCodes(), TCodes({0x1300812, 0x130080E, 0x130080F}));
}

TEST_F(KyErrorHandlingCalls, reportsOfDesignatedValuesHaveAFormatOnlyForAPlaceholder)
{
  KyCErrorListPool pool;
  KySampleTree tree("ROOT/BOARD SIZE=1");
  KyCInventoryParameter& size = *tree.parameter("BOARD/SIZE");
  size.setCheckAndWriteMethod(pool, accept, accept, THIS_NODE, nullptr);
  size.getDesignatedValue<int>(pool);
  size.adoptDesignatedValue(pool);
  EXPECT_EQ(takeCodes(), TCodes({0x1301001, 0x1301004}));
}

TEST_F(KyErrorHandlingCalls, reportsOfSectionsHaveAFormatOnlyForAPlaceholder)
{
  KyCErrorListPool pool;
  KySampleTree tree("ROOT/BOARD SIZE=1 OFFSET=2");
  *tree.parameter("BOARD/OFFSET") = *tree.parameter("BOARD/SIZE");
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &tree.root());
  EXPECT_EQ(takeCodes(), TCodes({0x1302803, 0x130000A}));

  buffer.reset();
  KyCInventoryData::generateInventorySection(pool, buffer, nullptr);
  KyCInventoryData::writeHeader(pool, buffer, 0, 1000);
  EXPECT_EQ(takeCodes(), TCodes({0x1300004}));
  KyCInventoryItem* read = nullptr;
  buffer.getStorage()[buffer.getWritePosition() - 24 + 7] = 200;    // the data size in the trailer
  KyCInventoryData::extractInventoryTreeFromMem(pool, buffer.getStorage(), buffer.getWritePosition(), read);
  EXPECT_EQ(takeCodes(), TCodes({0x130000C, 0x130000D}));
  KyCInventoryData::extractInventoryTreeFromFile(pool, "/no such file", read);
  EXPECT_EQ(takeCodes(), TCodes({0x1300001}));
}

TEST_F(KyErrorHandlingCalls, linkingWithoutAPoolMakesItsListAndDeletesItAlsoWhenLinkingFails)
{
  KyRecordingListener listener;
  KySampleTree sound("ROOT/SHARED_DATA; BOARD SHARED_DATA_INDEX:UInt32=1");
  sound.root().linkSharedData(nullptr);
  KySampleTree failing("ROOT/SHARED_DATA; BOARD SHARED_DATA_INDEX:Int32=1");
  failing.root().linkSharedData(nullptr);
  EXPECT_EQ(listener.takeWarnings().size(), 1u) << "of the failing one";

  ASSERT_EQ(s_created.size(), 2u);
  ASSERT_EQ(s_deleted.size(), 2u);
  for (unsigned int n = 0; n < 2; ++n)
  {
    EXPECT_EQ(s_created[n].arguments, std::vector<unsigned int>({0, 1, 20, 5, 300}));
    EXPECT_EQ(s_deleted[n].list, s_created[n].result);
  }
  EXPECT_EQ(s_deleted[0].errors, 0u);
  EXPECT_EQ(s_deleted[1].errors, 2u);    // the base library's and getValue's
  EXPECT_EQ(takeCodes(), TCodes({0x1301008}));
}
