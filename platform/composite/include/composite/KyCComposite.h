// KyCComposite.h: a tree node with owned children, owned parameters and one friend link.
//
//   KyCComposite* root = new (pool) KyCComposite(pool, 1, 1, "rack");
//   KyCComposite* board = new (pool) KyCComposite(pool, 2, 1, "board");
//   root->attach(board);                                                          // root owns board now
//   board->addParameter(pool, new (pool) KyCParam(pool, 7, "slot", 0, 3, nullptr));
//   delete root;                                                                  // and all below it
#pragma once

#include <cstdint>

#include "composite/KyCParam.h"
#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"
#include "errorhandling/KyNPoolAllocator.h"

class KyCListIndex;
struct KyCNodeIndexes;

// Belongs to whoever made it until another node takes it (attach); that one then deletes it with itself. Owns its children
// and its parameters, both in the order in which they came. Nodes and parameters that are deleted are made with the global
// or the pool's operator new.
//
// Lists of more than 16 children or parameters get an index on the first look-up that walks beyond those 16, so that
// look-ups, additions and removals cost near-constant time however long the list. Without memory for it they walk the
// list; nothing is reported and nothing else changes.
//
// Programs may derive nodes of their own from it.
//
// Threads: a tree is used by one thread at a time. The look-ups are no exception, const as they are: they may make the
// index.
class KY_COMPOSITE_API KyCComposite
{
public:
  // A node without parent, children and parameters.
  //
  //   classId, unitId  any numbers
  //   description      copied; null reads back as ""
  //
  // Errors: "Out of memory." of the pool allocator; the description is then "".
  KyCComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* description) noexcept;
  KyCComposite(const KyCComposite&) = delete;
  KyCComposite& operator=(const KyCComposite&) = delete;

  // Virtual operations, in slot order. The base does nothing in any of them but the destructor.
  //
  // Called: but for the destructor, by nothing in this library or in those that stand on it. They are hooks for programs
  //         with nodes of their own, which give them a meaning and call them, on the thread that has the tree.

  // Unlinks the node from its parent, if it has one, and deletes its children with all below them, and its parameters:
  // each exactly once. The destructors of derived nodes run in list order, each before those of the nodes below it: it
  // finds its node without a parent any more, but with all children and parameters. The stack does not grow with the
  // depth of the tree. Friend links to the deleted nodes are not looked for.
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
  // Never null; holds until the description is set or the node deleted.
  const char* getDescription() const noexcept { return m_description; }

  // Copies the text, which may be part of the present description; null gives "".
  // Errors: "Out of memory." of the pool allocator; the description is then as it was.
  void setDescription(KyCErrorListPool& pool, const char* description) noexcept;

  KyCComposite* getParent() const noexcept { return m_parent; }       // null at the root
  KyCComposite* getChild() const noexcept { return m_firstChild; }    // the first one; null when none
  KyCComposite* getSibling() const noexcept { return m_next; }        // the next one; null at the end

  // Appends a child, which this node owns from then on. Two children may have the same numbers.
  //
  // Result:  0
  //          -1  the child is null
  //          -2  the child is this node or one of its ancestors
  //          -3  the child has a parent already, which goes on owning it
  // Cost:    constant; for a child with children of its own, at most the smaller one of the depth of this node and the
  //          number of nodes below the child.
  int attach(KyCComposite* child) noexcept;

  // Unlinks a child with all below it; the caller owns it from then on.
  // Result: 0; -1 when it is null or no child of this node.
  int detachChild(const KyCComposite* child) noexcept;

  // One link to any other node. Not owned; whoever sets it sees to it that the other node lives longer.
  void setFriend(KyCComposite* other) noexcept { m_friend = other; }
  KyCComposite* getFriend() const noexcept { return m_friend; }

  // Appends a parameter, which this node owns from then on.
  //
  // Errors:     0x01101000  the parameter is null
  //             0x01101001  the parameter hangs in a composite already, this one or another
  //             0x01101002  this node has a parameter of that id
  // On failure: nothing changes; the parameter stays with whom it was.
  void addParameter(KyCErrorListPool& pool, KyCParam* parameter) noexcept;

  // Unlinks the parameter with that id; the caller owns it from then on.
  // Result: the parameter; null when there is none, which is not reported.
  KyCParam* removeParameter(KyCErrorListPool& pool, unsigned int id) noexcept;

  // Null when there is none.
  KyCParam* getParameterById(unsigned int id) const noexcept { return mayHave(id) ? searchParameter(id) : nullptr; }
  // From 0, in list order; null beyond the end. Cost: near-constant, also while parameters are removed on the way.
  KyCParam* getParameterByIndex(unsigned int place) const noexcept;

