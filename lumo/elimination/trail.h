#ifndef LUMO_ELIMINATION_TRAIL_H
#define LUMO_ELIMINATION_TRAIL_H

#include <bitset>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo {

/// Which arguments of an application are free constants, by position.
using FreeArguments = std::bitset<kMaxArity>;

/// One eliminated application: the fresh constant stands for it from then on.
///
/// An argument that is free is a constant that occurs nowhere else at that time; every other argument is any
/// term, in which applications that were eliminated before or after this one are fresh constants already.
struct Step
{
  const Term* constant;
  const Term* application;
  FreeArguments free;
  /// The application of the input that the step replaced, or null if the step is part of a rewriting.
  const Term* original;
};

/// What an elimination has taken away, and so what it takes to get from a model of the rest to one of all.
struct Trail
{
  std::vector<Step> steps;         ///< in the order of elimination
  std::vector<const Term*> facts;  ///< Boolean constants that are true, since they were all of an assertion
};

}  // namespace lumo

#endif
