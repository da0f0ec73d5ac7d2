// Reads the JSON document of a patch. It may come from anywhere: nothing in it is taken for granted.
#include <limits>
#include <utility>
#include <vector>

#include "KyJsonValue.h"
#include "KyOwnPool.h"
#include "KyPatchMessages.h"
#include "KyPatchTree.h"
#include "inventorykit/KyPatch.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
// Levels of nesting: the document, its changes, a change, "old" or "new", and the bytes of a text.
constexpr std::size_t s_deepest = 5;

// Fields of an object; more than any that is known has. Objects are searched from their start.
constexpr std::size_t s_mostFields = 16;

// What a report quotes of the document, in bytes.
constexpr std::size_t s_longestProblem = 300;

std::string inQuotes(const std::string& text) { return "\"" + text + "\""; }

// ---- One change ----

// Puts the changes of a document into the tree of a patch. The first thing that is wrong ends it, and is told.
class ChangeReader
{
public:
  ChangeReader(PatchTree& tree, std::string& problem) : m_tree(tree), m_problem(problem) {}

  bool read(const Json& json, std::size_t line)
  {
    m_line = line;
    std::string kind;
    if (!json.is_object()) return wrong("a change is an object");
    if (!takeString(json, "change", kind)) return false;
    const bool isOfParameter = json.contains("parameter");
    Edit* const edit = findEdit(json, isOfParameter ? "parameter" : "item");
    if (edit == nullptr) return false;
    ++m_tree.changeCount;
    if (kind == "added") return readWhole(json, *edit, 1, isOfParameter);
    if (kind == "removed") return readWhole(json, *edit, 0, isOfParameter);
    if (kind == "changed") return readChanged(json, *edit, isOfParameter);
    if (kind == "moved") return readMoved(json, *edit);
    return wrong(inQuotes(kind) + " is no kind of change");
  }

  // What can be said only when everything is known.
  bool checkTree(std::size_t& line)
  {
    for (const ItemEdit& item : m_tree.items)
    {
      line = item.line;
      if (item.parent != nullptr && !isConsistent(*item.parent, item)) return wrong(addressOf(item) + m_inconsistency);
      for (const auto& [name, parameter] : item.parameters)
      {
        line = parameter.line;
        if (!isConsistent(item, parameter)) return wrong(addressOf(item, parameter) + m_inconsistency);
      }
    }
    return true;
  }

private:
  bool wrong(const std::string& problem)
  {
    m_problem = problem;
    return false;
  }

  // Below what is added or removed everything is.
  bool isConsistent(const ItemEdit& parent, const Edit& edit)
  {
    for (int n = 0; n < 2; ++n)
    {
      if (parent.sides[n].isPresent || (!edit.sides[n].isPresent && edit.sides[1 - n].isPresent)) continue;
      m_inconsistency = n == 0 ? " stands below an item that is added, and is not added itself"
                               : " stands below an item that is removed, and is not removed itself";
      return false;
    }
    return true;
  }

  // ---- Where ----

  Edit* findEdit(const Json& json, const char* field)
  {
    std::string address;
    if (!takeString(json, field, address)) return nullptr;
    std::vector<Sibling> path;
    std::string problem;
    if (!readSiblings(address, path, problem))
    {
      wrong(inQuotes(address) + " is no address: " + problem);
      return nullptr;
    }
    m_address = address;
    return *field == 'p' ? findParameter(path) : findItem(path, path.size());
  }

  Edit* findParameter(const std::vector<Sibling>& path)
  {
    if (path.empty() || path.back().index != 1)
    {
      wrong(inQuotes(m_address) + " cannot be a parameter");
      return nullptr;
    }
    ItemEdit* const item = findItem(path, path.size() - 1);
    Edit& edit = item->parameters[path.back()];
    return started(edit, path.back());
  }

