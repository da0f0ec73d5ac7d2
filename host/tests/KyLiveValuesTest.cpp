// KyLiveValuesTest.cpp: values that change while the machine runs, with folders that stand in for /sys and /proc and
// change between the walks.
#include "KyLiveValues.h"

#include <thread>

#include "KyFakeMachine.h"
#include "inventoryhost/KyNInventoryHost.h"

namespace
{
using Lines = std::vector<std::string>;

constexpr const char* ETH0 = "sys/class/net/eth0/";

// What the walk itself says behind the update method's report.
KyReport cannotUpdate(const std::string& address)
{
  return {0x1300807, "updateParameters", "Cannot update value for parameter " + address + "."};
}

KyReport cannotRead(const char* function, const std::string& path, const std::string& reason)
{
  return {0x1400007, function, "Cannot read the current value from " + path + ": " + reason + "."};
}

// A single-processor machine whose walk has nothing but the one value to update.
class KyLiveValues : public ::testing::Test
{
protected:
  void writeEth0(const char* state, const char* speed, const char* duplex)
  {
    machine.write(std::string(ETH0) + "device/vendor", "0x8086\n");
    machine.write(std::string(ETH0) + "operstate", state);
    machine.write(std::string(ETH0) + "speed", speed);
    machine.write(std::string(ETH0) + "duplex", duplex);
  }

  void scan(const char* description = "pack:1 [numa(memory=4294967296)] core:2 pu:1")
  {
    tree = machine.scan(description);
    ASSERT_NE(tree, nullptr);
  }

  void update() { tree->updateParameters(pool, nullptr); }

  // Updates; the one value is refused, for this reason, and stays as it was.
  void expectRefusal(const std::string& address, const char* function, const std::string& file,
                     const std::string& reason)
  {
    const Lines before = linesOf(*tree);
    update();
    EXPECT_REPORTS(pool, cannotRead(function, machine.path(file), reason), cannotUpdate(address));
    EXPECT_EQ(linesOf(*tree), before);
  }

  KyFakeMachine machine;
  KyTree tree;
  KyTestPool pool;
};

unsigned int countOfLiveValues(const KyCInventoryItem& item)
{
  unsigned int count = 0;
  for (KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0); parameter != nullptr;
       parameter = parameter->getNext())
    count += parameter->getUpdateMethod() != nullptr ? 1 : 0;
  for (const KyCInventoryItem* sub = item.getFirstSubItem(); sub != nullptr; sub = sub->getNext())
    count += countOfLiveValues(*sub);
  return count;
}
}    // namespace

// ---- memory

