#include "lumo/smtlib/operators.h"

#include <limits>
#include <unordered_map>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

const DataType* sort_of(const Term* t) { return t->get_symbol()->get_output_type(); }

unsigned long width_of(const Term* t) { return sort_of(t)->get_width(); }

// --------------------------------------------------------------------------------------------------------
// What the term layer has under the same name. Each function builds one application.

template <auto kFactory>
const Term* boolean(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term((mgr.*kFactory)(), args.data(), args.size());
}

template <auto kFactory>
const Term* uniform(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term((mgr.*kFactory)(width_of(args[0])), args.data(), args.size());
}

template <auto kFactory>
const Term* indexed(TermManager& mgr, const Indices& indices, Arguments args)
{
  return mgr.make_term((mgr.*kFactory)(indices[0], width_of(args[0])), args.data(), args.size());
}

const Term* extract(TermManager& mgr, const Indices& indices, Arguments args)
{
  return mgr.make_term(mgr.make_bv_extract_symbol(indices[0], indices[1], width_of(args[0])), {args[0]});
}

const Term* concat(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term(mgr.make_bv_concat_symbol(width_of(args[0]), width_of(args[1])), {args[0], args[1]});
}

const Term* ite(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  return mgr.make_term(mgr.make_ite_symbol(sort_of(args[1])), {args[0], args[1], args[2]});
}

const Term* equal(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const DataType* sort = sort_of(args[0]);
  const Symbol* s = sort->is_bool() ? mgr.make_iff_symbol() : mgr.make_eq_symbol(sort);
  return mgr.make_term(s, {args[0], args[1]});
}

// --------------------------------------------------------------------------------------------------------
// What is made of that

using Build = decltype(Operator::build);

const Term* negate(TermManager& mgr, const Term* t) { return mgr.make_term(mgr.make_not_symbol(), {t}); }

const Term* conjoin(TermManager& mgr, const Term* lhs, const Term* rhs)
{
  return lhs == nullptr ? rhs : mgr.make_term(mgr.make_and_symbol(), {lhs, rhs});
}

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

/// (f a b) is (f b a) of the other operator.
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
  return mgr.make_term(mgr.make_bv_not_symbol(width_of(t)), {t});
}

const Term* differ(TermManager& mgr, const Indices& indices, Arguments args)
{
  return negate(mgr, equal(mgr, indices, args));
}

/// (=> a b c) is (=> a (=> b c)), and (=> a b) is (or (not a) b).
const Term* imply(TermManager& mgr, const Indices& /*indices*/, Arguments args)
{
  const Term* result = args.back();
  for (std::size_t i = args.size() - 1; i-- > 0;)
    result = mgr.make_term(mgr.make_or_symbol(), {negate(mgr, args[i]), result});
  return result;
}

/// (= a b c) is (and (= a b) (= b c)).
const Term* all_equal(TermManager& mgr, const Indices& indices, Arguments args)
{
  const Term* result = nullptr;
  for (std::size_t i = 0; i + 1 < args.size(); ++i)
    result = conjoin(mgr, result, equal(mgr, indices, args.subspan(i, 2)));
  return result;
}

/// (distinct a b c) is (and (and (not (= a b)) (not (= a c))) (not (= b c))).
const Term* all_distinct(TermManager& mgr, const Indices& indices, Arguments args)
{
  const Term* result = nullptr;
  for (std::size_t i = 0; i < args.size(); ++i) {
    for (std::size_t j = i + 1; j < args.size(); ++j) {
      const std::array<const Term*, 2> pair = {args[i], args[j]};
      result = conjoin(mgr, result, differ(mgr, indices, pair));
    }
  }
  return result;
}

