// Plug-in libraries. The build makes three small ones for class 7, below KY_PLUGIN_FOLDER:
//
//   first/libKyComposite_7.so     KyPluginAnyUnit
//   second/libKyComposite_7_3.so  KyPluginUnit3
//   second/libKyComposite_7.so    KyPluginAnyUnitAgain
#include <memory>
#include <string>

#include "KyPluginLibrary.h"
#include "compositefactory/KyCCompositeFactory.h"
#include "support/KyTestPool.h"

namespace
{
using KyTree = std::unique_ptr<KyCComposite>;

const std::string FIRST = KY_PLUGIN_FOLDER "/first";
const std::string SECOND = KY_PLUGIN_FOLDER "/second";

// Name of the plug-in that makes these composites; empty: the factory makes them itself.
std::string maker(KyCCompositeFactory& factory, unsigned int classId, unsigned int unitId)
{
  KyTestPool pool;
  const KyTree made(factory.createComposite(pool, classId, unitId, "text", nullptr));
  EXPECT_NE(made, nullptr);
  if (made == nullptr) return "nobody";
  EXPECT_EQ(made->getClassId(), classId);
  EXPECT_EQ(made->getUnitId(), unitId);
  EXPECT_STREQ(made->getDescription(), "text");
  made->traverseHook(pool, 1);
  const std::vector<KyReport> reports = pool.takeReports();
  return reports.empty() ? "" : reports.front().function;
}
}    // namespace

TEST(KyCCompositeFactoryLibrary, compositesOfTheClassComeFromTheLibrary)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_EQ(maker(factory, 7, 1), "");
  EXPECT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  EXPECT_EQ(maker(factory, 7, 1), "KyPluginAnyUnit");
  EXPECT_EQ(maker(factory, 7, 0), "KyPluginAnyUnit");
  EXPECT_EQ(maker(factory, 8, 1), "");
}

TEST(KyCCompositeFactoryLibrary, compositeOfTheLibraryIsAttachedToTheParent)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  ASSERT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  KyCComposite parent(pool, 1, 1, "");
  KyCComposite* const made = factory.createComposite(pool, 7, 1, "", &parent);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->getParent(), &parent);
  parent.detachChild(made);
  delete made;    // before its library goes with the factory
}

TEST(KyCCompositeFactoryLibrary, libraryOfAUnitStandsInFrontOfTheOneForAllUnits)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  EXPECT_TRUE(factory.createLibrary(pool, 7, 3, (SECOND + "/libKyComposite_7_3.so").c_str()));
  EXPECT_EQ(maker(factory, 7, 3), "KyPluginUnit3");
  EXPECT_EQ(maker(factory, 7, 4), "KyPluginAnyUnit");
}

TEST(KyCCompositeFactoryLibrary, libraryOfAUnitServesThatUnitOnly)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_TRUE(factory.createLibrary(pool, 7, 3, (SECOND + "/libKyComposite_7_3.so").c_str()));
  EXPECT_EQ(maker(factory, 7, 3), "KyPluginUnit3");
  EXPECT_EQ(maker(factory, 7, 4), "");
}

TEST(KyCCompositeFactoryLibrary, secondLibraryForTheSameNumbersIsRefused)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0, (SECOND + "/libKyComposite_7.so").c_str()));
  EXPECT_REPORTS(pool, {0x01201004, "createLibrary", "Composite (7, 0) has a library already."});
  EXPECT_EQ(maker(factory, 7, 1), "KyPluginAnyUnit");
}

TEST(KyCCompositeFactoryLibrary, bareNamesAreRefused)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0, "libKyComposite_7.so"));
  EXPECT_REPORTS(pool, {0x01201001, "createLibrary", "The library path \"libKyComposite_7.so\" names no folder."});
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0, ""));
  EXPECT_REPORTS(pool, {0x01201001, "createLibrary", "The library path \"\" names no folder."});
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0, nullptr));
  EXPECT_REPORTS(pool, {0x01201001, "createLibrary", "The library path \"\" names no folder."});
}

TEST(KyCCompositeFactoryLibrary, missingFileIsReportedInTheLoadersWords)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_FALSE(factory.createLibrary(pool, 7, 0, (FIRST + "/missing.so").c_str()));
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].code, 0x01201002u);
  EXPECT_EQ(reports[0].function, "createLibrary");
  EXPECT_NE(reports[0].text.find(FIRST + "/missing.so"), std::string::npos) << reports[0].text;
}

TEST(KyCCompositeFactoryLibrary, libraryWithoutTheFunctionIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  const std::string path = FIRST + "/libKyComposite_8.so";
  EXPECT_FALSE(factory.createLibrary(pool, 8, 0, path.c_str()));
  EXPECT_REPORTS(pool, {0x01201003, "createLibrary", "The library " + path + " has no function KyCreateComposite."});
  EXPECT_EQ(maker(factory, 8, 1), "");
}

TEST(KyCCompositeFactoryLibrary, nullFromTheLibraryIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  ASSERT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  EXPECT_EQ(factory.createComposite(pool, 7, KY_PLUGIN_REFUSED_UNIT, "", nullptr), nullptr);
  EXPECT_REPORTS(pool, {0x01200800, "createComposite", "Composite (7, 13) cannot be created."});
}

