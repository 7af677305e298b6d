#ifndef LUMO_TESTS_CALCULATORS_OWN_TERMS_TERM_FACTORY_H
#define LUMO_TESTS_CALCULATORS_OWN_TERMS_TERM_FACTORY_H

#include <array>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/terms/kind.h"
#include "lumo/terms/term_manager.h"
#include "tests/support/gmp_number.h"

namespace lumo::test {

using Parameters = std::array<unsigned long, kMaxArity>;

/// The other side of the terms of the hosting solver: functions with which tests make and print them, and which the
/// calculators must not see. It makes any application, also to terms that do not fit the operator.
class TermFactory
{
 public:
  [[nodiscard]] static TermFactory& of(TermManager& mgr) { return *mgr.factory_; }

  [[nodiscard]] const Term* make_truth_value(bool b);
  [[nodiscard]] const Term* make_constant(const std::string& name, unsigned long width);
  /// Modulo 2^width, which may be 0
  [[nodiscard]] const Term* make_numeral(const Integer& n, unsigned long width);
  [[nodiscard]] const Term* make_numeral(const std::string& digits, int base, unsigned long width);
  [[nodiscard]] const Symbol* make_operator(Kind kind, const Parameters& parameters);
  [[nodiscard]] const Term* apply(const Symbol* s, const std::vector<const Term*>& args);
  [[nodiscard]] const Term* apply(Kind kind, const Parameters& parameters,
                                  const std::vector<const Term*>& args)
  {
    return apply(make_operator(kind, parameters), args);
  }
  /// A term in the notation of tests/support/notation.h
  [[nodiscard]] const Term* parse(std::string_view text);
  /// s(args), or the numeral of its value if all arguments are numerals of the widths that s takes.
  [[nodiscard]] const Term* simplify(const Symbol* s, const std::vector<const Term*>& args);

  [[nodiscard]] static Kind get_kind(const Symbol* s) { return static_cast<Kind>(s->kind_); }
  [[nodiscard]] static const std::vector<unsigned long>& get_parameters(const Symbol* s)
  {
    return s->parameters_;
  }
  [[nodiscard]] static unsigned long get_width(const Term* t) { return t->symbol_->type_->width_; }
  [[nodiscard]] static const QNumber* get_number(const Symbol* s)
  {
    return s->number_ ? &*s->number_ : nullptr;
  }
  /// The name of a leaf in the printed queries
  [[nodiscard]] static const std::string& get_name(const Symbol* s) { return s->name_; }
  /// The term with all widths: see exact_reference.h.
  [[nodiscard]] static std::string print(const Term* t);

 private:
  friend class lumo::TermManager;
  TermFactory() = default;

  const DataType* make_type(unsigned long width);
  const Symbol* intern(const std::string& key, Kind kind, std::string name, unsigned long width);

  std::map<unsigned long, std::unique_ptr<DataType>> types_;
  std::map<std::string, std::unique_ptr<Symbol>> symbols_;
  std::map<std::pair<const Symbol*, std::vector<const Term*>>, std::unique_ptr<Term>> terms_;
};

/// The queries of the calculators to the hosting solver, in the order of the calls.
struct Queries
{
  std::vector<std::string> texts;  ///< filled if is_recording
  bool is_recording = false;
  /// The texts of the exceptions that were constructed
  std::vector<std::string> exceptions;
  /// The number of terms and operator symbols that are made before one fails; negative: none fails.
  long countdown = -1;
};

/// Those of this process
[[nodiscard]] Queries& get_queries();

/// Thrown when the countdown is over
struct MakingFailed
{};

}  // namespace lumo::test

#endif