TEST_F(KyLiveValues, availableMemoryFollowsMeminfo)
{
  machine.write("proc/meminfo", "MemTotal:       24684096 kB\nMemAvailable:   24213808 kB\n");
  scan();
  EXPECT_TRUE(hasLine(*tree, "AVAILABLE ULong64 24794939392 B"));
  machine.write("proc/meminfo", "MemTotal:       24684096 kB\nMemAvailable:   1 kB\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "AVAILABLE ULong64 1024 B"));
  EXPECT_TRUE(hasLine(*tree, "MEMORY_SIZE ULong64 25276514304 B"));
  machine.write("proc/meminfo", "MemAvailable:   0 kB\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "AVAILABLE ULong64 0 B"));
}

TEST_F(KyLiveValues, availableMemoryThatIsNotToldIsLeftOut)
{
  for (const char* const meminfo : {"", "MemTotal: 1 kB\n", "MemAvailable: lots kB\n", "MemAvailable: 5\n",
                                    "MemAvailable: 0 kB\n", "MemAvailable: 99999999999999999999 kB\n"})
  {
    machine.write("proc/meminfo", meminfo);
    scan();
    EXPECT_EQ(linesOf(*tree, "AVAILABLE"), Lines{}) << meminfo;
    EXPECT_EQ(countOfLiveValues(*tree), 0u) << meminfo;
  }
}

TEST_F(KyLiveValues, availableMemoryThatCannotBeReadIsReportedAndStays)
{
  machine.write("proc/meminfo", "MemAvailable:   16 kB\n");
  scan();
  const auto refuse = [this](const char* reason)
  { expectRefusal("AVAILABLE", "updateAvailableMemory", "proc/meminfo", reason); };
  for (const std::string& content : {std::string("MemTotal: 1 kB\n"), std::string("MemAvailable: -4 kB\n"),
                                     std::string("MemAvailable: 18014398509481984 kB\n"), std::string(200000, '9')})
  {
    machine.write("proc/meminfo", content);
    refuse("unexpected content");
  }
  machine.remove("proc/meminfo");
  refuse("No such file or directory");
  machine.write("proc/meminfo/x", "");
  refuse("Is a directory");
  machine.remove("proc/meminfo");
  machine.write("proc/meminfo", "MemAvailable: 18014398509481983 kB\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "AVAILABLE ULong64 18446744073709550592 B"));
}

// ---- uptime

TEST_F(KyLiveValues, uptimeIsInMilliseconds)
{
  machine.write("proc/uptime", "13493.83 9869.10\n");
  scan();
  EXPECT_TRUE(hasLine(*tree, "OS_INFO/TIMER ULong64 13493830 ms"));
  machine.write("proc/uptime", "13494.03 9869.10\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "OS_INFO/TIMER ULong64 13494030 ms"));
}

TEST_F(KyLiveValues, uptimeThatCannotBeReadIsReportedAndStays)
{
  machine.write("proc/uptime", "13493.83 9869.10\n");
  scan();
  for (const char* const content : {"", "soon\n", "-1.00 2.00\n", "99999999999999999999.00 1.00\n", "1e9 2\n"})
  {
    machine.write("proc/uptime", content);
    expectRefusal("OS_INFO/TIMER", "updateUptime", "proc/uptime", "unexpected content");
  }
  machine.remove("proc/uptime");
  expectRefusal("OS_INFO/TIMER", "updateUptime", "proc/uptime", "No such file or directory");
  scan();
  EXPECT_EQ(linesOf(*tree, "OS_INFO"), Lines{});
}

// ---- processors

TEST_F(KyLiveValues, frequencyIsTheHighestOfTheProcessorsThreads)
{
  machine.write("sys/devices/system/cpu/cpu0/cpufreq/scaling_cur_freq", "1800000\n");
  machine.write("sys/devices/system/cpu/cpu1/cpufreq/scaling_cur_freq", "2400001\n");
  machine.write("proc/cpuinfo", "processor\t: 0\ncpu MHz\t\t: 5000.000\n");
  scan();
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 2400001000 Hz"});
  machine.write("sys/devices/system/cpu/cpu1/cpufreq/scaling_cur_freq", "800000\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 1800000000 Hz"});
  machine.remove("sys/devices/system/cpu/cpu0/cpufreq");    // a thread that was taken offline
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 800000000 Hz"});
}

TEST_F(KyLiveValues, eachProcessorHasTheFrequencyOfItsOwnThreads)
{
  const char* const packages[] = {"0\n", "1\n", "0\n", "1\n", "7\n"};
  const char* const frequencies[] = {"1000000\n", "2000000\n", "1500000\n", "2500000\n", "9000000\n"};
  for (unsigned int cpu = 0; cpu < 5; ++cpu)
  {
    const std::string folder = "sys/devices/system/cpu/cpu" + std::to_string(cpu);
    machine.write(folder + "/topology/physical_package_id", packages[cpu]);
    machine.write(folder + "/cpufreq/scaling_cur_freq", frequencies[cpu]);
  }
  scan("pack:2 core:2 pu:1");
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 1500000000 Hz"});
  EXPECT_EQ(linesOf(*tree, "CPU[2]/CLOCK"), Lines{"CPU[2]/CLOCK_FREQUENCY ULong64 2500000000 Hz"});
  machine.write("sys/devices/system/cpu/cpu3/cpufreq/scaling_cur_freq", "2600000\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 1500000000 Hz"});
  EXPECT_EQ(linesOf(*tree, "CPU[2]/CLOCK"), Lines{"CPU[2]/CLOCK_FREQUENCY ULong64 2600000000 Hz"});
}

TEST_F(KyLiveValues, frequencyComesFromCpuinfoWhereThereIsNoScaling)
{
  machine.write("proc/cpuinfo",
                "processor\t: 0\ncpu MHz\t\t: 2249.998\nphysical id\t: 0\n\n"
                "processor\t: 1\ncpu MHz\t\t: 2300\nphysical id\t: 1\n\n");
  scan();
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 2300000000 Hz"});
  scan("pack:2 core:1 pu:1");
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 2249998000 Hz"});
  EXPECT_EQ(linesOf(*tree, "CPU[2]/CLOCK"), Lines{"CPU[2]/CLOCK_FREQUENCY ULong64 2300000000 Hz"});
}

TEST_F(KyLiveValues, cpuinfoOfThousandsOfThreadsIsReadToItsEnd)
{
  std::string cpuinfo;
  for (unsigned int cpu = 0; cpu < 4000; ++cpu)
    cpuinfo += "processor\t: " + std::to_string(cpu) + "\nflags\t: " + std::string(1000, 'f') + "\n\n";
  machine.write("proc/cpuinfo", cpuinfo + "processor\t: 4000\ncpu MHz\t: 3000.5\n");
  scan();
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{"CPU/CLOCK_FREQUENCY ULong64 3000500000 Hz"});
}

TEST_F(KyLiveValues, frequencyThatIsNotToldIsLeftOut)
{
  machine.write("sys/devices/system/cpu/cpu0/cpufreq/scaling_cur_freq", "<unknown>\n");
  machine.write("proc/cpuinfo", "processor\t: 0\ncpu MHz\t\t: 0.000\n\ncpu MHz : fast\n\ncpu MHz dynamic : 5\n");
  scan();
  EXPECT_EQ(linesOf(*tree, "CPU/CLOCK"), Lines{});
}

TEST_F(KyLiveValues, frequencyThatCannotBeReadIsReportedAndStays)
{
  const std::string scaling = "sys/devices/system/cpu/cpu0/cpufreq/scaling_cur_freq";
  const auto refuse = [this](const std::string& file, const char* reason)
  { expectRefusal("CPU/CLOCK_FREQUENCY", "updateFrequency", file, reason); };
  machine.write(scaling, "1800000\n");
  scan();
  for (const char* const content : {"<unknown>\n", "0\n", "99999999999999999999999999\n", "\xFF\x01\n"})
  {
    machine.write(scaling, content);
    refuse(scaling, "unexpected content");
  }
  machine.remove(scaling);
  machine.write(scaling + "/x", "");
  refuse(scaling, "Is a directory");
  machine.remove(scaling);
  refuse("proc/cpuinfo", "No such file or directory");
  machine.write("proc/cpuinfo", "processor\t: 0\n");
  refuse("proc/cpuinfo", "unexpected content");
}

// ---- network

TEST_F(KyLiveValues, aLinkThatGoesDownIsAStateAndNoFailure)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  const Lines up = {"NETWORK/INTERFACE/NAME String \"eth0\"", "NETWORK/INTERFACE/STATUS String \"up\"",
                    "NETWORK/INTERFACE/SPEED ULong64 1000 Mbit/s", "NETWORK/INTERFACE/DUPLEX String \"full\""};
  const Lines down = {"NETWORK/INTERFACE/NAME String \"eth0\"", "NETWORK/INTERFACE/STATUS String \"down\"",
                      "NETWORK/INTERFACE/SPEED ULong64 0 Mbit/s", "NETWORK/INTERFACE/DUPLEX String \"unknown\""};
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), up);

  writeEth0("down\n", "-1\n", "unknown\n");    // the cable was pulled
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), down);

  writeEth0("up\n", "1000\n", "full\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), up);

  machine.remove("sys/class/net/eth0/speed");    // switched off: the kernel refuses to tell these two
  machine.remove("sys/class/net/eth0/duplex");
  machine.write("sys/class/net/eth0/operstate", "down\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), down);
}

TEST_F(KyLiveValues, aLinkWithoutCarrierAtTheScanShowsWhenTheCableIsPluggedIn)
{
  for (const char* const state : {"down\n", "lowerlayerdown\n", "dormant\n"})
  {
    writeEth0(state, "-1\n", "unknown\n");
    scan();
    EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/SPEED ULong64 0 Mbit/s")) << state;
    EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/DUPLEX String \"unknown\"")) << state;
    EXPECT_EQ(countOfLiveValues(*tree), 3u) << state;
    writeEth0("up\n", "1000\n", "full\n");
    update();
    EXPECT_NO_REPORTS(pool);
    EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/STATUS String \"up\"")) << state;
    EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/SPEED ULong64 1000 Mbit/s")) << state;
    EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/DUPLEX String \"full\"")) << state;
  }
}

