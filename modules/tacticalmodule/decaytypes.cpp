#include "decaytypes.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "constants.h"

namespace vok {

namespace {

// By how many votes a type must lead each other type before it is decided.
constexpr int MIN_LEAD = 3;
// So many contradicting steps undo a verdict. Even a single one is rare when the verdict is right.
constexpr int GIVE_UP = 3;
// When at least so many steps were counted and a type fits all of them, a lead of one vote decides,
// since no step of the true type is outside its bounds.
constexpr int SURE_VOTES = 12;
// After so many steps types that are still level are told apart by other evidence.
constexpr int TWIN_STEPS = 100;
// Room around a body within which it may have been touched in the step, metres.
constexpr double CONTACT_ROOM = 0.1;
// Half a unit of the last printed digit, and a little more for products of errors and for the
// rounding of our own arithmetic.
constexpr double HALF = 0.5 * (1 + 1e-4);
// The server announces a decay with six digits after the point.
constexpr double DECAY_ERROR = HALF * 1e-6;
// A full dash is computed from two announced numbers of six significant digits; the true one may be
// greater by this share.
constexpr double FULL_DASH_ERROR = 2 * HALF * 1e-5;

/// The largest error of a number that was printed with six significant digits.
double printError(double printed) {
  const double size = std::abs(printed);
  if (size >= 100) return size * HALF * 1e-5;
  if (size >= 10) return HALF * 1e-4;
  if (size >= 1) return HALF * 1e-5;
  if (size >= 0.1) return HALF * 1e-6;
  return HALF * 1e-7;
}

Vector2d printError(Vector2d printed) {
  return {printError(printed.x), printError(printed.y)};
}

/// True for an object in this cycle's view. A predicted one decays by the prediction and tells
/// nothing.
bool isSeen(const WObject& object) {
  return object.age == 0;
}

bool isCloser(const WObject& a, const WObject& b, double distance) {
  const Vector2d gap = a.pos - b.pos;
  return gap.x * gap.x + gap.y * gap.y < distance * distance;
}

}  // namespace

/// A player's motion from one view to the next, with its uncertainty.
struct DecayTypes::Step {
  Vector2d way;
  Vector2d left;  ///< velocity at the end, after the decay
  Vector2d fromError;
  Vector2d toError;
  Vector2d leftError;
  Vector2d gained;  ///< the way less the velocity at its beginning: own dash and noise
  Vector2d gainedError;

  Step(const WPlayer& from, const WPlayer& to)
      : way(to.pos - from.pos),
        left(to.v),
        fromError(printError(from.pos)),
        toError(printError(to.pos)),
        leftError(printError(to.v)),
        gained(way - from.v),
        gainedError(fromError + toError + printError(from.v)) {}

  /// What the player's own dash has given at least, metres per cycle: the rest can be noise or
  /// rounded off.
  double leastDash() const {
    const double noise = 1.5 * PLAYER_RAND;  // in either coordinate up to PLAYER_RAND
    const double longestWay = way.getLength() + (fromError + toError).getLength();
    return (gained.getLength() - gainedError.getLength()) - longestWay * noise / (1 - noise);
  }

  /// Whether the step fits a type, alone or, where the track holds, behind the steps before it.
  /// The track then leads on.
  bool follow(double decay, Track& track) const {
    if (!track.holds) track = {{-fromError.x, fromError.x}, {-fromError.y, fromError.y}};
    const double perDecay = 1 / decay;
    track.holds = follow(perDecay, way.x, left.x, leftError.x, toError.x, track.x) &&
                  follow(perDecay, way.y, left.y, leftError.y, toError.y, track.y);
    return track.holds;
  }

 private:
  static bool follow(double perDecay, double way, double left, double leftError, double toError,
                     Offset& offset) {
    const double typesWay = left * perDecay;
    const double error = (leftError + DECAY_ERROR * std::abs(typesWay)) * std::abs(perDecay);
    offset.low = std::max(offset.low + (typesWay - way) - error, -toError);
    offset.high = std::min(offset.high + (typesWay - way) + error, toError);
    return offset.low <= offset.high;
  }
};

DecayTypes::DecayTypes(std::size_t types) {
  for (auto& ofPlayer : tracks_.slots) ofPlayer.resize(types);
}

void DecayTypes::observe(const Worldmodel& world, const Opponents& before, bool nextCycle,
                         TypeBeliefs& beliefs, Verdicts& verdicts) {
  const bool inPlay = world.playMode == PLAY_MODE_PLAY_ON;
  const bool inPlayThroughout = nextCycle && inPlay && wasInPlay_;
  wasInPlay_ = inPlay;
  if (!limits_.known) readLimits(world);

  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const bool inRow = std::exchange(evidence_[n].inRow, false);
    if (std::exchange(changesSeen_[n], world.otherTypeChanges[n]) != world.otherTypeChanges[n]) {
      forget(n, beliefs, verdicts);
      continue;
    }
    const WPlayer& player = world.otherTeam[n];
    if (!inPlayThroughout || !limits_.known || !isSeen(player) || !isSeen(before[n])) continue;
    const Step step(before[n], player);
    if (step.way.getLength() > limits_.way) continue;
    const bool isKnown = verdicts[n] != -1;
    if (!isKnown && mayHaveTouched(world, n)) continue;
    if (!inRow) endTracks(n);
    evidence_[n].inRow = true;
    if (isKnown) {
      verify(world, n, step, beliefs, verdicts);
    } else if (count(world, n, step, beliefs[n])) {
      decide(world, n, beliefs, verdicts);
    }
  }
}

