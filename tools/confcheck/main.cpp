// Tells what is wrong with a configuration, without a server.
#include <algorithm>
#include <array>
#include <iostream>
#include <string>
#include <vector>

#include "check.h"
#include "commandline.h"
#include "printable.h"

using namespace vok;
using namespace vok::confcheck;

namespace {

constexpr int SOMETHING_FOUND = 1;

struct Options {
  std::string file;
  bool keys = false;
};

tools::Tool commandLine(Options& options) {
  return {
      "confcheck",
      "FILE | --keys",
      "Prints one line for each thing found: keys that are missing or that nothing asks\n"
      "for, keys defined twice, values that end the coach, that it reads only in part, or\n"
      "that make no sense; and a summary.\n",
      {{"FILE", "", "a configuration of the coach; - is standard input", tools::text(options.file)},
       {"--keys", "", "print every key that the coach asks for instead",
        tools::flag(options.keys)}},
      "Exit status: 0; 1 when something is found; 2 for a wrong argument or an\n"
      "unreadable file.\n"};
}

int fail(const std::string& reason) {
  return tools::fail("confcheck", reason);
}

/// Suppresses standard error while it lives, since the coach writes there about its own start.
class Silence {
 public:
  Silence() = default;
  ~Silence() { std::cerr.rdbuf(before_); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  std::streambuf* before_ = std::cerr.rdbuf(nullptr);
};

void print(const Keys& keys) {
  constexpr std::array<const char*, 4> KINDS = {"whole number", "number", "two numbers", "text"};
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
  if (const std::string note = noteOnGraphic(); !note.empty()) {
    std::cout << fileName << ": " << note << "\n";
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
  Options options;
  if (const auto status = readCommandLine(commandLine(options), argc, argv)) return *status;
  if (options.keys != options.file.empty())
    return fail("wants one FILE, or --keys; --help tells more");

  Keys keys;
  ConfigFile file;
  std::vector<Finding> findings;
  bool readable = true;
  {
    const Silence silence;
    keys = keysOfCoach();
    if (!options.keys) {
      readable = file.read(options.file == "-" ? "/dev/stdin" : options.file.c_str());
      if (readable) findings = check(file, keys);
    }
  }
  if (!readable) {
    return fail(options.file + ": cannot be read, or has more than " +
                std::to_string(Config::MAX_LINES) + " lines");
  }
  if (options.keys) {
    print(keys);
  } else {
    print(options.file, findings, file.lines.size());
  }
  if (!std::cout.flush()) return fail("cannot write to standard output");
  return findings.empty() ? 0 : SOMETHING_FOUND;
}
