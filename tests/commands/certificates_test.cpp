// Certificates of what elimination leaves: the programs of two solvers confirm all that are right, and refute those in
// which something is wrong.

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/commands/certify.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/guard_lemmas.h"
#include "lumo/smtlib/certificate_printer.h"
#include "lumo/smtlib/script_reader.h"
#include "tests/support/notation.h"
#include "tests/support/process.h"
#include "tests/support/random_formula.h"
#include "tests/support/smt2_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/text_file.h"

namespace lumo::test {
namespace {

struct Program
{
  const char* name;
  std::string file;
  std::vector<std::string> args;
};

const std::vector<Program> kPrograms = {
    {"z3", LUMO_Z3_PROGRAM, {"-in", "-t:20000"}},
    {"cvc5", LUMO_CVC5_PROGRAM, {"--lang=smt2", "--tlimit-per=20000"}},
};

/// The certificate that the rest follows from the assertions, with lemmas for guards.
std::string print(TermManager& mgr, const std::vector<const Term*>& constants,
                  const std::vector<const Term*>& assertions, const Trail& trail,
                  const std::vector<const Term*>& rest)
{
  const GuardLemmas lemmas = separate_guards(mgr, trail, rest);
  std::ostringstream out;
  smtlib::print_certificate(out, {constants, assertions, lemmas.trail, lemmas.rest});
  return std::move(out).str();
}

/// Texts that a solver answers one after the other.
class Texts
{
 public:
  void add(const std::string& text)
  {
    script_ += text + "(reset)\n";
    texts_.push_back(text);
  }
  [[nodiscard]] std::size_t get_size() const { return texts_.size(); }
  /// Expects that every program gives that answer to all of them.
  void expect(const std::string& answer) const
  {
    const TemporaryFolder folder;
    for (const Program& program : kPrograms) {
      if (program.file.empty()) continue;
      std::istringstream lines(run_program(program.file, program.args, folder.get_path(), script_).out);
      std::vector<std::string> answers;
      for (std::string line; std::getline(lines, line);)
        answers.push_back(line);
      ASSERT_EQ(answers.size(), texts_.size()) << program.name;
      for (std::size_t i = 0; i < texts_.size(); ++i)
        EXPECT_EQ(answers[i], answer) << program.name << " for\n" << texts_[i];
    }
  }

