#include "bench/calculator_cases.h"

#include <vector>

#include "lumo/numbers/bvnumber.h"

namespace lumo::bench {

unsigned long draw_word(unsigned long& state)
{
  // A multiplicative sequence that visits many different words
  state = state * 6364136223846793005UL + 1442695040888963407UL;
  return state >> 1U;
}

QNumber draw_pattern(unsigned long w, unsigned long& state)
{
  std::vector<unsigned long> words(w / 64 + 1);
  for (unsigned long& word : words) {
    // The upper bits of two draws: the lower ones have short periods.
    const unsigned long high = draw_word(state) >> 31U;
    word = high << 32U | draw_word(state) >> 31U;
  }
  mpz_t number;
  mpz_init(number);
  mpz_import(number, words.size(), -1, sizeof words[0], 0, 0, words.data());
  QNumber pattern = BVNumber::reduce(BVNumber::from_integer(number), w);
  mpz_clear(number);
  return pattern;
}

namespace {

const Term* constant(TermManager& mgr, const char* name, unsigned long w)
{
  return mgr.make_constant(name, mgr.make_bv_type(w));
}

const Term* constant(TermManager& mgr, const char* name)
{
  return mgr.make_constant(name, mgr.make_bool_type());
}

/// An odd numeral of full width
const Term* numeral(TermManager& mgr, unsigned long w)
{
  unsigned long state = 7;
  return mgr.make_bv_number(BVNumber::bit_or(draw_pattern(w, state), QNumber(1)), w);
}

/// 2^k - 1
const Term* ones(TermManager& mgr, unsigned long k, unsigned long w)
{
  return mgr.make_bv_number(BVNumber::pow2(k) - QNumber(1), w);
}

using UniformFactory = const Symbol* (TermManager::*)(unsigned long);

template <UniformFactory kMake>
const Term* unary(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(w), {constant(mgr, "x", w)});
}

template <UniformFactory kMake>
const Term* free_pair(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(w), {constant(mgr, "x", w), constant(mgr, "y", w)});
}

template <UniformFactory kMake>
const Term* with_numeral(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(w), {constant(mgr, "x", w), numeral(mgr, w)});
}

template <UniformFactory kMake>
const Term* after_numeral(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(w), {numeral(mgr, w), constant(mgr, "x", w)});
}

/// A predicate on the greatest number, in unsigned or in signed order, and x
template <UniformFactory kMake, bool kIsSigned>
const Term* after_greatest(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(w), {ones(mgr, kIsSigned ? w - 1 : w, w), constant(mgr, "x", w)});
}
template <UniformFactory kMake, bool kIsSigned>
const Term* before_greatest(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(w), {constant(mgr, "x", w), ones(mgr, kIsSigned ? w - 1 : w, w)});
}

template <const Symbol* (TermManager::*kMake)()>
const Term* truth_pair(TermManager& mgr, unsigned long /*w*/)
{
  return mgr.make_term((mgr.*kMake)(), {constant(mgr, "p"), constant(mgr, "q")});
}

template <const Symbol* (TermManager::*kMake)(unsigned long, unsigned long)>
const Term* indexed(TermManager& mgr, unsigned long w)
{
  return mgr.make_term((mgr.*kMake)(3, w), {constant(mgr, "x", w)});
}

