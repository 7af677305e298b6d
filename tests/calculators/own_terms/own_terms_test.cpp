// The calculators on the terms of another solver: the table of edge cases, the order of their queries, what they
// leave behind if the term layer fails, and which widths and numbers they read from ill-sorted terms.

#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "term_factory.h"
#include "tests/calculators/all_calculators.h"
#include "tests/calculators/edge_cases.h"
#include "tests/calculators/exact_reference.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"

namespace lumo::test {
namespace {

using adhoccalculator::AdHocCalculator;
using adhoccalculator::DefinitionStack;

template <class Manager>
concept HasShortcuts = requires(const Manager* mgr, const Symbol* s)
{
  mgr->find_number(s);
};
static_assert(!HasShortcuts<TermManager>, "the calculators must do without what only lumo's terms have");

template <class... Calculators>
std::vector<std::unique_ptr<AdHocCalculator>> make_each(ClassList<Calculators...> /*classes*/)
{
  std::vector<std::unique_ptr<AdHocCalculator>> all;
  (all.push_back(std::make_unique<Calculators>()), ...);
  return all;
}

AdHocCalculator& get_calculator(Kind kind)
{
  static const std::vector<std::unique_ptr<AdHocCalculator>> all = make_each(CalculatorClasses());
  return *all.at(static_cast<std::size_t>(kind));
}

AdHocCalculator& get_calculator_of(const Term* t)
{
  return get_calculator(TermFactory::get_kind(t->get_symbol()));
}

/// A fresh manager, and nothing recorded.
class OwnTerms : public testing::Test
{
 protected:
  OwnTerms() { get_queries() = {}; }
  ~OwnTerms() override { get_queries() = {}; }

  const Term* parse(const std::string& text) { return TermFactory::of(mgr_).parse(text); }

  /// `term := value`, in the order of the pushes; the stack is empty afterwards.
  std::vector<std::string> take_definitions()
  {
    std::vector<std::string> texts;
    for (; !defs_.empty(); defs_.pop()) {
      EXPECT_TRUE(defs_.top().flag);
      texts.insert(texts.begin(),
                   TermFactory::print(defs_.top().term) + " := " + TermFactory::print(defs_.top().value));
    }
    return texts;
  }

  /// The text of what a call throws, empty if it throws nothing. An error of the calculators begins with `error: `.
  std::string call(AdHocCalculator& calculator, const Term* t, const Term* value)
  {
    try {
      calculator(&mgr_, t, value, defs_);
    } catch (const Exception& e) {
      return (typeid(e) == typeid(AdHocCalculator::error) ? "error: " : "") + std::string(e.what());
    }
    return "";
  }

