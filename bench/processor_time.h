#ifndef LUMO_BENCH_PROCESSOR_TIME_H
#define LUMO_BENCH_PROCESSOR_TIME_H

#include <ctime>

namespace lumo::bench {

/// The processor time of this process in seconds: other load on the machine has little effect on it.
[[nodiscard]] inline double now()
{
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace lumo::bench

#endif
