#ifndef LUMO_BENCH_HEAP_METER_H
#define LUMO_BENCH_HEAP_METER_H

#include <cstddef>

namespace lumo::bench {

/// The bytes that operator new has handed out and not got back, counted as large as malloc made the blocks.
[[nodiscard]] std::size_t get_heap_bytes();
/// The most that get_heap_bytes() has been since the last reset.
[[nodiscard]] std::size_t get_peak_heap_bytes();
void reset_peak_heap_bytes();
/// From now on, what GMP allocates counts as well. To be called before it has allocated anything, save for
/// its scratch integers.
void meter_gmp();

}  // namespace lumo::bench

#endif
