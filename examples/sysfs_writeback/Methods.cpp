// The check, write and update methods of the attribute parameters.
#include "Methods.h"

#include <limits>
#include <sstream>

#include "AttributeFile.h"
#include "Messages.h"
#include "inventory/KyNInventoryIDs.h"

namespace
{
const AttributeFile& fileOf(const KyCInventoryParameter& parameter)
{
  return *static_cast<const AttributeFile*>(parameter.getCustomPointer());
}

// The parameter beside this one that its relative address names; null when the device has no such attribute.
const KyCInventoryParameter* partnerOf(const KyCInventoryParameter& parameter)
{
  return parameter.getParent()->getParameter(parameter.getRelativeAddress());
}

// What a parameter is going to be: its pending value, or else the value it has.
template <typename T>
T outlook(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  return parameter.isDesignatedValueValid() ? parameter.getDesignatedValue<T>(pool) : parameter.getValue<T>(pool);
}

unsigned int outlookOr(KyCErrorListPool& pool, const KyCInventoryParameter* parameter, unsigned int otherwise)
{
  return parameter != nullptr ? outlook<unsigned int>(pool, *parameter) : otherwise;
}

bool checkRange(KyCErrorListPool& pool, const char* function, const KyCInventoryParameter& parameter,
                unsigned int lowest, unsigned int highest)
{
  const unsigned int value = parameter.getDesignatedValue<unsigned int>(pool);
  if (value >= lowest && value <= highest) return true;
  pool.setError(MSG_OUT_OF_RANGE, __LINE__, function, "%u%u%u", value, lowest, highest);
  return false;
}

// Null, with a report, for a parameter that has no file or a walk that was given another context.
const AttributeFile* fileToRead(KyCErrorListPool& pool, const char* function, KyCInventoryItem* context,
                                const KyCInventoryParameter& parameter)
{
  const auto* const files = context != nullptr ? dynamic_cast<const AttributeFiles*>(context->getUpdater()) : nullptr;
  const AttributeFile* const file = files != nullptr ? files->find(&parameter) : nullptr;
  if (file == nullptr) pool.setError(MSG_NO_FILE, __LINE__, function, "%s", parameter.getAddress().toString().c_str());
  return file;
}
}    // namespace

bool checkBrightness(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return checkRange(pool, "checkBrightness", *parameter, 0, outlookOr(pool, partnerOf(*parameter), 255));
}

bool checkDuty(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return checkRange(pool, "checkDuty", *parameter, 0, 255);
}

bool checkDirection(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  const KyCString direction = parameter->getDesignatedValue<KyCString>(pool);
  if (direction == "in" || direction == "out") return true;
  pool.setError(MSG_NOT_OFFERED, __LINE__, "checkDirection", "%s%s", direction.c_str(), "in out");
  return false;
}

bool checkOutput(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  const KyCInventoryParameter* const direction = partnerOf(*parameter);
  const KyCString outlookOfLine = direction != nullptr ? outlook<KyCString>(pool, *direction) : KyCString("unknown");
  if (outlookOfLine == "out") return checkRange(pool, "checkOutput", *parameter, 0, 1);
  pool.setError(MSG_NO_OUTPUT, __LINE__, "checkOutput", "%s", outlookOfLine.c_str());
  return false;
}

bool checkFrequencyMin(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  const KyCInventoryParameter* const hardware = parameter->getParent()->getParameter(KyNInventoryIDs::PHYS_MIN);
  return checkRange(pool, "checkFrequencyMin", *parameter, outlookOr(pool, hardware, 0),
                    outlookOr(pool, partnerOf(*parameter), std::numeric_limits<unsigned int>::max()));
}

bool checkFrequencyMax(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  const KyCInventoryParameter* const hardware = parameter->getParent()->getParameter(KyNInventoryIDs::PHYS_MAX);
  return checkRange(pool, "checkFrequencyMax", *parameter, outlookOr(pool, partnerOf(*parameter), 0),
                    outlookOr(pool, hardware, std::numeric_limits<unsigned int>::max()));
}

// A check may ask the outside world, too: here the file that lists what there is.
bool checkGovernor(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  const auto beside = [](const std::string& path)
  { return path.substr(0, path.rfind('/') + 1) + "scaling_available_governors"; };
  const AttributeFile& file = fileOf(*parameter);
  std::string offered;
  if (!readAttribute(pool, {beside(file.path), beside(file.shown)}, offered)) return false;

  const KyCString governor = parameter->getDesignatedValue<KyCString>(pool);
  std::istringstream words(offered);
  for (std::string word; words >> word;)
    if (governor == word.c_str()) return true;
  pool.setError(MSG_NOT_OFFERED, __LINE__, "checkGovernor", "%s%s", governor.c_str(), offered.c_str());
  return false;
}

bool writeNumber(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  const unsigned int value = parameter->getDesignatedValue<unsigned int>(pool);
  return writeAttribute(pool, fileOf(*parameter), std::to_string(value));
}

bool writeText(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  return writeAttribute(pool, fileOf(*parameter), parameter->getDesignatedValue<KyCString>(pool).c_str());
}

bool updateNumber(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter)
{
  const AttributeFile* const file = fileToRead(pool, "updateNumber", context, *parameter);
  unsigned int value = 0;
  if (file == nullptr || !readAttribute(pool, *file, value)) return false;
  parameter->setValue(pool, value);
  return true;
}

bool updateText(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter)
{
  const AttributeFile* const file = fileToRead(pool, "updateText", context, *parameter);
  std::string value;
  if (file == nullptr || !readAttribute(pool, *file, value)) return false;
  parameter->setValue(pool, KyCString(value.c_str()));
  return true;
}
