#ifndef LUMO_BENCH_JOBS_H
#define LUMO_BENCH_JOBS_H

namespace lumo::bench {

/// Registers the benchmarks of the program. Each program has its own, and the `main` of bench/main.cpp.
void add_all_jobs();

}  // namespace lumo::bench

#endif
