// Builds rows of comma-separated values in a text that is kept, so that a row allocates nothing
// once the longest was written.
#pragma once

#include <string>
#include <string_view>

namespace vok::matchreport {

class CsvRow {
 public:
  /// In quotes where a comma or a quote is in it; what is not printable ASCII becomes \xNN.
  CsvRow& text(std::string_view value);
  CsvRow& number(int value);
  /// Empty for -1, which means that there is none.
  CsvRow& numberOrNone(int value) { return value == -1 ? none() : number(value); }
  /// The shortest text that reads as the same double; empty for one that is absent.
  CsvRow& real(double value);
  CsvRow& truth(bool value) { return number(value ? 1 : 0); }
  CsvRow& none() { return comma(); }
  /// Values as they are written, from another row.
  CsvRow& values(std::string_view written) {
    comma();
    text_ += written;
    return *this;
  }
  void end() {
    text_ += '\n';
    first_ = true;
  }

  const std::string& written() const { return text_; }
  void clear() {
    text_.clear();
    first_ = true;
  }

 private:
  CsvRow& comma() {
    if (!first_) text_ += ',';
    first_ = false;
    return *this;
  }

  std::string text_;
  bool first_ = true;  ///< no value stands before the next one in its row
};

}  // namespace vok::matchreport
