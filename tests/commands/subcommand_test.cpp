#include "lumo/commands/subcommand.h"

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::test {
namespace {

using commands::SubcommandFailure;

struct SubcommandRow
{
  std::function<int()> subcommand;
  int status;
  std::string err;
};

TEST(RunSubcommand, GivesTheStatusAndTheMessage)
{
  const std::vector<SubcommandRow> rows = {
      {[] { return 0; }, 0, ""},
      {[] { return 1; }, 1, ""},
      {[]() -> int { throw SubcommandFailure("f: this is wrong"); }, 2, "f: this is wrong\n"},
      {[]() -> int { throw SubcommandFailure("f: this is wrong", 3); }, 3, "f: this is wrong\n"},
      {[]() -> int { throw SubcommandFailure(""); }, 2, ""},
      {[]() -> int { throw Exception("this is wrong"); }, 2, "lumo: this is wrong\n"},
  };
  for (const SubcommandRow& row : rows) {
    std::ostringstream err;
    EXPECT_EQ(commands::run_subcommand(err, row.subcommand), row.status) << row.err;
    EXPECT_EQ(err.str(), row.err);
  }
}

TEST(ReadInput, NamesWhatIsSkippedOnce)
{
  struct Row
  {
    std::string text;
    std::string err;
  };
  const std::vector<Row> rows = {
      {"(assert true)(check-sat)(get-model)(exit)", ""},
      {"(echo \"a\")(push 1)(assert true)(check-sat)(get-value (true))(echo \"b\")(get-unsat-core)(pop 1)",
       "<stdin>: commands that were skipped: echo, get-value, get-unsat-core\n"},
  };
  for (const Row& row : rows) {
    std::istringstream in(row.text);
    std::ostringstream err;
    commands::PhaseClock clock;
    const auto input = commands::read_input("-", in, err, clock);
    EXPECT_EQ(input->script.assertions.size(), 1U);
    EXPECT_EQ(err.str(), row.err);
  }
}

}  // namespace
}  // namespace lumo::test
