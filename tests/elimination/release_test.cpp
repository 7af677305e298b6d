// Elimination and extension when memory runs out: the second attempt succeeds. The
// program replaces the allocator by one that fails on demand; the sanitizers look for leaks.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "tests/support/failing_allocator.h"
#include "tests/support/notation.h"

namespace lumo::test {
namespace {

using Texts = std::vector<std::string>;

/// Assertions that each kind of rule eliminates as a whole; numerals are wider than a word.
const Texts kFormulas[] = {
    {"p", "(or q (not r))"},
    {"(= x128 (bvmul y128 y128))", "(= z128 (bvadd y128 v128))"},
    {"(= (bvadd (bvadd (bvmul x128 y128) z128) v128) (bvnot y128))"},
    {"(and (and p q) (and (or r s) (= t v)))"},
    {"(bvult x128 (bvmul y128 z128))"},
    {"(bvsle (bvadd x128 y128) #x00000000000000000000000000000007)"},
    {"(ite p (bvult x128 y128) q)", "(ite r s (bvule z128 v128))"},
    {"(= (bvshl x128 #x00000000000000000000000000000041) y128)"},
    {"(= (bvashr x128 #x00000000000000000000000000000041) y128)"},
    {"(= (bvmul x128 #x00000000000000060000000000000000) y128)"},
    {"(= (concat x64 y64) ((_ extract 199 72) z200))", "(= (bvcomp u8 v8) #b1)"},
};

/// An elimination and an extension of an empty model, of the assertions of a formula.
class EliminationScene
{
 public:
  explicit EliminationScene(const Texts& texts)
  {
    for (const std::string& text : texts)
      assertions_.push_back(parse_term(mgr_, text));
  }

  void eliminate_all() { elimination_ = eliminate(mgr_, assertions_); }
  void extend_model() { extend(mgr_, elimination_.trail, model_); }

  /// The steps as text, without the names of their constants.
  [[nodiscard]] Texts describe_steps() const
  {
    Texts texts;
    for (const Step& step : elimination_.trail.steps)
      texts.push_back(step.application->get_symbol()->get_name() + " for " + step.free.to_string());
    return texts;
  }
  [[nodiscard]] std::size_t get_num_facts() const { return elimination_.trail.facts.size(); }
  void expect_eliminated() const
  {
    EXPECT_TRUE(elimination_.assertions.empty()) << "so every model is one of the rest";
  }
  void expect_model() { EXPECT_EQ(find_violated(mgr_, assertions_, model_), assertions_.size()); }
  /// The values of the terms that existed before
  [[nodiscard]] Texts describe_model()
  {
    Texts texts;
    for (const Step& step : elimination_.trail.steps) {
      texts.push_back(model_.get_value(step.constant)->get_symbol()->get_name());
      for (std::size_t i = 0; i < step.application->get_num_args(); ++i)
        texts.push_back(model_.get_value(step.application->get_arg(i))->get_symbol()->get_name());
    }
    return texts;
  }
  void expect_same_terms(const Texts& texts)
  {
    for (std::size_t i = 0; i < texts.size(); ++i)
      EXPECT_EQ(parse_term(mgr_, texts[i]), assertions_[i]);
  }

 private:
  TermManager mgr_;
  std::vector<const Term*> assertions_;
  Elimination elimination_;
  ModelStore model_{&mgr_};
};

TEST(FailingAllocation, AnywhereInAnEliminationDoesNotChangeTheNextOne)
{
  long num_failures = 0;
  for (const Texts& texts : kFormulas) {
    EliminationScene reference(texts);
    reference.eliminate_all();
    reference.expect_eliminated();
    num_failures += fail_everywhere([&texts] { return std::make_unique<EliminationScene>(texts); },
                                    [](EliminationScene& scene) { scene.eliminate_all(); },
                                    [&](EliminationScene& scene) {
                                      SCOPED_TRACE(texts[0]);
                                      EXPECT_TRUE(scene.describe_steps().empty());
                                      scene.expect_same_terms(texts);
                                      scene.eliminate_all();
                                      scene.expect_eliminated();
                                      EXPECT_EQ(scene.describe_steps(), reference.describe_steps());
                                      EXPECT_EQ(scene.get_num_facts(), reference.get_num_facts());
                                      scene.extend_model();
                                      scene.expect_model();
                                    });
  }
  EXPECT_GT(num_failures, 200);
}

TEST(FailingAllocation, AnywhereInAnExtensionDoesNotChangeTheNextOne)
{
  long num_failures = 0;
  for (const Texts& texts : kFormulas) {
    EliminationScene reference(texts);
    reference.eliminate_all();
    reference.extend_model();
    reference.expect_model();
    num_failures += fail_everywhere(
        [&texts] {
          auto scene = std::make_unique<EliminationScene>(texts);
          scene->eliminate_all();
          return scene;
        },
        [](EliminationScene& scene) { scene.extend_model(); },
        [&](EliminationScene& scene) {
          SCOPED_TRACE(texts[0]);
          scene.extend_model();
          scene.expect_model();
          EXPECT_EQ(scene.describe_model(), reference.describe_model());
          scene.expect_same_terms(texts);
        });
  }
  EXPECT_GT(num_failures, 200);
}

}  // namespace
}  // namespace lumo::test
