#include "lumo/smtlib/operators.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "lumo/smtlib/derived_operators.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

// Operators that the term layer has under the same name. Each function builds one application.

template <auto kFactory>
const Term* boolean(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term((mgr.*kFactory)(), args.data(), args.size());
}

template <auto kFactory>
const Term* uniform(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term((mgr.*kFactory)(args[0]->get_sort()->get_width()), args.data(), args.size());
}

template <auto kFactory>
const Term* extend(TermManager& mgr, const Indices& indices, Arguments args)
{
  return mgr.make_term((mgr.*kFactory)(indices[0].value, args[0]->get_sort()->get_width()), args.data(),
                       args.size());
}

const Term* extract(TermManager& mgr, const Indices& indices, Arguments args)
{
  return mgr.make_term(
      mgr.make_bv_extract_symbol(indices[0].value, indices[1].value, args[0]->get_sort()->get_width()),
      {args[0]});
}

const Term* concat(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term(
      mgr.make_bv_concat_symbol(args[0]->get_sort()->get_width(), args[1]->get_sort()->get_width()),
      {args[0], args[1]});
}

const Term* ite(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term(mgr.make_ite_symbol(args[1]->get_sort()), {args[0], args[1], args[2]});
}

// Variants of these

using Build = decltype(Operator::build);

/// (f a b c) is (f (f a b) c), and (f a) is a.
template <Build kBuild>
const Term* left(TermManager& mgr, const Indices& indices, Arguments args)
{
  const Term* result = args[0];
  for (const Term* arg : args.subspan(1)) {
    const std::array<const Term*, 2> pair = {result, arg};
    result = kBuild(mgr, indices, pair);
  }
  return result;
}

/// (f a b) is (g b a) for the other operator g.
template <Build kBuild>
const Term* exchanged(TermManager& mgr, const Indices& indices, Arguments args)
{
  const std::array<const Term*, 2> pair = {args[1], args[0]};
  return kBuild(mgr, indices, pair);
}

template <Build kBuild>
const Term* complement_of(TermManager& mgr, const Indices& indices, Arguments args)
{
  const Term* t = kBuild(mgr, indices, args);
  return mgr.make_term(mgr.make_bv_not_symbol(t->get_sort()->get_width()), {t});
}

using T = TermManager;
constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();
/// `distinct` makes one application for each pair of arguments, so long lists would exhaust memory.
constexpr std::size_t kMaxDistinct = 2000;

constexpr Operator kLanguage[] = {
    {"not", Signature::kBools, 0, false, 1, 1, boolean<&T::make_not_symbol>},
    {"and", Signature::kBools, 0, false, 1, kMany, left<boolean<&T::make_and_symbol>>},
    {"or", Signature::kBools, 0, false, 1, kMany, left<boolean<&T::make_or_symbol>>},
    {"xor", Signature::kBools, 0, false, 2, kMany, left<differ>},
    {"=>", Signature::kBools, 0, false, 2, kMany, imply},
    {"=", Signature::kAlike, 0, false, 2, kMany, all_equal},
    {"distinct", Signature::kAlike, 0, false, 2, kMaxDistinct, all_distinct},
    {"ite", Signature::kIte, 0, false, 3, 3, ite},
    {"bvnot", Signature::kBitVectors, 0, false, 1, 1, uniform<&T::make_bv_not_symbol>},
    {"bvneg", Signature::kBitVectors, 0, false, 1, 1, uniform<&T::make_bv_neg_symbol>},
    {"bvand", Signature::kUniformBitVectors, 0, false, 2, kMany, left<uniform<&T::make_bv_and_symbol>>},
    {"bvor", Signature::kUniformBitVectors, 0, false, 2, kMany, left<uniform<&T::make_bv_or_symbol>>},
    {"bvxor", Signature::kUniformBitVectors, 0, false, 2, kMany, left<uniform<&T::make_bv_xor_symbol>>},
    {"bvnand", Signature::kUniformBitVectors, 0, false, 2, 2, complement_of<uniform<&T::make_bv_and_symbol>>},
    {"bvnor", Signature::kUniformBitVectors, 0, false, 2, 2, complement_of<uniform<&T::make_bv_or_symbol>>},
    {"bvxnor", Signature::kUniformBitVectors, 0, false, 2, kMany,
     left<complement_of<uniform<&T::make_bv_xor_symbol>>>},
    {"bvadd", Signature::kUniformBitVectors, 0, false, 2, kMany, left<uniform<&T::make_bv_add_symbol>>},
    {"bvsub", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_sub_symbol>},
    {"bvmul", Signature::kUniformBitVectors, 0, false, 2, kMany, left<uniform<&T::make_bv_mul_symbol>>},
    {"bvudiv", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_udiv_symbol>},
    {"bvurem", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_urem_symbol>},
    {"bvsdiv", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_sdiv_symbol>},
    {"bvsrem", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_srem_symbol>},
    {"bvsmod", Signature::kUniformBitVectors, 0, false, 2, 2, signed_modulo},
    {"bvshl", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_lsl_symbol>},
    {"bvlshr", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_lsr_symbol>},
    {"bvashr", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_asr_symbol>},
    {"bvult", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_ult_symbol>},
    {"bvule", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_ule_symbol>},
    {"bvugt", Signature::kUniformBitVectors, 0, false, 2, 2, exchanged<uniform<&T::make_bv_ult_symbol>>},
    {"bvuge", Signature::kUniformBitVectors, 0, false, 2, 2, exchanged<uniform<&T::make_bv_ule_symbol>>},
    {"bvslt", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_slt_symbol>},
    {"bvsle", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_sle_symbol>},
    {"bvsgt", Signature::kUniformBitVectors, 0, false, 2, 2, exchanged<uniform<&T::make_bv_slt_symbol>>},
    {"bvsge", Signature::kUniformBitVectors, 0, false, 2, 2, exchanged<uniform<&T::make_bv_sle_symbol>>},
    {"bvcomp", Signature::kUniformBitVectors, 0, false, 2, 2, uniform<&T::make_bv_comp_symbol>},
    {"concat", Signature::kBitVectors, 0, false, 2, kMany, left<concat>},
    {"extract", Signature::kBitVectors, 2, false, 1, 1, extract},
    {"repeat", Signature::kBitVectors, 1, false, 1, 1, repeat},
    {"zero_extend", Signature::kBitVectors, 1, false, 1, 1, extend<&T::make_bv_zero_extend_symbol>},
    {"sign_extend", Signature::kBitVectors, 1, false, 1, 1, extend<&T::make_bv_sign_extend_symbol>},
    {"rotate_left", Signature::kBitVectors, 1, true, 1, 1, rotate_left},
    {"rotate_right", Signature::kBitVectors, 1, true, 1, 1, rotate_right},
    {"bvnego", Signature::kBitVectors, 0, false, 1, 1, negation_overflows},
    {"bvuaddo", Signature::kUniformBitVectors, 0, false, 2, 2, unsigned_sum_overflows},
    {"bvsaddo", Signature::kUniformBitVectors, 0, false, 2, 2, signed_sum_overflows},
    {"bvumulo", Signature::kUniformBitVectors, 0, false, 2, 2, unsigned_product_overflows},
    {"bvsmulo", Signature::kUniformBitVectors, 0, false, 2, 2, signed_product_overflows},
    {"bvusubo", Signature::kUniformBitVectors, 0, false, 2, 2, unsigned_difference_overflows},
    {"bvssubo", Signature::kUniformBitVectors, 0, false, 2, 2, signed_difference_overflows},
    {"bvsdivo", Signature::kUniformBitVectors, 0, false, 2, 2, signed_quotient_overflows},
};

