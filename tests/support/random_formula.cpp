#include "tests/support/random_formula.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/derived_operators.h"
#include "tests/support/gmp_number.h"
#include "tests/support/make_operator.h"
#include "tests/support/numbered.h"

namespace lumo::test {

namespace {

/// Operators that readers expand, and those that take more than two arguments.
constexpr std::array<std::string_view, 10> kDerivedOfBooleans = {"xor", "=>",  "=",  "distinct", "and",
                                                                 "or",  "and", "or", "xor",      "=>"};
constexpr std::array<std::string_view, 8> kDerivedAtoms = {"distinct", "=",     "bvugt", "bvuge",
                                                           "bvsgt",    "bvsge", "bvslt", "bvule"};
constexpr std::array<std::string_view, 10> kDerivedOfVectors = {
    "bvnand", "bvnor", "bvxnor", "bvxnor", "bvsmod", "bvand", "bvor", "bvadd", "bvxor", "bvmul"};

constexpr std::array<Kind, 6> kOfBooleans = {Kind::kNot, Kind::kAnd, Kind::kOr,
                                             Kind::kIff, Kind::kIte, Kind::kIff};
constexpr std::array<Kind, 6> kAtoms = {Kind::kEq,    Kind::kBvUlt, Kind::kBvUle,
                                        Kind::kBvSlt, Kind::kBvSle, Kind::kEq};
constexpr std::array<Kind, 23> kOfVectors = {
    Kind::kBvNot,        Kind::kBvNeg,  Kind::kBvRotateLeft, Kind::kBvRotateRight, Kind::kBvAnd,
    Kind::kBvOr,         Kind::kBvXor,  Kind::kBvConcat,     Kind::kBvExtract,     Kind::kBvZeroExtend,
    Kind::kBvSignExtend, Kind::kBvLsl,  Kind::kBvLsr,        Kind::kBvAsr,         Kind::kBvAdd,
    Kind::kBvSub,        Kind::kBvMul,  Kind::kBvUdiv,       Kind::kBvSdiv,        Kind::kBvUrem,
    Kind::kBvSrem,       Kind::kBvComp, Kind::kIte};

bool is_product(Kind kind)
{
  return kind == Kind::kBvMul || kind == Kind::kBvUdiv || kind == Kind::kBvSdiv || kind == Kind::kBvUrem ||
         kind == Kind::kBvSrem;
}

bool is_product(std::string_view name) { return name == "bvmul" || name == "bvsmod"; }

/// Draws terms downwards from their sorts; width 0 is Bool.
class Generator
{
 public:
  Generator(TermManager& mgr, Random& random, const FormulaLimits& limits)
      : mgr_(mgr), random_(random), limits_(limits)
  {}

  RandomFormula draw()
  {
    formula_ = {};
    made_.clear();
    common_.clear();
    width_ = draw_width();
    const std::size_t num_assertions = 1 + random_.index(1 + random_.index(4));
    for (std::size_t i = 0; i < num_assertions; ++i) {
      // Short ones are as frequent as long ones
      budget_ = 1 + random_.index(1 + random_.index(limits_.max_applications));
      formula_.assertions.push_back(make(0));
    }
    return formula_;
  }

 private:
  unsigned long draw_width() { return random_.pick(limits_.widths); }

  const Term* make(unsigned long w)
  {
    if (budget_ == 0) return make_leaf(w);
    if (random_.one_in(8)) {
      if (const Term* t = find_made(w); t != nullptr) return t;
    }
    if (random_.one_in(6)) return make_leaf(w);
    --budget_;
    const Term* t = w == 0 ? make_boolean() : make_vector(w);
    made_[w].push_back(t);
    return t;
  }

  const Term* find_made(unsigned long w)
  {
    const std::vector<const Term*>& choices = made_[w];
    return choices.empty() ? nullptr : random_.pick(choices);
  }

  const Term* make_leaf(unsigned long w)
  {
    switch (random_.index(8)) {
      case 0:
      case 1:
        return make_value(w);
      case 2: {
        std::vector<const Term*>& common = common_[w];
        if (common.size() < 2) common.push_back(make_constant(w));
        return random_.pick(common);
      }
      default:
        return make_constant(w);
    }
  }

  const Term* make_constant(unsigned long w)
  {
    const DataType* type = w == 0 ? mgr_.make_bool_type() : mgr_.make_bv_type(w);
    formula_.constants.push_back(mgr_.make_constant(numbered("x", num_constants_++), type));
    return formula_.constants.back();
  }

  const Term* make_value(unsigned long w)
  {
    if (w == 0) return random_.flip() ? mgr_.make_true() : mgr_.make_false();
    switch (random_.index(6)) {
      case 0:
        return mgr_.make_bv_number(0, w);
      case 1:
        return mgr_.make_bv_number(-1, w);
      case 2:
        return mgr_.make_bv_number(BVNumber::pow2(w - 1) - QNumber(random_.flip() ? 1 : 0), w);
      case 3:  // an amount of a shift
        return mgr_.make_bv_number(random_.index(w + 2), w);
      default:
        Integer number;
        random_.natural(number, w);
        return mgr_.make_bv_number(BVNumber::from_integer(number), w);
    }
  }

