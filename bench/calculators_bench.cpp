// Nanoseconds a call of each calculator, in a case that it solves, over those of 10,000 values (as many as there are
// at width 8) that it solves. Names are operator/case/width. Every numeral that a call gives exists already after
// a first round, so that what is measured is the call and not the making of numerals. Beside them, as a unit that
// other machines have, too: the search for one of 10,000 numerals' symbols in a hash map. Then the inverse modulo
// 2^w of an odd number, by the calculators and by GMP.

#include <absl/container/flat_hash_map.h>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/calculator_cases.h"
#include "bench/jobs.h"
#include "bench/number_peers.h"
#include "lumo/calculators/calculator_table.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/fold.h"

namespace lumo {
namespace {

using bench::CalculatorCase;
using bench::draw_pattern;
using bench::draw_word;

constexpr std::size_t kNumValues = 10'000;

std::vector<const Term*> make_values(TermManager& mgr, const DataType* type, bool is_extension)
{
  unsigned long state = 1;
  std::vector<const Term*> values;
  for (std::size_t i = 0; i < kNumValues; ++i) {
    const QNumber bit(static_cast<long>(draw_word(state) >> 40U & 1U));
    const bool is_bit = type->is_bool() || is_extension;  // extensions solve 0 and 1 only
    values.push_back(make_value(mgr, is_bit ? bit : draw_pattern(type->get_width(), state), type));
  }
  return values;
}

/// Whether the value was solved
bool call_once(adhoccalculator::AdHocCalculator& calculator, TermManager& mgr, const Term* t,
               const Term* value, ModelStore::DefinitionStack& defs)
{
  bool is_solved = true;
  try {
    calculator(&mgr, t, value, defs);
  } catch (const Exception&) {
    is_solved = false;
  }
  while (!defs.empty())
    defs.pop();
  return is_solved;
}

void run_calculator(benchmark::State& state, const CalculatorCase& c, unsigned long w)
{
  TermManager mgr;
  const Term* t = c.make(mgr, w);
  const Symbol* s = t->get_symbol();
  const bool is_extension = s->get_kind() == Kind::kBvZeroExtend || s->get_kind() == Kind::kBvSignExtend;
  std::vector<const Term*> values = make_values(mgr, s->get_output_type(), is_extension);
  adhoccalculator::AdHocCalculator& calculator = *find_calculator(mgr, s);
  ModelStore::DefinitionStack defs;
  std::vector<const Term*> solved;
  for (const Term* value : values) {
    if (call_once(calculator, mgr, t, value, defs)) solved.push_back(value);
  }
  // Where the calculator solves some, it is measured on these alone; else on its refusals.
  if (!solved.empty()) values.swap(solved);

  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(call_once(calculator, mgr, t, values[i], defs));
    i = i + 1 == values.size() ? 0 : i + 1;
  }
}

constexpr std::size_t kNumInverses = 1024;

std::vector<QNumber> draw_odd_patterns(unsigned long w)
{
  unsigned long seed = 3;
  std::vector<QNumber> odd;
  for (std::size_t i = 0; i < kNumInverses; ++i)
    odd.push_back(BVNumber::bit_or(draw_pattern(w, seed), QNumber(1)));
  return odd;
}

void run_inverse(benchmark::State& state, unsigned long w)
{
  const std::vector<QNumber> odd = draw_odd_patterns(w);
  const QNumber m = BVNumber::pow2(w);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(adhoccalculator::calculate_modular_inverse(odd[i], m));
    i = (i + 1) % odd.size();
  }
}

void run_inverse_of_gmp(benchmark::State& state, unsigned long w)
{
  bench::GmpInteger::Number m;
  mpz_setbit(&m.raw, w);
  std::vector<bench::GmpInteger::Number> odd(kNumInverses);
  std::size_t i = 0;
  for (const QNumber& q : draw_odd_patterns(w))
    q.get_numerator(&odd[i++].raw);
  bench::GmpInteger::Number inverse;
  i = 0;
  for (auto _ : state) {
    mpz_invert(&inverse.raw, &odd[i].raw, &m.raw);
    benchmark::DoNotOptimize(inverse);
    i = (i + 1) % odd.size();
  }
}

void run_find(benchmark::State& state)
{
  TermManager mgr;
  absl::flat_hash_map<const Symbol*, QNumber> map;
  std::vector<const Symbol*> symbols;
  for (const Term* value : make_values(mgr, mgr.make_bv_type(64), false)) {
    symbols.push_back(value->get_symbol());
    mgr.is_number(symbols.back(), &map[symbols.back()]);
  }
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(map.find(symbols[i])->second);
    i = i + 1 == symbols.size() ? 0 : i + 1;
  }
}

}  // namespace

void bench::add_all_jobs()
{
  for (const CalculatorCase& c : bench::get_calculator_cases()) {
    for (const unsigned long w : {8UL, 32UL, 64UL, 256UL}) {
      const std::string name = std::string(c.name) + "/" + std::to_string(w);
      benchmark::RegisterBenchmark(name.c_str(),
                                   [&c, w](benchmark::State& state) { run_calculator(state, c, w); });
    }
  }
  for (const CalculatorCase& c : bench::get_calculator_cases()) {
    if (std::string(c.name) != "bvmul/numeral") continue;
    benchmark::RegisterBenchmark("bvmul/numeral/4096",
                                 [&c](benchmark::State& state) { run_calculator(state, c, 4096); });
  }
  for (const unsigned long w : {8UL, 32UL, 64UL, 256UL, 1024UL, 65536UL}) {
    const std::string name = "inverse/" + std::to_string(w) + "/";
    benchmark::RegisterBenchmark((name + "lumo").c_str(),
                                 [w](benchmark::State& state) { run_inverse(state, w); });
    benchmark::RegisterBenchmark((name + "gmp").c_str(),
                                 [w](benchmark::State& state) { run_inverse_of_gmp(state, w); });
  }
  benchmark::RegisterBenchmark("find/10000/absl", run_find);
}

}  // namespace lumo
