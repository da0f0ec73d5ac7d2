// The lines of a dump, in the order in which they are written.
#include "text/KyCTreeWriter.h"

#include <algorithm>
#include <limits>

#include "text/KyCValueText.h"
#include "tree/KyInventoryAccess.h"

bool writeIndent(int depth, KyCInventoryItem::MyStream& stream)
{
  for (int level = 0; level < depth; ++level)
  {
    if (!stream.write("    ")) return false;
  }
  return true;
}

int deeperBy(int depth, long long levels)
{
  return static_cast<int>(std::min<long long>(depth + levels, std::numeric_limits<int>::max()));
}

KyCTreeWriter::KyCTreeWriter(KyCErrorListPool& pool, int options, KyCInventoryItem::MyStream& stream)
    : m_pool(pool), m_options(options), m_step((options & TOption::NO_INDENT) != 0 ? 0 : 1), m_stream(stream)
{
}

bool KyCTreeWriter::writeItemHead(const KyCInventoryAddress& id, const char* description, int depth)
{
  if (has(TOption::NO_ITEM_LINES)) return true;
  if (isPlain() && has(TOption::ITEM_NO_ID) && has(TOption::ITEM_NO_DESCRIPTION)) return true;
  const bool showIndex = id.getIndex() != 1 || has(TOption::INDEX_ALWAYS);
  const THead head{id.getCategoryNameCStr(),
                   id.getCategory(),
                   description,
                   id.getIndex(),
                   showIndex,
                   TOption::ITEM_NO_ID,
                   TOption::ITEM_NO_DESCRIPTION,
                   TOption::ITEM_DESCRIPTION};
  return indent(depth, 0) && mark("<ITEM") && writeID(head) && writeDescription(head) && mark(">") && write("\n");
}

bool KyCTreeWriter::writeItemEnd(int depth)
{
  if (isPlain() || has(TOption::NO_ITEM_LINES)) return true;
  return indent(depth, 0) && write("</ITEM>\n");
}

bool KyCTreeWriter::writeParameters(const KyCInventoryItem& item, int depth)
{
  if (has(TOption::NO_PARAMETERS)) return true;
  const KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0);
  for (; parameter != nullptr; parameter = parameter->getNext())
  {
    if (!writeParameter(*parameter, depth)) return false;
  }
  return true;
}

bool KyCTreeWriter::writeID(const THead& head)
{
  if (has(head.noId)) return true;
  return mark(" ID=\"") && writeIDText(head) && writeIndex(head) && mark("\"");
}

bool KyCTreeWriter::writeIDText(const THead& head)
{
  const bool named = head.name[0] != '\0';
  if (has(TOption::ID_AS_NUMBER) || (!named && has(TOption::UNNAMED_ID_AS_NUMBER)))
  {
    return m_stream.writef("%u", head.number);
  }
  return write(named ? head.name : head.description);
}

bool KyCTreeWriter::writeIndex(const THead& head)
{
  if (!head.showIndex) return true;
  return has(TOption::INDEX_WITH_DOT) ? m_stream.writef(".%u", head.index) : m_stream.writef("[%u]", head.index);
}

bool KyCTreeWriter::writeDescription(const THead& head)
{
  if (has(head.noDescription)) return true;
  const bool forced = has(head.forcedDescription);
  const bool named = head.name[0] != '\0';
  if (named && !forced) return true;
  if (!isPlain()) return write(" Descr=\"") && write(head.description) && write("\"");
  return (!forced || write(" ")) && write(head.description);
}

bool KyCTreeWriter::writeParameter(const KyCInventoryParameter& parameter, int depth)
{
  if (!writeParameterHead(parameter, depth) || !writeValue(parameter, depth) || !writeUnit(parameter, depth) ||
      !writeModifiable(parameter, depth) || !writeRelevance(parameter, depth))
  {
    return false;
  }
  return isPlain() || (indentNested(depth, 1) && write("</PARAM>\n"));
}

