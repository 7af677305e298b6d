#include "lumo/solvers/z3_builder.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>

#include "lumo/smtlib/input_error.h"
#include "lumo/solvers/answer.h"
#include "lumo/terms/term_walk.h"

namespace lumo::solvers {

namespace {

/// Z3 4.8 has no vectors of more bits, and at much larger widths it ends by a signal.
constexpr std::size_t kMaxWidth = (std::size_t{1} << 29U) - 1;

void check_width(const DataType* sort)
{
  if (sort->is_bool() || sort->get_width() <= kMaxWidth) return;
  throw SolverError("the built-in solver, Z3, takes widths of at most " + std::to_string(kMaxWidth) +
                    " bits, but there is a term of " + std::to_string(sort->get_width()));
}

/// Keeps a temporary expression alive.
class Held
{
 public:
  Held(const Z3Session& z3, Z3_ast expression) : z3_(z3), expression_(expression)
  {
    check_z3(z3);
    Z3_inc_ref(z3, expression);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { Z3_dec_ref(z3_, expression_); }

  // NOLINTNEXTLINE(google-explicit-constructor): converts to the expression
  operator Z3_ast() const { return expression_; }

 private:
  const Z3Session& z3_;
  Z3_ast expression_;
};

// -----------------------------------------------------------------------------------------------------------
// Operators

using Arguments = std::span<const Z3_ast>;
using Make = Z3_ast (*)(const Z3Session& z3, const Parameters& parameters, Arguments args);

/// An operator without parameters.
template <auto kMake>
Z3_ast plain(const Z3Session& z3, const Parameters& /*parameters*/, Arguments args)
{
  if constexpr (std::is_invocable_v<decltype(kMake), Z3_context, Z3_ast>) {
    return kMake(z3, args[0]);
  } else if constexpr (std::is_invocable_v<decltype(kMake), Z3_context, Z3_ast, Z3_ast>) {
    return kMake(z3, args[0], args[1]);
  } else if constexpr (std::is_invocable_v<decltype(kMake), Z3_context, unsigned, const Z3_ast*>) {
    return kMake(z3, static_cast<unsigned>(args.size()), args.data());
  } else {
    return kMake(z3, args[0], args[1], args[2]);
  }
}

/// An associative operator of bit-vectors. Z3's function for it takes two arguments, but its result has a
/// declaration that can be applied to more.
template <auto kMake>
Z3_ast chained(const Z3Session& z3, const Parameters& /*parameters*/, Arguments args)
{
  const Z3_ast pair = kMake(z3, args[0], args[1]);
  if (args.size() == 2 || pair == nullptr) return pair;
  const Held held(z3, pair);
  const Z3_func_decl declaration = Z3_get_app_decl(z3, Z3_to_app(z3, held));
  return Z3_mk_app(z3, declaration, static_cast<unsigned>(args.size()), args.data());
}

/// A concatenation, as a balanced tree: its declarations contain the widths of two arguments, and few nodes of such
/// a tree are wide.
Z3_ast concatenate(const Z3Session& z3, const Parameters& parameters, Arguments args)
{
  if (args.size() == 1) return args[0];
  const std::size_t half = args.size() / 2;
  const Held high(z3, concatenate(z3, parameters, args.first(half)));
  const Held low(z3, concatenate(z3, parameters, args.subspan(half)));
  return Z3_mk_concat(z3, high, low);
}

/// A rotation; Z3 takes amounts of 32 bits only.
template <auto kMake>
Z3_ast rotated(const Z3Session& z3, const Parameters& parameters, Arguments args)
{
  return kMake(z3, static_cast<unsigned>(parameters[0] % parameters[1]), args[0]);
}

/// An extension; the width of its result, and so the number of its new bits, has at most 32 bits.
template <auto kMake>
Z3_ast extended(const Z3Session& z3, const Parameters& parameters, Arguments args)
{
  return kMake(z3, static_cast<unsigned>(parameters[0]), args[0]);
}

Z3_ast extract(const Z3Session& z3, const Parameters& parameters, Arguments args)
{
  return Z3_mk_extract(z3, static_cast<unsigned>(parameters[0]), static_cast<unsigned>(parameters[1]),
                       args[0]);
}

/// Z3's interface has no bvcomp: (bvcomp a b) -> (ite (= a b) #b1 #b0).
Z3_ast compare(const Z3Session& z3, const Parameters& /*parameters*/, Arguments args)
{
  const bool zero_bit[] = {false};
  const bool one_bit[] = {true};
  const Held equal(z3, Z3_mk_eq(z3, args[0], args[1]));
  const Held one(z3, Z3_mk_bv_numeral(z3, 1, one_bit));
  const Held zero(z3, Z3_mk_bv_numeral(z3, 1, zero_bit));
  return Z3_mk_ite(z3, equal, one, zero);
}

struct Row
{
  Kind kind;
  Make make;
};

constexpr std::array<Row, kNumOperators> kRows = {{
    {Kind::kNot, plain<Z3_mk_not>},
    {Kind::kAnd, plain<Z3_mk_and>},
    {Kind::kOr, plain<Z3_mk_or>},
    {Kind::kIff, plain<Z3_mk_iff>},
    {Kind::kIte, plain<Z3_mk_ite>},
    {Kind::kEq, plain<Z3_mk_eq>},
    {Kind::kBvNot, plain<Z3_mk_bvnot>},
    {Kind::kBvNeg, plain<Z3_mk_bvneg>},
    {Kind::kBvRotateLeft, rotated<Z3_mk_rotate_left>},
    {Kind::kBvRotateRight, rotated<Z3_mk_rotate_right>},
    {Kind::kBvAnd, chained<Z3_mk_bvand>},
    {Kind::kBvOr, chained<Z3_mk_bvor>},
    {Kind::kBvXor, chained<Z3_mk_bvxor>},
    {Kind::kBvConcat, concatenate},
    {Kind::kBvExtract, extract},
    {Kind::kBvZeroExtend, extended<Z3_mk_zero_ext>},
    {Kind::kBvSignExtend, extended<Z3_mk_sign_ext>},
    {Kind::kBvLsl, plain<Z3_mk_bvshl>},
    {Kind::kBvLsr, plain<Z3_mk_bvlshr>},
    {Kind::kBvAsr, plain<Z3_mk_bvashr>},
    {Kind::kBvAdd, chained<Z3_mk_bvadd>},
    {Kind::kBvSub, plain<Z3_mk_bvsub>},
    {Kind::kBvMul, chained<Z3_mk_bvmul>},
    {Kind::kBvUdiv, plain<Z3_mk_bvudiv>},
    {Kind::kBvSdiv, plain<Z3_mk_bvsdiv>},
    {Kind::kBvUrem, plain<Z3_mk_bvurem>},
    {Kind::kBvSrem, plain<Z3_mk_bvsrem>},
    {Kind::kBvUlt, plain<Z3_mk_bvult>},
    {Kind::kBvUle, plain<Z3_mk_bvule>},
    {Kind::kBvSlt, plain<Z3_mk_bvslt>},
    {Kind::kBvSle, plain<Z3_mk_bvsle>},
    {Kind::kBvComp, compare},
}};

constexpr bool rows_are_in_order()
{
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    if (kRows[i].kind != static_cast<Kind>(i)) return false;
  }
  return true;
}
static_assert(rows_are_in_order(), "kRows has one row for each operator, in the order of Kind");

/// Whether nested applications may be passed to Z3 as one application to all of their leaves.
constexpr bool is_associative(Kind kind)
{
  switch (kind) {
    case Kind::kAnd:
    case Kind::kOr:
    case Kind::kBvAnd:
    case Kind::kBvOr:
    case Kind::kBvXor:
    case Kind::kBvConcat:
    case Kind::kBvAdd:
    case Kind::kBvMul:
      return true;
    default:
      return false;
  }
}

// -----------------------------------------------------------------------------------------------------------
// Numerals

/// Z3 keeps all powers of two up to the width of its widest numeral, so wider ones are concatenated from
/// pieces of this width.
constexpr unsigned long kPieceWidth = 4096;

/// The `width` bits of a number from bit `low` on, as a numeral.
Z3_ast make_piece(const Z3Session& z3, mpz_srcptr number, unsigned long low, unsigned long width)
{
  const auto bits = std::make_unique<bool[]>(width);
  for (unsigned long i = 0; i < width; ++i)
    bits[i] = mpz_tstbit(number, low + i) != 0;
  return Z3_mk_bv_numeral(z3, static_cast<unsigned>(width), bits.get());
}

/// The concatenated pieces of a number, as a balanced tree, which has few wide nodes.
Z3_ast make_pieces(const Z3Session& z3, mpz_srcptr number, unsigned long low, unsigned long width)
{
  if (width <= kPieceWidth) return make_piece(z3, number, low, width);
  const unsigned long num_pieces = (width + kPieceWidth - 1) / kPieceWidth;
  const unsigned long low_width = num_pieces / 2 * kPieceWidth;
  const Held high(z3, make_pieces(z3, number, low + low_width, width - low_width));
  const Held rest(z3, make_pieces(z3, number, low, low_width));
  return Z3_mk_concat(z3, high, rest);
}

}  // namespace

// -----------------------------------------------------------------------------------------------------------

void check_z3(const Z3Session& z3)
{
  const Z3_error_code code = Z3_get_error_code(z3);
  if (code == Z3_OK) return;
  if (code == Z3_MEMOUT_FAIL) throw SolverError("the built-in solver ran out of memory");
  throw SolverError("the built-in solver, Z3, failed and said: " +
                    smtlib::make_excerpt(Z3_get_error_msg(z3, code)));
}

Z3Builder::~Z3Builder()
{
  for (const Z3_ast expression : results_) {
    if (expression != nullptr) Z3_dec_ref(z3_, expression);
  }
}

void Z3Builder::count_uses(std::span<const Term* const> roots)
{
  const std::vector<const Term*> terms = collect_terms(roots);
  num_uses_.assign(terms.empty() ? 0 : terms.back()->get_id() + 1, 0);
  const auto count = [this](const Term* t) {
    std::uint8_t& uses = num_uses_[t->get_id()];
    uses = uses == 0 ? 1 : kMany;
  };
  for (const Term* root : roots)
    count(root);
  for (const Term* t : terms) {
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      count(t->get_arg(i));
  }
}

Z3_ast Z3Builder::build(const Term* root)
{
  std::vector<const Term*> stack{root};
  while (!stack.empty()) {
    const Term* next = stack.back();
    if (is_built(next)) {
      stack.pop_back();
    } else {
      visit(next, stack);
    }
  }
  return results_[root->get_id()];
}

void Z3Builder::visit(const Term* t, std::vector<const Term*>& stack)
{
  collect_leaves(t);
  const std::size_t height = stack.size();
  std::copy_if(leaves_.rbegin(), leaves_.rend(), std::back_inserter(stack),
               [this](const Term* leaf) { return !is_built(leaf); });
  if (stack.size() != height) return;

  if (t->get_id() >= results_.size()) {
    results_.resize(std::max(t->get_id() + 1, std::min(2 * results_.size(), mgr_.get_num_terms())));
  }
  check_width(t->get_symbol()->get_output_type());
  const Z3_ast expression = t->get_num_args() == 0 ? make_leaf(t) : make_application(t);
  check_z3(z3_);
  Z3_inc_ref(z3_, expression);
  results_[t->get_id()] = expression;
}

void Z3Builder::collect_leaves(const Term* t)
{
  leaves_.clear();
  const Kind kind = t->get_symbol()->get_kind();
  const bool is_chain = is_associative(kind);
  chain_.assign(1, t);
  while (!chain_.empty()) {
    const Term* next = chain_.back();
    chain_.pop_back();
    const bool is_inner =
        next == t || (is_chain && next->get_symbol()->get_kind() == kind && is_used_once(next));
    if (!is_inner) {
      leaves_.push_back(next);
      continue;
    }
    for (std::size_t i = next->get_num_args(); i-- > 0;)
      chain_.push_back(next->get_arg(i));
  }
}

Z3_ast Z3Builder::make_application(const Term* t) const
{
  std::vector<Z3_ast> args(leaves_.size());
  std::transform(leaves_.begin(), leaves_.end(), args.begin(),
                 [this](const Term* leaf) { return results_[leaf->get_id()]; });
  const OperatorSymbol& op = as_operator(t->get_symbol());
  return kRows[static_cast<std::size_t>(op.get_kind())].make(z3_, op.get_parameters(), args);
}

Z3_ast Z3Builder::make_leaf(const Term* t)
{
  switch (t->get_symbol()->get_kind()) {
    case Kind::kTrue:
      return Z3_mk_true(z3_);
    case Kind::kFalse:
      return Z3_mk_false(z3_);
    case Kind::kNumeral:
      return make_numeral(t);
    default:
      return make_constant(t);
  }
}

Z3_ast Z3Builder::make_constant(const Term* t)
{
  const Z3_symbol symbol = Z3_mk_int_symbol(z3_, static_cast<int>(constants_.size()));
  const Z3_sort sort = make_sort(t->get_symbol()->get_output_type());
  constants_.push_back(t);
  return Z3_mk_const(z3_, symbol, sort);
}

Z3_ast Z3Builder::make_numeral(const Term* t) const
{
  const DataType* type = t->get_symbol()->get_output_type();
  QNumber number;
  mgr_.is_number(t->get_symbol(), &number);
  long word = 0;
  if (number.get_word(word)) {
    const bool fits = type->get_width() <= kPieceWidth;
    if (fits) return Z3_mk_unsigned_int64(z3_, static_cast<unsigned long>(word), make_sort(type));
  }
  return make_pieces(z3_, number.view_numerator(QNumber::gmp_tmp[0]), 0, type->get_width());
}

Z3_sort Z3Builder::make_sort(const DataType* type) const
{
  const Z3_sort sort =
      type->is_bool() ? Z3_mk_bool_sort(z3_) : Z3_mk_bv_sort(z3_, static_cast<unsigned>(type->get_width()));
  check_z3(z3_);
  return sort;
}

}  // namespace lumo::solvers
