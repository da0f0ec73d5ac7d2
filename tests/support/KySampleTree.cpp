#include "support/KySampleTree.h"

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <type_traits>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"

namespace
{
// One blank-separated piece of an entry. `quoted`: its value was in quotes.
struct TToken
{
  std::string key;     // what stands before "=", empty when there is none
  std::string type;    // what stands between ":" and "=" in the key
  std::string value;
  bool quoted = false;
};

using TEntry = std::vector<TToken>;

// Cuts the text into entries and tokens, so that quotes may hold any character.
class KyCTokenizer
{
public:
  explicit KyCTokenizer(const std::string& text) : m_text(text) {}

  std::vector<TEntry> read()
  {
    std::vector<TEntry> entries(1);
    while (m_at < m_text.size())
    {
      const char character = m_text[m_at];
      if (character == '#' && isLineStart())
        skipLine();
      else if (character == '\n' || character == ';')
      {
        entries.emplace_back();
        ++m_at;
      }
      else if (std::isspace(static_cast<unsigned char>(character)) != 0)
        ++m_at;
      else
        entries.back().push_back(readToken());
    }
    return entries;
  }

private:
  bool isLineStart() const { return m_at == 0 || m_text[m_at - 1] == '\n'; }
  void skipLine()
  {
    while (m_at < m_text.size() && m_text[m_at] != '\n')
      ++m_at;
  }
  bool isTokenEnd() const
  {
    return m_at >= m_text.size() || m_text[m_at] == ';' || std::isspace(static_cast<unsigned char>(m_text[m_at])) != 0;
  }

  TToken readToken()
  {
    TToken token;
    while (!isTokenEnd())
    {
      const char character = m_text[m_at++];
      if (character == '"')
      {
        token.quoted = true;
        readQuoted(token.value);
      }
      else if (character == '=' && token.key.empty() && !token.quoted)
        takeKey(token);
      else
        token.value += character;
    }
    return token;
  }

  static void takeKey(TToken& token)
  {
    token.key.swap(token.value);
    const std::size_t colon = token.key.find(':');
    if (colon == std::string::npos) return;
    token.type = token.key.substr(colon + 1);
    token.key.resize(colon);
  }

  void readQuoted(std::string& value)
  {
    while (m_at < m_text.size() && m_text[m_at] != '"')
    {
      char character = m_text[m_at++];
      if (character == '\\' && m_at < m_text.size()) character = readEscape();
      value += character;
    }
    ++m_at;    // the closing quote
  }

  char readEscape()
  {
    const char character = m_text[m_at++];
    if (character == 'n') return '\n';
    if (character == 't') return '\t';
    if (character != 'x') return character;
    const std::string digits = m_text.substr(m_at, 2);
    m_at += digits.size();
    return static_cast<char>(std::strtoul(digits.c_str(), nullptr, 16));
  }

