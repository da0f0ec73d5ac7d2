// KyTopologyFileTest.cpp: inventories of hwloc topology files, through the public interface.
#include <fcntl.h>
#include <hwloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "KyHostTestSupport.h"
#include "inventoryhost/KyNInventoryHost.h"
#include "support/KySampleTree.h"

namespace
{
const std::string SMALL_MACHINE = KY_SOURCE_DIR "/host/tests/data/small-machine.xml";

KyTree scanFile(const std::string& path)
{
  KyTestPool pool;
  KyTree tree(KyNInventoryHost::scanTopologyFile(pool, path.c_str()));
  EXPECT_NO_REPORTS(pool);
  EXPECT_NE(tree, nullptr) << path;
  return tree;
}

// The file that hwloc writes for one of its synthetic topologies.
std::string writeSynthetic(const KyTemporaryFolder& folder, const char* description)
{
  const std::string path = folder.path("synthetic.xml");
  hwloc_topology_t topology = nullptr;
  EXPECT_EQ(hwloc_topology_init(&topology), 0);
  EXPECT_EQ(hwloc_topology_set_all_types_filter(topology, HWLOC_TYPE_FILTER_KEEP_ALL), 0);
  EXPECT_EQ(hwloc_topology_set_synthetic(topology, description), 0);
  EXPECT_EQ(hwloc_topology_load(topology), 0);
  EXPECT_EQ(hwloc_topology_export_xml(topology, path.c_str(), 0), 0);
  hwloc_topology_destroy(topology);
  return path;
}

class Environment
{
public:
  Environment(const char* name, const char* value) : m_name(name) { setenv(name, value, 1); }
  ~Environment() { unsetenv(m_name); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

private:
  const char* m_name;
};
}    // namespace

TEST(KyTopologyFile, smallMachineGivesExactlyTheMappedTree)
{
  const KyTree tree = scanFile(SMALL_MACHINE);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->getID(), KyNInventoryIDs::ROOT);
  const std::vector<std::string> expected = {
      "SYSTEMNAME String \"bench7\"",
      "VENDOR String \"Example Works\"",
      "MODEL String \"Bench 7\"",
      "VERSION Version 2.1.0.0",
      "ARCHITECTURE String \"x86_64\"",
      "MEMORY_SIZE ULong64 8589934592 B",
      "MAINBOARD",
      "MAINBOARD/VENDOR String \"Example Boards\"",
      "MAINBOARD/MODEL String \"EB-1000\"",
      "MAINBOARD/VERSION String \"rev B\"",
      "MAINBOARD/SERIAL_NUMBER String \"EB0042\"",
      "MAINBOARD/BIOS",
      "MAINBOARD/BIOS/VERSION String \"1.0c\"",
      "MAINBOARD/BIOS/RELEASE_DATE String \"08/22/2012\"",
      "CPU",
      "CPU/ID UInt32 0",
      "CPU/VENDOR String \"GenuineExample\"",
      "CPU/MODEL String \"Example CPU @ 2.00GHz\"",
      "CPU/VERSION Version 6.45.7.0",
      "CPU/FREQUENCY ULong64 2000000000 Hz",
      "CPU/FREQUENCY_MAX ULong64 2800000000 Hz",
      "CPU/NUMBER_OF_CORES UInt32 2",
      "CPU/COUNT UInt32 4",
      "CPU/L3_CACHE",
      "CPU/L3_CACHE/TYPE String \"Unified\"",
      "CPU/L3_CACHE/SIZE ULong64 20971520 B",
      "CPU/L3_CACHE/LENGTH ULong64 64 B",
      "CPU/CPU",
      "CPU/CPU/ID UInt32 0",
      "CPU/CPU/COUNT UInt32 2",
      "CPU/CPU/L1_CACHE",
      "CPU/CPU/L1_CACHE/TYPE String \"Data\"",
      "CPU/CPU/L1_CACHE/SIZE ULong64 32768 B",
      "CPU/CPU/L1_CACHE/LENGTH ULong64 64 B",
      "CPU/CPU/L1_CACHE[2]",
      "CPU/CPU/L1_CACHE[2]/TYPE String \"Instruction\"",
      "CPU/CPU/L1_CACHE[2]/SIZE ULong64 65536 B",
      "CPU/CPU/L2_CACHE",
      "CPU/CPU/L2_CACHE/TYPE String \"Unified\"",
      "CPU/CPU/L2_CACHE/SIZE ULong64 262144 B",
      "CPU/CPU/L2_CACHE/LENGTH ULong64 64 B",
      "CPU/CPU[2]",
      "CPU/CPU[2]/ID UInt32 4",
      "CPU/CPU[2]/COUNT UInt32 2",
      "CPU/CPU[2]/L2_CACHE",
      "CPU/CPU[2]/L2_CACHE/TYPE String \"Unified\"",
      "CPU/CPU[2]/L2_CACHE/SIZE ULong64 262144 B",
      "CPU/CPU[2]/L2_CACHE/LENGTH ULong64 64 B",
      "RAM",
      "RAM/ID UInt32 0",
      "RAM/SIZE ULong64 8589934592 B",
      "RAM/PAGE_SIZE ULong64 4096 B",
      "MODULE",
      "MODULE/LOCATION String \"DIMM_A1\"",
      "MODULE/VENDOR String \"Example Memory\"",
      "MODULE/VENDOR_PART_NUMBER String \"EM-8G\"",
      "DEVICE",
      "DEVICE/ADDRESS String \"0000:00:03.0\"",
      "DEVICE/TYPE String \"Bridge\"",
      "DEVICE/CLASSID String \"0604\"",
      "DEVICE/VENDOR String \"Example Semiconductors\"",
      "DEVICE/MODEL String \"Root Port\"",
      "DEVICE/TYPE_ID String \"8086:3c08\"",
      "DEVICE/VERSION Version 7.0.0.0",
      "DEVICE/BANDWIDTH ULong64 7877 MB/s",
      "DEVICE[2]",
      "DEVICE[2]/ADDRESS String \"0000:02:00.1\"",
      "DEVICE[2]/PARENT String \"0000:00:03.0\"",
      "DEVICE[2]/TYPE String \"Network controller\"",
      "DEVICE[2]/CLASSID String \"0200\"",
      "DEVICE[2]/TYPE_ID String \"8086:1521\"",
      "DEVICE[2]/VARIANT String \"15d9:0652\"",
      "DEVICE[2]/VERSION Version 161.0.0.0",
      "DEVICE[2]/SLOT String \"3\"",
      "DEVICE[3]",
      "DEVICE[3]/ADDRESS String \"0000:00:1f.2\"",
      "DEVICE[3]/TYPE String \"Mass storage controller\"",
      "DEVICE[3]/CLASSID String \"0106\"",
      "DEVICE[3]/TYPE_ID String \"8086:1d02\"",
      "NETWORK",
      "NETWORK/INTERFACE",
      "NETWORK/INTERFACE/NAME String \"eth0\"",
      "NETWORK/INTERFACE/MAC_ADDRESS String \"00:25:90:95:71:12\"",
      "NETWORK/INTERFACE/PARENT String \"0000:02:00.1\"",
      "NETWORK/INTERFACE/PORT UInt32 1",
      "NETWORK/INTERFACE[2]",
      "NETWORK/INTERFACE[2]/NAME String \"eth1\"",
      "NETWORK/INTERFACE[2]/PARENT String \"0000:02:00.1\"",
      "HARDDRIVE",
      "HARDDRIVE/NAME String \"sda\"",
      "HARDDRIVE/VENDOR String \"Example Disks\"",
      "HARDDRIVE/MODEL String \"ED1000\"",
      "HARDDRIVE/SERIAL_NUMBER String \"S00123\"",
      "HARDDRIVE/VERSION Version 1.12.0.0",
      "HARDDRIVE/SIZE ULong64 1000204886016 B",
      "HARDDRIVE/PAGE_SIZE ULong64 512 B",
      "HARDDRIVE/PARENT String \"0000:00:1f.2\"",
      "HARDDRIVE[2]",
      "HARDDRIVE[2]/NAME String \"sdb\"",
      "HARDDRIVE[2]/PARENT String \"0000:00:1f.2\"",
      "OS_INFO",
      "OS_INFO/OS_TYPE String \"Linux\"",
      "OS_INFO/VERSION Version 6.1.90.0",
      "OS_INFO/INFO String \"#1 SMP\"",
  };
  EXPECT_EQ(linesOf(*tree), expected);
  expectSoundTree(*tree);
}

