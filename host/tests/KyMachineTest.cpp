// KyMachineTest.cpp: inventories of a running machine: of the one that runs the test, and of folders that stand in for
// /sys, /proc and /etc.
#include "KyFakeMachine.h"
#include "KyHostTestSupport.h"
#include "KyHostTopology.h"
#include "inventoryhost/KyNInventoryHost.h"

TEST(KyMachine, emptySysAndProcAreNoError)
{
  const KyTree tree = KyFakeMachine().scan();
  ASSERT_NE(tree, nullptr);
  EXPECT_TRUE(hasLine(*tree, "CPU/NUMBER_OF_CORES UInt32 2"));
  EXPECT_EQ(linesOf(*tree, "MAINBOARD"), std::vector<std::string>{});
  EXPECT_EQ(linesOf(*tree, "OS_INFO"), std::vector<std::string>{});
}

TEST(KyMachine, dmiFilesTellWhatHwlocDoesNot)
{
  KyFakeMachine machine;
  machine.write("sys/class/dmi/id/sys_vendor", "Example Works\n");
  machine.write("sys/class/dmi/id/product_name", "Bench 8\n");
  machine.write("sys/class/dmi/id/product_version", "Not Specified\n");
  machine.write("sys/class/dmi/id/product_serial", "EW-77\n");
  machine.write("sys/class/dmi/id/product_uuid", "4c4c4544-0042-3510-8054-b2c04f333032\n");
  machine.write("sys/class/dmi/id/board_vendor", "To be filled by O.E.M.\n");
  machine.write("sys/class/dmi/id/board_name", "\n");
  machine.write("sys/class/dmi/id/bios_vendor", "Example Firmware\n");
  machine.write("sys/class/dmi/id/bios_version", "2.17\n");
  machine.write("sys/class/dmi/id/bios_date", "03/01/2024\n");
  const KyTree tree = machine.scan();
  ASSERT_NE(tree, nullptr);
  EXPECT_TRUE(hasLine(*tree, "VENDOR String \"Example Works\""));
  EXPECT_TRUE(hasLine(*tree, "MODEL String \"Bench 8\""));
  EXPECT_TRUE(hasLine(*tree, "SERIAL_NUMBER String \"EW-77\""));
  EXPECT_TRUE(hasLine(*tree, "UNITID String \"4c4c4544-0042-3510-8054-b2c04f333032\""));
  EXPECT_EQ(linesOf(*tree, "VERSION"), std::vector<std::string>{});
  const std::vector<std::string> expected = {
      "MAINBOARD",
      "MAINBOARD/BIOS",
      "MAINBOARD/BIOS/VENDOR String \"Example Firmware\"",
      "MAINBOARD/BIOS/VERSION Version 2.17.0.0",
      "MAINBOARD/BIOS/RELEASE_DATE String \"03/01/2024\"",
  };
  EXPECT_EQ(linesOf(*tree, "MAINBOARD"), expected);
}

