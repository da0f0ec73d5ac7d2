// KyLiveValues.cpp: see KyLiveValues.h.
#include "KyLiveValues.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <string_view>
#include <system_error>

#include "KyHostMessages.h"
#include "KyHostText.h"

KyCMachineRoot::KyCMachineRoot(KyCErrorListPool& pool, const KyHostSources& sources)
    : KyCInventoryItem(pool, KyNInventoryIDs::ROOT, KyNInventoryIDs::ROOT.getCategoryNameCStr()), m_sources(sources)
{
}

const KyHostSources& KyCMachineRoot::sourcesOf(const KyCInventoryItem& item)
{
  for (const KyCInventoryItem* above = &item; above != nullptr; above = above->getParent())
    if (const auto* const root = dynamic_cast<const KyCMachineRoot*>(above)) return root->sources();
  static const KyHostSources running;    // never changed
  return running;
}

namespace
{
// ---- readings

// A file's start, and the system's error number where it cannot be read.
struct KyFileText
{
  std::string path;
  std::string text;
  int error = 0;
};

KyFileText readText(const std::string& path, std::size_t most = KyHostSources::MAX_FILE)
{
  KyFileText file = {path, "", 0};
  file.error = KyHostSources::readFile(path, most, file.text);
  return file;
}

// A value that was read, or the file that does not give one and why.
template <typename T>
struct KyReading
{
  std::optional<T> value;
  std::string path;
  std::string reason;
};

template <typename T>
KyReading<T> readingOf(const KyFileText& file, std::optional<T> value)
{
  if (value) return {value, file.path, ""};
  const std::string reason =
      file.error != 0 ? std::generic_category().message(file.error) : std::string("unexpected content");
  return {std::nullopt, file.path, reason};
}

using KyNumberReading = KyReading<unsigned long long>;

// The item's own string parameter; empty when it has none.
std::string textOf(const KyCInventoryItem& item, const KyCInventoryAddress& id)
{
  const KyCInventoryParameter* const parameter = item.getParameter(id);
  if (parameter == nullptr || parameter->getType() != KyCParam::TYPE_STRING) return std::string();
  KyCErrorListPool pool;
  return parameter->getValue<const char*>(pool);
}

// ---- memory and uptime

KyNumberReading readAvailableMemory(const KyHostSources& sources, const KyCInventoryItem&)
{
  const KyFileText file = readText(sources.procRoot + "/meminfo");
  const std::string value = KyNHostText::valueOfKey(file.text, "MemAvailable", ':');
  const std::size_t unit = value.find(" kB");
  const KyNumber kibibytes =
      unit != value.npos ? KyNHostText::toNumber(std::string_view(value).substr(0, unit)) : std::nullopt;
  return readingOf(file, kibibytes == 0u ? kibibytes : KyNHostText::scaled(kibibytes, 1024));
}

// "13493.83 9869.10": seconds since the start, and idle ones.
KyNumberReading readUptime(const KyHostSources& sources, const KyCInventoryItem&)
{
  constexpr unsigned int decimalsOfMilliseconds = 3;
  const KyFileText file = readText(sources.procRoot + "/uptime");
  const std::string_view seconds = std::string_view(file.text).substr(0, file.text.find(' '));
  return readingOf(file, KyNHostText::toFixedPoint(seconds, decimalsOfMilliseconds));
}

// ---- processors

// The package's number by which threads tell where they belong; none when all threads are this processor's.
KyNumber packageOf(const KyCInventoryItem& processor)
{
  KyCInventoryItem* const root = processor.getParent();
  const KyCInventoryParameter* const id = processor.getParameter(KyNInventoryIDs::ID);
  const bool isOnly = root == nullptr || root->getItem(KyNInventoryIDs::CPU[2]) == nullptr;
  if (isOnly || id == nullptr || id->getType() != KyCParam::TYPE_UINT32) return std::nullopt;
  KyCErrorListPool pool;
  return id->getValue<unsigned int>(pool);
}

// The highest of the processor's threads; the first file that exists and gives none is the one to name.
KyNumberReading readScalingFrequency(const KyHostSources& sources, KyNumber package)
{
  const std::string folder = "devices/system/cpu";
  KyNumber highest;
  KyFileText refused;
  for (const unsigned int cpu : sources.sysNumbersOf(folder, "cpu", ""))
  {
    const std::string thread = folder + "/cpu" + std::to_string(cpu);
    if (package && KyNHostText::toNumber(sources.sysFile(thread + "/topology/physical_package_id")) != package)
      continue;
    const KyFileText file = readText(sources.sysRoot + "/" + thread + "/cpufreq/scaling_cur_freq");
    const KyNumber hertz = KyNHostText::scaled(KyNHostText::toNumber(file.text), 1000);
    if (hertz)
      highest = std::max(highest.value_or(0), *hertz);
    else if (file.error != ENOENT && refused.path.empty())
      refused = file;
  }
  return readingOf(refused, highest);
}

// The highest "cpu MHz" of the processor's threads. Each thread is a paragraph of "key : value" lines.
KyNumberReading readCpuinfoFrequency(const KyHostSources& sources, KyNumber package)
{
  constexpr std::size_t most = std::size_t{16} * 1024 * 1024;    // some 1.5 KiB each for thousands of threads
  constexpr unsigned int decimalsOfHertz = 6;
  const KyFileText file = readText(sources.procRoot + "/cpuinfo", most);
  KyNumber highest;
  std::string_view rest = file.text;
  while (!rest.empty())
  {
    const std::size_t end = std::min(rest.find("\n\n"), rest.size());
    const std::string_view thread = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 2, rest.size()));
    if (package && KyNHostText::toNumber(KyNHostText::valueOfKey(thread, "physical id", ':')) != package) continue;
    const KyNumber hertz = KyNHostText::toFixedPoint(KyNHostText::valueOfKey(thread, "cpu MHz", ':'), decimalsOfHertz);
    if (hertz && *hertz != 0) highest = std::max(highest.value_or(0), *hertz);
  }
  return readingOf(file, highest);
}

