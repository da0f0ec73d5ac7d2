// KyMarkupExport.cpp: a tree as mark-up: the lines of the text dump under the options 0x200100 (numbers for IDs without a
// name, line feeds as they are), and beyond them what the dump leaves out.
#include <algorithm>

#include "KyBase64.h"
#include "KyFormatParts.h"
#include "KyJsonValue.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
// Whether XML can hold the text: UTF-8, no control characters but tab, line feed and carriage return, and not U+FFFE or
// U+FFFF.
bool isMarkupText(const std::string& text)
{
  if (!isPlainUtf8(text)) return false;
  for (const char c : text)
    if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') return false;
  return text.find("\xEF\xBF\xBE") == std::string::npos && text.find("\xEF\xBF\xBF") == std::string::npos;
}

// White space that readers of XML change is written as a reference: carriage returns everywhere, the rest in attributes.
// So is a line feed at the start of a value, since a value that begins with one is a broken one in a dump.
std::string escaped(const std::string& text, bool isAttribute)
{
  std::string result;
  result.reserve(text.size());
  for (const char c : text)
  {
    const bool isReference = c == '\r' || (isAttribute && (c == '\t' || c == '\n')) || (c == '\n' && result.empty());
    if (isReference)
      result += "&#" + std::to_string(static_cast<int>(c)) + ";";
    else if (c == '"')
      result += "&quot;";
    else if (c == '&')
      result += "&amp;";
    else if (c == '\'')
      result += "&apos;";
    else if (c == '<')
      result += "&lt;";
    else if (c == '>')
      result += "&gt;";
    else
      result += c;
  }
  return result;
}

class Writer
{
public:
  explicit Writer(std::string& text) : m_text(text) {}

  void write(const KyCInventoryItem& root)
  {
    const KyCInventoryItem* item = &root;
    while (item != nullptr)
    {
      startItem(*item);
      if (item->getFirstSubItem() != nullptr)
      {
        item = item->getFirstSubItem();
        ++m_depth;
        continue;
      }
      item = endItems(item, root);
    }
  }

private:
  // Ends this item and those above it that end with it; gives the next one.
  const KyCInventoryItem* endItems(const KyCInventoryItem* item, const KyCInventoryItem& root)
  {
    for (;;)
    {
      line(0, "</ITEM>");
      if (item == &root) return nullptr;
      if (item->getNext() != nullptr) return item->getNext();
      item = item->getParent();
      --m_depth;
    }
  }

  void startItem(const KyCInventoryItem& item)
  {
    const unsigned int id = idOf(item);
    line(0, "<ITEM ID=\"" + elementText(id, indexOf(item)) + "\"" + description(id, item.getDescription()) + ">");
    const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0);
    for (; parameter != nullptr; parameter = parameter->getNext())
      write(*parameter);
  }

  void write(const KyCInventoryParameter& parameter)
  {
    const unsigned int id = idOf(parameter);
    line(1, "<PARAM ID=\"" + elementText(id, 1) + "\"" + description(id, parameter.getDescription()) + " Type=\"" +
                parameter.getTypeAsCString() + "\">");
    element("VALUE", valueText(parameter));
    if (*parameter.getUnit() != '\0') element("UNIT", parameter.getUnit());
    line(2, parameter.isModifiable() ? "<ISMODIFIABLE>Yes</ISMODIFIABLE>" : "<ISMODIFIABLE>No</ISMODIFIABLE>");
    line(2, "<RELEVANCE>" + std::to_string(parameter.getRelevance()) + "</RELEVANCE>");
    line(1, "</PARAM>");
  }

  // As the dump has it for an ID without a name; also where it is not the ID's name.
  static std::string description(unsigned int id, const std::string& text)
  {
    if (!nameOfID(id).empty() && defaultDescription(id) == text) return {};
    return isMarkupText(text) ? " Descr=\"" + escaped(text, true) + "\"" : " DescrBytes=\"" + base64Of(text) + "\"";
  }

  void element(const std::string& name, const std::string& text)
  {
    const bool isText = isMarkupText(text);
    line(2, "<" + name + (isText ? ">" : " Encoding=\"base64\">") + (isText ? escaped(text, false) : base64Of(text)) +
                "</" + name + ">");
  }

  void line(unsigned int levels, const std::string& content)
  {
    m_text.append(std::size_t{4} * std::min(s_deepestIndent, m_depth + levels), ' ');
    m_text += content;
    m_text += '\n';
  }

  std::string& m_text;
  unsigned int m_depth = 0;
};
}    // namespace

void writeMarkup(const KyCInventoryItem& root, std::string& text) { Writer(text).write(root); }
}    // namespace KyNInventoryKit
