// Every operator at widths 5 to 4096 against the reference on GMP's integers: all pairs of corners and of kinds of
// arguments and values, values of other sorts and widths among them, and random calls.

#include <typeinfo>

#include <gtest/gtest.h>

#include "lumo/calculators/calculator_table.h"
#include "lumo/numbers/bvnumber.h"
#include "tests/calculators/calls.h"
#include "tests/calculators/exact_reference.h"
#include "tests/support/make_operator.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"

namespace lumo::test {
namespace {

using adhoccalculator::AdHocCalculator;
using adhoccalculator::DefinitionStack;
using Sort = Operand::Sort;

constexpr unsigned long kExactWidths[] = {5, 8, 31, 32, 33, 62, 63, 64, 65, 127, 128, 129, 1000, 4096};
constexpr int kNumRandomCalls = 150;  // of each operator at each width: 4,800 at a width

/// A term, and its description for the reference
struct Piece
{
  const Term* term;
  Operand operand;
};

std::string print(const TermManager& mgr, const Term* t)
{
  const Symbol* s = t->get_symbol();
  if (s->get_kind() == Kind::kNumeral) {
    QNumber number;
    Integer n;
    EXPECT_TRUE(mgr.is_number(s, &number));
    number.get_numerator(n);
    return print_numeral(n, s->get_output_type()->get_width());
  }
  if (!is_operator(s->get_kind())) return s->get_name();
  std::vector<std::string> args;
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    args.push_back(print(mgr, t->get_arg(i)));
  return print_application(s->get_kind(), as_operator(s).get_parameters(), args);
}

/// Makes arguments and values.
class Pieces
{
 public:
  explicit Pieces(TermManager& mgr) : mgr_(mgr) {}

  Piece numeral(const Integer& n, unsigned long w)
  {
    return {mgr_.make_bv_number(BVNumber::from_integer(n), w), make_numeral_operand(n, w)};
  }
  Piece truth(bool b)
  {
    const char* text = b ? "true" : "false";
    return {b ? mgr_.make_true() : mgr_.make_false(), {b ? Sort::kTrue : Sort::kFalse, text, text, 0, 0}};
  }
  /// Width 0 makes a Boolean one.
  Piece constant(const std::string& prefix, unsigned long w)
  {
    const std::string name = numbered(prefix + "_", w);
    return {make_constant(name, w), {Sort::kConstant, name, name, w, 0}};
  }
  Piece compound(const std::string& prefix, unsigned long w)
  {
    const Kind kind = w == 0 ? Kind::kNot : Kind::kBvNeg;
    const std::string name = numbered(prefix + "_", w);
    const Term* t = mgr_.make_term(make_operator(mgr_, kind, {w}), {make_constant(name, w)});
    return {t, {Sort::kCompound, print_application(kind, {w}, {name}), w == 0 ? "not" : "bvneg", w, 0}};
  }

  /// Corners and kinds of arguments of a sort at a place
  std::vector<Piece> arguments(unsigned long w, std::size_t place)
  {
    std::vector<Piece> all = {constant(numbered("x", place), w), compound(numbered("u", place), w)};
    if (place > 0) all.push_back(constant("x0", w));
    if (w == 0) {
      all.insert(all.end(), {truth(true), truth(false)});
      return all;
    }
    const Integer corners[] = {0, 1, Integer::power(w - 1, -1), Integer::power(w - 1), Integer::power(w, -1)};
    for (const Integer& n : corners)
      all.push_back(numeral(n, w));
    return all;
  }
  /// Corners and kinds of values of a sort, and values of other sorts
  std::vector<Piece> values(unsigned long w)
  {
    std::vector<Piece> all = {constant("z", w), compound("z", w), truth(true), truth(false)};
    if (w == 0) {
      all.insert(all.end(), {numeral(1, 1), numeral(0, 5)});
      return all;
    }
    const Integer corners[] = {0, 1, 2, Integer::power(w - 1), Integer::power(w, -1)};
    for (const Integer& n : corners)
      all.push_back(numeral(n, w));
    all.insert(all.end(),
               {numeral(1, 1 + w % 2), numeral(Integer::power(w, 1), w + 1), constant("z", w + 1)});
    return all;
  }

  Piece draw_argument(Random& random, unsigned long w, std::size_t place)
  {
    const std::size_t choice = random.index(5);
    if (choice == 0) return constant(numbered("x", place), w);
    if (choice == 1) return compound(numbered("u", place), w);
    return draw_proper(random, w);
  }
  Piece draw_value(Random& random, unsigned long w)
  {
    return random.one_in(8) ? random.pick(values(w)) : draw_proper(random, w);
  }

 private:
  const Term* make_constant(const std::string& name, unsigned long w)
  {
    return mgr_.make_constant(name, w == 0 ? mgr_.make_bool_type() : mgr_.make_bv_type(w));
  }
  Piece draw_proper(Random& random, unsigned long w)
  {
    if (w == 0) return truth(random.flip());
    Integer n;
    random.natural(n, w);
    return numeral(n, w);
  }

