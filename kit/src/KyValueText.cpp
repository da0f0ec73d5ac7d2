#include "inventorykit/KyValueText.h"

#include <strings.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

#include "KyKitMessages.h"
#include "KyNaNBits.h"
#include "KyValueTypes.h"
#include "inventory/KyNInventoryIDs.h"

namespace KyNInventoryKit
{
namespace
{
struct TypeName
{
  unsigned int code;
  const char* name;
};
constexpr TypeName s_types[] = {
    {KyCParam::TYPE_INT8, "Int8"},       {KyCParam::TYPE_INT16, "Int16"},     {KyCParam::TYPE_INT32, "Int32"},
    {KyCParam::TYPE_LONG64, "Long64"},   {KyCParam::TYPE_UINT8, "UInt8"},     {KyCParam::TYPE_UINT16, "UInt16"},
    {KyCParam::TYPE_UINT32, "UInt32"},   {KyCParam::TYPE_ULONG64, "ULong64"}, {KyCParam::TYPE_FLOAT32, "Float32"},
    {KyCParam::TYPE_FLOAT64, "Float64"}, {KyCParam::TYPE_STRING, "String"},   {KyCParam::TYPE_VERSION, "Version"},
};

const char* nameOf(unsigned int type)
{
  for (const TypeName& known : s_types)
    if (known.code == type) return known.name;
  return "";
}

template <typename T>
using BitsOf = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;

template <typename T>
BitsOf<T> bitsOf(T value)
{
  BitsOf<T> bits;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

// ---- Values as texts ----

// A NaN other than the usual one is told apart by its bits: nan(0xffc00001).
template <typename T>
std::string textOfNaN(std::uint64_t bits)
{
  if (bits == bitsOf(std::numeric_limits<T>::quiet_NaN())) return "nan";
  char text[32];
  std::snprintf(text, sizeof(text), "nan(0x%0*llx)", static_cast<int>(2 * sizeof(T)),
                static_cast<unsigned long long>(bits));
  return text;
}

template <typename T>
std::string textOf(T value)
{
  char text[64];
  const auto result = std::to_chars(text, text + sizeof(text), value);
  return std::string(text, result.ptr);
}
std::string textOf(const KyCString& value) { return std::string(value.c_str(), value.length()); }
std::string textOf(const KyCVersion& value) { return textOf(value.toString()); }

// ---- Texts as values ----

struct TypeText
{
  std::string name;
  std::string takes;    // what the type takes
};

template <typename T>
std::string whatItTakes()
{
  if constexpr (std::is_integral_v<T>)
    return "whole numbers from " + std::to_string(std::numeric_limits<T>::min()) + " to " +
           std::to_string(std::numeric_limits<T>::max());
  else if constexpr (std::is_floating_point_v<T>)
    return "numbers from " + textOf(std::numeric_limits<T>::lowest()) + " to " + textOf(std::numeric_limits<T>::max()) +
           ", inf, -inf and nan";
  else if constexpr (std::is_same_v<T, KyCVersion>)
    return "one to four numbers from 0 to 4294967295, joined by dots";
  else
    return "any text of less than 4 GiB";
}

bool hasHexMark(const char* first, const char* last)
{
  return last - first > 2 && first[0] == '0' && (first[1] == 'x' || first[1] == 'X');
}

template <typename T>
bool readInteger(const std::string& text, T& value)
{
  const char* first = text.data();
  const char* const last = first + text.size();
  const bool isPlus = first != last && *first == '+';
  const bool isMinus = first != last && *first == '-';
  const char* const digits = first + (isPlus || isMinus ? 1 : 0);
  if (digits == last || *digits == '-' || *digits == '+') return false;
  if (!hasHexMark(digits, last))
  {
    const auto [end, error] = std::from_chars(isMinus ? first : digits, last, value);
    return error == std::errc() && end == last;
  }
  if (isMinus) return false;
  const auto [end, error] = std::from_chars(digits + 2, last, value, 16);
  return error == std::errc() && end == last;
}

template <typename T>
bool readBitsOfNaN(const std::string& text, T& value)
{
  const std::size_t length = text.size();
  if (length < 8 || ::strncasecmp(text.c_str(), "nan(0x", 6) != 0 || text.back() != ')') return false;
  BitsOf<T> bits = 0;
  const auto [end, error] = std::from_chars(text.data() + 6, text.data() + length - 1, bits, 16);
  T number;
  std::memcpy(&number, &bits, sizeof(number));
  if (error != std::errc() || end != text.data() + length - 1 || !std::isnan(number)) return false;
  std::memcpy(&value, &bits, sizeof(value));
  return true;
}

template <typename T>
bool readFloat(const std::string& text, T& value)
{
  if (::strncasecmp(text.c_str(), "nan(", 4) == 0) return readBitsOfNaN(text, value);
  const char* first = text.data();
  const char* const last = first + text.size();
  if (first != last && *first == '+') ++first;
  if (first != last && *first == '-' && first != text.data()) return false;
  const bool isMinus = first != last && *first == '-';
  const char* const digits = first + (isMinus ? 1 : 0);
  const bool isHex = hasHexMark(digits, last);
  const auto [end, error] = std::from_chars(isHex ? digits + 2 : first, last, value,
                                            isHex ? std::chars_format::hex : std::chars_format::general);
  if (isHex && isMinus) value = -value;
  return error == std::errc() && end == last;
}

bool readVersion(const std::string& text, KyCVersion& value)
{
  unsigned int numbers[4] = {0, 0, 0, 0};
  const char* first = text.data();
  const char* const last = first + text.size();
  for (unsigned int n = 0; n < 4; ++n)
  {
    const auto [end, error] = std::from_chars(first, last, numbers[n]);
    if (error != std::errc()) return false;
    value = KyCVersion(numbers[0], numbers[1], numbers[2], numbers[3]);
    if (end == last) return true;
    if (*end != '.') return false;
    first = end + 1;
  }
  return false;
}

template <typename T>
bool readValue(const std::string& text, T& value)
{
  if constexpr (std::is_integral_v<T>)
    return readInteger(text, value);
  else if constexpr (std::is_floating_point_v<T>)
    return readFloat(text, value);
  else if constexpr (std::is_same_v<T, KyCVersion>)
    return readVersion(text, value);
  else
  {
    value = KyCString(text.data(), static_cast<unsigned int>(text.size()));
    return text.size() <= std::numeric_limits<unsigned int>::max();
  }
}

template <typename T>
bool readOrReport(KyCErrorListPool& pool, const char* function, unsigned int type, const std::string& text, T& value)
{
  if (readValue(text, value)) return true;
  pool.setError(KY_KIT_MSG_NO_VALUE, __LINE__, function, "%s%s%s", text.c_str(), nameOf(type),
                whatItTakes<T>().c_str());
  return false;
}

// The library sets texts up to their first NUL character. One with such characters is carried over by assigning a whole
// parameter, which must have no methods: assigning would lose them.
void setString(KyCErrorListPool& pool, KyCInventoryParameter& parameter, const KyCString& value)
{
  if (std::strlen(value.c_str()) == value.length())
  {
    parameter.setValue(pool, value);
    return;
  }
  if (parameter.getWriteMethod() != nullptr || parameter.getUpdateMethod() != nullptr)
  {
    pool.setError(KY_KIT_MSG_NO_VALUE, __LINE__, "setValueText", "%s%s%s", value.c_str(), "String",
                  "no NUL characters where the parameter has methods");
    return;
  }
  parameter = KyCInventoryParameter(pool, parameter.getID(), parameter.getDescription(), value, parameter.getUnit(),
                                    parameter.isModifiable(), parameter.getRelevance());
}

void reportNoValues(KyCErrorListPool& pool, const char* function, unsigned int type)
{
  char code[16];
  std::snprintf(code, sizeof(code), "0x%X", type);
  pool.setError(KY_KIT_MSG_TYPE_HAS_NO_VALUES, __LINE__, function, "%s", code);
}
}    // namespace

unsigned int typeOfName(const std::string& name)
{
  for (const TypeName& known : s_types)
    if (::strcasecmp(known.name, name.c_str()) == 0) return known.code;
  return 0;
}

std::string typeNames()
{
  std::string names;
  for (const TypeName& known : s_types)
    names += (names.empty() ? "" : ", ") + std::string(known.name);
  return names;
}

std::string valueText(const KyCInventoryParameter& parameter)
{
  std::string text;
  visitType(parameter.getType(),
            [&](auto type)
            {
              using T = typename decltype(type)::Type;
              KyCErrorListPool ignored;    // the type fits
              const T value = parameter.getValue<T>(ignored);
              if constexpr (std::is_floating_point_v<T>)
                text = std::isnan(value) ? textOfNaN<T>(storedBits(parameter)) : textOf(value);
              else
                text = textOf(value);
            });
  return text;
}

bool setValueText(KyCErrorListPool& pool, KyCInventoryParameter& parameter, const std::string& text)
{
  const unsigned int errorCount = pool.getErrorCount();
  const unsigned int type = parameter.getType();
  const bool isKnown = visitType(type,
                                 [&](auto tag)
                                 {
                                   using T = typename decltype(tag)::Type;
                                   T value = T();
                                   if (!readOrReport(pool, "setValueText", type, text, value)) return;
                                   if constexpr (std::is_same_v<T, KyCString>)
                                     setString(pool, parameter, value);
                                   else
                                     parameter.setValue<T>(pool, value);
                                 });
  if (!isKnown) reportNoValues(pool, "setValueText", type);
  return pool.getErrorCount() == errorCount;
}

KyCInventoryParameter* createParameter(KyCErrorListPool& pool, KyCInventoryItem& item,
                                       const KyCInventoryAddress& address, unsigned int type, const std::string& text,
                                       const char* unit, bool modifiable, unsigned int relevance)
{
  KyCInventoryParameter* parameter = nullptr;
  const bool isKnown = visitType(type,
                                 [&](auto tag)
                                 {
                                   using T = typename decltype(tag)::Type;
                                   T value = T();
                                   if (readOrReport(pool, "createParameter", type, text, value))
                                     parameter =
                                         item.createParameter<T>(pool, address, value, unit, modifiable, relevance);
                                 });
  if (!isKnown) reportNoValues(pool, "createParameter", type);
  return parameter;
}
}    // namespace KyNInventoryKit
