#include "tracking.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "reporttables.h"

namespace vok::matchreport {
namespace {

constexpr std::size_t PIECE = std::size_t{1} << 18U;
constexpr double DECIMALS = 1e4;  ///< what is computed is rounded as logs round it

/// The system may take less than all at once.
bool writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// 0 at the end, negative after an error.
ssize_t readSome(int file, std::vector<char>& to) {
  ssize_t got = 0;
  do {
    got = ::read(file, to.data(), to.size());
  } while (got < 0 && errno == EINTR);
  return got;
}

double rounded(double value) {
  return std::round(value * DECIMALS) / DECIMALS;
}

}  // namespace

TrackingRows::TrackingRows(const std::string& folder) {
  std::string name = folder + "/.tracking-XXXXXX";
  file_ = ::mkostemp(name.data(), O_CLOEXEC);
  failed_ = file_ < 0 || ::unlink(name.c_str()) != 0;
}

TrackingRows::~TrackingRows() {
  if (file_ >= 0) ::close(file_);
}

void TrackingRows::frame(const analysis::Frame& frame, std::string_view playMode) {
  standing_ = frame.cycle == cycle_ ? standing_ + 1 : 0;
  cycle_ = frame.cycle;
  head_.clear();
  head_.number(cycle_).number(standing_).text(playMode);
  rows_.values(head_.written()).text("ball").none();
  rows_.real(frame.ball.x).real(frame.ball.y).real(frame.ballVel.x).real(frame.ballVel.y);
  rows_.none().none().none().none().end();
  for (int i = 0; i < analysis::PLAYERS; ++i) {
    if (frame.players[i].there()) player(frame, i);
  }
  if (rows_.written().size() >= PIECE) flush();
}

void TrackingRows::player(const analysis::Frame& frame, int player) {
  const analysis::FramePlayer& shown = frame.players[player];
  rows_.values(head_.written()).text(sideLetter(analysis::sideOf(player)));
  rows_.number(analysis::shirtOf(player));
  rows_.real(shown.pos.x).real(shown.pos.y).real(shown.vel.x).real(shown.vel.y);
  rows_.real(rounded(shown.body)).real(rounded(shown.neck)).numberOrNone(shown.type);
  rows_.real(shown.stamina).end();
}

void TrackingRows::flush() {
  failed_ = failed_ || !writeAll(file_, rows_.written());
  rows_.clear();
}

bool TrackingRows::copyTo(std::ostream& out, std::string_view key) {
  flush();
  if (failed_ || ::lseek(file_, 0, SEEK_SET) != 0) return false;
  std::vector<char> piece(PIECE);
  std::string rows;
  bool begins = true;
  ssize_t got = 0;
  while ((got = readSome(file_, piece)) > 0) {
    std::string_view left(piece.data(), static_cast<std::size_t>(got));
    rows.clear();
    while (!left.empty()) {
      if (begins) rows.append(key).append(1, ',');
      const std::string_view row = left.substr(0, left.find('\n'));
      begins = row.size() < left.size();
      rows.append(left.substr(0, row.size() + 1));
      left.remove_prefix(std::min(row.size() + 1, left.size()));
    }
    out << rows;
  }
  return got == 0 && out.good();
}

}  // namespace vok::matchreport
