// KyFlatExport.cpp: JSON lines and CSV: one line a parameter.
#include "KyFormatParts.h"
#include "KyJsonValue.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
// Goes through the parameters of a tree with the address of each. The address of an item is made once: many parameters
// share it.
template <typename Visit>
void forEachParameter(const KyCInventoryItem& root, Visit visit)
{
  const KyCInventoryAddress top = root.getAddress();
  for (const KyCInventoryItem* item = &root; item != nullptr; item = nextItem(*item, root))
  {
    const KyCInventoryParameter* parameter = item->getParameterByOrdinalNumber(0);
    if (parameter == nullptr) continue;
    KyCInventoryAddress address = item->getAddress();
    address.removePrefix(top);
    const std::string path = address.isEmpty() ? "" : std::string(address.toString().c_str()) + "/";
    for (; parameter != nullptr; parameter = parameter->getNext())
      visit(path + elementText(idOf(*parameter), 1), *parameter);
  }
}

std::string quoted(const std::string& text)
{
  if (text.find_first_of("\",\r\n") == std::string::npos) return text;
  std::string result = "\"";
  for (const char c : text)
    result += c == '"' ? std::string("\"\"") : std::string(1, c);
  return result + "\"";
}
}    // namespace

void writeJsonLines(const KyCInventoryItem& root, std::string& text)
{
  forEachParameter(root,
                   [&](const std::string& address, const KyCInventoryParameter& parameter)
                   {
                     text += "{\"address\":\"" + address;    // names, numbers, "/" and brackets
                     text += "\",\"type\":\"" + std::string(parameter.getTypeAsCString());
                     text += "\",\"value\":" + dumped(jsonOfValue(parameter));
                     text += ",\"unit\":" + dumped(jsonOfText(parameter.getUnit()));
                     text += parameter.isModifiable() ? ",\"modifiable\":true" : ",\"modifiable\":false";
                     text += ",\"relevance\":" + std::to_string(parameter.getRelevance());
                     text += ",\"description\":" + dumped(jsonOfText(parameter.getDescription()));
                     text += "}\n";
                   });
}

void writeCsv(const KyCInventoryItem& root, std::string& text)
{
  text += "address,type,value,unit,modifiable,relevance,description\n";
  forEachParameter(root,
                   [&](const std::string& address, const KyCInventoryParameter& parameter)
                   {
                     text += address + ',' + parameter.getTypeAsCString() + ',';
                     text += quoted(valueText(parameter)) + ',' + quoted(parameter.getUnit()) + ',';
                     text += parameter.isModifiable() ? "yes," : "no,";
                     text += std::to_string(parameter.getRelevance()) + ',' + quoted(parameter.getDescription()) + '\n';
                   });
}
}    // namespace KyNInventoryKit
