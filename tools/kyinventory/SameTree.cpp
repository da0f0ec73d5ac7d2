#include "SameTree.h"

#include <cstring>

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryParameter.h"

namespace
{
template <typename T>
bool sameValue(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  KyCErrorListPool pool;
  const T valueA = a.getValue<T>(pool);
  const T valueB = b.getValue<T>(pool);
  return pool.getErrorCount() == 0 && valueA == valueB;
}

// Floating-point numbers are equal when their bytes are: a NaN equals itself, 0 and -0 differ.
template <typename T>
bool sameBytes(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  KyCErrorListPool pool;
  const T valueA = a.getValue<T>(pool);
  const T valueB = b.getValue<T>(pool);
  return pool.getErrorCount() == 0 && std::memcmp(&valueA, &valueB, sizeof(T)) == 0;
}

bool sameValue(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  switch (a.getType())
  {
    case 0x111:
      return sameValue<signed char>(a, b);
    case 0x112:
      return sameValue<short>(a, b);
    case 0x114:
      return sameValue<int>(a, b);
    case 0x118:
      return sameValue<long long>(a, b);
    case 0x121:
      return sameValue<unsigned char>(a, b);
    case 0x122:
      return sameValue<unsigned short>(a, b);
    case 0x124:
      return sameValue<unsigned int>(a, b);
    case 0x128:
      return sameValue<unsigned long long>(a, b);
    case 0x214:
      return sameBytes<float>(a, b);
    case 0x218:
      return sameBytes<double>(a, b);
    case 0x2000:
      return sameValue<KyCString>(a, b);
    case 0x4000:
      return sameValue<KyCVersion>(a, b);
    default:
      return false;
  }
}

const char* parameterDifference(const KyCInventoryParameter* a, const KyCInventoryParameter* b)
{
  if (a == nullptr || b == nullptr) return a == b ? nullptr : "number of parameters";
  if (a->getID() != b->getID()) return "ID";
  if (std::strcmp(a->getDescription(), b->getDescription()) != 0) return "description";
  if (a->getType() != b->getType()) return "type";
  if (std::strcmp(a->getUnit(), b->getUnit()) != 0) return "unit";
  if (a->isModifiable() != b->isModifiable()) return "modifiable flag";
  if (a->getRelevance() != b->getRelevance()) return "relevance";
  return sameValue(*a, *b) ? nullptr : "value";
}

std::string place(const KyCInventoryAddress& address, const char* what)
{
  const KyCString text = address.toString();
  return std::string(text.isEmpty() ? "root item" : text.c_str()) + ": " + what;
}

// The item itself and its parameters, not its sub-items.
std::string itemDifference(const KyCInventoryItem& a, const KyCInventoryItem& b)
{
  if (a.getID() != b.getID()) return place(a.getAddress(), "ID");
  for (unsigned int n = 0;; ++n)
  {
    const KyCInventoryParameter* parameterA = a.getParameterByOrdinalNumber(n);
    const KyCInventoryParameter* parameterB = b.getParameterByOrdinalNumber(n);
    const char* difference = parameterDifference(parameterA, parameterB);
    if (difference != nullptr)
    {
      return place(parameterA != nullptr ? parameterA->getAddress() : a.getAddress(), difference);
    }
    if (parameterA == nullptr) return {};
  }
}
}    // namespace

std::string firstDifference(const KyCInventoryItem& rootA, const KyCInventoryItem& rootB)
{
  const KyCInventoryItem* a = &rootA;
  const KyCInventoryItem* b = &rootB;
  for (;;)
  {
    std::string difference = itemDifference(*a, *b);
    if (!difference.empty()) return difference;
    if ((a->getFirstSubItem() == nullptr) != (b->getFirstSubItem() == nullptr))
    {
      return place(a->getAddress(), "number of sub-items");
    }
    if (a->getFirstSubItem() != nullptr)
    {
      a = a->getFirstSubItem();
      b = b->getFirstSubItem();
      continue;
    }
    while (a != &rootA && a->getNext() == nullptr && b->getNext() == nullptr)
    {
      a = a->getParent();
      b = b->getParent();
    }
    if (a == &rootA) return {};
    if ((a->getNext() == nullptr) != (b->getNext() == nullptr))
    {
      return place(a->getParent()->getAddress(), "number of sub-items");
    }
    a = a->getNext();
    b = b->getNext();
  }
}