TEST(KyTopologyFile, syntheticTopologyGivesItsProcessorsCoresCachesAndMemory)
{
  const KyTemporaryFolder folder;
  const KyTree tree = scanFile(writeSynthetic(
      folder, "pack:2 [numa(memory=4294967296)] l3:1(size=8388608) l2:4(size=1048576) l1d:1(size=32768) core:1 pu:2"));
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(linesOf(*tree, "MEMORY_SIZE"), std::vector<std::string>{"MEMORY_SIZE ULong64 8589934592 B"});
  EXPECT_TRUE(hasLine(*tree, "RAM/SIZE ULong64 4294967296 B"));
  EXPECT_TRUE(hasLine(*tree, "RAM[2]/SIZE ULong64 4294967296 B"));
  EXPECT_FALSE(hasLine(*tree, "RAM[3]"));
  for (const std::string processor : {"CPU", "CPU[2]"})
  {
    EXPECT_TRUE(hasLine(*tree, processor + "/NUMBER_OF_CORES UInt32 4"));
    EXPECT_TRUE(hasLine(*tree, processor + "/COUNT UInt32 8"));
    EXPECT_TRUE(hasLine(*tree, processor + "/L3_CACHE/SIZE ULong64 8388608 B"));
    EXPECT_TRUE(hasLine(*tree, processor + "/CPU[4]/COUNT UInt32 2"));
    EXPECT_TRUE(hasLine(*tree, processor + "/CPU[4]/L2_CACHE/SIZE ULong64 1048576 B"));
    EXPECT_TRUE(hasLine(*tree, processor + "/CPU[4]/L1_CACHE/SIZE ULong64 32768 B"));
    EXPECT_FALSE(hasLine(*tree, processor + "/CPU[5]"));
  }
  EXPECT_FALSE(hasLine(*tree, "CPU[3]"));
  expectSoundTree(*tree);
}

