#include "tests/support/make_operator.h"

#include <stdexcept>

namespace lumo::test {

namespace {

const DataType* make_type(TermManager& mgr, unsigned long w)
{
  return w == 0 ? mgr.make_bool_type() : mgr.make_bv_type(w);
}

}  // namespace

const Symbol* make_operator(TermManager& mgr, Kind kind, const Parameters& p)
{
  switch (kind) {
    case Kind::kNot:
      return mgr.make_not_symbol();
    case Kind::kAnd:
      return mgr.make_and_symbol();
    case Kind::kOr:
      return mgr.make_or_symbol();
    case Kind::kIff:
      return mgr.make_iff_symbol();
    case Kind::kIte:
      return mgr.make_ite_symbol(make_type(mgr, p[0]));
    case Kind::kEq:
      return mgr.make_eq_symbol(make_type(mgr, p[0]));
    case Kind::kBvNot:
      return mgr.make_bv_not_symbol(p[0]);
    case Kind::kBvNeg:
      return mgr.make_bv_neg_symbol(p[0]);
    case Kind::kBvAnd:
      return mgr.make_bv_and_symbol(p[0]);
    case Kind::kBvOr:
      return mgr.make_bv_or_symbol(p[0]);
    case Kind::kBvXor:
      return mgr.make_bv_xor_symbol(p[0]);
    case Kind::kBvAdd:
      return mgr.make_bv_add_symbol(p[0]);
    case Kind::kBvSub:
      return mgr.make_bv_sub_symbol(p[0]);
    case Kind::kBvMul:
      return mgr.make_bv_mul_symbol(p[0]);
    case Kind::kBvUdiv:
      return mgr.make_bv_udiv_symbol(p[0]);
    case Kind::kBvSdiv:
      return mgr.make_bv_sdiv_symbol(p[0]);
    case Kind::kBvUrem:
      return mgr.make_bv_urem_symbol(p[0]);
    case Kind::kBvSrem:
      return mgr.make_bv_srem_symbol(p[0]);
    case Kind::kBvLsl:
      return mgr.make_bv_lsl_symbol(p[0]);
    case Kind::kBvLsr:
      return mgr.make_bv_lsr_symbol(p[0]);
    case Kind::kBvAsr:
      return mgr.make_bv_asr_symbol(p[0]);
    case Kind::kBvUlt:
      return mgr.make_bv_ult_symbol(p[0]);
    case Kind::kBvUle:
      return mgr.make_bv_ule_symbol(p[0]);
    case Kind::kBvSlt:
      return mgr.make_bv_slt_symbol(p[0]);
    case Kind::kBvSle:
      return mgr.make_bv_sle_symbol(p[0]);
    case Kind::kBvComp:
      return mgr.make_bv_comp_symbol(p[0]);
    case Kind::kBvConcat:
      return mgr.make_bv_concat_symbol(p[0], p[1]);
    case Kind::kBvRotateLeft:
      return mgr.make_bv_rotate_left_symbol(p[0], p[1]);
    case Kind::kBvRotateRight:
      return mgr.make_bv_rotate_right_symbol(p[0], p[1]);
    case Kind::kBvZeroExtend:
      return mgr.make_bv_zero_extend_symbol(p[0], p[1]);
    case Kind::kBvSignExtend:
      return mgr.make_bv_sign_extend_symbol(p[0], p[1]);
    case Kind::kBvExtract:
      return mgr.make_bv_extract_symbol(p[0], p[1], p[2]);
    case Kind::kConstant:
    case Kind::kTrue:
    case Kind::kFalse:
    case Kind::kNumeral:
      break;
  }
  throw std::logic_error("not an operator");
}

}  // namespace lumo::test
