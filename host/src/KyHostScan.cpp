// KyHostScan.cpp: see KyHostScan.h.
#include "KyHostScan.h"

#include <cstdio>
#include <limits>
#include <memory>

#include "KyHostMessages.h"
#include "KyHostText.h"
#include "KyLiveValues.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{
KyCInventoryItem* newRoot(KyCErrorListPool& pool, const KyHostSources* sources)
{
  if (sources != nullptr) return new (pool) KyCMachineRoot(pool, *sources);
  return new (pool) KyCInventoryItem(pool, KyNInventoryIDs::ROOT, KyNInventoryIDs::ROOT.getCategoryNameCStr());
}
}    // namespace

KyCInventoryItem* buildInventory(KyCErrorListPool& pool, hwloc_topology_t topology, const KyHostSources* sources,
                                 const char* function, const char* subject)
{
  const unsigned int errorCount = pool.getErrorCount();
  std::unique_ptr<KyCInventoryItem> root(newRoot(pool, sources));
  if (root != nullptr)
  {
    const KyHostScan scan = {pool, *root, topology, sources};
    scanSystem(scan);
    scanProcessors(scan);
    scanMemory(scan);
    scanPci(scan);
    scanNetwork(scan);
    scanDisks(scan);
    scanTemperatures(scan);
    scanOs(scan);
  }
  if (pool.getErrorCount() == errorCount) return root.release();
  pool.setError(KY_HOST_MSG_CANNOT_BUILD, __LINE__, function, "%s", subject);
  return nullptr;
}

KyCInventoryItem* addItem(const KyHostScan& scan, KyCInventoryItem& parent, const KyCInventoryAddress& id)
{
  return parent.addPath(scan.pool, id);
}

void addText(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address,
             const std::string& text)
{
  if (text.empty()) return;
  item.createParameter<KyCString>(scan.pool, address, KyCString(text.c_str()), "", false, 0);
}

void addVersion(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address,
                const std::string& text)
{
  KyCVersion version;
  if (!text.empty() && version.fromString(text.c_str()))
    item.createParameter<KyCVersion>(scan.pool, address, version, "", false, 0);
  else
    addText(scan, item, address, text);
}

void addNumber(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address, KyNumber number,
               const char* unit)
{
  if (number) item.createParameter<unsigned long long>(scan.pool, address, *number, unit, false, 0);
}

void addCount(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address, KyNumber number)
{
  if (!number || *number > std::numeric_limits<unsigned int>::max()) return;
  item.createParameter<unsigned int>(scan.pool, address, static_cast<unsigned int>(*number), "", false, 0);
}

std::string infoOf(hwloc_obj_t object, const char* name)
{
  const char* const text = hwloc_obj_get_info_by_name(object, name);
  return text != nullptr ? KyNHostText::told(text) : std::string();
}

std::string infoOrSysFile(const KyHostScan& scan, hwloc_obj_t object, const char* name, const std::string& sysFile)
{
  const std::string text = infoOf(object, name);
  return text.empty() && scan.sources != nullptr ? KyNHostText::told(scan.sources->sysFile(sysFile)) : text;
}

KyNumber osNumberOf(hwloc_obj_t object)
{
  if (object->os_index == HWLOC_UNKNOWN_INDEX) return std::nullopt;
  return object->os_index;
}

const KyPciFacts* pciFactsOf(hwloc_obj_t object)
{
  if (object->attr == nullptr) return nullptr;
  if (object->type == HWLOC_OBJ_PCI_DEVICE) return &object->attr->pcidev;
  const bool isPciBridge =
      object->type == HWLOC_OBJ_BRIDGE && holds(object->attr->bridge.upstream_type, HWLOC_OBJ_BRIDGE_PCI);
  return isPciBridge ? &object->attr->bridge.upstream.pci : nullptr;
}

std::string pciAddressText(const KyPciFacts& pci)
{
  char text[32];
  std::snprintf(text, sizeof text, "%04x:%02x:%02x.%01x", pci.domain, pci.bus, pci.dev, pci.func);
  return text;
}

std::string pciAddressOf(hwloc_obj_t object)
{
  for (; object != nullptr; object = object->parent)
    if (const KyPciFacts* const pci = pciFactsOf(object)) return pciAddressText(*pci);
  return std::string();
}

hwloc_obj_t nextOsDevice(const KyHostScan& scan, hwloc_obj_t previous, hwloc_obj_osdev_type_t type)
{
  hwloc_obj_t device = hwloc_get_next_osdev(scan.topology, previous);
  while (device != nullptr && (device->attr == nullptr || !holds(device->attr->osdev.type, type)))
    device = hwloc_get_next_osdev(scan.topology, device);
  return device;
}
