#include "ManPage.h"

#include <cctype>

#include "Program.h"

namespace
{
// The text as it is, whatever roff makes of some of its characters.
std::string escaped(const std::string& text)
{
  std::string roff;
  bool isLineStart = true;
  for (const char c : text)
  {
    if (isLineStart && (c == '.' || c == '\'')) roff += "\\&";
    isLineStart = c == '\n';
    if (c == '\\')
      roff += "\\e";
    else if (c == '-')
      roff += "\\-";
    else if (c == '\'')
      roff += "\\(aq";
    else if (c == '~')
      roff += "\\(ti";
    else if (c == '^')
      roff += "\\(ha";
    else if (c == '`')
      roff += "\\(ga";
    else
      roff += c;
  }
  return roff;
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + escaped(text) + "\\fR"; }

std::string upperCase(std::string text)
{
  for (char& c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string synopsis(const CommandRow& row)
{
  if (row.name.empty()) return bold("kyinventory") + " [" + italic("OPTIONS") + "] " + italic("COMMAND") + " ...\n";
  std::string text = bold("kyinventory " + row.name) + " [" + italic("OPTIONS") + "]";
  for (const OptionRow& option : row.options)
    if (option.isRequired) text += " " + bold(option.names.front()) + " " + italic(option.value);
  for (const ArgumentRow& argument : row.arguments)
  {
    const std::string once = italic(argument.name);
    const std::string word = (argument.isTwice ? once + " " : "") + once + (argument.isMany ? "..." : "");
    text += argument.isRequired ? " " + word : " [" + word + "]";
  }
  return text + "\n";
}

std::string description(const CommandRow& row)
{
  std::string text = ".SH DESCRIPTION\n" + escaped(row.meaning) + (row.meaning.back() == '.' ? "\n" : ".\n");
  for (const std::string& paragraph : paragraphsOf(row.manual.details))
    text += paragraph[0] == ' ' ? ".PP\n.nf\n" + escaped(paragraph) + "\n.fi\n" : ".PP\n" + escaped(paragraph) + "\n";
  return text;
}

std::string commands(const std::vector<CommandRow>& table)
{
  std::string text = ".SH COMMANDS\n";
  for (const CommandRow& row : table)
    if (!row.name.empty()) text += ".TP\n" + bold(row.name) + "\n" + escaped(row.meaning) + ".\n";
  return text;
}

std::string arguments(const CommandRow& row)
{
  if (row.arguments.empty()) return {};
  std::string text = ".SH ARGUMENTS\n";
  for (const ArgumentRow& argument : row.arguments)
    text += ".TP\n" + italic(argument.name) + "\n" + escaped(argument.meaning) + ".\n";
  return text;
}

std::string options(const CommandRow& row)
{
  std::string text = ".SH OPTIONS\n";
  for (const OptionRow& option : row.options)
  {
    std::string names;
    for (const std::string& name : option.names)
      names += (names.empty() ? "" : ", ") + bold(name);
    text += ".TP\n" + names + (option.value.empty() ? "" : " " + italic(option.value)) + "\n";
    text += escaped(option.meaning) + ".\n";
    if (option.isRequired) text += "Required.\n";
    if (option.choices.empty()) continue;
    text += "One of";
    for (const std::string& choice : option.choices)
      text += (&choice == &option.choices.front() ? " " : ", ") + bold(choice);
    text += ".\n";
  }
  return text;
}

std::string examples(const CommandRow& row)
{
  if (row.manual.examples.empty()) return {};
  std::string text = ".SH EXAMPLES\n";
  for (const Manual::Example& example : row.manual.examples)
    text += ".TP\n" + bold(example.command) + "\n" + escaped(example.meaning) + "\n";
  return text;
}

std::string exitStatus()
{
  std::string text = ".SH EXIT STATUS\n";
  for (const ExitMeaning& exit : s_exitMeanings)
    text += ".TP\n" + bold(std::to_string(exit.code)) + "\n" + escaped(exit.meaning) + ".\n";
  return text + ".PP\nA closed pipe on standard output ends the program by SIGPIPE, as usual.\n";
}

std::string environment()
{
  return ".SH ENVIRONMENT\n.TP\n" + bold("PAGER") +
         "\nThe program that long output on a terminal goes through; none when it is empty or " + bold("cat") +
         ".\nWithout it, " + bold("less -FRX") + " or " + bold("more") + ".\n.TP\n" + bold("NO_COLOR") +
         "\nWhen set and not empty, output has no colour. Neither has it when " + bold("TERM") + " is " + bold("dumb") +
         ".\n";
}

std::string seeAlso(const std::vector<CommandRow>& table, const CommandRow& page)
{
  std::string text;
  for (const CommandRow& row : table)
  {
    if (&row == &page || (!page.name.empty() && !row.name.empty())) continue;
    text += (text.empty() ? "" : ",\n") + std::string(".BR ") + escaped(manName(row)) + " (1)";
  }
  std::string list;    // the comma stands behind the bracket, on the macro's line
  for (std::size_t n = 0; n < text.size(); ++n)
    list += text.compare(n, 5, "(1),\n") == 0 ? (n += 4, "(1),\n") : std::string(1, text[n]);
  return ".SH SEE ALSO\n" + list + "\n";
}
}    // namespace

std::string manName(const CommandRow& row) { return row.name.empty() ? "kyinventory" : "kyinventory-" + row.name; }

std::string manPage(const std::vector<CommandRow>& table, const CommandRow& row)
{
  std::string text = ".\\\" Made from the program's command line; edit that.\n.TH " + escaped(upperCase(manName(row))) +
                     " 1 \"\" \"kyinventory " + escaped(KY_VERSION) + "\" \"User Commands\"\n.nh\n.ad l\n";
  std::string meaning = row.meaning;
  if (meaning.back() == '.') meaning.pop_back();
  meaning.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(meaning.front())));
  text += ".SH NAME\n" + escaped(manName(row)) + " \\- " + escaped(meaning) + "\n.SH SYNOPSIS\n" + synopsis(row) +
          description(row);
  text += row.name.empty() ? commands(table) : arguments(row);
  return text + options(row) + examples(row) + exitStatus() + environment() + seeAlso(table, row);
}
