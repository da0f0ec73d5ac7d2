// KyCInventoryItem.h: the node of an inventory tree: a unit, board, channel, firmware or any other inventory object,
// with its sub-items and its parameters.
//
//   #include "inventory/KyNInventoryIDs.h"
//   KyCErrorListPool pool;
//   KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
//   root.createParameter<int>(pool, KyNInventoryIDs::BOARD[2] / KyNInventoryIDs::SIZE, 4096, "kB", false, 0);
//   const int size = root.getValue<int>(pool, KyNInventoryIDs::BOARD[2] / KyNInventoryIDs::SIZE);
#pragma once

#include <type_traits>

#include "composite/KyCComposite.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyInventoryTreeApi.h"

class KyCInventoryAuxInfo;
class KyIUpdater;

// One node of the tree, named among its siblings by its ID and index, and its parameters, named by their ID alone.
//
// An item can have a friend: an item of shared data elsewhere in the tree, which answers where the item itself has
// nothing. At each level of a look-up the item's own sub-items come first; when none of them has the ID and index asked
// for, the friend is asked for the whole rest of the address. The friend is never walked, copied or owned.
//
// Ownership: the root is its creator's; an item owns its sub-items, parameters and auxiliary info. Deleting an item takes
//            it out of its tree and deletes all of these. Whoever has it for a friend must not look anything up after that.
// Threads:   a tree is used by one thread at a time, look-ups included: the first one among many siblings makes an index.
// Cost:      a look-up is near-constant per level, however many siblings, and allocates nothing but such an index. No walk
//            needs a deeper stack for a deeper tree.
class KY_INVENTORY_API KyCInventoryItem : private KyCComposite
{
public:
  class MyStream;    // KyCInventoryItemStream.h

  // A free item without sub-items, parameters and friend.
  //
  //   address      one element: the item's ID and index. Of a longer address the last element counts (and the error
  //                below is reported), of an empty one ID and index are 0
  //   description  null is taken as empty. Copied, unless it equals the ID's registered name, which is kept by pointer
  //
  // Errors:  0x1300800  the address has not exactly one element (function "KyCInventoryItem"); the item is built all
  //                     the same
  //          base codes when memory for the description runs out; it is then empty
  KyCInventoryItem(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description);

  // Deletes the subtree, the parameters and the auxiliary info.
  ~KyCInventoryItem() override;

  // Where the item stands and what is next to it. Nothing is reported; what does not exist is null.
  KyCInventoryAddress getID() const;     // one element: ID and index
  using KyCComposite::getDescription;    // never null
  KyCInventoryItem* getParent() const;
  KyCInventoryItem* getNext() const;    // the next sibling
  KyCInventoryItem* getFirstSubItem() const;
  KyCInventoryParameter* getParameterByOrdinalNumber(unsigned int n) const;    // in list order, from 0

  // The path from the root to this item, without the root's own ID: empty for the root, (BOARD, 2) for its second
  // board.
  //
  // Cost:    linear in the depth; one allocation below a depth of 1, none otherwise. With no memory left,
  //          std::bad_alloc is thrown.
  KyCInventoryAddress getAddress() const;

  // Finds a node below this item.
  //
  //   address  relative to this item. getItem: ID and index count in every element; empty names this item itself.
  //            getParameter: the last element is the parameter, of which only the ID counts; the ones before it are the
  //            path to its item
  //
  // Result:  the first in list order that fits; null when there is none, and for getParameter of an empty address.
  //          The first sub-item of an ID and index settles the level: nothing is sought below a later one like it.
  //          A parameter that its item does not have is looked for in that item's friend, and there in the friend alone.
  //          A ring of friends that never has what is asked for gives null.
  // Errors:  none reported
  KyCInventoryItem* getItem(const KyCInventoryAddress& address);
  KyCInventoryParameter* getParameter(const KyCInventoryAddress& address) const;

