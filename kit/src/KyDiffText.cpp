// The lines about changes that people read.
#include "KyJsonValue.h"
#include "KyShownText.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyTree.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
std::string valueWithUnit(const KyCInventoryParameter& parameter)
{
  const std::string value = valueText(parameter);
  const std::string text = parameter.getType() == KyCParam::TYPE_STRING ? quotedText(value) : value;
  const std::string unit = parameter.getUnit();
  if (unit.empty()) return text;
  return text + " " + (isPlainUtf8(unit) && quotedText(unit).size() == unit.size() + 2 ? unit : quotedText(unit));
}

std::string nameOfID(unsigned int id)
{
  const char* const name = KyNInventoryIDs::Map.get(id);
  return name != nullptr ? name : "";
}

const char* yesOrNo(bool is) { return is ? "yes" : "no"; }

// ---- What is on one side alone ----

std::string wholeText(const KyCInventoryItem& item)
{
  const std::string description = item.getDescription();
  return description == nameOfID(item.getID().getCategory()) ? "item" : "item " + quotedText(description);
}

std::string wholeText(const KyCInventoryParameter& parameter)
{
  std::string text = typeText(parameter) + " " + valueWithUnit(parameter);
  if (parameter.isModifiable()) text += ", modifiable";
  if (parameter.getRelevance() != 0) text += ", relevance " + std::to_string(parameter.getRelevance());
  const std::string description = parameter.getDescription();
  if (description != nameOfID(parameter.getID().getCategory())) text += ", description " + quotedText(description);
  return text;
}

// ---- What has changed ----

void append(std::string& text, const char* name, const std::string& before, const std::string& after)
{
  if (before == after) return;
  text += (text.empty() ? "" : ", ") + std::string(name) + before + " -> " + after;
}

std::string changedText(const KyCInventoryItem& before, const KyCInventoryItem& after)
{
  std::string text;
  append(text, "ID ", addressText(before.getID()), addressText(after.getID()));
  append(text, "description ", quotedText(before.getDescription()), quotedText(after.getDescription()));
  return text;
}

std::string changedText(const KyCInventoryParameter& before, const KyCInventoryParameter& after)
{
  std::string text;
  if (before.getType() != after.getType())
    append(text, "", typeText(before) + " " + valueWithUnit(before), typeText(after) + " " + valueWithUnit(after));
  else if (!sameValue(before, after))
    append(text, "", valueWithUnit(before), valueWithUnit(after));
  else
    append(text, "unit ", quotedText(before.getUnit()), quotedText(after.getUnit()));
  append(text, "modifiable ", yesOrNo(before.isModifiable()), yesOrNo(after.isModifiable()));
  append(text, "relevance ", std::to_string(before.getRelevance()), std::to_string(after.getRelevance()));
  append(text, "description ", quotedText(before.getDescription()), quotedText(after.getDescription()));
  return text;
}
}    // namespace

std::string changeText(const Change& change)
{
  switch (change.kind)
  {
    case ChangeKind::ADDED:
      return change.isOfParameter() ? wholeText(*change.after.parameter) : wholeText(*change.after.item);
    case ChangeKind::REMOVED:
      return change.isOfParameter() ? wholeText(*change.before.parameter) : wholeText(*change.before.item);
    case ChangeKind::CHANGED:
      return change.isOfParameter() ? changedText(*change.before.parameter, *change.after.parameter)
                                    : changedText(*change.before.item, *change.after.item);
    case ChangeKind::MOVED:
      break;
  }
  return change.isOfParameter() ? "parameter in another place" : "item in another place";
}
}    // namespace KyNInventoryKit