TEST(KyTopologyFile, machineWithoutPackagesCountsAsOneProcessor)
{
  const KyTemporaryFolder folder;
  const KyTree tree = scanFile(writeSynthetic(folder, "l2:1(size=1048576) core:3 pu:1"));
  ASSERT_NE(tree, nullptr);
  const std::vector<std::string> expected = {
      "CPU",
      "CPU/NUMBER_OF_CORES UInt32 3",
      "CPU/COUNT UInt32 3",
      "CPU/L2_CACHE",
      "CPU/L2_CACHE/TYPE String \"Unified\"",
      "CPU/L2_CACHE/SIZE ULong64 1048576 B",
      "CPU/L2_CACHE/LENGTH ULong64 64 B",
      "CPU/CPU",
      "CPU/CPU/ID UInt32 0",
      "CPU/CPU/COUNT UInt32 1",
      "CPU/CPU[2]",
      "CPU/CPU[2]/ID UInt32 1",
      "CPU/CPU[2]/COUNT UInt32 1",
      "CPU/CPU[3]",
      "CPU/CPU[3]/ID UInt32 2",
      "CPU/CPU[3]/COUNT UInt32 1",
  };
  EXPECT_EQ(linesOf(*tree, "CPU"), expected);
}

TEST(KyTopologyFile, sharedCachesOfOneLevelAreNumberedWithinTheProcessor)
{
  const KyTemporaryFolder folder;
  const KyTree tree = scanFile(writeSynthetic(folder, "pack:2 l2:2(size=1048576) core:2 pu:1"));
  ASSERT_NE(tree, nullptr);
  for (const std::string cache : {"CPU/L2_CACHE", "CPU/L2_CACHE[2]", "CPU[2]/L2_CACHE", "CPU[2]/L2_CACHE[2]"})
    EXPECT_TRUE(hasLine(*tree, cache)) << cache;
  EXPECT_FALSE(hasLine(*tree, "CPU/L2_CACHE[3]"));
  EXPECT_FALSE(hasLine(*tree, "CPU/CPU/L2_CACHE"));
}

TEST(KyTopologyFile, nothingOfTheRunningMachineGetsIn)
{
  const KyTemporaryFolder folder;
  const KyTree tree = scanFile(writeSynthetic(folder, "pack:1 core:1 pu:1"));
  ASSERT_NE(tree, nullptr);
  for (const std::string start : {"SYSTEMNAME", "MAINBOARD", "DEVICE", "NETWORK", "HARDDRIVE", "OS_INFO/NAME",
                                  "OS_INFO/PRODUCT", "CPU/FREQUENCY"})
    EXPECT_EQ(linesOf(*tree, start), std::vector<std::string>{}) << start;
}

