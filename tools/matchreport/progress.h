// The line that tells how far the tool is, on a terminal only, when it takes longer than a second.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace vok::matchreport {

class Progress {
 public:
  Progress();
  ~Progress() { hide(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Not while somebody else writes.
  void show(std::size_t done, std::size_t all, std::uintmax_t bytes);

  /// As long as it lives, others may write to the terminal: the line is not there.
  class Pause {
   public:
    explicit Pause(Progress& progress) : lock_(progress.mutex_) { progress.hide(); }

   private:
    std::lock_guard<std::mutex> lock_;
  };

 private:
  void hide();

  std::mutex mutex_;
  bool isTerminal_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace vok::matchreport
