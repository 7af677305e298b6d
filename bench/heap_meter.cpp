#include "bench/heap_meter.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

#include <gmp.h>

// What the linker calls what `realloc` and `free` mean elsewhere, since it wraps those of the program and of lumo.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names
extern "C" {
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace lumo::bench {

namespace {

// Z3 has its own threads.
std::atomic<std::size_t> heap_bytes{0};
std::atomic<std::size_t> peak_bytes{0};

void* count(void* block)
{
  if (block == nullptr) throw std::bad_alloc();
  const std::size_t now =
      heap_bytes.fetch_add(malloc_usable_size(block), std::memory_order_relaxed) + malloc_usable_size(block);
  if (now > peak_bytes.load(std::memory_order_relaxed)) peak_bytes.store(now, std::memory_order_relaxed);
  return block;
}

void release(void* block)
{
  if (block == nullptr) return;
  heap_bytes.fetch_sub(malloc_usable_size(block), std::memory_order_relaxed);
  __real_free(block);
}

void* resize(void* block, std::size_t size)
{
  const std::size_t old_size = malloc_usable_size(block);
  void* resized = __real_realloc(block, size);
  if (resized == nullptr) return nullptr;
  heap_bytes.fetch_sub(old_size, std::memory_order_relaxed);
  return count(resized);
}

void* allocate_for_gmp(std::size_t size) { return operator new(size); }

void* reallocate_for_gmp(void* block, std::size_t /*old_size*/, std::size_t size)
{
  void* resized = resize(block, size);
  if (resized == nullptr) throw std::bad_alloc();
  return resized;
}

void free_for_gmp(void* block, std::size_t /*size*/) { operator delete(block); }

}  // namespace

void meter_gmp() { mp_set_memory_functions(allocate_for_gmp, reallocate_for_gmp, free_for_gmp); }

std::size_t get_heap_bytes() { return heap_bytes; }
std::size_t get_peak_heap_bytes() { return peak_bytes; }
void reset_peak_heap_bytes() { peak_bytes = heap_bytes.load(); }

}  // namespace lumo::bench

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names
extern "C" {
void* __wrap_realloc(void* block, std::size_t size) { return lumo::bench::resize(block, size); }
void __wrap_free(void* block) { lumo::bench::release(block); }
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

void* operator new(std::size_t size)
{
  return lumo::bench::count(std::malloc(std::max<std::size_t>(size, 1)));
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
  const auto unit = static_cast<std::size_t>(alignment);
  return lumo::bench::count(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}
void operator delete(void* block) noexcept { lumo::bench::release(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { lumo::bench::release(block); }
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept { lumo::bench::release(block); }
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
  lumo::bench::release(block);
}
