// `--certificate`, `--certify` and `--checker` of the subcommands.

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/commands/run_shell.h"
#include "lumo/commands/run_simplify.h"
#include "lumo/commands/run_solve.h"
#include "tests/commands/random_conversation.h"
#include "tests/commands/subcommand_run.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

using commands::ShellOptions;
using commands::SimplifyOptions;
using commands::SolveOptions;

/// A checker that prints this, whatever it reads.
std::string make_checker(const std::string& output) { return "cat > /dev/null; printf '" + output + "'"; }

/// x is free, and what is left has no model.
constexpr const char* kUnsatScript =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const y (_ BitVec 8))\n"
    "(assert (bvult y (bvadd x y)))\n"
    "(assert (= (bvmul y y) #x02))\n"
    "(check-sat)\n";
constexpr const char* kSatScript =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const y (_ BitVec 8))\n"
    "(assert (bvult y (bvadd x y)))\n"
    "(assert (= (bvmul y y) #x04))\n"
    "(check-sat)\n";

SolveOptions make_certifying(const std::optional<std::string>& checker = {})
{
  SolveOptions options;
  options.file = "-";
  options.method.certification = {true, checker};
  return options;
}

SubcommandRun certify(const SolveOptions& options, const std::string& script = kUnsatScript)
{
  return run(commands::run_solve, options, script);
}

/// Z3's answers to the scripts of a text, which `(reset)` separates.
std::vector<z3::check_result> ask_z3(const std::string& text)
{
  static const std::string kReset = "(reset)\n";
  std::vector<z3::check_result> answers;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(kReset, begin), text.size());
    z3::context z3;
    z3::solver solver(z3, "QF_BV");
    solver.from_string(text.substr(begin, end - begin).c_str());
    answers.push_back(solver.check());
    begin = end + kReset.size();
  }
  return answers;
}

TEST(Certify, SimplifyWritesTheCertificateWithTheOtherResults)
{
  const TemporaryFolder folder;
  SimplifyOptions options{"-", folder.get_file("rest"), folder.get_file("trail")};
  options.certificate = folder.get_file("certificate");
  EXPECT_EQ(run(commands::run_simplify, options, kSatScript).status, commands::kAnswered);
  EXPECT_EQ(folder.count_files(), 3U);
  EXPECT_EQ(ask_z3(folder.read("certificate")), std::vector{z3::unsat});

  const SubcommandRun rest = run(commands::run_simplify, SimplifyOptions{"-", "-", {}}, kSatScript);
  EXPECT_EQ(folder.read("rest"), rest.out);
}

TEST(Certify, SimplifyRefusesOneFileForTwoResults)
{
  const TemporaryFolder folder;
  const std::string file = folder.get_file("f");
  SimplifyOptions options{"-", file, {}};
  options.certificate = file;
  const std::string end = " would both go to " + file + ", but two files were expected\n";
  EXPECT_EQ(run(commands::run_simplify, options, kSatScript).err, "lumo: the rest and the certificate" + end);
  options.rest = "-";
  options.trail = file;
  EXPECT_EQ(run(commands::run_simplify, options, kSatScript).err,
            "lumo: the trail and the certificate" + end);
  const std::string script = folder.write("script", kSatScript);
  options.file = options.certificate.emplace(script);
  EXPECT_EQ(run(commands::run_simplify, options).err,
            "lumo: " + script + " would be overwritten, but it is the script that is read\n");
  EXPECT_EQ(folder.count_files(), 1U);
}

TEST(Certify, SolveAnswersUnsatIfItIsConfirmed)
{
  for (const auto& checker : {std::optional<std::string>(), std::optional(make_checker("unsat\\n"))}) {
    const SubcommandRun confirmed = certify(make_certifying(checker));
    EXPECT_EQ(confirmed.status, commands::kAnswered);
    EXPECT_EQ(confirmed.out, "unsat\n");
    EXPECT_EQ(confirmed.err, "");
  }
}

