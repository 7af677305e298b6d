#include "lumo/terms/termsimpl.h"

#include <array>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/number.h"
#include "tests/support/numbered.h"
#include "tests/support/refusal.h"
#include "tests/terms/fold_reference.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {

namespace {

using SimplFun = StdTermSimplifier::simpl_fun;

struct SimplCase
{
  std::string label;
  std::unique_ptr<SimplFun> (*make)();
  Kind kind;

  [[nodiscard]] const OperatorCase& op() const
  {
    return get_operator_cases()[static_cast<std::size_t>(kind)];
  }
};

std::ostream& operator<<(std::ostream& out, const SimplCase& simpl) { return out << simpl.label; }

template <class Simpl>
std::unique_ptr<SimplFun> make()
{
  static_assert(std::is_base_of_v<SimplFun, Simpl>);
  static_assert(sizeof(Simpl) == sizeof(SimplFun), "functors have no data of their own");
  return std::make_unique<Simpl>();
}

const std::vector<SimplCase>& get_simpl_cases()
{
  static const std::vector<SimplCase> cases = {
      {"BVAddSimpl", make<termsimpl::BVAddSimpl>, Kind::kBvAdd},
      {"BVSubSimpl", make<termsimpl::BVSubSimpl>, Kind::kBvSub},
      {"BVXorSimpl", make<termsimpl::BVXorSimpl>, Kind::kBvXor},
      {"BVNotSimpl", make<termsimpl::BVNotSimpl>, Kind::kBvNot},
      {"BVNegSimpl", make<termsimpl::BVNegSimpl>, Kind::kBvNeg},
      {"BVRolSimpl", make<termsimpl::BVRolSimpl>, Kind::kBvRotateLeft},
      {"BVRorSimpl", make<termsimpl::BVRorSimpl>, Kind::kBvRotateRight},
      {"BVSelectSimpl", make<termsimpl::BVSelectSimpl>, Kind::kBvExtract},
      {"BVConcatSimpl", make<termsimpl::BVConcatSimpl>, Kind::kBvConcat},
      {"BVZextSimpl", make<termsimpl::BVZextSimpl>, Kind::kBvZeroExtend},
  };
  return cases;
}

class Simplifier : public testing::TestWithParam<SimplCase>
{
 protected:
  const Term* simplify(const Symbol* s, const std::vector<const Term*>& args)
  {
    return (*simpl_)(&mgr_, s, args);
  }
  std::string make_prefix() { return numbered("x", mgr_.get_num_terms()).append("_"); }

  TermManager mgr_;
  std::unique_ptr<SimplFun> simpl_ = GetParam().make();
};

}  // namespace

static_assert(std::has_virtual_destructor_v<SimplFun>);
static_assert(std::is_abstract_v<SimplFun>);

INSTANTIATE_TEST_SUITE_P(Terms, Simplifier, testing::ValuesIn(get_simpl_cases()), kLabelOf);

TEST_P(Simplifier, FoldsAllNarrowNumerals)
{
  for (unsigned long w = 1; w <= 4; ++w) {
    for (const SymbolCase& symbol : GetParam().op().symbols(w)) {
      const Symbol* s = GetParam().op().make(mgr_, symbol.parameters);
      const std::vector<unsigned long>& widths = symbol.argument_widths;
      const unsigned long num_seconds = widths.size() == 1 ? 1 : 1UL << widths[1];
      for (unsigned long first = 0; first < 1UL << widths[0]; ++first) {
        for (unsigned long second = 0; second < num_seconds; ++second) {
          const unsigned long words[] = {first, second};
          std::vector<const Term*> args;
          for (std::size_t i = 0; i < widths.size(); ++i)
            args.push_back(mgr_.make_bv_number(static_cast<int>(words[i]), widths[i]));
          const unsigned long value = compute_reference(GetParam().kind, symbol.parameters, words);
          ASSERT_EQ(simplify(s, args), mgr_.make_bv_number(static_cast<int>(value), symbol.result_width))
              << symbol << " of " << first << ' ' << second;
        }
      }
    }
  }
}

