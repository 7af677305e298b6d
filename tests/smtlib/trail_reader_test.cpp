#include "lumo/smtlib/trail_reader.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/trail_printer.h"
#include "tests/support/notation.h"

namespace lumo::smtlib {
namespace {

using test::parse_term;

class TrailReader : public testing::Test
{
 protected:
  static constexpr std::string_view kDeclarations =
      "(declare-fun x8 () (_ BitVec 8))(declare-fun y8 () (_ BitVec 8))(declare-const p Bool)\n";

  Trail read(std::string_view text) { return read_trail(mgr_, constants_, text); }
  /// The message about a text whose first line declares the constants
  std::string read_refusal(std::string_view text)
  {
    return read_refusal_of_all(std::string(kDeclarations) + std::string(text));
  }
  std::string read_refusal_of_all(std::string_view text)
  {
    try {
      read(text);
    } catch (const InputError& e) {
      return make_located_message("f", e);
    }
    return "(not refused)";
  }

  TermManager mgr_;
  std::vector<const Term*> constants_ = {parse_term(mgr_, "x8"), parse_term(mgr_, "y8"),
                                         parse_term(mgr_, "p")};
};

TEST_F(TrailReader, ReadsWhatAPersonHasWritten)
{
  const Trail trail = read(
      "(set-option :print-success false)(set-info :status unknown)(define-sort B () (_ BitVec 8))\n"
      "(declare-const p Bool)(declare-const y8 B)(declare-fun x8 () B)(set-info :lumo-steps u)\n"
      "(define-fun f ((a B)) B (bvand a #x0f))(set-info :lumo-step \" |b u| |p| ; the last\")\n"
      "(define-const part B (bvneg (f y8)))(define-fun a () B (let ((b (bvnot part))) (bvadd b x8)))\n"
      "(set-info :lumo-step \"|a| x8\" ; the first\n)(define-fun |b u| () Bool (ite p (= a #x05) false))\n"
      "(assert |b u|)(assert p)(check-sat)(exit)(assert false)");
  const DataType* byte = mgr_.make_bv_type(8);
  ASSERT_EQ(trail.steps.size(), 2U);
  EXPECT_EQ(trail.steps[0].constant, mgr_.make_constant("b u", mgr_.make_bool_type()));
  const Term* a = mgr_.make_constant("a", byte);
  const Term* equation = mgr_.make_term(mgr_.make_eq_symbol(byte), {a, mgr_.make_bv_number(5, 8)});
  EXPECT_EQ(trail.steps[0].application, mgr_.make_term(mgr_.make_ite_symbol(mgr_.make_bool_type()),
                                                       {constants_[2], equation, mgr_.make_false()}));
  EXPECT_EQ(trail.steps[0].free, FreeArguments(0b001));
  EXPECT_EQ(trail.steps[1].constant, a);
  EXPECT_EQ(trail.steps[1].application, parse_term(mgr_, "(bvadd (bvnot (bvneg (bvand y8 #x0f))) x8)"));
  EXPECT_EQ(trail.steps[1].free, FreeArguments(0b010));
  EXPECT_EQ(trail.facts, (std::vector<const Term*>{trail.steps[0].constant, constants_[2]}));
}

TEST_F(TrailReader, ReadsTheTrailWithoutSteps)
{
  const Trail trail = read(kDeclarations);
  EXPECT_TRUE(trail.steps.empty());
  EXPECT_TRUE(trail.facts.empty());
  EXPECT_TRUE(read_trail(mgr_, {}, "").steps.empty());
}

TEST_F(TrailReader, RefusesTrailsOfOtherScripts)
{
  EXPECT_EQ(read_refusal("(declare-fun q () Bool)"),
            "f:2:14: the symbol q is declared here, but not in the script, so the trail belongs to another "
            "script");
  EXPECT_EQ(read_refusal_of_all("(declare-fun x8 () Bool)"),
            "f:1:14: the constant x8 was declared with sort (_ BitVec 8), but sort Bool was given");
  EXPECT_EQ(read_refusal_of_all("\n(declare-fun x8 () (_ BitVec 8))\n(declare-fun p () Bool)"),
            "f:1:1: the constant y8 is declared in the script, but not in the trail, so the trail belongs to "
            "another script");
  EXPECT_EQ(read_refusal_of_all("(define-fun x8 () Bool true)"),
            "f:1:1: the constant x8 is declared in the script, but not in the trail, so the trail belongs to "
            "another script");
}

TEST_F(TrailReader, RefusesWhatIsNoStep)
{
  struct Row
  {
    std::string_view text;
    std::string_view message;
  };
  const std::vector<Row> rows = {
      {"(set-info :lumo-step (u x8))",
       "f:2:22: an opening parenthesis was found, but a string with the names of a step was expected"},
      {"(set-info :lumo-step)",
       "f:2:21: a closing parenthesis was found, but a string with the names of a step was expected"},
      {"(set-info :lumo-step \"p\" \"p\")",
       "f:2:26: a string was found, but the end of the command was expected"},
      {"(set-info :lumo-step \"\")",
       "f:2:22: an empty string was found, but a step starts with the name of a definition"},
      {"(set-info :lumo-step \"p 5\")",
       "f:2:22: in a step, the numeral 5 was found, but the name of a constant was expected"},
      {"(set-info :lumo-step \"p\")",
       "f:2:22: the constant p was found, but a step starts with the name of a definition"},
      {"(set-info :lumo-step \"u\")",
       "f:2:22: the symbol u was found in a step, but it is neither declared nor defined"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u let\")",
       "f:2:52: in a step, the reserved word let was found, but the name of a constant was expected"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u |p\")",
       "f:2:52: in a step, a symbol starts here, but the text ends before its closing bar"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u q\")",
       "f:2:52: the symbol q was found in a step, but it is neither declared nor defined"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u p\")(set-info :lumo-step \"u\")",
       "f:2:79: a second step of the constant u was found, but only one was expected"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u p p\")",
       "f:2:52: the constant p was found as a free argument for the second time, but a constant is free in "
       "one step only"},
      {"(define-fun u () Bool (not p))(define-fun v () Bool (not p))\n(set-info :lumo-step \"u p\")\n"
       "(set-info :lumo-step \"v p\")",
       "f:4:22: the constant p was found as a free argument for the second time, but a constant is free in "
       "one step only"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u x8\")",
       "f:2:52: the constant x8 was found as a free argument of u, but its definition has it not as an "
       "argument"},
      {"(define-fun u () Bool (and p p))(set-info :lumo-step \"u p\")",
       "f:2:54: the constant p was found as a free argument of u, but its definition has it as several "
       "arguments"},
      {"(define-fun v () Bool (not p))(define-fun u () Bool (not v))(set-info :lumo-step \"u v\")",
       "f:2:82: the constant v was found as a free argument of u, but its definition has it not as an "
       "argument"},
      {"(define-fun u () Bool (not (not p)))(set-info :lumo-step \"u p\")",
       "f:2:58: the constant p was found as a free argument of u, but its definition has it not as an "
       "argument"},
      {"(define-fun u () Bool (not p))(set-info :lumo-step \"u p x8 y8 u\")",
       "f:2:52: the constant x8 was found as a free argument of u, but its definition has it not as an "
       "argument"},
      {"(define-fun u () Bool p)(set-info :lumo-step \"u p\")",
       "f:2:13: the definition of u is the term p, but a step needs the application of an operator"},
      {"(define-fun u () (_ BitVec 8) #x05)(set-info :lumo-step \"u\")",
       "f:2:13: the definition of u is the term #x05, but a step needs the application of an operator"},
      {"(define-fun u () Bool (not u))(set-info :lumo-step \"u\")", "f:2:28: the symbol u is not declared"},
      {"(assert (not p))",
       "f:2:1: an assertion of the term not was found, but a trail asserts only constants"},
      {"(assert true)", "f:2:1: an assertion of the term true was found, but a trail asserts only constants"},
      {"(define-fun p () Bool true)", "f:2:13: the symbol p is declared here, but it has a meaning already"},
      {"(define-fun u () Bool (not v))(define-fun v () Bool (not p))",
       "f:2:28: the symbol v is not declared"},
      {"(define-fun u () Bool", "f:2:1: a parenthesis opens here, but the text ends before it is closed"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(read_refusal(row.text), row.message) << row.text;
}

TEST_F(TrailReader, RefusesFreshConstantsThatAreTaken)
{
  mgr_.make_constant("u", mgr_.make_bv_type(8));
  EXPECT_EQ(read_refusal("(define-fun u () Bool (not p))(set-info :lumo-step \"u p\")"),
            "f:2:13: the constant u was declared with sort (_ BitVec 8), but sort Bool was given");
}

}  // namespace
}  // namespace lumo::smtlib
