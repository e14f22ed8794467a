#include "seecheck.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <sstream>

#include "Comm.h"
#include "Config.h"
#include "constants.h"
#include "cycleloop.h"
#include "singlefit.h"
#include "textlink.h"

namespace vok::seecheck {

namespace {

constexpr double BALL_RANGE = 20;    // metres
constexpr double PLAYER_RANGE = 30;  // metres
constexpr int UNSEEN_CYCLES = 5;
constexpr double CLEAR_WAY = 0.25;  // metres in a cycle that tell of a decay
constexpr std::size_t ENOUGH_WAYS = 30;

// The keys that the library's objects ask for. None of them influences what is seen.
constexpr auto NEEDED_KEYS = std::to_array<const char*>(
    {"async_waitForSeeTime", "world_maxPlayersOurTeam", "world_maxPlayersOtherTeam"});

double angle(double a, double b) {
  return std::abs(toDegrees(Angle::mod2pi(a - b)));
}

/// Silences the diagnostics of the connection: the recording's commands were another program's.
class Quiet {
 public:
  Quiet() : before_(std::cerr.rdbuf(nullptr)) {}
  ~Quiet() {
    std::cerr.rdbuf(before_);
    std::cerr.clear();
  }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

 private:
  std::streambuf* before_;
};

/// Sends a recorded command through the connection, which notes it; others make no difference.
void sendCommand(Comm& comm, const std::string& text) {
  double a = 0;
  double b = 0;
  if (std::sscanf(text.c_str(), "(dash %lf", &a) == 1) comm.sendDash(a);
  if (std::sscanf(text.c_str(), "(turn %lf", &a) == 1) comm.sendTurn(toRadians(a));
  if (std::sscanf(text.c_str(), "(turn_neck %lf", &a) == 1) comm.sendTurnNeck(toRadians(a));
  if (std::sscanf(text.c_str(), "(kick %lf %lf", &a, &b) == 2) comm.sendKick(a, toRadians(b));
  if (std::sscanf(text.c_str(), "(catch %lf", &a) == 1) comm.sendCatch(toRadians(a));
  if (std::sscanf(text.c_str(), "(tackle %lf", &a) == 1) comm.sendTackle(a);
  if (std::sscanf(text.c_str(), "(move %lf %lf", &a, &b) == 2) comm.sendMove(a, b);
}

/// The velocities of one player: its way in the last cycle, and what view and world made of it. The
/// velocity that the server knows is the way slowed by the decay of the player's type, which is
/// not told of the opponents: it is taken from all views of the player together.
struct Ways {
  struct Way {
    Vector2d way;
    Vector2d ofView;
    Vector2d ofWorld;
  };

  double decay() const {
    double told = 0;
    double gone = 0;
    std::size_t clear = 0;
    for (const Way& way : all) {
      if (way.way.getLength() < CLEAR_WAY) continue;
      ++clear;
      told += way.ofView * way.way;
      gone += way.way * way.way;
    }
    return clear < ENOUGH_WAYS ? PLAYER_DECAY : told / gone;
  }

  std::vector<Way> all;
};

class Checker {
 public:
  Checker(const Truth& truth, const Worldmodel& world, Findings& findings)
      : truth_(truth), world_(world), findings_(findings) {}

  /// Before a text of a later cycle is taken in.
  void endCycle() {
    const TrueState* state = truth_.at(world_.time);
    if (state == nullptr) return;
    checkUnseen(world_.ball, state->ball, stillBall_, findings_.ballUnseen);
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      if (n != world_.my.number) checkUnseen(world_.ourTeam[n], state->ours[n], stillOurs_[n]);
      checkUnseen(world_.otherTeam[n], state->theirs[n], stillTheirs_[n]);
    }
  }

  /// After a view was taken in.
  void view(const SensorData& view) {
    ++findings_.views;
    rememberSeen();
    const TrueState* state = truth_.at(view.time);
    // At the end the last state is shown again and again, but the truth has it once.
    if (state == nullptr || world_.playMode == PLAY_MODE_TIME_OVER) {
      ++findings_.standing;
      return;
    }
    const bool low = world_.viewQuality == VIEW_QUALITY_LOW;
    if (low) ++findings_.lowViews;
    const auto fit = fitView(view, world_.ourSide);
    if (findings_.views > 1) checkSelf(*state, fit, low);
    checkBall(*state, view, fit, low);
    checkPlayers(*state, view, fit);
  }

