#ifndef LUMO_COMMANDS_SHELL_SETTINGS_H
#define LUMO_COMMANDS_SHELL_SETTINGS_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace lumo::commands {

/// What the options of a conversation are set to, as SMT-LIB 2 names them.
class ShellSettings
{
 public:
  /// Options that are true or false
  struct Switches
  {
    bool global_declarations = false;
    bool print_success = false;
    bool produce_assertions = false;
    bool produce_assignments = false;
    bool produce_models = true;
    bool produce_unsat_assumptions = false;
    bool produce_unsat_cores = false;
  };
  enum class Effect : std::uint8_t
  {
    kNone,    ///< the option is not known
    kSet,     ///< it has its new value
    kPassOn,  ///< it has its new value, and is meant for the solver
  };

  [[nodiscard]] const Switches& get_switches() const { return switches_; }
  /// Sets an option, whose keyword has its colon. A value that it cannot have is an `Exception`.
  Effect set(std::string_view keyword, std::string_view value);
  /// The value as `get-option` prints it; nothing if the option is not known.
  [[nodiscard]] std::optional<std::string> get(std::string_view keyword) const;

 private:
  Switches switches_;
  std::map<std::string, std::string, std::less<>> others_;  ///< values by keyword
};

}  // namespace lumo::commands

#endif