KyNumberReading readFrequency(const KyHostSources& sources, const KyCInventoryItem& processor)
{
  const KyNumber package = packageOf(processor);
  const KyNumberReading scaling = readScalingFrequency(sources, package);
  if (scaling.value) return scaling;
  const KyNumberReading cpuinfo = readCpuinfoFrequency(sources, package);
  return cpuinfo.value || scaling.path.empty() ? cpuinfo : scaling;
}

// ---- network links

// A file of the interface that the item names. No name leads out of the folder of interfaces.
KyFileText readInterfaceFile(const KyHostSources& sources, const KyCInventoryItem& interface, const char* file)
{
  const std::string name = textOf(interface, KyNInventoryIDs::NAME);
  const std::string path = sources.sysRoot + "/class/net/" + name + "/" + file;
  if (name.empty() || name == "." || name == ".." || name.find('/') != name.npos) return {path, "", ENOENT};
  return readText(path);
}

// As the kernel calls it. Drivers that do not tell leave "unknown" there, and mostly do show a carrier.
KyReading<KyCString> readLinkStatus(const KyHostSources& sources, const KyCInventoryItem& interface)
{
  constexpr std::array<std::string_view, 7> states = {"up",      "down",    "lowerlayerdown", "dormant",
                                                      "testing", "unknown", "notpresent"};
  const KyFileText file = readInterfaceFile(sources, interface, "operstate");
  std::string state = KyNHostText::clean(file.text);
  if (file.error != 0 || std::find(states.begin(), states.end(), state) == states.end())
    return readingOf<KyCString>(file, std::nullopt);
  if (state == "unknown")
  {
    const KyNumber carrier = KyNHostText::toNumber(readInterfaceFile(sources, interface, "carrier").text);
    if (carrier == 0u) state = "down";
    if (carrier == 1u) state = "up";
  }
  return readingOf<KyCString>(file, KyCString(state.c_str()));
}

// The kernel refuses to tell the speed and the duplex mode of an interface that is not up.
bool isLinkDown(const KyHostSources& sources, const KyCInventoryItem& interface)
{
  const KyReading<KyCString> status = readLinkStatus(sources, interface);
  return status.value && !(*status.value == KyCString("up"));
}

// Whether the kernel does not tell a file's value now: there is no link, or the driver has no such question, which is
// the same error number as of an interface that is switched off.
bool isUntold(const KyFileText& file, const KyHostSources& sources, const KyCInventoryItem& interface)
{
  return file.error == EINVAL || (file.error != 0 && isLinkDown(sources, interface));
}

// 0: there is no link, or the driver does not know its speed.
KyNumberReading readLinkSpeed(const KyHostSources& sources, const KyCInventoryItem& interface)
{
  constexpr unsigned long long unknownSpeed = 0xFFFFFFFF;    // what some drivers give instead of -1
  const KyFileText file = readInterfaceFile(sources, interface, "speed");
  KyNumber speed = file.error == 0 ? KyNHostText::toNumber(file.text) : std::nullopt;
  const bool isUnknown = speed == unknownSpeed || KyNHostText::clean(file.text) == "-1";
  if (isUnknown || isUntold(file, sources, interface)) speed = 0;
  return readingOf(file, speed);
}

