// KyTestNode.h: a node whose protected parts tests may use, and that counts how many of its kind are alive.
#pragma once

#include <string>

#include "composite/KyCComposite.h"

class KyTestNode : public KyCComposite
{
public:
  KyTestNode(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* description = "node")
      : KyCComposite(pool, classId, unitId, description)
  {
    ++s_alive;
  }

  KyTestNode(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, TStaticText description)
      : KyCComposite(pool, classId, unitId, description)
  {
    ++s_alive;
  }

  ~KyTestNode() override { --s_alive; }

  // The wrapper that says: keep the pointer.
  static TStaticText staticText(const char* text) { return TStaticText{text}; }

  using KyCComposite::findChild;
  using KyCComposite::getFirstParameter;
  using KyCComposite::setIds;
  using KyCComposite::setStaticDescription;

  static inline unsigned int s_alive = 0;
};

// Likewise for a parameter.
class KyTestParam : public KyCParam
{
public:
  KyTestParam(KyCErrorListPool& pool, unsigned int id)
      : KyCParam(pool, id, nullptr, KyCParam::FLAG_STATIC_DESCRIPTION, id, nullptr)
  {
    ++s_alive;
  }

  ~KyTestParam() override { --s_alive; }

  using KyCParam::getNextParam;
  using KyCParam::getParentComposite;

  static inline unsigned int s_alive = 0;
};
