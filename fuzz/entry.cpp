// The function by which libFuzzer calls a target.

#include "fuzz/target.h"

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer's name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  lumo::fuzz::run_input(data, size);
  return 0;
}
