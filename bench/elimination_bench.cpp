// The whole job around a solver, from parsed terms to an extended and checked model, on graphs of five shapes
// whose size grows; compared with Z3's own elimination of unconstrained terms on the same graphs, also with a model.
//
//   elimination_bench [MOST-APPLICATIONS [SECONDS-FOR-Z3 [SHAPE...]]]
//
// Prints a table: for each shape, or those that are named, and number of applications n, for each application and in
// processor time,
// - lumo ns     time of eliminate, extend and find_violated, the best of three runs;
// - lumo bytes  the peak of the heap during that, without the terms themselves;
// - term bytes  the heap of the parsed terms;
// - print ns, parse ns  time to write them as a script and to read it again;
// - Z3 ns       time of `(then simplify elim-uncnstr smt)` from asserting expressions that exist to a model;
// - Z3/lumo     the ratio of the two times.
// If Z3 does not end within its time limit, or dies, the table says so, and larger sizes are not tried.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <z3.h>

#include "bench/heap_meter.h"
#include "bench/processor_time.h"
#include "bench/shapes.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/solvers/z3_builder.h"
#include "lumo/solvers/z3_session.h"

namespace lumo::bench {
namespace {

[[noreturn]] void stop(const std::string& why)
{
  std::fprintf(stderr, "elimination_bench: %s\n", why.c_str());
  std::exit(1);
}

// -----------------------------------------------------------------------------------------------------------
// lumo

struct Measured
{
  double seconds = 0;
  std::size_t bytes = 0;       ///< at the peak, without the terms
  std::size_t term_bytes = 0;  ///< of the manager and the terms
  std::size_t num_applications = 0;
};

Measured run_lumo(const Shape& shape, std::size_t n)
{
  Measured measured;
  const std::size_t empty = get_heap_bytes();
  TermManager mgr;
  const Formula formula = shape.make(mgr, n);
  measured.num_applications = count_applications(formula);
  const std::size_t before = get_heap_bytes();
  measured.term_bytes = before - empty;

  reset_peak_heap_bytes();
  const double start = now();
  const Elimination elimination = eliminate(mgr, formula.assertions);
  ModelStore model(&mgr);  // nothing remains of these shapes, so every model is a model of the rest
  extend(mgr, elimination.trail, model);
  const bool is_model = find_violated(mgr, formula.assertions, model) == formula.assertions.size();
  measured.seconds = now() - start;
  measured.bytes = get_peak_heap_bytes() - before;

  if (!elimination.assertions.empty()) stop(std::string(shape.name) + " was not eliminated as a whole");
  if (!is_model) stop(std::string("the model of ") + shape.name + " is wrong");
  return measured;
}

Measured run_lumo_often(const Shape& shape, std::size_t n)
{
  Measured best = run_lumo(shape, n);
  for (int i = 0; i < 2; ++i)
    best.seconds = std::min(best.seconds, run_lumo(shape, n).seconds);
  return best;
}

struct TextTimes
{
  double printing = 0;
  double parsing = 0;
};

TextTimes run_text(const Shape& shape, std::size_t n)
{
  TextTimes times;
  std::string text;
  {
    TermManager mgr;
    const Formula formula = shape.make(mgr, n);
    const double start = now();
    std::ostringstream out;
    smtlib::print_script(out, formula.constants, formula.assertions, false);
    times.printing = now() - start;
    text = out.str();
  }
  TermManager mgr;
  const double start = now();
  if (smtlib::read_script(mgr, text).assertions.empty()) stop("the text says nothing");
  times.parsing = now() - start;
  return times;
}

// -----------------------------------------------------------------------------------------------------------
// Z3

Z3_solver make_z3_solver(Z3_context z3)
{
  Z3_tactic tactic = nullptr;
  for (const char* name : {"smt", "elim-uncnstr", "simplify"}) {
    Z3_tactic first = Z3_mk_tactic(z3, name);
    Z3_tactic_inc_ref(z3, first);
    tactic = tactic == nullptr ? first : Z3_tactic_and_then(z3, first, tactic);
    Z3_tactic_inc_ref(z3, tactic);
  }
  Z3_solver solver = Z3_mk_solver_from_tactic(z3, tactic);
  Z3_solver_inc_ref(z3, solver);
  return solver;
}

/// Call this in a separate process: it releases nothing, and a deep term may exhaust the stack.
double run_z3(const Shape& shape, std::size_t n, unsigned limit)
{
  TermManager mgr;
  const Formula formula = shape.make(mgr, n);
  const solvers::Z3Session z3;
  solvers::Z3Builder builder(mgr, z3);
  std::vector<Z3_ast> assertions;
  for (const Term* t : formula.assertions)
    assertions.push_back(builder.build(t));
  Z3_solver solver = make_z3_solver(z3);

  const double start = now();
  const auto end = static_cast<rlim_t>(start) + limit + 1;
  const rlimit seconds{end, end + 1};
  setrlimit(RLIMIT_CPU, &seconds);
  for (Z3_ast assertion : assertions)
    Z3_solver_assert(z3, solver, assertion);
  if (Z3_solver_check(z3, solver) != Z3_L_TRUE) return 0;
  if (Z3_solver_get_model(z3, solver) == nullptr) return 0;
  return now() - start;
}

struct Z3Outcome
{
  std::optional<double> seconds;
  std::string failure;
};

Z3Outcome run_z3_apart(const Shape& shape, std::size_t n, unsigned limit)
{
  int ends[2];
  if (pipe(ends) != 0) stop("no pipe could be made");
  std::fflush(stdout);
  const pid_t child = fork();
  if (child < 0) stop("no process could be started");
  if (child == 0) {
    const double seconds = run_z3(shape, n, limit);
    const bool is_told = write(ends[1], &seconds, sizeof seconds) == sizeof seconds;
    _exit(is_told ? 0 : 1);
  }
  close(ends[1]);
  double seconds = 0;
  const bool is_told = read(ends[0], &seconds, sizeof seconds) == sizeof seconds;
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (is_told && seconds > 0) return {seconds, {}};
  if (is_told) return {{}, "gave up"};
  return {{}, WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU ? "too slow" : "died"};
}

// -----------------------------------------------------------------------------------------------------------

double per_application(double seconds, std::size_t n) { return seconds * 1e9 / static_cast<double>(n); }

void print_heading()
{
  std::printf("%-7s %9s %9s %11s %11s %9s %9s %11s %8s\n", "shape", "n", "lumo ns", "lumo bytes",
              "term bytes", "print ns", "parse ns", "Z3 ns", "Z3/lumo");
}

void run_shape(const Shape& shape, std::size_t most, unsigned limit)
{
  std::string failure;  // of Z3 at a smaller size
  for (std::size_t n = 1000; n <= most; n *= 10) {
    const Measured lumo = run_lumo_often(shape, n);
    const TextTimes text = run_text(shape, n);
    Z3Outcome z3{{}, "-"};
    if (failure.empty()) z3 = run_z3_apart(shape, n, limit);
    failure = z3.failure;

    const std::size_t m = lumo.num_applications;
    std::printf("%-7s %9zu %9.0f %11.0f %11.0f %9.0f %9.0f", shape.name, m, per_application(lumo.seconds, m),
                static_cast<double>(lumo.bytes) / static_cast<double>(m),
                static_cast<double>(lumo.term_bytes) / static_cast<double>(m),
                per_application(text.printing, m), per_application(text.parsing, m));
    if (z3.seconds.has_value()) {
      std::printf(" %11.0f %8.1f\n", per_application(*z3.seconds, m), *z3.seconds / lumo.seconds);
    } else {
      std::printf(" %11s %8s\n", z3.failure.c_str(), "");
    }
    std::fflush(stdout);
  }
}

}  // namespace
}  // namespace lumo::bench

int main(int argc, char** argv)
{
  const std::size_t most = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000;
  const auto limit = static_cast<unsigned>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 20);
  lumo::bench::print_heading();
  const std::vector<std::string> chosen(argv + std::min(argc, 3), argv + argc);
  for (const lumo::bench::Shape& shape : lumo::bench::kShapes) {
    const bool is_chosen = std::find(chosen.begin(), chosen.end(), shape.name) != chosen.end();
    if (chosen.empty() || is_chosen) lumo::bench::run_shape(shape, most, limit);
  }
  return 0;
}
