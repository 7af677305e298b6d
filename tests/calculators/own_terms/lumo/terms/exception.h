#ifndef LUMO_TESTS_CALCULATORS_OWN_TERMS_EXCEPTION_H
#define LUMO_TESTS_CALCULATORS_OWN_TERMS_EXCEPTION_H

#include <exception>
#include <sstream>
#include <string>

namespace lumo {

/// The exception base of a solver with its own terms, with only the members that the calculators need.
class Exception : public std::exception
{
 public:
  explicit Exception(const std::string& msg)
  {
    stream_ << msg;
    dump_msg_and_raise_assertion();
  }
  Exception(const Exception& rhs) : std::exception(rhs)
  {
    stream_ << rhs.stream_.str();
    dump_msg_and_raise_assertion();
  }
  Exception& operator=(const Exception&) = delete;

  template <class T>
  Exception& operator<<(const T& piece)
  {
    stream_ << piece;
    return *this;
  }

  const char* what() const noexcept override
  {
    try {
      text_ = stream_.str();
      return text_.c_str();
    } catch (...) {
      return "";
    }
  }

  /// Records the text for the tests.
  void dump_msg_and_raise_assertion() const;

 private:
  std::ostringstream stream_;
  mutable std::string text_;
};

}  // namespace lumo

#endif