/// The signed remainder with the sign of the divisor. The term layer's remainder r of a by b has the sign of
/// a, so: a remainder that is not 0 and whose sign is not the divisor's becomes r + b. For b = 0, r is a, and
/// adding 0 does no harm.
const Term* signed_modulo(TermManager& mgr, const Indices& indices, Arguments args)
{
  const unsigned long w = width_of(args[0]);
  const Term* zero = mgr.make_bv_number(0, w);
  const Term* r = uniform<&TermManager::make_bv_srem_symbol>(mgr, indices, args);
  const auto is_negative = [&mgr, w, zero](const Term* t) {
    return mgr.make_term(mgr.make_bv_slt_symbol(w), {t, zero});
  };
  const Term* is_zero = mgr.make_term(mgr.make_eq_symbol(sort_of(r)), {r, zero});
  const Term* is_alike = mgr.make_term(mgr.make_iff_symbol(), {is_negative(r), is_negative(args[1])});
  const Term* is_done = mgr.make_term(mgr.make_or_symbol(), {is_zero, is_alike});
  const Term* moved = mgr.make_term(mgr.make_bv_add_symbol(w), {r, args[1]});
  return mgr.make_term(mgr.make_ite_symbol(sort_of(r)), {is_done, r, moved});
}

/// k copies side by side. Their number doubles from step to step, so that few applications make many copies.
const Term* repeat(TermManager& mgr, const Indices& indices, Arguments args)
{
  unsigned long k = indices[0];
  if (k == 0) throw Exception("repeat was given the index 0, but at least one copy was expected");
  const Term* result = nullptr;
  for (const Term* copies = args[0];; copies = concat(mgr, indices, std::array{copies, copies})) {
    if (k % 2 == 1) result = result == nullptr ? copies : concat(mgr, indices, std::array{copies, result});
    k /= 2;
    if (k == 0) return result;
  }
}

// --------------------------------------------------------------------------------------------------------

using T = TermManager;
constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();
/// `distinct` takes an application per pair of arguments, so long lists would exhaust memory.
constexpr std::size_t kMaxDistinct = 2000;

constexpr Operator kLanguage[] = {
    {"not", Signature::kBools, 1, 1, boolean<&T::make_not_symbol>},
    {"and", Signature::kBools, 1, kMany, left<boolean<&T::make_and_symbol>>},
    {"or", Signature::kBools, 1, kMany, left<boolean<&T::make_or_symbol>>},
    {"xor", Signature::kBools, 2, kMany, left<differ>},
    {"=>", Signature::kBools, 2, kMany, imply},
    {"=", Signature::kAlike, 2, kMany, all_equal},
    {"distinct", Signature::kAlike, 2, kMaxDistinct, all_distinct},
    {"ite", Signature::kIte, 3, 3, ite},
    {"bvnot", Signature::kBitVectors, 1, 1, uniform<&T::make_bv_not_symbol>},
    {"bvneg", Signature::kBitVectors, 1, 1, uniform<&T::make_bv_neg_symbol>},
    {"bvand", Signature::kUniformBitVectors, 2, kMany, left<uniform<&T::make_bv_and_symbol>>},
    {"bvor", Signature::kUniformBitVectors, 2, kMany, left<uniform<&T::make_bv_or_symbol>>},
    {"bvxor", Signature::kUniformBitVectors, 2, kMany, left<uniform<&T::make_bv_xor_symbol>>},
    {"bvnand", Signature::kUniformBitVectors, 2, 2, complement_of<uniform<&T::make_bv_and_symbol>>},
    {"bvnor", Signature::kUniformBitVectors, 2, 2, complement_of<uniform<&T::make_bv_or_symbol>>},
    {"bvxnor", Signature::kUniformBitVectors, 2, kMany, left<complement_of<uniform<&T::make_bv_xor_symbol>>>},
    {"bvadd", Signature::kUniformBitVectors, 2, kMany, left<uniform<&T::make_bv_add_symbol>>},
    {"bvsub", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_sub_symbol>},
    {"bvmul", Signature::kUniformBitVectors, 2, kMany, left<uniform<&T::make_bv_mul_symbol>>},
    {"bvudiv", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_udiv_symbol>},
    {"bvurem", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_urem_symbol>},
    {"bvsdiv", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_sdiv_symbol>},
    {"bvsrem", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_srem_symbol>},
    {"bvsmod", Signature::kUniformBitVectors, 2, 2, signed_modulo},
    {"bvshl", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_lsl_symbol>},
    {"bvlshr", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_lsr_symbol>},
    {"bvashr", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_asr_symbol>},
    {"bvult", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_ult_symbol>},
    {"bvule", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_ule_symbol>},
    {"bvugt", Signature::kUniformBitVectors, 2, 2, exchanged<uniform<&T::make_bv_ult_symbol>>},
    {"bvuge", Signature::kUniformBitVectors, 2, 2, exchanged<uniform<&T::make_bv_ule_symbol>>},
    {"bvslt", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_slt_symbol>},
    {"bvsle", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_sle_symbol>},
    {"bvsgt", Signature::kUniformBitVectors, 2, 2, exchanged<uniform<&T::make_bv_slt_symbol>>},
    {"bvsge", Signature::kUniformBitVectors, 2, 2, exchanged<uniform<&T::make_bv_sle_symbol>>},
    {"bvcomp", Signature::kUniformBitVectors, 2, 2, uniform<&T::make_bv_comp_symbol>},
    {"concat", Signature::kBitVectors, 2, kMany, left<concat>},
    {"extract", Signature::kBitVectors, 1, 1, extract},
    {"repeat", Signature::kBitVectors, 1, 1, repeat},
    {"zero_extend", Signature::kBitVectors, 1, 1, indexed<&T::make_bv_zero_extend_symbol>},
    {"sign_extend", Signature::kBitVectors, 1, 1, indexed<&T::make_bv_sign_extend_symbol>},
    {"rotate_left", Signature::kBitVectors, 1, 1, indexed<&T::make_bv_rotate_left_symbol>},
    {"rotate_right", Signature::kBitVectors, 1, 1, indexed<&T::make_bv_rotate_right_symbol>},
};

