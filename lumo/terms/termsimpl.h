#ifndef LUMO_TERMS_TERMSIMPL_H
#define LUMO_TERMS_TERMSIMPL_H

#include <span>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo {

/// The scope of the functors' base class.
class StdTermSimplifier
{
 public:
  /// Builds an application in simplified form. Functors hold no data; they are made on the stack for one
  /// calculation.
  class simpl_fun  // NOLINT(readability-identifier-naming): the name by which solvers know it
  {
   public:
    simpl_fun() = default;
    simpl_fun(const simpl_fun&) = delete;
    simpl_fun& operator=(const simpl_fun&) = delete;
    virtual ~simpl_fun();

    /// The term s(args), simplified: if all arguments are values, the result is a value. Refuses an s that is not
    /// of the functor's operator, and arguments that `TermManager::make_term` refuses, with an `Exception`.
    virtual const Term* operator()(TermManager* mgr, const Symbol* s,
                                   const std::vector<const Term*>& args) const = 0;
    /// The same for arguments in any memory, so a caller need not allocate a vector.
    virtual const Term* operator()(TermManager* mgr, const Symbol* s,
                                   std::span<const Term* const> args) const = 0;
  };
};

/// The functors that calculators apply.
namespace termsimpl {

/// The functor of one operator. It folds values; any other application is built without a change.
template <Kind kKind>
class FoldingSimpl final : public StdTermSimplifier::simpl_fun
{
 public:
  const Term* operator()(TermManager* mgr, const Symbol* s,
                         const std::vector<const Term*>& args) const override;
  const Term* operator()(TermManager* mgr, const Symbol* s, std::span<const Term* const> args) const override;
};

using BVAddSimpl = FoldingSimpl<Kind::kBvAdd>;
using BVSubSimpl = FoldingSimpl<Kind::kBvSub>;
using BVXorSimpl = FoldingSimpl<Kind::kBvXor>;
using BVNotSimpl = FoldingSimpl<Kind::kBvNot>;
using BVNegSimpl = FoldingSimpl<Kind::kBvNeg>;
using BVRolSimpl = FoldingSimpl<Kind::kBvRotateLeft>;
using BVRorSimpl = FoldingSimpl<Kind::kBvRotateRight>;
using BVSelectSimpl = FoldingSimpl<Kind::kBvExtract>;
using BVConcatSimpl = FoldingSimpl<Kind::kBvConcat>;
using BVZextSimpl = FoldingSimpl<Kind::kBvZeroExtend>;

extern template class FoldingSimpl<Kind::kBvAdd>;
extern template class FoldingSimpl<Kind::kBvSub>;
extern template class FoldingSimpl<Kind::kBvXor>;
extern template class FoldingSimpl<Kind::kBvNot>;
extern template class FoldingSimpl<Kind::kBvNeg>;
extern template class FoldingSimpl<Kind::kBvRotateLeft>;
extern template class FoldingSimpl<Kind::kBvRotateRight>;
extern template class FoldingSimpl<Kind::kBvExtract>;
extern template class FoldingSimpl<Kind::kBvConcat>;
extern template class FoldingSimpl<Kind::kBvZeroExtend>;

}  // namespace termsimpl

}  // namespace lumo

#endif
