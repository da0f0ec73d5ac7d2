// KyJsonImport.cpp: JSON and JSON lines as a tree. The library's parser hands over one token after the other; nothing of
// the text is kept but the tree that is made of it.
#include <cstdint>
#include <cstring>
#include <iterator>
#include <unordered_set>
#include <utility>
#include <vector>

#include "KyFormatMessages.h"
#include "KyFormatParts.h"
#include "KyJsonValue.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
// Tells how far the parser has read: its callbacks do not.
class WatchedIterator
{
public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  WatchedIterator(const char* at, const char** furthest) : m_at(at), m_furthest(furthest) {}
  reference operator*() const { return *m_at; }
  WatchedIterator& operator++()
  {
    *m_furthest = ++m_at;
    return *this;
  }
  bool operator==(const WatchedIterator& other) const { return m_at == other.m_at; }
  bool operator!=(const WatchedIterator& other) const { return m_at != other.m_at; }

private:
  const char* m_at;
  const char** m_furthest;
};

// ---- The grammar ----

enum class Place
{
  DOCUMENT,    // the object around a tree
  ITEM,
  PARAMETERS,    // a list
  PARAMETER,
  ITEMS,    // a list
  LINE,     // a parameter with its address: a line of JSON lines
  BYTES     // the object that stands for a text that is not UTF-8
};

enum FieldName
{
  SCHEMA,
  FORMAT,
  VERSION,
  ROOT,
  ID,
  INDEX,
  DESCRIPTION,
  PARAMETERS,
  ITEMS,
  ADDRESS,
  TYPE,
  VALUE,
  UNIT,
  MODIFIABLE,
  RELEVANCE,
  BYTES,
  FIELD_COUNT
};
constexpr const char* s_names[FIELD_COUNT] = {"$schema",     "format",     "version",   "root",    "id",   "index",
                                              "description", "parameters", "items",     "address", "type", "value",
                                              "unit",        "modifiable", "relevance", "bytes"};

constexpr unsigned int bit(FieldName name) { return 1u << name; }

struct Fields
{
  const char* of;    // "an item"
  unsigned int allowed;
  unsigned int required;
};

Fields fieldsOf(Place place)
{
  constexpr unsigned int s_ofParameters =
      bit(TYPE) | bit(VALUE) | bit(UNIT) | bit(MODIFIABLE) | bit(RELEVANCE) | bit(DESCRIPTION);
  switch (place)
  {
    case Place::DOCUMENT:
      return {"the document", bit(SCHEMA) | bit(FORMAT) | bit(VERSION) | bit(ROOT),
              bit(FORMAT) | bit(VERSION) | bit(ROOT)};
    case Place::ITEM:
      return {"an item", bit(ID) | bit(INDEX) | bit(DESCRIPTION) | bit(PARAMETERS) | bit(ITEMS), bit(ID)};
    case Place::PARAMETER:
      return {"a parameter", bit(ID) | s_ofParameters, bit(ID) | bit(TYPE) | bit(VALUE)};
    case Place::LINE:
      return {"a line", bit(ADDRESS) | s_ofParameters, bit(ADDRESS) | bit(TYPE) | bit(VALUE)};
    case Place::PARAMETERS:
    case Place::ITEMS:
    case Place::BYTES:
      break;
  }
  return {"a text", bit(BYTES), bit(BYTES)};
}

// What comes from a text and goes into a report is cut to a length for people.
std::string inQuotes(const std::string& text)
{
  constexpr std::size_t s_longest = 60;
  return "\"" + (text.size() > s_longest ? text.substr(0, s_longest) + "..." : text) + "\"";
}

// The fields of the parameter that is being read.
struct ParameterRecord
{
  unsigned int id = 0;
  KyCInventoryAddress address;    // of a line
  std::string description;
  unsigned int type = 0;
  Json value;
  std::size_t valueAt = 0;
  std::string unit;
  bool isModifiable = false;
  unsigned int relevance = 0;
};

// Takes the tokens of one text, or of one line of a longer one. The first thing that is wrong is reported; false ends the
// parser's work then.
class TokenReader
{
public:
  TokenReader(KyCErrorListPool& pool, const char* function, const std::string& text)
      : m_pool(pool), m_function(function), m_text(text), m_builder(pool)
  {
  }

