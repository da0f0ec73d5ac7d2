#include "inventorykit/KyAnonymize.h"

#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <unordered_map>

#include "KyFormatMessages.h"
#include "KyIdentifiers.h"
#include "KyPseudonyms.h"
#include "KyReplacements.h"
#include "KyTreeBuilder.h"
#include "KyValueTypes.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
enum class Meaning
{
  NONE,
  SERIAL_NUMBER,
  HOST,
  IP_ADDRESS,
  MAC_ADDRESS
};

constexpr struct
{
  const char* name;
  Meaning meaning;
} s_names[] = {
    {"SERIAL_NUMBER", Meaning::SERIAL_NUMBER},
    {"SERIAL_NUMBER_PLUGON", Meaning::SERIAL_NUMBER},
    {"SERIAL_NUMBER_PLUGON2", Meaning::SERIAL_NUMBER},
    {"PS_SERIAL_NUMBER", Meaning::SERIAL_NUMBER},
    {"TARGET_SERIAL_NUMBER", Meaning::SERIAL_NUMBER},
    {"PACKAGE_SERIAL_NUMBER", Meaning::SERIAL_NUMBER},
    {"SERIAL", Meaning::SERIAL_NUMBER},
    {"UNITID", Meaning::SERIAL_NUMBER},
    {"SYSTEMNAME", Meaning::HOST},
    {"RACKNAME", Meaning::HOST},
    {"UNITNAME", Meaning::HOST},
    {"IPADDRESS", Meaning::IP_ADDRESS},
    {"GATEWAY_ADDRESS", Meaning::IP_ADDRESS},
    {"DHCP_SERVER_IPADDRESS_MIN", Meaning::IP_ADDRESS},
    {"DHCP_SERVER_IPADDRESS_MAX", Meaning::IP_ADDRESS},
    {"MAC_ADDRESS", Meaning::MAC_ADDRESS},
};

const std::unordered_map<unsigned int, Meaning>& meaningsOfIDs()
{
  static const std::unordered_map<unsigned int, Meaning> meanings = []
  {
    std::unordered_map<unsigned int, Meaning> all;
    for (const auto& entry : s_names)
      all.emplace(idOfName(entry.name), entry.meaning);
    return all;
  }();
  return meanings;
}

bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

Meaning meaningOf(const KyCInventoryParameter& parameter)
{
  const unsigned int id = idOf(parameter);
  const auto known = meaningsOfIDs().find(id);
  if (known != meaningsOfIDs().end()) return known->second;
  if (defaultDescription(id) == parameter.getDescription()) return Meaning::NONE;
  const std::string description = lowerCase(parameter.getDescription());
  for (const char* const part : {"serial n", "serialn", "serial_n", "s/n", "asset"})
    if (contains(description, part)) return Meaning::SERIAL_NUMBER;
  return contains(description, "hostname") || contains(description, "host name") ? Meaning::HOST : Meaning::NONE;
}

bool isVersion(const KyCInventoryParameter& parameter)
{
  const std::string name = defaultDescription(idOf(parameter));
  return contains(name, "VERSION") || contains(name, "REVISION");
}

std::string_view trimmed(std::string_view text)
{
  constexpr std::string_view s_space(" \t\r\n\0", 5);
  const std::size_t first = text.find_first_not_of(s_space);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(s_space) - first + 1);
}

// What people and firmware write where there is nothing to say.
bool isFiller(std::string_view text)
{
  if (text.empty()) return true;
  constexpr std::string_view s_fillers = "0xX-.?*# ";
  if (text.find_first_not_of(s_fillers) == std::string_view::npos) return true;
  const std::string lower = lowerCase(text);
  for (const char* const filler : {"none", "n/a", "na", "unknown", "default", "default string", "not specified",
                                   "not available", "to be filled by o.e.m.", "localhost", "localhost.localdomain"})
    if (lower == filler) return true;
  return false;
}