 private:
  std::string script_;
  std::vector<std::string> texts_;
};

std::string make_certificate_of(const std::string& text)
{
  TermManager mgr;
  const smtlib::Script script = smtlib::read_script(mgr, text);
  return commands::make_certificate(mgr, script, eliminate(mgr, script.get_asserted_terms()));
}

TEST(Certificates, OfOwnFilesAreConfirmed)
{
  Texts texts;
  for (const std::string& file : list_own_files())
    texts.add(make_certificate_of(read_text_file(file)));
  EXPECT_GE(texts.get_size(), 40U);
  texts.expect("unsat");
}

struct Family
{
  const char* name;
  FormulaLimits limits;
  std::size_t num_formulas;
};

std::ostream& operator<<(std::ostream& out, const Family& family) { return out << family.name; }

class CertificateFamily : public testing::TestWithParam<Family>
{};

TEST_P(CertificateFamily, IsConfirmed)
{
  Random random(16);
  SCOPED_TRACE(random);
  Texts texts;
  std::size_t num_steps = 0;
  for (std::size_t i = 0; i < GetParam().num_formulas; ++i) {
    TermManager mgr;
    const RandomFormula formula = make_random_formula(mgr, random, GetParam().limits);
    const Elimination elimination = eliminate(mgr, formula.assertions);
    num_steps += elimination.trail.steps.size();
    texts.add(print(mgr, formula.constants, formula.assertions, elimination.trail, elimination.assertions));
  }
  EXPECT_GT(num_steps, GetParam().num_formulas / 2);
  texts.expect("unsat");
}

INSTANTIATE_TEST_SUITE_P(
    Formulas, CertificateFamily,
    testing::Values(
        Family{"Narrow", {.widths = {1, 2, 3, 4}}, 300}, Family{"Medium", {.max_applications = 16}, 200},
        Family{"Large", {.widths = {1, 2, 4}, .max_applications = 200}, 20},
        Family{"Wide", {.widths = {33, 64, 65}, .max_applications = 16, .has_products = false}, 100},
        Family{"WideWithProducts", {.widths = {16, 32, 33, 64, 65}, .max_applications = 10}, 200}),
    [](const auto& row) { return row.param.name; });

/// Without lemmas, solvers would have to find that two products of 32 bits are equal.
TEST(Certificates, OfGuardsBelowProductsAreConfirmed)
{
  Texts texts;
  texts.add(
      make_certificate_of("(declare-const x (_ BitVec 32))(declare-const y (_ BitVec 32))"
                          "(declare-const e (_ BitVec 32))(declare-const a (_ BitVec 32))"
                          "(declare-const b (_ BitVec 32))"
                          "(assert (= (bvmul (bvmul (ite (bvult x e) a b) e) (bvadd a (ite (bvsle e y) a e)))"
                          " (bvmul a b)))"));
  texts.expect("unsat");
}

// -----------------------------------------------------------------------------------------------------------
// Wrong certificates

/// Whether Z3 finds a text satisfiable.
bool is_satisfiable(const std::string& text)
{
  z3::context z3;
  z3::solver solver(z3, "QF_BV");
  solver.from_string(text.c_str());
  return solver.check() == z3::sat;
}

/// If the script has a model, then the negation of an assertion of the rest does not follow from it.
TEST(WrongCertificates, WithANegatedAssertionOfTheRestAreRefuted)
{
  Random random(17);
  SCOPED_TRACE(random);
  Texts texts;
  for (int i = 0; i < 300; ++i) {
    TermManager mgr;
    const RandomFormula formula = make_random_formula(mgr, random, {.widths = {1, 2, 3, 4}});
    Elimination elimination = eliminate(mgr, formula.assertions);
    const Term* no = mgr.make_false();
    const std::vector<const Term*> contradiction{no};
    if (elimination.assertions.empty()) continue;
    // The claim that false follows is refuted if there is a model.
    if (!is_satisfiable(print(mgr, formula.constants, formula.assertions, {}, contradiction))) continue;
    const std::size_t chosen = static_cast<std::size_t>(random.bits() % elimination.assertions.size());
    const Term*& assertion = elimination.assertions[chosen];
    assertion = mgr.make_term(mgr.make_not_symbol(), {assertion});
    texts.add(print(mgr, formula.constants, formula.assertions, elimination.trail, elimination.assertions));
  }
  EXPECT_GT(texts.get_size(), 30U);
  texts.expect("sat");
}

/// A trail whose step was exchanged for a wrong one.
struct PlantedStep
{
  std::string assertion;
  std::size_t step;
  std::string wrong;  ///< the application; in the assertions, s, t and r occur several times
};

const PlantedStep kPlantedSteps[] = {
    {"(= (bvurem (bvadd x8 s8) s8) t8)", 0, "(bvsub x8 s8)"},
    {"(= (bvurem (bvmul x8 #x05) s8) t8)", 0, "(bvmul x8 #x03)"},
    {"(= (bvurem (bvmul x8 #x0a) s8) t8)", 0, "(bvmul x8 #x03)"},
    {"(= (bvurem (bvshl x8 #x02) s8) t8)", 0, "((_ extract 6 1) x8)"},
    {"(= (bvurem (bvand (bvand x8 s8) y8) s8) t8)", 0, "(bvor x8 y8)"},
    {"(= (bvurem (ite p x8 y8) s8) t8)", 0, "(ite p y8 x8)"},
    {"(= (and (bvult x8 s8) (= s8 t8)) r)", 0, "(bvule x8 s8)"},
    {"(= (and (bvsle s8 x8) (= s8 t8)) r)", 0, "(bvsle x8 s8)"},
};

TEST(WrongCertificates, WithAPlantedStepAreRefuted)
{
  Texts texts;
  Texts right;
  for (const PlantedStep& row : kPlantedSteps) {
    TermManager mgr;
    const std::vector<const Term*> assertions{parse_term(mgr, row.assertion),
                                              parse_term(mgr, "(= (bvmul s8 s8) (bvmul t8 t8))"),
                                              parse_term(mgr, "(or r (= (bvmul s8 s8) t8))")};
    Elimination elimination = eliminate(mgr, assertions);
    ASSERT_LT(row.step, elimination.trail.steps.size()) << row.assertion;
    const std::vector<const Term*> constants = {parse_term(mgr, "x8"), parse_term(mgr, "y8"),
                                                parse_term(mgr, "s8"), parse_term(mgr, "t8"),
                                                parse_term(mgr, "p"),  parse_term(mgr, "r")};
    right.add(print(mgr, constants, assertions, elimination.trail, elimination.assertions));
    elimination.trail.steps[row.step].application = parse_term(mgr, row.wrong);
    texts.add(print(mgr, constants, assertions, elimination.trail, elimination.assertions));
  }
  right.expect("unsat");
  texts.expect("sat");
}

}  // namespace
}  // namespace lumo::test
