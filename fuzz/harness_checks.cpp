// What must hold of the world and of what is sent, whatever has come in; and that a good cycle is
// taken over behind anything.
#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "constants.h"
#include "harness.h"

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

}  // namespace

void Match::checkWorld() const {
  const Worldmodel& world = *coach_->world;
  const auto isAge = [](long age) { return 0 <= age && age <= NEVER; };
  const auto isAngle = [](double a) { return -std::numbers::pi < a && a <= std::numbers::pi; };
  const auto isShirtOrNone = [](int number) { return number == -1 || isShirtNumber(number); };
  const int types = static_cast<int>(world.playerType.size());

  bool agesFit = isAge(world.ball.age) && isAge(world.my.age) && isAge(world.ourGoal.age) &&
                 isAge(world.otherGoal.age) && isAge(world.visualAge);
  for (const auto* ages : {&world.vAge, &world.aOppAge, &world.aOurAge})
    agesFit = agesFit && std::all_of(ages->begin(), ages->end(), isAge);

  int places = 0;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    for (const WPlayer* player : {&world.ourTeam[n], &world.otherTeam[n]}) {
      agesFit = agesFit && isAge(player->age) && isAge(player->bodyAge) &&
                isAge(player->cyclesSinceTackle);
      require(isAngle(player->bodyDir) && isAngle(player->faceDir), "angles are normalised");
      require(player->number == n, "players keep their numbers");
      require(player->type >= -1 && player->type < std::max(types, 1), "types were announced");
    }
    require(isShirtOrNone(world.ourTeam[n].tacticalNo), "tactical numbers are in range");
    if (world.ourTeam[n].tacticalNo > 0) places |= 1 << world.ourTeam[n].tacticalNo;
  }
  require(agesFit, "ages are in 0..32000");
  require(places == 0 || places == 0xffe, "tactical numbers are distinct");
  require(isShirtOrNone(world.ourGoalieNo) && isShirtOrNone(world.otherGoalieNo),
          "goalies have shirt numbers");
  require(world.numOurSubs >= 0 && world.numOtherSubs >= 0, "changes are counted up");
  require(isAngle(world.my.bodyDir) && isAngle(world.my.faceDir), "our own angles too");
  if (coach_->comm->async->isCoach()) checkPlans();
}

void Match::checkPlans() const {
  const int types = static_cast<int>(coach_->world->playerType.size());
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    require(coach_->tactical->playerType[n] >= -1 && coach_->tactical->playerType[n] < types,
            "inferred types are in range");
  }
  for (const auto& place : coach_->positionEval->RealPositions)
    require(!(std::abs(place.Pos.y) > 29), "places are on the field");
}

void Match::expectGoodCycle() {
  const AsyncCommInfo& async = *coach_->comm->async;
  const long time = std::max(coach_->world->time, async.getServerTime()) + 1;
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
  const Worldmodel& world = *coach_->world;
  require(world.time == time, "the body sense's time is taken");
  require(world.playMode == coach_->comm->getPlayMode(), "the play mode is taken");
  require(world.my.stamina == 3210.5 && world.my.effort == 0.75, "the body's state is taken");
  require(std::abs(world.my.v.getLength() - 0.25) < 1e-9 &&
              world.my.headAngle == Angle(-std::numbers::pi / 6),
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
  const bool left = coach_->comm->getMySide() == SIDE_LEFT;
  AudioMsg message(0, static_cast<unsigned>(time), true);
  CoachMessage told;
  told.ball = {-20.5, 7.25};
  told.write(message);
  if (!message.getState() || time >= TIME_IN_MESSAGES) return;

  AudioMgr(0, left, AudioMsg::DEFAULT_MSG_PREFIX, 1).SpeakTo(message);
  heard_ = false;
  receive("(hear " + std::to_string(time) + (left ? " online_coach_left" : " online_coach_right") +
          " (freeform \"" + message.getEncoding() + "\"))");
  require(heard_ && coach_->world->ball.pos == Vector2d(-20.5, 7.2) && coach_->world->ball.age == 0,
          "a good message is heard");
}

void Match::checkView(long time) const {
  const Worldmodel& world = *coach_->world;
  const double turned = world.ourSide == SIDE_RIGHT ? -1 : 1;
  require(world.time == time && world.visualAge == 0, "the view's time is taken");
  require(world.playMode == coach_->comm->getPlayMode(), "the play mode is taken");
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
    require(type >= 1 && type < static_cast<int>(coach_->world->playerType.size()) &&
                coach_->world->playerType[static_cast<std::size_t>(type)].state == type,
            "only announced types are ordered");
  } else {
    require(command == "(done)" || command.starts_with("(eye on)") || command.starts_with("(init "),
            "a known command");
  }
}

}  // namespace vok::fuzz
