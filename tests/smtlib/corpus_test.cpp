// Files as solvers meet them, wherever they lie: without a folder of them there is nothing to test.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/smtlib/z3_judge.h"
#include "tests/support/smt2_files.h"
#include "tests/support/text_file.h"

namespace lumo::test {
namespace {

TEST(Corpus, MeansWhatItMeansToZ3)
{
  const std::vector<std::string> files = list_foreign_files();
  if (files.empty()) GTEST_SKIP() << "no folder of SMT-LIB 2 files";
  Random random;
  SCOPED_TRACE(random);
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    Z3Judge judge(read_text_file(file));
    for (int i = 0; i < 5; ++i)
      judge.compare_under_random_values(random);
  }
}

}  // namespace
}  // namespace lumo::test
