// KyCCompositeFactory.cpp: construction, making composites, plug-in libraries. The streams: KyCCompositeFactoryStream.cpp.
#include "compositefactory/KyCCompositeFactory.h"

#include <cstring>

#include "KyCLibraryTable.h"
#include "KyCompositeFactoryMessages.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{
constexpr int ATTACH_HAS_PARENT = -3;    // attach: the child belongs to another node
}    // namespace

KyCCompositeFactory::KyCCompositeFactory(KyCErrorListPool& pool) : m_libraries(new (pool) KyCLibraryTable) {}

KyCCompositeFactory::~KyCCompositeFactory() { delete m_libraries; }

KyCComposite* KyCCompositeFactory::createComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                                                   const char* description, KyCComposite* parent)
{
  const unsigned int errors = pool.getErrorCount();
  const TCreate create = m_libraries != nullptr ? m_libraries->find(classId, unitId) : nullptr;
  KyCComposite* const composite = create != nullptr ? create(&pool, classId, unitId, description)
                                                    : new (pool) KyCComposite(pool, classId, unitId, description);
  if (composite == nullptr || pool.getErrorCount() != errors)
  {
    delete composite;
    pool.setError(KY_MSG_CANNOT_CREATE, __LINE__, "createComposite", "%u%u", classId, unitId);
    return nullptr;
  }
  const int result = parent != nullptr ? parent->attach(composite) : 0;
  if (result == 0) return composite;
  if (result != ATTACH_HAS_PARENT) delete composite;
  pool.setError(KY_MSG_CANNOT_ATTACH, __LINE__, "createComposite", "%u%u%d", classId, unitId, result);
  return nullptr;
}

bool KyCCompositeFactory::isReady(KyCErrorListPool& pool, const char* function) const
{
  if (m_libraries != nullptr) return true;
  pool.setError(KY_MSG_FACTORY_NOT_READY, __LINE__, function, nullptr);
  return false;
}

bool KyCCompositeFactory::createLibrary(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                                        const char* path)
{
  return isReady(pool, "createLibrary") && m_libraries->load(pool, classId, unitId, path);
}

bool KyCCompositeFactory::createLibrary(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId)
{
  const KyCString path = searchLibOnFilesystem(pool, classId, unitId);
  return !path.isEmpty() && createLibrary(pool, classId, unitId, path.c_str());
}

KyCString KyCCompositeFactory::searchLibOnFilesystem(KyCErrorListPool& pool, unsigned int classId,
                                                     unsigned int unitId) const
{
  KyCString result;
  if (!isReady(pool, "searchLibOnFilesystem")) return result;
  char* const path = m_libraries->search(pool, classId, unitId);
  if (path == nullptr) return result;
  result.assign(pool, path, static_cast<unsigned int>(std::strlen(path)));
  KyNPoolAllocator::release(path);
  return result;
}

bool KyCCompositeFactory::addLibraryFolder(KyCErrorListPool& pool, const char* folder)
{
  return isReady(pool, "addLibraryFolder") && m_libraries->addFolder(pool, folder);
}