  const Term* make_boolean()
  {
    switch (random_.index(8)) {
      case 0:
        return make_derived(random_.pick(kDerivedOfBooleans), 0);
      case 1:
        return make_derived(random_.pick(kDerivedAtoms), draw_operand_width());
      case 2:
      case 3:
      case 4:
        return make_uniform(random_.pick(kOfBooleans), 0);
      default:
        return make_uniform(random_.pick(kAtoms), draw_operand_width());
    }
  }

  /// Mostly one width, so that existing terms fit
  unsigned long draw_operand_width() { return random_.one_in(4) ? draw_width() : width_; }

  const Term* make_vector(unsigned long w)
  {
    if (random_.one_in(6)) {
      const std::string_view name = random_.pick(kDerivedOfVectors);
      return make_derived(is_product(name) && !limits_.has_products ? "bvadd" : name, w);
    }
    Kind kind = random_.pick(kOfVectors);
    if (is_product(kind) && !limits_.has_products) kind = Kind::kBvSub;
    return make_application(kind, w);
  }

  const Term* make_application(Kind kind, unsigned long w)
  {
    switch (kind) {
      case Kind::kBvComp:
        if (w != 1) return make_uniform(Kind::kBvNeg, w);
        return make_uniform(kind, draw_operand_width());
      case Kind::kBvConcat: {
        if (w == 1) return make_uniform(Kind::kBvNot, w);
        const unsigned long high = 1 + random_.index(w - 1);
        return build(kind, {high, w - high}, {high, w - high});
      }
      case Kind::kBvExtract: {
        const unsigned long operand = std::max(w, std::min(w + random_.index(4), limits_.widths.back()));
        const unsigned long lsb = random_.index(operand - w + 1);
        return build(kind, {lsb + w - 1, lsb, operand}, {operand});
      }
      case Kind::kBvZeroExtend:
      case Kind::kBvSignExtend: {
        const unsigned long k = random_.index(std::min(w, 4UL));
        return build(kind, {k, w - k}, {w - k});
      }
      case Kind::kBvRotateLeft:
      case Kind::kBvRotateRight:
        return build(kind, {random_.index(w), w}, {w});  // readers reduce every index like this
      default:
        return make_uniform(kind, w);
    }
  }

  /// An operator whose only parameter is the width of its operands; for ite, the second and third ones.
  const Term* make_uniform(Kind kind, unsigned long w)
  {
    if (kind == Kind::kIte) return build(kind, {w}, {0, w, w});
    return build(kind, {w}, std::vector<unsigned long>(get_operator_info(kind).arity, w));
  }

  const Term* build(Kind kind, const Parameters& parameters, const std::vector<unsigned long>& widths)
  {
    return mgr_.make_term(make_operator(mgr_, kind, parameters), make_arguments(widths));
  }

  const Term* make_derived(std::string_view name, unsigned long w)
  {
    const DerivedOperator& op = get_derived_operator(name);
    const std::size_t most = op.takes_many ? 5 : 2;
    const std::size_t num_args = 2 + random_.index(1 + random_.index(most - 1));
    const std::vector<const Term*> args = make_arguments(std::vector<unsigned long>(num_args, w));
    return op.build(mgr_, args);
  }

  std::vector<const Term*> make_arguments(const std::vector<unsigned long>& widths)
  {
    std::vector<const Term*> args;
    std::size_t rest = budget_;
    for (const unsigned long w : widths) {
      const std::size_t share = args.size() + 1 == widths.size() ? rest : random_.index(rest + 1);
      budget_ = share;
      args.push_back(make(w));
      rest = rest - share + budget_;
    }
    budget_ = rest;
    return args;
  }

  TermManager& mgr_;
  Random& random_;
  const FormulaLimits& limits_;
  unsigned long width_ = 1;  ///< of most vectors
  std::size_t budget_ = 0;   ///< applications that the assertion may still get
  std::size_t num_constants_ = 0;
  RandomFormula formula_;
  std::unordered_map<unsigned long, std::vector<const Term*>> made_;    ///< applications, by width
  std::unordered_map<unsigned long, std::vector<const Term*>> common_;  ///< constants for many places
};

}  // namespace

std::vector<std::size_t> count_occurrences(const RandomFormula& formula)
{
  std::unordered_map<const Term*, std::size_t> counts;
  std::unordered_set<const Term*> seen;
  std::vector<const Term*> stack(formula.assertions);
  for (const Term* t : stack)
    ++counts[t];
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (!seen.insert(t).second) continue;
    for (std::size_t i = 0; i < t->get_num_args(); ++i) {
      ++counts[t->get_arg(i)];
      stack.push_back(t->get_arg(i));
    }
  }
  std::vector<std::size_t> result;
  for (const Term* constant : formula.constants)
    result.push_back(counts[constant]);
  return result;
}

RandomFormula make_random_formula(TermManager& mgr, Random& random, const FormulaLimits& limits)
{
  Generator generator(mgr, random, limits);
  for (;;) {
    RandomFormula formula = generator.draw();
    const std::vector<std::size_t> counts = count_occurrences(formula);
    const auto once = static_cast<std::size_t>(std::count(counts.begin(), counts.end(), 1UL));
    if (!counts.empty() && 2 * once >= counts.size()) return formula;
  }
}

}  // namespace lumo::test
