// Does `lumo simplify` without the program around it, for reader_bench: simplify_with_lumo FILE
//
// Prints which part of the processor time until then was the elimination's.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "bench/processor_time.h"
#include "lumo/commands/progress.h"
#include "lumo/commands/run_simplify.h"

namespace lumo::bench {
namespace {

/// Measures one phase.
class EliminationTime : public commands::Progress
{
 public:
  void enter(commands::Phase phase, std::size_t /*num_terms*/) override
  {
    if (is_running_) seconds_ += now() - start_;
    is_running_ = phase == commands::Phase::kEliminate;
    start_ = now();
  }
  [[nodiscard]] double get_seconds() const { return seconds_; }

 private:
  bool is_running_ = false;
  double start_ = 0;
  double seconds_ = 0;
};

}  // namespace
}  // namespace lumo::bench

int main(int argc, char** argv)
{
  if (argc != 2) return 2;
  std::ofstream nowhere("/dev/null");
  lumo::bench::EliminationTime elimination;
  const int status =
      lumo::commands::run_simplify({argv[1], "-", {}}, std::cin, nowhere, std::cerr, &elimination);
  std::printf("%f\n", elimination.get_seconds() / lumo::bench::now());
  return status;
}
