// A difference as a JSON document.
#include <cstring>

#include "KyJsonValue.h"
#include "KySiblings.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
namespace
{
class ChangeWriter
{
public:
  explicit ChangeWriter(const Difference& difference) : m_difference(difference) {}

  Json write(const Change& change) const
  {
    Json json = Json::object();
    json["change"] = kindText(change.kind);
    json[change.isOfParameter() ? "parameter" : "item"] = m_difference.addressOf(change);
    switch (change.kind)
    {
      case ChangeKind::ADDED:
        appendWhole(json, change.after);
        break;
      case ChangeKind::REMOVED:
        appendWhole(json, change.before);
        break;
      case ChangeKind::CHANGED:
        appendDifferent(json, change);
        break;
      case ChangeKind::MOVED:
        json["old"]["after"] = placeOf(change.before);
        json["new"]["after"] = placeOf(change.after);
        break;
    }
    return json;
  }

private:
  static const char* kindText(ChangeKind kind)
  {
    switch (kind)
    {
      case ChangeKind::ADDED:
        return "added";
      case ChangeKind::REMOVED:
        return "removed";
      case ChangeKind::CHANGED:
        return "changed";
      case ChangeKind::MOVED:
        break;
    }
    return "moved";
  }

  Json placeOf(const ChangeSide& side) const
  {
    if (side.parameter != nullptr)
      return side.previousParameter != nullptr ? Json(m_difference.nameOf(*side.previousParameter)) : Json();
    return side.previousItem != nullptr ? Json(m_difference.nameOf(*side.previousItem)) : Json();
  }

  void appendWhole(Json& json, const ChangeSide& side) const
  {
    json["after"] = placeOf(side);
    if (side.parameter == nullptr)
    {
      json["description"] = jsonOfText(side.item->getDescription());
      return;
    }
    const KyCInventoryParameter& parameter = *side.parameter;
    json["type"] = typeText(parameter);
    json["value"] = jsonOfValue(parameter);
    json["unit"] = jsonOfText(parameter.getUnit());
    json["modifiable"] = parameter.isModifiable();
    json["relevance"] = parameter.getRelevance();
    json["description"] = jsonOfText(parameter.getDescription());
  }

  static void appendDifferent(Json& json, const Change& change)
  {
    Json sides[2] = {Json::object(), Json::object()};
    if (change.isOfParameter())
      appendDifferent(sides, *change.before.parameter, *change.after.parameter);
    else
      appendDifferent(sides, *change.before.item, *change.after.item);
    json["old"] = std::move(sides[0]);
    json["new"] = std::move(sides[1]);
  }

  static void appendDifferent(Json (&sides)[2], const KyCInventoryItem& before, const KyCInventoryItem& after)
  {
    const std::string names[2] = {siblingText(unnumbered(before)), siblingText(unnumbered(after))};
    if (names[0] != names[1]) set(sides, "id", names[0], names[1]);
    setTexts(sides, "description", before.getDescription(), after.getDescription());
  }

  static void appendDifferent(Json (&sides)[2], const KyCInventoryParameter& before, const KyCInventoryParameter& after)
  {
    if (!sameValue(before, after))
    {
      set(sides, "type", typeText(before), typeText(after));
      set(sides, "value", jsonOfValue(before), jsonOfValue(after));
    }
    setTexts(sides, "unit", before.getUnit(), after.getUnit());
    if (before.isModifiable() != after.isModifiable())
      set(sides, "modifiable", before.isModifiable(), after.isModifiable());
    if (before.getRelevance() != after.getRelevance())
      set(sides, "relevance", before.getRelevance(), after.getRelevance());
    setTexts(sides, "description", before.getDescription(), after.getDescription());
  }

  static void setTexts(Json (&sides)[2], const char* field, const char* before, const char* after)
  {
    if (std::strcmp(before, after) != 0) set(sides, field, jsonOfText(before), jsonOfText(after));
  }

  static void set(Json (&sides)[2], const char* field, Json before, Json after)
  {
    sides[0][field] = std::move(before);
    sides[1][field] = std::move(after);
  }

  const Difference& m_difference;
};
}    // namespace

// One change a line: such a document can be read, compared and cut by line.
std::string differenceToJson(const Difference& difference)
{
  const ChangeWriter writer(difference);
  std::string text = "{\n  \"format\": \"kyinventory-diff\",\n  \"version\": 1,\n  \"changes\": [";
  const char* separator = "\n    ";
  for (const Change& change : difference.changes())
  {
    text += separator + dumped(writer.write(change));
    separator = ",\n    ";
  }
  return text + (difference.changes().empty() ? "]\n}\n" : "\n  ]\n}\n");
}
}    // namespace KyNInventoryKit
