#ifndef LUMO_SMTLIB_FUNCTION_TABLE_H
#define LUMO_SMTLIB_FUNCTION_TABLE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/operators.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// A definition with parameters: the parts of its body, arguments first.
class Function
{
 public:
  [[nodiscard]] const std::string& get_name() const { return name_; }
  [[nodiscard]] std::size_t get_num_parameters() const { return parameters_.size(); }
  [[nodiscard]] const DataType* get_parameter_sort(std::size_t i) const { return parameters_[i]; }
  [[nodiscard]] const DataType* get_result_sort() const { return result_; }

 private:
  friend class FunctionTable;
  using Place = std::uint32_t;

  /// An operand of a step: a value that depends on the parameters, by its place, or a term.
  struct Operand
  {
    const Term* term;  ///< null for a value
    Place place;
  };
  /// One value of an instance: an application of an operator, of another function, or of a foreign head
  struct Step
  {
    const Symbol* symbol;  ///< of an operator, or the placeholder's of a foreign term; null for a function
    const Function* function;  ///< null for others
    std::size_t first;         ///< of its operands in `operands_`
    std::size_t num_operands;
    ForeignTerms::HeadIndex head;  ///< of a foreign term
  };

  std::string name_;
  std::vector<const DataType*> parameters_;
  const DataType* result_ = nullptr;
  std::vector<Step> steps_;  ///< step i computes the value at the place i + the number of parameters
  std::vector<Operand> operands_;
  Operand body_{};
};

/// The definitions with parameters of a script, and their applications.
///
/// A definition is read once, as a term over constants that represent its parameters. Functions that it applies are
/// not expanded in it, so a chain of definitions that apply each other takes linear time and memory. An application
/// to arguments is expanded once for each distinct list of arguments, in time linear in the graph of the
/// definition.
class FunctionTable
{
 public:
  using Terms = std::span<const Term* const>;

  /// Without a table for foreign terms there are none.
  FunctionTable(TermManager& mgr, ForeignTerms* foreign) : mgr_(mgr), foreign_(foreign) {}
  FunctionTable(const FunctionTable&) = delete;
  FunctionTable& operator=(const FunctionTable&) = delete;

  /// The maximal number of applications that all expansions together may make.
  static constexpr std::size_t kMaxExpansion = 100'000'000;

  /// The constant that represents the parameter at that place and of that sort in bodies.
  [[nodiscard]] const Term* get_parameter(std::size_t place, const DataType* sort);
  /// Defines a function by its body, a term over the constants of its parameters.
  const Function* define(std::string_view name, const std::vector<const DataType*>& parameters,
                         const Term* body);

  /// The term that represents the application of a function in the body of another one.
  [[nodiscard]] const Term* make_call(const Function& function, Terms args);
  /// The application of a function to arguments that do not contain parameters. An `Exception` if the expansions
  /// exceed their limit.
  [[nodiscard]] const Term* expand(const Function& function, Terms args);

 private:
  struct Application
  {
    const Function* function;
    std::vector<const Term*> args;

    friend bool operator==(const Application&, const Application&) = default;
  };
  struct ApplicationHash
  {
    std::size_t operator()(const Application& application) const;
  };
  using Results = std::unordered_map<Application, const Term*, ApplicationHash>;
  /// A term of a body whose operands are visited
  struct Visit
  {
    const Term* term;
    const Application* call;      ///< that the term represents, or null
    ForeignTerms::Index foreign;  ///< that the term represents, or kNone
    std::size_t next;             ///< operand
  };
  /// An expansion that is not complete
  struct Expansion
  {
    Application application;
    std::size_t first;  ///< of its values in `values_`
    std::size_t next;   ///< step
  };
  using Places = std::unordered_map<const Term*, Function::Place>;

  [[nodiscard]] Terms get_operands(const Visit& visit) const;
  [[nodiscard]] ForeignTerms::Index find_foreign(const Term* t) const
  {
    return foreign_ == nullptr ? ForeignTerms::kNone : foreign_->find(t);
  }
  [[nodiscard]] const Term* make_value(const Function::Step& step);
  /// Begins the visit of a term that may depend on a parameter, unless its place is known.
  void open(const Term* t, const Places& places);
  void add_steps(Function& function, const Term* body, Places& places);
  void add_step(Function& function, const Visit& visit, Places& places);
  [[nodiscard]] static Function::Operand make_operand(const Term* t, const Places& places);

  void continue_expansion();
  void count_expanded();
  [[nodiscard]] const Term* make_term(const Symbol* s, const std::vector<const Term*>& args);
  [[nodiscard]] const Term* get_value(const Function::Operand& operand, std::size_t first) const;
  void begin(Application application);

  TermManager& mgr_;
  ForeignTerms* foreign_;  ///< null if there are no foreign terms
  std::deque<Function> functions_;
  std::map<std::pair<std::size_t, const DataType*>, const Term*> parameters_;  ///< by place and sort
  Results calls_;
  std::unordered_map<const Term*, const Application*> applications_;  ///< by the term that represents them
  std::unordered_set<const Term*> closed_;  ///< applications in bodies that do not depend on parameters
  std::vector<Visit> visits_;

  Results results_;
  std::vector<Expansion> expansions_;  ///< each needed by the one before it
  std::vector<const Term*> values_;
  std::vector<const Term*> args_;  ///< of the current step
  std::size_t num_expanded_ = 0;
};

}  // namespace lumo::smtlib

#endif
