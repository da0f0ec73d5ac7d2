#include "tree/KyInventoryAccess.h"

KyCInventoryAddress KyInventoryAccess::addressOf(const KyCInventoryItem* item,
                                                 const KyCInventoryAddress::TElement* tail)
{
  unsigned int length = tail != nullptr ? 1 : 0;
  for (const KyCComposite* node = item; node->getParent() != nullptr; node = node->getParent())
    ++length;

  KyCInventoryAddress address;
  address.resize(length);
  address.m_length = length;
  if (tail != nullptr) address.m_elements[--length] = *tail;
  for (const KyCComposite* node = item; node->getParent() != nullptr; node = node->getParent())
    address.m_elements[--length] = {node->getClassId(), node->getUnitId()};
  return address;
}
