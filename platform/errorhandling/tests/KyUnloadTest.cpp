// KyUnloadTest.cpp: libraries that come and go: one that reports, and this one itself. This program is not linked to
// libKyErrorHandling; it finds its functions by their names, which are the same on both word sizes.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstring>
#include <string>

#include "errorhandling/KyErrorHandling.h"

namespace
{
const char* const s_libraryPath = KY_BINARY_DIR "/lib/libKyErrorHandling.so.1";
const char* const s_pluginPath = KY_REPORTING_LIBRARY;

// A loaded library; unloaded with this object.
class KyLoaded
{
public:
  explicit KyLoaded(const char* path) : m_handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {}
  ~KyLoaded()
  {
    if (m_handle != nullptr) dlclose(m_handle);
  }
  KyLoaded(const KyLoaded&) = delete;
  KyLoaded& operator=(const KyLoaded&) = delete;

  bool isLoaded() const { return m_handle != nullptr; }
  template <typename Type>
  Type* find(const char* name) const
  {
    return reinterpret_cast<Type*>(dlsym(m_handle, name));
  }

private:
  void* m_handle;
};

bool isInMemory(const char* path)
{
  void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

// An error list without being linked to the library: its functions, called by name on raw storage.
class KyRemotePool
{
public:
  explicit KyRemotePool(const KyLoaded& library) : m_library(library)
  {
    library.find<void(void*)>("_ZN12KyCErrorListC1Ev")(m_storage);
  }
  ~KyRemotePool() { m_library.find<void(void*)>("_ZN12KyCErrorListD1Ev")(m_storage); }
  KyRemotePool(const KyRemotePool&) = delete;
  KyRemotePool& operator=(const KyRemotePool&) = delete;

  void* storage() { return m_storage; }
  const KyErrorEntry& getEntry(unsigned int n)
  {
    return *m_library.find<const KyErrorEntry*(void*, unsigned int)>("_ZNK12KyCErrorList8getEntryEj")(m_storage, n);
  }
  void setError(unsigned int code)
  {
    m_library.find<void(void*, unsigned int, unsigned int, const char*, const char*, ...)>(
        "_ZN12KyCErrorList8setErrorEjjPKcS1_z")(m_storage, code, 1, "remote", nullptr);
  }

private:
  const KyLoaded& m_library;
  alignas(KyCErrorListPool) unsigned char m_storage[sizeof(KyCErrorListPool)];
};

int noteInventoryLibraries(dl_phdr_info* info, std::size_t, void* found)
{
  for (const char* name : {"libKyComposite", "libKyInventoryTree"})
  {
    if (std::strstr(info->dlpi_name, name) != nullptr) *static_cast<std::string*>(found) += name;
  }
  return 0;
}
}    // namespace

TEST(KyUnload, theLibraryStandsAlone)
{
  const KyLoaded library(s_libraryPath);
  ASSERT_TRUE(library.isLoaded()) << dlerror();
  std::string found;
  dl_iterate_phdr(&noteInventoryLibraries, &found);
  EXPECT_EQ(found, "");
}

TEST(KyUnload, theManagerIsNotThereBeforeItsFirstUse)
{
  const KyLoaded library(s_libraryPath);
  ASSERT_TRUE(library.isLoaded()) << dlerror();
  void** const pointer = library.find<void*>("_ZN15KyCErrorManager15s_pErrorManagerE");
  ASSERT_NE(pointer, nullptr);
  EXPECT_EQ(*pointer, nullptr);
  KyRemotePool pool(library);
  pool.setError(0x1000000);    // recording and rendering need no manager
  EXPECT_STREQ(pool.getEntry(0).text, "Out of memory.");
  EXPECT_EQ(*pointer, nullptr);
  void* const manager = library.find<void*()>("_ZN15KyCErrorManager12getSingletonEv")();
  EXPECT_NE(manager, nullptr);
  EXPECT_EQ(*pointer, manager);
}

TEST(KyUnload, theLibraryCanBeUnloadedWithAllThatItHolds)    // the leak sanitizer looks on
{
  for (int n = 0; n < 3; ++n)
  {
    {
      const KyLoaded library(s_libraryPath);
      ASSERT_TRUE(library.isLoaded()) << dlerror();
      void* const manager = library.find<void*()>("_ZN15KyCErrorManager12getSingletonEv")();
      void* const list =
          library.find<void*(void*, unsigned int, unsigned int, unsigned int, unsigned int, unsigned int)>(
              "_ZN15KyCErrorManager15createErrorListEjjjjj")(manager, 0, 1, 20, 5, 300);
      EXPECT_NE(list, nullptr);
      void* const master = library.find<void*(void*)>("_ZNK15KyCErrorManager18getMasterErrorListEv")(manager);
      for (void* pool : {list, master})
      {
        library.find<void(void*, unsigned int, unsigned int, const char*, const char*, ...)>(
            "_ZN12KyCErrorList8setErrorEjjPKcS1_z")(pool, 17, 1, "unsent", nullptr);
      }
    }
    EXPECT_FALSE(isInMemory(s_libraryPath));
  }
}

TEST(KyUnload, aReportOutlivesTheLibraryThatMadeIt)
{
  const KyLoaded library(s_libraryPath);
  ASSERT_TRUE(library.isLoaded()) << dlerror();
  KyRemotePool pool(library);
  {
    const KyLoaded plugin(s_pluginPath);
    ASSERT_TRUE(plugin.isLoaded()) << dlerror();
    plugin.find<void(void*)>("kyReport")(pool.storage());
  }
  ASSERT_FALSE(isInMemory(s_pluginPath));
  EXPECT_EQ(pool.getEntry(0).line, 5u);
  EXPECT_STREQ(pool.getEntry(0).function, "kyReport");
  EXPECT_STREQ(pool.getEntry(0).text, "Report of a library: argument.");
}

TEST(KyUnload, messagesGoWithTheLibraryThatHasThem)
{
  const KyLoaded library(s_libraryPath);
  ASSERT_TRUE(library.isLoaded()) << dlerror();
  KyRemotePool pool(library);
  for (unsigned int n = 0; n < 4; n += 2)
  {
    {
      const KyLoaded plugin(s_pluginPath);
      ASSERT_TRUE(plugin.isLoaded()) << dlerror();
      plugin.find<void(void*)>("kyReport")(pool.storage());
    }
    pool.setError(0x3000000);
    EXPECT_STREQ(pool.getEntry(n).text, "Report of a library: argument.");
    EXPECT_STREQ(pool.getEntry(n + 1).text, "Message 0x3000000");
  }
}
