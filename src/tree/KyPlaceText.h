// KyPlaceText.h: how reports name a place in a tree.
#pragma once

#include <cstddef>

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"

// The address of something as text, for one report: the same text as KyCInventoryAddress::toString, made so that a report
// about exhausted memory can be made: nothing throws, and without memory for a long address its end stands behind "...".
class KyPlaceText
{
public:
  explicit KyPlaceText(const KyCInventoryAddress& address) noexcept;
  explicit KyPlaceText(const KyCInventoryItem& item) noexcept;              // empty for a root
  explicit KyPlaceText(const KyCInventoryParameter& parameter) noexcept;    // empty for a free one
  ~KyPlaceText();
  KyPlaceText(const KyPlaceText&) = delete;
  KyPlaceText& operator=(const KyPlaceText&) = delete;

  const char* c_str() const noexcept { return m_text; }
  bool isEmpty() const noexcept { return *m_text == '\0'; }

private:
  template <typename ForEachBackwards>
  void compose(ForEachBackwards forEachBackwards) noexcept;

  static constexpr std::size_t INLINE_SIZE = 256;
  char m_inline[INLINE_SIZE];
  char* m_block = nullptr;    // of a longer text
  const char* m_text = m_inline;
};

// The item's address; "root item" where that is empty. For the reports of building and merging.
class KyItemPlace : public KyPlaceText
{
public:
  using KyPlaceText::KyPlaceText;
  const char* c_str() const noexcept { return isEmpty() ? "root item" : KyPlaceText::c_str(); }
};

// The parameter's address; its ID where it hangs nowhere. For the reports of reading and writing values.
class KyParameterPlace
{
public:
  explicit KyParameterPlace(const KyCInventoryParameter& parameter) noexcept
      : m_address(parameter), m_id(parameter.getID())
  {
  }
  const char* c_str() const noexcept { return m_address.isEmpty() ? m_id.c_str() : m_address.c_str(); }

private:
  KyPlaceText m_address;
  KyPlaceText m_id;
};
