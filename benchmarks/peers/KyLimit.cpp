// The limits: plain structs with one malloc a node, and the bare copying of the stored bytes.
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "KySystem.h"

namespace
{
struct Parameter
{
  Parameter* next;
  const char* name;
  const char* unit;    // shared
  std::uint64_t value[2];
  unsigned int id;
  unsigned int relevance;
  unsigned int textLength;
  ValueType type;
  bool isModifiable;
  char text[1];    // of strings; as long as it has to be
};

struct Item
{
  Item* next;
  Item* first;
  Item* last;
  Parameter* firstParameter;
  Parameter* lastParameter;
  const char* name;
  unsigned int id;
  unsigned int index;
};

template <typename Node>
Node* allocate(std::size_t more)
{
  void* const memory = std::malloc(sizeof(Node) + more);
  if (memory == nullptr) std::abort();
  return static_cast<Node*>(memory);
}

Item* newItem(unsigned int id, unsigned int index, const char* name)
{
  Item* const item = allocate<Item>(0);
  *item = {nullptr, nullptr, nullptr, nullptr, nullptr, name, id, index};
  return item;
}

template <typename Node>
void append(Node*& first, Node*& last, Node* node)
{
  (first == nullptr ? first : last->next) = node;
  last = node;
}

Parameter* newParameter(const ParameterKind& kind, const Value& value)
{
  const std::size_t length = kind.type == ValueType::STRING ? value.text->size() : 0;
  Parameter* const p = allocate<Parameter>(length);
  p->next = nullptr;
  p->name = kind.name;
  p->unit = kind.unit;
  p->value[0] = value.number;
  p->value[1] = 0;
  p->id = kind.id;
  p->relevance = kind.relevance;
  p->textLength = static_cast<unsigned int>(length);
  p->type = kind.type;
  p->isModifiable = kind.isModifiable;
  if (length != 0) std::memcpy(p->text, value.text->data(), length);
  p->text[length] = '\0';
  return p;
}

void addParameters(Item& item, const std::vector<ParameterKind>& kinds, const Rack& rack, unsigned int b,
                   unsigned int c)
{
  unsigned int n = 0;
  for (const ParameterKind& kind : kinds)
    append(item.firstParameter, item.lastParameter, newParameter(kind, rack.value(b, c, n++)));
}

Item* build(const Rack& rack, unsigned int channels)
{
  Item* const root = newItem(rack.rootID(), 1, "ROOT");
  for (unsigned int b = 1; b <= rack.boards(); ++b)
  {
    Item* const board = newItem(rack.boardID(), b, "BOARD");
    append(root->first, root->last, board);
    addParameters(*board, rack.boardParameters(), rack, b, 0);
    for (unsigned int c = 1; c <= channels; ++c)
    {
      Item* const channel = newItem(rack.channelID(), c, "IOCHANNEL");
      append(board->first, board->last, channel);
      addParameters(*channel, rack.channelParameters(), rack, b, c);
    }
  }
  return root;
}

void destroyParameters(Item& item)
{
  for (Parameter* p = item.firstParameter; p != nullptr;)
  {
    Parameter* const next = p->next;
    std::free(p);
    p = next;
  }
}

// The trees measured here are three levels deep.
void destroy(Item* item)
{
  while (item != nullptr)
  {
    Item* const next = item->next;
    destroyParameters(*item);
    destroy(item->first);
    std::free(item);
    item = next;
  }
}

Item* copy(const Item& item)
{
  Item* const result = newItem(item.id, item.index, item.name);
  for (const Parameter* p = item.firstParameter; p != nullptr; p = p->next)
  {
    Parameter* const other = allocate<Parameter>(p->textLength);
    std::memcpy(static_cast<void*>(other), p, sizeof(Parameter) + p->textLength);
    other->next = nullptr;
    append(result->firstParameter, result->lastParameter, other);
  }
  for (const Item* sub = item.first; sub != nullptr; sub = sub->next)
    append(result->first, result->last, copy(*sub));
  return result;
}

// Both sides have the same boards; the target has the first channels of each.
void merge(Item& target, Item* source)
{
  Item* from = source->first;
  for (Item* to = target.first; to != nullptr; to = to->next, from = from->next)
  {
    Item* common = from->first;
    for (Item* channel = to->first; channel != to->last; channel = channel->next)
      common = common->next;
    Item* const rest = common != nullptr ? common->next : nullptr;
    if (rest == nullptr) continue;
    to->last->next = rest;
    to->last = from->last;
    common->next = nullptr;
    from->last = common;
  }
  destroy(source);
}

// ---- Stored form: fields one after the other, names and units as texts, which reading finds among the known ones ----

class Bytes
{
public:
  ~Bytes() { std::free(m_start); }
  void put(const void* data, std::size_t size)
  {
    if (m_size + size > m_capacity) grow(size);
    std::memcpy(m_start + m_size, data, size);
    m_size += size;
  }
  template <typename T>
  void put(T value)
  {
    put(&value, sizeof(value));
  }
  const char* data() const { return m_start; }
  std::size_t size() const { return m_size; }

private:
  void grow(std::size_t size)
  {
    m_capacity = (m_size + size) * 2;
    m_start = static_cast<char*>(std::realloc(m_start, m_capacity));
    if (m_start == nullptr) std::abort();
  }
  char* m_start = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

void putText(Bytes& bytes, const char* text)
{
  const unsigned char length = static_cast<unsigned char>(std::strlen(text));
  bytes.put(length);
  bytes.put(text, length);
}

void store(Bytes& bytes, const Item& item)
{
  unsigned int parameters = 0;
  unsigned int items = 0;
  for (const Parameter* p = item.firstParameter; p != nullptr; p = p->next)
    ++parameters;
  for (const Item* sub = item.first; sub != nullptr; sub = sub->next)
    ++items;
  bytes.put(item.id);
  bytes.put(item.index);
  putText(bytes, item.name);
  bytes.put(parameters);
  bytes.put(items);
  for (const Parameter* p = item.firstParameter; p != nullptr; p = p->next)
  {
    bytes.put(p->id);
    putText(bytes, p->name);
    bytes.put(p->relevance);
    bytes.put(p->type);
    bytes.put(p->isModifiable);
    putText(bytes, p->unit);
    bytes.put(p->value[0]);
    bytes.put(p->textLength);
    bytes.put(p->text, p->textLength);
  }
  for (const Item* sub = item.first; sub != nullptr; sub = sub->next)
    store(bytes, *sub);
}

class Source
{
public:
  explicit Source(const Bytes& bytes) : m_at(bytes.data()), m_end(bytes.data() + bytes.size()) {}
  void get(void* data, std::size_t size)
  {
    if (static_cast<std::size_t>(m_end - m_at) < size) std::abort();
    std::memcpy(data, m_at, size);
    m_at += size;
  }
  template <typename T>
  T get()
  {
    T value;
    get(&value, sizeof(value));
    return value;
  }
  const char* skip(std::size_t size)
  {
    if (static_cast<std::size_t>(m_end - m_at) < size) std::abort();
    const char* const at = m_at;
    m_at += size;
    return at;
  }

private:
  const char* m_at;
  const char* m_end;
};

const char* unitOf(const char* text, std::size_t length)
{
  for (const char* unit : {"", "V", "A", "Hz"})
    if (std::strlen(unit) == length && std::memcmp(unit, text, length) == 0) return unit;
  return "";
}

// Known is what the program itself names; that outlives every tree.
class Names
{
public:
  explicit Names(const Rack& rack)
  {
    for (const char* name : {"ROOT", "BOARD", "IOCHANNEL"})
      m_names.emplace(name, name);
    for (const auto* kinds : {&rack.boardParameters(), &rack.channelParameters()})
      for (const ParameterKind& kind : *kinds)
        m_names.emplace(kind.name, kind.name);
  }
  const char* read(Source& source) const
  {
    const unsigned char length = source.get<unsigned char>();
    const auto found = m_names.find(std::string_view(source.skip(length), length));
    if (found == m_names.end()) std::abort();
    return found->second;
  }

private:
  std::unordered_map<std::string_view, const char*> m_names;
};

Parameter* readParameter(Source& source, const Names& names)
{
  const unsigned int id = source.get<unsigned int>();
  const char* const name = names.read(source);
  const unsigned int relevance = source.get<unsigned int>();
  const ValueType type = source.get<ValueType>();
  const bool isModifiable = source.get<bool>();
  const unsigned char unitLength = source.get<unsigned char>();
  const char* const unit = unitOf(source.skip(unitLength), unitLength);
  const std::uint64_t value = source.get<std::uint64_t>();
  const unsigned int textLength = source.get<unsigned int>();
  Parameter* const p = allocate<Parameter>(textLength);
  p->next = nullptr;
  p->name = name;
  p->unit = unit;
  p->value[0] = value;
  p->value[1] = 0;
  p->id = id;
  p->relevance = relevance;
  p->textLength = textLength;
  p->type = type;
  p->isModifiable = isModifiable;
  source.get(p->text, textLength);
  p->text[textLength] = '\0';
  return p;
}

Item* read(Source& source, const Names& names)
{
  const unsigned int id = source.get<unsigned int>();
  const unsigned int index = source.get<unsigned int>();
  Item* const item = newItem(id, index, names.read(source));
  const unsigned int parameters = source.get<unsigned int>();
  const unsigned int items = source.get<unsigned int>();
  for (unsigned int n = 0; n < parameters; ++n)
    append(item->firstParameter, item->lastParameter, readParameter(source, names));
  for (unsigned int n = 0; n < items; ++n)
    append(item->first, item->last, read(source, names));
  return item;
}

class Limit : public System
{
public:
  ~Limit() override
  {
    destroy(m_tree);
    destroy(m_work);
  }
  const char* name() const override { return "malloc"; }