TEST_F(KyLiveValues, anInterfaceThatIsSwitchedOffAtTheScanShowsWhenItIsSwitchedOn)
{
  writeEth0("down\n", "", "");
  for (const char* const file : {"speed", "duplex"})    // are there, and refuse to be read
  {
    machine.remove(ETH0 + std::string(file));
    machine.write(ETH0 + std::string(file) + "/x", "");
  }
  scan();
  const Lines down = {"NETWORK/INTERFACE/NAME String \"eth0\"", "NETWORK/INTERFACE/STATUS String \"down\"",
                      "NETWORK/INTERFACE/SPEED ULong64 0 Mbit/s", "NETWORK/INTERFACE/DUPLEX String \"unknown\""};
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), down);
  machine.remove(ETH0 + std::string("speed"));
  machine.remove(ETH0 + std::string("duplex"));
  writeEth0("up\n", "100\n", "half\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/SPEED ULong64 100 Mbit/s"));
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/DUPLEX String \"half\""));
}

TEST_F(KyLiveValues, aLinkWithoutCarrierHasNoSpeedOrDuplexWithoutTheirFiles)
{
  writeEth0("down\n", "-1\n", "unknown\n");
  machine.remove(ETH0 + std::string("speed"));
  scan();
  const Lines withoutSpeed = {"NETWORK/INTERFACE/NAME String \"eth0\"", "NETWORK/INTERFACE/STATUS String \"down\"",
                              "NETWORK/INTERFACE/DUPLEX String \"unknown\""};
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), withoutSpeed);
  machine.remove(ETH0 + std::string("duplex"));
  scan();
  const Lines withoutBoth = {"NETWORK/INTERFACE/NAME String \"eth0\"", "NETWORK/INTERFACE/STATUS String \"down\""};
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), withoutBoth);
}

