#ifndef LUMO_TESTS_SUPPORT_FAILING_ALLOCATOR_H
#define LUMO_TESTS_SUPPORT_FAILING_ALLOCATOR_H

// The allocator of programs that have failing_allocator.cpp among their sources: it counts, fails on demand, and
// returns memory that is never zero by chance.

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>

namespace lumo::test {

/// The number of allocations that succeed before one fails; negative: none fails.
inline long countdown = -1;
/// Whether all allocations after a failed one fail, too, until `countdown` is set again.
inline bool is_failure_lasting = false;
/// The number of allocated blocks, and of their bytes.
inline long num_allocations = 0;
inline std::size_t num_bytes = 0;
/// The number of blocks in use.
inline long num_live_blocks = 0;

/// Counts an allocation; whether it has to fail.
inline bool is_next_failing()
{
  ++num_allocations;
  if (countdown == 0) {
    if (!is_failure_lasting) countdown = -1;
    return true;
  }
  if (countdown > 0) --countdown;
  return false;
}

inline void* allocate(std::size_t size, std::size_t alignment)
{
  if (is_next_failing()) throw std::bad_alloc();
  const std::size_t rounded = (size / alignment + 1) * alignment;
  void* memory = std::aligned_alloc(alignment, rounded);
  if (memory == nullptr) throw std::bad_alloc();
  num_bytes += size;
  ++num_live_blocks;
  return std::memset(memory, 0xff, rounded);
}

inline void deallocate(void* memory)
{
  if (memory != nullptr) --num_live_blocks;
  std::free(memory);
}

/// Runs an action in which the allocation of this number fails. Returns whether the action succeeded, because it
/// makes fewer allocations. Afterwards no allocation fails.
template <class Action>
bool survives(long failing, Action action)
{
  struct Restore
  {
    ~Restore() { countdown = -1; }
  };
  const Restore restore;
  countdown = failing;
  try {
    action();
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

/// Lets an action's first allocation fail, then its second one, and so on until the action succeeds: first so that
/// only that allocation fails, then so that all allocations after it fail, too. `prepare` is called before each run
/// and returns the argument of the action; `look` gets the same argument after a run that failed. Returns the
/// number of failures.
template <class Prepare, class Action, class Look>
long fail_everywhere(Prepare prepare, Action action, Look look)
{
  long num_failures = 0;
  for (const bool is_lasting : {false, true}) {
    for (long failing = 0;; ++failing) {
      auto scene = prepare();
      is_failure_lasting = is_lasting;
      const bool is_done = survives(failing, [&] { action(*scene); });
      is_failure_lasting = false;
      if (is_done) break;
      ++num_failures;
      look(*scene);
    }
  }
  return num_failures;
}

}  // namespace lumo::test

#endif
