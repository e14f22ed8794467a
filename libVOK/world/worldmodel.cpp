// How records change the world. A global view is exact: it replaces what it shows. Between two
// views the world is predicted cycle by cycle (worldsim.cpp), so that what a view does not show has
// moved and aged. A second view of the same cycle also predicts one cycle, on purpose, but does not
// count the time; it then replaces what it shows. The play mode, the side and the score come with
// the record as `ServerState`, because views and body senses do not carry them. Views and body
// senses that are older than the world's time are dropped.
#include "worldmodel.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <limits>
#include <sstream>

#include "Config.h"
#include "constants.h"
#include "mcommand.h"

namespace vok {

namespace {

constexpr double BENCH_X = 3.0;  ///< spacing of the players not yet seen
constexpr double BENCH_Y = -37.0;

int configuredTeamSize(const char* key) {
  return std::clamp(Config::getValueAsInt(key), 0, LAST_SHIRT);
}

std::size_t subsRingSize() {
  return static_cast<std::size_t>(numSubsMax()) + 11;
}

void countChange(int& count) {
  if (count < std::numeric_limits<int>::max()) ++count;
}

void record(std::vector<Substitution>& ring, int& count, Substitution change) {
  ring[static_cast<std::size_t>(count) % ring.size()] = change;
  countChange(count);
}

void recordVoice(std::array<Angle, 10>& dirs, std::array<long, 10>& ages, long& next, Angle dir) {
  const auto slot = static_cast<std::size_t>(next);
  dirs[slot] = dir;
  ages[slot] = 0;
  next = (next + 1) % static_cast<long>(dirs.size());
}

void writeMoved(std::ostream& out, const WMovedObject& object) {
  out << "(" << object.pos.x << " " << object.pos.y << ") (" << object.v.x << " " << object.v.y
      << ") (age " << object.age << ")";
}

void writeTeam(std::ostream& out, const char* name, const Squad<WPlayer>& team) {
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    out << "\n (" << name << " " << n << " ";
    writeMoved(out, team[n]);
    out << " (body " << team[n].bodyDir << ") (type " << team[n].type << ")"
        << (team[n].isGoalie == GOALIE_TRUE ? " goalie)" : ")");
  }
}

std::string snapshotText(const Worldmodel& world) {
  std::ostringstream text;
  text << "(sn " << world << ")";
  return text.str();
}

}  // namespace

Worldmodel::Worldmodel(Comm* connection)
    : maxPlayersOurTeam(configuredTeamSize("world_maxPlayersOurTeam")),
      maxPlayersOtherTeam(configuredTeamSize("world_maxPlayersOtherTeam")),
      ourGoal(Vector2d(-HALF_LENGTH, 0)),
      otherGoal(Vector2d(HALF_LENGTH, 0)),
      playerType(static_cast<std::size_t>(numPlayerTypes()), WPlayerType::fromDefaults()),
      ourSubs(subsRingSize()),
      otherSubs(subsRingSize()),
      comm(connection) {
  vAge.fill(NEVER);
  aOppAge.fill(NEVER);
  aOurAge.fill(NEVER);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    ourTeam[n].number = otherTeam[n].number = n;
    ourTeam[n].pos = {-BENCH_X * n, BENCH_Y};
    otherTeam[n].pos = {BENCH_X * n, BENCH_Y};
    forgetMotion(ourMotion[n]);
    forgetMotion(otherMotion[n]);
  }
  forgetMotion(ballMotion);
  if (comm != nullptr) knowMyself(*comm);
}

void Worldmodel::adjust(const SensorData& data, const ServerState& state) {
  switch (data.type) {
    case SENSOR_TYPE_HEAR:
      return hear(data);
    case SENSOR_TYPE_EXACT:
      return takeView(data, state);
    case SENSOR_TYPE_SEE:
      return takeSight(data, state);
    case SENSOR_TYPE_SENSE_BODY:
      return takeBody(data, state);
    case SENSOR_TYPE_PLAYER_TYPE:
      return takePlayerType(data.playerType);
    case SENSOR_TYPE_PLAYER_CHANGED:
      return changePlayer(data);
    default:
      return;
  }
}

void Worldmodel::takeView(const SensorData& data, const ServerState& state) {
  if (data.time < time) return;
  predictTo(data.time);
  takeServerState(state);
  adjustExact(data);
  visualAge = 0;
}

void Worldmodel::takeServerState(const ServerState& state) {
  playMode = state.mode;
  ourSide = state.side;
  ourScore = state.ourScore;
  otherScore = state.otherScore;
}

