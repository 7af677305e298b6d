#ifndef LUMO_TERMS_EXCEPTION_H
#define LUMO_TERMS_EXCEPTION_H

#include <exception>
#include <sstream>
#include <string>

namespace lumo {

/// The base of everything that the library throws for a mistake in what it was given. Its text can still be
/// extended after construction: `throw Exception(Exception("found ") << name)`.
///
/// Every construction, a copy included, ends with a call of `dump_msg_and_raise_assertion`, so that an
/// observer sees each exception at its source, before the stack unwinds.
class Exception : public std::exception
{
 public:
  /// Called with the exception just constructed. What it throws passes to whoever constructed the exception.
  using Observer = void (*)(const Exception&);

  Exception();
  explicit Exception(const std::string& msg);
  /// The copy gets a stream of its own that holds the whole text.
  Exception(const Exception& rhs);
  Exception& operator=(const Exception&) = delete;
  ~Exception() override;

  /// Appends to the text; a failed allocation passes through.
  template <class T>
  Exception& operator<<(const T& piece)
  {
    stream_ << piece;
    return *this;
  }

  /// The text so far; good until the next call or the exception's end. Empty if memory runs out.
  const char* what() const noexcept override;

  /// Calls the observer, if one is set, and returns.
  void dump_msg_and_raise_assertion() const;

  /// Sets the observer of the whole process, null for none (as at the start), and returns the one before.
  static Observer set_observer(Observer observer) noexcept;

 private:
  std::ostringstream stream_;
  mutable std::string text_;  ///< what `what()` returned last
};

}  // namespace lumo

#endif
