#include "inventorykit/KyCheck.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <unordered_set>

#include "KyCheckMessages.h"
#include "KyJsonValue.h"
#include "KyKitMessages.h"
#include "KyOwnPool.h"
#include "KyPathText.h"
#include "KySectionLayout.h"
#include "KyShownText.h"
#include "errorhandling/KyCErrorManager.h"
#include "inventory/KyCInventoryData.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyStreamReader.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
namespace
{
constexpr std::size_t s_manyLevels = 4000;
constexpr unsigned int s_firstSharedWarning = 0x1300813;
constexpr unsigned int s_lastSharedWarning = 0x1300815;
const char* const s_header = "header";
const char* const s_trailer = "trailer";

// The findings of one file.
class Findings
{
public:
  Findings(CheckResult& result, const CheckOptions& options)
      : m_result(result), m_most(options.mostPerCode), m_mostNotes(options.mostNotesPerCode)
  {
  }

  // Counts a finding; false when it is not to be listed. Asked first, so that nothing is made that nobody sees.
  bool count(Severity severity, unsigned int code)
  {
    unsigned int& total = severity == Severity::ERROR     ? m_result.errors
                          : severity == Severity::WARNING ? m_result.warnings
                                                          : m_result.notes;
    ++total;
    Listed& listed = m_listed[code];
    const unsigned int most = severity == Severity::NOTE ? m_mostNotes : m_most;
    if (most == 0 || listed.count < most) return true;
    ++m_result.findings[listed.last].more;
    return false;
  }

  // Lists the finding that was counted last.
  void list(Severity severity, unsigned int code, std::uint64_t offset, std::string address, std::string text)
  {
    Listed& listed = m_listed[code];
    ++listed.count;
    listed.last = m_result.findings.size();
    m_result.findings.push_back({severity, code, offset, std::move(address), std::move(text), kyRemedyOf(code), 0});
  }

  std::vector<Finding>& listed() { return m_result.findings; }

  template <typename... Arguments>
  void add(Severity severity, unsigned int code, std::uint64_t offset, const std::string& address, const char* format,
           Arguments... arguments)
  {
    if (count(severity, code)) list(severity, code, offset, address, textOf(code, format, arguments...));
  }

  template <typename... Arguments>
  static std::string textOf(unsigned int code, [[maybe_unused]] const char* format, Arguments... arguments)
  {
    KyCErrorListPool pool;
    if constexpr (sizeof...(Arguments) == 0)
      pool.setError(code, __LINE__, "checkBytes", nullptr);
    else
      pool.setError(code, __LINE__, "checkBytes", format, arguments...);
    kyThrowIfOutOfMemory(pool);
    return pool.getEntry(0).text;
  }

private:
  struct Listed
  {
    unsigned int count = 0;
    std::size_t last = 0;
  };

  CheckResult& m_result;
  unsigned int m_most;
  unsigned int m_mostNotes;
  std::map<unsigned int, Listed> m_listed;
};

// --- Header and trailer -------------------------------------------------------------------------------------------------

class RecordCheck
{
public:
  RecordCheck(Findings& findings, const std::string& bytes) : m_findings(findings), m_bytes(bytes) {}

  // What keeps the section from being read; false when nothing does.
  bool findErrors(const KySectionLayout& layout)
  {
    const KySectionRecord& record = layout.leading();
    const char* const name = layout.isAtEnd ? s_trailer : s_header;
    const unsigned int ownSize = layout.isAtEnd ? record.trailerSize : record.headerSize;
    const std::uint64_t needed = std::uint64_t{ownSize} + record.dataSize;
    if (ownSize < s_recordSize)
      add(Severity::ERROR, KY_CHECK_MSG_RECORD_SIZE, record, "%s%u", name, ownSize);
    else if (!record.isUsable)
      add(Severity::ERROR, KY_CHECK_MSG_RECORD_VERSION, record, "%s%u", name, record.version);
    else if (needed > m_bytes.size())
      add(Severity::ERROR, KY_CHECK_MSG_BEYOND_FILE, record, "%s%s%s", name, std::to_string(needed).c_str(),
          std::to_string(m_bytes.size()).c_str());
    return !layout.isReadable;
  }

