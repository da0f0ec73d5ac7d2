// KyCComposite.cpp: the links of a node: description, children, parameters.
#include "composite/KyCComposite.h"

#include <cstdint>
#include <cstring>
#include <new>

#include "KyCompositeMessages.h"
#include "KyListIndex.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{

// As long as a list is walked; longer ones get an index, and shorter ones than half of it lose it again.
constexpr unsigned int WALKED_LENGTH = 16;

const char s_noText[] = "";

std::uint64_t keyOf(unsigned int classId, unsigned int unitId) noexcept
{
  return std::uint64_t{classId} << 32 | unitId;
}

std::uint64_t keyOf(const KyCComposite* node) noexcept { return keyOf(node->getClassId(), node->getUnitId()); }

std::uint64_t keyOf(const KyCParam* parameter) noexcept { return parameter->getId(); }

// What a look-up reads next: the node, and its first parameters, which stand behind it in memory when a tree was built or
// read in order. In large trees each of these lines is far away, so all of them are called for at once.
__attribute__((always_inline)) inline void prefetch(const KyCComposite* node) noexcept
{
  const char* const bytes = reinterpret_cast<const char*>(node);
  for (unsigned int offset = 0; offset < 448; offset += 64)
    __builtin_prefetch(bytes + offset);
}

void dropIndex(KyCListIndex*& index) noexcept
{
  delete index;
  index = nullptr;
}

// The three below take the place where the index is kept; null there: none is kept.
template <typename T>
void appendToIndex(KyCListIndex*& index, T* entry) noexcept
{
  if (index != nullptr && !index->append(entry, keyOf(entry))) dropIndex(index);
}

template <typename T>
void removeFromIndex(KyCListIndex*& index, const T* entry) noexcept
{
  if (index == nullptr) return;
  index->remove(entry, keyOf(entry));
  if (index->count() < WALKED_LENGTH / 2) dropIndex(index);
}

// Indexes the list that starts with first; leaves null when there is no memory.
template <typename T, typename TNext>
void makeIndex(KyCListIndex*& index, T* first, TNext nextOf) noexcept
{
  unsigned int count = 0;
  for (const T* entry = first; entry != nullptr; entry = nextOf(entry))
    ++count;
  index = new (std::nothrow) KyCListIndex;
  if (index == nullptr) return;
  bool isComplete = index->reserve(count + count / 4);
  for (T* entry = first; isComplete && entry != nullptr; entry = nextOf(entry))
    isComplete = index->append(entry, keyOf(entry));
  if (!isComplete) dropIndex(index);
}

}    // namespace

// ---- Life and description ----

KyCComposite::KyCComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                           const char* description) noexcept
    : m_classId(classId), m_unitId(unitId), m_description(s_noText)
{
  setDescription(pool, description);
}

KyCComposite::KyCComposite(KyCErrorListPool&, unsigned int classId, unsigned int unitId,
                           TStaticText description) noexcept
    : m_classId(classId), m_unitId(unitId), m_description(description.text != nullptr ? description.text : s_noText)
{
}

KyCComposite::~KyCComposite()
{
  if (m_parent != nullptr)
    m_parent->unlinkChild(this);
  else if (m_previous != nullptr)
    m_previous->takeChildrenOf(*this);
  deleteChildren();
  deleteParameters();
  delete m_indexes;
  replaceDescription(s_noText, false);
}

// Destructors run in the order of a recursion, each node before what is below it, without one: a node that is deleted here
// finds this one in its m_previous, which means nothing else without a parent, and leaves its children to it. Links always
// hold, whatever the destructors of derived nodes do.
void KyCComposite::deleteChildren() noexcept
{
  while (KyCComposite* const node = m_firstChild)
  {
    if (m_indexes != nullptr) dropIndex(m_indexes->children);
    unlinkChild(node);
    node->m_previous = this;
    delete node;
  }
}