TEST_F(KyLiveValues, aLinkThatIsUpOrOfUnknownStateHasNoSpeedThatIsNotTold)
{
  for (const char* const state : {"up\n", "unknown\n", "odd\n"})
  {
    writeEth0(state, "-1\n", "unknown\n");
    scan();
    EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/SPEED"), Lines{}) << state;
    EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/DUPLEX"), Lines{}) << state;
  }
}

// The kernel answers EINVAL for drivers that have no such question, as it does for interfaces that are switched off.
TEST_F(KyLiveValues, aDriverThatIsNeverAskedForTheSpeedGivesZeroWhenTheLinkGoesUp)
{
  const char* const refused = "/sys/class/net/lo/speed";
  std::string text;
  if (KyHostSources::readFile(refused, KyHostSources::MAX_FILE, text) != EINVAL) GTEST_SKIP() << "no file that refuses";
  writeEth0("down\n", "", "");
  for (const char* const file : {"speed", "duplex"})
  {
    machine.remove(ETH0 + std::string(file));
    std::filesystem::create_symlink(refused, machine.path(ETH0 + std::string(file)));
  }
  scan();
  machine.write(std::string(ETH0) + "operstate", "up\n");
  update();
  EXPECT_NO_REPORTS(pool);
  const Lines expected = {"NETWORK/INTERFACE/NAME String \"eth0\"", "NETWORK/INTERFACE/STATUS String \"up\"",
                          "NETWORK/INTERFACE/SPEED ULong64 0 Mbit/s", "NETWORK/INTERFACE/DUPLEX String \"unknown\""};
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/"), expected);
}

TEST_F(KyLiveValues, aDriverThatKnowsNoSpeedGivesZero)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  writeEth0("up\n", "4294967295\n", "half\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/SPEED ULong64 0 Mbit/s"));
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/DUPLEX String \"half\""));
}

TEST_F(KyLiveValues, theCarrierTellsWhereTheStateIsUnknown)
{
  writeEth0("unknown\n", "-1\n", "unknown\n");
  scan();
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/STATUS"), Lines{});
  machine.write("sys/class/net/eth0/carrier", "1\n");
  scan();
  EXPECT_EQ(linesOf(*tree, "NETWORK/INTERFACE/STATUS"), Lines{"NETWORK/INTERFACE/STATUS String \"up\""});
  machine.write("sys/class/net/eth0/carrier", "0\n");
  update();
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/STATUS String \"down\""));
  machine.remove("sys/class/net/eth0/carrier");
  update();
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/STATUS String \"unknown\""));
  EXPECT_NO_REPORTS(pool);
}

