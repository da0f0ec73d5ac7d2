// KyFormats.h: trees as texts of common formats, and back.
//
//   std::string text;
//   KyNInventoryKit::exportTree(pool, *tree, KyNInventoryKit::Format::JSON, text);
//   KyNInventoryKit::TreePointer same = KyNInventoryKit::importTree(pool, text, KyNInventoryKit::Format::JSON);
//
// JSON and mark-up carry everything that a section stores and give it back the same: IDs without a name, the root's own
// ID, siblings of one ID, order, descriptions, each type's every value (the bits of a NaN, texts with control bytes and
// texts that are not UTF-8). JSON lines and CSV are flat, one line a parameter, for tables and line tools. The formats
// themselves are described in docs/formats.md, JSON also by docs/schema/inventory.schema.json.
//
// Shared data that items are linked to is not part of a text, auxiliary info and pending values neither.
#pragma once

#include <string>

#include "errorhandling/KyCErrorListPool.h"
#include "inventorykit/KyInventoryKitApi.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
enum class Format
{
  JSON,
  JSON_LINES,    // one JSON object a line, in UTF-8
  CSV,           // RFC 4180 with line feeds alone behind the lines
  MARKUP         // the elements of the text dump
};

// "json", "jsonl", "csv", "markup".
//
// Result:     false when the name is none of these.
KY_INVENTORYKIT_API bool formatOfName(const std::string& name, Format& format);

// The format of a text by its beginning; a byte order mark of UTF-8 may stand in front.
//
// Result:     false, without a report, when it looks like none.
KY_INVENTORYKIT_API bool detectFormat(const std::string& text, Format& format);

// The text of an item and all below it, as it is: also of what importTree refuses, as it could not be stored in a section,
// namely two parameters of one ID in an item and more than 4096 levels.
//
//   text        receives the text, which ends with a line feed
//
// Result:     false on failure; text is then empty.
// Errors:     0x1505000  a parameter's type is none of the twelve
// Cost:       near-linear; needs no stack, however deep the tree. Lines are indented to 64 levels at most.
KY_INVENTORYKIT_API bool exportTree(KyCErrorListPool& pool, const KyCInventoryItem& root, Format format,
                                    std::string& text);

// The tree of a text.
//
//   JSON          every field as the schema says; the order of an object's fields does not count
//   MARKUP        what exportTree writes, and what the text dump writes, as far as that holds it: docs/formats.md
//   JSON_LINES    parameters by address below a root item ROOT; items are made on the way
//
// The first thing that is wrong ends the reading. Items may be nested 4096 levels deep and units may have 100 bytes, as in
// a section.
//
// Result:     null on failure.
// Errors:     0x1505001  the text is not of this format; the report names line, column (in bytes) and reason
//             0x1505002  the text is of the format but no tree; the report names the address, too. Where a value, an ID
//                        or an address is wrong, behind the report of setValueText or readAddress
//             0x1505004  the format cannot be imported: CSV
//             0x1505005  this build has no library to read mark-up
// Cost:       near-linear, in memory too; needs no stack, however deep the text.
KY_INVENTORYKIT_API TreePointer importTree(KyCErrorListPool& pool, const std::string& text, Format format);

// As above, for the format that the text looks like.
//
// Errors:     also 0x1505003  it looks like none
KY_INVENTORYKIT_API TreePointer importTree(KyCErrorListPool& pool, const std::string& text);
}    // namespace KyNInventoryKit
