#include "tests/proof/proof_texts.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "lumo/numbers/bvnumber.h"
#include "lumo/smtlib/script_reader.h"
#include "tests/support/numbered.h"

namespace lumo::test {

namespace {

/// Text that declares and defines names.
class Preamble
{
 public:
  void declare(std::string_view name, const DataType* type)
  {
    append({"(declare-const ", name, " ", get_sort(type), ")\n"});
  }
  void define(std::string_view name, const DataType* type, std::string_view term)
  {
    append({"(define-fun ", name, " () ", get_sort(type), " ", term, ")\n"});
  }
  void define_numeral(std::string_view name, const DataType* type, const QNumber& n)
  {
    define(name, type, "(_ bv" + n.to_string() + " " + std::to_string(type->get_width()) + ")");
  }
  void assert_term(std::string_view term) { append({"(assert ", term, ")\n"}); }
  [[nodiscard]] const std::string& get_text() const { return text_; }

 private:
  static std::string get_sort(const DataType* type)
  {
    return type->is_bool() ? "Bool" : numbered("(_ BitVec ", type->get_width()) + ")";
  }
  void append(std::initializer_list<std::string_view> pieces)
  {
    for (const std::string_view piece : pieces)
      text_ += piece;
  }

  std::string text_;
};

void define_patterns(Preamble& preamble, const DataType* type)
{
  const unsigned long w = type->get_width();
  preamble.define_numeral("zero", type, QNumber(0L));
  preamble.define_numeral("one", type, QNumber(1L));
  preamble.define_numeral("ones", type, BVNumber::pow2(w) - QNumber(1L));
  preamble.define_numeral("least", type, BVNumber::pow2(w - 1));
  preamble.define_numeral("greatest", type, BVNumber::pow2(w - 1) - QNumber(1L));
}

/// `((_ NAME I J ...) v)`
std::string apply_to_value(std::string_view name, std::initializer_list<unsigned long> indices)
{
  std::string text = "((_ ";
  text += name;
  for (const unsigned long index : indices)
    text += numbered(" ", index);
  return text + ") v)";
}

void define_special_names(TermManager& mgr, Preamble& preamble, const ProofRow& row, const OperatorSymbol& s,
                          bool has_abstract_product)
{
  const Parameters& p = s.get_parameters();
  const DataType* type = s.get_argument_type(0);
  if (row.kind == Kind::kBvExtract) {
    preamble.define("wide", type, apply_to_value("zero_extend", {p[2] - (p[0] + 1 - p[1])}));
    preamble.define_numeral("lsb", type, QNumber(p[1]));
  }
  if (get_operator_info(row.kind).rule == SortRule::kExtend) {
    preamble.define("low", type, apply_to_value("extract", {p[1] - 1, 0}));
    const std::string width = std::to_string(s.get_output_type()->get_width());
    preamble.define("is_zero", mgr.make_bool_type(), "(= v (_ bv0 " + width + "))");
    preamble.define("is_one", mgr.make_bool_type(), "(= v (_ bv1 " + width + "))");
  }
  if (row.kind == Kind::kBvMul) {
    preamble.declare("inverse", type);
    const std::string numeral = row.shapes.starts_with('n') ? "a" : "b";
    if (has_abstract_product) {
      preamble.declare("product", type);
    } else {
      preamble.define("product", type, "(bvmul inverse " + numeral + ")");
    }
  }
}

/// Asserts that a new constant of the term's sort equals the term, since the reader reads only
/// assertions.
void assert_equality(Preamble& preamble, const DataType* type, std::string_view term)
{
  const std::string probe = type->is_bool() ? "probe" : numbered("probe_", type->get_width());
  preamble.assert_term("(= " + probe + " " + std::string(term) + ")");
}

const Term* get_right_side(const Term* equality)
{
  if (equality->get_num_args() != 2 || !equality->get_arg(0)->get_symbol()->get_name().starts_with("probe"))
    throw std::logic_error("no equality was read");
  return equality->get_arg(1);
}

void declare_probes(Preamble& preamble, const OperatorSymbol& s)
{
  std::vector<const DataType*> declared;
  const auto declare = [&](const DataType* type) {
    for (const DataType* known : declared) {
      if (known == type) return;
    }
    declared.push_back(type);
    preamble.declare(type->is_bool() ? "probe" : numbered("probe_", type->get_width()), type);
  };
  declare(s.get_output_type());
  for (std::size_t i = 0; i < s.get_arity(); ++i)
    declare(s.get_argument_type(i));
}

struct SplitDefinition
{
  std::size_t position;
  std::string_view text;
};

std::vector<SplitDefinition> split_definitions(std::string_view text, std::size_t arity)
{
  std::vector<SplitDefinition> split;
  while (!text.empty()) {
    const std::size_t end = text.find("; ");
    const std::string_view definition = text.substr(0, end);
    const std::size_t sign = definition.find(" := ");
    std::size_t position = 0;
    while (position < arity && get_operand_name(arity, position) != definition.substr(0, sign))
      ++position;
    if (sign == std::string_view::npos || position == arity) throw std::logic_error("no definition");
    split.push_back({position, definition.substr(sign + 4)});
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  }
  return split;
}

}  // namespace

std::string get_operand_name(std::size_t arity, std::size_t position)
{
  if (arity == 1) return "x";
  return std::string(1, "cab"[position + 3 - arity]);
}

RowTerms read_row(TermManager& mgr, const ProofRow& row, const OperatorSymbol& s, bool has_abstract_product)
{
  Preamble text;
  text.declare("v", s.get_output_type());
  for (std::size_t i = 0; i < s.get_arity(); ++i)
    text.declare(get_operand_name(s.get_arity(), i), s.get_argument_type(i));
  const DataType* last = s.get_argument_type(s.get_arity() - 1);
  if (!last->is_bool()) define_patterns(text, last);
  define_special_names(mgr, text, row, s, has_abstract_product);
  declare_probes(text, s);

  const std::vector<SplitDefinition> definitions = split_definitions(row.definitions, s.get_arity());
  text.assert_term(row.condition.empty() ? "true" : row.condition);
  assert_equality(text, s.get_output_type(), row.value);
  for (const SplitDefinition& definition : definitions)
    assert_equality(text, s.get_argument_type(definition.position), definition.text);
  if (!row.middle.empty()) assert_equality(text, s.get_output_type(), row.middle);

  const std::vector<const Term*> read = smtlib::read_script(mgr, text.get_text()).get_asserted_terms();
  RowTerms terms{read[0], get_right_side(read[1]), {}, nullptr};
  for (std::size_t i = 0; i < definitions.size(); ++i)
    terms.definitions.push_back({definitions[i].position, get_right_side(read[i + 2])});
  if (!row.middle.empty()) terms.middle = get_right_side(read.back());
  return terms;
}

}  // namespace lumo::test