  ItemEdit* findItem(const std::vector<Sibling>& path, std::size_t length)
  {
    ItemEdit* item = &m_tree.items.front();
    for (std::size_t n = 0; n < length; ++n)
    {
      ItemEdit*& next = item->items[path[n]];
      if (next == nullptr)
      {
        next = &m_tree.items.emplace_back();
        next->name = path[n];
        next->number = m_tree.items.size() - 1;
        next->parent = item;
      }
      item = next;
    }
    if (length == path.size()) started(*item, item->name);
    return item;
  }

  Edit* started(Edit& edit, const Sibling& name)
  {
    edit.name = name;
    if (edit.line == 0) edit.order = m_tree.changeCount;
    if (edit.line == 0) edit.line = m_line;
    return &edit;
  }

  // ---- What ----

  bool isTwice() { return wrong(m_address + " is changed twice"); }

  bool readWhole(const Json& json, Edit& edit, int side, bool isOfParameter)
  {
    if (edit.hasOwnChange || edit.isMoved) return isTwice();
    if (isRoot(edit)) return wrong("the root cannot be added or removed");
    edit.hasOwnChange = true;
    edit.sides[1 - side].isPresent = false;
    const unsigned int wanted = isOfParameter ? EditSide::ALL_OF_PARAMETER : EditSide::ALL_OF_ITEM;
    return readFields(json, edit.sides[side], 2) && hasFields(edit.sides[side], wanted);
  }

  bool readChanged(const Json& json, Edit& edit, bool isOfParameter)
  {
    if (edit.hasOwnChange) return isTwice();
    edit.hasOwnChange = true;
    EditSide sides[2];
    if (!readSides(json, sides)) return false;
    const unsigned int fields = sides[0].fields;
    if (fields != sides[1].fields || fields == 0)
      return wrong("\"old\" and \"new\" must tell of the same, and of something");
    unsigned int allowed = isOfParameter ? EditSide::ALL_OF_PARAMETER & ~EditSide::AFTER : EditSide::DESCRIPTION;
    if (isRoot(edit)) allowed |= EditSide::ID;
    if ((fields & ~allowed) != 0) return wrong("a field stands where it does not belong");
    for (int n = 0; n < 2; ++n)
    {
      if (edit.isMoved) setPlace(sides[n], edit.sides[n]);
      edit.sides[n] = sides[n];
    }
    return true;
  }

  bool readMoved(const Json& json, Edit& edit)
  {
    if (edit.isMoved || !edit.sides[0].isPresent || !edit.sides[1].isPresent) return isTwice();
    if (isRoot(edit)) return wrong("the root cannot be moved");
    edit.isMoved = true;
    EditSide sides[2];
    if (!readSides(json, sides)) return false;
    for (int n = 0; n < 2; ++n)
    {
      if (!hasFields(sides[n], EditSide::AFTER)) return false;
      setPlace(edit.sides[n], sides[n]);
    }
    return true;
  }

  bool isRoot(const Edit& edit) const { return &edit == &m_tree.items.front(); }

  static void setPlace(EditSide& side, const EditSide& place)
  {
    side.fields |= EditSide::AFTER;
    side.isFirst = place.isFirst;
    side.after = place.after;
  }

  bool readSides(const Json& json, EditSide (&sides)[2])
  {
    const char* const names[2] = {"old", "new"};
    for (int n = 0; n < 2; ++n)
    {
      const auto side = json.find(names[n]);
      if (side == json.end()) return wrong(inQuotes(names[n]) + " is missing");
      if (!side->is_object()) return wrong(inQuotes(names[n]) + " must be an object");
      if (!readFields(*side, sides[n], 0)) return false;
    }
    return json.size() == 4 || wrong("nothing is expected beside what is changed, how, \"old\" and \"new\"");
  }

