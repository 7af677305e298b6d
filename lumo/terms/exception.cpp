#include "lumo/terms/exception.h"

#include <utility>

namespace lumo {

namespace {

Exception::Observer current_observer = nullptr;
std::pair<Exception::ContextObserver, void*> current_context_observer = {nullptr, nullptr};

/// Whether an observer of this thread is running
thread_local bool is_observed = false;

/// Marks this thread as running an observer, also if the observer throws.
class Observation
{
 public:
  Observation() { is_observed = true; }
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;
  ~Observation() { is_observed = false; }
};

}  // namespace

// By default, a stream ignores a failed allocation; the text would then be cut.

Exception::Exception()
{
  stream_.exceptions(std::ios::badbit);
  dump_msg_and_raise_assertion();
}

Exception::Exception(const std::string& msg)
{
  stream_.exceptions(std::ios::badbit);
  stream_ << msg;
  dump_msg_and_raise_assertion();
}

Exception::Exception(const Exception& rhs) : std::exception(rhs)
{
  stream_.exceptions(std::ios::badbit);
  stream_ << rhs.stream_.str();
  dump_msg_and_raise_assertion();
}

Exception::~Exception() = default;

const char* Exception::what() const noexcept
{
  try {
    text_ = stream_.str();
    return text_.c_str();
  } catch (...) {
    return "";
  }
}

void Exception::dump_msg_and_raise_assertion() const
{
  if (is_observed) return;
  const Observation observation;
  // The first observer may set or remove the second one.
  if (current_observer != nullptr) current_observer(*this);
  const auto [observer, context] = current_context_observer;
  if (observer != nullptr) observer(*this, context);
}

Exception::Observer Exception::set_observer(Observer observer) noexcept
{
  return std::exchange(current_observer, observer);
}

std::pair<Exception::ContextObserver, void*> Exception::set_observer(ContextObserver observer,
                                                                     void* context) noexcept
{
  return std::exchange(current_context_observer, {observer, context});
}

}  // namespace lumo
