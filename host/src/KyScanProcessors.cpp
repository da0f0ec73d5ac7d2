// KyScanProcessors.cpp: processors, their cores and their caches.
//
//   CPU[p]                a processor (package)
//   +- CPU[c]             one of its cores
//   |  +- L1_CACHE[n]     a cache that serves this core alone: data or unified first, then instructions
//   +- L3_CACHE[n]        a cache that several of its cores share
#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "KyHostScan.h"
#include "KyHostText.h"
#include "KyLiveValues.h"

namespace
{
constexpr unsigned int CACHE_LEVELS = 3;    // those with an ID of their own

const KyCInventoryAddress& cacheId(unsigned int level)
{
  return level == 1 ? KyNInventoryIDs::L1_CACHE : level == 2 ? KyNInventoryIDs::L2_CACHE : KyNInventoryIDs::L3_CACHE;
}

const char* cacheTypeText(const hwloc_obj_cache_type_t& type)
{
  if (holds(type, HWLOC_OBJ_CACHE_UNIFIED)) return "Unified";
  if (holds(type, HWLOC_OBJ_CACHE_DATA)) return "Data";
  return holds(type, HWLOC_OBJ_CACHE_INSTRUCTION) ? "Instruction" : "";
}

bool isInventoriedCache(hwloc_obj_t object)
{
  return hwloc_obj_type_is_cache(object->type) && object->attr != nullptr && object->attr->cache.depth >= 1 &&
         object->attr->cache.depth <= CACHE_LEVELS;
}

// Whether one single core hangs below the cache, with nothing beside it on the way.
bool servesOneCore(hwloc_obj_t cache)
{
  hwloc_obj_t object = cache;
  while (object->arity == 1 && object->type != HWLOC_OBJ_CORE)
    object = object->first_child;
  return object->type == HWLOC_OBJ_CORE;
}

KyNumber nonZero(unsigned long long number) { return KyNHostText::scaled(number, 1); }

KyNumber threadsOf(hwloc_obj_t object)
{
  const int count = object->cpuset != nullptr ? hwloc_bitmap_weight(object->cpuset) : 0;
  return count > 0 ? KyNumber(static_cast<unsigned int>(count)) : std::nullopt;
}

// family.model.stepping as the processor tells them.
std::string identificationOf(hwloc_obj_t processor)
{
  const char* const names[] = {"CPUFamilyNumber", "CPUModelNumber", "CPUStepping"};
  std::string text;
  for (const char* const name : names)
  {
    const char* const info = hwloc_obj_get_info_by_name(processor, name);
    const KyNumber number = KyNHostText::toNumber(info != nullptr ? info : "");
    if (!number) return std::string();
    text += (text.empty() ? "" : ".") + std::to_string(*number);
  }
  return text;
}

class KyCProcessorScan
{
public:
  explicit KyCProcessorScan(const KyHostScan& scan)
      : m_scan(scan), m_wholeMachine(hwloc_get_nbobjs_by_type(scan.topology, HWLOC_OBJ_PACKAGE) <= 0)
  {
    readKinds();
  }
  KyCProcessorScan(const KyCProcessorScan&) = delete;
  KyCProcessorScan& operator=(const KyCProcessorScan&) = delete;

  void run();

private:
  struct TFreeBitmap
  {
    void operator()(hwloc_bitmap_t bitmap) const { hwloc_bitmap_free(bitmap); }
  };
  using TBitmap = std::unique_ptr<hwloc_bitmap_s, TFreeBitmap>;
  struct TKind
  {
    TBitmap cpus;
    unsigned long long maxMHz;     // 0: not told
    unsigned long long baseMHz;    // 0: not told
  };

  void readKinds();
  void enter(hwloc_obj_t object);
  void leave(hwloc_obj_t object);
  bool isProcessor(hwloc_obj_t object) const;
  void beginProcessor(hwloc_obj_t object);
  void addFrequencies(hwloc_obj_t processor);
  KyNumber frequencyOfKinds(hwloc_obj_t processor, unsigned long long TKind::*frequency) const;
  KyNumber frequencyOfSys(hwloc_obj_t processor, const char* file, bool highest) const;
  void addCore(hwloc_obj_t core);
  void addCache(KyCInventoryItem& item, hwloc_obj_t cache, unsigned int index);

  const KyHostScan& m_scan;
  const bool m_wholeMachine;    // no package is named: the machine counts as one
  std::vector<TKind> m_kinds;

