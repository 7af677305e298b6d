#include "lumo/smtlib/command_splitter.h"

#include <algorithm>

#include "lumo/terms/characters.h"

namespace lumo::smtlib {

namespace {

constexpr std::string_view kTextMark = "\xef\xbb\xbf";

}  // namespace

void CommandSplitter::add(std::string_view piece)
{
  text_.erase(0, start_);
  next_ -= start_;
  start_ = 0;
  text_ += piece;
}

std::optional<CommandText> CommandSplitter::take()
{
  if (!begin()) return std::nullopt;
  while (next_ < text_.size()) {
    const char c = text_[next_];
    // A word outside of parentheses ends before what cannot belong to it.
    const bool ends_word = depth_ == 0 && state_ == State::kInside && next_ > start_ &&
                           (is_blank(c) || c == '(' || c == ')' || c == ';');
    if (ends_word) return cut();
    ++next_;
    if (step(c)) return cut();
  }
  if (is_finished_) return cut();
  return std::nullopt;
}

bool CommandSplitter::begin()
{
  if (!is_between_) return true;
  if (is_first_ && !skip_byte_order_mark()) return false;
  while (next_ < text_.size()) {
    const char c = text_[next_];
    if (state_ == State::kComment) {
      if (c == '\n') state_ = State::kInside;
    } else if (c == ';') {
      state_ = State::kComment;
    } else if (!is_blank(c)) {
      skip(next_ - start_);
      is_between_ = false;
      return true;
    }
    ++next_;
  }
  skip(next_ - start_);
  return false;
}

bool CommandSplitter::skip_byte_order_mark()
{
  const bool may_be_cut = text_.size() < kTextMark.size() && kTextMark.starts_with(text_);
  if (may_be_cut && !is_finished_) return false;
  if (text_.starts_with(kTextMark)) start_ = next_ = kTextMark.size();
  is_first_ = false;
  return true;
}

bool CommandSplitter::step(char c)
{
  switch (state_) {
    case State::kInside:
      if (c == '(') ++depth_;
      if (c == ')') return depth_ == 0 || --depth_ == 0;
      if (c == ';') state_ = State::kComment;
      if (c == '"') state_ = State::kString;
      if (c == '|') state_ = State::kQuotedSymbol;
      break;
    case State::kComment:
      if (c == '\n') state_ = State::kInside;
      break;
    case State::kString:
      // Two quotation marks in a string close it and open another one.
      if (c == '"') state_ = State::kInside;
      break;
    case State::kQuotedSymbol:
      if (c == '|') state_ = State::kInside;
      break;
  }
  return false;
}

void CommandSplitter::skip(std::size_t count)
{
  const auto first = text_.begin() + static_cast<std::ptrdiff_t>(start_);
  const auto last = first + static_cast<std::ptrdiff_t>(count);
  const auto num_lines = static_cast<std::size_t>(std::count(first, last, '\n'));
  if (num_lines == 0) {
    place_.column += count;
  } else {
    place_.line += num_lines;
    const auto line_end =
        std::find(std::make_reverse_iterator(last), std::make_reverse_iterator(first), '\n');
    place_.column = static_cast<std::size_t>(last - line_end.base()) + 1;
  }
  start_ += count;
}

CommandText CommandSplitter::cut()
{
  const CommandText command{std::string_view{text_}.substr(start_, next_ - start_), place_};
  skip(next_ - start_);
  state_ = State::kInside;
  is_between_ = true;
  depth_ = 0;
  return command;
}

}  // namespace lumo::smtlib
