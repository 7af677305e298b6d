#ifndef LUMO_TERMS_TERM_MANAGER_H
#define LUMO_TERMS_TERM_MANAGER_H

#include <array>
#include <concepts>
#include <cstddef>
#include <deque>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/numbers/hash_mix.h"
#include "lumo/numbers/qnumber.h"
#include "lumo/terms/data_type.h"
#include "lumo/terms/fresh_constants.h"
#include "lumo/terms/kind.h"
#include "lumo/terms/numeral_table.h"
#include "lumo/terms/symbol.h"
#include "lumo/terms/term.h"
#include "lumo/terms/term_arena.h"
#include "lumo/terms/unique_table.h"

/// The library: numbers, terms, models, calculators and elimination.
namespace lumo {

/// Owns sorts, symbols and terms over Booleans and bit-vectors, and makes one object for each distinct one,
/// so that all three are compared by address. They live until the manager does; managers share nothing.
///
/// Whatever makes no sense (a width of 0, an argument of another sort, a name declared with two sorts, ...)
/// is refused with an `Exception` that says what was given and what was expected; the manager is then
/// unchanged. If memory runs out, `std::bad_alloc` passes through, and the manager stays usable: what it has
/// made is found again, and what it could not make can be asked for once more. Widths count bits, from 1 to
/// kMaxWidth. Recognisers answer false and leave their out-parameters alone for every other symbol;
/// out-parameters may be null.
class TermManager
{
 public:
  /// The widest bit-vector: more would reach the limits of GMP's integers.
  static constexpr unsigned long kMaxWidth = 0xffffffffUL;

  TermManager();
  TermManager(const TermManager&) = delete;
  TermManager& operator=(const TermManager&) = delete;
  ~TermManager();

  // ------------------------------------------------------------------------------------------------ sorts

  const DataType* make_bool_type() { return &bool_type_; }
  const DataType* make_bv_type(unsigned long w)
  {
    const DataType* recent = recent_bv_types_[get_place(w)];
    if (recent != nullptr && recent->get_width() == w) [[likely]]
      return recent;
    return find_or_make_bv_type(w);
  }
  [[nodiscard]] bool is_bool_type(const DataType* type) const { return type->is_bool(); }
  bool is_bv_type(const DataType* type, unsigned long* w) const
  {
    if (type->is_bool()) return false;
    store(w, type->get_width());
    return true;
  }

  // -------------------------------------------------------------------------------------------- constants

  /// The declared constant of that name; a second call must name the same sort.
  const Symbol* make_constant_symbol(const std::string& name, const DataType* type);
  const Term* make_constant(const std::string& name, const DataType* type);
  /// A constant whose name was not taken before: the prefix, an exclamation mark and a number. Numbers grow.
  const Term* make_fresh_constant(const std::string& prefix, const DataType* type);
  /// Whether s is a declared constant; true, false and numerals are none.
  [[nodiscard]] bool is_constant(const Symbol* s) const { return s->get_kind() == Kind::kConstant; }

  const Term* make_true() { return true_; }
  const Term* make_false() { return false_; }
  [[nodiscard]] const Symbol* get_true_symbol() const { return true_->get_symbol(); }
  [[nodiscard]] const Symbol* get_false_symbol() const { return false_->get_symbol(); }

  // --------------------------------------------------------------------------------------------- numerals

  /// Whether s is a numeral of this manager; its value, in [0, 2^w - 1], goes to *out.
  bool is_number(const Symbol* s, QNumber* out) const
  {
    // Most symbols that are asked about say by their kind that there is nothing to look for.
    if (s->get_kind() != Kind::kNumeral || numerals_.empty()) return false;
    const Numeral* numeral = numerals_.find(s);
    if (numeral == nullptr) return false;
    if (out != nullptr) *out = numeral->get_value();
    return true;
  }
  /// The same without a copy and a search: the value of the numeral s, which lives as long as the manager, or null.
  [[nodiscard]] const QNumber* find_number(const Symbol* s) const
  {
    if (s->get_kind() != Kind::kNumeral || s->get_output_type()->get_manager() != this) return nullptr;
    return &Numeral::of(s).get_value();
  }
  /// The numeral of width w and value n modulo 2^w; n is an integer, negative ones included.
  const Term* make_bv_number(const QNumber& n, unsigned long w);
  const Term* make_bv_number(int n, unsigned long w)
  {
    return make_bv_number(QNumber(static_cast<long>(n)), w);
  }
  /// The same for every other integer type of at most a word. Wider ones are refused by the compiler, as nothing may be
  /// cut on the way.
  template <WordInteger T>
  const Term* make_bv_number(T n, unsigned long w)
  {
    return make_bv_number(QNumber(n), w);
  }
  template <CutByWord T>
  const Term* make_bv_number(T n, unsigned long w) = delete;
  /// The values of all numerals, for whoever wants to look at the shape of the table.
  [[nodiscard]] const NumeralTable& get_numerals() const { return numerals_; }

