// KyErrorHandlingSupport.h: tables and listeners for the tests of libKyErrorHandling.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "errorhandling/KyErrorHandling.h"

inline KyCErrorManager& manager() { return *KyCErrorManager::getSingleton(); }

// A message table that is registered as long as this object lives.
class KyTestTable
{
public:
  KyTestTable(unsigned int codeBase, std::vector<const char*> messages, std::vector<unsigned int> groupBoundaries)
      : m_messages(std::move(messages)),
        m_groupBoundaries(std::move(groupBoundaries)),
        m_table{m_messages.data(), m_groupBoundaries.data(), static_cast<unsigned int>(m_groupBoundaries.size() - 1),
                codeBase}
  {
    KyCErrorManager::getSingleton()->_registerMessages(&m_table);
  }
  // One group with one message.
  KyTestTable(unsigned int code, const char* message) : KyTestTable(code, {message}, {0, 1}) {}
  ~KyTestTable() { KyCErrorManager::getSingleton()->_unregisterMessages(&m_table); }
  KyTestTable(const KyTestTable&) = delete;
  KyTestTable& operator=(const KyTestTable&) = delete;

  const KyResText& record() const { return m_table; }

private:
  std::vector<const char*> m_messages;
  std::vector<unsigned int> m_groupBoundaries;
  KyResText m_table;
};

// Writes down what it is told, and is the manager's listener as long as it lives.
class KyWritingListener : public KyIErrorListener
{
public:
  KyWritingListener() : m_before(KyCErrorManager::getSingleton()->setListener(this)) {}
  ~KyWritingListener() override { KyCErrorManager::getSingleton()->setListener(m_before); }
  KyWritingListener(const KyWritingListener&) = delete;
  KyWritingListener& operator=(const KyWritingListener&) = delete;

  void onError(const KyErrorEntry& entry) override { write("error", entry); }
  void onWarning(const KyErrorEntry& entry) override { write("warning", entry); }

  // What came since the last call, such as "error 17 from add, line 3: text".
  std::vector<std::string> take() { return std::exchange(m_lines, {}); }

private:
  void write(const char* kind, const KyErrorEntry& entry)
  {
    m_lines.push_back(std::string(kind) + " " + std::to_string(entry.code) + " from " + entry.function + ", line " +
                      std::to_string(entry.line) + ": " + entry.text);
  }

  std::vector<std::string> m_lines;
  KyIErrorListener* m_before;    // last: from then on, other threads call this object
};

using KyLines = std::vector<std::string>;