  // Hangs an item below an existing one.
  //
  //   where    the existing item, relative to this one; empty: this one. Friends are not asked
  //   item     a free item; null: only tells whether `where` exists
  //
  // Result:  the item that `where` names. Null when it does not exist, when it or its friend already has an item of the
  //          new one's ID and index or a parameter of its ID, and when the new one is not free or is `where` itself or
  //          one of the items above it: nothing changes then.
  // Errors:  none reported
  // Ownership: on success the tree's, at the end of the list of sub-items; otherwise the caller's still.
  KyCInventoryItem* addItem(const KyCInventoryAddress& where, KyCInventoryItem* item);

  // Takes this item, with its subtree, out of its tree; it is the caller's from then on.
  //
  // Result:  0, for a root as well
  // Errors:  none
  int detach();

  // Takes the first parameter of this ID out of the item.
  //
  // Result:  the parameter, now the caller's; null when there is none.
  // Errors:  none; that there is none is not reported
  KyCInventoryParameter* detachParameter(unsigned int id);

  // Finds an item, with creating what is missing of the path to it.
  //
  //   path     relative to this item; the IDs of missing items must be predefined. New items are described by the names
  //            of their IDs
  //
  // Result:  the last item of the path, this item for an empty one; null on failure.
  // Errors:  0x130081A  a parameter, of the item or of its friend, has the ID of a missing item
  //          0x130080A  the ID of a missing item is not predefined
  //          base codes when memory runs out
  // On failure: items created on the way stay in the tree.
  // Kept on purpose: a friend's sub-items are not walked into, but they do keep a new item from being added. Where an
  //          item without a sub-item of the next ID and index has a friend with one, the new item is made, is not added,
  //          and the rest of the path is made below it. The result then belongs to a tree of its own, whose root (the
  //          end of the getParent chain) is the caller's. When the rest of the path fails, that tree is deleted.
  // Cost:    one look-up per level, two for a new one; one block per new item.
  KyCInventoryItem* addPath(KyCErrorListPool& pool, const KyCInventoryAddress& path);

  // Hangs a parameter below an existing item.
  //
  //   path       the item, relative to this one; empty: this one. Friends are not asked
  //   parameter  a free parameter; null: only tells whether the path exists
  //
  // Result:  the item that the path names; null on failure and, without a report, when there is no such item.
  // Errors:  0x130081A  the item or its friend has a sub-item of the parameter's ID with the index 1
  //          0x1300812  the parameter cannot be added, for instance because there is one of its ID or because it has an
  //                     owner (behind the base library's own report)
  // Ownership: on success the tree's; otherwise the caller's still.
  KyCInventoryItem* addParameter(KyCErrorListPool& pool, const KyCInventoryAddress& path,
                                 KyCInventoryParameter* parameter);

  // Gives the item a new ID and index, and the ID's name as its description.
  //
  //   id       one element, predefined
  //
  // Errors (into the master error list):
  //          0x1300819  not exactly one element; nothing changes
  //          0x130080A  not a predefined ID; nothing changes
  //          0x130081B  the parent or its friend has another item of this ID and index, or a parameter of this ID
  // Kept on purpose: the last one is reported and the item renamed all the same: two siblings may then share an ID, and
  //          the first in list order answers to it. Its text names the new ID first and the item's address second,
  //          although the wording suggests the reverse.
  void setID(const KyCInventoryAddress& id);

