#ifndef LUMO_CALCULATORS_ADHOCCALCULATORS_H
#define LUMO_CALCULATORS_ADHOCCALCULATORS_H

#include <stack>
#include <string>
#include <vector>

#include "lumo/calculators/solver_constants.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

/// The calculators, one for each operator.
namespace lumo::adhoccalculator {

/// Computes values for the free arguments of an eliminated application.
///
/// Elimination replaced the application t by a fresh constant, and a model gives that constant a value. The
/// calculator of t's operator finds values for t's arguments that make t equal to it. Calculators hold no
/// state: one object may be called any number of times, on terms of any manager, by one thread at a time.
class AdHocCalculator
{
 public:
  class error;  // NOLINT(readability-identifier-naming): the name by which solvers catch it

  virtual ~AdHocCalculator() = default;

  /// Pushes one definition, with its flag set, for each argument that gets a value, in the order that the
  /// calculator documents.
  ///
  /// t is an application of the calculator's operator; value is what it must become: true or false, or a
  /// numeral of t's width. Any Boolean value but true counts as false, and a bit-vector value that is no
  /// numeral as 0 wherever the calculator reads its number. An argument is free if it is no numeral, true or
  /// false; it may then be a declared constant or a compound term.
  ///
  /// Throws `error` with a text of its own if it cannot or must not solve the case, or a plain `Exception` if it
  /// needs a declared constant and finds none; either way it has pushed nothing. Whatever the term layer throws
  /// passes through; between two pushes, the first definition then stays on the stack.
  virtual void operator()(TermManager* mgr, const Term* t, const Term* value,
                          ModelStore::DefinitionStack& defs) = 0;
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
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Conjunction, t = a and b: a, then b take the value, although for false one of them would do.
/// Refuses an argument that is true or false, even where the other one alone could give the value.
class AndAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Disjunction, t = a or b: a, then b take the value, although for true one of them would do.
/// Refuses an argument that is true or false, even where the other one alone could give the value.
class OrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Equivalence, t = (a iff b): beside true or false the free argument takes what gives the value; of two free
/// ones a becomes true, then b takes the value.
/// Refuses two arguments that are both true or false.
/// Differs: AndAdHocCalculator and OrAdHocCalculator refuse one such argument already, with another message.
class IffAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// If-then-else of any sort, t = ite(c, x, y): a free c becomes true if x is no numeral, else false; then x,
/// unless it is a numeral, and y, unless it is a numeral, take the value term itself.
/// Refuses two numerals as branches; with a c that is true or false, one, whichever branch c selects.
/// Differs: the other Boolean calculators test arguments for being true or false; here branches that are true or
/// false count as free.
class IteAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Equality of bit-vectors, t = (a = b): beside a numeral n the other side takes n itself (true) or n + 1
/// (false); of two free sides the first one that is a declared constant takes 0 (true) or 1 (false), then the
/// other one 0.
/// Refuses two numerals, and two free sides that are both compound.
class EqAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

// ----------------------------------------------------------------------------- bit-vector operators on bits

/// Complement, t = bvnot x: x takes the complement of the value.
/// Refuses a numeral.
/// Differs: BVNegAdHocCalculator, BVRolAdHocCalculator and BVRorAdHocCalculator share another message.
class BVNotAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Negation, t = bvneg x: x takes the negative of the value.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator has another message.
class BVNegAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Rotation to the left, t = rotate_left x: x takes the value rotated to the right by the same amount.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator has another message.
class BVRolAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Rotation to the right, t = rotate_right x: x takes the value rotated to the left by the same amount.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator has another message; BVRolAdHocCalculator reads the amount after it has
/// accepted x, which makes no difference to a caller.
class BVRorAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Bitwise and, t = a & b: a, then b take the value.
/// Refuses a numeral as either argument.
/// Differs: BVOrAdHocCalculator has another message, and needs a declared constant.
class BVAndAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Bitwise or, t = a | b: the first argument that is a declared constant takes the value, then the other one 0.
/// Refuses a numeral as either argument, and two compound arguments.
/// Differs: BVAndAdHocCalculator has another message, and accepts two compound arguments.
class BVOrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Bitwise exclusive or, t = a ^ b: beside a numeral n the other argument takes value ^ n; of two free ones the
/// first one that is a declared constant takes the value, then the other one 0.
/// Refuses two numerals, and two free arguments that are both compound.
/// Differs: BVAndAdHocCalculator and BVOrAdHocCalculator refuse one numeral already, with messages of their own,
/// and read the width from the value instead of t.
class BVXorAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Concatenation, t = a b: a takes the high bits of the value, then b the low ones.
/// Refuses one or two numerals, and an a that is no declared constant, although b alone could take its part.
/// Differs: BVOrAdHocCalculator and BVXorAdHocCalculator accept a declared constant in either place.
class BVConcatAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Extraction, t = bits msb to lsb of x: x takes the value at those bits and 0 everywhere else.
/// Refuses a numeral.
/// Differs: BVNotAdHocCalculator and the other unary ones have other messages, and work on the value term, where
/// this one reads its number.
class BVSelectAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Zero extension of x: for the value 0 x takes 0, for 1 it takes 1.
/// Refuses every other value, also one that fits x.
/// Differs: BVNotAdHocCalculator and the other unary ones refuse a numeral; BVSextAdHocCalculator and this one
/// do not look at x, and give a value to a numeral, too.
class BVZextAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Sign extension of x: for the value 0 x takes 0, for 1 it takes 1. An x of one bit takes 1 for the value 1
/// although it then extends to all ones: that definition is wrong by design, and whoever replays it must check.
/// Refuses every other value, also -1.
/// Differs: BVNotAdHocCalculator and the other unary ones refuse a numeral; BVZextAdHocCalculator and this one
/// do not look at x, and give a value to a numeral, too.
class BVSextAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Shift left, t = a << b: a takes the value, then b 0.
/// Refuses one or two numerals.
/// Differs: BVAsrAdHocCalculator needs an a that is a declared constant.
class BVLslAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Logical shift right, t = a >> b: a takes the value, then b 0.
/// Refuses one or two numerals.
/// Differs: BVAsrAdHocCalculator needs an a that is a declared constant.
class BVLsrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Arithmetic shift right, t = a >>s b: a takes the value, then b 0.
/// Refuses one or two numerals, and an a that is no declared constant.
/// Differs: BVLslAdHocCalculator and BVLsrAdHocCalculator accept any a that is no numeral; BVConcatAdHocCalculator
/// and BVUdivAdHocCalculator have another message where only b is a declared constant.
class BVAsrAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

// ------------------------------------------------------------------------------------ bit-vector arithmetic

/// Addition, t = a + b: beside a numeral c the other argument takes value - c; of two free ones the first one
/// that is a declared constant takes the value, then the other one 0.
/// Refuses two numerals, and two free arguments that are both compound.
/// Differs: BVSubAdHocCalculator has another message for two numerals.
class BVAddAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Subtraction, t = a - b: in x - c = value x takes c + value, in c - x = value it takes c - value; of two free
/// arguments the first one that is a declared constant takes the value (a) or its negative (b), then the other
/// one 0.
/// Refuses two numerals, and two free arguments that are both compound.
/// Differs: BVAddAdHocCalculator and BVMulAdHocCalculator have another message for two numerals.
class BVSubAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Multiplication, t = a * b: beside an odd numeral c the other factor takes the value times the inverse of c; of
/// two free factors the first one that is a declared constant takes the value, then the other one 1.
/// Refuses two numerals, an even numeral even where a solution exists, and two free factors that are both
/// compound.
/// Differs: BVAddAdHocCalculator and BVSubAdHocCalculator pass the value term on beside a numeral; this one reads
/// its number, and 0 where it is no numeral.
class BVMulAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Unsigned division, t = a / b: a takes the value, then b 1.
/// Refuses one or two numerals, and an a that is no declared constant.
/// Differs: BVSdivAdHocCalculator accepts any a that is no numeral.
class BVUdivAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Signed division, t = a / b: a takes the value, then b 1.
/// Refuses one or two numerals.
/// Differs: BVUdivAdHocCalculator refuses an a that is no declared constant.
class BVSdivAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Unsigned remainder: refuses every call, since a remainder is never eliminated.
class BVUremAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Signed remainder: refuses every call, since a remainder is never eliminated.
class BVSremAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

// ------------------------------------------------------------------------------------ bit-vector predicates

/// Unsigned less-than, t = a < b: beside a numeral c the other operand takes c's neighbour (true) or c (false);
/// two free operands, constants or not, take 0, then 1 (true) or 0 (false).
/// Refuses two numerals, and true where c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have a message each.
class BVUltAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Unsigned less-or-equal, t = a <= b: beside a numeral c the other operand takes c (true) or its neighbour
/// (false); two free operands, constants or not, take 0 (true) or 1 (false), then 0.
/// Refuses two numerals, and false where c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have a message each.
class BVUleAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Signed less-than, t = a <s b: as BVUltAdHocCalculator, with the neighbours in signed order; in width 1, where
/// the pattern 1 is -1, two free operands take 1, then 0 for true.
/// Refuses two numerals, and true where c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have a message each.
class BVSltAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Signed less-or-equal, t = a <=s b: as BVUleAdHocCalculator, with the neighbours in signed order; in width 1,
/// where the pattern 1 is -1, two free operands take 0, then 1 for false.
/// Refuses two numerals, and false where c has no such neighbour.
/// Differs: for two numerals BVUltAdHocCalculator, BVUleAdHocCalculator and the signed pair have a message each.
class BVSleAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// One-bit comparison, t = bvcomp(a, b): as EqAdHocCalculator, with the value 1 for true and 0 for false.
/// Refuses a value that is neither, before all else; then what EqAdHocCalculator refuses.
/// Differs: EqAdHocCalculator takes every value that is not true for false.
class BVCompAdHocCalculator : public AdHocCalculator
{
 public:
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

}  // namespace lumo::adhoccalculator

#endif
