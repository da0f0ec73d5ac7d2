// Sequences of operations on two trees: building, values, pending values and their methods, moving, renaming, merging,
// copying, linking, storing and reading. Each operation reports what the state model says, and the trees stay what it says.
#include "KyFuzz.h"
#include "KyTreeState.h"
#include "errorhandling/KyCErrorManager.h"

using namespace KyNInventoryIDs;
using KyNTreeState::Calls;
using KyNTreeState::Codes;
using KyNTreeState::Element;
using KyNTreeState::Methods;
using KyNTreeState::Parameter;
using KyNTreeState::Path;
using KyNTreeState::Temper;
using KyNTreeState::TreeState;
using KyNTreeState::Value;
using KyNTreeState::operator/;

namespace
{
constexpr unsigned int NOT_PREDEFINED = 5000000;
constexpr unsigned int MOST_OPERATIONS = 100;
constexpr unsigned int UNSIGNED_INT = 6;    // of the types below

template <typename T>
struct Type
{
  using type = T;
};

// --- Values -------------------------------------------------------------------------------------------------------------

template <typename TAction>
void withType(unsigned int type, TAction action)
{
  switch (type)
  {
    case 0:
      return action(Type<signed char>());
    case 1:
      return action(Type<short>());
    case 2:
      return action(Type<int>());
    case 3:
      return action(Type<long long>());
    case 4:
      return action(Type<unsigned char>());
    case 5:
      return action(Type<unsigned short>());
    case UNSIGNED_INT:
      return action(Type<unsigned int>());
    case 7:
      return action(Type<unsigned long long>());
    case 8:
      return action(Type<float>());
    case 9:
      return action(Type<double>());
    case 10:
      return action(Type<KyCString>());
    default:
      return action(Type<KyCVersion>());
  }
}

template <typename T>
T valueAs(const Value& value)
{
  if constexpr (std::is_same_v<T, KyCString>)
    return KyCString(value.text.c_str());
  else if constexpr (std::is_same_v<T, KyCVersion>)
    return KyCVersion(static_cast<unsigned int>(value.bits >> 32), static_cast<unsigned int>(value.bits), 3, 4);
  else if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(static_cast<short>(value.bits)) / 4;    // no NaN, which equals nothing
  else
    return static_cast<T>(value.bits);
}

void requireValue(const KyCInventoryParameter& parameter, const Value& value)
{
  withType(value.type,
           [&](auto tag)
           {
             using T = typename decltype(tag)::type;
             KyCErrorListPool pool;
             require(parameter.getValue<T>(pool) == valueAs<T>(value) && pool.getErrorCount() == 0);
           });
}

// --- Methods ------------------------------------------------------------------------------------------------------------

Calls s_calls;
int s_rejects;
int s_fails;

bool checkMethod(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  ++s_calls.checks;
  return parameter->getCustomPointer() != &s_rejects;
}

bool writeMethod(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  ++s_calls.writes;
  if (parameter->getCustomPointer() == &s_fails) pool.setError(KyNTreeState::WRITE_FAILED, __LINE__, "write", nullptr);
  return false;    // does not count
}

bool updateMethod(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  ++s_calls.updates;
  if (parameter->getRelevance() % 2 != 0) pool.setError(KyNTreeState::UPDATE_FAILED, __LINE__, "update", nullptr);
  return false;
}

class Warnings : public KyIErrorListener
{
public:
  Warnings() : m_before(KyCErrorManager::getSingleton()->setListener(this)) {}
  ~Warnings() override { KyCErrorManager::getSingleton()->setListener(m_before); }
  void onError(const KyErrorEntry&) override { require(false); }
  void onWarning(const KyErrorEntry& entry) override { m_codes.push_back(entry.code); }

  KyIErrorListener* m_before;
  Codes m_codes;
};

// --- Trees --------------------------------------------------------------------------------------------------------------

const KyCInventoryAddress& idOf(unsigned int n)
{
  static const KyCInventoryAddress unknown(NOT_PREDEFINED);
  static const KyCInventoryAddress* const ids[] = {&BOARD, &CPU,  &SHARED_DATA, &SHARED_DATA_INDEX,
                                                   &SIZE,  &NAME, &ROOT,        &unknown};
  return *ids[n % 8];
}

const std::set<unsigned int>& predefined()
{
  static const std::set<unsigned int> ids = []
  {
    std::set<unsigned int> all;
    for (unsigned int n = 0; n < 7; ++n)
      all.insert(idOf(n).getCategory());
    return all;
  }();
  return ids;
}

KyCInventoryAddress addressOf(const Path& path)
{
  KyCInventoryAddress address;
  for (const Element& element : path)
    address.append(KyCInventoryAddress(element.first, element.second));
  return address;
}

KyCInventoryAddress addressOf(const Path& item, unsigned int id) { return addressOf(item) / KyCInventoryAddress(id); }

Codes codesOf(const KyCErrorListPool& pool)
{
  Codes codes;
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
    codes.push_back(pool.getEntry(n).code);
  return codes;
}

struct Tree
{
  Tree() : state(Element(ROOT.getCategory(), 1), predefined())
  {
    KyCErrorListPool pool;
    root.reset(new KyCInventoryItem(pool, ROOT, "ROOT"));
  }
  KyCInventoryItem& item(const Path& path) const
  {
    KyCInventoryItem* const found = root->getItem(addressOf(path));
    require(found != nullptr);
    return *found;
  }