// Puts the children of a node that is being deleted in front of this node's own.
void KyCComposite::takeChildrenOf(KyCComposite& node) noexcept
{
  if (node.m_firstChild == nullptr) return;
  if (m_indexes != nullptr) dropIndex(m_indexes->children);
  for (KyCComposite* child = node.m_firstChild; child != nullptr; child = child->m_next)
    child->m_parent = this;
  node.m_lastChild->m_next = m_firstChild;
  (m_firstChild != nullptr ? m_firstChild->m_previous : m_lastChild) = node.m_lastChild;
  m_firstChild = node.m_firstChild;
  node.m_firstChild = node.m_lastChild = nullptr;
}

void KyCComposite::deleteParameters() noexcept
{
  while (KyCParam* const parameter = m_firstParameter)
  {
    // A destructor may have looked parameters up, which makes an index.
    if (m_indexes != nullptr) dropIndex(m_indexes->parameters);
    m_firstParameter = parameter->m_next;
    if (m_firstParameter == nullptr) m_lastParameter = nullptr;
    parameter->m_parent = nullptr;
    parameter->m_next = nullptr;
    delete parameter;
  }
}

void KyCComposite::replaceDescription(const char* description, bool isOwned) noexcept
{
  if ((m_filterAndFlags & OWNS_DESCRIPTION) != 0) KyNPoolAllocator::release(const_cast<char*>(m_description));
  m_description = description;
  m_filterAndFlags = (m_filterAndFlags & ~OWNS_DESCRIPTION) | (isOwned ? OWNS_DESCRIPTION : 0);
}

void KyCComposite::setDescription(KyCErrorListPool& pool, const char* description) noexcept
{
  if (description == nullptr || *description == '\0')
  {
    replaceDescription(s_noText, false);
    return;
  }
  const std::size_t size = std::strlen(description) + 1;
  void* const copy = KyNPoolAllocator::allocate(pool, size);
  if (copy != nullptr) replaceDescription(static_cast<const char*>(std::memcpy(copy, description, size)), true);
}

void KyCComposite::setStaticDescription(const char* description) noexcept
{
  replaceDescription(description != nullptr ? description : s_noText, false);
}

// ---- Virtual operations ----

void KyCComposite::update(KyCErrorListPool&) {}
void KyCComposite::PreInit(KyCErrorListPool&) {}
void KyCComposite::PostInit(KyCErrorListPool&) {}
void KyCComposite::PreApply(KyCErrorListPool&) {}
void KyCComposite::PostApply(KyCErrorListPool&) {}
void KyCComposite::PreReset(KyCErrorListPool&) {}
void KyCComposite::PostReset(KyCErrorListPool&) {}
void KyCComposite::traverseHook(KyCErrorListPool&, unsigned int) {}
void KyCComposite::virtualDummyFunction4() {}
void KyCComposite::virtualDummyFunction3() {}
void KyCComposite::virtualDummyFunction2() {}
void KyCComposite::virtualDummyFunction1() {}

// ---- Children ----

// Whether this node is the other one or stands somewhere below it. Walks up from this node and through the tree below the
// other one in turns, and the shorter way ends both: a tree may so be put together from its pieces in any order without
// walking the same long way again and again. A node inside is met on the way up before the tree has been seen, which has
// at least as many nodes as that way.
bool KyCComposite::isInside(const KyCComposite* root) const noexcept
{
  const KyCComposite* above = this;
  const KyCComposite* below = root;
  for (;;)
  {
    if (above == root) return true;
    above = above->m_parent;
    if (above == nullptr) return false;

    if (below->m_firstChild != nullptr)
    {
      below = below->m_firstChild;
      continue;
    }
    while (below != root && below->m_next == nullptr)
      below = below->m_parent;
    if (below == root) return false;    // seen it all
    below = below->m_next;
  }
}

int KyCComposite::attach(KyCComposite* child) noexcept
{
  if (child == nullptr) return -1;
  if (isInside(child)) return -2;
  if (child->m_parent != nullptr) return -3;

  child->m_parent = this;
  child->m_previous = m_lastChild;
  child->m_next = nullptr;
  (m_lastChild != nullptr ? m_lastChild->m_next : m_firstChild) = child;
  m_lastChild = child;
  enterFilter(child->m_classId);
  if (m_indexes != nullptr) appendToIndex(m_indexes->children, child);
  return 0;
}

