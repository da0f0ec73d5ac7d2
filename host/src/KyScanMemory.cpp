// KyScanMemory.cpp: memory as the operating system sees it (NUMA nodes) and, where told, its modules.
#include <string_view>

#include "KyHostScan.h"
#include "KyHostText.h"
#include "KyLiveValues.h"

namespace
{
// "MemTotal:       24684096 kB" of /proc/meminfo, in bytes.
KyNumber totalOfProc(const KyHostScan& scan)
{
  if (scan.sources == nullptr) return std::nullopt;
  const std::string value = KyNHostText::valueOfKey(scan.sources->procFile("meminfo"), "MemTotal", ':');
  const std::size_t unit = value.find(" kB");
  if (unit == std::string::npos) return std::nullopt;
  return KyNHostText::scaled(KyNHostText::toNumber(std::string_view(value).substr(0, unit)), 1024);
}

// Page sizes stand in rising order; the smallest is the one that every program gets.
KyNumber pageSizeOf(hwloc_obj_t node)
{
  if (node->attr->numanode.page_types_len == 0 || node->attr->numanode.page_types == nullptr) return std::nullopt;
  return KyNHostText::scaled(node->attr->numanode.page_types[0].size, 1);
}

void addNode(const KyHostScan& scan, hwloc_obj_t node, unsigned int index, KyNumber size)
{
  KyCInventoryItem* const item = addItem(scan, scan.root, KyNInventoryIDs::RAM[index]);
  if (item == nullptr) return;
  addCount(scan, *item, KyNInventoryIDs::ID, osNumberOf(node));
  addText(scan, *item, KyNInventoryIDs::TYPE, KyNHostText::told(node->subtype != nullptr ? node->subtype : ""));
  addNumber(scan, *item, KyNInventoryIDs::SIZE, size, "B");
  addNumber(scan, *item, KyNInventoryIDs::PAGE_SIZE, pageSizeOf(node), "B");
}

void addNodes(const KyHostScan& scan, KyNumber total)
{
  const bool single = hwloc_get_nbobjs_by_type(scan.topology, HWLOC_OBJ_NUMANODE) == 1;
  unsigned int count = 0;
  for (hwloc_obj_t node = hwloc_get_next_obj_by_type(scan.topology, HWLOC_OBJ_NUMANODE, nullptr); node != nullptr;
       node = hwloc_get_next_obj_by_type(scan.topology, HWLOC_OBJ_NUMANODE, node))
  {
    if (node->attr == nullptr) continue;
    const KyNumber ownSize = KyNHostText::scaled(node->attr->numanode.local_memory, 1);
    const KyNumber size = single && total ? total : ownSize;
    if (size) addNode(scan, node, ++count, size);    // a node without memory only groups processors
  }
}

void addModules(const KyHostScan& scan)
{
  unsigned int count = 0;
  for (hwloc_obj_t misc = hwloc_get_next_obj_by_depth(scan.topology, HWLOC_TYPE_DEPTH_MISC, nullptr); misc != nullptr;
       misc = hwloc_get_next_obj_by_depth(scan.topology, HWLOC_TYPE_DEPTH_MISC, misc))
  {
    if (misc->subtype == nullptr || std::string_view(misc->subtype) != "MemoryModule") continue;
    KyCInventoryItem* const item = addItem(scan, scan.root, KyNInventoryIDs::MODULE[++count]);
    if (item == nullptr) return;
    addText(scan, *item, KyNInventoryIDs::LOCATION, infoOf(misc, "DeviceLocation"));
    addText(scan, *item, KyNInventoryIDs::VENDOR, infoOf(misc, "Vendor"));
    addText(scan, *item, KyNInventoryIDs::VENDOR_PART_NUMBER, infoOf(misc, "PartNumber"));
    addText(scan, *item, KyNInventoryIDs::SERIAL_NUMBER, infoOf(misc, "SerialNumber"));
  }
}
}    // namespace

// /proc before hwloc: a machine that hands free memory back to its hypervisor shrinks and grows in hwloc's source from
// one moment to the next.
void scanMemory(const KyHostScan& scan)
{
  KyNumber total = totalOfProc(scan);
  if (!total) total = KyNHostText::scaled(hwloc_get_root_obj(scan.topology)->total_memory, 1);
  addNumber(scan, scan.root, KyNInventoryIDs::MEMORY_SIZE, total, "B");
  addLiveAvailableMemory(scan);
  addNodes(scan, total);
  addModules(scan);
}
