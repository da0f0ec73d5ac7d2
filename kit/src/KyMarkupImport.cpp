// KyMarkupImport.cpp: mark-up as a tree. The library reads the elements; references are resolved here, since it passes over
// those that it does not know.
#include <string_view>
#include <utility>

#include "KyBase64.h"
#include "KyFormatMessages.h"
#include "KyFormatParts.h"
#ifdef KY_HAVE_PUGIXML
#include <algorithm>
#include <charconv>
#include <cstring>
#include <pugixml.hpp>
#include <unordered_set>
#include <vector>

#include "inventory/KyCInventoryAddress.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyValueText.h"
#endif

namespace KyNInventoryKit
{
#ifdef KY_HAVE_PUGIXML
namespace
{
// No references: see resolve. White space is kept where it is all that an element holds.
constexpr unsigned int s_options = pugi::parse_cdata | pugi::parse_doctype | pugi::parse_ws_pcdata_single;

constexpr const char* s_function = "importTree";

void append(std::string& text, unsigned int codePoint)
{
  if (codePoint < 0x80)
    text += static_cast<char>(codePoint);
  else if (codePoint < 0x800)
    text += static_cast<char>(0xC0 | codePoint >> 6);
  else if (codePoint < 0x10000)
    text += static_cast<char>(0xE0 | codePoint >> 12);
  else
    text += static_cast<char>(0xF0 | codePoint >> 18);
  for (unsigned int shift = codePoint < 0x800 ? 6 : codePoint < 0x10000 ? 12 : 18; codePoint >= 0x80 && shift > 0;)
  {
    shift -= 6;
    text += static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
  }
}

// "#10", "#x1F600"; false for what names no character of XML.
bool resolveNumber(std::string_view name, std::string& text)
{
  const bool isHex = name.size() > 1 && name[1] == 'x';
  const char* const first = name.data() + (isHex ? 2 : 1);
  const char* const last = name.data() + name.size();
  unsigned int codePoint = 0;
  const auto [end, error] = std::from_chars(first, last, codePoint, isHex ? 16 : 10);
  const bool isControl = codePoint < 0x20 && codePoint != '\t' && codePoint != '\n' && codePoint != '\r';
  const bool isNone = (codePoint >= 0xD800 && codePoint <= 0xDFFF) || codePoint == 0xFFFE || codePoint == 0xFFFF;
  if (error != std::errc() || end != last || isControl || isNone || codePoint > 0x10FFFF) return false;
  append(text, codePoint);
  return true;
}

// Replaces "&amp;" and the like; false at one that is not known, the text so far standing in `text`.
bool resolve(std::string_view raw, std::string& text)
{
  constexpr std::pair<const char*, char> s_names[] = {
      {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (;;)
  {
    const std::size_t mark = raw.find('&');
    text.append(raw.substr(0, mark));
    if (mark == std::string_view::npos) return true;
    const std::size_t end = raw.find(';', mark);
    if (end == std::string_view::npos) return false;
    const std::string_view name = raw.substr(mark + 1, end - mark - 1);
    const auto* const known =
        std::find_if(std::begin(s_names), std::end(s_names), [&](const auto& entry) { return name == entry.first; });
    if (known != std::end(s_names))
      text += known->second;
    else if (name.empty() || name[0] != '#' || !resolveNumber(name, text))
      return false;
    raw.remove_prefix(end + 1);
  }
}

// A string value that a dump has broken into lines: a line feed, each line at the line indentation, and the indentation
// of the element. Gives the value. Whether it ended with a line feed does not show, but where there is one line alone.
std::string unbroken(const std::string& text)
{
  const std::size_t lastLine = text.rfind('\n') + 1;
  const std::size_t indent = text.size() - lastLine;
  const bool isBroken = text[0] == '\n' && lastLine > 1 && text.find_first_not_of(' ', lastLine) == std::string::npos;
  if (!isBroken) return text;
  std::string value;
  std::size_t lines = 0;
  for (std::size_t at = 1; at < lastLine; ++lines)
  {
    const std::size_t end = text.find('\n', at);
    const std::size_t content = std::min(text.find_first_not_of(' ', at), end);
    value.append(text, at + std::min(content - at, indent + 4), end + 1 - at - std::min(content - at, indent + 4));
    at = end + 1;
  }
  if (lines > 1) value.pop_back();
  return value;
}

class Reader
{
public:
  Reader(KyCErrorListPool& pool, const std::string& text) : m_pool(pool), m_text(text), m_builder(pool) {}

  TreePointer read()
  {
    const std::size_t zero = m_text.find('\0');
    if (zero != std::string::npos)
    {
      notMarkup(zero, "there is a zero byte");
      return nullptr;
    }
    const pugi::xml_parse_result result =
        m_document.load_buffer(m_text.data(), m_text.size(), s_options, pugi::encoding_utf8);
    if (!result)
    {
      notMarkup(static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0)), reasonOf(result));
      return nullptr;
    }
    return readDocument() ? m_builder.takeRoot() : nullptr;
  }

private:
  // ---- Reports ----

  static std::string reasonOf(const pugi::xml_parse_result& result)
  {
    std::string reason = result.description();    // "Error parsing start element tag"
    if (!reason.empty() && reason[0] >= 'A' && reason[0] <= 'Z') reason[0] = static_cast<char>(reason[0] - 'A' + 'a');
    return reason;
  }

  bool notMarkup(std::size_t offset, const std::string& reason)
  {
    const TextPlace place = placeOf(m_text, offset);
    m_pool.setError(KY_FORMAT_MSG_SYNTAX, __LINE__, s_function, "%s%u%u%s", "mark-up", place.line, place.column,
                    reason.c_str());
    return false;
  }

  bool wrong(const pugi::xml_node& node, const std::string& reason)
  {
    std::size_t offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
    if (node.type() == pugi::node_pcdata) offset += std::strspn(node.value(), " \t\r\n");
    const TextPlace place = placeOf(m_text, offset);
    m_pool.setError(KY_FORMAT_MSG_CONTENT, __LINE__, s_function, "%u%u%s%s", place.line, place.column,
                    address().c_str(), reason.c_str());
    return false;
  }

  std::string address() const
  {
    std::string text;
    for (std::size_t level = 1; level < m_builder.depth(); ++level)
      text += (text.empty() ? "" : "/") + elementText(m_builder.at(level).id, m_builder.at(level).index);
    if (m_parameter != 0) text += (text.empty() ? "" : "/") + elementText(m_parameter, 1);
    return addressForPeople(text);
  }

  // What comes from the text is cut to a length for people.
  static std::string inQuotes(const std::string& text)
  {
    constexpr std::size_t s_longest = 60;
    return "\"" + (text.size() > s_longest ? text.substr(0, s_longest) + "..." : text) + "\"";
  }

  // ---- Items ----

  bool readDocument()
  {
    pugi::xml_node root;
    for (const pugi::xml_node& node : m_document)
    {
      if (node.type() == pugi::node_doctype) return wrong(node, "a document type is not taken");
      if (node.type() != pugi::node_element) return wrong(node, "there is text outside of the root item");
      if (root) return wrong(node, "there is more than one root item");
      root = node;
    }
    if (!root) return notMarkup(0, "there is no element");
    return readItems(root);
  }

  bool readItems(const pugi::xml_node& root)
  {
    if (!startItem(root)) return false;
    pugi::xml_node node = root.first_child();
    pugi::xml_node item = root;    // whose child the node is
    for (;;)
    {
      if (!node)
      {
        if (!m_builder.endItem()) return wrong(item, "the item cannot be made");
        m_parameters.pop_back();
        if (item == root) return true;
        node = item.next_sibling();
        item = item.parent();
        continue;
      }
      if (std::strcmp(node.name(), "ITEM") == 0)
      {
        if (!startItem(node)) return false;
        item = node;
        node = node.first_child();
        continue;
      }
      if (!isSpace(node) && !readParameter(node)) return false;
      node = node.next_sibling();
    }
  }

  // What stands between the tags of an element that holds nothing.
  static bool isSpace(const pugi::xml_node& node)
  {
    return node.type() == pugi::node_pcdata && node.value()[std::strspn(node.value(), " \t\r\n")] == '\0';
  }

  bool startItem(const pugi::xml_node& node)
  {
    if (std::strcmp(node.name(), "ITEM") != 0) return wrong(node, "an ITEM is expected");
    if (m_builder.depth() == s_deepestLevel) return wrong(node, "items are nested deeper than 4096 levels");
    Head head;
    if (!readHead(node, false, head)) return false;
    m_builder.startItem();
    m_builder.fields() = {head.id, head.index, std::move(head.description)};
    m_parameters.emplace_back();
    return true;
  }

  // ---- Attributes ----

  struct Head
  {
    unsigned int id = 0;
    unsigned int index = 1;
    std::string description;
    unsigned int type = 0;
  };

  bool readHead(const pugi::xml_node& node, bool isParameter, Head& head)
  {
    bool hasID = false;
    bool hasDescription = false;
    for (const pugi::xml_attribute& attribute : node.attributes())
    {
      const std::string name = attribute.name();
      std::string text;
      if (!resolve(attribute.value(), text)) return wrong(node, "the value of " + name + " has an unknown reference");
      if (name == "ID" && !hasID)
        hasID = readElementText(node, text, head);
      else if ((name == "Descr" || name == "DescrBytes") && !hasDescription)
        hasDescription = readDescription(node, name, text, head.description);
      else if (name == "Type" && isParameter && head.type == 0)
        head.type = readType(node, text);
      else
        return wrong(node, inQuotes(name) + " is no attribute of " + node.name() + ", or stands there twice");
      if (m_isWrong) return false;
    }
    if (!hasID) return wrong(node, "ID is missing");
    if (isParameter && head.type == 0) return wrong(node, "Type is missing");
    if (isParameter && head.index != 1) return wrong(node, "a parameter has no index");
    if (!hasDescription) head.description = defaultDescription(head.id);
    return true;
  }

  // "BOARD", "BOARD[2]", "BOARD.2", "5000[2]".
  bool readElementText(const pugi::xml_node& node, const std::string& text, Head& head)
  {
    const std::size_t mark = text.find_first_of(".[");
    const std::string name = text.substr(0, mark);
    const bool isNumber = !name.empty() && name[0] >= '0' && name[0] <= '9';
    bool isRead = true;
    if (mark != std::string::npos)
    {
      const std::size_t length = text.size() - mark - (text[mark] == '[' ? 2 : 1);
      isRead = (text[mark] == '.' || text.back() == ']') && mark + 1 < text.size() &&
               readNumber(text.substr(mark + 1, length), head.index);
    }
    if (isRead && (isNumber ? readNumber(name, head.id) : findID(name, head.id))) return true;
    KyCInventoryAddress ignored;
    if (isRead && !isNumber) readElement(m_pool, name, ignored);    // for its report, which names the nearest IDs
    return fail(node, inQuotes(text) + " is not an ID");
  }

  bool readDescription(const pugi::xml_node& node, const std::string& name, const std::string& text,
                       std::string& description)
  {
    if (name == "Descr")
      description = text;
    else if (!readBase64(text, description) || description.find('\0') != std::string::npos)
      return fail(node, "DescrBytes is not a text in base64");
    return true;
  }

  unsigned int readType(const pugi::xml_node& node, const std::string& text)
  {
    const unsigned int type = typeOfName(text);
    if (type == 0) fail(node, inQuotes(text) + " is no type; the types are " + typeNames());
    return type;
  }

  bool fail(const pugi::xml_node& node, const std::string& reason)
  {
    m_isWrong = true;
    return wrong(node, reason);
  }

  // ---- Parameters ----

  bool readParameter(const pugi::xml_node& node)
  {
    if (node.type() != pugi::node_element) return wrong(node, "there is text where an element is expected");
    if (std::strcmp(node.name(), "PARAM") != 0) return wrong(node, "a PARAM or an ITEM is expected");
    Head head;
    if (!readHead(node, true, head)) return false;
    m_parameter = head.id;
    Content content;
    if (!readContent(node, head.type, content)) return false;
    ParameterPointer parameter = makeParameter(m_pool, head.id, head.description, head.type, content.value,
                                               content.unit, content.isModifiable, content.relevance);
    if (parameter == nullptr) return wrong(content.valueNode, "the type cannot take the value");
    if (!m_parameters.back().insert(head.id).second)
      return wrong(node, "the item has a parameter " + elementText(head.id, 1) + " already");
    m_builder.addParameter(std::move(parameter));
    m_parameter = 0;
    return true;
  }

  struct Content
  {
    pugi::xml_node valueNode;
    std::string value;
    std::string unit;
    bool isModifiable = false;
    unsigned int relevance = 0;
  };

  bool readContent(const pugi::xml_node& parameter, unsigned int type, Content& content)
  {
    unsigned int seen = 0;
    for (const pugi::xml_node& node : parameter)
    {
      if (isSpace(node)) continue;
      constexpr const char* s_elements[] = {"VALUE", "UNIT", "ISMODIFIABLE", "RELEVANCE"};
      const auto* const known = std::find_if(std::begin(s_elements), std::end(s_elements),
                                             [&](const char* name) { return std::strcmp(name, node.name()) == 0; });
      const unsigned int number = static_cast<unsigned int>(known - s_elements);
      if (node.type() != pugi::node_element || known == std::end(s_elements))
        return wrong(node, "VALUE, UNIT, ISMODIFIABLE or RELEVANCE is expected");
      if ((seen & 1u << number) != 0) return wrong(node, std::string(*known) + " stands there twice");
      seen |= 1u << number;
      std::string text;
      bool isBytes = false;
      if (!readText(node, number < 2, text, isBytes)) return false;
      if (!takeContent(node, number, type, text, isBytes, content)) return false;
    }
    return (seen & 1u) != 0 || wrong(parameter, "VALUE is missing");
  }

  bool takeContent(const pugi::xml_node& node, unsigned int number, unsigned int type, std::string& text, bool isBytes,
                   Content& content)
  {
    switch (number)
    {
      case 0:
        content.valueNode = node;
        if (isBytes && type != KyCParam::TYPE_STRING) return wrong(node, "a value of this type is not in base64");
        content.value = isBytes || !m_isRawLineFeed ? std::move(text) : unbroken(text);
        return true;
      case 1:
        content.unit = std::move(text);
        if (content.unit.find('\0') != std::string::npos) return wrong(node, "the unit holds a zero byte");
        return content.unit.size() <= s_longestUnit || wrong(node, "the unit is longer than 100 bytes");
      case 2:
        content.isModifiable = text == "Yes";
        return text == "Yes" || text == "No" || wrong(node, "ISMODIFIABLE takes Yes and No");
      default:
        return readNumber(text, content.relevance) || wrong(node, "RELEVANCE takes whole numbers from 0 to 4294967295");
    }
  }

  // The text of an element that holds nothing else.
  bool readText(const pugi::xml_node& node, bool mayBeBytes, std::string& text, bool& isBytes)
  {
    for (const pugi::xml_attribute& attribute : node.attributes())
    {
      isBytes = mayBeBytes && std::strcmp(attribute.name(), "Encoding") == 0 &&
                std::strcmp(attribute.value(), "base64") == 0 && !isBytes;
      if (!isBytes) return wrong(node, std::string(node.name()) + " has an unknown attribute or encoding");
    }
    m_isRawLineFeed = node.first_child().type() == pugi::node_pcdata && node.first_child().value()[0] == '\n';
    for (const pugi::xml_node& child : node)
    {
      if (child.type() == pugi::node_cdata)
        text += child.value();
      else if (child.type() != pugi::node_pcdata)
        return wrong(child, std::string(node.name()) + " holds more than a text");
      else if (!resolve(child.value(), text))
        return wrong(child, std::string(node.name()) + " has an unknown reference");
    }
    if (!isBytes) return true;
    std::string bytes;
    if (!readBase64(text, bytes)) return wrong(node, std::string(node.name()) + " is not in base64");
    text = std::move(bytes);
    return true;
  }

  KyCErrorListPool& m_pool;
  const std::string& m_text;
  KyTreeBuilder m_builder;
  pugi::xml_document m_document;
  std::vector<std::unordered_set<unsigned int>> m_parameters;    // IDs of the parameters of each open item
  unsigned int m_parameter = 0;                                  // the ID of the one that is being read
  bool m_isWrong = false;
  bool m_isRawLineFeed = false;    // the text that was read last began with a line feed as it is
};
}    // namespace

TreePointer readMarkup(KyCErrorListPool& pool, const std::string& text) { return Reader(pool, text).read(); }
#else
TreePointer readMarkup(KyCErrorListPool& pool, const std::string&)
{
  pool.setError(KY_FORMAT_MSG_NO_MARKUP, __LINE__, "importTree", nullptr);
  return nullptr;
}
#endif
}    // namespace KyNInventoryKit
