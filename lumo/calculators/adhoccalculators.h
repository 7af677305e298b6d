#ifndef LUMO_CALCULATORS_ADHOCCALCULATORS_H
#define LUMO_CALCULATORS_ADHOCCALCULATORS_H

#include <stack>
#include <string>
#include <vector>

#include "lumo/calculators/refusal.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

/// The calculators, one for each operator.
namespace lumo::adhoccalculator {

/// Where calculators push their definitions, newest on top. The caller owns it.
using DefinitionStack = std::stack<ModelStore::ModelDefinition, std::vector<ModelStore::ModelDefinition>>;

/// Computes values for the free arguments of an eliminated application.
///
/// Elimination replaced the application t by a fresh constant, and a model gives that constant a value. The
/// calculator of t's operator finds values for t's arguments that make t equal to this value. Calculators are
/// stateless: one object may be called any number of times, on terms of any manager.
///
/// Each class has a static function `try_calculate` that does the same as its `operator()`, but returns a refusal
/// instead of throwing it, so that a refusal takes no longer than a solution.
class AdHocCalculator
{
 public:
  class error;  // NOLINT(readability-identifier-naming): the name by which solvers catch it

  virtual ~AdHocCalculator() = default;

  /// Pushes one definition, with its flag set, for each argument that gets a value, in the order that the
  /// calculator documents.
  ///
  /// t is an application of the calculator's operator; value is the value that it must take: true or false, or a
  /// numeral of t's width. Every Boolean value other than true counts as false, and a bit-vector value that is not
  /// a numeral counts as 0 wherever the calculator reads its number. An argument is free if it is not a numeral,
  /// true or false; it is then a declared constant or a compound term.
  ///
  /// Throws `error` with a specific text if it cannot or must not solve the case, or a plain `Exception` if it
  /// needs a declared constant and finds none; in both cases it has pushed nothing. Exceptions of the term layer
  /// pass through. If one is thrown between two pushes, the first definition stays on the stack.
  virtual void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) = 0;
};

/// A case that a calculator does not solve.
class AdHocCalculator::error : public Exception
{
 public:
  explicit error(const std::string& msg) : Exception(msg) {}
};

// ---------------------------------------------------------------- Boolean operators, if-then-else, equality

/// Negation, t = not x: x takes the opposite truth value.
/// Refuses an x that is true or false.
class NotAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Conjunction, t = a and b: a, then b take the value, although for false one of them would suffice.
/// Refuses an argument that is true or false, even where the other one alone could give the value.
class AndAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Disjunction, t = a or b: a, then b take the value, although for true one of them would suffice.
/// Refuses an argument that is true or false, even where the other one alone could give the value.
class OrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Equivalence, t = (a iff b): if one argument is true or false, the other one takes the truth value that gives the
/// value; of two free ones a becomes true, then b takes the value.
/// Refuses two arguments that are both true or false.
/// Differs: AndAdHocCalculator and OrAdHocCalculator already refuse one such argument, with another message.
class IffAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// If-then-else of any sort, t = ite(c, x, y): a free c becomes true if x is not a numeral, otherwise false; then
/// each branch that is not a numeral takes the value term itself, x before y. Refuses two numerals as branches if c
/// is free. Refuses one numeral if c is true or false, also in the branch that c does not select. Differs: the
/// other Boolean calculators test arguments for being true or false; here a branch that is true or false counts as
/// free.
class IteAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Equality of bit-vectors, t = (a = b): if one side is a numeral n, the other side takes n itself (true) or n + 1
/// (false); of two free sides the first one that is a declared constant takes 0 (true) or 1 (false), then the
/// other one 0.
/// Refuses two numerals, and two free sides that are both compound.
class EqAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

// ----------------------------------------------------------------------------- bit-vector operators on bits

