#include "lumo/terms/term_manager.h"

#include <algorithm>
#include <new>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/exception.h"

namespace lumo {

namespace {

std::string describe_widths() { return "widths are 1 to " + std::to_string(TermManager::kMaxWidth); }

}  // namespace

TermManager::TermManager()
    : bool_type_(TermManagerKey(), this, 0),
      true_(allocate_term(make_leaf_symbol(Kind::kTrue, &bool_type_, std::make_unique<std::string>("true")),
                          nullptr, 0)),
      false_(allocate_term(
          make_leaf_symbol(Kind::kFalse, &bool_type_, std::make_unique<std::string>("false")), nullptr, 0))
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

const Symbol* TermManager::make_leaf_symbol(Kind kind, const DataType* type,
                                            std::unique_ptr<const std::string> name)
{
  return &leaf_symbols_.emplace_back(TermManagerKey(), kind, type, std::move(name));
}

const Symbol* TermManager::make_constant_symbol(const std::string& name, const DataType* type)
{
  return make_constant(name, type)->get_symbol();
}

const Term* TermManager::make_constant(const std::string& name, const DataType* type)
{
  check_own_type(type);
  const std::size_t hash = hash_name(name);
  if (const Term* known = find_constant(name, hash); known != nullptr) {
    const DataType* known_type = known->get_symbol()->get_output_type();
    if (known_type != type) {
      throw Exception("the constant " + name + " was declared with sort " + known_type->to_string() +
                      ", but sort " + type->to_string() + " was given");
    }
    return known;
  }
  fresh_constants_.take(name);
  constants_.reserve_one();
  const Symbol* s = make_leaf_symbol(Kind::kConstant, type, std::make_unique<std::string>(name));
  const Term* t = allocate_term(s, nullptr, 0);
  constants_.insert(hash, t);
  return t;
}

const Term* TermManager::make_fresh_constant(const std::string& prefix, const DataType* type)
{
  check_own_type(type);
  const FreshConstants::Vacancy vacancy = fresh_constants_.make_vacancy(prefix);
  const Symbol* s = &fresh_symbols_.emplace_back(TermManagerKey(), type, vacancy.prefix, vacancy.number);
  const Term* t = allocate_term(s, nullptr, 0);
  FreshConstants::fill(vacancy, t);
  return t;
}

const Term* TermManager::find_constant(std::string_view name, std::size_t hash) const
{
  const Term* declared = constants_.find(
      hash, [name](const Term& candidate) { return candidate.get_symbol()->get_name() == name; });
  return declared != nullptr ? declared : fresh_constants_.find(name);
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
  if (const Numeral* known = numerals_.find(pattern, type); known != nullptr) return known->get_term();
  // What the table keeps is small if it fits a word, whatever form the pattern has.
  QNumber value = BVNumber::reduce(pattern, type->get_width());
  const Numeral& numeral = numerals_.insert(TermManagerKey(), type, std::move(value), get_next_id());
  ++num_terms_;
  return numeral.get_term();
}

// -----------------------------------------------------------------------------------------------------------
// terms

const Term* TermManager::make_term(const Symbol* s, const Term* const* args, std::size_t num_args)
{
  check_application(s, args, num_args);
  if (num_args == 0) return find_leaf(s);
  const std::size_t hash = hash_term(s, args, num_args);
  const Term* known = applications_.find(hash, [s, args, num_args](const Term& candidate) {
    if (candidate.get_symbol() != s) return false;
    for (std::size_t i = 0; i < num_args; ++i) {
      if (candidate.get_arg(i) != args[i]) return false;
    }
    return true;
  });
  if (known != nullptr) return known;

  applications_.reserve_one();
  const Term* t = allocate_term(s, args, num_args);
  applications_.insert(hash, t);
  return t;
}

void TermManager::check_application(const Symbol* s, const Term* const* args, std::size_t num_args) const
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
}

std::uint32_t TermManager::get_next_id() const
{
  if (num_terms_ >= kMaxNumTerms) {
    throw Exception("a term manager holds at most " + std::to_string(kMaxNumTerms) + " terms");
  }
  return static_cast<std::uint32_t>(num_terms_);
}

const Term* TermManager::allocate_term(const Symbol* s, const Term* const* args, std::size_t num_args)
{
  const std::uint32_t id = get_next_id();
  void* memory = term_memory_.allocate(sizeof(Term) + num_args * sizeof(void*));
  Term* t = new (memory) Term(s, id);
  std::copy_n(args, num_args, reinterpret_cast<const Term**>(t + 1));
  ++num_terms_;
  return t;
}

const Term* TermManager::find_leaf(const Symbol* s) const
{
  if (s == get_true_symbol()) return true_;
  if (s == get_false_symbol()) return false_;
  if (is_constant(s)) return find_constant(s->get_name(), hash_name(s->get_name()));
  return Numeral::of(s).get_term();
}

}  // namespace lumo