void Worldmodel::takeBody(const SensorData& data, const ServerState& state) {
  if (data.time < time) return;
  // An older action has had its effect, a lost one has none.
  if (state.lastAction.time >= time && !state.actionLost) action.store(state.lastAction);
  const long cycles = data.time - time;
  if (cycles > 0) predictTo(data.time);
  takeServerState(state);

  my.stamina = data.stamina;
  my.effort = data.effort;
  senseNeck(data, state);
  senseMotion(data, cycles);
  viewWidth = data.my_view_width;
  viewQuality = data.my_view_quality;
  kickCount = data.kick_count;
  dashCount = data.dash_count;
  turnCount = data.turn_count;
  sayCount = data.say_count;
  turnNeckCount = data.turn_neck_count;
  catchCount = data.catch_count;
  moveCount = data.move_count;
  changeViewCount = data.change_view_count;
  tackleCount = data.tackle_count;
  pointToCount = data.point_to_count;
  attentionToCount = data.attention_to_count;
}

void Worldmodel::predictTo(long viewTime) {
  // The second view of a cycle; see the head of this file.
  if (viewTime == time) return simCycle();

  // After `NEVER` cycles everything is at rest and no counter grows any more.
  const long cycles = std::min<long>(viewTime - time, NEVER);
  for (long i = 0; i < cycles; ++i) simCycle();
  time = viewTime;
}

bool Worldmodel::adjustExact(const SensorData& data) {
  time = data.time;

  my.pos = my.v = {};
  my.age = 0;
  my.decay = my.vmax = 0;
  my.bodyDir = my.faceDir = 0;
  my.number = 0;
  my.isGoalie = GOALIE_FALSE;

  if (data.exactball.valid) {
    ball.pos = toOurFrame(data.exactball.x, data.exactball.y);
    ball.v = toOurFrame(data.exactball.x_vel, data.exactball.y_vel);
    ball.age = 0;
    ball.state = VISUAL;
  }
  for (const ExactPlayer& seen : data.exactplayer) {
    if (!seen.valid || !isShirtNumber(seen.number)) continue;
    if (seen.team == TEAM_US) adjustOurPlayer(seen);
    if (seen.team == TEAM_THEM) adjustOtherPlayer(seen);
  }
  for (const ExactGoal& seen : data.exactgoal) {
    if (!seen.valid) continue;
    WObject& goal = seen.team == TEAM_US ? ourGoal : otherGoal;
    goal.pos = toOurFrame(seen.x, seen.y);
    goal.age = 0;
  }
  return true;
}

void Worldmodel::adjustOurPlayer(const ExactPlayer& seen) {
  if (seen.goalie == GOALIE_TRUE && ourGoalieNo == -1) adjustTacticalNumbers(seen.number);
  takePlayer(ourTeam[seen.number], seen);
}

void Worldmodel::adjustOtherPlayer(const ExactPlayer& seen) {
  if (seen.goalie == GOALIE_TRUE && otherGoalieNo == -1) setOtherGoalie(seen.number);
  takePlayer(otherTeam[seen.number], seen);
}

void Worldmodel::takePlayer(WPlayer& player, const ExactPlayer& seen) const {
  player.age = 0;
  player.state = VISUAL;
  player.isGoalie = seen.goalie;
  player.pos = toOurFrame(seen.x, seen.y);
  player.v = toOurFrame(seen.x_vel, seen.y_vel);
  // Directions are kept as they were sent: not turned for a team on the right, and the face
  // relative to the body. A direction that was not sent stays as it was.
  if (seen.body_dir > NO_ANGLE) {
    player.bodyDir = seen.body_dir;
    player.bodyAge = 0;
  }
  if (seen.face_dir > NO_ANGLE) player.faceDir = seen.face_dir;
}

Vector2d Worldmodel::toOurFrame(double x, double y) const {
  return ourSide == SIDE_RIGHT ? Vector2d(-x, -y) : Vector2d(x, y);
}

void Worldmodel::adjustTacticalNumbers(int goalieNo) {
  if (!isShirtNumber(goalieNo)) return;
  ourGoalieNo = goalieNo;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    WPlayer& player = ourTeam[n];
    player.isGoalie = GOALIE_FALSE;
    player.tacticalNo = n < ourGoalieNo ? n + 1 : n;
  }
  WPlayer& goalie = ourTeam[ourGoalieNo];
  goalie.isGoalie = GOALIE_TRUE;
  goalie.tacticalNo = 1;

  if (!isShirtNumber(my.number)) return;
  const WPlayer& me = ourTeam[my.number];
  my.isGoalie = me.isGoalie;
  my.tacticalNo = me.tacticalNo;
}

