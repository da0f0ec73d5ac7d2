// KyCInventoryAddress.h: names an item or a parameter by the path that leads to it.
//
//   #include "inventory/KyCInventoryItem.h"
//   #include "inventory/KyNInventoryIDs.h"
//   const KyCInventoryAddress serial = KyNInventoryIDs::BOARD[2] / KyNInventoryIDs::SERIAL_NUMBER;
//   const KyCString text = root.getValue<KyCString>(pool, serial);    // serial number of the second board
#pragma once

#include <cstdlib>

#include "composite/KyCString.h"
#include "inventory/KyInventoryTreeApi.h"

// A path of elements from some starting item down to its target; each element says which kind of node is meant (its
// ID) and which instance of that kind (its index, counted from 1 by convention). The empty address names the
// starting item itself.
//
// A plain value: copied freely, owned by whoever holds it. An address that never had more than one element lives
// without the heap; a longer one owns one block of the C allocator, of exactly the size it needs.
// Two threads may use the const operations of one address at the same time; a change needs the caller's exclusion.
// Errors:     none of the operations reports an error. Asking too much gives 0 or an empty address.
//             With no memory left, whatever needs a block throws std::bad_alloc: an address that silently lost elements
//             would name another node. The address keeps what it had; one that is assigned to is empty then. Only
//             readFromString gives the empty address instead. What is marked noexcept never needs a block.
class KY_INVENTORY_API KyCInventoryAddress
{
public:
  struct TElement
  {
    unsigned int id;       // position of the name in KyNInventoryIDs::Map; also called the category
    unsigned int index;    // instance among siblings of the same ID
  };

  // --- Construction --------------------------------------------------------------------------------------------------

  // The empty address.
  KyCInventoryAddress() noexcept : m_length(0), m_inline{0, 0}, m_elements(&m_inline) {}

  // One element. Not explicit: a number stands for its ID wherever an address is expected.
  KyCInventoryAddress(unsigned int id) noexcept : KyCInventoryAddress(id, 1) {}
  KyCInventoryAddress(unsigned int id, unsigned int index) noexcept
      : m_length(1), m_inline{id, index}, m_elements(&m_inline)
  {
  }

  // Cost:       one allocation for a source of two elements or more, none otherwise.
  KyCInventoryAddress(const KyCInventoryAddress& other) : KyCInventoryAddress() { append(other); }

  // Takes the elements over; the source is empty afterwards.
  KyCInventoryAddress(KyCInventoryAddress&& other) noexcept : KyCInventoryAddress() { takeOver(other); }

  ~KyCInventoryAddress()
  {
    if (ownsHeapArray()) std::free(m_elements);
  }

  // Assigning an address to itself changes nothing.
  KyCInventoryAddress& operator=(const KyCInventoryAddress& other)
  {
    if (this != &other)
    {
      clear();
      append(other);
    }
    return *this;
  }
  KyCInventoryAddress& operator=(KyCInventoryAddress&& other) noexcept
  {
    if (this != &other)
    {
      clear();
      takeOver(other);
    }
    return *this;
  }

  // --- Queries -------------------------------------------------------------------------------------------------------

  // Result:     the number of elements.
  unsigned int getLength() const noexcept { return m_length; }
  bool isEmpty() const noexcept { return m_length == 0; }
  bool isSingleElement() const noexcept { return m_length == 1; }

  // Result:     ID or index of the last element; 0 for an empty address.
  unsigned int getCategory() const noexcept { return m_length == 0 ? 0 : m_elements[m_length - 1].id; }
  unsigned int getIndex() const noexcept { return m_length == 0 ? 0 : m_elements[m_length - 1].index; }

  // Result:     the elements themselves, for walks without temporaries; the first getLength() of them are valid. Never
  //             null.
  // Ownership:  the address; the pointer holds until the address is changed or destroyed.
  const TElement* getElements() const noexcept { return m_elements; }

  // Result:     the first or last element as an address of its own; an empty address when this one is empty.
  KyCInventoryAddress getFirstElement() const noexcept
  {
    return m_length == 0 ? KyCInventoryAddress() : KyCInventoryAddress(m_elements[0].id, m_elements[0].index);
  }
  KyCInventoryAddress getLastElement() const noexcept
  {
    return m_length == 0 ? KyCInventoryAddress() : KyCInventoryAddress(getCategory(), getIndex());
  }

  // Result:     all elements but the first, or all but the last; an empty address when there are fewer than two.
  // Cost:       one allocation when two elements or more remain, none otherwise.
  KyCInventoryAddress getSubAddress() const;
  KyCInventoryAddress getHeadAddress() const;

  // Equal in length, and in ID and index at every position. Two empty addresses are equal.
  bool operator==(const KyCInventoryAddress& other) const noexcept
  {
    return m_length == other.m_length && sameElements(m_elements, other.m_elements, m_length);
  }
  bool operator!=(const KyCInventoryAddress& other) const noexcept { return !(*this == other); }

