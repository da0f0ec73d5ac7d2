// The lines about changes that people read.
#include <cstdio>
#include <cstring>

#include "KyJsonValue.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyTree.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
void appendEscaped(std::string& text, char c)
{
  const char* const known = std::strchr("\"\"\\\\\nn\tt\rr", c);
  if (c != '\0' && known != nullptr)
  {
    text += '\\';
    text += known[1];
    return;
  }
  char escaped[5];
  std::snprintf(escaped, sizeof(escaped), "\\x%02X", static_cast<unsigned int>(static_cast<unsigned char>(c)));
  text += escaped;
}

bool isControl(std::string_view character)
{
  const auto byte = static_cast<unsigned char>(character[0]);
  if (character.size() == 1) return byte < 0x20 || byte == 0x7F;
  return byte == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;    // U+0080 .. U+009F
}

std::string inQuotes(std::string_view text)
{
  std::string result = "\"";
  for (std::size_t n = 0; n < text.size();)
  {
    const std::size_t length = utf8Length(text, n);
    if (length == 0 || isControl(text.substr(n, length)) || text[n] == '"' || text[n] == '\\')
    {
      for (const char c : text.substr(n, length == 0 ? 1 : length))
        appendEscaped(result, c);
    }
    else
    {
      result += text.substr(n, length);
    }
    n += length == 0 ? 1 : length;
  }
  return result + "\"";
}

std::string valueWithUnit(const KyCInventoryParameter& parameter)
{
  const std::string value = valueText(parameter);
  const std::string text = parameter.getType() == KyCParam::TYPE_STRING ? inQuotes(value) : value;
  const std::string unit = parameter.getUnit();
  if (unit.empty()) return text;
  return text + " " + (isPlainUtf8(unit) && inQuotes(unit).size() == unit.size() + 2 ? unit : inQuotes(unit));
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
  return description == nameOfID(item.getID().getCategory()) ? "item" : "item " + inQuotes(description);
}

std::string wholeText(const KyCInventoryParameter& parameter)
{
  std::string text = typeText(parameter) + " " + valueWithUnit(parameter);
  if (parameter.isModifiable()) text += ", modifiable";
  if (parameter.getRelevance() != 0) text += ", relevance " + std::to_string(parameter.getRelevance());
  const std::string description = parameter.getDescription();
  if (description != nameOfID(parameter.getID().getCategory())) text += ", description " + inQuotes(description);
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
  append(text, "description ", inQuotes(before.getDescription()), inQuotes(after.getDescription()));
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
    append(text, "unit ", inQuotes(before.getUnit()), inQuotes(after.getUnit()));
  append(text, "modifiable ", yesOrNo(before.isModifiable()), yesOrNo(after.isModifiable()));
  append(text, "relevance ", std::to_string(before.getRelevance()), std::to_string(after.getRelevance()));
  append(text, "description ", inQuotes(before.getDescription()), inQuotes(after.getDescription()));
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
