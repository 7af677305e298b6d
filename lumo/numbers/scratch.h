#ifndef LUMO_NUMBERS_SCRATCH_H
#define LUMO_NUMBERS_SCRATCH_H

#include "lumo/numbers/qnumber.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

using Scratch = mpz_t[4];

/// The address of this thread's `QNumber::gmp_tmp` once `get_scratch` has run on the thread, null before.
///
/// A constant initialises it, so reading it is one load. The scratch integers themselves need a guard that is checked
/// by a call from every source except their own, and a shared library needs another call to find them.
[[gnu::tls_model("initial-exec")]] extern constinit thread_local Scratch* ready_scratch;

/// Initialises the scratch integers of this thread, and sets `ready_scratch`.
[[gnu::cold]] Scratch& prepare_scratch();

/// `QNumber::gmp_tmp` of this thread. A function that needs several of them should call this once.
[[nodiscard]] inline Scratch& get_scratch()
{
  Scratch* scratch = ready_scratch;
  if (scratch != nullptr) [[likely]]
    return *scratch;
  return prepare_scratch();
}

}  // namespace lumo

#pragma GCC visibility pop

#endif
