#include "commandline.h"

#include <getopt.h>

#include <algorithm>
#include <iostream>
#include <sstream>

#include "printable.h"

namespace vok::tools {
namespace {

constexpr std::size_t HELP_COLUMN = 22;
constexpr std::size_t WIDTH = 80;
constexpr int FIRST_ROW = 256;  // getopt's number for the table's first row, beyond all letters

bool isArgument(const Option& row) {
  return !row.name.starts_with("-");
}

bool isLong(const Option& row) {
  return row.name.starts_with("--");
}

bool repeats(const Option& row) {
  return row.name.ends_with("...");
}

std::string quoted(const std::string& value) {
  return "'" + value + "'";
}

/// Prints a row of the help. Its sentence is broken into lines that share a column.
void printRow(std::ostream& out, const Option& row) {
  std::string line = "  " + row.name + (row.value.empty() ? "" : " " + row.value);
  if (line.size() + 2 > HELP_COLUMN) {
    out << line << "\n";
    line.clear();
  }
  line.resize(HELP_COLUMN, ' ');
  std::istringstream words(row.help);
  for (std::string word; words >> word;) {
    if (line.size() > HELP_COLUMN && line.size() + 1 + word.size() > WIDTH) {
      out << line << "\n";
      line.assign(HELP_COLUMN, ' ');
    }
    line += (line.size() > HELP_COLUMN ? " " : "") + word;
  }
  out << line << "\n";
}

class Reader {
 public:
  Reader(Tool& tool, std::set<std::string>& given) : tool_(tool), given_(given) {
    const Take noted = [](const std::string&) { return true; };
    tool_.options.push_back({"--help", "", "show this", noted});
    tool_.options.push_back({"--version", "", "show the version", noted});
  }

  std::optional<int> read(int argc, char** argv) {
    if (auto status = readOptions(argc, argv)) return status;
    for (int i = optind; i < argc; ++i) {
      if (auto status = readArgument(argv[i])) return status;
    }
    for (const Option& row : tool_.options) {
      if (row.required && !given_.contains(row.name)) return wrong(row.name + " is missing");
    }
    return std::nullopt;
  }

 private:
  std::optional<int> readOptions(int argc, char** argv) {
    const std::string letters = lettersForGetopt();
    const std::vector<option> names = namesForGetopt();
    opterr = 0;
    int found = 0;
    while ((found = getopt_long(argc, argv, letters.c_str(), names.data(), nullptr)) != -1) {
      if (found == ':') return wrong(std::string(argv[optind - 1]) + " needs a value");
      if (found == '?') return wrong(problemOf(argv[optind - 1]));
      const Option& row = rowOf(found);
      if (row.name == "--help") return showHelp();
      if (row.name == "--version") return show(tool_.name + " (VOK) " VOK_VERSION "\n");
      if (auto status = take(row, optarg == nullptr ? "" : optarg)) return status;
    }
    return std::nullopt;
  }

  std::optional<int> readArgument(const std::string& value) {
    for (const Option& row : tool_.options) {
      if (isArgument(row) && (repeats(row) || !given_.contains(row.name))) return take(row, value);
    }
    return wrong("unexpected argument " + quoted(value));
  }

  std::optional<int> take(const Option& row, const std::string& value) {
    given_.insert(row.name);
    if (row.take(value)) return std::nullopt;
    return fail(tool_.name, row.name + " cannot be " + quoted(value) + ": " + row.help);
  }

  // A leading ':' makes getopt tell a missing value from an unknown option.
  std::string lettersForGetopt() const {
    std::string letters = ":";
    for (const Option& row : tool_.options) {
      if (!isArgument(row) && !isLong(row)) letters += row.name[1] + valueMark(row);
    }
    return letters;
  }

  static std::string valueMark(const Option& row) { return row.value.empty() ? "" : ":"; }

  std::vector<option> namesForGetopt() const {
    std::vector<option> names;
    for (std::size_t i = 0; i < tool_.options.size(); ++i) {
      const Option& row = tool_.options[i];
      const int hasValue = row.value.empty() ? no_argument : required_argument;
      if (isLong(row)) {
        names.push_back({row.name.c_str() + 2, hasValue, nullptr, FIRST_ROW + static_cast<int>(i)});
      }
    }
    names.push_back({});
    return names;
  }

  const Option& rowOf(int found) const {
    if (found >= FIRST_ROW) return tool_.options[static_cast<std::size_t>(found - FIRST_ROW)];
    const std::string name = {'-', static_cast<char>(found)};
    return *std::find_if(tool_.options.begin(), tool_.options.end(),
                         [&](const Option& row) { return row.name == name; });
  }

  /// Tells what getopt could not read. `word` is the last word that it consumed.
  std::string problemOf(const std::string& word) const {
    if (optopt >= FIRST_ROW) return rowOf(optopt).name + " has no value";
    const std::string letter = {'-', static_cast<char>(optopt)};
    return "unknown option " + quoted(optopt == 0 ? word : letter);
  }

  int showHelp() const {
    std::ostringstream text;
    text << "Usage: " << tool_.name << " " << tool_.usage << "\n\n" << tool_.about << "\n";
    for (const Option& row : tool_.options) printRow(text, row);
    text << "\n" << tool_.end;
    return show(text.str());
  }

  int show(const std::string& text) const {
    if (std::cout << text << std::flush) return 0;
    return fail(tool_.name, "cannot write to standard output");
  }

  int wrong(const std::string& reason) const {
    return fail(tool_.name, reason + "; --help shows the usage");
  }

  Tool& tool_;
  std::set<std::string>& given_;
};

}  // namespace

std::optional<int> readCommandLine(Tool tool, int argc, char** argv, std::set<std::string>* given) {
  std::set<std::string> names;
  return Reader(tool, given == nullptr ? names : *given).read(argc, argv);
}

int fail(const std::string& tool, const std::string& reason, int status) {
  std::cerr << tool << ": " << printable(reason) << std::endl;
  return status;
}

}  // namespace vok::tools
