// KyScriptedMethods.h: check, write and update methods that do what a test has told them, and tell of their calls.
//
//   KyScriptedMethods methods;
//   methods.hangCheckAndWrite(*size);
//   methods.of(KyMethodKind::WRITE, *size).reports = 1;
//   root.apply(pool, &root);
//   methods.takeCalls();    // {"write SIZE"}
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"

enum class KyMethodKind
{
  CHECK,
  WRITE,
  UPDATE
};

// What one method of one parameter is to do, in this order.
struct KyMethodScript
{
  std::function<void(KyCErrorListPool& pool)> action;    // may be missing
  unsigned int reports = 0;
  bool result = true;
};

// There is one at a time: methods are plain functions and find their scripts through it.
class KyScriptedMethods
{
public:
  KyScriptedMethods() { s_current = this; }
  ~KyScriptedMethods() { s_current = nullptr; }
  KyScriptedMethods(const KyScriptedMethods&) = delete;
  KyScriptedMethods& operator=(const KyScriptedMethods&) = delete;

  void hangCheckAndWrite(KyCInventoryParameter& parameter)
  {
    KyTestPool pool;
    parameter.setCheckAndWriteMethod(pool, run<KyMethodKind::CHECK>, run<KyMethodKind::WRITE>,
                                     KyNInventoryIDs::THIS_NODE, nullptr);
  }
  void hangWrite(KyCInventoryParameter& parameter)
  {
    KyTestPool pool;
    parameter.setCheckAndWriteMethod(pool, nullptr, run<KyMethodKind::WRITE>, KyNInventoryIDs::THIS_NODE, nullptr);
  }
  void hangUpdate(KyCInventoryParameter& parameter)
  {
    KyTestPool pool;
    parameter.setUpdateMethod(pool, run<KyMethodKind::UPDATE>);
  }

  KyMethodScript& of(KyMethodKind kind, const KyCInventoryParameter& parameter)
  {
    return m_scripts[{kind, &parameter}];
  }

  // The calls since the last time: kind and address, such as "write BOARD/SIZE".
  std::vector<std::string> takeCalls() { return std::exchange(m_calls, {}); }
  // What the last call was given.
  KyCErrorListPool* lastPool() const { return m_lastPool; }
  KyCInventoryItem* lastContext() const { return m_lastContext; }

  static const char* name(KyMethodKind kind)
  {
    return kind == KyMethodKind::CHECK ? "check" : kind == KyMethodKind::WRITE ? "write" : "update";
  }

  // Every report of a method: its name, and the address of its parameter. No message is registered for the code.
  static KyReport report(KyMethodKind kind, const std::string& address)
  {
    return {REPORT, std::string(name(kind)) + "Method", "Message 0x5000001 (" + address + ")"};
  }

  template <KyMethodKind KIND>
  static bool run(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter)
  {
    return s_current->call(KIND, pool, context, *parameter);
  }

private:
  static constexpr unsigned int REPORT = 0x5000001;

  bool call(KyMethodKind kind, KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter& parameter)
  {
    const std::string address = parameter.getAddress().toString().c_str();
    m_calls.push_back(std::string(name(kind)) + " " + address);
    m_lastPool = &pool;
    m_lastContext = context;
    const KyMethodScript script = of(kind, parameter);
    if (script.action) script.action(pool);
    for (unsigned int n = 0; n < script.reports; ++n)
      pool.setError(REPORT, 1, (std::string(name(kind)) + "Method").c_str(), "%s", address.c_str());
    return script.result;
  }

  static inline KyScriptedMethods* s_current = nullptr;
  std::map<std::pair<KyMethodKind, const KyCInventoryParameter*>, KyMethodScript> m_scripts;
  std::vector<std::string> m_calls;
  KyCErrorListPool* m_lastPool = nullptr;
  KyCInventoryItem* m_lastContext = nullptr;
};
