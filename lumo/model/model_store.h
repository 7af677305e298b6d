#ifndef LUMO_MODEL_MODEL_STORE_H
#define LUMO_MODEL_MODEL_STORE_H

#include <stack>
#include <vector>

#include "lumo/model/evaluator.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// A model over the terms of one manager: values for constants, and for other terms that were given one, from
/// which the value of every term follows.
class ModelStore
{
 public:
  /// One value that a model is given.
  struct ModelDefinition
  {
    ModelDefinition(const Term* defined_term, const Term* defining_value, bool in_force)
        : term(defined_term), value(defining_value), flag(in_force)
    {}

    const Term* term;   ///< what gets a value, normally a constant
    const Term* value;  ///< any term of the same sort; it stands for its value at the time of the replay
    bool flag;          ///< whether the definition is in force: `replay` drops it if not
  };

  using DefinitionStack = std::stack<ModelDefinition, std::vector<ModelDefinition>>;

  explicit ModelStore(TermManager* mgr) : mgr_(mgr), evaluator_(mgr) {}

  /// Takes all definitions from the stack, newest first: each term gets the value that the defining term has
  /// under the model so far. A later step overrides an earlier one for the same term; numerals, true and
  /// false keep their own values whatever is said of them. A definition whose two sorts differ, or whose
  /// terms are not the manager's, is refused with an `Exception` and stays on the stack with those below it.
  void replay(DefinitionStack& defs);

  /// The numeral, true or false that t evaluates to; constants without a value count as 0 or false.
  /// A term of another manager is refused with an `Exception`.
  [[nodiscard]] const Term* get_value(const Term* t);

 private:
  TermManager* mgr_;
  Evaluator evaluator_;
};

}  // namespace lumo

#endif
