#include "lumo/terms/term_manager.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <new>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/exception.h"

namespace lumo {

namespace {

std::string describe_widths() { return "widths are 1 to " + std::to_string(TermManager::kMaxWidth); }

}  // namespace

TermManager::TermManager()
    : bool_type_(TermManagerKey(), this, 0),
      true_symbol_(TermManagerKey(), Kind::kTrue, &bool_type_, std::make_unique<std::string>("true")),
      false_symbol_(TermManagerKey(), Kind::kFalse, &bool_type_, std::make_unique<std::string>("false")),
      true_(allocate_term(&true_symbol_, nullptr, 0).term),
      false_(allocate_term(&false_symbol_, nullptr, 0).term),
      empty_(make_snapshot())
{}

TermManager::~TermManager() = default;

// -----------------------------------------------------------------------------------------------------------
// sorts

const DataType* TermManager::find_or_make_bv_type(unsigned long w)
{
  if (w == 0 || w > kMaxWidth) {
    throw Exception("a bit-vector sort of width " + std::to_string(w) + " was requested, but " +
                    describe_widths());
  }
  const auto [place, is_new] = bv_types_.try_emplace(w, TermManagerKey(), this, w);
  recent_bv_types_[get_place(w)] = &place->second;
  return &place->second;
}

void TermManager::check_own_type(const DataType* type) const
{
  if (type == nullptr) throw Exception("a sort was expected, but a null pointer was given");
  if (type->get_manager() != this) {
    throw Exception("a sort of this term manager was expected, but " + type->to_string() +
                    " of another was given");
  }
}

// -------------------------------------------------------------------------------------------------------
// constants

const Symbol* TermManager::make_constant_symbol(std::string_view name, const DataType* type)
{
  return make_constant(name, type)->get_symbol();
}

const Term* TermManager::make_constant(std::string_view name, const DataType* type)
{
  check_own_type(type);
  const std::size_t hash = hash_name(name);
  if (const Term* known = find_constant(name, hash); known != nullptr) {
    const DataType* known_type = known->get_symbol()->get_output_type();
    if (known_type != type) {
      throw Exception("the constant " + std::string(name) + " was declared with sort " +
                      known_type->to_string() + ", but sort " + type->to_string() + " was given");
    }
    return known;
  }
  fresh_constants_.take(name);
  constants_.reserve_one();
  const NewTerm t = declare(name, type);
  constants_.insert(hash, t.index);
  return t.term;
}

TermManager::NewTerm TermManager::declare(std::string_view name, const DataType* type)
{
  if (name.size() > kMaxTextSize) {
    return allocate_term(
        &declared_symbols_.emplace_back(TermManagerKey(), type, 0, std::make_unique<std::string>(name)),
        nullptr, 0);
  }
  const std::uint32_t id = get_next_id();
  DeclaredSymbol& s = declared_symbols_.emplace_back(TermManagerKey(), type,
                                                     static_cast<std::uint32_t>(name.size()), nullptr);
  const auto [memory, index] = term_memory_.allocate(sizeof(Term) + get_room(name.size()));
  const Term* t = new (memory) Term(&s, id);
  char* text = static_cast<char*>(memory) + sizeof(Term);
  std::copy(name.begin(), name.end(), text);
  s.set_text(TermManagerKey(), text);
  ++num_terms_;
  return {t, index};
}

const Term* TermManager::make_fresh_constant(const std::string& prefix, const DataType* type)
{
  check_own_type(type);
  const FreshConstants::Vacancy vacancy = fresh_constants_.make_vacancy(prefix);
  const Symbol* s = &fresh_symbols_.emplace_back(TermManagerKey(), type, vacancy.prefix,
                                                 static_cast<std::uint32_t>(vacancy.number));
  const Term* t = allocate_term(s, nullptr, 0).term;
  FreshConstants::fill(vacancy, t);
  return t;
}

UniqueTable::Index TermManager::find_declared(std::string_view name, std::size_t hash) const
{
  return constants_.find(
      hash, [this, name](UniqueTable::Index i) { return at(i)->get_symbol()->find_name() == name; });
}

const Term* TermManager::find_constant(std::string_view name, std::size_t hash) const
{
  const UniqueTable::Index declared = find_declared(name, hash);
  return declared != UniqueTable::kNone ? at(declared) : fresh_constants_.find(name);
}

// --------------------------------------------------------------------------------------------------------
// numerals

const Term* TermManager::make_bv_number(const QNumber& n, unsigned long w)
{
  if (!n.is_int()) {
    throw Exception("a bit-vector numeral of value " + n.to_string() +
                    " was requested, but an integer was expected");
  }
  const DataType* type = make_bv_type(w);
  if (!BVNumber::is_pattern(n, w)) return make_pattern(BVNumber::reduce(n, w), type);
  return make_pattern(n, type);
}

const Term* TermManager::make_pattern(const QNumber& pattern, const DataType* type)
{
  const std::uint64_t hash = NumeralTable::hash(pattern, type);
  if (const Numeral* known = numerals_.find(hash, pattern, type); known != nullptr) return known->get_term();
  // The table keeps the small form of a number that fits a word; the pattern may have either form.
  QNumber value = BVNumber::reduce(pattern, type->get_width());
  const Numeral& numeral = numerals_.insert(TermManagerKey(), hash, type, std::move(value), get_next_id());
  ++num_terms_;
  return numeral.get_term();
}

// -----------------------------------------------------------------------------------------------------------
// terms

const Term* TermManager::make_term(const Symbol* s, const Term* const* args, std::size_t num_args)
{
  if (!is_application(s, args, num_args)) [[unlikely]]
    refuse_application(s, args, num_args);
  if (num_args == 0) return find_leaf(s);
  const std::size_t hash = hash_term(s, args, num_args);
  const UniqueTable::Index known = applications_.find(hash, [this, s, args, num_args](UniqueTable::Index i) {
    const Term* candidate = at(i);
    if (candidate->get_symbol() != s) return false;
    for (std::size_t j = 0; j < num_args; ++j) {
      if (candidate->get_arg(j) != args[j]) return false;
    }
    return true;
  });
  if (known != UniqueTable::kNone) return at(known);

  applications_.reserve_one();
  const NewTerm t = allocate_term(s, args, num_args);
  applications_.insert(hash, t.index);
  return t.term;
}

void TermManager::check_application(const Symbol* s, const Term* const* args, std::size_t num_args) const
{
  if (!is_application(s, args, num_args)) refuse_application(s, args, num_args);
}

inline bool TermManager::is_application(const Symbol* s, const Term* const* args, std::size_t num_args) const
{
  if (s == nullptr || num_args != s->get_arity() || s->get_output_type()->get_manager() != this) return false;
  for (std::size_t i = 0; i < num_args; ++i) {
    if (args[i] == nullptr || args[i]->get_sort() != as_operator(s).get_argument_type(i)) return false;
  }
  return true;
}

void TermManager::refuse_application(const Symbol* s, const Term* const* args, std::size_t num_args) const
{
  if (s == nullptr) throw Exception("a symbol was expected, but a null pointer was given");
  if (s->get_output_type()->get_manager() != this) {
    throw Exception("a symbol of this term manager was expected, but " + s->get_name() +
                    " of another was given");
  }
  if (num_args != s->get_arity()) {
    throw Exception(s->get_name() + " takes " + std::to_string(s->get_arity()) +
                    (s->get_arity() == 1 ? " argument" : " arguments") + ", but " + std::to_string(num_args) +
                    (num_args == 1 ? " was given" : " were given"));
  }
  for (std::size_t i = 0; i < num_args; ++i) {
    const DataType* expected = as_operator(s).get_argument_type(i);
    if (args[i] != nullptr && args[i]->get_symbol()->get_output_type() == expected) continue;
    const std::string place = "argument " + std::to_string(i + 1) + " of " + s->get_name();
    if (args[i] == nullptr) throw Exception(place + " is a null pointer, but a term was expected");
    const DataType* found = args[i]->get_symbol()->get_output_type();
    if (found->get_manager() != this) {
      throw Exception(place + " belongs to another term manager, but a term of this one was expected");
    }
    throw Exception(place + " has sort " + found->to_string() + ", but " + expected->to_string() +
                    " was expected");
  }
  assert(false && "the application is refused for a reason");
  std::abort();
}

std::uint32_t TermManager::get_next_id() const
{
  if (num_terms_ >= kMaxNumTerms) {
    throw Exception("a term manager holds at most " + std::to_string(kMaxNumTerms) + " terms");
  }
  return static_cast<std::uint32_t>(num_terms_);
}

TermManager::NewTerm TermManager::allocate_term(const Symbol* s, const Term* const* args,
                                                std::size_t num_args)
{
  const std::uint32_t id = get_next_id();
  const auto [memory, index] = term_memory_.allocate(sizeof(Term) + num_args * sizeof(void*));
  Term* t = new (memory) Term(s, id);
  const Term** copies = reinterpret_cast<const Term**>(t + 1);
  for (std::size_t i = 0; i < num_args; ++i)  // few, so that a call of memmove takes longer
    copies[i] = args[i];
  ++num_terms_;
  return {t, index};
}

const Term* TermManager::find_leaf(const Symbol* s) const
{
  if (s == get_true_symbol()) return true_;
  if (s == get_false_symbol()) return false_;
  if (is_constant(s)) return find_constant(s->get_name(), hash_name(s->get_name()));
  return Numeral::of(s).get_term();
}

}  // namespace lumo
