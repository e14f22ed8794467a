// What must hold of the world and of what is sent, whatever has come in; and that a good cycle is
// taken over behind anything.
#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <functional>
#include <initializer_list>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "constants.h"
#include "harness.h"
#include "worldstream.h"

namespace vok::fuzz {

namespace {

/// One player of the good view.
struct Placed {
  double x, y, vx, vy;
  int degrees;
  bool goalie;
};

Placed placed(bool ours, int n) {
  const double sign = ours ? -1 : 1;
  return {sign * 4.5 * n, 2.25 * n - 13, sign * 0.125, 0.25, 15 * n, n == (ours ? 1 : 3)};
}

/// The good view behind its time.
std::string goodObjects() {
  std::string text = " ((g r) 52.5 0) ((g l) -52.5 0) ((b) -20.5 7.25 0.5 -0.75)";
  std::array<char, 120> player{};
  for (const bool ours : {true, false}) {
    for (int n = 1; n <= 11; ++n) {
      const Placed p = placed(ours, n);
      std::snprintf(player.data(), player.size(), " ((p \"%s\" %d%s) %g %g %g %g %d 0)",
                    ours ? TEAM : "Beta", n, p.goalie ? " goalie" : "", p.x, p.y, p.vx, p.vy,
                    p.degrees);
      text += player.data();
    }
  }
  return text + ")";
}

// What holds of single values.

bool isAge(long age) {
  return 0 <= age && age <= NEVER;
}
bool isSlot(long next) {
  return 0 <= next && next < 10;
}
bool isShirtOrNone(int number) {
  return number == -1 || isShirtNumber(number);
}

void checkAngles(std::initializer_list<Angle> angles) {
  for (const double a : angles)
    require(-std::numbers::pi < a && a <= std::numbers::pi, "angles are normalised");
}

void checkAges(std::initializer_list<long> ages) {
  require(std::all_of(ages.begin(), ages.end(), isAge), "ages are in 0..32000");
}

/// For members of which any value is fine. A number that was computed from what the server told may
/// even be infinite.
template <typename... Members>
void anyValueIsFine(const Members&...) {}

// Where the checks name all members of an object, the compiler or one of these assertions stops at
// a new one: add it to the check.

template <typename Object>
struct WithNumber : Object {
  int number;  ///< takes the room at the end in which a new member would not be noticed
};

static_assert(sizeof(WObject) == sizeof(Vector2d) + 2 * sizeof(int));
static_assert(sizeof(WithNumber<WBall>) ==
              2 * sizeof(Vector2d) + 3 * sizeof(double) + 4 * sizeof(int));
static_assert(sizeof(WithNumber<WPlayer>) ==
              3 * sizeof(Vector2d) + 4 * sizeof(Angle) + 14 * sizeof(double) + 10 * sizeof(int));

bool isFinite(const Vector2d& v) {
  return std::isfinite(v.x) && std::isfinite(v.y);
}

void checkObject(const WObject& object) {
  checkAges({object.age});
  require(object.age > 0 || isFinite(object.pos), "what is seen or heard has a place");
  require(object.state >= UNSAFE && object.state <= VISUAL, "states are those of the list");
}

void checkMoved(const WMovedObject& object) {
  checkObject(object);
  require(object.age > 0 || isFinite(object.v), "and a velocity");
  require(object.coneTime == 0, "nobody searches");
  anyValueIsFine(object.decay, object.vmax, object.size);
}

void checkMotion(const Motion& motion) {
  for (std::size_t i = 0; i < 4; ++i)
    require(motion.cov[i][i] >= 0 && motion.cov[i][i] < 1e6, "errors are variances");
}

void checkPlayer(const WPlayer& p, int types) {
  checkMoved(p);
  checkAges({p.bodyAge, p.cyclesSinceTackle});
  checkAngles({p.bodyDir, p.faceDir, p.pointDir, p.headAngle});
  require(p.isGoalie >= GOALIE_UNKNOWN && p.isGoalie <= GOALIE_FALSE, "goalies are or are not");
  require(isFinite(p.push), "and an acceleration");
  require(isShirtOrNone(p.tacticalNo), "tactical numbers are in range");
  require(p.type >= -1 && p.type < std::max(types, 1), "types were announced");
  anyValueIsFine(p.number, p.stamina, p.effort, p.recovery, p.staminaIncMax, p.inertiaFactor,
                 p.dashPowerRate, p.kickableMargin, p.kickRand, p.extraStamina, p.effortMin,
                 p.effortMax);
}

void checkTeam(const Squad<WPlayer>& team, int types) {
  int places = 0;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    checkPlayer(team[n], types);
    require(team[n].number == n, "players keep their numbers");
    if (team[n].tacticalNo > 0) places |= 1 << team[n].tacticalNo;
  }
  require(places == 0 || places == 0xffe, "tactical numbers are distinct");
}

void checkType(const WPlayerType& type, int id) {
  const auto& [state, speedMax, decay, size, staminaInc, inertia, dashPower, margin, rand,
               extraStamina, effortMin, effortMax] = type;
  require(state == -1 || state == id, "types are stored by their numbers");
  anyValueIsFine(speedMax, decay, size, staminaInc, inertia, dashPower, margin, rand, extraStamina,
                 effortMin, effortMax);
}

void checkSubstitutions(const std::vector<Substitution>& ring) {
  for (const auto& [number, time] : ring)
    require(number == 0 || isShirtNumber(number), "changes are those of players");
}

void checkAction(const WAction& action) {
  const auto& [command, moment, power, pos] = action;
  for (const double value : {moment, power, pos.x, pos.y})
    require(std::isfinite(value), "commands hold finite numbers");
  anyValueIsFine(command);
}

/// The world is written and read back, and a text with a wrong character refused.
void checkStream(const Worldmodel& world) {
  std::ostringstream text;
  writeWorld(text, world);
  const std::string whole = text.str();
  const auto reads = [](const std::string& from, Worldmodel& into) {
    std::istringstream in(from);
    return readWorld(in, into);
  };
  Worldmodel other = world;
  other.time = 0;
  other.ball = {};
  if (reads(whole, other)) {
    std::ostringstream again;
    writeWorld(again, other);
    require(again.str() == whole, "a world that was read is the written one");
  } else {
    const bool finite = whole.find("inf") == whole.npos && whole.find("nan") == whole.npos;
    require(!finite, "a finite world can be read back");
  }
  std::string damaged = whole;
  const std::size_t at = std::hash<std::string>{}(whole) % whole.size();
  damaged[at] = static_cast<char>(damaged[at] ^ 1);
  require(!reads(damaged, other), "a damaged text is refused");
}

}  // namespace