int KyCComposite::detachChild(const KyCComposite* child) noexcept
{
  if (child == nullptr || child->m_parent != this) return -1;
  unlinkChild(const_cast<KyCComposite*>(child));    // a child of this node, which is not const
  return 0;
}

void KyCComposite::unlinkChild(KyCComposite* child) noexcept
{
  if (m_indexes != nullptr) removeFromIndex(m_indexes->children, child);
  (child->m_previous != nullptr ? child->m_previous->m_next : m_firstChild) = child->m_next;
  (child->m_next != nullptr ? child->m_next->m_previous : m_lastChild) = child->m_previous;
  child->m_parent = child->m_next = child->m_previous = nullptr;
  if (m_found == child) m_found = nullptr;
}

void KyCComposite::setIds(unsigned int classId, unsigned int unitId) noexcept
{
  const std::uint64_t oldKey = keyOf(this);
  m_classId = classId;
  m_unitId = unitId;
  if (m_parent == nullptr || keyOf(this) == oldKey) return;
  m_parent->m_found = nullptr;    // another child may be the first with its numbers now
  m_parent->enterFilter(classId);
  if (m_parent->childIndex() != nullptr) m_parent->childIndex()->changeKey(this, oldKey, keyOf(this));
}

KyCComposite* KyCComposite::searchChild(unsigned int classId, unsigned int unitId) const noexcept
{
  if (!mayHave(classId)) return nullptr;
  const KyCListIndex* const index = childIndex();
  KyCComposite* found = index != nullptr ? static_cast<KyCComposite*>(index->guess(unitId)) : nullptr;
  if (found != nullptr)
  {
    prefetch(found);
    if (found->m_classId == classId && found->m_unitId == unitId)
    {
      m_found = found;
      return found;
    }
  }
  found = index != nullptr ? static_cast<KyCComposite*>(index->findFirst(keyOf(classId, unitId)))
                           : walkToChild(classId, unitId);
  if (found == nullptr) return nullptr;
  prefetch(found);
  m_found = found;
  return found;
}

// While there is no index; makes it when the way gets too long.
KyCComposite* KyCComposite::walkToChild(unsigned int classId, unsigned int unitId) const noexcept
{
  const KyCListIndex* index = nullptr;
  unsigned int walked = 0;
  for (KyCComposite* child = m_firstChild; child != nullptr; child = child->m_next)
  {
    if (walked++ == WALKED_LENGTH && (index = makeChildIndex()) != nullptr)
      return static_cast<KyCComposite*>(index->findFirst(keyOf(classId, unitId)));
    if (child->m_classId == classId && child->m_unitId == unitId) return child;
  }
  return nullptr;
}

// ---- Parameters ----

void KyCComposite::addParameter(KyCErrorListPool& pool, KyCParam* parameter) noexcept
{
  if (parameter != nullptr && addUnseenParameter(parameter)) return;    // nearly always
  if (parameter == nullptr)
  {
    pool.setError(KY_MSG_PARAM_NULL, __LINE__, "addParameter", "%u%u", m_classId, m_unitId);
    return;
  }
  if (parameter->m_parent != nullptr)
  {
    pool.setError(KY_MSG_PARAM_OWNED, __LINE__, "addParameter", "%u%u%u", parameter->m_id, m_classId, m_unitId);
    return;
  }
  if (getParameterById(parameter->m_id) != nullptr)
  {
    pool.setError(KY_MSG_PARAM_DUPLICATE, __LINE__, "addParameter", "%u%u%u", parameter->m_id, m_classId, m_unitId);
    return;
  }

  linkParameter(parameter);
}

void KyCComposite::enterParameterIndex(KyCParam* parameter) noexcept
{
  appendToIndex(m_indexes->parameters, parameter);
}

KyCParam* KyCComposite::removeParameter(KyCErrorListPool&, unsigned int id) noexcept
{
  KyCParam* const parameter = getParameterById(id);
  if (parameter != nullptr) unlinkParameter(parameter);
  return parameter;
}

