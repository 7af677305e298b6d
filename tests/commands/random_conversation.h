#ifndef LUMO_TESTS_COMMANDS_RANDOM_CONVERSATION_H
#define LUMO_TESTS_COMMANDS_RANDOM_CONVERSATION_H

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace lumo::test {

/// Makes random conversations over constants of few names and small widths: declarations, assertions, levels, queries.
/// Names come again with other sorts when their levels are popped.
class RandomConversation
{
 public:
  explicit RandomConversation(Random& random) : random_(random) {}

  [[nodiscard]] std::string make(std::size_t num_commands);

 private:
  static constexpr unsigned kBool = 0;

  struct Constant
  {
    std::string name;
    unsigned width;  ///< or kBool
  };
  using Level = std::vector<Constant>;

  [[nodiscard]] std::size_t below(std::size_t bound)
  {
    return static_cast<std::size_t>(random_.bits() % bound);
  }
  [[nodiscard]] const char* pick(const std::vector<const char*>& words) { return words[below(words.size())]; }
  [[nodiscard]] std::string make_sort(unsigned width) const;
  [[nodiscard]] std::string make_leaf(unsigned width);
  [[nodiscard]] std::string make_term(unsigned width, unsigned depth);
  [[nodiscard]] std::string make_formula(unsigned depth);
  [[nodiscard]] std::string make_command();
  [[nodiscard]] std::string make_declaration();
  [[nodiscard]] std::string make_pop();
  [[nodiscard]] std::string make_query_assuming();

  Random& random_;
  std::vector<Level> levels_;
};

}  // namespace lumo::test

#endif
