// Sorts, declared constants, true and false, and managers side by side.

#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"
#include "tests/support/numbered.h"
#include "tests/support/refusal.h"

namespace lumo::test {

// -----------------------------------------------------------------------------------------------------------
// sorts

TEST(Sorts, AreOneObjectEach)
{
  TermManager mgr;
  const DataType* byte = mgr.make_bv_type(8);
  const DataType* nine = mgr.make_bv_type(9);
  EXPECT_EQ(mgr.make_bool_type(), mgr.make_bool_type());
  EXPECT_EQ(mgr.make_bv_type(8), byte);
  EXPECT_EQ(mgr.make_bv_type(9), nine);
  EXPECT_NE(byte, nine);
  EXPECT_NE(byte, mgr.make_bool_type());
  for (unsigned long w = 1; w < 2000; ++w)
    EXPECT_EQ(mgr.make_bv_type(w)->get_width(), w);
  EXPECT_EQ(mgr.make_bv_type(8), byte);
}

TEST(Sorts, BitVectorsTellTheirWidth)
{
  TermManager mgr;
  for (const unsigned long w : {1UL, 8UL, 64UL, 1000000UL, TermManager::kMaxWidth}) {
    unsigned long width = 0;
    EXPECT_TRUE(mgr.is_bv_type(mgr.make_bv_type(w), &width));
    EXPECT_EQ(width, w);
    EXPECT_TRUE(mgr.is_bv_type(mgr.make_bv_type(w), nullptr));
    EXPECT_FALSE(mgr.is_bool_type(mgr.make_bv_type(w)));
  }
}

TEST(Sorts, BoolIsNoBitVectorAndLeavesTheWidthAlone)
{
  TermManager mgr;
  for (unsigned long untouched : {0UL, 77UL}) {
    unsigned long width = untouched;
    EXPECT_FALSE(mgr.is_bv_type(mgr.make_bool_type(), &width));
    EXPECT_EQ(width, untouched);
  }
  EXPECT_FALSE(mgr.is_bv_type(mgr.make_bool_type(), nullptr));
  EXPECT_TRUE(mgr.is_bool_type(mgr.make_bool_type()));
}

TEST(Sorts, AreSpeltAsInSmtLib)
{
  TermManager mgr;
  EXPECT_EQ(mgr.make_bool_type()->to_string(), "Bool");
  EXPECT_EQ(mgr.make_bv_type(1)->to_string(), "(_ BitVec 1)");
  EXPECT_EQ(mgr.make_bv_type(4294967295)->to_string(), "(_ BitVec 4294967295)");
}

TEST(Sorts, RefuseImpossibleWidths)
{
  TermManager mgr;
  const auto request = [&mgr](unsigned long w) { return [&mgr, w] { mgr.make_bv_type(w); }; };
  expect_refusal(mgr, request(0),
                 "a bit-vector sort of width 0 was requested, but widths are 1 to 4294967295");
  expect_refusal(mgr, request(4294967296),
                 "a bit-vector sort of width 4294967296 was requested, but widths are 1 to 4294967295");
  expect_refusal(
      mgr, request(~0UL),
      "a bit-vector sort of width 18446744073709551615 was requested, but widths are 1 to 4294967295");
  EXPECT_EQ(mgr.make_bv_type(8)->get_width(), 8);
}

// -----------------------------------------------------------------------------------------------------------
// true and false

TEST(TrueAndFalse, AreTwoBooleanTerms)
{
  TermManager mgr;
  EXPECT_EQ(mgr.make_true(), mgr.make_true());
  EXPECT_EQ(mgr.make_false(), mgr.make_false());
  EXPECT_NE(mgr.make_true(), mgr.make_false());
  EXPECT_EQ(mgr.make_true()->get_symbol(), mgr.get_true_symbol());
  EXPECT_EQ(mgr.make_false()->get_symbol(), mgr.get_false_symbol());
  EXPECT_EQ(mgr.get_true_symbol()->get_name(), "true");
  EXPECT_EQ(mgr.get_false_symbol()->get_name(), "false");
  for (const Term* t : {mgr.make_true(), mgr.make_false()}) {
    EXPECT_EQ(t->get_symbol()->get_output_type(), mgr.make_bool_type());
    EXPECT_EQ(t->get_num_args(), 0);
    EXPECT_FALSE(mgr.is_constant(t->get_symbol()));
    EXPECT_FALSE(mgr.is_number(t->get_symbol(), nullptr));
  }
}

// -----------------------------------------------------------------------------------------------------------
// constants

TEST(Constants, AreOneObjectPerName)
{
  TermManager mgr;
  const DataType* byte = mgr.make_bv_type(8);
  const Term* x = mgr.make_constant("x", byte);
  EXPECT_EQ(mgr.make_constant("x", byte), x);
  EXPECT_EQ(mgr.make_constant_symbol("x", byte), x->get_symbol());
  EXPECT_NE(mgr.make_constant("y", byte), x);
  EXPECT_EQ(x->get_symbol()->get_name(), "x");
  EXPECT_EQ(x->get_symbol()->get_output_type(), byte);
  EXPECT_EQ(x->get_num_args(), 0);
  EXPECT_TRUE(mgr.is_constant(x->get_symbol()));
}

TEST(Constants, MayStartAsASymbol)
{
  TermManager mgr;
  const Symbol* p = mgr.make_constant_symbol("p", mgr.make_bool_type());
  EXPECT_EQ(mgr.make_constant("p", mgr.make_bool_type())->get_symbol(), p);
  EXPECT_EQ(mgr.make_constant_symbol("p", mgr.make_bool_type()), p);
}

TEST(Constants, KeepAnyNameAsItIs)
{
  TermManager mgr;
  const std::string with_zero("a\0b", 3);
  const std::string long_name(10000, 'n');
  for (const std::string& name : {std::string(), std::string("with blank"), std::string("|quoted|"),
                                  with_zero, std::string("a"), long_name})
  {
    EXPECT_EQ(mgr.make_constant(name, mgr.make_bool_type())->get_symbol()->get_name(), name);
  }
  EXPECT_NE(mgr.make_constant(with_zero, mgr.make_bool_type()), mgr.make_constant("a", mgr.make_bool_type()));
}

TEST(Constants, SurviveTheNameThatTheyWereMadeWith)
{
  TermManager mgr;
  auto name = std::make_unique<std::string>("a name too long to lie within the string object itself");
  const Term* x = mgr.make_constant(*name, mgr.make_bool_type());
  name->assign(name->size(), '?');
  name.reset();
  EXPECT_EQ(x->get_symbol()->get_name(), "a name too long to lie within the string object itself");
  EXPECT_EQ(mgr.make_constant("a name too long to lie within the string object itself", mgr.make_bool_type()),
            x);
}

TEST(Constants, ManyStayApart)
{
  TermManager mgr;
  std::set<const Term*> terms;
  for (unsigned long i = 0; i < 10000; ++i)
    terms.insert(mgr.make_constant(numbered("c", i), mgr.make_bv_type(1 + (i % 7))));
  EXPECT_EQ(terms.size(), 10000);
  EXPECT_TRUE(terms.contains(mgr.make_constant("c8", mgr.make_bv_type(2))));
}

TEST(Constants, RefuseAnotherSort)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const Term* p = mgr.make_constant("p", mgr.make_bool_type());
  expect_refusal(
      mgr, [&mgr] { mgr.make_constant("x", mgr.make_bv_type(9)); },
      "the constant x was declared with sort (_ BitVec 8), but sort (_ BitVec 9) was given");
  expect_refusal(
      mgr, [&mgr] { mgr.make_constant_symbol("x", mgr.make_bool_type()); },
      "the constant x was declared with sort (_ BitVec 8), but sort Bool was given");
  expect_refusal(
      mgr, [&mgr] { mgr.make_constant("p", mgr.make_bv_type(1)); },
      "the constant p was declared with sort Bool, but sort (_ BitVec 1) was given");
  EXPECT_EQ(mgr.make_constant("x", mgr.make_bv_type(8)), x);
  EXPECT_EQ(mgr.make_constant("p", mgr.make_bool_type()), p);
}

