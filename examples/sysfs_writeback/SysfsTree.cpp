// Building and showing the tree.
#include "SysfsTree.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "AttributeFile.h"
#include "Messages.h"
#include "Methods.h"
#include "Printable.h"
#include "inventory/KyNInventoryIDs.h"

namespace fs = std::filesystem;
using namespace KyNInventoryIDs;

namespace
{
enum class Value
{
  Number,
  Text
};

// A file of a device and the parameter that it becomes.
struct Attribute
{
  const char* fileName;
  KyCInventoryAddress id;
  Value value;
  const char* unit;
  KyCInventoryParameter::TMethod checkMethod;    // null: the file is only read
  KyCInventoryAddress partner;                   // what the check looks at besides
};

// A kind of device. The order of the attributes is the order in which they are checked and written.
struct Device
{
  KyCInventoryAddress id;
  const char* classFolder;    // where sysfs lists them
  const char* telltale;       // the file by which a folder is known to be one
  std::vector<Attribute> attributes;
};

const std::vector<Device>& devices()
{
  static const std::vector<Device> list = {
      {LED_OUT,
       "class/leds",
       "brightness",
       {{"max_brightness", PHYS_MAX, Value::Number, "", nullptr, {}},
        {"brightness", VALUE, Value::Number, "", checkBrightness, PHYS_MAX}}},
      {COOLING,
       "class/hwmon",
       "fan1_input",
       {{"fan1_input", SPEED, Value::Number, "rpm", nullptr, {}}, {"pwm1", PWM_OUT, Value::Number, "", checkDuty, {}}}},
      {DIGITAL_OUT,
       "class/gpio",
       "direction",
       {{"direction", CONFIGURATION, Value::Text, "", checkDirection, {}},
        {"value", VALUE, Value::Number, "", checkOutput, CONFIGURATION}}},
      {CPU,
       "devices/system/cpu/cpufreq",
       "scaling_governor",
       {{"cpuinfo_min_freq", PHYS_MIN, Value::Number, "kHz", nullptr, {}},
        {"cpuinfo_max_freq", PHYS_MAX, Value::Number, "kHz", nullptr, {}},
        {"scaling_cur_freq", FREQUENCY, Value::Number, "kHz", nullptr, {}},
        // The maximum first: the kernel cuts a minimum down to the maximum in force.
        {"scaling_max_freq", FREQUENCY_MAX, Value::Number, "kHz", checkFrequencyMax, FREQUENCY_MIN},
        {"scaling_min_freq", FREQUENCY_MIN, Value::Number, "kHz", checkFrequencyMin, FREQUENCY_MAX},
        {"scaling_governor", CONFIGURATION, Value::Text, "", checkGovernor, {}}}}};
  return list;
}

bool isThere(const fs::path& path)
{
  std::error_code ignored;
  return fs::exists(path, ignored);
}

// The folders of this kind of device: the directory itself, or else those in it or in its class folder.
std::vector<fs::path> foldersOf(const Device& device, const fs::path& directory)
{
  if (isThere(directory / device.telltale)) return {directory};
  std::vector<fs::path> folders;
  const fs::path classFolder = directory / device.classFolder;
  std::error_code error;
  for (fs::directory_iterator entry(isThere(classFolder) ? classFolder : directory, error), end; !error && entry != end;
       entry.increment(error))
    if (isThere(entry->path() / device.telltale)) folders.push_back(entry->path());
  std::sort(folders.begin(), folders.end(),
            [](const fs::path& a, const fs::path& b)    // policy2 before policy10
            { return strverscmp(a.filename().c_str(), b.filename().c_str()) < 0; });
  return folders;
}

KyCInventoryParameter* createFrom(KyCErrorListPool& pool, KyCInventoryItem& item, const Attribute& attribute,
                                  const AttributeFile& file)
{
  const bool settable = attribute.checkMethod != nullptr;
  if (attribute.value == Value::Number)
  {
    unsigned int number = 0;
    if (!readAttribute(pool, file, number)) return nullptr;
    return item.createParameter(pool, attribute.id, number, attribute.unit, settable, 0);
  }
  std::string text;
  if (!readAttribute(pool, file, text)) return nullptr;
  return item.createParameter(pool, attribute.id, KyCString(text.c_str()), attribute.unit, settable, 0);
}

void addAttribute(KyCErrorListPool& pool, KyCInventoryItem& item, const Attribute& attribute, const AttributeFile& file,
                  AttributeFiles& files)
{
  KyCInventoryParameter* const parameter = createFrom(pool, item, attribute, file);
  if (parameter == nullptr) return;
  AttributeFile* const kept = files.add(parameter, file);
  const bool isNumber = attribute.value == Value::Number;
  if (attribute.checkMethod != nullptr)
    parameter->setCheckAndWriteMethod(pool, attribute.checkMethod, isNumber ? writeNumber : writeText,
                                      attribute.partner, kept);
  else
    parameter->setUpdateMethod(pool, isNumber ? updateNumber : updateText);
}

void addDevice(KyCErrorListPool& pool, KyCInventoryItem& root, const KyCInventoryAddress& id, const Device& device,
               const fs::path& folder, const fs::path& directory, AttributeFiles& files)
{
  KyCInventoryItem* const item = root.addPath(pool, id);
  if (item == nullptr) return;
  item->createParameter(pool, NAME, KyCString(folder.filename().c_str()), nullptr, false, 0);
  for (const Attribute& attribute : device.attributes)
  {
    const fs::path path = folder / attribute.fileName;
    if (!isThere(path)) continue;
    addAttribute(pool, *item, attribute, {path.string(), path.lexically_relative(directory).string()}, files);
  }
}

template <typename T>
std::string textOf(const T& value)
{
  return std::to_string(value);
}
std::string textOf(const KyCString& value) { return value.c_str(); }

template <typename T>
std::string valuesOf(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  std::string text = textOf(parameter.getValue<T>(pool));
  if (parameter.isDesignatedValueValid()) text += " -> " + textOf(parameter.getDesignatedValue<T>(pool));
  if (parameter.getUnit()[0] != '\0') text += std::string(" ") + parameter.getUnit();
  return text;
}

std::string column(std::string text, std::size_t width)
{
  if (text.size() < width) text.resize(width, ' ');
  return text + ' ';
}

std::string lineOf(const KyCInventoryParameter& parameter, const AttributeFile* file)
{
  KyCErrorListPool pool;
  const bool isText = parameter.getType() == KyCParam::TYPE_STRING;
  std::string line = column(parameter.getAddress().toString().c_str(), 28);
  line +=
      column(printable(isText ? valuesOf<KyCString>(pool, parameter) : valuesOf<unsigned int>(pool, parameter)), 26);
  if (file == nullptr) return line.erase(line.find_last_not_of(' ') + 1);
  return line + (parameter.getWriteMethod() != nullptr ? "settable  " : "read-only ") + printable(file->shown);
}
}    // namespace

