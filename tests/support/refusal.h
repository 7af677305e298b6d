#ifndef LUMO_TESTS_SUPPORT_REFUSAL_H
#define LUMO_TESTS_SUPPORT_REFUSAL_H

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// The text of the `Exception` with which a request is refused.
template <class Request>
[[nodiscard]] std::string get_refusal(Request request)
{
  try {
    request();
  } catch (const Exception& e) {
    return e.what();
  }
  return "(not refused)";
}

/// Expects that the request is refused with exactly this text and leaves the manager unchanged.
template <class Request>
void expect_refusal(const TermManager& mgr, Request request, const std::string& text)
{
  const std::size_t num_terms = mgr.get_num_terms();
  const std::size_t num_symbols = mgr.get_num_symbols();
  EXPECT_EQ(get_refusal(request), text);
  EXPECT_EQ(mgr.get_num_terms(), num_terms) << text;
  EXPECT_EQ(mgr.get_num_symbols(), num_symbols) << text;
}

}  // namespace lumo::test

#endif
