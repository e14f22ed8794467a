#include "serve.h"

#include <unistd.h>

#include <iostream>

#include "coachdesk.h"
#include "playerport.h"
#include "report.h"

namespace vok::practice {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto grace = seconds(1);        // for "(done)"
constexpr int maxMissedInRow = 20;        // one more and a server ends
constexpr auto afterTheEnd = seconds(6);  // for "(bye)": a coach waits 5 s for a silent server
constexpr auto stepWithoutEye = milliseconds(100);

/// One line on a terminal that shows how far the match is; nothing elsewhere.
class StatusLine {
 public:
  void show(long cycle, const std::string& text) {
    if (!terminal || Clock::now() < next) return;
    next = Clock::now() + milliseconds(100);
    std::cout << "\rcycle " << cycle << "  " << text << "\033[K" << std::flush;
  }
  ~StatusLine() {
    if (terminal) std::cout << "\r\033[K" << std::flush;
  }

 private:
  bool terminal = isatty(STDOUT_FILENO) != 0;
  Clock::time_point next;
};

/// What one coach is served by, whatever the traffic.
struct Counter {
  Session& session;
  Report report{};
  int missedInRow = 0;

  void sendAll(const std::vector<std::string>& texts) const {
    for (const std::string& text : texts) session.send(text);
  }

  /// Books the outcome of a wait for "(done)".
  void book(bool done, Clock::time_point asked, Clock::time_point answered = Clock::now()) {
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
  MatchService(const Options& serviceOptions, Session& session, Match& servedMatch,
               PlayerPort& playerPort)
      : options(serviceOptions),
        counter{session},
        match(servedMatch),
        players(playerPort),
        desk(servedMatch, counter.report, serviceOptions.lenient) {}

  const Report& run() {
    counter.sendAll(match.checkIn());
    counter.report.ending = play();
    return counter.report;
  }

 private:
  Ending play() {
    if (!serveUntil(Clock::now() + seconds(options.waitSeconds),
                    [this] { return desk.eyeOn() || desk.left(); })) {
      return stopRequested != 0 ? Ending::Interrupted : Ending::NoEye;
    }
    StatusLine status;
    next = Clock::now();
    while (!match.finished()) {
      cycle();
      status.show(match.time(), std::to_string(match.goals(Side::Left)) + " : " +
                                    std::to_string(match.goals(Side::Right)) + "  " +
                                    match.modeName());
      if (desk.left()) return overNow() ? Ending::Stayed : Ending::LeftEarly;
      if (stopRequested != 0) return Ending::Interrupted;
      if (counter.missedInRow > maxMissedInRow) return Ending::NotAnswering;
    }
    const bool bye = serveUntil(Clock::now() + afterTheEnd, [this] { return desk.left(); });
    if (stopRequested != 0) return Ending::Interrupted;
    return bye ? Ending::Stayed : Ending::Silent;
  }

  bool overNow() const { return match.modeName() == "time_over"; }

  void cycle() {
    match.cycle(texts);
    if (!desk.eyeOn()) texts.pop_back();  // the view
    counter.sendAll(texts);
    players.sendNews(texts);
    players.sendSenses();
    desk.viewSent();
    ++counter.report.cyclesSent;
    if (match.settings().synch && desk.eyeOn()) {
      think();
      next = Clock::now();
    } else {
      next += options.stepMs > 0 ? milliseconds(options.stepMs) : stepWithoutEye;
      serveUntil(next, [this] { return desk.left(); });
    }
  }

  void think() {
    desk.tookDone();  // one that came too late answers nothing
    const auto asked = Clock::now();
    auto answered = asked;
    players.think();
    counter.session.send("(think)");
    bool done = false;
    serveUntil(asked + grace, [&] {
      if (!done && desk.tookDone()) {
        done = true;
        answered = Clock::now();
      }
      return (done && players.allDone()) || desk.left();
    });
    players.endCycle();
    if (!desk.left() && stopRequested == 0) counter.book(done, asked, answered);
  }

  template <typename Enough>
  bool serveUntil(Clock::time_point deadline, Enough enough) {
    return takeUntil(
        counter.session, deadline,
        [this](const Command& command) {
          std::vector<std::string> answers;
          desk.take(command, answers);
          counter.sendAll(answers);
          players.sendNews(answers);
          players.sendMessage(desk.takeMessage());
        },
        enough);
  }

  const Options& options;
  Counter counter;
  Match& match;
  PlayerPort& players;
  CoachDesk desk;
  std::vector<std::string> texts;
  Clock::time_point next;
};

class RecordingService {
 public:
  RecordingService(const Options& serviceOptions, Session& session, const Recording& played)
      : recording(played),
        counter{session},
        inStep(serviceOptions.speed == 0 && recording.synchronous()),
        speed(serviceOptions.speed == 0 ? 1 : serviceOptions.speed) {}

