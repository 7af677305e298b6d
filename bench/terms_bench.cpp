// Terms, numerals and models against their peers. A job is named operation/number of terms/peer:
//
// - hit, miss   the value of a symbol that is a numeral, and of one that is not, from the manager's table and
//               from a hash map that has the symbols' addresses as keys;
// - find        the numeral of a value and a width that exists already, from the manager and from Z3;
// - make        the same for one that does not exist yet, in a manager or context that grows from empty;
// - apply       a new application of an operator to two constants, likewise;
// - model       a new model, one definition and the value of the newest term, in a manager with the job's number of
//               constants, and in an empty manager.
//
// make and apply also count the bytes of heap that the manager needs for each, including its tables.
//
// Symbols and values are visited in an order that differs from those of the memory and the tables.

#include <absl/container/flat_hash_map.h>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <z3.h>

#include "bench/heap_meter.h"
#include "bench/jobs.h"
#include "lumo/model/model_store.h"
#include "lumo/solvers/z3_session.h"
#include "lumo/terms/term_manager.h"

namespace lumo::bench {
namespace {

constexpr unsigned kWidth = 32;
constexpr std::size_t kSizes[] = {1'000, 10'000, 100'000, 1'000'000};

/// A multiplicative sequence, reproducible and irregular in its upper bits.
class Sequence
{
 public:
  std::uint64_t next()
  {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return state_ >> 33U;
  }

 private:
  std::uint64_t state_ = 1;
};

/// n different values of kWidth bits in irregular order
std::vector<unsigned long> make_values(std::size_t n)
{
  std::vector<unsigned long> values(n);
  for (std::size_t i = 0; i < n; ++i)
    values[i] = (i * 2654435761U) & 0xffffffffU;  // an odd factor permutes the patterns
  return values;
}

template <class T>
void shuffle(std::vector<T>& list)
{
  Sequence sequence;
  for (std::size_t i = list.size(); i > 1; --i)
    std::swap(list[i - 1], list[sequence.next() % i]);
}

/// A manager with n numerals and as many constants, and their symbols in irregular order.
struct Numerals
{
  explicit Numerals(std::size_t n)
  {
    const DataType* type = mgr.make_bv_type(kWidth);
    for (const unsigned long value : make_values(n)) {
      numerals.push_back(mgr.make_bv_number(value, kWidth)->get_symbol());
      others.push_back(mgr.make_fresh_constant("c", type)->get_symbol());
    }
    shuffle(numerals);
    shuffle(others);
  }

  TermManager mgr;
  std::vector<const Symbol*> numerals;
  std::vector<const Symbol*> others;
};

/// Runs operation(i) repeatedly for all indices below n.
template <class Operation>
void visit(benchmark::State& state, std::size_t n, Operation operation)
{
  std::size_t i = 0;
  for (auto _ : state) {
    operation(i);
    i = i + 1 == n ? 0 : i + 1;
  }
}

void look_up_in_manager(benchmark::State& state, std::size_t n, bool is_hit)
{
  const Numerals numerals(n);
  const std::vector<const Symbol*>& symbols = is_hit ? numerals.numerals : numerals.others;
  QNumber value;
  visit(state, n, [&](std::size_t i) {
    benchmark::DoNotOptimize(numerals.mgr.is_number(symbols[i], &value));
    benchmark::DoNotOptimize(value);
  });
}

void look_up_in_map(benchmark::State& state, std::size_t n, bool is_hit)
{
  const Numerals numerals(n);
  const std::vector<const Symbol*>& symbols = is_hit ? numerals.numerals : numerals.others;
  absl::flat_hash_map<const Symbol*, QNumber> map;
  QNumber value;
  for (const Symbol* s : numerals.numerals) {
    numerals.mgr.is_number(s, &value);
    map.emplace(s, value);
  }
  visit(state, n, [&](std::size_t i) {
    const auto place = map.find(symbols[i]);
    const bool is_found = place != map.end();
    if (is_found) value = place->second;
    benchmark::DoNotOptimize(is_found);
    benchmark::DoNotOptimize(value);
  });
}

/// A context of Z3's with the sort of the numerals.
struct Z3Numerals
{
  Z3Numerals() : sort(Z3_mk_bv_sort(z3, kWidth)) { Z3_inc_ref(z3, Z3_sort_to_ast(z3, sort)); }

  [[nodiscard]] Z3_ast make(unsigned long value) const { return Z3_mk_unsigned_int64(z3, value, sort); }
  /// Z3 destroys terms without references.
  void keep(unsigned long value) const { Z3_inc_ref(z3, make(value)); }

  solvers::Z3Session z3;
  Z3_sort sort;
};

void find_in_manager(benchmark::State& state, std::size_t n)
{
  Numerals numerals(n);
  std::vector<unsigned long> values = make_values(n);
  shuffle(values);
  visit(state, n,
        [&](std::size_t i) { benchmark::DoNotOptimize(numerals.mgr.make_bv_number(values[i], kWidth)); });
}

void find_in_z3(benchmark::State& state, std::size_t n)
{
  Z3Numerals numerals;
  std::vector<unsigned long> values = make_values(n);
  for (const unsigned long value : values)
    numerals.keep(value);
  shuffle(values);
  visit(state, n, [&](std::size_t i) { benchmark::DoNotOptimize(numerals.make(values[i])); });
}

/// Measures run(owner) with a new owner each time, whose construction and destruction do not count; the run makes n
/// things.
template <class Owner, class Run>
void make_all(benchmark::State& state, std::size_t n, Run run)
{
  using Clock = std::chrono::steady_clock;
  std::size_t bytes = 0;
  while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(n))) {
    auto owner = std::make_unique<Owner>(n);
    const std::size_t before = get_heap_bytes();
    const auto begin = Clock::now();
    run(*owner);
    const auto end = Clock::now();
    state.SetIterationTime(std::chrono::duration<double>(end - begin).count());
    bytes = get_heap_bytes() - before;
  }
  state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(n);
}

/// A manager in which the benchmark makes numerals
struct NewNumerals
{
  explicit NewNumerals(std::size_t n) : values(make_values(n)) {}
  void make()
  {
    for (const unsigned long value : values)
      benchmark::DoNotOptimize(mgr.make_bv_number(value, kWidth));
  }