  void compare(const KySectionLayout& layout)
  {
    const KySectionRecord& other = layout.isAtEnd ? layout.header : layout.trailer;
    const char* const otherName = layout.isAtEnd ? s_header : s_trailer;
    if (!other.isThere)
    {
      m_findings.add(Severity::WARNING, KY_CHECK_MSG_RECORD_MISSING, kyFarRecordOf(m_bytes, layout).begin, "", "%s",
                     otherName);
      return;
    }
    compare(layout, "version", &KySectionRecord::version);
    compare(layout, "header size", &KySectionRecord::headerSize);
    compare(layout, "data size", &KySectionRecord::dataSize);
    compare(layout, "trailer size", &KySectionRecord::trailerSize);
    noteLength(layout.header, s_header, layout.header.headerSize);
    noteLength(layout.trailer, s_trailer, layout.trailer.trailerSize);
  }

private:
  template <typename... Arguments>
  void add(Severity severity, unsigned int code, const KySectionRecord& record, const char* format,
           Arguments... arguments)
  {
    m_findings.add(severity, code, record.begin, "", format, arguments...);
  }

  void compare(const KySectionLayout& layout, const char* what, unsigned int KySectionRecord::*field)
  {
    if (layout.header.*field == layout.trailer.*field) return;
    add(Severity::WARNING, KY_CHECK_MSG_RECORDS_DISAGREE, layout.isAtEnd ? layout.header : layout.trailer, "%s%u%u",
        what, layout.header.*field, layout.trailer.*field);
  }

  void noteLength(const KySectionRecord& record, const char* name, unsigned int size)
  {
    if (size > s_recordSize) add(Severity::NOTE, KY_CHECK_MSG_LONG_RECORD, record, "%s%u", name, size);
  }

  Findings& m_findings;
  const std::string& m_bytes;
};

// --- The stored tree ----------------------------------------------------------------------------------------------------

bool isPredefined(unsigned int id) { return id != 0 && KyNInventoryIDs::Map.get(id) != nullptr; }

std::string hexByte(unsigned int byte)
{
  char text[8];
  std::snprintf(text, sizeof(text), "%02X", byte & 0xFF);
  return text;
}

class TreeCheck
{
public:
  TreeCheck(Findings& findings, const std::string& bytes, const KySectionLayout& layout)
      : m_findings(findings),
        m_offset(layout.dataBegin),
        m_data(reinterpret_cast<const unsigned char*>(bytes.data()) + layout.dataBegin),
        m_size(layout.dataEnd - layout.dataBegin),
        m_reader(m_data, m_size)
  {
  }

  // True when the tree is whole.
  bool run()
  {
    while (m_reader.next(m_record))
      enter();
    if (m_reader.isDamaged())
    {
      reportDamage();
      return false;
    }
    if (m_reader.position() < m_size)
      m_findings.add(Severity::WARNING, KY_CHECK_MSG_BYTES_BEHIND_TREE, m_offset + m_reader.position(), "", "%s",
                     std::to_string(m_size - m_reader.position()).c_str());
    if (m_deepest > s_manyLevels)
      m_findings.add(Severity::NOTE, KY_CHECK_MSG_NEAR_NESTING_LIMIT, m_offset + m_deepestOffset, "", "%u",
                     static_cast<unsigned int>(m_deepest));
    return true;
  }

private:
  // What an open item has below it so far.
  struct Level
  {
    std::unordered_set<std::uint64_t> items;
    std::unordered_set<unsigned int> parameters;
  };

  void enter()
  {
    switch (m_record.kind)
    {
      case StreamRecord::Kind::ITEM_START:
        enterItem();
        break;
      case StreamRecord::Kind::PARAMETER:
        m_lastParameter = m_record.id;
        m_last = Last::PARAMETER;
        m_levels.back().parameters.insert(m_record.id);
        checkParameter();
        break;
      case StreamRecord::Kind::ITEM_END:
        m_path.leave();
        m_levels.pop_back();
        m_last = Last::ITEM_END;
        m_lastEnded = {m_record.id, m_record.index};
        break;
      case StreamRecord::Kind::STREAM_VERSION:
        break;
    }
  }

