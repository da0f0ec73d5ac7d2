#include "inventorykit/KyAnonymize.h"

#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "KyFormatMessages.h"
#include "KyIdentifiers.h"
#include "KyLabels.h"
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

// Not of a "guide".
bool speaksOfUuid(const std::string& description)
{
  const std::size_t at = description.find("uid");
  if (at == 0 || at == std::string::npos || (description[at - 1] != 'u' && description[at - 1] != 'g')) return false;
  return at + 3 == description.size() || description[at + 3] < 'a' || description[at + 3] > 'z';
}

bool isOneWordWithDigit(const KyCInventoryParameter& parameter)
{
  if (parameter.getType() != KyCParam::TYPE_STRING) return false;
  const std::string text = valueText(parameter);
  return text.find(' ') == std::string::npos && text.find_first_of("0123456789") != std::string::npos;
}

Meaning meaningOf(const KyCInventoryParameter& parameter)
{
  const unsigned int id = idOf(parameter);
  const auto known = meaningsOfIDs().find(id);
  if (known != meaningsOfIDs().end()) return known->second;
  if (defaultDescription(id) == parameter.getDescription()) return Meaning::NONE;
  const std::string description = lowerCase(parameter.getDescription());
  for (const char* const part : {"serial n", "serialn", "serial_n", "s/n", "asset"})
    if (contains(description, part)) return Meaning::SERIAL_NUMBER;
  if (contains(description, "hostname") || contains(description, "host name")) return Meaning::HOST;
  return speaksOfUuid(description) && isOneWordWithDigit(parameter) ? Meaning::SERIAL_NUMBER : Meaning::NONE;
}

// Or a checksum: what looks like an address, or like digits of one, is none.
bool isVersion(const KyCInventoryParameter& parameter)
{
  const std::string name = defaultDescription(idOf(parameter));
  for (const char* const part : {"VERSION", "REVISION", "CHECKSUM", "CRC", "DIGEST"})
    if (contains(name, part)) return true;
  if (name == parameter.getDescription()) return false;
  const std::string description = lowerCase(parameter.getDescription());
  for (const char* const part : {"checksum", "crc", "md5", "digest", "hash"})
    if (contains(description, part)) return true;
  return false;
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
    {
      collectDescription(idOf(*item), item->getDescription(), false);
      for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
        collect(*p);
    }
    m_replacements.finish();
    return rebuilt(root);
  }