  const Report& run() {
    counter.report.ending = play();
    return counter.report;
  }
  bool synch() const { return inStep; }

 private:
  Ending play() {
    StatusLine status;
    const auto start = Clock::now();
    int sent = 0;
    for (const RecordedText& entry : recording.texts) {
      if (!inStep)
        waitUntil(start +
                  std::chrono::duration_cast<Clock::duration>(
                      std::chrono::duration<double, std::milli>(entry.milliseconds / speed)));
      if (left) return over ? Ending::Stayed : Ending::LeftEarly;
      if (stopRequested != 0) return Ending::Interrupted;
      if (counter.missedInRow > maxMissedInRow) return Ending::NotAnswering;

      done = false;
      const auto sentAt = Clock::now();
      counter.session.send(entry.text);
      status.show(counter.report.cyclesSent,
                  std::to_string(++sent) + " of " + std::to_string(recording.texts.size()));
      if (entry.text.starts_with("(see_global ")) ++counter.report.cyclesSent;
      if (entry.text.ends_with(" referee time_over)")) over = true;
      if (inStep && entry.text == "(think)") waitForDone(sentAt);
    }
    // A recording that breaks off in the match ends it here, so that the coach can leave in order.
    if (!over) counter.session.send("(hear " + recording.lastTime() + " referee time_over)");
    waitUntil(Clock::now() + afterTheEnd);
    if (stopRequested != 0) return Ending::Interrupted;
    return left ? Ending::Stayed : Ending::Silent;
  }

  void waitForDone(Clock::time_point asked) {
    takeUntil(
        counter.session, asked + grace, [this](const Command& c) { take(c); },
        [this] { return done || left; });
    if (!left && stopRequested == 0) counter.book(done, asked);
  }

  void waitUntil(Clock::time_point deadline) {
    takeUntil(
        counter.session, deadline, [this](const Command& c) { take(c); }, [this] { return left; });
  }

  // The answers to its commands are in the recording: the coach is only counted.
  void take(const Command& command) {
    const std::string_view text = command.text;
    if (!command.terminated) ++counter.report.unterminated;
    done = done || text == "(done)";
    left = left || text == "(bye)";
    static constexpr std::array<std::string_view, 5> kinds = {"done", "bye", "eye", "say",
                                                              "change_player_type"};
    std::string_view kind = "unknown";
    for (const std::string_view known : kinds) {
      if (text.starts_with("(" + std::string(known))) kind = known;
    }
    ++counter.report.commands[std::string(kind)];
  }

  const Recording& recording;
  Counter counter;
  bool inStep;
  double speed;
  bool done = false;
  bool left = false;
  bool over = false;
};

/// `team` is the only one that is let in; empty: any.
std::optional<std::string> waitForCoach(const Options& options, Session& session,
                                        const std::string& team, const std::string& example) {
  std::cout << "listening on port " << session.port() << "\nstart a coach: onlinecoach -t "
            << example << " -p " << session.port() << " -f agent.conf" << std::endl;
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

int serveMatch(const Options& options, Session& session) {
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
  MatchService service(options, session, match, players);
  const Report& report = service.run();
  if (!options.quiet) report.print(std::cout, &match, settings.synch);
  return report.ending == Ending::Stayed ? 0 : 1;
}

int serveRecording(const Options& options, const Recording& recording, Session& session) {
  if (!waitForCoach(options, session, options.team, recording.team())) return 1;
  RecordingService service(options, session, recording);
  const Report& report = service.run();
  if (!options.quiet) report.print(std::cout, nullptr, service.synch());
  return report.ending == Ending::Stayed ? 0 : 1;
}

}  // namespace vok::practice
