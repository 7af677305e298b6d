#ifndef LUMO_TESTS_SUPPORT_FAILING_ALLOCATOR_H
#define LUMO_TESTS_SUPPORT_FAILING_ALLOCATOR_H

// Replaces the allocator of the program that includes this, in one source only: it counts, and fails on demand.

#include <cstdlib>
#include <new>

namespace lumo::test {

/// The allocation of this number from now on fails, once; negative: none does.
inline long countdown = -1;
/// How many blocks were asked for.
inline long num_allocations = 0;

inline void* allocate(std::size_t size, std::size_t alignment)
{
  ++num_allocations;
  if (countdown == 0) {
    countdown = -1;
    throw std::bad_alloc();
  }
  if (countdown > 0) --countdown;
  const std::size_t rounded = (size / alignment + 1) * alignment;
  void* memory = std::aligned_alloc(alignment, rounded);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace lumo::test

// Not inlined: the compiler would see aligned_alloc meet delete and take that for a mistake.
[[gnu::noinline]] void* operator new(std::size_t size)
{
  return lumo::test::allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t alignment)
{
  return lumo::test::allocate(size, static_cast<std::size_t>(alignment));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/,
                                       std::align_val_t /*alignment*/) noexcept
{
  std::free(memory);
}

#endif
