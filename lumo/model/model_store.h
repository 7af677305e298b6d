#ifndef LUMO_MODEL_MODEL_STORE_H
#define LUMO_MODEL_MODEL_STORE_H

#include <cstddef>
#include <optional>
#include <stack>
#include <vector>

#include "lumo/model/evaluator.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// A model over the terms of one manager: values for constants, and for other terms that were given one. The value
/// of every term follows from them.
///
/// A value given to a compound term may be wrong: the values of the constants may give the term another value.
/// `get_value` and `get_number` use the given value. Checks do not: `holds` and `find_contradicted` use only the
/// values of constants.
///
/// Memory and time are linear in what was defined and requested. A model may be used after `TermManager::release`
/// only if it was never given a term that was released.
///
/// Every member refuses null pointers and terms of another manager with an `Exception`.
class ModelStore
{
 public:
  /// One value for a model.
  struct ModelDefinition
  {
    ModelDefinition(const Term* defined_term, const Term* defining_value, bool in_force)
        : term(defined_term), value(defining_value), flag(in_force)
    {}

    const Term* term;   ///< the term that gets a value, normally a constant
    const Term* value;  ///< any term of the same sort; it stands for its value at the time of the replay
    bool flag;          ///< whether the definition is active; `replay` ignores it if not
  };

  using DefinitionStack = std::stack<ModelDefinition, std::vector<ModelDefinition>>;

  explicit ModelStore(TermManager* mgr) : mgr_(mgr), evaluator_(mgr) {}

  [[nodiscard]] TermManager* get_manager() const { return mgr_; }

  // ------------------------------------------------------------------------------------------- definitions

  /// Takes all definitions from the stack, newest first: each term gets the value that the defining term has
  /// under the model so far. A later step overrides an earlier one for the same term; numerals, true and
  /// false keep their own values. A definition whose two sorts differ, or whose
  /// terms are not the manager's, is refused with an `Exception` and stays on the stack with those below it.
  void replay(DefinitionStack& defs);
  /// The same, but leaves the stack unchanged. If a definition is refused, those above it have been taken.
  void replay_keeping(const DefinitionStack& defs);

  /// Gives one term the value that another one of the same sort has under the model so far.
  void set_value(const Term* t, const Term* value);
  /// Gives a term the value of a number: modulo 2^w for a bit-vector, 0 or 1 for a Boolean. Other numbers are
  /// refused with an `Exception`.
  void set_value(const Term* t, const QNumber& number);
  /// Removes the value of a term. No effect if it has none.
  void unset_value(const Term* t);
  /// Whether the model defines t. Default values (0 or false) do not count.
  [[nodiscard]] bool has_value(const Term* t) const;
  /// Removes all values.
  void clear();

  /// The number of terms that the model defines.
  [[nodiscard]] std::size_t get_num_values() const { return evaluator_.get_num_given(); }
  /// Calls visit(const Term* t, const QNumber& number) for each term that the model defines, in the order in which
  /// they were first defined. The visitor must not change the model.
  template <class Visitor>
  void for_each_value(Visitor visit) const
  {
    evaluator_.for_each_given([&visit](const Evaluator::Given& given) { visit(given.term, given.number); });
  }

  // ------------------------------------------------------------------------------------------------ values

  /// The numeral, true or false that t evaluates to; constants without a value count as 0 or false.
  [[nodiscard]] const Term* get_value(const Term* t);
  /// The value of t as a number: the pattern of a bit-vector, 1 for true and 0 for false. Makes no term and
  /// caches no result, so several threads may call it on one model at a time.
  [[nodiscard]] QNumber get_number(const Term* t) const;

  // ------------------------------------------------------------------------------------------------ checks

  /// Whether the values of constants make a Boolean term true. Refuses a term of another sort with an `Exception`.
  [[nodiscard]] bool holds(const Term* t);
  /// The first compound term whose definition contradicts the values of constants, in the
  /// order of definition; null if there is none.
  [[nodiscard]] const Term* find_contradicted();

 private:
  void check_own_term(const Term* t) const;
  void check_definition(const ModelDefinition& definition) const;
  /// Takes a definition. Precondition: it was checked.
  void take(const ModelDefinition& definition);
  void define(const Term* t, QNumber number, const Term* value);
  /// The evaluator that was given the values of constants only.
  [[nodiscard]] Evaluator& get_checker() { return checker_.has_value() ? *checker_ : evaluator_; }

  TermManager* mgr_;
  Evaluator evaluator_;
  std::optional<Evaluator> checker_;  ///< if there is a definition of a compound term
};

}  // namespace lumo

#endif
