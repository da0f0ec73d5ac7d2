// KyValueText.h: values of parameters as texts, and back.
//
//   KyNInventoryKit::valueText(parameter);                      // "4096", "1.5", "nan", "1.2.3.4", a string as it is
//   KyNInventoryKit::setValueText(pool, parameter, "70000");    // an Int16 reports its bounds
//
// The texts: integers in decimal; floating-point numbers as the shortest text that reads back to the same value, "inf",
// "-inf", "nan"; versions as four numbers joined by dots; strings byte by byte. Read are also: integers with 0x in front;
// a version of one to four numbers, the missing ones being 0; floating-point numbers as the C language writes them.
#pragma once

#include <string>
#include <string_view>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// The type of this name ("Int8" ... "Version", see KyCInventoryParameter::getTypeAsCString; upper and lower case count as
// the same letter); 0 when there is none.
KY_INVENTORYKIT_API unsigned int typeOfName(const std::string& name);

// The twelve names, in the order of their codes, joined by ", ".
KY_INVENTORYKIT_API std::string typeNames();

// The value as text; empty for a parameter whose type is none of the twelve.
KY_INVENTORYKIT_API std::string valueText(const KyCInventoryParameter& parameter);

// A text as a piece of JSON: a string, with control characters escaped, also those beyond ASCII and those that change the
// order in which a line is read (U+061C, U+200E, U+200F, U+2028 .. U+202E, U+2066 .. U+2069): a terminal may show it. Bytes
// that are no UTF-8 give an object {"bytes": "..."} with the text in base64, so that nothing is lost.
KY_INVENTORYKIT_API std::string jsonText(std::string_view text);

// The value as a piece of JSON: integers of up to 32 bits are numbers, everything else is a string, since many readers
// round longer numbers; null for a parameter whose type is none of the twelve.
KY_INVENTORYKIT_API std::string jsonValueText(const KyCInventoryParameter& parameter);

// Sets the value that the text names, by the parameter's own type.
//
// Result:     false on failure; the value is then as it was.
// Errors:     0x1500803  the text is no value of the type; the report names the type and its bounds
//             0x1500804  the type has no values
//             those of setValue
KY_INVENTORYKIT_API bool setValueText(KyCErrorListPool& pool, KyCInventoryParameter& parameter,
                                      const std::string& text);

// Creates a parameter of a type (a code) with the value that the text names; missing items on the way are made.
//
// Result:     null on failure; nothing is created when the text is no value of the type.
// Errors:     those of setValueText and of KyCInventoryItem::createParameter
KY_INVENTORYKIT_API KyCInventoryParameter* createParameter(KyCErrorListPool& pool, KyCInventoryItem& item,
                                                           const KyCInventoryAddress& address, unsigned int type,
                                                           const std::string& text, const char* unit, bool modifiable,
                                                           unsigned int relevance);
}    // namespace KyNInventoryKit