protected:
  // As the public constructor, for a description that outlives the node: the pointer is kept, nothing is copied.
  struct TStaticText
  {
    const char* text;
  };
  KyCComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, TStaticText description) noexcept;
  void setStaticDescription(const char* description) noexcept;    // null: ""

  // Gives the node new numbers; its parent finds it under them from then on, at its old place in the list.
  void setIds(unsigned int classId, unsigned int unitId) noexcept;
  // The first child, in list order, with these numbers; null when none. Near-constant cost however many children, and
  // least for the one that was found last.
  KyCComposite* findChild(unsigned int classId, unsigned int unitId) const noexcept
  {
    const bool isFoundAgain = m_found != nullptr && m_found->m_classId == classId && m_found->m_unitId == unitId;
    return isFoundAgain ? m_found : searchChild(classId, unitId);
  }
  // False only when no child has this class id and no parameter has this id. Constant cost.
  bool mayHave(unsigned int id) const noexcept { return (m_filterAndFlags & filterBit(id)) != 0; }
  KyCParam* getFirstParameter() const noexcept { return m_firstParameter; }    // null when none

  // Has findChild give this child at once when it is asked for its numbers next: the first child that has them.
  void expectChild(KyCComposite* child) noexcept { m_found = child; }

  // The short way of addParameter, for a parameter of an id that has never been here.
  // Result: false when addParameter has to decide; nothing has changed then.
  bool addUnseenParameter(KyCParam* parameter) noexcept
  {
    if (parameter->m_parent != nullptr || mayHave(parameter->m_id)) return false;
    linkParameter(parameter);
    return true;
  }

private:
  friend class KyCParam;            // tells of a changed id and of its end
  friend class KyCBinSerializer;    // stores no node with two parameters of one id
  void parameterIdChanged(KyCParam* parameter, unsigned int oldId) noexcept;
  void unlinkParameter(KyCParam* parameter) noexcept;

  // One of the lower 62 bits.
  static std::uint64_t filterBit(unsigned int id) noexcept
  {
    const unsigned int hash = id * 0x9E3779B9u >> 26;
    return std::uint64_t{1} << (hash < 62 ? hash : hash - 2);
  }
  bool mayRepeatIds() const noexcept { return (m_filterAndFlags & MAY_REPEAT_IDS) != 0; }
  void enterFilter(unsigned int id) noexcept { m_filterAndFlags |= filterBit(id); }
  void linkParameter(KyCParam* parameter) noexcept
  {
    parameter->m_parent = this;
    parameter->m_next = nullptr;
    (m_lastParameter != nullptr ? m_lastParameter->m_next : m_firstParameter) = parameter;
    m_lastParameter = parameter;
    enterFilter(parameter->m_id);
    if (m_indexes != nullptr) enterParameterIndex(parameter);
  }
  void enterParameterIndex(KyCParam* parameter) noexcept;
  KyCComposite* searchChild(unsigned int classId, unsigned int unitId) const noexcept;
  KyCComposite* walkToChild(unsigned int classId, unsigned int unitId) const noexcept;
  KyCParam* searchParameter(unsigned int id) const noexcept;
  void replaceDescription(const char* description, bool isOwned) noexcept;
  bool isInside(const KyCComposite* root) const noexcept;
  void unlinkChild(KyCComposite* child) noexcept;
  void deleteChildren() noexcept;
  void takeChildrenOf(KyCComposite& node) noexcept;
  void deleteParameters() noexcept;
  void unlinkParameterBehind(KyCParam* previous, KyCParam* parameter) noexcept;
  KyCParam* parameterBefore(const KyCParam* parameter) const noexcept;
  KyCListIndex* childIndex() const noexcept;
  KyCListIndex* parameterIndex() const noexcept;
  KyCListIndex* makeChildIndex() const noexcept;
  KyCListIndex* makeParameterIndex() const noexcept;
  bool haveIndexes() const noexcept;

  // What look-ups read stands first, within one cache line.
  unsigned int m_classId;
  unsigned int m_unitId;
  // A bit for each class id of a child and each id of a parameter that has ever been here; in the highest two, whether
  // the description is this node's own, and whether a parameter got an id by assignment that another one may have had.
  static constexpr std::uint64_t OWNS_DESCRIPTION = std::uint64_t{1} << 63;
  static constexpr std::uint64_t MAY_REPEAT_IDS = std::uint64_t{1} << 62;
  std::uint64_t m_filterAndFlags = 0;
  KyCParam* m_firstParameter = nullptr;
  mutable KyCComposite* m_found = nullptr;        // what findChild gave last: the first child with its numbers, still
  mutable KyCNodeIndexes* m_indexes = nullptr;    // only while there are many children or parameters, or have been
  KyCComposite* m_firstChild = nullptr;
  KyCComposite* m_friend = nullptr;
  KyCComposite* m_next = nullptr;
  KyCComposite* m_parent = nullptr;
  KyCParam* m_lastParameter = nullptr;
  KyCComposite* m_lastChild = nullptr;
  KyCComposite* m_previous = nullptr;
  const char* m_description;
};
