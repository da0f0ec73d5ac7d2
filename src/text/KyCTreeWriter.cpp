// The walk, and the lines of a dump in the order in which they are written.
#include "text/KyCTreeWriter.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "text/KyCValueText.h"
#include "tree/KyInventoryAccess.h"

namespace
{
// Bytes of all marks and numbers of a head, and of a whole parameter; more than they can be.
constexpr unsigned int headMarks = 60;
constexpr unsigned int parameterMarks = 170;

std::uint64_t blanks(int depth) { return depth > 0 ? std::uint64_t{4} * static_cast<unsigned int>(depth) : 0; }

template <typename TOutput>
bool putNumber(TOutput& output, unsigned int number)
{
  KyCNumberText text;
  text.appendNumber(number);
  return output.write(text);
}
}    // namespace

int deeperBy(int depth, long long levels)
{
  return static_cast<int>(std::min<long long>(depth + levels, std::numeric_limits<int>::max()));
}

KyCTreeWriter::KyCTreeWriter(KyCErrorListPool& pool, int options, KyCInventoryItem::MyStream& stream, bool printing)
    : m_pool(pool),
      m_options(options),
      m_step((options & TOption::NO_INDENT) != 0 ? 0 : 1),
      m_output(stream, printing, (options & TOption::PLAIN) != 0)
{
}

// One turn of the loop writes the start of an item, goes down to its first sub-item if there is one, and otherwise
// writes closing lines on the way up until a sibling is next. The item that was asked for ends the walk: its own
// siblings are not reached. No recursion: the depth of the tree is the data's, the stack is not.
bool KyCTreeWriter::writeTree(const KyCInventoryItem& root, int depth)
{
  const KyCInventoryItem* item = &root;
  long long level = 0;    // of the item below the root, in units of depth
  for (;;)
  {
    const int itemDepth = deeperBy(depth, level);
    if (!writeItemHead(item->getID(), item->getDescription(), itemDepth)) return false;
    if (!writeParameters(*item, itemDepth)) return false;
    const KyCInventoryItem* next = item->getFirstSubItem();
    if (next != nullptr) level += m_step;
    while (next == nullptr)
    {
      if (!writeItemEnd(deeperBy(depth, level))) return false;
      if (item == &root) return true;
      next = item->getNext();
      if (next != nullptr) break;
      item = item->getParent();
      level -= m_step;
    }
    item = next;
  }
}

bool KyCTreeWriter::writeItemHead(const KyCInventoryAddress& id, const char* description, int depth)
{
  if (has(TOption::NO_ITEM_LINES)) return true;
  if (isPlain() && has(TOption::ITEM_NO_ID) && has(TOption::ITEM_NO_DESCRIPTION)) return true;
  THead head{};
  head.index = id.getIndex();
  head.showIndex = head.index != 1 || has(TOption::INDEX_ALWAYS);
  head.noId = TOption::ITEM_NO_ID;
  head.noDescription = TOption::ITEM_NO_DESCRIPTION;
  head.forcedDescription = TOption::ITEM_DESCRIPTION;
  nameHead(head, id, description);
  return m_output.write(blanks(depth) + head.length() + headMarks,
                        [&](auto& output)
                        {
                          return output.indent(depth) && output.mark("<ITEM") && putID(output, head) &&
                                 putDescription(output, head) && output.mark(">") && output.write("\n");
                        });
}

