// Properties of all 32 operators: factory, recogniser, name, sorts, interning and refused applications.

#include <array>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"
#include "tests/support/numbered.h"
#include "tests/support/refusal.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {

namespace {

constexpr std::array<unsigned long, 9> kWidths = {1, 2, 4, 8, 63, 64, 65, 1000, 1000000};
constexpr unsigned long kUntouched = 0xdeadbeef;

class Operator : public testing::TestWithParam<OperatorCase>
{
 protected:
  /// Calls the action with each symbol of the operator, made in the member manager.
  template <class Action>
  void for_each_symbol(Action action)
  {
    for (const unsigned long w : kWidths) {
      for (const SymbolCase& symbol : GetParam().symbols(w)) {
        SCOPED_TRACE(symbol);
        action(symbol, GetParam().make(mgr_, symbol.parameters));
      }
    }
  }

  /// Symbols of all operators at narrow widths, and all kinds of leaves.
  std::vector<const Symbol*> make_symbols_of_all_kinds()
  {
    std::vector<const Symbol*> symbols = {
        mgr_.get_true_symbol(),
        mgr_.get_false_symbol(),
        mgr_.make_constant_symbol("p", mgr_.make_bool_type()),
        mgr_.make_constant_symbol(std::string(GetParam().smtlib_name), mgr_.make_bv_type(4)),
        mgr_.make_bv_number(1, 1)->get_symbol(),
        mgr_.make_bv_number(5, 64)->get_symbol(),
    };
    for (const OperatorCase& op : get_operator_cases()) {
      for (const unsigned long w : {1UL, 4UL, 64UL}) {
        for (const SymbolCase& symbol : op.symbols(w))
          symbols.push_back(op.make(mgr_, symbol.parameters));
      }
    }
    return symbols;
  }

  /// A prefix that no constant has yet, so that a constant with it may have any sort.
  std::string make_prefix() { return numbered("x", mgr_.get_num_terms()).append("_"); }

  TermManager mgr_;
};

std::string plural(std::size_t n, const std::string& noun)
{
  return std::to_string(n) + " " + noun + (n == 1 ? "" : "s");
}

}  // namespace

TEST_P(Operator, IsMadeByItsKindToo)
{
  for_each_symbol([this](const SymbolCase& symbol, const Symbol* s) {
    EXPECT_EQ(mgr_.make_symbol(GetParam().kind, symbol.parameters), s);
    TermManager other;
    EXPECT_EQ(other.make_symbol(GetParam().kind, symbol.parameters)->get_name(), symbol.name);
    EXPECT_EQ(as_operator(s).get_parameters(), symbol.parameters);
  });
}

TEST(OperatorsByKind, RefuseLeavesAndWrongParameters)
{
  TermManager mgr;
  const auto expect = [&mgr](Kind kind, const Parameters& parameters, const std::string& text) {
    expect_refusal(
        mgr, [&] { mgr.make_symbol(kind, parameters); }, text);
  };
  for (const Kind kind : {Kind::kConstant, Kind::kTrue, Kind::kFalse, Kind::kNumeral})
    expect(kind, {}, "the symbol of a leaf was requested, but an operator was expected");
  expect(Kind::kAnd, {1}, "and was requested with parameter 1 set to 1, but it takes 0");
  expect(Kind::kIte, {8, 2}, "ite was requested with parameter 2 set to 2, but it takes 1");
  expect(Kind::kBvAdd, {8, 8}, "bvadd was requested with parameter 2 set to 8, but it takes 1");
  expect(Kind::kBvConcat, {8, 8, 16}, "concat was requested with parameter 3 set to 16, but it takes 2");
  expect(Kind::kEq, {0},
         "an equality symbol for sort Bool was requested, but a bit-vector sort was expected: equality of "
         "Booleans "
         "is iff");
  expect(Kind::kBvAdd, {0}, "bvadd was requested for operands of width 0, but widths are 1 to 4294967295");
  expect(Kind::kIte, {TermManager::kMaxWidth + 1},
         "a bit-vector sort of width 4294967296 was requested, but widths are 1 to 4294967295");
}

INSTANTIATE_TEST_SUITE_P(Terms, Operator, testing::ValuesIn(get_operator_cases()), kLabelOf);

