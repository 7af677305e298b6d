#include "lumo/numbers/scratch.h"

namespace lumo {

namespace {

/// An integer of value 0, to be moved into an array.
__mpz_struct make_integer()
{
  mpz_t z;
  mpz_init(z);
  return *z;
}

/// Frees the memory of a thread's scratch integers when the thread ends. They stay usable, because objects
/// that are destroyed later may still compute: other objects of the thread, and statics after the main thread.
class ScratchRelease
{
 public:
  ScratchRelease() = default;
  ScratchRelease(const ScratchRelease&) = delete;
  ScratchRelease& operator=(const ScratchRelease&) = delete;
  ~ScratchRelease()
  {
    for (mpz_t& z : QNumber::gmp_tmp) {
      mpz_clear(z);
      mpz_init(z);
    }
  }
};

}  // namespace

thread_local mpz_t QNumber::gmp_tmp[4] = {
    {make_integer()}, {make_integer()}, {make_integer()}, {make_integer()}};

namespace {

// The first use of the scratch integers in a thread initialises all thread-local objects of this source.
thread_local ScratchRelease scratch_release;

}  // namespace

constinit thread_local Scratch* ready_scratch = nullptr;

Scratch& prepare_scratch()
{
  ready_scratch = &QNumber::gmp_tmp;
  return *ready_scratch;
}

}  // namespace lumo
