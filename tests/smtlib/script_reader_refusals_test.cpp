// Every text that is refused, with the place and the sentence.

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_reader.h"

namespace lumo::smtlib {
namespace {

struct RefusalRow
{
  std::string text;
  std::string_view message;
};

std::string get_message(std::string_view text)
{
  TermManager mgr;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  std::string message = "(not refused)";
  try {
    (void)read_script(mgr, text);
  } catch (const InputError& e) {
    message = make_located_message("f", e);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  return message;
}

void expect_messages(const std::vector<RefusalRow>& rows)
{
  for (const RefusalRow& row : rows)
    EXPECT_EQ(get_message(row.text), row.message) << row.text;
}

TEST(ReaderRefuses, TextThatIsNoScript)
{
  expect_messages({
      {"x", "f:1:1: the symbol x was found, but a command in parentheses was expected"},
      {"(assert true))",
       "f:1:14: a closing parenthesis was found, but a command in parentheses was expected"},
      {"()", "f:1:2: a closing parenthesis was found, but the name of a command was expected"},
      {"\n (assert (not true)", "f:2:2: a parenthesis opens here, but the text ends before it is closed"},
      {"(check-sat", "f:1:11: the end of the text was found, but the end of the command was expected"},
      {"(assert true) ; \xc3\xa9 is fine\n\xc3\xa9",
       "f:2:1: the byte 0xc3 was found, but a symbol, a literal or a parenthesis was expected"},
      {std::string("; a\n(assert true) ; \0", 21), "f:2:17: the byte 0x00 was found, but text was expected"},
      {"(assert)", "f:1:1: a command without a term was found, but one was expected"},
      {"(assert true true)", "f:1:14: the symbol true was found, but a single term was expected"},
      {"(define-fun x () Bool)", "f:1:1: a command without a term was found, but one was expected"},
      {"(define-fun x () Bool true true)",
       "f:1:28: the symbol true was found, but a single term was expected"},
  });
}

TEST(ReaderRefuses, CommandsBeyondOneQuery)
{
  const std::string expected =
      " was found, but only declarations, definitions, assertions and one check-sat were expected";
  for (const std::string command :
       {"push", "pop", "reset", "reset-assertions", "check-sat-assuming", "declare-sort", "declare-datatypes",
        "declare-datatype", "define-fun-rec", "define-funs-rec", "minimize", "simplify", "frobnicate"})
  {
    EXPECT_EQ(get_message("\n(" + command + " 1)"), "f:2:1: the command " + command + expected);
  }
  expect_messages({
      {"(check-sat)\n(check-sat)", "f:2:1: a second check-sat was found, but only one was expected"},
      {"(check-sat)\n(assert true)",
       "f:2:1: an assertion was found after check-sat, but all were expected before it"},
  });
}

TEST(ReaderRefuses, NamesAndSorts)
{
  expect_messages({
      {"(declare-const x Int)",
       "f:1:18: the symbol Int was found, but the sort Bool or (_ BitVec w) was expected"},
      {"(declare-fun a () (Array Bool Bool))",
       "f:1:20: the symbol Array was found, but the sort Bool or (_ BitVec w) was expected"},
      {"(declare-const x (_ FloatingPoint 8 24))",
       "f:1:21: the symbol FloatingPoint was found, but the sort Bool or (_ BitVec w) was expected"},
      {"(declare-const x (_ BitVec 0))",
       "f:1:28: the numeral 0 was found, but a width from 1 to 4294967295 was expected"},
      {"(declare-const x (_ BitVec 99999999999999999999))",
       "f:1:28: the numeral 99999999999999999999 was found, but a width from 1 to 4294967295 was expected"},
      {"(declare-const x (_ BitVec n))",
       "f:1:28: the symbol n was found, but a numeral as the width was expected"},
      {"(declare-fun f (Bool) Bool)",
       "f:1:14: the symbol f is declared with arguments, but only constants, without arguments, were "
       "expected"},
      {"(declare-const let Bool)", "f:1:16: the reserved word let was found, but a name was expected"},
      {"(declare-const 5 Bool)", "f:1:16: the numeral 5 was found, but a name was expected"},
      {"(declare-const 2.5 Bool)", "f:1:16: the decimal 2.5 was found, but a name was expected"},
      {"(declare-const :key Bool)", "f:1:16: the keyword :key was found, but a name was expected"},
      {"(declare-const bvadd Bool)",
       "f:1:16: the symbol bvadd is declared here, but the language defines it"},
      {"(declare-const true Bool)", "f:1:16: the symbol true is declared here, but the language defines it"},
      {"(declare-const x Bool)\n(declare-const |x| (_ BitVec 2))",
       "f:2:16: the symbol |x| is declared here, but it has a meaning already"},
      {"(define-sort B (X) Bool)",
       "f:1:17: the symbol X was found, but a sort definition without parameters was expected"},
      {"(define-sort Bool () (_ BitVec 1))",
       "f:1:14: the symbol Bool is defined here, but it is a sort already"},
      {"(define-fun f ((x Int)) Bool true)",
       "f:1:19: the symbol Int was found, but the sort Bool or (_ BitVec w) was expected"},
  });
}

TEST(ReaderRefuses, TermsOfOtherTheories)
{
  expect_messages({
      {"\n(assert (= 1 2))",
       "f:2:1: the sort Int was found, but only Booleans and bit-vectors were expected"},
      {"(assert (forall ((y Bool)) y))",
       "f:1:1: a quantifier was found, but only Booleans and bit-vectors were expected"},
      {"(declare-const x (_ BitVec 2))\n (assert (= (bv2nat x) 1))",
       "f:2:2: the sort Int was found, but only Booleans and bit-vectors were expected"},
      {"(declare-const x (_ BitVec 2))\n(assert (= #b1 (bvredor x)))",
       "f:2:1: the operator bvredor was found, but only Booleans and bit-vectors were expected"},
      {"(assert (= re.none re.all))",
       "f:1:1: the symbol re.all was found, but only Booleans and bit-vectors were expected"},
      {"(define-fun x () Bool x)",
       "f:1:1: the definition of x contains the name itself, but only names defined before were expected"},
  });
}

// The sentences are Z3's own, the places those of the text.
TEST(ReaderRefuses, MistakesWithinTerms)
{
  expect_messages({
      {"(assert y)", "f:1:9: unknown constant y"},
      {"(declare-const x Bool) (assert\n  (and x\n   y))", "f:3:4: unknown constant y"},
      {"(check-sat) (define-fun x () Bool (not y))", "f:1:40: unknown constant y"},
      {"(assert #b1)", "f:1:12: invalid assert command, term is not Boolean"},
      {"(define-fun x () Bool #b1)", "f:1:26: Sorts Bool and (_ BitVec 1) are incompatible"},
      {"(define-fun f ((a Bool)) Bool #b1)", "f:1:34: invalid function/constant definition, sort mismatch"},
      {"(declare-const x (_ BitVec 2))(assert (bvult x #b111))",
       "f:1:53: Argument #b111 at position 1 does not match declaration (declare-fun bvult ((_ BitVec 2) (_ "
       "BitVec 2)) Bool)"},
      {"(assert (distinct true))", "f:1:1: distinct was given 1 argument, but 2 to 2000 were expected"},
      {"(assert (= ((_ extract 1 0) #b1) #b11))", "f:1:32: invalid extract application"},
  });
}

TEST(ReaderRefuses, LongListsOfDistinctTerms)
{
  std::string terms;
  for (int i = 0; i < 2001; ++i)
    terms += " #b1";
  EXPECT_EQ(get_message("(assert (distinct" + terms + "))"),
            "f:1:1: distinct was given 2001 arguments, but 2 to 2000 were expected");
}

TEST(ReaderRefuses, WithoutMakingTheManagerUnusable)
{
  TermManager mgr;
  EXPECT_THROW((void)read_script(mgr, "(declare-const x Bool)(assert (and x y))"), InputError);
  const Script script = read_script(mgr, "(declare-const x Bool)(declare-const y Bool)(assert (and x y))");
  EXPECT_EQ(script.assertions.size(), 1U);
}

}  // namespace
}  // namespace lumo::smtlib