  void finish() {
    for (const auto* team : {&ways_.first, &ways_.second}) {
      for (const Ways& ways : *team) {
        const double decay = ways.decay();
        for (const Ways::Way& way : ways.all) {
          const Vector2d v = way.way * decay;
          findings_.playerVelocity.add((way.ofWorld - v).getLength(), (way.ofView - v).getLength());
        }
      }
    }
  }

 private:
  void checkSelf(const TrueState& state, const std::optional<SingleFit>& fit, bool low) {
    Errors& position = low ? findings_.lowPosition : findings_.position;
    Errors& face = low ? findings_.lowFace : findings_.face;
    const double trueFace = state.body + state.neck;
    position.add((world_.my.pos - state.pos).getLength());
    face.add(angle(world_.my.faceDir, trueFace));
    findings_.velocity.add((world_.my.v - state.v).getLength());
    if (!fit) return;
    position.other.push_back((fit->pos - state.pos).getLength());
    face.other.push_back(angle(fit->face, trueFace));
    findings_.velocity.other.push_back((felt(*fit) - state.v).getLength());
  }

  Vector2d felt(const SingleFit& fit) const {
    Vector2d v;
    v.setRadAng(body_.speed, fit.face + body_.speed_angle);
    return v;
  }

  void checkBall(const TrueState& state, const SensorData& view,
                 const std::optional<SingleFit>& fit, bool low) {
    if (!view.ball.valid || (state.ball - state.pos).getLength() > BALL_RANGE) return;
    const double error = (world_.ball.pos - state.ball).getLength();
    if (low) return findings_.lowBall.add(error);
    findings_.ball.add(error);
    if (!fit) return;
    findings_.ball.other.push_back((fit->place(view.ball) - state.ball).getLength());
    if (!view.ball.changes) return;
    findings_.ballVelocity.add((world_.ball.v - state.ballV).getLength(),
                               (fit->velocity(view.ball, felt(*fit)) - state.ballV).getLength());
  }

  void checkPlayers(const TrueState& state, const SensorData& view,
                    const std::optional<SingleFit>& fit) {
    for (std::size_t i = 0; i < view.player.size(); ++i) {
      const SensorPlayer& seen = view.player[i];
      if (!seen.valid) continue;
      if (seen.number == -1) {
        checkGiven(state, view, i);
      } else if (seen.team != TEAM_UNKNOWN) {
        checkNumbered(state, view.time, seen, fit);
      }
    }
  }

  void checkNumbered(const TrueState& state, long time, const SensorPlayer& seen,
                     const std::optional<SingleFit>& fit) {
    const bool ours = seen.team == TEAM_US;
    const TruePlayer& real = (ours ? state.ours : state.theirs)[seen.number];
    const WPlayer& known = (ours ? world_.ourTeam : world_.otherTeam)[seen.number];
    if (!real.there || seen.dist <= 0) return;
    if ((real.pos - state.pos).getLength() > PLAYER_RANGE) return;
    findings_.players.add((known.pos - real.pos).getLength());
    if (!fit) return;
    findings_.players.other.push_back((fit->place(seen) - real.pos).getLength());
    const TrueState* before = truth_.at(time - 1);
    if (before == nullptr || !seen.changes) return;
    const TruePlayer& was = (ours ? before->ours : before->theirs)[seen.number];
    if (!was.there) return;
    (ours ? ways_.first : ways_.second)[seen.number].all.push_back(
        {real.pos - was.pos, fit->velocity(seen, felt(*fit)), known.v});
  }

  /// Whether a player without a number could be one: it stands where the roundings allow.
  static bool couldBe(const SensorPlayer& seen, const TruePlayer& real, const TrueState& state) {
    if (!real.there) return false;
    const Vector2d way = real.pos - state.pos;
    const double turn = angle(way.getAngle(), state.body + state.neck + seen.dir);
    if (turn > 0.6 && way.getLength() > 1) return false;
    if (seen.dist <= 0) return true;
    return way.getLength() >= lowerDistLimit(seen.dist, QUANTIZE_STEP) - 0.01 &&
           way.getLength() <= upperDistLimit(seen.dist, QUANTIZE_STEP) + 0.01;
  }

