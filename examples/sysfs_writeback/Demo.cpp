// The whole cycle on a made-up sysfs.
#include "Demo.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

#include "EndSignals.h"
#include "ReportPrinter.h"
#include "SysfsTree.h"

namespace fs = std::filesystem;

namespace
{
// A directory in a temporary place, removed at the end.
class TemporaryDirectory
{
public:
  TemporaryDirectory()
  {
    std::error_code error;
    m_path = (fs::temp_directory_path(error) / "sysfs_writeback.XXXXXX").string();
    if (error || mkdtemp(m_path.data()) == nullptr) m_path.clear();
  }
  ~TemporaryDirectory()
  {
    std::error_code ignored;
    if (!m_path.empty()) fs::remove_all(m_path, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const { return m_path; }    // empty when it could not be made

private:
  std::string m_path;
};

struct Content
{
  const char* file;
  const char* value;
};

const Content s_machine[] = {
    {"class/leds/green:status/max_brightness", "255"},
    {"class/leds/green:status/brightness", "0"},
    {"class/leds/red:alarm/max_brightness", "1"},
    {"class/leds/red:alarm/brightness", "0"},
    {"class/leds/usb:remote/max_brightness", "1"},
    {"class/leds/usb:remote/brightness", "1"},
    {"class/hwmon/hwmon0/fan1_input", "1180"},
    {"class/hwmon/hwmon0/pwm1", "64"},
    {"class/hwmon/hwmon1/fan1_input", "2340"},
    {"class/hwmon/hwmon1/pwm1", "255"},
    {"class/gpio/gpio17/direction", "in"},
    {"class/gpio/gpio17/value", "0"},
    {"class/gpio/gpio18/direction", "in"},
    {"class/gpio/gpio18/value", "0"},
    {"devices/system/cpu/cpufreq/policy0/cpuinfo_min_freq", "800000"},
    {"devices/system/cpu/cpufreq/policy0/cpuinfo_max_freq", "3000000"},
    {"devices/system/cpu/cpufreq/policy0/scaling_cur_freq", "1200000"},
    {"devices/system/cpu/cpufreq/policy0/scaling_min_freq", "800000"},
    {"devices/system/cpu/cpufreq/policy0/scaling_max_freq", "2000000"},
    {"devices/system/cpu/cpufreq/policy0/scaling_governor", "performance"},
    {"devices/system/cpu/cpufreq/policy0/scaling_available_governors", "performance powersave"},
};

void write(const fs::path& path, const char* value)
{
  errno = 0;
  std::ofstream file(path);
  file << value << '\n';
  file.close();
  if (file) return;
  throw fs::filesystem_error("cannot write", path, {errno != 0 ? errno : EIO, std::generic_category()});
}

void makeMachine(const fs::path& directory)
{
  for (const Content& content : s_machine)
  {
    fs::create_directories((directory / content.file).parent_path());
    write(directory / content.file, content.value);
  }
}

// What hardware does to a program that has looked at it: one device is unplugged, one refuses every value, and one
// swallows them.
void breakMachine(const fs::path& directory)
{
  const auto replace = [&](const char* file, const char* device)
  {
    fs::remove(directory / file);
    fs::create_symlink(device, directory / file);
  };
  fs::remove_all(directory / "class/leds/usb:remote");
  replace("class/hwmon/hwmon0/pwm1", "/dev/full");
  replace("class/hwmon/hwmon1/pwm1", "/dev/null");
}

// What others do to it: the machine runs on, and another program sets the green LED.
void changeFromOutside(const fs::path& directory)
{
  write(directory / "class/hwmon/hwmon0/fan1_input", "1620");
  fs::remove(directory / "class/hwmon/hwmon1/fan1_input");
  write(directory / "devices/system/cpu/cpufreq/policy0/scaling_cur_freq", "850000");
  write(directory / "class/leds/green:status/brightness", "3");
}

const char* const s_wishes[] = {
    "LED_OUT/VALUE=200",        // good
    "LED_OUT[2]/VALUE=7",       // more than the LED has
    "LED_OUT[3]/VALUE=0",       // good, but the LED is unplugged
    "COOLING/PWM_OUT=128",      // good, but refused
    "COOLING[2]/PWM_OUT=90",    // good, but swallowed
    "DIGITAL_OUT/CONFIGURATION=out",
    "DIGITAL_OUT/VALUE=1",            // good, because the line becomes an output
    "DIGITAL_OUT[2]/VALUE=1",         // an input
    "CPU/FREQUENCY_MIN=2400000",      // good beside the next one, until that is vetoed
    "CPU/FREQUENCY_MAX=4000000",      // more than the processor has
    "CPU/CONFIGURATION=powersave",    // good
    "CPU/FREQUENCY=1000000",          // only read
};

void printStep(const char* title, KyCErrorListPool& pool)
{
  std::printf("\n== %s\n", title);
  printReports(pool);
}

// The lines of the second text that are not in the first.
std::string newLines(const std::string& before, const std::string& after)
{
  std::istringstream lines(after);
  std::string result;
  for (std::string line; std::getline(lines, line);)
    if (before.find(line + '\n') == std::string::npos) result += line + '\n';
  return result;
}

void runCycle(const std::string& directory)
{
  KyCErrorListPool pool;
  SysfsTree tree(pool, directory);
  printStep("The tree as it was found", pool);
  std::fputs(tree.toText().c_str(), stdout);

  std::string before = tree.toText();
  for (const char* wish : s_wishes)
    tree.designate(pool, wish);
  printStep("Designated: reports, and what is pending", pool);
  std::fputs(newLines(before, tree.toText()).c_str(), stdout);

  tree.check(pool);
  printStep("Checked: reports, and what is still pending", pool);
  std::fputs(newLines(before, tree.toText()).c_str(), stdout);

  breakMachine(directory);
  tree.root().apply(pool, &tree.context());
  printStep("Applied, after one LED was unplugged and both fans broke: reports, and what has been taken", pool);
  std::fputs(newLines(before, tree.toText()).c_str(), stdout);

  before = tree.toText();
  changeFromOutside(directory);
  tree.root().updateParameters(pool, &tree.context());
  printStep("Updated: reports, and what has changed from outside", pool);
  std::fputs(newLines(before, tree.toText()).c_str(), stdout);
  std::puts(
      "LED_OUT/VALUE, which another program has set to 3, is not among them: what can be set has no update method.");
}
}    // namespace

bool runDemo()
{
  const EndSignals signals;    // before the directory, so that a signal waits until that is removed
  const TemporaryDirectory directory;
  if (directory.path().empty())
  {
    std::fputs("sysfs_writeback: cannot make a temporary directory: see TMPDIR\n", stderr);
    return false;
  }
  std::puts("A made-up sysfs with three LEDs, two fans, two GPIO lines and a processor.");
  try
  {
    makeMachine(directory.path());
    runCycle(directory.path());
  }
  catch (const fs::filesystem_error& error)
  {
    std::fprintf(stderr, "sysfs_writeback: %s\n", error.what());
    return false;
  }
  return true;
}