  TermManager mgr_;
  DefinitionStack defs_;
};

// ----------------------------------------------------------------------------------------------- the edge cases

TEST_F(OwnTerms, HaveTheSameEdgeCases)
{
  for (const EdgeCase& row : get_edge_cases()) {
    const Term* t = parse(row.application);
    get_queries().exceptions.clear();
    const std::string message = call(get_calculator_of(t), t, parse(row.value));
    std::vector<std::string> expected;
    for (const std::string& definition : row.definitions) {
      const std::size_t sign = definition.find(" := ");
      expected.push_back(TermFactory::print(parse(definition.substr(0, sign))) +
                         " := " + TermFactory::print(parse(definition.substr(sign + 4))));
    }
    EXPECT_EQ(take_definitions(), expected) << row;
    EXPECT_EQ(message, (row.message.empty() || row.is_plain_exception ? "" : "error: ") + row.message) << row;
    // The observer runs once for an error, and once more for a plain exception, for the copy that is thrown.
    std::vector<std::string> observed;
    if (row.is_plain_exception) observed.emplace_back("expected constant, but ");
    if (!row.message.empty()) observed.push_back(row.message);
    EXPECT_EQ(get_queries().exceptions, observed) << row;
  }
}

// ------------------------------------------------------------------------------------- what is asked, in order

struct QueryRow
{
  const char* application;
  const char* value;
  std::vector<std::string> queries;
};

const std::vector<QueryRow>& get_query_rows()
{
  static const std::vector<QueryRow> rows = {
      {"(and p q)", "false", {"true?", "true?", "false?", "true?", "false?", "false"}},
      {"(and true q)", "true", {"true?", "true?"}},
      {"(and false q)", "true", {"true?", "true?", "false?"}},
      {"(and p true)", "true", {"true?", "true?", "false?", "true?"}},
      {"(or p false)", "true", {"true?", "true?", "false?", "true?", "false?"}},
      {"(or p q)", "true", {"true?", "true?", "false?", "true?", "false?", "true"}},

      {"(ite c x8 y8)", "#x05", {"false?", "true?", "number? x8", "number? y8", "true"}},
      {"(ite c x8 #x03)", "#x05", {"false?", "true?", "number? x8", "number? 3:8", "true"}},
      {"(ite c #x03 y8)", "#x05", {"false?", "true?", "number? 3:8", "number? y8", "false"}},
      {"(ite false #x03 #x04)", "#x05", {"false?", "number? 3:8"}},
      {"(ite true x8 #x04)", "#x05", {"false?", "true?", "number? x8", "number? 4:8"}},
      {"(ite true x8 y8)", "#x05", {"false?", "true?", "number? x8", "number? y8"}},

      {"(= x8 y8)",
       "true",
       {"true?", "number? x8", "number? y8", "type of x8", "width", "constant? x8", "constant? x8",
        "numeral 0 8", "numeral 0 8"}},
      {"(= (bvnot x8) y8)",
       "false",
       {"true?", "number? bvnot", "number? y8", "type of bvnot", "width", "constant? bvnot", "constant? y8",
        "numeral 1 8", "numeral 0 8"}},
      {"(= (bvnot x8) (bvneg y8))",
       "false",
       {"true?", "number? bvnot", "number? bvneg", "type of bvnot", "width", "constant? bvnot",
        "constant? bvneg", "name of bvneg"}},
      {"(= #x07 x8)",
       "false",
       {"true?", "number? 7:8", "number? x8", "type of 7:8", "width", "int numeral 1 8", "symbol bvadd 8",
        "BVAddSimpl 7:8 1:8"}},
      {"(= x8 #x07)", "true", {"true?", "number? x8", "number? 7:8", "type of x8", "width"}},
      {"(= #x03 #x04)", "true", {"true?", "number? 3:8", "number? 4:8", "type of 3:8", "width"}},

      {"(bvnot x8)", "#x05", {"number? x8", "type of 5:8", "width", "symbol bvnot 8", "BVNotSimpl 5:8"}},
      {"(bvnot #x05)", "#x05", {"number? 5:8"}},
      {"(bvneg x8)", "#x05", {"number? x8", "type of 5:8", "width", "symbol bvneg 8", "BVNegSimpl 5:8"}},
      {"((_ rotate_left 3) x8)",
       "#x05",
       {"number? x8", "rotate_left? (_ rotate_left 3)", "symbol rotate_right 3 8", "BVRorSimpl 5:8"}},
      {"((_ rotate_left 3) #x05)", "#x05", {"number? 5:8"}},
      {"((_ rotate_right 3) x8)",
       "#x05",
       {"rotate_right? (_ rotate_right 3)", "number? x8", "symbol rotate_left 3 8", "BVRolSimpl 5:8"}},
      {"((_ rotate_right 3) #x05)", "#x05", {"rotate_right? (_ rotate_right 3)", "number? 5:8"}},

      {"(bvand x8 y8)",
       "#x05",
       {"read 5:8", "type of 5:8", "width", "number? x8", "number? y8", "numeral 5 8"}},
      {"(bvand #x01 y8)", "#x05", {"read 5:8", "type of 5:8", "width", "number? 1:8"}},
      {"(bvor (bvnot x8) y8)",
       "#x05",
       {"read 5:8", "type of 5:8", "width", "number? bvnot", "number? y8", "numeral 5 8", "constant? bvnot",
        "constant? y8", "numeral 0 8"}},
      {"(bvor #x01 y8)", "#x05", {"read 5:8", "type of 5:8", "width", "number? 1:8"}},
      {"(bvxor x8 y8)",
       "#x05",
       {"type of bvxor", "width", "read 5:8", "number? x8", "number? y8", "constant? x8", "constant? x8",
        "numeral 5 8", "int numeral 0 8"}},
      {"(bvxor #x0f y8)",
       "#x05",
       {"type of bvxor", "width", "read 5:8", "number? f:8", "number? y8", "symbol bvxor 8",
        "BVXorSimpl 5:8 f:8"}},

      {"(concat x4 y8)",
       "#xabc",
       {"concat? concat", "number? x4", "number? y8", "constant? x4", "constant? x4",
        "symbol extract 11 8 12", "BVSelectSimpl abc:12", "symbol extract 7 0 12", "BVSelectSimpl abc:12"}},
      {"(concat #x3 y8)", "#xabc", {"concat? concat", "number? 3:4", "number? y8"}},
      {"((_ extract 7 4) x16)",
       "#xb",
       {"extract? (_ extract 7 4)", "number? x16", "read b:4", "numeral 11 4", "int numeral 0 4",
        "symbol concat 4 4", "BVConcatSimpl b:4 0:4", "symbol zero_extend 8 8", "BVZextSimpl b0:8"}},
      {"((_ extract 3 0) x8)",
       "#xb",
       {"extract? (_ extract 3 0)", "number? x8", "read b:4", "numeral 11 4", "symbol zero_extend 4 4",
        "BVZextSimpl b:4"}},
      {"((_ extract 15 8) x16)",
       "#xcd",
       {"extract? (_ extract 15 8)", "number? x16", "read cd:8", "numeral 205 8", "int numeral 0 8",
        "symbol concat 8 8", "BVConcatSimpl cd:8 0:8"}},
      {"((_ extract 7 0) x8)",
       "#xcd",
       {"extract? (_ extract 7 0)", "number? x8", "read cd:8", "numeral 205 8"}},
      {"((_ extract 3 0) #x57)", "#x7", {"extract? (_ extract 3 0)", "number? 57:8"}},
      {"((_ zero_extend 4) x4)", "#x01", {"read 1:8", "type of x4", "width", "numeral 1 4"}},
      {"((_ sign_extend 4) x4)", "#x00", {"read 0:8", "type of x4", "width", "numeral 0 4"}},

      {"(bvshl x8 s8)",
       "#x05",
       {"type of bvshl", "width", "read 5:8", "number? x8", "number? s8", "numeral 5 8", "int numeral 0 8"}},
      {"(bvlshr #x01 s8)", "#x05", {"type of bvlshr", "width", "read 5:8", "number? 1:8", "number? s8"}},
      {"(bvashr (bvnot x8) s8)",
       "#x05",
       {"type of bvashr", "width", "read 5:8", "number? bvnot", "number? s8", "constant? bvnot",
        "constant? s8"}},
      {"(bvashr x8 s8)",
       "#x05",
       {"type of bvashr", "width", "read 5:8", "number? x8", "number? s8", "constant? x8", "constant? x8",
        "numeral 5 8", "int numeral 0 8"}},

      {"(bvadd x8 y8)",
       "#x05",
       {"type of bvadd", "width", "read 5:8", "number? x8", "number? y8", "constant? x8", "constant? x8",
        "numeral 5 8", "int numeral 0 8"}},
      {"(bvadd #x03 y8)",
       "#x05",
       {"type of bvadd", "width", "read 5:8", "number? 3:8", "number? y8", "symbol bvsub 8",
        "BVSubSimpl 5:8 3:8"}},
      {"(bvsub (bvnot x8) y8)",
       "#x00",
       {"type of bvsub", "width", "read 0:8", "number? bvnot", "number? y8", "constant? bvnot",
        "constant? y8", "numeral 256 8", "int numeral 0 8"}},
      {"(bvsub x8 #x03)",
       "#x05",
       {"type of bvsub", "width", "read 5:8", "number? x8", "number? 3:8", "symbol bvadd 8",
        "BVAddSimpl 3:8 5:8"}},
      {"(bvsub #x03 y8)",
       "#x05",
       {"type of bvsub", "width", "read 5:8", "number? 3:8", "number? y8", "symbol bvsub 8",
        "BVSubSimpl 3:8 5:8"}},
      {"(bvmul x8 y8)",
       "#x05",
       {"type of bvmul", "width", "read 5:8", "read x8", "read y8", "constant? x8", "constant? x8",
        "numeral 5 8", "int numeral 1 8"}},
      {"(bvmul x8 #x03)",
       "#x05",
       {"type of bvmul", "width", "read 5:8", "read x8", "read 3:8", "numeral 87 8"}},
      {"(bvmul x8 #x02)", "#x05", {"type of bvmul", "width", "read 5:8", "read x8", "read 2:8"}},
      {"(bvudiv x8 y8)",
       "#x05",
       {"type of bvudiv", "width", "read 5:8", "number? x8", "number? y8", "constant? x8", "constant? x8",
        "numeral 5 8", "int numeral 1 8"}},
      {"(bvsdiv (bvnot x8) y8)",
       "#x05",
       {"type of bvsdiv", "width", "read 5:8", "number? bvnot", "number? y8", "numeral 5 8",
        "int numeral 1 8"}},
      {"(bvurem x8 y8)", "#x05", {}},
      {"(bvsrem x8 #x05)", "#x05", {}},

      {"(bvult x8 y8)",
       "true",
       {"true?", "bvult? bvult", "read x8", "read y8", "int numeral 0 8", "int numeral 1 8"}},
      {"(bvult x8 #x05)", "true", {"true?", "bvult? bvult", "read x8", "read 5:8", "numeral 4 8"}},
      {"(bvult #xff x8)", "true", {"true?", "bvult? bvult", "read ff:8", "read x8"}},
      {"(bvule x8 y8)",
       "false",
       {"true?", "bvule? bvule", "read x8", "read y8", "int numeral 1 8", "int numeral 0 8"}},
      {"(bvslt x8 #x00)", "true", {"true?", "bvslt? bvslt", "read x8", "read 0:8", "numeral -1 8"}},
      {"(bvslt x8 y8)",
       "false",
       {"true?", "bvslt? bvslt", "read x8", "read y8", "int numeral 0 8", "int numeral 0 8"}},
      {"(bvsle x8 #xff)", "false", {"true?", "bvsle? bvsle", "read x8", "read ff:8", "numeral 256 8"}},
      {"(bvsle x1 y1)",
       "false",
       {"true?", "bvsle? bvsle", "read x1", "read y1", "int numeral 0 1", "int numeral 1 1"}},

      {"(bvcomp x8 y8)",
       "#b0",
       {"read 0:1", "number? x8", "number? y8", "type of x8", "width", "constant? x8", "constant? x8",
        "numeral 1 8", "numeral 0 8"}},
      {"(bvcomp #x09 y8)",
       "#b0",
       {"read 0:1", "number? 9:8", "number? y8", "type of 9:8", "width", "int numeral 1 8", "symbol bvadd 8",
        "BVAddSimpl 9:8 1:8"}},
      {"(bvcomp #x03 #x03)", "#b10", {"read 2:2"}},
  };
  return rows;
}

TEST_F(OwnTerms, AreAskedInTheOrderOfTheContract)
{
  for (const QueryRow& row : get_query_rows()) {
    const Term* t = parse(row.application);
    const Term* value = parse(row.value);
    get_queries().texts.clear();
    get_queries().is_recording = true;
    call(get_calculator_of(t), t, value);
    get_queries().is_recording = false;
    EXPECT_EQ(get_queries().texts, row.queries) << row.application << " is " << row.value;
    take_definitions();
  }
}

// ----------------------------------------------------------------------- what stays if the term layer fails

struct FailureRow
{
  const char* application;
  const char* value;
  /// For each term and symbol that the call makes: the number of definitions on the stack if making it fails
  std::vector<std::size_t> num_left;
};

const std::vector<FailureRow>& get_failure_rows()
{
  static const std::vector<FailureRow> rows = {
      {"(not p)", "true", {0}},
      {"(and p q)", "true", {0}},
      {"(or p q)", "true", {0}},
      {"(= p q)", "true", {0, 1}},
      {"(= p true)", "true", {0}},
      {"(= false q)", "true", {0}},
      {"(ite c x8 y8)", "#x05", {0}},
      {"(ite c x8 #x03)", "#x05", {0}},
      {"(ite c #x03 y8)", "#x05", {0}},
      {"(= x8 y8)", "true", {0, 1}},
      {"(= x8 #x07)", "false", {0, 0, 0}},
      {"(bvnot x8)", "#x05", {0, 0}},
      {"(bvneg x8)", "#x05", {0, 0}},
      {"((_ rotate_left 3) x8)", "#x05", {0, 0}},
      {"((_ rotate_right 3) x8)", "#x05", {0, 0}},
      {"(bvand x8 y8)", "#x05", {0}},
      {"(bvor x8 y8)", "#x05", {0, 1}},
      {"(bvxor x8 y8)", "#x05", {0, 1}},
      {"(bvxor x8 #x0f)", "#x05", {0, 0}},
      {"(concat x4 y4)", "#xa5", {0, 0, 0, 0}},
      {"((_ extract 7 4) x16)", "#xb", {0, 0, 0, 0, 0, 0}},
      {"((_ zero_extend 4) x4)", "#x01", {0}},
      {"((_ sign_extend 4) x4)", "#x01", {0}},
      {"(bvshl x8 y8)", "#x05", {0, 1}},
      {"(bvlshr x8 y8)", "#x05", {0, 1}},
      {"(bvashr x8 y8)", "#x05", {0, 1}},
      {"(bvadd x8 y8)", "#x05", {0, 1}},
      {"(bvadd x8 #x03)", "#x05", {0, 0}},
      {"(bvsub x8 y8)", "#x05", {0, 1}},
      {"(bvsub (bvnot x8) y8)", "#x05", {0, 1}},
      {"(bvsub x8 #x03)", "#x05", {0, 0}},
      {"(bvsub #x03 x8)", "#x05", {0, 0}},
      {"(bvmul x8 y8)", "#x05", {0, 1}},
      {"(bvmul x8 #x03)", "#x05", {0}},
      {"(bvudiv x8 y8)", "#x05", {0, 1}},
      {"(bvsdiv x8 y8)", "#x05", {0, 1}},
      {"(bvult x8 y8)", "true", {0, 1}},
      {"(bvult x8 #x03)", "true", {0}},
      {"(bvule x8 y8)", "true", {0, 1}},
      {"(bvule x8 #x03)", "false", {0}},
      {"(bvslt x8 y8)", "true", {0, 1}},
      {"(bvslt x8 #x03)", "true", {0}},
      {"(bvsle x8 y8)", "true", {0, 1}},
      {"(bvsle x8 #x03)", "false", {0}},
      {"(bvcomp x8 y8)", "#b1", {0, 1}},
      {"(bvcomp x8 #x03)", "#b0", {0, 0, 0}},
  };
  return rows;
}

/// A call in which making the term or symbol of this number fails; returns whether that happened.
bool fails(TermManager& mgr, const Term* t, const Term* value, DefinitionStack& defs, long failing)
{
  get_queries().countdown = failing;
  bool has_failed = false;
  try {
    get_calculator_of(t)(&mgr, t, value, defs);
  } catch (const MakingFailed&) {
    has_failed = true;
  }
  get_queries().countdown = -1;
  return has_failed;
}

TEST_F(OwnTerms, KeepTheFirstDefinitionIfTheyFailBetweenTwoAndNoneIfTheyFailBefore)
{
  for (const FailureRow& row : get_failure_rows()) {
    SCOPED_TRACE(row.application);
    const Term* t = parse(row.application);
    const Term* value = parse(row.value);
    get_calculator_of(t)(&mgr_, t, value, defs_);
    const std::vector<std::string> all = take_definitions();
    std::vector<std::size_t> num_left;
    while (fails(mgr_, t, value, defs_, static_cast<long>(num_left.size()))) {
      const std::vector<std::string> left = take_definitions();
      EXPECT_EQ(left, std::vector<std::string>(all.begin(), all.begin() + static_cast<long>(left.size())));
      num_left.push_back(left.size());
    }
    EXPECT_EQ(num_left, row.num_left);
    EXPECT_EQ(take_definitions(), all);
  }
}

// ------------------------------------------------------------------------ terms and values that do not fit

constexpr std::array<unsigned long, 10> kWidths = {1, 2, 5, 8, 16, 31, 63, 64, 65, 100};

/// Draws calls whose sorts need not fit each other.
class Draw
{
 public:
  Draw(TermManager& mgr, Random& random) : factory_(TermFactory::of(mgr)), random_(random) {}

