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

TEST(ReaderRefuses, TextThatIsNotAScript)
{
  expect_messages({
      {"x", "f:1:1: the symbol x was found, but a command in parentheses was expected"},
      {"(assert true))",
       "f:1:14: a closing parenthesis was found, but a command in parentheses was expected"},
      {"()", "f:1:2: a closing parenthesis was found, but the name of a command was expected"},
      {"(|assert| true)", "f:1:2: the symbol |assert| was found, but the name of a command was expected"},
      {"\n (assert (not true)", "f:2:2: a parenthesis opens here, but the text ends before it is closed"},
      {"(assert (let ((x true)", "f:1:23: the end of the text was found, but a binding was expected"},
      {"(check-sat", "f:1:1: a parenthesis opens here, but the text ends before it is closed"},
      {"(assert true) ; \xc3\xa9 is fine\n\xc3\xa9",
       "f:2:1: the byte 0xc3 was found, but a symbol, a literal or a parenthesis was expected"},
      {std::string("; a\0\n(assert true) \0", 20),
       "f:2:15: the byte 0x00 was found, but a symbol, a literal or a parenthesis was expected"},
      {"(assert)", "f:1:8: a closing parenthesis was found, but a term was expected"},
      {"(assert true true)", "f:1:14: the symbol true was found, but the end of the command was expected"},
      {"(assert ())", "f:1:10: a closing parenthesis was found, but an operator or a function was expected"},
      {"(define-fun x () Bool)", "f:1:22: a closing parenthesis was found, but a term was expected"},
      {"(define-fun x () Bool true true)",
       "f:1:28: the symbol true was found, but the end of the command was expected"},
  });
}

TEST(ReaderRefuses, CommandsBeyondOneQuery)
{
  const std::string expected =
      " was found, but only declarations, definitions, assertions and one check-sat were expected";
  for (const std::string command :
       {"reset", "reset-assertions", "check-sat-assuming", "declare-sort", "declare-datatypes",
        "declare-datatype", "define-fun-rec", "define-funs-rec", "minimize", "simplify", "frobnicate"})
  {
    EXPECT_EQ(get_message("\n(" + command + " 1)"), "f:2:1: the command " + command + expected);
  }
  EXPECT_EQ(get_message("(declare-cosnt x Bool)"),
            "f:1:1: the command declare-cosnt" + expected + "; perhaps declare-const was meant");
  EXPECT_EQ(get_message("(asert true)"),
            "f:1:1: the command asert" + expected + "; perhaps assert was meant");
  expect_messages({
      {"(check-sat)\n(check-sat)", "f:2:1: a second check-sat was found, but only one was expected"},
      {"(check-sat)\n(assert true)",
       "f:2:1: an assertion was found after check-sat, but all were expected before it"},
      {"(push 2)", "f:1:1: a push was found, but only one level around one check-sat was expected"},
      {"(push 1)(push 1)", "f:1:9: a push was found, but only one level around one check-sat was expected"},
      {"(check-sat)(push 1)",
       "f:1:12: a push was found, but only one level around one check-sat was expected"},
      {"(push 1)(pop 1)", "f:1:9: a pop was found before check-sat, but it was expected after it"},
      {"(check-sat)(pop 1)", "f:1:12: 1 level is popped, but 0 can be"},
      {"(push x)", "f:1:7: the symbol x was found, but a number of levels was expected"},
      {"(push 99999999999999999999999)",
       "f:1:7: the numeral 99999999999999999999999 was found, but at most 1000000 levels was expected"},
  });
}

TEST(ReaderRefuses, NamesAndSorts)
{
  expect_messages({
      {"(declare-const x Int)",
       "f:1:18: the symbol Int was found, but the sort Bool or (_ BitVec w) was expected"},
      {"(declare-const x Boole)",
       "f:1:18: the symbol Boole was found, but the sort Bool or (_ BitVec w) was expected; perhaps Bool was "
       "meant"},
      {"(declare-const x (_ bitvec 8))",
       "f:1:21: the symbol bitvec was found, but the sort Bool or (_ BitVec w) was expected; perhaps BitVec "
       "was "
       "meant"},
      {"(define-sort Word () (_ BitVec 8))\n(declare-const x (Wrod))",
       "f:2:19: the symbol Wrod was found, but the sort Bool or (_ BitVec w) was expected; perhaps Word was "
       "meant"},
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
      {"(assert (! true :named n))(declare-const n Bool)",
       "f:1:42: the symbol n is declared here, but it has a meaning already"},
      {"(define-sort Bool () (_ BitVec 1))",
       "f:1:14: the symbol Bool is defined here, but it is a sort already"},
      {"(define-sort S () Bool)(define-sort S () Bool)",
       "f:1:37: the symbol S is defined here, but it is a sort already"},
      {"(define-sort P (X Y X) X)", "f:1:21: the symbol X is a parameter already, but names must differ"},
      {"(define-sort P (X) X)(declare-const x P)",
       "f:1:39: the symbol P was found without arguments, but the sort takes 1"},
      {"(define-sort P (X) X)(declare-const x (P Bool Bool))",
       "f:1:39: a sort with 2 arguments was found, but it takes 1"},
      {"(define-fun f ((x Int)) Bool true)",
       "f:1:19: the symbol Int was found, but the sort Bool or (_ BitVec w) was expected"},
      {"(define-fun f ((x Bool) (y Bool) (x Bool)) Bool true)",
       "f:1:35: the symbol x is a parameter already, but names must differ"},
  });
}

