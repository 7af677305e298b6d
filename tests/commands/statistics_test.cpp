#include "lumo/commands/statistics.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace lumo::commands {
namespace {

std::size_t place(Kind kind) { return static_cast<std::size_t>(kind); }

Statistics make_statistics()
{
  Statistics statistics;
  statistics.before = {2, 17, 12, 1000000};
  statistics.after = {1, 3, 2, 1};
  statistics.steps = 8;
  statistics.eliminated[place(Kind::kIff)] = 1;
  statistics.eliminated[place(Kind::kEq)] = 2;
  statistics.eliminated[place(Kind::kBvAdd)] = 4;
  return statistics;
}

TEST(Statistics, CountTheApplicationsOfTheScript)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(8), {x, x});
  const Term* complement = mgr.make_term(mgr.make_bv_not_symbol(8), {x});
  Trail trail;
  trail.steps = {{x, complement, 1, complement}, {x, complement, 1, sum}, {x, sum, 1, nullptr}};
  Statistics statistics;
  statistics.count_steps(trail);
  EXPECT_EQ(statistics.steps, 3U);
  EXPECT_EQ(statistics.eliminated[place(Kind::kBvNot)], 1U);
  EXPECT_EQ(statistics.eliminated[place(Kind::kBvAdd)], 1U);
  EXPECT_EQ(statistics.get_num_eliminated(), 2U);
}

PhaseSeconds make_seconds()
{
  PhaseSeconds seconds{};
  seconds.fill(1234);  // of phases that are not shown
  const auto set = [&seconds](Phase phase, double value) {
    seconds[static_cast<std::size_t>(phase)] = value;
  };
  set(Phase::kRead, 0.5);
  set(Phase::kEliminate, 0.25);
  set(Phase::kSolve, 100);
  set(Phase::kExtend, 0.0000014);
  set(Phase::kCheck, 0);
  set(Phase::kCertify, 0);
  return seconds;
}

TEST(Statistics, ArePrintedAsATable)
{
  std::ostringstream out;
  print_statistics(out, make_statistics(), make_seconds());
  EXPECT_EQ(out.str(),
            "size                  before       after\n"
            "assertions                 2           1\n"
            "terms                     17           3\n"
            "applications              12           2\n"
            "constants            1000000           1\n"
            "eliminated                 7\n"
            "  = (Bool)                 1\n"
            "  =                        2\n"
            "  bvadd                    4\n"
            "steps                      8\n"
            "seconds\n"
            "  read              0.500000\n"
            "  eliminate         0.250000\n"
            "  solve           100.000000\n"
            "  extend            0.000001\n"
            "  check             0.000000\n");
}

TEST(Statistics, ArePrintedAsJson)
{
  std::ostringstream out;
  print_statistics_json(out, make_statistics(), make_seconds());
  EXPECT_EQ(out.str(),
            R"-({"before": {"assertions": 2, "terms": 17, "applications": 12, "constants": 1000000}, )-"
            R"-("after": {"assertions": 1, "terms": 3, "applications": 2, "constants": 1}, )-"
            R"-("steps": 8, "eliminated": {"= (Bool)": 1, "=": 2, "bvadd": 4}, )-"
            R"-("seconds": {"read": 0.500000, "eliminate": 0.250000, "solve": 100.000000, )-"
            R"-("extend": 0.000001, "check": 0.000000}})-");
}

TEST(Statistics, TellOfACertificateIfThereWasOne)
{
  Statistics statistics;
  statistics.confirmer = "\"a b\"";
  PhaseSeconds seconds{};
  seconds[static_cast<std::size_t>(Phase::kCertify)] = 1.5;
  std::ostringstream text;
  print_statistics(text, statistics, seconds);
  EXPECT_NE(text.str().find("steps                      0\nunsat           confirmed by \"a b\"\nseconds\n"),
            std::string::npos)
      << text.str();
  EXPECT_TRUE(text.str().ends_with("\n  certify           1.500000\n")) << text.str();
  std::ostringstream json;
  print_statistics_json(json, statistics, seconds);
  EXPECT_NE(json.str().find(R"-(, "unsat_confirmed_by": "\"a b\"", "seconds": )-"), std::string::npos);
  EXPECT_TRUE(json.str().ends_with(R"-(, "certify": 1.500000}})-")) << json.str();
}

}  // namespace
}  // namespace lumo::commands
