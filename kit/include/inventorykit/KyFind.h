// KyFind.h: finds items and parameters by the form of their addresses, and by values.
//
//   KyNInventoryKit::Query query;
//   KyNInventoryKit::readPattern(pool, "BOARD[*]/IOCHANNEL[2-8]/VOLTAGE_*", query);
//   KyNInventoryKit::readCondition(pool, "VOLTAGE_MAX > 10", query);
//   for (const KyNInventoryKit::Node& node : KyNInventoryKit::find(*tree, query)) ...
//
// Patterns. Elements joined by "/", as in addresses:
//
//   NAME          an ID; "*" stands for any characters, "?" for one. A number without wildcards is an ID by its number
//   NAME[2,5-7]   the indices in question; [*] is any index, and so is no bracket at all: BOARD stands for every board,
//                 BOARD[1] for the first one alone
//   **            any number of elements, none too: **/SERIAL_NUMBER is every serial number of the tree
//
// A pattern names items and parameters alike. A parameter has no index and counts as index 1. "." and the empty text
// name the root item, as does "**", which names everything else as well. Of several ways to match, one is enough.
//
// Conditions. Comparisons, joined by "and", "or", "not" and brackets:
//
//   VOLTAGE_MAX > 10       ==  !=  <  <=  >  >=
//   NAME ~ "^AI[0-9]"      a regular expression stands for a part of the value's text
//   IOCHANNEL[2]/NAME      alone: there is such an item or parameter
//
// On either side stands an address, a number, a version, or a text in quotes, "..." or '...', where a backslash takes
// the quote or the backslash behind it as it is; behind "~" a text alone. Addresses are relative to the item that was
// found, or the item of the parameter that was found; "." is the value of the parameter that was found. They begin with
// a name: IDs by number need an index or a "/" to be told from numbers.
//   - Numbers of all types, 64 bits and floating point too, are compared exactly. A number with a fraction is taken in
//     the precision of the parameter it is compared with: OFFSET == 0.1 is true of a Float32 of 0.1.
//   - Versions are compared as versions: 1.10 is above 1.9. Texts are compared byte by byte.
//   - A text beside a number or a version is read as one; a text in quotes beside a parameter of another type, too.
//   - What cannot be compared is not equal; nothing is below or above a NaN; nothing at all is true of a value that is
//     not there, not even "!=".
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventorykit/KyInventoryKitApi.h"
#include "inventorykit/KyLookUp.h"

namespace KyNInventoryKit
{
class Condition;
class Pattern;

// What to look for. Shares what was read with its copies, which is never changed after that.
struct Query
{
  std::shared_ptr<const Pattern> pattern;        // null: everything
  std::shared_ptr<const Condition> condition;    // null: none
  bool findsItems = true;
  bool findsParameters = true;
};

// Errors:     0x1500800  an ID is not predefined; the report names the nearest ones
//             0x1504008  the text is no pattern; the report names the place and what is expected there
//             0x1504009  no ID, predefined or not, has a name of this form
// Result:     false on failure; the query stays as it was.
KY_INVENTORYKIT_API bool readPattern(KyCErrorListPool& pool, const std::string& text, Query& query);

// Errors:     0x150400A  the text is no condition; the report names the place and what is expected there
//             0x150400B  a text behind "~" is no regular expression (in front of 0x150400A)
//             those of readAddress (in front of 0x150400A)
// Result:     false on failure; the query stays as it was.
// Cost:       linear in the text; no recursion, however deep the brackets.
KY_INVENTORYKIT_API bool readCondition(KyCErrorListPool& pool, const std::string& text, Query& query);

// Everything below and with top that a query asks for, in the order of the tree: items before their parameters, those
// before the sub-items. Addresses of the pattern are relative to top.
//
// Cost:       for each item and parameter at most the number of the pattern's elements, and the condition's cost for
//             those that match; what is below an item that no match can go through is not looked at. No recursion.
KY_INVENTORYKIT_API std::vector<Node> find(KyCInventoryItem& top, const Query& query);
}    // namespace KyNInventoryKit
