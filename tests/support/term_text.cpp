#include "tests/support/term_text.h"

#include "lumo/smtlib/symbol_text.h"

namespace lumo::test {

std::string make_term_text(const Term* t)
{
  const Symbol* s = t->get_symbol();
  if (s->get_kind() == Kind::kConstant) return smtlib::make_symbol_text(s->get_name());
  if (t->get_num_args() == 0) return s->get_name();
  std::string text = "(" + s->get_name();
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    text += " " + make_term_text(t->get_arg(i));
  return text + ")";
}

}  // namespace lumo::test