  // ------------------------------------------------------------------------------------------------ terms

  /// The application of s to args, as many and of the sorts that s takes; leaves take none.
  const Term* make_term(const Symbol* s, const std::vector<const Term*>& args)
  {
    return make_term(s, args.data(), args.size());
  }
  const Term* make_term(const Symbol* s, std::initializer_list<const Term*> args)
  {
    return make_term(s, args.begin(), args.size());
  }
  const Term* make_term(const Symbol* s, const Term* const* args, std::size_t num_args);
  /// Refuses an application that `make_term` would refuse, and makes nothing.
  void check_application(const Symbol* s, const Term* const* args, std::size_t num_args) const;

  /// No manager holds more terms.
  static constexpr std::size_t kMaxNumTerms = 0xffff'ffff;
  /// How many terms there are; their ids are the numbers below.
  [[nodiscard]] std::size_t get_num_terms() const { return num_terms_; }
  [[nodiscard]] std::size_t get_num_symbols() const
  {
    return leaf_symbols_.size() + fresh_symbols_.size() + operator_symbols_.size() + numerals_.size();
  }

  // ------------------------------------------------------------------------ Boolean operators, ite, eq

  const Symbol* make_not_symbol() { return make_operator(Kind::kNot, {}); }
  const Symbol* make_and_symbol() { return make_operator(Kind::kAnd, {}); }
  const Symbol* make_or_symbol() { return make_operator(Kind::kOr, {}); }
  const Symbol* make_iff_symbol() { return make_operator(Kind::kIff, {}); }
  /// For branches of the given sort
  const Symbol* make_ite_symbol(const DataType* type);
  /// Equality of bit-vectors of the given sort; that of Booleans is iff.
  const Symbol* make_eq_symbol(const DataType* type);

  [[nodiscard]] bool is_not(const Symbol* s) const { return s->get_kind() == Kind::kNot; }
  [[nodiscard]] bool is_and(const Symbol* s) const { return s->get_kind() == Kind::kAnd; }
  [[nodiscard]] bool is_or(const Symbol* s) const { return s->get_kind() == Kind::kOr; }
  [[nodiscard]] bool is_iff(const Symbol* s) const { return s->get_kind() == Kind::kIff; }
  [[nodiscard]] bool is_ite(const Symbol* s) const { return s->get_kind() == Kind::kIte; }
  [[nodiscard]] bool is_eq(const Symbol* s) const { return s->get_kind() == Kind::kEq; }

  // --------------------------------------------------- bit-vector operators on operands of one width w

  const Symbol* make_bv_not_symbol(unsigned long w) { return make_operator(Kind::kBvNot, {w}); }
  const Symbol* make_bv_neg_symbol(unsigned long w) { return make_operator(Kind::kBvNeg, {w}); }
  const Symbol* make_bv_and_symbol(unsigned long w) { return make_operator(Kind::kBvAnd, {w}); }
  const Symbol* make_bv_or_symbol(unsigned long w) { return make_operator(Kind::kBvOr, {w}); }
  const Symbol* make_bv_xor_symbol(unsigned long w) { return make_operator(Kind::kBvXor, {w}); }
  const Symbol* make_bv_add_symbol(unsigned long w) { return make_operator(Kind::kBvAdd, {w}); }
  const Symbol* make_bv_sub_symbol(unsigned long w) { return make_operator(Kind::kBvSub, {w}); }
  const Symbol* make_bv_mul_symbol(unsigned long w) { return make_operator(Kind::kBvMul, {w}); }
  const Symbol* make_bv_udiv_symbol(unsigned long w) { return make_operator(Kind::kBvUdiv, {w}); }
  const Symbol* make_bv_sdiv_symbol(unsigned long w) { return make_operator(Kind::kBvSdiv, {w}); }
  const Symbol* make_bv_urem_symbol(unsigned long w) { return make_operator(Kind::kBvUrem, {w}); }
  const Symbol* make_bv_srem_symbol(unsigned long w) { return make_operator(Kind::kBvSrem, {w}); }
  const Symbol* make_bv_lsl_symbol(unsigned long w) { return make_operator(Kind::kBvLsl, {w}); }
  const Symbol* make_bv_lsr_symbol(unsigned long w) { return make_operator(Kind::kBvLsr, {w}); }
  const Symbol* make_bv_asr_symbol(unsigned long w) { return make_operator(Kind::kBvAsr, {w}); }
  const Symbol* make_bv_ult_symbol(unsigned long w) { return make_operator(Kind::kBvUlt, {w}); }
  const Symbol* make_bv_ule_symbol(unsigned long w) { return make_operator(Kind::kBvUle, {w}); }
  const Symbol* make_bv_slt_symbol(unsigned long w) { return make_operator(Kind::kBvSlt, {w}); }
  const Symbol* make_bv_sle_symbol(unsigned long w) { return make_operator(Kind::kBvSle, {w}); }
  const Symbol* make_bv_comp_symbol(unsigned long w) { return make_operator(Kind::kBvComp, {w}); }

