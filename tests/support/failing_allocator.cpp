// The allocator of a program that tests what happens when memory runs out.

#include "tests/support/failing_allocator.h"

#include <cstddef>
#include <new>

// Programs that link with `--wrap=realloc` count these allocations, too.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names
[[gnu::weak]] void* __real_realloc(void* memory, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size)
{
  return lumo::test::is_next_failing() ? nullptr : __real_realloc(memory, size);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}

// Not inlined: otherwise the compiler would report a mismatch of aligned_alloc and delete.
[[gnu::noinline]] void* operator new(std::size_t size)
{
  return lumo::test::allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
[[gnu::noinline]] void* operator new(std::size_t size, std::align_val_t alignment)
{
  return lumo::test::allocate(size, static_cast<std::size_t>(alignment));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { lumo::test::deallocate(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept
{
  lumo::test::deallocate(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
  lumo::test::deallocate(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/,
                                       std::align_val_t /*alignment*/) noexcept
{
  lumo::test::deallocate(memory);
}