  ExactCall draw(Kind calculator, const Term*& t, const Term*& value)
  {
    const bool is_own = !random_.one_in(4);
    const Kind kind = is_own ? calculator : draw_operator(calculator);
    const Parameters p = draw_parameters(kind);
    std::vector<const Term*> terms;
    ExactCall call{calculator, is_own ? p : Parameters{}, 0, {}, {}};
    for (std::size_t i = 0; i < get_operator_info(kind).arity; ++i)
      call.args.push_back(draw_operand(numbered("x", i), terms.emplace_back()));
    t = factory_.apply(kind, p, terms);
    call.width = TermFactory::get_width(t);
    call.value = draw_operand("z", value);
    return call;
  }

 private:
  /// One that has at least as many arguments
  Kind draw_operator(Kind calculator)
  {
    for (;;) {
      const Kind kind = random_.pick(kOperators).kind;
      if (kind != calculator && get_operator_info(kind).arity >= get_operator_info(calculator).arity)
        return kind;
      if (calculator == Kind::kIte) return calculator;
    }
  }

  Parameters draw_parameters(Kind kind)
  {
    const unsigned long w = random_.pick(kWidths);
    switch (get_operator_info(kind).rule) {
      case SortRule::kConcat:
        return {w, random_.pick(kWidths)};
      case SortRule::kExtract: {
        const unsigned long msb = random_.index(2 * w);
        return {msb, random_.index(msb + 1), w};
      }
      case SortRule::kRotate:
      case SortRule::kExtend:
        return {random_.index(2 * w), w};
      case SortRule::kBool:
        return {};
      default:
        return {w};
    }
  }

