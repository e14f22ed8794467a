#include "check.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "nearest.h"
#include "rules.h"
#include "scanner.h"
#include "teamgraphic.h"

namespace vok::confcheck {

namespace {

const std::string TYPES_KEY = "use_heterogenous_players";
const std::string GRAPHIC_KEY = "team_graphic";
const std::string HEADS = "our";  // only the keys of the head counts begin so

/// Records where the lines of a file define keys, and what is wrong with them.
class LineNotes : public ConfigObserver {
 public:
  explicit LineNotes(ConfigFile& file) : file_(file) { Config::observer = this; }
  ~LineNotes() override { Config::observer = nullptr; }
  LineNotes(const LineNotes&) = delete;
  LineNotes& operator=(const LineNotes&) = delete;

  void lineRead(const char* text) override {
    const std::size_t length = std::strlen(text);
    if (tooLong_ && length > 0 && text[0] != '\n' && noted_ != line_) {
      note("line longer than " + std::to_string(Config::PIECE_SIZE - 1) +
           " characters: what is behind them counts as a line of its own");
    } else if (line_ > 0 && !ended_ && !tooLong_) {
      note("a NUL byte ends the line");
    }
    if (!tooLong_) ++line_;
    ended_ = length > 0 && text[length - 1] == '\n';
    tooLong_ = !ended_ && length == Config::PIECE_SIZE - 1;
  }
  void lineError(const std::string& problem) override { note(problem); }
  void keyDefined(const std::string& key) override { file_.lines[key].push_back(line_); }

 private:
  void note(const std::string& text) {
    file_.findings.push_back({line_, text, false});
    noted_ = line_;
  }

  ConfigFile& file_;
  int line_ = 0;  ///< number of the current line; long lines are read in pieces
  int noted_ = 0;
  bool ended_ = true;
  bool tooLong_ = false;
};

struct Refusal {
  std::string message;
};

/// While it lives, a value that the configuration refuses throws instead of ending the process.
class Refusals {
 public:
  Refusals() {
    Config::onFatal = [](const std::string& message) { throw Refusal{message}; };
  }
  ~Refusals() { Config::onFatal = nullptr; }
  Refusals(const Refusals&) = delete;
  Refusals& operator=(const Refusals&) = delete;
};

/// Reads a value as the coach does. Of a vector it returns the first number.
double numberOf(const Key& key, int index) {
  const char* name = key.name.c_str();
  const bool whole = key.kind == ConfigRequest::INTEGER;
  if (key.kind == ConfigRequest::VECTOR) return Config::getValueAsVector(name).x;
  if (key.values == 0) return whole ? Config::getValueAsInt(name) : Config::getValueAsDouble(name);
  return whole ? Config::getValueAsIntFromList(name, index)
               : Config::getValueAsDoubleFromList(name, index);
}

/// The part of a text that the coach reads as a number.
std::string_view readPart(std::string_view text, ConfigRequest::Kind kind) {
  Scanner scanner(text);
  int integer = 0;
  double real = 0;
  scanner.skipBlanks();
  const std::string_view number = scanner.rest();
  if (kind == ConfigRequest::INTEGER ? scanner.integer(integer) : scanner.real(real)) {
    return number.substr(0, number.size() - scanner.rest().size());
  }
  return {};
}

std::vector<std::string_view> elementsOf(std::string_view list) {
  std::vector<std::string_view> elements;
  while (true) {
    const std::size_t comma = list.find(',');
    elements.push_back(trimmed(list.substr(0, comma)));
    if (comma == list.npos) return elements;
    list.remove_prefix(comma + 1);
  }
}

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

class Checker {
 public:
  Checker(const ConfigFile& ofFile, const Keys& knownKeys)
      : file_(ofFile), keys_(knownKeys), findings_(ofFile.findings) {}

  std::vector<Finding> run() {
    checkDefinitions();
    for (const Key& key : keys_) checkKey(key);
    checkHeads();
    std::stable_sort(findings_.begin(), findings_.end(), [](const Finding& a, const Finding& b) {
      return b.line == 0 ? a.line != 0 : a.line != 0 && a.line < b.line;
    });
    return findings_;
  }

 private:
  bool isDefined(const std::string& name) const { return file_.lines.contains(name); }
  bool isKnown(const std::string& name) const {
    return std::any_of(keys_.begin(), keys_.end(),
                       [&name](const Key& key) { return key.name == name; });
  }
  int lineOf(const Key& key) const { return file_.lines.at(key.name).back(); }

  void add(int line, const std::string& text, bool endsCoach = false) {
    findings_.push_back({line, text, endsCoach});
  }

