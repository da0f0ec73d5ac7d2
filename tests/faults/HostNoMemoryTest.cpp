// HostNoMemoryTest.cpp: the host library while allocations fail: the inventory of a machine, and its live values read again.
// hwloc itself was not made for that, so it is asked beforehand. KyScenario.h says what must hold.
#include <filesystem>

#include "KyHostScan.h"
#include "KyHostTopology.h"
#include "faults/KyScenario.h"
#include "support/KyFiles.h"

namespace
{
// A machine that tells of everything that the library looks for.
class KyMachine
{
public:
  KyMachine()
  {
    KyCErrorListPool pool;
    EXPECT_TRUE(m_topology.loadFile(pool, KY_SOURCE_DIR "/host/tests/data/small-machine.xml"));
    const std::pair<const char*, const char*> files[] = {
        {"proc/meminfo", "MemTotal:       24684096 kB\nMemAvailable:   24213808 kB\n"},
        {"proc/uptime", "13493.83 9869.10\n"},
        {"proc/cpuinfo", "processor\t: 0\ncpu MHz\t\t: 1995.312\n\nprocessor\t: 1\ncpu MHz\t\t: 2100.000\n"},
        {"etc/os-release",
         "NAME=\"Example Linux\"\nVERSION_ID=\"12.5\"\nPRETTY_NAME=\"Example Linux 12.5 (steady)\"\n"},
        {"sys/class/dmi/id/board_name", "A board with a name of its own\n"},
        {"sys/class/net/eth7/device/vendor", "0x8086\n"},
        {"sys/class/net/eth7/address", "02:00:00:00:00:07\n"},
        {"sys/class/net/eth7/operstate", "up\n"},
        {"sys/class/net/eth7/speed", "1000\n"},
        {"sys/class/net/eth7/duplex", "full\n"},
        {"sys/class/hwmon/hwmon2/name", "a sensor with a long name\n"},
        {"sys/class/hwmon/hwmon2/temp1_input", "45000\n"},
        {"sys/class/hwmon/hwmon2/temp1_label", "Package id 0, first\n"},
        {"sys/class/thermal/thermal_zone0/type", "x86_pkg_temp\n"},
        {"sys/class/thermal/thermal_zone0/temp", "30125\n"},
        {"sys/block/sdz/device/vendor", "EXAMPLE\n"},
        {"sys/block/sdz/device/model", "A disk with a long name\n"},
        {"sys/block/sdz/size", "1000215216\n"},
        {"sys/devices/system/cpu/cpu0/cpufreq/scaling_cur_freq", "1800000\n"},
    };
    for (const auto& [name, content] : files)
      m_folder.write(name, content);
  }

  KyCInventoryItem* scan(KyCErrorListPool& pool)
  {
    return buildInventory(pool, m_topology.handle(), &m_sources, "scanMachine", "this machine");
  }

private:
  KyTemporaryFolder m_folder;
  const KyHostSources m_sources = {m_folder.path("sys"), m_folder.path("proc"), m_folder.path("etc")};
  KyCHostTopology m_topology;
};

KyMachine& machine()
{
  static KyMachine instance;
  return instance;
}

constexpr auto MAY_THROW = KyScenario::MAY_THROW;

const KyScenario s_host[] = {
    {"scan", MAY_THROW,
     [](KyScene& scene)
     {
       scene.made.reset(machine().scan(scene.pool));
       return scene.made != nullptr;
     }},
    {"scan and update", MAY_THROW,
     [](KyScene& scene)
     {
       scene.made.reset(machine().scan(scene.pool));
       if (scene.made == nullptr) return false;
       scene.made->updateParameters(scene.pool, nullptr);
       return true;
     },
     true},
};
}    // namespace

TEST(HostNoMemory, scans)
{
  const auto openFiles = []
  {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
  };
  machine();
  const auto before = openFiles();
  kyRunAll(s_host);
  EXPECT_EQ(openFiles(), before) << "files stay open";
}
