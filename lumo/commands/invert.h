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

/// The request of an assertion: `(= t v)` requests that the application t has the literal v as its value, `(not t)`
/// that the application t is false, any other application that it is true. Throws an `Exception` for a constant or
/// a literal alone.
[[nodiscard]] Request make_request(TermManager& mgr, const Term* assertion);

/// Answers requests over the constants of one manager with definitions that are consistent with each other.
class Inverter
{
 public:
  explicit Inverter(TermManager& mgr) : mgr_(mgr), model_(&mgr) {}

  /// Runs the calculator of the request's operator and returns the new definitions of constants, which no earlier
  /// request has made, in the calculator's order. Messages use the number for the request.
  ///
  /// Throws an `Exception` if there is no answer: no calculator, a refusal of the calculator, a value for a
  /// compound argument, an application that the definitions do not give its value, or a constant that has
  /// another value already. Then the request has no effect.
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
