// The inventory library loaded and unloaded at run time: this program is not linked with it, only with the
// error-handling library, through which it sees what loading and unloading do.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <malloc.h>

#include <fstream>
#include <string>
#include <vector>

#include "errorhandling/KyErrorHandling.h"
#include "support/KyRecordingListener.h"
#include "support/KyRegisteredText.h"

namespace
{
constexpr unsigned int CODE = 0x1300808;
const char* const TEXT = "Internal error. Kyrel Support information: An empty address is not allowed.";
const char* const STAND_IN = "Message 0x1300808";

// The library while it is loaded.
class KyLoadedLibrary
{
public:
  explicit KyLoadedLibrary(int mode = RTLD_NOW | RTLD_LOCAL) : m_handle(dlopen(KY_LIBRARY, mode))
  {
    if (m_handle == nullptr) ADD_FAILURE() << dlerror();
  }
  ~KyLoadedLibrary() { unload(); }
  KyLoadedLibrary(const KyLoadedLibrary&) = delete;
  KyLoadedLibrary& operator=(const KyLoadedLibrary&) = delete;

  void unload()
  {
    if (m_handle != nullptr && dlclose(m_handle) != 0) ADD_FAILURE() << dlerror();
    m_handle = nullptr;
  }
  void* find(const char* symbol) const { return dlsym(m_handle, symbol); }