  // Result:     true when the argument is shorter than this address and equals its leading elements. So an empty
  //             argument is a prefix of every address that is not empty, and no address is a prefix of itself.
  bool isPrefix(const KyCInventoryAddress& prefix) const noexcept
  {
    return prefix.m_length < m_length && sameElements(m_elements, prefix.m_elements, prefix.m_length);
  }

  // Result:     a copy whose last element carries the given index: BOARD[2] names the second board. A copy of the empty
  //             address when this one is empty.
  KyCInventoryAddress operator[](unsigned int index) const
  {
    KyCInventoryAddress result(*this);
    if (m_length != 0) result.m_elements[m_length - 1].index = index;
    return result;
  }

  // Result:     this address followed by all elements of the tail.
  // Cost:       one allocation when the result has two elements or more, none otherwise.
  KyCInventoryAddress operator/(const KyCInventoryAddress& tail) const;

  // --- Changes -------------------------------------------------------------------------------------------------------

  // Makes the address empty and gives its heap array back.
  void clear() noexcept
  {
    if (ownsHeapArray()) std::free(m_elements);
    m_elements = &m_inline;
    m_length = 0;
  }

  // Makes room for the given number of elements; the length and the elements stay. An array on the heap is reallocated
  // to exactly this size, but never to less than the elements in use.
  void resize(unsigned int count);

  // Adds all elements of the tail at the end. An empty tail changes nothing; an address appended to itself is doubled.
  // Cost:       an address that is or gets longer than one element is reallocated to the exact size, every time.
  void append(const KyCInventoryAddress& tail)
  {
    if (m_length == 0 && tail.m_length == 1)
    {
      m_elements[0] = tail.m_elements[0];
      m_length = 1;
      return;
    }
    if (tail.m_length != 0) appendSlow(tail);
  }

  // Removes the leading elements that this address shares with the argument, up to the first difference.
  // Kept on purpose: the argument need not be a whole prefix. A/B/C without A/X is B/C, without A/B/C/D it is empty.
  void removePrefix(const KyCInventoryAddress& prefix) noexcept;

  // Shortens the address by that many elements, at most to length 0. A heap array is kept.
  // Result:     the new length.
  int removeSuffixElements(unsigned int count) noexcept;

  // --- Text forms ----------------------------------------------------------------------------------------------------
  // The elements in order, joined by "/". An element is the name of its ID in KyNInventoryIDs::Map, or the ID in
  // decimal when it has none, then "[index]" unless the index is 1: DEVICE/BOARD[2]. The empty address is the empty text.

  // Result:     the registered name of getCategory(); "" when there is none.
  //             Kept on purpose: the category 0 of an empty address is looked up like any other.
  // Ownership:  whoever registered the name; a predefined name holds as long as the library is loaded.
  const char* getCategoryNameCStr() const noexcept;

  // Result:     the text form.
  KyCString toString() const;

  // Writes the text form and a line end to standard output.
  void print() const;

  // Replaces this address by the one that the text names.
  //
  //   text        one or more of "token", "token[index]", joined by "/". A token that begins with a digit is the ID as
  //               the C language writes numbers (31, 0x1F, 037), whether or not it is registered; any other token is a
  //               registered name, in exactly this spelling. The index is written in the same way; an empty one is 0.
  //               Numbers beyond 32 bits read as 0xFFFFFFFF.
  //
  // Result:     none; the address is empty when the text is empty, names an unknown ID, has an empty token (a leading
  //             or doubled "/"), contains the number 0 as an ID, or memory runs out.
  //             Kept on purpose: a "/" at the end and a missing "]" at the end are accepted, "A[2]B" reads as "A[2]/B",
  //             anything behind the digits of a number is skipped, and the name with the number 0 is not found.
  // Cost:       linear in the text, plus a search through the registered names for each token that is a name.
  void readFromString(const KyCString& text);

private:
  friend struct KyInventoryAccess;    // builds the address of an item from its end, in one allocation

  bool ownsHeapArray() const noexcept { return m_elements != &m_inline; }

  static bool sameElements(const TElement* a, const TElement* b, unsigned int count) noexcept
  {
    for (unsigned int n = 0; n < count; ++n)
    {
      if (a[n].id != b[n].id || a[n].index != b[n].index) return false;
    }
    return true;
  }

  void takeOver(KyCInventoryAddress& other) noexcept
  {
    m_length = other.m_length;
    m_inline = other.m_inline;
    m_elements = other.ownsHeapArray() ? other.m_elements : &m_inline;
    other.m_length = 0;
    other.m_elements = &other.m_inline;
  }

  bool reserve(unsigned int count) noexcept;
  void appendSlow(const KyCInventoryAddress& tail);
  static TElement* newElements(unsigned int count);
  static KyCInventoryAddress joined(const TElement* head, unsigned int headLength, const TElement* tail,
                                    unsigned int tailLength);

  unsigned int m_length;
  TElement m_inline;       // the element while there is no heap array
  TElement* m_elements;    // &m_inline, or a heap array of at least max(m_length, 1) elements
};