TEST(Certify, SolveGivesNoAnswerIfTheCertificateIsRefuted)
{
  const SubcommandRun refuted = certify(make_certifying(make_checker("sat\\n")));
  EXPECT_EQ(refuted.status, commands::kCheckFailed);
  EXPECT_EQ(refuted.out, "");
  EXPECT_EQ(refuted.err, "<stdin>: what elimination leaves is unsatisfiable, but \"" +
                             make_checker("sat\\n") +
                             "\" finds that it does not follow from the script, so there is no answer\n");
}

TEST(Certify, SolveAnswersUnknownIfTheCheckerDoesNotKnow)
{
  const std::string checker = make_checker("unknown\\n(:reason-unknown tired)\\n");
  const SubcommandRun unknown = certify(make_certifying(checker));
  EXPECT_EQ(unknown.status, commands::kAnswered);
  EXPECT_EQ(unknown.out, "unknown\n");
  EXPECT_EQ(unknown.err, "<stdin>: the answer is unknown, since \"" + checker +
                             "\" did not confirm the certificate of unsat: the solver \"" + checker +
                             "\" said (:reason-unknown tired)\n");
}

TEST(Certify, SolveStopsTheCheckerAtTheTimeLimit)
{
  SolveOptions options = make_certifying("sleep 60");
  options.method.solver_command = make_checker("unsat\\n");
  options.method.seconds = 3;  // The solver has the same limit.
  const SubcommandRun unknown = certify(options);
  EXPECT_EQ(unknown.out, "unknown\n");
  EXPECT_EQ(
      unknown.err,
      "<stdin>: the answer is unknown, since \"sleep 60\" did not confirm the certificate of unsat: the time "
      "limit of 3 s was reached\n");
}

TEST(Certify, SolveFailsIfTheCheckerDoes)
{
  const SubcommandRun failed = certify(make_certifying("echo nothing"));
  EXPECT_EQ(failed.status, commands::kFailed);
  EXPECT_EQ(failed.out, "");
  EXPECT_EQ(
      failed.err,
      "<stdin>: the solver \"echo nothing\" ended with status 0 and printed nothing instead of an answer\n");
}

TEST(Certify, SolveAsksTheCheckerAfterUnsatOnly)
{
  EXPECT_EQ(certify(make_certifying("exit 1"), kSatScript).out, "sat\n");
  SolveOptions options = make_certifying("exit 1");
  options.method.solver_command = make_checker("unknown\\n");
  EXPECT_EQ(certify(options).out, "unknown\n");
}

TEST(Certify, SolveCertifiesWithoutElimination)
{
  SolveOptions options = make_certifying();
  options.method.eliminates = false;
  EXPECT_EQ(certify(options).out, "unsat\n");
}

TEST(Certify, StatisticsSayWhoConfirmed)
{
  SolveOptions options = make_certifying();
  options.wants_statistics = true;
  const SubcommandRun with_z3 = certify(options);
  EXPECT_NE(with_z3.err.find("\nunsat           confirmed by Z3\nseconds\n"), std::string::npos)
      << with_z3.err;
  EXPECT_NE(with_z3.err.find("\n  certify "), std::string::npos) << with_z3.err;
  options.wants_json = true;
  options.method.certification.checker_command = make_checker("unsat\\n");
  const std::string json = certify(options).out;
  EXPECT_NE(json.find("\"unsat_confirmed_by\": \"\\\"cat > /dev/null; "), std::string::npos) << json;
  EXPECT_NE(json.find("\"certify\": "), std::string::npos) << json;
  options.method.certification.is_wanted = false;
  EXPECT_EQ(certify(options).out.find("certif"), std::string::npos);
  EXPECT_EQ(certify(options).out.find("confirmed"), std::string::npos);
}

