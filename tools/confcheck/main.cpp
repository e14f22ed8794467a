// Tells what is wrong with a configuration, without a server.
#include <algorithm>
#include <array>
#include <iostream>
#include <string>
#include <string_view>

#include "check.h"

using namespace vok;
using namespace vok::confcheck;

namespace {

constexpr int SOMETHING_FOUND = 1;
constexpr int BAD_ARGUMENT = 2;

constexpr std::string_view USAGE =
    "usage: confcheck FILE\n"
    "       confcheck --keys\n"
    "\n"
    "  FILE    a configuration of the coach; - is standard input\n"
    "  --keys  print every key that the coach asks for instead\n"
    "\n"
    "Prints one line for each thing found: keys that are missing or that nothing asks\n"
    "for, keys defined twice, values that end the coach, that it reads only in part, or\n"
    "that make no sense; and a summary.\n"
    "\n"
    "Exit status: 0, 1 when something is found, 2 for bad arguments or an unreadable file.\n";

/// Keeps standard error shut: what the coach says of itself here is not for the user.
class Silence {
 public:
  Silence() = default;
  ~Silence() { std::cerr.rdbuf(before_); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  std::streambuf* before_ = std::cerr.rdbuf(nullptr);
};

int fail(const std::string& reason) {
  std::cerr << "confcheck: " << reason << "\n";
  return BAD_ARGUMENT;
}

void print(const Keys& keys) {
  constexpr std::array<const char*, 3> KINDS = {"whole number", "number", "two numbers"};
  for (const Key& key : keys) {
    std::cout << key.name << ": ";
    if (key.values > 0) std::cout << "list of " << key.values << ", each a ";
    std::cout << KINDS[key.kind] << (key.optional ? ", optional" : "") << "\n";
  }
}

void print(const std::string& fileName, const std::vector<Finding>& findings,
           std::size_t numberOfKeys) {
  for (const Finding& finding : findings) {
    std::cout << fileName;
    if (finding.line > 0) std::cout << ":" << finding.line;
    std::cout << ": " << printable(finding.text) << "\n";
  }
  const auto fatal = std::count_if(findings.begin(), findings.end(),
                                   [](const Finding& finding) { return finding.endsCoach; });
  std::cout << fileName << ": ";
  if (findings.empty()) {
    std::cout << "all is well with its " << numberOfKeys << " keys\n";
  } else {
    std::cout << findings.size() << " found, of which " << fatal << " end the coach\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string argument = argc == 2 ? argv[1] : "--";
  if (argument == "--help") {
    std::cout << USAGE;
    return 0;
  }
  const bool listKeys = argument == "--keys";
  if (!listKeys && argument.starts_with("--")) {
    return fail("wants one FILE, or --keys; --help tells more");
  }

  Keys keys;
  ConfigFile file;
  std::vector<Finding> findings;
  bool readable = true;
  {
    const Silence silence;
    keys = keysOfCoach();
    if (!listKeys) readable = file.read(argument == "-" ? "/dev/stdin" : argument.c_str());
    if (!listKeys && readable) findings = check(file, keys);
  }
  if (!readable) return fail(argument + ": cannot be read");
  if (listKeys) {
    print(keys);
  } else {
    print(argument, findings, file.lines.size());
  }
  if (!std::cout.flush()) return fail("cannot write to standard output");
  return findings.empty() ? 0 : SOMETHING_FOUND;
}