TEST(KyTopologyFile, environmentVariablesOfHwlocDoNotReplaceTheFile)
{
  const Environment synthetic("HWLOC_SYNTHETIC", "pack:3 core:1 pu:1");
  const KyTree tree = scanFile(SMALL_MACHINE);
  ASSERT_NE(tree, nullptr);
  EXPECT_TRUE(hasLine(*tree, "SYSTEMNAME String \"bench7\""));
  EXPECT_FALSE(hasLine(*tree, "CPU[2]"));
}

TEST(KyTopologyFile, twoScansStoreToEqualBytesAndReadBackEqual)
{
  const KyTree first = scanFile(SMALL_MACHINE);
  const KyTree second = scanFile(SMALL_MACHINE);
  ASSERT_TRUE(first != nullptr && second != nullptr);
  const std::string section = sectionOf(*first);
  EXPECT_EQ(section, sectionOf(*second));
  const KyTree readBack = treeOf(section);
  ASSERT_NE(readBack, nullptr);
  EXPECT_EQ(KyTreeDifference(*first, *readBack), "");
}

TEST(KyTopologyFile, realMachinesGiveSoundRepeatableTrees)
{
  const std::filesystem::path folder = KY_SOURCE_DIR "/../shared/data/topologies";
  std::error_code error;
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    if (entry.path().extension() == ".xml") files.push_back(entry.path().string());
  if (files.empty()) GTEST_SKIP() << "no topology files of real machines in " << folder;
  for (const std::string& file : files)
  {
    SCOPED_TRACE(file);
    const KyTree tree = scanFile(file);
    const KyTree again = scanFile(file);
    ASSERT_TRUE(tree != nullptr && again != nullptr);
    expectSoundTree(*tree);
    EXPECT_TRUE(hasLine(*tree, "CPU[2]"));
    EXPECT_TRUE(hasLine(*tree, "RAM"));
    EXPECT_TRUE(hasLine(*tree, "DEVICE"));
    const std::string section = sectionOf(*tree);
    EXPECT_EQ(section, sectionOf(*again));
    const KyTree readBack = treeOf(section);
    ASSERT_NE(readBack, nullptr);
    EXPECT_EQ(KyTreeDifference(*tree, *readBack), "");
  }
}

// ---- files that cannot be used

namespace
{
void expectRefusal(const char* path, const KyReport& report)
{
  KyTestPool pool;
  const KyTree tree(KyNInventoryHost::scanTopologyFile(pool, path));
  EXPECT_EQ(tree, nullptr);
  EXPECT_REPORTS(pool, report);
}

void expectNoTopology(const std::string& path)
{
  expectRefusal(path.c_str(),
                {0x1400003, "scanTopologyFile", "File " + path + " is not a hardware topology that hwloc can read."});
}
}    // namespace

TEST(KyTopologyFile, missingFileIsReportedByName)
{
  const KyTemporaryFolder folder;
  const std::string path = folder.path("missing.xml");
  expectRefusal(path.c_str(),
                {0x1400000, "scanTopologyFile", "Cannot open topology file " + path + ": No such file or directory."});
}

TEST(KyTopologyFile, nullPathIsTakenAsEmpty)
{
  expectRefusal(nullptr, {0x1400000, "scanTopologyFile", "Cannot open topology file : No such file or directory."});
}

TEST(KyTopologyFile, dashIsAFileNameAndNotTheStandardInput)
{
  expectRefusal("-", {0x1400000, "scanTopologyFile", "Cannot open topology file -: No such file or directory."});
}

TEST(KyTopologyFile, anOpenFileGivesTheTreeOfTheFileAndStaysOpen)
{
  KyTestPool pool;
  const KyTree expected(KyNInventoryHost::scanTopologyFile(pool, SMALL_MACHINE.c_str()));
  const int descriptor = ::open(SMALL_MACHINE.c_str(), O_RDONLY | O_CLOEXEC);
  const KyTree tree(KyNInventoryHost::scanTopologyStream(pool, descriptor, "standard input"));
  EXPECT_NO_REPORTS(pool);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(KyTreeDifference(*expected, *tree), "");
  EXPECT_GT(::lseek(descriptor, 0, SEEK_CUR), 0);
  EXPECT_EQ(::close(descriptor), 0);
}

