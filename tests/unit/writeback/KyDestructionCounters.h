// KyDestructionCounters.h: an updater and a parameter that tell of their destruction.
#pragma once

#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyIUpdater.h"
#include "inventory/KyNInventoryIDs.h"

// A base in front of the interface: the pointer that the inventory keeps is not the address of the object.
class KyCSomethingElse
{
public:
  virtual ~KyCSomethingElse() = default;
  int m_something = 0;
};

class KyCCountedUpdater : public KyCSomethingElse, public KyIUpdater
{
public:
  explicit KyCCountedUpdater(unsigned int& destroyed) : m_destroyed(destroyed) {}
  ~KyCCountedUpdater() override { ++m_destroyed; }

private:
  unsigned int& m_destroyed;
};

class KyCCountedParameter : public KyCInventoryParameter
{
public:
  KyCCountedParameter(KyCErrorListPool& pool, unsigned int& destroyed)
      : KyCInventoryParameter(pool, KyNInventoryIDs::SIZE, "SIZE", 1, "", false, 0), m_destroyed(destroyed)
  {
  }
  ~KyCCountedParameter() override { ++m_destroyed; }

private:
  unsigned int& m_destroyed;
};
