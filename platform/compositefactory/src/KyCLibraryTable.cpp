#include "KyCLibraryTable.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>

#include "KyCompositeFactoryMessages.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{
constexpr std::size_t FILE_NAME_SIZE = 64;    // "libKyComposite_4294967295_4294967295.so" and more

bool isFile(const char* path) noexcept
{
  struct stat status;
  return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

// The entry point of a loaded library. Copied as bytes: no cast leads from an object pointer to a function pointer.
KyCLibraryTable::TCreate entryOf(void* handle) noexcept
{
  KyCLibraryTable::TCreate create = nullptr;
  void* const symbol = dlsym(handle, KyCCompositeFactory::CREATE_FUNCTION);
  static_assert(sizeof create == sizeof symbol, "both kinds of pointers have one size");
  std::memcpy(&create, &symbol, sizeof create);
  return create;
}
}    // namespace

KyCLibraryTable::~KyCLibraryTable()
{
  while (m_libraries != nullptr)
  {
    TLibrary* const library = m_libraries;
    m_libraries = library->next;
    dlclose(library->handle);
    KyNPoolAllocator::release(library);
  }
  while (m_folders != nullptr)
  {
    TFolder* const folder = m_folders;
    m_folders = folder->next;
    KyNPoolAllocator::release(folder->path);
    KyNPoolAllocator::release(folder);
  }
}

const KyCLibraryTable::TLibrary* KyCLibraryTable::findExact(unsigned int classId, unsigned int unitId) const noexcept
{
  const TLibrary* library = m_libraries;
  while (library != nullptr && (library->classId != classId || library->unitId != unitId))
    library = library->next;
  return library;
}

KyCLibraryTable::TCreate KyCLibraryTable::find(unsigned int classId, unsigned int unitId) const noexcept
{
  if (m_libraries == nullptr) return nullptr;
  const TLibrary* library = findExact(classId, unitId);
  if (library == nullptr) library = findExact(classId, 0);
  return library != nullptr ? library->create : nullptr;
}

bool KyCLibraryTable::load(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* path) noexcept
{
  // A bare name would send the loader through the folders of the environment.
  if (path == nullptr || std::strchr(path, '/') == nullptr)
  {
    pool.setError(KY_MSG_NO_LIBRARY_PATH, __LINE__, "createLibrary", "%s", path != nullptr ? path : "");
    return false;
  }
  if (findExact(classId, unitId) != nullptr)
  {
    pool.setError(KY_MSG_LIBRARY_TAKEN, __LINE__, "createLibrary", "%u%u", classId, unitId);
    return false;
  }
  void* const handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr)
  {
    const char* const reason = dlerror();
    pool.setError(KY_MSG_CANNOT_LOAD_LIBRARY, __LINE__, "createLibrary", "%s", reason != nullptr ? reason : path);
    return false;
  }
  const TCreate create = entryOf(handle);
  void* const block = create != nullptr ? KyNPoolAllocator::allocate(pool, sizeof(TLibrary)) : nullptr;
  if (block == nullptr)
  {
    if (create == nullptr)
      pool.setError(KY_MSG_LIBRARY_WITHOUT_ENTRY, __LINE__, "createLibrary", "%s%s", path,
                    KyCCompositeFactory::CREATE_FUNCTION);
    dlclose(handle);
    return false;
  }
  m_libraries = ::new (block) TLibrary{m_libraries, classId, unitId, handle, create};
  return true;
}

bool KyCLibraryTable::addFolder(KyCErrorListPool& pool, const char* folder) noexcept
{
  if (folder == nullptr || *folder == '\0')
  {
    pool.setError(KY_MSG_NO_LIBRARY_FOLDER, __LINE__, "addLibraryFolder", nullptr);
    return false;
  }
  const std::size_t size = std::strlen(folder) + 1;
  void* const path = KyNPoolAllocator::allocate(pool, size);
  if (path == nullptr) return false;
  void* const block = KyNPoolAllocator::allocate(pool, sizeof(TFolder));
  if (block == nullptr)
  {
    KyNPoolAllocator::release(path);
    return false;
  }
  std::memcpy(path, folder, size);
  TFolder** last = &m_folders;
  while (*last != nullptr)
    last = &(*last)->next;
  *last = ::new (block) TFolder{nullptr, static_cast<char*>(path)};
  return true;
}

char* KyCLibraryTable::search(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId) const noexcept
{
  char names[2][FILE_NAME_SIZE];
  std::snprintf(names[0], FILE_NAME_SIZE, "libKyComposite_%u_%u.so", classId, unitId);
  std::snprintf(names[1], FILE_NAME_SIZE, "libKyComposite_%u.so", classId);
  for (const char* name : names)
  {
    for (const TFolder* folder = m_folders; folder != nullptr; folder = folder->next)
    {
      const std::size_t size = std::strlen(folder->path) + FILE_NAME_SIZE + 1;
      char* const path = static_cast<char*>(KyNPoolAllocator::allocate(pool, size));
      if (path == nullptr) return nullptr;
      std::snprintf(path, size, "%s/%s", folder->path, name);
      if (isFile(path)) return path;
      KyNPoolAllocator::release(path);
    }
  }
  pool.setError(KY_MSG_LIBRARY_NOT_FOUND, __LINE__, "searchLibOnFilesystem", "%u%u", classId, unitId);
  return nullptr;
}