TEST(ReaderRefuses, TermsOfOtherTheories)
{
  expect_messages({
      {"\n(assert (= 1 2))", "f:2:12: the numeral 1 was found, but a term was expected"},
      {"(assert (= 1.5 2))", "f:1:12: the decimal 1.5 was found, but a term was expected"},
      {"(assert (= \"a\" \"b\"))", "f:1:12: a string was found, but a term was expected"},
      {"(assert (forall ((y Bool)) y))",
       "f:1:10: forall was found, but only terms of Booleans and bit-vectors were expected"},
      {"(declare-const x (_ BitVec 2))\n (assert (= (ubv_to_int x) 1))",
       "f:2:14: the symbol ubv_to_int is not declared"},
      {"(declare-const x (_ BitVec 2))(assert (= #b1 ((_ to_fp 8 24) x)))",
       "f:1:50: the symbol to_fp is not declared"},
  });
}

TEST(ReaderRefuses, UnknownSymbolsWithTheNearestKnownOne)
{
  expect_messages({
      {"(assert y)", "f:1:9: the symbol y is not declared"},
      {"(declare-const length Bool)(assert\n (and length\n lenght))",
       "f:3:2: the symbol lenght is not declared; perhaps length was meant"},
      {"(declare-const |two words| Bool)(assert |tow words|)",
       "f:1:41: the symbol |tow words| is not declared; perhaps two words was meant"},
      {"(assert (bvaddd #b1 #b1))", "f:1:10: the symbol bvaddd is not declared; perhaps bvadd was meant"},
      {"(assert (= #b1 ((_ zero-extend 2) #b1)))",
       "f:1:20: the symbol zero-extend is not declared; perhaps zero_extend was meant"},
      {"(define-fun x () Bool (not x))", "f:1:28: the symbol x is not declared"},
      {"(define-fun f ((a Bool)) Bool (f a))", "f:1:32: the symbol f is not declared"},
      {"(define-fun f ((arg Bool)) Bool arg)(assert arg)", "f:1:45: the symbol arg is not declared"},
      {"(assert (and (let ((variable true)) variable) variable))",
       "f:1:47: the symbol variable is not declared"},
      {"(assert (let ((a true) (b a)) b))", "f:1:27: the symbol a is not declared"},
  });
}

TEST(ReaderRefuses, TermsOfTheWrongSort)
{
  expect_messages({
      {"(assert #b1)", "f:1:9: the assertion has sort (_ BitVec 1), but sort Bool was expected"},
      {"(define-fun x () Bool #b1)",
       "f:1:23: the definition has sort (_ BitVec 1), but sort Bool was expected"},
      {"(define-fun f ((a Bool)) Bool #b1)",
       "f:1:31: the body of the definition has sort (_ BitVec 1), but sort Bool was expected"},
      {"(declare-const x (_ BitVec 2))(assert (bvult x #b111))",
       "f:1:48: argument 2 of bvult has sort (_ BitVec 3), but sort (_ BitVec 2) was expected"},
      {"(declare-const x (_ BitVec 2))(assert (bvult (bvadd x x) ((_ zero_extend 1) (bvadd x x))))",
       "f:1:58: argument 2 of bvult has sort (_ BitVec 3), but sort (_ BitVec 2) was expected"},
      {"(assert (not #b1))", "f:1:14: argument 1 of not has sort (_ BitVec 1), but sort Bool was expected"},
      {"(define-fun f ((a Bool)) Bool a)(assert (f #b0))",
       "f:1:44: argument 1 of f has sort (_ BitVec 1), but sort Bool was expected"},
      {"(declare-const p Bool)(assert (as p (_ BitVec 1)))",
       "f:1:35: a term of sort Bool was found, but it is declared as one of sort (_ BitVec 1)"},
      {"(assert (= #b1 ((as bvnot Bool) #b1)))",
       "f:1:16: a term of sort (_ BitVec 1) was found, but it is declared as one of sort Bool"},
  });
}

