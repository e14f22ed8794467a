#include "teamgraphic.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>
#include <iterator>

namespace vok {

namespace {

/// No picture within the limits needs more.
constexpr std::size_t LONGEST_FILE = 1 << 20;

constexpr int MOST_SENDINGS = 3;  ///< of a tile

/// One for each pixel of a tile that has 64 different colours.
constexpr std::string_view CHARACTERS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.+";

std::string quoted(const std::string& text) {
  return " \"" + text + "\"";
}

/// The strings of an XPM file for a tile alone, with a character for each of its own colours.
std::string tileStrings(const Picture& picture, int left, int top) {
  std::vector<std::string> colours;
  std::string rows;
  for (int y = top; y < top + TeamGraphic::TILE; ++y) {
    std::string row;
    for (int x = left; x < left + TeamGraphic::TILE; ++x) {
      const std::string& colour = picture.at(x, y);
      const auto known = std::find(colours.begin(), colours.end(), colour);
      row += CHARACTERS[static_cast<std::size_t>(known - colours.begin())];
      if (known == colours.end()) colours.push_back(colour);
    }
    rows += quoted(row);
  }
  std::string text = quoted("8 8 " + std::to_string(colours.size()) + " 1");
  for (std::size_t i = 0; i < colours.size(); ++i) {
    text += quoted(std::string(1, CHARACTERS[i]) + " c " + colours[i]);
  }
  return text + rows;
}

bool isTransparent(const Picture& picture, int left, int top) {
  for (int y = top; y < top + TeamGraphic::TILE; ++y) {
    for (int x = left; x < left + TeamGraphic::TILE; ++x) {
      if (picture.at(x, y) != Picture::TRANSPARENT) return false;
    }
  }
  return true;
}

}  // namespace

std::unique_ptr<TeamGraphic> TeamGraphic::fromFile(const std::string& fileName,
                                                   std::string& error) {
  std::ifstream in(fileName, std::ios::binary);
  // One character more than allowed, so that a device does not fill the memory.
  std::string text(LONGEST_FILE + 1, '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(in.gcount()));
  if (text.empty() || text.size() > LONGEST_FILE) {
    error = text.empty() ? "cannot be read, or is empty" : "is longer than 1 MB";
    return nullptr;
  }
  const auto picture = readXpm(text, error);
  if (!picture) return nullptr;
  return std::make_unique<TeamGraphic>(*picture);
}

TeamGraphic::TeamGraphic(const Picture& picture) {
  for (int top = 0; top < picture.height; top += TILE) {
    for (int left = 0; left < picture.width; left += TILE) {
      if (isTransparent(picture, left, top)) continue;
      tiles_.push_back({left / TILE, top / TILE, tileStrings(picture, left, top)});
    }
  }
}

void TeamGraphic::takeAnswers(Comm& comm) {
  for (; !comm.tileAnswers.empty(); comm.tileAnswers.pop()) {
    const Answer& answer = comm.tileAnswers.front();
    if (answer.kind == AnswerKind::TILE_TAKEN) {
      for (Tile& tile : tiles_) {
        if (tile.taken || tile.column != answer.number || tile.row != answer.type) continue;
        tile.taken = true;
        if (++taken_ == tiles_.size()) std::cerr << "Coach: the team graphic is complete\n";
      }
    } else if (answer.kind == AnswerKind::TILE_TOO_LATE) {
      onlyBeforeKickOff_ = true;
    } else if (!refused_ && taken_ < tiles_.size()) {
      refused_ = true;
      std::cerr << "Coach: the server refuses the team graphic after " << taken_ << " of "
                << tiles_.size() << " tiles\n";
    }
  }
}

/// The first of those that were sent least.
TeamGraphic::Tile* TeamGraphic::next() {
  Tile* least = nullptr;
  for (Tile& tile : tiles_) {
    if (tile.taken || tile.sent == MOST_SENDINGS) continue;
    if (least == nullptr || tile.sent < least->sent) least = &tile;
  }
  return least;
}

void TeamGraphic::send(Comm& comm) {
  takeAnswers(comm);
  if (refused_ || (onlyBeforeKickOff_ && comm.getPlayMode() != PLAY_MODE_BEFORE_KICK_OFF)) return;
  Tile* tile = next();
  if (tile == nullptr) return;
  ++tile->sent;
  comm.sendTeamGraphic(tile->column, tile->row, tile->strings.c_str());
}

}  // namespace vok
