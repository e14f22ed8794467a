#include "serve.h"

#include <unistd.h>

#include <iostream>

#include "coachdesk.h"
#include "playerport.h"
#include "printable.h"
#include "report.h"

namespace vok::practicematch {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto GRACE = seconds(1);          // for "(done)"
constexpr int MAX_MISSED_IN_ROW = 20;       // a real server ends after one more
constexpr auto AFTER_THE_END = seconds(6);  // for "(bye)": a coach waits 5 s for a silent server
constexpr auto STEP_WITHOUT_EYE = milliseconds(100);

/// Shows on one line how far the match is when standard output is a terminal.
class StatusLine {
 public:
  void show(long cycle, const std::string& text) {
    if (!terminal_ || Clock::now() < next_) return;
    next_ = Clock::now() + milliseconds(100);
    std::cout << "\rcycle " << cycle << "  " << text << "\033[K" << std::flush;
  }
  ~StatusLine() {
    if (terminal_) std::cout << "\r\033[K" << std::flush;
  }

 private:
  bool terminal_ = isatty(STDOUT_FILENO) != 0;
  Clock::time_point next_;
};

/// What serving a coach needs for a simulated match and for a recording alike.
struct Counter {
  Session& session;
  Report report{};
  int missedInRow = 0;

  void sendAll(const std::vector<std::string>& texts) const {
    for (const std::string& text : texts) session.send(text);
  }

  /// Counts the outcome of a wait for "(done)".
  void count(bool done, Clock::time_point asked, Clock::time_point answered = Clock::now()) {
    if (done) {
      const std::chrono::duration<double, std::milli> took = answered - asked;
      report.answerTimes.push_back(took.count());
    } else {
      ++report.cyclesMissed;
    }
    missedInRow = done ? 0 : missedInRow + 1;
  }
};

/// Takes commands until `enough` holds; false at the deadline.
template <typename Take, typename Enough>
bool takeUntil(Session& session, Clock::time_point deadline, Take take, Enough enough) {
  while (!enough()) {
    const auto command = session.receive(deadline);
    if (command) {
      take(*command);
    } else if (stopRequested != 0 || Clock::now() >= deadline) {
      return false;
    }
  }
  return true;
}

class MatchService {
 public:
  MatchService(const Options& options, Session& session, Match& match, PlayerPort& playerPort,
               GameLogKeeper& gameLog)
      : options_(options),
        counter_{session},
        match_(match),
        players_(playerPort),
        gameLog_(gameLog),
        desk_(match, counter_.report, options.lenient) {}

  const Report& run() {
    gameLog_.begin(match_);
    counter_.sendAll(match_.checkIn());
    counter_.report.ending = play();
    return counter_.report;
  }

 private:
  Ending play() {
    if (!serveUntil(Clock::now() + seconds(options_.waitSeconds),
                    [this] { return desk_.eyeOn() || desk_.left(); })) {
      return stopRequested != 0 ? Ending::Interrupted : Ending::NoEye;
    }
    StatusLine status;
    next_ = Clock::now();
    while (!match_.finished()) {
      cycle();
      status.show(match_.time(), std::to_string(match_.goals(Side::Left)) + " : " +
                                     std::to_string(match_.goals(Side::Right)) + "  " +
                                     match_.modeName());
      if (desk_.left()) return overNow() ? Ending::Stayed : Ending::LeftEarly;
      if (stopRequested != 0) return Ending::Interrupted;
      if (counter_.missedInRow > MAX_MISSED_IN_ROW) return Ending::NotAnswering;
    }
    const bool bye = serveUntil(Clock::now() + AFTER_THE_END, [this] { return desk_.left(); });
    if (stopRequested != 0) return Ending::Interrupted;
    return bye ? Ending::Stayed : Ending::Silent;
  }

  bool overNow() const { return match_.modeName() == "time_over"; }

  void cycle() {
    const long timeBefore = match_.time();
    match_.cycle(texts_);
    gameLog_.cycle(match_, texts_);
    if (match_.time() == timeBefore) ++counter_.report.cyclesStanding;
    if (!desk_.eyeOn()) texts_.pop_back();  // the view
    counter_.sendAll(texts_);
    players_.sendNews(texts_);
    players_.sendSenses();
    desk_.viewSent();
    ++counter_.report.cyclesSent;
    if (match_.settings().synch && desk_.eyeOn()) {
      think();
      next_ = Clock::now();
    } else {
      next_ += options_.stepMs > 0 ? milliseconds(options_.stepMs) : STEP_WITHOUT_EYE;
      serveUntil(next_, [this] { return desk_.left(); });
    }
  }

  void think() {
    desk_.tookDone();  // discard one that came too late
    const auto asked = Clock::now();
    auto answered = asked;
    players_.think();
    counter_.session.send("(think)");
    bool done = false;
    serveUntil(asked + GRACE, [&] {
      if (!done && desk_.tookDone()) {
        done = true;
        answered = Clock::now();
      }
      return (done && players_.allDone()) || desk_.left();
    });
    players_.endCycle();
    if (!desk_.left() && stopRequested == 0) counter_.count(done, asked, answered);
  }

  template <typename Enough>
  bool serveUntil(Clock::time_point deadline, Enough enough) {
    return takeUntil(
        counter_.session, deadline,
        [this](const Command& command) {
          gameLog_.command(match_, command.text);
          std::vector<std::string> answers;
          desk_.take(command, answers);
          counter_.sendAll(answers);
          players_.sendNews(answers);
          players_.sendMessage(desk_.takeMessage());
        },
        enough);
  }

