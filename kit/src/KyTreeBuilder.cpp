#include "KyTreeBuilder.h"

#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"

namespace KyNInventoryKit
{
bool KyTreeBuilder::endItem()
{
  const unsigned int errorCount = m_pool.getErrorCount();
  OpenItem& open = m_open.back();
  TreePointer item = std::make_unique<KyCInventoryItem>(m_pool, KyCInventoryAddress(open.fields.id, open.fields.index),
                                                        open.fields.description.c_str());
  for (ParameterPointer& parameter : open.parameters)
  {
    if (!appendParameter(m_pool, *item, *parameter)) return false;
    parameter.release();
  }
  for (TreePointer& subItem : open.subItems)
    appendItem(*item, *subItem.release());
  m_open.pop_back();
  if (m_open.empty())
    m_root = std::move(item);
  else
    m_open.back().subItems.push_back(std::move(item));
  return m_pool.getErrorCount() == errorCount;
}

std::string nameOfID(unsigned int id)
{
  const char* const name = KyNInventoryIDs::Map.get(id);
  return name != nullptr && idOfName(name) == id && id != 0 ? name : "";
}

std::string defaultDescription(unsigned int id)
{
  const char* const name = KyNInventoryIDs::Map.get(id);
  return name != nullptr ? name : "";
}

std::string elementText(unsigned int id, unsigned int index)
{
  const std::string name = nameOfID(id);
  return (name.empty() ? std::to_string(id) : name) + (index == 1 ? "" : "[" + std::to_string(index) + "]");
}
}    // namespace KyNInventoryKit
