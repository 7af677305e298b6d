#include "lumo/smtlib/trail_printer.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/notation.h"
#include "tests/support/refusal.h"

namespace lumo::smtlib {
namespace {

using test::get_refusal;
using test::parse_term;
using Terms = std::vector<const Term*>;

class TrailText : public testing::Test
{
 protected:
  const Term* make_fresh(const std::string& name, unsigned long w)
  {
    return mgr_.make_constant(name, w == 0 ? mgr_.make_bool_type() : mgr_.make_bv_type(w));
  }
  Step make_step(const Term* fresh, const std::string& application, FreeArguments free)
  {
    return {fresh, parse_term(mgr_, application), free, nullptr};
  }
  /// The text without the comment at its head
  static std::string print(const Terms& constants, const Trail& trail)
  {
    std::ostringstream out;
    print_trail(out, constants, trail);
    const std::string text = out.str();
    const std::size_t first = text.find("(set-logic QF_BV)\n");
    EXPECT_TRUE(text.starts_with("; The applications that lumo eliminated"));
    return first == std::string::npos ? text : text.substr(first + 18);
  }

  TermManager mgr_;
  const Term* x_ = parse_term(mgr_, "x8");
  const Term* y_ = parse_term(mgr_, "y8");
  const Term* z_ = parse_term(mgr_, "z8");
  const Term* p_ = parse_term(mgr_, "p");
};

TEST_F(TrailText, DeclaresConstantsEvenWithoutSteps)
{
  EXPECT_EQ(print({}, {}), "");
  EXPECT_EQ(print({y_, p_}, {}), "(declare-fun y8 () (_ BitVec 8))\n(declare-fun p () Bool)\n");
}

TEST_F(TrailText, HasADefinitionForEachStepAndAnAssertionForEachFact)
{
  const Term* u = make_fresh("u!0", 8);
  const Term* v = make_fresh("u!1", 0);
  const Term* sum = mgr_.make_term(mgr_.make_bv_add_symbol(8), {u, z_});
  const Trail trail{{make_step(u, "(bvmul x8 y8)", 0b11),
                     {v, mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(8)), {u, sum}), 0b01, nullptr}},
                    {v, p_}};
  EXPECT_EQ(print({x_, y_, z_, p_}, trail),
            "(declare-fun x8 () (_ BitVec 8))\n"
            "(declare-fun y8 () (_ BitVec 8))\n"
            "(declare-fun z8 () (_ BitVec 8))\n"
            "(declare-fun p () Bool)\n"
            "(define-fun u!0 () (_ BitVec 8) (bvmul x8 y8))\n"
            "(set-info :lumo-step \"u!0 x8 y8\")\n"
            "(define-fun u!1 () Bool (= u!0 (bvadd u!0 z8)))\n"
            "(set-info :lumo-step \"u!1 u!0\")\n"
            "(assert u!1)\n"
            "(assert p)\n");
}

TEST_F(TrailText, DefinesBeforeUseAndKeepsTheOrderOfSteps)
{
  const Term* u = make_fresh("u", 8);
  const Term* v = make_fresh("v", 8);
  const Symbol* negate = mgr_.make_bv_neg_symbol(8);
  const Term* sum = mgr_.make_term(mgr_.make_bv_add_symbol(8), {x_, mgr_.make_term(negate, {v})});
  const Trail trail{{{u, sum, 0b01, nullptr}, make_step(v, "(bvnot y8)", 0b1)}, {}};
  EXPECT_EQ(print({x_, y_}, trail),
            "(declare-fun x8 () (_ BitVec 8))\n"
            "(declare-fun y8 () (_ BitVec 8))\n"
            "(define-fun v () (_ BitVec 8) (bvnot y8))\n"
            "(define-fun u () (_ BitVec 8) (bvadd x8 (bvneg v)))\n"
            "(set-info :lumo-step \"u x8\")\n"
            "(set-info :lumo-step \"v y8\")\n");
}

