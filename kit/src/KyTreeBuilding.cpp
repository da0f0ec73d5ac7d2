#include "KyTreeBuilding.h"

#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
void setDescription(KyCErrorListPool& pool, KyCInventoryItem& item, const std::string& description)
{
  compositeOf(item).setDescription(pool, description.c_str());
}

void appendItem(KyCInventoryItem& parent, KyCInventoryItem& item) { compositeOf(parent).attach(&compositeOf(item)); }

bool appendParameter(KyCErrorListPool& pool, KyCInventoryItem& item, KyCInventoryParameter& parameter)
{
  const unsigned int errorCount = pool.getErrorCount();
  compositeOf(item).addParameter(pool, (KyCParam*)&parameter);
  return pool.getErrorCount() == errorCount;
}

ParameterPointer makeParameter(KyCErrorListPool& pool, unsigned int id, const std::string& description,
                               unsigned int type, const std::string& text, const std::string& unit, bool modifiable,
                               unsigned int relevance)
{
  const unsigned int errorCount = pool.getErrorCount();
  ParameterPointer parameter(new (pool)
                                 KyCInventoryParameter(pool, KyCInventoryAddress(id), description.c_str(), type));
  if (parameter == nullptr || pool.getErrorCount() != errorCount || !setValueText(pool, *parameter, text))
    return nullptr;
  parameter->setUnit(unit.c_str());
  parameter->setModifiableFlag(modifiable);
  parameter->setRelevance(relevance);
  return parameter;
}
}    // namespace KyNInventoryKit
