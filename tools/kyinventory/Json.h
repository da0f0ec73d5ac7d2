// Json.h: pieces of JSON, written as they come: an answer of a million lines needs no memory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyLookUp.h"

class Output;

// A text as a JSON string. Control characters are escaped, also those beyond ASCII. Bytes that are no UTF-8 give an
// object {"bytes": "..."} with the text in base64, so that nothing is lost.
std::string jsonText(std::string_view text);

// The value of a parameter as in exported trees: integers of up to 32 bits as JSON numbers, everything else as strings
// (many readers round longer numbers); null for a parameter that has no value.
std::string jsonValue(const KyCInventoryParameter& parameter);

// An object with the address, and of a parameter with everything that is stored of it.
std::string jsonNode(std::string_view address, const KyNInventoryKit::Node& node);

// Prints nodes as an array of such objects, one a line.
void printNodesAsJson(Output& out, const std::vector<KyNInventoryKit::Node>& nodes);
