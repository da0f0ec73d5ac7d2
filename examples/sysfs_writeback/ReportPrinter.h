// ReportPrinter.h: what the error manager reports, as lines of a stream.
#pragma once

#include <cstdio>

#include "Printable.h"
#include "errorhandling/KyCErrorManager.h"

// Is the error manager's listener for as long as it lives.
class ReportPrinter : public KyIErrorListener
{
public:
  explicit ReportPrinter(std::FILE* stream)
      : m_stream(stream), m_before(KyCErrorManager::getSingleton()->setListener(this))
  {
  }
  ~ReportPrinter() override { KyCErrorManager::getSingleton()->setListener(m_before); }
  ReportPrinter(const ReportPrinter&) = delete;
  ReportPrinter& operator=(const ReportPrinter&) = delete;

  void onError(const KyErrorEntry& entry) override
  {
    std::fprintf(m_stream, "0x%X %s: %s\n", entry.code, entry.function, printable(entry.text).c_str());
  }
  void onWarning(const KyErrorEntry& entry) override { onError(entry); }

private:
  std::FILE* m_stream;
  KyIErrorListener* m_before;
};

// Prints the reports that the pool has got since the last time. The pool's error count stays.
inline void printReports(KyCErrorListPool& pool) { KyCErrorManager::getSingleton()->sendErrorList(pool, 0); }