  // Reads [begin, end) of the text, which holds an object of this kind.
  bool read(Place top, std::size_t begin, std::size_t end)
  {
    m_top = top;
    m_begin = begin;
    m_furthest = m_previousEnd = m_text.data() + begin;
    m_frames.clear();
    m_record = ParameterRecord();
    return Json::sax_parse(WatchedIterator(m_furthest, &m_furthest), WatchedIterator(m_text.data() + end, &m_furthest),
                           this);
  }

  TreePointer takeRoot() { return m_builder.takeRoot(); }
  const ParameterRecord& record() const { return m_record; }
  ParameterPointer takeParameter() { return std::move(m_parameter); }

  // Reports what is wrong at an offset of the text.
  bool wrong(std::size_t offset, const std::string& reason)
  {
    const TextPlace place = placeOf(m_text, offset);
    m_pool.setError(KY_FORMAT_MSG_CONTENT, __LINE__, m_function, "%u%u%s%s", place.line, place.column,
                    address().c_str(), reason.c_str());
    return false;
  }

  // ---- Called by the parser ----

  bool null() { return takeScalar(Json(nullptr)); }
  bool boolean(bool value) { return takeScalar(Json(value)); }
  bool number_integer(std::int64_t value) { return takeNumber(Json(value)); }
  bool number_unsigned(std::uint64_t value) { return takeNumber(Json(value)); }
  bool number_float(double value, const std::string&) { return takeNumber(Json(value)); }
  bool string(std::string& value) { return takeScalar(Json(std::move(value))); }
  bool binary(Json::binary_t&) { return false; }    // not in a text

  bool start_object(std::size_t)
  {
    const std::size_t at = takeToken();
    if (m_frames.empty()) return open(m_top, at);
    switch (m_frames.back().place)
    {
      case Place::DOCUMENT:
        return m_frames.back().field == ROOT ? openItem(at) : wrongKind(at);
      case Place::ITEMS:
        return openItem(at);
      case Place::PARAMETERS:
        return open(Place::PARAMETER, at);
      case Place::ITEM:
      case Place::PARAMETER:
      case Place::LINE:
        return isText(m_frames.back().field) ? open(Place::BYTES, at) : wrongKind(at);
      case Place::BYTES:
        break;
    }
    return wrongKind(at);
  }

  bool start_array(std::size_t)
  {
    const std::size_t at = takeToken();
    if (m_frames.empty()) return wrong(at, "an object is expected");
    if (m_frames.back().place != Place::ITEM) return wrongKind(at);
    if (m_frames.back().field == PARAMETERS) return open(Place::PARAMETERS, at);
    return m_frames.back().field == ITEMS ? open(Place::ITEMS, at) : wrongKind(at);
  }

  bool key(std::string& name)
  {
    const std::size_t at = takeToken();
    Frame& frame = m_frames.back();
    const Fields fields = fieldsOf(frame.place);
    for (unsigned int n = 0; n < FIELD_COUNT; ++n)
    {
      const FieldName field = static_cast<FieldName>(n);
      if ((fields.allowed & bit(field)) == 0 || name != s_names[n]) continue;
      if ((frame.seen & bit(field)) != 0) return wrong(at, inQuotes(name) + " stands there twice");
      frame.seen |= bit(field);
      frame.field = field;
      return true;
    }
    return wrong(at, std::string(fields.of) + " has no field " + inQuotes(name));
  }

  bool end_object()
  {
    takeToken();
    const unsigned int missing = fieldsOf(m_frames.back().place).required & ~m_frames.back().seen;
    for (unsigned int n = 0; n < FIELD_COUNT; ++n)
      if ((missing & 1u << n) != 0) return wrong(m_frames.back().at, inQuotes(s_names[n]) + " is missing");
    switch (m_frames.back().place)
    {
      case Place::ITEM:
        return endItem();
      case Place::PARAMETER:
      case Place::LINE:
        return endParameter();
      case Place::BYTES:
        return endBytes();
      case Place::DOCUMENT:
      case Place::PARAMETERS:
      case Place::ITEMS:
        break;
    }
    m_frames.pop_back();
    return true;
  }

  bool end_array()
  {
    takeToken();
    m_frames.pop_back();
    return true;
  }