TEST(ReaderRefuses, MalformedApplications)
{
  expect_messages({
      {"(assert (distinct true))", "f:1:9: distinct was given 1 argument, but 2 to 2000 were expected"},
      {"(assert (and))", "f:1:9: and was given 0 arguments, but at least 1 were expected"},
      {"(assert and)", "f:1:9: the symbol and was found as a constant, but it is an operator"},
      {"(assert (true))", "f:1:10: the symbol true was found before arguments, but it does not take any"},
      {"(declare-const p Bool)(assert (p true))",
       "f:1:32: the symbol p was found before arguments, but it does not take any"},
      {"(define-fun f ((a Bool)) Bool a)(assert f)",
       "f:1:41: the symbol f was found as a constant, but it is a function with parameters"},
      {"(define-fun f ((a Bool)) Bool a)(assert (f true true))",
       "f:1:41: f was given 2 arguments, but 1 was expected"},
      {"(define-fun f ((a Bool)) Bool a)(assert ((_ f 1) true))", "f:1:45: the symbol f takes no indices"},
      {"(assert (= ((_ extract 1 0) #b1) #b11))",
       "f:1:12: extract was requested for bits 1 down to 0 of an operand of width 1, but the first bit must "
       "be "
       "below 1"},
      {"(assert (= ((_ extract 1) #b11) #b11))", "f:1:16: extract was given 1 index, but 2 were expected"},
      {"(assert (= (extract #b11) #b11))", "f:1:13: extract was given 0 indices, but 2 were expected"},
      {"(assert (= ((_ bvnot 1) #b11) #b11))", "f:1:16: bvnot was given 1 index, but 0 were expected"},
      {"(assert (= ((_ repeat 0) #b1) #b1))",
       "f:1:12: repeat was given the index 0, but at least one copy was expected"},
      {"(assert (= ((_ zero_extend 99999999999999999999) #b1) #b1))",
       "f:1:28: the numeral 99999999999999999999 was found, but an index up to 4294967295 was expected"},
      {"(assert (= ((_ zero_extend 4294967295) #b1) #b1))",
       "f:1:12: zero_extend was requested with 4294967295 and 1 bits, but together they may be at most "
       "4294967295"},
      {"(assert (= ((_ extract a) #b1) #b1))",
       "f:1:24: the symbol a was found, but a numeral as an index was expected"},
      {"(assert (_ extract 1 0))",
       "f:1:12: the symbol extract was found as a constant, but it is an operator"},
      {"(assert ((bvnot) #b1))", "f:1:11: the symbol bvnot was found, but _ or as was expected"},
      {"(assert let)", "f:1:9: the reserved word let was found, but a term was expected"},
      {"(assert (\"f\" true))", "f:1:10: a string was found, but an operator or a function was expected"},
  });
}

TEST(ReaderRefuses, MalformedLetsLiteralsAndAnnotations)
{
  expect_messages({
      {"(assert (let () true))", "f:1:15: a closing parenthesis was found, but a binding was expected"},
      {"(assert (let ((x true) (y true) (x false)) x))",
       "f:1:34: the symbol x is bound already in this let, but names must differ"},
      {"(assert (let (x true) x))", "f:1:15: the symbol x was found, but a binding was expected"},
      {"(assert (let ((x true true)) x))",
       "f:1:23: the symbol true was found, but the end of the binding was expected"},
      {"(assert (let ((x true)) x x))",
       "f:1:27: the symbol x was found, but the end of the let was expected"},
      {"(assert (let ((let true)) true))",
       "f:1:16: the reserved word let was found, but the name of a variable was expected"},
      {"(assert (= (_ bv300 8) (_ bv1 8)))",
       "f:1:15: the symbol bv300 was found, but a value below 2^8 was expected, since the width is 8"},
      {"(assert (= (_ bv1 0) #b1))",
       "f:1:19: the numeral 0 was found, but a width from 1 to 4294967295 was expected"},
      {"(assert (= ((_ bv1 8) #b1) #b1))",
       "f:1:16: a literal was found before arguments, but it does not take any"},
      {"(assert (! true))", "f:1:16: a closing parenthesis was found, but an attribute was expected"},
      {"(assert (! true :named true))",
       "f:1:24: the symbol true is declared here, but it has a meaning already"},
      {"(assert (! true :named 5))", "f:1:24: the numeral 5 was found, but a name was expected"},
      {"(assert (! true x))", "f:1:17: the symbol x was found, but an attribute was expected"},
      {"(define-fun f ((a Bool)) Bool (! a :named n))",
       "f:1:43: the symbol n names a part of a definition with parameters, but only terms without parameters "
       "can "
       "have names"},
  });
}

TEST(ReaderRefuses, LongListsOfDistinctTerms)
{
  std::string terms;
  for (int i = 0; i < 2001; ++i)
    terms += " #b1";
  EXPECT_EQ(get_message("(assert (distinct" + terms + "))"),
            "f:1:9: distinct was given 2001 arguments, but 2 to 2000 were expected");
}

TEST(ReaderRefuses, DefinitionsThatExpandWithoutEnd)
{
  std::string text = "(define-fun f0 ((x (_ BitVec 64))) (_ BitVec 64) (bvadd (bvmul x x) x))\n";
  for (int i = 1; i <= 40; ++i) {
    const std::string before = "f" + std::to_string(i - 1);
    text += "(define-fun f" + std::to_string(i) + " ((x (_ BitVec 64))) (_ BitVec 64) (" + before + " (" +
            before + " x)))\n";
  }
  // A definition costs nothing until it is applied.
  EXPECT_EQ(get_message(text), "(not refused)");
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