  void checkDefinitions() {
    for (const auto& [name, lines] : file_.lines) {
      for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        add(lines[i], quoted(name) + " does not count: it is defined again in line " +
                          std::to_string(lines.back()));
      }
      if (!isKnown(name)) checkUnknown(name, lines.back());
    }
  }

  void checkUnknown(const std::string& name, int line) {
    const Key* near = nearest(name, keys_, [this](const Key& key) { return !isDefined(key.name); });
    const std::string hint = near == nullptr ? "" : "; is " + quoted(near->name) + " meant?";
    add(line, "nothing asks for " + quoted(name) + hint);
  }

  void checkKey(const Key& key) {
    if (isDefined(key.name)) {
      checkValue(key);
    } else if (!key.optional && (!key.wish || typesAreGiven())) {
      add(0, "no value for key " + quoted(key.name) + " found.", true);
    }
  }

  /// The coach asks for wishes only when it is to give types. A malformed value counts as yes.
  bool typesAreGiven() const {
    int number = 1;
    if (isDefined(TYPES_KEY)) Scanner(Config::getValue(TYPES_KEY.c_str())).integer(number);
    return number == 1;
  }

  void checkText(const Key& key) {
    if (key.name != GRAPHIC_KEY) return;
    const std::string file = Config::getOptionalText(GRAPHIC_KEY.c_str(), "");
    std::string error;
    if (file.empty() || TeamGraphic::fromFile(file, error) != nullptr) return;
    add(lineOf(key), quoted(key.name) + " is " + quoted(file) + ": " + error);
  }

  void checkValue(const Key& key) {
    if (key.kind == ConfigRequest::TEXT) return checkText(key);
    const std::string value = Config::getValue(key.name.c_str());
    const std::vector<std::string_view> elements = elementsOf(value);
    const int given = static_cast<int>(elements.size());
    if (given < key.values) {
      add(lineOf(key),
          quoted(key.name) + " has only " + std::to_string(given) + " of the " +
              std::to_string(key.values) + " values that are read",
          true);
    }
    for (int i = 0; i < std::min(given, std::max(key.values, 1)); ++i) {
      const std::optional<double> number = checkNumber(key, i);
      if (!number) return;
      const std::string_view text =
          key.values > 0 ? elements[static_cast<std::size_t>(i)] : trimmed(value);
      checkRest(key, text);
      if (const std::string wrong = problemOf(key, *number, keys_); !wrong.empty()) {
        add(lineOf(key), quoted(key.name) + " is " + std::string(readPart(text, key.kind)) + wrong);
      }
    }
    if (key.values > 0 && given > key.values) {
      add(lineOf(key), quoted(key.name) + " has " + std::to_string(given) +
                           " values, of which only " + std::to_string(key.values) + " are read");
    }
  }

  /// The number that the coach reads, or nothing when it refuses the value.
  std::optional<double> checkNumber(const Key& key, int index) {
    try {
      return numberOf(key, index);
    } catch (const Refusal& refusal) {
      add(lineOf(key), refusal.message, true);
      return std::nullopt;
    }
  }

  void checkRest(const Key& key, std::string_view text) {
    const std::string_view read = readPart(text, key.kind);
    if (key.kind == ConfigRequest::VECTOR || read == text) return;
    add(lineOf(key), "of " + quoted(text) + " for key " + quoted(key.name) + " only " +
                         quoted(read) + " is read");
  }

  void checkHeads() {
    long sum = 0;
    int line = 0;
    std::string counts;
    for (const Key& key : keys_) {
      if (!key.name.starts_with(HEADS)) continue;
      int count = 0;
      if (!isDefined(key.name) || !Scanner(Config::getValue(key.name.c_str())).integer(count)) {
        return;  // this has a finding of its own
      }
      sum += count;
      line = std::max(line, lineOf(key));
      counts += (counts.empty() ? "" : " + ") + std::to_string(count);
    }
    if (sum != 10) {
      add(line,
          "the head counts " + counts + " make " + std::to_string(sum) + " field players, not ten");
    }
  }

  const ConfigFile& file_;
  const Keys& keys_;
  std::vector<Finding> findings_;
  const Refusals refusals_;
};

}  // namespace

bool ConfigFile::read(const char* fileName) {
  Config::clear();
  LineNotes notes(*this);
  return Config::readFile(fileName);
}

std::string noteOnGraphic() {
  std::string error;
  const std::string file = Config::getOptionalText(GRAPHIC_KEY.c_str(), "");
  const auto graphic = file.empty() ? nullptr : TeamGraphic::fromFile(file, error);
  if (graphic == nullptr) return "";
  return "the team graphic needs " + std::to_string(graphic->tiles()) +
         " cycles; a server in real time leaves about 50 before each half";
}

std::vector<Finding> check(const ConfigFile& file, const Keys& keys) {
  return Checker(file, keys).run();
}

}  // namespace vok::confcheck
