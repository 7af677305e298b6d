#include "tests/support/derived_operators.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "tests/support/make_operator.h"

namespace lumo::test {

namespace {

using Args = std::vector<const Term*>;

/// An application of an operator whose only parameter is the width of its operands, 0 for Bool.
const Term* apply(TermManager& mgr, Kind kind, const Args& args)
{
  const DataType* sort = args.back()->get_symbol()->get_output_type();
  return mgr.make_term(make_operator(mgr, kind, {sort->is_bool() ? 0 : sort->get_width()}), args);
}

template <Kind kKind>
const Term* one(TermManager& mgr, const Args& args)
{
  return apply(mgr, kKind, args);
}

const Term* equal(TermManager& mgr, const Args& args)
{
  const bool is_boolean = args[0]->get_symbol()->get_output_type()->is_bool();
  return apply(mgr, is_boolean ? Kind::kIff : Kind::kEq, args);
}

const Term* differ(TermManager& mgr, const Args& args) { return apply(mgr, Kind::kNot, {equal(mgr, args)}); }

template <Kind kKind>
const Term* complement_of(TermManager& mgr, const Args& args)
{
  return apply(mgr, Kind::kBvNot, {apply(mgr, kKind, args)});
}

template <Kind kKind>
const Term* exchanged(TermManager& mgr, const Args& args)
{
  return apply(mgr, kKind, {args[1], args[0]});
}

/// (f a b c) is (f (f a b) c).
template <auto kBuild>
const Term* left(TermManager& mgr, const Args& args)
{
  const Term* result = args[0];
  for (std::size_t i = 1; i < args.size(); ++i)
    result = kBuild(mgr, {result, args[i]});
  return result;
}

/// (=> a b c) is (or (not a) (or (not b) c)).
const Term* imply(TermManager& mgr, const Args& args)
{
  const Term* result = args.back();
  for (std::size_t i = args.size() - 1; i-- > 0;)
    result = apply(mgr, Kind::kOr, {apply(mgr, Kind::kNot, {args[i]}), result});
  return result;
}

/// (= a b c) is (and (= a b) (= b c)).
const Term* all_equal(TermManager& mgr, const Args& args)
{
  const Term* result = equal(mgr, {args[0], args[1]});
  for (std::size_t i = 2; i < args.size(); ++i)
    result = apply(mgr, Kind::kAnd, {result, equal(mgr, {args[i - 1], args[i]})});
  return result;
}

/// Every pair differs.
const Term* all_distinct(TermManager& mgr, const Args& args)
{
  const Term* result = nullptr;
  for (std::size_t i = 0; i < args.size(); ++i) {
    for (std::size_t j = i + 1; j < args.size(); ++j) {
      const Term* pair = differ(mgr, {args[i], args[j]});
      result = result == nullptr ? pair : apply(mgr, Kind::kAnd, {result, pair});
    }
  }
  return result;
}

/// The remainder r of a by b with the sign of a; r + b if r is not 0 and does not have the sign of b.
const Term* signed_modulo(TermManager& mgr, const Args& args)
{
  const Term* r = apply(mgr, Kind::kBvSrem, args);
  const Term* zero = mgr.make_bv_number(0, r->get_symbol()->get_output_type()->get_width());
  const auto is_negative = [&](const Term* t) { return apply(mgr, Kind::kBvSlt, {t, zero}); };
  const Term* is_alike = apply(mgr, Kind::kIff, {is_negative(r), is_negative(args[1])});
  const Term* is_done = apply(mgr, Kind::kOr, {equal(mgr, {r, zero}), is_alike});
  return apply(mgr, Kind::kIte, {is_done, r, apply(mgr, Kind::kBvAdd, {r, args[1]})});
}

constexpr std::array kDerivedOperators = {
    DerivedOperator{"and", true, left<one<Kind::kAnd>>},
    DerivedOperator{"or", true, left<one<Kind::kOr>>},
    DerivedOperator{"xor", true, left<differ>},
    DerivedOperator{"=>", true, imply},
    DerivedOperator{"=", true, all_equal},
    DerivedOperator{"distinct", true, all_distinct},
    DerivedOperator{"bvand", true, left<one<Kind::kBvAnd>>},
    DerivedOperator{"bvor", true, left<one<Kind::kBvOr>>},
    DerivedOperator{"bvxor", true, left<one<Kind::kBvXor>>},
    DerivedOperator{"bvadd", true, left<one<Kind::kBvAdd>>},
    DerivedOperator{"bvmul", true, left<one<Kind::kBvMul>>},
    DerivedOperator{"bvxnor", true, left<complement_of<Kind::kBvXor>>},
    DerivedOperator{"bvnand", false, complement_of<Kind::kBvAnd>},
    DerivedOperator{"bvnor", false, complement_of<Kind::kBvOr>},
    DerivedOperator{"bvsmod", false, signed_modulo},
    DerivedOperator{"bvule", false, one<Kind::kBvUle>},
    DerivedOperator{"bvslt", false, one<Kind::kBvSlt>},
    DerivedOperator{"bvugt", false, exchanged<Kind::kBvUlt>},
    DerivedOperator{"bvuge", false, exchanged<Kind::kBvUle>},
    DerivedOperator{"bvsgt", false, exchanged<Kind::kBvSlt>},
    DerivedOperator{"bvsge", false, exchanged<Kind::kBvSle>},
};

}  // namespace

const DerivedOperator& get_derived_operator(std::string_view name)
{
  const auto* const place = std::find_if(kDerivedOperators.begin(), kDerivedOperators.end(),
                                         [name](const DerivedOperator& op) { return op.name == name; });
  if (place == kDerivedOperators.end()) throw std::logic_error("this operator is not in the table");
  return *place;
}

}  // namespace lumo::test
