// Conversations whose answers somebody else knows: files with known answers, and random ones that z3 answers, too.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/commands/random_conversation.h"
#include "tests/commands/shell_run.h"
#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/text_file.h"

namespace lumo::test {
namespace {

std::vector<ShellMethod> list_shell_methods()
{
  std::vector<ShellMethod> methods = {{}, {{}, false, {}}};
  if (!std::string(LUMO_Z3_PROGRAM).empty()) methods.push_back({LUMO_Z3_PROGRAM " -in", true, {}});
  if (!std::string(LUMO_CVC5_PROGRAM).empty())
    methods.push_back({LUMO_CVC5_PROGRAM " --incremental", true, {}});
  return methods;
}

/// The answers to queries, separated by commas.
std::string list_answers(const std::string& output)
{
  std::istringstream lines(output);
  std::string answers;
  for (std::string line; std::getline(lines, line);) {
    if (line == "sat" || line == "unsat" || line == "unknown") answers += (answers.empty() ? "" : ",") + line;
  }
  return answers;
}

/// A folder of conversations with a table of their answers: the one that LUMO_CONVERSATIONS names, or one beside the
/// checkout.
std::filesystem::path find_conversations()
{
  const char* chosen = std::getenv("LUMO_CONVERSATIONS");  // NOLINT(concurrency-mt-unsafe)
  return chosen != nullptr ? std::filesystem::path(chosen)
                           : std::filesystem::path(LUMO_SOURCE_DIR) / "../shared/data/conversations";
}

TEST(ShellConversations, HaveTheKnownAnswers)
{
  const std::filesystem::path folder = find_conversations();
  std::ifstream table(folder / "index.tsv");
  if (!table) GTEST_SKIP() << "there is no folder of conversations";
  std::size_t num_files = 0;
  std::string line;
  std::getline(table, line);  // the heads of the columns
  while (std::getline(table, line)) {
    std::istringstream fields(line);
    std::string file;
    std::string logic;
    std::string answers;
    fields >> file >> logic >> answers;
    ++num_files;
    for (const ShellMethod& method : list_shell_methods()) {
      // cvc5 takes other theories in conversations only with options of its own.
      const bool is_cvc5 = method.solver && method.solver->find("cvc5") != std::string::npos;
      if (logic != "QF_BV" && is_cvc5) continue;
      const SubcommandRun outcome = run_shell_on(read_text_file(folder / file), method);
      EXPECT_EQ(list_answers(outcome.out), answers)
          << file << " by " << method.solver.value_or("Z3 within lumo");
      // A solver does not tell values of what no assertion mentions.
      if (logic == "QF_BV") {
        EXPECT_EQ(outcome.status, commands::kAnswered) << file << '\n' << outcome.out;
      }
    }
  }
  EXPECT_GT(num_files, 0U);
}

TEST(ShellConversations, HaveTheAnswersOfZ3)
{
  if (std::string(LUMO_Z3_PROGRAM).empty()) GTEST_SKIP() << "there is no z3";
  Random random(14);
  SCOPED_TRACE(random);
  const TemporaryFolder folder;
  RandomConversation conversation(random);
  const std::vector<ShellMethod> methods = list_shell_methods();
  constexpr int kNumConversations = 60;
  for (int i = 0; i < kNumConversations; ++i) {
    const std::string text = conversation.make(10 + static_cast<std::size_t>(random.bits() % 50));
    const Outcome expected = run_program(LUMO_Z3_PROGRAM, {"-in"}, folder.get_path(), text);
    ASSERT_EQ(expected.out.find("error"), std::string::npos) << text << expected.out;
    const SubcommandRun outcome = run_shell_on(text, methods[static_cast<std::size_t>(i) % methods.size()]);
    EXPECT_EQ(outcome.out, expected.out) << text;
    EXPECT_EQ(outcome.status, commands::kAnswered) << text;
  }
}

/// The core is asked for by a second conversation, with the assertions of the core alone.
TEST(ShellConversations, HaveCoresThatAreUnsatisfiable)
{
  Random random(15);
  SCOPED_TRACE(random);
  RandomConversation conversation(random);
  std::size_t num_cores = 0;
  for (int i = 0; i < 60; ++i) {
    std::istringstream lines(conversation.make(25));
    std::string declarations;
    std::vector<std::string> assertions;
    for (std::string line; std::getline(lines, line) && line != "(pop 1)" && line != "(pop 2)";) {
      if (line.starts_with("(declare-")) declarations += line;
      if (line.starts_with("(assert ")) assertions.push_back(line.substr(8, line.size() - 9));
    }
    std::string text = "(set-option :produce-unsat-cores true)" + declarations;
    for (std::size_t j = 0; j < assertions.size(); ++j)
      text += "(assert (! " + assertions[j] + " :named n" + std::to_string(j) + "))";
    const SubcommandRun outcome = run_shell_on(text + "(check-sat)");
    if (outcome.out != "unsat\n") continue;
    std::istringstream names(
        run_shell_on(text + "(check-sat)(get-unsat-core)").out.substr(std::string("unsat\n(").size()));
    std::string core = declarations;
    for (std::string name; names >> name;) {
      name.erase(name.find_last_not_of(')') + 1);
      core += "(assert " + assertions.at(std::stoul(name.substr(1))) + ")";
    }
    ++num_cores;
    EXPECT_EQ(run_shell_on(core + "(check-sat)", {{}, false, {}}).out, "unsat\n") << text;
  }
  EXPECT_GT(num_cores, 5U);
}

}  // namespace
}  // namespace lumo::test
