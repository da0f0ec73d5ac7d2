// Protocol buffers: messages on the heap, in an arena, and with map fields.
#include <google/protobuf/arena.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "KySystem.h"
#include "rack.pb.h"

namespace
{
using google::protobuf::Arena;
using ky_bench::Item;
using ky_bench::MappedItem;
using ky_bench::Parameter;

void fill(Parameter& p, const ParameterKind& kind, const Value& value)
{
  p.set_id(kind.id);
  p.set_description(kind.name);
  if (*kind.unit != '\0') p.set_unit(kind.unit);
  p.set_modifiable(kind.isModifiable);
  p.set_relevance(kind.relevance);
  switch (kind.type)
  {
    case ValueType::INT8:
      return p.set_int8(static_cast<signed char>(value.number));
    case ValueType::INT16:
      return p.set_int16(static_cast<short>(value.number));
    case ValueType::INT32:
      return p.set_int32(static_cast<int>(value.number));
    case ValueType::LONG64:
      return p.set_long64(static_cast<long long>(value.number));
    case ValueType::UINT8:
      return p.set_uint8(static_cast<unsigned char>(value.number));
    case ValueType::UINT16:
      return p.set_uint16(static_cast<unsigned short>(value.number));
    case ValueType::UINT32:
      return p.set_uint32(static_cast<unsigned int>(value.number));
    case ValueType::ULONG64:
      return p.set_ulong64(value.number);
    case ValueType::FLOAT32:
      return p.set_float32(static_cast<float>(value.number) / 8);
    case ValueType::FLOAT64:
      return p.set_float64(static_cast<double>(value.number) / 8);
    case ValueType::STRING:
      return p.set_text(*value.text);
    case ValueType::VERSION:
      p.mutable_version()->set_major(static_cast<unsigned int>(value.number & 0xF));
      p.mutable_version()->set_minor(static_cast<unsigned int>(value.number >> 4 & 0xFF));
      p.mutable_version()->set_build(static_cast<unsigned int>(value.number >> 12 & 0xFFF));
      return;
  }
}

void addItem(Item& parent, unsigned int id, unsigned int index, const char* name)
{
  Item& item = *parent.add_items();
  item.set_id(id);
  item.set_index(index);
  item.set_description(name);
}

Item& board(Item& root, unsigned int b) { return *root.mutable_items(static_cast<int>(b) - 1); }

Item& channel(Item& root, unsigned int b, unsigned int c)
{
  return *board(root, b).mutable_items(static_cast<int>(c) - 1);
}

// By place from the root, one parameter after the other, as our own tree is built by address.
void build(Item& root, const Rack& rack, unsigned int channels)
{
  root.set_id(rack.rootID());
  root.set_index(1);
  root.set_description("ROOT");
  for (unsigned int b = 1; b <= rack.boards(); ++b)
  {
    addItem(root, rack.boardID(), b, "BOARD");
    unsigned int n = 0;
    for (const ParameterKind& kind : rack.boardParameters())
      fill(*board(root, b).add_parameters(), kind, rack.value(b, 0, n++));
    for (unsigned int c = 1; c <= channels; ++c)
    {
      addItem(board(root, b), rack.channelID(), c, "IOCHANNEL");
      n = 0;
      for (const ParameterKind& kind : rack.channelParameters())
        fill(*channel(root, b, c).add_parameters(), kind, rack.value(b, c, n++));
    }
  }
}

// What both trees have is the target's; the rest moves: by pointer on the heap, and as a copy from one tree's arena to
// the other's, since each tree has a life of its own.
void merge(Item& target, Item& source)
{
  for (int b = 0; b < source.items_size(); ++b)
  {
    Item& from = *source.mutable_items(b);
    Item& to = *target.mutable_items(b);
    const int common = to.items_size();
    std::vector<Item*> rest(static_cast<std::size_t>(from.items_size() - common));
    if (rest.empty()) continue;
    if (to.GetArena() != from.GetArena())
    {
      for (int c = common; c < from.items_size(); ++c)
        *to.add_items() = from.items(c);
      continue;
    }
    from.mutable_items()->UnsafeArenaExtractSubrange(common, static_cast<int>(rest.size()), rest.data());
    for (Item* item : rest)
      to.mutable_items()->UnsafeArenaAddAllocated(item);
  }
}

// A tree of messages; in an arena it ends with that.
struct Messages
{
  explicit Messages(bool isArena) : arena(isArena ? new Arena : nullptr), root(Arena::CreateMessage<Item>(arena.get()))
  {
  }
  ~Messages()
  {
    if (!arena) delete root;
  }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  std::unique_ptr<Arena> arena;
  Item* root;
};

class Protobuf : public System
{
public:
  explicit Protobuf(bool isArena) : m_isArena(isArena) {}
  const char* name() const override { return m_isArena ? "protobuf_arena" : "protobuf"; }

