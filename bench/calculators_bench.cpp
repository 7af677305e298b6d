// Nanoseconds a call of each calculator, in a case that it solves, over 10,000 values (as many as there are
// at width 8). Names are operator/case/width. Every numeral that a call gives exists already after a first
// round, so that what is measured is the call and not the making of numerals.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "calculators/calculator_table.h"
#include "calculators/helpers.h"
#include "terms/fold.h"

namespace lumo {
namespace {

constexpr std::size_t kNumValues = 10'000;

/// A multiplicative sequence that visits many different words.
unsigned long next_word(unsigned long& state)
{
  state = state * 6364136223846793005UL + 1442695040888963407UL;
  return state >> 1U;
}

QNumber draw_pattern(unsigned long w, unsigned long& state)
{
  QNumber n(0);
  for (unsigned long bits = 0; bits < w; bits += 62) {
    n = BVNumber::shift_left(n, 62) + QNumber(static_cast<long>(next_word(state) >> 1U));
  }
  return BVNumber::reduce(n, w);
}

std::vector<const Term*> make_values(TermManager& mgr, const DataType* type, bool is_extension)
{
  unsigned long state = 1;
  std::vector<const Term*> values;
  for (std::size_t i = 0; i < kNumValues; ++i) {
    const QNumber bit(static_cast<long>(next_word(state) >> 40U & 1U));
    const bool is_bit = type->is_bool() || is_extension;  // extensions solve 0 and 1 only
    values.push_back(make_value(mgr, is_bit ? bit : draw_pattern(type->get_width(), state), type));
  }
  return values;
}

/// One benchmark: an application, made for a width.
struct Case
{
  const char* name;
  const Term* (*make)(TermManager&, unsigned long w);
};

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

const Case kCases[] = {
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

void call_once(adhoccalculator::AdHocCalculator& calculator, TermManager& mgr, const Term* t,
               const Term* value, ModelStore::DefinitionStack& defs)
{
  try {
    calculator(&mgr, t, value, defs);
  } catch (const Exception& e) {
    benchmark::DoNotOptimize(&e);
  }
  while (!defs.empty())
    defs.pop();
}

void run_calculator(benchmark::State& state, const Case& c, unsigned long w)
{
  TermManager mgr;
  const Term* t = c.make(mgr, w);
  const Symbol* s = t->get_symbol();
  const bool is_extension = s->get_kind() == Kind::kBvZeroExtend || s->get_kind() == Kind::kBvSignExtend;
  const std::vector<const Term*> values = make_values(mgr, s->get_output_type(), is_extension);
  adhoccalculator::AdHocCalculator& calculator = *find_calculator(mgr, s);
  ModelStore::DefinitionStack defs;
  for (const Term* value : values)
    call_once(calculator, mgr, t, value, defs);

  std::size_t i = 0;
  for (auto _ : state) {
    call_once(calculator, mgr, t, values[i], defs);
    i = i + 1 == values.size() ? 0 : i + 1;
  }
}

void run_inverse(benchmark::State& state, unsigned long w)
{
  unsigned long seed = 3;
  std::vector<QNumber> odd;
  for (std::size_t i = 0; i < 1024; ++i)
    odd.push_back(BVNumber::bit_or(draw_pattern(w, seed), QNumber(1)));
  const QNumber m = BVNumber::pow2(w);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(adhoccalculator::calculate_modular_inverse(odd[i], m));
    i = (i + 1) % odd.size();
  }
}

void register_all()
{
  for (const Case& c : kCases) {
    for (const unsigned long w : {8UL, 32UL, 64UL, 256UL}) {
      const std::string name = std::string(c.name) + "/" + std::to_string(w);
      benchmark::RegisterBenchmark(name.c_str(),
                                   [&c, w](benchmark::State& state) { run_calculator(state, c, w); });
    }
  }
  for (const Case& c : kCases) {
    if (std::string(c.name) != "bvmul/numeral") continue;
    benchmark::RegisterBenchmark("bvmul/numeral/4096",
                                 [&c](benchmark::State& state) { run_calculator(state, c, 4096); });
  }
  for (const unsigned long w : {8UL, 64UL, 4096UL}) {
    const std::string name = "inverse/" + std::to_string(w);
    benchmark::RegisterBenchmark(name.c_str(), [w](benchmark::State& state) { run_inverse(state, w); });
  }
}

}  // namespace
}  // namespace lumo

int main(int argc, char** argv)
{
  lumo::register_all();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
