// Random terms over all operators and sorts: made, simplified, folded, and evaluated under random definitions,
// against Z3's evaluation.

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include <z3++.h>

#include "fuzz/draw_integer.h"
#include "fuzz/draw_symbol.h"
#include "fuzz/target.h"
#include "lumo/model/model_store.h"
#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/fold.h"
#include "lumo/terms/termsimpl.h"
#include "tests/support/number.h"
#include "tests/support/numbered.h"
#include "tests/support/z3_terms.h"

namespace lumo::fuzz {
namespace {

constexpr unsigned long kMaxWidth = 300;
constexpr std::size_t kMaxTerms = 40;
constexpr std::size_t kMaxDefinitions = 6;

/// Shared by all inputs, since a context takes long to make.
z3::context& get_context()
{
  static z3::context context;
  return context;
}

/// The values of terms, computed by Z3 step by step from those of their arguments.
class Z3Values
{
 public:
  explicit Z3Values(TermManager& mgr) : mgr_(mgr) {}

  void define(const Term* t, const Term* value)
  {
    if (is_value(mgr_, t)) return;
    given_[t] = value;
    known_.clear();
  }

  /// Terms are shallow enough for the recursion.
  const Term* get(const Term* t)
  {
    if (is_value(mgr_, t)) return t;
    if (const auto given = given_.find(t); given != given_.end()) return given->second;
    if (const auto known = known_.find(t); known != known_.end()) return known->second;
    const Term* value =
        t->get_num_args() == 0 ? make_value(mgr_, QNumber(), t->get_symbol()->get_output_type()) : apply(t);
    known_.emplace(t, value);
    return value;
  }

 private:
  const Term* apply(const Term* t)
  {
    test::Z3Terms terms(mgr_, get_context());
    std::vector<z3::expr> args;
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      args.push_back(terms.make(get(t->get_arg(i))));
    const OperatorSymbol& s = as_operator(t->get_symbol());
    const z3::expr result =
        test::apply_in_z3(get_context(), s.get_kind(), s.get_parameters(), args).simplify();
    check(result.is_numeral() || result.is_true() || result.is_false(),
          [&] { return "Z3 gives no value: " + result.to_string(); });
    return test::read_value(mgr_, result);
  }