  std::optional<Measure> measure(Operation operation, const Rack& rack) override
  {
    const double parameters = rack.parameterCount();
    switch (operation)
    {
      case Operation::BUILD:
        return Measure{{},
                       [=, &rack]
                       {
                         m_work = make(rack, rack.channels());
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::DESTROY:
        return Measure{[=, &rack] { m_work = make(rack, rack.channels()); },
                       [=]
                       {
                         m_work.reset();
                         return parameters;
                       },
                       {}};
      case Operation::STORE:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         store();
                         return parameters;
                       },
                       {}};
      case Operation::EXTRACT_MEM:
        return Measure{[=, &rack] { bytes(rack); },
                       [=]
                       {
                         m_work = read(m_bytes);
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::COPY:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         m_work = std::make_unique<Messages>(m_isArena);
                         m_work->root->CopyFrom(*m_tree->root);
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::MERGE:
        return measureMerge(rack);
      default:
        return std::nullopt;
    }
  }

  std::size_t storedSize(const Rack& rack) override { return bytes(rack).size(); }

  bool hold(const Rack& rack, bool isRead) override
  {
    m_work = make(rack, rack.channels());
    if (!isRead) return true;
    std::string stored = m_work->root->SerializeAsString();
    m_work.reset();
    m_work = read(stored);
    return true;
  }
  void release() override { m_work.reset(); }

private:
  std::optional<Measure> measureMerge(const Rack& rack)
  {
    const double parameters = rack.parameterCount();
    return Measure{[=, &rack]
                   {
                     m_work = make(rack, rack.channels() / 2);
                     m_other = make(rack, rack.channels());
                   },
                   [=]
                   {
                     merge(*m_work->root, *m_other->root);
                     m_other.reset();
                     return parameters;
                   },
                   [=] { m_work.reset(); }};
  }

  std::unique_ptr<Messages> make(const Rack& rack, unsigned int channels) const
  {
    auto messages = std::make_unique<Messages>(m_isArena);
    build(*messages->root, rack, channels);
    return messages;
  }
  void tree(const Rack& rack)
  {
    if (m_treeOf == &rack) return;
    m_tree.reset();
    m_tree = make(rack, rack.channels());
    m_treeOf = &rack;
  }
  const std::string& bytes(const Rack& rack)
  {
    if (m_bytesOf != &rack)
    {
      tree(rack);
      m_tree->root->SerializeToString(&m_bytes);
      m_bytesOf = &rack;
    }
    return m_bytes;
  }
  void store()
  {
    std::string stored;
    m_tree->root->SerializeToString(&stored);
    keep(stored.data());
  }
  std::unique_ptr<Messages> read(const std::string& stored) const
  {
    auto messages = std::make_unique<Messages>(m_isArena);
    if (!messages->root->ParseFromString(stored)) std::abort();
    return messages;
  }

  bool m_isArena;
  std::unique_ptr<Messages> m_tree;
  const Rack* m_treeOf = nullptr;
  std::string m_bytes;
  const Rack* m_bytesOf = nullptr;
  std::unique_ptr<Messages> m_work;
  std::unique_ptr<Messages> m_other;
};

class ProtobufMap : public System
{
public:
  const char* name() const override { return "protobuf_map"; }

  std::optional<Measure> measure(Operation operation, const Rack& rack) override
  {
    if (operation != Operation::LOOKUP && operation != Operation::SET) return std::nullopt;
    const bool isSet = operation == Operation::SET;
    return Measure{[=, &rack] { prepare(rack); }, [=] { return isSet ? set() : lookUp(); }, {}};
  }

private:
  struct Path
  {
    std::string board;
    std::string channel;
    std::string parameter;
  };

  static std::string key(const char* name, unsigned int index) { return name + ('[' + std::to_string(index) + ']'); }

  void prepare(const Rack& rack)
  {
    if (m_treeOf == &rack) return;
    m_treeOf = &rack;
    m_root.Clear();
    for (unsigned int b = 1; b <= rack.boards(); ++b)
    {
      MappedItem& board = (*m_root.mutable_items())[key("BOARD", b)];
      unsigned int n = 0;
      for (const ParameterKind& kind : rack.boardParameters())
        fill((*board.mutable_parameters())[kind.name], kind, rack.value(b, 0, n++));
      for (unsigned int c = 1; c <= rack.channels(); ++c)
      {
        MappedItem& channel = (*board.mutable_items())[key("IOCHANNEL", c)];
        n = 0;
        for (const ParameterKind& kind : rack.channelParameters())
          fill((*channel.mutable_parameters())[kind.name], kind, rack.value(b, c, n++));
      }
    }
    m_paths.clear();
    for (const Target& target : randomTargets(rack, 100000))
      m_paths.push_back(
          {key("BOARD", target.board), key("IOCHANNEL", target.channel), rack.channelParameters()[3].name});
  }

  double lookUp()
  {
    long long sum = 0;
    for (const Path& path : m_paths)
    {
      const auto board = m_root.items().find(path.board);
      const auto channel = board->second.items().find(path.channel);
      sum += channel->second.parameters().find(path.parameter)->second.long64();
    }
    keep(sum);
    return static_cast<double>(m_paths.size());
  }

  double set()
  {
    long long value = 0;
    for (const Path& path : m_paths)
    {
      const auto board = m_root.mutable_items()->find(path.board);
      const auto channel = board->second.mutable_items()->find(path.channel);
      channel->second.mutable_parameters()->find(path.parameter)->second.set_long64(++value);
    }
    return static_cast<double>(m_paths.size());
  }

  MappedItem m_root;
  const Rack* m_treeOf = nullptr;
  std::vector<Path> m_paths;
};
}    // namespace

std::unique_ptr<System> makeProtobuf() { return std::make_unique<Protobuf>(false); }
std::unique_ptr<System> makeProtobufArena() { return std::make_unique<Protobuf>(true); }
std::unique_ptr<System> makeProtobufMap() { return std::make_unique<ProtobufMap>(); }
