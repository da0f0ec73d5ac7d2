// KyScanOs.cpp: the operating system.
#include "KyHostScan.h"
#include "KyHostText.h"
#include "KyLiveValues.h"

void scanOs(const KyHostScan& scan)
{
  const hwloc_obj_t machine = hwloc_get_root_obj(scan.topology);
  const KyCInventoryAddress& os = KyNInventoryIDs::OS_INFO;
  addText(scan, scan.root, os / KyNInventoryIDs::OS_TYPE, infoOf(machine, "OSName"));
  addVersion(scan, scan.root, os / KyNInventoryIDs::VERSION, infoOf(machine, "OSRelease"));
  addText(scan, scan.root, os / KyNInventoryIDs::INFO, infoOf(machine, "OSVersion"));
  if (scan.sources == nullptr) return;

  const std::string release = scan.sources->etcFile("os-release");
  const auto value = [&release](const char* key)
  { return KyNHostText::told(KyNHostText::valueOfKey(release, key, '=')); };
  addText(scan, scan.root, os / KyNInventoryIDs::PRODUCT, value("NAME"));
  addText(scan, scan.root, os / KyNInventoryIDs::NAME, value("PRETTY_NAME"));
  addVersion(scan, scan.root, os / KyNInventoryIDs::PRODUCT_VERSION, value("VERSION_ID"));
  addLiveUptime(scan);
}