  // References of the library that the loader resolves by name, apart from functions.
  std::size_t countNamedRelocations() const
  {
    struct link_map* map = nullptr;
    if (dlinfo(m_handle, RTLD_DI_LINKMAP, &map) != 0) ADD_FAILURE() << dlerror();
    std::size_t size = 0;
    std::size_t entrySize = 1;
    std::size_t relativeCount = 0;
    for (const ElfW(Dyn)* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry)
    {
      if (entry->d_tag == DT_RELASZ || entry->d_tag == DT_RELSZ) size = entry->d_un.d_val;
      if (entry->d_tag == DT_RELAENT || entry->d_tag == DT_RELENT) entrySize = entry->d_un.d_val;
      if (entry->d_tag == DT_RELACOUNT || entry->d_tag == DT_RELCOUNT) relativeCount = entry->d_un.d_val;
    }
    return size / entrySize - relativeCount;
  }

private:
  void* m_handle;
};

bool isLoaded(const char* library)
{
  void* const handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

// Bytes in use on the heap of the main arena.
std::size_t heapInUse()
{
#if __GLIBC_PREREQ(2, 33)
  return mallinfo2().uordblks;
#else
  return static_cast<std::size_t>(mallinfo().uordblks);
#endif
}

// Numbers of an address as the memory of the object holds them: length, ID, index.
std::vector<unsigned int> numbersOf(const void* address)
{
  const unsigned int* const numbers = static_cast<const unsigned int*>(address);
  return {numbers[0], numbers[1], numbers[2]};
}

std::string report57(const std::string& name) { return "Message 0x1301801 (" + name + ")"; }

std::vector<std::string> predefinedNames()
{
  std::vector<std::string> names;
  std::ifstream file(KY_SOURCE_DIR "/src/ids/predefined-ids.txt");
  for (std::string line; std::getline(file, line);)
    names.push_back(line);
  return names;
}
}    // namespace

TEST(Load, codesHaveTheirTextsOnlyWhileTheLibraryIsLoaded)
{
  EXPECT_EQ(registeredText(CODE), STAND_IN);
  KyLoadedLibrary library;
  EXPECT_EQ(registeredText(CODE), TEXT);
  EXPECT_EQ(registeredText(0x1300000), "Cannot deserialize inventory data from file %1.");
  EXPECT_EQ(registeredText(0x1302806),
            "Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: %1");
  EXPECT_EQ(registeredText(0x1302807), "Message 0x1302807");
  library.unload();
  EXPECT_EQ(registeredText(CODE), STAND_IN);
}

TEST(Load, recordedErrorsKeepTheirTextsWhenTheLibraryIsGone)
{
  KyTestPool pool;
  {
    const KyLoadedLibrary library;
    pool.setError(CODE, 1, "createParameter", nullptr);
  }
  EXPECT_REPORTS(pool, {CODE, "createParameter", TEXT});
}

TEST(Load, libraryIsReallyUnloaded)
{
  EXPECT_FALSE(isLoaded(KY_LIBRARY));
  {
    const KyLoadedLibrary library;
    EXPECT_TRUE(isLoaded(KY_LIBRARY));
    EXPECT_TRUE(isLoaded("libKyComposite.so.1"));
    EXPECT_TRUE(isLoaded("libKyCompositeFactory.so.1"));
  }
  EXPECT_FALSE(isLoaded(KY_LIBRARY));
  EXPECT_FALSE(isLoaded("libKyComposite.so.1"));
  EXPECT_FALSE(isLoaded("libKyCompositeFactory.so.1"));
}

TEST(Load, libraryIsReallyUnloadedWhenItsSymbolsWereGlobal)
{
  {
    const KyLoadedLibrary library(RTLD_LAZY | RTLD_GLOBAL);
    EXPECT_EQ(registeredText(CODE), TEXT);
  }
  EXPECT_FALSE(isLoaded(KY_LIBRARY));
}

TEST(Load, secondHandleKeepsTheLibraryLoadedOnce)
{
  KyLoadedLibrary first;
  KyLoadedLibrary second;
  first.unload();
  EXPECT_EQ(registeredText(CODE), TEXT);
  second.unload();
  EXPECT_EQ(registeredText(CODE), STAND_IN);
}

TEST(Load, idsAreBuiltAnewByEveryLoad)
{
  for (int round = 0; round < 3; ++round)
  {
    const KyLoadedLibrary library;
    const void* const board = library.find("_ZN15KyNInventoryIDs5BOARDE");
    const void* const topology = library.find("_ZN15KyNInventoryIDs8TOPOLOGYE");
    const void* const thisNode = library.find("_ZN15KyNInventoryIDs9THIS_NODEE");
    ASSERT_TRUE(board != nullptr && topology != nullptr && thisNode != nullptr);
    EXPECT_EQ(numbersOf(board), (std::vector<unsigned int>{1, 585, 1}));
    EXPECT_EQ(numbersOf(topology), (std::vector<unsigned int>{1, 1063, 1}));
    EXPECT_EQ(numbersOf(thisNode)[0], 0u);
  }
}

// Each look-up of a name takes the loader as long as adding an offset a hundred times. There are more than a thousand
// IDs; what is named besides is less than half of that, also where a sanitizer adds its own.
TEST(Load, predefinedIdsAreNotLookedUpByName)
{
  const KyLoadedLibrary library;
  EXPECT_LT(library.countNamedRelocations(), 500u);
}

TEST(Load, loadingAndUnloadingReportNothing)
{
  KyRecordingListener listener;
  {
    const KyLoadedLibrary library;
    EXPECT_NO_REPORTS(listener);
  }
  EXPECT_NO_REPORTS(listener);
  EXPECT_TRUE(listener.takeWarnings().empty());
}

TEST(Load, loadingSendsWhatWasWaitingInTheMasterList)
{
  KyRecordingListener listener;
  KyCErrorManager::getSingleton()->getMasterErrorList().setError(CODE, 1, "before", nullptr);
  const KyLoadedLibrary library;
  EXPECT_REPORTS(listener, {CODE, "before", STAND_IN});
}

// Without memory for the first name, the name has no place and all others are one place off. The texts show the order:
// the catalogue is registered only after the IDs.
TEST(Load, failedRegistrationOfAnIdIsSentBeforeTheCatalogueIsKnown)
{
  KyRecordingListener listener;
  KyNPoolAllocator::failAfter(0);
  const KyLoadedLibrary library;
  KyNPoolAllocator::reset();

  const std::vector<KyReport> reports = listener.takeReports();
  const std::vector<std::string> names = predefinedNames();
  ASSERT_EQ(reports.size(), 2 + names.size() - 1);
  EXPECT_TRUE(sameReports({reports.begin(), reports.begin() + 4}, {{0x1000000, "operator new[]", "Out of memory."},
                                                                   {0x1301800, "add", "Message 0x1301800 (DUMMY)"},
                                                                   {0x1301801, "add", report57("ROOT")},
                                                                   {0x1301801, "add", report57("CPU")}}));
  EXPECT_TRUE(sameReports({reports.back()}, {{0x1301801, "add", report57(names.back())}}));

  EXPECT_EQ(registeredText(CODE), TEXT) << "loading went on";
  const void* const board = library.find("_ZN15KyNInventoryIDs5BOARDE");
  EXPECT_EQ(numbersOf(board), (std::vector<unsigned int>{1, 585, 1})) << "the ID is its row's number all the same";
}

TEST(Load, manyRoundsLeaveNothingBehind)
{
  for (int round = 0; round < 10; ++round)
    const KyLoadedLibrary library;
  const std::size_t before = heapInUse();
  for (int round = 0; round < 100; ++round)
    const KyLoadedLibrary library;
  EXPECT_EQ(heapInUse(), before);
  EXPECT_EQ(registeredText(CODE), STAND_IN);
}
