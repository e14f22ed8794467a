// The configuration: one file of "key = value" lines, read once at start.
//
// Values are kept as text and converted on every request, so modules ask once, when they are
// built. A typed request for a key that is missing or malformed ends the process with status 10
// after a line that names it.
#pragma once

#include <cstddef>
#include <string>

#include "coordinates.h"

namespace vok {

/// A typed request for a value.
struct ConfigRequest {
  enum Kind { INTEGER, REAL, VECTOR };

  const char* key;
  Kind kind;
  int index;  ///< of a list's element, -1 for a plain value
  bool optional;
};

/// Sees how the configuration is read and used. It may set entries, and a request finds what was
/// set for it.
class ConfigObserver {
 public:
  virtual ~ConfigObserver() = default;
  /// The next line with its end, or a piece of one that is too long, before it is taken in.
  virtual void lineRead(const char* /*line*/) {}
  /// What is wrong with it.
  virtual void lineError(const std::string& /*problem*/) {}
  /// The key that it defines.
  virtual void keyDefined(const std::string& /*key*/) {}
  /// Before the value is looked up.
  virtual void requested(const ConfigRequest& /*request*/) {}
};

class Config {
 public:
  static constexpr std::size_t PIECE_SIZE = 1024;  ///< of a line, with the terminating NUL
  static constexpr int MAX_LINES = 100'000;        ///< a longer file is a device or a mistake

  /// Reads a file into the process-wide store; a later definition of a key replaces an earlier
  /// one. False when the file cannot be opened or read, or does not end within `MAX_LINES`; a line
  /// in error is reported and skipped.
  static bool readFile(const char* fileName);

  /// The text of a key, or null after a warning line. Valid until the key is set again.
  static const char* getValue(const char* key);

  static double getValueAsDouble(const char* key);
  static int getValueAsInt(const char* key);
  /// A key that may be missing, without a line about it: then the value is `fallback`.
  static int getOptionalInt(const char* key, int fallback);
  /// Element `index` (from 0) of a comma-separated list.
  static double getValueAsDoubleFromList(const char* key, int index);
  static int getValueAsIntFromList(const char* key, int index);
  /// Two numbers separated by a comma.
  static Vector2d getValueAsVector(const char* key);

  // For fuzzers and checkers, which read one configuration after another.

  /// Forgets all entries.
  static void clear();
  /// Called, when set, before a fatal error ends the process. It may throw to prevent the end.
  static void (*onFatal)(const std::string& message);
  /// Told of everything, when set.
  static ConfigObserver* observer;
};

/// Cuts a line at its first '#'.
void removeComment(char* line);
/// Takes in one line without its line end; reports what is wrong with it.
void parseLine(char* line, int lineNumber);
/// As if the file said "key = value"; replaces an earlier definition.
void setEntry(const char* key, const char* value);

}  // namespace vok
