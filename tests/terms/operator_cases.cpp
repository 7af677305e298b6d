#include "tests/terms/operator_cases.h"

#include <algorithm>
#include <type_traits>

namespace lumo::test {

namespace {

// -----------------------------------------------------------------------------------------------------------
// factories and recognisers of one signature

template <auto kMake>
const Symbol* make(TermManager& mgr, const Parameters& p)
{
  using Make = decltype(kMake);
  if constexpr (std::is_invocable_v<Make, TermManager&>) {
    return (mgr.*kMake)();
  } else if constexpr (std::is_invocable_v<Make, TermManager&, const DataType*>) {
    return (mgr.*kMake)(make_type(mgr, p[0]));
  } else if constexpr (std::is_invocable_v<Make, TermManager&, unsigned long>) {
    return (mgr.*kMake)(p[0]);
  } else if constexpr (std::is_invocable_v<Make, TermManager&, unsigned long, unsigned long>) {
    return (mgr.*kMake)(p[0], p[1]);
  } else {
    return (mgr.*kMake)(p[0], p[1], p[2]);
  }
}

template <auto kIs>
bool is(const TermManager& mgr, const Symbol* s, unsigned long* p0, unsigned long* p1, unsigned long* p2)
{
  using Is = decltype(kIs);
  using Out = unsigned long*;
  if constexpr (std::is_invocable_v<Is, const TermManager&, const Symbol*>) {
    return (mgr.*kIs)(s);
  } else if constexpr (std::is_invocable_v<Is, const TermManager&, const Symbol*, Out>) {
    return (mgr.*kIs)(s, p0);
  } else if constexpr (std::is_invocable_v<Is, const TermManager&, const Symbol*, Out, Out>) {
    return (mgr.*kIs)(s, p0, p1);
  } else {
    return (mgr.*kIs)(s, p0, p1, p2);
  }
}

// -----------------------------------------------------------------------------------------------------------
// symbols on operands of width w, by the shape of the operator

using Cases = std::vector<SymbolCase>;

constexpr unsigned long kExhaustiveWidth = 4;

/// 0 to last if w is narrow, else the chosen ones.
std::vector<unsigned long> sweep(unsigned long w, unsigned long last, std::vector<unsigned long> chosen)
{
  if (w > kExhaustiveWidth) return chosen;
  std::vector<unsigned long> all(last + 1);
  for (unsigned long i = 0; i <= last; ++i)
    all[i] = i;
  return all;
}

std::string indexed(std::string_view name, unsigned long i)
{
  return "(_ " + std::string(name) + " " + std::to_string(i) + ")";
}

Cases bool_unary(std::string_view name, unsigned long /*w*/) { return {{{}, std::string(name), {0}, 0}}; }

Cases bool_binary(std::string_view name, unsigned long /*w*/) { return {{{}, std::string(name), {0, 0}, 0}}; }

Cases ite(std::string_view name, unsigned long w)
{
  return {{{0}, std::string(name), {0, 0, 0}, 0}, {{w}, std::string(name), {0, w, w}, w}};
}

Cases predicate(std::string_view name, unsigned long w) { return {{{w}, std::string(name), {w, w}, 0}}; }

Cases comparison(std::string_view name, unsigned long w) { return {{{w}, std::string(name), {w, w}, 1}}; }

Cases unary(std::string_view name, unsigned long w) { return {{{w}, std::string(name), {w}, w}}; }

Cases binary(std::string_view name, unsigned long w) { return {{{w}, std::string(name), {w, w}, w}}; }

Cases rotate(std::string_view name, unsigned long w)
{
  Cases cases;
  for (const unsigned long k : sweep(w, 2 * w + 1, {0, 1, w / 2, w - 1, w, w + 1, 5 * w + 3}))
    cases.push_back({{k, w}, indexed(name, k), {w}, w});
  return cases;
}

Cases concat(std::string_view name, unsigned long w)
{
  Cases cases;
  for (const unsigned long low : sweep(w, kExhaustiveWidth, {1, 63, w})) {
    if (low != 0) cases.push_back({{w, low}, std::string(name), {w, low}, w + low});
  }
  return cases;
}

Cases extract(std::string_view name, unsigned long w)
{
  Cases cases;
  const std::vector<unsigned long> positions = sweep(w, w - 1, {0, w / 3, w / 2, w - 2, w - 1});
  for (const unsigned long msb : positions) {
    for (const unsigned long lsb : positions) {
      if (lsb > msb) continue;
      const std::string indices = std::to_string(msb) + " " + std::to_string(lsb);
      cases.push_back({{msb, lsb, w}, "(_ " + std::string(name) + " " + indices + ")", {w}, msb - lsb + 1});
    }
  }
  return cases;
}

Cases extend(std::string_view name, unsigned long w)
{
  Cases cases;
  for (const unsigned long k : sweep(w, kExhaustiveWidth, {0, 1, 64, w}))
    cases.push_back({{k, w}, indexed(name, k), {w}, w + k});
  return cases;
}

// -----------------------------------------------------------------------------------------------------------
// the table

using M = TermManager;

template <auto kMake, auto kIs>
OperatorCase row(const char* label, Kind kind, const char* name, std::size_t num_outputs,
                 Cases (*symbols)(std::string_view, unsigned long))
{
  return {label, kind, name, make<kMake>, is<kIs>, num_outputs, symbols};
}

std::vector<OperatorCase> make_operator_cases()
{
  return {
      row<&M::make_not_symbol, &M::is_not>("Not", Kind::kNot, "not", 0, bool_unary),
      row<&M::make_and_symbol, &M::is_and>("And", Kind::kAnd, "and", 0, bool_binary),
      row<&M::make_or_symbol, &M::is_or>("Or", Kind::kOr, "or", 0, bool_binary),
      row<&M::make_iff_symbol, &M::is_iff>("Iff", Kind::kIff, "=", 0, bool_binary),
      row<&M::make_ite_symbol, &M::is_ite>("Ite", Kind::kIte, "ite", 0, ite),
      row<&M::make_eq_symbol, &M::is_eq>("Eq", Kind::kEq, "=", 0, predicate),
      row<&M::make_bv_not_symbol, &M::is_bv_not>("BvNot", Kind::kBvNot, "bvnot", 1, unary),
      row<&M::make_bv_neg_symbol, &M::is_bv_neg>("BvNeg", Kind::kBvNeg, "bvneg", 1, unary),
      row<&M::make_bv_rotate_left_symbol, &M::is_bv_rotate_left>("BvRotateLeft", Kind::kBvRotateLeft,
                                                                 "rotate_left", 2, rotate),
      row<&M::make_bv_rotate_right_symbol, &M::is_bv_rotate_right>("BvRotateRight", Kind::kBvRotateRight,
                                                                   "rotate_right", 2, rotate),
      row<&M::make_bv_and_symbol, &M::is_bv_and>("BvAnd", Kind::kBvAnd, "bvand", 1, binary),
      row<&M::make_bv_or_symbol, &M::is_bv_or>("BvOr", Kind::kBvOr, "bvor", 1, binary),
      row<&M::make_bv_xor_symbol, &M::is_bv_xor>("BvXor", Kind::kBvXor, "bvxor", 1, binary),
      row<&M::make_bv_concat_symbol, &M::is_bv_concat>("BvConcat", Kind::kBvConcat, "concat", 2, concat),
      row<&M::make_bv_extract_symbol, &M::is_bv_extract>("BvExtract", Kind::kBvExtract, "extract", 3,
                                                         extract),
      row<&M::make_bv_zero_extend_symbol, &M::is_bv_zero_extend>("BvZeroExtend", Kind::kBvZeroExtend,
                                                                 "zero_extend", 2, extend),
      row<&M::make_bv_sign_extend_symbol, &M::is_bv_sign_extend>("BvSignExtend", Kind::kBvSignExtend,
                                                                 "sign_extend", 2, extend),
      row<&M::make_bv_lsl_symbol, &M::is_bv_lsl>("BvLsl", Kind::kBvLsl, "bvshl", 1, binary),
      row<&M::make_bv_lsr_symbol, &M::is_bv_lsr>("BvLsr", Kind::kBvLsr, "bvlshr", 1, binary),
      row<&M::make_bv_asr_symbol, &M::is_bv_asr>("BvAsr", Kind::kBvAsr, "bvashr", 1, binary),
      row<&M::make_bv_add_symbol, &M::is_bv_add>("BvAdd", Kind::kBvAdd, "bvadd", 1, binary),
      row<&M::make_bv_sub_symbol, &M::is_bv_sub>("BvSub", Kind::kBvSub, "bvsub", 1, binary),
      row<&M::make_bv_mul_symbol, &M::is_bv_mul>("BvMul", Kind::kBvMul, "bvmul", 1, binary),
      row<&M::make_bv_udiv_symbol, &M::is_bv_udiv>("BvUdiv", Kind::kBvUdiv, "bvudiv", 1, binary),
      row<&M::make_bv_sdiv_symbol, &M::is_bv_sdiv>("BvSdiv", Kind::kBvSdiv, "bvsdiv", 1, binary),
      row<&M::make_bv_urem_symbol, &M::is_bv_urem>("BvUrem", Kind::kBvUrem, "bvurem", 1, binary),
      row<&M::make_bv_srem_symbol, &M::is_bv_srem>("BvSrem", Kind::kBvSrem, "bvsrem", 1, binary),
      row<&M::make_bv_ult_symbol, &M::is_bv_ult>("BvUlt", Kind::kBvUlt, "bvult", 1, predicate),
      row<&M::make_bv_ule_symbol, &M::is_bv_ule>("BvUle", Kind::kBvUle, "bvule", 1, predicate),
      row<&M::make_bv_slt_symbol, &M::is_bv_slt>("BvSlt", Kind::kBvSlt, "bvslt", 1, predicate),
      row<&M::make_bv_sle_symbol, &M::is_bv_sle>("BvSle", Kind::kBvSle, "bvsle", 1, predicate),
      row<&M::make_bv_comp_symbol, &M::is_bv_comp>("BvComp", Kind::kBvComp, "bvcomp", 1, comparison),
  };
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const SymbolCase& symbol)
{
  out << symbol.name << " on widths";
  for (const unsigned long width : symbol.argument_widths)
    out << ' ' << width;
  return out;
}

std::ostream& operator<<(std::ostream& out, const OperatorCase& op) { return out << op.label; }

const std::vector<OperatorCase>& get_operator_cases()
{
  static const std::vector<OperatorCase> cases = make_operator_cases();
  return cases;
}

std::vector<const Term*> make_arguments(TermManager& mgr, const SymbolCase& symbol, const std::string& prefix)
{
  std::vector<const Term*> args;
  for (const unsigned long width : symbol.argument_widths)
    args.push_back(mgr.make_constant(prefix + std::to_string(args.size()), make_type(mgr, width)));
  return args;
}

}  // namespace lumo::test
