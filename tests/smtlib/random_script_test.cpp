// Random valid scripts have the same meaning for lumo and for Z3's parser.

#include "tests/smtlib/random_script.h"

#include <gtest/gtest.h>

#include "tests/smtlib/z3_judge.h"

namespace lumo::test {
namespace {

TEST(RandomScripts, MeanWhatTheyMeanToZ3)
{
  constexpr int kNumScripts = 2000;
  Random random;
  SCOPED_TRACE(random);
  for (int i = 0; i < kNumScripts; ++i) {
    const std::string text = make_random_script(random);
    SCOPED_TRACE(text);
    Z3Judge judge(text);
    for (int j = 0; j < 3; ++j)
      ASSERT_EQ(judge.find_difference(random), "");
  }
}

}  // namespace
}  // namespace lumo::test
