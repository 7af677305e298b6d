// Elimination between pushes and pops: the terms that are sent to the solver, command by command.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/elimination/conversation_judge.h"
#include "tests/support/notation.h"
#include "tests/support/refusal.h"
#include "tests/support/term_text.h"

namespace lumo {
namespace {

using test::Conversation;
using test::ConversationQuery;
using test::Terms;

/// The result of a command: for a query, the additions, `level: term`, and the forms of the assumptions.
struct Exchange
{
  std::string command;  ///< `push`, `pop`, `?` with assumptions between blanks, or an assertion
  std::vector<std::string> told{};
};

class Incremental : public testing::Test
{
 protected:
  const Term* parse(const std::string& text) { return test::parse_term(mgr_, text); }

  void ask(const std::string& literals, const std::vector<std::string>& expected)
  {
    Terms assumptions;
    for (std::size_t i = 0; i < literals.size(); ++i) {
      if (literals[i] != ' ') assumptions.push_back(parse(std::string(1, literals[i])));
    }
    const ConversationQuery query = conversation_.query(assumptions);
    std::vector<std::string> told;
    for (const IncrementalEliminator::Addition& addition : conversation_.get_additions())
      told.push_back(std::to_string(addition.level) + ": " + test::make_term_text(addition.term));
    for (const Term* form : query.assumption_forms)
      told.push_back("? " + test::make_term_text(form));
    EXPECT_EQ(told, expected);
    EXPECT_EQ(test::judge_query(mgr_, conversation_.get_eliminator(), query), "");
  }
  void expect(const std::vector<Exchange>& exchanges)
  {
    for (const Exchange& exchange : exchanges) {
      SCOPED_TRACE(exchange.command);
      if (exchange.command == "push") {
        conversation_.push();
      } else if (exchange.command == "pop") {
        conversation_.pop();
      } else if (exchange.command.front() == '?') {
        ask(exchange.command.substr(1), exchange.told);
      } else {
        conversation_.add_assertion(parse(exchange.command));
      }
    }
  }

