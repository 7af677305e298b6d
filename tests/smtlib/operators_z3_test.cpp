// The terms that the reader makes for each operator of the language, judged by Z3's parser and simplifier.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/smtlib/z3_judge.h"
#include "tests/support/numbered.h"

namespace lumo::test {
namespace {

// a, b, c are bit-vectors of one width, p, q, r Booleans; W stands for the width, and M for the width - 1.
constexpr std::string_view kTerms[] = {
    "(not p)",
    "(and p)",
    "(and p q)",
    "(and p q r)",
    "(or p)",
    "(or p q)",
    "(or p q r)",
    "(xor p q)",
    "(xor p q r)",
    "(=> p q)",
    "(=> p q r)",
    "(= p q)",
    "(= p q r)",
    "(distinct p q)",
    "(distinct p q r)",
    "(ite p q r)",
    "(ite p a b)",
    "(= a b)",
    "(= a b c)",
    "(distinct a b)",
    "(distinct a b c)",
    "(bvnot a)",
    "(bvneg a)",
    "(bvand a b)",
    "(bvand a b c)",
    "(bvor a b)",
    "(bvor a b c)",
    "(bvxor a b)",
    "(bvxor a b c)",
    "(bvnand a b)",
    "(bvnor a b)",
    "(bvxnor a b)",
    "(bvxnor a b c)",
    "(bvadd a b)",
    "(bvadd a b c)",
    "(bvsub a b)",
    "(bvmul a b)",
    "(bvmul a b c)",
    "(bvudiv a b)",
    "(bvudiv a (_ bv0 W))",
    "(bvurem a b)",
    "(bvurem a (_ bv0 W))",
    "(bvsdiv a b)",
    "(bvsdiv a (_ bv0 W))",
    "(bvsrem a b)",
    "(bvsrem a (_ bv0 W))",
    "(bvsmod a b)",
    "(bvsmod a (_ bv0 W))",
    "(bvshl a b)",
    "(bvlshr a b)",
    "(bvashr a b)",
    "(bvult a b)",
    "(bvule a b)",
    "(bvugt a b)",
    "(bvuge a b)",
    "(bvslt a b)",
    "(bvsle a b)",
    "(bvsgt a b)",
    "(bvsge a b)",
    "(bvcomp a b)",
    "(concat a b)",
    "(concat a b c)",
    "((_ extract M 0) a)",
    "((_ extract M M) a)",
    "((_ extract 0 0) a)",
    "((_ repeat 1) a)",
    "((_ repeat 2) a)",
    "((_ repeat 7) a)",
    "((_ zero_extend 0) a)",
    "((_ zero_extend 5) a)",
    "((_ sign_extend 0) a)",
    "((_ sign_extend 5) a)",
    "((_ rotate_left 0) a)",
    "((_ rotate_left 1) a)",
    "((_ rotate_left 67) a)",
    "((_ rotate_right 0) a)",
    "((_ rotate_right 1) a)",
    "((_ rotate_right 67) a)",
    "((as bvnot (_ BitVec W)) (as a (_ BitVec W)))",
    "(let ((a b) (b a)) (bvsub a b))",
    "(! (bvsub a b) :named t)",
};

std::string replace_all(std::string text, std::string_view from, const std::string& to)
{
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

std::string declare_constants(unsigned long width)
{
  std::string text;
  for (const char* name : {"a", "b", "c"}) {
    text += std::string("(declare-const ") + name + numbered(" (_ BitVec ", width) + "))\n";
  }
  return text + "(declare-fun p () Bool)(declare-fun q () Bool)(declare-fun r () Bool)\n";
}

class Operators : public testing::TestWithParam<std::string_view>
{};

TEST_P(Operators, MeanWhatTheyMeanToZ3)
{
  Random random;
  SCOPED_TRACE(random);
  for (const unsigned long width : {1UL, 2UL, 3UL, 8UL, 63UL, 64UL, 65UL}) {
    std::string term = replace_all(std::string(GetParam()), "W", std::to_string(width));
    term = replace_all(term, "M", std::to_string(width - 1));
    Z3Judge judge(declare_constants(width) + "(define-fun t1 () Bool true)(assert (= " + term + " " +
                  replace_all(term, ":named t", ":named u") + "))");
    for (int i = 0; i < 40; ++i)
      EXPECT_EQ(judge.find_difference(random), "");
  }
}

INSTANTIATE_TEST_SUITE_P(Language, Operators, testing::ValuesIn(kTerms),
                         [](const testing::TestParamInfo<std::string_view>& row) {
                           return numbered("Term", row.index);
                         });

/// Writes random nested terms, in which lets and defined functions occur too.
class TextGenerator
{
 public:
  TextGenerator(Random& random, unsigned long width) : random_(random), width_(width) {}

  std::string make_vector(int depth)
  {
    static constexpr std::array<std::string_view, 14> kBinary = {
        "bvand",  "bvor",   "bvxor",  "bvxnor", "bvadd", "bvsub",  "bvmul",
        "bvudiv", "bvurem", "bvsdiv", "bvsmod", "bvshl", "bvashr", "g"};
    if (depth == 0) return random_.pick(std::array<std::string, 3>{"a", "b", "c"});
    switch (random_.index(5)) {
      case 0:
        return "(ite " + make_bool(depth - 1) + " " + make_vector(depth - 1) + " " + make_vector(depth - 1) +
               ")";
      case 1:
        return "(let ((a " + make_vector(depth - 1) + ") (b " + make_vector(depth - 1) + ")) " +
               make_vector(depth - 1) + ")";
      case 2:
        return numbered("((_ extract ", width_) + " 1) (concat #b1 " + make_vector(depth - 1) + "))";
      default:
        return "(" + std::string(random_.pick(kBinary)) + " " + make_vector(depth - 1) + " " +
               make_vector(depth - 1) + ")";
    }
  }
  std::string make_bool(int depth)
  {
    static constexpr std::array<std::string_view, 5> kAtoms = {"bvult", "bvsge", "=", "distinct", "bvsle"};
    static constexpr std::array<std::string_view, 5> kConnectives = {"and", "or", "xor", "=>", "="};
    if (depth == 0) return random_.pick(std::array<std::string, 3>{"p", "(f q)", "true"});
    if (random_.flip()) {
      return "(" + std::string(random_.pick(kAtoms)) + " " + make_vector(depth - 1) + " " +
             make_vector(depth - 1) + ")";
    }
    return "(" + std::string(random_.pick(kConnectives)) + " " + make_bool(depth - 1) + " " +
           make_bool(depth - 1) + " r)";
  }

 private:
  Random& random_;
  unsigned long width_;
};

TEST(Reader, GivesNestedTermsTheMeaningTheyHaveForZ3)
{
  Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 60; ++round) {
    const unsigned long width = random.pick(std::array<unsigned long, 5>{1, 2, 5, 32, 65});
    TextGenerator generator(random, width);
    const std::string sort = numbered("(_ BitVec ", width) + ")";
    std::string text = declare_constants(width);
    text += "(define-fun f ((x Bool)) Bool (not x))\n";
    text += "(define-fun g ((x " + sort + ") (y " + sort + ")) " + sort + " (bvsub y (bvmul x c)))\n";
    text += "(define-fun d () " + sort + " " + generator.make_vector(2) + ")\n";
    text += "(assert " + generator.make_bool(5) + ")\n";
    text += "(assert (= (bvadd d " + generator.make_vector(5) + ") d))\n";
    SCOPED_TRACE(text);
    Z3Judge judge(text);
    for (int i = 0; i < 10; ++i)
      EXPECT_EQ(judge.find_difference(random), "");
  }
}

}  // namespace
}  // namespace lumo::test