std::string describe_arity(const Operator& op)
{
  if (op.min_args == op.max_args) return std::to_string(op.min_args);
  if (op.max_args == kMany) return "at least " + std::to_string(op.min_args);
  return std::to_string(op.min_args) + " to " + std::to_string(op.max_args);
}

/// What argument i must be; null if it may be a bit-vector of any width.
const DataType* get_expected_sort(const Operator& op, Arguments args, std::size_t i,
                                  const DataType* bool_sort)
{
  switch (op.signature) {
    case Signature::kBools:
      return bool_sort;
    case Signature::kBitVectors:
      return nullptr;
    case Signature::kUniformBitVectors:
      return i == 0 ? nullptr : sort_of(args[0]);
    case Signature::kAlike:
      return sort_of(args[0]);
    case Signature::kIte:
      break;
  }
  return i == 0 ? bool_sort : sort_of(args[1]);
}

}  // namespace

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

std::string find_misfit(TermManager& mgr, const Operator& op, Arguments args)
{
  if (args.size() < op.min_args || args.size() > op.max_args) {
    return std::string(op.name) + " was given " + std::to_string(args.size()) +
           (args.size() == 1 ? " argument" : " arguments") + ", but " + describe_arity(op) +
           (op.max_args == 1 ? " was" : " were") + " expected";
  }
  for (std::size_t i = 0; i < args.size(); ++i) {
    const DataType* found = sort_of(args[i]);
    const DataType* expected = get_expected_sort(op, args, i, mgr.make_bool_type());
    if (expected == nullptr ? !found->is_bool() : found == expected) continue;
    return "argument " + std::to_string(i + 1) + " of " + std::string(op.name) + " has sort " +
           found->to_string() + ", but " +
           (expected == nullptr ? "a bit-vector" : "sort " + expected->to_string()) + " was expected";
  }
  return {};
}

}  // namespace lumo::smtlib