  bool hasFields(const EditSide& side, unsigned int fields)
  {
    if (side.fields == fields) return true;
    static constexpr std::pair<unsigned int, const char*> s_names[] = {
        {EditSide::AFTER, "after"}, {EditSide::DESCRIPTION, "description"}, {EditSide::VALUE, "value"},
        {EditSide::UNIT, "unit"},   {EditSide::MODIFIABLE, "modifiable"},   {EditSide::RELEVANCE, "relevance"}};
    for (const auto& [field, name] : s_names)
      if ((fields & ~side.fields & field) != 0) return wrong(inQuotes(name) + " is missing");
    return wrong("a field stands where it does not belong");
  }

  // Reads the fields of an object; `others` of them are no part of a side.
  bool readFields(const Json& json, EditSide& side, std::size_t others)
  {
    std::size_t known = others;
    for (auto field = json.begin(); field != json.end(); ++field)
    {
      const std::string& name = field.key();
      if (others != 0 && (name == "change" || name == "item" || name == "parameter")) continue;
      if (name == "type" && json.contains("value"))    // read together
      {
        ++known;
        continue;
      }
      if (!readField(name, *field, json, side)) return false;
      ++known;
    }
    return known == json.size() || wrong("\"item\" and \"parameter\" exclude each other");
  }

  bool readField(const std::string& name, const Json& value, const Json& json, EditSide& side)
  {
    if (name == "after") return readAfter(value, side);
    if (name == "description") return readText(name, value, side.description, EditSide::DESCRIPTION, side);
    if (name == "unit") return readText(name, value, side.unit, EditSide::UNIT, side);
    if (name == "value") return readValue(value, json, side);
    if (name == "type") return wrong("\"type\" needs a \"value\"");
    if (name == "modifiable") return readModifiable(value, side);
    if (name == "relevance") return readRelevance(value, side);
    if (name == "id") return readOwnID(value, side);
    return wrong(inQuotes(name) + " is no field that is known here");
  }

  bool readSibling(const std::string& name, const Json& value, Sibling& sibling)
  {
    std::vector<Sibling> path;
    std::string problem;
    if (!value.is_string()) return wrong(inQuotes(name) + " must be a string");
    if (!readSiblings(value.get_ref<const std::string&>(), path, problem))
      return wrong(inQuotes(name) + ": " + problem);
    if (path.size() != 1) return wrong(inQuotes(name) + " must be one element of an address");
    sibling = path.front();
    return true;
  }

  bool readAfter(const Json& value, EditSide& side)
  {
    side.fields |= EditSide::AFTER;
    side.isFirst = value.is_null();
    return side.isFirst || readSibling("after", value, side.after);
  }

  bool readOwnID(const Json& value, EditSide& side)
  {
    side.fields |= EditSide::ID;
    if (!readSibling("id", value, side.id)) return false;
    return side.id.number == 1 || wrong("\"id\" must be an ID and an index");
  }

  bool readText(const std::string& name, const Json& value, std::string& text, EditSide::Field field, EditSide& side)
  {
    side.fields |= field;
    if (!textOfJson(value, text)) return wrong(inQuotes(name) + " must be a text");
    return text.find('\0') == std::string::npos || wrong(inQuotes(name) + " holds a zero byte");
  }

  bool readModifiable(const Json& value, EditSide& side)
  {
    side.fields |= EditSide::MODIFIABLE;
    if (!value.is_boolean()) return wrong("\"modifiable\" must be true or false");
    side.modifiable = value.get<bool>();
    return true;
  }

  bool readRelevance(const Json& value, EditSide& side)
  {
    side.fields |= EditSide::RELEVANCE;
    if (!value.is_number_unsigned() || value.get<unsigned long long>() > std::numeric_limits<unsigned int>::max())
      return wrong("\"relevance\" must be a number from 0 to 4294967295");
    side.relevance = value.get<unsigned int>();
    return true;
  }

