#include "resources/piece_text.h"

#include <iterator>

namespace norvik50 {

PieceText::PieceText(std::u16string_view source, std::pmr::memory_resource* memory)
    : pieces_(memory) {
  if (!source.empty()) pieces_.push_back(source);
}

PieceText::Mark PieceText::Begin() {
  return pieces_.empty() ? None() : Mark{pieces_.begin(), 0, moved_};
}

PieceText::Mark PieceText::Find(std::u16string_view pattern, const Mark& from, std::size_t limit) {
  if (!from.found()) return None();
  auto it = from.piece;
  std::size_t offset = from.offset;
  std::size_t start = from.index - from.offset;  // the index of the piece's first unit
  for (; it != pieces_.end(); ++it, offset = 0) {
    const std::u16string_view piece = *it;
    for (offset = piece.find(pattern[0], offset); offset != piece.npos;
         offset = piece.find(pattern[0], offset + 1)) {
      if (start + offset >= limit) return None();
      // The second unit may begin the next piece.
      const auto next = std::next(it);
      const bool second = offset + 1 < piece.size()
                              ? piece[offset + 1] == pattern[1]
                              : next != pieces_.end() && next->front() == pattern[1];
      if (second) return Mark{it, offset, start + offset};
    }
    start += piece.size();
    if (start >= limit) return None();
  }
  return None();
}

PieceText::Mark PieceText::Replace(const Mark& at, std::u16string_view with, Mark& other) {
  const auto it = at.piece;
  const std::u16string_view whole = *it;
  const std::u16string_view head = whole.substr(0, at.offset);
  // The two units are the last of this piece and the first of the next, or
  // both in this piece.
  const bool spans = at.offset + 1 == whole.size();
  const auto second = spans ? std::next(it) : it;
  const std::u16string_view tail = spans ? second->substr(1) : whole.substr(at.offset + 2);
  const auto after = std::next(second);
  const auto before = it == pieces_.begin() ? pieces_.end() : std::prev(it);

  const bool other_touched = other.found() && (other.piece == it || other.piece == second);
  const bool other_after = other.found() && other.index > at.index;

  pieces_.erase(it, after);
  const auto head_piece = head.empty() ? after : pieces_.insert(after, head);
  if (!with.empty()) pieces_.insert(after, with);
  const auto tail_piece = tail.empty() ? after : pieces_.insert(after, tail);

  if (other_touched) {
    if (other_after) {
      // The tail began two units after `at`.
      other.piece = tail_piece;
      other.offset = other.index - (at.index + 2);
    } else {
      other.piece = head_piece;
    }
  }
  if (other_after) other.index = other.index - 2 + with.size();

  if (!head.empty()) return Mark{head_piece, head.size() - 1, at.index - 1};
  if (before == pieces_.end()) return Begin();            // nothing before `at`
  return Mark{before, before->size() - 1, at.index - 1};  // `at` began its piece
}

void PieceText::MovePiecesBefore(std::size_t end, std::u16string& out) {
  while (!pieces_.empty() && moved_ + pieces_.front().size() <= end) {
    out += pieces_.front();
    moved_ += pieces_.front().size();
    pieces_.pop_front();
  }
}

}  // namespace norvik50
