// A calculator called with any arguments and any value, on a stack that already has a definition.
//
// If all sorts fit a word, the call must have exactly the result of the reference: the same definitions, or the same
// refusal. At every width a refusal has one of the known texts and leaves the stack unchanged, and definitions give
// the application the value, except in the cases that are unsound by design.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "fuzz/draw_integer.h"
#include "fuzz/draw_symbol.h"
#include "fuzz/target.h"
#include "lumo/calculators/calculator_table.h"
#include "lumo/model/model_store.h"
#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/fold.h"
#include "tests/calculators/enumeration.h"
#include "tests/calculators/reference.h"
#include "tests/calculators/soundness.h"
#include "tests/support/numbered.h"

namespace lumo::fuzz {
namespace {

using adhoccalculator::AdHocCalculator;
using test::Definition;
using test::Outcome;
using test::Reference;
using Failure = Outcome::Failure;

/// The maximal width of the reference.
constexpr unsigned long kReferenceWidth = 62;
/// The reference searches for inverse factors one by one.
constexpr unsigned long kReferenceFactorWidth = 10;
constexpr unsigned long kMaxWidth = 200;

constexpr std::array<std::string_view, 14> kRefusals = {
    "Cannot find a value, should be free!",
    "Is not free!",
    "Should not be called is never free!",
    "Term is not free!\n",
    "Term was not free!",
    "This Term is not unconstraint!",
    "This atom is not unconstrained!",
    "This atom is not unconstraint!",
    "We cannot find a value for this atom!",
    "non-free term",
    "not free!",
    "should have been handled at the normalization step",
    "term was not free",
    "unexpected value from comp",
};

std::string describe(const Outcome& outcome)
{
  std::string text;
  for (const auto& [term, value] : outcome.definitions)
    text += test::describe(term) + " := " + test::describe(value) + "; ";
  return text + outcome.message;
}

class Run
{
 public:
  Run(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void run()
  {
    while (bytes_.remaining_bytes() > 0) {
      if (bytes_.ConsumeBool()) {
        call_narrow();
      } else {
        call_wide();
      }
    }
  }

 private:
  void call_narrow()
  {
    const OperatorSymbol& s = draw_symbol(bytes_, mgr_, kReferenceWidth);
    if (s.get_kind() == Kind::kBvMul && s.get_parameters()[0] > kReferenceFactorWidth) return;
    const Term* t = draw_application(s);
    const Term* value = draw_value(s.get_output_type());
    const Outcome found = call(t, value);
    const Outcome expected = reference_.expect(t, value);
    check(found.failure == expected.failure && found.message == expected.message &&
              found.definitions == expected.definitions,
          [&] {
            return test::describe(t) + " is " + test::describe(value) + "\nexpected: " + describe(expected) +
                   "\nfound:    " + describe(found);
          });
  }

  void call_wide()
  {
    const OperatorSymbol& s = draw_symbol(bytes_, mgr_, kMaxWidth);
    const Term* t = draw_application(s);
    const Term* value = draw_value(s.get_output_type());
    const Outcome found = call(t, value);
    if (!is_value(mgr_, value) || value->get_symbol()->get_output_type() != s.get_output_type()) return;
    check(found.failure != Failure::kPlainException || found.message.starts_with("expected constant, but "),
          [&] { return "an unexpected exception: " + found.message; });
    if (found.failure != Failure::kNone) return;
    if (!test::has_distinct_constants(mgr_, t) || test::is_known_exception(mgr_, t)) return;
    ModelStore model(&mgr_);
    ModelStore::DefinitionStack defs;
    for (const auto& [term, defining] : found.definitions)
      defs.emplace(term, defining, true);
    model.replay(defs);
    check(model.get_value(t) == value, [&] {
      return test::describe(t) + " is " + test::describe(value) + ", not given by " + describe(found);
    });
  }

  Outcome call(const Term* t, const Term* value)
  {
    const ModelStore::ModelDefinition older(mgr_.make_true(), mgr_.make_false(), false);
    ModelStore::DefinitionStack defs;
    defs.push(older);
    Outcome outcome;
    try {
      (*find_calculator(mgr_, t->get_symbol()))(&mgr_, t, value, defs);
    } catch (const Exception& e) {
      outcome.failure =
          typeid(e) == typeid(AdHocCalculator::error) ? Failure::kError : Failure::kPlainException;
      outcome.message = e.what();
    }
    for (; defs.size() > 1; defs.pop()) {
      check(defs.top().flag, [] { return "a definition that is not in force"; });
      outcome.definitions.push_back({defs.top().term, defs.top().value});
    }
    check(defs.size() == 1 && defs.top().term == older.term && defs.top().value == older.value &&
              defs.top().flag == older.flag,
          [] { return "the older definition is gone"; });
    std::reverse(outcome.definitions.begin(), outcome.definitions.end());
    check_outcome(t, outcome);
    return outcome;
  }

  static void check_outcome(const Term* t, const Outcome& outcome)
  {
    if (outcome.failure == Failure::kNone) {
      check(!outcome.definitions.empty(), [&] { return "nothing defined for " + test::describe(t); });
      return;
    }
    check(outcome.definitions.empty(), [&] { return "a refusal with definitions: " + describe(outcome); });
    const bool is_listed = std::find(kRefusals.begin(), kRefusals.end(), outcome.message) != kRefusals.end();
    check(is_listed == (outcome.failure == Failure::kError),
          [&] { return "not the text of a refusal: " + outcome.message; });
  }

  const Term* draw_application(const OperatorSymbol& s)
  {
    std::vector<const Term*> args;
    for (std::size_t i = 0; i < s.get_arity(); ++i)
      args.push_back(draw_argument(s.get_argument_type(i), i));
    return mgr_.make_term(&s, args);
  }

  const Term* draw_argument(const DataType* type, std::size_t position)
  {
    const std::size_t other = bytes_.ConsumeIntegralInRange<std::size_t>(0, position);
    switch (bytes_.ConsumeIntegralInRange<int>(0, 4)) {
      case 0:
      case 1:
        return draw_proper_value(type);
      case 2:
        return make_constant("x", position, type);
      case 3:
        return make_constant("x", other, type);
      default:
        return make_compound(make_constant("u", other, type));
    }
  }

  /// A valid or an invalid value for the calculator.
  const Term* draw_value(const DataType* type)
  {
    switch (bytes_.ConsumeIntegralInRange<int>(0, 9)) {
      case 0:
        return make_constant("z", 0, type);
      case 1:
        return make_compound(make_constant("z", 0, type));
      case 2:
        return type->is_bool() ? reference_.make_number(1, 1) : draw_proper_value(mgr_.make_bool_type());
      case 3:
        if (!type->is_bool())
          return reference_.make_number(bytes_.ConsumeIntegralInRange(0U, 1U), type->get_width());
        return make_constant("z", 1, type);
      default:
        return draw_proper_value(type);
    }
  }

  const Term* draw_proper_value(const DataType* type)
  {
    if (type->is_bool()) return bytes_.ConsumeBool() ? mgr_.make_true() : mgr_.make_false();
    const unsigned long w = type->get_width();
    const test::Integer number = draw_natural(bytes_, w);
    if (w <= kReferenceWidth) return reference_.make_number(mpz_get_ui(number), w);
    return mgr_.make_bv_number(BVNumber::from_integer(number), w);
  }

  const Term* make_constant(const char* name, std::size_t number, const DataType* type)
  {
    std::string full = test::numbered(name, number);
    full += '_';
    full += type->to_string();
    return mgr_.make_constant(full, type);
  }

  const Term* make_compound(const Term* inner)
  {
    const DataType* type = inner->get_symbol()->get_output_type();
    return mgr_.make_term(
        type->is_bool() ? mgr_.make_not_symbol() : mgr_.make_bv_not_symbol(type->get_width()), {inner});
  }

  FuzzedDataProvider bytes_;
  TermManager mgr_;
  Reference reference_{&mgr_};
};

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size) { Run(data, size).run(); }

}  // namespace lumo::fuzz
