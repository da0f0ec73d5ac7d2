// KyFormatParts.h: what the formats share, and each format's own way out and in.
#pragma once

#include <string>

#include "KyTreeBuilder.h"
#include "errorhandling/KyCErrorListPool.h"

namespace KyNInventoryKit
{
// ---- One function a format and direction; see KyFormats.h ----

void writeJson(const KyCInventoryItem& root, std::string& text);
void writeJsonLines(const KyCInventoryItem& root, std::string& text);
void writeCsv(const KyCInventoryItem& root, std::string& text);
void writeMarkup(const KyCInventoryItem& root, std::string& text);

TreePointer readJson(KyCErrorListPool& pool, const std::string& text);
TreePointer readJsonLines(KyCErrorListPool& pool, const std::string& text);
TreePointer readMarkup(KyCErrorListPool& pool, const std::string& text);

// Whether the top object of a JSON text has an "address", as the lines of JSON lines have. Looks no further than it needs.
bool isJsonLine(const std::string& text);

// ---- Texts ----

// Lines are indented no deeper, so that a text stays in proportion to the tree.
constexpr unsigned int s_deepestIndent = 64;

// Line and column (in bytes) of an offset; both count from 1.
struct TextPlace
{
  unsigned int line;
  unsigned int column;
};
TextPlace placeOf(const std::string& text, std::size_t offset);

// The address of an item for a report: "root item" for the empty text; a long one without its middle.
std::string addressForPeople(const std::string& text);

// An unsigned 32-bit number of decimal digits alone.
bool readNumber(const std::string& text, unsigned int& number);
}    // namespace KyNInventoryKit