  Operand draw_operand(const std::string& name, const Term*& term)
  {
    const unsigned long w = random_.one_in(6) ? 0 : random_.pick(kWidths);
    switch (random_.index(6)) {
      case 0:
      case 1:
        if (w != 0) return draw_numeral(w, term);
        [[fallthrough]];
      case 2: {
        const bool b = random_.flip();
        term = factory_.make_truth_value(b);
        const char* text = b ? "true" : "false";
        return {b ? Operand::Sort::kTrue : Operand::Sort::kFalse, text, text, 0, 0};
      }
      case 3: {
        const std::string inner = numbered(name + "_", w);
        term = factory_.apply(Kind::kBvNeg, {w}, {factory_.make_constant(inner, w)});
        return {Operand::Sort::kCompound, print_application(Kind::kBvNeg, {w}, {inner}), "bvneg", w, 0};
      }
      default: {
        const std::string text = numbered(name + "_", w);
        term = factory_.make_constant(text, w);
        return {Operand::Sort::kConstant, text, text, w, 0};
      }
    }
  }

  Operand draw_numeral(unsigned long w, const Term*& term)
  {
    Integer n;
    random_.natural(n, random_.flip() ? w : std::min(w, 1UL));
    term = factory_.make_numeral(n, w);
    return make_numeral_operand(n, w);
  }

