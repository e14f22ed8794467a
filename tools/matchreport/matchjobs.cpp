#include "matchjobs.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include "printable.h"
#include "progress.h"

namespace vok::matchreport {
namespace {

/// A match on its way from its source to the outputs.
struct Reading {
  std::unique_ptr<Match> match;
  std::vector<MatchTaker> takers;
};

Reading read(const Source& source, const Outputs& outputs) {
  Reading reading;
  for (const auto& output : outputs) reading.takers.push_back(output->match());
  const bool watched = std::any_of(reading.takers.begin(), reading.takers.end(),
                                   [](const MatchTaker& taker) { return bool(taker.frame); });
  const EachFrame eachFrame = [&reading](const analysis::Frame& frame, std::string_view mode,
                                         const Match& soFar) {
    for (const MatchTaker& taker : reading.takers) {
      if (taker.frame) taker.frame(frame, mode, soFar);
    }
  };
  reading.match = readMatch(source, watched ? eachFrame : EachFrame());
  return reading;
}

void say(const std::string& what) {
  std::cerr << "matchreport: " << printable(what) << '\n';
}

class Jobs {
 public:
  Jobs(const std::vector<Source>& sources, int jobs, const Outputs& outputs)
      : sources_(sources), outputs_(outputs), waiting_(2 * static_cast<std::size_t>(jobs)) {}

  /// What each thread does.
  void work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      const auto allBegun = [this] { return begun_ == sources_.size(); };
      moved_.wait(lock, [&] { return allBegun() || begun_ < handedOn_ + waiting_.size(); });
      if (allBegun()) return;
      const std::size_t mine = begun_++;
      lock.unlock();
      Reading reading = read(sources_[mine], outputs_);
      lock.lock();
      waiting_[mine % waiting_.size()] = std::move(reading);
      handOn(lock);
    }
  }

  /// Waits for all of it.
  void watch() {
    constexpr std::chrono::milliseconds TICK(250);
    std::unique_lock lock(mutex_);
    while (!moved_.wait_for(lock, TICK, [this] { return handedOn_ == sources_.size(); })) {
      progress_.show(handedOn_, sources_.size(), bytes_);
    }
  }

  bool allRead() const { return allRead_; }

 private:
  void handOn(std::unique_lock<std::mutex>& lock) {
    if (handingOn_) return;
    handingOn_ = true;
    while (waiting_[handedOn_ % waiting_.size()].match) {
      Reading reading = std::move(waiting_[handedOn_ % waiting_.size()]);
      lock.unlock();
      {
        const Progress::Pause pause(progress_);
        handOn(reading);
      }
      reading = {};
      lock.lock();
      bytes_ += sources_[handedOn_].size;
      ++handedOn_;
      moved_.notify_all();
    }
    handingOn_ = false;
  }

  void handOn(Reading& reading) {
    Match& match = *reading.match;
    if (!match.isRead()) {
      say(match.source + " " + match.error);
      allRead_ = false;
      return;
    }
    if (!match.remark.empty()) say(match.source + " is read as far as it goes: " + match.remark);
    if (!match.textLogProblem.empty()) say(match.textLogProblem);
    allRead_ = allRead_ && (match.clients || match.textLogProblem.empty());
    makeUnique(match);
    for (const MatchTaker& taker : reading.takers) taker.take(match);
  }

  /// Two matches of the same minute, teams and score get a number each.
  void makeUnique(Match& match) {
    const std::string key = match.key;
    for (int n = 2; !keys_.insert(match.key).second; ++n) match.key = key + "-" + std::to_string(n);
  }

  const std::vector<Source>& sources_;
  const Outputs& outputs_;
  Progress progress_;

  std::mutex mutex_;  ///< of what follows
  std::condition_variable moved_;
  std::size_t begun_ = 0;
  std::size_t handedOn_ = 0;
  std::uintmax_t bytes_ = 0;      ///< of the sources that were handed on
  std::vector<Reading> waiting_;  ///< of source i at i % size
  bool handingOn_ = false;        ///< a thread does; it alone uses what follows

  std::set<std::string> keys_;
  bool allRead_ = true;
};

}  // namespace

bool readMatches(const std::vector<Source>& sources, int jobs, const Outputs& outputs) {
  Jobs all(sources, jobs, outputs);
  std::vector<std::thread> threads;
  try {
    const std::size_t wanted = std::min(static_cast<std::size_t>(jobs), sources.size());
    while (threads.size() < wanted) threads.emplace_back([&all] { all.work(); });
  } catch (const std::system_error&) {  // there are no more threads to be had
    if (threads.empty()) all.work();
  }
  all.watch();
  for (std::thread& thread : threads) thread.join();
  return all.allRead();
}

}  // namespace vok::matchreport
