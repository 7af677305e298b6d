#ifndef LUMO_SOLVERS_Z3_SESSION_H
#define LUMO_SOLVERS_Z3_SESSION_H

#include <new>

#include <z3.h>

namespace lumo::solvers {

/// A Z3 context that the object owns, with everything that was made in it. Z3 reports errors only through its error
/// code and prints nothing. It calls `exit` in one case: if its parser gets no memory.
class Z3Session
{
 public:
  Z3Session()
  {
    Z3_config config = Z3_mk_config();
    context_ = Z3_mk_context_rc(config);
    Z3_del_config(config);
    if (context_ == nullptr) throw std::bad_alloc();
    Z3_set_error_handler(context_, [](Z3_context /*context*/, Z3_error_code /*code*/) {});
    Z3_toggle_warning_messages(false);
  }
  Z3Session(const Z3Session&) = delete;
  Z3Session& operator=(const Z3Session&) = delete;
  ~Z3Session() { Z3_del_context(context_); }

  // NOLINTNEXTLINE(google-explicit-constructor): converts to the context
  operator Z3_context() const { return context_; }

 private:
  Z3_context context_;
};

}  // namespace lumo::solvers

#endif