TEST(KyTopologyFile, aStreamThatCannotBeUsedIsReportedByItsName)
{
  KyTestPool pool;
  EXPECT_EQ(KyNInventoryHost::scanTopologyStream(pool, -1, nullptr), nullptr);
  EXPECT_REPORTS(pool, {0x1400000, "scanTopologyStream", "Cannot open topology file : Bad file descriptor."});
  const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(KyNInventoryHost::scanTopologyStream(pool, nothing, "standard input"), nullptr);
  EXPECT_REPORTS(
      pool, {0x1400003, "scanTopologyStream", "File standard input is not a hardware topology that hwloc can read."});
  ::close(nothing);
}

TEST(KyTopologyFile, folderIsReportedAsUnreadable)
{
  const KyTemporaryFolder folder;
  const std::string path = folder.path("");
  expectRefusal(path.c_str(),
                {0x1400001, "scanTopologyFile", "Cannot read topology file " + path + ": Is a directory."});
}

TEST(KyTopologyFile, percentSignsInANameStayText)
{
  const KyTemporaryFolder folder;
  expectNoTopology(folder.write("100%s%n%1.xml", "no xml"));
}

TEST(KyTopologyFile, filesThatAreNoTopologyAreReported)
{
  const KyTemporaryFolder folder;
  const std::string machine = contentOf(SMALL_MACHINE);
  ASSERT_FALSE(machine.empty());
  expectNoTopology(folder.write("empty.xml", ""));
  expectNoTopology(folder.write("text.xml", "This is no topology.\n"));
  expectNoTopology(folder.write("nul.xml", std::string(1000, '\0')));
  expectNoTopology(folder.write("other.xml", "<?xml version=\"1.0\"?><recipe><flour/></recipe>"));
  expectNoTopology(folder.write("hollow.xml", "<?xml version=\"1.0\"?><topology version=\"2.0\"></topology>"));
  expectNoTopology(folder.write("half.xml", machine.substr(0, machine.size() / 2)));
}

TEST(KyTopologyFile, fileOfMoreThan64MiBIsReported)
{
  const KyTemporaryFolder folder;
  const std::string path = folder.write("huge.xml", "<?xml version=\"1.0\"?>");
  std::filesystem::resize_file(path, 64ull * 1024 * 1024 + 1);
  expectRefusal(path.c_str(),
                {0x1400002, "scanTopologyFile", "Topology file " + path + " is too large: more than 67108864 bytes."});
  expectRefusal("/dev/zero",
                {0x1400002, "scanTopologyFile", "Topology file /dev/zero is too large: more than 67108864 bytes."});
}

TEST(KyTopologyFile, deeplyNestedFileIsReported)
{
  const KyTemporaryFolder folder;
  std::string xml = "<?xml version=\"1.0\"?><topology version=\"2.0\">";
  for (int n = 0; n < 100000; ++n)
    xml += "<object type=\"Misc\">";
  expectNoTopology(folder.write("deep.xml", xml));
}

TEST(KyTopologyFile, inconsistentTopologyIsReportedInsteadOfEndingTheProgram)
{
  const KyTemporaryFolder folder;
  const std::string machine = contentOf(SMALL_MACHINE);
  const auto replaced = [&machine](const std::string& old, const std::string& text)
  {
    std::string changed = machine;
    const std::size_t place = changed.find(old);
    EXPECT_NE(place, std::string::npos) << old;
    if (place != std::string::npos) changed.replace(place, old.size(), text);
    return changed;
  };
  expectNoTopology(
      folder.write("same-thread-twice.xml", replaced("type=\"PU\" os_index=\"1\"", "type=\"PU\" os_index=\"0\"")));
  expectNoTopology(folder.write("same-number-twice.xml", replaced("gp_index=\"10\"", "gp_index=\"9\"")));
}

