// KyScanSystem.cpp: the machine as a whole, its mainboard and its BIOS.
#include "KyHostScan.h"
#include "KyHostText.h"

namespace
{
// What the firmware's tables (DMI) tell: hwloc's info, and the file below /sys/class/dmi/id of the same content.
std::string dmi(const KyHostScan& scan, const char* info, const char* file)
{
  return infoOrSysFile(scan, hwloc_get_root_obj(scan.topology), info, std::string("class/dmi/id/") + file);
}

// Machines without DMI (PowerPC, ARM) tell this in their device tree.
std::string dmiOrPlatform(const KyHostScan& scan, const char* info, const char* file, const char* platformInfo)
{
  const std::string text = dmi(scan, info, file);
  return text.empty() ? infoOf(hwloc_get_root_obj(scan.topology), platformInfo) : text;
}

void scanMachineItself(const KyHostScan& scan)
{
  const hwloc_obj_t machine = hwloc_get_root_obj(scan.topology);
  const char* const hostName = hwloc_obj_get_info_by_name(machine, "HostName");
  addText(scan, scan.root, KyNInventoryIDs::SYSTEMNAME, KyNHostText::clean(hostName != nullptr ? hostName : ""));
  addText(scan, scan.root, KyNInventoryIDs::VENDOR,
          dmiOrPlatform(scan, "DMISysVendor", "sys_vendor", "PlatformVendor"));
  addText(scan, scan.root, KyNInventoryIDs::MODEL,
          dmiOrPlatform(scan, "DMIProductName", "product_name", "PlatformModel"));
  addVersion(scan, scan.root, KyNInventoryIDs::VERSION,
             dmiOrPlatform(scan, "DMIProductVersion", "product_version", "PlatformRevision"));
  addText(scan, scan.root, KyNInventoryIDs::SERIAL_NUMBER, dmi(scan, "DMIProductSerial", "product_serial"));
  addText(scan, scan.root, KyNInventoryIDs::UNITID, dmi(scan, "DMIProductUUID", "product_uuid"));
  addText(scan, scan.root, KyNInventoryIDs::ARCHITECTURE, infoOf(machine, "Architecture"));
}

void scanMainboard(const KyHostScan& scan)
{
  const KyCInventoryAddress& board = KyNInventoryIDs::MAINBOARD;
  addText(scan, scan.root, board / KyNInventoryIDs::VENDOR, dmi(scan, "DMIBoardVendor", "board_vendor"));
  addText(scan, scan.root, board / KyNInventoryIDs::MODEL,
          dmiOrPlatform(scan, "DMIBoardName", "board_name", "PlatformBoardID"));
  addVersion(scan, scan.root, board / KyNInventoryIDs::VERSION, dmi(scan, "DMIBoardVersion", "board_version"));
  addText(scan, scan.root, board / KyNInventoryIDs::SERIAL_NUMBER, dmi(scan, "DMIBoardSerial", "board_serial"));
}

void scanBios(const KyHostScan& scan)
{
  const KyCInventoryAddress bios = KyNInventoryIDs::MAINBOARD / KyNInventoryIDs::BIOS;
  addText(scan, scan.root, bios / KyNInventoryIDs::VENDOR, dmi(scan, "DMIBIOSVendor", "bios_vendor"));
  addVersion(scan, scan.root, bios / KyNInventoryIDs::VERSION, dmi(scan, "DMIBIOSVersion", "bios_version"));
  addText(scan, scan.root, bios / KyNInventoryIDs::RELEASE_DATE, dmi(scan, "DMIBIOSDate", "bios_date"));
}
}    // namespace

void scanSystem(const KyHostScan& scan)
{
  scanMachineItself(scan);
  scanMainboard(scan);
  scanBios(scan);
}
