// The configuration: one file of "key = value" lines, read once at start.
//
// Values are kept as text and converted on every request, so modules ask once, when they are
// built. A typed request for a key that is missing or malformed writes a line that names the key
// and ends the process with status 10.
#pragma once

#include <cstddef>
#include <string>

#include "coordinates.h"

namespace vok {

/// A typed request for a value.
struct ConfigRequest {
  enum Kind { INTEGER, REAL, VECTOR, TEXT };

  const char* key;
  Kind kind;
  int index;  ///< of a list's element, -1 for a plain value
  bool optional;
};

/// An observer is told how the configuration is read and used. It may set an entry while it is told
/// of a request; the request then finds that entry.
class ConfigObserver {
 public:
  virtual ~ConfigObserver() = default;
  /// The next line with its line end, or a piece of a line that is too long, before it is parsed.
  virtual void lineRead(const char* /*line*/) {}
  /// What is wrong with the line that was read last.
  virtual void lineError(const std::string& /*problem*/) {}
  /// The key that the line defines.
  virtual void keyDefined(const std::string& /*key*/) {}
  /// Before the value is looked up.
  virtual void requested(const ConfigRequest& /*request*/) {}
};

class Config {
 public:
  static constexpr std::size_t PIECE_SIZE = 1024;  ///< of a line, with the terminating NUL
  static constexpr int MAX_LINES = 100'000;        ///< bounds a file that never ends, as a device

  /// Reads a file into the process-wide store; a later definition of a key replaces an earlier
  /// one. False when the file cannot be opened or read, or, with a line that says so, when it does
  /// not end within `MAX_LINES`. A line in error is reported and skipped.
  static bool readFile(const char* fileName);

  /// The text of a key, or null after a warning line. Valid until the key is set again.
  static const char* getValue(const char* key);

  static double getValueAsDouble(const char* key);
  static int getValueAsInt(const char* key);
  /// A key that may be missing, without a line about it: then the value is `fallback`.
  static int getOptionalInt(const char* key, int fallback);
  /// The same for a text, without the blanks around it.
  static std::string getOptionalText(const char* key, const char* fallback);
  static double getOptionalDoubleFromList(const char* key, int index, double fallback);
  /// Element `index` (from 0) of a comma-separated list.
  static double getValueAsDoubleFromList(const char* key, int index);
  static int getValueAsIntFromList(const char* key, int index);
  /// Two numbers separated by a comma.
  static Vector2d getValueAsVector(const char* key);

  // For fuzzers and checkers, which read one configuration after another in one process.

  /// Removes all entries.
  static void clear();
  /// Called before a fatal error ends the process, unless null. An exception thrown here reaches
  /// the caller of the request, and the process goes on.
  static void (*onFatal)(const std::string& message);
  /// The observer of every line and request; null for none. Not owned.
  static ConfigObserver* observer;
};

/// Cuts a line at its first '#'.
void removeComment(char* line);
/// Stores the entry of one line, given without its line end. A line in error is reported under its
/// number and stores nothing. The comment is cut off in place.
void parseLine(char* line, int lineNumber);
/// Stores an entry in place of an earlier one of that key.
void setEntry(const char* key, const char* value);

}  // namespace vok