KyReading<KyCString> readDuplex(const KyHostSources& sources, const KyCInventoryItem& interface)
{
  constexpr const char* unknown = "unknown";
  const KyFileText file = readInterfaceFile(sources, interface, "duplex");
  const std::string mode = KyNHostText::clean(file.text);
  if (file.error == 0 && (mode == "full" || mode == "half" || mode == unknown))
    return readingOf<KyCString>(file, KyCString(mode.c_str()));
  if (isUntold(file, sources, interface)) return readingOf<KyCString>(file, KyCString(unknown));
  return readingOf<KyCString>(file, std::nullopt);
}

// ---- temperatures

bool takeNumbered(std::string_view& text, std::string_view prefix)
{
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(digits);
  return digits != 0;
}

// The file below sysRoot that an address such as "hwmon0/temp1" or "thermal_zone0" stands for; empty when it is no such
// address.
std::string temperatureFile(const std::string& address)
{
  std::string_view text = address;
  if (takeNumbered(text, "thermal_zone") && text.empty()) return "class/thermal/" + address + "/temp";
  text = address;
  if (takeNumbered(text, "hwmon") && takeNumbered(text, "/temp") && text.empty())
    return "class/hwmon/" + address + "_input";
  return std::string();
}

// The kernel counts in thousandths of a degree Celsius.
std::optional<double> toDegrees(const std::string& text)
{
  constexpr unsigned long long most = 1000000000000;    // exact as a double by far
  const std::string number = KyNHostText::clean(text);
  const bool isNegative = !number.empty() && number.front() == '-';
  const KyNumber thousandths = KyNHostText::toNumber(std::string_view(number).substr(isNegative ? 1 : 0));
  if (!thousandths || *thousandths > most) return std::nullopt;
  const double degrees = static_cast<double>(*thousandths) / 1000;
  return isNegative && *thousandths != 0 ? -degrees : degrees;
}

KyReading<double> readTemperatureAt(const KyHostSources& sources, const std::string& address)
{
  const std::string path = temperatureFile(address);
  if (path.empty()) return readingOf<double>({sources.sysRoot + "/class/hwmon/" + address, "", ENOENT}, std::nullopt);
  const KyFileText file = readText(sources.sysRoot + "/" + path);
  return readingOf(file, file.error == 0 ? toDegrees(file.text) : std::nullopt);
}

KyReading<double> readTemperature(const KyHostSources& sources, const KyCInventoryItem& item)
{
  return readTemperatureAt(sources, textOf(item, KyNInventoryIDs::ADDRESS));
}

// ---- update methods

void reportParameter(KyCErrorListPool& pool, const char* function, const KyCInventoryParameter& parameter,
                     const char* reason)
{
  const char* const name = parameter.getIDString();
  pool.setError(KY_HOST_MSG_NO_LIVE_VALUE, __LINE__, function, "%s%s", name != nullptr ? name : "", reason);
}

template <typename T>
using KyReader = KyReading<T> (*)(const KyHostSources&, const KyCInventoryItem&);

template <typename T>
bool setToReading(KyReader<T> read, const char* function, KyCErrorListPool& pool, KyCInventoryParameter& parameter)
{
  const KyCInventoryItem* const item = parameter.getParent();
  if (item == nullptr)
  {
    reportParameter(pool, function, parameter, "the parameter belongs to no item");
    return false;
  }
  const KyReading<T> reading = read(KyCMachineRoot::sourcesOf(*item), *item);
  if (!reading.value)
  {
    pool.setError(KY_HOST_MSG_NO_LIVE_VALUE, __LINE__, function, "%s%s", reading.path.c_str(), reading.reason.c_str());
    return false;
  }
  const unsigned int errorCount = pool.getErrorCount();
  parameter.setValue<T>(pool, *reading.value);
  return pool.getErrorCount() == errorCount;
}

// Sets the parameter to what is read now; a value that cannot be read is one report and leaves it as it is. No exception
// leaves: the library that calls has the rest of the tree to go on with.
template <typename T>
bool updateFrom(KyReader<T> read, const char* function, KyCErrorListPool& pool, KyCInventoryParameter& parameter)
{
  try
  {
    return setToReading(read, function, pool, parameter);
  }
  catch (const std::bad_alloc&)
  {
    reportParameter(pool, function, parameter, "out of memory");
    return false;
  }
}

