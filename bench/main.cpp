// The main program for registered benchmarks, with Google Benchmark's options.

#include <benchmark/benchmark.h>

#include "bench/jobs.h"

int main(int argc, char** argv)
{
  lumo::bench::add_all_jobs();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