bool isNumber(std::string_view text)
{
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Names of domains that say nothing.
bool isCommonDomain(const std::string& domain)
{
  for (const char* const common : {"local", "localdomain", "lan", "home", "internal", "intranet", "corp"})
    if (domain == common) return true;
  return false;
}

// The one identifier that a text consists of; false when it is more, less or something else.
bool isWholly(std::string_view text, Identifier& identifier)
{
  return identifierAt(text, 0, false, identifier) && identifier.length == text.size();
}

bool hasIdentifier(std::string_view text)
{
  Identifier identifier;
  for (std::size_t at = 0; at < text.size(); ++at)
    if (identifierAt(text, at, false, identifier)) return true;
  return false;
}

bool isAddress(Meaning meaning) { return meaning == Meaning::IP_ADDRESS || meaning == Meaning::MAC_ADDRESS; }

class Anonymizer
{
public:
  Anonymizer(KyCErrorListPool& pool, const std::string& key) : m_pool(pool), m_pseudonyms(key) {}

  TreePointer anonymized(const KyCInventoryItem& root)
  {
    for (const KyCInventoryItem* item = &root; item != nullptr; item = nextItem(*item, root))
      for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
        collect(*p);
    m_replacements.finish();
    return rebuilt(root);
  }

private:
  // ---- First pass: the originals ----

  void collect(const KyCInventoryParameter& parameter)
  {
    const Meaning meaning = meaningOf(parameter);
    const unsigned int type = parameter.getType();
    if (type == KyCParam::TYPE_STRING) collectIdentifiers(valueText(parameter), isVersion(parameter));
    if (meaning == Meaning::NONE || type == KyCParam::TYPE_VERSION) return;
    const std::string value = valueText(parameter);
    const std::string_view text = trimmed(value);
    Identifier identifier;
    if (isFiller(text) || isWholly(text, identifier) || (isAddress(meaning) && hasIdentifier(text))) return;
    if (type != KyCParam::TYPE_STRING)
      collectNumber(text);
    else if (meaning == Meaning::HOST)
      collectHost(text);
    else
      collectSerialNumber(text);
  }

  // MAC addresses and UUIDs also stand in texts without their separators.
  void collectIdentifiers(const std::string& text, bool isVersionText)
  {
    for (std::size_t at = 0; at < text.size();)
    {
      Identifier identifier;
      if (!identifierAt(text, at, isVersionText, identifier))
      {
        ++at;
        continue;
      }
      if (!identifier.isHarmless && identifier.kind <= IdentifierKind::MAC) addDigits(identifier);
      at += identifier.length;
    }
  }

  void addDigits(const Identifier& identifier)
  {
    const auto digitsOf = [](const std::string& bytes)
    {
      std::string digits;
      for (const char c : bytes)
        for (const unsigned int shift : {4u, 0u})
          digits += "0123456789abcdef"[static_cast<unsigned char>(c) >> shift & 15];
      return digits;
    };
    m_replacements.add(digitsOf(identifier.bytes), digitsOf(m_pseudonyms.bytesOf(identifier)));
  }

  void collectNumber(std::string_view text)
  {
    if (isNumber(text) && text.size() > 5) m_replacements.add(text, m_pseudonyms.ofSerialNumber(text));
  }

  void collectSerialNumber(std::string_view text)
  {
    Identifier identifier;
    if (asDigits(text, identifier))
      addDigits(identifier);
    else
      m_replacements.add(text, m_pseudonyms.ofSerialNumber(text));
  }

  // "rack7.example.com" also stands in texts as "rack7", and its domain beside other hosts.
  void collectHost(std::string_view text)
  {
    m_replacements.add(text, pseudonymOfHost(text));
    const std::size_t dot = text.find('.');
    if (text.find(' ') != std::string_view::npos || dot == std::string_view::npos) return;
    const std::string_view label = text.substr(0, dot);
    const std::string domain = lowerCase(text.substr(dot + 1));
    if (!isNumber(label) && !isFiller(label)) m_replacements.add(label, m_pseudonyms.ofHost(label));
    if (!isCommonDomain(domain)) m_replacements.add(domain, m_pseudonyms.ofDomain(domain));
  }

  std::string pseudonymOfHost(std::string_view text) const
  {
    const std::size_t dot = text.find('.');
    if (text.find(' ') != std::string_view::npos || dot == std::string_view::npos) return m_pseudonyms.ofHost(text);
    const std::string domain = lowerCase(text.substr(dot + 1));
    return m_pseudonyms.ofHost(text.substr(0, dot)) + "." +
           (isCommonDomain(domain) ? domain : m_pseudonyms.ofDomain(domain));
  }

  // A MAC address or a UUID without separators.
  static bool asDigits(std::string_view text, Identifier& identifier)
  {
    if (isNumber(text) || (text.size() != 12 && text.size() != 32) || !readHex(text, identifier.bytes)) return false;
    identifier.kind = text.size() == 12 ? IdentifierKind::MAC : IdentifierKind::UUID;
    identifier.length = text.size();
    return true;
  }

  // ---- Second pass: the copy ----

  TreePointer rebuilt(const KyCInventoryItem& root)
  {
    KyTreeBuilder builder(m_pool);
    const KyCInventoryItem* item = &root;
    for (;;)
    {
      builder.startItem();
      builder.fields() = {idOf(*item), indexOf(*item), description(idOf(*item), item->getDescription(), false)};
      for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
        builder.addParameter(anonymized(*p));
      if (item->getFirstSubItem() != nullptr)
      {
        item = item->getFirstSubItem();
        continue;
      }
      for (;; item = item->getParent())
      {
        if (!builder.endItem()) return nullptr;
        if (item == &root) return builder.takeRoot();
        if (item->getNext() != nullptr) break;
      }
      item = item->getNext();
    }
  }

  ParameterPointer anonymized(const KyCInventoryParameter& parameter)
  {
    const bool isVersionText = isVersion(parameter);
    const std::string text = description(idOf(parameter), parameter.getDescription(), isVersionText);
    ParameterPointer copy = text == parameter.getDescription() ? std::make_unique<KyCInventoryParameter>(parameter)
                                                               : described(parameter, text);
    const std::string unit = scrubbed(parameter.getUnit(), isVersionText);
    if (unit != parameter.getUnit()) copy->setUnit(unit.substr(0, s_longestUnit).c_str());
    const Meaning meaning = meaningOf(parameter);
    if (parameter.getType() == KyCParam::TYPE_STRING)
      setText(*copy, meaning, isVersionText);
    else if (meaning != Meaning::NONE)
      setNumber(*copy, meaning);
    return copy;
  }

  // A copy with another description.
  ParameterPointer described(const KyCInventoryParameter& parameter, const std::string& text)
  {
    ParameterPointer copy =
        std::make_unique<KyCInventoryParameter>(m_pool, parameter.getID(), text.c_str(), parameter.getType());
    copy->setUnit(parameter.getUnit());
    copy->setModifiableFlag(parameter.isModifiable());
    copy->setRelevance(parameter.getRelevance());
    if (*parameter.getTypeAsCString() != '\0') setValueText(m_pool, *copy, valueText(parameter));
    return copy;
  }

  // The name of an ID is no original, even where a host is called so.
  std::string description(unsigned int id, const char* text, bool isVersionText)
  {
    return defaultDescription(id) == text ? text : scrubbed(text, isVersionText);
  }

  void setText(KyCInventoryParameter& parameter, Meaning meaning, bool isVersionText)
  {
    const std::string text = valueText(parameter);
    const std::string pseudonym = meaning == Meaning::NONE ? scrubbed(text, isVersionText) : pseudonymOf(text, meaning);
    if (pseudonym != text) setValueText(m_pool, parameter, pseudonym);
  }

  // The value of a parameter that is known for what it holds.
  std::string pseudonymOf(const std::string& value, Meaning meaning)
  {
    const std::string_view text = trimmed(value);
    if (isFiller(text)) return value;
    const std::string* const known = m_replacements.of(text);
    if (known != nullptr) return *known;
    const std::string result = scrubbed(value, false);
    Identifier identifier;
    if (isWholly(text, identifier) || (isAddress(meaning) && hasIdentifier(text))) return result;
    return meaning == Meaning::HOST ? pseudonymOfHost(text) : m_pseudonyms.ofSerialNumber(text);
  }

  // The text with pseudonyms in place of all that is known and of all identifiers.
  std::string scrubbed(const std::string& text, bool isVersionText) const
  {
    const std::string lower = lowerCase(text);
    std::string result;
    for (std::size_t at = 0; at < text.size();)
    {
      std::size_t length = 0;
      const std::string* const known = m_replacements.longestAt(lower, at, length);
      Identifier identifier;
      const bool isIdentifier = identifierAt(text, at, isVersionText, identifier);
      if (isIdentifier && (known == nullptr || identifier.length >= length))
      {
        const std::string_view original(text.data() + at, identifier.length);
        result += identifier.isHarmless ? std::string(original) : m_pseudonyms.ofIdentifier(identifier, original);
        at += identifier.length;
        continue;
      }
      result += known != nullptr ? *known : std::string(1, text[at]);
      at += known != nullptr ? length : 1;
    }
    return result;
  }

  // ---- Numbers ----

  void setNumber(KyCInventoryParameter& parameter, Meaning meaning)
  {
    visitType(parameter.getType(),
              [&](auto tag)
              {
                using T = typename decltype(tag)::Type;
                if constexpr (std::is_integral_v<T> || std::is_floating_point_v<T> || std::is_same_v<T, KyCVersion>)
                  parameter.setValue<T>(m_pool, pseudonymOf(parameter.getValue<T>(m_pool), meaning));
              });
  }

  template <typename T>
  T pseudonymOf(T value, Meaning meaning) const
  {
    if constexpr (std::is_same_v<T, KyCVersion>)
    {
      if (value == KyCVersion()) return value;
      const auto part = [&](unsigned int n) { return static_cast<unsigned int>(m_pseudonyms.ofNumber(n, 255)); };
      const unsigned int numbers[] = {value.getMajor(), value.getMinor(), value.getMaintenance(), value.getBuild()};
      if (meaning == Meaning::IP_ADDRESS && *std::max_element(numbers, numbers + 4) <= 255)
      {
        const std::uint32_t address = ipAddressOf(numbers[0] << 24 | numbers[1] << 16 | numbers[2] << 8 | numbers[3]);
        return KyCVersion(address >> 24, address >> 16 & 255, address >> 8 & 255, address & 255);
      }
      return KyCVersion(part(numbers[0]), part(numbers[1]), part(numbers[2]), part(numbers[3]));
    }
    else if constexpr (std::is_floating_point_v<T>)
    {
      if (!std::isfinite(value) || value == 0) return value;
      constexpr unsigned long long s_largest = 1ull << std::numeric_limits<T>::digits;
      const double whole = std::min(std::fabs(static_cast<double>(value)), 9e15);
      const T number = static_cast<T>(m_pseudonyms.ofNumber(static_cast<unsigned long long>(whole), s_largest));
      return value < 0 ? -number : number;
    }
    else
    {
      return pseudonymOfInteger(value, meaning);
    }
  }

  template <typename T>
  T pseudonymOfInteger(T value, Meaning meaning) const
  {
    if (value == 0 || value == std::numeric_limits<T>::max() || value == static_cast<T>(-1)) return value;
    const bool isMinus = value < 0;
    const unsigned long long size =
        isMinus ? 0 - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    const unsigned long long largest = static_cast<unsigned long long>(std::numeric_limits<T>::max());
    unsigned long long number = 0;
    if (meaning == Meaning::IP_ADDRESS && !isMinus && sizeof(T) >= 4 && size <= 0xFFFFFFFF)
      number = ipAddressOf(static_cast<std::uint32_t>(size));
    else if (meaning == Meaning::MAC_ADDRESS && sizeof(T) == 8 && size < 1ull << 48)
      number = macAddressOf(size);
    else if (sizeof(T) >= 4 && size < 10000000000000000000u)    // its pseudonym has as many digits as 64 bits hold
      number = std::stoull(m_pseudonyms.ofSerialNumber(std::to_string(size)));
    else
      number = m_pseudonyms.ofNumber(size, largest);
    if (number > largest) number = m_pseudonyms.ofNumber(size, largest);
    return isMinus ? static_cast<T>(0 - number) : static_cast<T>(number);
  }

  std::uint32_t ipAddressOf(std::uint32_t address) const
  {
    if (address >> 24 == 255 || address >> 24 == 127 || address == 0) return address;
    Identifier identifier = {IdentifierKind::IPV4, 0, bytesOf(address, 4)};
    return static_cast<std::uint32_t>(numberOf(m_pseudonyms.bytesOf(identifier)));
  }

  std::uint64_t macAddressOf(std::uint64_t address) const
  {
    Identifier identifier = {IdentifierKind::MAC, 0, bytesOf(address, 6)};
    return numberOf(m_pseudonyms.bytesOf(identifier));
  }

  // The highest byte first.
  static std::string bytesOf(std::uint64_t number, unsigned int count)
  {
    std::string bytes;
    for (unsigned int n = count; n > 0; --n)
      bytes += static_cast<char>(number >> (8 * (n - 1)) & 0xFF);
    return bytes;
  }
  static std::uint64_t numberOf(const std::string& bytes)
  {
    std::uint64_t number = 0;
    for (const char c : bytes)
      number = number << 8 | static_cast<unsigned char>(c);
    return number;
  }

  KyCErrorListPool& m_pool;
  KyPseudonyms m_pseudonyms;
  KyReplacements m_replacements;
};
}    // namespace

TreePointer anonymizedTree(KyCErrorListPool& pool, const KyCInventoryItem& root, const std::string& key)
{
  return Anonymizer(pool, key).anonymized(root);
}

bool randomKey(KyCErrorListPool& pool, std::string& key)
{
  char bytes[16];
  ssize_t got = 0;
  do
    got = ::getrandom(bytes, sizeof(bytes), 0);
  while (got < 0 && errno == EINTR);
  if (got != static_cast<ssize_t>(sizeof(bytes)))
  {
    pool.setError(KY_FORMAT_MSG_NO_RANDOM_KEY, __LINE__, "randomKey", "%s", std::strerror(errno));
    return false;
  }
  key.assign(bytes, sizeof(bytes));
  return true;
}
}    // namespace KyNInventoryKit
