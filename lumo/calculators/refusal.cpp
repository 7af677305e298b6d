#include "lumo/calculators/refusal.h"

#include "lumo/calculators/adhoccalculators.h"

namespace lumo::adhoccalculator {

namespace {

constexpr const char* kTextAfterName = " found instead";

}  // namespace

std::string Refusal::get_text() const
{
  if (text_ == nullptr) return {};
  std::string text(text_);
  if (found_ != nullptr) text.append(found_->get_name()).append(kTextAfterName);
  return text;
}

void Refusal::raise() const
{
  if (found_ == nullptr) throw AdHocCalculator::error(text_);

  // The error is constructed, so an observer sees it. But a copy of its base is thrown, so a handler of
  // AdHocCalculator::error does not catch it.
  AdHocCalculator::error e(text_);
  e << found_->get_name() << kTextAfterName;
  throw Exception(e);
}

}  // namespace lumo::adhoccalculator
