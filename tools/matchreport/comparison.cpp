#include "comparison.h"

#include <filesystem>

#include "commandline.h"
#include "foldercomparison.h"
#include "matchcomparison.h"
#include "matchjobs.h"

namespace vok::matchreport {
namespace {

constexpr int UNREADABLE = 1;

/// Hands each match to a function.
class Collector : public Output {
 public:
  explicit Collector(std::function<void(const Match& match)> take) : take_(std::move(take)) {}

  MatchTaker match() override { return {{}, take_}; }
  bool end() override { return true; }

 private:
  std::function<void(const Match& match)> take_;
};

/// False when one could not be read.
bool collect(const std::string& name, int jobs, std::function<void(const Match& match)> take) {
  Outputs outputs;
  outputs.push_back(std::make_unique<Collector>(std::move(take)));
  return readMatches(sourcesOf({name}), jobs, outputs);
}

}  // namespace

int compare(const Options& options, std::ostream& out) {
  const auto fail = [](const char* reason) { return tools::fail("matchreport", reason); };
  if (!options.json.empty() || !options.csv.empty()) {
    return fail("--compare writes text only, without --json and --csv");
  }
  if (options.sources.size() != 2) return fail("--compare wants two sources");
  const auto isFolder = [](const std::string& name) {
    std::error_code error;
    return std::filesystem::is_directory(name, error);
  };
  const std::string& a = options.sources[0];
  const std::string& b = options.sources[1];
  if (isFolder(a) != isFolder(b)) return fail("--compare wants two files or two folders");

  bool allRead = true;
  if (isFolder(a)) {
    FolderComparison folders(a, b, options.team);
    allRead = collect(a, options.jobs, [&](const Match& m) { folders.addBefore(m); });
    allRead = collect(b, options.jobs, [&](const Match& m) { folders.addAfter(m); }) && allRead;
    folders.write(out);
  } else {
    std::vector<Telling> tellings;
    const auto keep = [&tellings](const Match& m) {
      tellings.push_back({m.source, m.complete, m.analysis});
    };
    allRead = collect(a, 1, keep) && collect(b, 1, keep);
    if (allRead) writeComparison(tellings[0], tellings[1], out);
  }
  if (!out.flush()) return tools::fail("matchreport", "the output cannot be written", UNREADABLE);
  return allRead ? 0 : UNREADABLE;
}

}  // namespace vok::matchreport