  unsigned int m_processorCount = 0;
  hwloc_obj_t m_processor = nullptr;    // the one being walked
  KyCInventoryItem* m_item = nullptr;
  unsigned int m_coreCount = 0;                                   // of that processor
  std::array<unsigned int, CACHE_LEVELS + 1> m_sharedCaches{};    // of that processor, by level
};

void KyCProcessorScan::readKinds()
{
  constexpr int most = 64;    // kinds of cores in one machine; a file may claim any number
  const int count = std::min(hwloc_cpukinds_get_nr(m_scan.topology, 0), most);
  for (int n = 0; n < count; ++n)
  {
    TBitmap cpus(hwloc_bitmap_alloc());
    if (cpus == nullptr) throw std::bad_alloc();
    unsigned int infoCount = 0;
    hwloc_info_s* infos = nullptr;
    if (hwloc_cpukinds_get_info(m_scan.topology, static_cast<unsigned int>(n), cpus.get(), nullptr, &infoCount, &infos,
                                0) != 0)
      infoCount = 0;
    TKind kind = {std::move(cpus), 0, 0};
    for (unsigned int i = 0; i < infoCount; ++i)
    {
      const std::string name = infos[i].name;
      const unsigned long long number = KyNHostText::toNumber(infos[i].value).value_or(0);
      if (name == "FrequencyMaxMHz") kind.maxMHz = number;
      if (name == "FrequencyBaseMHz") kind.baseMHz = number;
    }
    m_kinds.push_back(std::move(kind));
  }
}

void KyCProcessorScan::run()
{
  const hwloc_obj_t root = hwloc_get_root_obj(m_scan.topology);
  hwloc_obj_t object = root;
  while (object != nullptr)
  {
    enter(object);
    if (object->first_child != nullptr)
    {
      object = object->first_child;
      continue;
    }
    while (object != nullptr && object->next_sibling == nullptr)
    {
      leave(object);
      object = object->parent;
    }
    if (object == nullptr) break;
    leave(object);
    object = object->next_sibling;
  }
}

bool KyCProcessorScan::isProcessor(hwloc_obj_t object) const
{
  return object->type == HWLOC_OBJ_PACKAGE || (m_wholeMachine && object->parent == nullptr && threadsOf(object));
}

void KyCProcessorScan::enter(hwloc_obj_t object)
{
  if (m_processor == nullptr && isProcessor(object))
    beginProcessor(object);
  else if (m_item == nullptr)
    return;
  else if (object->type == HWLOC_OBJ_CORE)
    addCore(object);
  else if (isInventoriedCache(object) && !servesOneCore(object))
    addCache(*m_item, object, ++m_sharedCaches[object->attr->cache.depth]);
}

void KyCProcessorScan::leave(hwloc_obj_t object)
{
  if (object != m_processor) return;
  if (m_item != nullptr)
  {
    addCount(m_scan, *m_item, KyNInventoryIDs::NUMBER_OF_CORES, nonZero(m_coreCount));
    addCount(m_scan, *m_item, KyNInventoryIDs::COUNT, threadsOf(object));
  }
  m_processor = nullptr;
  m_item = nullptr;
}

void KyCProcessorScan::beginProcessor(hwloc_obj_t object)
{
  m_processor = object;
  m_coreCount = 0;
  m_sharedCaches.fill(0);
  m_item = addItem(m_scan, m_scan.root, KyNInventoryIDs::CPU[++m_processorCount]);
  if (m_item == nullptr) return;
  if (object->type == HWLOC_OBJ_PACKAGE) addCount(m_scan, *m_item, KyNInventoryIDs::ID, osNumberOf(object));
  addText(m_scan, *m_item, KyNInventoryIDs::VENDOR, infoOf(object, "CPUVendor"));
  addText(m_scan, *m_item, KyNInventoryIDs::MODEL, infoOf(object, "CPUModel"));
  const std::string revision = infoOf(object, "CPURevision");
  addVersion(m_scan, *m_item, KyNInventoryIDs::VERSION, revision.empty() ? identificationOf(object) : revision);
  addText(m_scan, *m_item, KyNInventoryIDs::ARCHITECTURE, infoOf(object, "CPUType"));
  addFrequencies(object);
}

void KyCProcessorScan::addFrequencies(hwloc_obj_t processor)
{
  const auto orSys = [this, processor](KyNumber told, const char* file, bool highest)
  { return told ? told : frequencyOfSys(processor, file, highest); };
  addNumber(m_scan, *m_item, KyNInventoryIDs::FREQUENCY,
            orSys(frequencyOfKinds(processor, &TKind::baseMHz), "base_frequency", true), "Hz");
  addNumber(m_scan, *m_item, KyNInventoryIDs::FREQUENCY_MIN, frequencyOfSys(processor, "cpuinfo_min_freq", false),
            "Hz");
  addNumber(m_scan, *m_item, KyNInventoryIDs::FREQUENCY_MAX,
            orSys(frequencyOfKinds(processor, &TKind::maxMHz), "cpuinfo_max_freq", true), "Hz");
}

// The highest among the kinds of cores that the processor has.
KyNumber KyCProcessorScan::frequencyOfKinds(hwloc_obj_t processor, unsigned long long TKind::*frequency) const
{
  unsigned long long highest = 0;
  for (const TKind& kind : m_kinds)
    if (hwloc_bitmap_intersects(kind.cpus.get(), processor->cpuset) != 0) highest = std::max(highest, kind.*frequency);
  return KyNHostText::scaled(highest, 1000000);
}

// The highest or the lowest among the processor's hardware threads; /sys counts in kHz.
KyNumber KyCProcessorScan::frequencyOfSys(hwloc_obj_t processor, const char* file, bool highest) const
{
  if (m_scan.sources == nullptr) return std::nullopt;
  KyNumber found;
  for (int cpu = hwloc_bitmap_first(processor->cpuset); cpu >= 0; cpu = hwloc_bitmap_next(processor->cpuset, cpu))
  {
    const std::string path = "devices/system/cpu/cpu" + std::to_string(cpu) + "/cpufreq/" + file;
    const KyNumber kHz = KyNHostText::scaled(KyNHostText::toNumber(m_scan.sources->sysFile(path)), 1000);
    if (kHz && (!found || (highest ? *kHz > *found : *kHz < *found))) found = kHz;
  }
  return found;
}

void KyCProcessorScan::addCore(hwloc_obj_t core)
{
  KyCInventoryItem* const item = addItem(m_scan, *m_item, KyNInventoryIDs::CPU[++m_coreCount]);
  if (item == nullptr) return;
  addCount(m_scan, *item, KyNInventoryIDs::ID, osNumberOf(core));
  addCount(m_scan, *item, KyNInventoryIDs::COUNT, threadsOf(core));

  std::vector<hwloc_obj_t> caches;
  for (hwloc_obj_t object = core->parent; object != nullptr && object != m_processor && object->arity == 1;
       object = object->parent)
    if (isInventoriedCache(object)) caches.push_back(object);
  const auto order = [](hwloc_obj_t object)
  { return 2 * object->attr->cache.depth + (holds(object->attr->cache.type, HWLOC_OBJ_CACHE_INSTRUCTION) ? 1u : 0u); };
  std::stable_sort(caches.begin(), caches.end(),
                   [&order](hwloc_obj_t a, hwloc_obj_t b) { return order(a) < order(b); });
  std::array<unsigned int, CACHE_LEVELS + 1> counts{};
  for (const hwloc_obj_t cache : caches)
    addCache(*item, cache, ++counts[cache->attr->cache.depth]);
}

void KyCProcessorScan::addCache(KyCInventoryItem& item, hwloc_obj_t cache, unsigned int index)
{
  const auto& facts = cache->attr->cache;
  KyCInventoryItem* const cacheItem = addItem(m_scan, item, cacheId(facts.depth)[index]);
  if (cacheItem == nullptr) return;
  addText(m_scan, *cacheItem, KyNInventoryIDs::TYPE, cacheTypeText(facts.type));
  addNumber(m_scan, *cacheItem, KyNInventoryIDs::SIZE, nonZero(facts.size), "B");
  addNumber(m_scan, *cacheItem, KyNInventoryIDs::LENGTH, nonZero(facts.linesize), "B");
}
}    // namespace

void scanProcessors(const KyHostScan& scan)
{
  KyCProcessorScan(scan).run();
  // Which threads are a processor's can be told only when it is known whether there are other processors.
  for (KyCInventoryItem* item = scan.root.getFirstSubItem(); item != nullptr; item = item->getNext())
    if (item->getID()[1] == KyNInventoryIDs::CPU) addLiveFrequency(scan, *item);
}
