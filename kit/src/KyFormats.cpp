#include "inventorykit/KyFormats.h"

#include <cstdio>

#include "KyFormatMessages.h"
#include "KyFormatParts.h"

namespace KyNInventoryKit
{
namespace
{
constexpr struct
{
  const char* name;
  Format format;
} s_formats[] = {
    {"json", Format::JSON},
    {"jsonl", Format::JSON_LINES},
    {"csv", Format::CSV},
    {"markup", Format::MARKUP},
};

// Asked first, so that the formats themselves cannot fail.
bool hasValuesOnly(KyCErrorListPool& pool, const KyCInventoryItem& root)
{
  for (const KyCInventoryItem* item = &root; item != nullptr; item = nextItem(*item, root))
    for (const KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
    {
      if (*p->getTypeAsCString() != '\0') continue;
      char code[16];
      std::snprintf(code, sizeof(code), "0x%X", p->getType());
      pool.setError(KY_FORMAT_MSG_NO_VALUE_TYPE, __LINE__, "exportTree", "%s%s", p->getAddress().toString().c_str(),
                    code);
      return false;
    }
  return true;
}
}    // namespace

bool formatOfName(const std::string& name, Format& format)
{
  for (const auto& known : s_formats)
  {
    if (name != known.name) continue;
    format = known.format;
    return true;
  }
  return false;
}

bool detectFormat(const std::string& text, Format& format)
{
  const std::size_t mark = text.rfind("\xEF\xBB\xBF", 0) == 0 ? 3 : 0;
  if (text.compare(mark, 14, "address,type,v") == 0)
  {
    format = Format::CSV;
    return true;
  }
  const std::size_t first = text.find_first_not_of(" \t\r\n", mark);
  if (first == std::string::npos || (text[first] != '<' && text[first] != '{')) return false;
  format = text[first] == '<' ? Format::MARKUP : isJsonLine(text) ? Format::JSON_LINES : Format::JSON;
  return true;
}

bool exportTree(KyCErrorListPool& pool, const KyCInventoryItem& root, Format format, std::string& text)
{
  text.clear();
  if (!hasValuesOnly(pool, root)) return false;
  switch (format)
  {
    case Format::JSON:
      writeJson(root, text);
      break;
    case Format::JSON_LINES:
      writeJsonLines(root, text);
      break;
    case Format::CSV:
      writeCsv(root, text);
      break;
    case Format::MARKUP:
      writeMarkup(root, text);
      break;
  }
  return true;
}

TreePointer importTree(KyCErrorListPool& pool, const std::string& text, Format format)
{
  switch (format)
  {
    case Format::JSON:
      return readJson(pool, text);
    case Format::JSON_LINES:
      return readJsonLines(pool, text);
    case Format::MARKUP:
      return readMarkup(pool, text);
    case Format::CSV:
      break;
  }
  pool.setError(KY_FORMAT_MSG_NOT_READABLE, __LINE__, "importTree", "%s", "CSV");
  return nullptr;
}

TreePointer importTree(KyCErrorListPool& pool, const std::string& text)
{
  Format format = Format::JSON;
  if (detectFormat(text, format)) return importTree(pool, text, format);
  pool.setError(KY_FORMAT_MSG_UNKNOWN_FORMAT, __LINE__, "importTree", nullptr);
  return nullptr;
}
}    // namespace KyNInventoryKit