  TermFactory& factory_;
  Random& random_;
};

std::string join(const std::vector<std::string>& texts)
{
  std::string all;
  for (const std::string& text : texts)
    all += text + "; ";
  return all;
}

TEST_F(OwnTerms, ThatDoNotFitTogetherAreReadWhereTheContractSays)
{
  constexpr int kNumCalls = 2000;  // of each operator
  Random random;
  SCOPED_TRACE(random);
  int num_ill_typed = 0;
  for (const OperatorInfo& info : kOperators) {
    for (int i = 0; i < kNumCalls; ++i) {
      const Term* t;
      const Term* value;
      const ExactCall drawn = Draw(mgr_, random).draw(info.kind, t, value);
      const ExactOutcome expected = expect_exactly(drawn);
      const std::string message = call(get_calculator(info.kind), t, value);
      const std::vector<std::string> definitions = take_definitions();
      const bool is_error = !expected.message.empty() && !expected.is_missing_constant;
      ASSERT_EQ(message, (is_error ? "error: " : "") + expected.message)
          << info.smtlib_name << " on " << TermFactory::print(t) << " is " << TermFactory::print(value);
      ASSERT_EQ(join(definitions), join(expected.definitions))
          << info.smtlib_name << " on " << TermFactory::print(t) << " is " << TermFactory::print(value);
      num_ill_typed += expected.is_ill_typed ? 1 : 0;
    }
  }
  EXPECT_GT(num_ill_typed, 3000);
}

}  // namespace
}  // namespace lumo::test
