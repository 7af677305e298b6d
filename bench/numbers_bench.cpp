// The number type against its peers: each operation on each class of operands.
//
// A job is named operation/class/peer, as in add/small_int/lumo. One pass runs the operation on a whole array
// of targets with a whole array of operands; every pass pairs them differently, so that no branch predictor
// learns the results. In-place operations start every pass from the same values, restored between the passes
// and outside the measured time. The report has the time of one operation.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <gmp.h>

#include "bench/jobs.h"
#include "bench/number_peers.h"

namespace lumo::bench {
namespace {

/// Draws the operands; the same for every peer.
class Source
{
 public:
  Source() { gmp_randinit_default(state_); }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source() { gmp_randclear(state_); }

  /// Uniform in [0, n)
  unsigned long below(unsigned long n) { return gmp_urandomm_ui(state_, n); }
  /// Exactly `bits` bits, of either sign
  void integer(mpz_ptr out, unsigned long bits)
  {
    mpz_urandomb(out, state_, bits);
    mpz_setbit(out, bits - 1);
    if (below(2) != 0) mpz_neg(out, out);
  }

 private:
  gmp_randstate_t state_;
};

/// A class of operands: `draw` sets a canonical rational number.
struct OperandClass
{
  const char* name;
  void (*draw)(Source& source, mpq_ptr out);
  std::size_t count;
};

void draw_small_integer(Source& source, mpq_ptr out)
{
  mpq_set_ui(out, 1, 1);
  source.integer(mpq_numref(out), 1 + source.below(30));
}

template <unsigned long kBits>
void draw_integer(Source& source, mpq_ptr out)
{
  mpq_set_ui(out, 1, 1);
  source.integer(mpq_numref(out), kBits);
}

void draw_small_rational(Source& source, mpq_ptr out)
{
  const auto numerator = static_cast<long>(source.below(1998)) - 999;
  mpq_set_si(out, numerator, 1 + source.below(999));
  mpq_canonicalize(out);
}

/// Parts of 31 bits: sums and products just fit a word.
void draw_word_rational(Source& source, mpq_ptr out)
{
  source.integer(mpq_numref(out), 31);
  source.integer(mpq_denref(out), 31);
  mpq_canonicalize(out);
}

constexpr std::size_t kMany = 1024;
constexpr std::size_t kFew = 64;  // many long integers would exceed the caches

constexpr OperandClass kSmallInteger = {"small_int", draw_small_integer, kMany};
constexpr OperandClass kLongIntegers[] = {
    {"int65", draw_integer<65>, kMany},
    {"int128", draw_integer<128>, kMany},
    {"int1024", draw_integer<1024>, kMany},
    {"int65536", draw_integer<65536>, kFew},
};
constexpr OperandClass kRationals[] = {
    {"small_rat", draw_small_rational, kMany},
    {"rat31", draw_word_rational, kMany},
};

enum class Relation
{
  kIndependent,
  kFewValues,
  kDivisible
};

/// The arrays of one job.
template <class Peer>
struct Operands
{
  std::vector<typename Peer::Number> lhs;
  std::vector<typename Peer::Number> rhs;

  /// kFewValues repeats four values, so that equal ones meet; kDivisible makes each left side about twice as
  /// long as the right sides.
  Operands(const OperandClass& kind, Relation relation)
  {
    Source source;
    mpq_t x;
    mpq_t y;
    mpq_init(x);
    mpq_init(y);
    lhs.reserve(kind.count);
    rhs.reserve(kind.count);
    for (std::size_t i = 0; i < kind.count; ++i) {
      kind.draw(source, x);
      kind.draw(source, y);
      if (relation == Relation::kDivisible) mpz_mul(mpq_numref(x), mpq_numref(x), mpq_numref(y));
      lhs.push_back(Peer::make(x));
      rhs.push_back(Peer::make(y));
    }
    mpq_clear(x);
    mpq_clear(y);
    if (relation != Relation::kFewValues) return;
    for (std::size_t i = 0; i < kind.count; ++i) {
      lhs[i] = lhs[source.below(4)];
      rhs[i] = lhs[source.below(4)];
    }
  }
};

/// Measures passes of operation(i, j), i and j running through the indices; prepare() precedes each,
/// unmeasured.
template <class Prepare, class Operation>
void measure(benchmark::State& state, std::size_t count, Prepare prepare, Operation operation)
{
  using Clock = std::chrono::steady_clock;
  std::size_t shift = 0;
  while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(count))) {
    prepare();
    benchmark::ClobberMemory();
    const auto begin = Clock::now();
    for (std::size_t i = 0; i < count; ++i)
      operation(i, (i + shift) & (count - 1));
    benchmark::ClobberMemory();
    const auto end = Clock::now();
    state.SetIterationTime(std::chrono::duration<double>(end - begin).count());
    shift += 389;
  }
}