private:
  using Where = KyReplacements::Where;

  // ---- First pass: the originals ----

  void collect(const KyCInventoryParameter& parameter)
  {
    const Meaning meaning = meaningOf(parameter);
    const unsigned int type = parameter.getType();
    const bool isVersionText = isVersion(parameter);
    collectDescription(idOf(parameter), parameter.getDescription(), isVersionText);
    collectText(parameter.getUnit(), isVersionText);
    if (type == KyCParam::TYPE_STRING) collectText(valueText(parameter), isVersionText);
    if (meaning == Meaning::NONE || type == KyCParam::TYPE_VERSION) return;
    const std::string value = valueText(parameter);
    const std::string_view text = trimmed(value);
    Identifier identifier;
    if (isFiller(text) || isWholly(text, identifier) || (isAddress(meaning) && hasIdentifier(text))) return;
    if (type != KyCParam::TYPE_STRING)
      collectNumber(text, meaning);
    else if (meaning == Meaning::HOST)
      collectHost(text, Where::ANYWHERE);
    else
      collectSerialNumber(text, meaning, Where::ANYWHERE);
  }

  void collectDescription(unsigned int id, const char* text, bool isVersionText)
  {
    if (defaultDescription(id) != text) collectText(text, isVersionText);
  }

  void collectText(const std::string& text, bool isVersionText)
  {
    collectIdentifiers(text, isVersionText);
    for (const LabelledWord& word : labelledWords(text))
    {
      const std::string_view original = std::string_view(text).substr(word.begin, word.length);
      Identifier identifier;
      if (isFiller(original) || isWholly(original, identifier)) continue;
      if (word.isHost)
        collectHost(original, Where::ALONE);
      else
        collectSerialNumber(original, Meaning::SERIAL_NUMBER, Where::ALONE);
    }
  }

  // Those of which other spellings may stand elsewhere.
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
      if (!identifier.isHarmless) addSpellings(identifier);
      at += identifier.length;
    }
  }

  void addSpellings(const Identifier& identifier)
  {
    const std::string& bytes = identifier.bytes;
    if (identifier.kind == IdentifierKind::IPV4) return;
    if (identifier.kind == IdentifierKind::IPV6)
    {
      const std::string_view behindNetwork = std::string_view(bytes).substr(8);
      if (isExtendedMac(behindNetwork)) addMac(macOfExtended(behindNetwork));
      return;
    }
    if (identifier.kind == IdentifierKind::MAC && bytes.size() == 6) return addMac(bytes);
    if (isExtendedMac(bytes) && (bytes[0] & 2) != 0) addMac(macOfExtended(bytes));
    addOnce(bytes, m_pseudonyms.bytesOf(identifier));
  }

  // False when it has been added before.
  bool addOnce(const std::string& bytes, const std::string& pseudonym)
  {
    if (!m_seen.insert(bytes).second) return false;
    m_replacements.add(hexOf(bytes), hexOf(pseudonym));
    if (bytes.size() == 16) m_replacements.add(withDashes(bytes), withDashes(pseudonym));
    return true;
  }

  // Where identifiers are found by their form, these are found by their digits: right behind a letter, without leading zeros, as
  // the end of an IPv6 address, ...
  void addMac(const std::string& mac)
  {
    const std::string pseudonym = m_pseudonyms.bytesOf({IdentifierKind::MAC, 0, mac});
    if (!addOnce(mac, pseudonym)) return;
    for (const char separator : {':', '-'})
      m_replacements.add(joined(mac, 1, separator), joined(pseudonym, 1, separator));
    m_replacements.add(joined(mac, 2, '.'), joined(pseudonym, 2, '.'));
    for (const char separator : {':', '-'})
      m_replacements.add(joined(mac, 2, separator), joined(pseudonym, 2, separator), Where::ALONE);
    m_replacements.add(shortMac(mac), shortMac(pseudonym), Where::ALONE);
    const std::string extended = extendedMac(mac);
    const std::string extendedPseudonym = extendedMac(pseudonym);
    addOnce(extended, extendedPseudonym);
    const std::string groups = joined(extended, 2, ':');
    const std::string groupsOfPseudonym = joined(extendedPseudonym, 2, ':');
    m_replacements.add(groups, groupsOfPseudonym, Where::ALONE);
    m_replacements.add(withoutZeros(groups), withoutZeros(groupsOfPseudonym), Where::ALONE);
  }

  // "001b:213c:4d5e" of 2 bytes a group.
  static std::string joined(const std::string& bytes, std::size_t group, char separator)
  {
    std::string text;
    for (std::size_t n = 0; n < bytes.size(); n += group)
      text += (n == 0 ? std::string() : std::string(1, separator)) + hexOf(std::string_view(bytes).substr(n, group));
    return text;
  }
  static std::string withDashes(const std::string& uuid)
  {
    std::string text = hexOf(uuid);
    for (const std::size_t at : {20u, 16u, 12u, 8u})
      text.insert(at, 1, '-');
    return text;
  }
  static std::string withoutZeros(const std::string& groups)
  {
    std::string text;
    for (std::size_t n = 0; n < groups.size(); ++n)
    {
      const bool isFirst = text.empty() || text.back() == ':';
      const bool isLast = n + 1 == groups.size() || groups[n + 1] == ':';
      if (groups[n] != '0' || !isFirst || isLast) text += groups[n];
    }
    return text;
  }

  void collectNumber(std::string_view text, Meaning meaning)
  {
    if (!isNumber(text) || text.size() <= 5) return;
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    if (meaning == Meaning::MAC_ADDRESS && number < 0xFFFFFFFFFFFF) addMac(bytesOf(number, 6));
    m_replacements.add(text, m_pseudonyms.ofSerialNumber(text));
  }

  void collectSerialNumber(std::string_view text, Meaning meaning, Where where)
  {
    Identifier identifier;
    if (asDigits(text, meaning, identifier))
      addSpellings(identifier);
    else
      m_replacements.add(text, m_pseudonyms.ofSerialNumber(text), where);
  }

  // "rack7.example.com" also stands in texts as "rack7", and its domain beside other hosts.
  void collectHost(std::string_view text, Where where)
  {
    m_replacements.add(text, pseudonymOfHost(text), where);
    const std::size_t dot = text.find('.');
    if (text.find(' ') != std::string_view::npos || dot == std::string_view::npos) return;
    const std::string_view label = text.substr(0, dot);
    const std::string domain = lowerCase(text.substr(dot + 1));
    if (!isNumber(label) && !isFiller(label)) m_replacements.add(label, m_pseudonyms.ofHost(label), where);
    if (!isCommonDomain(domain)) m_replacements.add(domain, m_pseudonyms.ofDomain(domain), where);
  }

  std::string pseudonymOfHost(std::string_view text) const
  {
    const std::size_t dot = text.find('.');
    if (text.find(' ') != std::string_view::npos || dot == std::string_view::npos) return m_pseudonyms.ofHost(text);
    const std::string domain = lowerCase(text.substr(dot + 1));
    return m_pseudonyms.ofHost(text.substr(0, dot)) + "." +
           (isCommonDomain(domain) ? domain : m_pseudonyms.ofDomain(domain));
  }

  // A MAC address or a UUID without separators. One of digits alone is a serial number like any other, but where a MAC
  // address is expected.
  static bool asDigits(std::string_view text, Meaning meaning, Identifier& identifier)
  {
    const bool isMac = meaning == Meaning::MAC_ADDRESS && text.size() == 12;
    if ((isNumber(text) && !isMac) || (text.size() != 12 && text.size() != 32) || !readHex(text, identifier.bytes))
      return false;
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
    Identifier identifier;
    if (isWholly(text, identifier)) return scrubbed(value, false);
    const std::string* const known = m_replacements.of(text);
    if (known != nullptr) return *known;
    if (isAddress(meaning) && hasIdentifier(text)) return scrubbed(value, false);
    return meaning == Meaning::HOST ? pseudonymOfHost(text) : m_pseudonyms.ofSerialNumber(text);
  }

  std::string pseudonymOf(std::string_view text, const LabelledWord& word) const
  {
    if (isFiller(text)) return std::string(text);
    const std::string* const known = m_replacements.of(text);
    if (known != nullptr) return *known;
    return word.isHost ? pseudonymOfHost(text) : m_pseudonyms.ofSerialNumber(text);
  }

  // The text with pseudonyms in place of all that is known and of all identifiers.
  std::string scrubbed(const std::string& text, bool isVersionText) const
  {
    const std::string lower = lowerCase(text);
    const std::vector<LabelledWord> words = labelledWords(text);
    auto word = words.begin();
    std::string result;
    for (std::size_t at = 0; at < text.size();)
    {
      std::size_t length = 0;
      const std::string* const known = m_replacements.longestAt(lower, at, length);
      while (word != words.end() && word->begin < at)
        ++word;
      const std::size_t wordLength = word != words.end() && word->begin == at ? word->length : 0;
      Identifier identifier;
      if (identifierAt(text, at, isVersionText, identifier) && identifier.length >= std::max(length, wordLength))
      {
        const std::string_view original(text.data() + at, identifier.length);
        result += identifier.isHarmless ? std::string(original) : m_pseudonyms.ofIdentifier(identifier, original);
        at += identifier.length;
      }
      else if (wordLength > length)
      {
        result += pseudonymOf(std::string_view(text).substr(at, wordLength), *word);
        at += wordLength;
      }
      else
      {
        result += known != nullptr ? *known : std::string(1, text[at]);
        at += known != nullptr ? length : 1;
      }
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
  std::unordered_set<std::string> m_seen;    // MAC addresses and UUIDs, as bytes
};
}    // namespace

TreePointer anonymizedTree(KyCErrorListPool& pool, const KyCInventoryItem& root, const std::string& key)
{
  const unsigned int errorCount = pool.getErrorCount();
  TreePointer copy = Anonymizer(pool, key).anonymized(root);
  if (pool.getErrorCount() != errorCount) copy.reset();    // something may still be as it was
  return copy;
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