  const Options& options_;
  Counter counter_;
  Match& match_;
  PlayerPort& players_;
  GameLogKeeper& gameLog_;
  CoachDesk desk_;
  std::vector<std::string> texts_;
  Clock::time_point next_;
};

class RecordingService {
 public:
  RecordingService(const Options& options, Session& session, const tools::Recording& played)
      : recording_(played),
        counter_{session},
        inStep_(options.speed == 0 && recording_.synchronous()),
        speed_(options.speed == 0 ? 1 : options.speed) {}

  const Report& run() {
    counter_.report.ending = play();
    return counter_.report;
  }
  bool synch() const { return inStep_; }

 private:
  Ending play() {
    StatusLine status;
    const auto start = Clock::now();
    int sent = 0;
    for (const tools::RecordedText& entry : recording_.texts) {
      if (!inStep_)
        waitUntil(start +
                  std::chrono::duration_cast<Clock::duration>(
                      std::chrono::duration<double, std::milli>(entry.milliseconds / speed_)));
      if (left_) return over_ ? Ending::Stayed : Ending::LeftEarly;
      if (stopRequested != 0) return Ending::Interrupted;
      if (counter_.missedInRow > MAX_MISSED_IN_ROW) return Ending::NotAnswering;

      done_ = false;
      const auto sentAt = Clock::now();
      counter_.session.send(entry.text);
      status.show(counter_.report.cyclesSent,
                  std::to_string(++sent) + " of " + std::to_string(recording_.texts.size()));
      if (entry.text.starts_with("(see_global ")) ++counter_.report.cyclesSent;
      if (entry.text.ends_with(" referee time_over)")) over_ = true;
      if (inStep_ && entry.text == "(think)") waitForDone(sentAt);
    }
    // A recording that breaks off in the match ends it here, so that the coach can leave in order.
    if (!over_) counter_.session.send("(hear " + recording_.lastTime() + " referee time_over)");
    waitUntil(Clock::now() + AFTER_THE_END);
    if (stopRequested != 0) return Ending::Interrupted;
    return left_ ? Ending::Stayed : Ending::Silent;
  }

  void waitForDone(Clock::time_point asked) {
    takeUntil(
        counter_.session, asked + GRACE, [this](const Command& c) { take(c); },
        [this] { return done_ || left_; });
    if (!left_ && stopRequested == 0) counter_.count(done_, asked);
  }

  void waitUntil(Clock::time_point deadline) {
    takeUntil(
        counter_.session, deadline, [this](const Command& c) { take(c); },
        [this] { return left_; });
  }

  // The recording holds the answers to the recorded commands. Commands are only counted here.
  void take(const Command& command) {
    const std::string_view text = command.text;
    if (!command.terminated) ++counter_.report.unterminated;
    done_ = done_ || text == "(done)";
    left_ = left_ || text == "(bye)";
    static constexpr std::array<std::string_view, 5> KINDS = {"done", "bye", "eye", "say",
                                                              "change_player_type"};
    std::string_view kind = "unknown";
    for (const std::string_view known : KINDS) {
      if (text.starts_with("(" + std::string(known))) kind = known;
    }
    ++counter_.report.commands[std::string(kind)];
  }

  const tools::Recording& recording_;
  Counter counter_;
  bool inStep_;
  double speed_;
  bool done_ = false;
  bool left_ = false;
  bool over_ = false;
};

/// `team` is the only one that is let in; empty: any.
std::optional<std::string> waitForCoach(const Options& options, Session& session,
                                        const std::string& team, const std::string& example) {
  std::cout << "listening on port " << session.port() << "\nstart a coach: onlinecoach -t "
            << printable(example) << " -p " << session.port() << " -f agent.conf" << std::endl;
  auto came = session.waitForCoach(Clock::now() + seconds(options.waitSeconds), team);
  if (!came) {
    std::cerr << "practicematch: "
              << (stopRequested != 0
                      ? "interrupted before a coach came"
                      : "no coach came within " + std::to_string(options.waitSeconds) + " s")
              << std::endl;
  }
  return came;
}

bool openToPlayers(int port, PlayerPort& players, Session& session) {
  std::string error;
  if (!players.open(port, error)) {
    std::cerr << "practicematch: player port " << port << ": " << error << std::endl;
    return false;
  }
  std::cout << "players: port " << players.port() << std::endl;
  session.keep(players.company());
  return true;
}

}  // namespace

int serveMatch(const Options& options, Session& session, GameLogKeeper& gameLog) {
  MatchSettings settings = options.match;
  settings.port = session.port();
  Match match(settings);
  std::string coachTeam = options.team;
  PlayerPort players(match, coachTeam);
  if (options.playerPort && !openToPlayers(*options.playerPort, players, session)) return 1;

  const auto team =
      waitForCoach(options, session, coachTeam, coachTeam.empty() ? "VOK" : coachTeam);
  if (!team) return 1;
  coachTeam = *team;
  match.meet(coachTeam);
  MatchService service(options, session, match, players, gameLog);
  const Report& report = service.run();
  if (!options.quiet) report.print(std::cout, &match, settings.synch);
  if (!gameLog.end()) {
    std::cerr << "practicematch: the game log cannot be written" << std::endl;
    return 1;
  }
  return report.ending == Ending::Stayed ? 0 : 1;
}

int serveRecording(const Options& options, const tools::Recording& recording, Session& session) {
  if (!waitForCoach(options, session, options.team, recording.team())) return 1;
  RecordingService service(options, session, recording);
  const Report& report = service.run();
  if (!options.quiet) report.print(std::cout, nullptr, service.synch());
  return report.ending == Ending::Stayed ? 0 : 1;
}

}  // namespace vok::practicematch
