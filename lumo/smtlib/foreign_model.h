#ifndef LUMO_SMTLIB_FOREIGN_MODEL_H
#define LUMO_SMTLIB_FOREIGN_MODEL_H

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/model/model_value.h"
#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/foreign_value.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// A model of a script with foreign terms: values of constants of the term layer, and definitions of everything else,
/// which are kept as they were written. What lumo understands of these definitions it can evaluate.
class ForeignModel
{
 public:
  /// An empty model of a script with these foreign terms. The manager must outlive the object.
  ForeignModel(TermManager& mgr, const ForeignTerms& script);
  ~ForeignModel();
  ForeignModel(const ForeignModel&) = delete;
  ForeignModel& operator=(const ForeignModel&) = delete;

  /// Reads a solver's output for `(get-model)`, as `read_model` does. Definitions of other symbols than these constants
  /// are kept.
  void read(std::span<const Term* const> constants, std::string_view text);

  [[nodiscard]] const std::vector<ModelValue>& get_values() const { return values_; }
  /// The other definitions and declarations, in the order of the text.
  [[nodiscard]] const std::vector<std::string>& get_texts() const { return texts_; }
  [[nodiscard]] bool defines(const std::string& name) const { return names_.contains(name); }

  /// The value of an application of a function or constant; not known if the model does not define it, or by something
  /// that lumo cannot evaluate.
  [[nodiscard]] ForeignValue apply(const std::string& name, std::span<const ForeignValue> args);

  /// The value of all applications of a function that the model does not define: zero, false, an array of one of these, or
  /// an element of an uninterpreted sort. Not known for other sorts.
  [[nodiscard]] ForeignValue make_default(const DataType* sort);
  /// The definition that gives a function this value; empty if there is none.
  [[nodiscard]] std::string make_default_definition(const ForeignFunction& function);
  /// Declarations of the elements in these definitions.
  [[nodiscard]] const std::vector<std::string>& get_element_texts() const { return element_texts_; }

 private:
  class Reader;
  class Evaluation;
  struct Definition;

  [[nodiscard]] ForeignValue make_array(const Definition& definition);
  [[nodiscard]] const Term* find_element(const DataType* sort);
  [[nodiscard]] std::string make_default_text(const DataType* sort);

  TermManager& mgr_;
  const ForeignTerms& script_;
  std::vector<ModelValue> values_;
  std::vector<std::string> texts_;
  std::set<std::string, std::less<>> names_;
  std::map<std::string, const Term*> elements_;  ///< for defaults, by the spelling of their sort
  std::vector<std::string> element_texts_;
  std::unique_ptr<Reader> reader_;
  std::unique_ptr<Evaluation> evaluation_;
};

}  // namespace lumo::smtlib

#endif
