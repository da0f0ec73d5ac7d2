// KyTreeState.h: a second opinion on what operations do to a tree: maps from addresses to what stands there, changed by
// rules that are written down here once more, to be obviously right and not to be fast. Knows nothing of the library.
//
// Each rule appends the codes that the operation reports.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace KyNTreeState
{
using Element = std::pair<unsigned int, unsigned int>;    // ID and index
using Path = std::vector<Element>;
using Codes = std::vector<unsigned int>;

// Of one of the twelve types: for numbers and versions the bits count, for strings the text.
struct Value
{
  unsigned int type = 0;
  std::uint64_t bits = 0;
  std::string text;
};

enum class Methods
{
  NONE,
  WRITE,
  UPDATE
};

// How a parameter's own methods behave.
enum class Temper
{
  AGREES,
  REJECTS,    // the check says no
  FAILS       // the write reports
};

struct Parameter
{
  Value value;
  std::string unit;
  bool isModifiable = false;
  unsigned int relevance = 0;
  Methods methods = Methods::NONE;
  bool hasCheck = false;
  Temper temper = Temper::AGREES;
  std::optional<Value> pending;
  unsigned int order = 0;    // later siblings have greater numbers
};

using ParameterPath = std::pair<Path, unsigned int>;    // its item's, and its ID

struct Calls
{
  unsigned int checks = 0;
  unsigned int writes = 0;
  unsigned int updates = 0;
  bool operator==(const Calls& other) const
  {
    return checks == other.checks && writes == other.writes && updates == other.updates;
  }
};

// What methods of ours report.
constexpr unsigned int WRITE_FAILED = 0x7000001;
constexpr unsigned int UPDATE_FAILED = 0x7000002;

inline bool startsWith(const Path& path, const Path& front)
{
  return path.size() >= front.size() && std::equal(front.begin(), front.end(), path.begin());
}

inline Path operator/(Path path, const Element& element)
{
  path.push_back(element);
  return path;
}

inline Path operator/(Path path, const Path& tail)
{
  path.insert(path.end(), tail.begin(), tail.end());
  return path;
}

class TreeState
{
public:
  // predefined: the IDs in question that have names.
  TreeState(Element root, const std::set<unsigned int>& predefined) : m_root(root), m_predefined(predefined)
  {
    m_items[Path()] = next();
  }

  Element root() const { return m_root; }
  const std::map<Path, unsigned int>& items() const { return m_items; }
  std::map<ParameterPath, Parameter>& parameters() { return m_parameters; }
  bool hasItem(const Path& path) const { return m_items.count(path) != 0; }
  bool hasParameter(const Path& item, unsigned int id) const { return m_parameters.count({item, id}) != 0; }
  Parameter* parameter(const Path& item, unsigned int id)
  {
    const auto found = m_parameters.find({item, id});
    return found != m_parameters.end() ? &found->second : nullptr;
  }

  // In list order.
  std::vector<Path> subItems(const Path& item) const
  {
    std::vector<std::pair<unsigned int, Path>> found;
    for (auto it = m_items.upper_bound(item); it != m_items.end() && startsWith(it->first, item); ++it)
      if (it->first.size() == item.size() + 1) found.emplace_back(it->second, it->first);
    std::sort(found.begin(), found.end());
    std::vector<Path> paths;
    for (auto& entry : found)
      paths.push_back(std::move(entry.second));
    return paths;
  }
  std::vector<unsigned int> parametersOf(const Path& item) const
  {
    std::vector<std::pair<unsigned int, unsigned int>> found;
    for (auto it = m_parameters.lower_bound({item, 0}); it != m_parameters.end() && it->first.first == item; ++it)
      found.emplace_back(it->second.order, it->first.second);
    std::sort(found.begin(), found.end());
    std::vector<unsigned int> ids;
    for (const auto& entry : found)
      ids.push_back(entry.second);
    return ids;
  }

  // --- Building ---------------------------------------------------------------------------------------------------------

  std::optional<Path> addPath(Codes& codes, Path at, const Path& path)
  {
    for (const Element& element : path)
    {
      if (!hasItem(at / element))
      {
        if (hasParameter(at, element.first)) return fail(codes, {0x130081A});
        if (m_predefined.count(element.first) == 0) return fail(codes, {0x130080A});
        m_items[at / element] = next();
      }
      at = at / element;
    }
    return at;
  }

  void createParameter(Codes& codes, const Path& at, const Path& path, const Parameter& parameter)
  {
    if (path.empty()) return append(codes, {0x1300808});
    const unsigned int id = path.back().first;
    const std::optional<Path> item = addPath(codes, at, Path(path.begin(), path.end() - 1));
    if (!item) return append(codes, {0x1300809});
    if (m_predefined.count(id) == 0) return append(codes, {0x130080A});
    if (!addParameter(codes, *item, id, parameter)) append(codes, {0x130080B});
  }

  bool addParameter(Codes& codes, const Path& item, unsigned int id, Parameter parameter)
  {
    if (hasItem(item / Element(id, 1))) return append(codes, {0x130081A}), false;
    if (hasParameter(item, id)) return append(codes, {0x1101002, 0x1300812}), false;
    parameter.order = next();
    m_parameters[{item, id}] = std::move(parameter);
    return true;
  }

  // To an ID that no sibling has.
  void rename(const Path& item, const Element& id)
  {
    if (item.empty())
    {
      m_root = id;
      return;
    }
    const unsigned int order = m_items[item];
    TreeState part = take(item);
    Path renamed = item;
    renamed.back() = id;
    put(renamed, std::move(part));
    m_items[renamed] = order;
  }

  // --- Whole subtrees ---------------------------------------------------------------------------------------------------

  TreeState partOf(const Path& item) const
  {
    TreeState part(item.empty() ? m_root : item.back(), m_predefined);
    for (const auto& entry : m_items)
      if (startsWith(entry.first, item)) part.m_items[tailOf(entry.first, item)] = entry.second;
    for (const auto& entry : m_parameters)
      if (startsWith(entry.first.first, item))
        part.m_parameters[{tailOf(entry.first.first, item), entry.first.second}] = entry.second;
    return part;
  }

  // A parameter and a sub-item of one ID can stand side by side, if the item's index is not 1 and it was there first; but a
  // copy gets its parameters first, and then refuses that item.
  TreeState copyOf(Codes& codes, const Path& item) const
  {
    TreeState copy = partOf(item);
    copy.forgetMethods();
    copy.leaveGaps(codes, Path());
    return copy;
  }

  // What copies and stored trees leave out.
  void forgetMethods()
  {
    for (auto& entry : m_parameters)
    {
      entry.second.methods = Methods::NONE;
      entry.second.hasCheck = false;
      entry.second.temper = Temper::AGREES;
      entry.second.pending.reset();
    }
  }

  TreeState take(const Path& item)
  {
    TreeState part = partOf(item);
    for (auto it = m_items.begin(); it != m_items.end();)
      it = startsWith(it->first, item) ? m_items.erase(it) : std::next(it);
    for (auto it = m_parameters.begin(); it != m_parameters.end();)
      it = startsWith(it->first.first, item) ? m_parameters.erase(it) : std::next(it);
    return part;
  }

  // Behind the item's other sub-items.
  bool attach(const Path& item, TreeState part)
  {
    if (!hasItem(item) || hasItem(item / part.m_root) || hasParameter(item, part.m_root.first)) return false;
    const Path top = item / part.m_root;
    put(top, std::move(part));
    m_items[top] = next();
    return true;
  }

  // givenUp: the source's sub-items that are lost.
  void merge(Codes& codes, TreeState& source, bool takesParameters, std::vector<Path>& givenUp)
  {
    mergeAt(codes, Path(), source, Path(), takesParameters, givenUp);
  }

  // --- Pending values ---------------------------------------------------------------------------------------------------

  static void setDesignated(Codes& codes, Parameter& parameter, const Value& value)
  {
    const bool isOfType = value.type == parameter.value.type;
    if (parameter.methods != Methods::WRITE) return append(codes, {0x130100A});
    if (parameter.pending && !isOfType) return append(codes, {0x1100801, 0x1301007});
    if (!isOfType) return append(codes, {0x1301003});
    parameter.pending = value;
  }

  void check(Codes& codes, Calls& calls, const Path& top)
  {
    for (Parameter* const parameter : below(top))
    {
      if (!parameter->pending || !parameter->hasCheck) continue;
      ++calls.checks;
      if (parameter->temper != Temper::REJECTS) continue;
      append(codes, {0x1300811});
      parameter->pending.reset();
    }
  }

  void apply(Codes& codes, Calls& calls, const Path& top)
  {
    for (Parameter* const parameter : below(top))
    {
      if (!parameter->pending) continue;
      ++calls.writes;
      if (parameter->temper == Temper::FAILS)
        append(codes, {WRITE_FAILED, 0x1300804});
      else
        parameter->value = *parameter->pending;
      parameter->pending.reset();
    }
  }

  void update(Codes& codes, Calls& calls, const Path& top)
  {
    for (const Parameter* const parameter : below(top))
    {
      if (parameter->methods != Methods::UPDATE) continue;
      ++calls.updates;
      if (parameter->relevance % 2 != 0) append(codes, {UPDATE_FAILED, 0x1300807});
    }
  }

  void forgetPending(const Path& top)
  {
    for (Parameter* const parameter : below(top))
      parameter->pending.reset();
  }

  // --- Shared data ------------------------------------------------------------------------------------------------------

  // sharedData, index: the IDs in question; unsignedInt: the type that an index has to have.
  void link(Codes& codes, Codes& warnings, unsigned int sharedData, unsigned int index, unsigned int unsignedInt)
  {
    linkAt(codes, warnings, {sharedData, index, unsignedInt}, Path(), std::nullopt);
  }

  // Through friends.
  std::optional<Path> find(const Path& at, const Path& path) const
  {
    if (path.empty()) return at;
    if (hasItem(at / path.front())) return find(at / path.front(), Path(path.begin() + 1, path.end()));
    const auto other = m_friends.find(at);
    return other != m_friends.end() ? find(other->second, path) : std::nullopt;
  }

  std::optional<Path> findParameter(const Path& at, unsigned int id) const    // gives its item's path
  {
    if (hasParameter(at, id)) return at;
    const auto other = m_friends.find(at);
    return other != m_friends.end() && hasParameter(other->second, id) ? other->second : std::optional<Path>();
  }

private:
  struct SharedIDs
  {
    unsigned int data;
    unsigned int index;
    unsigned int indexType;
  };

  static unsigned int next()
  {
    static unsigned int count = 0;
    return ++count;
  }
  static void append(Codes& codes, const Codes& more) { codes.insert(codes.end(), more.begin(), more.end()); }
  static std::optional<Path> fail(Codes& codes, const Codes& more)
  {
    append(codes, more);
    return std::nullopt;
  }
  static Path tailOf(const Path& path, const Path& front)
  {
    return Path(path.begin() + static_cast<std::ptrdiff_t>(front.size()), path.end());
  }

  void put(const Path& top, TreeState part)
  {
    for (const auto& entry : part.m_items)
      m_items[top / entry.first] = entry.second;
    for (auto& entry : part.m_parameters)
      m_parameters[{top / entry.first.first, entry.first.second}] = std::move(entry.second);
  }

  std::vector<Parameter*> below(const Path& top)
  {
    std::vector<Parameter*> found;
    for (auto& entry : m_parameters)
      if (startsWith(entry.first.first, top)) found.push_back(&entry.second);
    return found;
  }

  void leaveGaps(Codes& codes, const Path& at)
  {
    for (const Path& item : subItems(at))
    {
      const std::size_t before = codes.size();
      leaveGaps(codes, item);
      if (codes.size() != before) append(codes, {0x130080F});
      if (!hasParameter(at, item.back().first)) continue;
      append(codes, {0x1300816});
      take(item);
    }
  }

  // False: something below was reported, and the whole merge ends.
  bool mergeAt(Codes& codes, const Path& at, TreeState& source, const Path& from, bool takesParameters,
               std::vector<Path>& givenUp)
  {
    const std::size_t before = codes.size();
    for (const unsigned int id : takesParameters ? source.parametersOf(from) : std::vector<unsigned int>())
      if (!hasParameter(at, id) && !addParameter(codes, at, id, source.m_parameters[{from, id}]))
        append(codes, {0x1300803});
    for (const Path& item : source.subItems(from))
    {
      const Element id = item.back();
      if (hasItem(at / id))
      {
        if (mergeAt(codes, at / id, source, item, takesParameters, givenUp)) continue;
        append(codes, {0x1300803});
        return false;
      }
      if (hasParameter(at, id.first))
      {
        append(codes, {0x130081A});
        givenUp.push_back(item);
        continue;
      }
      attach(at, source.partOf(item));
    }
    return codes.size() == before;
  }

  void linkAt(Codes& codes, Codes& warnings, const SharedIDs& ids, const Path& at, const std::optional<Path>& shared)
  {
    if ((at.empty() ? m_root.first : at.back().first) == ids.data)
    {
      if (shared) append(warnings, {0x1300813});
      return;
    }
    if (shared) m_friends[at] = *shared;
    for (const Path& item : subItems(at))
    {
      const std::optional<Path> user = findParameter(item, ids.index);
      std::optional<Path> other;
      if (shared)
      {
        if (user) append(warnings, {0x1300814});
        other = find(*shared, {item.back()});
        if (!other) continue;
      }
      else if (user)
      {
        const Value& value = m_parameters[{*user, ids.index}].value;
        if (value.type != ids.indexType) append(codes, {0x1100800, 0x1301008});
        const auto index = value.type == ids.indexType ? static_cast<unsigned int>(value.bits) : 0;
        other = find(at, {Element(ids.data, index)});
        if (!other)
        {
          append(warnings, {0x1300815});
          continue;
        }
      }
      linkAt(codes, warnings, ids, item, other);
    }
  }

  Element m_root;
  std::set<unsigned int> m_predefined;
  std::map<Path, unsigned int> m_items;    // their orders; the root is the empty path
  std::map<ParameterPath, Parameter> m_parameters;
  std::map<Path, Path> m_friends;
};
}    // namespace KyNTreeState
