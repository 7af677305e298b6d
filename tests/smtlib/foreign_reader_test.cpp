// Texts with terms of other theories: what is refused, with its place, and what is printed.

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/script_reader.h"

namespace lumo::test {
namespace {

using smtlib::ForeignText;

std::string get_message(const std::string& text)
{
  TermManager mgr;
  try {
    static_cast<void>(smtlib::read_script(mgr, text, {}, ForeignText::kTaken));
  } catch (const smtlib::InputError& e) {
    return smtlib::make_located_message("f", e);
  }
  return "nothing was refused";
}

/// The text, read and printed.
std::string print(const std::string& text)
{
  TermManager mgr;
  const smtlib::Script script = smtlib::read_script(mgr, text, {}, ForeignText::kTaken);
  const std::vector<const Term*> assertions = script.get_asserted_terms();
  const smtlib::ForeignForms forms(*script.foreign);
  std::ostringstream out;
  smtlib::print_script(out, assertions, false, forms);
  return out.str();
}

TEST(ForeignReader, RefusesWithAPlace)
{
  const std::string declarations =
      "(set-logic ALL)(declare-sort S 1)(declare-fun f ((_ BitVec 4) Bool) Int)"
      "(declare-const a (Array Int Bool))(declare-const x (_ BitVec 4))\n";
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"(assert (f x))",
       "2:9: f was given an argument of the sort (_ BitVec 4), but (_ BitVec 4), Bool were expected"},
      {"(assert (= 0 (f x x)))",
       "2:14: f was given arguments of the sorts (_ BitVec 4), (_ BitVec 4), but (_ BitVec 4), Bool were "
       "expected"},
      {"(assert (f x true))", "2:9: the assertion has sort Int, but sort Bool was expected"},
      {"(assert f)", "2:9: f was given no arguments, but (_ BitVec 4), Bool were expected"},
      {"(assert (select a x))",
       "2:9: select was given arguments of the sorts (Array Int Bool), (_ BitVec 4), which it does not take"},
      {"(assert (= a x))",
       "2:14: argument 2 of = has sort (_ BitVec 4), but sort (Array Int Bool) was expected"},
      {"(assert (bvult x 3))", "2:18: argument 2 of bvult has sort Int, but sort (_ BitVec 4) was expected"},
      {"(assert (bvnot a))",
       "2:16: argument 1 of bvnot has sort (Array Int Bool), but a bit-vector was expected"},
      {"(assert (selekt a 0))", "2:10: the symbol selekt is not declared; perhaps select was meant"},
      {"(assert (= a ((as const (Array Int Bool)) 0)))",
       "2:14: (as const (Array Int Bool)) was given an argument of the sort Int, which it does not take"},
      {"(assert ((_ divisible 3) true x))",
       "2:9: divisible was given arguments of the sorts Bool, (_ BitVec 4), which it does not take"},
      {"(declare-const s S)", "2:18: the symbol S was found without arguments, but the sort takes 1"},
      {"(declare-const s (S Int Int))", "2:18: a sort with 2 arguments was found, but it takes 1"},
      {"(declare-const s (Set Int))",
       "2:19: the symbol Set was found, but a declared sort or one of a theory was expected"},
      {"(declare-sort S 0)", "2:15: the symbol S is declared here, but it is a sort already"},
      {"(declare-sort Int 0)", "2:15: the symbol Int is declared here, but it is a sort already"},
      {"(assert (lambda ((i Int)) true))",
       "2:10: lambda was found, but lumo cannot tell the sort of such a term"},
      {"(assert (forall ((i Int)) true)",
       "2:1: a parenthesis opens here, but the text ends before it is closed"},
      {"(assert (forall ((i Int)) true",
       "2:9: a parenthesis opens here, but the text ends before it is closed"},
      {"(declare-datatype T ((c (d Int)) e))(assert (= e (c true)))",
       "2:50: c was given an argument of the sort Bool, but Int was expected"},
      {"(declare-datatypes ((T 1)) (((c))))", "2:22: the symbol T has 0 parameters here, but 1 was declared"},
      {"(define-funs-rec ((g ((i Int)) Int)(h () Int)) ((+ i 1)))",
       "2:56: a closing parenthesis was found, but the body of a function was expected"},
      {"(define-funs-rec ((g ((i Int)) Int)) (i i))",
       "2:41: the symbol i was found, but the end of the list of bodies was expected"},
      {"(define-const y Int 3)(define-fun-rec g ((i Int)) Int (+ i y))",
       "2:60: y is defined, and a function that must be printed mentions it, but such a function may only "
       "mention "
       "what is declared, and functions with parameters"},
  };
  for (const auto& [text, message] : rows)
    EXPECT_EQ(get_message(declarations + text), "f:" + message) << text;
}

