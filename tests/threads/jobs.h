#ifndef LUMO_TESTS_THREADS_JOBS_H
#define LUMO_TESTS_THREADS_JOBS_H

#include <array>
#include <cstdint>
#include <string>

namespace lumo::test {

/// Work for one thread. `run` returns all its results as a text, which only depends on the
/// stream of random numbers.
struct Job
{
  const char* name;
  std::string (*run)(std::uint64_t stream);
};

/// Rationals with parts of up to 128 bits: all operations and queries.
std::string calculate_with_rationals(std::uint64_t stream);
/// Rationals whose parts are within the table of greatest common divisors, or near 2^31.
std::string calculate_with_small_fractions(std::uint64_t stream);
/// The helpers for bit patterns, width 128.
std::string calculate_with_patterns(std::uint64_t stream);
/// Numerals of its own manager, and the values of terms over them.
std::string make_numerals(std::uint64_t stream);
/// Calls of the calculators, which all threads share, on terms of its own manager.
std::string call_calculators(std::uint64_t stream);
/// `eliminate`, `extend` and `find_violated`, for formulas with random numerals.
std::string eliminate_and_extend(std::uint64_t stream);

inline constexpr std::array kJobs = {
    Job{"Rationals", calculate_with_rationals}, Job{"SmallFractions", calculate_with_small_fractions},
    Job{"Patterns", calculate_with_patterns},   Job{"Numerals", make_numerals},
    Job{"Calculators", call_calculators},       Job{"Elimination", eliminate_and_extend},
};

}  // namespace lumo::test

#endif
