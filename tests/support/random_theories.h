#ifndef LUMO_TESTS_SUPPORT_RANDOM_THEORIES_H
#define LUMO_TESTS_SUPPORT_RANDOM_THEORIES_H

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace lumo::test {

/// Makes random scripts over Booleans, bit-vectors of 2 and 3 bits, arrays and functions of them, and a declared sort.
/// Many constants occur once, so that there is something to eliminate.
class RandomTheories
{
 public:
  explicit RandomTheories(Random& random) : random_(random) {}

  /// A whole script; `quantifies` allows quantifiers in it.
  [[nodiscard]] std::string make(std::size_t num_assertions, bool quantifies = false);

 private:
  enum Sort : unsigned
  {
    kBool,
    kTwo,
    kThree,
    kArray,
    kElement,
    kNumSorts
  };

  [[nodiscard]] std::size_t below(std::size_t bound)
  {
    return static_cast<std::size_t>(random_.bits() % bound);
  }
  [[nodiscard]] std::string make_constant(Sort sort);
  [[nodiscard]] std::string make_term(Sort sort, unsigned depth);
  [[nodiscard]] std::string make_bits(Sort sort, unsigned depth);
  [[nodiscard]] std::string make_truth(unsigned depth);
  [[nodiscard]] std::string apply(const std::string& head, const std::vector<Sort>& args, unsigned depth);

  Random& random_;
  bool quantifies_ = false;
  std::size_t num_constants_ = 0;
  std::string declarations_;
};

}  // namespace lumo::test

#endif
