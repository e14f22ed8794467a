// The sources of the command line: files, and what stands for a folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vok::matchreport {

struct Source {
  std::string name;         ///< of the file; "-" is standard input
  std::string textLog;      ///< that belongs to it; empty for none
  std::string problem;      ///< why there is none to read; empty when there is
  std::uintmax_t size = 0;  ///< bytes, 0 where it is not known
};

/// The text log of a game log lies beside it, with the same name and the ending .rcl or .rcl.gz.
/// A folder stands for the game logs and the recordings in it, by name, without those in its
/// folders. A recording beside a game log of the same name up to the first point is left out, as it
/// shows the same match.
std::vector<Source> sourcesOf(const std::vector<std::string>& names);

}  // namespace vok::matchreport
