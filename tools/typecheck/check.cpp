#include "check.h"

#include <algorithm>
#include <sstream>

#include "Comm.h"
#include "Config.h"
#include "cycleloop.h"
#include "tacticalmodule.h"
#include "textlink.h"

namespace vok::typecheck {

namespace {

constexpr double MOVED = 0.2;  // metres in a cycle that count as movement

// The keys that the library's objects ask for. None of them influences the types.
constexpr auto NEEDED_KEYS = std::to_array<const char*>(
    {"async_waitForSeeTime", "world_maxPlayersOurTeam", "world_maxPlayersOtherTeam", "ourDefenders",
     "ourDefMidfield", "ourOffMidfield", "ourOffenders", "tac_ourEdgeDefender",
     "tac_ourEdgeDefMidfield", "tac_ourEdgeOffMidfield", "tac_ourEdgeOffender", "tac_ourEdgeGoalie",
     "tac_otherEdgeDefender", "tac_otherEdgeDefMidfield", "tac_otherEdgeOffMidfield",
     "tac_otherEdgeOffender", "tac_otherEdgeGoalie"});

playing_side otherSide(playing_side side) {
  return side == SIDE_LEFT ? SIDE_RIGHT : SIDE_LEFT;
}

/// Reads the first texts of a recording: the answer to the check-in and the two parameter messages.
constexpr std::size_t CHECKIN_TEXTS = 3;

bool checkIn(Comm& comm, TextLink& link, const tools::Recording& capture, playing_side side,
             std::string& error) {
  const auto& texts = capture.texts;
  const std::string init = std::string("(init ") + (side == SIDE_LEFT ? 'l' : 'r') + " ok)";
  if (texts.size() < CHECKIN_TEXTS || texts[0].text != init) {
    error = "the capture does not begin with \"" + init + "\"";
    return false;
  }
  for (std::size_t i = 0; i < CHECKIN_TEXTS; ++i) link.add(texts[i].text);
  if (comm.connect() != COMM_OK) {
    error = "the capture lacks server_param or player_param behind its first line";
    return false;
  }
  return true;
}

/// Follows the verdicts of one run.
class Observer {
 public:
  Observer(const Truth& truth, playing_side opponents, Findings& findings)
      : truth_(truth), side_(opponents), findings_(findings) {
    findings_ = {};
    reported_.fill(-1);
  }

  void cycle(const Worldmodel& world, const TacticalModule& tactical) {
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) follow(n, world, tactical.otherPlayerType(n));
    lastTime_ = world.time;
  }

 private:
  void follow(int n, const Worldmodel& world, int verdict) {
    Finding& finding = findings_[n];
    const WPlayer& player = world.otherTeam[n];
    if (changes_[n] != world.otherTypeChanges[n]) {
      changes_[n] = world.otherTypeChanges[n];
      finding.playOn = finding.moved = 0;
    }
    if (reported_[n] == -1 && world.playMode == PLAY_MODE_PLAY_ON && world.time > lastTime_ &&
        player.age == 0) {
      ++finding.playOn;
      if (player.distTo(places_[n]) >= MOVED) ++finding.moved;
    }
    places_[n] = player.pos;
    finding.trueType = truth_.typeAt(side_, n, world.time);
    // A change may be announced shortly before or after the cycle in which the truth has it.
    const bool wrong = verdict != -1 && verdict != finding.trueType &&
                       verdict != truth_.typeAt(side_, n, world.time - 1);
    if (wrong && verdict != reported_[n]) ++finding.wrongOnTheWay;
    finding.verdict = reported_[n] = verdict;
  }

  const Truth& truth_;
  playing_side side_;
  Findings& findings_;
  Squad<int> reported_;
  Squad<int> changes_;
  Squad<Vector2d> places_;
  long lastTime_ = -1;
};

}  // namespace

bool Truth::read(std::istream& in, std::string& error) {
  entries_.clear();
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty()) continue;
    std::istringstream words(line);
    Entry entry{};
    char letter = '\0';
    std::string rest;
    if (!(words >> entry.time >> letter >> entry.number >> entry.type) || words >> rest ||
        (letter != 'l' && letter != 'r') || !isShirtNumber(entry.number) || entry.type < 0) {
      error = "line " + std::to_string(number) + " is not \"time l|r number type\"";
      return false;
    }
    entry.side = letter == 'l' ? SIDE_LEFT : SIDE_RIGHT;
    entries_.push_back(entry);
  }
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const Entry& a, const Entry& b) { return a.time < b.time; });
  if (entries_.empty()) error = in.bad() ? "cannot be read" : "is empty";
  return !entries_.empty();
}

int Truth::typeAt(playing_side side, int number, long time) const {
  int type = -1;
  for (const Entry& entry : entries_) {
    if (entry.time > time) break;
    if (entry.side == side && entry.number == number) type = entry.type;
  }
  return type;
}

bool check(const tools::Recording& capture, const Truth& truth, const std::string& team,
           playing_side side, bool fromDecay, Findings& findings, std::string& error) {
  for (const char* key : NEEDED_KEYS) setEntry(key, "0");
  setEntry("tac_typesFromDecay", fromDecay ? "1" : "0");

  TextLink link;
  Comm comm(team.c_str(), CLIENT_ONLINECOACH, link, 0, false, 7, 7, side);
  if (!checkIn(comm, link, capture, side, error)) return false;
  if (capture.team() != team) {
    error = "the capture was shown to the coach of '" + capture.team() + "'";
    return false;
  }

  Worldmodel world(&comm);
  TacticalModule tactical(&world, nullptr);
  Observer observer(truth, otherSide(side), findings);
  for (std::size_t i = CHECKIN_TEXTS; i < capture.texts.size(); ++i) {
    comm.receiveText(capture.texts[i].text.c_str());
    if (!takeCycle(comm, world)) continue;
    tactical.feedbackWorld();
    observer.cycle(world, tactical);
  }
  return true;
}

}  // namespace vok::typecheck