  std::optional<Measure> measure(Operation operation, const Rack& rack) override
  {
    const double parameters = rack.parameterCount();
    const auto drop = [=] { release(); };
    switch (operation)
    {
      case Operation::BUILD:
        return Measure{{},
                       [=, &rack]
                       {
                         m_work = build(rack, rack.channels());
                         return parameters;
                       },
                       drop};
      case Operation::DESTROY:
        return Measure{[=, &rack] { m_work = build(rack, rack.channels()); },
                       [=]
                       {
                         release();
                         return parameters;
                       },
                       {}};
      case Operation::STORE:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         Bytes stored;
                         store(stored, *m_tree);
                         keep(stored.data());
                         return parameters;
                       },
                       {}};
      case Operation::EXTRACT_MEM:
        return Measure{[=, &rack] { bytes(rack); },
                       [=, &rack]
                       {
                         Source source(*m_bytes);
                         m_work = read(source, Names(rack));
                         return parameters;
                       },
                       drop};
      case Operation::COPY:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         m_work = copy(*m_tree);
                         return parameters;
                       },
                       drop};
      case Operation::MERGE:
        return Measure{[=, &rack]
                       {
                         m_work = build(rack, rack.channels() / 2);
                         m_source = build(rack, rack.channels());
                       },
                       [=]
                       {
                         merge(*m_work, m_source);
                         return parameters;
                       },
                       drop};
      default:
        return std::nullopt;
    }
  }

  std::size_t storedSize(const Rack& rack) override { return bytes(rack).size(); }
  bool hold(const Rack& rack, bool isRead) override
  {
    m_work = build(rack, rack.channels());
    return !isRead || (release(), false);    // read, it is the same
  }
  void release() override
  {
    destroy(m_work);
    m_work = nullptr;
  }

