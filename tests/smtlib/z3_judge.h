#ifndef LUMO_TESTS_SMTLIB_Z3_JUDGE_H
#define LUMO_TESTS_SMTLIB_Z3_JUDGE_H

#include <cstddef>
#include <string>
#include <vector>

#include <z3++.h>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/script_reader.h"
#include "tests/support/random.h"

namespace lumo::test {

/// Reads a text twice, with lumo's reader and with Z3 alone, and compares the meaning of the assertions.
class Z3Judge
{
 public:
  explicit Z3Judge(const std::string& text);

  /// Draws values for all declared constants, and returns the assertion for which the two values differ; empty
  /// if there is none. For an assertion `(= t u)` the values of t are compared.
  [[nodiscard]] std::string find_difference(Random& random);

 private:
  [[nodiscard]] z3::expr make_constant(const Term* constant);
  [[nodiscard]] z3::expr make_value(const Term* value);
  [[nodiscard]] std::string compare(std::size_t i, const z3::expr_vector& constants,
                                    const z3::expr_vector& values);

  TermManager mgr_;
  ModelStore model_;
  smtlib::Script script_;
  z3::context z3_;
  z3::expr_vector assertions_;
};

/// A random numeral, true or false of that sort.
[[nodiscard]] const Term* make_random_value(TermManager& mgr, const DataType* sort, Random& random);

}  // namespace lumo::test

#endif
