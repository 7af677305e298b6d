#ifndef LUMO_TESTS_ELIMINATION_ELIMINATION_JUDGE_H
#define LUMO_TESTS_ELIMINATION_ELIMINATION_JUDGE_H

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/terms/term_manager.h"

namespace lumo::test {

enum class Equivalence
{
  kSkipped,
  kAsked,  ///< by Z3; for narrow terms, since products make the question hard
};

/// Judges eliminations by Z3. One judge serves many formulas, of any managers.
class EliminationJudge
{
 public:
  EliminationJudge();

  /// Eliminates, and expects that
  /// - the trail's constants are new and distinct, and its free arguments are constants, each free only once;
  /// - Z3 has the same answer for the assertions and for the rest;
  /// - Z3's model of the rest extends to a model of the assertions, by lumo's evaluation and by Z3's;
  /// - the rest and the facts, with the steps' constants replaced by their applications, are equivalent to the
  /// assertions.
  void check(TermManager& mgr, const std::vector<const Term*>& assertions, Equivalence equivalence);

  /// Over all calls
  [[nodiscard]] std::size_t get_num_steps() const { return num_steps_; }
  [[nodiscard]] std::size_t get_num_sat() const { return num_sat_; }
  [[nodiscard]] std::size_t get_num_unsat() const { return num_unsat_; }
  /// The number of formulas for which Z3 took too long, so nothing was compared.
  [[nodiscard]] std::size_t get_num_unknown() const { return num_unknown_; }

  /// The number of formulas for which a second elimination eliminated something in the rest of the first one.
  [[nodiscard]] std::size_t get_num_unfinished() const { return num_unfinished_; }

 private:
  /// One formula with its results
  struct Question
  {
    TermManager& mgr;
    const std::vector<const Term*>& assertions;
    std::vector<const Term*> constants;
    Elimination elimination;
  };

  void check_trail(const Question& question);
  void count_unfinished(const Question& question);
  void check_answer(const Question& question);
  void check_model(const Question& question, const z3::expr& original);
  void check_equivalence(const Question& question);
  /// Whether the expression is satisfiable; if so, get_model() is valid until the next call.
  z3::check_result ask(const z3::expr& expression);

  z3::context z3_;
  z3::solver solver_;
  std::size_t num_steps_ = 0;
  std::size_t num_sat_ = 0;
  std::size_t num_unsat_ = 0;
  std::size_t num_unknown_ = 0;
  std::size_t num_unfinished_ = 0;
};

/// The formula, its rest and its trail, for a message.
[[nodiscard]] std::string describe(const std::vector<const Term*>& assertions,
                                   const Elimination& elimination);

}  // namespace lumo::test

#endif
