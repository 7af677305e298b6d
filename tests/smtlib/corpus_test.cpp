// lumo and Z3's parser give the same meaning to files that solvers typically get: those that come with the tests
// and those of a folder next to the checkout.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/smtlib/z3_judge.h"
#include "tests/support/smt2_files.h"
#include "tests/support/text_file.h"

namespace lumo::test {
namespace {

/// The standard allows a name once in each let; but some files bind one twice.
bool binds_a_name_twice(const std::string& text)
{
  TermManager mgr;
  try {
    (void)smtlib::read_script(mgr, text);
  } catch (const smtlib::InputError& e) {
    return std::string(e.what()).find("is bound already in this let") != std::string::npos;
  }
  return false;
}

/// Compares the meaning of each file, and returns the number of files that are refused for a name that is bound
/// Whether the text has several queries, which one list of assertions cannot stand for.
bool has_several_queries(const std::string& text)
{
  TermManager mgr;
  try {
    (void)smtlib::read_script(mgr, text);
  } catch (const smtlib::SeveralQueries&) {
    return true;
  } catch (const smtlib::InputError&) {
    return false;
  }
  return false;
}

/// twice.
std::size_t compare_files(const std::vector<std::string>& files)
{
  Random random;
  SCOPED_TRACE(random);
  std::size_t num_refused = 0;
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    const std::string text = read_text_file(file);
    if (binds_a_name_twice(text)) {
      ++num_refused;
      continue;
    }
    Z3Judge judge(text);
    for (int i = 0; i < 5; ++i)
      EXPECT_EQ(judge.find_difference(random), "");
  }
  return num_refused;
}

TEST(Corpus, OfTheTestsMeansWhatItMeansToZ3)
{
  const std::vector<std::string> files = list_own_files();
  EXPECT_GT(files.size(), 70U);
  EXPECT_EQ(compare_files(files), 0U);
}

TEST(Corpus, OfExamplesMeansWhatItMeansToZ3)
{
  for (const char* folder : {"examples", "examples/solve"}) {
    const std::vector<std::string> files = list_smt2_files(std::string(LUMO_SOURCE_DIR "/") + folder);
    EXPECT_FALSE(files.empty());
    std::vector<std::string> single;
    for (const std::string& file : files) {
      if (!has_several_queries(read_text_file(file))) single.push_back(file);
    }
    EXPECT_LE(files.size() - single.size(), 1U) << "conversations have tests of their own";
    EXPECT_EQ(compare_files(single), 0U);
  }
}

TEST(Corpus, OfAForeignFolderMeansWhatItMeansToZ3)
{
  const std::vector<std::string> files = list_foreign_files();
  if (files.empty()) GTEST_SKIP() << "no folder of SMT-LIB 2 files";
  EXPECT_LE(compare_files(files), 2U);
}

}  // namespace
}  // namespace lumo::test
