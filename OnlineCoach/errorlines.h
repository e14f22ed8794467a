// Standard error as a match needs it: a line that cannot be written does not matter.
#pragma once

#include <array>
#include <cstddef>
#include <streambuf>

namespace vok {

/// Takes the place of the buffer of `std::cerr` while it lives. Lines are written whole. One that
/// the system does not take within 20 ms, because nobody reads the pipe or the terminal stands
/// still, is dropped, and while this lasts the next ones are dropped at once. A failed write does
/// not silence the stream.
class ErrorLines final : public std::streambuf {
 public:
  ErrorLines();
  ~ErrorLines() override;
  ErrorLines(const ErrorLines&) = delete;
  ErrorLines& operator=(const ErrorLines&) = delete;

 protected:
  int_type overflow(int_type c) override;

 private:
  void write();

  // A pipe that is ready for writing has room for as much. Longer lines go out in pieces.
  static constexpr std::size_t PIECE = 4096;

  std::streambuf* before_;
  std::array<char, PIECE> text_{};
  std::size_t length_ = 0;
  bool isStuck_ = false;  ///< the last write had no room
};

}  // namespace vok
