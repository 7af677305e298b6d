// The reader of scripts on valid scripts that a generator of the tests makes from the input: Z3's parser must find
// the same meaning in them.

#include "fuzz/target.h"
#include "tests/smtlib/random_script.h"
#include "tests/smtlib/z3_judge.h"

namespace lumo::fuzz {

void run_input(const std::uint8_t* data, std::size_t size)
{
  test::Random random = test::Random::from_bytes(data, size);
  const std::string text = test::make_random_script(random);
  test::Z3Judge judge(text);
  const std::string difference = judge.find_difference(random);
  check(difference.empty(), [&] { return text + "\n" + difference; });
}

}  // namespace lumo::fuzz