void DecayTypes::readLimits(const Worldmodel& world) {
  if (world.playerType.size() != tracks_[FIRST_SHIRT].size()) return;
  double speed = PLAYER_SPEED_MAX;
  double size = PLAYER_SIZE;
  for (const WPlayerType& type : world.playerType) {
    if (type.state == -1) return;
    speed = std::max(speed, type.playerSpeedMax);
    size = std::max(size, type.playerSize);
  }
  limits_.known = !world.playerType.empty();
  // Noise comes on top of the greatest speed, up to PLAYER_RAND of it in either coordinate.
  limits_.way = speed * (1 + 1.5 * PLAYER_RAND);
  limits_.contact = 2 * size + CONTACT_ROOM;
  limits_.ballContact = size + BALL_SIZE + CONTACT_ROOM;
}

bool DecayTypes::mayHaveTouched(const Worldmodel& world, int n) const {
  const WPlayer& player = world.otherTeam[n];
  if (isSeen(world.ball) && isCloser(player, world.ball, limits_.ballContact)) return true;
  for (int i = FIRST_SHIRT; i <= LAST_SHIRT; ++i) {
    const WPlayer& opponent = world.ourTeam[i];
    const WPlayer& mate = world.otherTeam[i];
    if (isSeen(opponent) && isCloser(player, opponent, limits_.contact)) return true;
    if (i != n && isSeen(mate) && isCloser(player, mate, limits_.contact)) return true;
  }
  return false;
}

/// A verdict is held against every further step; a change may have been missed.
void DecayTypes::verify(const Worldmodel& world, int n, const Step& step, TypeBeliefs& beliefs,
                        Verdicts& verdicts) {
  const auto& types = world.playerType;
  const auto verdict = static_cast<std::size_t>(verdicts[n]);
  if (step.follow(types[verdict].playerDecay, tracks_[n][verdict])) return;
  if (mayHaveTouched(world, n)) return;
  const bool anyFits = std::any_of(types.begin(), types.end(), [&](const WPlayerType& type) {
    Track alone;
    return step.follow(type.playerDecay, alone);
  });
  if (anyFits && ++evidence_[n].against >= GIVE_UP) forget(n, beliefs, verdicts);
}

/// Gives the types that the step fits a vote each, when it tells anything: it fits some type and
/// excludes at least half of them. A player that hardly moves fits all.
bool DecayTypes::count(const Worldmodel& world, int n, const Step& step,
                       std::vector<PlayerTypeData>& beliefs) {
  auto& ofTypes = tracks_[n];
  std::size_t fitting = 0;
  for (std::size_t t = 0; t < ofTypes.size(); ++t) {
    if (step.follow(world.playerType[t].playerDecay, ofTypes[t])) ++fitting;
  }
  if (fitting == 0 || 2 * fitting > ofTypes.size()) return false;
  for (std::size_t t = 0; t < ofTypes.size(); ++t) {
    if (ofTypes[t].holds) ++beliefs[t].score;
  }
  Evidence& known = evidence_[n];
  ++known.steps;
  const double dash = step.leastDash();
  known.secondStrongest = std::max(known.secondStrongest, std::min(dash, known.strongest));
  known.strongest = std::max(known.strongest, dash);
  return true;
}

/// The type that is left when the evidence has ruled out all others.
void DecayTypes::decide(const Worldmodel& world, int n, TypeBeliefs& beliefs, Verdicts& verdicts) {
  auto& votes = beliefs[n];
  const int steps = evidence_[n].steps;
  int most = 0;
  for (const PlayerTypeData& belief : votes) most = std::max(most, belief.score);
  if (8 * (steps - most) > steps) return;

  const int lead = most >= SURE_VOTES && most == steps ? 1 : MIN_LEAD;
  std::size_t open = 0;
  std::size_t last = 0;
  for (std::size_t t = 0; t < votes.size(); ++t) {
    const bool isBehind = most - votes[t].score >= lead;
    const bool isExcluded =
        isBehind || (steps >= TWIN_STEPS && isUnlikelyTwin(world, n, t, verdicts));
    votes[t].state = isExcluded ? PTS_IMPOSSIBLE : PTS_UNKNOWN;
    if (isExcluded) continue;
    ++open;
    last = t;
  }
  if (open != 1) return;
  votes[last].state = PTS_SURE;
  verdicts[n] = static_cast<int>(last);
}

/// Decides between types of the same decay: a full dash of this one is too weak for what the
/// opponent did, or as many others as are allowed have it already.
bool DecayTypes::isUnlikelyTwin(const Worldmodel& world, int n, std::size_t type,
                                const Verdicts& verdicts) const {
  const WPlayerType& twin = world.playerType[type];
  const double fullDash = MAXPOWER * twin.dashPowerRate * twin.effortMax * (1 + FULL_DASH_ERROR);
  if (fullDash < evidence_[n].secondStrongest) return true;
  // The number of those who have the default type proves nothing: everybody starts with it.
  if (type == 0 || !(playerParams.pt_max >= 1)) return false;
  const auto owners = std::count(verdicts.begin(), verdicts.end(), static_cast<int>(type));
  return static_cast<double>(owners) >= playerParams.pt_max;
}

void DecayTypes::endTracks(int n) {
  for (Track& track : tracks_[n]) track.holds = false;
}

void DecayTypes::forget(int n, TypeBeliefs& beliefs, Verdicts& verdicts) {
  evidence_[n] = {};
  verdicts[n] = -1;
  std::fill(beliefs[n].begin(), beliefs[n].end(), PlayerTypeData{});
}

}  // namespace vok
