#include "lumo/cli/messages.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "lumo/cli/options.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/nearest_word.h"

namespace lumo::cli {

namespace {

using smtlib::make_excerpt;

bool looks_like_option(const std::string& word) { return word.size() > 1 && word.front() == '-'; }

bool looks_like_file(const std::string& word)
{
  std::error_code ignored;
  return std::filesystem::is_regular_file(word, ignored) || word == "-" || word.ends_with(".smt2");
}

/// A message of the program. `meant` and the subcommand may be empty.
std::string make_line(const std::string& sentence, const std::string& meant, const std::string& subcommand)
{
  const std::string suggestion = meant.empty() ? "" : "; perhaps " + make_excerpt(meant) + " was meant";
  return "lumo: " + sentence + suggestion + "; see lumo " + subcommand + (subcommand.empty() ? "" : " ") +
         "--help";
}

std::string explain_subcommand(const CLI::App& app, const std::string& word)
{
  if (word.empty()) return make_line("the name of the subcommand is empty", "", "");
  std::vector<std::string> names;
  for (const CLI::App* subcommand : list_subcommands(app))
    names.push_back(subcommand->get_name());
  const std::string meant = looks_like_file(word) ? "lumo solve " + word : smtlib::find_nearest(word, names);
  return make_line(make_excerpt(word) + " is not a subcommand", meant, "");
}

/// The nearest long option; dashes are ignored, as in `-model`.
std::string find_nearest_option(const CLI::App& app, const std::string& name)
{
  std::vector<std::string> words;
  for (const CLI::Option* option : list_options(app))
    words.insert(words.end(), option->get_lnames().begin(), option->get_lnames().end());
  const std::size_t start = name.find_first_not_of('-');
  if (start == std::string::npos) return {};
  const std::string word = smtlib::find_nearest(name.substr(start), words);
  return word.empty() ? word : "--" + word;
}

std::string explain_option(const CLI::App& app, const std::string& word)
{
  const std::string name = word.substr(0, word.find('='));
  const std::string subcommand = app.get_parent() == nullptr ? "" : app.get_name();
  return make_line(
      make_excerpt(name) + " is not an option of " + (subcommand.empty() ? "lumo itself" : subcommand),
      find_nearest_option(app, name), subcommand);
}

/// An unknown option is the most likely mistake, even if CLI11 reported another one first, for example
/// that a file is missing.
const CLI::App* find_app_with_unknown_option(const CLI::App& app, std::string& option)
{
  std::vector<const CLI::App*> apps = list_subcommands(app);
  apps.insert(apps.begin(), &app);
  for (const CLI::App* candidate : apps) {
    const std::vector<std::string> words = candidate->remaining();
    const auto found = std::find_if(words.begin(), words.end(), looks_like_option);
    if (found == words.end()) continue;
    option = *found;
    return candidate;
  }
  return nullptr;
}

const CLI::App* find_given_subcommand(const CLI::App& app)
{
  for (const CLI::App* subcommand : list_subcommands(app)) {
    if (subcommand->parsed()) return subcommand;
  }
  return nullptr;
}

/// The option whose value is not a number. Only options with numbers as values can be the cause.
const CLI::Option* find_wrong_number(const CLI::App& subcommand)
{
  for (const CLI::Option* option : list_options(subcommand)) {
    if (option->count() > 0 && takes_value(*option) && get_value_kind(*option) == ValueKind::kNumber)
      return option;
  }
  return nullptr;
}

/// The option at the start of CLI11's sentence, where flags have no dashes: the exception itself does not
/// contain it.
const CLI::Option* find_first_word(const CLI::App& subcommand, const std::string& sentence)
{
  const std::string word = sentence.substr(0, sentence.find_first_of(": "));
  const CLI::Option* option = subcommand.get_option_no_throw(word);
  return option != nullptr ? option : subcommand.get_option_no_throw("--" + word);
}

std::string describe_mismatch(const CLI::Option& option)
{
  const std::string name = option.get_name();
  if (!takes_value(option)) return name + " takes no value";
  if (option.count() > 1) return name + " is given more than once";
  return name + " needs a value, " + option.get_type_name();
}

/// Describes the mistake; in CLI11's words if it is not one of the usual mistakes.
std::string describe(const CLI::App& subcommand, const CLI::ParseError& error)
{
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !subcommand.remaining().empty())
    return make_excerpt(subcommand.remaining().front()) + " is one argument too many";
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    if (const CLI::Option* option = find_first_word(subcommand, error.what()))
      return describe_mismatch(*option);
  }
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    if (const CLI::Option* option = find_wrong_number(subcommand)) {
      return option->get_name() + " is given " + make_excerpt(option->results().front()) +
             ", but a number was expected";
    }
  }
  return error.what();
}

}  // namespace

std::string explain(const CLI::App& app, const CLI::ParseError& error)
{
  const CLI::App* subcommand = find_given_subcommand(app);
  const std::vector<std::string> words = app.remaining();
  if (subcommand == nullptr && !words.empty() && !looks_like_option(words.front()))
    return explain_subcommand(app, words.front());
  std::string option;
  if (const CLI::App* owner = find_app_with_unknown_option(app, option))
    return explain_option(*owner, option);
  if (subcommand == nullptr) return make_line("a subcommand is required", "", "");
  return make_line(describe(*subcommand, error), "", subcommand->get_name());
}

}  // namespace lumo::cli