TEST(Constants, RefuseANullSort)
{
  TermManager mgr;
  const std::string text = "a sort was expected, but a null pointer was given";
  expect_refusal(
      mgr, [&mgr] { mgr.make_constant("x", nullptr); }, text);
  expect_refusal(
      mgr, [&mgr] { mgr.make_constant_symbol("x", nullptr); }, text);
  expect_refusal(
      mgr, [&mgr] { mgr.make_fresh_constant("x", nullptr); }, text);
  EXPECT_EQ(mgr.make_constant("x", mgr.make_bool_type())->get_symbol()->get_name(), "x");
}

// -----------------------------------------------------------------------------------------------------------
// fresh constants

TEST(FreshConstants, StartWithThePrefixAndAreNew)
{
  TermManager mgr;
  std::set<std::string> names;
  for (const std::string prefix : {"x", "x", "y", "", "x!", "x!0", "", "x!0"}) {
    const std::size_t num_terms = mgr.get_num_terms();
    const Term* t = mgr.make_fresh_constant(prefix, mgr.make_bv_type(4));
    EXPECT_EQ(mgr.get_num_terms(), num_terms + 1);
    EXPECT_EQ(t->get_symbol()->get_name().substr(0, prefix.size()), prefix);
    EXPECT_EQ(t->get_symbol()->get_output_type(), mgr.make_bv_type(4));
    EXPECT_TRUE(mgr.is_constant(t->get_symbol()));
    EXPECT_TRUE(names.insert(t->get_symbol()->get_name()).second) << t->get_symbol()->get_name();
  }
}