  bool readValue(const Json& value, const Json& json, EditSide& side)
  {
    side.fields |= EditSide::VALUE;
    std::string name;
    std::string text;
    if (!takeString(json, "type", name)) return false;
    side.type = typeOfName(name);
    if (side.type == 0) return wrong(inQuotes(name) + " is no type; types are " + typeNames());
    if (!valueTextOfJson(value, side.type, text)) return wrong("\"value\" is of a kind that no " + name + " has");
    KyCErrorListPool pool;
    const ParameterPointer parameter = makeParameter(pool, 1, "", side.type, text, "", false, 0);
    kyThrowIfOutOfMemory(pool);
    if (parameter == nullptr) return wrong(reportText(pool));
    side.value = valueText(*parameter);
    return true;
  }

  // A report as part of a sentence.
  static std::string reportText(const KyCErrorListPool& pool)
  {
    std::string text = pool.getEntry(0).text;
    if (!text.empty() && text.back() == '.') text.pop_back();
    return text;
  }

  bool takeString(const Json& json, const char* field, std::string& text)
  {
    const auto value = json.find(field);
    if (value == json.end()) return wrong(inQuotes(field) + " is missing");
    if (!value->is_string()) return wrong(inQuotes(field) + " must be a string");
    text = value->get<std::string>();
    return true;
  }

  PatchTree& m_tree;
  std::string& m_problem;
  std::string m_address;    // of the change that is being read
  const char* m_inconsistency = "";
  std::size_t m_line = 0;
};

// ---- The document ----

// Reads bytes and counts the lines, so that the place of what is wrong can be named.
class CountingIterator
{
public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, std::size_t* line) : m_at(at), m_line(line) {}
  reference operator*() const { return *m_at; }
  CountingIterator& operator++()
  {
    if (*m_at++ == '\n') ++*m_line;
    return *this;
  }
  CountingIterator operator++(int)
  {
    const CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return m_at == other.m_at; }
  bool operator!=(const CountingIterator& other) const { return m_at != other.m_at; }

private:
  const char* m_at;
  std::size_t* m_line;
};

// Takes the parser's events. Only one change at a time is kept as JSON.
class DocumentReader : public nlohmann::json_sax<Json>
{
public:
  DocumentReader(PatchTree& tree, const std::size_t& line) : m_changes(tree, m_problem), m_line(line) {}

  const std::string& problem() const { return m_problem; }

  // After the last event.
  bool finish(std::size_t& line)
  {
    if (!m_hasFormat) return wrong("\"format\" is missing");
    if (!m_hasVersion) return wrong("\"version\" is missing");
    if (!m_hasChanges) return wrong("\"changes\" is missing");
    return m_changes.checkTree(line);
  }

