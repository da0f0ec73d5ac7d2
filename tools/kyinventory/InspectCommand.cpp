// kyinventory inspect: what a file with a section consists of, down to the meaning of each byte.
#include <cstdio>
#include <string>

#include "Command.h"
#include "Files.h"
#include "Output.h"
#include "Progress.h"
#include "SectionEndOption.h"
#include "Terminal.h"
#include "inventorykit/KyImage.h"
#include "inventorykit/KyInspect.h"

namespace
{
using KyNInventoryKit::ByteNote;
using KyNInventoryKit::Inspection;
using KyNInventoryKit::SectionEnd;
using KyNInventoryKit::SectionRecordFields;

constexpr std::size_t s_bytesPerLine = 16;

struct InspectArguments
{
  std::string file;
  SectionEnd at = SectionEnd::READ;
  bool bytes = false;
  bool json = false;
};

std::string number(std::uint64_t value) { return std::to_string(value); }

void line(Output& out, const char* heading, const std::string& text)
{
  char padded[16];
  std::snprintf(padded, sizeof(padded), "%-12s", heading);
  out.text(padded, Style::HEADING).data(text).text("\n");
}

std::string recordText(const SectionRecordFields& record)
{
  if (!record.isThere) return "none";
  return "at byte " + number(record.offset) + ": version " + number(record.version) + ", header " +
         number(record.headerSize) + ", data " + number(record.dataSize) + ", trailer " + number(record.trailerSize) +
         " bytes";
}

std::string cell(const std::string& text, int width)    // negative: flush left
{
  const std::size_t wide = static_cast<std::size_t>(width < 0 ? -width : width);
  const std::string blanks(text.size() < wide ? wide - text.size() : 0, ' ');
  return width < 0 ? text + blanks : blanks + text;
}

void printTypes(Output& out, const Inspection& inspection)
{
  if (inspection.countOfType.empty()) return;
  out.text("\n").text("Type       Parameters", Style::HEADING).text("\n");
  for (const auto& [type, count] : inspection.countOfType)
    out.text(cell(type, -8)).text(cell(number(count), 13)).text("\n");
}

void printIDs(Output& out, const Inspection& inspection)
{
  if (inspection.countOfID.empty()) return;
  std::size_t widest = 2;
  for (const auto& entry : inspection.countOfID)
    widest = std::max(widest, entry.first.size());
  const int width = -static_cast<int>(widest);
  out.text("\n").text(cell("ID", width) + "       Items  Parameters", Style::HEADING).text("\n");
  for (const auto& [id, count] : inspection.countOfID)
    out.data(cell(id, width), Style::NAME)
        .text(cell(number(count.items), 12) + cell(number(count.parameters), 12) + "\n");
}

void print(Output& out, const Inspection& inspection)
{
  const Inspection& i = inspection;
  line(out, "File", withoutControls(i.name) + ", " + number(i.fileSize) + " bytes");
  line(out, "Section",
       "bytes " + number(i.begin) + " to " + number(i.end) + ", " + number(i.end - i.begin) + " bytes, found by its " +
           (i.isAtEnd ? "trailer" : "header") + "; " + number(i.begin) + " bytes in front, " +
           number(i.fileSize - i.end) + " behind");
  line(out, "Header", recordText(i.header));
  line(out, "Trailer", recordText(i.trailer));
  line(out, "SHA-256", i.sha256);
  line(out, "Tree",
       i.dataBegin == i.dataEnd ? "none"
                                : "at byte " + number(i.dataBegin) + ": version " + number(i.streamVersion) + ", " +
                                      number(i.treeSize) + " bytes read, " + number(i.behindTree) + " behind");
  line(out, "Damage", i.damage.empty() ? "none" : "at byte " + number(i.damageOffset) + ": " + i.damage);
  line(out, "Items", number(i.items) + ", " + number(i.depth) + " levels");
  line(out, "Parameters", number(i.parameters));
  line(out, "Texts",
       number(i.storedTexts) + " stored, " + number(i.repeatedTexts) + " repeated, " + number(i.distinctTexts) +
           " different");
  printTypes(out, i);
  printIDs(out, i);
}

// A note takes as many lines as it has sixteens of bytes; its meaning stands in the first.
void print(Output& out, const ByteNote& note)
{
  for (std::size_t at = 0; at < note.bytes.size(); at += s_bytesPerLine)
  {
    char text[24];
    std::snprintf(text, sizeof(text), "%08llX ", static_cast<unsigned long long>(note.offset) + at);
    std::string columns = text;
    const std::size_t count = std::min(s_bytesPerLine, note.bytes.size() - at);
    for (std::size_t n = at; n < at + count; ++n)
    {
      std::snprintf(text, sizeof(text), " %02X", static_cast<unsigned int>(static_cast<unsigned char>(note.bytes[n])));
      columns += text;
    }
    out.text(columns);
    if (at == 0)
    {
      out.text(std::string(3 * (s_bytesPerLine - count) + 2, ' ')).data(note.meaning, Style::VALUE);
      if (!note.address.empty()) out.text("  [").data(note.address, Style::NAME).text("]");
    }
    out.text("\n");
  }
}

void printBytes(Output& out, const InspectArguments& arguments, const std::string& bytes)
{
  KyCErrorListPool ignored;    // the section has been found already
  KyNInventoryKit::annotateBytes(ignored, bytes, arguments.file, arguments.at,
                                 [&out, &arguments](const ByteNote& note)
                                 {
                                   if (arguments.json)
                                     out.text(KyNInventoryKit::noteAsJson(note));
                                   else
                                     print(out, note);
                                   return !out.hasFailed();
                                 });
}

int inspect(const InspectArguments& arguments)
{
  const std::string name = inputName(arguments.file);
  KyCErrorListPool pool;
  std::string bytes;
  Inspection inspection;
  const Progress progress("inspecting " + name);
  if (!KyNInventoryKit::readImage(pool, arguments.file, bytes) ||
      !KyNInventoryKit::inspectBytes(pool, bytes, name, arguments.at, inspection))
  {
    complainAbout(name, pool);
    return EXIT_INPUT;
  }
  Output out;
  if (arguments.bytes)
    printBytes(out, arguments, bytes);
  else if (arguments.json)
    out.text(KyNInventoryKit::inspectionAsJson(inspection));
  else
    print(out, inspection);
  if (inspection.damage.empty()) return out.finish(EXIT_OK);
  const int exitCode = out.finish(EXIT_INPUT);
  if (arguments.bytes)
    complain(name + ": damaged at byte " + number(inspection.damageOffset) + ": " + inspection.damage);
  return exitCode;
}
}    // namespace

