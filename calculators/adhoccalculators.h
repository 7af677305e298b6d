#ifndef LUMO_CALCULATORS_ADHOCCALCULATORS_H
#define LUMO_CALCULATORS_ADHOCCALCULATORS_H

#include <stack>
#include <string>
#include <vector>

#include "calculators/solver_constants.h"
#include "model/model_store.h"
#include "terms/exception.h"
#include "terms/term_manager.h"

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

  virtual ~AdHocCalculator() {}  // NOLINT(modernize-use-equals-default): the same form in all calculators

  /// Pushes one definition, with its flag set, for each argument that gets a value, in the order that the
  /// calculator documents.
  ///
  /// t is an application of the calculator's operator; value is what it must become: true or false, or a
  /// numeral of t's width. Any Boolean value but true counts as false, and a bit-vector value that is no
  /// numeral as 0 wherever the calculator reads its number. An argument is free if it is no numeral, true or
  /// false; it may then be a declared constant or a compound term.
  ///
  /// Throws `error` with a text of its own if it cannot or must not solve the case, or a plain `Exception` if
  /// it needs a declared constant and finds none; either way it has pushed nothing. Whatever the term layer
  /// throws passes through.
  virtual void operator()(TermManager* mgr, const Term* t, const Term* value,
                          ModelStore::DefinitionStack& defs) = 0;
};

/// A case that a calculator does not solve.
class AdHocCalculator::error : public Exception
{
 public:
  explicit error(const std::string& msg) : Exception(msg) {}
};

// ----------------------------------------------------------------------------------------------- Boolean
// operators

/// Negation, t = not x: x takes the opposite truth value.
/// Refuses an x that is true or false.
class NotAdHocCalculator : public AdHocCalculator
{
 public:
  ~NotAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Conjunction, t = a and b: a, then b take the value, although for false one of them would do.
/// Refuses an argument that is true or false, even where the other one alone could give the value.
class AndAdHocCalculator : public AdHocCalculator
{
 public:
  ~AndAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Disjunction, t = a or b: a, then b take the value, although for true one of them would do.
/// Refuses an argument that is true or false, even where the other one alone could give the value.
class OrAdHocCalculator : public AdHocCalculator
{
 public:
  ~OrAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Equivalence, t = (a iff b): an argument that stands alone beside true or false takes what gives the value;
/// of two free ones a becomes true, then b takes the value. Refuses two arguments that are both true or
/// false. Differs: AndAdHocCalculator and OrAdHocCalculator refuse as soon as one argument is true or false.
class IffAdHocCalculator : public AdHocCalculator
{
 public:
  ~IffAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// If-then-else of any sort, t = ite(c, x, y): a free c becomes true if x is no numeral, else false; then
/// each branch that is no numeral takes the value term itself (with c false, y alone). Refuses two numerals
/// as branches, and with a c that is true or false one numeral already, whichever branch c selects. Differs:
/// branches are tested for being numerals only, so true and false count as free.
class IteAdHocCalculator : public AdHocCalculator
{
 public:
  ~IteAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

// --------------------------------------------------------------------------------------------- bit-vector
// arithmetic

/// Addition, t = a + b: beside a numeral c the other argument takes value - c; of two free arguments the
/// first one that is a declared constant takes the value, then the other 0. Refuses two numerals, and two
/// free arguments that are both compound.
class BVAddAdHocCalculator : public AdHocCalculator
{
 public:
  ~BVAddAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

/// Subtraction, t = a - b: x - c = value gives x := c + value, and c - x = value gives x := c - value; of two
/// free arguments the first one that is a declared constant takes the value (a) or its negative (b), then the
/// other 0. Refuses two numerals, and two free arguments that are both compound. Differs:
/// BVAddAdHocCalculator has another message for two numerals.
class BVSubAdHocCalculator : public AdHocCalculator
{
 public:
  ~BVSubAdHocCalculator() override {}
  void operator()(TermManager* mgr, const Term* t, const Term* value,
                  ModelStore::DefinitionStack& defs) override;
};

}  // namespace lumo::adhoccalculator

#endif
