// A small solver that tries all values uses elimination between its pushes and pops: it has fewer constants to try.

#include <iostream>
#include <optional>
#include <vector>

#include "lumo/elimination/extend.h"
#include "lumo/elimination/incremental.h"
#include "lumo/terms/term_walk.h"

namespace {

using lumo::IncrementalEliminator;
using lumo::ModelStore;
using lumo::Term;
using lumo::TermManager;

constexpr unsigned long kWidth = 4;

class Solver
{
 public:
  explicit Solver(TermManager& mgr) : mgr_(mgr), eliminator_(mgr), told_(1) {}

  void push() { eliminator_.push(); }
  void pop() { eliminator_.pop(); }
  void add_assertion(const Term* t) { eliminator_.add_assertion(t); }

  /// A model of all assertions, or none if there is none.
  std::optional<ModelStore> solve()
  {
    // What belonged to levels that were popped is gone; other levels grow.
    told_.resize(eliminator_.get_num_levels() + 1);
    for (const IncrementalEliminator::Addition& addition : eliminator_.query().additions)
      told_[addition.level].push_back(addition.term);
    std::vector<const Term*> all;
    for (const std::vector<const Term*>& level : told_)
      all.insert(all.end(), level.begin(), level.end());

    const std::vector<const Term*> constants = lumo::collect_constants(all);
    std::cout << constants.size() << " constants to try: ";
    for (unsigned long bits = 0; bits < 1UL << (kWidth * constants.size()); ++bits) {
      ModelStore model = make_model(constants, bits);
      if (lumo::find_violated(mgr_, all, model) != all.size()) continue;
      eliminator_.extend(model);
      return model;
    }
    return std::nullopt;
  }
  /// Whether the model makes all assertions true.
  bool check(ModelStore& model)
  {
    const auto assertions = eliminator_.get_assertions();
    return lumo::find_violated(mgr_, assertions, model) == assertions.size();
  }

 private:
  /// The constants have the digits of a number as values; a Boolean is true for odd ones.
  ModelStore make_model(const std::vector<const Term*>& constants, unsigned long bits)
  {
    ModelStore model(&mgr_);
    for (const Term* constant : constants) {
      const unsigned long digit = bits & ((1UL << kWidth) - 1);
      model.set_value(constant, lumo::QNumber(constant->get_sort()->is_bool() ? digit & 1UL : digit));
      bits >>= kWidth;
    }
    return model;
  }

  TermManager& mgr_;
  IncrementalEliminator eliminator_;
  std::vector<std::vector<const Term*>> told_;  ///< by level
};

void ask(Solver& solver, const std::vector<const Term*>& constants)
{
  std::optional<ModelStore> model = solver.solve();
  if (!model.has_value()) {
    std::cout << "unsat\n";
    return;
  }
  std::cout << "sat,";
  for (const Term* constant : constants)
    std::cout << ' ' << constant->get_symbol()->get_name() << " = "
              << model->get_value(constant)->get_symbol()->get_name();
  std::cout << (solver.check(*model) ? ", checked\n" : ", wrong\n");
}

}  // namespace

int main()
{
  TermManager mgr;
  const lumo::DataType* sort = mgr.make_bv_type(kWidth);
  const Term* a = mgr.make_constant("a", sort);
  const Term* x = mgr.make_constant("x", sort);
  const Term* y = mgr.make_constant("y", sort);
  const auto apply = [&mgr](const lumo::Symbol* s, const Term* lhs, const Term* rhs) {
    return mgr.make_term(s, {lhs, rhs});
  };
  const Term* square = apply(mgr.make_bv_mul_symbol(kWidth), a, a);
  const Term* sum = apply(mgr.make_bv_add_symbol(kWidth), x, y);

  Solver solver(mgr);
  solver.add_assertion(apply(mgr.make_bv_ult_symbol(kWidth), sum, square));  // x and y occur once
  ask(solver, {a, x, y});
  solver.push();
  solver.add_assertion(apply(mgr.make_bv_ult_symbol(kWidth), square, y));  // now y does not
  ask(solver, {a, x, y});
  solver.push();
  solver.add_assertion(apply(mgr.make_eq_symbol(sort), square, mgr.make_bv_number(2, kWidth)));
  ask(solver, {a, x, y});
  solver.pop();
  solver.pop();
  ask(solver, {a, x, y});
}
