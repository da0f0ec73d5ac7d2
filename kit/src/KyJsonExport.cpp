// KyJsonExport.cpp: a tree as JSON, one line a parameter. The library writes values and texts; the nesting is written here,
// since the library's own way down recurses.
#include <algorithm>

#include "KyFormatParts.h"
#include "KyJsonValue.h"

namespace KyNInventoryKit
{
namespace
{
class Writer
{
public:
  explicit Writer(std::string& text) : m_text(text) {}

  void write(const KyCInventoryItem& root)
  {
    m_text += "{\n  \"format\": \"kyinventory\",\n  \"version\": 1,\n  \"root\": ";
    const KyCInventoryItem* item = &root;
    while (item != nullptr)
    {
      startItem(*item);
      if (item->getFirstSubItem() != nullptr)
      {
        startList("items");
        item = item->getFirstSubItem();
        ++m_depth;
        line(1);
        continue;
      }
      item = endItems(item, root);
    }
    m_text += "\n}\n";
  }

private:
  // Ends this item and those above it that end with it; gives the next one.
  const KyCInventoryItem* endItems(const KyCInventoryItem* item, const KyCInventoryItem& root)
  {
    for (;;)
    {
      line(1);
      m_text += '}';
      if (item == &root) return nullptr;
      if (item->getNext() != nullptr)
      {
        m_text += ",";
        line(1);
        return item->getNext();
      }
      item = item->getParent();
      --m_depth;
      line(2);
      m_text += ']';
    }
  }

  void startItem(const KyCInventoryItem& item)
  {
    const unsigned int id = idOf(item);
    m_text += "{";
    line(2);
    m_text += "\"id\": " + idText(id);
    if (indexOf(item) != 1) member("index", std::to_string(indexOf(item)));
    if (defaultDescription(id) != item.getDescription())
      member("description", dumped(jsonOfText(item.getDescription())));
    const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0);
    if (parameter == nullptr) return;
    startList("parameters");
    for (; parameter != nullptr; parameter = parameter->getNext())
    {
      line(3);
      write(*parameter);
      if (parameter->getNext() != nullptr) m_text += ',';
    }
    line(2);
    m_text += ']';
  }

  void write(const KyCInventoryParameter& parameter)
  {
    const unsigned int id = idOf(parameter);
    m_text += "{\"id\": " + idText(id);
    m_text += ", \"type\": \"" + std::string(parameter.getTypeAsCString()) + "\"";
    m_text += ", \"value\": " + dumped(jsonOfValue(parameter));
    if (*parameter.getUnit() != '\0') m_text += ", \"unit\": " + dumped(jsonOfText(parameter.getUnit()));
    if (parameter.isModifiable()) m_text += ", \"modifiable\": true";
    if (parameter.getRelevance() != 0) m_text += ", \"relevance\": " + std::to_string(parameter.getRelevance());
    if (defaultDescription(id) != parameter.getDescription())
      m_text += ", \"description\": " + dumped(jsonOfText(parameter.getDescription()));
    m_text += '}';
  }

  static std::string idText(unsigned int id)
  {
    const std::string name = nameOfID(id);
    return name.empty() ? std::to_string(id) : "\"" + name + "\"";
  }

  void member(const char* name, const std::string& value)
  {
    m_text += ',';
    line(2);
    m_text += '"' + std::string(name) + "\": " + value;
  }

  void startList(const char* name) { member(name, "["); }

  // A new line, so many levels deeper than the item that is written.
  void line(unsigned int levels)
  {
    m_text += '\n';
    m_text.append(std::size_t{2} * std::min(s_deepestIndent, 2 * m_depth + levels), ' ');
  }

  std::string& m_text;
  unsigned int m_depth = 0;
};
}    // namespace

void writeJson(const KyCInventoryItem& root, std::string& text) { Writer(text).write(root); }
}    // namespace KyNInventoryKit
