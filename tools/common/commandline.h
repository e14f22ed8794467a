// The command line of a tool. One table names the options and arguments; it is what is read,
// checked and shown as help. Every tool also has --help and --version.
#pragma once

#include <charconv>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vok::tools {

/// The exit status for a wrong argument, also for a file that cannot be read or written.
inline constexpr int BAD_ARGUMENT = 2;

/// Stores a value; false when it is wrong.
using Take = std::function<bool(const std::string& value)>;

struct Option {
  /// "--name" or "-n". A row without dashes names an argument; arguments are taken in the order of
  /// the table, one with "..." behind its name takes all that are left.
  std::string name;
  std::string value;  ///< what the help calls the option's value; empty when it has none
  std::string help;   ///< one sentence, which also says what values are right
  Take take;
  bool required = false;
};

struct Tool {
  std::string name;
  std::string usage;            ///< what follows the name on the command line
  std::string about;            ///< paragraphs of the help in front of the table
  std::vector<Option> options;  ///< without --help and --version
  std::string end;              ///< paragraphs behind the table: notes, exit status
};

/// Reads a command line into the variables that the table's rows refer to. When it returns a value,
/// the tool has to end with it as its exit status: help or version was shown, or one line about a
/// wrong argument. `given` collects the names of the rows that were used.
std::optional<int> readCommandLine(Tool tool, int argc, char** argv,
                                   std::set<std::string>* given = nullptr);

/// Writes the line "TOOL: REASON" to standard error, unprintable characters escaped, and returns
/// the status.
int fail(const std::string& tool, const std::string& reason, int status = BAD_ARGUMENT);

// Ready-made values for Option::take. The target must live until the command line is read.

inline Take flag(bool& target) {
  return [&target](const std::string&) { return target = true; };
}

/// Any text but the empty one.
inline Take text(std::string& target) {
  return [&target](const std::string& value) {
    target = value;
    return !value.empty();
  };
}

/// Reads a number in [low, high]. Nothing may follow it.
template <typename Number>
bool readNumber(const std::string& value, Number low, Number high, Number& target) {
  Number number{};
  const char* const last = value.data() + value.size();
  const auto [end, error] = std::from_chars(value.data(), last, number);
  if (error != std::errc() || end != last || !(number >= low && number <= high)) return false;
  target = number;
  return true;
}

template <typename Target, typename Number = Target>
Take number(Target& target, Number low, Number high) {
  return [&target, low, high](const std::string& value) {
    Number read{};
    if (!readNumber(value, low, high, read)) return false;
    target = read;
    return true;
  };
}

}  // namespace vok::tools
