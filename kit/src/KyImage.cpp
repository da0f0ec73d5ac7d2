#include "inventorykit/KyImage.h"

#include "KyCheckMessages.h"
#include "KyKitMessages.h"
#include "KySectionLayout.h"
#include "composite/KyCBuffer.h"
#include "inventory/KyCInventoryData.h"

namespace KyNInventoryKit
{
namespace
{
constexpr std::uint64_t s_mostBytes = 0xFFFFFFFFu;

const char* endName(SectionEnd at) { return at == SectionEnd::START ? "start" : "end"; }

bool isTooLarge(KyCErrorListPool& pool, std::uint64_t size, const std::string& name, const char* function)
{
  if (size <= s_mostBytes) return false;
  pool.setError(KY_CHECK_MSG_TOO_LARGE, __LINE__, function, "%s", name.c_str());
  return true;
}

KySectionLayout layoutAt(const std::string& bytes, SectionEnd at)
{
  if (at == SectionEnd::READ) return kyLayoutOf(bytes);
  return at == SectionEnd::START ? kyLayoutAtStart(bytes) : kyLayoutAtEnd(bytes);
}

std::string sectionIn(const std::string& bytes, const KySectionLayout& layout)
{
  return bytes.substr(layout.begin, layout.end - layout.begin);
}

// Of the section that reading takes, as reading it reports it.
void reportUnreadable(KyCErrorListPool& pool, const std::string& bytes, const std::string& name, SectionEnd at,
                      const KySectionLayout& layout, const char* function)
{
  const unsigned int errorCount = pool.getErrorCount();
  if (at == SectionEnd::READ) readTreeFromBytes(pool, bytes, name);
  if (pool.getErrorCount() != errorCount) return;
  pool.setError(KY_CHECK_MSG_CANNOT_BE_FOUND, __LINE__, function, "%s%s%s", name.c_str(),
                layout.isAtEnd ? "end" : "start", kyLeadingDamageOf(bytes, layout).c_str());
}

// Finds a section that reads as a tree.
bool findReadable(KyCErrorListPool& pool, const std::string& bytes, const std::string& name, SectionEnd at,
                  const char* function, KySectionLayout& layout)
{
  if (isTooLarge(pool, bytes.size(), name, function)) return false;
  layout = layoutAt(bytes, at);
  if (!layout.isThere)
  {
    if (at == SectionEnd::READ)
      pool.setError(KY_KIT_MSG_NO_SECTION, __LINE__, function, "%s", name.c_str());
    else
      pool.setError(KY_CHECK_MSG_NO_SECTION_THERE, __LINE__, function, "%s%s", name.c_str(), endName(at));
    return false;
  }
  if (layout.isReadable) return readTreeFromBytes(pool, kyReadableSection(bytes, layout), name) != nullptr;
  reportUnreadable(pool, bytes, name, at, layout, function);
  return false;
}

void appendHeader(KyCErrorListPool& pool, std::string& section, unsigned int dataSize)
{
  KyCBuffer buffer(pool);
  KyCInventoryData::writeHeader(pool, buffer, dataSize, 0xFFFFFFFF);
  section.append(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

void appendTrailer(KyCErrorListPool& pool, std::string& section, unsigned int dataSize)
{
  KyCBuffer buffer(pool);
  KyCInventoryData::writeTrailer(pool, buffer, dataSize);
  section.append(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

bool agree(const KySectionRecord& header, const KySectionRecord& trailer)
{
  return header.isUsable && trailer.isUsable && header.headerSize == trailer.headerSize &&
         header.dataSize == trailer.dataSize && header.trailerSize == trailer.trailerSize;
}

// The section as it stands, or with a new header and trailer where one is missing or they do not agree: what is found from
// either end is the same only then.
bool wholeSection(KyCErrorListPool& pool, const std::string& bytes, const KySectionLayout& layout, std::string& whole)
{
  if (agree(layout.header, layout.trailer))
  {
    whole = sectionIn(bytes, layout);
    return true;
  }
  const unsigned int errorCount = pool.getErrorCount();
  const unsigned int dataSize = static_cast<unsigned int>(layout.dataEnd - layout.dataBegin);
  std::string made;
  appendHeader(pool, made, dataSize);
  made.append(bytes, layout.dataBegin, dataSize);
  appendTrailer(pool, made, dataSize);
  if (pool.getErrorCount() != errorCount) return false;
  whole.swap(made);
  return true;
}

std::string without(const std::string& bytes, const KySectionLayout& layout)
{
  return bytes.substr(0, layout.begin) + bytes.substr(layout.end);
}

// Whether the new image gives back both things that it was made of. What ends like a section but is none keeps the one at
// the start from being read.
bool readsBack(const std::string& made, const std::string& image, const std::string& section, SectionEnd at)
{
  const KySectionLayout atEnd = kyLayoutAtEnd(made);
  if (atEnd.isThere && !atEnd.isReadable) return false;
  const KySectionLayout layout = layoutAt(made, at);
  return layout.isReadable && sectionIn(made, layout) == section && without(made, layout) == image;
}
}    // namespace

bool readImage(KyCErrorListPool& pool, const std::string& path, std::string& bytes)
{
  return kyReadSmallFile(pool, path, bytes);
}

bool extractSection(KyCErrorListPool& pool, const std::string& bytes, const std::string& name, SectionEnd at,
                    std::string& section)
{
  KySectionLayout layout;
  return findReadable(pool, bytes, name, at, "extractSection", layout) && wholeSection(pool, bytes, layout, section);
}

bool appendSection(KyCErrorListPool& pool, std::string& image, const std::string& name, const std::string& section,
                   SectionEnd wantedEnd, Replace replace)
{
  const SectionEnd at = wantedEnd == SectionEnd::READ ? SectionEnd::END : wantedEnd;
  std::string whole;
  KySectionLayout layout;
  if (!findReadable(pool, section, "the section", SectionEnd::READ, "appendSection", layout) ||
      !wholeSection(pool, section, layout, whole))
  {
    return false;
  }
  std::string rest = image;
  if (layoutAt(image, at).isThere)
  {
    if (replace == Replace::NO)
    {
      pool.setError(KY_CHECK_MSG_HAS_SECTION, __LINE__, "appendSection", "%s%s", name.c_str(), endName(at));
      return false;
    }
    if (!stripSection(pool, rest, name, at)) return false;
  }
  if (isTooLarge(pool, std::uint64_t{rest.size()} + whole.size(), name, "appendSection")) return false;
  std::string made = at == SectionEnd::START ? whole + rest : rest + whole;
  if (!readsBack(made, rest, whole, at))
  {
    pool.setError(KY_CHECK_MSG_NOT_READ_BACK, __LINE__, "appendSection", "%s%s", name.c_str(), endName(at));
    return false;
  }
  image.swap(made);
  return true;
}

bool stripSection(KyCErrorListPool& pool, std::string& image, const std::string& name, SectionEnd at)
{
  KySectionLayout layout;
  if (!findReadable(pool, image, name, at, "stripSection", layout) ||
      !kyIsBounded(pool, image, name, layout, "stripSection"))
  {
    return false;
  }
  image = without(image, layout);
  return true;
}
}    // namespace KyNInventoryKit