bool updateAvailableMemory(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readAvailableMemory, "updateAvailableMemory", pool, *parameter);
}

bool updateUptime(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readUptime, "updateUptime", pool, *parameter);
}

bool updateFrequency(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readFrequency, "updateFrequency", pool, *parameter);
}

bool updateLinkStatus(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readLinkStatus, "updateLinkStatus", pool, *parameter);
}

bool updateLinkSpeed(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readLinkSpeed, "updateLinkSpeed", pool, *parameter);
}

bool updateDuplex(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readDuplex, "updateDuplex", pool, *parameter);
}

bool updateTemperature(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return updateFrom(readTemperature, "updateTemperature", pool, *parameter);
}

// ---- adding

template <typename T>
void addLive(const KyHostScan& scan, KyCInventoryItem& item, const KyCInventoryAddress& address,
             const std::optional<T>& value, const char* unit, KyCInventoryParameter::TMethod update)
{
  if (!value) return;
  KyCInventoryParameter* const parameter = item.createParameter<T>(scan.pool, address, *value, unit, false, 0);
  if (parameter != nullptr) parameter->setUpdateMethod(scan.pool, update);
}

KyNumber nonZero(const KyNumberReading& reading) { return KyNHostText::scaled(reading.value, 1); }

// None for "unknown", which tells nothing.
std::optional<KyCString> told(const KyReading<KyCString>& reading)
{
  return reading.value && !KyNHostText::told(reading.value->c_str()).empty() ? reading.value : std::nullopt;
}

// Whether the interface has the file and may tell more by it once there is a link.
bool isForLater(const KyHostSources& sources, const KyCInventoryItem& interface, const char* file)
{
  const std::optional<KyCString> status = told(readLinkStatus(sources, interface));
  return status && !(*status == KyCString("up")) && readInterfaceFile(sources, interface, file).error != ENOENT;
}
}    // namespace

void addLiveAvailableMemory(const KyHostScan& scan)
{
  if (scan.sources == nullptr) return;
  addLive(scan, scan.root, KyNInventoryIDs::AVAILABLE, nonZero(readAvailableMemory(*scan.sources, scan.root)), "B",
          updateAvailableMemory);
}

void addLiveUptime(const KyHostScan& scan)
{
  if (scan.sources == nullptr) return;
  addLive(scan, scan.root, KyNInventoryIDs::OS_INFO / KyNInventoryIDs::TIMER,
          nonZero(readUptime(*scan.sources, scan.root)), "ms", updateUptime);
}

void addLiveFrequency(const KyHostScan& scan, KyCInventoryItem& processor)
{
  if (scan.sources == nullptr) return;
  addLive(scan, processor, KyNInventoryIDs::CLOCK_FREQUENCY, nonZero(readFrequency(*scan.sources, processor)), "Hz",
          updateFrequency);
}

void addLiveLink(const KyHostScan& scan, KyCInventoryItem& interface)
{
  if (scan.sources == nullptr) return;
  addLive(scan, interface, KyNInventoryIDs::STATUS, told(readLinkStatus(*scan.sources, interface)), "",
          updateLinkStatus);
  // Where there is no link yet, the two are there as the update would leave them, so that it shows when there is one.
  const KyNumberReading speed = readLinkSpeed(*scan.sources, interface);
  addLive(scan, interface, KyNInventoryIDs::SPEED,
          isForLater(*scan.sources, interface, "speed") ? speed.value : nonZero(speed), "Mbit/s", updateLinkSpeed);
  const KyReading<KyCString> duplex = readDuplex(*scan.sources, interface);
  addLive(scan, interface, KyNInventoryIDs::DUPLEX,
          isForLater(*scan.sources, interface, "duplex") ? duplex.value : told(duplex), "", updateDuplex);
}

bool addLiveTemperature(const KyHostScan& scan, const KyCInventoryAddress& id, const std::string& name,
                        const std::string& location, const std::string& address)
{
  constexpr const char* unit =
      "\xC2\xB0"
      "C";    // degrees Celsius in UTF-8
  const KyReading<double> reading = readTemperatureAt(*scan.sources, address);
  if (!reading.value) return false;
  KyCInventoryItem* const item = addItem(scan, scan.root, id);
  if (item == nullptr) return false;
  addText(scan, *item, KyNInventoryIDs::NAME, name);
  addText(scan, *item, KyNInventoryIDs::LOCATION, location);
  addText(scan, *item, KyNInventoryIDs::ADDRESS, address);
  addLive(scan, *item, KyNInventoryIDs::TEMPERATURE, reading.value, unit, updateTemperature);
  return true;
}
