#include "lumo/cli/progress_line.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <new>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace lumo::cli {

namespace {

using commands::Phase;

constexpr std::chrono::seconds kFirstPause(1);
constexpr std::chrono::milliseconds kPause(200);
constexpr std::string_view kErase = "\r\x1b[K";

ProgressLine* current_line = nullptr;

bool has_fitting_terminal()
{
  const char* terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) == 1 && terminal != nullptr && *terminal != '\0' &&
         std::string_view(terminal) != "dumb";
}

/// Other output, such as that for a pager, may appear on the same terminal.
bool prints_to_file()
{
  struct stat status
  {};
  return fstat(STDOUT_FILENO, &status) == 0 && S_ISREG(status.st_mode);
}

/// A background program must not write to the terminal.
bool is_in_front()
{
  const pid_t front = tcgetpgrp(STDERR_FILENO);
  return front < 0 || front == getpgrp();
}

std::size_t get_num_columns()
{
  constexpr std::size_t kUsual = 80;
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

/// Ignores failures: if the terminal has gone, no message can be shown.
void write_terminal(std::string_view text)
{
  [[maybe_unused]] const ssize_t num_written = write(STDERR_FILENO, text.data(), text.size());
}

// -----------------------------------------------------------------------------------------------------------
// Signals

constexpr std::array<int, 4> kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// Flags shared by the drawing thread and the signal handler. The handler sets the first, the thread
// the others; each sets its own flags before it reads the other's.
std::atomic<bool> is_ending = false;
std::atomic<bool> is_drawing = false;
std::atomic<bool> is_shown = false;
static_assert(std::atomic<bool>::is_always_lock_free);

/// Erases the line and raises the signal again with its default effect, which SA_RESETHAND has restored.
void end_by_signal(int signal)
{
  is_ending = true;
  // A terminal that is blocked must not keep the program alive.
  constexpr timespec kMoment{0, 1'000'000};
  for (int i = 0; i < 100 && is_drawing; ++i)
    nanosleep(&kMoment, nullptr);
  if (is_shown && !is_drawing) write_terminal(kErase);
  raise(signal);
}

void set_handlers()
{
  struct sigaction action
  {};
  action.sa_handler = end_by_signal;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  for (const int signal : kEndingSignals) {
    struct sigaction before
    {};
    const bool is_default = sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL;
    if (is_default) sigaction(signal, &action, nullptr);
  }
}

void reset_handlers()
{
  for (const int signal : kEndingSignals) {
    struct sigaction now
    {};
    const bool is_ours = sigaction(signal, nullptr, &now) == 0 && now.sa_handler == end_by_signal;
    if (is_ours) std::signal(signal, SIG_DFL);
  }
}

/// Blocks all signals, so that a thread that starts meanwhile never gets one: they must go to the thread that
/// controls the solver.
class AllSignalsGuard
{
 public:
  AllSignalsGuard()
  {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  AllSignalsGuard(const AllSignalsGuard&) = delete;
  AllSignalsGuard& operator=(const AllSignalsGuard&) = delete;
  ~AllSignalsGuard() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

// -----------------------------------------------------------------------------------------------------------

ProgressLine::ProgressLine()
{
  if (!has_fitting_terminal()) return;
  try {
    const AllSignalsGuard guard;
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    return;  // GCOVR_EXCL_LINE: the line is optional
  }
  current_line = this;
  set_handlers();
}

ProgressLine::~ProgressLine() { stop(); }

void ProgressLine::enter(Phase phase, std::size_t num_terms)
{
  const std::lock_guard lock(mutex_);
  if (phase != phase_) phase_start_ = Clock::now();
  if (phase_ == Phase::kWait) start_ = phase_start_;
  phase_ = phase;
  num_terms_ = num_terms;
  if (!is_visible()) erase();
}

void ProgressLine::stop()
{
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    is_stopped_ = true;
  }
  wake_.notify_one();
  thread_.join();
  erase();
  reset_handlers();
  current_line = nullptr;
}

void ProgressLine::stop_current()
{
  if (current_line != nullptr) current_line->stop();
}

void ProgressLine::run()
{
  std::unique_lock lock(mutex_);
  while (!wake_.wait_for(lock, kPause, [this] { return is_stopped_; })) {
    if (!is_visible() || Clock::now() - start_ < kFirstPause) continue;
    try {
      draw();
    } catch (const std::bad_alloc&) {
      // The work may temporarily use all the memory. GCOVR_EXCL_LINE
    }
  }
}

void ProgressLine::draw()
{
  const std::string text = std::string(kErase) + make_text();
  is_drawing = true;
  if (!is_ending && is_in_front()) {
    is_shown = true;
    write_terminal(text);
  }
  is_drawing = false;
}

void ProgressLine::erase()
{
  if (is_shown.exchange(false)) write_terminal(kErase);
}

bool ProgressLine::is_visible() const
{
  return phase_ != Phase::kWait && (phase_ != Phase::kPrint || prints_to_file());
}

std::string ProgressLine::make_text() const
{
  const std::chrono::duration<double> seconds = Clock::now() - phase_start_;
  // After text in the last column, a terminal may continue on the next line.
  return make_progress_text(phase_, num_terms_, seconds.count()).substr(0, get_num_columns() - 1);
}

// -----------------------------------------------------------------------------------------------------------

LineStopper::int_type LineStopper::overflow(int_type c)
{
  line_.stop();
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  return out_.put(traits_type::to_char_type(c)) ? c : traits_type::eof();
}

std::streamsize LineStopper::xsputn(const char* text, std::streamsize size)
{
  line_.stop();
  return out_.write(text, size) ? size : 0;
}

int LineStopper::sync() { return out_.flush() ? 0 : -1; }

}  // namespace lumo::cli