  TermManager mgr_;
  Conversation conversation_{mgr_};
};

TEST_F(Incremental, QueryWithoutAssertionsTellsNothing) { expect({{"?"}, {"push"}, {"?"}, {"pop"}, {"?"}}); }

TEST_F(Incremental, FreeConstantsAreEliminatedAsInOneCall)
{
  expect({{"(bvult (bvadd x2 y2) (bvurem a2 a2))"}, {"?", {"0: (not (= (bvurem a2 a2) #b00))"}}, {"?"}});
}

TEST_F(Incremental, AssertionThatMentionsAnEliminatedConstantRestoresItsStep)
{
  expect({{"(bvult (bvadd x2 y2) (bvurem a2 a2))"},
          {"?", {"0: (not (= (bvurem a2 a2) #b00))"}},
          {"(= x2 (bvmul x2 x2))"},
          {"?",
           {"0: (= x2 (bvmul x2 x2))", "0: (= u!0 (bvadd x2 y2))", "0: (= u!1 (bvult u!0 (bvurem a2 a2)))",
            "0: u!1"}}});
}

TEST_F(Incremental, MentionOfAnEliminatedApplicationUsesItsForm)
{
  expect({{"(bvult a2 (bvurem (bvadd x2 y2) a2))"},
          {"?", {"0: (bvult a2 (bvurem u!0 a2))"}},
          {"(= (bvadd x2 y2) (bvudiv a2 a2))"},
          {"?", {"0: (= u!0 (bvudiv a2 a2))"}},
          {"(= (bvadd x2 y2) (bvudiv y2 y2))"},
          {"?", {"0: (= u!0 (bvudiv y2 y2))", "0: (= u!0 (bvadd x2 y2))"}}});
}

TEST_F(Incremental, ConstantOfADroppedTermIsStillFree)
{
  expect({{"(= x2 (bvadd a2 a2))"},
          {"?"},
          {"(bvult a2 (bvurem b2 b2))"},
          {"?", {"0: (not (= (bvurem b2 b2) #b00))"}}});
}

TEST_F(Incremental, StepOfANewAssertionRestoresWhatItMentions)
{
  expect({{"(= (bvmul x2 #b11) (bvurem a2 a2))"},
          {"?"},
          {"(= y2 (bvudiv x2 x2))"},
          {"?", {"0: (= u!0 (bvmul x2 #b11))", "0: (= u!1 (= u!0 (bvurem a2 a2)))", "0: u!1"}}});
}

TEST_F(Incremental, EachAssertionIsSentOnItsLevel)
{
  expect({{"(= a2 (bvurem a2 b2))"},
          {"push"},
          {"push"},
          {"(= b2 (bvurem a2 b2))"},
          {"?", {"0: (= a2 (bvurem a2 b2))", "2: (= b2 (bvurem a2 b2))"}},
          {"pop"},
          {"?"},
          {"(= b2 (bvurem b2 a2))"},
          {"?", {"1: (= b2 (bvurem b2 a2))"}}});
}

TEST_F(Incremental, StepOfALowLevelSurvivesThePopOfAHighOne)
{
  expect({{"(bvult (bvadd x2 y2) (bvurem a2 a2))"},
          {"push"},
          {"(= (bvmul z2 #b11) (bvadd x2 y2))"},
          {"?", {"0: (not (= (bvurem a2 a2) #b00))"}},
          {"pop"},
          {"?"},
          {"(= x2 (bvmul x2 x2))"},
          {"?",
           {"0: (= x2 (bvmul x2 x2))", "0: (= u!0 (bvadd x2 y2))", "0: (= u!3 (bvult u!0 (bvurem a2 a2)))",
            "0: u!3"}}});
}

TEST_F(Incremental, FactIsRestoredByAssertingIt)
{
  expect({{"(and p q)"}, {"?"}, {"push"}, {"(or p r)"}, {"?", {"1: (or p r)", "1: p"}}, {"pop"}, {"?"}});
}

TEST_F(Incremental, AssumptionsAreUsesForOneQuery)
{
  expect({{"(= p (bvult a2 (bvurem a2 b2)))"},
          {"?p", {"0: (= p (bvult a2 (bvurem a2 b2)))", "? p"}},
          {"q"},
          {"?r", {"? r"}},
          {"?qr", {"1: q", "? q", "? r"}},
          {"(or q r)"},
          {"?", {"0: (or q r)", "0: q"}}});
}

TEST_F(Incremental, AssertionsThatSayTheSameAreSentOnce)
{
  expect(
      {{"(= a2 (bvurem a2 b2))"}, {"(= a2 (bvurem a2 b2))"}, {"true"}, {"?", {"0: (= a2 (bvurem a2 b2))"}}});
}

TEST_F(Incremental, PopTakesRestorationsBack)
{
  expect({{"(= (bvmul x2 #b11) (bvurem a2 a2))"},
          {"(= (bvurem a2 a2) b2)"},
          {"(= b2 (bvudiv b2 b2))"},
          {"?", {"0: (= (bvurem a2 a2) b2)", "0: (= b2 (bvudiv b2 b2))"}},
          {"push"},
          {"(= x2 (bvudiv x2 x2))"},
          {"?",
           {"1: (= x2 (bvudiv x2 x2))", "1: (= u!0 (bvmul x2 #b11))", "1: (= u!1 (= u!0 (bvurem a2 a2)))",
            "1: u!1"}},
          {"pop"},
          {"?"},
          {"push"},
          {"(= x2 (bvurem x2 x2))"},
          {"?",
           {"1: (= x2 (bvurem x2 x2))", "1: (= u!0 (bvmul x2 #b11))", "1: (= u!1 (= u!0 (bvurem a2 a2)))",
            "1: u!1"}}});
}

TEST_F(Incremental, ResetForgetsEverything)
{
  IncrementalEliminator eliminator(mgr_, "v");
  eliminator.push();
  eliminator.add_assertion(parse("(= x2 (bvurem x2 b2))"));
  EXPECT_EQ(eliminator.query().additions.size(), 1U);
  eliminator.reset();
  EXPECT_EQ(eliminator.get_num_levels(), 0U);
  EXPECT_TRUE(eliminator.get_assertions().empty());
  eliminator.add_assertion(parse("(= x2 b2)"));
  EXPECT_TRUE(eliminator.query().additions.empty());
  EXPECT_EQ(eliminator.get_counts().steps, 1U);
}

TEST_F(Incremental, RefusesWhatItCannotTakeAndStaysAsItWas)
{
  IncrementalEliminator eliminator(mgr_);
  TermManager other;
  const Term* foreign = other.make_true();
  eliminator.push();
  EXPECT_EQ(test::get_refusal([&] { eliminator.add_assertion(nullptr); }),
            "an assertion is a null pointer, but a term was expected");
  EXPECT_EQ(test::get_refusal([&] { eliminator.add_assertion(foreign); }),
            "an assertion belongs to another term manager, but a term of this one was expected");
  EXPECT_EQ(test::get_refusal([&] { eliminator.add_assertion(parse("x2")); }),
            "an assertion has sort (_ BitVec 2), but Bool was expected");
  const Terms assumptions{parse("x2")};
  EXPECT_EQ(test::get_refusal([&] { (void)eliminator.query(assumptions); }),
            "an assumption has sort (_ BitVec 2), but Bool was expected");
  EXPECT_EQ(test::get_refusal([&] { eliminator.pop(2); }),
            "the number of levels to be popped is 2, but there are 1");
  ModelStore model(&other);
  EXPECT_EQ(test::get_refusal([&] { eliminator.extend(model); }),
            "a model of another term manager was given, but one of this manager was expected");
  EXPECT_EQ(eliminator.get_num_levels(), 1U);
  EXPECT_TRUE(eliminator.get_assertions().empty());
}

}  // namespace
}  // namespace lumo