  void enterItem()
  {
    m_path.enter(m_record.id, m_record.index);
    m_last = Last::ITEM_START;
    if (m_path.level() > m_deepest)
    {
      m_deepest = m_path.level();
      m_deepestOffset = m_record.offset;
    }
    if (!m_levels.empty())
    {
      Level& parent = m_levels.back();
      if (!parent.items.insert(std::uint64_t{m_record.id} << 32 | m_record.index).second)
        add(Severity::WARNING, KY_CHECK_MSG_DUPLICATE_ITEM, nullptr);
      if (m_record.index == 1 && parent.parameters.count(m_record.id) != 0)
        add(Severity::WARNING, KY_CHECK_MSG_SAME_NAME, nullptr);
    }
    m_levels.emplace_back();
    checkIDAndDescription();
  }

  void checkIDAndDescription()
  {
    if (!isPredefined(m_record.id))
      add(Severity::WARNING, KY_CHECK_MSG_UNKNOWN_ID, "%u", m_record.id);
    else if (m_record.description != KyNInventoryIDs::Map.get(m_record.id))
      add(Severity::NOTE, KY_CHECK_MSG_OTHER_DESCRIPTION, "%s", KyNInventoryIDs::Map.get(m_record.id));
    checkText("description", m_record.description, StreamFieldKind::TEXT);
  }

  void checkParameter()
  {
    checkIDAndDescription();
    if (m_record.type == KyCParam::TYPE_STRING) checkText("value", m_record.value, StreamFieldKind::VALUE);
    checkText("unit", m_record.unit, StreamFieldKind::UNIT);
    if (m_record.unit.size() == 100) add(Severity::NOTE, KY_CHECK_MSG_UNIT_AT_LIMIT, nullptr);
    if (m_record.unit.find('\0') != m_record.unit.npos) add(Severity::WARNING, KY_CHECK_MSG_UNIT_ZERO_BYTE, nullptr);
    if (m_record.modifiable != 0 && m_record.modifiable != 0xFF)
      add(Severity::NOTE, KY_CHECK_MSG_MODIFIABLE_BYTE, "%s", hexByte(m_record.modifiable).c_str());
    if (m_record.type != KyCParam::TYPE_UINT32 &&
        KyCInventoryAddress(m_record.id) == KyNInventoryIDs::SHARED_DATA_INDEX)
      add(Severity::WARNING, KY_CHECK_MSG_SHARED_INDEX_TYPE, "%s", storedTypeName(m_record.type));
  }

  // A description that was there before was checked there.
  void checkText(const char* what, std::string_view text, StreamFieldKind kind)
  {
    const StreamField* const field = m_record.find(kind);
    if (field == nullptr || isUtf8(text) || !m_findings.count(Severity::NOTE, KY_CHECK_MSG_NOT_UTF8)) return;
    m_findings.list(Severity::NOTE, KY_CHECK_MSG_NOT_UTF8, m_offset + field->offset, address(),
                    Findings::textOf(KY_CHECK_MSG_NOT_UTF8, "%s", what));
  }

  template <typename... Arguments>
  void add(Severity severity, unsigned int code, const char* format, Arguments... arguments)
  {
    if (!m_findings.count(severity, code)) return;
    m_findings.list(severity, code, m_offset + m_record.offset, address(),
                    Findings::textOf(code, format, arguments...));
  }

  std::string address() const
  {
    return m_record.kind == StreamRecord::Kind::PARAMETER ? m_path.parameter(m_record.id) : m_path.item();
  }

  // The item or parameter that was read whole last; empty when there is none.
  std::string lastAddress()
  {
    if (m_last == Last::NOTHING) return {};
    if (m_last == Last::PARAMETER) return m_path.parameter(m_lastParameter);
    if (m_last == Last::ITEM_END) m_path.enter(m_lastEnded.id, m_lastEnded.index);
    return m_path.item();
  }

