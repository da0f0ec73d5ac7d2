#include "LiveValues.h"

#include <charconv>
#include <utility>

#include "inventory/KyCInventoryAddress.h"

namespace
{
constexpr unsigned int codeCannotUpdate = 0x1300807;

template <typename T>
std::string numberText(const KyCInventoryParameter& parameter)
{
  KyCErrorListPool pool;
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, parameter.getValue<T>(pool));
  return std::string(text, result.ptr);
}

std::string textOf(const KyCInventoryParameter& parameter)
{
  KyCErrorListPool pool;
  switch (parameter.getType())
  {
    case 0x111:
      return numberText<signed char>(parameter);
    case 0x112:
      return numberText<short>(parameter);
    case 0x114:
      return numberText<int>(parameter);
    case 0x118:
      return numberText<long long>(parameter);
    case 0x121:
      return numberText<unsigned char>(parameter);
    case 0x122:
      return numberText<unsigned short>(parameter);
    case 0x124:
      return numberText<unsigned int>(parameter);
    case 0x128:
      return numberText<unsigned long long>(parameter);
    case 0x214:
      return numberText<float>(parameter);
    case 0x218:
      return numberText<double>(parameter);
    case 0x2000:
      return parameter.getValue<const char*>(pool);
    case 0x4000:
      return parameter.getValue<KyCVersion>(pool).toString().c_str();
    default:
      return {};
  }
}

LiveValues::Value valueOf(const KyCInventoryParameter& parameter)
{
  return {parameter.getAddress().toString().c_str(), textOf(parameter), parameter.getUnit()};
}

// "Cannot update value for parameter %1."
std::string addressIn(const std::string& text)
{
  const std::string start = "parameter ";
  const std::size_t begin = text.find(start);
  if (begin == std::string::npos || text.back() != '.') return text;
  return text.substr(begin + start.size(), text.size() - 1 - begin - start.size());
}
}    // namespace

LiveValues::LiveValues(KyCInventoryItem& root) : m_root(root)
{
  KyCInventoryItem* item = &root;
  while (item != nullptr)
  {
    for (KyCInventoryParameter* parameter = item->getParameterByOrdinalNumber(0); parameter != nullptr;
         parameter = parameter->getNext())
    {
      if (parameter->getUpdateMethod() != nullptr) m_entries.push_back({parameter, valueOf(*parameter)});
    }
    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      continue;
    }
    while (item != &root && item->getNext() == nullptr)
      item = item->getParent();
    item = item == &root ? nullptr : item->getNext();
  }
}

std::vector<LiveValues::Value> LiveValues::values() const
{
  std::vector<Value> values;
  for (const Entry& entry : m_entries)
    values.push_back(entry.known);
  return values;
}

LiveValues::Round LiveValues::update()
{
  Round round;
  round.pool = std::make_unique<KyCErrorListPool>();
  m_root.updateParameters(*round.pool, &m_root);
  for (Entry& entry : m_entries)
  {
    std::string value = textOf(*entry.parameter);
    if (value == entry.known.value) continue;
    std::string oldValue = std::exchange(entry.known.value, std::move(value));
    round.changes.push_back({entry.known.address, std::move(oldValue), entry.known.value, entry.known.unit});
  }
  round.failures = newFailures(*round.pool);
  return round;
}

// The walk's own report comes behind those of the method and names the parameter: it closes one failure.
std::vector<LiveValues::Failure> LiveValues::newFailures(const KyCErrorListPool& pool)
{
  std::vector<Failure> failures;
  std::set<std::string> failing;
  std::vector<KyErrorEntry> reports;
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
  {
    reports.push_back(pool.getEntry(n));
    if (reports.back().code != codeCannotUpdate) continue;
    const std::string address = addressIn(reports.back().text);
    failing.insert(address);
    if (m_failing.count(address) == 0) failures.push_back({address, reports});
    reports.clear();
  }
  m_failing = std::move(failing);
  return failures;
}
