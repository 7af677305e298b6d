#include "lumo/commands/shell_settings.h"

#include <algorithm>

#include "lumo/smtlib/input_error.h"
#include "lumo/terms/characters.h"
#include "lumo/terms/exception.h"

namespace lumo::commands {

namespace {

struct SwitchRow
{
  std::string_view keyword;
  bool ShellSettings::Switches::*member;
};

constexpr SwitchRow kSwitches[] = {
    {":global-declarations", &ShellSettings::Switches::global_declarations},
    {":interactive-mode", &ShellSettings::Switches::produce_assertions},  // its name in older scripts
    {":print-success", &ShellSettings::Switches::print_success},
    {":produce-assertions", &ShellSettings::Switches::produce_assertions},
    {":produce-assignments", &ShellSettings::Switches::produce_assignments},
    {":produce-models", &ShellSettings::Switches::produce_models},
    {":produce-unsat-assumptions", &ShellSettings::Switches::produce_unsat_assumptions},
    {":produce-unsat-cores", &ShellSettings::Switches::produce_unsat_cores},
};

/// Options of which the language says what they are if nobody has set them
constexpr std::pair<std::string_view, std::string_view> kDefaults[] = {
    {":diagnostic-output-channel", "\"stderr\""},
    {":random-seed", "0"},
    {":regular-output-channel", "\"stdout\""},
    {":reproducible-resource-limit", "0"},
};

const SwitchRow* find_switch(std::string_view keyword)
{
  const auto* row = std::find_if(std::begin(kSwitches), std::end(kSwitches),
                                 [&](const SwitchRow& candidate) { return candidate.keyword == keyword; });
  return row != std::end(kSwitches) ? row : nullptr;
}

std::string_view find_default(std::string_view keyword)
{
  for (const auto& [name, value] : kDefaults) {
    if (name == keyword) return value;
  }
  return {};
}

/// Whether the option limits what a solver spends, or makes its choices repeatable; solvers have several names.
bool is_for_solver(std::string_view keyword)
{
  constexpr std::string_view kParts[] = {"timeout",    "tlimit",         "rlimit",
                                         "time-limit", "resource-limit", "seed"};
  return std::any_of(std::begin(kParts), std::end(kParts),
                     [&](std::string_view part) { return keyword.find(part) != std::string_view::npos; });
}

bool is_number(std::string_view value)
{
  return !value.empty() && std::all_of(value.begin(), value.end(), is_digit);
}

[[noreturn]] void refuse(std::string_view keyword, std::string_view value, const std::string& wanted)
{
  throw Exception("the option " + smtlib::make_excerpt(keyword) + " was given " +
                  (value.empty() ? std::string("no value") : smtlib::make_excerpt(value)) + ", but " +
                  wanted + " was expected");
}

}  // namespace

ShellSettings::Effect ShellSettings::set(std::string_view keyword, std::string_view value)
{
  if (const SwitchRow* row = find_switch(keyword); row != nullptr) {
    if (value != "true" && value != "false") refuse(keyword, value, "true or false");
    switches_.*(row->member) = value == "true";
    return Effect::kSet;
  }
  if (is_for_solver(keyword)) {
    if (!is_number(value)) refuse(keyword, value, "a numeral");
    others_[std::string(keyword)] = value;
    return Effect::kPassOn;
  }
  // The channels can stay where they are.
  const std::string_view preset = find_default(keyword);
  return !preset.empty() && value == preset ? Effect::kSet : Effect::kNone;
}

std::optional<std::string> ShellSettings::get(std::string_view keyword) const
{
  if (const SwitchRow* row = find_switch(keyword); row != nullptr) {
    return switches_.*(row->member) ? "true" : "false";
  }
  if (const auto place = others_.find(keyword); place != others_.end()) return place->second;
  const std::string_view preset = find_default(keyword);
  return preset.empty() ? std::nullopt : std::optional<std::string>(preset);
}

}  // namespace lumo::commands
