// Every operator at small widths, with every choice of free, shared and literal arguments, in several
// surroundings; all assignments are tried.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/terms/fold.h"
#include "lumo/terms/term_manager.h"
#include "tests/elimination/enumeration_judge.h"
#include "tests/support/make_operator.h"
#include "tests/support/term_text.h"

namespace lumo {

/// Lets GoogleTest print operators.
static std::ostream& operator<<(std::ostream& out, const OperatorInfo& info)
{
  return out << info.smtlib_name;
}

namespace {

using test::Terms;

/// The parameters with which an operator is tried at a width.
std::vector<Parameters> make_parameters(SortRule rule, unsigned long w)
{
  std::vector<Parameters> all;
  switch (rule) {
    case SortRule::kBool:
      return {{}};
    case SortRule::kIte:
      return {{0}, {w}};
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      return {{w}};
    case SortRule::kConcat:
      return {{w, 1}, {1, w}};
    case SortRule::kExtract:
      for (unsigned long msb = 0; msb < w; ++msb) {
        for (unsigned long lsb = 0; lsb <= msb; ++lsb)
          all.push_back({msb, lsb, w});
      }
      return all;
    case SortRule::kRotate:
      for (unsigned long k = 0; k <= w; ++k)
        all.push_back({k, w});
      return all;
    case SortRule::kExtend:
      return {{0, w}, {1, w}};
  }
  return all;
}

/// Constants, one name for each sort, that occur more than once, so they are never free.
class SharedConstants
{
 public:
  explicit SharedConstants(TermManager& mgr) : mgr_(mgr) {}

  const Term* make(const DataType* type, Terms& assertions)
  {
    const Term* constant = mgr_.make_constant("shared " + type->to_string(), type);
    const Symbol* same = type->is_bool() ? mgr_.make_iff_symbol() : mgr_.make_eq_symbol(type);
    assertions.push_back(mgr_.make_term(same, {constant, constant}));
    return constant;
  }

 private:
  TermManager& mgr_;
};

/// What argument i can be: free, shared, or any value of its sort.
Terms make_arguments(TermManager& mgr, const DataType* type, std::size_t i, const Term* shared)
{
  Terms args{mgr.make_constant("free " + std::to_string(i) + " " + type->to_string(), type), shared};
  const long num_values = type->is_bool() ? 2 : 1L << type->get_width();
  for (long value = 0; value < num_values; ++value)
    args.push_back(make_value(mgr, QNumber(value), type));
  return args;
}

/// Assertions about an application t, which is used once or more than once in them.
std::vector<Terms> surround(TermManager& mgr, const Term* t, const Term* shared)
{
  const Term* negated_shared = nullptr;
  const DataType* type = t->get_symbol()->get_output_type();
  if (type->is_bool()) {
    const Term* negated = mgr.make_term(mgr.make_not_symbol(), {t});
    negated_shared = mgr.make_term(mgr.make_not_symbol(), {shared});
    const Term* both = mgr.make_term(mgr.make_and_symbol(), {t, shared});
    const Term* neither = mgr.make_term(mgr.make_and_symbol(), {negated, negated_shared});
    return {{t},
            {negated},
            {mgr.make_term(mgr.make_and_symbol(), {shared, t})},
            {mgr.make_term(mgr.make_or_symbol(), {t, shared})},
            {mgr.make_term(mgr.make_or_symbol(), {both, neither})}};
  }
  const unsigned long w = type->get_width();
  return {{mgr.make_term(mgr.make_eq_symbol(type), {t, shared})},
          {mgr.make_term(mgr.make_bv_ult_symbol(w),
                         {mgr.make_term(mgr.make_bv_urem_symbol(w), {t, shared}), shared})},
          {mgr.make_term(mgr.make_bv_ule_symbol(w), {t, shared}),
           mgr.make_term(mgr.make_bv_sle_symbol(w), {shared, t})}};
}

class EveryOperator : public ::testing::TestWithParam<OperatorInfo>
{
 protected:
  /// Calls the visitor with every application of the symbol.
  void for_each_application(const Symbol* s, const std::function<void(const Term*, Terms)>& visitor)
  {
    const std::size_t arity = s->get_arity();
    std::vector<Terms> choices;
    Terms assertions;
    for (std::size_t i = 0; i < arity; ++i) {
      const DataType* type = as_operator(s).get_argument_type(i);
      choices.push_back(make_arguments(mgr_, type, i, shared_.make(type, assertions)));
    }
    std::vector<std::size_t> chosen(arity, 0);
    for (;;) {
      Terms args;
      for (std::size_t i = 0; i < arity; ++i)
        args.push_back(choices[i][chosen[i]]);
      visitor(mgr_.make_term(s, args), assertions);
      std::size_t i = 0;
      while (i < arity && ++chosen[i] == choices[i].size())
        chosen[i++] = 0;
      if (i == arity) return;
    }
  }

  void judge(const Terms& assertions)
  {
    const std::string complaint = test::judge_by_enumeration(mgr_, assertions, eliminate(mgr_, assertions));
    if (complaint.empty()) return;
    for (const Term* t : assertions)
      ADD_FAILURE() << test::make_term_text(t);
    FAIL() << complaint;
  }

  TermManager mgr_;
  SharedConstants shared_{mgr_};
};

TEST_P(EveryOperator, IsEliminatedSoundlyAtWidthsOneToThree)
{
  for (unsigned long w = 1; w <= 3; ++w) {
    for (const Parameters& parameters : make_parameters(GetParam().rule, w)) {
      const Symbol* s = test::make_operator(mgr_, GetParam().kind, parameters);
      for_each_application(s, [this](const Term* t, Terms assertions) {
        const Term* shared = shared_.make(t->get_symbol()->get_output_type(), assertions);
        for (const Terms& about : surround(mgr_, t, shared)) {
          Terms all = assertions;
          all.insert(all.end(), about.begin(), about.end());
          judge(all);
        }
      });
      if (HasFatalFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, EveryOperator, ::testing::ValuesIn(kOperators), [](const auto& row_info) {
  const OperatorInfo& op = row_info.param;
  const bool is_on_booleans = op.kind == Kind::kIff;
  return is_on_booleans ? "iff" : op.kind == Kind::kEq ? "eq" : std::string(op.smtlib_name);
});

}  // namespace
}  // namespace lumo
