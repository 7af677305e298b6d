#include "lumo/terms/termsimpl.h"

#include <array>
#include <string>

#include "lumo/terms/exception.h"
#include "lumo/terms/fold.h"

namespace lumo {

StdTermSimplifier::simpl_fun::~simpl_fun() = default;

namespace termsimpl {

namespace {

void check_kind(const Symbol* s, Kind expected)
{
  if (s->get_kind() == expected) return;
  throw Exception("a simplifier of " + std::string(get_operator_info(expected).smtlib_name) +
                  " was given the symbol " + s->get_name());
}

/// The value of s(args), or null if an argument is not a value. Precondition: make_term accepts the application.
const Term* fold_values(TermManager& mgr, const OperatorSymbol& s, std::span<const Term* const> args)
{
  std::array<const QNumber*, kMaxArity> numbers{};
  for (std::size_t i = 0; i < args.size(); ++i) {
    numbers[i] = find_value_number(mgr, args[i]);
    if (numbers[i] == nullptr) return nullptr;
  }
  // The number of an extension is that of its argument, without a copy.
  if (s.get_kind() == Kind::kBvZeroExtend) return make_value(mgr, *numbers[0], s.get_output_type());
  return make_value(mgr, fold(s, numbers.data()), s.get_output_type());
}

}  // namespace

template <Kind kKind>
const Term* FoldingSimpl<kKind>::operator()(TermManager* mgr, const Symbol* s,
                                            const std::vector<const Term*>& args) const
{
  return (*this)(mgr, s, std::span<const Term* const>(args));
}

template <Kind kKind>
const Term* FoldingSimpl<kKind>::operator()(TermManager* mgr, const Symbol* s,
                                            std::span<const Term* const> args) const
{
  mgr->check_application(s, args.data(), args.size());
  check_kind(s, kKind);
  const Term* value = fold_values(*mgr, as_operator(s), args);
  return value != nullptr ? value : mgr->make_term(s, args.data(), args.size());
}

template class FoldingSimpl<Kind::kBvAdd>;
template class FoldingSimpl<Kind::kBvSub>;
template class FoldingSimpl<Kind::kBvXor>;
template class FoldingSimpl<Kind::kBvNot>;
template class FoldingSimpl<Kind::kBvNeg>;
template class FoldingSimpl<Kind::kBvRotateLeft>;
template class FoldingSimpl<Kind::kBvRotateRight>;
template class FoldingSimpl<Kind::kBvExtract>;
template class FoldingSimpl<Kind::kBvConcat>;
template class FoldingSimpl<Kind::kBvZeroExtend>;

}  // namespace termsimpl

}  // namespace lumo