void addInspectCommand(CLI::App& program, int& exitCode)
{
  auto arguments = std::make_shared<InspectArguments>();
  CLI::App* command = program.add_subcommand("inspect", "Show where a section lies and what its bytes mean");
  command->add_option("FILE", arguments->file, "File with a section at its end or start; - is standard input")
      ->required();
  command->add_flag("--bytes", arguments->bytes,
                    "Every byte of the section with its offset, its meaning and the address");
  command->add_flag("--json", arguments->json, "Print JSON; with --bytes one object a line");
  addSectionEndOption(*command, arguments->at,
                      "Which section, in a file with two; default: the one that reading takes");
  setManual(
      *command,
      {"Shows the place of the section in the file, the fields of header and trailer, the size and version of the "
       "stored tree, its depth, the numbers of items, parameters and texts, and how many there are of each type "
       "and ID.\n\n"
       "The SHA-256 digest is that of the section alone, as sha256sum gives it for what extract writes.\n\n"
       "--bytes covers every byte of the section once, in order. A damaged section is shown up to the damage; what "
       "is behind it is marked as not read, and the exit code is 3.",
       {{"kyinventory inspect rack.kyinv", "shows places, sizes and counts"},
        {"kyinventory inspect --bytes rack.kyinv", "shows the meaning of every byte"}}});
  command->callback([arguments, &exitCode]() { exitCode = inspect(*arguments); });
}
