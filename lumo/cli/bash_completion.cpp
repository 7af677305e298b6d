#include "lumo/cli/bash_completion.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/cli/options.h"

namespace lumo::cli {

namespace {

constexpr std::string_view kHead = R"(# Completion of lumo for bash; made from lumo's table of options.

_lumo_words()
{
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_lumo_files()
{
  compopt -o filenames 2> /dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

# Scripts and folders, or all files if there is no script.
_lumo_scripts()
{
  compopt -o filenames 2> /dev/null
  mapfile -t COMPREPLY < <(compgen -f -X '!*.smt2' -- "$1")
  if [[ ${#COMPREPLY[@]} -eq 0 ]]; then
    _lumo_files "$1"
    return
  fi
  mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "$1")
}

_lumo()
{
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local subcommand='' takes_options=yes i
  COMPREPLY=()
  # Readline makes the equals sign of --option=value a separate word.
  if [[ $word == = ]]; then
    word=''
  elif [[ $before == = ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --) takes_options='' ;;
      -?*) ;;
      *) if [[ -z $subcommand ]]; then subcommand=${COMP_WORDS[i]}; fi ;;
    esac
  done
)";

constexpr std::string_view kFoot = R"(}

complete -F _lumo lumo
)";

/// The line, if any, that completes a value of that kind.
std::string_view get_action(ValueKind kind)
{
  switch (kind) {
    case ValueKind::kScript:
      return R"(_lumo_scripts "$word")";
    case ValueKind::kFile:
      return R"(_lumo_files "$word")";
    case ValueKind::kCommand:
      return R"(mapfile -t COMPREPLY < <(compgen -c -- "$word"))";
    case ValueKind::kNumber:
      break;
  }
  return {};  // no completion is possible
}

std::string join_option_names(const CLI::App& app)
{
  std::string words;
  for (const CLI::Option* option : list_options(app)) {
    for (const std::string& name : list_names(*option))
      words += (words.empty() ? "" : " ") + name;
  }
  return words;
}

std::string join_subcommand_names(const CLI::App& app)
{
  std::string words;
  for (const CLI::App* subcommand : list_subcommands(app))
    words += (words.empty() ? "" : " ") + subcommand->get_name();
  return words;
}

/// After an option that takes a value, completes the value.
void print_values(std::ostream& out, const CLI::App& app)
{
  out << "  if [[ -n $takes_options ]]; then\n    case \"$subcommand $before\" in\n";
  for (const CLI::App* subcommand : list_subcommands(app)) {
    for (const CLI::Option* option : list_options(*subcommand)) {
      if (!takes_value(*option)) continue;
      std::string pattern;
      for (const std::string& name : list_names(*option))
        pattern += (pattern.empty() ? "'" : " | '") + subcommand->get_name() + " " + name + "'";
      const std::string_view action = get_action(get_value_kind(*option));
      out << "      " << pattern << ")\n";
      if (!action.empty()) out << "        " << action << '\n';
      out << "        return\n        ;;\n";
    }
  }
  out << "    esac\n  fi\n";
}

void print_options(std::ostream& out, const CLI::App& app)
{
  out << "  if [[ -n $takes_options && $word == -* ]]; then\n    case $subcommand in\n      '') _lumo_words '"
      << join_option_names(app) << "' \"$word\" ;;\n";
  for (const CLI::App* subcommand : list_subcommands(app)) {
    out << "      " << subcommand->get_name() << ") _lumo_words '" << join_option_names(*subcommand)
        << "' \"$word\" ;;\n";
  }
  out << "    esac\n    return\n  fi\n";
}

void print_arguments(std::ostream& out, const CLI::App& app)
{
  out << "  case $subcommand in\n    '') _lumo_words '" << join_subcommand_names(app) << "' \"$word\" ;;\n";
  for (const CLI::App* subcommand : list_subcommands(app)) {
    for (const CLI::Option* argument : list_arguments(*subcommand))
      out << "    " << subcommand->get_name() << ") " << get_action(get_value_kind(*argument)) << " ;;\n";
  }
  out << "  esac\n";
}

}  // namespace

void print_bash_completion(std::ostream& out, const CLI::App& app)
{
  out << kHead;
  print_values(out, app);
  print_options(out, app);
  print_arguments(out, app);
  out << kFoot;
}

}  // namespace lumo::cli