const CalculatorCase kCases[] = {
    {"not/free",
     [](TermManager& m, unsigned long) { return m.make_term(m.make_not_symbol(), {constant(m, "p")}); }},
    {"and/free", truth_pair<&TermManager::make_and_symbol>},
    {"or/free", truth_pair<&TermManager::make_or_symbol>},
    {"iff/free", truth_pair<&TermManager::make_iff_symbol>},
    {"ite/free",
     [](TermManager& m, unsigned long w) {
       return m.make_term(m.make_ite_symbol(m.make_bv_type(w)),
                          {constant(m, "c"), constant(m, "x", w), constant(m, "y", w)});
     }},
    {"eq/free",
     [](TermManager& m, unsigned long w) {
       return m.make_term(m.make_eq_symbol(m.make_bv_type(w)), {constant(m, "x", w), constant(m, "y", w)});
     }},
    {"bvnot/free", unary<&TermManager::make_bv_not_symbol>},
    {"bvneg/free", unary<&TermManager::make_bv_neg_symbol>},
    {"rotate_left/free", indexed<&TermManager::make_bv_rotate_left_symbol>},
    {"rotate_right/free", indexed<&TermManager::make_bv_rotate_right_symbol>},
    {"bvand/free", free_pair<&TermManager::make_bv_and_symbol>},
    {"bvor/free", free_pair<&TermManager::make_bv_or_symbol>},
    {"bvxor/free", free_pair<&TermManager::make_bv_xor_symbol>},
    {"bvxor/numeral", with_numeral<&TermManager::make_bv_xor_symbol>},
    {"concat/free",
     [](TermManager& m, unsigned long w) {
       return m.make_term(m.make_bv_concat_symbol(w / 2, w / 2),
                          {constant(m, "x", w / 2), constant(m, "y", w / 2)});
     }},
    {"extract/free",
     [](TermManager& m, unsigned long w) {
       return m.make_term(m.make_bv_extract_symbol(w - 2, 1, w), {constant(m, "x", w)});
     }},
    {"zero_extend/free", indexed<&TermManager::make_bv_zero_extend_symbol>},
    {"sign_extend/free", indexed<&TermManager::make_bv_sign_extend_symbol>},
    {"bvshl/free", free_pair<&TermManager::make_bv_lsl_symbol>},
    {"bvlshr/free", free_pair<&TermManager::make_bv_lsr_symbol>},
    {"bvashr/free", free_pair<&TermManager::make_bv_asr_symbol>},
    {"bvadd/free", free_pair<&TermManager::make_bv_add_symbol>},
    {"bvadd/numeral", with_numeral<&TermManager::make_bv_add_symbol>},
    {"bvsub/free", free_pair<&TermManager::make_bv_sub_symbol>},
    {"bvsub/numeral", with_numeral<&TermManager::make_bv_sub_symbol>},
    {"bvmul/free", free_pair<&TermManager::make_bv_mul_symbol>},
    {"bvmul/numeral", with_numeral<&TermManager::make_bv_mul_symbol>},
    {"bvudiv/free", free_pair<&TermManager::make_bv_udiv_symbol>},
    {"bvsdiv/free", free_pair<&TermManager::make_bv_sdiv_symbol>},
    {"bvurem/refused", free_pair<&TermManager::make_bv_urem_symbol>},
    {"bvsrem/refused", free_pair<&TermManager::make_bv_srem_symbol>},
    {"bvult/free", free_pair<&TermManager::make_bv_ult_symbol>},
    {"bvult/numeral", with_numeral<&TermManager::make_bv_ult_symbol>},
    {"bvule/free", free_pair<&TermManager::make_bv_ule_symbol>},
    {"bvule/numeral", with_numeral<&TermManager::make_bv_ule_symbol>},
    {"bvslt/free", free_pair<&TermManager::make_bv_slt_symbol>},
    {"bvslt/numeral", with_numeral<&TermManager::make_bv_slt_symbol>},
    {"bvsle/free", free_pair<&TermManager::make_bv_sle_symbol>},
    {"bvsle/numeral", with_numeral<&TermManager::make_bv_sle_symbol>},
    {"bvcomp/free", free_pair<&TermManager::make_bv_comp_symbol>},
};

const RefusedCase kRefusedCases[] = {
    {"bvadd_compound",
     [](TermManager& m, unsigned long w) {
       const Term* negated = m.make_term(m.make_bv_neg_symbol(w), {constant(m, "x", w)});
       return m.make_term(m.make_bv_add_symbol(w), {negated, negated});
     },
     free_pair<&TermManager::make_bv_add_symbol>},
    {"bvmul_even",
     [](TermManager& m, unsigned long w) {
       return m.make_term(m.make_bv_mul_symbol(w), {constant(m, "x", w), m.make_bv_number(6, w)});
     },
     with_numeral<&TermManager::make_bv_mul_symbol>},
    {"bvult_greatest", after_greatest<&TermManager::make_bv_ult_symbol, false>,
     after_numeral<&TermManager::make_bv_ult_symbol>},
    {"bvule_greatest", before_greatest<&TermManager::make_bv_ule_symbol, false>,
     with_numeral<&TermManager::make_bv_ule_symbol>},
    {"bvslt_greatest", after_greatest<&TermManager::make_bv_slt_symbol, true>,
     after_numeral<&TermManager::make_bv_slt_symbol>},
    {"bvsle_greatest", before_greatest<&TermManager::make_bv_sle_symbol, true>,
     with_numeral<&TermManager::make_bv_sle_symbol>},
};

}  // namespace

std::span<const CalculatorCase> get_calculator_cases() { return kCases; }

std::span<const RefusedCase> get_refused_cases() { return kRefusedCases; }

const Term* apply_to_values(TermManager& mgr, const Term* t)
{
  const OperatorSymbol& s = as_operator(t->get_symbol());
  std::vector<const Term*> args;
  for (std::size_t i = 0; i < s.get_arity(); ++i) {
    const DataType* type = s.get_argument_type(i);
    args.push_back(type->is_bool() ? mgr.make_true() : mgr.make_bv_number(3, type->get_width()));
  }
  return mgr.make_term(&s, args);
}

}  // namespace lumo::bench
