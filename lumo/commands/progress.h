#ifndef LUMO_COMMANDS_PROGRESS_H
#define LUMO_COMMANDS_PROGRESS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace lumo::commands {

/// What a command is doing
enum class Activity : std::uint8_t
{
  kWaiting,  ///< for what comes on the standard input; for how long is not up to the program
  kReading,
  kEliminating,
  kSolving,
  kExtending,
  kChecking,
  kPrinting,  ///< to the standard output
  kWriting,   ///< to files that have names
};

/// Somebody who wants to know what a command is doing while it works.
class Progress
{
 public:
  Progress() = default;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  virtual ~Progress() = default;

  /// The command goes on to this, on so many terms; 0 if their number is not known or does not matter.
  virtual void enter(Activity activity, std::size_t num_terms) = 0;
};

/// Tells it to whoever wants to know; null is nobody.
inline void enter(Progress* progress, Activity activity, std::size_t num_terms = 0)
{
  if (progress != nullptr) progress->enter(activity, num_terms);
}

/// What a person reads: `solving: 1,200,000 terms, 3.4 s`.
[[nodiscard]] std::string make_progress_text(Activity activity, std::size_t num_terms, double seconds);

}  // namespace lumo::commands

#endif
