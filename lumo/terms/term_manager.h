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
#include "lumo/terms/exception.h"
#include "lumo/terms/fresh_constants.h"
#include "lumo/terms/kind.h"
#include "lumo/terms/numeral_table.h"
#include "lumo/terms/symbol.h"
#include "lumo/terms/term.h"
#include "lumo/terms/term_arena.h"
#include "lumo/terms/text_key.h"
#include "lumo/terms/unique_table.h"

/// The library: numbers, terms, models, calculators and elimination.
namespace lumo {

/// Owns sorts, symbols and terms over Booleans and bit-vectors, and makes one object for each distinct one,
/// so that all three are compared by address. They live until the manager is destroyed, `clear` or `release` is
/// called. Managers share nothing.
///
/// Factories and `make_term` refuse wrong input (a width of 0, an argument of another sort, a null pointer,
/// a term of another manager, a name declared with two sorts, ...) with an `Exception` that says what was given and
/// what was expected. The manager then finds and makes the same terms as before. If memory runs out,
/// `std::bad_alloc` passes through, and the manager stays usable: what it has made is found again, and what it
/// could not make can be requested again. The same holds at the limit of terms, which is an `Exception`.
///
/// Widths count bits, from 1 to kMaxWidth. Recognisers take symbols that are not null; they return false and leave
/// their out-parameters unchanged for every other symbol. Out-parameters may be null.
class TermManager
{
 public:
  /// The widest bit-vector. A value of that width takes 512 MiB; lumo supports no wider ones.
  static constexpr unsigned long kMaxWidth = 0xffffffffUL;

  TermManager();
  TermManager(const TermManager&) = delete;
  TermManager& operator=(const TermManager&) = delete;
  ~TermManager();

  // --------------------------------------------------------------------------------------- releasing terms

  /// A point in the history of a manager.
  class Mark
  {
   private:
    friend class TermManager;
    Mark(const TermManager* manager, std::size_t serial) : manager_(manager), serial_(serial) {}

    const TermManager* manager_;
    std::size_t serial_;
  };

  /// The current point.
  [[nodiscard]] Mark mark();
  /// Destroys all terms, constants and numerals that were made after the mark, with their symbols, and frees their
  /// memory. Sorts and operator symbols stay. The mark stays valid, so one mark serves for many rounds; marks that
  /// were made after it become invalid. The names, ids and fresh names of destroyed terms are used again.
  ///
  /// Precondition: nothing that refers to a destroyed term or symbol is used afterwards. This concerns
  /// models, evaluators, trails and vectors of terms.
  ///
  /// Refuses a mark of another manager, and an invalid mark, with an `Exception`. Takes time in
  /// proportion to what it destroys.
  void release(const Mark& mark);
  /// Destroys everything except the sorts, which stay valid. All marks become invalid. The precondition is that of
  /// `release`, and it concerns operator symbols, too.
  void clear();

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
    if (!type->is_bit_vector()) return false;
    store(w, type->get_width());
    return true;
  }

  // -------------------------------------------------------------------------------------------- constants

  /// The declared constant of that name. A second call for a name must give the same sort.
  const Symbol* make_constant_symbol(std::string_view name, const DataType* type);
  const Term* make_constant(std::string_view name, const DataType* type);
  /// A constant with a new name: the prefix, an exclamation mark and a number. Numbers increase. A later
  /// call of `make_constant` with its name finds it, so choose a prefix that no name declared later starts with.
  const Term* make_fresh_constant(const std::string& prefix, const DataType* type);
  /// Whether s is a declared or fresh constant. True, false and numerals are not constants.
  [[nodiscard]] bool is_constant(const Symbol* s) const { return s->get_kind() == Kind::kConstant; }

  const Term* make_true() { return true_; }
  const Term* make_false() { return false_; }
  [[nodiscard]] const Symbol* get_true_symbol() const { return true_->get_symbol(); }
  [[nodiscard]] const Symbol* get_false_symbol() const { return false_->get_symbol(); }

  // --------------------------------------------------------------------------------------------- numerals

