#include "progress.h"

#include <unistd.h>

#include <iomanip>
#include <iostream>
#include <sstream>

namespace vok::matchreport {

Progress::Progress()
    : isTerminal_(isatty(STDERR_FILENO) != 0), start_(std::chrono::steady_clock::now()) {}

void Progress::show(std::size_t done, std::size_t all, std::uintmax_t bytes) {
  constexpr double MEGABYTE = 1e6;
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start_;
  if (!isTerminal_ || seconds.count() < 1) return;
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock.owns_lock()) return;
  std::ostringstream line;
  line << "\r\033[K" << done << " of " << all << " matches done, " << all - done << " left";
  if (bytes > 0) {
    line << ", " << std::fixed << std::setprecision(1)
         << static_cast<double>(bytes) / MEGABYTE / seconds.count() << " MB/s";
  }
  std::cerr << line.str() << std::flush;
  shown_ = true;
}

void Progress::hide() {
  if (shown_) std::cerr << "\r\033[K" << std::flush;
  shown_ = false;
}

}  // namespace vok::matchreport
