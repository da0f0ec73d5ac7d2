// Random sequences of everything that makes, changes and ends pending values, on random trees with methods that fail in
// every way: the library and a small model must agree on every value, pending value, call and report after each step.

#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyPendingValue.h"
#include "support/KyTestPool.h"
#include "unit/tree/KyValueTypes.h"
#include "unit/writeback/KyScriptedMethods.h"
#include "unit/writeback/KyWriteBackReports.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int SEEDS = 300;
constexpr unsigned int STEPS = 60;
constexpr unsigned int TYPES = 12;

// ---- Values: each type has a value for every number below 100. Types are numbers, too: their place in the list.

template <typename T>
T valueOf(unsigned int n)
{
  if constexpr (std::is_same_v<T, KyCVersion>)
    return KyCVersion(n, 1, 2, 3);
  else if constexpr (std::is_same_v<T, KyCString>)
    return KyCString((n % 2 == 0 ? "v" + std::to_string(n) : "the long text of number " + std::to_string(n)).c_str());
  else
    return static_cast<T>(n);
}

// Calls the function with a null T* of the type of that number.
template <typename TFunction>
void withType(unsigned int type, TFunction function)
{
  unsigned int n = 0;
  KyValueTypes::forEach(
      [&](auto* typed)
      {
        if (n++ == type) function(typed);
      });
}

struct TTypeTexts
{
  unsigned int code;
  std::string name, getter, setter;
};
TTypeTexts textsOf(unsigned int type)
{
  TTypeTexts texts;
  withType(type,
           [&](auto* typed)
           {
             using TCase = KyValueCase<std::remove_pointer_t<decltype(typed)>>;
             texts = {TCase::code, TCase::name, TCase::getter, TCase::setter};
           });
  return texts;
}

// ---- The model ----

enum class TInfo
{
  NONE,
  WRITE,
  CHECK_AND_WRITE,
  NO_WRITE_METHOD,    // a write info with nothing in it
  UPDATE
};

// What a method does to some parameter.
struct TEffect
{
  enum
  {
    SET,
    DESIGNATE,
    END
  } kind;
  unsigned int target, type, value;
};

struct TScript
{
  std::vector<TEffect> effects;
  unsigned int reports = 0;
  bool result = true;
};

struct TParameter
{
  std::string id, address;
  unsigned int type, value;
  TInfo info;
  bool pending = false;
  unsigned int pendingType = 0, pendingValue = 0;
  TScript scripts[3] = {};    // by kind of method
  KyCInventoryParameter* real = nullptr;
};

struct TItem
{
  std::string address;
  std::vector<unsigned int> children, parameters;
  KyCInventoryItem* real;
};

class KyCModel
{
public:
  std::vector<TItem> items;    // the first is the root
  std::vector<TParameter> parameters;
  std::vector<KyReport> reports;
  std::vector<std::string> calls;

  void set(TParameter& parameter, unsigned int type, unsigned int value)
  {
    if (type == parameter.type)
    {
      parameter.value = value;
      return;
    }
    const TTypeTexts other = textsOf(type);
    reports.push_back(cannotBeSet(other.setter, parameter.id, textsOf(parameter.type).name, other.name));
    reports.push_back(cannotSetValue("setValue", parameter.address));
  }

  void designate(TParameter& parameter, unsigned int type, unsigned int value)
  {
    if (!hasWriteInfo(parameter))
      reports.push_back(cannotSetDesignatedValue(parameter.address));
    else if (parameter.pending && type != parameter.pendingType)
    {
      const TTypeTexts other = textsOf(type);
      reports.push_back(cannotBeSet(other.setter, "0", textsOf(parameter.pendingType).name, other.name));
      reports.push_back(cannotSetValueOfHolder());
    }
    else if (!parameter.pending && type != parameter.type)
      reports.push_back(incompatibleType(parameter.address));
    else
      makePending(parameter, type, value);
  }

  // Whether it can be read as that type.
  bool read(const TParameter& parameter, unsigned int type)
  {
    const TTypeTexts other = textsOf(type);
    if (!parameter.pending)
    {
      const bool isClass = other.name == "String" || other.name == "Version";
      reports.push_back(
          noDesignatedValueSpecified(isClass ? "getDesignatedValue<KyC" + other.name + ">" : "getDesignatedValue"));
      return false;
    }
    if (type == parameter.pendingType) return true;
    reports.push_back(cannotBeRead(other.getter, "0", textsOf(parameter.pendingType).name, other.name));
    reports.push_back(cannotGetValueOfHolder());
    return false;
  }