  bool null() override { return put(Json()); }
  bool boolean(bool value) override { return put(value); }
  bool number_integer(number_integer_t value) override { return put(value); }
  bool number_unsigned(number_unsigned_t value) override { return put(value); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return put(value); }
  bool string(string_t& value) override { return put(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return wrong("a binary value"); }
  bool start_object(std::size_t /*count*/) override { return start(Json::object()); }
  bool start_array(std::size_t /*count*/) override { return start(Json::array()); }
  bool end_object() override { return end(); }
  bool end_array() override { return end(); }

  bool key(string_t& name) override
  {
    if (m_depth == 1) return topKey(name);
    if (m_open.back()->size() == s_mostFields) return wrong("an object has too many fields");
    if (m_open.back()->contains(name)) return wrong(inQuotes(name) + " stands twice in one object");
    m_key = std::move(name);
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override
  {
    const std::string text = error.what();    // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
    const std::size_t column = text.find("column ");
    return wrong("no JSON: " + (column != std::string::npos ? text.substr(column) : text));
  }

private:
  bool wrong(const std::string& problem)
  {
    m_problem = problem;
    return false;
  }

  bool topKey(const std::string& name)
  {
    bool* const isKnown = name == "format"    ? &m_hasFormat
                          : name == "version" ? &m_hasVersion
                          : name == "changes" ? &m_hasChanges
                                              : nullptr;
    if (isKnown == nullptr) return wrong(inQuotes(name) + " is no field that is known here");
    if (*isKnown) return wrong(inQuotes(name) + " stands twice in one object");
    *isKnown = true;
    m_key = name;
    return true;
  }

  bool start(Json value)
  {
    if (m_depth == s_deepest) return wrong("values are nested too deeply");
    ++m_depth;
    if (m_depth == 1) return value.is_object() || wrong("the document must be an object");
    if (m_depth == 2) return (m_key == "changes" && value.is_array()) || isWrongTop();
    if (value.is_array()) return wrong("an array stands where none belongs");
    if (m_depth == 3)
    {
      m_change = std::move(value);
      m_changeLine = m_line;
      m_open.assign(1, &m_change);
      return true;
    }
    Json* const added = add(std::move(value));
    m_open.push_back(added);
    return true;
  }

  bool end()
  {
    --m_depth;
    if (m_depth < 2) return true;
    m_open.pop_back();
    return m_depth != 2 || m_changes.read(m_change, m_changeLine);
  }

  Json* add(Json value)
  {
    Json& parent = *m_open.back();
    if (parent.is_object()) return &(parent[m_key] = std::move(value));
    // cppcheck-suppress accessMoved ; the line before has returned
    parent.push_back(std::move(value));
    return &parent.back();
  }

  bool put(Json value)
  {
    if (m_depth == 0) return wrong("the document must be an object");
    if (m_depth == 2) return wrong("a change is an object");
    if (m_depth > 2)
    {
      add(std::move(value));
      return true;
    }
    if (m_key == "format" && isJsonText(value, "kyinventory-diff")) return true;
    if (m_key == "version" && value.is_number_integer() && value == 1) return true;
    return isWrongTop();
  }

  bool isWrongTop()
  {
    if (m_key == "format") return wrong("\"format\" must be \"kyinventory-diff\"");
    if (m_key == "version") return wrong("\"version\" must be 1");
    return wrong("\"changes\" must be an array");
  }

  std::string m_problem;
  ChangeReader m_changes;
  const std::size_t& m_line;
  std::size_t m_depth = 0;
  std::string m_key;
  bool m_hasFormat = false;
  bool m_hasVersion = false;
  bool m_hasChanges = false;
  Json m_change;
  std::size_t m_changeLine = 0;
  std::vector<Json*> m_open;    // within the change
};
}    // namespace

std::string addressOf(const ItemEdit& edit)
{
  std::vector<const ItemEdit*> path;
  for (const ItemEdit* at = &edit; at->parent != nullptr; at = at->parent)
    path.push_back(at);
  std::string address;
  for (auto element = path.rbegin(); element != path.rend(); ++element)
    address += (address.empty() ? "" : "/") + siblingText((*element)->name);
  return address.empty() ? "." : address;
}

std::string addressOf(const ItemEdit& item, const Edit& parameter)
{
  return (item.parent == nullptr ? "" : addressOf(item) + "/") + siblingText(parameter.name);
}

Patch::Patch() : m_tree(std::make_unique<PatchTree>()) {}
Patch::~Patch() = default;
Patch::Patch(Patch&& other) noexcept = default;
Patch& Patch::operator=(Patch&& other) noexcept = default;

std::size_t Patch::changeCount() const { return m_tree->changeCount; }

bool readPatch(KyCErrorListPool& pool, const std::string& json, const std::string& name, Patch& patch)
{
  patch = Patch();
  Patch result;
  std::size_t line = 1;
  DocumentReader reader(*result.m_tree, line);
  const CountingIterator first(json.data(), &line);
  const CountingIterator last(json.data() + json.size(), &line);
  if (Json::sax_parse(first, last, &reader) && reader.finish(line))
  {
    patch = std::move(result);
    return true;
  }
  const std::string& problem = reader.problem();
  const std::string quoted = problem.size() > s_longestProblem ? problem.substr(0, s_longestProblem) + "..." : problem;
  pool.setError(KY_PATCH_MSG_NO_PATCH, __LINE__, "readPatch", "%s%s%s", name.c_str(), std::to_string(line).c_str(),
                quoted.c_str());
  return false;
}
}    // namespace KyNInventoryKit