/// Complement, t = bvnot x: x takes the complement of the value.
/// Refuses a numeral.
/// Differs: BVNegAdHocCalculator, BVRolAdHocCalculator and BVRorAdHocCalculator share another message.
class BVNotAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Negation, t = bvneg x: x takes the negative of the value.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator has another message.
class BVNegAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Rotation to the left, t = rotate_left x: x takes the value rotated to the right by the same amount.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator has another message.
class BVRolAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Rotation to the right, t = rotate_right x: x takes the value rotated to the left by the same amount.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator has another message; BVRolAdHocCalculator reads the amount only after it has
/// accepted x, with the same outcome.
class BVRorAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Bitwise and, t = a & b: a, then b take the value.
/// Refuses a numeral as either argument.
/// Differs: BVOrAdHocCalculator has another message, and needs a declared constant.
class BVAndAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Bitwise or, t = a | b: the first argument that is a declared constant takes the value, then the other one 0.
/// Refuses a numeral as either argument, and two compound arguments.
/// Differs: BVAndAdHocCalculator has another message, and accepts two compound arguments.
class BVOrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Bitwise exclusive or, t = a ^ b: if one argument is a numeral n, the other one takes value ^ n; of two free ones
/// the first one that is a declared constant takes the value, then the other one 0.
/// Refuses two numerals, and two free arguments that are both compound.
/// Differs: BVAndAdHocCalculator and BVOrAdHocCalculator already refuse one numeral, each with its own message,
/// and read the width from the value instead of t.
class BVXorAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Concatenation, t = a b: a takes the high bits of the value, then b the low ones.
/// Refuses one or two numerals, and an a that is not a declared constant, even if b is one.
/// Differs: BVOrAdHocCalculator and BVXorAdHocCalculator accept a declared constant in either place.
class BVConcatAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Extraction, t = bits msb to lsb of x: x takes the value at those bits and 0 everywhere else.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator and the other unary calculators have other messages, and work on the value term;
/// this one reads the value's number.
class BVSelectAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Zero extension of x: for the value 0 x takes 0, for 1 it takes 1.
/// Refuses every other value, also one that fits x.
/// Differs: BVNotAdHocCalculator and the other unary calculators refuse a numeral; BVSextAdHocCalculator and this one
/// give a value to any x, also to a numeral.
class BVZextAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Sign extension of x: for the value 0 x takes 0, for 1 it takes 1. An x of one bit takes 1 for the value 1
/// although it then extends to all ones: that definition is wrong by design, and a caller must evaluate t under it.
/// Refuses every other value, also -1.
/// Differs: BVNotAdHocCalculator and the other unary calculators refuse a numeral; BVZextAdHocCalculator and this one
/// give a value to any x, also to a numeral.
class BVSextAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Shift left, t = a << b: a takes the value, then b 0.
/// Refuses one or two numerals.
/// Differs: BVAsrAdHocCalculator needs an a that is a declared constant.
class BVLslAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Logical shift right, t = a >> b: a takes the value, then b 0.
/// Refuses one or two numerals.
/// Differs: BVAsrAdHocCalculator needs an a that is a declared constant.
class BVLsrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Arithmetic shift right, t = a >>s b: a takes the value, then b 0.
/// Refuses one or two numerals, and an a that is not a declared constant.
/// Differs: BVLslAdHocCalculator and BVLsrAdHocCalculator accept any a that is not a numeral;
/// BVConcatAdHocCalculator and BVUdivAdHocCalculator have another message if only b is a declared constant.
class BVAsrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

// ------------------------------------------------------------------------------------ bit-vector arithmetic

/// Addition, t = a + b: if one argument is a numeral c, the other one takes value - c; of two free ones the first
/// one that is a declared constant takes the value, then the other one 0.
/// Refuses two numerals, and two free arguments that are both compound.
/// Differs: BVSubAdHocCalculator has another message for two numerals.
class BVAddAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Subtraction, t = a - b: in x - c = value x takes c + value, in c - x = value it takes c - value; of two free
/// arguments the first one that is a declared constant takes the value (a) or its negative (b), then the other
/// one 0.
/// Refuses two numerals, and two free arguments that are both compound.
/// Differs: BVAddAdHocCalculator and BVMulAdHocCalculator have another message for two numerals.
class BVSubAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Multiplication, t = a * b: if one factor is an odd numeral c, the other one takes the value times the inverse of
/// c; of two free factors the first one that is a declared constant takes the value, then the other one 1.
/// Refuses two numerals, an even numeral even if a solution exists, and two free factors that are both
/// compound.
/// Differs: if one argument is a numeral, BVAddAdHocCalculator and BVSubAdHocCalculator pass the value term on; this
/// one reads its number, which is 0 if the value is not a numeral.
class BVMulAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Unsigned division, t = a / b: a takes the value, then b 1.
/// Refuses one or two numerals, and an a that is not a declared constant.
/// Differs: BVSdivAdHocCalculator accepts any a that is not a numeral.
class BVUdivAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Signed division, t = a / b: a takes the value, then b 1.
/// Refuses one or two numerals.
/// Differs: BVUdivAdHocCalculator refuses an a that is not a declared constant.
class BVSdivAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Unsigned remainder: refuses every call, since a remainder is never eliminated.
class BVUremAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Signed remainder: refuses every call, since a remainder is never eliminated.
class BVSremAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

// ------------------------------------------------------------------------------------ bit-vector predicates

/// Unsigned less-than, t = a < b: if one operand is a numeral c, the other one takes c's neighbour (true) or c
/// (false); two free operands, constants or not, take 0, then 1 (true) or 0 (false).
/// Refuses two numerals, and the value true if c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have different messages.
class BVUltAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Unsigned less-or-equal, t = a <= b: if one operand is a numeral c, the other one takes c (true) or its neighbour
/// (false); two free operands, constants or not, take 0 (true) or 1 (false), then 0.
/// Refuses two numerals, and the value false if c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have different messages.
class BVUleAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Signed less-than, t = a <s b: as BVUltAdHocCalculator, with the neighbours in signed order; in width 1, where
/// the pattern 1 is -1, two free operands take 1, then 0 for true.
/// Refuses two numerals, and the value true if c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have different messages.
class BVSltAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// Signed less-or-equal, t = a <=s b: as BVUleAdHocCalculator, with the neighbours in signed order; in width 1,
/// where the pattern 1 is -1, two free operands take 0, then 1 for false.
/// Refuses two numerals, and the value false if c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have different messages.
class BVSleAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

/// One-bit comparison, t = bvcomp(a, b): as EqAdHocCalculator, with the value 1 for true and 0 for false.
/// Refuses a value that is neither, before it reads the operands; then the cases that EqAdHocCalculator refuses.
/// Differs: EqAdHocCalculator treats every value that is not true as false.
class BVCompAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs) override;
  static Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs);
};

}  // namespace lumo::adhoccalculator

#endif