  void adopt(TParameter& parameter)
  {
    if (!parameter.pending)
      reports.push_back(noDesignatedValueDefined(parameter.address));
    else if (!read(parameter, parameter.type))
      reports.push_back(cannotRetrieveDesignatedValue(parameter.address));
    else
    {
      parameter.value = parameter.pendingValue;
      parameter.pending = false;
    }
  }

  static void makePending(TParameter& parameter, unsigned int type, unsigned int value)
  {
    parameter.pending = true;
    parameter.pendingType = type;
    parameter.pendingValue = value;
  }

  static bool hasWriteInfo(const TParameter& parameter)
  {
    return parameter.info != TInfo::NONE && parameter.info != TInfo::UPDATE;
  }

  void check(TParameter& parameter)
  {
    if (!parameter.pending || parameter.info != TInfo::CHECK_AND_WRITE) return;
    if (call(KyMethodKind::CHECK, parameter)) return;
    reports.push_back(checkFailed(parameter.address));
    parameter.pending = false;
  }

  void apply(TParameter& parameter)
  {
    if (!parameter.pending) return;
    if (parameter.info == TInfo::NO_WRITE_METHOD)
    {
      reports.push_back(changeNotImplemented(parameter.address));
      parameter.pending = false;
      return;
    }
    std::size_t before = reports.size();
    call(KyMethodKind::WRITE, parameter);
    if (reports.size() != before)
    {
      reports.push_back(cannotWriteNewValue(parameter.address));
      parameter.pending = false;
      return;
    }
    before = reports.size();
    adopt(parameter);
    if (reports.size() != before) reports.push_back(cannotAdoptNewValue(parameter.address));
  }

  void update(TParameter& parameter)
  {
    if (parameter.info != TInfo::UPDATE) return;
    const std::size_t before = reports.size();
    call(KyMethodKind::UPDATE, parameter);
    if (reports.size() != before) reports.push_back(cannotUpdateValue(parameter.address));
  }

  template <typename TFunction>
  void walk(unsigned int item, TFunction function)
  {
    for (const unsigned int child : items[item].children)
      walk(child, function);
    for (const unsigned int parameter : items[item].parameters)
      function(parameters[parameter]);
  }

private:
  bool call(KyMethodKind kind, const TParameter& parameter)
  {
    calls.push_back(std::string(KyScriptedMethods::name(kind)) + " " + parameter.address);
    const TScript& script = parameter.scripts[static_cast<int>(kind)];
    for (const TEffect& effect : script.effects)
    {
      TParameter& target = parameters[effect.target];
      if (effect.kind == TEffect::SET) set(target, effect.type, effect.value);
      if (effect.kind == TEffect::DESIGNATE) designate(target, effect.type, effect.value);
      if (effect.kind == TEffect::END) target.pending = false;
    }
    reports.insert(reports.end(), script.reports, KyScriptedMethods::report(kind, parameter.address));
    return script.result;
  }
};

// ---- The library beside it ----

class KyCRun
{
public:
  explicit KyCRun(unsigned int seed) : m_random(seed), m_root(m_pool, ROOT, "ROOT")
  {
    m_model.items.push_back({"", {}, {}, &m_root});
    for (unsigned int n = below(8); n > 0; --n)
      addItem();
    for (TItem& item : m_model.items)
      addParameters(item);
  }

  // Does one thing on both sides and tells what it was.
  std::string step()
  {
    if (m_model.parameters.empty() || below(3) == 0) return walk();
    TParameter& parameter = m_model.parameters[randomParameter()];
    const unsigned int type = randomType(parameter);
    const unsigned int value = below(100);
    switch (below(10))
    {
      case 0:
        m_model.adopt(parameter);
        parameter.real->adoptDesignatedValue(m_pool);
        return "adopt " + parameter.address;
      case 1:
        parameter.pending = false;
        parameter.real->deleteDesignatedValue();
        return "delete " + parameter.address;
      case 2:
        read(parameter, type);
        return "read " + parameter.address + " as type " + std::to_string(type);
      case 3:
        if (KyCModel::hasWriteInfo(parameter)) forcePending(parameter, type, value);
        return "force " + parameter.address + " to type " + std::to_string(type);
      default:
        m_model.designate(parameter, type, value);
        designate(m_pool, *parameter.real, type, value);
        return "designate " + parameter.address + " as type " + std::to_string(type);
    }
  }