TEST(OperatorCases, AreThe32InTheirOrder)
{
  const std::vector<OperatorCase>& cases = get_operator_cases();
  ASSERT_EQ(cases.size(), 32);
  std::set<std::string> labels;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(cases[i].kind, static_cast<Kind>(i)) << cases[i];
    EXPECT_TRUE(labels.insert(cases[i].label).second) << cases[i];
  }
}

// -----------------------------------------------------------------------------------------------------------
// symbols

TEST_P(Operator, SymbolHasItsNameAndSorts)
{
  for_each_symbol([this](const SymbolCase& expected, const Symbol* s) {
    EXPECT_EQ(s->get_name(), expected.name);
    EXPECT_EQ(s->get_output_type(), make_type(mgr_, expected.result_width));
    EXPECT_EQ(s->get_kind(), GetParam().kind);
    ASSERT_EQ(s->get_arity(), expected.argument_widths.size());
    EXPECT_EQ(as_operator(s).get_parameters(), expected.parameters);
    for (std::size_t i = 0; i < s->get_arity(); ++i)
      EXPECT_EQ(as_operator(s).get_argument_type(i), make_type(mgr_, expected.argument_widths[i]));
    EXPECT_FALSE(mgr_.is_constant(s));
    EXPECT_FALSE(mgr_.is_number(s, nullptr));
  });
}

TEST_P(Operator, RecogniserTellsTheParametersInTheirOrder)
{
  for_each_symbol([this](const SymbolCase& expected, const Symbol* s) {
    Parameters told = {kUntouched, kUntouched, kUntouched};
    EXPECT_TRUE(GetParam().is(mgr_, s, &told[0], &told[1], &told[2]));
    for (std::size_t i = 0; i < told.size(); ++i)
      EXPECT_EQ(told[i], i < GetParam().num_outputs ? expected.parameters[i] : kUntouched);
  });
}

TEST_P(Operator, RecogniserTakesNullOutputs)
{
  for_each_symbol([this](const SymbolCase& expected, const Symbol* s) {
    EXPECT_TRUE(GetParam().is(mgr_, s, nullptr, nullptr, nullptr));
    for (std::size_t asked = 0; asked < GetParam().num_outputs; ++asked) {
      Parameters told = {kUntouched, kUntouched, kUntouched};
      const auto out = [&told, asked](std::size_t i) { return i == asked ? &told[i] : nullptr; };
      EXPECT_TRUE(GetParam().is(mgr_, s, out(0), out(1), out(2)));
      EXPECT_EQ(told[asked], expected.parameters[asked]);
    }
  });
}

TEST_P(Operator, RecogniserRefusesAllOthersAndLeavesTheOutputsAlone)
{
  for (const Symbol* s : make_symbols_of_all_kinds()) {
    if (s->get_kind() == GetParam().kind) continue;
    Parameters told = {kUntouched, kUntouched, kUntouched};
    EXPECT_FALSE(GetParam().is(mgr_, s, &told[0], &told[1], &told[2])) << s->get_name();
    EXPECT_EQ(told, (Parameters{kUntouched, kUntouched, kUntouched})) << s->get_name();
    EXPECT_FALSE(GetParam().is(mgr_, s, nullptr, nullptr, nullptr)) << s->get_name();
  }
}

TEST_P(Operator, SymbolIsMadeOnce)
{
  std::vector<const Symbol*> made;
  std::set<const Symbol*> distinct;
  for_each_symbol([&](const SymbolCase&, const Symbol* s) { made.push_back(s); });
  const std::size_t num_symbols = mgr_.get_num_symbols();

  std::size_t i = 0;
  for_each_symbol([&](const SymbolCase& symbol, const Symbol* s) {
    EXPECT_EQ(s, made[i++]);
    EXPECT_EQ(GetParam().make(mgr_, symbol.parameters), s);
    distinct.insert(s);
  });
  EXPECT_EQ(mgr_.get_num_symbols(), num_symbols);
  EXPECT_EQ(distinct.size(), num_symbols - 2)
      << "besides true and false, there are only this operator's symbols";
}