  bool parse_error(std::size_t position, const std::string&, const Json::exception& error)
  {
    constexpr std::size_t s_longest = 200;
    std::string reason = error.what();    // "[...] parse error at line 3, column 2: syntax error ..."
    const std::size_t column = reason.find(", column ");
    const std::size_t colon = column == std::string::npos ? reason.find("] ") : reason.find(": ", column);
    if (colon != std::string::npos) reason.erase(0, colon + 2);
    if (reason.size() > s_longest) reason.replace(s_longest, std::string::npos, "...");
    const TextPlace place = placeOf(m_text, m_begin + (position == 0 ? 0 : position - 1));
    m_pool.setError(KY_FORMAT_MSG_SYNTAX, __LINE__, m_function, "%s%u%u%s", "JSON", place.line, place.column,
                    reason.c_str());
    return false;
  }

private:
  struct Frame
  {
    Place place;
    std::size_t at;    // where it begins
    FieldName field;
    unsigned int seen;                              // a bit for each field
    std::unordered_set<unsigned int> parameters;    // of an item: their IDs
  };

  // ---- Places ----

  // The offset of the token that was just read: behind the last one and what separates the two.
  std::size_t takeToken()
  {
    const char* start = m_previousEnd;
    while (start < m_furthest && std::strchr(" \t\r\n,:", *start) != nullptr)
      ++start;
    m_previousEnd = m_furthest;
    return static_cast<std::size_t>(start - m_text.data());
  }

  // The end of a number shows in the byte behind it, which the parser has read as well. Inside an object there is one.
  bool takeNumber(Json value)
  {
    const std::size_t at = takeToken();
    --m_previousEnd;
    return take(std::move(value), at);
  }

  bool takeScalar(Json value)
  {
    const std::size_t at = takeToken();
    return take(std::move(value), at);
  }

  std::string address() const
  {
    if (m_top == Place::LINE)
      return m_record.address.isEmpty() ? "line" : addressForPeople(addressText(m_record.address));
    std::string text;
    for (std::size_t level = 1; level < m_builder.depth(); ++level)
      text += (text.empty() ? "" : "/") + element(m_builder.at(level));
    if (!m_frames.empty() && isInParameter() && m_record.id != 0)
      text += (text.empty() ? "" : "/") + elementText(m_record.id, 1);
    return addressForPeople(text);
  }

  // The ID may stand behind what is wrong.
  static std::string element(const ItemFields& fields)
  {
    return fields.id == 0 ? "?" : elementText(fields.id, fields.index);
  }

  bool isInParameter() const
  {
    const Place place = m_frames.back().place;
    return place == Place::PARAMETER ||
           (place == Place::BYTES && m_frames[m_frames.size() - 2].place == Place::PARAMETER);
  }

  bool wrongKind(std::size_t at)
  {
    const Place place = m_frames.back().place;
    if (place == Place::ITEMS) return wrong(at, "an item is expected");
    if (place == Place::PARAMETERS) return wrong(at, "a parameter is expected");
    return wrong(at, inQuotes(s_names[m_frames.back().field]) + " is of the wrong kind");
  }

  // ---- Objects ----

  static bool isText(FieldName field) { return field == DESCRIPTION || field == UNIT || field == VALUE; }

  bool open(Place place, std::size_t at)
  {
    if (place == Place::PARAMETER || place == Place::LINE) m_record = ParameterRecord();
    m_frames.push_back({place, at, FIELD_COUNT, 0, {}});
    return true;
  }

  bool openItem(std::size_t at)
  {
    if (m_builder.depth() == s_deepestLevel) return wrong(at, "items are nested deeper than 4096 levels");
    m_builder.startItem();
    return open(Place::ITEM, at);
  }

  bool endItem()
  {
    ItemFields& fields = m_builder.fields();
    if ((m_frames.back().seen & bit(DESCRIPTION)) == 0) fields.description = defaultDescription(fields.id);
    const std::size_t at = m_frames.back().at;
    m_frames.pop_back();
    return m_builder.endItem() || wrong(at, "the item cannot be made");
  }

  bool endParameter()
  {
    const Frame& frame = m_frames.back();
    const std::size_t at = frame.at;
    const bool isLine = frame.place == Place::LINE;
    if (isLine) m_record.id = m_record.address.getCategory();
    if ((frame.seen & bit(DESCRIPTION)) == 0) m_record.description = defaultDescription(m_record.id);
    if (!makeRecordedParameter()) return false;
    m_frames.pop_back();
    if (isLine) return true;
    Frame& item = m_frames[m_frames.size() - 2];    // the one around the list
    if (!item.parameters.insert(m_record.id).second)
      return wrong(at, "the item has a parameter " + elementText(m_record.id, 1) + " already");
    m_builder.addParameter(std::move(m_parameter));
    return true;
  }