  bool is_bv_not(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvNot, w); }
  bool is_bv_neg(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvNeg, w); }
  bool is_bv_and(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvAnd, w); }
  bool is_bv_or(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvOr, w); }
  bool is_bv_xor(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvXor, w); }
  bool is_bv_add(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvAdd, w); }
  bool is_bv_sub(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvSub, w); }
  bool is_bv_mul(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvMul, w); }
  bool is_bv_udiv(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvUdiv, w); }
  bool is_bv_sdiv(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvSdiv, w); }
  bool is_bv_urem(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvUrem, w); }
  bool is_bv_srem(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvSrem, w); }
  bool is_bv_lsl(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvLsl, w); }
  bool is_bv_lsr(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvLsr, w); }
  bool is_bv_asr(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvAsr, w); }
  bool is_bv_ult(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvUlt, w); }
  bool is_bv_ule(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvUle, w); }
  bool is_bv_slt(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvSlt, w); }
  bool is_bv_sle(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvSle, w); }
  bool is_bv_comp(const Symbol* s, unsigned long* w) const { return is_operator_of(s, Kind::kBvComp, w); }

  // -------------------------------------------------------------- bit-vector operators that change widths

  /// w1: width of the first, high operand; w2: width of the second, low operand
  const Symbol* make_bv_concat_symbol(unsigned long w1, unsigned long w2)
  {
    return make_operator(Kind::kBvConcat, {w1, w2});
  }
  /// Bits msb down to lsb of an operand of width w > msb >= lsb
  const Symbol* make_bv_extract_symbol(unsigned long msb, unsigned long lsb, unsigned long w)
  {
    return make_operator(Kind::kBvExtract, {msb, lsb, w});
  }
  /// By k places, any number, an operand of width w
  const Symbol* make_bv_rotate_left_symbol(unsigned long k, unsigned long w)
  {
    return make_operator(Kind::kBvRotateLeft, {k, w});
  }
  const Symbol* make_bv_rotate_right_symbol(unsigned long k, unsigned long w)
  {
    return make_operator(Kind::kBvRotateRight, {k, w});
  }
  /// By k new bits, perhaps none, above an operand of width w
  const Symbol* make_bv_zero_extend_symbol(unsigned long k, unsigned long w)
  {
    return make_operator(Kind::kBvZeroExtend, {k, w});
  }
  const Symbol* make_bv_sign_extend_symbol(unsigned long k, unsigned long w)
  {
    return make_operator(Kind::kBvSignExtend, {k, w});
  }

  bool is_bv_concat(const Symbol* s, unsigned long* w1, unsigned long* w2) const
  {
    return is_operator_of(s, Kind::kBvConcat, w1, w2);
  }
  bool is_bv_extract(const Symbol* s, unsigned long* msb, unsigned long* lsb, unsigned long* w) const
  {
    return is_operator_of(s, Kind::kBvExtract, msb, lsb, w);
  }
  bool is_bv_rotate_left(const Symbol* s, unsigned long* k, unsigned long* w) const
  {
    return is_operator_of(s, Kind::kBvRotateLeft, k, w);
  }
  bool is_bv_rotate_right(const Symbol* s, unsigned long* k, unsigned long* w) const
  {
    return is_operator_of(s, Kind::kBvRotateRight, k, w);
  }
  bool is_bv_zero_extend(const Symbol* s, unsigned long* k, unsigned long* w) const
  {
    return is_operator_of(s, Kind::kBvZeroExtend, k, w);
  }
  bool is_bv_sign_extend(const Symbol* s, unsigned long* k, unsigned long* w) const
  {
    return is_operator_of(s, Kind::kBvSignExtend, k, w);
  }

 private:
  /// How many places the caches of sorts and of operators have.
  static constexpr std::size_t kNumRecent = 128;

  [[nodiscard]] static std::size_t hash_operator(Kind kind, const Parameters& parameters)
  {
    std::size_t h = mix_hash(0, static_cast<std::size_t>(kind));
    for (const unsigned long parameter : parameters)
      h = mix_hash(h, parameter);
    return h;
  }
  [[nodiscard]] static std::size_t hash_term(const Symbol* s, const Term* const* args, std::size_t num_args)
  {
    std::size_t h = mix_hash(0, s);
    for (std::size_t i = 0; i < num_args; ++i)
      h = mix_hash(h, args[i]);
    return h;
  }

  template <class... Out>
  static bool is_operator_of(const Symbol* s, Kind kind, Out*... out)
  {
    if (s->get_kind() != kind) return false;
    std::size_t i = 0;
    (store(out, as_operator(s).get_parameters()[i++]), ...);
    return true;
  }
  static void store(unsigned long* out, unsigned long value)
  {
    if (out != nullptr) *out = value;
  }

  /// In line, which comparing the arrays as such is not
  [[nodiscard]] static bool is_same(const Parameters& a, const Parameters& b)
  {
    static_assert(kMaxArity == 3);
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
  }
  /// Where a sort and an operator are remembered. The top bits of products with large odd numbers keep those apart
  /// that are used by turns, such as powers of two.
  [[nodiscard]] static std::size_t get_place(unsigned long w)
  {
    static_assert(kNumRecent == 1UL << 7U);
    return (w * 0x9e3779b97f4a7c15UL) >> 57U;
  }
  [[nodiscard]] static std::size_t get_place(Kind kind, const Parameters& parameters)
  {
    return get_place(static_cast<std::size_t>(kind) + parameters[0] * 0xbf58476d1ce4e5b9UL +
                     parameters[1] * 0x94d049bb133111ebUL + parameters[2] * 0xd6e8feb86659fd93UL);
  }
  /// The operator with these parameters; one that was asked for lately, the common case, is found without hashing.
  const Symbol* make_operator(Kind kind, const Parameters& parameters)
  {
    const OperatorSymbol* recent = recent_operators_[get_place(kind, parameters)];
    if (recent != nullptr && recent->get_kind() == kind && is_same(recent->get_parameters(), parameters))
        [[likely]]
      return recent;
    return find_or_make_operator(kind, parameters);
  }
  const Symbol* find_or_make_operator(Kind kind, const Parameters& parameters);
  const OperatorSymbol& make_fresh_operator(Kind kind, const Parameters& parameters);
  const DataType* find_or_make_bv_type(unsigned long w);
  /// The sort of a width, Bool for 0.
  const DataType* make_type(unsigned long w) { return w == 0 ? make_bool_type() : make_bv_type(w); }

  void check_own_type(const DataType* type) const;
  const Symbol* make_leaf_symbol(Kind kind, const DataType* type, std::unique_ptr<const std::string> name);
  /// The place of the next term; refuses more terms than there are places.
  [[nodiscard]] std::uint32_t get_next_id() const;
  /// A new object; it is in no table yet.
  const Term* allocate_term(const Symbol* s, const Term* const* args, std::size_t num_args);
  /// The numeral of a pattern that the sort has.
  const Term* make_pattern(const QNumber& pattern, const DataType* type);
  [[nodiscard]] const Term* find_leaf(const Symbol* s) const;
  [[nodiscard]] static std::size_t hash_name(std::string_view name)
  {
    return std::hash<std::string_view>()(name);
  }
  /// The constant of that name and hash, or null.
  [[nodiscard]] const Term* find_constant(std::string_view name, std::size_t hash) const;

  DataType bool_type_;
  std::unordered_map<unsigned long, DataType> bv_types_;
  std::array<const DataType*, kNumRecent> recent_bv_types_{};  ///< a cache

  std::deque<Symbol> leaf_symbols_;  ///< but for numerals and fresh constants
  std::deque<OperatorSymbol> operator_symbols_;
  UniqueTable<OperatorSymbol> operators_;
  std::array<const OperatorSymbol*, kNumRecent> recent_operators_{};  ///< a cache

  UniqueTable<Term> constants_;  ///< by name; all but the fresh ones
  std::deque<FreshSymbol> fresh_symbols_;
  FreshConstants fresh_constants_;
  NumeralTable numerals_;

  TermArena term_memory_;
  UniqueTable<Term> applications_;
  std::size_t num_terms_ = 0;
  const Term* true_;
  const Term* false_;
};

}  // namespace lumo

#endif