void Match::checkWorld() const {
  const auto& [my, ourTeam, otherTeam, ourGoalieNo, otherGoalieNo, maxPlayersOurTeam,
               maxPlayersOtherTeam, ball, ourGoal, otherGoal, collState, time, visualAge,
               cyclesSinceCatch, cyclesSincePointTo, ourSide, penaltySide, playMode, ourScore,
               otherScore, action, playerType, ourSubs, otherSubs, numOurSubs, numOtherSubs,
               ourTypeChanges, otherTypeChanges, ownChangesWithoutComma, kickCount, dashCount,
               turnCount, sayCount, turnNeckCount, catchCount, moveCount, changeViewCount,
               tackleCount, pointToCount, attentionToCount, viewWidth, viewQuality, vDir, vAngle,
               vAge, vCounter, aOppDir, aOppAge, aOppCounter, aOurDir, aOurAge, aOurCounter, heard,
               heardCount, oldBallRelpos, oldMy, waitForSenseBody, seenAs, place, ourMotion,
               otherMotion, ballMotion, neck, itsComm] = *world();

  const int types = static_cast<int>(playerType.size());
  checkPlayer(my, types);
  checkPlayer(oldMy, types);
  require(-1 <= my.number && my.number <= LAST_SHIRT, "our own number is in range");
  checkTeam(ourTeam, types);
  checkTeam(otherTeam, types);
  checkMoved(ball);
  checkObject(ourGoal);
  checkObject(otherGoal);
  for (int id = 0; id < types; ++id) checkType(playerType[static_cast<std::size_t>(id)], id);
  checkAction(action);

  require(isShirtOrNone(ourGoalieNo) && isShirtOrNone(otherGoalieNo), "goalies have shirt numbers");
  for (const int size : {maxPlayersOurTeam, maxPlayersOtherTeam})
    require(0 <= size && size <= LAST_SHIRT, "teams are of eleven at most");
  require(numOurSubs >= 0 && numOtherSubs >= 0, "changes are counted up");
  for (const auto* changes : {&ourTypeChanges, &otherTypeChanges})
    for (const int count : *changes) require(count >= 0, "each player's, too");
  checkSubstitutions(ourSubs);
  checkSubstitutions(otherSubs);
  require(time >= 0 && time <= INT_MAX, "the time is one of the server's");
  require(PLAY_MODE_UNKNOWN <= playMode && playMode <= PLAY_MODE_PENALTY_SCORE_THEM,
          "play modes are those of the list");

  checkAges({visualAge, cyclesSinceCatch, cyclesSincePointTo});
  for (const auto* ages : {&vAge, &aOppAge, &aOurAge})
    require(std::all_of(ages->begin(), ages->end(), isAge), "ages are in 0..32000");
  for (const auto* angles : {&vDir, &vAngle, &aOppDir, &aOurDir})
    for (const Angle& angle : *angles) checkAngles({angle});
  require(isSlot(vCounter) && isSlot(aOppCounter) && isSlot(aOurCounter),
          "the next slots are those of the rings");
  for (const auto& [team, number] : seenAs) {
    require(isShirtOrNone(number), "players of a view are taken for players");
    anyValueIsFine(team);
  }
  require(!place.isKnown() || (isFinite(place.pos()) && std::isfinite(place.error())),
          "our own place is finite once it is known");
  require(std::isfinite(neck), "and so is the neck");
  checkMotion(ballMotion);
  for (const Motion& motion : ourMotion) checkMotion(motion);
  for (const Motion& motion : otherMotion) checkMotion(motion);
  require(itsComm == &comm(), "the world keeps its connection");
  anyValueIsFine(collState, ourSide, penaltySide, ourScore, otherScore, ownChangesWithoutComma,
                 kickCount, dashCount, turnCount, sayCount, turnNeckCount, catchCount, moveCount,
                 changeViewCount, tackleCount, pointToCount, attentionToCount, viewWidth,
                 viewQuality, heard, heardCount, oldBallRelpos, waitForSenseBody);
  if (isCoach()) {
    checkPlans();
  } else {
    checkPlayersSight();
  }
}

