// KyScanPci.cpp: PCI devices, bridges among them.
#include <cmath>
#include <cstdio>

#include "KyHostScan.h"
#include "KyHostTopology.h"

namespace
{
// The base classes of the PCI code and ID assignments; "" for those without a name.
const char* baseClassText(unsigned int classId)
{
  static const char* const names[] = {
      "",                                       // 00: from before there were classes
      "Mass storage controller",                // 01
      "Network controller",                     // 02
      "Display controller",                     // 03
      "Multimedia controller",                  // 04
      "Memory controller",                      // 05
      "Bridge",                                 // 06
      "Communication controller",               // 07
      "Generic system peripheral",              // 08
      "Input device controller",                // 09
      "Docking station",                        // 0a
      "Processor",                              // 0b
      "Serial bus controller",                  // 0c
      "Wireless controller",                    // 0d
      "Intelligent controller",                 // 0e
      "Satellite communications controller",    // 0f
      "Encryption controller",                  // 10
      "Signal processing controller",           // 11
      "Processing accelerator",                 // 12
  };
  const unsigned int base = classId >> 8;
  return base < sizeof names / sizeof names[0] ? names[base] : "";
}

// "8086:1521"; empty when the vendor is not told.
std::string idPair(unsigned int vendor, unsigned int device)
{
  if (vendor == 0 || vendor == 0xFFFF) return std::string();
  char text[32];
  std::snprintf(text, sizeof text, "%04x:%04x", vendor, device);
  return text;
}

std::string classText(unsigned int classId)
{
  char text[32];
  std::snprintf(text, sizeof text, "%04x", classId);
  return text;
}

// hwloc tells GB/s.
KyNumber bandwidth(float linkSpeed)
{
  const double megabytes = std::round(static_cast<double>(linkSpeed) * 1000.0);
  if (!(megabytes >= 1.0 && megabytes <= 1e9)) return std::nullopt;
  return static_cast<unsigned long long>(megabytes);
}

void addDevice(const KyHostScan& scan, hwloc_obj_t object, const KyPciFacts& pci, unsigned int index)
{
  KyCInventoryItem* const item = addItem(scan, scan.root, KyNInventoryIDs::DEVICE[index]);
  if (item == nullptr) return;
  addText(scan, *item, KyNInventoryIDs::ADDRESS, pciAddressText(pci));
  addText(scan, *item, KyNInventoryIDs::PARENT, pciAddressOf(object->parent));
  addText(scan, *item, KyNInventoryIDs::TYPE, baseClassText(pci.class_id));
  addText(scan, *item, KyNInventoryIDs::CLASSID, classText(pci.class_id));
  addText(scan, *item, KyNInventoryIDs::VENDOR, infoOf(object, "PCIVendor"));
  addText(scan, *item, KyNInventoryIDs::MODEL, infoOf(object, "PCIDevice"));
  addText(scan, *item, KyNInventoryIDs::TYPE_ID, idPair(pci.vendor_id, pci.device_id));
  addText(scan, *item, KyNInventoryIDs::VARIANT, idPair(pci.subvendor_id, pci.subdevice_id));
  if (pci.revision != 0) addVersion(scan, *item, KyNInventoryIDs::VERSION, std::to_string(pci.revision));
  addText(scan, *item, KyNInventoryIDs::SLOT, infoOf(object, "PCISlot"));
  addNumber(scan, *item, KyNInventoryIDs::BANDWIDTH, bandwidth(pci.linkspeed), "MB/s");
}
}    // namespace

void scanPci(const KyHostScan& scan)
{
  unsigned int count = 0;
  for (hwloc_obj_t object = hwloc_get_root_obj(scan.topology); object != nullptr; object = nextTopologyObject(object))
    if (const KyPciFacts* const pci = pciFactsOf(object)) addDevice(scan, object, *pci, ++count);
}