bool KyCTreeWriter::writeParameterHead(const KyCInventoryParameter& parameter, int depth)
{
  if (isPlain() && has(TOption::PARAMETER_NO_ID) && has(TOption::PARAMETER_NO_DESCRIPTION) &&
      has(TOption::PARAMETER_NO_TYPE))
  {
    return true;
  }
  const KyCInventoryAddress id = parameter.getID();
  const THead head{id.getCategoryNameCStr(),
                   id.getCategory(),
                   parameter.getDescription(),
                   1,
                   false,
                   TOption::PARAMETER_NO_ID,
                   TOption::PARAMETER_NO_DESCRIPTION,
                   TOption::PARAMETER_DESCRIPTION};
  return indentNested(depth, 1) && mark("<PARAM") && writeID(head) && writeDescription(head) && writeType(parameter) &&
         mark(">") && write("\n");
}

bool KyCTreeWriter::writeType(const KyCInventoryParameter& parameter)
{
  if (has(TOption::PARAMETER_NO_TYPE)) return true;
  return write(isPlain() ? " " : " Type=\"") && write(parameter.getTypeAsCString()) && mark("\"");
}

bool KyCTreeWriter::writeValue(const KyCInventoryParameter& parameter, int depth)
{
  if (has(TOption::NO_VALUE)) return true;
  if (!indentNested(depth, 2) || !mark("<VALUE>")) return false;
  if (parameter.getType() == KyCParam::TYPE_STRING) return writeStringValue(parameter, depth);
  const KyCString value = KyInventoryAccess::toParam(&parameter)->getValueAsString(m_pool);
  return write(value.c_str()) && mark("</VALUE>") && write("\n");
}

// Behind the indentation and the opening mark.
bool KyCTreeWriter::writeStringValue(const KyCInventoryParameter& parameter, int depth)
{
  const KyCString value = parameter.getValue<KyCString>(m_pool);
  KyCValueText text(value.c_str(), !has(TOption::NO_ESCAPING));
  if (!text.isValid()) return false;
  if (has(TOption::NO_LINE_BREAKING) || !text.hasLineFeed())
  {
    return write(text.c_str()) && mark("</VALUE>") && write("\n");
  }

  if (!write("\n")) return false;
  const int lineDepth = deeperBy(depth, has(TOption::NO_INDENT) ? 0 : 3);
  bool lineEnded = true;
  const auto writeLine = [&](const char* line, bool ended)
  {
    lineEnded = ended;
    return writeIndent(lineDepth, m_stream) && write(line);
  };
  if (!text.forEachLine(writeLine)) return false;
  if (!lineEnded && !write("\n")) return false;
  return isPlain() ? write("\n") : indentNested(depth, 2) && write("</VALUE>\n");
}

bool KyCTreeWriter::writeUnit(const KyCInventoryParameter& parameter, int depth)
{
  if (has(TOption::NO_UNIT)) return true;
  const char* const unit = parameter.getUnit();
  if (unit[0] == '\0' && !has(TOption::EMPTY_UNITS)) return true;
  return indentNested(depth, 2) && mark("<UNIT>") && write(unit) && mark("</UNIT>") && write("\n");
}

bool KyCTreeWriter::writeModifiable(const KyCInventoryParameter& parameter, int depth)
{
  if (has(TOption::NO_MODIFIABLE)) return true;
  return indentNested(depth, 2) && mark("<ISMODIFIABLE>") && write(parameter.isModifiable() ? "Yes" : "No") &&
         mark("</ISMODIFIABLE>") && write("\n");
}

bool KyCTreeWriter::writeRelevance(const KyCInventoryParameter& parameter, int depth)
{
  if (has(TOption::NO_RELEVANCE)) return true;
  return indentNested(depth, 2) && mark("<RELEVANCE>") && m_stream.writef("%u", parameter.getRelevance()) &&
         mark("</RELEVANCE>") && write("\n");
}