  const std::string& m_text;
  std::size_t m_at = 0;
};

struct TParameterText
{
  KyCInventoryAddress id;
  std::string type, value, unit;
  std::string description;
  bool hasDescription = false;
  bool modifiable = false;
  unsigned int relevance = 0;
};

// Fails the test with what the library has to say, which is then read.
void fail(KyTestPool& pool, const std::string& what)
{
  std::string reports;
  for (const KyReport& report : pool.takeReports())
    reports += "\n  " + report.function + ": " + report.text;
  ADD_FAILURE() << "sample tree: " << what << reports;
}

const char* descriptionOf(const TParameterText& text)
{
  return text.hasDescription ? text.description.c_str() : text.id.getCategoryNameCStr();
}

template <typename T>
KyCInventoryParameter* makeTyped(KyTestPool& pool, const TParameterText& text, const T& value)
{
  return new (pool) KyCInventoryParameter(pool, text.id, descriptionOf(text), value, text.unit.c_str(), text.modifiable,
                                          text.relevance);
}

template <typename T>
KyCInventoryParameter* makeInteger(KyTestPool& pool, const TParameterText& text)
{
  const char* const value = text.value.c_str();
  return *value == '-' ? makeTyped(pool, text, static_cast<T>(std::strtoll(value, nullptr, 0)))
                       : makeTyped(pool, text, static_cast<T>(std::strtoull(value, nullptr, 0)));
}

KyCInventoryParameter* makeVersion(KyTestPool& pool, const TParameterText& text)
{
  KyCVersion version;
  if (!version.fromString(text.value.c_str())) fail(pool, "no version: " + text.value);
  return makeTyped(pool, text, version);
}

KyCInventoryParameter* makeOfCode(KyTestPool& pool, const TParameterText& text)
{
  const unsigned int code = static_cast<unsigned int>(std::strtoul(text.type.c_str(), nullptr, 0));
  if (code == 0)
  {
    fail(pool, "no type: " + text.type);
    return nullptr;
  }
  KyCInventoryParameter* const parameter = new (pool) KyCInventoryParameter(pool, text.id, descriptionOf(text), code);
  if (parameter == nullptr) return nullptr;
  parameter->setUnit(text.unit.c_str());
  parameter->setModifiableFlag(text.modifiable);
  parameter->setRelevance(text.relevance);
  return parameter;
}

KyCInventoryParameter* makeParameter(KyTestPool& pool, const TParameterText& text)
{
  if (text.type == "Int8") return makeInteger<signed char>(pool, text);
  if (text.type == "Int16") return makeInteger<short>(pool, text);
  if (text.type == "Int32") return makeInteger<int>(pool, text);
  if (text.type == "Long64") return makeInteger<long long>(pool, text);
  if (text.type == "UInt8") return makeInteger<unsigned char>(pool, text);
  if (text.type == "UInt16") return makeInteger<unsigned short>(pool, text);
  if (text.type == "UInt32") return makeInteger<unsigned int>(pool, text);
  if (text.type == "ULong64") return makeInteger<unsigned long long>(pool, text);
  if (text.type == "Float32") return makeTyped(pool, text, std::strtof(text.value.c_str(), nullptr));
  if (text.type == "Float64") return makeTyped(pool, text, std::strtod(text.value.c_str(), nullptr));
  if (text.type == "String")
    return makeTyped(pool, text, KyCString(text.value.data(), static_cast<unsigned int>(text.value.size())));
  if (text.type == "Version") return makeVersion(pool, text);
  return makeOfCode(pool, text);
}

// What remains of a path below the root.
KyCInventoryAddress belowRoot(const KyCInventoryItem& root, const std::string& text)
{
  KyCInventoryAddress path = kyAddress(text);
  if (path.isEmpty()) ADD_FAILURE() << "sample tree: no path: " << text;
  return path.getFirstElement() == root.getID() ? path.getSubAddress() : path;
}

KyCInventoryItem* makeItem(KyTestPool& pool, const KyCInventoryAddress& id, const char* description)
{
  return new (pool) KyCInventoryItem(pool, id, description != nullptr ? description : id.getCategoryNameCStr());
}

// Unlike addPath it also makes items without a predefined ID.
KyCInventoryItem* itemAt(KyTestPool& pool, KyCInventoryItem& root, const KyCInventoryAddress& path,
                         const char* description)
{
  KyCInventoryItem* item = &root;
  for (unsigned int n = 0; n < path.getLength(); ++n)
  {
    const KyCInventoryAddress id(path.getElements()[n].id, path.getElements()[n].index);
    KyCInventoryItem* next = item->getItem(id);
    if (next == nullptr)
    {
      next = makeItem(pool, id, n + 1 == path.getLength() ? description : nullptr);
      if (item->addItem(KyNInventoryIDs::THIS_NODE, next) == nullptr)
      {
        fail(pool, std::string("no item can be added as ") + path.toString().c_str());
        delete next;
        return item;
      }
    }
    item = next;
  }
  return item;
}

void addParameter(KyTestPool& pool, KyCInventoryItem& item, const TParameterText& text)
{
  if (!text.id.isSingleElement()) return;    // has failed the test already
  KyCInventoryParameter* const parameter = makeParameter(pool, text);
  if (parameter == nullptr || item.addParameter(pool, KyNInventoryIDs::THIS_NODE, parameter) != nullptr) return;
  fail(pool, std::string("no parameter can be added as ") + text.id.toString().c_str());
  delete parameter;
}

KyCInventoryAddress parameterID(const std::string& text)
{
  const KyCInventoryAddress id = kyAddress(text);
  if (id.getLength() > 1) ADD_FAILURE() << "sample tree: an ID has one element: " << text;
  return id;
}

std::string typeOfValue(const TToken& token)
{
  if (token.quoted) return "String";
  return token.value.find('.') != std::string::npos ? "Float64" : "Int32";
}

void addShortParameters(KyTestPool& pool, KyCInventoryItem& item, const TEntry& entry)
{
  for (std::size_t n = 1; n < entry.size(); ++n)
  {
    if (entry[n].key == "description") continue;
    TParameterText text;
    text.id = parameterID(entry[n].key);
    text.type = entry[n].type.empty() ? typeOfValue(entry[n]) : entry[n].type;
    text.value = entry[n].value;
    addParameter(pool, item, text);
  }
}

void takeOption(TParameterText& text, const TToken& token)
{
  if (token.key.empty() && token.value == "modifiable")
    text.modifiable = true;
  else if (token.key == "unit")
    text.unit = token.value;
  else if (token.key == "relevance")
    text.relevance = static_cast<unsigned int>(std::strtoul(token.value.c_str(), nullptr, 0));
  else if (token.key == "description")
  {
    text.description = token.value;
    text.hasDescription = true;
  }
  else
    ADD_FAILURE() << "sample tree: no option: " << token.key << " " << token.value;
}

void addLongParameter(KyTestPool& pool, KyCInventoryItem& item, const TEntry& entry)
{
  if (entry.size() < 4)
  {
    ADD_FAILURE() << "sample tree: ID, type and value expected behind " << entry[0].value;
    return;
  }
  TParameterText text;
  text.id = parameterID(entry[1].value);
  text.type = entry[2].value;
  text.value = entry[3].value;
  for (std::size_t n = 4; n < entry.size(); ++n)
    takeOption(text, entry[n]);
  addParameter(pool, item, text);
}

const char* itemDescription(const TEntry& entry)
{
  const bool isShort = entry.size() > 1 && !entry[1].key.empty();
  for (const TToken& token : entry)
  {
    if (isShort && token.key == "description") return token.value.c_str();
  }
  return nullptr;
}

void addEntry(KyTestPool& pool, KyCInventoryItem& root, const TEntry& entry)
{
  KyCInventoryItem* const item = itemAt(pool, root, belowRoot(root, entry[0].value), itemDescription(entry));
  if (entry.size() == 1) return;
  if (entry[1].key.empty())
    addLongParameter(pool, *item, entry);
  else
    addShortParameters(pool, *item, entry);
}

KyCInventoryItem* makeRoot(KyTestPool& pool, const TEntry& entry)
{
  const KyCInventoryAddress path = kyAddress(entry[0].value);
  return makeItem(pool, path.getFirstElement(), path.isSingleElement() ? itemDescription(entry) : nullptr);
}
}    // namespace