TEST_F(KyLiveValues, anInterfaceThatIsGoneIsReportedForEachOfItsValues)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  const Lines before = linesOf(*tree);
  machine.remove("sys/class/net/eth0");
  update();
  const std::string reason = "No such file or directory";
  EXPECT_REPORTS(pool, cannotRead("updateLinkStatus", machine.path("sys/class/net/eth0/operstate"), reason),
                 cannotUpdate("NETWORK/INTERFACE/STATUS"),
                 cannotRead("updateLinkSpeed", machine.path("sys/class/net/eth0/speed"), reason),
                 cannotUpdate("NETWORK/INTERFACE/SPEED"),
                 cannotRead("updateDuplex", machine.path("sys/class/net/eth0/duplex"), reason),
                 cannotUpdate("NETWORK/INTERFACE/DUPLEX"));
  EXPECT_EQ(linesOf(*tree), before);
}

TEST_F(KyLiveValues, oddContentOfAnInterfacesFilesIsReported)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  for (const std::string& content :
       {std::string("\n"), std::string("\xFF\xFE%s%n"), std::string(200000, 'A'), std::string(100, '9')})
  {
    writeEth0(content.c_str(), content.c_str(), content.c_str());
    update();
    const std::string reason = "unexpected content";
    EXPECT_REPORTS(pool, cannotRead("updateLinkStatus", machine.path("sys/class/net/eth0/operstate"), reason),
                   cannotUpdate("NETWORK/INTERFACE/STATUS"),
                   cannotRead("updateLinkSpeed", machine.path("sys/class/net/eth0/speed"), reason),
                   cannotUpdate("NETWORK/INTERFACE/SPEED"),
                   cannotRead("updateDuplex", machine.path("sys/class/net/eth0/duplex"), reason),
                   cannotUpdate("NETWORK/INTERFACE/DUPLEX"));
    EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/SPEED ULong64 1000 Mbit/s"));
  }
}

TEST_F(KyLiveValues, aSpeedThatCannotBeReadWhileTheLinkIsUpIsReported)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  machine.remove("sys/class/net/eth0/speed");
  expectRefusal("NETWORK/INTERFACE/SPEED", "updateLinkSpeed", "sys/class/net/eth0/speed", "No such file or directory");
}

TEST_F(KyLiveValues, aNameThatLeadsElsewhereIsNotFollowed)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  machine.write("sys/class/other/operstate", "down\n");
  machine.write("sys/class/other/speed", "10\n");
  machine.write("sys/class/other/duplex", "half\n");
  tree->setValue<KyCString>(pool, KyNInventoryIDs::NETWORK / KyNInventoryIDs::INTERFACE / KyNInventoryIDs::NAME,
                            KyCString("../other"));
  update();
  EXPECT_EQ(pool.takeReports().size(), 6u);
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/STATUS String \"up\""));
}

// ---- temperatures

TEST_F(KyLiveValues, sensorsHaveAChipALabelAndATemperature)
{
  machine.write("sys/class/hwmon/hwmon10/name", "nvme\n");
  machine.write("sys/class/hwmon/hwmon10/temp1_input", "-5250\n");
  machine.write("sys/class/hwmon/hwmon2/name", "coretemp\n");
  machine.write("sys/class/hwmon/hwmon2/temp1_input", "45000\n");
  machine.write("sys/class/hwmon/hwmon2/temp1_label", "Package id 0\n");
  machine.write("sys/class/hwmon/hwmon2/temp3_input", "<none>\n");
  machine.write("sys/class/thermal/thermal_zone0/temp", "30000\n");
  scan();
  const Lines expected = {
      "TEMPERATURE_MONITOR",
      "TEMPERATURE_MONITOR/NAME String \"coretemp\"",
      "TEMPERATURE_MONITOR/LOCATION String \"Package id 0\"",
      "TEMPERATURE_MONITOR/ADDRESS String \"hwmon2/temp1\"",
      "TEMPERATURE_MONITOR/TEMPERATURE Float64 45 \xC2\xB0"
      "C",
      "TEMPERATURE_MONITOR[2]",
      "TEMPERATURE_MONITOR[2]/NAME String \"nvme\"",
      "TEMPERATURE_MONITOR[2]/ADDRESS String \"hwmon10/temp1\"",
      "TEMPERATURE_MONITOR[2]/TEMPERATURE Float64 -5.25 \xC2\xB0"
      "C",
  };
  EXPECT_EQ(linesOf(*tree, "TEMPERATURE_MONITOR"), expected);

  machine.write("sys/class/hwmon/hwmon2/temp1_input", "45500\n");
  machine.write("sys/class/hwmon/hwmon10/temp1_input", "0\n");
  update();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree,
                      "TEMPERATURE_MONITOR/TEMPERATURE Float64 45.5 \xC2\xB0"
                      "C"));
  EXPECT_TRUE(hasLine(*tree,
                      "TEMPERATURE_MONITOR[2]/TEMPERATURE Float64 0 \xC2\xB0"
                      "C"));
}