  FuzzTree root;
  TreeState state;
};

void requireParameter(const KyCInventoryParameter& parameter, const Parameter& state, unsigned int id)
{
  requireValue(parameter, state.value);
  require(parameter.getID() == KyCInventoryAddress(id) && parameter.getUnit() == state.unit);
  require(parameter.getDescription() == std::string(Map.get(id)));
  require(parameter.isModifiable() == state.isModifiable && parameter.getRelevance() == state.relevance);
  require((parameter.getWriteMethod() != nullptr) == (state.methods == Methods::WRITE));
  require((parameter.getCheckMethod() != nullptr) == state.hasCheck);
  require((parameter.getUpdateMethod() != nullptr) == (state.methods == Methods::UPDATE));
  require(parameter.isDesignatedValueValid() == state.pending.has_value());
  if (!state.pending) return;
  withType(state.pending->type,
           [&](auto tag)
           {
             using T = typename decltype(tag)::type;
             KyCErrorListPool pool;
             require(parameter.getDesignatedValue<T>(pool) == valueAs<T>(*state.pending));
           });
}

// Item by item, in list order, and each one found by its address.
void requireTree(Tree& tree)
{
  require(tree.root->getID() == addressOf({tree.state.root()}));
  std::vector<std::pair<Path, KyCInventoryItem*>> open = {{Path(), tree.root.get()}};
  while (!open.empty())
  {
    const auto [path, item] = open.back();
    open.pop_back();
    require(tree.root->getItem(addressOf(path)) == item && item->getAddress() == addressOf(path));
    const KyCInventoryParameter* parameter = item->getParameterByOrdinalNumber(0);
    for (const unsigned int id : tree.state.parametersOf(path))
    {
      require(parameter != nullptr && parameter->getParent() == item);
      require(tree.root->getParameter(addressOf(path, id)) == parameter);
      requireParameter(*parameter, *tree.state.parameter(path, id), id);
      parameter = const_cast<KyCInventoryParameter*>(parameter)->getNext();
    }
    require(parameter == nullptr);
    KyCInventoryItem* subItem = item->getFirstSubItem();
    for (const Path& subPath : tree.state.subItems(path))
    {
      require(subItem != nullptr && subItem->getParent() == item);
      require(subItem->getID() == addressOf({subPath.back()}));
      open.emplace_back(subPath, subItem);
      subItem = subItem->getNext();
    }
    require(subItem == nullptr);
  }
}

// --- Operations ---------------------------------------------------------------------------------------------------------

class Run
{
public:
  explicit Run(FuzzInput& input) : m_input(input) {}

  void operation()
  {
    const unsigned int kind = m_input.below(20);
    Tree& tree = m_trees[m_input.below(2)];
    const Path at = anyItem(tree);
    m_pool = std::make_unique<KyCErrorListPool>();
    m_codes.clear();
    perform(kind, tree, at);
    require(codesOf(*m_pool) == m_codes && m_pool->getErrorCount() == m_codes.size() && s_calls == m_calls);
  }

  void requireTrees()
  {
    for (Tree& tree : m_trees)
      requireTree(tree);
  }

private:
  void perform(unsigned int kind, Tree& tree, const Path& at)
  {
    switch (kind)
    {
      case 0:
        return addPath(tree, at);
      case 1:
      case 2:
      case 3:
        return createParameter(tree, at);
      case 4:
        return setValue(tree, at);
      case 5:
        return getValue(tree, at);
      case 6:
        return setAccessories(tree, at);
      case 7:
      case 8:
        return setMethods(tree, at);
      case 9:
      case 10:
        return setDesignated(tree, at);
      case 11:
      case 12:
        return walk(tree, at);
      case 13:
        return moveItem(tree, at);
      case 14:
        return moveParameter(tree, at);
      case 15:
        return rename(tree, at);
      case 16:
        return copy(tree, at);
      case 17:
        return merge(tree);
      case 18:
        return link(tree, at);
      default:
        return storeAndRead(tree, at);
    }
  }