  void checkGiven(const TrueState& state, const SensorData& view, std::size_t index) {
    const SensorPlayer& seen = view.player[index];
    const auto& given = world_.seenAs[index];
    if (given.number != -1) {
      ++findings_.given;
      const bool ours = given.team == TEAM_US;
      const TruePlayer& real = (ours ? state.ours : state.theirs)[given.number];
      if (!couldBe(seen, real, state)) ++findings_.givenWrong;
    }
    if (seen.team == TEAM_UNKNOWN || seen.dist <= 0 || seen.dist > PLAYER_RANGE) return;
    ++findings_.unnumbered;
    if (given.number != -1) ++findings_.unnumberedGiven;
  }

  struct Still {
    Vector2d pos;
    bool known = false;
  };

  void rememberSeen() {
    if (world_.ball.age == 0) stillBall_ = {world_.ball.pos, true};
    for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
      if (world_.ourTeam[n].age == 0) stillOurs_[n] = {world_.ourTeam[n].pos, true};
      if (world_.otherTeam[n].age == 0) stillTheirs_[n] = {world_.otherTeam[n].pos, true};
    }
  }

  void checkUnseen(const WPlayer& known, const TruePlayer& real, const Still& still) {
    if (real.there) checkUnseen(known, real.pos, still, findings_.playersUnseen);
  }

  static void checkUnseen(const WObject& known, const Vector2d& real, const Still& still,
                          Errors& errors) {
    if (known.age < 1 || known.age > UNSEEN_CYCLES || !still.known) return;
    errors.add((known.pos - real).getLength(), (still.pos - real).getLength());
  }

 public:
  void body(const SensorData& data) { body_ = data; }

 private:
  const Truth& truth_;
  const Worldmodel& world_;
  Findings& findings_;
  SensorData body_;
  Still stillBall_;
  Squad<Still> stillOurs_;
  Squad<Still> stillTheirs_;
  std::pair<Squad<Ways>, Squad<Ways>> ways_;
};

/// Checks the connection in with the first three texts that were received; the number of texts
/// used, 0 when they are no check-in.
std::size_t checkIn(Comm& comm, TextLink& link, const PlayerRecording& recording) {
  std::size_t used = 0;
  for (int answers = 0; used < recording.texts.size() && answers < 3; ++used) {
    if (recording.texts[used].sent) continue;
    link.add(recording.texts[used].text);
    ++answers;
  }
  return comm.connect() == COMM_OK ? used : 0;
}

}  // namespace

bool check(const PlayerRecording& recording, const Truth& truth, Findings& findings,
           std::string& error) {
  for (const char* key : NEEDED_KEYS) setEntry(key, "0");
  const Quiet quiet;
  TextLink link;
  Comm comm(recording.team.c_str(), recording.goalie ? CLIENT_GOALIE : CLIENT_FIELDPLAYER, link, 0,
            false, 7, 8, recording.side);
  std::size_t at = checkIn(comm, link, recording);
  if (at == 0) {
    error = "the recording lacks the answers to the check-in";
    return false;
  }
  Worldmodel world(&comm);
  world.takeChangesWithoutComma();
  Checker checker(truth, world, findings);
  Parser parser(recording.team.c_str(), comm.ctype, 7, 8);
  parser.setSide(recording.side);
  for (; at < recording.texts.size(); ++at) {
    const auto& [sent, text] = recording.texts[at];
    if (sent) {
      sendCommand(comm, text);
      while (link.takeCommand()) {
      }
      continue;
    }
    SensorData data;
    const bool isRead = parser.parseServerString(text, data);
    if (isRead && data.time > world.time) checker.endCycle();
    if (isRead && data.type == SENSOR_TYPE_SENSE_BODY) checker.body(data);
    comm.receiveText(text.c_str());
    takeCycle(comm, world);
    if (isRead && data.type == SENSOR_TYPE_SEE) checker.view(data);
    while (link.takeCommand()) {
    }
  }
  checker.endCycle();
  checker.finish();
  return true;
}

}  // namespace vok::seecheck
