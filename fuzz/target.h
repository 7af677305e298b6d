#ifndef LUMO_FUZZ_TARGET_H
#define LUMO_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

namespace lumo::fuzz {

/// Runs the target on one input. Each target defines it.
void run_input(const std::uint8_t* data, std::size_t size);

/// Ends the program; the fuzzer then stores the input.
[[noreturn]] inline void fail(const std::string& message)
{
  std::cerr << message << std::endl;
  std::abort();
}

/// Fails unless the condition holds; `describe` makes the message, and is called only then.
template <class Describe>
void check(bool condition, Describe describe)
{
  if (!condition) [[unlikely]]
    fail(describe());
}

}  // namespace lumo::fuzz

#endif