  // --- Taken from the input ---

  Path anyItem(const Tree& tree)
  {
    auto found = tree.state.items().begin();
    std::advance(found,
                 m_input.below(static_cast<unsigned int>(std::min<std::size_t>(tree.state.items().size(), 256))));
    return found->first;
  }
  Path anyPath()
  {
    Path path;
    for (unsigned int n = m_input.below(4); n > 0; --n)
      path.push_back(anyElement());
    return path;
  }
  Element anyElement()
  {
    const unsigned int n = m_input.number(1);
    return {idOf(n).getCategory(), n < 128 ? 1 : (n >> 3) % 4};
  }
  // Mostly one that is there.
  unsigned int anyParameter(const Tree& tree, const Path& at)
  {
    const std::vector<unsigned int> ids = tree.state.parametersOf(at);
    const unsigned int n = m_input.number(1);
    return ids.empty() || n >= 200 ? idOf(n).getCategory() : ids[n % ids.size()];
  }
  Value anyValue()
  {
    Value value;
    value.type = m_input.below(12);
    value.bits = m_input.number(4);
    value.bits = value.bits << 32 | (value.bits * 40503u);
    if (value.type == 10)
      value.text.assign(static_cast<std::size_t>(value.bits % 20), static_cast<char>('a' + value.bits % 26));
    return value;
  }

  // --- Building and values ---

  void addPath(Tree& tree, const Path& at)
  {
    const Path path = anyPath();
    const std::optional<Path> expected = tree.state.addPath(m_codes, at, path);
    const KyCInventoryItem* const made = tree.item(at).addPath(*m_pool, addressOf(path));
    require((made != nullptr) == expected.has_value());
    if (made != nullptr) require(made == &tree.item(*expected));
  }

  void createParameter(Tree& tree, const Path& at)
  {
    const Path path = anyPath();
    Parameter parameter;
    parameter.value = anyValue();
    parameter.unit.assign(m_input.below(12), 'u');
    parameter.isModifiable = m_input.below(2) != 0;
    parameter.relevance = m_input.number(1);
    withType(parameter.value.type,
             [&](auto tag)
             {
               using T = typename decltype(tag)::type;
               tree.item(at).createParameter<T>(*m_pool, addressOf(path), valueAs<T>(parameter.value),
                                                parameter.unit.c_str(), parameter.isModifiable, parameter.relevance);
             });
    tree.state.createParameter(m_codes, at, path, parameter);
  }

  void setValue(Tree& tree, const Path& at)
  {
    const unsigned int id = anyParameter(tree, at);
    const Value value = anyValue();
    Parameter* const expected = tree.state.parameter(at, id);
    if (expected == nullptr)
      m_codes = {0x1300801};
    else if (expected->value.type != value.type)
      m_codes = {0x1100801, 0x1301007};
    else
      expected->value = value;
    withType(value.type,
             [&](auto tag)
             {
               using T = typename decltype(tag)::type;
               const KyCInventoryParameter* const set =
                   tree.root->setValue<T>(*m_pool, addressOf(at, id), valueAs<T>(value));
               require((set != nullptr) == (expected != nullptr));
             });
  }

  void getValue(Tree& tree, const Path& at)
  {
    const unsigned int id = anyParameter(tree, at);
    const unsigned int type = m_input.below(12);
    const Parameter* const expected = tree.state.parameter(at, id);
    const bool isOfType = expected != nullptr && expected->value.type == type;
    if (expected == nullptr)
      m_codes = {0x1300801};
    else if (!isOfType)
      m_codes = {0x1100800, 0x1301008};
    withType(type,
             [&](auto tag)
             {
               using T = typename decltype(tag)::type;
               require(tree.item(at).getValue<T>(*m_pool, KyCInventoryAddress(id)) ==
                       (isOfType ? valueAs<T>(expected->value) : T()));
             });
  }

  void setAccessories(Tree& tree, const Path& at)
  {
    const unsigned int id = anyParameter(tree, at);
    Parameter* const expected = tree.state.parameter(at, id);
    KyCInventoryParameter* const parameter = tree.root->getParameter(addressOf(at, id));
    require((parameter != nullptr) == (expected != nullptr));
    if (parameter == nullptr) return;
    expected->unit.assign(m_input.below(101), 'U');
    expected->isModifiable = !expected->isModifiable;
    expected->relevance = m_input.number(4);
    parameter->setUnit(expected->unit.c_str());
    parameter->setModifiableFlag(expected->isModifiable);
    parameter->setRelevance(expected->relevance);
  }