  void reportDamage()
  {
    const StreamDamage& damage = m_reader.damage();
    const std::uint64_t offset = m_offset + damage.offset;
    const std::string last = lastAddress();
    const std::string behind = last.empty() ? "nothing could be read" : "what was read last is " + last;
    if (damage.isVersion)
      m_findings.add(Severity::ERROR, KY_CHECK_MSG_STREAM_VERSION, offset, "", "%u", unsigned{m_data[0]});
    else
      m_findings.add(Severity::ERROR, KY_CHECK_MSG_STREAM_DAMAGED, offset, last, "%s%s", damage.reason, behind.c_str());
  }

  enum class Last
  {
    NOTHING,
    ITEM_START,
    PARAMETER,
    ITEM_END
  };

  Findings& m_findings;
  std::uint64_t m_offset;    // of the stream in the file
  const unsigned char* m_data;
  std::size_t m_size;
  StreamReader m_reader;
  StreamRecord m_record;
  KyPathText m_path;
  std::vector<Level> m_levels;
  Last m_last = Last::NOTHING;
  unsigned int m_lastParameter = 0;
  StreamReader::Element m_lastEnded = {0, 0};
  std::size_t m_deepest = 0;
  std::size_t m_deepestOffset = 0;
};

// --- Shared data --------------------------------------------------------------------------------------------------------

// Lists the warnings of linking in this thread while it lives, and passes on all others. There is one listener at a time,
// so one of these at a time as well: another one waits.
class SharedWarnings : public KyIErrorListener
{
public:
  explicit SharedWarnings(Findings& findings) : m_lock(s_mutex), m_findings(findings)
  {
    m_before = KyCErrorManager::getSingleton()->setListener(this);
    m_isBeforeKnown = true;
  }
  ~SharedWarnings() override { KyCErrorManager::getSingleton()->setListener(m_before); }
  SharedWarnings(const SharedWarnings&) = delete;
  SharedWarnings& operator=(const SharedWarnings&) = delete;

  void onError(const KyErrorEntry& entry) override
  {
    if (KyIErrorListener* const other = before())
      other->onError(entry);
    else
      write("error", entry);
  }
  void onWarning(const KyErrorEntry& entry) override
  {
    const bool isOurs = std::this_thread::get_id() == m_thread && entry.code >= s_firstSharedWarning &&
                        entry.code <= s_lastSharedWarning;
    if (isOurs)
    {
      if (*entry.text == '\0') throw std::bad_alloc();    // there was no memory for it
      if (m_findings.count(Severity::WARNING, entry.code))
        m_findings.list(Severity::WARNING, entry.code, Finding::NOWHERE, itemNamedIn(entry.text), entry.text);
    }
    else if (KyIErrorListener* const other = before())
      other->onWarning(entry);
    else
      write("warning", entry);
  }

private:
  // "... Item BOARD[2] has a ...": an address has no blanks.
  static std::string itemNamedIn(const std::string& text)
  {
    static const std::string mark = " Item ";
    const std::size_t at = text.find(mark);
    if (at == text.npos) return {};
    const std::size_t begin = at + mark.size();
    return text.substr(begin, text.find(' ', begin) - begin);
  }

  // Another thread may report while the one that makes this object has not been told yet.
  KyIErrorListener* before() const
  {
    while (!m_isBeforeKnown)
      std::this_thread::yield();
    return m_before;
  }

  // As the error manager itself does it when nobody listens.
  static void write(const char* kind, const KyErrorEntry& entry)
  {
    std::fprintf(stderr, "%s 0x%X in %s (line %u): %s\n", kind, entry.code, entry.function, entry.line,
                 quotedText(entry.text).c_str());
  }