TEST(ForeignReader, IsRefusedUnlessItIsAskedFor)
{
  TermManager mgr;
  for (const char* text : {"(declare-fun f (Bool) Bool)", "(declare-const i Int)", "(declare-sort S 0)",
                           "(assert (forall ((x Bool)) x))", "(assert (select true true))"})
    EXPECT_THROW(static_cast<void>(smtlib::read_script(mgr, text)), smtlib::InputError) << text;
}

TEST(ForeignReader, PrintsWhatTheTermsNeed)
{
  EXPECT_EQ(
      print("(set-logic QF_AUFBV)\n(declare-sort S 0)\n(declare-fun f (S) Bool)\n(declare-fun g (S) S)\n"
            "(declare-fun unused (S) S)\n(declare-const |a b| S)\n"
            "(assert (let ((y (g |a b|))) (f (g (ite (f y) y (g y))))))"),
      "(set-logic QF_AUFBV)\n(declare-sort S 0)\n(declare-fun f (S) Bool)\n(declare-fun g (S) S)\n"
      "(declare-const |a b| S)\n"
      "(assert\n(let ((s!1 (g |a b|)))\n(f (g (ite (f s!1) s!1 (g s!1))))))\n(check-sat)\n");
}

TEST(ForeignReader, KeepsBindersWordForWord)
{
  EXPECT_EQ(print("(declare-const x (_ BitVec 4))\n(declare-fun f ((_ BitVec 4)) Bool)\n"
                  "(define-fun twice ((y (_ BitVec 4))) (_ BitVec 4) (bvadd y y))\n"
                  "(assert (let ((z (twice x))) (forall ((i (_ BitVec 4)))\n"
                  "  (! (f (bvadd i (twice x) z)) :pattern ((f i))))))"),
            "(set-logic ALL)\n(declare-fun x () (_ BitVec 4))\n(declare-fun f ((_ BitVec 4)) Bool)\n"
            "(define-fun twice ((y (_ BitVec 4))) (_ BitVec 4) (bvadd y y))\n"
            "(assert (let ((z (bvadd x x))) (forall ((i (_ BitVec 4)))\n"
            "  (! (f (bvadd i (twice x) z)) :pattern ((f i))))))\n(check-sat)\n");
}

TEST(ForeignReader, UsesTheConstantsOfRecursiveDefinitions)
{
  // y is a constant in the first body, and a parameter in the second one.
  const std::string text =
      "(declare-fun x () Bool)\n(declare-fun y () Bool)\n"
      "(define-funs-rec ((f ((x Bool)) Bool) (g ((y Bool)) Bool)) ((and x y) (or (f y) (g y))))\n"
      "(assert (g x))\n(check-sat)\n";
  EXPECT_EQ(print("(set-logic ALL)\n" + text), "(set-logic ALL)\n" + text);
  const std::string alone =
      "(declare-fun x () Bool)\n(define-fun-rec g ((y Bool)) Bool (and y (g y)))\n"
      "(assert (g x))\n(check-sat)\n";
  EXPECT_EQ(print("(declare-const y Bool)" + alone), "(set-logic ALL)\n" + alone);
}

TEST(ForeignReader, TakesDatatypes)
{
  const std::string text =
      "(declare-datatypes ((List 1) (Pair 0)) ((par (X) ((nil) (cons (head X) (tail (List X))))) ((pair "
      "(left "
      "(List Bool)) (right Float16)))))\n";
  EXPECT_EQ(
      print(text + "(declare-const p Pair)\n"
                   "(assert (and ((_ is pair) p) (head (cons (fp.isNaN (right p)) (as nil (List Bool))))))"),
      "(set-logic ALL)\n" + text +
          "(declare-const p Pair)\n"
          "(assert ((_ is pair) p))\n"
          "(assert (head (cons (fp.isNaN (right p)) (as nil (List Bool)))))\n(check-sat)\n");
}

}  // namespace
}  // namespace lumo::test