TEST_F(KyLiveValues, thermalZonesCountWhereNoSensorTellsATemperature)
{
  machine.write("sys/class/hwmon/hwmon0/name", "acpitz\n");
  machine.write("sys/class/thermal/thermal_zone0/type", "x86_pkg_temp\n");
  machine.write("sys/class/thermal/thermal_zone0/temp", "30125\n");
  scan();
  const Lines expected = {
      "TEMPERATURE_MONITOR",
      "TEMPERATURE_MONITOR/NAME String \"x86_pkg_temp\"",
      "TEMPERATURE_MONITOR/ADDRESS String \"thermal_zone0\"",
      "TEMPERATURE_MONITOR/TEMPERATURE Float64 30.125 \xC2\xB0"
      "C",
  };
  EXPECT_EQ(linesOf(*tree, "TEMPERATURE_MONITOR"), expected);
  machine.remove("sys/class/thermal/thermal_zone0");
  expectRefusal("TEMPERATURE_MONITOR/TEMPERATURE", "updateTemperature", "sys/class/thermal/thermal_zone0/temp",
                "No such file or directory");
}

TEST_F(KyLiveValues, aTemperatureThatCannotBeReadIsReportedAndStays)
{
  const std::string file = "sys/class/hwmon/hwmon0/temp1_input";
  machine.write(file, "45000\n");
  scan();
  for (const char* const content : {"", "warm\n", "--5\n", "-\n", "45.5\n", "99999999999999999999999\n", "\xFF\n"})
  {
    machine.write(file, content);
    expectRefusal("TEMPERATURE_MONITOR/TEMPERATURE", "updateTemperature", file, "unexpected content");
  }
  machine.remove(file);
  expectRefusal("TEMPERATURE_MONITOR/TEMPERATURE", "updateTemperature", file, "No such file or directory");
}

TEST_F(KyLiveValues, aTemperaturesAddressThatLeadsElsewhereIsNotFollowed)
{
  machine.write("sys/class/hwmon/hwmon0/temp1_input", "45000\n");
  machine.write("sys/class/other_input", "1000\n");
  scan();
  for (const char* const address : {"../other", "hwmon0/../../other", "", "hwmon0/temp1/", "hwmon/temp1"})
  {
    tree->setValue<KyCString>(pool, KyNInventoryIDs::TEMPERATURE_MONITOR / KyNInventoryIDs::ADDRESS,
                              KyCString(address));
    expectRefusal("TEMPERATURE_MONITOR/TEMPERATURE", "updateTemperature", std::string("sys/class/hwmon/") + address,
                  "No such file or directory");
  }
}

// ---- trees

TEST_F(KyLiveValues, oneFailureDoesNotKeepTheOthersFromBeingUpdated)
{
  machine.write("proc/meminfo", "MemAvailable: 16 kB\n");
  machine.write("proc/uptime", "1.00 1.00\n");
  scan();
  machine.write("proc/uptime", "2.00 1.00\n");
  machine.remove("proc/meminfo");
  update();
  EXPECT_REPORTS(pool, cannotRead("updateAvailableMemory", machine.path("proc/meminfo"), "No such file or directory"),
                 cannotUpdate("AVAILABLE"));
  EXPECT_TRUE(hasLine(*tree, "OS_INFO/TIMER ULong64 2000 ms"));
}