TEST_P(Simplifier, BuildsTheApplicationUnlessAllArgumentsAreNumerals)
{
  for (const SymbolCase& symbol : GetParam().op().symbols(8)) {
    const Symbol* s = GetParam().op().make(mgr_, symbol.parameters);
    std::vector<const Term*> args = make_arguments(mgr_, symbol, make_prefix());
    EXPECT_EQ(simplify(s, args), mgr_.make_term(s, args)) << symbol;
    for (std::size_t i = 0; i < args.size() && args.size() > 1; ++i) {
      std::vector<const Term*> mixed = args;
      mixed[i] = mgr_.make_bv_number(5, symbol.argument_widths[i]);
      EXPECT_EQ(simplify(s, mixed), mgr_.make_term(s, mixed)) << symbol;
    }
  }
}

TEST_P(Simplifier, RefusesSymbolsOfOtherOperators)
{
  const std::string text =
      "a simplifier of " + std::string(GetParam().op().smtlib_name) + " was given the symbol ";
  for (const OperatorCase& op : get_operator_cases()) {
    if (op.kind == GetParam().kind) continue;
    const SymbolCase symbol = op.symbols(8).back();
    const Symbol* s = op.make(mgr_, symbol.parameters);
    const std::vector<const Term*> args = make_arguments(mgr_, symbol, make_prefix());
    expect_refusal(
        mgr_, [&] { (void)simplify(s, args); }, text + symbol.name);
  }
  expect_refusal(
      mgr_, [&] { (void)simplify(mgr_.get_true_symbol(), {}); }, text + "true");
}

TEST_P(Simplifier, RefusesWhatMakeTermRefuses)
{
  TermManager other;
  const SymbolCase symbol = GetParam().op().symbols(8).back();
  const Symbol* s = GetParam().op().make(mgr_, symbol.parameters);
  const std::vector<const Term*> args = make_arguments(mgr_, symbol, "x");
  std::vector<std::vector<const Term*>> refused = {
      {},
      std::vector<const Term*>(args.size(), nullptr),
      std::vector<const Term*>(args.size(), mgr_.make_true()),
      std::vector<const Term*>(args.size(), mgr_.make_bv_number(1, 77)),
      std::vector<const Term*>(args.size() + 1, args[0]),
      make_arguments(other, symbol, "x"),
  };
  for (const std::vector<const Term*>& given : refused) {
    const std::string text = get_refusal([&] { mgr_.make_term(s, given); });
    EXPECT_NE(text, "(not refused)");
    expect_refusal(
        mgr_, [&] { (void)simplify(s, given); }, text);
  }
  EXPECT_NE(get_refusal([&] { (void)simplify(nullptr, args); }), "(not refused)");
  EXPECT_NE(get_refusal([&] { (void)simplify(GetParam().op().make(other, symbol.parameters), args); }),
            "(not refused)");
  EXPECT_EQ(simplify(s, args), mgr_.make_term(s, args));
}

TEST(Simplifiers, AddWithWrapAround)
{
  TermManager mgr;
  termsimpl::BVAddSimpl simpl;
  EXPECT_EQ(simpl(&mgr, mgr.make_bv_add_symbol(8), {mgr.make_bv_number(255, 8), mgr.make_bv_number(1, 8)}),
            mgr.make_bv_number(0, 8));
}

TEST(Simplifiers, FoldNumeralsWiderThanAWord)
{
  TermManager mgr;
  const QNumber high = BVNumber::pow2(127);
  const Term* lowest = mgr.make_bv_number(high, 128);
  EXPECT_EQ(termsimpl::BVAddSimpl()(&mgr, mgr.make_bv_add_symbol(128), {lowest, lowest}),
            mgr.make_bv_number(0, 128));
  EXPECT_EQ(termsimpl::BVNegSimpl()(&mgr, mgr.make_bv_neg_symbol(128), {lowest}), lowest);
  EXPECT_EQ(termsimpl::BVNotSimpl()(&mgr, mgr.make_bv_not_symbol(128), {lowest}),
            mgr.make_bv_number(high - 1, 128));
  EXPECT_EQ(termsimpl::BVRolSimpl()(&mgr, mgr.make_bv_rotate_left_symbol(1, 128), {lowest}),
            mgr.make_bv_number(1, 128));
  EXPECT_EQ(
      termsimpl::BVConcatSimpl()(&mgr, mgr.make_bv_concat_symbol(1, 128), {mgr.make_bv_number(1, 1), lowest}),
      mgr.make_bv_number(high + high + high, 129));
}

}  // namespace lumo::test
