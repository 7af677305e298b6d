// Nanoseconds for a call of each calculator, in a case that it solves, over those of 10,000 values (of
// 256 at width 8) that it solves. Names are operator/case/width. Every numeral that a call gives exists already after
// a first round, so the time is that of the call without making numerals. A unit that is comparable between machines
// is the search for one of 10,000 numerals' symbols in a hash map. Then refused calls, without an exception,
// next to calls of the same operator that are solved, and the inverse modulo 2^w of an odd number, by the calculators
// and by GMP.

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

/// The same without an exception
bool try_once(TermManager& mgr, const Term* t, const Term* value, ModelStore::DefinitionStack& defs)
{
  const bool is_solved = !try_calculate(&mgr, t, value, defs);
  while (!defs.empty())
    defs.pop();
  return is_solved;
}

bool is_extension(const Term* t)
{
  const Kind kind = t->get_symbol()->get_kind();
  return kind == Kind::kBvZeroExtend || kind == Kind::kBvSignExtend;
}

/// The values of t for which a call has this outcome; afterwards all numerals that such a call makes exist.
std::vector<const Term*> select_values(TermManager& mgr, const Term* t, std::vector<const Term*> values,
                                       bool is_solved)
{
  ModelStore::DefinitionStack defs;
  std::erase_if(values, [&](const Term* value) { return try_once(mgr, t, value, defs) != is_solved; });
  return values;
}

template <class Call>
void run_over(benchmark::State& state, const std::vector<const Term*>& values, Call call)
{
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(call(values[i]));
    i = i + 1 == values.size() ? 0 : i + 1;
  }
}

void run_calculator(benchmark::State& state, const CalculatorCase& c, unsigned long w)
{
  TermManager mgr;
  const Term* t = c.make(mgr, w);
  const Symbol* s = t->get_symbol();
  std::vector<const Term*> values = make_values(mgr, s->get_output_type(), is_extension(t));
  adhoccalculator::AdHocCalculator& calculator = *find_calculator(mgr, s);
  ModelStore::DefinitionStack defs;
  // If the calculator solves some values, measure only these; otherwise its refusals.
  std::vector<const Term*> solved = select_values(mgr, t, values, true);
  if (!solved.empty()) values.swap(solved);
  run_over(state, values, [&](const Term* value) { return call_once(calculator, mgr, t, value, defs); });
}

/// Calls without exceptions, all refused or all solved, for the same values if possible
void run_status(benchmark::State& state, const bench::RefusedCase& c, unsigned long w, bool is_solved)
{
  TermManager mgr;
  const Term* solved = c.make_solved(mgr, w);
  // An extension refuses values; all others refuse arguments.
  const Term* refused = c.make != nullptr      ? c.make(mgr, w)
                        : is_extension(solved) ? solved
                                               : bench::apply_to_values(mgr, solved);
  std::vector<const Term*> values =
      make_values(mgr, solved->get_symbol()->get_output_type(), is_extension(solved) && is_solved);
  if (refused != solved) values = select_values(mgr, refused, values, false);
  const Term* t = is_solved ? solved : refused;
  values = select_values(mgr, t, values, is_solved);
  ModelStore::DefinitionStack defs;
  run_over(state, values, [&](const Term* value) { return try_once(mgr, t, value, defs); });
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

constexpr unsigned long kWidths[] = {8, 32, 64, 256};

/// refuse_WHAT/WIDTH/lumo: refused calls; refuse_WHAT/WIDTH/solved: calls of the same operator that are solved
void add_refusals(const bench::RefusedCase& c)
{
  for (const unsigned long w : kWidths) {
    const std::string name = std::string("refuse_") + c.name + "/" + std::to_string(w) + "/";
    benchmark::RegisterBenchmark((name + "lumo").c_str(),
                                 [c, w](benchmark::State& state) { run_status(state, c, w, false); });
    benchmark::RegisterBenchmark((name + "solved").c_str(),
                                 [c, w](benchmark::State& state) { run_status(state, c, w, true); });
  }
}

void add_all_refusals()
{
  for (const CalculatorCase& c : bench::get_calculator_cases()) {
    const std::string name = c.name;
    if (!name.ends_with("/free")) continue;
    const std::string what = name.substr(0, name.find('/')) + "_values";
    add_refusals({what.c_str(), nullptr, c.make});
  }
  for (const bench::RefusedCase& c : bench::get_refused_cases())
    add_refusals(c);
}

}  // namespace

void bench::add_all_jobs()
{
  for (const CalculatorCase& c : bench::get_calculator_cases()) {
    for (const unsigned long w : kWidths) {
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
  add_all_refusals();
  benchmark::RegisterBenchmark("find/10000/absl", run_find);
}

}  // namespace lumo
