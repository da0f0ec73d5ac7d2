// KyScanTemperatures.cpp: the temperatures that the machine's sensors show.
#include "KyHostScan.h"
#include "KyHostText.h"
#include "KyLiveValues.h"

namespace
{
unsigned int scanSensors(const KyHostScan& scan)
{
  const KyHostSources& sources = *scan.sources;
  unsigned int count = 0;
  for (const unsigned int chip : sources.sysNumbersOf("class/hwmon", "hwmon", ""))
  {
    const std::string chipName = "hwmon" + std::to_string(chip);
    const std::string folder = "class/hwmon/" + chipName;
    const std::string name = KyNHostText::told(sources.sysFile(folder + "/name"));
    for (const unsigned int sensor : sources.sysNumbersOf(folder, "temp", "_input"))
    {
      const std::string sensorName = "temp" + std::to_string(sensor);
      const std::string label = KyNHostText::told(sources.sysFile(folder + "/" + sensorName + "_label"));
      const KyCInventoryAddress id = KyNInventoryIDs::TEMPERATURE_MONITOR[count + 1];
      if (addLiveTemperature(scan, id, name, label, chipName + "/" + sensorName)) ++count;
    }
  }
  return count;
}

void scanZones(const KyHostScan& scan)
{
  unsigned int count = 0;
  for (const unsigned int zone : scan.sources->sysNumbersOf("class/thermal", "thermal_zone", ""))
  {
    const std::string zoneName = "thermal_zone" + std::to_string(zone);
    const std::string type = KyNHostText::told(scan.sources->sysFile("class/thermal/" + zoneName + "/type"));
    const KyCInventoryAddress id = KyNInventoryIDs::TEMPERATURE_MONITOR[count + 1];
    if (addLiveTemperature(scan, id, type, std::string(), zoneName)) ++count;
  }
}
}    // namespace

// Thermal zones mostly show sensors over again.
void scanTemperatures(const KyHostScan& scan)
{
  if (scan.sources != nullptr && scanSensors(scan) == 0) scanZones(scan);
}