  TermManager& mgr_;
  std::unordered_map<const Term*, const Term*> given_;
  std::unordered_map<const Term*, const Term*> known_;
};

/// The functor of an operator, or null.
const StdTermSimplifier::simpl_fun* find_functor(Kind kind)
{
  static const termsimpl::BVAddSimpl add;
  static const termsimpl::BVSubSimpl sub;
  static const termsimpl::BVXorSimpl exclusive_or;
  static const termsimpl::BVNotSimpl complement;
  static const termsimpl::BVNegSimpl neg;
  static const termsimpl::BVRolSimpl rol;
  static const termsimpl::BVRorSimpl ror;
  static const termsimpl::BVSelectSimpl select;
  static const termsimpl::BVConcatSimpl concat;
  static const termsimpl::BVZextSimpl zext;
  switch (kind) {
    case Kind::kBvAdd:
      return &add;
    case Kind::kBvSub:
      return &sub;
    case Kind::kBvXor:
      return &exclusive_or;
    case Kind::kBvNot:
      return &complement;
    case Kind::kBvNeg:
      return &neg;
    case Kind::kBvRotateLeft:
      return &rol;
    case Kind::kBvRotateRight:
      return &ror;
    case Kind::kBvExtract:
      return &select;
    case Kind::kBvConcat:
      return &concat;
    case Kind::kBvZeroExtend:
      return &zext;
    default:
      return nullptr;
  }
}

std::string describe(const Term* t)
{
  std::string text = "(" + t->get_symbol()->get_name();
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    text += " " + describe(t->get_arg(i));
  return text + ")";
}

class Run
{
 public:
  Run(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void run()
  {
    while (terms_.size() < kMaxTerms && bytes_.remaining_bytes() > 0)
      add_application();
    evaluate_all();
    define();
    evaluate_all();
  }

 private:
  void add_application()
  {
    const OperatorSymbol& s = draw_symbol(bytes_, mgr_, kMaxWidth);
    std::vector<const Term*> args;
    bool has_values_only = true;
    for (std::size_t i = 0; i < s.get_arity(); ++i) {
      args.push_back(draw_argument(s.get_argument_type(i)));
      has_values_only = has_values_only && is_value(mgr_, args.back());
    }
    const Term* t = mgr_.make_term(&s, args);
    check(mgr_.make_term(&s, args) == t, [&] { return "made twice: " + describe(t); });
    const Term* simplified = has_values_only ? fold_values(s, args) : t;
    if (const StdTermSimplifier::simpl_fun* functor = find_functor(s.get_kind()); functor != nullptr) {
      check((*functor)(&mgr_, &s, args) == simplified, [&] { return "simplified wrongly: " + describe(t); });
    }
    if (has_values_only) {
      check(simplified == Z3Values(mgr_).get(t),
            [&] { return describe(t) + " is not " + describe(simplified); });
    }
    add(t);
  }

  void add(const Term* t)
  {
    terms_.push_back(t);
    by_type_[t->get_symbol()->get_output_type()].push_back(t);
  }

  const Term* fold_values(const OperatorSymbol& s, const std::vector<const Term*>& args)
  {
    std::array<QNumber, kMaxArity> numbers;
    std::array<const QNumber*, kMaxArity> operands{};
    for (std::size_t i = 0; i < args.size(); ++i) {
      check(get_value_number(mgr_, args[i], numbers[i]), [] { return "a value has no number"; });
      if (bytes_.ConsumeBool()) numbers[i] = test::in_big_form(numbers[i]);
      operands[i] = &numbers[i];
    }
    return make_value(mgr_, fold(s, operands.data()), s.get_output_type());
  }

  const Term* draw_argument(const DataType* type)
  {
    std::vector<const Term*>& choices = by_type_[type];
    switch (bytes_.ConsumeIntegralInRange<int>(0, 3)) {
      case 0:
        return draw_value(type);
      case 1: {
        const auto number = bytes_.ConsumeIntegralInRange<std::size_t>(0, 2);
        return mgr_.make_constant(
            test::numbered(test::numbered("x", type->is_bool() ? 0 : type->get_width()) + "_", number), type);
      }
      default:
        if (choices.empty()) return draw_value(type);
        return choices[bytes_.ConsumeIntegralInRange<std::size_t>(0, choices.size() - 1)];
    }
  }

  const Term* draw_value(const DataType* type)
  {
    if (type->is_bool()) return bytes_.ConsumeBool() ? mgr_.make_true() : mgr_.make_false();
    const unsigned long w = type->get_width();
    return mgr_.make_bv_number(BVNumber::from_integer(draw_natural(bytes_, w)), w);
  }

  /// Gives values to constants and to other terms; a definition's value is any term of the sort.
  void define()
  {
    if (terms_.empty()) return;
    ModelStore::DefinitionStack defs;
    std::vector<ModelStore::ModelDefinition> newest_last;
    const auto num_definitions = bytes_.ConsumeIntegralInRange<std::size_t>(0, kMaxDefinitions);
    for (std::size_t i = 0; i < num_definitions; ++i) {
      const Term* t = draw_defined();
      newest_last.emplace_back(t, draw_argument(t->get_symbol()->get_output_type()), !bytes_.ConsumeBool());
      defs.push(newest_last.back());
    }
    model_.replay(defs);
    check(defs.empty(), [] { return "the replay leaves definitions"; });
    for (auto d = newest_last.rbegin(); d != newest_last.rend(); ++d) {
      if (d->flag) values_.define(d->term, values_.get(d->value));
    }
  }

  const Term* draw_defined()
  {
    const Term* t = terms_[bytes_.ConsumeIntegralInRange<std::size_t>(0, terms_.size() - 1)];
    while (t->get_num_args() > 0 && bytes_.ConsumeBool())
      t = t->get_arg(bytes_.ConsumeIntegralInRange<std::size_t>(0, t->get_num_args() - 1));
    return t;
  }

  void evaluate_all()
  {
    for (const Term* t : terms_) {
      check(model_.get_value(t) == values_.get(t), [&] {
        return describe(t) + " is not " + describe(model_.get_value(t)) + " but " + describe(values_.get(t));
      });
    }
  }

  FuzzedDataProvider bytes_;
  TermManager mgr_;
  ModelStore model_{&mgr_};
  Z3Values values_{mgr_};
  std::vector<const Term*> terms_;
  std::unordered_map<const DataType*, std::vector<const Term*>> by_type_;
};

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size) { Run(data, size).run(); }

}  // namespace lumo::fuzz
