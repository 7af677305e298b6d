#ifndef LUMO_SMTLIB_Z3_PARSER_H
#define LUMO_SMTLIB_Z3_PARSER_H

#include <cstddef>

#include "lumo/smtlib/rewritten_text.h"
#include "lumo/solvers/z3_session.h"

namespace lumo::smtlib {

/// The assertions of an SMT-LIB 2 text as Z3's parser gives them; they live as long as the object.
///
/// Z3 4.8 takes time quadratic in the depth of terms that nest in an argument other than the first and repeat
/// the arguments before it.
class ParsedText
{
 public:
  /// What Z3 does not accept is an InputError at the place of the original text that Z3 names.
  explicit ParsedText(const RewrittenText& text);
  ParsedText(const ParsedText&) = delete;
  ParsedText& operator=(const ParsedText&) = delete;
  ~ParsedText();

  [[nodiscard]] const solvers::Z3Session& get_session() const { return z3_; }
  [[nodiscard]] std::size_t get_num_assertions() const { return Z3_ast_vector_size(z3_, assertions_); }
  /// Assertion i, counted from 0.
  [[nodiscard]] Z3_ast get_assertion(std::size_t i) const
  {
    return Z3_ast_vector_get(z3_, assertions_, static_cast<unsigned>(i));
  }

 private:
  solvers::Z3Session z3_;
  Z3_ast_vector assertions_;
};

}  // namespace lumo::smtlib

#endif
