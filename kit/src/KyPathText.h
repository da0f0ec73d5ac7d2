// KyPathText.h: the address of the place that a walk has come to, kept as text.
#pragma once

#include <string>
#include <vector>

#include "inventory/KyCInventoryAddress.h"

namespace KyNInventoryKit
{
// Costs nothing per level when the walk goes on by one item.
class KyPathText
{
public:
  void enter(unsigned int id, unsigned int index)
  {
    m_starts.push_back(m_text.size());
    if (m_starts.size() == 1) return;    // the root is no part of addresses
    if (!m_text.empty()) m_text += '/';
    m_text += KyCInventoryAddress(id, index).toString().c_str();
  }
  void leave()
  {
    m_text.resize(m_starts.back());
    m_starts.pop_back();
  }
  std::size_t level() const { return m_starts.size(); }

  // The address of the item; "." for the root.
  std::string item(std::size_t longest = std::string::npos) const { return m_text.empty() ? "." : tail(longest); }

  // The address of one of its parameters.
  std::string parameter(unsigned int id, std::size_t longest = std::string::npos) const
  {
    const std::string name = KyCInventoryAddress(id).toString().c_str();
    return m_text.empty() ? name : tail(longest) + "/" + name;
  }

private:
  // Addresses in a tree of thousands of levels are longer than anybody reads; what is left out is in front.
  std::string tail(std::size_t longest) const
  {
    if (m_text.size() <= longest) return m_text;
    const std::size_t slash = m_text.find('/', m_text.size() - longest);
    return slash == m_text.npos ? m_text : "..." + m_text.substr(slash);
  }

  std::string m_text;
  std::vector<std::size_t> m_starts;    // what the text was before each item
};
}    // namespace KyNInventoryKit