  // Creates a parameter below this item, with the missing items on the way to it.
  //
  //   T           one of the twelve value types (is_kyrel_type); another does not compile
  //   address     where, relative to this item; the last element names the parameter (its index is dropped)
  //   value       the initial value
  //   unit        text such as "mV", copied; null is taken as empty. See KyCInventoryBinSerializer.h for what is stored
  //   modifiable  shown and stored; never enforced
  //   relevance   0 .. 2^32-1, stored and never interpreted
  //
  // Result:     the new parameter; null on failure.
  // Errors:     0x1300808  the address is empty
  //             0x1300809  the path cannot be found or created (behind addPath's own report)
  //             0x130080A  the last element is not a predefined ID
  //             0x130080B  the parameter cannot be constructed or added (behind the cause)
  // On failure: items created on the way stay in the tree.
  // Ownership:  the tree owns the parameter; the pointer holds until it is detached or its item is deleted. Where
  //             addPath makes the path as a tree of its own (see there), the parameter is part of that one.
  // Cost:       one look-up per level, however many siblings; one block per new item, one for the parameter (see
  //             KyCInventoryParameter).
  template <typename T, typename = std::enable_if_t<is_kyrel_type<T>::value>>
  KyCInventoryParameter* createParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const T& value,
                                         const char* unit, bool modifiable, unsigned int relevance);

  // Reads or writes the value of a parameter, found as by getParameter. A missing parameter is never created.
  //
  //   T           the parameter's own value type; getValue: or const char* for a string
  //
  // Result:     getValue: the value; 0, "" or a default version on failure.
  //             setValue: the parameter, also when its value could not be set; null when there is none.
  // Errors:     0x1300801  there is no such parameter (getValue<const char*> reports it under that name)
  //             0x1301008  getValue: the value cannot be read as T (behind the base library's own report)
  //             0x1301007  setValue: the value cannot be set (behind the base library's own report); it keeps its value
  template <typename T, typename = std::enable_if_t<is_kyrel_readable_type<T>::value>>
  T getValue(KyCErrorListPool& pool, const KyCInventoryAddress& address) const;
  template <typename T, typename = std::enable_if_t<is_kyrel_type<T>::value>>
  KyCInventoryParameter* setValue(KyCErrorListPool& pool, const KyCInventoryAddress& address, const T& value);

  // Combining trees.

  // Folds a tree into another one, which takes over what it does not have yet.
  //
  //   target           source                  target after the merge, with flag 1
  //   ROOT             ROOT                    ROOT
  //    +- NAME "a"      +- NAME "b"             +- NAME "a"        what is on both sides stays the target's
  //    +- BOARD[1]      +- SIZE 7               +- SIZE 7          moved, without flag 1 dropped with the source
  //        +- CPU[1]    +- BOARD[1]             +- BOARD[1]        on both sides: merged, level by level
  //                     |   +- CPU[2]           |   +- CPU[1]
  //                     +- BOARD[2]             |   +- CPU[2]      moved whole
  //                                             +- BOARD[2]        moved whole; the source is gone, its pointer null
  //
  //   target   the tree to merge into, or a node of it; null: it becomes the whole source, whatever the flags
  //   source   the tree to merge in; null: nothing happens. The same object as the target: only the pointer is cleared
  //   flags    bit 0 (1): the source's parameters are moved in, where the target has none of their ID; clear: they are
  //            dropped. For every level; other bits are ignored. A sub-item that is moved keeps its parameters either way
  //
  // Result:     the source pointer is null in every case. Nothing of the target is overwritten or deleted; what is moved
  //             goes to the end of the target's lists, with auxiliary info, designated values and friend.
  // Errors:     0x1300803  a parameter could not be moved (behind addParameter's own report): it is deleted and the
  //                        level goes on. Or: a level below has reported anything, or a sub-item could not be attached:
  //                        the level is given up
  //             0x130081A  a sub-item of the source has the ID of a parameter of the target (or of its friend): the
  //                        sub-item is given up and the level goes on
  //             base codes when memory runs out for the levels of a very deep tree, which gives up all of them
  // On failure: the target keeps what was merged into it so far; the rest of a source that is given up is deleted.
  // Ownership:  the source is the merge's from the call on; what is moved is the target's.
  // Cost:       one look-up for each node of the source that has a counterpart on the target's side, and for each of the
  //             nodes right below; a subtree that is moved whole costs one look-up, however large.
  // Kept on purpose:
  //   - A report does not end the level it belongs to, but it ends every level above: these see that the count has grown,
  //     and one parameter that cannot be moved deep down costs the source all that was still to be merged on the way up.
  //     The same happens with a sub-item that is given up.
  //   - A sub-item that is given up is in neither tree and is not deleted. Only a pointer to it that the caller has kept
  //     leads there, and it is the caller's to delete.
  //   - Look-ups on the target's side ask its friend as well. A sub-item or parameter that the friend has counts as the
  //     target's: sub-items are then merged into the shared data, and such a parameter is not moved.
  //   - Friends of the source's items are not followed to new places: one that ends with the source leaves a dangling
  //     link in what was moved. Merge first, link shared data afterwards.
  //   - A target that lies inside the source is deleted with the source, as the sub-item that it lies in cannot be
  //     attached below it (0x1300803); the target pointer must not be used after that. Such a target, and the items
  //     above it, must have no friend.
  static void mergeTree(KyCErrorListPool& pool, KyCInventoryItem*& target, KyCInventoryItem*& source,
                        unsigned int flags);

  // Makes a deep copy of this item and all below it.
  //
  //   tree                                         copy, a root of its own
  //   ROOT                                         BOARD[2]
  //    +- BOARD[2] --friend--> SHARED_DATA[1]       +- SIZE 7           no methods, no designated value
  //        +- SIZE 7 (write method, pending 8)      +- CPU[1]
  //        +- CPU[1]                                    +- NAME "x"
  //            +- NAME "x"
  //
  //   copy     takes the new tree. What it was before is not looked at
  //
  // Result:     IDs, indices, descriptions, orders, types, values, units, modifiable flags and relevances are the same.
  //             Auxiliary info (updaters, methods, designated values) and friends are left out. Null when the item itself
  //             cannot be copied.
  // Errors:     0x130080C  an item cannot be copied (behind the base library's own report)
  //             0x130080E  a parameter cannot be copied or added, for instance because its item has two of its ID (behind
  //                        the cause); it is missing from the copy
  //             0x130080F  something below a sub-item has been reported (behind that); once for each level above it
  //             0x1300816  a sub-item's copy cannot be added, because the item has another one of its ID and index or a
  //                        parameter of its ID; its subtree is missing from the copy. Both texts are IDs, not addresses
  // On failure: goes on with the next parameter or sub-item; the copy has gaps.
  // Ownership:  the copy is the caller's. It is from the global allocator and ends with delete, as all trees do.
  // Cost:       one look-up and the blocks of a new one for each item and each parameter.
  void copyTree(KyCErrorListPool& pool, KyCInventoryItem*& copy) const;

  // Links the items that refer to shared data with it: from then on a look-up that finds nothing in an item goes on in
  // its friend. Once, on the root, after a tree has been built or read back.
  //
  //   ROOT
  //    +- SHARED_DATA[2] <--------------+
  //    |   +- SIZE 16                   |
  //    |   +- IOCHANNEL[1] <---------+  |
  //    +- BOARD[7] - - - friend - - -|- +    getParameter(SIZE) of BOARD[7] finds 16 from now on
  //        +- SHARED_DATA_INDEX 2    |
  //        +- IOCHANNEL[1] - friend -+
  //        +- IOCHANNEL[3]                   has no counterpart: not linked, nor anything below it
  //
  //   pool        receives the reports below; the second form keeps them to itself
  //   sharedItem  null: looks for users of shared data below this item. Otherwise this item is linked to it, and the
  //               items below to their counterparts of the same ID and index
  //
  // Errors:     what getValue<unsigned int> reports for a SHARED_DATA_INDEX of another type, whose value is then 0
  // Warnings, sent to the error manager; the walk goes on:
  //             0x1300815  a user names shared data that is not among its siblings: not linked, nor anything below it
  //             0x1300814  an item inside a user has a SHARED_DATA_INDEX too, which is ignored
  //             0x1300813  a shared data item is a user, or lies inside one and has a counterpart: it is not linked, nor
  //                        anything below it
  // Ownership:  nothing is owned by a link. Shared data must live as long as it is linked, or be linked anew.
  // Cost:       two look-ups for each item; what is inside shared data is not walked.
  // Kept on purpose: a link is replaced but never taken away: an item that has lost its counterpart since the last time
  //             keeps its old friend. SHARED_DATA_INDEX is looked up through an old friend, too. The second form links
  //             also when there is no memory for an error list.
  void linkSharedData(KyCErrorListPool& pool, KyCInventoryItem* sharedItem);
  void linkSharedData(KyCInventoryItem* sharedItem);

  // Hangs an updater on an update element. Once per item; there is no way to take it off again.
  //
  //   updater     not null
  //
  // Errors:     0x1300818  the item's ID is not UPDATE_ELEMENT (of whatever index), or it already has auxiliary info
  //             0x1300817  the updater is null
  // On failure: nothing changes and the updater is still the caller's; with no memory left, std::bad_alloc is thrown.
  // Ownership:  the item's on success.
  void setUpdater(KyCErrorListPool& pool, KyIUpdater* updater);
  KyIUpdater* getUpdater() const;    // null when there is none; never reports

  // Pending values to the outside world, and fresh values from it: three walks over this item and all below it.
  //
  //   root.getParameter(address)->setDesignatedValue(pool, 3300);
  //   root.check(pool, &root);    // who has a check method may say no
  //   root.apply(pool, &root);    // writes what is still pending and makes it the parameters' own
  //
  //   context     handed to every method unchanged and not looked at; may be null
  //
  // check calls the check method of each parameter that has one and a pending value. One that returns false ends the
  //             pending value; what it reports does not count.
  // apply       calls the write method of each parameter with a pending value and then adopts the value. The write has
  //             failed exactly when the pool's error count has grown during the call, and then ends the pending value;
  //             what the method returns does not count. A value that cannot be adopted stays pending.
  // updateParameters calls the update method of each parameter that has one. It has failed exactly when the error count
  //             has grown; nothing changes then but the report. Pending values play no part.
  //
  // Order:      sub-items before the item itself, in list order; the parameters of an item by ordinal number. Friends are
  //             not walked. A failure stops nothing: every parameter has its turn.
  // Errors, each behind what the method has reported, and with the parameter's address:
  //             0x1300811  check: the check method said no
  //             0x1300804  apply: the write method has failed
  //             0x1300805  apply: the value cannot be adopted (behind adoptDesignatedValue's reports)
  //             0x1300806  apply: there is no write method; the pending value is ended
  //             0x1300807  updateParameters: the update method has failed
  // Cost:       one step for each item and parameter; allocates nothing but what methods and reports do, and an index of
  //             the parameters of an item that has many.
  // Kept on purpose: the modifiable flag is not looked at. Whether a value may change is for the methods to decide.
  void check(KyCErrorListPool& pool, KyCInventoryItem* context);
  void apply(KyCErrorListPool& pool, KyCInventoryItem* context);
  void updateParameters(KyCErrorListPool& pool, KyCInventoryItem* context);

  // Ends every pending value of this item and all below it, in the order above. Nothing is reported.
  void deleteDesignatedValues();

  // Text dump; see KyCInventoryItemStream.h for the options.
  //
  //   options     the option mask; 0 gives the full mark-up
  //   depth       indentation level of the item's own lines; below 1: none
  //
  // Result:     writeIndentToStream, writeToStream: false as soon as a write fails. toString: the text; empty on failure.
  // Errors:     0x1300810  toString: a write failed, or there is no memory for the text
  //             what reading the values reports
  // Kept on purpose: printTree hands every piece of text to printf as its format.
  bool writeIndentToStream(int depth, MyStream& stream) const;
  bool writeToStream(KyCErrorListPool& pool, int options, int depth, MyStream& stream) const;
  KyCString toString(KyCErrorListPool& pool, int options, int depth) const;
  void printTree(KyCErrorListPool& pool, int options, int depth) const;

private:
  friend struct KyInventoryAccess;    // the library's own way to the base class and the fields

  KyCInventoryAuxInfo* m_auxInfo = nullptr;    // owned
};