  // --- Pending values ---

  void setMethods(Tree& tree, const Path& at)
  {
    const unsigned int id = anyParameter(tree, at);
    const unsigned int how = m_input.number(1);
    Parameter* const expected = tree.state.parameter(at, id);
    KyCInventoryParameter* const parameter = tree.root->getParameter(addressOf(at, id));
    if (parameter == nullptr) return require(expected == nullptr);
    const bool isUpdate = how % 4 == 0;
    const bool isNull = how % 16 > 13;
    if (expected->methods != Methods::NONE || isNull)
      m_codes = {0x1301009};
    else
    {
      expected->methods = isUpdate ? Methods::UPDATE : Methods::WRITE;
      expected->hasCheck = !isUpdate && how % 8 > 1;
      expected->temper = how > 200 ? Temper::REJECTS : how > 150 ? Temper::FAILS : Temper::AGREES;
    }
    if (isUpdate)
      parameter->setUpdateMethod(*m_pool, isNull ? nullptr : updateMethod);
    else
      parameter->setCheckAndWriteMethod(*m_pool, how % 8 > 1 ? checkMethod : nullptr, isNull ? nullptr : writeMethod,
                                        THIS_NODE,
                                        how > 200   ? &s_rejects
                                        : how > 150 ? &s_fails
                                                    : nullptr);
  }

  void setDesignated(Tree& tree, const Path& at)
  {
    const unsigned int id = anyParameter(tree, at);
    Value value = anyValue();
    Parameter* const expected = tree.state.parameter(at, id);
    KyCInventoryParameter* const parameter = tree.root->getParameter(addressOf(at, id));
    if (parameter == nullptr) return require(expected == nullptr);
    if (m_input.below(4) != 0) value.type = expected->value.type;
    TreeState::setDesignated(m_codes, *expected, value);
    withType(value.type,
             [&](auto tag)
             {
               using T = typename decltype(tag)::type;
               parameter->setDesignatedValue<T>(*m_pool, valueAs<T>(value));
             });
  }

  void walk(Tree& tree, const Path& at)
  {
    switch (m_input.below(5))
    {
      case 0:
        tree.item(at).deleteDesignatedValues();
        return tree.state.forgetPending(at);
      case 1:
        tree.item(at).updateParameters(*m_pool, nullptr);
        return tree.state.update(m_codes, m_calls, at);
      case 2:
        tree.item(at).check(*m_pool, nullptr);
        return tree.state.check(m_codes, m_calls, at);
      default:
        tree.item(at).apply(*m_pool, tree.root.get());
        return tree.state.apply(m_codes, m_calls, at);
    }
  }

  // --- Moving ---

  void moveItem(Tree& tree, const Path& at)
  {
    if (at.empty()) return require(tree.root->detach() == 0);
    FuzzTree moved(&tree.item(at));
    require(moved->detach() == 0 && moved->getParent() == nullptr);
    TreeState part = tree.state.take(at);
    Tree& target = m_trees[m_input.below(2)];
    const Path where = anyItem(target) / anyPath();
    const bool isAttached = target.state.attach(where, std::move(part));
    require((target.root->addItem(addressOf(where), moved.get()) != nullptr) == isAttached);
    if (isAttached) moved.release();
  }

  void moveParameter(Tree& tree, const Path& at)
  {
    const unsigned int id = anyParameter(tree, at);
    const bool isThere = tree.state.hasParameter(at, id);
    std::unique_ptr<KyCInventoryParameter> moved(tree.item(at).detachParameter(id));
    require((moved != nullptr) == isThere);
    if (!isThere) return;
    const Parameter state = *tree.state.parameter(at, id);
    tree.state.parameters().erase({at, id});
    Tree& target = m_trees[m_input.below(2)];
    const Path where = anyItem(target) / anyPath();
    const bool isAdded = target.state.hasItem(where) && target.state.addParameter(m_codes, where, id, state);
    require((target.root->addParameter(*m_pool, addressOf(where), moved.get()) != nullptr) == isAdded);
    if (isAdded) moved.release();
  }

  // Only to what it may be called: a conflict goes to the master error list, and two siblings of one ID are not modelled.
  void rename(Tree& tree, const Path& at)
  {
    const Element id = anyElement();
    if (predefined().count(id.first) == 0) return;
    if (!at.empty())
    {
      const Path parent(at.begin(), at.end() - 1);
      if (tree.state.hasParameter(parent, id.first)) return;
      if (tree.state.hasItem(parent / id) && at.back() != id) return;
    }
    const KyCErrorListPool& master = KyCErrorManager::getSingleton()->getMasterErrorList();
    const unsigned int before = master.getErrorCount();
    tree.item(at).setID(addressOf({id}));
    require(master.getErrorCount() == before);
    tree.state.rename(at, id);
  }

