// Tells what happened in matches: numbers from game logs and recordings.
#include <iostream>

#include "commandline.h"
#include "comparison.h"
#include "matchjobs.h"

using namespace vok;
using namespace vok::matchreport;

namespace {

constexpr int FAILED = 1;

int fail(const std::string& reason, int status) {
  return tools::fail("matchreport", reason, status);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = readOptions(options, argc, argv)) return *status;
  if (options.compare) return compare(options, std::cout);
  std::string error;
  const Outputs outputs = outputsOf(options, error);
  if (!error.empty()) return fail(error, tools::BAD_ARGUMENT);

  std::vector<Source> sources = sourcesOf(options.sources);
  if (!options.rcl.empty()) {
    if (sources.size() != 1) return fail("--rcl goes with one SOURCE only", tools::BAD_ARGUMENT);
    sources.front().textLog = options.rcl;
  }
  int status = readMatches(sources, options.jobs, outputs) ? 0 : FAILED;
  for (const auto& output : outputs) {
    if (!output->end()) status = fail("the output cannot be written", FAILED);
  }
  return status;
}
