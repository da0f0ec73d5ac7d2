#include "CompletionScript.h"

namespace
{
using Texts = std::vector<std::string>;

std::string joined(const Texts& texts, const std::string& separator)
{
  std::string all;
  for (const std::string& text : texts)
    all += (all.empty() ? "" : separator) + text;
  return all;
}

Texts namesOf(const CommandRow& row)
{
  Texts names;
  for (const OptionRow& option : row.options)
    names.insert(names.end(), option.names.begin(), option.names.end());
  return names;
}

Texts commandsOf(const std::vector<CommandRow>& table)
{
  Texts names;
  for (const CommandRow& row : table)
    if (!row.name.empty()) names.push_back(row.name);
  return names;
}

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
  for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + with.size()))
    text.replace(at, what.size(), with);
  return text;
}

const char* wordOf(Completion completion)
{
  switch (completion)
  {
    case Completion::FILES:
      return "files";
    case Completion::ADDRESSES:
      return "addresses";
    case Completion::NAMES:
      return "names";
    case Completion::CHOICES:
      return "choices";
    case Completion::NOTHING:
      break;
  }
  return "nothing";
}

// ---- bash ----

// What bash offers for the arguments of a command: the kind of each; the last one once more when there may be many.
std::string bashRow(const CommandRow& row)
{
  Texts withValue;
  for (const OptionRow& option : row.options)
    if (!option.value.empty()) withValue.insert(withValue.end(), option.names.begin(), option.names.end());
  Texts kinds;
  for (const ArgumentRow& argument : row.arguments)
    kinds.emplace_back(wordOf(argument.completion));
  const bool isMany = !row.arguments.empty() && row.arguments.back().isMany;
  return "    " + (row.name.empty() ? "''" : row.name) + ")\n      options='" + joined(namesOf(row), " ") +
         "'\n      with_value=' " + joined(withValue, " ") + " '\n      kinds=(" + joined(kinds, " ") +
         ")\n      many=" + (isMany ? "1" : "") + "\n      ;;\n";
}

std::string bashValues(const CommandRow& row)
{
  std::string text;
  for (const OptionRow& option : row.options)
  {
    if (option.value.empty()) continue;
    Texts patterns;
    for (const std::string& name : option.names)
      patterns.push_back(row.name + ":" + name);
    text += "    " + joined(patterns, " | ") + ") ";
    if (option.completion == Completion::CHOICES)
      text += "COMPREPLY=($(compgen -W '" + joined(option.choices, " ") + "' -- \"$cur\")) ;;\n";
    else
      text += std::string("_kyinventory_offer ") + wordOf(option.completion) + " \"$cur\" \"$file\" ;;\n";
  }
  return text;
}

const char* const s_bash = R"sh(# bash completion of kyinventory, made from its command line.

# _kyinventory_offer KIND BEGUN FILE
_kyinventory_offer()
{
  local IFS=$'\n'
  case $1 in
    files)
      compopt -o filenames 2>/dev/null
      COMPREPLY=($(compgen -f -- "$2"))
      ;;
    addresses | names)
      local file=$3
      [ "$1" = addresses ] || file=
      [ "$1$file" != addresses ] || return
      compopt -o nospace 2>/dev/null
      COMPREPLY=($("${COMP_WORDS[0]}" complete-address "$file" "$2" 2>/dev/null))
      ;;
  esac
}

_kyinventory()
{
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' file='' options with_value kinds many count=0 n word
  COMPREPLY=()

  # bash makes words of their own of "=" and of what stands behind it.
  if [ "$cur" = = ]; then
    cur=
  elif [ "$prev" = = ]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  if [[ ${COMP_WORDS[COMP_CWORD]} = = || ${COMP_WORDS[COMP_CWORD - 1]} = = ]] && [[ $prev != -* ]]; then
    return
  fi

  for ((n = 1; n < COMP_CWORD; n++)); do
    [[ ${COMP_WORDS[n]} = -* ]] || { command=${COMP_WORDS[n]}; break; }
  done
  case $command in
@ROWS@    *)
      return
      ;;
  esac

  case $command:$prev in
