#include "Config.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "printable.h"
#include "scanner.h"

#undef NDEBUG  // a null key stops a release build, too
#include <cassert>

namespace vok {

namespace {

constexpr std::size_t MAX_TEXT_LENGTH = 255;  // of a key or a value
constexpr int EXIT_BAD_VALUE = 10;

using Entries = std::map<std::string, std::string, std::less<>>;

/// The process-wide store. A map, because a value must keep its address while others are added.
Entries& entries() {
  static Entries theEntries;
  return theEntries;
}

/// The one way in which the configuration ends the process.
[[noreturn]] void fatal(const std::string& message) {
  std::cerr << "FATAL: " << printable(message) << "\n";
  if (Config::onFatal != nullptr) Config::onFatal(message);
  std::exit(EXIT_BAD_VALUE);
}

[[noreturn]] void fatalValue(const char* key, const char* value, const std::string& problem) {
  fatal("value '" + std::string(value) + "' for key '" + key + "' " + problem);
}

const char* requireValue(const char* key) {
  const char* value = Config::getValue(key);
  if (value == nullptr) fatal("no value for key '" + std::string(key) + "' found.");
  return value;
}

/// The value from its element `index` on.
Scanner requireElement(const char* key, const char* value, int index) {
  const char* element = value;
  for (int i = 0; i < index; ++i) {
    element = std::strchr(element, ',');
    if (element == nullptr) {
      fatalValue(key, value, "has not enough entries for No: " + std::to_string(index) + ".");
    }
    ++element;
  }
  return Scanner(element);
}

double requireDouble(const char* key, const char* value, Scanner text) {
  double number = 0;
  if (!text.real(number)) fatalValue(key, value, "not a double.");
  return number;
}

int requireInt(const char* key, const char* value, Scanner text) {
  int number = 0;
  if (!text.integer(number)) fatalValue(key, value, "not an integer.");
  return number;
}

void reportLine(int lineNumber, const std::string& problem) {
  std::cerr << "error parsing config file. line " << lineNumber << ": " << printable(problem)
            << "\n";
  if (Config::observer != nullptr) Config::observer->lineError(problem);
}

/// A key or value within its bound; one that is cut is reported.
std::string bounded(std::string_view text, const char* what, int lineNumber) {
  if (text.size() > MAX_TEXT_LENGTH) {
    reportLine(lineNumber,
               std::string(what) + " cut to " + std::to_string(MAX_TEXT_LENGTH) + " characters");
  }
  return std::string(text.substr(0, MAX_TEXT_LENGTH));
}

void tell(const char* key, ConfigRequest::Kind kind, int index, bool optional) {
  if (Config::observer != nullptr) Config::observer->requested({key, kind, index, optional});
}

}  // namespace

void (*Config::onFatal)(const std::string&) = nullptr;
ConfigObserver* Config::observer = nullptr;

void Config::clear() {
  entries().clear();
}

bool Config::readFile(const char* fileName) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fileName, "r"),
                                                             &std::fclose);
  if (!file) return false;

  // A line that does not fit is read on in further pieces, each a line of its own.
  std::array<char, PIECE_SIZE> line{};
  for (int lineNumber = 1; std::fgets(line.data(), line.size(), file.get()) != nullptr;
       ++lineNumber) {
    if (lineNumber > MAX_LINES) {
      std::cerr << "error parsing config file: more than " << MAX_LINES << " lines\n";
      return false;
    }
    if (observer != nullptr) observer->lineRead(line.data());
    // A NUL byte in the file ends its line here, so that the text may even be empty.
    const std::size_t length = std::strlen(line.data());
    if (length > 0 && line[length - 1] == '\n') line[length - 1] = '\0';
    parseLine(line.data(), lineNumber);
  }
  return std::ferror(file.get()) == 0;  // a directory can be opened, but not read
}

const char* Config::getValue(const char* key) {
  assert(key);
  const auto entry = entries().find(std::string_view(key));
  if (entry == entries().end()) {
    std::cerr << "WARNING: configuration entry for '" << key << "' not found.\n";
    return nullptr;
  }
  return entry->second.c_str();
}

double Config::getValueAsDouble(const char* key) {
  tell(key, ConfigRequest::REAL, -1, false);
  const char* value = requireValue(key);
  return requireDouble(key, value, Scanner(value));
}

int Config::getValueAsInt(const char* key) {
  tell(key, ConfigRequest::INTEGER, -1, false);
  const char* value = requireValue(key);
  return requireInt(key, value, Scanner(value));
}

int Config::getOptionalInt(const char* key, int fallback) {
  assert(key);
  tell(key, ConfigRequest::INTEGER, -1, true);
  const auto entry = entries().find(std::string_view(key));
  if (entry == entries().end()) return fallback;
  const char* value = entry->second.c_str();
  return requireInt(key, value, Scanner(value));
}

std::string Config::getOptionalText(const char* key, const char* fallback) {
  assert(key);
  tell(key, ConfigRequest::TEXT, -1, true);
  const auto entry = entries().find(std::string_view(key));
  if (entry == entries().end()) return fallback;
  return std::string(trimmed(entry->second));
}

double Config::getOptionalDoubleFromList(const char* key, int index, double fallback) {
  assert(key);
  tell(key, ConfigRequest::REAL, index, true);
  const auto entry = entries().find(std::string_view(key));
  if (entry == entries().end()) return fallback;
  const char* value = entry->second.c_str();
  return requireDouble(key, value, requireElement(key, value, index));
}

double Config::getValueAsDoubleFromList(const char* key, int index) {
  tell(key, ConfigRequest::REAL, index, false);
  const char* value = requireValue(key);
  return requireDouble(key, value, requireElement(key, value, index));
}

int Config::getValueAsIntFromList(const char* key, int index) {
  tell(key, ConfigRequest::INTEGER, index, false);
  const char* value = requireValue(key);
  return requireInt(key, value, requireElement(key, value, index));
}

Vector2d Config::getValueAsVector(const char* key) {
  tell(key, ConfigRequest::VECTOR, -1, false);
  const char* value = requireValue(key);
  Scanner text(value);
  double x = 0;
  double y = 0;
  if (!text.real(x) || !text.skipBlanks().literal(',') || !text.real(y)) {
    fatalValue(key, value, "not an vector.");
  }
  return {x, y};
}

void removeComment(char* line) {
  char* comment = std::strchr(line, '#');
  if (comment != nullptr) *comment = '\0';
}

void parseLine(char* line, int lineNumber) {
  removeComment(line);
  const std::string_view text(line);
  std::string_view word;

  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) {
    if (Scanner(text).word(word)) reportLine(lineNumber, "can't find '=' sign.");
    return;
  }
  if (!Scanner(text.substr(0, equals)).word(word)) {
    reportLine(lineNumber, "can't parse key");
    return;
  }
  // Only spaces in front of a value are removed; tabs and the blanks behind belong to it.
  std::string_view value = text.substr(equals + 1);
  while (value.starts_with(' ')) value.remove_prefix(1);

  const std::string key = bounded(word, "key", lineNumber);
  setEntry(key.c_str(), bounded(value, "value", lineNumber).c_str());
  if (Config::observer != nullptr) Config::observer->keyDefined(key);
}

void setEntry(const char* key, const char* value) {
  entries().insert_or_assign(key, value);
}

}  // namespace vok
