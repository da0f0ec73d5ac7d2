// KyScanNetwork.cpp: network interfaces that hardware stands behind.
#include <set>

#include "KyHostScan.h"
#include "KyHostText.h"
#include "KyLiveValues.h"

namespace
{
// device: hwloc's object; null for an interface that only /sys knows.
void addInterface(const KyHostScan& scan, const std::string& name, hwloc_obj_t device, unsigned int index)
{
  const KyCInventoryAddress id = KyNInventoryIDs::NETWORK / KyNInventoryIDs::INTERFACE[index];
  KyCInventoryItem* const item = addItem(scan, scan.root, id);
  if (item == nullptr) return;
  const bool hasFolder = scan.sources != nullptr && !name.empty() && name.find('/') == std::string::npos;
  const std::string folder = "class/net/" + name;
  std::string address = device != nullptr ? infoOf(device, "Address") : std::string();
  if (address.empty() && hasFolder) address = KyNHostText::told(scan.sources->sysFile(folder + "/address"));

  addText(scan, *item, KyNInventoryIDs::NAME, KyNHostText::clean(name));
  addText(scan, *item, KyNInventoryIDs::MAC_ADDRESS, address);
  if (device != nullptr)
  {
    addText(scan, *item, KyNInventoryIDs::PARENT, pciAddressOf(device));
    addCount(scan, *item, KyNInventoryIDs::PORT, KyNHostText::toNumber(infoOf(device, "Port")));
  }
  if (hasFolder) addLiveLink(scan, *item);
}
}    // namespace

void scanNetwork(const KyHostScan& scan)
{
  unsigned int count = 0;
  std::set<std::string> known;
  for (hwloc_obj_t device = nextOsDevice(scan, nullptr, HWLOC_OBJ_OSDEV_NETWORK); device != nullptr;
       device = nextOsDevice(scan, device, HWLOC_OBJ_OSDEV_NETWORK))
  {
    const std::string name = device->name != nullptr ? device->name : "";
    known.insert(name);
    addInterface(scan, name, device, ++count);
  }
  if (scan.sources == nullptr) return;
  for (const std::string& name : scan.sources->sysFoldersWith("class/net", "device"))
    if (known.count(name) == 0) addInterface(scan, name, nullptr, ++count);
}