TEST(OperatorSymbols, AskedForByTurnsAreTheSame)
{
  TermManager mgr;
  std::vector<std::vector<const Symbol*>> rounds(3);
  for (std::vector<const Symbol*>& round : rounds) {
    for (unsigned long w = 1; w < 300; ++w) {
      round.push_back(mgr.make_bv_add_symbol(w));
      round.push_back(mgr.make_bv_ult_symbol(w));
      round.push_back(mgr.make_bv_concat_symbol(w, 128));
      round.push_back(mgr.make_bv_concat_symbol(128, w));
      round.push_back(mgr.make_bv_extract_symbol(w, w / 2, 400));
    }
  }
  EXPECT_EQ(rounds[1], rounds[0]);
  EXPECT_EQ(rounds[2], rounds[0]);
  const std::set<const Symbol*> distinct(rounds[0].begin(), rounds[0].end());
  EXPECT_EQ(distinct.size(), rounds[0].size() - 1) << "the concatenation of 128 and 128 bits was met twice";
}

// -----------------------------------------------------------------------------------------------------------
// applications

TEST_P(Operator, ApplicationKeepsItsArgumentsInTheirOrder)
{
  for_each_symbol([this](const SymbolCase& expected, const Symbol* s) {
    const std::vector<const Term*> args = make_arguments(mgr_, expected, make_prefix());
    const Term* t = mgr_.make_term(s, args);
    EXPECT_EQ(t->get_symbol(), s);
    ASSERT_EQ(t->get_num_args(), args.size());
    for (std::size_t i = 0; i < args.size(); ++i)
      EXPECT_EQ(t->get_arg(i), args[i]);
    EXPECT_EQ(mgr_.make_term(s, args), t);
    EXPECT_EQ(mgr_.make_term(s, args.data(), args.size()), t);
  });
}

TEST_P(Operator, ApplicationWithAnotherNumberOfArgumentsIsRefused)
{
  const SymbolCase symbol = GetParam().symbols(8).back();
  const Symbol* s = GetParam().make(mgr_, symbol.parameters);
  const std::vector<const Term*> args = make_arguments(mgr_, symbol, "x");
  for (std::size_t n = 0; n <= 5; ++n) {
    if (n == args.size()) continue;
    const std::vector<const Term*> given(n, args[0]);
    const std::string text = symbol.name + " takes " + plural(args.size(), "argument") + ", but " +
                             std::to_string(n) + (n == 1 ? " was given" : " were given");
    expect_refusal(
        mgr_, [&] { mgr_.make_term(s, given); }, text);
    expect_refusal(
        mgr_, [&] { mgr_.check_application(s, given.data(), n); }, text);
  }
  EXPECT_EQ(mgr_.make_term(s, args)->get_symbol(), s);
}

TEST_P(Operator, ApplicationToAnArgumentOfAnotherSortIsRefused)
{
  for (const SymbolCase& symbol : GetParam().symbols(8)) {
    SCOPED_TRACE(symbol);
    const Symbol* s = GetParam().make(mgr_, symbol.parameters);
    const std::vector<const Term*> args = make_arguments(mgr_, symbol, make_prefix());
    for (std::size_t i = 0; i < args.size(); ++i) {
      const unsigned long width = symbol.argument_widths[i];
      for (const unsigned long other : {0UL, 1UL, width + 1}) {
        if (other == width) continue;
        std::vector<const Term*> given = args;
        given[i] = mgr_.make_constant("other" + std::to_string(other), make_type(mgr_, other));
        expect_refusal(
            mgr_, [&] { mgr_.make_term(s, given); },
            "argument " + std::to_string(i + 1) + " of " + symbol.name + " has sort " +
                make_type(mgr_, other)->to_string() + ", but " + make_type(mgr_, width)->to_string() +
                " was expected");
      }
    }
    EXPECT_EQ(mgr_.make_term(s, args)->get_symbol(), s);
  }
}

TEST_P(Operator, ApplicationToANullOrForeignArgumentIsRefused)
{
  TermManager other;
  const SymbolCase symbol = GetParam().symbols(8).back();
  const Symbol* s = GetParam().make(mgr_, symbol.parameters);
  const std::vector<const Term*> args = make_arguments(mgr_, symbol, "x");
  const std::vector<const Term*> foreign = make_arguments(other, symbol, "x");
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string place = "argument " + std::to_string(i + 1) + " of " + symbol.name;
    std::vector<const Term*> given = args;
    given[i] = nullptr;
    expect_refusal(
        mgr_, [&] { mgr_.make_term(s, given); }, place + " is a null pointer, but a term was expected");
    given[i] = foreign[i];
    expect_refusal(
        mgr_, [&] { mgr_.make_term(s, given); },
        place + " belongs to another term manager, but a term of this one was expected");
  }
  EXPECT_EQ(mgr_.make_term(s, args)->get_symbol(), s);
}

}  // namespace lumo::test
