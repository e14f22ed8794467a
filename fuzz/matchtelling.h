// A match in a file, for the fuzzers of its readers.
#pragma once

#include <string>
#include <string_view>

#include "matchanalysis.h"
#include "matchlog.h"

namespace vok::fuzz {

/// A file in memory.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view text);
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path;

 private:
  int fd_;
};

/// Looks at the statistics of a match that was read to its end, and at what the reader says of it.
void checkMatch(const analysis::MatchAnalysis& match, const gamelogs::MatchLog& log);

}  // namespace vok::fuzz
