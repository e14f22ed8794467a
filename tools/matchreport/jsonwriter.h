// Writes JSON into a text: objects, arrays and values in their order, commas by itself.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vok::matchreport {

class JsonWriter {
 public:
  JsonWriter& beginObject() { return begin('{'); }
  JsonWriter& endObject() { return end('}'); }
  JsonWriter& beginArray() { return begin('['); }
  JsonWriter& endArray() { return end(']'); }

  /// The name of the next value.
  JsonWriter& key(std::string_view name);

  JsonWriter& value(std::string_view text);
  JsonWriter& value(const char* text) { return value(std::string_view(text)); }
  JsonWriter& value(bool truth);
  JsonWriter& value(int number);
  /// The shortest number that reads as the same double; null for one that is absent.
  JsonWriter& value(double number);
  JsonWriter& null();
  /// A number of which -1 means that there is none, a text of which the empty one does.
  JsonWriter& valueOrNull(int number) { return number == -1 ? null() : value(number); }
  JsonWriter& valueOrNull(std::string_view text) { return text.empty() ? null() : value(text); }

  template <typename Value>
  JsonWriter& member(std::string_view name, const Value& content) {
    return key(name).value(content);
  }

  const std::string& text() const { return text_; }

 private:
  JsonWriter& begin(char bracket);
  JsonWriter& end(char bracket);
  void comma();

  std::string text_;
  bool first_ = true;  ///< no value stands before the next one in its object or array
};

}  // namespace vok::matchreport
