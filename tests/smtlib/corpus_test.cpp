// Files as solvers meet them, wherever they lie: without a folder of them there is nothing to test.

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "smtlib/run_invert.h"
#include "smtlib/text_file.h"
#include "tests/smtlib/smt2_files.h"
#include "tests/smtlib/z3_judge.h"

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
    Z3Judge judge(smtlib::read_file(file));
    for (int i = 0; i < 5; ++i)
      judge.compare_under_random_values(random);
  }
}

TEST(Corpus, CanBeInvertedOrIsRefusedPolitely)
{
  const std::vector<std::string> files = list_foreign_files();
  if (files.empty()) GTEST_SKIP() << "no folder of SMT-LIB 2 files";
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_NE(smtlib::run_invert({file}, in, out, err), smtlib::kFailed) << err.str();
  }
}

}  // namespace
}  // namespace lumo::test