template <class Peer, class Operation>
void run_in_place(benchmark::State& state, const OperandClass& kind, Operation operation)
{
  const Operands<Peer> operands(kind, Relation::kIndependent);
  auto targets = operands.lhs;
  measure(
      state, kind.count,
      [&] {
        for (std::size_t i = 0; i < kind.count; ++i)
          targets[i] = operands.lhs[i];
      },
      [&](std::size_t i, std::size_t j) { operation(targets[i], operands.rhs[j]); });
}

template <class Peer, class Predicate>
void run_predicate(benchmark::State& state, const OperandClass& kind, Relation relation, Predicate predicate)
{
  const Operands<Peer> operands(kind, relation);
  std::size_t holds = 0;
  measure(
      state, kind.count, [] {},
      [&](std::size_t i, std::size_t j) { holds += predicate(operands.lhs[i], operands.rhs[j]) ? 1U : 0U; });
  benchmark::DoNotOptimize(holds);
}

template <class Peer, bool kTruncates>
void run_division(benchmark::State& state, const OperandClass& kind)
{
  const Operands<Peer> operands(kind, Relation::kDivisible);
  auto quotients = operands.lhs;
  auto remainders = operands.rhs;
  measure(
      state, kind.count, [] {},
      [&](std::size_t i, std::size_t j) {
        Peer::template divide<kTruncates>(quotients[i], remainders[i], operands.lhs[i], operands.rhs[j]);
      });
}

template <class Run>
void add_job(const char* operation, const OperandClass& kind, const char* peer, Run run)
{
  const std::string name = std::string(operation) + '/' + kind.name + '/' + peer;
  benchmark::RegisterBenchmark(name.c_str(), [kind, run](benchmark::State& state) {
    run(state, kind);
  })->UseManualTime();
}

template <class Peer>
void add_arithmetic(const OperandClass& kind, const char* peer)
{
  using Number = typename Peer::Number;
  using benchmark::State;
  add_job("add", kind, peer, [](State& state, const OperandClass& k) {
    run_in_place<Peer>(state, k, [](Number& x, const Number& y) { Peer::add(x, y); });
  });
  add_job("sub", kind, peer, [](State& state, const OperandClass& k) {
    run_in_place<Peer>(state, k, [](Number& x, const Number& y) { Peer::subtract(x, y); });
  });
  add_job("mul", kind, peer, [](State& state, const OperandClass& k) {
    run_in_place<Peer>(state, k, [](Number& x, const Number& y) { Peer::multiply(x, y); });
  });
  add_job("less", kind, peer, [](State& state, const OperandClass& k) {
    run_predicate<Peer>(state, k, Relation::kIndependent,
                        [](const Number& x, const Number& y) { return Peer::less(x, y); });
  });
  add_job("equal", kind, peer, [](State& state, const OperandClass& k) {
    run_predicate<Peer>(state, k, Relation::kFewValues,
                        [](const Number& x, const Number& y) { return Peer::equal(x, y); });
  });
}

template <class Peer, bool kTruncates>
void add_division(const OperandClass& kind, const char* peer)
{
  add_job("divmod", kind, peer,
          [](benchmark::State& state, const OperandClass& k) { run_division<Peer, kTruncates>(state, k); });
}

template <bool kIsSmall>
void add_integer_jobs(const OperandClass& kind)
{
  add_arithmetic<Lumo>(kind, "lumo");
  add_arithmetic<FlintInteger>(kind, "flint");
  add_arithmetic<GmpInteger>(kind, "gmp");
  add_division<Lumo, kIsSmall>(kind, "lumo");
  add_division<FlintInteger, kIsSmall>(kind, "flint");
  add_division<GmpInteger, kIsSmall>(kind, "gmp");
}

void add_rational_jobs(const OperandClass& kind)
{
  add_arithmetic<Lumo>(kind, "lumo");
  add_arithmetic<FlintRational>(kind, "flint");
  add_arithmetic<GmpRational>(kind, "gmp");
}

}  // namespace

void add_all_jobs()
{
  add_integer_jobs<true>(kSmallInteger);
  add_job("add", kSmallInteger, "plain", [](benchmark::State& state, const OperandClass& kind) {
    run_in_place<PlainWord>(state, kind, [](long& x, long y) { PlainWord::add(x, y); });
  });
  for (const OperandClass& kind : kLongIntegers)
    add_integer_jobs<false>(kind);
  for (const OperandClass& kind : kRationals)
    add_rational_jobs(kind);
}

}  // namespace lumo::bench
