// KyCTreeWriter.h: writes the lines of a dump.
#pragma once

#include "inventory/KyCInventoryItemStream.h"
#include "inventory/KyCInventoryParameter.h"

// Four spaces for each level; none below 1.
bool writeIndent(int depth, KyCInventoryItem::MyStream& stream);

// The depth `levels` below `depth`; stays within int.
int deeperBy(int depth, long long levels);

// Writes the lines of single items under one set of options; the walk over the tree is the caller's. Lives for one
// dump, borrows pool and stream. Each operation yields false as soon as a write fails, and writes nothing after that.
class KyCTreeWriter
{
public:
  KyCTreeWriter(KyCErrorListPool& pool, int options, KyCInventoryItem::MyStream& stream);

  int getStep() const { return m_step; }    // levels that what is nested goes deeper: 0 or 1

  bool writeItemHead(const KyCInventoryAddress& id, const char* description, int depth);
  bool writeParameters(const KyCInventoryItem& item, int depth);
  bool writeItemEnd(int depth);

private:
  using TOption = KyCInventoryItem::MyStream::TOption;

  // What the heads of items and of parameters have in common.
  struct THead
  {
    const char* name;    // "" for an ID without a registered name
    unsigned int number;
    const char* description;
    unsigned int index;
    bool showIndex;
    TOption noId;    // the options that rule this kind of head
    TOption noDescription;
    TOption forcedDescription;
  };

  bool has(TOption option) const { return (m_options & option) != 0; }
  bool isPlain() const { return has(TOption::PLAIN); }
  bool write(const char* text) { return m_stream.write(text); }
  bool mark(const char* text) { return isPlain() || write(text); }    // mark-up mode only
  bool indent(int depth, int levels) { return writeIndent(deeperBy(depth, levels), m_stream); }
  bool indentNested(int depth, int levels) { return indent(depth, levels * m_step); }

  bool writeID(const THead& head);
  bool writeIDText(const THead& head);
  bool writeIndex(const THead& head);
  bool writeDescription(const THead& head);
  bool writeParameter(const KyCInventoryParameter& parameter, int depth);
  bool writeParameterHead(const KyCInventoryParameter& parameter, int depth);
  bool writeType(const KyCInventoryParameter& parameter);
  bool writeValue(const KyCInventoryParameter& parameter, int depth);
  bool writeStringValue(const KyCInventoryParameter& parameter, int depth);
  bool writeUnit(const KyCInventoryParameter& parameter, int depth);
  bool writeModifiable(const KyCInventoryParameter& parameter, int depth);
  bool writeRelevance(const KyCInventoryParameter& parameter, int depth);

  KyCErrorListPool& m_pool;    // receives the reports of the getters
  const int m_options;
  const int m_step;
  KyCInventoryItem::MyStream& m_stream;
};
