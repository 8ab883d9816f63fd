#include "resources/piece_text.h"

#include <iterator>

namespace norvik50 {

PieceText::PieceText(std::u16string_view source, std::array<std::u16string_view, 2> patterns,
                     std::pmr::memory_resource* memory)
    : patterns_(patterns), pieces_(memory) {
  if (!source.empty()) pieces_.push_back(Piece{source});
}

PieceText::Mark PieceText::Begin() {
  return pieces_.empty() ? None() : Mark{pieces_.begin(), 0, moved_};
}

bool PieceText::AcrossTheEdge(int which, Pieces::iterator it) const {
  const std::u16string_view pattern = patterns_[which];
  const auto next = std::next(it);
  return it->text.back() == pattern[0] && next != pieces_.end() && next->text.front() == pattern[1];
}

PieceText::Mark PieceText::Find(int which, const Mark& from, std::size_t limit) {
  if (!from.found()) return None();
  const std::u16string_view pattern = patterns_[which];
  const auto bit = static_cast<uint8_t>(1u << which);
  std::size_t offset = from.offset;
  std::size_t start = from.index - from.offset;  // the index of the piece's first unit
  for (auto it = from.piece; it != pieces_.end() && start < limit; ++it, offset = 0) {
    const std::u16string_view text = it->text;
    const std::size_t edge = text.size() - 1;  // an occurrence there ends in the next piece
    if ((it->searched & bit) == 0) {
      for (std::size_t o = text.find(pattern[0], offset); o < edge;
           o = text.find(pattern[0], o + 1)) {
        if (start + o >= limit) return None();
        if (text[o + 1] == pattern[1]) return Mark{it, o, start + o};
      }
      // Searched from its first unit to its end: never again.
      if (offset == 0) it->searched |= bit;
    }
    if (start + edge >= limit) return None();
    if (AcrossTheEdge(which, it)) return Mark{it, edge, start + edge};
    start += text.size();
  }
  return None();
}

PieceText::Mark PieceText::Replace(const Mark& at, std::u16string_view with, Mark& other) {
  const auto it = at.piece;
  const std::u16string_view whole = it->text;
  // The two units are the last of this piece and the first of the next, or
  // both in this piece. What is left of the pieces keeps what searching
  // them found: a part of a piece holds no more than the piece did.
  const bool spans = at.offset + 1 == whole.size();
  const auto second = spans ? std::next(it) : it;
  const Piece head{whole.substr(0, at.offset), it->searched};
  const Piece tail{spans ? second->text.substr(1) : whole.substr(at.offset + 2), second->searched};
  const auto after = std::next(second);
  const auto before = it == pieces_.begin() ? pieces_.end() : std::prev(it);

  const bool other_touched = other.found() && (other.piece == it || other.piece == second);
  const bool other_after = other.found() && other.index > at.index;

  pieces_.erase(it, after);
  const auto head_piece = head.text.empty() ? after : pieces_.insert(after, head);
  if (!with.empty()) pieces_.insert(after, Piece{with});
  const auto tail_piece = tail.text.empty() ? after : pieces_.insert(after, tail);

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

  if (!head.text.empty()) return Mark{head_piece, head.text.size() - 1, at.index - 1};
  if (before == pieces_.end()) return Begin();                 // nothing before `at`
  return Mark{before, before->text.size() - 1, at.index - 1};  // `at` began its piece
}

void PieceText::MovePiecesBefore(std::size_t end, std::u16string& out) {
  while (!pieces_.empty() && moved_ + pieces_.front().text.size() <= end) {
    out += pieces_.front().text;
    moved_ += pieces_.front().text.size();
    pieces_.pop_front();
  }
}

}  // namespace norvik50