  bool makeRecordedParameter()
  {
    std::string text;
    if (!valueTextOfJson(m_record.value, m_record.type, text))
    {
      const bool isBytes = m_record.value.is_object() && m_record.type == KyCParam::TYPE_STRING;
      return wrong(m_record.valueAt, isBytes ? "\"bytes\" is not in base64" : "\"value\" is of the wrong kind");
    }
    m_parameter = makeParameter(m_pool, m_record.id, m_record.description, m_record.type, text, m_record.unit,
                                m_record.isModifiable, m_record.relevance);
    return m_parameter != nullptr || wrong(m_record.valueAt, "the type cannot take the value");
  }

  bool endBytes()
  {
    const std::size_t at = m_frames.back().at;
    m_frames.pop_back();
    return take(Json::object({{"bytes", std::move(m_bytes)}}), at);
  }

  // ---- Fields ----

  // The value of the field that was named last.
  bool take(Json value, std::size_t at)
  {
    if (m_frames.empty()) return wrong(at, "an object is expected");
    switch (m_frames.back().place)
    {
      case Place::DOCUMENT:
        return takeOfDocument(value, at);
      case Place::ITEM:
        return takeOfItem(value, at);
      case Place::PARAMETER:
      case Place::LINE:
        return takeOfParameter(value, at);
      case Place::BYTES:
        if (!value.is_string()) return wrongKind(at);
        m_bytes = std::move(value.get_ref<std::string&>());
        return true;
      case Place::PARAMETERS:
      case Place::ITEMS:
        break;
    }
    return wrongKind(at);
  }

  bool takeOfDocument(const Json& value, std::size_t at)
  {
    switch (m_frames.back().field)
    {
      case SCHEMA:
        return value.is_string() || wrongKind(at);
      case FORMAT:
        return isJsonText(value, "kyinventory") || wrong(at, "the format is not \"kyinventory\"");
      case VERSION:
        return value == 1u || wrong(at, "the version is not 1");
      default:
        return wrongKind(at);
    }
  }

  bool takeOfItem(const Json& value, std::size_t at)
  {
    ItemFields& fields = m_builder.fields();
    switch (m_frames.back().field)
    {
      case ID:
        return takeID(value, at, fields.id);
      case INDEX:
        return takeUnsigned(value, at, fields.index);
      case DESCRIPTION:
        return takeText(value, at, fields.description);
      default:
        return wrongKind(at);
    }
  }

  bool takeOfParameter(Json& value, std::size_t at)
  {
    switch (m_frames.back().field)
    {
      case ID:
        return takeID(value, at, m_record.id);
      case ADDRESS:
        return takeAddress(value, at);
      case TYPE:
        return takeType(value, at);
      case VALUE:
        m_record.valueAt = at;
        m_record.value = std::move(value);
        return true;
      case UNIT:
        return takeText(value, at, m_record.unit) &&
               (m_record.unit.size() <= s_longestUnit || wrong(at, "the unit is longer than 100 bytes"));
      case MODIFIABLE:
        if (!value.is_boolean()) return wrongKind(at);
        m_record.isModifiable = value.get<bool>();
        return true;
      case RELEVANCE:
        return takeUnsigned(value, at, m_record.relevance);
      case DESCRIPTION:
        return takeText(value, at, m_record.description);
      default:
        return wrongKind(at);
    }
  }

  bool takeID(const Json& value, std::size_t at, unsigned int& id)
  {
    if (!value.is_string()) return takeUnsigned(value, at, id);
    const std::string& name = value.get_ref<const std::string&>();
    if (findID(name, id)) return true;
    KyCInventoryAddress ignored;
    readElement(m_pool, name, ignored);    // for its report, which names the nearest IDs
    return wrong(at, inQuotes(name) + " is not the name of an ID");
  }

