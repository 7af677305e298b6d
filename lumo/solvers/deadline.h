#ifndef LUMO_SOLVERS_DEADLINE_H
#define LUMO_SOLVERS_DEADLINE_H

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>

namespace lumo::solvers {

/// A point in time, a number of seconds after the construction of the object, or never.
class Deadline
{
 public:
  explicit Deadline(std::optional<double> seconds) : seconds_(seconds) {}

  [[nodiscard]] bool is_set() const { return seconds_.has_value(); }
  [[nodiscard]] bool is_over() const { return is_set() && !(get_seconds_left() > 0); }
  /// The number of seconds. Precondition: the deadline is not never.
  [[nodiscard]] double get_seconds() const { return *seconds_; }
  /// At least 1, and at most the largest value of the type. Precondition: the deadline is not never.
  [[nodiscard]] unsigned get_milliseconds_left() const
  {
    constexpr double kMost = std::numeric_limits<int>::max();
    return static_cast<unsigned>(std::clamp(get_seconds_left() * 1000, 1.0, kMost));
  }

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] double get_seconds_left() const
  {
    return *seconds_ - std::chrono::duration<double>(Clock::now() - start_).count();
  }

  std::optional<double> seconds_;
  Clock::time_point start_ = Clock::now();
};

}  // namespace lumo::solvers

#endif
