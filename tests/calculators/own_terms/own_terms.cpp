// The term layer of the hosting solver: each member records the call, and forwards it to the factory.

#include <stdexcept>

#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"
#include "lumo/terms/termsimpl.h"
#include "term_factory.h"

namespace lumo {

namespace {

using test::get_queries;
using test::TermFactory;

void note(const std::string& text)
{
  if (get_queries().is_recording) get_queries().texts.push_back(text);
}

/// The same for members that make something, which can fail.
void note_making(const std::string& text)
{
  note(text);
  long& countdown = get_queries().countdown;
  if (countdown == 0) throw test::MakingFailed();
  if (countdown > 0) --countdown;
}

void note_symbol(const char* op, std::initializer_list<unsigned long> parameters)
{
  std::string text = "symbol " + std::string(op);
  for (const unsigned long p : parameters)
    text += " " + std::to_string(p);
  note_making(text);
}

/// Whether s is that operator; if so, stores its parameters.
bool read_operator(const char* query, const Symbol* s, Kind kind, std::initializer_list<unsigned long*> out)
{
  note(std::string(query) + " " + TermFactory::get_name(s));
  if (TermFactory::get_kind(s) != kind) return false;
  std::size_t i = 0;
  for (unsigned long* word : out)
    *word = TermFactory::get_parameters(s)[i++];
  return true;
}

}  // namespace

void Exception::dump_msg_and_raise_assertion() const { get_queries().exceptions.emplace_back(what()); }

const std::string& Symbol::get_name() const
{
  note("name of " + name_);
  return name_;
}

const DataType* Symbol::get_output_type() const
{
  note("type of " + name_);
  return type_;
}

TermManager::TermManager() : factory_(new TermFactory) {}
TermManager::~TermManager() = default;

const Symbol* TermManager::get_true_symbol()
{
  note("true?");
  return factory_->make_truth_value(true)->get_symbol();
}

const Symbol* TermManager::get_false_symbol()
{
  note("false?");
  return factory_->make_truth_value(false)->get_symbol();
}

const Term* TermManager::make_true()
{
  note_making("true");
  return factory_->make_truth_value(true);
}

const Term* TermManager::make_false()
{
  note_making("false");
  return factory_->make_truth_value(false);
}

bool TermManager::is_number(const Symbol* s, QNumber* out) const
{
  note((out == nullptr ? "number? " : "read ") + TermFactory::get_name(s));
  const QNumber* number = TermFactory::get_number(s);
  if (number != nullptr && out != nullptr) *out = *number;
  return number != nullptr;
}

const Term* TermManager::make_bv_number(const QNumber& n, unsigned long w)
{
  note_making("numeral " + n.to_string() + " " + std::to_string(w));
  test::Integer integer;
  n.get_numerator(integer);
  return factory_->make_numeral(integer, w);
}

const Term* TermManager::make_bv_number(int n, unsigned long w)
{
  note_making("int numeral " + std::to_string(n) + " " + std::to_string(w));
  return factory_->make_numeral(test::Integer(n), w);
}

bool TermManager::is_constant(const Symbol* s) const
{
  note("constant? " + TermFactory::get_name(s));
  return TermFactory::get_kind(s) == Kind::kConstant;
}

bool TermManager::is_bv_type(const DataType* type, unsigned long* w) const
{
  note("width");
  if (type->width_ == 0) return false;
  *w = type->width_;
  return true;
}

bool TermManager::is_bv_ult(const Symbol* s, unsigned long* w) const
{
  return read_operator("bvult?", s, Kind::kBvUlt, {w});
}
bool TermManager::is_bv_ule(const Symbol* s, unsigned long* w) const
{
  return read_operator("bvule?", s, Kind::kBvUle, {w});
}
bool TermManager::is_bv_slt(const Symbol* s, unsigned long* w) const
{
  return read_operator("bvslt?", s, Kind::kBvSlt, {w});
}
bool TermManager::is_bv_sle(const Symbol* s, unsigned long* w) const
{
  return read_operator("bvsle?", s, Kind::kBvSle, {w});
}
bool TermManager::is_bv_extract(const Symbol* s, unsigned long* msb, unsigned long* lsb,
                                unsigned long* w) const
{
  return read_operator("extract?", s, Kind::kBvExtract, {msb, lsb, w});
}
bool TermManager::is_bv_concat(const Symbol* s, unsigned long* w1, unsigned long* w2) const
{
  return read_operator("concat?", s, Kind::kBvConcat, {w1, w2});
}
bool TermManager::is_bv_rotate_left(const Symbol* s, unsigned long* k, unsigned long* w) const
{
  return read_operator("rotate_left?", s, Kind::kBvRotateLeft, {k, w});
}
bool TermManager::is_bv_rotate_right(const Symbol* s, unsigned long* k, unsigned long* w) const
{
  return read_operator("rotate_right?", s, Kind::kBvRotateRight, {k, w});
}

const Symbol* TermManager::make_bv_add_symbol(unsigned long w)
{
  note_symbol("bvadd", {w});
  return factory_->make_operator(Kind::kBvAdd, {w});
}
const Symbol* TermManager::make_bv_sub_symbol(unsigned long w)
{
  note_symbol("bvsub", {w});
  return factory_->make_operator(Kind::kBvSub, {w});
}
const Symbol* TermManager::make_bv_neg_symbol(unsigned long w)
{
  note_symbol("bvneg", {w});
  return factory_->make_operator(Kind::kBvNeg, {w});
}
const Symbol* TermManager::make_bv_not_symbol(unsigned long w)
{
  note_symbol("bvnot", {w});
  return factory_->make_operator(Kind::kBvNot, {w});
}
const Symbol* TermManager::make_bv_xor_symbol(unsigned long w)
{
  note_symbol("bvxor", {w});
  return factory_->make_operator(Kind::kBvXor, {w});
}
const Symbol* TermManager::make_bv_concat_symbol(unsigned long w1, unsigned long w2)
{
  note_symbol("concat", {w1, w2});
  return factory_->make_operator(Kind::kBvConcat, {w1, w2});
}
const Symbol* TermManager::make_bv_extract_symbol(unsigned long msb, unsigned long lsb, unsigned long w)
{
  note_symbol("extract", {msb, lsb, w});
  return factory_->make_operator(Kind::kBvExtract, {msb, lsb, w});
}
const Symbol* TermManager::make_bv_rotate_left_symbol(unsigned long k, unsigned long w)
{
  note_symbol("rotate_left", {k, w});
  return factory_->make_operator(Kind::kBvRotateLeft, {k, w});
}
const Symbol* TermManager::make_bv_rotate_right_symbol(unsigned long k, unsigned long w)
{
  note_symbol("rotate_right", {k, w});
  return factory_->make_operator(Kind::kBvRotateRight, {k, w});
}
const Symbol* TermManager::make_bv_zero_extend_symbol(unsigned long k, unsigned long w)
{
  note_symbol("zero_extend", {k, w});
  return factory_->make_operator(Kind::kBvZeroExtend, {k, w});
}

const Term* termsimpl::simplify(const char* functor, TermManager* mgr, const Symbol* s,
                                const std::vector<const Term*>& args)
{
  std::string text = functor;
  for (const Term* arg : args)
    text += " " + TermFactory::get_name(arg->get_symbol());
  note_making(text);
  return TermFactory::of(*mgr).simplify(s, args);
}

}  // namespace lumo
