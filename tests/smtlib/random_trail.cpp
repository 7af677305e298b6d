#include "tests/smtlib/random_trail.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>

#include "tests/support/make_operator.h"
#include "tests/support/numbered.h"

namespace lumo::test {

namespace {

constexpr std::array<const char*, 12> kNames = {"x",    "s!",  "u!", "s!!", "a b",   "say \"hi\" \"",
                                                "; no", "(()", "#b", "let", "1st\t", "line\n\xc3\xa9 "};

class Maker
{
 public:
  Maker(TermManager& mgr, Random& random) : mgr_(mgr), random_(random) {}

  RandomTrail make(std::size_t max_steps)
  {
    const std::size_t num_steps = random_.index(max_steps + 1);
    while (result_.trail.steps.size() < num_steps) {
      if (random_.one_in(3)) {
        add_step();
      } else {
        add(draw_application());
      }
    }
    std::vector<Step>& steps = result_.trail.steps;
    for (std::size_t i = steps.size(); i > 1; --i)
      std::swap(steps[i - 1], steps[random_.index(i)]);
    for (std::size_t i = random_.index(3); i > 0; --i)
      result_.trail.facts.push_back(random_.flip() ? draw_free(0) : make_declared(0));
    return std::move(result_);
  }

 private:
  const DataType* make_type(unsigned long w) { return w == 0 ? mgr_.make_bool_type() : mgr_.make_bv_type(w); }
  static unsigned long width_of(const Term* t) { return t->get_symbol()->get_output_type()->get_width(); }
  unsigned long draw_number(unsigned long low, unsigned long high)
  {
    return low + random_.index(high - low + 1);
  }

  const Term* make_constant(unsigned long w)
  {
    return mgr_.make_constant(numbered(random_.pick(kNames), num_names_++), make_type(w));
  }
  const Term* make_declared(unsigned long w)
  {
    const Term* constant = make_constant(w);
    result_.constants.push_back(constant);
    return constant;
  }

  void add(const Term* t) { known_[width_of(t)].push_back(t); }

  /// A term that other ones may contain, too
  const Term* draw(unsigned long w)
  {
    const std::vector<const Term*>& known = known_[w];
    if (!known.empty() && !random_.one_in(5)) return random_.pick(known);
    if (random_.flip()) {
      if (w == 0) return random_.flip() ? mgr_.make_true() : mgr_.make_false();
      return mgr_.make_bv_number(QNumber(static_cast<long>(random_.bits() >> 1U)), w);
    }
    const Term* constant = make_declared(w);
    add(constant);
    return constant;
  }
  /// A constant that is not yet a free argument of a step
  const Term* draw_free(unsigned long w)
  {
    std::vector<const Term*>& unused = unused_[w];
    if (unused.empty() || random_.flip()) return make_declared(w);
    const Term* constant = unused.back();
    unused.pop_back();
    return constant;
  }

  Parameters draw_parameters(SortRule rule)
  {
    const unsigned long w = draw_number(1, 5);
    switch (rule) {
      case SortRule::kBool:
        return {};
      case SortRule::kIte:
        return {draw_number(0, 5)};
      case SortRule::kEq:
      case SortRule::kUniform:
      case SortRule::kPredicate:
      case SortRule::kComparison:
        return {w};
      case SortRule::kConcat:
        return {w, draw_number(1, 3)};
      case SortRule::kExtract: {
        const unsigned long msb = draw_number(0, w - 1);
        return {msb, draw_number(0, msb), w};
      }
      case SortRule::kRotate:  // as readers reduce every index
        return {draw_number(0, w - 1), w};
      case SortRule::kExtend:
        return {draw_number(0, 4), w};
    }
    return {};
  }
  const OperatorSymbol& draw_operator()
  {
    const OperatorInfo& info = random_.pick(kOperators);
    return as_operator(make_operator(mgr_, info.kind, draw_parameters(info.rule)));
  }

  const Term* draw_application()
  {
    const OperatorSymbol& s = draw_operator();
    std::vector<const Term*> args;
    for (std::size_t i = 0; i < s.get_arity(); ++i)
      args.push_back(draw(s.get_argument_type(i)->get_width()));
    return mgr_.make_term(&s, args);
  }

  void add_step()
  {
    const OperatorSymbol& s = draw_operator();
    Step step{make_constant(s.get_output_type()->get_width()), nullptr, {}, nullptr};
    std::vector<const Term*> args;
    for (std::size_t i = 0; i < s.get_arity(); ++i) {
      const unsigned long w = s.get_argument_type(i)->get_width();
      step.free[i] = random_.flip();
      args.push_back(step.free[i] ? draw_free(w) : draw(w));
    }
    for (std::size_t i = 0; i < args.size(); ++i)
      step.free[i] = step.free[i] && std::count(args.begin(), args.end(), args[i]) == 1;
    step.application = mgr_.make_term(&s, args);
    result_.trail.steps.push_back(step);
    unused_[width_of(step.constant)].push_back(step.constant);
    add(step.constant);
    if (random_.one_in(4)) add(step.application);
  }

  TermManager& mgr_;
  Random& random_;
  RandomTrail result_;
  std::map<unsigned long, std::vector<const Term*>> known_;
  std::map<unsigned long, std::vector<const Term*>> unused_;
  std::size_t num_names_ = 0;
};

}  // namespace

RandomTrail make_random_trail(TermManager& mgr, Random& random, std::size_t max_steps)
{
  return Maker(mgr, random).make(max_steps);
}

}  // namespace lumo::test