TEST(KyMachine, frequenciesComeFromTheProcessorsThreads)
{
  KyFakeMachine machine;
  machine.write("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "3500000\n");
  machine.write("sys/devices/system/cpu/cpu1/cpufreq/cpuinfo_max_freq", "3600001\n");
  machine.write("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_min_freq", "900000\n");
  machine.write("sys/devices/system/cpu/cpu1/cpufreq/cpuinfo_min_freq", "800000\n");
  machine.write("sys/devices/system/cpu/cpu0/cpufreq/base_frequency", "<unknown>\n");
  const KyTree tree = machine.scan("pack:2 core:2 pu:1");
  ASSERT_NE(tree, nullptr);
  const std::vector<std::string> expected = {"CPU/FREQUENCY_MIN ULong64 800000000 Hz",
                                             "CPU/FREQUENCY_MAX ULong64 3600001000 Hz"};
  EXPECT_EQ(linesOf(*tree, "CPU/FREQUENCY"), expected);
  EXPECT_EQ(linesOf(*tree, "CPU[2]/FREQUENCY"), std::vector<std::string>{});
}

TEST(KyMachine, memoryTotalComesFromProcAndIsThatOfASingleNode)
{
  KyFakeMachine machine;
  machine.write("proc/meminfo", "MemTotal:       24684096 kB\nMemFree:  1 kB\n");
  for (const char* const description :
       {"[numa(memory=0)] pack:1 core:1 pu:1", "[numa(memory=4294967296)] pack:1 core:1 pu:1"})
  {
    const KyTree tree = machine.scan(description);
    ASSERT_NE(tree, nullptr);
    EXPECT_TRUE(hasLine(*tree, "MEMORY_SIZE ULong64 25276514304 B")) << description;
    EXPECT_TRUE(hasLine(*tree, "RAM/SIZE ULong64 25276514304 B")) << description;
  }
}

TEST(KyMachine, severalMemoryNodesKeepTheSizesThatHwlocTells)
{
  KyFakeMachine machine;
  machine.write("proc/meminfo", "MemTotal:       24684096 kB\n");
  const KyTree tree = machine.scan("pack:2 [numa(memory=4294967296)] core:1 pu:1");
  ASSERT_NE(tree, nullptr);
  EXPECT_TRUE(hasLine(*tree, "MEMORY_SIZE ULong64 25276514304 B"));
  EXPECT_TRUE(hasLine(*tree, "RAM/SIZE ULong64 4294967296 B"));
  EXPECT_TRUE(hasLine(*tree, "RAM[2]/SIZE ULong64 4294967296 B"));
}

TEST(KyMachine, memoryTotalComesFromHwlocWhereProcTellsNone)
{
  KyFakeMachine machine;
  machine.write("proc/meminfo", "MemTotal:       lots kB\n");
  const KyTree tree = machine.scan();
  ASSERT_NE(tree, nullptr);
  EXPECT_TRUE(hasLine(*tree, "MEMORY_SIZE ULong64 4294967296 B"));
  EXPECT_TRUE(hasLine(*tree, "RAM/SIZE ULong64 4294967296 B"));
}

TEST(KyMachine, networkInterfacesWithADeviceAreTakenFromSys)
{
  KyFakeMachine machine;
  machine.write("sys/class/net/lo/address", "00:00:00:00:00:00\n");
  machine.write("sys/class/net/eth1/device/vendor", "0x8086\n");
  machine.write("sys/class/net/eth1/address", "02:fc:00:00:00:01\n");
  machine.write("sys/class/net/eth1/speed", "10000\n");
  machine.write("sys/class/net/eth1/duplex", "full\n");
  machine.write("sys/class/net/eth1/mtu", "9000\n");
  machine.write("sys/class/net/eth0/device/vendor", "0x8086\n");
  machine.write("sys/class/net/eth0/address", "00:00:00:00:00:00\n");
  machine.write("sys/class/net/eth0/speed", "-1\n");
  machine.write("sys/class/net/eth0/duplex", "unknown\n");
  machine.write("sys/class/net/wlan0/device/vendor", "0x8086\n");
  machine.write("sys/class/net/wlan0/speed", "4294967295\n");
  const KyTree tree = machine.scan();
  ASSERT_NE(tree, nullptr);
  const std::vector<std::string> expected = {
      "NETWORK",
      "NETWORK/INTERFACE",
      "NETWORK/INTERFACE/NAME String \"eth0\"",
      "NETWORK/INTERFACE[2]",
      "NETWORK/INTERFACE[2]/NAME String \"eth1\"",
      "NETWORK/INTERFACE[2]/MAC_ADDRESS String \"02:fc:00:00:00:01\"",
      "NETWORK/INTERFACE[2]/SPEED ULong64 10000 Mbit/s",
      "NETWORK/INTERFACE[2]/DUPLEX String \"full\"",
      "NETWORK/INTERFACE[3]",
      "NETWORK/INTERFACE[3]/NAME String \"wlan0\"",
  };
  EXPECT_EQ(linesOf(*tree, "NETWORK"), expected);
}

TEST(KyMachine, disksAreTakenFromSysAndOtherBlockDevicesAreNot)
{
  KyFakeMachine machine;
  machine.write("sys/block/loop0/size", "2048\n");
  machine.write("sys/block/sr0/device/model", "DVD-ROM\n");
  machine.write("sys/block/sda/device/model", "SAMSUNG MZ7LM480\n");
  machine.write("sys/block/sda/device/vendor", "ATA     \n");
  machine.write("sys/block/sda/device/rev", "104Q\n");
  machine.write("sys/block/sda/size", "937703088\n");
  machine.write("sys/block/sda/queue/logical_block_size", "512\n");
  machine.write("sys/block/nvme0n1/device/model", "Example NVMe                            \n");
  machine.write("sys/block/nvme0n1/device/serial", "N42   \n");
  machine.write("sys/block/nvme0n1/device/firmware_rev", "2.7\n");
  machine.write("sys/block/nvme0n1/size", "0\n");
  machine.write("sys/block/vda/device/vendor", "0x1af4\n");
  machine.write("sys/block/vda/serial", "blk1");
  const KyTree tree = machine.scan();
  ASSERT_NE(tree, nullptr);
  const std::vector<std::string> expected = {
      "HARDDRIVE",
      "HARDDRIVE/NAME String \"nvme0n1\"",
      "HARDDRIVE/MODEL String \"Example NVMe\"",
      "HARDDRIVE/SERIAL_NUMBER String \"N42\"",
      "HARDDRIVE/VERSION Version 2.7.0.0",
      "HARDDRIVE[2]",
      "HARDDRIVE[2]/NAME String \"sda\"",
      "HARDDRIVE[2]/MODEL String \"SAMSUNG MZ7LM480\"",
      "HARDDRIVE[2]/VERSION String \"104Q\"",
      "HARDDRIVE[2]/SIZE ULong64 480103981056 B",
      "HARDDRIVE[2]/PAGE_SIZE ULong64 512 B",
      "HARDDRIVE[3]",
      "HARDDRIVE[3]/NAME String \"vda\"",
      "HARDDRIVE[3]/SERIAL_NUMBER String \"blk1\"",
  };
  EXPECT_EQ(linesOf(*tree, "HARDDRIVE"), expected);
}

TEST(KyMachine, osReleaseNamesTheDistribution)
{
  KyFakeMachine machine;
  machine.write("etc/os-release",
                "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nNAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n");
  const KyTree tree = machine.scan();
  ASSERT_NE(tree, nullptr);
  const std::vector<std::string> expected = {
      "OS_INFO",
      "OS_INFO/PRODUCT String \"Debian GNU/Linux\"",
      "OS_INFO/NAME String \"Debian GNU/Linux 12 (bookworm)\"",
      "OS_INFO/PRODUCT_VERSION Version 12.0.0.0",
  };
  EXPECT_EQ(linesOf(*tree, "OS_INFO"), expected);
}

TEST(KyMachine, oddContentOfFilesIsBoundedAndCleaned)
{
  KyFakeMachine machine;
  const std::string garbage = std::string("\xFF\xFE%s%n<tag>&\x01\x02", 14) + std::string(200000, 'A');
  for (const char* const file : {"sys/class/dmi/id/sys_vendor", "sys/class/dmi/id/bios_version", "proc/meminfo",
                                 "etc/os-release", "sys/class/net/eth0/device/x", "sys/class/net/eth0/address",
                                 "sys/class/net/eth0/speed", "sys/class/net/eth0/mtu", "sys/block/sda/device/model",
                                 "sys/block/sda/size", "sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq"})
    machine.write(file, garbage);
  const KyTree tree = machine.scan();
  ASSERT_NE(tree, nullptr);
  const std::string cleaned = "??%s%n<tag>&  AAAA";
  KyTestPool pool;
  const std::string vendor = tree->getValue<const char*>(pool, KyNInventoryIDs::VENDOR);
  EXPECT_EQ(vendor.size(), 1024u);
  EXPECT_EQ(vendor.substr(0, cleaned.size()), cleaned);
  EXPECT_EQ(linesOf(*tree, "CPU/FREQUENCY"), std::vector<std::string>{});
  EXPECT_EQ(linesOf(*tree, "HARDDRIVE/SIZE"), std::vector<std::string>{});
}

// ---- the machine that runs the test

TEST(KyMachine, theRunningMachineIsScannedWithoutReports)
{
  KyTestPool pool;
  const KyTree tree(KyNInventoryHost::scanMachine(pool));
  EXPECT_NO_REPORTS(pool);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getID(), KyNInventoryIDs::ROOT);
  expectSoundTree(*tree);
  const bool procShowsMemory = contentOf("/proc/meminfo").find("MemTotal") != std::string::npos;
  const bool procShowsProcessor = contentOf("/proc/cpuinfo").find("processor") != std::string::npos;
  if (procShowsMemory || procShowsProcessor)
  {
    EXPECT_TRUE(hasLine(*tree, "CPU") || hasLine(*tree, "RAM"));
  }
  EXPECT_EQ(linesOf(*treeOf(sectionOf(*tree))), linesOf(*tree));
}

