// What single queries of a text are about.

#include "lumo/smtlib/query_reader.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/term_text.h"

namespace lumo::smtlib {
namespace {

constexpr std::string_view kText =
    "(declare-const x Bool)\n"
    "(assert x)\n"
    "(check-sat) ; 1\n"
    "(push 1)\n"
    "(declare-const y Bool)\n"
    "(assert (or x y))\n"
    "(get-value (x))\n"
    "(check-sat-assuming ((not y))) ; 2\n"
    "(pop 1)\n"
    "(declare-const z Bool)\n"
    "(check-sat) ; 3\n"
    "(reset-assertions)\n"
    "(declare-const w Bool)\n"
    "(assert w)\n"
    "(check-sat) ; 4\n"
    "(exit)\n";

/// The names of constants and the terms and lines of assertions.
std::string describe_query(std::string_view text, std::optional<std::size_t> number)
{
  TermManager mgr;
  try {
    const Script script = read_query(mgr, text, number);
    std::string description;
    for (const Term* constant : script.constants)
      description += constant->get_symbol()->get_name() + ' ';
    for (const Assertion& assertion : script.assertions)
      description +=
          "| " + test::make_term_text(assertion.term) + " " + std::to_string(assertion.place.line) + ' ';
    for (const std::string& name : script.skipped)
      description += "| " + name;
    return description;
  } catch (const InputError& e) {
    return make_located_message("f", e);
  } catch (const Exception& e) {
    return e.what();
  }
}

TEST(QueryReader, TakesWhatHoldsAtTheQuery)
{
  EXPECT_EQ(describe_query(kText, 1), "x | x 2 ");
  EXPECT_EQ(describe_query(kText, 2), "x y | x 2 | (or x y) 6 | (not y) 8 | get-value");
  EXPECT_EQ(describe_query(kText, 3), "x z | x 2 | get-value");
  EXPECT_EQ(describe_query(kText, 4), "w | w 14 | get-value");
  EXPECT_EQ(describe_query(kText, std::nullopt), describe_query(kText, 4));
}

TEST(QueryReader, KeepsGlobalDeclarations)
{
  EXPECT_EQ(
      describe_query("(set-option :global-declarations true)(push 1)(declare-const x Bool)(assert x)(pop 1)"
                     "(assert (not x))(check-sat)",
                     std::nullopt),
      "x | (not x) 1 ");
}

TEST(QueryReader, RefusesQueriesThatAreNotThere)
{
  EXPECT_EQ(describe_query(kText, 5), "query 5 was asked for, but the queries have the numbers 1 to 4");
  EXPECT_EQ(describe_query(kText, 0), "query 0 was asked for, but the queries have the numbers 1 to 4");
  EXPECT_EQ(describe_query("(push 2)", std::nullopt), "the text has levels, but does not make a query");
}

TEST(QueryReader, RefusesWhatIsWrongBeforeTheQuery)
{
  const std::string text = "(check-sat)(assert x)(check-sat)";
  EXPECT_EQ(describe_query(text, 1), "");
  EXPECT_EQ(describe_query(text, 2), "f:1:20: the symbol x is not declared");
  EXPECT_EQ(
      describe_query("(frobnicate)(check-sat)", 1),
      "f:1:1: the command frobnicate was found, but only declarations, definitions, assertions, levels and "
      "queries were expected");
  EXPECT_EQ(
      describe_query("(push 1)(declare-const x Bool)(pop 1)(declare-const x (_ BitVec 2))(check-sat)", 1),
      "f:1:68: the constant x of this query has a reserved name, or one that had another sort before, but "
      "what is about one query needs one sort for each name");
}

}  // namespace
}  // namespace lumo::smtlib