TEST(FreshConstants, AvoidNamesTakenBefore)
{
  TermManager probe;
  TermManager mgr;
  std::set<const Term*> taken;
  for (int i = 0; i < 20; ++i) {
    // The names that a manager without other constants would choose
    const std::string name = probe.make_fresh_constant("x", probe.make_bool_type())->get_symbol()->get_name();
    if (i % 3 != 1) taken.insert(mgr.make_constant(name, mgr.make_bv_type(8)));
  }
  for (int i = 0; i < 20; ++i)
    EXPECT_TRUE(taken.insert(mgr.make_fresh_constant("x", mgr.make_bool_type())).second);
}

TEST(FreshConstants, AvoidNamesTakenInBetween)
{
  TermManager probe;
  probe.make_fresh_constant("x", probe.make_bool_type());
  const std::string second = probe.make_fresh_constant("x", probe.make_bool_type())->get_symbol()->get_name();

  TermManager mgr;
  const Term* first = mgr.make_fresh_constant("x", mgr.make_bool_type());
  const Term* taken = mgr.make_constant(second, mgr.make_bool_type());
  const Term* fresh = mgr.make_fresh_constant("x", mgr.make_bool_type());
  EXPECT_NE(fresh, first);
  EXPECT_NE(fresh, taken);
}

TEST(FreshConstants, AreFoundByTheirNames)
{
  TermManager mgr;
  const Term* t = mgr.make_fresh_constant("x", mgr.make_bv_type(4));
  EXPECT_EQ(mgr.make_constant(t->get_symbol()->get_name(), mgr.make_bv_type(4)), t);
}

TEST(FreshConstants, CountUpPerPrefixAndSkipDeclaredNames)
{
  TermManager mgr;
  const DataType* type = mgr.make_bool_type();
  const auto next = [&mgr, type](const std::string& prefix) {
    return mgr.make_fresh_constant(prefix, type)->get_symbol()->get_name();
  };
  for (const char* name :
       {"u!1", "u!3", "u!01", "u!-2", "u!", "u", "u!0x", "u!18446744073709551616", "v!u!0"})
    mgr.make_constant(name, type);
  EXPECT_EQ(next("u"), "u!0");
  EXPECT_EQ(next("u"), "u!2");
  mgr.make_constant("u!4", type);
  EXPECT_EQ(next("u"), "u!5");
  EXPECT_EQ(next("v!u"), "v!u!1");
  EXPECT_EQ(next("v"), "v!0");
  EXPECT_EQ(next("u"), "u!6");
}

TEST(FreshConstants, NameOfOneIsNotFreeForAnotherSort)
{
  TermManager mgr;
  mgr.make_fresh_constant("u", mgr.make_bool_type());
  expect_refusal(
      mgr, [&mgr] { mgr.make_constant("u!0", mgr.make_bv_type(4)); },
      "the constant u!0 was declared with sort Bool, but sort (_ BitVec 4) was given");
}