  // --- Whole trees ---

  FuzzTree copyOf(const Tree& tree, const Path& at)
  {
    KyCInventoryItem* copied = nullptr;
    tree.item(at).copyTree(*m_pool, copied);
    require(copied != nullptr);
    return FuzzTree(copied);
  }

  // Takes the place of the other tree.
  void copy(Tree& tree, const Path& at)
  {
    FuzzTree copied = copyOf(tree, at);
    TreeState state = tree.state.copyOf(m_codes, at);
    Tree& other = m_trees[&tree == &m_trees[0] ? 1 : 0];
    other.root = std::move(copied);
    other.state = std::move(state);
  }

  void storeAndRead(Tree& tree, const Path& at)
  {
    const std::string section = sectionOf(tree.item(at));
    FuzzTree read = treeOf(reinterpret_cast<const std::uint8_t*>(section.data()), section.size());
    require(read != nullptr && sectionOf(*read) == section);
    TreeState state = tree.state.partOf(at);
    state.forgetMethods();
    tree.root = std::move(read);
    tree.state = std::move(state);
  }

  void merge(Tree& tree)
  {
    Tree& other = m_trees[&tree == &m_trees[0] ? 1 : 0];
    const unsigned int flags = m_input.number(1);
    KyCInventoryItem* source = other.root.release();
    KyCInventoryItem* target = tree.root.release();
    if (flags > 250)    // with itself
    {
      delete source;
      source = target;
    }
    else if (flags > 240)    // with nothing
    {
      delete target;
      target = nullptr;
      tree.state = std::move(other.state);
    }
    std::vector<FuzzTree> lost;    // what the merge gives up is nobody's
    if (flags <= 240)
    {
      std::vector<Path> givenUp;
      tree.state.merge(m_codes, other.state, flags % 2 != 0, givenUp);
      for (const Path& path : givenUp)
        lost.emplace_back(source->getItem(addressOf(path)));
    }
    KyCInventoryItem::mergeTree(*m_pool, target, source, flags);
    require(source == nullptr && target != nullptr);
    tree.root.reset(target);
    other = Tree();
  }

  // A copy: links hold only as long as nobody changes the tree.
  void link(const Tree& tree, const Path& at)
  {
    const FuzzTree linked = copyOf(tree, at);
    TreeState state = tree.state.copyOf(m_codes, at);
    Warnings warnings;
    Codes expected;
    state.link(m_codes, expected, SHARED_DATA.getCategory(), SHARED_DATA_INDEX.getCategory(), UNSIGNED_INT);
    linked->linkSharedData(*m_pool, nullptr);
    require(warnings.m_codes == expected);
    unsigned int looks = 0;
    for (const auto& entry : state.items())
    {
      if (++looks > 16) break;
      KyCInventoryItem* const item = linked->getItem(addressOf(entry.first));
      for (unsigned int n = 0; n < 8; ++n)
        requireLookUps(state, entry.first, *item, n);
    }
  }

  static void requireLookUps(const TreeState& state, const Path& at, KyCInventoryItem& item, unsigned int n)
  {
    const Path path = {Element(idOf(n).getCategory(), 1), Element(idOf(n / 2).getCategory(), 1)};
    const KyCInventoryItem* const found = item.getItem(addressOf(path));
    const std::optional<Path> expected = state.find(at, path);
    require((found != nullptr) == expected.has_value());
    if (expected) require(found->getAddress() == addressOf(*expected));

    const unsigned int id = idOf(n).getCategory();
    const KyCInventoryParameter* const parameter = item.getParameter(KyCInventoryAddress(id));
    const std::optional<Path> owner = state.findParameter(at, id);
    require((parameter != nullptr) == owner.has_value());
    if (owner) require(parameter->getAddress() == addressOf(*owner, id));
  }

  FuzzInput& m_input;
  Tree m_trees[2];
  std::unique_ptr<KyCErrorListPool> m_pool;
  Codes m_codes;    // expected of this operation
  Calls m_calls;
};
}    // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  FuzzInput input(data, size);
  s_calls = Calls();
  Run run(input);
  for (unsigned int n = 0; n < MOST_OPERATIONS && !input.isEmpty(); ++n)
  {
    run.operation();
    if (n % 8 == 0) run.requireTrees();
  }
  run.requireTrees();
  return 0;
}