  TermManager mgr;
  std::vector<unsigned long> values;
};

struct NewZ3Numerals
{
  explicit NewZ3Numerals(std::size_t n) : values(make_values(n)) {}
  void make()
  {
    for (const unsigned long value : values)
      numerals.keep(value);
  }

  Z3Numerals numerals;
  std::vector<unsigned long> values;
};

/// A manager with n constants, each of which the benchmark adds to the next one
struct NewApplications
{
  explicit NewApplications(std::size_t n) : add(mgr.make_bv_add_symbol(kWidth))
  {
    for (std::size_t i = 0; i <= n; ++i)
      constants.push_back(mgr.make_fresh_constant("c", mgr.make_bv_type(kWidth)));
  }
  void make()
  {
    for (std::size_t i = 0; i + 1 < constants.size(); ++i)
      benchmark::DoNotOptimize(mgr.make_term(add, {constants[i], constants[i + 1]}));
  }

  TermManager mgr;
  const Symbol* add;
  std::vector<const Term*> constants;
};

template <class Owner>
void run_making(benchmark::State& state, std::size_t n)
{
  make_all<Owner>(state, n, [](Owner& owner) { owner.make(); });
}

/// A manager with n constants, of which the last one is defined.
void ask_new_model(benchmark::State& state, std::size_t n)
{
  TermManager mgr;
  const DataType* type = mgr.make_bv_type(kWidth);
  for (std::size_t i = 0; i < n; ++i)
    mgr.make_fresh_constant("c", type);
  const Term* x = mgr.make_fresh_constant("c", type);
  const Term* negated = mgr.make_term(mgr.make_bv_neg_symbol(kWidth), {x});
  const Term* value = mgr.make_bv_number(5, kWidth);
  for (auto _ : state) {
    ModelStore model(&mgr);
    model.set_value(x, value);
    benchmark::DoNotOptimize(model.get_value(negated));
  }
}

template <class Run>
benchmark::internal::Benchmark* add_job(const char* operation, std::size_t n, const char* peer, Run run)
{
  const std::string name = std::string(operation) + '/' + std::to_string(n) + '/' + peer;
  return benchmark::RegisterBenchmark(name.c_str(), [n, run](benchmark::State& state) { run(state, n); });
}

}  // namespace

void add_all_jobs()
{
  using benchmark::State;
  for (const std::size_t n : kSizes) {
    for (const bool is_hit : {true, false}) {
      const char* operation = is_hit ? "hit" : "miss";
      add_job(operation, n, "lumo", [is_hit](State& s, std::size_t m) { look_up_in_manager(s, m, is_hit); });
      add_job(operation, n, "absl", [is_hit](State& s, std::size_t m) { look_up_in_map(s, m, is_hit); });
    }
    add_job("find", n, "lumo", find_in_manager);
    add_job("find", n, "z3", find_in_z3);
    add_job("make", n, "lumo", run_making<NewNumerals>)->UseManualTime();
    add_job("make", n, "z3", run_making<NewZ3Numerals>)->UseManualTime();
    add_job("apply", n, "lumo", run_making<NewApplications>)->UseManualTime();
    add_job("model", n, "lumo", ask_new_model);
    add_job("model", n, "empty", [](State& s, std::size_t /*m*/) { ask_new_model(s, 0); });
  }
}

}  // namespace lumo::bench