void Worldmodel::setOtherGoalie(int number) {
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    otherTeam[n].isGoalie = n == number ? GOALIE_TRUE : GOALIE_FALSE;
  }
  otherGoalieNo = number;
}

void Worldmodel::takePlayerType(const PlayerType& announced) {
  const auto id = static_cast<std::size_t>(announced.player_type);  // a negative one becomes huge
  if (id >= playerType.size()) return;

  WPlayerType& type = playerType[id];
  type.state = announced.player_type;
  type.playerSpeedMax =
      reachableSpeed(announced.player_speed_max, announced.dash_power_rate, announced.player_decay);
  type.playerDecay = announced.player_decay;
  type.playerSize = announced.player_size;
  type.staminaIncMax = announced.stamina_inc_max;
  type.inertiaFactor = announced.inertia_moment;
  type.dashPowerRate = announced.dash_power_rate;
  type.kickableMargin = announced.kickable_margin;
  type.kickRand = announced.kick_rand;
  type.extraStamina = announced.extra_stamina;
  type.effortMin = announced.effort_min;
  type.effortMax = announced.effort_max;
}

void Worldmodel::changePlayer(const SensorData& data) {
  const int number = data.number;
  const bool ours = data.ourTeamChanged || (ownChangesWithoutComma && data.announcedType != -1);
  const int type = ours && !data.ourTeamChanged ? data.announcedType : data.heteroType;
  if (!isShirtNumber(number) || type < -1 || type >= static_cast<int>(playerType.size())) return;

  if (!ours) {
    if (data.announcedType == -1) countChange(otherTypeChanges[number]);
    // The server does not name an opponent's type. Until it is inferred the default type holds.
    otherTeam[number].setType(WPlayerType::fromDefaults());
    otherTeam[number].type = type;
    record(otherSubs, numOtherSubs, {number, time});
    return;
  }

  const auto id = static_cast<std::size_t>(std::max(type, 0));
  if (id >= playerType.size() || playerType[id].state == -1) {
    std::cerr << "Nr. " << number << " : Player " << number << " was changed to type " << type
              << ", but I don't know that type!\n";
    return;
  }
  setOurType(number, type);
  countChange(ourTypeChanges[number]);
  record(ourSubs, numOurSubs, {number, time});
}

void Worldmodel::setOurType(int number, int type) {
  // An unnamed type is the default type, and stays unnamed.
  const WPlayerType& its = playerType[static_cast<std::size_t>(std::max(type, 0))];
  for (WPlayer* player : {&ourTeam[number], &my}) {
    if (player == &my && my.number != number) continue;
    player->setType(its);
    player->type = type;
  }
}

void Worldmodel::hear(const SensorData& data) {
  const Angle direction = my.faceDir + data.sender_dir;
  const bool directed = data.sender_dir > NO_ANGLE;
  switch (data.sender) {
    case SENDER_PLAYER_US:
      if (directed) recordVoice(aOurDir, aOurAge, aOurCounter, direction);
      if (std::strlen(data.message.data()) >= PlayerMessage::LENGTH) {
        keepMessage(data);
        decodeAudio(data.message.data(), data.sender_num, data.sender_dir);
      }
      return;
    case SENDER_PLAYER_THEM:
      if (directed) recordVoice(aOppDir, aOppAge, aOppCounter, direction);
      return;
    case SENDER_REFEREE:
      if (penaltySide == SIDE_UNKNOWN) penaltySide = data.penaltySide;
      return;
    default:
      return;
  }
}

void Worldmodel::keepMessage(const SensorData& data) {
  HeardMessage& slot = heard[static_cast<std::size_t>(heardCount) % heard.size()];
  slot.sender = data.sender_num;
  std::copy_n(data.message.begin(), slot.text.size(), slot.text.begin());
  ++heardCount;
}

void Worldmodel::writeToStream(std::ostream& out) const {
  out << "(world (time " << time << ") (mode " << playMode << ") (side " << ourSide << ") (score "
      << ourScore << " " << otherScore << ")\n (ball ";
  writeMoved(out, ball);
  out << ")";
  writeTeam(out, "our", ourTeam);
  writeTeam(out, "other", otherTeam);
  out << ")";
}

std::ostream& operator<<(std::ostream& out, const Worldmodel& world) {
  world.writeToStream(out);
  return out;
}

MSnapshot::MSnapshot(const Worldmodel& world) : MCommand(1, snapshotText(world)) {}

}  // namespace vok
