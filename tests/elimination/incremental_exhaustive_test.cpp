// All short conversations over a few small assertions. Every query is judged by trying all assignments.

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/elimination/conversation_judge.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"

namespace lumo::test {
namespace {

/// Assertions over few constants, each used once in some sets of assertions and more often in others.
struct Pool
{
  const char* name;
  std::vector<std::string_view> assertions;
  std::size_t length;  ///< of the longest conversation, without its last query
};

const Pool kPools[] = {
    {"Chain", {"(= (bvadd x1 y1) z1)", "(= x1 #b1)", "(bvult y1 z1)"}, 5},
    {"Facts", {"p", "(and p q)", "(or (not q) r)", "(not p)"}, 5},
    {"Guards", {"(bvult x2 a2)", "(= a2 #b00)", "(= x2 a2)", "(or p (bvsle a2 y2))"}, 4},
    {"Products", {"(= (bvmul x2 #b10) a2)", "(= a2 #b01)", "(= (bvmul x2 y2) #b11)"}, 5},
    {"Regrouped",
     {"(= (bvadd (bvadd x1 a1) (bvadd y1 a1)) (bvnot a1))", "(= (bvadd x1 a1) #b1)", "(= x1 y1)"},
     5},
    {"Branches", {"(= (ite p x1 a1) y1)", "(= p (= a1 #b1))", "(ite q (= x1 #b0) p)"}, 5},
    {"Parts",
     {"(= (concat x1 y1) (bvnot (concat y1 a1)))", "(= ((_ extract 0 0) b2) a1)", "(bvult b2 #b10)"},
     5},
    {"Shifts", {"(= (bvshl x2 #b01) a2)", "(= (bvlshr x2 #b01) b2)", "(= a2 (bvnot b2))"}, 5},
};

class Conversations : public testing::TestWithParam<Pool>
{
 protected:
  enum : std::size_t
  {
    kPush,
    kPop,
    kQuery,
    kFirstAssertion
  };

  /// Plays a conversation that ends with a query. Returns whether it is valid: it pops no level that does not exist.
  bool play(const std::vector<std::size_t>& commands)
  {
    TermManager mgr;
    Conversation conversation(mgr);
    for (const std::size_t command : commands) {
      if (command == kPush) {
        conversation.push();
      } else if (command == kPop) {
        if (conversation.get_num_levels() == 0) return false;
        conversation.pop();
      } else if (command == kQuery) {
        (void)conversation.query();  // judged as the end of a shorter conversation
      } else {
        conversation.add_assertion(parse_term(mgr, GetParam().assertions[command - kFirstAssertion]));
      }
    }
    EXPECT_EQ(judge_query(mgr, conversation.get_eliminator(), conversation.query()), "")
        << describe(commands);
    return true;
  }
  std::string describe(const std::vector<std::size_t>& commands) const
  {
    std::string text;
    for (const std::size_t command : commands) {
      text += command == kPush    ? "push "
              : command == kPop   ? "pop "
              : command == kQuery ? "? "
                                  : std::string(GetParam().assertions[command - kFirstAssertion]) + " ";
    }
    return text;
  }
};

TEST_P(Conversations, HaveRightAnswersAndModels)
{
  const std::size_t num_commands = kFirstAssertion + GetParam().assertions.size();
  std::vector<std::vector<std::size_t>> conversations{{}};
  for (std::size_t i = 0; i < conversations.size() && !HasFailure(); ++i) {
    if (!play(conversations[i]) || conversations[i].size() == GetParam().length) continue;
    for (std::size_t command = 0; command < num_commands; ++command) {
      std::vector<std::size_t> longer = conversations[i];
      // Skip a query directly after a query, and a pop directly after a push: they change nothing.
      const std::size_t last = longer.empty() ? kPush : longer.back();
      if (command == kQuery && (longer.empty() || last == kQuery)) continue;
      if (command == kPop && !longer.empty() && last == kPush) continue;
      longer.push_back(command);
      conversations.push_back(std::move(longer));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Incremental, Conversations, testing::ValuesIn(kPools),
                         [](const testing::TestParamInfo<Pool>& pool) { return pool.param.name; });

}  // namespace
}  // namespace lumo::test