KySampleTree::KySampleTree(const std::string& text) : m_root(nullptr)
{
  KyTestPool pool;
  for (const TEntry& entry : KyCTokenizer(text).read())
  {
    if (entry.empty()) continue;
    if (m_root == nullptr) m_root = makeRoot(pool, entry);
    addEntry(pool, *m_root, entry);
  }
  if (m_root == nullptr) ADD_FAILURE() << "sample tree: no root in: " << text;
}

KySampleTree::~KySampleTree() { delete m_root; }

KyCInventoryItem* KySampleTree::release()
{
  KyCInventoryItem* const root = m_root;
  m_root = nullptr;
  return root;
}

KyCInventoryItem* KySampleTree::item(const std::string& path)
{
  KyCInventoryItem* const found = m_root->getItem(kyAddress(path));
  if (found == nullptr) ADD_FAILURE() << "sample tree: no item " << path;
  return found;
}

KyCInventoryParameter* KySampleTree::parameter(const std::string& path)
{
  KyCInventoryParameter* const found = m_root->getParameter(kyAddress(path));
  if (found == nullptr) ADD_FAILURE() << "sample tree: no parameter " << path;
  return found;
}

KyCInventoryAddress kyAddress(const std::string& text)
{
  KyCInventoryAddress address;
  address.readFromString(KyCString(text.c_str()));
  if (address.isEmpty() && !text.empty()) ADD_FAILURE() << "no address: " << text;
  return address;
}

