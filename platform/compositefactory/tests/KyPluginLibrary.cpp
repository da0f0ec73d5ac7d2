// A plug-in library for the tests: makes composites of a class of its own.
#include "KyPluginLibrary.h"

#include "errorhandling/KyNPoolAllocator.h"

namespace
{
class KyCPluginComposite : public KyCComposite
{
public:
  using KyCComposite::KyCComposite;
  void traverseHook(KyCErrorListPool& pool, unsigned int value) override
  {
    pool.setError(KY_PLUGIN_REPORT, 1, KY_PLUGIN_NAME, "%u", value);
  }
};
}    // namespace

extern "C" __attribute__((visibility("default"))) KyCComposite* KyCreateComposite(KyCErrorListPool* pool,
                                                                                  unsigned int classId,
                                                                                  unsigned int unitId,
                                                                                  const char* description)
{
  if (unitId == KY_PLUGIN_REFUSED_UNIT) return nullptr;
  KyCPluginComposite* const composite = new (*pool) KyCPluginComposite(*pool, classId, unitId, description);
  if (unitId == KY_PLUGIN_OWNED_UNIT && composite != nullptr)
  {
    static KyCComposite owner(*pool, 0, 0, "owner");
    owner.attach(composite);
  }
  return composite;
}
