#include "lumo/smtlib/script_reader.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/term_text.h"

namespace lumo::smtlib {
namespace {

/// The assertions of the text, in the notation of the term layer.
std::vector<std::string> read_assertions(const std::string& text)
{
  TermManager mgr;
  std::vector<std::string> assertions;
  for (const Assertion& assertion : read_script(mgr, text).assertions)
    assertions.push_back(test::make_term_text(assertion.term));
  return assertions;
}

constexpr std::string_view kManyDeclarations =
    "(set-logic QF_BV)(set-info :status sat)(set-option :produce-unsat-cores true)\n"
    "(declare-const p Bool)(declare-const q Bool)(declare-fun r () Bool)\n"
    "(define-sort Byte () (_ BitVec 8))\n"
    "(declare-const x (_ BitVec 8))(declare-const y Byte)(declare-fun z () Byte)\n";

TEST(Reader, MakesTermsOfTheOperatorsThatThereAre)
{
  struct Row
  {
    std::string_view assertion;
    std::string_view term;
  };
  const std::vector<Row> rows = {
      {"true", "true"},
      {"p", "p"},
      {"(and p q r)", "(and (and p q) r)"},
      {"(and p)", "p"},
      {"(=> p q r)", "(or (not p) (or (not q) r))"},
      {"(xor p q)", "(not (= p q))"},
      {"(= p q r)", "(and (= p q) (= q r))"},
      {"(distinct x y z)", "(and (and (not (= x y)) (not (= x z))) (not (= y z)))"},
      {"(= x #x05)", "(= x #x05)"},
      {"(= #b00000101 (_ bv5 8))", "(= #x05 #x05)"},
      {"(= (bvadd x y z) x)", "(= (bvadd (bvadd x y) z) x)"},
      {"(= (bvxnor x y) x)", "(= (bvnot (bvxor x y)) x)"},
      {"(bvugt x y)", "(bvult y x)"},
      {"(bvsge x y)", "(bvsle y x)"},
      {"(= ((_ repeat 5) x) ((_ zero_extend 32) x))",
       "(= (concat (concat (concat x x) (concat x x)) x) ((_ zero_extend 32) x))"},
      {"(= ((_ extract 7 4) x) ((_ rotate_left 2) #b0011))",
       "(= ((_ extract 7 4) x) ((_ rotate_left 2) #x3))"},
      {"(let ((x y) (y x)) (bvult x y))", "(bvult y x)"},
      {"(let ((|p q| p)) (not |p q|))", "(not p)"},
      {"(! (bvult x y) :named small :note (a b))", "(bvult x y)"},
      {"(ite p q (= (ite q x y) z))", "(ite p q (= (ite q x y) z))"},
      {"(bvult (as x Byte) ((as bvnot Byte) (as (_ bv3 8) (_ BitVec 8))))", "(bvult x (bvnot #x03))"},
      {"(= x ((as (_ rotate_left 1) Byte) y))", "(= x ((_ rotate_left 1) y))"},
      {"(= x ((_ rotate_left 2147483649) y))", "(= x ((_ rotate_left 1) y))"},
      {"(= x ((_ rotate_right 340282366920938463463374607431768211457) y))", "(= x ((_ rotate_right 1) y))"},
      {"(= x ((_ |rotate_left| 8) y))", "(= x ((_ rotate_left 0) y))"},
      {"(|and| |p| |true|)", "(and p true)"},
      {"(let ((let1 p) (|let| q) (|!| r) (|_| p)) (and let1 |let| |!| |_|))", "(and (and (and p q) r) p)"},
      {"(let ((p q)) (let ((q p)) (and p q)))", "(and q q)"},
      {"(and (let ((p q)) p) p)", "(and q p)"},
      {"(let ((bvadd p)) (not bvadd))", "(not p)"},
      {"(bvnego x)", "(= x #x80)"},
      {"(bvuaddo x y)", "(bvult (bvadd x y) x)"},
      {"(bvusubo x y)", "(bvult x y)"},
      {"(bvsdivo x y)", "(and (= x #x80) (= y #xff))"},
  };
  for (const Row& row : rows) {
    const std::string text = std::string(kManyDeclarations) + "(assert " + std::string(row.assertion) + ")";
    EXPECT_EQ(read_assertions(text), (std::vector<std::string>{std::string(row.term)})) << row.assertion;
  }
}

TEST(Reader, ReplacesDefinitionsAndNames)
{
  const std::string text = std::string(kManyDeclarations) +
                           "(define-fun s () Byte (bvadd x #x01))\n"
                           "(define-const |t t| Byte (bvmul s s))\n"
                           "(define-fun f ((x Byte) (b Bool)) Byte (ite b x s))\n"
                           "(define-fun k () Bool (! (= y (f |t t| q)) :named n))\n"
                           "(assert k)(assert (! p :named m))(assert (and m (not n)))";
  const std::string s = "(bvadd x #x01)";
  const std::string k = "(= y (ite q (bvmul " + s + " " + s + ") " + s + "))";
  EXPECT_EQ(read_assertions(text), (std::vector<std::string>{k, "p", "(and p (not " + k + "))"}));
}

TEST(Reader, KnowsAllDeclaredConstantsInTheirOrder)
{
  TermManager mgr;
  const Script script = read_script(
      mgr,
      "(declare-const |b b| (_ BitVec 4))(declare-fun a () Bool)(define-fun d () Bool a)(declare-const k!5 "
      "Bool)"
      "(declare-const |\xc3\xa9| (_ BitVec 70))(declare-const |let| Bool)(declare-const select Bool)"
      "(assert (and a k!5 |let| select (= |\xc3\xa9| |\xc3\xa9|)))");
  ASSERT_EQ(script.constants.size(), 6U);
  const std::vector<std::pair<std::string, const DataType*>> expected = {
      {"b b", mgr.make_bv_type(4)},       {"a", mgr.make_bool_type()},   {"k!5", mgr.make_bool_type()},
      {"\xc3\xa9", mgr.make_bv_type(70)}, {"let", mgr.make_bool_type()}, {"select", mgr.make_bool_type()}};
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_EQ(script.constants[i], mgr.make_constant(expected[i].first, expected[i].second));
  EXPECT_EQ(test::make_term_text(script.assertions[0].term),
            "(and (and (and (and a k!5) |let|) select) (= |\xc3\xa9| |\xc3\xa9|))");
}

TEST(Reader, KnowsWhereAssertionsStand)
{
  TermManager mgr;
  const Script script = read_script(mgr, "(assert true) (assert\nfalse)\n  (assert true)");
  ASSERT_EQ(script.assertions.size(), 3U);
  EXPECT_EQ(script.assertions[0].place, (Place{1, 1}));
  EXPECT_EQ(script.assertions[1].place, (Place{1, 15}));
  EXPECT_EQ(script.assertions[2].place, (Place{3, 3}));
}

TEST(Reader, SkipsCommandsThatOnlyTalk)
{
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const std::vector<std::string> assertions = read_assertions(
      "(set-option :regular-output-channel \"/nonexistent/folder/file\")(set-option :print-success true)"
      "(set-logic QF_LIA)(set-info :source |( unbalanced|)(echo \"hello\")(get-info :name)(get-option :o)"
      "(assert true)(check-sat)(get-model)(get-value (x))(get-assertions)(get-assignment)(get-proof)"
      "(get-unsat-core)(get-unsat-assumptions)(exit)(assert false) ((((");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(assertions, (std::vector<std::string>{"true"}));
}

TEST(Reader, NamesEachSkippedCommandOnce)
{
  TermManager mgr;
  const Script script = read_script(
      mgr, "(set-logic QF_BV)(echo \"a\")(assert true)(check-sat)(get-value (x))(echo \"b\")(get-value (y))");
  EXPECT_EQ(script.skipped, (std::vector<std::string>{"echo", "get-value"}));
}

TEST(Reader, ReadsOneLevelAroundTheQuery)
{
  const std::vector<std::string> expected = {"p", "q"};
  EXPECT_EQ(
      read_assertions("(declare-const p Bool)(assert p)(push 1)(declare-const q Bool)(assert q)(check-sat)"
                      "(get-model)(pop 1)(exit)"),
      expected);
  EXPECT_EQ(read_assertions(
                "(push)(declare-const p Bool)(declare-const q Bool)(assert p)(assert q)(check-sat)(pop)"),
            expected);
}

/// Names that differ in one character each from one of the same size
std::vector<std::string> make_similar_names(std::size_t size)
{
  std::vector<std::string> names = {std::string(size, 'a')};
  for (std::size_t i = 0; i < size; ++i) {
    names.push_back(names.front());
    names.back()[i] = 'b';
  }
  return names;
}

TEST(Reader, TellsNamesOfAnySizeApart)
{
  std::string text;
  std::vector<std::string> names;
  for (std::size_t size = 1; size < 40; ++size) {
    for (const std::string& name : make_similar_names(size)) {
      names.push_back(name);
      text += "(declare-const " + name + " Bool)(assert " + name + ")";
    }
  }
  EXPECT_EQ(read_assertions(text), names);
}

TEST(Reader, NamesWhatIsBoundTwiceWhateverItsSize)
{
  for (std::size_t size = 1; size < 30; ++size) {
    for (const std::string& name : make_similar_names(size)) {
      TermManager mgr;
      try {
        static_cast<void>(read_script(mgr, "(assert (let ((" + name + " true)(" + name + " true)) true))"));
        FAIL() << name;
      } catch (const InputError& e) {
        EXPECT_EQ(e.what(), "the symbol " + name + " is bound already in this let, but names must differ");
      }
    }
  }
}

TEST(Reader, TellsWhatOfALongTextItHasPassed)
{
  std::string text = "(declare-const p Bool)\n";
  while (text.size() < 2'000'000)
    text += "(assert p)\n";
  TermManager mgr;
  std::vector<std::size_t> passed;
  static_cast<void>(read_script(mgr, text, [&](std::size_t size) { passed.push_back(size); }));
  ASSERT_GT(passed.size(), 2U);
  EXPECT_TRUE(std::is_sorted(passed.begin(), passed.end()));
  EXPECT_LE(passed.back(), text.size());
  EXPECT_GT(passed.back(), text.size() / 2);
}

TEST(Reader, ReadsASortAgainHoweverItIsSpelled)
{
  TermManager mgr;
  const Script script = read_script(
      mgr,
      "(declare-const a (_ BitVec 8))(declare-const b(_ BitVec 8))(declare-const c ( _ BitVec 8 ))"
      "(declare-const d (_ BitVec 80)) (declare-const e ; (_ BitVec 80)\n(_ BitVec 8))(define-sort S () (_ "
      "BitVec 7))"
      "(declare-const f (_ BitVec 7))(declare-const g S)(declare-const h (_ BitVec 7))");
  std::vector<unsigned long> widths;
  for (const Term* constant : script.constants)
    widths.push_back(constant->get_sort()->get_width());
  EXPECT_EQ(widths, (std::vector<unsigned long>{8, 8, 8, 80, 8, 7, 7, 7}));
}

TEST(Reader, ReadsTheEmptyText)
{
  TermManager mgr;
  EXPECT_TRUE(read_script(mgr, "").assertions.empty());
  EXPECT_TRUE(read_script(mgr, " ; nothing").constants.empty());
}

}  // namespace
}  // namespace lumo::smtlib
