#ifndef LUMO_ELIMINATION_TRAIL_H
#define LUMO_ELIMINATION_TRAIL_H

#include <bitset>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo {

/// Which arguments of an application are free constants, by position.
using FreeArguments = std::bitset<kMaxArity>;

/// One eliminated application, which the fresh constant replaced.
///
/// A free argument is a constant that occurs nowhere else at the time of the step. Every other argument may be any
/// term, in which the fresh constants of earlier and later steps already replace their applications.
struct Step
{
  const Term* constant;
  const Term* application;
  FreeArguments free;
  /// The application of the input that the step replaced, or null if the step is part of a rewriting.
  const Term* original;
};

/// The record of an elimination, from which `extend` makes a model of the assertions from a model of the rest.
struct Trail
{
  std::vector<Step> steps;         ///< in the order of elimination
  std::vector<const Term*> facts;  ///< Boolean constants that are true, since each was a whole assertion
};

}  // namespace lumo

#endif
