// This project's own library.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "KySystem.h"
#include "inventory/KyInventoryTree.h"

using namespace KyNInventoryIDs;

namespace
{
using Tree = std::unique_ptr<KyCInventoryItem>;

void create(KyCErrorListPool& pool, KyCInventoryItem& root, const KyCInventoryAddress& address,
            const ParameterKind& kind, const Value& value)
{
  const auto add = [&](const auto& typed)
  { root.createParameter(pool, address, typed, kind.unit, kind.isModifiable, kind.relevance); };
  switch (kind.type)
  {
    case ValueType::INT8:
      return add(static_cast<signed char>(value.number));
    case ValueType::INT16:
      return add(static_cast<short>(value.number));
    case ValueType::INT32:
      return add(static_cast<int>(value.number));
    case ValueType::LONG64:
      return add(static_cast<long long>(value.number));
    case ValueType::UINT8:
      return add(static_cast<unsigned char>(value.number));
    case ValueType::UINT16:
      return add(static_cast<unsigned short>(value.number));
    case ValueType::UINT32:
      return add(static_cast<unsigned int>(value.number));
    case ValueType::ULONG64:
      return add(static_cast<unsigned long long>(value.number));
    case ValueType::FLOAT32:
      return add(static_cast<float>(value.number) / 8);
    case ValueType::FLOAT64:
      return add(static_cast<double>(value.number) / 8);
    case ValueType::STRING:
      return add(KyCString(value.text->c_str(), static_cast<unsigned int>(value.text->size())));
    case ValueType::VERSION:
      return add(KyCVersion(static_cast<unsigned int>(value.number & 0xF),
                            static_cast<unsigned int>(value.number >> 4 & 0xFF), 0,
                            static_cast<unsigned int>(value.number >> 12 & 0xFFF)));
  }
}

// By address from the root, one parameter after the other, as a program does that knows where its values belong.
Tree build(const Rack& rack, unsigned int channels)
{
  KyCErrorListPool pool;
  Tree root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  for (unsigned int b = 1; b <= rack.boards(); ++b)
  {
    const KyCInventoryAddress board = BOARD[b];
    unsigned int n = 0;
    for (const ParameterKind& kind : rack.boardParameters())
      create(pool, *root, board / kind.id, kind, rack.value(b, 0, n++));
    for (unsigned int c = 1; c <= channels; ++c)
    {
      const KyCInventoryAddress channel = board / IOCHANNEL[c];
      n = 0;
      for (const ParameterKind& kind : rack.channelParameters())
        create(pool, *root, channel / kind.id, kind, rack.value(b, c, n++));
    }
  }
  if (pool.getErrorCount() != 0) std::abort();
  return root;
}

bool writeNothing(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }
bool checkNothing(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

template <typename Visit>
void forEachParameter(KyCInventoryItem& top, Visit visit)
{
  KyCInventoryItem* item = &top;
  for (;;)
  {
    for (KyCInventoryParameter* p = item->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
      visit(*p);
    if (item->getFirstSubItem() != nullptr)
    {
      item = item->getFirstSubItem();
      continue;
    }
    while (item != &top && item->getNext() == nullptr)
      item = item->getParent();
    if (item == &top) return;
    item = item->getNext();
  }
}

// Designates 1 (or a text or a version) for a parameter of any type.
void designate(KyCErrorListPool& pool, KyCInventoryParameter& p)
{
  switch (p.getType())
  {
    case KyCParam::TYPE_INT8:
      return p.setDesignatedValue<signed char>(pool, 1);
    case KyCParam::TYPE_INT16:
      return p.setDesignatedValue<short>(pool, 1);
    case KyCParam::TYPE_INT32:
      return p.setDesignatedValue<int>(pool, 1);
    case KyCParam::TYPE_LONG64:
      return p.setDesignatedValue<long long>(pool, 1);
    case KyCParam::TYPE_UINT8:
      return p.setDesignatedValue<unsigned char>(pool, 1);
    case KyCParam::TYPE_UINT16:
      return p.setDesignatedValue<unsigned short>(pool, 1);
    case KyCParam::TYPE_UINT32:
      return p.setDesignatedValue<unsigned int>(pool, 1);
    case KyCParam::TYPE_ULONG64:
      return p.setDesignatedValue<unsigned long long>(pool, 1);
    case KyCParam::TYPE_FLOAT32:
      return p.setDesignatedValue<float>(pool, 1);
    case KyCParam::TYPE_FLOAT64:
      return p.setDesignatedValue<double>(pool, 1);
    case KyCParam::TYPE_STRING:
      return p.setDesignatedValue<KyCString>(pool, "a new text of usual length");
    case KyCParam::TYPE_VERSION:
      return p.setDesignatedValue<KyCVersion>(pool, KyCVersion(1, 2, 3, 4));
    default:
      std::abort();
  }
}

class Ours : public System
{
public:
  const char* name() const override { return "ours"; }

  std::optional<Measure> measure(Operation operation, const Rack& rack) override
  {
    const double parameters = rack.parameterCount();
    switch (operation)
    {
      case Operation::BUILD:
        return Measure{{},
                       [=, &rack]
                       {
                         m_work = build(rack, rack.channels());
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::DESTROY:
        return Measure{[=, &rack] { m_work = build(rack, rack.channels()); },
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
                         store(*m_tree, nullptr);
                         return parameters;
                       },
                       {}};
      case Operation::EXTRACT_MEM:
        return Measure{[=, &rack] { section(rack); },
                       [=]
                       {
                         m_work = extract(m_section);
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::EXTRACT_FILE:
        return Measure{[=, &rack] { writeFile(rack); },
                       [=]
                       {
                         m_work = extractFile();
                         return parameters;
                       },
                       [=]
                       {
                         m_work.reset();
                         std::remove(s_file);
                       }};
      case Operation::LOOKUP:
        return Measure{[=, &rack]
                       {
                         tree(rack);
                         addresses(rack);
                       },
                       [=] { return lookUp(); },
                       {}};
      case Operation::SET:
        return Measure{[=, &rack]
                       {
                         tree(rack);
                         addresses(rack);
                       },
                       [=] { return set(); },
                       {}};
      case Operation::DUMP:
        return Measure{[=, &rack] { tree(rack); }, [=] { return dump(); }, {}};
      case Operation::COPY:
        return Measure{[=, &rack] { tree(rack); },
                       [=]
                       {
                         m_work = copy();
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::MERGE:
        return Measure{[=, &rack]
                       {
                         m_target = build(rack, rack.channels() / 2);
                         m_work = build(rack, rack.channels());
                       },
                       [=]
                       {
                         merge();
                         return parameters;
                       },
                       [=] { m_target.reset(); }};
      case Operation::LINK:
        return Measure{[=, &rack] { m_work = buildShared(rack); },
                       [=]
                       {
                         link();
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
      case Operation::APPLY:
        return Measure{[=, &rack] { m_work = buildDesignated(rack); },
                       [=]
                       {
                         apply();
                         return parameters;
                       },
                       [=] { m_work.reset(); }};
    }
    return std::nullopt;
  }

  std::size_t storedSize(const Rack& rack) override { return section(rack).size(); }

  bool hold(const Rack& rack, bool isRead) override
  {
    m_work = build(rack, rack.channels());
    if (isRead)
    {
      std::string stored;    // gone at the end: what is held is the tree alone
      store(*m_work, &stored);
      m_work.reset();
      m_work = extract(stored);
    }
    return true;
  }
  void release() override { m_work.reset(); }

private:
  static constexpr const char* s_file = "/tmp/ky-bench.kyinv";

  // The tree of the rack asked for last; built once for all operations that leave it as it is.
  KyCInventoryItem& tree(const Rack& rack)
  {
    if (m_treeOf != &rack)
    {
      m_tree.reset();
      m_tree = build(rack, rack.channels());
      m_treeOf = &rack;
    }
    return *m_tree;
  }

  const std::string& section(const Rack& rack)
  {
    if (m_sectionOf != &rack)
    {
      store(tree(rack), &m_section);
      m_sectionOf = &rack;
    }
    return m_section;
  }

  static void store(KyCInventoryItem& root, std::string* section)
  {
    KyCErrorListPool pool;
    KyCBuffer buffer(pool);
    KyCInventoryData::generateInventorySection(pool, buffer, &root);
    if (pool.getErrorCount() != 0) std::abort();
    keep(buffer.getStorage());
    if (section != nullptr)
      section->assign(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
  }

  static Tree extract(const std::string& stored)
  {
    KyCErrorListPool pool;
    KyCInventoryItem* root = nullptr;
    KyCInventoryData::extractInventoryTreeFromMem(pool, reinterpret_cast<const unsigned char*>(stored.data()),
                                                  static_cast<unsigned int>(stored.size()), root);
    if (root == nullptr) std::abort();
    return Tree(root);
  }

  void writeFile(const Rack& rack)
  {
    std::FILE* const file = std::fopen(s_file, "wb");
    const std::string& bytes = section(rack);
    if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) std::abort();
    std::fclose(file);
  }

  Tree extractFile()
  {
    KyCErrorListPool pool;
    KyCInventoryItem* root = nullptr;
    KyCInventoryData::extractInventoryTreeFromFile(pool, s_file, root);
    if (root == nullptr) std::abort();
    return Tree(root);
  }

  void addresses(const Rack& rack)
  {
    if (m_addressesOf == &rack) return;
    m_addresses.clear();
    for (const Target& target : randomTargets(rack, 100000))
      m_addresses.push_back(BOARD[target.board] / IOCHANNEL[target.channel] / SIZE64);
    m_addressesOf = &rack;
  }

  double lookUp()
  {
    KyCErrorListPool pool;
    long long sum = 0;
    for (const KyCInventoryAddress& address : m_addresses)
      sum += m_tree->getValue<long long>(pool, address);
    keep(sum);
    return static_cast<double>(m_addresses.size());
  }

  double set()
  {
    KyCErrorListPool pool;
    long long value = 0;
    for (const KyCInventoryAddress& address : m_addresses)
      m_tree->setValue<long long>(pool, address, ++value);
    return static_cast<double>(m_addresses.size());
  }

  double dump()
  {
    KyCErrorListPool pool;
    const KyCString text = m_tree->toString(pool, 0, 0);
    keep(text.c_str());
    return text.length();
  }

  Tree copy()
  {
    KyCErrorListPool pool;
    KyCInventoryItem* other = nullptr;
    m_tree->copyTree(pool, other);
    return Tree(other);
  }

  void merge()
  {
    KyCErrorListPool pool;
    KyCInventoryItem* target = m_target.get();
    KyCInventoryItem* source = m_work.release();
    KyCInventoryItem::mergeTree(pool, target, source, 1);
    if (pool.getErrorCount() != 0) std::abort();
  }

  // Every board refers to the same shared data, which has a counterpart of each of its channels.
  static Tree buildShared(const Rack& rack)
  {
    KyCErrorListPool pool;
    Tree root = build(rack, rack.channels());
    for (unsigned int b = 1; b <= rack.boards(); ++b)
      root->createParameter<unsigned int>(pool, BOARD[b] / SHARED_DATA_INDEX, 1u, nullptr, false, 0);
    for (unsigned int c = 1; c <= rack.channels(); ++c)
      root->createParameter<int>(pool, SHARED_DATA / IOCHANNEL[c] / LENGTH, 1, nullptr, false, 0);
    return root;
  }

  void link()
  {
    KyCErrorListPool pool;
    m_work->linkSharedData(pool, nullptr);
  }

  static Tree buildDesignated(const Rack& rack)
  {
    KyCErrorListPool pool;
    Tree root = build(rack, rack.channels());
    forEachParameter(*root,
                     [&](KyCInventoryParameter& p)
                     {
                       p.setCheckAndWriteMethod(pool, checkNothing, writeNothing, THIS_NODE, nullptr);
                       designate(pool, p);
                     });
    return root;
  }

  void apply()
  {
    KyCErrorListPool pool;
    m_work->check(pool, nullptr);
    m_work->apply(pool, nullptr);
    if (pool.getErrorCount() != 0) std::abort();
  }

  Tree m_tree;
  const Rack* m_treeOf = nullptr;
  std::string m_section;
  const Rack* m_sectionOf = nullptr;
  std::vector<KyCInventoryAddress> m_addresses;
  const Rack* m_addressesOf = nullptr;
  Tree m_work;
  Tree m_target;
};
}    // namespace

std::unique_ptr<System> makeOurs() { return std::make_unique<Ours>(); }
