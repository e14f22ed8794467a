// A position in JSON text that may not be complete yet. Each step reads one piece and moves on; it
// returns false for anything else, and `ranOut` then tells whether more text may mend it.
#pragma once

#include <string>
#include <string_view>

#include "scanner.h"

namespace vok::gamelogs {

class JsonText {
 public:
  explicit JsonText(std::string_view text) : in_(text) {}

  bool ranOut() const { return ranOut_; }
  std::string_view rest() const { return in_.rest(); }

  /// A character, blanks before it skipped.
  bool take(char c) { return !atEnd() && in_.literal(c); }
  char peek() { return atEnd() ? '\0' : in_.rest().front(); }

  bool number(double& value) { return !atEnd() && in_.real(value); }
  bool number(int& value) { return !atEnd() && in_.integer(value); }

  /// A text without its quotes, escapes as they stand.
  bool string(std::string_view& raw);
  /// A text with its escapes resolved; those of other characters than ASCII become UTF-8.
  bool string(std::string& text);

  /// Any value, passed over. `raw` is its text.
  bool skip(std::string_view& raw);

  /// Reads an object. `member` gets each name and reads its value.
  template <typename Member>
  bool object(Member member) {
    if (!take('{')) return false;
    if (take('}')) return true;
    do {
      std::string_view name;
      if (!string(name) || !take(':') || !member(name)) return false;
    } while (take(','));
    return take('}');
  }

  /// Reads an array. `element` reads each value.
  template <typename Element>
  bool array(Element element) {
    if (!take('[')) return false;
    if (take(']')) return true;
    do {
      if (!element()) return false;
    } while (take(','));
    return take(']');
  }

 private:
  bool atEnd() {
    if (in_.skipBlanks().rest().empty()) ranOut_ = true;
    return ranOut_;
  }
  bool skipOne(std::size_t& depth);

  Scanner in_;
  bool ranOut_ = false;
};

}  // namespace vok::gamelogs