TEST(FreshConstants, NamesThatOnlyLookAlikeAreOtherConstants)
{
  TermManager mgr;
  const Term* fresh = mgr.make_fresh_constant("u", mgr.make_bool_type());
  for (const char* name : {"u!00", "u!1", "u", "!0", "v!0"})
    EXPECT_NE(mgr.make_constant(name, mgr.make_bool_type()), fresh) << name;
}

TEST(FreshConstants, AreTermsOfTheirSymbols)
{
  TermManager mgr;
  const Term* fresh = mgr.make_fresh_constant("u", mgr.make_bool_type());
  EXPECT_EQ(mgr.make_term(fresh->get_symbol(), {}), fresh);
  EXPECT_EQ(mgr.make_constant_symbol("u!0", mgr.make_bool_type()), fresh->get_symbol());
}

// -----------------------------------------------------------------------------------------------------------
// managers side by side

TEST(Managers, ShareNothing)
{
  TermManager first;
  auto second = std::make_unique<TermManager>();
  const Term* x = first.make_constant("x", first.make_bv_type(8));
  // The same name may have another sort elsewhere.
  const Term* y = second->make_constant("x", second->make_bool_type());
  EXPECT_NE(x, y);
  EXPECT_NE(first.make_bool_type(), second->make_bool_type());
  EXPECT_NE(first.make_bv_type(8), second->make_bv_type(8));
  EXPECT_NE(first.make_true(), second->make_true());
  EXPECT_NE(first.get_false_symbol(), second->get_false_symbol());
  EXPECT_NE(first.make_and_symbol(), second->make_and_symbol());
  EXPECT_NE(first.make_bv_number(1, 8), second->make_bv_number(1, 8));

  second.reset();
  EXPECT_EQ(first.make_constant("x", first.make_bv_type(8)), x);
  EXPECT_EQ(x->get_symbol()->get_name(), "x");
}

TEST(Managers, RefuseSortsOfAnother)
{
  TermManager mgr;
  TermManager other;
  const DataType* byte = other.make_bv_type(8);
  const DataType* boolean = other.make_bool_type();
  mgr.make_bv_type(8);
  const std::string text = "a sort of this term manager was expected, but (_ BitVec 8) of another was given";
  const std::string bool_text = "a sort of this term manager was expected, but Bool of another was given";
  expect_refusal(
      mgr, [&] { mgr.make_constant("x", byte); }, text);
  expect_refusal(
      mgr, [&] { mgr.make_constant_symbol("x", boolean); }, bool_text);
  expect_refusal(
      mgr, [&] { mgr.make_fresh_constant("x", byte); }, text);
  expect_refusal(
      mgr, [&] { mgr.make_ite_symbol(byte); }, text);
  expect_refusal(
      mgr, [&] { mgr.make_ite_symbol(boolean); }, bool_text);
  expect_refusal(
      mgr, [&] { mgr.make_eq_symbol(byte); }, text);
  expect_refusal(
      mgr, [&] { mgr.make_eq_symbol(boolean); }, bool_text);
  EXPECT_EQ(mgr.make_constant("x", mgr.make_bv_type(8))->get_symbol()->get_name(), "x");
}

TEST(Managers, RefuseSymbolsOfAnother)
{
  TermManager mgr;
  TermManager other;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const auto text = [](const std::string& name) {
    return "a symbol of this term manager was expected, but " + name + " of another was given";
  };
  const Symbol* add = other.make_bv_add_symbol(8);
  const Symbol* five = other.make_bv_number(5, 8)->get_symbol();
  const Symbol* y = other.make_constant_symbol("y", other.make_bv_type(8));
  expect_refusal(
      mgr,
      [&] {
        mgr.make_term(add, {x, x});
      },
      text("bvadd"));
  expect_refusal(
      mgr, [&] { mgr.make_term(five, {}); }, text("#x05"));
  expect_refusal(
      mgr, [&] { mgr.make_term(y, {}); }, text("y"));
  expect_refusal(
      mgr, [&] { mgr.make_term(other.get_true_symbol(), {}); }, text("true"));
  expect_refusal(
      mgr, [&] { mgr.make_term(nullptr, {}); }, "a symbol was expected, but a null pointer was given");
  EXPECT_EQ(mgr.make_term(mgr.make_bv_add_symbol(8), {x, x})->get_arg(1), x);
}

}  // namespace lumo::test
