#include "Json.h"

#include "Output.h"

std::string jsonNode(std::string_view address, const KyNInventoryKit::Node& node)
{
  std::string json = "{\"address\": " + jsonText(address);
  const KyCInventoryParameter* const p = node.parameter;
  if (p != nullptr)
  {
    json += ", \"type\": " + jsonText(p->getTypeAsCString()) + ", \"value\": " + KyNInventoryKit::jsonValueText(*p);
    json += ", \"unit\": " + jsonText(p->getUnit());
    json += std::string(", \"modifiable\": ") + (p->isModifiable() ? "true" : "false");
    json += ", \"relevance\": " + std::to_string(p->getRelevance());
  }
  const char* const description = p != nullptr ? p->getDescription() : node.item->getDescription();
  return json + ", \"description\": " + jsonText(description) + "}";
}

void printNodesAsJson(Output& out, const std::vector<KyNInventoryKit::Node>& nodes)
{
  KyNInventoryKit::AddressTexts addresses;
  out.text("[");
  const char* separator = "\n";
  for (const KyNInventoryKit::Node& node : nodes)
  {
    out.text(separator).text("  ").text(jsonNode(addresses.of(node), node));
    separator = ",\n";
    if (out.hasFailed()) break;
  }
  out.text("\n]\n");
}
