// KyCComposite.h: a tree node with owned children, owned parameters and one friend link.
#pragma once

#include "composite/KyCParam.h"
#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

class KyCListIndex;

class KY_COMPOSITE_API KyCComposite
{
 public:
  KyCComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* description);
  KyCComposite(const KyCComposite&) = delete;
  KyCComposite& operator=(const KyCComposite&) = delete;

  // Virtual operations, in slot order. The base does nothing in any of them but the destructor.
  virtual ~KyCComposite();
  virtual void update(KyCErrorListPool& pool);
  virtual void PreInit(KyCErrorListPool& pool);
  virtual void PostInit(KyCErrorListPool& pool);
  virtual void PreApply(KyCErrorListPool& pool);
  virtual void PostApply(KyCErrorListPool& pool);
  virtual void PreReset(KyCErrorListPool& pool);
  virtual void PostReset(KyCErrorListPool& pool);
  virtual void traverseHook(KyCErrorListPool& pool, unsigned int value);
  virtual void virtualDummyFunction4();
  virtual void virtualDummyFunction3();
  virtual void virtualDummyFunction2();
  virtual void virtualDummyFunction1();

  unsigned int getClassId() const noexcept { return m_classId; }
  unsigned int getUnitId() const noexcept { return m_unitId; }
  const char* getDescription() const noexcept { return m_description; }
  void setDescription(KyCErrorListPool& pool, const char* description);
  KyCComposite* getParent() const noexcept { return m_parent; }
  KyCComposite* getChild() const noexcept { return m_firstChild; }
  KyCComposite* getSibling() const noexcept { return m_next; }
  int attach(KyCComposite* child);
  int detachChild(const KyCComposite* child);    // 0; -1 when it is not a child of this node (or null)
  void setFriend(KyCComposite* other) noexcept { m_friend = other; }
  KyCComposite* getFriend() const noexcept { return m_friend; }

  void addParameter(KyCErrorListPool& pool, KyCParam* parameter);
  KyCParam* removeParameter(KyCErrorListPool& pool, unsigned int id);
  KyCParam* getParameterById(unsigned int id) const;
  KyCParam* getParameterByIndex(unsigned int index) const;

 protected:
  // As the public constructor, for a description that outlives the node: the pointer is kept, nothing is copied.
  struct TStaticText { const char* text; };
  KyCComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, TStaticText description);
  void setStaticDescription(const char* description) noexcept;

  // Gives the node new numbers; its parent finds it under them from then on.
  void setIds(unsigned int classId, unsigned int unitId);
  // The first child, in list order, with these numbers; null when none. Near-constant cost however many children.
  KyCComposite* findChild(unsigned int classId, unsigned int unitId) const;
  KyCParam* getFirstParameter() const noexcept { return m_firstParameter; }

 private:
  friend class KyCParam;    // tells of a changed id
  void parameterIdChanged(KyCParam* parameter, unsigned int oldId);

  unsigned int m_classId;
  unsigned int m_unitId;
  const char* m_description;
  bool m_ownsDescription = false;
  KyCComposite* m_parent = nullptr;
  KyCComposite* m_firstChild = nullptr;
  KyCComposite* m_lastChild = nullptr;
  KyCComposite* m_next = nullptr;
  KyCComposite* m_previous = nullptr;
  KyCComposite* m_friend = nullptr;
  KyCParam* m_firstParameter = nullptr;
  KyCParam* m_lastParameter = nullptr;
  mutable KyCListIndex* m_childIndex = nullptr;        // only while there are many children
  mutable KyCListIndex* m_parameterIndex = nullptr;    // only while there are many parameters
};
