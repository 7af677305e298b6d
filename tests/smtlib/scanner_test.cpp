#include "lumo/smtlib/scanner.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

std::string rewrite(std::string_view text)
{
  TermManager mgr;
  Scanner scanner(mgr, text);
  scanner.scan();
  return scanner.get_rewritten_text().get_text();
}

struct ScannerRow
{
  std::string_view text;
  std::string_view rewritten;
};

TEST(Scanner, KeepsWhatTheParserNeeds)
{
  const std::vector<ScannerRow> rows = {
      {"", "\n"},
      {"(set-logic QF_BV) (set-option :produce-unsat-cores true)\n(echo \"(assert\")", "\n"},
      {"(declare-const p Bool)(check-sat)(get-model)", "\n(declare-const p Bool)\n"},
      {"(declare-fun |a b| () Bool)(assert\n |a b| ; (\n)",
       "\n(declare-fun |a b| () Bool)\n(assert\n |a b| ; (\n)\n"},
      {"(exit)(assert {", "\n"},
      {"(define-sort W () (_ BitVec 8))", "\n(define-sort W () (_ BitVec 8))\n"},
      {"(define-fun f ((a Bool)) Bool (not a))", "\n(define-fun f ((a Bool)) Bool (not a))\n"},
      {"(define-fun x () Bool true)", "\n(declare-const |x|  Bool)(assert (= |x|  true))\n"},
      {"(define-const |y z| Bool true)", "\n(declare-const |y z|  Bool)(assert (= |y z|  true))\n"},
      {"(assert (= (_ bv7 2048) x))", "\n(assert (= (_ bv7 2048) x))\n"},
      {"(assert (= ( _ bv7 2049 ) x))",
       "\n(declare-const |\x01"
       "0| (_ BitVec 2049))\n(assert (= |\x01"
       "0| x))\n"},
  };
  for (const ScannerRow& row : rows)
    EXPECT_EQ(rewrite(row.text), row.rewritten);
}

TEST(Scanner, KnowsWhatIsSetAsInformation)
{
  TermManager mgr;
  Scanner scanner(mgr,
                  "(set-info)(set-info name \"a\")(set-info :one \"b\" (c))\n (set-info :two)(assert true)");
  scanner.scan();
  const std::vector<Scanner::Info>& infos = scanner.get_infos();
  ASSERT_EQ(infos.size(), 2U);
  EXPECT_EQ(infos[0].keyword.text, ":one");
  Lexer content = infos[0].content;
  const Token text = content.next();
  EXPECT_EQ(text.text, "b");
  EXPECT_EQ(text.place, (Place{1, 45}));
  EXPECT_EQ(infos[1].keyword.text, ":two");
  EXPECT_EQ(infos[1].keyword.place, (Place{2, 12}));
  content = infos[1].content;
  EXPECT_EQ(content.next().kind, TokenKind::kClose);
}

TEST(Scanner, ReplacesLongLiterals)
{
  const std::string binary(513, '1');
  const std::string hexadecimal(513, 'F');
  const std::string decimal = "(_ bv1" + std::string(511, '0') + " 1697)";
  const std::string text = "(assert (f #b" + binary + " #x" + hexadecimal + "\n" + decimal + " #b1))";
  TermManager mgr;
  Scanner scanner(mgr, text);
  scanner.scan();
  EXPECT_EQ(scanner.get_rewritten_text().get_text(),
            "\n(declare-const |\x01"
            "0| (_ BitVec 513))\n(declare-const |\x01"
            "1| (_ BitVec 2052))\n(declare-const |\x01"
            "2| (_ BitVec 1697))\n(assert (f |\x01"
            "0| |\x01"
            "1|\n|\x01"
            "2| #b1))\n");
  const auto& literals = scanner.get_literals();
  ASSERT_EQ(literals.size(), 3U);
  EXPECT_EQ(literals.at("\x01"
                        "0"),
            mgr.make_bv_number(-1, 513));
  EXPECT_EQ(literals.at("\x01"
                        "1"),
            mgr.make_bv_number(-1, 2052));
  QNumber power(1);
  for (int i = 0; i < 511; ++i)
    power *= QNumber(10);
  EXPECT_EQ(literals.at("\x01"
                        "2"),
            mgr.make_bv_number(power, 1697));
}

TEST(Scanner, ListsDeclarationsAndAssertionsInTheirOrder)
{
  TermManager mgr;
  Scanner scanner(mgr,
                  "(declare-fun b () Bool)\n(define-fun d () Bool b)\n  (assert d)"
                  "(define-sort W () (_ BitVec 8))(declare-const a W)");
  scanner.scan();
  ASSERT_EQ(scanner.get_declarations().size(), 2U);
  EXPECT_EQ(scanner.get_declarations()[0].name.text, "b");
  EXPECT_EQ(scanner.get_declarations()[0].sort, mgr.make_bool_type());
  EXPECT_EQ(scanner.get_declarations()[1].name.text, "a");
  EXPECT_EQ(scanner.get_declarations()[1].sort, mgr.make_bv_type(8));
  ASSERT_EQ(scanner.get_items().size(), 2U);
  EXPECT_TRUE(scanner.get_items()[0].is_definition);
  EXPECT_EQ(scanner.get_items()[0].name, "d");
  EXPECT_FALSE(scanner.get_items()[1].is_definition);
  EXPECT_EQ(scanner.get_items()[1].place, (Place{3, 3}));
}

}  // namespace
}  // namespace lumo::smtlib
