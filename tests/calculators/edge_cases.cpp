#include "tests/calculators/edge_cases.h"

namespace lumo::test {

namespace {

using Definitions = std::vector<std::string>;

EdgeCase solved(const std::string& application, const std::string& value, const Definitions& definitions)
{
  return {application, value, definitions, ""};
}

EdgeCase refused(const std::string& application, const std::string& value, const std::string& message)
{
  return {application, value, {}, message};
}

/// Both operands are compound: the selection of the free one fails with the name of the second one's symbol.
EdgeCase without_constant(const std::string& application, const std::string& value, const std::string& name)
{
  return {application, value, {}, "expected constant, but " + name + " found instead", true};
}

constexpr const char* kNormalised = "should have been handled at the normalization step";
constexpr const char* kNoValue = "We cannot find a value for this atom!";
constexpr const char* kNoFreeValue = "Cannot find a value, should be free!";

std::vector<EdgeCase> make_boolean_cases()
{
  return {
      solved("(not p)", "true", {"p := false"}),
      solved("(not p)", "false", {"p := true"}),
      solved("(not p)", "r", {"p := true"}),
      solved("(not (and p q))", "true", {"(and p q) := false"}),
      refused("(not true)", "false", "Term is not free!\n"),
      refused("(not false)", "true", "Term is not free!\n"),

      solved("(and p q)", "false", {"p := false", "q := false"}),
      solved("(and p q)", "true", {"p := true", "q := true"}),
      solved("(and p q)", "r", {"p := false", "q := false"}),
      solved("(and (or p q) (not r))", "true", {"(or p q) := true", "(not r) := true"}),
      refused("(and p true)", "true", "This atom is not unconstrained!"),
      refused("(and false q)", "false", "This atom is not unconstrained!"),
      refused("(and p false)", "false", "This atom is not unconstrained!"),
      refused("(and true q)", "true", "This atom is not unconstrained!"),

      solved("(or p q)", "true", {"p := true", "q := true"}),
      solved("(or p q)", "false", {"p := false", "q := false"}),
      solved("(or (and p q) r)", "r", {"(and p q) := false", "r := false"}),
      refused("(or false q)", "true", "This atom is not unconstrained!"),
      refused("(or p true)", "true", "This atom is not unconstrained!"),

      solved("(= p q)", "false", {"p := true", "q := false"}),
      solved("(= p q)", "true", {"p := true", "q := true"}),
      solved("(= p q)", "r", {"p := true", "q := false"}),
      solved("(= false q)", "true", {"q := false"}),
      solved("(= false q)", "false", {"q := true"}),
      solved("(= true q)", "true", {"q := true"}),
      solved("(= true q)", "false", {"q := false"}),
      solved("(= p true)", "true", {"p := true"}),
      solved("(= p true)", "false", {"p := false"}),
      solved("(= p false)", "true", {"p := false"}),
      solved("(= p false)", "false", {"p := true"}),
      solved("(= (not p) (not q))", "false", {"(not p) := true", "(not q) := false"}),
      refused("(= true false)", "true", "This Term is not unconstraint!"),
      refused("(= false false)", "true", "This Term is not unconstraint!"),

      solved("(ite c x8 y8)", "#x05", {"c := true", "x8 := #x05", "y8 := #x05"}),
      solved("(ite c x8 #x03)", "#x05", {"c := true", "x8 := #x05"}),
      solved("(ite c #x03 y8)", "#x05", {"c := false", "y8 := #x05"}),
      refused("(ite c #x03 #x04)", "#x05", kNoValue),
      refused("(ite c #x05 #x04)", "#x05", kNoValue),
      solved("(ite true x8 y8)", "#x05", {"x8 := #x05", "y8 := #x05"}),
      solved("(ite false x8 y8)", "#x05", {"x8 := #x05", "y8 := #x05"}),
      refused("(ite false x8 #x03)", "#x05", kNoValue),
      refused("(ite true x8 #x03)", "#x05", kNoValue),
      refused("(ite true #x03 y8)", "#x05", kNoValue),
      solved("(ite c x8 y8)", "(bvadd u8 v8)", {"c := true", "x8 := (bvadd u8 v8)", "y8 := (bvadd u8 v8)"}),
      solved("(ite c (bvnot x8) y8)", "#x05", {"c := true", "(bvnot x8) := #x05", "y8 := #x05"}),
      solved("(ite (not c) x8 y8)", "#x05", {"(not c) := true", "x8 := #x05", "y8 := #x05"}),
      solved("(ite c p q)", "false", {"c := true", "p := false", "q := false"}),
      solved("(ite c true q)", "false", {"c := true", "true := false", "q := false"}),

      solved("(= x8 y8)", "true", {"x8 := #x00", "y8 := #x00"}),
      solved("(= x8 y8)", "false", {"x8 := #x01", "y8 := #x00"}),
      solved("(= (bvnot x8) y8)", "false", {"y8 := #x01", "(bvnot x8) := #x00"}),
      solved("(= x8 #x07)", "true", {"x8 := #x07"}),
      solved("(= #x07 x8)", "true", {"x8 := #x07"}),
      solved("(= #x07 x8)", "false", {"x8 := #x08"}),
      solved("(= x8 #xff)", "false", {"x8 := #x00"}),
      solved("(= x1 #b1)", "false", {"x1 := #b0"}),
      solved("(= x8 #x07)", "r", {"x8 := #x08"}),
      solved("(= x8 #x07)", "#x01", {"x8 := #x08"}),
      solved("(= (bvnot x8) #x07)", "true", {"(bvnot x8) := #x07"}),
      refused("(= #x03 #x04)", "true", "term was not free"),
      refused("(= #x03 #x04)", "false", "term was not free"),
      refused("(= #x03 #x03)", "true", "term was not free"),
      without_constant("(= (bvnot x8) (bvneg y8))", "true", "bvneg"),
  };
}

std::vector<EdgeCase> make_bitwise_cases()
{
  return {
      solved("(bvnot x8)", "#x0f", {"x8 := #xf0"}),
      solved("(bvnot (bvneg x8))", "#x0f", {"(bvneg x8) := #xf0"}),
      solved("(bvnot x8)", "z8", {"x8 := (bvnot z8)"}),
      refused("(bvnot #x05)", "#xfa", "Term was not free!"),

      solved("(bvneg x8)", "#x00", {"x8 := #x00"}),
      solved("(bvneg x8)", "#x01", {"x8 := #xff"}),
      solved("(bvneg x64)", "#x0000000000000001", {"x64 := #xffffffffffffffff"}),
      solved("(bvneg x8)", "z8", {"x8 := (bvneg z8)"}),
      refused("(bvneg #x05)", "#x05", "Is not free!"),

      solved("((_ rotate_left 3) x8)", "#x01", {"x8 := #x20"}),
      solved("((_ rotate_left 11) x8)", "#x01", {"x8 := #x20"}),
      solved("((_ rotate_left 3) (bvnot x8))", "#x01", {"(bvnot x8) := #x20"}),
      solved("((_ rotate_left 3) x8)", "z8", {"x8 := ((_ rotate_right 3) z8)"}),
      refused("((_ rotate_left 3) #x05)", "#x05", "Is not free!"),

      solved("((_ rotate_right 3) x8)", "#x20", {"x8 := #x01"}),
      solved("((_ rotate_right 3) x8)", "z8", {"x8 := ((_ rotate_left 3) z8)"}),
      refused("((_ rotate_right 3) #x05)", "#x05", "Is not free!"),

      solved("(bvand x8 y8)", "#x3c", {"x8 := #x3c", "y8 := #x3c"}),
      solved("(bvand (bvnot x8) (bvneg y8))", "#x3c", {"(bvnot x8) := #x3c", "(bvneg y8) := #x3c"}),
      solved("(bvand x8 y8)", "z8", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvand x8 y8)", "#x3", {"x8 := #x3", "y8 := #x3"}),  // the width is the value's
      refused("(bvand x8 #x05)", "#x05", "This atom is not unconstraint!"),
      refused("(bvand #x05 x8)", "#x05", "This atom is not unconstraint!"),
      refused("(bvand #x05 #x05)", "#x05", "This atom is not unconstraint!"),

      solved("(bvor x8 y8)", "#x3c", {"x8 := #x3c", "y8 := #x00"}),
      solved("(bvor (bvnot x8) y8)", "#x3c", {"y8 := #x3c", "(bvnot x8) := #x00"}),
      solved("(bvor x8 (bvnot y8))", "#x3c", {"x8 := #x3c", "(bvnot y8) := #x00"}),
      solved("(bvor x8 y8)", "z8", {"x8 := #x00", "y8 := #x00"}),
      refused("(bvor x8 #x05)", "#x05", "This atom is not unconstrained!"),
      refused("(bvor #x05 x8)", "#x05", "This atom is not unconstrained!"),
      without_constant("(bvor (bvnot x8) (bvmul u8 v8))", "#x3c", "bvmul"),

      solved("(bvxor x8 #x0f)", "#xff", {"x8 := #xf0"}),
      solved("(bvxor #x0f y8)", "#xff", {"y8 := #xf0"}),
      solved("(bvxor x8 y8)", "#xa5", {"x8 := #xa5", "y8 := #x00"}),
      solved("(bvxor (bvnot x8) y8)", "#xa5", {"y8 := #xa5", "(bvnot x8) := #x00"}),
      solved("(bvxor x8 y8)", "z8", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvxor x8 y8)", "#x3", {"x8 := #x03", "y8 := #x00"}),  // the width is the application's
      solved("(bvxor #x0f (bvnot y8))", "z8", {"(bvnot y8) := (bvxor z8 #x0f)"}),
      refused("(bvxor #x03 #x05)", "#x06", kNormalised),
      without_constant("(bvxor (bvmul u8 v8) (bvnot x8))", "#x3c", "bvnot"),
  };
}

std::vector<EdgeCase> make_structure_cases()
{
  return {
      solved("(concat x4 y4)", "#xa5", {"x4 := #xa", "y4 := #x5"}),
      solved("(concat x3 y5)", "#b10111001", {"x3 := #b101", "y5 := #b11001"}),
      solved("(concat x4 (bvnot y4))", "#xa5", {"x4 := #xa", "(bvnot y4) := #x5"}),
      solved("(concat x4 y4)", "z8", {"x4 := ((_ extract 7 4) z8)", "y4 := ((_ extract 3 0) z8)"}),
      refused("(concat (bvnot x4) y4)", "#xa5", kNoFreeValue),
      refused("(concat x4 #x5)", "#xa5", kNoFreeValue),
      refused("(concat #xa y4)", "#xa5", kNoFreeValue),
      refused("(concat #x3 #x5)", "#x35", kNormalised),
      without_constant("(concat (bvnot x4) (bvneg y4))", "#xa5", "bvneg"),

      solved("((_ extract 7 4) x16)", "#xb", {"x16 := #x00b0"}),
      solved("((_ extract 3 0) x8)", "#x7", {"x8 := #x07"}),
      solved("((_ extract 15 8) x16)", "#xcd", {"x16 := #xcd00"}),
      solved("((_ extract 7 0) x8)", "#xcd", {"x8 := #xcd"}),
      solved("((_ extract 0 0) x1)", "#b1", {"x1 := #b1"}),
      solved("((_ extract 7 4) (bvnot x16))", "#xb", {"(bvnot x16) := #x00b0"}),
      solved("((_ extract 7 4) x16)", "z4", {"x16 := #x0000"}),
      solved("((_ extract 7 4) x16)", "#x1b", {"x16 := #x00b0"}),
      refused("((_ extract 3 0) #x57)", "#x7", kNormalised),

      solved("((_ zero_extend 4) x4)", "#x00", {"x4 := #x0"}),
      solved("((_ zero_extend 4) x4)", "#x01", {"x4 := #x1"}),
      refused("((_ zero_extend 4) x4)", "#x02", "not free!"),
      solved("((_ zero_extend 4) x4)", "z8", {"x4 := #x0"}),
      solved("((_ zero_extend 4) x4)", "#b1", {"x4 := #x1"}),
      solved("((_ zero_extend 4) #x7)", "#x01", {"#x7 := #x1"}),
      solved("((_ zero_extend 4) (bvnot x4))", "#x01", {"(bvnot x4) := #x1"}),

      solved("((_ sign_extend 4) x4)", "#x00", {"x4 := #x0"}),
      solved("((_ sign_extend 4) x4)", "#x01", {"x4 := #x1"}),
      refused("((_ sign_extend 4) x4)", "#xff", "not free!"),
      solved("((_ sign_extend 3) x1)", "#x1", {"x1 := #b1"}),
      solved("((_ sign_extend 4) x4)", "z8", {"x4 := #x0"}),
      solved("((_ sign_extend 4) #x7)", "#x00", {"#x7 := #x0"}),

      solved("(bvshl x8 s8)", "#x80", {"x8 := #x80", "s8 := #x00"}),
      solved("(bvshl (bvnot x8) (bvneg s8))", "#x80", {"(bvnot x8) := #x80", "(bvneg s8) := #x00"}),
      solved("(bvshl x8 s8)", "z8", {"x8 := #x00", "s8 := #x00"}),
      refused("(bvshl x8 #x01)", "#x02", kNoFreeValue),
      refused("(bvshl #x01 s8)", "#x02", kNoFreeValue),
      refused("(bvshl #x01 #x01)", "#x02", kNormalised),

      solved("(bvlshr x8 s8)", "#x01", {"x8 := #x01", "s8 := #x00"}),
      solved("(bvlshr (bvnot x8) s8)", "#x01", {"(bvnot x8) := #x01", "s8 := #x00"}),
      solved("(bvlshr x8 s8)", "z8", {"x8 := #x00", "s8 := #x00"}),
      refused("(bvlshr #x04 s8)", "#x01", kNoFreeValue),
      refused("(bvlshr x8 #x04)", "#x01", kNoFreeValue),
      refused("(bvlshr #x04 #x01)", "#x02", kNormalised),

      solved("(bvashr x8 s8)", "#xf0", {"x8 := #xf0", "s8 := #x00"}),
      solved("(bvashr x8 (bvnot s8))", "#xf0", {"x8 := #xf0", "(bvnot s8) := #x00"}),
      solved("(bvashr x8 s8)", "z8", {"x8 := #x00", "s8 := #x00"}),
      refused("(bvashr #x04 s8)", "#x01", kNoFreeValue),
      refused("(bvashr x8 #x01)", "#x01", kNoFreeValue),
      refused("(bvashr #x04 #x01)", "#x02", kNormalised),
      refused("(bvashr (bvnot x8) s8)", "#x01", "non-free term"),
      without_constant("(bvashr (bvnot x8) (bvneg s8))", "#x01", "bvneg"),
  };
}

std::vector<EdgeCase> make_arithmetic_cases()
{
  return {
      solved("(bvadd x8 y8)", "#x05", {"x8 := #x05", "y8 := #x00"}),
      solved("(bvadd (bvnot x8) y8)", "#x05", {"y8 := #x05", "(bvnot x8) := #x00"}),
      solved("(bvadd x8 #x05)", "#x0c", {"x8 := #x07"}),
      solved("(bvadd #x05 x8)", "#x0c", {"x8 := #x07"}),
      solved("(bvadd #x05 x8)", "#x03", {"x8 := #xfe"}),
      solved("(bvadd #x05 (bvnot x8))", "#x0c", {"(bvnot x8) := #x07"}),
      solved("(bvadd x8 #x05)", "z8", {"x8 := (bvsub z8 #x05)"}),
      solved("(bvadd #x05 x8)", "z8", {"x8 := (bvsub z8 #x05)"}),
      solved("(bvadd x8 y8)", "z8", {"x8 := #x00", "y8 := #x00"}),
      refused("(bvadd #x05 #x07)", "#x0c", kNormalised),
      without_constant("(bvadd (bvadd x8 y8) (bvmul u8 v8))", "#x0c", "bvmul"),

      solved("(bvsub x8 y8)", "#x03", {"x8 := #x03", "y8 := #x00"}),
      solved("(bvsub (bvnot x8) y8)", "#x03", {"y8 := #xfd", "(bvnot x8) := #x00"}),
      solved("(bvsub (bvnot x8) y8)", "#x00", {"y8 := #x00", "(bvnot x8) := #x00"}),
      solved("(bvsub x8 #x07)", "#x01", {"x8 := #x08"}),
      solved("(bvsub #x07 x8)", "#x01", {"x8 := #x06"}),
      solved("(bvsub x8 #x07)", "z8", {"x8 := (bvadd #x07 z8)"}),
      solved("(bvsub #x07 x8)", "z8", {"x8 := (bvsub #x07 z8)"}),
      solved("(bvsub x8 y8)", "z8", {"x8 := #x00", "y8 := #x00"}),
      refused("(bvsub #x07 #x03)", "#x04", "term was not free"),
      without_constant("(bvsub (bvnot x8) (bvneg y8))", "#x04", "bvneg"),

      solved("(bvmul #x03 x8)", "#x01", {"x8 := #xab"}),
      solved("(bvmul x8 #x03)", "#x05", {"x8 := #x57"}),
      solved("(bvmul #x01 x8)", "#xc3", {"x8 := #xc3"}),
      solved("(bvmul x8 #x03)", "z8", {"x8 := #x00"}),
      solved("(bvmul (bvnot x8) #x03)", "#x05", {"(bvnot x8) := #x57"}),
      refused("(bvmul #x00 x8)", "#x00", kNoValue),
      refused("(bvmul #x04 x8)", "#x08", kNoValue),
      refused("(bvmul x8 #x02)", "#x04", kNoValue),
      solved("(bvmul x8 y8)", "#x09", {"x8 := #x09", "y8 := #x01"}),
      solved("(bvmul (bvnot x8) y8)", "#x09", {"y8 := #x09", "(bvnot x8) := #x01"}),
      solved("(bvmul x8 y8)", "z8", {"x8 := #x00", "y8 := #x01"}),
      refused("(bvmul #x03 #x05)", "#x0f", kNormalised),
      without_constant("(bvmul (bvnot x8) (bvneg y8))", "#x04", "bvneg"),

      solved("(bvudiv x8 y8)", "#x07", {"x8 := #x07", "y8 := #x01"}),
      solved("(bvudiv x8 (bvnot y8))", "#x07", {"x8 := #x07", "(bvnot y8) := #x01"}),
      solved("(bvudiv x8 y8)", "z8", {"x8 := #x00", "y8 := #x01"}),
      refused("(bvudiv x8 #x03)", "#x07", kNoFreeValue),
      refused("(bvudiv #x0c y8)", "#x07", kNoFreeValue),
      refused("(bvudiv #x0c #x03)", "#x04", kNormalised),
      refused("(bvudiv (bvnot x8) y8)", "#x07", kNoFreeValue),
      without_constant("(bvudiv (bvnot x8) (bvneg y8))", "#x07", "bvneg"),

      solved("(bvsdiv x8 y8)", "#x07", {"x8 := #x07", "y8 := #x01"}),
      solved("(bvsdiv (bvnot x8) (bvneg y8))", "#x07", {"(bvnot x8) := #x07", "(bvneg y8) := #x01"}),
      solved("(bvsdiv x8 y8)", "z8", {"x8 := #x00", "y8 := #x01"}),
      refused("(bvsdiv x8 #x03)", "#x07", kNoFreeValue),
      refused("(bvsdiv #x0c y8)", "#x07", kNoFreeValue),
      refused("(bvsdiv #x0c #x03)", "#x04", kNormalised),

      refused("(bvurem x8 y8)", "#x07", "Should not be called is never free!"),
      refused("(bvurem #x0c #x05)", "z8", "Should not be called is never free!"),
      refused("(bvsrem x8 y8)", "#x07", "Should not be called is never free!"),
      refused("(bvsrem x8 #x05)", "true", "Should not be called is never free!"),
  };
}

std::vector<EdgeCase> make_predicate_cases()
{
  return {
      solved("(bvult #x05 x8)", "true", {"x8 := #x06"}),
      solved("(bvult #x05 x8)", "false", {"x8 := #x05"}),
      refused("(bvult #xff x8)", "true", kNoValue),
      solved("(bvult #xff x8)", "false", {"x8 := #xff"}),
      solved("(bvult x8 #x05)", "true", {"x8 := #x04"}),
      solved("(bvult x8 #x05)", "false", {"x8 := #x05"}),
      refused("(bvult x8 #x00)", "true", kNoValue),
      solved("(bvult x8 #x00)", "false", {"x8 := #x00"}),
      solved("(bvult x8 y8)", "true", {"x8 := #x00", "y8 := #x01"}),
      solved("(bvult x8 y8)", "false", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvult (bvnot x8) (bvneg y8))", "true", {"(bvnot x8) := #x00", "(bvneg y8) := #x01"}),
      solved("(bvult x8 #x05)", "r", {"x8 := #x05"}),
      refused("(bvult #x01 #x02)", "true", "term was not free"),

      solved("(bvule #x05 x8)", "true", {"x8 := #x05"}),
      solved("(bvule #x05 x8)", "false", {"x8 := #x04"}),
      refused("(bvule #x00 x8)", "false", kNoValue),
      solved("(bvule x8 #x05)", "true", {"x8 := #x05"}),
      solved("(bvule x8 #x05)", "false", {"x8 := #x06"}),
      refused("(bvule x8 #xff)", "false", kNoValue),
      refused("(bvule x64 #xffffffffffffffff)", "false", kNoValue),
      solved("(bvule x8 y8)", "true", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvule x8 y8)", "false", {"x8 := #x01", "y8 := #x00"}),
      refused("(bvule #x01 #x02)", "true", kNoValue),

      refused("(bvslt x8 #x80)", "true", kNoValue),
      solved("(bvslt x8 #x80)", "false", {"x8 := #x80"}),
      solved("(bvslt x8 #x00)", "true", {"x8 := #xff"}),
      refused("(bvslt #x7f x8)", "true", kNoValue),
      solved("(bvslt #xff x8)", "true", {"x8 := #x00"}),
      solved("(bvslt #x05 x8)", "false", {"x8 := #x05"}),
      solved("(bvslt x8 y8)", "true", {"x8 := #x00", "y8 := #x01"}),
      solved("(bvslt x8 y8)", "false", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvslt x1 y1)", "true", {"x1 := #b1", "y1 := #b0"}),
      solved("(bvslt x1 y1)", "false", {"x1 := #b0", "y1 := #b0"}),
      refused("(bvslt #b0 x1)", "true", kNoValue),
      refused("(bvslt x1 #b1)", "true", kNoValue),
      refused("(bvslt #x01 #x02)", "true", kNormalised),

      refused("(bvsle x8 #x7f)", "false", kNoValue),
      solved("(bvsle x8 #xff)", "false", {"x8 := #x00"}),
      solved("(bvsle x8 #xff)", "true", {"x8 := #xff"}),
      refused("(bvsle #x80 x8)", "false", kNoValue),
      solved("(bvsle #x00 x8)", "false", {"x8 := #xff"}),
      solved("(bvsle x8 y8)", "true", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvsle x8 y8)", "false", {"x8 := #x01", "y8 := #x00"}),
      solved("(bvsle x1 y1)", "false", {"x1 := #b0", "y1 := #b1"}),
      solved("(bvsle x1 y1)", "true", {"x1 := #b0", "y1 := #b0"}),
      refused("(bvsle #x02 #x01)", "false", kNormalised),

      solved("(bvcomp x8 y8)", "#b1", {"x8 := #x00", "y8 := #x00"}),
      solved("(bvcomp x8 y8)", "#b0", {"x8 := #x01", "y8 := #x00"}),
      solved("(bvcomp (bvnot x8) y8)", "#b0", {"y8 := #x01", "(bvnot x8) := #x00"}),
      solved("(bvcomp x8 #x09)", "#b1", {"x8 := #x09"}),
      solved("(bvcomp #x9 x4)", "#b0", {"x4 := #xa"}),
      solved("(bvcomp x4 #xf)", "#b0", {"x4 := #x0"}),
      refused("(bvcomp #x03 #x03)", "#b10", "unexpected value from comp"),
      refused("(bvcomp x8 y8)", "#b10", "unexpected value from comp"),
      solved("(bvcomp x8 y8)", "z1", {"x8 := #x01", "y8 := #x00"}),
      refused("(bvcomp #x03 #x04)", "#b1", "term was not free"),
      without_constant("(bvcomp (bvnot x8) (bvneg y8))", "#b1", "bvneg"),
  };
}

}  // namespace

const std::vector<EdgeCase>& get_edge_cases()
{
  static const std::vector<EdgeCase> cases = [] {
    std::vector<EdgeCase> all;
    for (const auto make : {make_boolean_cases, make_bitwise_cases, make_structure_cases,
                            make_arithmetic_cases, make_predicate_cases, make_wide_edge_cases})
    {
      const std::vector<EdgeCase> some = make();
      all.insert(all.end(), some.begin(), some.end());
    }
    return all;
  }();
  return cases;
}

}  // namespace lumo::test
