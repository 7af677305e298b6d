#ifndef LUMO_BENCH_HEAP_METER_H
#define LUMO_BENCH_HEAP_METER_H

#include <cstddef>

namespace lumo::bench {

/// The bytes that operator new has allocated and that were not freed, with the block sizes of malloc.
[[nodiscard]] std::size_t get_heap_bytes();
/// The maximum of get_heap_bytes() since the last reset.
[[nodiscard]] std::size_t get_peak_heap_bytes();
void reset_peak_heap_bytes();
/// From now on, GMP's allocations count as well. Call this before GMP has allocated anything except
/// its scratch integers.
void meter_gmp();

}  // namespace lumo::bench

#endif
