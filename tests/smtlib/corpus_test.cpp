// Files as solvers meet them: a folder of .smt2 files, which the environment variable LUMO_SMT2_FOLDER names
// or which lies beside the checkout. Without one there is nothing to test.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "smtlib/run_invert.h"
#include "smtlib/text_file.h"
#include "tests/smtlib/z3_judge.h"

namespace lumo::test {
namespace {

std::vector<std::string> list_files()
{
  const char* chosen = std::getenv("LUMO_SMT2_FOLDER");  // NOLINT(concurrency-mt-unsafe)
  const std::filesystem::path folder = chosen != nullptr
                                           ? std::filesystem::path(chosen)
                                           : std::filesystem::path(LUMO_SOURCE_DIR) / "../shared/data/real";
  std::vector<std::string> files;
  if (!std::filesystem::is_directory(folder)) return files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".smt2") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

TEST(Corpus, MeansWhatItMeansToZ3)
{
  const std::vector<std::string> files = list_files();
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
  const std::vector<std::string> files = list_files();
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