TEST(KyMachine, anotherMachineInPlaceOfTheRunningOneIsReported)
{
  setenv("HWLOC_SYNTHETIC", "pack:1 core:1 pu:1", 1);
  KyTestPool pool;
  const KyTree tree(KyNInventoryHost::scanMachine(pool));
  unsetenv("HWLOC_SYNTHETIC");
  EXPECT_EQ(tree, nullptr);
  EXPECT_REPORTS(pool, {0x1400005, "scanMachine",
                        "Cannot take the inventory of this machine: hwloc's environment variables put another one in "
                        "its place."});
}

TEST(KyMachine, failureOfHwlocIsReportedWithItsReason)
{
  KyTestPool pool;
  KyCHostTopology topology;
  EXPECT_FALSE(topology.loadSynthetic(pool, "nonsense"));
  EXPECT_REPORTS(pool, {0x1400004, "loadSynthetic",
                        "Cannot find out the hardware topology: hwloc_topology_set_synthetic failed: Invalid "
                        "argument."});
}

TEST(KyMachine, memoryThatRunsOutIsReportedAndLeavesNoTree)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  const KyTree tree(KyNInventoryHost::scanMachine(pool));
  KyNPoolAllocator::reset();
  EXPECT_EQ(tree, nullptr);
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_GE(reports.size(), 2u);
  EXPECT_TRUE(
      sameReports({reports.back()}, {{0x1400006, "scanMachine", "Cannot build the inventory of this machine."}}));
}