  static std::mutex s_mutex;
  const std::lock_guard<std::mutex> m_lock;
  const std::thread::id m_thread = std::this_thread::get_id();
  Findings& m_findings;
  KyIErrorListener* m_before = nullptr;
  std::atomic<bool> m_isBeforeKnown{false};
};

std::mutex SharedWarnings::s_mutex;

// Where the items of these addresses start in the stream, the first of each.
std::unordered_map<std::string, std::size_t> offsetsOf(std::unordered_set<std::string> wanted,
                                                       const unsigned char* data, std::size_t size)
{
  std::unordered_map<std::string, std::size_t> offsets;
  StreamReader reader(data, size);
  StreamRecord record;
  KyPathText path;
  while (!wanted.empty() && reader.next(record))
  {
    if (record.kind == StreamRecord::Kind::ITEM_END) path.leave();
    if (record.kind != StreamRecord::Kind::ITEM_START) continue;
    path.enter(record.id, record.index);
    const std::string address = path.item();
    if (wanted.erase(address) != 0) offsets.emplace(address, record.offset);
  }
  return offsets;
}

void checkSharedData(Findings& findings, const std::string& bytes, const KySectionLayout& layout,
                     KyCInventoryItem& tree)
{
  const std::size_t first = findings.listed().size();
  {
    KyCErrorListPool pool;    // an index of a wrong type, which the walk over the bytes has found already
    const SharedWarnings listener(findings);
    tree.linkSharedData(pool, nullptr);
  }
  std::unordered_set<std::string> addresses;
  for (std::size_t n = first; n < findings.listed().size(); ++n)
    addresses.insert(findings.listed()[n].address);
  if (addresses.empty()) return;
  const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data()) + layout.dataBegin;
  const auto offsets = offsetsOf(std::move(addresses), data, layout.dataEnd - layout.dataBegin);
  for (std::size_t n = first; n < findings.listed().size(); ++n)
  {
    const auto found = offsets.find(findings.listed()[n].address);
    if (found != offsets.end()) findings.listed()[n].offset = layout.dataBegin + found->second;
  }
}

// --- The whole ----------------------------------------------------------------------------------------------------------

void noteHeadersElsewhere(Findings& findings, const std::string& bytes)
{
  static const std::string marks("INVE\x55\x4B\x59\xAA", 8);
  for (std::size_t at = bytes.find(marks); at != bytes.npos; at = bytes.find(marks, at + marks.size()))
  {
    if (kyHeaderAt(bytes, at).isUsable) findings.add(Severity::NOTE, KY_CHECK_MSG_HEADER_ELSEWHERE, at, "", nullptr);
  }
}

void takeReports(Findings& findings, const KyCErrorListPool& pool)
{
  for (unsigned int n = 0; n < pool.getEntryCount(); ++n)
  {
    const KyErrorEntry& entry = pool.getEntry(n);
    if (findings.count(Severity::ERROR, entry.code))
      findings.list(Severity::ERROR, entry.code, Finding::NOWHERE, "", entry.text);
  }
}

// True when nothing keeps the tree from being read.
bool checkSection(Findings& findings, const std::string& bytes, const std::string& name, const KySectionLayout& layout)
{
  if (!layout.isThere)
  {
    findings.add(Severity::ERROR, KY_KIT_MSG_NO_SECTION, Finding::NOWHERE, "", "%s", name.c_str());
    noteHeadersElsewhere(findings, bytes);
    return false;
  }
  RecordCheck records(findings, bytes);
  const bool isBroken = records.findErrors(layout);
  if (!isBroken) records.compare(layout);
  if (layout.dataBegin == layout.dataEnd)
  {
    if (!isBroken) findings.add(Severity::ERROR, KY_CHECK_MSG_NO_TREE, layout.dataBegin, "", nullptr);
    return false;
  }
  return TreeCheck(findings, bytes, layout).run() && !isBroken;
}

bool readsAsTree(const std::string& bytes, const KySectionLayout& layout)
{
  KyCErrorListPool pool;
  const bool isRead = layout.isReadable && readTreeFromBytes(pool, kyReadableSection(bytes, layout), "") != nullptr;
  kyThrowIfOutOfMemory(pool);
  return isRead;
}

// What the start of the file has to do with a section that was taken from the end.
void checkStart(Findings& findings, const std::string& bytes, const KySectionLayout& layout, bool isReadable)
{
  const KySectionLayout atStart = kyLayoutAtStart(bytes);
  if (!layout.isAtEnd || layout.begin == 0 || !atStart.isThere) return;
  const bool isStartReadable = readsAsTree(bytes, atStart);
  if (!isReadable && isStartReadable) findings.add(Severity::NOTE, KY_CHECK_MSG_START_IS_SOUND, 0, "", nullptr);
  if (!isReadable || kyIsSameSection(atStart, layout)) return;
  findings.add(Severity::WARNING, isStartReadable ? KY_CHECK_MSG_TWO_SECTIONS : KY_CHECK_MSG_START_IS_DAMAGED, 0, "",
               nullptr);
}