  void compare()
  {
    EXPECT_TRUE(sameReports(m_pool.takeReports(), m_model.reports));
    EXPECT_EQ(m_methods.takeCalls(), m_model.calls);
    if (!m_model.calls.empty())
    {
      EXPECT_EQ(m_methods.lastContext(), m_context);
      EXPECT_EQ(m_methods.lastPool(), &m_pool);
    }
    m_model.reports.clear();
    m_model.calls.clear();
    for (const TParameter& parameter : m_model.parameters)
      compare(parameter);
  }

private:
  unsigned int below(unsigned int limit) { return static_cast<unsigned int>(m_random()) % limit; }
  unsigned int randomParameter() { return below(static_cast<unsigned int>(m_model.parameters.size())); }
  unsigned int randomItem() { return below(static_cast<unsigned int>(m_model.items.size())); }
  unsigned int randomType(const TParameter& parameter) { return below(4) == 0 ? below(TYPES) : parameter.type; }

  void addItem()
  {
    const auto number = static_cast<unsigned int>(m_model.items.size());
    TItem& parent = m_model.items[randomItem()];
    parent.children.push_back(number);
    const std::string element = "BOARD[" + std::to_string(number + 1) + "]";
    m_model.items.push_back({parent.address + element + "/", {}, {}, parent.real->addPath(m_pool, BOARD[number + 1])});
  }

  void addParameters(TItem& item)
  {
    const std::pair<const KyCInventoryAddress&, const char*> ids[] = {
        {SIZE, "98"}, {NAME, "3"}, {VERSION, "22"}, {OFFSET, "564"}};
    const char* const names[] = {"SIZE", "NAME", "VERSION", "OFFSET"};
    for (unsigned int n = 0; n < 4; ++n)
    {
      if (below(4) == 0) continue;
      TParameter parameter{ids[n].second, item.address + names[n], below(TYPES), below(100),
                           static_cast<TInfo>(below(5))};
      withType(parameter.type,
               [&](auto* typed)
               {
                 using T = std::remove_pointer_t<decltype(typed)>;
                 parameter.real = item.real->createParameter<T>(m_pool, ids[n].first, valueOf<T>(parameter.value), "",
                                                                below(2) == 0, 0);
               });
      hangMethods(parameter);
      item.parameters.push_back(static_cast<unsigned int>(m_model.parameters.size()));
      m_model.parameters.push_back(parameter);
    }
  }

  void hangMethods(const TParameter& parameter)
  {
    if (parameter.info == TInfo::WRITE) m_methods.hangWrite(*parameter.real);
    if (parameter.info == TInfo::CHECK_AND_WRITE) m_methods.hangCheckAndWrite(*parameter.real);
    if (parameter.info == TInfo::UPDATE) m_methods.hangUpdate(*parameter.real);
    if (parameter.info != TInfo::NO_WRITE_METHOD) return;
    KyInventoryAccess::setAuxInfo(
        *parameter.real, new KyNInventoryParameter::KyCAuxInfoWrite(nullptr, nullptr, KyCInventoryAddress(), nullptr));
  }

  static void designate(KyCErrorListPool& pool, KyCInventoryParameter& real, unsigned int type, unsigned int value)
  {
    withType(type,
             [&](auto* typed)
             {
               using T = std::remove_pointer_t<decltype(typed)>;
               real.setDesignatedValue<T>(pool, valueOf<T>(value));
             });
  }

  static void set(KyCErrorListPool& pool, KyCInventoryParameter& real, unsigned int type, unsigned int value)
  {
    withType(type,
             [&](auto* typed)
             {
               using T = std::remove_pointer_t<decltype(typed)>;
               real.setValue<T>(pool, valueOf<T>(value));
             });
  }

  void read(const TParameter& parameter, unsigned int type)
  {
    const bool readable = m_model.read(parameter, type);
    withType(type,
             [&](auto* typed)
             {
               using T = std::remove_pointer_t<decltype(typed)>;
               const T expected = readable ? valueOf<T>(parameter.pendingValue) : T();
               EXPECT_TRUE(parameter.real->getDesignatedValue<T>(m_pool) == expected);
             });
  }

  // A pending value that nobody has checked for its type.
  void forcePending(TParameter& parameter, unsigned int type, unsigned int value)
  {
    KyCModel::makePending(parameter, type, value);
    withType(type,
             [&](auto* typed)
             {
               using T = std::remove_pointer_t<decltype(typed)>;
               writeInfoOf(*parameter.real)
                   ->setDesignatedValue(new KyCInventoryParameter(m_pool, KyCInventoryAddress(0u), nullptr,
                                                                  valueOf<T>(value), nullptr, true, 0));
             });
  }