namespace
{
// A value as text that tells every bit of it; empty for a type without value.
template <typename T>
std::string exactNumber(KyTestPool& pool, const KyCInventoryParameter& parameter)
{
  const T value = parameter.getValue<T>(pool);
  std::uint64_t bits = 0;    // the number that they make, on machines of either byte order
  if constexpr (std::is_same_v<T, double>)
    std::memcpy(&bits, &value, sizeof(value));
  else if constexpr (std::is_same_v<T, float>)
  {
    std::uint32_t half = 0;
    std::memcpy(&half, &value, sizeof(value));
    bits = half;
  }
  else
    bits = static_cast<std::make_unsigned_t<T>>(value);
  return std::to_string(value) + " (bits " + std::to_string(bits) + ")";
}

std::string exactValue(const KyCInventoryParameter& parameter)
{
  KyTestPool pool;
  switch (parameter.getType())
  {
    case 0x111:
      return exactNumber<signed char>(pool, parameter);
    case 0x112:
      return exactNumber<short>(pool, parameter);
    case 0x114:
      return exactNumber<int>(pool, parameter);
    case 0x118:
      return exactNumber<long long>(pool, parameter);
    case 0x121:
      return exactNumber<unsigned char>(pool, parameter);
    case 0x122:
      return exactNumber<unsigned short>(pool, parameter);
    case 0x124:
      return exactNumber<unsigned int>(pool, parameter);
    case 0x128:
      return exactNumber<unsigned long long>(pool, parameter);
    case 0x214:
      return exactNumber<float>(pool, parameter);
    case 0x218:
      return exactNumber<double>(pool, parameter);
    case 0x2000:
    {
      const KyCString text = parameter.getValue<KyCString>(pool);
      return std::string(text.c_str(), text.length());
    }
    case 0x4000:
      return parameter.getValue<KyCVersion>(pool).toString().c_str();
    default:
      return std::string();
  }
}

// Empty when both are equal.
std::string differs(const char* what, const std::string& a, const std::string& b)
{
  return a == b ? std::string() : std::string(what) + " " + a + ", " + b;
}

std::string number(unsigned int value) { return std::to_string(value); }

std::string firstOf(std::initializer_list<std::string> differences)
{
  for (const std::string& difference : differences)
  {
    if (!difference.empty()) return difference;
  }
  return std::string();
}

std::string placeOf(const KyCInventoryItem& item)
{
  const KyCInventoryAddress address = item.getAddress();
  return address.isEmpty() ? "root item" : address.toString().c_str();
}

std::string parameterDifference(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  const std::string difference =
      firstOf({differs("ID", a.getID().toString().c_str(), b.getID().toString().c_str()),
               differs("description", a.getDescription(), b.getDescription()),
               differs("type", number(a.getType()), number(b.getType())),
               a.getType() == b.getType() ? differs("value", exactValue(a), exactValue(b)) : std::string(),
               differs("unit", a.getUnit(), b.getUnit()),
               differs("modifiable", number(a.isModifiable()), number(b.isModifiable())),
               differs("relevance", number(a.getRelevance()), number(b.getRelevance()))});
  return difference.empty() ? difference : std::string(a.getAddress().toString().c_str()) + ": " + difference;
}

// Of the two items themselves and their parameters.
std::string itemDifference(const KyCInventoryItem& a, const KyCInventoryItem& b)
{
  const std::string difference = firstOf({differs("ID", a.getID().toString().c_str(), b.getID().toString().c_str()),
                                          differs("description", a.getDescription(), b.getDescription())});
  if (!difference.empty()) return placeOf(a) + ": " + difference;

  const KyCInventoryParameter* first = a.getParameterByOrdinalNumber(0);
  const KyCInventoryParameter* second = b.getParameterByOrdinalNumber(0);
  for (; first != nullptr && second != nullptr; first = first->getNext(), second = second->getNext())
  {
    const std::string inParameter = parameterDifference(*first, *second);
    if (!inParameter.empty()) return inParameter;
  }
  if (first == second) return std::string();    // both at their end
  const KyCString extra = (first != nullptr ? first : second)->getID().toString();
  return placeOf(a) + ": parameter " + extra.c_str() + " only in the " + (first != nullptr ? "first" : "second");
}
}    // namespace

std::string KyTreeDifference(const KyCInventoryItem& a, const KyCInventoryItem& b)
{
  const KyCInventoryItem* first = &a;
  const KyCInventoryItem* second = &b;
  while (true)
  {
    const std::string difference = itemDifference(*first, *second);
    if (!difference.empty()) return difference;

    const KyCInventoryItem* nextFirst = first->getFirstSubItem();
    const KyCInventoryItem* nextSecond = second->getFirstSubItem();
    while (nextFirst == nullptr && nextSecond == nullptr && first != &a)
    {
      nextFirst = first->getNext();
      nextSecond = second->getNext();
      first = first->getParent();
      second = second->getParent();
    }
    if ((nextFirst == nullptr) != (nextSecond == nullptr))
    {
      const KyCInventoryItem* const extra = nextFirst != nullptr ? nextFirst : nextSecond;
      return placeOf(*extra) + ": only in the " + (nextFirst != nullptr ? "first" : "second");
    }
    if (nextFirst == nullptr) return std::string();
    first = nextFirst;
    second = nextSecond;
  }
}
