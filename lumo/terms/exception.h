#ifndef LUMO_TERMS_EXCEPTION_H
#define LUMO_TERMS_EXCEPTION_H

#include <exception>
#include <sstream>
#include <string>
#include <utility>

namespace lumo {

/// The base of all exceptions that the library throws for wrong input. Its text can still be
/// extended after construction: `throw Exception(Exception("found ") << name)`.
///
/// Every constructor, also the copy constructor, ends with a call of `dump_msg_and_raise_assertion`, so observers see
/// each exception at its source, before the stack unwinds.
class Exception : public std::exception
{
 public:
  /// Called with the exception that is being constructed. Its text is complete, but of a derived class only the
  /// base exists yet: the dynamic type is `Exception`. An observer may construct and copy exceptions itself; no
  /// observer is called for these. An exception that it throws passes to the code that constructs the exception.
  using Observer = void (*)(const Exception&);
  /// The same with a pointer that belongs to the observer
  using ContextObserver = void (*)(const Exception&, void* context);

  Exception();
  explicit Exception(const std::string& msg);
  /// The copy has its own stream, with the whole text.
  Exception(const Exception& rhs);
  Exception& operator=(const Exception&) = delete;
  ~Exception() override;

  /// Appends to the text; `std::bad_alloc` passes through.
  template <class T>
  Exception& operator<<(const T& piece)
  {
    stream_ << piece;
    return *this;
  }

  /// The text so far; valid until the next call or the exception's end. Empty if memory runs out.
  const char* what() const noexcept override;

  /// Calls the observers that are set, unless one is running in this thread already, and returns.
  void dump_msg_and_raise_assertion() const;

  /// Sets the observer of the whole process and returns the previous one. Null means none, as at the start. No
  /// other thread may construct an exception during the call.
  static Observer set_observer(Observer observer) noexcept;
  /// The same for an observer with a context, which is called after the one without, if both are set. Returns the
  /// previous one with its context.
  static std::pair<ContextObserver, void*> set_observer(ContextObserver observer, void* context) noexcept;

 private:
  std::ostringstream stream_;
  mutable std::string text_;  ///< what `what()` returned last
};

}  // namespace lumo

#endif