void KyCComposite::unlinkParameter(KyCParam* parameter) noexcept
{
  unlinkParameterBehind(parameterBefore(parameter), parameter);
}

// The previous parameter is null for the first one.
void KyCComposite::unlinkParameterBehind(KyCParam* previous, KyCParam* parameter) noexcept
{
  if (m_indexes != nullptr) removeFromIndex(m_indexes->parameters, parameter);
  (previous != nullptr ? previous->m_next : m_firstParameter) = parameter->m_next;
  if (parameter == m_lastParameter) m_lastParameter = previous;
  parameter->m_parent = nullptr;
  parameter->m_next = nullptr;
}

KyCParam* KyCComposite::parameterBefore(const KyCParam* parameter) const noexcept
{
  if (parameter == m_firstParameter) return nullptr;
  KyCListIndex* index = parameterIndex();
  unsigned int walked = 0;
  for (KyCParam* previous = m_firstParameter; index == nullptr; previous = previous->m_next)
  {
    if (walked++ == WALKED_LENGTH && (index = makeParameterIndex()) != nullptr) break;
    if (previous->m_next == parameter) return previous;
  }
  return static_cast<KyCParam*>(index->predecessor(parameter, keyOf(parameter)));
}

KyCParam* KyCComposite::searchParameter(unsigned int id) const noexcept
{
  const KyCListIndex* index = parameterIndex();
  if (index != nullptr) return static_cast<KyCParam*>(index->findFirst(id));
  KyCParam* parameter = m_firstParameter;
  for (unsigned int left = WALKED_LENGTH; parameter != nullptr && left != 0; --left, parameter = parameter->m_next)
  {
    if (parameter->m_id == id) return parameter;
  }
  if (parameter == nullptr) return nullptr;
  index = makeParameterIndex();
  if (index != nullptr) return static_cast<KyCParam*>(index->findFirst(id));
  while (parameter != nullptr && parameter->m_id != id)    // no memory for it
    parameter = parameter->m_next;
  return parameter;
}

KyCParam* KyCComposite::getParameterByIndex(unsigned int place) const noexcept
{
  KyCListIndex* index = parameterIndex();
  unsigned int walked = 0;
  for (KyCParam* parameter = m_firstParameter; index == nullptr && parameter != nullptr; parameter = parameter->m_next)
  {
    if (walked == WALKED_LENGTH && (index = makeParameterIndex()) != nullptr) break;
    if (walked++ == place) return parameter;
  }
  return index != nullptr ? static_cast<KyCParam*>(index->at(place)) : nullptr;
}

// The id has changed already.
void KyCComposite::parameterIdChanged(KyCParam* parameter, unsigned int oldId) noexcept
{
  if (mayHave(parameter->m_id)) m_filterAndFlags |= MAY_REPEAT_IDS;
  enterFilter(parameter->m_id);
  KyCListIndex* const index = parameterIndex();
  if (index != nullptr) index->changeKey(parameter, oldId, parameter->m_id);
}

// ---- Indexes ----

// Null while there is none. So is the result of the functions that make one, when there is no memory for it.
KyCListIndex* KyCComposite::childIndex() const noexcept { return m_indexes != nullptr ? m_indexes->children : nullptr; }

KyCListIndex* KyCComposite::parameterIndex() const noexcept
{
  return m_indexes != nullptr ? m_indexes->parameters : nullptr;
}

KyCListIndex* KyCComposite::makeChildIndex() const noexcept
{
  if (!haveIndexes()) return nullptr;
  makeIndex(m_indexes->children, m_firstChild, [](const KyCComposite* child) { return child->m_next; });
  return m_indexes->children;
}

KyCListIndex* KyCComposite::makeParameterIndex() const noexcept
{
  if (!haveIndexes()) return nullptr;
  makeIndex(m_indexes->parameters, m_firstParameter, [](const KyCParam* parameter) { return parameter->m_next; });
  return m_indexes->parameters;
}

// Makes the place for them.
bool KyCComposite::haveIndexes() const noexcept
{
  if (m_indexes == nullptr) m_indexes = new (std::nothrow) KyCNodeIndexes;
  return m_indexes != nullptr;
}
