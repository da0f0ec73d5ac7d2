#include "tree/KyPlaceText.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "inventory/KyNInventoryIDs.h"
#include "tree/KyInventoryAccess.h"

namespace
{
using TElement = KyCInventoryAddress::TElement;

std::size_t digitsOf(unsigned int number) noexcept
{
  std::size_t digits = 1;
  while ((number /= 10) != 0)
    ++digits;
  return digits;
}

std::size_t lengthOf(const TElement& element) noexcept
{
  const char* const name = KyNInventoryIDs::Map.get(element.id);
  const std::size_t length = name != nullptr ? std::strlen(name) : digitsOf(element.id);
  return element.index == 1 ? length : length + 2 + digitsOf(element.index);
}

// These write in front of `end` and give the new start.
char* putText(char* end, const char* text, std::size_t length) noexcept
{
  return static_cast<char*>(std::memcpy(end - length, text, length));
}

char* putNumber(char* end, unsigned int number) noexcept
{
  do
    *--end = static_cast<char>('0' + number % 10);
  while ((number /= 10) != 0);
  return end;
}

char* putElement(char* end, const TElement& element) noexcept
{
  if (element.index != 1)
  {
    *--end = ']';
    end = putNumber(end, element.index);
    *--end = '[';
  }
  const char* const name = KyNInventoryIDs::Map.get(element.id);
  return name != nullptr ? putText(end, name, std::strlen(name)) : putNumber(end, element.id);
}

// The elements of an item's address, the last one first; ends when visit gives false.
template <typename Visit>
void forEachAbove(const KyCInventoryItem* item, Visit visit) noexcept
{
  for (const KyCInventoryItem* parent = item->getParent(); parent != nullptr; item = parent, parent = item->getParent())
  {
    if (!visit({KyInventoryAccess::getClassId(*item), KyInventoryAccess::getUnitId(*item)})) return;
  }
}
}    // namespace

// Measures, then writes from the end to the start: the elements come in that order from the links of a tree.
template <typename ForEachBackwards>
void KyPlaceText::compose(ForEachBackwards forEachBackwards) noexcept
{
  std::size_t size = 0;    // with one "/" or NUL behind each element
  forEachBackwards([&](const TElement& element) { return size += lengthOf(element) + 1, true; });
  if (size > INLINE_SIZE) m_block = static_cast<char*>(std::malloc(size));
  const bool isCut = size > INLINE_SIZE && m_block == nullptr;
  char* const start = m_block != nullptr ? m_block : m_inline;
  char* const end = start + (isCut || size == 0 ? INLINE_SIZE : size) - 1;

  char* at = end;
  *at = '\0';
  constexpr char mark[] = "...";
  const std::size_t kept = isCut ? sizeof(mark) - 1 : 0;    // room for the mark
  forEachBackwards(
      [&](const TElement& element)
      {
        const std::size_t needed = lengthOf(element) + (at != end ? 1 : 0);
        if (static_cast<std::size_t>(at - start) < needed + kept) return false;
        if (at != end) *--at = '/';
        at = putElement(at, element);
        return true;
      });
  assert(isCut || size == 0 || at == start);
  m_text = isCut ? putText(at, mark, sizeof(mark) - 1) : at;
}

KyPlaceText::KyPlaceText(const KyCInventoryAddress& address) noexcept
{
  const TElement* const elements = address.getElements();
  compose(
      [&](auto visit)
      {
        for (unsigned int n = address.getLength(); n > 0 && visit(elements[n - 1]); --n)
        {
        }
      });
}

KyPlaceText::KyPlaceText(const KyCInventoryItem& item) noexcept
{
  compose([&](auto visit) { forEachAbove(&item, visit); });
}

KyPlaceText::KyPlaceText(const KyCInventoryParameter& parameter) noexcept
{
  const KyCInventoryItem* const parent = parameter.getParent();
  compose(
      [&](auto visit)
      {
        if (parent != nullptr && visit(TElement{KyInventoryAccess::getId(parameter), 1})) forEachAbove(parent, visit);
      });
}

KyPlaceText::~KyPlaceText() { std::free(m_block); }
