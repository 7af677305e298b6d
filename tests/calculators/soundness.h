#ifndef LUMO_TESTS_CALCULATORS_SOUNDNESS_H
#define LUMO_TESTS_CALCULATORS_SOUNDNESS_H

#include "lumo/terms/fold.h"
#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// Whether all arguments are values or constants, no constant twice.
[[nodiscard]] inline bool has_distinct_constants(const TermManager& mgr, const Term* t)
{
  for (std::size_t i = 0; i < t->get_num_args(); ++i) {
    const Term* a = t->get_arg(i);
    if (a->get_num_args() != 0) return false;
    for (std::size_t j = 0; j < i; ++j) {
      if (t->get_arg(j) == a && !is_value(mgr, a)) return false;
    }
  }
  return true;
}

/// The cases that are unsound by design: extensions also give a value to a numeral, a one-bit argument whose
/// sign is extended takes 1 for 1, and an if-then-else treats true and false as free branches.
[[nodiscard]] inline bool is_known_exception(const TermManager& mgr, const Term* t)
{
  const Kind kind = t->get_symbol()->get_kind();
  const Term* first = t->get_arg(0);
  if (kind == Kind::kBvZeroExtend) return mgr.is_number(first->get_symbol(), nullptr);
  if (kind == Kind::kBvSignExtend) {
    return mgr.is_number(first->get_symbol(), nullptr) ||
           first->get_symbol()->get_output_type()->get_width() == 1;
  }
  return kind == Kind::kIte && t->get_symbol()->get_output_type()->is_bool() &&
         (is_value(mgr, t->get_arg(1)) || is_value(mgr, t->get_arg(2)));
}

}  // namespace lumo::test

#endif