SysfsTree::SysfsTree(KyCErrorListPool& pool, const std::string& directory)
    : m_context(pool, UPDATE_ELEMENT, "UPDATE_ELEMENT"), m_root(pool, ROOT, "ROOT")
{
  fs::path top(directory);
  if (!top.has_filename()) top = top.parent_path();    // a slash at the end
  auto files = std::make_unique<AttributeFiles>();
  for (const Device& device : devices())
  {
    unsigned int index = 0;
    for (const fs::path& folder : foldersOf(device, top))
      addDevice(pool, m_root, device.id[++index], device, folder, top, *files);
  }
  m_context.setUpdater(pool, files.release());
}

void SysfsTree::designate(KyCErrorListPool& pool, const std::string& wish)
{
  const std::size_t equals = std::min(wish.find('='), wish.size());
  const std::string address = wish.substr(0, equals);
  const std::string value = wish.substr(std::min(equals + 1, wish.size()));
  KyCInventoryAddress place;
  place.readFromString(address.c_str());
  KyCInventoryParameter* const parameter = m_root.getParameter(place);
  if (parameter == nullptr)
  {
    pool.setError(MSG_NO_SUCH_PARAMETER, __LINE__, "designate", "%s", address.c_str());
    return;
  }
  if (parameter->getType() == KyCParam::TYPE_STRING)
  {
    parameter->setDesignatedValue(pool, KyCString(value.c_str()));
    return;
  }
  unsigned int number = 0;
  if (parseNumber(value, number))
    parameter->setDesignatedValue(pool, number);
  else
    pool.setError(MSG_NO_NUMBER, __LINE__, "designate", "%s%s", address.c_str(), value.c_str());
}

void SysfsTree::check(KyCErrorListPool& pool)
{
  unsigned int errorCount = 0;
  do
  {
    errorCount = pool.getErrorCount();
    m_root.check(pool, &m_context);
  } while (pool.getErrorCount() != errorCount);
}

std::string SysfsTree::toText()
{
  const auto* const files = static_cast<const AttributeFiles*>(m_context.getUpdater());
  std::string text;
  for (const KyCInventoryItem* item = m_root.getFirstSubItem(); item != nullptr; item = item->getNext())
    for (const KyCInventoryParameter* parameter = item->getParameterByOrdinalNumber(0); parameter != nullptr;
         parameter = parameter->getNext())
      text += lineOf(*parameter, files->find(parameter)) + '\n';
  return text;
}
