// KyHostScan.h: one scan of one machine, and the small steps all subjects share.
//
// Each subject (processors, memory, ...) adds its own items below the root. A step that cannot add something leaves
// its report in the pool; buildInventory looks at the pool once, at the end.
#pragma once

#include <hwloc.h>

#include <cstring>
#include <optional>
#include <string>
#include <type_traits>

#include "KyHostSources.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"

struct KyHostScan
{
  KyCErrorListPool& pool;
  KyCInventoryItem& root;
  hwloc_topology_t topology;
  const KyHostSources* sources;    // the running machine's own files; null when the topology is not the running machine
};

// The subjects, in the order in which their items stand below the root.
void scanSystem(const KyHostScan& scan);          // KyScanSystem.cpp: the machine, its mainboard and BIOS
void scanProcessors(const KyHostScan& scan);      // KyScanProcessors.cpp
void scanMemory(const KyHostScan& scan);          // KyScanMemory.cpp
void scanPci(const KyHostScan& scan);             // KyScanPci.cpp
void scanNetwork(const KyHostScan& scan);         // KyScanNetwork.cpp
void scanDisks(const KyHostScan& scan);           // KyScanDisks.cpp
void scanTemperatures(const KyHostScan& scan);    // KyScanTemperatures.cpp
void scanOs(const KyHostScan& scan);              // KyScanOs.cpp

// The whole inventory; null, with reports in the pool, when it cannot be built. subject names the machine in the
// report; function is the function that reports.
KyCInventoryItem* buildInventory(KyCErrorListPool& pool, hwloc_topology_t topology, const KyHostSources* sources,
                                 const char* function, const char* subject);

// ---- adding what is told; nothing happens when it is not told

using KyNumber = std::optional<unsigned long long>;

// An item below parent, null (with the report in the pool) when it cannot be made.
KyCInventoryItem* addItem(const KyHostScan& scan, KyCInventoryItem& parent, const KyCInventoryAddress& id);
void addText(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address,
             const std::string& text);
// A version parameter where the text is up to four numbers joined by dots, otherwise a string parameter.
void addVersion(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address,
                const std::string& text);
// Sizes, frequencies and rates: 64 bits, with a unit.
void addNumber(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address, KyNumber number,
               const char* unit);
// Counts and the numbers by which the operating system knows things: 32 bits, no unit. Larger ones are not told.
void addCount(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address, KyNumber number);

// ---- asking

// The named info of an hwloc object, cleaned; empty when there is none or it is a placeholder.
std::string infoOf(hwloc_obj_t object, const char* name);
// As infoOf, and where hwloc tells nothing, the file below the running machine's /sys.
std::string infoOrSysFile(const KyHostScan& scan, hwloc_obj_t object, const char* name, const std::string& sysFile);
// Whether an enumeration of hwloc holds a value. hwloc takes any number that a file names, and merely to read one that is
// no value of the enumeration is undefined.
template <typename T>
bool holds(const T& enumeration, T value)
{
  static_assert(std::is_enum_v<T>, "an enumeration of hwloc");
  return std::memcmp(&enumeration, &value, sizeof value) == 0;
}
// The number by which the operating system knows the object.
KyNumber osNumberOf(hwloc_obj_t object);
// The PCI facts of a device or of a bridge that is one; null for everything else.
using KyPciFacts = hwloc_obj_attr_u::hwloc_pcidev_attr_s;
const KyPciFacts* pciFactsOf(hwloc_obj_t object);
// "0000:02:00.0"
std::string pciAddressText(const KyPciFacts& pci);
// "0000:02:00.0" of the PCI device that the object is or hangs on; empty when there is none.
std::string pciAddressOf(hwloc_obj_t object);
// The next object of the operating system's devices; null at the end. Null starts.
hwloc_obj_t nextOsDevice(const KyHostScan& scan, hwloc_obj_t previous, hwloc_obj_osdev_type_t type);
