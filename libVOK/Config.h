// The configuration: one file of "key = value" lines, read once at start.
//
// Values are kept as text and converted on every request, so modules ask once, when they are
// built. A typed request for a key that is missing or malformed ends the process with status 10
// after a line that names it.
#pragma once

#include <string>

#include "coordinates.h"

namespace vok {

class Config {
 public:
  /// Reads a file into the process-wide store; a later definition of a key replaces an earlier
  /// one. False when the file cannot be opened or read; a line in error is reported and skipped.
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
};

/// Cuts a line at its first '#'.
void removeComment(char* line);
/// Takes in one line without its line end; reports what is wrong with it.
void parseLine(char* line, int lineNumber);
void setEntry(const char* key, const char* value);

}  // namespace vok
