#ifndef LUMO_TERMS_KIND_H
#define LUMO_TERMS_KIND_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lumo {

/// What a symbol is: one of the 32 operators, or a leaf.
enum class Kind : std::uint8_t
{
  kNot,
  kAnd,
  kOr,
  kIff,
  kIte,
  kEq,
  kBvNot,
  kBvNeg,
  kBvRotateLeft,
  kBvRotateRight,
  kBvAnd,
  kBvOr,
  kBvXor,
  kBvConcat,
  kBvExtract,
  kBvZeroExtend,
  kBvSignExtend,
  kBvLsl,
  kBvLsr,
  kBvAsr,
  kBvAdd,
  kBvSub,
  kBvMul,
  kBvUdiv,
  kBvSdiv,
  kBvUrem,
  kBvSrem,
  kBvUlt,
  kBvUle,
  kBvSlt,
  kBvSle,
  kBvComp,
  kConstant,
  kTrue,
  kFalse,
  kNumeral,
};

inline constexpr std::size_t kNumOperators = 32;
/// The largest number of arguments, and of parameters, of an operator.
inline constexpr std::size_t kMaxArity = 3;

[[nodiscard]] constexpr bool is_operator(Kind kind) { return static_cast<std::size_t>(kind) < kNumOperators; }

/// How the parameters of an operator determine the sorts of its arguments and of its result; w, w1, w2, msb, lsb
/// and k are the parameters in their order.
enum class SortRule : std::uint8_t
{
  kBool,        ///< Bool ... -> Bool
  kIte,         ///< (width of T, or 0 for Bool): Bool, T, T -> T
  kEq,          ///< (w): w, w -> Bool
  kUniform,     ///< (w): w ... -> w
  kPredicate,   ///< (w): w, w -> Bool
  kComparison,  ///< (w): w, w -> 1
  kConcat,      ///< (w1, w2): w1, w2 -> w1 + w2
  kExtract,     ///< (msb, lsb, w): w -> msb - lsb + 1
  kRotate,      ///< (k, w): w -> w
  kExtend,      ///< (k, w): w -> w + k
};

/// The facts on one operator.
struct OperatorInfo
{
  Kind kind;
  std::string_view smtlib_name;  ///< for an indexed operator the identifier without its indices
  std::uint8_t arity;
  SortRule rule;
};

/// All facts on operators, in the order of `Kind`; their meaning is in terms/fold.h.
inline constexpr std::array<OperatorInfo, kNumOperators> kOperators = {{
    {Kind::kNot, "not", 1, SortRule::kBool},
    {Kind::kAnd, "and", 2, SortRule::kBool},
    {Kind::kOr, "or", 2, SortRule::kBool},
    {Kind::kIff, "=", 2, SortRule::kBool},
    {Kind::kIte, "ite", 3, SortRule::kIte},
    {Kind::kEq, "=", 2, SortRule::kEq},
    {Kind::kBvNot, "bvnot", 1, SortRule::kUniform},
    {Kind::kBvNeg, "bvneg", 1, SortRule::kUniform},
    {Kind::kBvRotateLeft, "rotate_left", 1, SortRule::kRotate},
    {Kind::kBvRotateRight, "rotate_right", 1, SortRule::kRotate},
    {Kind::kBvAnd, "bvand", 2, SortRule::kUniform},
    {Kind::kBvOr, "bvor", 2, SortRule::kUniform},
    {Kind::kBvXor, "bvxor", 2, SortRule::kUniform},
    {Kind::kBvConcat, "concat", 2, SortRule::kConcat},
    {Kind::kBvExtract, "extract", 1, SortRule::kExtract},
    {Kind::kBvZeroExtend, "zero_extend", 1, SortRule::kExtend},
    {Kind::kBvSignExtend, "sign_extend", 1, SortRule::kExtend},
    {Kind::kBvLsl, "bvshl", 2, SortRule::kUniform},
    {Kind::kBvLsr, "bvlshr", 2, SortRule::kUniform},
    {Kind::kBvAsr, "bvashr", 2, SortRule::kUniform},
    {Kind::kBvAdd, "bvadd", 2, SortRule::kUniform},
    {Kind::kBvSub, "bvsub", 2, SortRule::kUniform},
    {Kind::kBvMul, "bvmul", 2, SortRule::kUniform},
    {Kind::kBvUdiv, "bvudiv", 2, SortRule::kUniform},
    {Kind::kBvSdiv, "bvsdiv", 2, SortRule::kUniform},
    {Kind::kBvUrem, "bvurem", 2, SortRule::kUniform},
    {Kind::kBvSrem, "bvsrem", 2, SortRule::kUniform},
    {Kind::kBvUlt, "bvult", 2, SortRule::kPredicate},
    {Kind::kBvUle, "bvule", 2, SortRule::kPredicate},
    {Kind::kBvSlt, "bvslt", 2, SortRule::kPredicate},
    {Kind::kBvSle, "bvsle", 2, SortRule::kPredicate},
    {Kind::kBvComp, "bvcomp", 2, SortRule::kComparison},
}};

namespace detail {

constexpr bool operators_are_complete()
{
  for (std::size_t i = 0; i < kNumOperators; ++i) {
    const OperatorInfo& info = kOperators[i];
    if (info.kind != static_cast<Kind>(i) || info.smtlib_name.empty() || info.arity == 0 ||
        info.arity > kMaxArity)
    {
      return false;
    }
  }
  return static_cast<std::size_t>(Kind::kConstant) == kNumOperators;
}

}  // namespace detail

static_assert(detail::operators_are_complete(),
              "kOperators has one row for each operator, in the order of Kind");

[[nodiscard]] constexpr const OperatorInfo& get_operator_info(Kind kind)
{
  return kOperators[static_cast<std::size_t>(kind)];
}

}  // namespace lumo

#endif
