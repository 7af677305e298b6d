#include "tests/support/z3_terms.h"

#include <array>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <unordered_set>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/gmp_number.h"

namespace lumo::test {

namespace {

using Apply = Z3_ast (*)(Z3_context, const Parameters&, const Z3_ast*);

/// An operator that needs no parameter.
template <auto kMake>
Z3_ast plain(Z3_context c, const Parameters& /*p*/, const Z3_ast* a)
{
  if constexpr (std::is_invocable_v<decltype(kMake), Z3_context, Z3_ast>) {
    return kMake(c, a[0]);
  } else if constexpr (std::is_invocable_v<decltype(kMake), Z3_context, Z3_ast, Z3_ast>) {
    return kMake(c, a[0], a[1]);
  } else if constexpr (std::is_invocable_v<decltype(kMake), Z3_context, unsigned, const Z3_ast*>) {
    return kMake(c, 2, a);
  } else {
    return kMake(c, a[0], a[1], a[2]);
  }
}

/// An operator that needs the first parameter.
template <auto kMake>
Z3_ast indexed(Z3_context c, const Parameters& p, const Z3_ast* a)
{
  return kMake(c, static_cast<unsigned>(p[0]), a[0]);
}

Z3_ast extract(Z3_context c, const Parameters& p, const Z3_ast* a)
{
  return Z3_mk_extract(c, static_cast<unsigned>(p[0]), static_cast<unsigned>(p[1]), a[0]);
}

struct Row
{
  Kind kind;
  Apply apply;
};

constexpr std::array<Row, kNumOperators> kRows = {{
    {Kind::kNot, plain<Z3_mk_not>},
    {Kind::kAnd, plain<Z3_mk_and>},
    {Kind::kOr, plain<Z3_mk_or>},
    {Kind::kIff, plain<Z3_mk_iff>},
    {Kind::kIte, plain<Z3_mk_ite>},
    {Kind::kEq, plain<Z3_mk_eq>},
    {Kind::kBvNot, plain<Z3_mk_bvnot>},
    {Kind::kBvNeg, plain<Z3_mk_bvneg>},
    {Kind::kBvRotateLeft, indexed<Z3_mk_rotate_left>},
    {Kind::kBvRotateRight, indexed<Z3_mk_rotate_right>},
    {Kind::kBvAnd, plain<Z3_mk_bvand>},
    {Kind::kBvOr, plain<Z3_mk_bvor>},
    {Kind::kBvXor, plain<Z3_mk_bvxor>},
    {Kind::kBvConcat, plain<Z3_mk_concat>},
    {Kind::kBvExtract, extract},
    {Kind::kBvZeroExtend, indexed<Z3_mk_zero_ext>},
    {Kind::kBvSignExtend, indexed<Z3_mk_sign_ext>},
    {Kind::kBvLsl, plain<Z3_mk_bvshl>},
    {Kind::kBvLsr, plain<Z3_mk_bvlshr>},
    {Kind::kBvAsr, plain<Z3_mk_bvashr>},
    {Kind::kBvAdd, plain<Z3_mk_bvadd>},
    {Kind::kBvSub, plain<Z3_mk_bvsub>},
    {Kind::kBvMul, plain<Z3_mk_bvmul>},
    {Kind::kBvUdiv, plain<Z3_mk_bvudiv>},
    {Kind::kBvSdiv, plain<Z3_mk_bvsdiv>},
    {Kind::kBvUrem, plain<Z3_mk_bvurem>},
    {Kind::kBvSrem, plain<Z3_mk_bvsrem>},
    {Kind::kBvUlt, plain<Z3_mk_bvult>},
    {Kind::kBvUle, plain<Z3_mk_bvule>},
    {Kind::kBvSlt, plain<Z3_mk_bvslt>},
    {Kind::kBvSle, plain<Z3_mk_bvsle>},
    // Z3's interface has no bvcomp; build it from the equality.
    {Kind::kBvComp, plain<Z3_mk_eq>},
}};

constexpr bool rows_are_in_order()
{
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    if (kRows[i].kind != static_cast<Kind>(i)) return false;
  }
  return true;
}
static_assert(rows_are_in_order());

}  // namespace

z3::expr apply_in_z3(z3::context& z3, Kind kind, const Parameters& parameters,
                     const std::vector<z3::expr>& args)
{
  std::array<Z3_ast, kMaxArity> asts{};
  for (std::size_t i = 0; i < args.size(); ++i)
    asts.at(i) = args[i];
  const z3::expr result(z3, kRows[static_cast<std::size_t>(kind)].apply(z3, parameters, asts.data()));
  z3.check_error();
  return kind == Kind::kBvComp ? z3::ite(result, z3.bv_val(1, 1), z3.bv_val(0, 1)) : result;
}

const z3::expr& Z3Terms::make(const Term* root)
{
  std::vector<const Term*> stack{root};
  std::unordered_set<const Term*> open;  // whose parts are being made
  while (!stack.empty()) {
    const Term* t = stack.back();
    if (results_.contains(t)) {
      stack.pop_back();
    } else if (open.insert(t).second) {
      for (const Term* part : get_parts(t)) {
        if (open.contains(part)) {
          throw std::logic_error("the meaning of " + part->get_symbol()->get_name() + " contains it");
        }
        if (!results_.contains(part)) stack.push_back(part);
      }
    } else {
      results_.emplace(t, make_from_parts(t));
      open.erase(t);
      stack.pop_back();
    }
  }
  return results_.at(root);
}

z3::expr Z3Terms::make_conjunction(const std::vector<const Term*>& terms)
{
  z3::expr_vector conjuncts(z3_);
  for (const Term* t : terms)
    conjuncts.push_back(make(t));
  return z3::mk_and(conjuncts);
}

std::vector<const Term*> Z3Terms::get_parts(const Term* t) const
{
  if (const auto meaning = meanings_.find(t); meaning != meanings_.end()) return {meaning->second};
  std::vector<const Term*> parts;
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    parts.push_back(t->get_arg(i));
  return parts;
}

z3::expr Z3Terms::make_from_parts(const Term* t) const
{
  std::vector<z3::expr> parts;
  for (const Term* part : get_parts(t))
    parts.push_back(results_.at(part));
  if (meanings_.contains(t)) return parts.front();
  const Symbol* s = t->get_symbol();
  if (!is_operator(s->get_kind())) return make_leaf(t);
  return apply_in_z3(z3_, s->get_kind(), as_operator(s).get_parameters(), parts);
}

z3::expr Z3Terms::make_leaf(const Term* t) const
{
  const Symbol* s = t->get_symbol();
  const DataType* type = s->get_output_type();
  QNumber number;
  if (mgr_.is_constant(s)) {
    const z3::sort sort =
        type->is_bool() ? z3_.bool_sort() : z3_.bv_sort(static_cast<unsigned>(type->get_width()));
    return z3_.constant(s->get_name().c_str(), sort);
  }
  if (!mgr_.is_number(s, &number)) return z3_.bool_val(s == mgr_.get_true_symbol());
  return z3_.bv_val(number.to_string().c_str(), static_cast<unsigned>(type->get_width()));
}

const Term* read_value(TermManager& mgr, const z3::expr& value)
{
  if (value.is_bool()) return value.is_true() ? mgr.make_true() : mgr.make_false();
  const Integer number(value.get_decimal_string(0).c_str());
  return mgr.make_bv_number(BVNumber::from_integer(number), value.get_sort().bv_size());
}

}  // namespace lumo::test