/// All that a player's world predicts stays near the field, metres, and slow, metres per cycle,
/// whatever it was told, and also what was never seen. A global view, which no server sends a
/// player, makes it a coach's world.
void Match::checkPlayersSight() const {
  const Worldmodel& now = *player_->world;
  if (now.my.number == 0) return;
  const auto check = [](const WMovedObject& object) {
    require(object.pos.getLength() < 2000 && object.v.getLength() < 20, "nothing flies away");
  };
  check(now.my);
  check(now.ball);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    check(now.ourTeam[n]);
    check(now.otherTeam[n]);
  }
}

void Match::decide() {
  const Worldmodel* now = player_->world.get();
  TacticalModule& tactical = *player_->tactical;
  tactical.feedbackWorld();
  for (const int number : {tactical.firstResponsiblePlayer, tactical.thirdResponsiblePlayer,
                           tactical.firstDangerousOpponent, tactical.ourAction.performer,
                           tactical.ourAction.receiver, tactical.attentionTo})
    require(isShirtOrNone(number), "who is to act is a player");
  for (int n = 0; n <= LAST_SHIRT; ++n) {
    require(isAge(tactical.ourTeamReachBallTime[n]), "times to the ball are in 0..32000");
    for (const int score :
         {player_->shots.otherEval(now, n).score, player_->passes.ourEvalProp(now, n).score,
          player_->passes.otherEval(now, n, 12 - n).score})
      require(0 <= score && score <= 100, "scores are per cent");
  }
  const Angle neck = tactical.turnHeadMoment(tactical.calcTurnHead());
  checkAngles({neck});
  tactical.reportOurTacticalAction(TA_PASS, now->my.number, tactical.attentionTo, now->ball);
  std::array<char, PlayerMessage::LENGTH + 1> said{};
  tactical.encodeAudio(tactical.determineMessageType(), said.data());
  require(PlayerMessage::read(said.data()).has_value(), "what is said can be read");
}

void Match::checkPlans() const {
  const int types = static_cast<int>(coach_->world->playerType.size());
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    require(coach_->tactical->playerType[n] >= -1 && coach_->tactical->playerType[n] < types,
            "inferred types are in range");
    require(coach_->plType[n] >= 0 && coach_->plType[n] < std::max(types, 1),
            "our types are in range");
  }
  for (const auto& place : coach_->positionEval->RealPositions)
    require(!(std::abs(place.Pos.y) > 29), "places are on the field");
}

void Match::expectGoodCycle() {
  checkStream(*world());
  const AsyncCommInfo& async = *comm().async;
  const long time = std::max(world()->time, async.getServerTime()) + 1;
  if (time > INT_MAX) return;  // the clock goes no further
  if (!async.isCoach()) return expectGoodSenses(time);
  static const std::string OBJECTS = goodObjects();
  const int before = answers_;
  receive("(see_global " + std::to_string(time) + OBJECTS);
  expectAnswer(before);
  checkView(time);
}

void Match::expectAnswer(int before) {
  if (!SYNCH_MODE) return;
  receive("(think)");
  require(answers_ > before, "a good cycle is answered");
}