TEST(KyTopologyFile, numbersOfKindsThatDoNotExistAreLeftOut)
{
  const KyTemporaryFolder folder;
  std::string machine = contentOf(SMALL_MACHINE);
  const auto replace = [&machine](const std::string& old, const std::string& text)
  {
    const std::size_t place = machine.find(old);
    ASSERT_NE(place, std::string::npos) << old;
    machine.replace(place, old.size(), text);
  };
  replace("bridge_type=\"1-1\"", "bridge_type=\"8-1\"");    // no longer a PCI device
  replace("name=\"eth1\" osdev_type=\"2\"", "name=\"eth1\" osdev_type=\"77\"");
  const KyTree tree = scanFile(folder.write("kinds.xml", machine));
  ASSERT_NE(tree, nullptr);
  EXPECT_FALSE(hasLine(*tree, "DEVICE/ADDRESS String \"0000:00:03.0\""));
  EXPECT_TRUE(hasLine(*tree, "DEVICE[2]"));
  EXPECT_FALSE(hasLine(*tree, "DEVICE[3]"));
  EXPECT_FALSE(hasLine(*tree, "NETWORK/INTERFACE[2]"));
}

// Some of these crash hwloc itself. None may crash, hang or print from here, and each gives a tree or one report.
TEST(KyTopologyFile, damagedFilesGiveATreeOrOneReport)
{
  const KyTemporaryFolder folder;
  const std::string machine = contentOf(SMALL_MACHINE);
  const std::string path = folder.path("damaged.xml");
  unsigned int state = 12345;
  const auto random = [&state](std::size_t below)
  {
    state = state * 1103515245u + 12345u;
    return static_cast<std::size_t>(state >> 8) % below;
  };
  for (int round = 0; round < 150; ++round)
  {
    std::string damaged = machine;
    const std::size_t place = random(damaged.size());
    if (round % 3 == 0) damaged[place] = static_cast<char>(random(256));
    if (round % 3 == 1) damaged.erase(place, 1 + random(60));
    if (round % 3 == 2)
    {
      const std::size_t digit = damaged.find_first_of("0123456789", place);
      if (digit != std::string::npos) damaged[digit] = "0123456789abcdef-"[random(17)];
    }
    folder.write("damaged.xml", damaged);
    KyTestPool pool;
    const KyTree tree(KyNInventoryHost::scanTopologyFile(pool, path.c_str()));
    const std::vector<KyReport> reports = pool.takeReports();
    EXPECT_EQ(reports.size(), tree != nullptr ? 0u : 1u) << "round " << round;
    if (tree != nullptr) expectSoundTree(*tree);
  }
}

TEST(KyTopologyFile, aPipeIsAsGoodAsAFile)
{
  const KyTemporaryFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::thread writer([&pipe] { std::ofstream(pipe, std::ios::binary) << contentOf(SMALL_MACHINE); });
  const KyTree tree = scanFile(pipe);
  writer.join();
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(sectionOf(*tree), sectionOf(*scanFile(SMALL_MACHINE)));
}

TEST(KyTopologyFile, worksInAProgramThatIgnoresItsChildren)
{
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_NE(scanFile(SMALL_MACHINE), nullptr);
  std::signal(SIGCHLD, before);
}

TEST(KyTopologyFile, memoryThatRunsOutIsReportedAndLeavesNoTree)
{
  for (unsigned int n = 0; n < 40; ++n)
  {
    KyTestPool pool;
    KyNPoolAllocator::failAfter(n);
    const KyTree tree(KyNInventoryHost::scanTopologyFile(pool, SMALL_MACHINE.c_str()));
    KyNPoolAllocator::reset();
    EXPECT_EQ(tree, nullptr) << n;
    const std::vector<KyReport> reports = pool.takeReports();
    ASSERT_GE(reports.size(), 2u) << n;
    EXPECT_EQ(reports.front().text, "Out of memory.") << n;
    EXPECT_TRUE(sameReports({reports.back()},
                            {{0x1400006, "scanTopologyFile", "Cannot build the inventory of " + SMALL_MACHINE + "."}}))
        << n;
  }
}

TEST(KyTopologyFile, severalHundredCoresAreScannedInProportion)
{
  const KyTemporaryFolder folder;
  const KyTree tree = scanFile(writeSynthetic(folder, "pack:16 core:64 pu:2"));
  ASSERT_NE(tree, nullptr);
  EXPECT_TRUE(hasLine(*tree, "CPU[16]/CPU[64]/COUNT UInt32 2"));
}
