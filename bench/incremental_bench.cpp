// Elimination in a conversation: small queries on a large stack of assertions.
//
//   incremental_bench [STACK [QUERIES [NEW]]]
//
// STACK assertions are on the base level; then follow QUERIES queries. Each comes after NEW assertions on a
// separate level, which is popped after it. Prints, in processor time and for each kind of new assertions,
// - first ms   time of the first query, which eliminates in the whole stack;
// - query us   mean time of a later one, with the pushes, assertions and pops around it;
// - ratio      the second divided by the first.
// New assertions `apart` have their own constants. `shared` ones contain large terms of the stack that were sent to
// the solver. `restore` ones contain constants that were eliminated in the stack.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/processor_time.h"
#include "lumo/elimination/incremental.h"

namespace lumo::bench {
namespace {

constexpr unsigned long kWidth = 32;

/// The stack: (bvult a_i (bvurem a_(i+1) (bvadd x_i a_i))) with single x_i, over a ring of constants a_i.
struct Stack
{
  Stack(TermManager& mgr, std::size_t size)
  {
    const DataType* sort = mgr.make_bv_type(kWidth);
    for (std::size_t i = 0; i < size; ++i) {
      shared.push_back(mgr.make_constant("a" + std::to_string(i), sort));
      free.push_back(mgr.make_constant("x" + std::to_string(i), sort));
    }
    for (std::size_t i = 0; i < size; ++i) {
      const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(kWidth), {free[i], shared[i]});
      const Term* remainder = mgr.make_term(mgr.make_bv_urem_symbol(kWidth), {shared[(i + 1) % size], sum});
      remainders.push_back(remainder);
      assertions.push_back(mgr.make_term(mgr.make_bv_ult_symbol(kWidth), {shared[i], remainder}));
    }
  }

  std::vector<const Term*> shared;
  std::vector<const Term*> free;
  std::vector<const Term*> remainders;
  std::vector<const Term*> assertions;
};

enum class News
{
  kApart,
  kShared,
  kRestore
};

const Term* make_assertion(TermManager& mgr, const Stack& stack, News news, std::size_t i)
{
  const std::size_t at = i * 7919 % stack.assertions.size();
  const Term* fresh = mgr.make_constant("n" + std::to_string(i), mgr.make_bv_type(kWidth));
  const Term* other = news == News::kApart    ? mgr.make_term(mgr.make_bv_not_symbol(kWidth), {fresh})
                      : news == News::kShared ? stack.remainders[at]
                                              : stack.free[at];
  const Term* product = mgr.make_term(mgr.make_bv_mul_symbol(kWidth), {fresh, other});
  return mgr.make_term(mgr.make_bv_ule_symbol(kWidth), {product, fresh});
}

void run(const char* name, News news, std::size_t stack_size, std::size_t num_queries, std::size_t num_new)
{
  TermManager mgr;
  const Stack stack(mgr, stack_size);
  std::vector<const Term*> new_assertions;
  new_assertions.reserve(num_queries * num_new);
  for (std::size_t i = 0; i < num_queries * num_new; ++i)
    new_assertions.push_back(make_assertion(mgr, stack, news, i));

  IncrementalEliminator eliminator(mgr);
  double start = now();
  for (const Term* t : stack.assertions)
    eliminator.add_assertion(t);
  std::size_t num_additions = eliminator.query().additions.size();
  const double first = now() - start;

  start = now();
  for (std::size_t i = 0; i < num_queries; ++i) {
    eliminator.push();
    for (std::size_t k = 0; k < num_new; ++k)
      eliminator.add_assertion(new_assertions[i * num_new + k]);
    num_additions += eliminator.query().additions.size();
    eliminator.pop();
  }
  const double later = (now() - start) / static_cast<double>(num_queries);
  std::printf("%-8s %9.2f %9.1f %8.4f %10zu\n", name, first * 1e3, later * 1e6, later / first, num_additions);
}

std::size_t read_number(int argc, char** argv, int i, std::size_t otherwise)
{
  return i < argc ? std::strtoul(argv[i], nullptr, 10) : otherwise;
}

}  // namespace
}  // namespace lumo::bench

int main(int argc, char** argv)
{
  namespace bench = lumo::bench;
  using bench::News;
  const std::size_t stack = bench::read_number(argc, argv, 1, 100'000);
  const std::size_t queries = bench::read_number(argc, argv, 2, 2'000);
  const std::size_t news = bench::read_number(argc, argv, 3, 50);
  if (stack == 0 || queries == 0) {
    std::fprintf(stderr, "incremental_bench: the sizes must be positive numbers\n");
    return 2;
  }
  std::printf("%-8s %9s %9s %8s %10s\n", "new", "first ms", "query us", "ratio", "told");
  bench::run("apart", News::kApart, stack, queries, news);
  bench::run("shared", News::kShared, stack, queries, news);
  bench::run("restore", News::kRestore, stack, queries, news);
  return 0;
}
