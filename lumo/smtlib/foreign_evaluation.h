#ifndef LUMO_SMTLIB_FOREIGN_EVALUATION_H
#define LUMO_SMTLIB_FOREIGN_EVALUATION_H

#include <cstddef>
#include <span>
#include <vector>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/foreign_model.h"
#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/foreign_value.h"

namespace lumo::smtlib {

/// The value of a head of arrays, or of `=`, `distinct` and `ite` of any sorts, for values of its arguments. Not known if
/// it is another head, or depends on an argument that is not known.
[[nodiscard]] ForeignValue apply_theory(TermManager& mgr, const ForeignTerms& terms, ForeignTerms::Index term,
                                        std::span<const ForeignValue> args);

/// Evaluates the foreign terms of a script under a model: first with the arguments that elimination left, then with
/// those of the script. The values of placeholders are stored where terms are evaluated.
class ForeignEvaluation
{
 public:
  /// Where the value of a foreign term comes from.
  enum class Source : std::uint8_t
  {
    kUnknown,   ///< there is none
    kComputed,  ///< lumo has evaluated it
    kSolver,    ///< the solver has said it
  };

  /// `order` has the terms in ascending order, with all that they contain. The objects must outlive this one.
  ForeignEvaluation(const ForeignTerms& terms, std::span<const ForeignTerms::Index> order,
                    ForeignModel& model, ModelStore& store)
      : terms_(terms),
        order_(order),
        model_(model),
        store_(store),
        values_(terms.size()),
        sources_(terms.size())
  {}

  /// Notes what a solver says of a term that lumo cannot evaluate.
  void trust(ForeignTerms::Index term, const Term* value);
  /// Evaluates all terms with the arguments that they have in the rest.
  void evaluate_rest(const ForeignForms& forms);
  /// Evaluates all terms with the arguments that they have in the script. A value that lumo cannot compute is that of the
  /// rest if the arguments have the same values there, and otherwise none.
  void evaluate_script(const ForeignForms& forms);

  [[nodiscard]] Source get_source(ForeignTerms::Index term) const { return sources_[term]; }

 private:
  [[nodiscard]] ForeignValue compute(ForeignTerms::Index term, std::span<const Term* const> args);
  [[nodiscard]] ForeignValue get_value(const Term* t);
  void take(ForeignTerms::Index term, const ForeignValue& value, Source source);
  [[nodiscard]] bool has_same_args(ForeignTerms::Index term, const ForeignForms& forms,
                                   const std::vector<bool>& is_same);

  const ForeignTerms& terms_;
  std::span<const ForeignTerms::Index> order_;
  ForeignModel& model_;
  ModelStore& store_;
  std::vector<ForeignValue> values_;  ///< by term
  std::vector<Source> sources_;
};

}  // namespace lumo::smtlib

#endif
