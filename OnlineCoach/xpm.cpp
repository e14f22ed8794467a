#include "xpm.h"

#include <map>

#include "scanner.h"

namespace vok {

namespace {

constexpr int MAX_COLOURS = Picture::MAX_WIDTH * Picture::MAX_HEIGHT;
constexpr int MAX_CHARACTERS = 4;  ///< that stand for one pixel
constexpr std::size_t LONGEST_COLOUR = 40;

/// The strings of a C source, one after the other.
class Strings {
 public:
  explicit Strings(std::string_view text) : rest_(text) {}

  /// The next one, as long as it is not asked for the one after it. False at the end of the text,
  /// also where that is within a string.
  bool next(std::string_view& text) {
    while (!rest_.empty() && rest_.front() != '"') drop(rest_.starts_with("/*") ? comment() : 1);
    if (rest_.empty()) return false;
    const std::size_t end = rest_.find('"', 1);
    if (end == rest_.npos) return false;
    text = rest_.substr(1, end - 1);
    drop(end + 1);
    return true;
  }
  int line() const { return line_; }  ///< of the last one, from 1

 private:
  std::size_t comment() const {
    const std::size_t end = rest_.find("*/", 2);
    return end == rest_.npos ? rest_.size() : end + 2;
  }
  void drop(std::size_t count) {
    for (const char c : rest_.substr(0, count)) line_ += c == '\n' ? 1 : 0;
    rest_.remove_prefix(count);
  }

  std::string_view rest_;
  int line_ = 1;
};

bool isKind(std::string_view word) {
  return word == "c" || word == "m" || word == "s" || word == "g" || word == "g4";
}

/// The colour for a screen of colours, of "c RED m white" or the like; empty when there is none.
std::string colourOf(std::string_view text) {
  Scanner words(text);
  std::string colour;
  std::string_view kind;
  for (std::string_view word; words.word(word);) {
    if (isKind(word)) {
      kind = word;
    } else if (kind == "c") {
      colour.append(colour.empty() ? "" : " ").append(word);
    }
  }
  return colour;
}

/// What may stand in a command to the server: "#00ff80", "dark green", "None".
bool isColour(const std::string& text) {
  constexpr std::string_view ALLOWED =
      "#0123456789 ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  return !text.empty() && text.size() <= LONGEST_COLOUR &&
         text.find_first_not_of(ALLOWED) == text.npos;
}

class Reader {
 public:
  Reader(std::string_view text, std::string& error) : strings_(text), error_(error) {}

  std::optional<Picture> read() {
    if (!readHead() || !readColours() || !readPixels()) return std::nullopt;
    return std::move(picture_);
  }

 private:
  bool fail(const std::string& reason) {
    error_ = "line " + std::to_string(strings_.line()) + ": " + reason;
    return false;
  }

  bool next(std::string_view& text, const char* wanted) {
    return strings_.next(text) || fail(std::string("the file ends before ") + wanted);
  }

  bool readHead() {
    std::string_view text;
    if (!next(text, "a string with the size of a picture")) return false;
    Scanner head(text);
    if (!head.integer(picture_.width) || !head.integer(picture_.height) ||
        !head.integer(colours_) || !head.integer(characters_)) {
      return fail("no width, height, and numbers of colours and characters");
    }
    if (picture_.width < 1 || picture_.width > Picture::MAX_WIDTH || picture_.height < 1 ||
        picture_.height > Picture::MAX_HEIGHT) {
      return fail("the picture is " + std::to_string(picture_.width) + " x " +
                  std::to_string(picture_.height) + ", not 1 x 1 to " +
                  std::to_string(Picture::MAX_WIDTH) + " x " + std::to_string(Picture::MAX_HEIGHT));
    }
    if (colours_ < 1 || colours_ > MAX_COLOURS) return fail("no usable number of colours");
    if (characters_ < 1 || characters_ > MAX_CHARACTERS)
      return fail("not 1 to 4 characters a pixel");
    return true;
  }

  bool readColours() {
    for (int i = 0; i < colours_; ++i) {
      std::string_view text;
      if (!next(text, "the last colour")) return false;
      const std::string_view name = text.substr(0, static_cast<std::size_t>(characters_));
      std::string colour = colourOf(text.substr(name.size()));
      if (!isColour(colour)) return fail("no usable colour behind \"c\"");
      if (!indices_.emplace(name, i).second) return fail("these characters have a colour already");
      picture_.colours.push_back(std::move(colour));
    }
    return true;
  }

  bool readPixels() {
    const auto step = static_cast<std::size_t>(characters_);
    const std::size_t length = static_cast<std::size_t>(picture_.width) * step;
    for (int y = 0; y < picture_.height; ++y) {
      std::string_view row;
      if (!next(row, "the last row of pixels")) return false;
      if (row.size() != length) {
        return fail("the row has " + std::to_string(row.size()) + " characters, not " +
                    std::to_string(length));
      }
      for (std::size_t at = 0; at < length; at += step) {
        const auto colour = indices_.find(row.substr(at, step));
        if (colour == indices_.end()) return fail("a pixel of no colour");
        picture_.pixels.push_back(colour->second);
      }
    }
    return true;
  }

  Strings strings_;
  std::string& error_;
  Picture picture_;
  int colours_ = 0;
  int characters_ = 0;
  std::map<std::string_view, int> indices_;  ///< of the colours, by their characters in the file
};

}  // namespace

const std::string Picture::TRANSPARENT = "None";

const std::string& Picture::at(int x, int y) const {
  if (x < 0 || x >= width || y < 0 || y >= height) return TRANSPARENT;
  return colours[static_cast<std::size_t>(pixels[static_cast<std::size_t>(y * width + x)])];
}

std::optional<Picture> readXpm(std::string_view text, std::string& error) {
  return Reader(text, error).read();
}

}  // namespace vok