  TermManager& mgr_;
};

std::vector<Parameters> get_corner_parameters(Kind kind, unsigned long w)
{
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
      return {{}};
    case SortRule::kIte:
      return {{w}, {0}};
    case SortRule::kConcat:
      return {{w, w}, {w, 1}, {1, w}};
    case SortRule::kExtract:
      return {{w - 1, 0, w}, {w - 1, w - 1, w}, {0, 0, w}, {w - 2, 1, w}, {w - 1, w / 2, w}, {w / 2, 0, w}};
    case SortRule::kRotate:
      return {{0, w}, {1, w}, {w - 1, w}, {w, w}, {w + 3, w}};
    case SortRule::kExtend:
      return {{0, w}, {1, w}, {w, w}};
    default:
      return {{w}};
  }
}

Parameters draw_exact_parameters(Random& random, Kind kind, unsigned long w)
{
  switch (get_operator_info(kind).rule) {
    case SortRule::kConcat:
      return {w, 1 + random.index(w)};
    case SortRule::kExtract: {
      const unsigned long msb = random.index(w);
      return {msb, random.index(msb + 1), w};
    }
    case SortRule::kRotate:
    case SortRule::kExtend:
      return {random.index(2 * w), w};
    default:
      return random.pick(get_corner_parameters(kind, w));
  }
}

unsigned long get_width(const DataType* type) { return type->get_width(); }

class ExactTest : public testing::TestWithParam<OperatorInfo>
{
 protected:
  /// One call, alternately by the throwing form and by the other one
  void check(TermManager& mgr, const Symbol* s, const std::vector<Piece>& args, const Piece& value)
  {
    ExactCall call{s->get_kind(), as_operator(s).get_parameters(), get_width(s->get_output_type()), {}, {}};
    std::vector<const Term*> terms;
    for (const Piece& arg : args) {
      terms.push_back(arg.term);
      call.args.push_back(arg.operand);
    }
    call.value = value.operand;
    const ExactOutcome expected = expect_exactly(call);
    const Term* t = mgr.make_term(s, terms);
    const auto place = [&] { return print(mgr, t) + " is " + value.operand.text; };

    DefinitionStack defs;
    std::string message;
    bool is_error = false;
    try {
      if (num_calls_++ % 2 == 0) {
        (*find_calculator(mgr, s))(&mgr, t, value.term, defs);
      } else {
        const adhoccalculator::Refusal refusal = try_calculate(&mgr, t, value.term, defs);
        message = refusal.get_text();
        is_error = refusal && !refusal.is_missing_constant();
      }
    } catch (const Exception& e) {
      message = e.what();
      is_error = typeid(e) == typeid(AdHocCalculator::error);
    }
    std::vector<std::string> definitions;
    for (const Definition& definition : take_definitions(defs))
      definitions.push_back(print(mgr, definition.term) + " := " + print(mgr, definition.value));
    if (expected.is_ill_typed) {
      ASSERT_TRUE(!message.empty() && !is_error && definitions.empty()) << place() << ": " << message;
      return;
    }
    ASSERT_EQ(message, expected.message) << place();
    ASSERT_EQ(is_error, !message.empty() && !expected.is_missing_constant) << place();
    ASSERT_EQ(definitions, expected.definitions) << place();
  }

  void check_corners(TermManager& mgr, const Symbol* s)
  {
    Pieces pieces(mgr);
    const std::vector<Piece> values = pieces.values(get_width(s->get_output_type()));
    std::vector<std::vector<Piece>> menus;
    for (std::size_t i = 0; i < s->get_arity(); ++i)
      menus.push_back(pieces.arguments(get_width(as_operator(s).get_argument_type(i)), i));
    std::vector<std::size_t> choice(menus.size(), 0);
    for (std::size_t i = 0; i < menus.size();) {
      std::vector<Piece> args;
      for (std::size_t j = 0; j < menus.size(); ++j)
        args.push_back(menus[j][choice[j]]);
      for (const Piece& value : values) {
        check(mgr, s, args, value);
        if (HasFatalFailure()) return;
      }
      for (i = 0; i < menus.size() && ++choice[i] == menus[i].size(); ++i)
        choice[i] = 0;
    }
  }

  int num_calls_ = 0;
};

TEST_P(ExactTest, AgreesWithTheReferenceOnCorners)
{
  for (const unsigned long w : kExactWidths) {
    TermManager mgr;
    for (const Parameters& p : get_corner_parameters(GetParam().kind, w)) {
      check_corners(mgr, make_operator(mgr, GetParam().kind, p));
      if (HasFatalFailure()) return;
    }
  }
}

TEST_P(ExactTest, AgreesWithTheReferenceOnRandomCalls)
{
  Random random;
  SCOPED_TRACE(random);
  for (const unsigned long w : kExactWidths) {
    TermManager mgr;
    Pieces pieces(mgr);
    for (int i = 0; i < kNumRandomCalls; ++i) {
      const Symbol* s =
          make_operator(mgr, GetParam().kind, draw_exact_parameters(random, GetParam().kind, w));
      std::vector<Piece> args;
      for (std::size_t j = 0; j < s->get_arity(); ++j)
        args.push_back(pieces.draw_argument(random, get_width(as_operator(s).get_argument_type(j)), j));
      check(mgr, s, args, pieces.draw_value(random, get_width(s->get_output_type())));
      if (HasFatalFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllOperators, ExactTest, testing::ValuesIn(kOperators), name_operator);

}  // namespace
}  // namespace lumo::test