TEST_F(TrailText, DefinesOnceWhatStepsShare)
{
  const std::string whole = "(bvmul (bvneg z8) (bvneg z8))";
  const Trail trail{{make_step(make_fresh("u", 8), "(bvadd x8 (bvnot " + whole + "))", 0b01),
                     make_step(make_fresh("v", 8), "(bvsub y8 " + whole + ")", 0b01),
                     make_step(make_fresh("w", 8), "(bvnot " + whole + ")", 0b0),
                     make_step(make_fresh("s!1", 0), "(not p)", 0b1)},
                    {}};
  EXPECT_EQ(print({x_, y_, z_, p_}, trail),
            "(declare-fun x8 () (_ BitVec 8))\n"
            "(declare-fun y8 () (_ BitVec 8))\n"
            "(declare-fun z8 () (_ BitVec 8))\n"
            "(declare-fun p () Bool)\n"
            "(define-fun s!!1 () (_ BitVec 8)\n"
            "(let ((s!!2 (bvneg z8)))\n"
            "(bvmul s!!2 s!!2)))\n"
            "(define-fun u () (_ BitVec 8) (bvadd x8 (bvnot s!!1)))\n"
            "(set-info :lumo-step \"u x8\")\n"
            "(define-fun v () (_ BitVec 8) (bvsub y8 s!!1))\n"
            "(set-info :lumo-step \"v y8\")\n"
            "(define-fun w () (_ BitVec 8) (bvnot s!!1))\n"
            "(set-info :lumo-step \"w\")\n"
            "(define-fun s!1 () Bool (not p))\n"
            "(set-info :lumo-step \"s!1 p\")\n");
}

TEST_F(TrailText, SpellsNamesAsSymbolsWithinStrings)
{
  const Term* a = make_fresh("a \"b\"", 0);
  const Trail trail{{{make_fresh("let", 0), mgr_.make_term(mgr_.make_not_symbol(), {a}), 0b1, nullptr}}, {}};
  EXPECT_EQ(print({a}, trail),
            "(declare-fun |a \"b\"| () Bool)\n"
            "(define-fun |let| () Bool (not |a \"b\"|))\n"
            "(set-info :lumo-step \"|let| |a \"\"b\"\"|\")\n");
}

TEST_F(TrailText, RefusesWhatIsNoTrailOfTheScript)
{
  const Term* u = make_fresh("u", 8);
  const Term* v = make_fresh("v", 8);
  const Symbol* negate = mgr_.make_bv_neg_symbol(8);
  const Step step = make_step(u, "(bvadd x8 y8)", 0b11);
  struct Row
  {
    Terms constants;
    Trail trail;
    std::string text;
  };
  const std::vector<Row> rows = {
      {{x_},
       {{step}, {}},
       "the trail contains the constant y8, but the script does not declare it, and no step introduces it"},
      {{},
       {{}, {p_}},
       "the trail contains the constant p, but the script does not declare it, and no step introduces it"},
      {{x_, y_, u},
       {{step}, {}},
       "the constant u is the fresh constant of a step, but the script declares it"},
      {{x_, y_}, {{step, step}, {}}, "two definitions of u were found, but each constant may have one"},
      {{},
       {{{u, mgr_.make_term(negate, {v}), 1, nullptr}, {v, mgr_.make_term(negate, {u}), 1, nullptr}}, {}},
       "the definition of u needs the constant itself, but definitions must not be cyclic"},
      {{make_fresh("a|b", 0)},
       {},
       "the name a|b contains a bar, a backslash or a control character, but SMT-LIB 2 has no symbol with "
       "one"},
  };
  for (const Row& row : rows) {
    std::ostringstream out;
    EXPECT_EQ(get_refusal([&] { print_trail(out, row.constants, row.trail); }), row.text);
    EXPECT_EQ(out.str(), "");
  }
}

}  // namespace
}  // namespace lumo::smtlib
