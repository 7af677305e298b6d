#include "lumo/smtlib/certificate_printer.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"
#include "tests/support/refusal.h"
#include "tests/support/small_stack.h"

namespace lumo::smtlib {
namespace {

using test::get_refusal;
using test::parse_term;
using Terms = std::vector<const Term*>;

class CertificateText : public testing::Test
{
 protected:
  Terms parse(const std::vector<std::string>& texts)
  {
    Terms terms;
    for (const std::string& text : texts)
      terms.push_back(parse_term(mgr_, text));
    return terms;
  }
  /// The text without the comment at its head
  static std::string print(const Claim& claim)
  {
    std::ostringstream out;
    print_certificate(out, claim);
    const std::string text = out.str();
    const std::size_t first = text.find("(set-logic QF_BV)\n");
    EXPECT_TRUE(text.starts_with("; This is unsatisfiable if and only if"));
    return first == std::string::npos ? text : text.substr(first + 18);
  }

  TermManager mgr_;
  const Terms constants_ = parse({"x8", "y8", "z8", "p"});
  const Terms sum_ = parse({"(bvult (bvurem y8 z8) (bvadd x8 y8))", "p", "(= (bvurem y8 z8) z8)"});
};

TEST_F(CertificateText, HasTheAssertionsTheDefinitionsAndTheNegatedRest)
{
  const Elimination elimination = eliminate(mgr_, sum_);
  EXPECT_EQ(print({constants_, sum_, elimination.trail, elimination.assertions}),
            "(declare-fun x8 () (_ BitVec 8))\n"
            "(declare-fun y8 () (_ BitVec 8))\n"
            "(declare-fun z8 () (_ BitVec 8))\n"
            "(declare-fun p () Bool)\n"
            "(assert\n"
            "(let ((s!1 (bvurem y8 z8)))\n"
            "(and\n"
            "  (bvult s!1 (bvadd x8 y8))\n"
            "  (= s!1 z8))))\n"
            "(assert p)\n"
            "(define-fun u!0 () (_ BitVec 8) (bvadd x8 y8))\n"
            "(define-fun u!1 () Bool (bvult (bvurem y8 z8) u!0))\n"
            "(assert\n"
            "(let ((s!1 (bvurem y8 z8)))\n"
            "(not (and\n"
            "  (not (= s!1 #xff))\n"
            "  (= s!1 z8)))))\n"
            "(check-sat)\n");
}

TEST_F(CertificateText, NegatesARestOfNoneOrOne)
{
  const Trail none;
  const std::string declarations =
      "(declare-fun x8 () (_ BitVec 8))\n"
      "(declare-fun y8 () (_ BitVec 8))\n"
      "(declare-fun z8 () (_ BitVec 8))\n"
      "(declare-fun p () Bool)\n";
  EXPECT_EQ(print({constants_, {}, none, {}}), declarations + "(assert (not true))\n(check-sat)\n");
  const Terms one = parse({"(= (bvmul x8 x8) z8)"});
  EXPECT_EQ(
      print({constants_, one, none, one}),
      declarations + "(assert (= (bvmul x8 x8) z8))\n(assert (not (= (bvmul x8 x8) z8)))\n(check-sat)\n");
}

TEST_F(CertificateText, DeclaresWhatOnlyTheRestHas)
{
  const Trail none;
  const Terms rest = parse({"q"});
  EXPECT_EQ(print({{}, {}, none, rest}), "(declare-fun q () Bool)\n(assert (not q))\n(check-sat)\n");
}

TEST_F(CertificateText, RefusesDefinitionsThatProveTooMuch)
{
  const Term* u = mgr_.make_constant("u", mgr_.make_bv_type(8));
  const Term* complement = mgr_.make_term(mgr_.make_bv_not_symbol(8), {u});
  const Trail cyclic{{{u, complement, 0b1, nullptr}}, {}};
  const Trail twice{
      {{u, parse_term(mgr_, "(bvnot x8)"), 0b1, nullptr}, {u, parse_term(mgr_, "(bvneg x8)"), 0b1, nullptr}},
      {}};
  const Trail declared{{{constants_[0], parse_term(mgr_, "(bvnot y8)"), 0b1, nullptr}}, {}};
  const std::vector<std::pair<const Trail*, std::string>> rows = {
      {&cyclic, "the definition of u needs the constant itself, but definitions must not be cyclic"},
      {&twice, "two definitions of u were found, but each constant may have one"},
      {&declared, "the constant x8 is the fresh constant of a step, but the script declares it"},
  };
  for (const auto& row : rows) {
    std::ostringstream out;
    EXPECT_EQ(get_refusal([&] { print_certificate(out, {constants_, {}, *row.first, {}}); }), row.second);
    EXPECT_EQ(out.str(), "");
  }
}

/// A chain in which every application is eliminated but the last, and a rest that shares all of a deep term.
TEST(LargeCertificate, IsPrintedInLinearSizeWithoutRecursion)
{
  test::run_on_small_stack([] {
    constexpr std::size_t kSize = 100'000;
    TermManager mgr;
    const DataType* type = mgr.make_bv_type(8);
    Terms constants;
    const auto make = [&](std::size_t i) {
      constants.push_back(mgr.make_constant(test::numbered("x", i), type));
      return constants.back();
    };
    const Term* free = make(0);
    const Term* kept = make(1);
    for (std::size_t i = 2; i < kSize; ++i) {
      const Term* x = make(i);
      free = mgr.make_term(mgr.make_bv_sub_symbol(8), {free, x});
      kept = mgr.make_term(mgr.make_bv_urem_symbol(8), {kept, kept});
    }
    const Terms assertions{mgr.make_term(mgr.make_bv_ult_symbol(8), {free, kept}),
                           mgr.make_term(mgr.make_bv_ult_symbol(8), {kept, constants[1]})};
    const Elimination elimination = eliminate(mgr, assertions);
    EXPECT_EQ(elimination.trail.steps.size(), kSize - 1);
    std::ostringstream out;
    print_certificate(out, {constants, assertions, elimination.trail, elimination.assertions});
    EXPECT_LT(out.str().size(), 500 * kSize);
  });
}

}  // namespace
}  // namespace lumo::smtlib
