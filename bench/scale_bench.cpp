// How time and memory grow with the size of a problem. The figures are for each item, so each should stay about the
// same for all sizes, except for the effects of memory caches.
//
//   scale_bench [MOST-ITEMS [MOST-ITEMS-OF-TEXT [MOST-BITS]]]
//
// Times are the processor's; bytes are those of the heap, GMP's included.
// - graphs: ns and bytes for each application of a chain, a graph of shared terms, and others
// - leaves: ns and bytes to declare constants, to find them by their names, to make fresh ones, and numerals
// - texts: ns to print and to read each application, or each constant with a name between bars
// - widths: ns for each bit of a call of a calculator and of the operator's value; products, and the inverse
//   of a factor, are known to take more than linear time

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/calculator_cases.h"
#include "bench/heap_meter.h"
#include "bench/processor_time.h"
#include "bench/shapes.h"
#include "lumo/calculators/calculator_table.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "lumo/numbers/bvnumber.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/fold.h"

namespace lumo::bench {
namespace {

[[noreturn]] void stop(const std::string& why)
{
  std::fprintf(stderr, "scale_bench: %s\n", why.c_str());
  std::exit(1);
}

struct Cost
{
  double seconds = 0;
  std::size_t bytes = 0;  ///< at the peak, without those at the start
};

Cost measure(const std::function<void()>& action)
{
  reset_peak_heap_bytes();
  const std::size_t before = get_heap_bytes();
  const double start = now();
  action();
  return {now() - start, get_peak_heap_bytes() - before};
}

void print_cost(const Cost& cost, std::size_t num_items)
{
  const auto n = static_cast<double>(num_items);
  std::printf(" %8.1f %8.1f", cost.seconds * 1e9 / n, static_cast<double>(cost.bytes) / n);
}

void print_heading(const char* name, const std::vector<const char*>& phases)
{
  std::printf("\n%-12s %9s", name, "n");
  for (const char* phase : phases)
    std::printf(" %14s ns     B", phase);
  std::printf("\n");
}

void end_row()
{
  std::printf("\n");
  std::fflush(stdout);
}

constexpr std::size_t kFewest = 1000;

// -----------------------------------------------------------------------------------------------------------
// Graphs

/// A chain of n doublings, a tree of 2^n leaves, of which nothing can be eliminated.
Formula make_doubling(TermManager& mgr, std::size_t n)
{
  constexpr unsigned long kWidth = 32;
  const DataType* type = mgr.make_bv_type(kWidth);
  Formula formula;
  formula.constants.push_back(mgr.make_constant("x", type));
  const Term* t = formula.constants[0];
  for (std::size_t i = 1; i < n; ++i)
    t = mgr.make_term(mgr.make_bv_add_symbol(kWidth), {t, t});
  formula.assertions.push_back(mgr.make_term(mgr.make_eq_symbol(type), {t, mgr.make_bv_number(0, kWidth)}));
  return formula;
}

/// One term with n uses, in n assertions, none of which can be eliminated.
Formula make_fan(TermManager& mgr, std::size_t n)
{
  constexpr unsigned long kWidth = 32;
  const DataType* type = mgr.make_bv_type(kWidth);
  Formula formula;
  formula.constants.push_back(mgr.make_constant("x", type));
  const Term* x = formula.constants[0];
  const Term* square = mgr.make_term(mgr.make_bv_mul_symbol(kWidth), {x, x});
  for (std::size_t i = 0; i < n; ++i)
    formula.assertions.push_back(
        mgr.make_term(mgr.make_bv_ule_symbol(kWidth), {square, mgr.make_bv_number(i, kWidth)}));
  return formula;
}

constexpr Shape kGraphs[] = {
    {"chain", make_deep}, {"spine", make_spine},       {"shared", make_shared}, {"link", make_link},
    {"wide", make_wide},  {"doubling", make_doubling}, {"fan", make_fan},
};

void run_graph(const Shape& shape, std::size_t n)
{
  TermManager mgr;
  Formula formula;
  Elimination elimination;
  ModelStore model(&mgr);  // the empty model is a model of the rest
  std::size_t violated = 0;
  const Cost costs[] = {
      measure([&] { formula = shape.make(mgr, n); }),
      measure([&] { elimination = eliminate(mgr, formula.assertions); }),
      measure([&] { extend(mgr, elimination.trail, model); }),
      measure([&] { violated = find_violated(mgr, formula.assertions, model); }),
  };
  if (violated != formula.assertions.size()) stop(std::string("the model of ") + shape.name + " is wrong");

  std::printf("%-12s %9zu", shape.name, n);
  for (const Cost& cost : costs)
    print_cost(cost, count_applications(formula));
  end_row();
}

void run_graphs(std::size_t most)
{
  print_heading("graph", {"build", "eliminate", "extend", "evaluate"});
  for (const Shape& shape : kGraphs) {
    for (std::size_t n = kFewest; n <= most; n *= 10)
      run_graph(shape, n);
  }
}

// -----------------------------------------------------------------------------------------------------------
// Leaves

/// A name that needs bars, with every printable character that it may contain
std::string make_name(std::size_t i)
{
  static const std::string kCharacters = [] {
    std::string all;
    for (char c = ' '; c <= '~'; ++c) {
      if (c != '|' && c != '\\') all += c;
    }
    return all;
  }();
  std::string name = kCharacters;
  return name += std::to_string(i);
}

void run_leaves(std::size_t most)
{
  print_heading("leaves", {"declare", "find", "fresh", "numeral"});
  constexpr unsigned long kWidth = 64;
  for (std::size_t n = kFewest; n <= most; n *= 10) {
    TermManager mgr;
    const DataType* type = mgr.make_bv_type(kWidth);
    const std::string prefix = "x";
    const auto declare = [&] {
      for (std::size_t i = 0; i < n; ++i)
        mgr.make_constant(prefix + std::to_string(i), type);
    };
    const Cost costs[] = {
        measure(declare),
        measure(declare),
        measure([&] {
          for (std::size_t i = 0; i < n; ++i)
            mgr.make_fresh_constant(prefix, type);
        }),
        measure([&] {
          for (std::size_t i = 0; i < n; ++i)
            mgr.make_bv_number(i, kWidth);
        }),
    };
    std::printf("%-12s %9zu", "", n);
    for (const Cost& cost : costs)
      print_cost(cost, n);
    end_row();
  }
}

// -----------------------------------------------------------------------------------------------------------
// Texts

/// Constants with long names between bars, each used in an assertion of its own
Formula make_names(TermManager& mgr, std::size_t n)
{
  Formula formula;
  for (std::size_t i = 0; i < n; ++i) {
    formula.constants.push_back(mgr.make_constant(make_name(i), mgr.make_bool_type()));
    formula.assertions.push_back(mgr.make_term(mgr.make_not_symbol(), {formula.constants.back()}));
  }
  return formula;
}

constexpr Shape kTexts[] = {
    {"chain", make_deep},        {"shared", make_shared}, {"wide", make_wide},
    {"doubling", make_doubling}, {"fan", make_fan},       {"names", make_names},
};

void run_text(const Shape& shape, std::size_t n)
{
  std::string text;
  Cost print_cost_of_text;
  std::size_t num_applications = 0;
  {
    TermManager mgr;
    const Formula formula = shape.make(mgr, n);
    num_applications = count_applications(formula);
    print_cost_of_text = measure([&] {
      std::ostringstream out;
      smtlib::print_script(out, formula.constants, formula.assertions, false);
      text = std::move(out).str();
    });
  }
  TermManager mgr;
  smtlib::Script script;
  const Cost read_cost = measure([&] { script = smtlib::read_script(mgr, text); });
  if (script.assertions.empty()) stop("the text says nothing");

  std::printf("%-12s %9zu", shape.name, n);
  print_cost(print_cost_of_text, num_applications);
  print_cost(read_cost, num_applications);
  end_row();
}

void run_texts(std::size_t most)
{
  print_heading("text", {"print", "read"});
  for (const Shape& shape : kTexts) {
    for (std::size_t n = kFewest; n <= most; n *= 10)
      run_text(shape, n);
  }
}

// -----------------------------------------------------------------------------------------------------------
// Widths

/// Seconds of one run of an action that is run for some milliseconds, the first run not counted.
double time_often(const std::function<void()>& action)
{
  constexpr double kLongEnough = 0.005;
  action();
  const double start = now();
  double end = start;
  std::size_t num_runs = 0;
  for (; end - start < kLongEnough; end = now()) {
    action();
    ++num_runs;
  }
  return (end - start) / static_cast<double>(num_runs);
}

bool has_truth_values_alone(const Term* t)
{
  return t->get_arg(0)->get_symbol()->get_output_type()->is_bool() && t->get_num_args() < 3;
}

double time_call(TermManager& mgr, const Term* t)
{
  const Symbol* s = t->get_symbol();
  const DataType* type = s->get_output_type();
  const bool is_extension = s->get_kind() == Kind::kBvZeroExtend || s->get_kind() == Kind::kBvSignExtend;
  unsigned long state = 11;
  const QNumber number =
      type->is_bool() || is_extension ? QNumber(1) : draw_pattern(type->get_width(), state);
  const Term* value = make_value(mgr, number, type);
  adhoccalculator::AdHocCalculator& calculator = *find_calculator(mgr, s);
  ModelStore::DefinitionStack defs;
  return time_often([&] {
    try {
      calculator(&mgr, t, value, defs);
    } catch (const Exception&) {
      if (!defs.empty()) stop("a refusal pushed something");
    }
    while (!defs.empty())
      defs.pop();
  });
}

double time_fold(const Term* t)
{
  unsigned long state = 13;
  std::vector<QNumber> numbers;
  for (std::size_t i = 0; i < t->get_num_args(); ++i) {
    const DataType* type = t->get_arg(i)->get_symbol()->get_output_type();
    numbers.push_back(type->is_bool() ? QNumber(1) : draw_pattern(type->get_width(), state));
  }
  std::vector<const QNumber*> args;
  args.reserve(numbers.size());
  for (const QNumber& number : numbers)
    args.push_back(&number);
  return time_often([&] {
    const QNumber result = fold(as_operator(t->get_symbol()), args.data());
    if (result.sign() < 0) stop("a value is negative");
  });
}

void run_case(const CalculatorCase& c, unsigned long most)
{
  // Quadratic beyond that: minutes at a million bits
  constexpr unsigned long kWidestInverse = 100'000;
  const bool has_inverse = std::string_view(c.name) == "bvmul/numeral";
  const unsigned long widest = has_inverse ? std::min(most, kWidestInverse) : most;
  std::string calls;
  std::string folds;
  for (unsigned long w = kFewest; w <= most; w *= 10) {
    char call[32] = "         -";
    char value[32] = "         -";
    TermManager mgr;
    const Term* t = c.make(mgr, w);
    if (has_truth_values_alone(t)) return;
    if (w <= widest)
      std::snprintf(call, sizeof call, " %9.4f", time_call(mgr, t) * 1e9 / static_cast<double>(w));
    std::snprintf(value, sizeof value, " %9.4f", time_fold(t) * 1e9 / static_cast<double>(w));
    calls += call;
    folds += value;
  }
  std::printf("%-20s%s   %s", c.name, calls.c_str(), folds.c_str());
  end_row();
}

void run_widths(unsigned long most)
{
  std::printf("\n%-20s", "ns per bit of");
  for (const char* what : {"call", "value"}) {
    for (unsigned long w = kFewest; w <= most; w *= 10)
      std::printf(" %9s",
                  (w == kFewest ? std::string(what) + " " : std::string()).append(std::to_string(w)).c_str());
    std::printf("   ");
  }
  std::printf("\n");
  for (const CalculatorCase& c : get_calculator_cases())
    run_case(c, most);
}

std::size_t read_limit(int argc, char** argv, int i, std::size_t otherwise)
{
  return argc > i ? std::strtoul(argv[i], nullptr, 10) : otherwise;
}

}  // namespace
}  // namespace lumo::bench

int main(int argc, char** argv)
{
  using lumo::bench::read_limit;
  lumo::bench::meter_gmp();
  lumo::bench::run_graphs(read_limit(argc, argv, 1, 1'000'000));
  lumo::bench::run_leaves(read_limit(argc, argv, 1, 1'000'000));
  lumo::bench::run_texts(read_limit(argc, argv, 2, 100'000));
  lumo::bench::run_widths(read_limit(argc, argv, 3, 1'000'000));
  return 0;
}
