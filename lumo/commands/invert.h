#ifndef LUMO_COMMANDS_INVERT_H
#define LUMO_COMMANDS_INVERT_H

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "lumo/model/model_store.h"
#include "lumo/model/model_value.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// An application and the value that it must take.
struct Request
{
  const Term* term;
  const Term* value;
};

/// What an assertion asks for: `(= t v)` asks that the application t takes the literal v, `(not t)` that the
/// application t is false, any other application that it is true. A constant or a literal alone asks for
/// nothing and is an `Exception`.
[[nodiscard]] Request make_request(TermManager& mgr, const Term* assertion);

/// Answers requests over the constants of one manager with definitions that agree with each other.
class Inverter
{
 public:
  explicit Inverter(TermManager& mgr) : mgr_(mgr), model_(&mgr) {}

  /// Runs the calculator of the request's operator and returns the definitions of constants that no earlier
  /// request has made, in the calculator's order. The number is how messages call the request.
  ///
  /// An `Exception` says why there is no answer: no calculator, the calculator's own refusal, a value for a
  /// compound argument, an application that the definitions do not give its value, or a constant that has
  /// another value already. The request then leaves no trace.
  std::vector<ModelValue> solve(const Request& request, std::size_t number);

 private:
  struct Known
  {
    const Term* value;
    std::size_t number;  ///< of the request that made it
  };

  [[nodiscard]] std::vector<ModelStore::ModelDefinition> calculate(const Request& request);
  void assign(const std::vector<ModelStore::ModelDefinition>& pushed);
  void withdraw(const std::vector<ModelStore::ModelDefinition>& pushed);
  void check_compound(const Term* t, const std::vector<ModelStore::ModelDefinition>& pushed);
  void check_value(const Request& request);
  [[nodiscard]] std::vector<ModelValue> take_new(const std::vector<ModelStore::ModelDefinition>& pushed,
                                                 std::size_t number);
  [[nodiscard]] const Term* find_selected_branch(const Term* t);

  TermManager& mgr_;
  ModelStore model_;  ///< the definitions of `known_`, and during `solve` those of the request
  std::unordered_map<const Term*, Known> known_;
};

}  // namespace lumo::commands

#endif
