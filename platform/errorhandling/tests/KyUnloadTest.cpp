// KyUnloadTest.cpp: libraries that come and go: one that reports, and this one itself. This program is not linked to
// libKyErrorHandling; a library that is brings it in.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstddef>
#include <cstring>
#include <string>

#include "errorhandling/KyErrorHandling.h"

namespace
{
const char* const s_errorHandlingPath = KY_BINARY_DIR "/lib/libKyErrorHandling.so.1";
const char* const s_drivingPath = KY_DRIVING_LIBRARY;
const char* const s_reportingPath = KY_REPORTING_LIBRARY;

// A loaded library; unloaded with this object.
class KyLoaded
{
public:
  explicit KyLoaded(const char* path) : m_handle(dlopen(path, RTLD_NOW | RTLD_LOCAL))
  {
    if (m_handle == nullptr) ADD_FAILURE() << dlerror();
  }
  ~KyLoaded()
  {
    if (m_handle != nullptr) dlclose(m_handle);
  }
  KyLoaded(const KyLoaded&) = delete;
  KyLoaded& operator=(const KyLoaded&) = delete;

  template <typename Function>
  Function* find(const char* name) const
  {
    return reinterpret_cast<Function*>(dlsym(m_handle, name));
  }

private:
  void* m_handle;
};

// A pool inside of the loaded library.
class KyRemotePool
{
public:
  explicit KyRemotePool(const KyLoaded& library)
      : m_library(library), m_pool(library.find<KyCErrorListPool*()>("kyNewPool")())
  {
  }
  ~KyRemotePool() { m_library.find<void(KyCErrorListPool*)>("kyDeletePool")(m_pool); }
  KyRemotePool(const KyRemotePool&) = delete;
  KyRemotePool& operator=(const KyRemotePool&) = delete;

  KyCErrorListPool* get() const { return m_pool; }
  void setError(unsigned int code) const
  {
    m_library.find<void(KyCErrorListPool*, unsigned int)>("kySetError")(m_pool, code);
  }
  const KyErrorEntry& getEntry(unsigned int n) const
  {
    return *m_library.find<const KyErrorEntry*(const KyCErrorListPool*, unsigned int)>("kyGetEntry")(m_pool, n);
  }

private:
  const KyLoaded& m_library;
  KyCErrorListPool* m_pool;
};

bool isInMemory(const char* path)
{
  void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

int noteHigherLibraries(dl_phdr_info* info, std::size_t, void* found)
{
  for (const char* name : {"libKyComposite", "libKyInventory"})
  {
    if (std::strstr(info->dlpi_name, name) != nullptr) *static_cast<std::string*>(found) += name;
  }
  return 0;
}
}    // namespace

TEST(KyUnload, theLibraryStandsAlone)
{
  const KyLoaded library(s_errorHandlingPath);
  std::string found;
  dl_iterate_phdr(&noteHigherLibraries, &found);
  EXPECT_EQ(found, "");
}

TEST(KyUnload, theManagerIsNotThereBeforeItsFirstUse)
{
  const KyLoaded library(s_drivingPath);
  const auto hasManager = library.find<bool()>("kyHasManager");
  EXPECT_FALSE(hasManager());
  const KyRemotePool pool(library);
  pool.setError(0x1000000);    // recording and rendering need no manager
  EXPECT_STREQ(pool.getEntry(0).text, "Out of memory.");
  EXPECT_FALSE(hasManager());
  library.find<void()>("kyLeaveThingsBehind")();
  EXPECT_TRUE(hasManager());
}

TEST(KyUnload, theLibraryCanBeUnloadedWithAllThatItHolds)    // the leak sanitizer looks on
{
  for (int n = 0; n < 3; ++n)
  {
    {
      const KyLoaded library(s_drivingPath);
      library.find<void()>("kyLeaveThingsBehind")();
      EXPECT_TRUE(isInMemory(s_errorHandlingPath));
    }
    EXPECT_FALSE(isInMemory(s_errorHandlingPath));
  }
}

TEST(KyUnload, aReportOutlivesTheLibraryThatMadeIt)
{
  const KyLoaded library(s_drivingPath);
  const KyRemotePool pool(library);
  {
    const KyLoaded reporting(s_reportingPath);
    reporting.find<void(KyCErrorListPool*)>("kyReport")(pool.get());
  }
  ASSERT_FALSE(isInMemory(s_reportingPath));
  EXPECT_EQ(pool.getEntry(0).line, 5u);
  EXPECT_STREQ(pool.getEntry(0).function, "kyReport");
  EXPECT_STREQ(pool.getEntry(0).text, "Report of a library: argument.");
}

TEST(KyUnload, messagesGoWithTheLibraryThatHasThem)
{
  const KyLoaded library(s_drivingPath);
  const KyRemotePool pool(library);
  for (unsigned int n = 0; n < 4; n += 2)
  {
    {
      const KyLoaded reporting(s_reportingPath);
      reporting.find<void(KyCErrorListPool*)>("kyReport")(pool.get());
    }
    pool.setError(0x3000000);
    EXPECT_STREQ(pool.getEntry(n).text, "Report of a library: argument.");
    EXPECT_STREQ(pool.getEntry(n + 1).text, "Message 0x3000000");
  }
}