private:
  void tree(const Rack& rack)
  {
    if (m_treeOf == &rack) return;
    destroy(m_tree);
    m_tree = build(rack, rack.channels());
    m_treeOf = &rack;
  }
  const Bytes& bytes(const Rack& rack)
  {
    if (m_bytesOf != &rack)
    {
      tree(rack);
      m_bytes = std::make_unique<Bytes>();
      store(*m_bytes, *m_tree);
      m_bytesOf = &rack;
    }
    return *m_bytes;
  }

  Item* m_tree = nullptr;
  const Rack* m_treeOf = nullptr;
  std::unique_ptr<Bytes> m_bytes;
  const Rack* m_bytesOf = nullptr;
  Item* m_work = nullptr;
  Item* m_source = nullptr;
};

// As many bytes as our section has, copied into fresh memory.
class Copying : public System
{
public:
  const char* name() const override { return "memcpy"; }

  std::optional<Measure> measure(Operation operation, const Rack& rack) override
  {
    if (operation != Operation::STORE && operation != Operation::EXTRACT_MEM) return std::nullopt;
    const double parameters = rack.parameterCount();
    return Measure{[=, &rack] { m_bytes.assign(rack.parameterCount() * std::size_t{17}, 'x'); },
                   [=]
                   {
                     char* const copied = static_cast<char*>(std::malloc(m_bytes.size()));
                     std::memcpy(copied, m_bytes.data(), m_bytes.size());
                     keep(copied);
                     std::free(copied);
                     return parameters;
                   },
                   {}};
  }

private:
  std::string m_bytes;
};
}    // namespace

std::unique_ptr<System> makeLimit() { return std::make_unique<Limit>(); }
std::unique_ptr<System> makeBytes() { return std::make_unique<Copying>(); }
