#ifndef LUMO_TESTS_CALCULATORS_REFERENCE_H
#define LUMO_TESTS_CALCULATORS_REFERENCE_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "lumo/terms/term_manager.h"
#include "tests/calculators/definition.h"

namespace lumo::test {

/// The required result of a call of a calculator: the definitions in their order, or a failure.
struct Outcome
{
  enum class Failure
  {
    kNone,
    kError,
    kPlainException
  };

  std::vector<Definition> definitions;
  Failure failure = Failure::kNone;
  std::string message;
};

/// The contract of the 32 calculators written a second time, for small widths and in machine words: solutions
/// of arithmetic are searched for or computed in signed integers, and terms are classified by how the test
/// made them. It shares no code with the calculators.
class Reference
{
 public:
  explicit Reference(TermManager* mgr) : mgr_(mgr) {}

  /// A numeral of at most 63 bits whose value the reference knows.
  const Term* make_number(std::uint64_t n, unsigned long w);
  [[nodiscard]] bool is_known_number(const Term* t) const { return numbers_.contains(t); }

  /// The required result of the calculator of t's operator for the value. All numerals in t, and the value if it is
  /// one, were made by make_number.
  Outcome expect(const Term* t, const Term* value);

 private:
  struct Call;

  void expect_boolean(Call& call);
  void expect_ite(Call& call);
  void expect_equality(Call& call, bool equal);
  void expect_bitwise(Call& call);
  void expect_xor(Call& call);
  void expect_structure(Call& call);
  void expect_arithmetic(Call& call);
  void expect_order(Call& call);

  TermManager* mgr_;
  std::unordered_map<const Term*, std::uint64_t> numbers_;
};

}  // namespace lumo::test

#endif