  /// Whether s is a numeral of this manager. If so, stores its value, in [0, 2^w - 1], in *out. While the manager
  /// has no numeral, s is not read and may be null.
  bool is_number(const Symbol* s, QNumber* out) const
  {
    // For most symbols, the kind shows that no search is needed.
    if (numerals_.empty() || s->get_kind() != Kind::kNumeral) return false;
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
  /// The numeral of width w and value n modulo 2^w; n is an integer, which may be negative.
  const Term* make_bv_number(const QNumber& n, unsigned long w);
  const Term* make_bv_number(int n, unsigned long w)
  {
    return make_bv_number(QNumber(static_cast<long>(n)), w);
  }
  /// The same for every other integer type of at most a word. The compiler refuses wider types, since no value may be
  /// truncated.
  template <WordInteger T>
  const Term* make_bv_number(T n, unsigned long w)
  {
    return make_bv_number(QNumber(n), w);
  }
  template <CutByWord T>
  const Term* make_bv_number(T n, unsigned long w) = delete;
  /// The table of numerals, for tests of its shape.
  [[nodiscard]] const NumeralTable& get_numerals() const { return numerals_; }

  // ------------------------------------------------------------------------------------------------ terms

  /// The application of s to args. Their number and sorts must be those that s takes; leaves take no arguments.
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

  /// The maximal number of terms of a manager. Constants and applications take at most 32 GiB.
  static constexpr std::size_t kMaxNumTerms = 0xffff'ffff;
  /// The number of terms; their ids are the numbers below it.
  [[nodiscard]] std::size_t get_num_terms() const { return num_terms_; }
  [[nodiscard]] std::size_t get_num_symbols() const
  {
    return 2 + declared_symbols_.size() + fresh_symbols_.size() + operator_symbols_.size() + numerals_.size();
  }

  // ------------------------------------------------------------------------------ operators by their kind

  /// The operator of a kind with its parameters, as `OperatorSymbol` has them: in the order in which the factory of
  /// the operator takes them, and 0 for those that it does not take. The parameter of ite and eq is the width of
  /// the sort; for ite, 0 stands for Bool. Refuses leaves and wrong parameters with an `Exception`.
  const Symbol* make_symbol(Kind kind, const Parameters& parameters);

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
  /// Rotates an operand of width w by k places, which may be any number
  const Symbol* make_bv_rotate_left_symbol(unsigned long k, unsigned long w)
  {
    return make_operator(Kind::kBvRotateLeft, {k, w});
  }
  const Symbol* make_bv_rotate_right_symbol(unsigned long k, unsigned long w)
  {
    return make_operator(Kind::kBvRotateRight, {k, w});
  }
  /// Adds k bits, which may be 0, above an operand of width w
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
  /// The number of places in the caches of sorts and of operators.
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
    std::uint64_t h = reinterpret_cast<std::uintptr_t>(s);
    for (std::size_t i = 0; i < num_args; ++i)
      h = multiply_and_fold(h ^ kHashFirst, reinterpret_cast<std::uintptr_t>(args[i]) ^ kHashSecond);
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

  /// Inline, unlike the comparison operator of the arrays
  [[nodiscard]] static bool is_same(const Parameters& a, const Parameters& b)
  {
    static_assert(kMaxArity == 3);
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
  }
  /// The place of a sort or an operator in its cache. The top bits of products with large odd numbers separate
  /// widths that are typically used alternately, such as powers of two.
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
  /// The operator with these parameters. In the common case, an operator that was used recently, this needs no
  /// hashing.
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
  /// Whether `make_term` takes the application, and why it does not.
  [[nodiscard]] inline bool is_application(const Symbol* s, const Term* const* args,
                                           std::size_t num_args) const;
  [[noreturn]] void refuse_application(const Symbol* s, const Term* const* args, std::size_t num_args) const;
  /// The id of the next term; refuses more terms than there are ids.
  [[nodiscard]] std::uint32_t get_next_id() const;
  struct NewTerm
  {
    const Term* term;
    TermArena::Index index;
  };
  /// A new object that is not in any table yet.
  NewTerm allocate_term(const Symbol* s, const Term* const* args, std::size_t num_args);
  /// The term of a new constant, whose name is not taken. It is in no table yet.
  NewTerm declare(std::string_view name, const DataType* type);
  /// Names up to this size lie after their terms in the arena.
  static constexpr std::size_t kMaxTextSize = 256;
  /// How much memory so many characters take there.
  [[nodiscard]] static std::size_t get_room(std::size_t size)
  {
    return (size + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*);
  }
  [[nodiscard]] const Term* at(TermArena::Index index) const
  {
    return static_cast<const Term*>(term_memory_.at(index));
  }
  /// The numeral of a pattern of the sort.
  const Term* make_pattern(const QNumber& pattern, const DataType* type);
  [[nodiscard]] const Term* find_leaf(const Symbol* s) const;
  [[nodiscard]] static std::size_t hash_name(std::string_view name) { return TextKey(name).hash(); }
  /// The index of the declared constant of that name, or UniqueTable::kNone.
  [[nodiscard]] UniqueTable::Index find_declared(std::string_view name, std::size_t hash) const;
  /// The declared or fresh constant of that name, or null.
  [[nodiscard]] const Term* find_constant(std::string_view name, std::size_t hash) const;

  /// The state of the manager when a mark was made.
  struct Snapshot
  {
    std::size_t serial = 0;
    std::size_t num_terms = 0;
    std::size_t num_declared_symbols = 0;
    std::size_t num_fresh_symbols = 0;
    std::size_t num_numerals = 0;
    TermArena::Position term_memory;
  };
  [[nodiscard]] Snapshot make_snapshot() const;
  void release_applications(const Snapshot& snapshot) noexcept;
  void release_constants(const Snapshot& snapshot);

  DataType bool_type_;
  std::unordered_map<unsigned long, DataType> bv_types_;
  std::array<const DataType*, kNumRecent> recent_bv_types_{};  ///< a cache

  Symbol true_symbol_;
  Symbol false_symbol_;
  std::deque<DeclaredSymbol> declared_symbols_;
  std::deque<OperatorSymbol> operator_symbols_;
  UniqueTable operators_;                                             ///< indices in operator_symbols_
  std::array<const OperatorSymbol*, kNumRecent> recent_operators_{};  ///< a cache

  UniqueTable constants_;  ///< without the fresh ones; indices in term_memory_
  std::deque<FreshSymbol> fresh_symbols_;
  FreshConstants fresh_constants_;
  NumeralTable numerals_;

  TermArena term_memory_;
  UniqueTable applications_;  ///< indices in term_memory_
  std::size_t num_terms_ = 0;
  const Term* true_;
  const Term* false_;

  Snapshot empty_;                   ///< of the new manager
  std::vector<Snapshot> snapshots_;  ///< of the valid marks, oldest first
  std::size_t last_serial_ = 0;
};

}  // namespace lumo

#endif
