#include "lumo/terms/exception.h"

#include <utility>

namespace lumo {

namespace {

Exception::Observer current_observer = nullptr;

}  // namespace

// A stream keeps a failed allocation to itself unless it is told to pass it on; a text cut short would be worse.

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
  if (current_observer != nullptr) current_observer(*this);
}

Exception::Observer Exception::set_observer(Observer observer) noexcept
{
  return std::exchange(current_observer, observer);
}

}  // namespace lumo
