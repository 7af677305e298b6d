#ifndef LUMO_TESTS_PROOF_JUDGES_H
#define LUMO_TESTS_PROOF_JUDGES_H

#include <string>
#include <vector>

#include <z3++.h>

#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// Answers questions one by one, with Z3's API and the tests' own translation of terms.
class Z3Judge
{
 public:
  Z3Judge();

  /// The answer is unknown after about a minute of work.
  [[nodiscard]] solvers::Answer ask(const TermManager& mgr, const std::vector<const Term*>& assertions);

 private:
  z3::context z3_;
  z3::solver solver_{z3_, "QF_BV"};
};

/// Answers questions all at once, with the program cvc5 and the scripts that the library prints.
class Cvc5Judge
{
 public:
  [[nodiscard]] static bool is_installed();

  void add(const std::vector<const Term*>& assertions);
  /// The answers to all questions in their order, as the program prints them. An answer is unknown after a minute.
  [[nodiscard]] std::vector<std::string> ask() const;

 private:
  std::string script_;
};

}  // namespace lumo::test

#endif