void Match::expectGoodSenses(long time) {
  receive("(sense_body " + std::to_string(time) +
          " (view_mode low wide) (stamina 3210.5 0.75) (speed 0.25 90) (head_angle -30) (kick 1)"
          " (dash 2) (turn 3) (say 4) (turn_neck 5) (catch 6) (move 7) (change_view 8)"
          " (arm (movable 0) (expires 0) (target 0 0) (count 9)) (focus (target none) (count 10))"
          " (tackle (expires 0) (count 11)))");
  const Worldmodel& world = *this->world();
  require(world.time == time, "the body sense's time is taken");
  require(world.playMode == comm().getPlayMode(), "the play mode is taken");
  require(world.my.stamina == 3210.5 && world.my.effort == 0.75, "the body's state is taken");
  // The server rounds the speed to hundredths and the angle to degrees; within that, what the world
  // knew before decides.
  require(std::abs(world.my.v.getLength() - 0.25) < 0.01 &&
              std::abs(world.my.headAngle + std::numbers::pi / 6) < 0.02,
          "speed and neck are taken");
  require(world.viewWidth == VIEW_WIDTH_WIDE && world.viewQuality == VIEW_QUALITY_LOW,
          "the view mode is taken");
  require(world.kickCount == 1 && world.dashCount == 2 && world.turnCount == 3 &&
              world.sayCount == 4 && world.turnNeckCount == 5 && world.catchCount == 6 &&
              world.moveCount == 7 && world.changeViewCount == 8 && world.pointToCount == 9 &&
              world.attentionToCount == 10 && world.tackleCount == 11,
          "the counts are taken");
  receive("(see " + std::to_string(time) + " ((b) 10 -20))");
  require(world.visualAge == 0, "the view is taken");
  expectAnswer(answers_);
  expectGoodMessage(time);
}

void Match::expectGoodMessage(long time) {
  constexpr long TIME_IN_MESSAGES = 1 << 18;
  const bool left = comm().getMySide() == SIDE_LEFT;
  AudioMsg message(0, static_cast<unsigned>(time), true);
  CoachMessage told;
  told.ball = {-20.5, 7.25};
  told.write(message);
  if (!message.getState() || time >= TIME_IN_MESSAGES) return;

  AudioMgr(0, left, AudioMsg::DEFAULT_MSG_PREFIX, 1).SpeakTo(message);
  player_->heard = false;
  receive("(hear " + std::to_string(time) + (left ? " online_coach_left" : " online_coach_right") +
          " (freeform \"" + message.getEncoding() + "\"))");
  require(player_->heard && player_->world->ball.pos == Vector2d(-20.5, 7.2) &&
              player_->world->ball.age == 0,
          "a good message is heard");
}

void Match::checkView(long time) const {
  const Worldmodel& world = *this->world();
  const double turned = world.ourSide == SIDE_RIGHT ? -1 : 1;
  require(world.time == time && world.visualAge == 0, "the view's time is taken");
  require(world.playMode == comm().getPlayMode(), "the play mode is taken");
  require(world.ball.pos == turned * Vector2d(-20.5, 7.25) &&
              world.ball.v == turned * Vector2d(0.5, -0.75) && world.ball.age == 0,
          "the view's ball is taken");
  for (const bool ours : {true, false}) {
    for (int n = 1; n <= 11; ++n) {
      const Placed p = placed(ours, n);
      const WPlayer& player = (ours ? world.ourTeam : world.otherTeam)[n];
      require(player.pos == turned * Vector2d(p.x, p.y) &&
                  player.v == turned * Vector2d(p.vx, p.vy) &&
                  player.bodyDir == Angle(p.degrees * std::numbers::pi / 180) &&
                  player.isGoalie == (p.goalie ? GOALIE_TRUE : GOALIE_FALSE) && player.age == 0 &&
                  player.state == VISUAL,
              "the view's players are taken");
    }
  }
}

void Match::checkCommand(std::string_view command) {
  constexpr std::string_view SAY_HEAD = "(say (freeform \"";
  constexpr std::string_view SAY_TAIL = "\"))";
  if (command.starts_with(SAY_HEAD)) {
    require(command.ends_with(SAY_TAIL), "a say command is whole");
    command.remove_prefix(SAY_HEAD.size());
    command.remove_suffix(SAY_TAIL.size());
    require(static_cast<int>(command.size()) <= SAY_COACH_MSG_SIZE, "a message is short enough");
    require(command.find_first_not_of(msgEncodeChars) == command.npos, "of the right characters");
    require(AudioMsg(std::string(command).c_str()).isChkSumsValid(), "its checksum is valid");
  } else if (command.starts_with("(change_player_type ")) {
    int number = 0;
    int type = 0;
    std::sscanf(std::string(command).c_str(), "(change_player_type %d %d)", &number, &type);
    require(number >= 2 && number <= 11, "only field players change their types");
    const auto& types = coach_->world->playerType;
    const bool isDefault = type == 0 && coach_->typeRequests != nullptr;
    require(isDefault || (type >= 1 && type < static_cast<int>(types.size()) &&
                          types[static_cast<std::size_t>(type)].state == type),
            "only announced types are ordered");
    requests_.push_back({number, type});
  } else {
    require(command == "(done)" || command.starts_with("(eye on)") || command.starts_with("(init "),
            "a known command");
  }
}

}  // namespace vok::fuzz
