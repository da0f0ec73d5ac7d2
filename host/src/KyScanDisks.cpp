// KyScanDisks.cpp: disks. Optical, floppy and tape drives and memory that poses as a block device are none.
#include <array>
#include <set>
#include <string_view>

#include "KyHostScan.h"
#include "KyHostText.h"

namespace
{
bool startsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

bool isDisk(std::string_view name, std::string_view subtype)
{
  constexpr std::array<std::string_view, 4> otherNames = {"sr", "fd", "st", "dax"};
  constexpr std::array<std::string_view, 3> otherTypes = {"Tape", "Removable Media Device", "SPM"};
  for (const std::string_view other : otherNames)
    if (startsWith(name, other)) return false;
  for (const std::string_view other : otherTypes)
    if (subtype == other) return false;
  return true;
}

// A disk as hwloc (device), /sys (folder) or both tell it.
class KyCDiskFacts
{
public:
  KyCDiskFacts(const KyHostScan& scan, hwloc_obj_t device, const std::string& name) : m_device(device)
  {
    if (scan.sources == nullptr || name.empty() || name.find('/') != std::string::npos) return;
    m_sources = scan.sources;
    m_folder = "block/" + name + "/";
  }

  // The info, else the first of the files that tells something.
  std::string text(const char* info, std::initializer_list<const char*> files) const
  {
    std::string found = m_device != nullptr ? infoOf(m_device, info) : std::string();
    for (const char* const file : files)
      if (found.empty()) found = KyNHostText::told(sysFile(file));
    return found;
  }

  KyNumber number(const char* info, unsigned long long infoFactor, const char* file,
                  unsigned long long fileFactor) const
  {
    KyNumber found;
    if (m_device != nullptr) found = KyNHostText::scaled(KyNHostText::toNumber(infoOf(m_device, info)), infoFactor);
    return found ? found : KyNHostText::scaled(KyNHostText::toNumber(sysFile(file)), fileFactor);
  }

private:
  std::string sysFile(const char* file) const
  {
    return m_sources != nullptr ? m_sources->sysFile(m_folder + file) : std::string();
  }

  hwloc_obj_t m_device;
  const KyHostSources* m_sources = nullptr;
  std::string m_folder;
};

// SCSI calls every SATA disk's maker "ATA", and virtual disks have a number there.
std::string vendorOf(const KyCDiskFacts& facts)
{
  const std::string vendor = facts.text("Vendor", {"device/vendor"});
  return vendor == "ATA" || startsWith(vendor, "0x") ? std::string() : vendor;
}

void addDisk(const KyHostScan& scan, const std::string& name, hwloc_obj_t device, unsigned int index)
{
  KyCInventoryItem* const item = addItem(scan, scan.root, KyNInventoryIDs::HARDDRIVE[index]);
  if (item == nullptr) return;
  const KyCDiskFacts facts(scan, device, name);
  addText(scan, *item, KyNInventoryIDs::NAME, KyNHostText::clean(name));
  addText(scan, *item, KyNInventoryIDs::VENDOR, vendorOf(facts));
  addText(scan, *item, KyNInventoryIDs::MODEL, facts.text("Model", {"device/model"}));
  addText(scan, *item, KyNInventoryIDs::SERIAL_NUMBER, facts.text("SerialNumber", {"serial", "device/serial"}));
  addVersion(scan, *item, KyNInventoryIDs::VERSION, facts.text("Revision", {"device/rev", "device/firmware_rev"}));
  addNumber(scan, *item, KyNInventoryIDs::SIZE, facts.number("Size", 1024, "size", 512), "B");
  addNumber(scan, *item, KyNInventoryIDs::PAGE_SIZE, facts.number("SectorSize", 1, "queue/logical_block_size", 1), "B");
  if (device != nullptr) addText(scan, *item, KyNInventoryIDs::PARENT, pciAddressOf(device));
}
}    // namespace

void scanDisks(const KyHostScan& scan)
{
  unsigned int count = 0;
  std::set<std::string> known;
  for (hwloc_obj_t device = nextOsDevice(scan, nullptr, HWLOC_OBJ_OSDEV_BLOCK); device != nullptr;
       device = nextOsDevice(scan, device, HWLOC_OBJ_OSDEV_BLOCK))
  {
    const std::string name = device->name != nullptr ? device->name : "";
    known.insert(name);
    if (isDisk(name, device->subtype != nullptr ? device->subtype : "")) addDisk(scan, name, device, ++count);
  }
  if (scan.sources == nullptr) return;
  for (const std::string& name : scan.sources->sysFoldersWith("block", "device"))
    if (known.count(name) == 0 && isDisk(name, "")) addDisk(scan, name, nullptr, ++count);
}