  std::string walk()
  {
    writeScripts();
    const unsigned int number = randomItem();
    const TItem& item = m_model.items[number];
    m_context = below(2) == 0 ? nullptr : m_model.items[randomItem()].real;
    switch (below(5))
    {
      case 0:
        m_model.walk(number, [](TParameter& parameter) { parameter.pending = false; });
        item.real->deleteDesignatedValues();
        return "deleteDesignatedValues " + item.address;
      case 1:
        m_model.walk(number, [&](TParameter& parameter) { m_model.update(parameter); });
        item.real->updateParameters(m_pool, m_context);
        return "updateParameters " + item.address;
      case 2:
        m_model.walk(number, [&](TParameter& parameter) { m_model.apply(parameter); });
        item.real->apply(m_pool, m_context);
        return "apply " + item.address;
      default:
        m_model.walk(number, [&](TParameter& parameter) { m_model.check(parameter); });
        item.real->check(m_pool, m_context);
        return "check " + item.address;
    }
  }

  // What each method does in the next walk: half of them nothing but to succeed.
  void writeScripts()
  {
    for (TParameter& parameter : m_model.parameters)
    {
      for (const KyMethodKind kind : {KyMethodKind::CHECK, KyMethodKind::WRITE, KyMethodKind::UPDATE})
      {
        TScript script;
        if (below(2) == 0)
        {
          script = {{}, below(3) == 0 ? 1 + below(2) : 0, below(2) == 0};
          for (unsigned int n = below(3); n > 0; --n)
            script.effects.push_back(randomEffect());
        }
        parameter.scripts[static_cast<int>(kind)] = script;
        m_methods.of(kind, *parameter.real) = {[this, effects = script.effects](KyCErrorListPool& pool)
                                               { run(pool, effects); },
                                               script.reports, script.result};
      }
    }
  }

  TEffect randomEffect()
  {
    const unsigned int target = randomParameter();
    const unsigned int type = randomType(m_model.parameters[target]);
    const unsigned int value = below(100);
    switch (below(5))
    {
      case 0:
        return {TEffect::END, target, type, value};
      case 1:
      case 2:
        return {TEffect::DESIGNATE, target, type, value};
      default:
        return {TEffect::SET, target, type, value};
    }
  }

  void run(KyCErrorListPool& pool, const std::vector<TEffect>& effects)
  {
    for (const TEffect& effect : effects)
    {
      KyCInventoryParameter& target = *m_model.parameters[effect.target].real;
      if (effect.kind == TEffect::SET) set(pool, target, effect.type, effect.value);
      if (effect.kind == TEffect::DESIGNATE) designate(pool, target, effect.type, effect.value);
      if (effect.kind == TEffect::END) target.deleteDesignatedValue();
    }
  }

  static void compareValue(const KyCInventoryParameter& real, unsigned int type, unsigned int value)
  {
    KyTestPool pool;
    withType(type,
             [&](auto* typed)
             {
               using T = std::remove_pointer_t<decltype(typed)>;
               EXPECT_TRUE(real.getValue<T>(pool) == valueOf<T>(value)) << "not " << value;
             });
  }

  static void compare(const TParameter& parameter)
  {
    SCOPED_TRACE(parameter.address);
    compareValue(*parameter.real, parameter.type, parameter.value);
    ASSERT_EQ(parameter.real->isDesignatedValueValid(), parameter.pending);
    if (!parameter.pending) return;
    const KyCInventoryParameter* const holder = writeInfoOf(*parameter.real)->getDesignatedValue();
    ASSERT_EQ(holder->getType(), textsOf(parameter.pendingType).code);
    compareValue(*holder, parameter.pendingType, parameter.pendingValue);
  }

  std::mt19937 m_random;
  KyTestPool m_pool;
  KyScriptedMethods m_methods;
  KyCModel m_model;
  KyCInventoryItem m_root;
  KyCInventoryItem* m_context = nullptr;
};
}    // namespace

TEST(KyWriteBackModel, agreesAfterEveryStepOfRandomSequences)
{
  for (unsigned int seed = 1; seed <= SEEDS && !testing::Test::HasFailure(); ++seed)
  {
    KyCRun run(seed);
    for (unsigned int n = 1; n <= STEPS && !testing::Test::HasFailure(); ++n)
    {
      const std::string what = run.step();
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(n) + ": " + what);
      run.compare();
    }
  }
}