bool KyCTreeWriter::writeItemEnd(int depth)
{
  if (isPlain() || has(TOption::NO_ITEM_LINES)) return true;
  return m_output.write(blanks(depth) + headMarks,
                        [&](auto& output) { return output.indent(depth) && output.write("</ITEM>\n"); });
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

void KyCTreeWriter::nameHead(THead& head, const KyCInventoryAddress& id, const char* description) const
{
  head.number = id.getCategory();
  head.name = id.getCategoryNameCStr();
  head.nameLength = std::strlen(head.name);
  head.description = description;
  const bool described = head.nameLength == 0 || has(head.forcedDescription);
  head.descriptionLength = described ? std::strlen(description) : 0;
}

template <typename TOutput>
bool KyCTreeWriter::putID(TOutput& output, const THead& head) const
{
  if (has(head.noId)) return true;
  return output.mark(" ID=\"") && putIDText(output, head) && putIndex(output, head) && output.mark("\"");
}

template <typename TOutput>
bool KyCTreeWriter::putIDText(TOutput& output, const THead& head) const
{
  const bool named = head.nameLength != 0;
  if (has(TOption::ID_AS_NUMBER) || (!named && has(TOption::UNNAMED_ID_AS_NUMBER)))
    return putNumber(output, head.number);
  return named ? output.write(head.name, head.nameLength) : output.write(head.description, head.descriptionLength);
}

template <typename TOutput>
bool KyCTreeWriter::putIndex(TOutput& output, const THead& head) const
{
  if (!head.showIndex) return true;
  const bool dotted = has(TOption::INDEX_WITH_DOT);
  KyCNumberText text;
  text.append(dotted ? '.' : '[');
  text.appendNumber(head.index);
  if (!dotted) text.append(']');
  return output.write(text);
}

template <typename TOutput>
bool KyCTreeWriter::putDescription(TOutput& output, const THead& head) const
{
  if (has(head.noDescription)) return true;
  const bool forced = has(head.forcedDescription);
  if (head.nameLength != 0 && !forced) return true;
  if (isPlain()) return (!forced || output.write(" ")) && output.write(head.description, head.descriptionLength);
  return output.write(" Descr=\"") && output.write(head.description, head.descriptionLength) && output.write("\"");
}

// A value that is known beforehand to fit on its line goes out with all the lines of its parameter at once. The others
// are asked for and copied when the value line has been begun, as their failures come between the lines.
bool KyCTreeWriter::writeParameter(const KyCInventoryParameter& parameter, int depth)
{
  const KyCInventoryAddress id = parameter.getID();
  THead head{};
  head.noId = TOption::PARAMETER_NO_ID;
  head.noDescription = TOption::PARAMETER_NO_DESCRIPTION;
  head.forcedDescription = TOption::PARAMETER_DESCRIPTION;
  head.type = parameter.getTypeAsCString();
  head.typeLength = std::strlen(head.type);
  nameHead(head, id, parameter.getDescription());
  const char* const unit = parameter.getUnit();
  const std::size_t unitLength = std::strlen(unit);

  const int outer = nested(depth, 1);
  const int inner = nested(depth, 2);
  const std::uint64_t length = 6 * blanks(inner) + head.length() + unitLength + parameterMarks;
  const auto putStart = [&](auto& output) { return putParameterHead(output, head, outer); };
  const auto putEnd = [&](auto& output)
  { return putParameterEnd(output, parameter, unit, unitLength, inner) && putParameterMark(output, outer); };

  if (has(TOption::NO_VALUE))
  {
    return m_output.write(length, [&](auto& output) { return putStart(output) && putEnd(output); });
  }
  if (parameter.getType() == KyCParam::TYPE_STRING)
  {
    const char* const value = parameter.getValue<const char*>(m_pool);
    const std::size_t valueLength =
        KyCValueText::unchangedLength(value, !has(TOption::NO_ESCAPING), !has(TOption::NO_LINE_BREAKING));
    // Printing copies every value: without memory it ends at the first one, whatever it is.
    if (value[valueLength] != '\0' || m_output.isPrinting())
    {
      return m_output.write(length, putStart) && writeStringLines(value, depth) && m_output.write(length, putEnd);
    }
    return m_output.write(
        length + valueLength, [&](auto& output)
        { return putStart(output) && putValue(output, inner, value, valueLength) && putEnd(output); });
  }
  KyCNumberText value;
  if (!value.appendValue(m_pool, parameter))
  {
    return m_output.write(length, putStart) && writeReportedValue(parameter, depth) && m_output.write(length, putEnd);
  }
  return m_output.write(length + value.length(), [&](auto& output)
                        { return putStart(output) && putValue(output, inner, value) && putEnd(output); });
}

template <typename TOutput>
bool KyCTreeWriter::putParameterHead(TOutput& output, const THead& head, int depth) const
{
  if (isPlain() && has(TOption::PARAMETER_NO_ID) && has(TOption::PARAMETER_NO_DESCRIPTION) &&
      has(TOption::PARAMETER_NO_TYPE))
  {
    return true;
  }
  if (!output.indent(depth) || !output.mark("<PARAM") || !putID(output, head) || !putDescription(output, head))
  {
    return false;
  }
  if (!has(TOption::PARAMETER_NO_TYPE))
  {
    if (!(isPlain() ? output.write(" ") : output.write(" Type=\""))) return false;
    if (!output.write(head.type, head.typeLength) || !output.mark("\"")) return false;
  }
  return output.mark(">") && output.write("\n");
}

// The value: what one of the output's operations named write takes.
template <typename TOutput, typename... TText>
bool KyCTreeWriter::putValue(TOutput& output, int depth, const TText&... value) const
{
  return output.indent(depth) && output.mark("<VALUE>") && output.write(value...) && output.mark("</VALUE>") &&
         output.write("\n");
}

// What stands behind the value, at the value's depth.
template <typename TOutput>
bool KyCTreeWriter::putParameterEnd(TOutput& output, const KyCInventoryParameter& parameter, const char* unit,
                                    std::size_t unitLength, int depth) const
{
  if (!has(TOption::NO_UNIT) && (unitLength != 0 || has(TOption::EMPTY_UNITS)))
  {
    if (!output.indent(depth) || !output.mark("<UNIT>") || !output.write(unit, unitLength) || !output.mark("</UNIT>") ||
        !output.write("\n"))
    {
      return false;
    }
  }
  if (!has(TOption::NO_MODIFIABLE))
  {
    if (!output.indent(depth) || !output.mark("<ISMODIFIABLE>") ||
        !(parameter.isModifiable() ? output.write("Yes") : output.write("No")) || !output.mark("</ISMODIFIABLE>") ||
        !output.write("\n"))
    {
      return false;
    }
  }
  if (!has(TOption::NO_RELEVANCE))
  {
    if (!output.indent(depth) || !output.mark("<RELEVANCE>") || !putNumber(output, parameter.getRelevance()) ||
        !output.mark("</RELEVANCE>") || !output.write("\n"))
    {
      return false;
    }
  }
  return true;
}

template <typename TOutput>
bool KyCTreeWriter::putParameterMark(TOutput& output, int depth) const
{
  return isPlain() || (output.indent(depth) && output.write("</PARAM>\n"));
}

// The value of a parameter without a known type: asking for it is a report.
bool KyCTreeWriter::writeReportedValue(const KyCInventoryParameter& parameter, int depth)
{
  const int valueDepth = nested(depth, 2);
  if (!m_output.write(blanks(valueDepth) + headMarks,
                      [&](auto& output) { return output.indent(valueDepth) && output.mark("<VALUE>"); }))
  {
    return false;
  }
  if (!m_output.flush()) return false;    // nothing is reported behind a failed write
  const KyCString value = KyInventoryAccess::toParam(&parameter)->getValueAsString(m_pool);
  const std::size_t length = std::strlen(value.c_str());
  return m_output.write(
      std::uint64_t{length} + headMarks, [&](auto& output)
      { return output.write(value.c_str(), length) && output.mark("</VALUE>") && output.write("\n"); });
}

// The value of a string parameter that is to be escaped, broken into lines, or printed.
bool KyCTreeWriter::writeStringLines(const char* value, int depth)
{
  const int valueDepth = nested(depth, 2);
  const auto writeLineFeed = [&] { return m_output.write(1, [](auto& output) { return output.write("\n"); }); };
  if (!m_output.write(blanks(valueDepth) + headMarks,
                      [&](auto& output) { return output.indent(valueDepth) && output.mark("<VALUE>"); }))
  {
    return false;
  }
  KyCValueText text(value, !has(TOption::NO_ESCAPING));
  if (!text.isValid()) return false;
  if (has(TOption::NO_LINE_BREAKING) || !text.hasLineFeed())
  {
    return m_output.write(
        std::uint64_t{text.length()} + headMarks, [&](auto& output)
        { return output.write(text.c_str(), text.length()) && output.mark("</VALUE>") && output.write("\n"); });
  }

  if (!writeLineFeed()) return false;
  const int lineDepth = deeperBy(depth, has(TOption::NO_INDENT) ? 0 : 3);
  bool lineEnded = true;
  const auto writeLine = [&](const char* line, std::size_t length, bool ended)
  {
    lineEnded = ended;
    return m_output.write(blanks(lineDepth) + length,
                          [&](auto& output) { return output.indent(lineDepth) && output.write(line, length); });
  };
  if (!text.forEachLine(writeLine)) return false;
  if (!lineEnded && !writeLineFeed()) return false;
  if (isPlain()) return writeLineFeed();
  return m_output.write(blanks(valueDepth) + headMarks,
                        [&](auto& output) { return output.indent(valueDepth) && output.write("</VALUE>\n"); });
}