TEST(KyCCompositeFactoryLibrary, compositeThatHasAnotherParentStaysThere)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  ASSERT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  KyCComposite parent(pool, 1, 1, "");
  EXPECT_EQ(factory.createComposite(pool, 7, KY_PLUGIN_OWNED_UNIT, "", &parent), nullptr);
  EXPECT_REPORTS(pool, {0x01200801, "createComposite", "Composite (7, 14) cannot be attached: error -3."});
}

TEST(KyCCompositeFactoryLibrary, deserializeMakesNodesThroughTheLibrary)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  KyCBinDeserializer deserializer(pool);
  KyCBuffer buffer(pool);
  const unsigned char stream[] = {0x01, 0x01, 0x07, 0x01, 0x01, 0x02};
  buffer.writeBuffer(pool, stream, sizeof stream, 1, -1);
  factory.setBinaryDeserializer(pool, &deserializer);
  ASSERT_TRUE(factory.createLibrary(pool, 7, 0, (FIRST + "/libKyComposite_7.so").c_str()));
  const KyTree tree(factory.deserialize(pool, nullptr, &buffer));
  ASSERT_NE(tree, nullptr);
  tree->traverseHook(pool, 5);
  EXPECT_REPORTS(pool, {KY_PLUGIN_REPORT, "KyPluginAnyUnit", ""});
}

// ---- Searching ----

TEST(KyCCompositeFactoryLibrary, searchFindsNothingWithoutFolders)
{
  KyTestPool pool;
  const KyCCompositeFactory factory(pool);
  EXPECT_STREQ(factory.searchLibOnFilesystem(pool, 7, 3).c_str(), "");
  EXPECT_REPORTS(
      pool, {0x01201005, "searchLibOnFilesystem", "There is no library for composite (7, 3) in the library folders."});
}

TEST(KyCCompositeFactoryLibrary, searchPrefersTheUnitsOwnLibraryInAnyFolder)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_TRUE(factory.addLibraryFolder(pool, FIRST.c_str()));
  EXPECT_TRUE(factory.addLibraryFolder(pool, SECOND.c_str()));
  EXPECT_EQ(factory.searchLibOnFilesystem(pool, 7, 3).c_str(), SECOND + "/libKyComposite_7_3.so");
}

TEST(KyCCompositeFactoryLibrary, searchFallsBackToTheClassInTheOrderOfTheFolders)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  factory.addLibraryFolder(pool, SECOND.c_str());
  factory.addLibraryFolder(pool, FIRST.c_str());
  EXPECT_EQ(factory.searchLibOnFilesystem(pool, 7, 4).c_str(), SECOND + "/libKyComposite_7.so");
}

TEST(KyCCompositeFactoryLibrary, foldersAreNoLibraries)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  factory.addLibraryFolder(pool, KY_PLUGIN_FOLDER);
  EXPECT_STREQ(factory.searchLibOnFilesystem(pool, 7, 3).c_str(), "");
  EXPECT_REPORTS(pool, {0x01201005, "searchLibOnFilesystem", ""});
}

TEST(KyCCompositeFactoryLibrary, createLibraryWithoutAPathLoadsWhatTheSearchFinds)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  factory.addLibraryFolder(pool, FIRST.c_str());
  factory.addLibraryFolder(pool, SECOND.c_str());
  EXPECT_TRUE(factory.createLibrary(pool, 7, 3));
  EXPECT_EQ(maker(factory, 7, 3), "KyPluginUnit3");
  EXPECT_FALSE(factory.createLibrary(pool, 9, 1));
  EXPECT_REPORTS(
      pool, {0x01201005, "searchLibOnFilesystem", "There is no library for composite (9, 1) in the library folders."});
}

TEST(KyCCompositeFactoryLibrary, noFolderIsReported)
{
  KyTestPool pool;
  KyCCompositeFactory factory(pool);
  EXPECT_FALSE(factory.addLibraryFolder(pool, nullptr));
  EXPECT_REPORTS(pool, {0x01201006, "addLibraryFolder", "No library folder was given."});
  EXPECT_FALSE(factory.addLibraryFolder(pool, ""));
  EXPECT_REPORTS(pool, {0x01201006, "addLibraryFolder", "No library folder was given."});
}

TEST(KyCCompositeFactoryLibrary, everyAllocationMayFail)
{
  for (unsigned int n = 0;; ++n)
  {
    KyTestPool pool;
    KyCCompositeFactory factory(pool);
    KyNPoolAllocator::failAfter(n);
    const bool done = factory.addLibraryFolder(pool, SECOND.c_str()) && factory.createLibrary(pool, 7, 3);
    KyNPoolAllocator::reset();
    EXPECT_EQ(done, pool.takeReports().empty()) << n;
    EXPECT_EQ(maker(factory, 7, 3), done ? "KyPluginUnit3" : "") << n;
    if (done) break;
    ASSERT_LT(n, 20u);
  }
}
