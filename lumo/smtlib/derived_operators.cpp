#include "lumo/smtlib/derived_operators.h"

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

const Term* negate(TermManager& mgr, const Term* t) { return mgr.make_term(mgr.make_not_symbol(), {t}); }

const Term* conjoin(TermManager& mgr, const Term* lhs, const Term* rhs)
{
  return lhs == nullptr ? rhs : mgr.make_term(mgr.make_and_symbol(), {lhs, rhs});
}

const Term* make_equal(TermManager& mgr, const Term* lhs, const Term* rhs)
{
  const DataType* sort = lhs->get_sort();
  return mgr.make_term(sort->is_bool() ? mgr.make_iff_symbol() : mgr.make_eq_symbol(sort), {lhs, rhs});
}

const Term* concatenate(TermManager& mgr, const Term* high, const Term* low)
{
  return mgr.make_term(mgr.make_bv_concat_symbol(high->get_sort()->get_width(), low->get_sort()->get_width()),
                       {high, low});
}

/// Whether the most significant bit is set.
const Term* is_negative(TermManager& mgr, const Term* t)
{
  const unsigned long w = t->get_sort()->get_width();
  return mgr.make_term(mgr.make_bv_slt_symbol(w), {t, mgr.make_bv_number(0, w)});
}

/// Whether both exclusive ors with t have the most significant bit set.
const Term* differ_in_sign(TermManager& mgr, const Term* lhs, const Term* rhs, const Term* t)
{
  const unsigned long w = t->get_sort()->get_width();
  const Symbol* exclusive_or = mgr.make_bv_xor_symbol(w);
  const Term* first = mgr.make_term(exclusive_or, {lhs, t});
  const Term* second = mgr.make_term(exclusive_or, {rhs, t});
  return is_negative(mgr, mgr.make_term(mgr.make_bv_and_symbol(w), {first, second}));
}

/// The pattern of the least signed number
const Term* make_least(TermManager& mgr, unsigned long w)
{
  return mgr.make_bv_number(BVNumber::pow2(w - 1), w);
}

/// The index modulo the width
unsigned long reduce_index(const Index& index, unsigned long w)
{
  unsigned long remainder = 0;
  for (const char c : index.digits)
    remainder = (10 * remainder + static_cast<unsigned long>(c - '0')) % w;
  return remainder;
}

/// The product of the operands, extended to twice their width by an operator
const Term* make_long_product(TermManager& mgr, const Symbol* extend, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* lhs = mgr.make_term(extend, {args[0]});
  const Term* rhs = mgr.make_term(extend, {args[1]});
  return mgr.make_term(mgr.make_bv_mul_symbol(2 * w), {lhs, rhs});
}

}  // namespace

const Term* imply(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const Term* result = args.back();
  for (std::size_t i = args.size() - 1; i-- > 0;)
    result = mgr.make_term(mgr.make_or_symbol(), {negate(mgr, args[i]), result});
  return result;
}

const Term* all_equal(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const Term* result = nullptr;
  for (std::size_t i = 0; i + 1 < args.size(); ++i)
    result = conjoin(mgr, result, make_equal(mgr, args[i], args[i + 1]));
  return result;
}

const Term* differ(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return negate(mgr, make_equal(mgr, args[0], args[1]));
}

const Term* all_distinct(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const Term* result = nullptr;
  for (std::size_t i = 0; i < args.size(); ++i) {
    for (std::size_t j = i + 1; j < args.size(); ++j)
      result = conjoin(mgr, result, negate(mgr, make_equal(mgr, args[i], args[j])));
  }
  return result;
}

const Term* signed_modulo(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* r = mgr.make_term(mgr.make_bv_srem_symbol(w), {args[0], args[1]});
  const Term* is_zero = make_equal(mgr, r, mgr.make_bv_number(0, w));
  const Term* is_negative_r = is_negative(mgr, r);
  const Term* is_alike = make_equal(mgr, is_negative_r, is_negative(mgr, args[1]));
  const Term* is_done = mgr.make_term(mgr.make_or_symbol(), {is_zero, is_alike});
  const Term* moved = mgr.make_term(mgr.make_bv_add_symbol(w), {r, args[1]});
  return mgr.make_term(mgr.make_ite_symbol(r->get_sort()), {is_done, r, moved});
}

const Term* repeat(TermManager& mgr, const Indices& indices, Arguments args)
{
  unsigned long k = indices[0].value;
  if (k == 0) throw Exception("repeat was given the index 0, but at least one copy was expected");
  const Term* result = nullptr;
  for (const Term* copies = args[0];; copies = concatenate(mgr, copies, copies)) {
    if (k % 2 == 1) result = result == nullptr ? copies : concatenate(mgr, copies, result);
    k /= 2;
    if (k == 0) return result;
  }
}

const Term* rotate_left(TermManager& mgr, const Indices& indices, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  return mgr.make_term(mgr.make_bv_rotate_left_symbol(reduce_index(indices[0], w), w), {args[0]});
}

const Term* rotate_right(TermManager& mgr, const Indices& indices, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  return mgr.make_term(mgr.make_bv_rotate_right_symbol(reduce_index(indices[0], w), w), {args[0]});
}

const Term* negation_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return make_equal(mgr, args[0], make_least(mgr, args[0]->get_sort()->get_width()));
}

const Term* unsigned_sum_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(w), {args[0], args[1]});
  return mgr.make_term(mgr.make_bv_ult_symbol(w), {sum, args[0]});
}

const Term* signed_sum_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(w), {args[0], args[1]});
  return differ_in_sign(mgr, args[0], args[1], sum);
}

const Term* unsigned_product_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* product = make_long_product(mgr, mgr.make_bv_zero_extend_symbol(w, w), args);
  const Term* high = mgr.make_term(mgr.make_bv_extract_symbol(2 * w - 1, w, 2 * w), {product});
  return negate(mgr, make_equal(mgr, high, mgr.make_bv_number(0, w)));
}

const Term* signed_product_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Symbol* extend = mgr.make_bv_sign_extend_symbol(w, w);
  const Term* product = make_long_product(mgr, extend, args);
  const Term* low = mgr.make_term(mgr.make_bv_extract_symbol(w - 1, 0, 2 * w), {product});
  return negate(mgr, make_equal(mgr, product, mgr.make_term(extend, {low})));
}

const Term* unsigned_difference_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term(mgr.make_bv_ult_symbol(args[0]->get_sort()->get_width()), {args[0], args[1]});
}

const Term* signed_difference_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* difference = mgr.make_term(mgr.make_bv_sub_symbol(w), {args[0], args[1]});
  return differ_in_sign(mgr, args[1], difference, args[0]);
}

const Term* signed_quotient_overflows(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const unsigned long w = args[0]->get_sort()->get_width();
  const Term* is_least = make_equal(mgr, args[0], make_least(mgr, w));
  return conjoin(mgr, is_least, make_equal(mgr, args[1], mgr.make_bv_number(-1, w)));
}

}  // namespace lumo::smtlib