@VALUES@    *)
      if [[ $cur = -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
      elif [ -z "$command" ]; then
        COMPREPLY=($(compgen -W '@COMMANDS@' -- "$cur"))
        return
      fi
      for ((n++; n < COMP_CWORD; n++)); do
        word=${COMP_WORDS[n]}
        if [ "$word" = = ]; then
          ((n++))
        elif [[ $with_value = *" $word "* ]]; then
          ((n++))
          [ "${COMP_WORDS[n]}" != = ] || ((n++))
        elif [[ $word != -?* ]]; then
          ((count++)) || file=$word
        fi
      done
      if [ -n "$many" ] && ((count >= ${#kinds[@]})); then
        count=$((${#kinds[@]} - 1))
      fi
      case $file in "~/"*) file=$HOME/${file#"~/"} ;; esac
      _kyinventory_offer "${kinds[count]-nothing}" "$cur" "$file"
      ;;
  esac
}

complete -F _kyinventory kyinventory
)sh";

// ---- zsh ----

// A text of an option inside '...': brackets, colons and quotes mean something there.
std::string zshText(const std::string& text)
{
  std::string escaped;
  for (const char c : text)
  {
    if (c == '\'') escaped += "'\\'";
    if (c == '[' || c == ']' || c == ':' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::string zshAction(Completion completion, const Texts& choices)
{
  if (completion == Completion::CHOICES) return "(" + joined(choices, " ") + ")";
  if (completion == Completion::FILES) return "_files";
  if (completion == Completion::ADDRESSES) return "->addresses";
  return completion == Completion::NAMES ? "->names" : " ";
}

std::string zshOptions(const CommandRow& row)
{
  std::string text;
  for (const OptionRow& option : row.options)
  {
    for (const std::string& name : option.names)
    {
      const std::string value =
          option.value.empty() ? "" : ":" + option.value + ":" + zshAction(option.completion, option.choices);
      const bool isLongWithValue = !option.value.empty() && name.compare(0, 2, "--") == 0;
      text += " \\\n    '" + name + (isLongWithValue ? "=" : "") + "[" + zshText(option.meaning) + "]" + value + "'";
    }
  }
  return text;
}

std::string zshRow(const CommandRow& row)
{
  std::string text = "      " + row.name + ")\n  _arguments -C" + zshOptions(row);
  std::size_t place = 0;
  for (const ArgumentRow& argument : row.arguments)
  {
    ++place;
    const std::string where = argument.isMany ? "*" : std::to_string(place);
    text += " \\\n    '" + where + ":" + zshText(argument.name) + ":" + zshAction(argument.completion, {}) + "'";
  }
  return text + "\n        ;;\n";
}

const char* const s_zsh = R"sh(#compdef kyinventory
# zsh completion of kyinventory, made from its command line.

_kyinventory()
{
  local curcontext=$curcontext state line program=$words[1]
  local -a commands found
  typeset -A opt_args
  commands=(
@COMMANDS@  )
  _arguments -C@OPTIONS@ \
    '1:command:->commands' \
    '*::argument:->arguments'
  case $state in
    commands)
      _describe command commands
      return
      ;;
    arguments)
      case $line[1] in
@ROWS@      esac
      ;;
  esac
  case $state in
    addresses) found=(${(f)"$($program complete-address "${(Q)line[1]}" "${(Q)PREFIX}" 2>/dev/null)"}) ;;
    names) found=(${(f)"$($program complete-address '' "${(Q)PREFIX}" 2>/dev/null)"}) ;;
    *) return ;;
  esac
  compadd -S '' -a found
}

if [ "$funcstack[1]" = _kyinventory ]; then
  _kyinventory "$@"
else
  compdef _kyinventory kyinventory
fi
)sh";

// ---- fish ----

std::string fishText(const std::string& text) { return "'" + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + "'"; }

std::string fishOption(const std::string& condition, const OptionRow& option)
{
  std::string text = "complete -c kyinventory -n " + fishText(condition);
  for (const std::string& name : option.names)
    text += name.compare(0, 2, "--") == 0 ? " -l " + name.substr(2) : " -s " + name.substr(1);
  if (option.completion == Completion::FILES)
    text += " -r -F";
  else if (option.completion == Completion::CHOICES)
    text += " -x -a " + fishText(joined(option.choices, " "));
  else if (!option.value.empty())
    text += " -x";
  return text + " -d " + fishText(option.meaning) + "\n";
}

std::string fishRow(const CommandRow& row)
{
  const std::string seen = "__fish_seen_subcommand_from " + row.name;
  std::string text =
      "complete -c kyinventory -n __fish_use_subcommand -f -a " + row.name + " -d " + fishText(row.meaning) + "\n";
  for (const OptionRow& option : row.options)
    text += fishOption(seen, option);
  std::size_t place = 0;
  for (const ArgumentRow& argument : row.arguments)
  {
    const std::string here =
        seen + "; and __kyinventory_at " + std::to_string(place) + (argument.isMany ? " more" : "");
    if (argument.completion == Completion::ADDRESSES)
      text += "complete -c kyinventory -n " + fishText(here) + " -f -a '(__kyinventory_addresses)'\n";
    else if (argument.completion == Completion::NAMES)
      text += "complete -c kyinventory -n " + fishText(here) + " -f -a '(__kyinventory_names)'\n";
    ++place;
  }
  return text;
}

const char* const s_fish = R"sh(# fish completion of kyinventory, made from its command line.

# The arguments behind the sub-command that stand in front of the cursor, without options.
function __kyinventory_arguments
  set -l words (commandline -opc)
  set -e words[1]
  set -l found
  for word in $words
    string match -q -- '-?*' $word; or set -a found $word
  end
  set -e found[1]
  string join \n -- $found
end

# Whether the cursor is at an argument, counted from 0, or (more) behind it.
function __kyinventory_at
  set -l count (count (__kyinventory_arguments))
  test $count -eq $argv[1]; or begin; test "$argv[2]" = more; and test $count -gt $argv[1]; end
end

function __kyinventory_addresses
  set -l arguments (__kyinventory_arguments)
  test -n "$arguments[1]"; and kyinventory complete-address "$arguments[1]" (commandline -ct) 2>/dev/null
end

function __kyinventory_names
  kyinventory complete-address '' (commandline -ct) 2>/dev/null
end

)sh";
}    // namespace

std::string bashCompletion(const std::vector<CommandRow>& table)
{
  std::string rows;
  std::string values;
  for (const CommandRow& row : table)
  {
    rows += bashRow(row);
    values += bashValues(row);
  }
  const std::string script = replaced(replaced(s_bash, "@ROWS@", rows), "@VALUES@", values);
  return replaced(script, "@COMMANDS@", joined(commandsOf(table), " "));
}

std::string zshCompletion(const std::vector<CommandRow>& table)
{
  std::string commands;
  std::string rows;
  for (const CommandRow& row : table)
  {
    if (row.name.empty()) continue;
    commands += "    '" + row.name + ":" + zshText(row.meaning) + "'\n";
    rows += zshRow(row);
  }
  const std::string script = replaced(replaced(s_zsh, "@ROWS@", rows), "@COMMANDS@", commands);
  return replaced(script, "@OPTIONS@", zshOptions(table.front()));
}

std::string fishCompletion(const std::vector<CommandRow>& table)
{
  std::string script = s_fish;
  for (const OptionRow& option : table.front().options)
    script += fishOption("__fish_use_subcommand", option);
  for (const CommandRow& row : table)
    if (!row.name.empty()) script += fishRow(row);
  return script;
}