TEST_F(KyLiveValues, treesOfDifferentSourcesAreUpdatedEachFromItsOwn)
{
  machine.write("proc/uptime", "1.00 1.00\n");
  scan();
  KyFakeMachine other;
  other.write("proc/uptime", "5.00 1.00\n");
  const KyTree otherTree = other.scan();
  machine.write("proc/uptime", "2.00 1.00\n");
  other.write("proc/uptime", "6.00 1.00\n");
  std::thread thread(
      [&otherTree]()
      {
        KyTestPool otherPool;
        for (unsigned int round = 0; round < 100; ++round)
          otherTree->updateParameters(otherPool, nullptr);
      });
  for (unsigned int round = 0; round < 100; ++round)
    update();
  thread.join();
  EXPECT_NO_REPORTS(pool);
  EXPECT_TRUE(hasLine(*tree, "OS_INFO/TIMER ULong64 2000 ms"));
  EXPECT_TRUE(hasLine(*otherTree, "OS_INFO/TIMER ULong64 6000 ms"));
}

TEST_F(KyLiveValues, storedTreesReadBackEqualAndHaveNoUpdateMethods)
{
  machine.write("proc/uptime", "1.00 1.00\n");
  machine.write("proc/meminfo", "MemAvailable: 16 kB\n");
  machine.write("sys/class/hwmon/hwmon0/temp1_input", "45000\n");
  scan();
  EXPECT_EQ(countOfLiveValues(*tree), 3u);
  const KyTree stored = treeOf(sectionOf(*tree));
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(linesOf(*stored), linesOf(*tree));
  EXPECT_EQ(countOfLiveValues(*stored), 0u);
}

TEST_F(KyLiveValues, anItemOfAnotherTreeReadsTheRunningMachine)
{
  machine.write("proc/uptime", "1.00 1.00\n");
  scan();
  KyCInventoryItem* const os = tree->getItem(KyNInventoryIDs::OS_INFO);
  ASSERT_NE(os, nullptr);
  os->detach();
  const KyTree moved(os);
  EXPECT_EQ(KyCMachineRoot::sourcesOf(*moved).procRoot, "/proc");
  moved->updateParameters(pool, nullptr);
  EXPECT_NO_REPORTS(pool);
  EXPECT_NE(moved->getValue<unsigned long long>(pool, KyNInventoryIDs::TIMER), 1000ull);
}

TEST_F(KyLiveValues, aParameterThatBelongsToNoItemIsReported)
{
  machine.write("proc/uptime", "1.00 1.00\n");
  scan();
  KyCInventoryParameter* const uptime = tree->getParameter(KyNInventoryIDs::OS_INFO / KyNInventoryIDs::TIMER);
  ASSERT_NE(uptime, nullptr);
  const std::unique_ptr<KyCInventoryParameter> detached(uptime->detach());
  EXPECT_FALSE(detached->getUpdateMethod()(pool, nullptr, detached.get()));
  EXPECT_REPORTS(pool, cannotRead("updateUptime", "TIMER", "the parameter belongs to no item"));
}

TEST_F(KyLiveValues, memoryThatRunsOutDuringAnUpdateIsReportedByTheLibrary)
{
  writeEth0("up\n", "1000\n", "full\n");
  scan();
  writeEth0("lowerlayerdown\n", "-1\n", "unknown\n");
  KyNPoolAllocator::failAfter(0);
  update();
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool, {0x1000000, "operator new", "Out of memory."},
                 {0x1301007, "setValue", "Cannot set value of parameter NETWORK/INTERFACE/STATUS."},
                 cannotUpdate("NETWORK/INTERFACE/STATUS"));
  EXPECT_TRUE(hasLine(*tree, "NETWORK/INTERFACE/SPEED ULong64 0 Mbit/s"));
}

TEST_F(KyLiveValues, aTopologyFileHasNone)
{
  const KyTree file(KyNInventoryHost::scanTopologyFile(pool, KY_SOURCE_DIR "/host/tests/data/small-machine.xml"));
  EXPECT_NO_REPORTS(pool);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(countOfLiveValues(*file), 0u);
}

TEST_F(KyLiveValues, theRunningMachineIsUpdatedWithoutReports)
{
  const KyTree running(KyNInventoryHost::scanMachine(pool));
  ASSERT_NE(running, nullptr);
  if (contentOf("/proc/uptime").empty()) GTEST_SKIP() << "no uptime to see";
  const KyCInventoryAddress uptime = KyNInventoryIDs::OS_INFO / KyNInventoryIDs::TIMER;
  const unsigned long long before = running->getValue<unsigned long long>(pool, uptime);
  running->updateParameters(pool, nullptr);
  EXPECT_NO_REPORTS(pool);
  EXPECT_GE(running->getValue<unsigned long long>(pool, uptime), before);
}
