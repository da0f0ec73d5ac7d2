// Json.h: pieces of JSON, written as they come: an answer of a million lines needs no memory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inventorykit/KyLookUp.h"
#include "inventorykit/KyValueText.h"

class Output;

// A text as a JSON string, or as an object with its bytes; see inventorykit/KyValueText.h.
using KyNInventoryKit::jsonText;

// An object with the address, and of a parameter with everything that is stored of it.
std::string jsonNode(std::string_view address, const KyNInventoryKit::Node& node);

// Prints nodes as an array of such objects, one a line.
void printNodesAsJson(Output& out, const std::vector<KyNInventoryKit::Node>& nodes);
