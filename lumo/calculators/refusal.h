#ifndef LUMO_CALCULATORS_REFUSAL_H
#define LUMO_CALCULATORS_REFUSAL_H

#include <string>

#include "lumo/terms/term_manager.h"

namespace lumo::adhoccalculator {

/// The result of a call that does not throw: the case is solved, or why it is refused. It has two words, and
/// allocates nothing until the text is requested.
class [[nodiscard]] Refusal
{
 public:
  /// The case is solved.
  constexpr Refusal() = default;
  /// The case is refused with a fixed text, a literal that ends in a null character.
  // NOLINTNEXTLINE(google-explicit-constructor): a calculator returns the text of its refusal
  constexpr Refusal(const char* text) : text_(text) {}
  /// The case needs a declared constant, and the symbol found in its place is not one.
  [[nodiscard]] static constexpr Refusal of_missing_constant(const Symbol* found)
  {
    Refusal refusal("expected constant, but ");
    refusal.found_ = found;
    return refusal;
  }

  /// Whether the case is refused.
  [[nodiscard]] constexpr explicit operator bool() const { return text_ != nullptr; }
  /// Whether it is refused because there is no declared constant: the only refusal that is thrown as a plain
  /// `Exception`.
  [[nodiscard]] constexpr bool is_missing_constant() const { return found_ != nullptr; }
  /// The text of the exception; empty if the case is solved. Precondition: the symbol that it names still exists.
  [[nodiscard]] std::string get_text() const;

  /// Throws the calculator's exception for this refusal: an `AdHocCalculator::error`, or a plain `Exception` if
  /// a constant is missing. Precondition: the case is refused.
  [[noreturn]] void raise() const;

 private:
  const char* text_ = nullptr;     ///< null if the case is solved
  const Symbol* found_ = nullptr;  ///< the symbol that is not a constant; null for every other refusal
};

}  // namespace lumo::adhoccalculator

#endif