void check(Findings& findings, const std::string& bytes, const std::string& name)
{
  const KySectionLayout layout = kyLayoutOf(bytes);
  const bool isReadable = checkSection(findings, bytes, name, layout);
  checkStart(findings, bytes, layout, isReadable);
  KyCErrorListPool pool;
  const TreePointer tree = readTreeFromBytes(pool, bytes, name);
  kyThrowIfOutOfMemory(pool);
  if (tree && isReadable) checkSharedData(findings, bytes, layout, *tree);
  if (!tree && isReadable)
    findings.add(Severity::ERROR, KY_CHECK_MSG_READERS_DISAGREE, layout.dataBegin, "", "%s",
                 pool.getEntryCount() != 0 ? pool.getEntry(0).text : "no tree");
}

void conclude(CheckResult& result)
{
  if (result.verdict == Verdict::UNREADABLE) return;
  result.verdict = result.errors != 0 ? Verdict::DAMAGED : result.warnings != 0 ? Verdict::FINDINGS : Verdict::FINE;
}
}    // namespace

CheckResult checkBytes(const std::string& bytes, const std::string& name, const CheckOptions& options)
{
  CheckResult result;
  result.name = name;
  Findings findings(result, options);
  if (bytes.size() > 0xFFFFFFFFu)
  {
    result.verdict = Verdict::UNREADABLE;
    findings.add(Severity::ERROR, KY_CHECK_MSG_TOO_LARGE, Finding::NOWHERE, "", "%s", name.c_str());
  }
  else
    check(findings, bytes, name);
  conclude(result);
  return result;
}

CheckResult checkFile(const std::string& path, const CheckOptions& options)
{
  const std::string name = path == "-" ? "standard input" : path;
  KyCErrorListPool pool;
  std::string bytes;
  if (kyReadSmallFile(pool, path, bytes)) return checkBytes(bytes, name, options);
  kyThrowIfOutOfMemory(pool);
  CheckResult result;
  result.name = name;
  result.verdict = Verdict::UNREADABLE;
  Findings findings(result, options);
  takeReports(findings, pool);
  conclude(result);
  return result;
}

const char* severityName(Severity severity)
{
  return severity == Severity::ERROR ? "error" : severity == Severity::WARNING ? "warning" : "note";
}

const char* verdictName(Verdict verdict)
{
  switch (verdict)
  {
    case Verdict::FINE:
      return "fine";
    case Verdict::FINDINGS:
      return "findings";
    case Verdict::DAMAGED:
      return "damaged";
    case Verdict::UNREADABLE:
      return "unreadable";
  }
  return "";
}

std::string checkAsJson(const std::vector<CheckResult>& results)
{
  Json files = Json::array();
  for (const CheckResult& result : results)
  {
    Json findings = Json::array();
    for (const Finding& finding : result.findings)
    {
      char codeText[16];
      std::snprintf(codeText, sizeof(codeText), "0x%X", finding.code);
      Json entry = Json::object();
      entry["severity"] = severityName(finding.severity);
      entry["code"] = finding.code;
      entry["codeText"] = codeText;
      if (finding.offset != Finding::NOWHERE) entry["offset"] = finding.offset;
      if (!finding.address.empty()) entry["address"] = finding.address;
      entry["text"] = jsonOfText(finding.text);
      entry["remedy"] = finding.remedy;
      if (finding.more != 0) entry["more"] = finding.more;
      findings.push_back(std::move(entry));
    }
    Json file = Json::object();
    file["file"] = jsonOfText(result.name);
    file["verdict"] = verdictName(result.verdict);
    file["errors"] = result.errors;
    file["warnings"] = result.warnings;
    file["notes"] = result.notes;
    file["findings"] = std::move(findings);
    files.push_back(std::move(file));
  }
  return dumped(files, 2) + "\n";
}
}    // namespace KyNInventoryKit