TEST(Certify, SolveWritesTheCertificateOfUnsat)
{
  const TemporaryFolder folder;
  SolveOptions options;
  options.file = "-";
  options.certificate = folder.get_file("certificate");
  EXPECT_EQ(certify(options, kSatScript).out, "sat\n");
  EXPECT_EQ(folder.count_files(), 0U);
  EXPECT_EQ(certify(options).out, "unsat\n");
  EXPECT_EQ(ask_z3(folder.read("certificate")), std::vector{z3::unsat});
  options.certificate = "-";
  EXPECT_EQ(certify(options).err,
            "lumo: the answer and the certificate would both go to -, but two files were expected\n");
}

// -----------------------------------------------------------------------------------------------------------
// Conversations

constexpr const char* kConversation =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const y (_ BitVec 8))\n"
    "(assert (bvult (bvmul y y) (bvadd x y)))\n"
    "(check-sat)\n"
    "(push 1)\n"
    "(assert (= (bvurem y y) #x02))\n"
    "(assert (= x #x00))\n"
    "(check-sat)\n"
    "(pop 1)\n"
    "(check-sat-assuming ((= (bvmul y y) #x02)))\n"
    "(check-sat)\n";

SubcommandRun converse(const ShellOptions& options, const std::string& text = kConversation)
{
  std::istringstream in(text);
  std::ostringstream out;
  std::ostringstream err;
  const int status = commands::run_shell(options, in, out, err);
  return {status, out.str(), err.str()};
}

TEST(Certify, ShellHasEachUnsatConfirmedAndWritten)
{
  const TemporaryFolder folder;
  ShellOptions options;
  options.method.certification.is_wanted = true;
  options.certificate = folder.get_file("certificates");
  const SubcommandRun outcome = converse(options);
  EXPECT_EQ(outcome.status, commands::kAnswered);
  EXPECT_EQ(outcome.out, "sat\nunsat\nunsat\nsat\n");
  EXPECT_EQ(ask_z3(folder.read("certificates")), (std::vector{z3::unsat, z3::unsat}));

  SolveOptions solving = make_certifying();
  solving.certificate = folder.get_file("others");
  EXPECT_EQ(certify(solving, kConversation).out, outcome.out);
  EXPECT_EQ(folder.read("others"), folder.read("certificates"));
}

TEST(Certify, ShellAnswersUnknownIfItIsNotConfirmed)
{
  ShellOptions options;
  options.method.certification = {true, make_checker("sat\\n")};
  const SubcommandRun refuted = converse(options, "(assert false)(check-sat)(get-info :reason-unknown)");
  const std::string sentence = "what elimination leaves is unsatisfiable, but \"\"" + make_checker("sat\\n") +
                               "\"\" finds that it does not follow from the script, so there is no answer";
  EXPECT_EQ(refuted.status, commands::kCheckFailed);
  EXPECT_EQ(refuted.out, "(error \"" + sentence + "\")\nunknown\n(:reason-unknown \"" + sentence + "\")\n");

  options.method.certification.checker_command = make_checker("unknown\\n");
  const SubcommandRun unknown = converse(options, "(assert false)(check-sat)");
  EXPECT_EQ(unknown.status, commands::kRefused);
  EXPECT_EQ(unknown.out, "(error \"\"\"" + make_checker("unknown\\n") +
                             "\"\" did not confirm the certificate of unsat\")\nunknown\n");
}

TEST(Certify, ShellsAreConfirmedInRandomConversations)
{
  Random random(18);
  SCOPED_TRACE(random);
  const TemporaryFolder folder;
  RandomConversation conversation(random);
  std::size_t num_certificates = 0;
  for (int i = 0; i < 100; ++i) {
    ShellOptions options;
    options.method.eliminates = i % 10 != 0;
    options.certificate = folder.get_file("certificates");
    const std::string text = conversation.make(10 + static_cast<std::size_t>(random.bits() % 50));
    ASSERT_EQ(converse(options, text).status, commands::kAnswered);
    for (const z3::check_result answer : ask_z3(folder.read("certificates"))) {
      ++num_certificates;
      EXPECT_EQ(answer, z3::unsat) << text << folder.read("certificates");
    }
  }
  EXPECT_GT(num_certificates, 100U);
}

}  // namespace
}  // namespace lumo::test
