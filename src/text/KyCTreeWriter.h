// KyCTreeWriter.h: the walk over a tree and the lines that it writes.
#pragma once

#include "inventory/KyCInventoryItemStream.h"
#include "inventory/KyCInventoryParameter.h"
#include "text/KyCDumpOutput.h"

// The depth `levels` below `depth`; stays within int.
int deeperBy(int depth, long long levels);

// Writes an item and its subtree under one set of options. Lives for one dump, borrows pool and stream. Each operation
// yields false as soon as a write fails, and writes nothing after that.
class KyCTreeWriter
{
public:
  KyCTreeWriter(KyCErrorListPool& pool, int options, KyCInventoryItem::MyStream& stream, bool printing);

  bool writeTree(const KyCInventoryItem& root, int depth);
  bool finish() { return m_output.flush(); }    // the last step, also when writeTree has failed

private:
  using TOption = KyCInventoryItem::MyStream::TOption;

  // What the heads of items and of parameters have in common.
  struct THead
  {
    const char* name;    // "" for an ID without a registered name
    std::size_t nameLength;
    const char* description;
    std::size_t descriptionLength;    // 0 when the description is not written
    const char* type;                 // of a parameter
    std::size_t typeLength;
    unsigned int number;
    unsigned int index;
    bool showIndex;
    TOption noId;    // the options that rule this kind of head
    TOption noDescription;
    TOption forcedDescription;

    std::uint64_t length() const { return nameLength + 2 * std::uint64_t{descriptionLength} + typeLength; }
  };

  bool has(TOption option) const { return (m_options & option) != 0; }
  bool isPlain() const { return has(TOption::PLAIN); }
  int nested(int depth, int levels) const { return deeperBy(depth, static_cast<long long>(levels) * m_step); }

  void nameHead(THead& head, const KyCInventoryAddress& id, const char* description) const;
  bool writeItemHead(const KyCInventoryAddress& id, const char* description, int depth);
  bool writeItemEnd(int depth);
  bool writeParameters(const KyCInventoryItem& item, int depth);
  bool writeParameter(const KyCInventoryParameter& parameter, int depth);
  bool writeReportedValue(const KyCInventoryParameter& parameter, int depth);
  bool writeStringLines(const char* value, int depth);

  // The lines and parts of lines, into either of KyCDumpOutput's classes.
  template <typename TOutput>
  bool putID(TOutput& output, const THead& head) const;
  template <typename TOutput>
  bool putIDText(TOutput& output, const THead& head) const;
  template <typename TOutput>
  bool putIndex(TOutput& output, const THead& head) const;
  template <typename TOutput>
  bool putDescription(TOutput& output, const THead& head) const;
  template <typename TOutput>
  bool putParameterHead(TOutput& output, const THead& head, int depth) const;
  template <typename TOutput>
  bool putParameterEnd(TOutput& output, const KyCInventoryParameter& parameter, const char* unit,
                       std::size_t unitLength, int depth) const;
  template <typename TOutput>
  bool putParameterMark(TOutput& output, int depth) const;
  template <typename TOutput, typename... TText>
  bool putValue(TOutput& output, int depth, const TText&... value) const;

  KyCErrorListPool& m_pool;    // receives the reports of the getters
  const int m_options;
  const int m_step;
  KyCDumpOutput m_output;
};