  bool takeUnsigned(const Json& value, std::size_t at, unsigned int& number)
  {
    const std::string name = inQuotes(s_names[m_frames.back().field]);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > 0xFFFFFFFFu)
      return wrong(at, name + " takes whole numbers from 0 to 4294967295");
    number = static_cast<unsigned int>(value.get<std::uint64_t>());
    return true;
  }

  bool takeText(const Json& value, std::size_t at, std::string& text)
  {
    if (!value.is_string() && !value.is_object()) return wrongKind(at);
    if (!textOfJson(value, text)) return wrong(at, "\"bytes\" is not in base64");
    return text.find('\0') == std::string::npos ||
           wrong(at, inQuotes(s_names[m_frames.back().field]) + " holds a zero byte");
  }

  bool takeType(const Json& value, std::size_t at)
  {
    if (!value.is_string()) return wrongKind(at);
    const std::string& name = value.get_ref<const std::string&>();
    m_record.type = typeOfName(name);
    return m_record.type != 0 || wrong(at, inQuotes(name) + " is no type; the types are " + typeNames());
  }

  bool takeAddress(const Json& value, std::size_t at)
  {
    if (!value.is_string()) return wrongKind(at);
    const std::string& text = value.get_ref<const std::string&>();
    if (!readAddress(m_pool, text, m_record.address)) return wrong(at, inQuotes(text) + " is not an address");
    if (m_record.address.isEmpty()) return wrong(at, "the address names no parameter");
    return m_record.address.getLength() <= s_deepestLevel || wrong(at, "items are nested deeper than 4096 levels");
  }

  KyCErrorListPool& m_pool;
  const char* m_function;
  const std::string& m_text;
  KyTreeBuilder m_builder;
  Place m_top = Place::DOCUMENT;
  std::size_t m_begin = 0;
  const char* m_furthest = nullptr;
  const char* m_previousEnd = nullptr;
  std::vector<Frame> m_frames;
  ParameterRecord m_record;
  std::string m_bytes;
  ParameterPointer m_parameter;
};

std::size_t behindByteOrderMark(const std::string& text) { return text.rfind("\xEF\xBB\xBF", 0) == 0 ? 3 : 0; }

// The item at this place below the root, made with what is missing of the way to it.
KyCInventoryItem& itemAt(KyCErrorListPool& pool, KyCInventoryItem& root, const KyCInventoryAddress& address)
{
  KyCInventoryItem* item = &root;
  for (unsigned int n = 0; n + 1 < address.getLength(); ++n)
  {
    const KyCInventoryAddress element(address.getElements()[n].id, address.getElements()[n].index);
    KyCInventoryItem* subItem = item->getItem(element);
    if (subItem == nullptr)
    {
      subItem = std::make_unique<KyCInventoryItem>(pool, element, defaultDescription(element.getCategory()).c_str())
                    .release();
      appendItem(*item, *subItem);
    }
    item = subItem;
  }
  return *item;
}

// Finds out which fields the top object of a text has.
class FieldFinder
{
public:
  bool hasAddress() const { return m_hasAddress; }

  bool null() { return true; }
  bool boolean(bool) { return true; }
  bool number_integer(std::int64_t) { return true; }
  bool number_unsigned(std::uint64_t) { return true; }
  bool number_float(double, const std::string&) { return true; }
  bool string(std::string&) { return true; }
  bool binary(Json::binary_t&) { return true; }
  bool start_object(std::size_t) { return ++m_depth <= 2; }
  bool end_object() { return --m_depth != 0; }
  bool start_array(std::size_t) { return false; }
  bool end_array() { return false; }
  bool key(std::string& name)
  {
    m_hasAddress = m_depth == 1 && name == "address";
    return !m_hasAddress && name != "format" && name != "root";
  }
  bool parse_error(std::size_t, const std::string&, const Json::exception&) { return false; }

private:
  unsigned int m_depth = 0;
  bool m_hasAddress = false;
};
}    // namespace

bool isJsonLine(const std::string& text)
{
  FieldFinder finder;
  Json::sax_parse(text.begin(), text.end(), &finder);
  return finder.hasAddress();
}

TreePointer readJson(KyCErrorListPool& pool, const std::string& text)
{
  TokenReader reader(pool, "importTree", text);
  return reader.read(Place::DOCUMENT, behindByteOrderMark(text), text.size()) ? reader.takeRoot() : nullptr;
}

TreePointer readJsonLines(KyCErrorListPool& pool, const std::string& text)
{
  TreePointer root = std::make_unique<KyCInventoryItem>(pool, KyNInventoryIDs::ROOT, "ROOT");
  TokenReader reader(pool, "importTree", text);
  for (std::size_t begin = behindByteOrderMark(text), end = 0; begin < text.size(); begin = end + 1)
  {
    end = std::min(text.find('\n', begin), text.size());
    if (text.find_first_not_of(" \t\r", begin) >= end) continue;
    if (!reader.read(Place::LINE, begin, end)) return nullptr;
    KyCInventoryItem& item = itemAt(pool, *root, reader.record().address);
    if (item.getParameter(reader.record().address.getLastElement()) != nullptr)
    {
      reader.wrong(begin, "there is such a parameter already");
      return nullptr;
    }
    ParameterPointer parameter = reader.takeParameter();
    if (!appendParameter(pool, item, *parameter)) return nullptr;
    parameter.release();
  }
  return root;
}
}    // namespace KyNInventoryKit
