#ifndef LUMO_CLI_PROGRESS_LINE_H
#define LUMO_CLI_PROGRESS_LINE_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>
#include <thread>

#include "lumo/commands/progress.h"

namespace lumo::cli {

/// A status line at the end of the terminal on standard error. It shows what the program is doing once it has
/// worked for a moment; a separate thread redraws it a few times a second. If standard error is not a terminal, or
/// one that cannot erase, there is neither line nor thread.
///
/// While the line may be on the screen, nothing else writes there. It disappears permanently at `stop`, at the end
/// of the object, and when a signal ends the program. It disappears temporarily while the subcommand waits for
/// standard input or prints to anything but a file.
///
/// There is at most one object at a time; the main thread uses it.
class ProgressLine : public commands::Progress
{
 public:
  ProgressLine();
  ~ProgressLine() override;

  void enter(commands::Phase phase, std::size_t num_terms) override;
  /// Ends the line and the thread.
  void stop();
  /// The same for the current line, if any, for code that does not have the object.
  static void stop_current();

 private:
  using Clock = std::chrono::steady_clock;

  void run();
  void draw();
  void erase();
  [[nodiscard]] bool is_visible() const;
  [[nodiscard]] std::string make_text() const;

  std::mutex mutex_;  ///< protects the following members, except the thread
  std::condition_variable wake_;
  bool is_stopped_ = false;
  commands::Phase phase_ = commands::Phase::kWait;
  std::size_t num_terms_ = 0;
  Clock::time_point start_ = Clock::now();        ///< of the work since the program waited last
  Clock::time_point phase_start_ = Clock::now();  ///< of the phase
  std::thread thread_;
};

/// Stops the progress line, then forwards what is written to another stream.
class LineStopper : public std::streambuf
{
 public:
  LineStopper(ProgressLine& line, std::ostream& out) : line_(line), out_(out) {}

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  ProgressLine& line_;
  std::ostream& out_;
};

}  // namespace lumo::cli

#endif