std::string describe_arity(const Operator& op)
{
  if (op.min_args == op.max_args) return std::to_string(op.min_args);
  if (op.max_args == kMany) return "at least " + std::to_string(op.min_args);
  return std::to_string(op.min_args) + " to " + std::to_string(op.max_args);
}

/// The sort of argument i; null if it may be a bit-vector of any width.
const DataType* get_expected_sort(const Operator& op, Arguments args, std::size_t i,
                                  const DataType* bool_sort)
{
  switch (op.signature) {
    case Signature::kBools:
      return bool_sort;
    case Signature::kBitVectors:
      return nullptr;
    case Signature::kUniformBitVectors:
      return i == 0 ? nullptr : args[0]->get_sort();
    case Signature::kAlike:
      return args[0]->get_sort();
    case Signature::kIte:
      break;
  }
  return i == 0 ? bool_sort : args[1]->get_sort();
}

}  // namespace

std::span<const Operator> list_operators() { return kLanguage; }

const Operator* find_operator(std::string_view name)
{
  static const auto kByName = [] {
    std::unordered_map<std::string_view, const Operator*> by_name;
    for (const Operator& op : kLanguage)
      by_name.emplace(op.name, &op);
    return by_name;
  }();
  const auto place = kByName.find(name);
  return place == kByName.end() ? nullptr : place->second;
}

bool fits(TermManager& mgr, const Operator& op, Arguments args)
{
  if (args.size() < op.min_args || args.size() > op.max_args) return false;
  // The most common case on its own, since this is asked for every application.
  if (op.signature == Signature::kUniformBitVectors) {
    const DataType* first = args[0]->get_sort();
    return first->is_bit_vector() &&
           std::all_of(args.begin() + 1, args.end(), [=](const Term* t) { return t->get_sort() == first; });
  }
  const DataType* bool_sort = mgr.make_bool_type();
  for (std::size_t i = 0; i < args.size(); ++i) {
    const DataType* expected = get_expected_sort(op, args, i, bool_sort);
    const DataType* found = args[i]->get_sort();
    if (found->is_opaque() || (expected == nullptr ? found->is_bool() : found != expected)) return false;
  }
  return true;
}

Misfit find_misfit(TermManager& mgr, const Operator& op, Arguments args)
{
  if (args.size() < op.min_args || args.size() > op.max_args) {
    return {args.size(), std::string(op.name) + " was given " + std::to_string(args.size()) +
                             (args.size() == 1 ? " argument" : " arguments") + ", but " + describe_arity(op) +
                             (op.max_args == 1 ? " was" : " were") + " expected"};
  }
  for (std::size_t i = 0; i < args.size(); ++i) {
    const DataType* found = args[i]->get_sort();
    const DataType* expected = get_expected_sort(op, args, i, mgr.make_bool_type());
    if (expected == nullptr ? found->is_bit_vector() : found == expected) continue;
    return {i, "argument " + std::to_string(i + 1) + " of " + std::string(op.name) + " has sort " +
                   found->to_string() + ", but " +
                   (expected == nullptr ? "a bit-vector" : "sort " + expected->to_string()) +
                   " was expected"};
  }
  return {args.size(), {}};
}

}  // namespace lumo::smtlib
