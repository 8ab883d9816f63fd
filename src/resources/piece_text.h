// A text edited again and again in its middle: two units at a time are
// replaced by a longer or shorter text, and two two-unit patterns are
// searched for after each edit. Held as a list of pieces (views of the
// source and of the texts put in), so that each replacement costs the text
// put in, not a move of everything after it. A piece searched through once
// for a pattern is not searched again for it (a piece never changes; only
// its edges meet new neighbours), so searches cost the new text, not the
// whole rest each time.
//
// Thread safety: none. The source and every text put in must outlive the
// object: the pieces only view them.
#ifndef NORVIK50_SRC_RESOURCES_PIECE_TEXT_H_
#define NORVIK50_SRC_RESOURCES_PIECE_TEXT_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory_resource>
#include <string>
#include <string_view>

namespace norvik50 {

class PieceText {
 public:
  static constexpr std::size_t kNone = SIZE_MAX;

  struct Piece {
    std::u16string_view text;
    // Bit k: no occurrence of pattern k lies wholly inside the piece.
    uint8_t searched = 0;
  };
  using Pieces = std::pmr::list<Piece>;

  // One unit of the text: the piece it lies in, its offset there and its
  // 0-based index in the whole text. A mark with index kNone names no unit
  // (nothing found, or an empty text).
  struct Mark {
    Pieces::iterator piece;
    std::size_t offset = 0;
    std::size_t index = kNone;
    bool found() const { return index != kNone; }
  };

  // `patterns` are the two texts of two units each that Find looks for.
  // The pieces' list nodes come from `memory` (a monotonic buffer serves a
  // text edited many times best).
  PieceText(std::u16string_view source, std::array<std::u16string_view, 2> patterns,
            std::pmr::memory_resource* memory);

  // The first unit; no unit for an empty text.
  Mark Begin();

  // The first occurrence of pattern `which` (0 or 1) that starts at an
  // index from `from` up to but excluding `limit`; no unit when there is
  // none (and when `from` names no unit).
  Mark Find(int which, const Mark& from, std::size_t limit = kNone);

  // Puts `with` in place of the two units starting at `at`. `other` marks
  // a unit outside those two, or none; it is moved along so that it marks
  // the same unit afterwards. Returns the mark of the unit just before the
  // replaced ones, or the first unit when there is none before them.
  Mark Replace(const Mark& at, std::u16string_view with, Mark& other);

  // Appends to `out`, and drops, the pieces that lie wholly before index
  // `end`: units that no later edit may change. Indexes stay those of the
  // whole text. With kNone, every piece.
  void MovePiecesBefore(std::size_t end, std::u16string& out);

 private:
  Mark None() { return Mark{pieces_.end(), 0, kNone}; }
  // Whether pattern `which` starts at the last unit of `it` and ends in
  // the next piece.
  bool AcrossTheEdge(int which, Pieces::iterator it) const;

  std::array<std::u16string_view, 2> patterns_;
  Pieces pieces_;          // none of them empty
  std::size_t moved_ = 0;  // units moved out: the index of the first piece's first unit
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_PIECE_TEXT_H_
