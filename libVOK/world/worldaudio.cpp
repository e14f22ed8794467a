// What the world tells in say messages, and what it believes of those it hears. The coach sees
// everything exactly, so its positions count like the player's own sight; a team-mate's words are
// `FUZZY` and never replace what is known as freshly. The characters are the business of
// coachmessage.h and playermessage.h. A message is read to its end before anything of it is taken.
#include "constants.h"
#include "worldmodel.h"

namespace vok {

namespace {

void placeAt(WMovedObject& object, const Vector2d& pos, WObjectState state, int age) {
  object.pos = pos;
  object.age = age;
  object.coneTime = 0;
  object.state = state;
}

}  // namespace

CoachMessage Worldmodel::coachMessage() const {
  CoachMessage told;
  told.ourGoalie = ourGoalieNo;
  told.otherGoalie = otherGoalieNo;
  told.ball = ball.pos;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    told.ourTeam[n] = ourTeam[n].pos;
    told.otherTeam[n] = otherTeam[n].pos;
  }
  return told;
}

AudioMsg& operator<<(AudioMsg& aum, const Worldmodel& world) {
  if (aum.isCoachMsg()) world.coachMessage().writePicture(aum);
  return aum;
}

bool Worldmodel::feedbackAudio(AudioMsg& audioMsg) {
  if (!audioMsg.isCoachMsg()) return false;
  if (static_cast<long>(audioMsg.getServerTime()) < time - 1) return false;
  const std::optional<CoachMessage> told = CoachMessage::readPicture(audioMsg);
  if (!told) return false;

  if (told->ourGoalie != -1 && ourGoalieNo == -1) adjustTacticalNumbers(told->ourGoalie);
  if (told->otherGoalie != -1 && otherGoalieNo == -1) setOtherGoalie(told->otherGoalie);
  placeAt(ball, told->ball, VISUAL, 0);
  ball.v = {};
  const int types = static_cast<int>(playerType.size());
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    placeAt(ourTeam[n], told->ourTeam[n], VISUAL, 0);
    placeAt(otherTeam[n], told->otherTeam[n], VISUAL, 0);
    otherTeam[n].type = told->otherTypes[n] < types ? told->otherTypes[n] : -1;
  }
  if (isShirtNumber(my.number)) ourTeam[my.number] = my;
  return true;
}

void Worldmodel::encodeAudio(MessageType msgType, char* msg, const WBall& comball) const {
  PlayerMessage told;
  told.type = msgType;
  if (msgType == MSGTYPE_POSITION) {
    told.pos = my.pos;
    told.stamina = my.stamina;
  } else {
    const WBall& spoken = msgType == MSGTYPE_SIM_ACTION ? comball : ball;
    told.pos = spoken.pos;
    told.velocity = spoken.v;
    told.age = spoken.age;
    told.seen = spoken.state == VISUAL;
    told.centreDistance = my.pos.getLength();
  }
  told.write(msg);
}

void Worldmodel::decodeAudio(const char* msg, int sender, double senderDir) {
  if (!isShirtNumber(sender) || sender == my.number) return;
  const std::optional<PlayerMessage> told = PlayerMessage::read(msg);
  if (!told) return;

  WPlayer& speaker = ourTeam[sender];
  if (told->type == MSGTYPE_POSITION) {
    speaker.stamina = told->stamina;
    if (speaker.age > 0) placeAt(speaker, told->pos, FUZZY, 0);
    return;
  }
  // A simulated ball is a plan and says nothing of the real one.
  if (told->type != MSGTYPE_SIM_ACTION && told->age < ball.age) {
    placeAt(ball, told->pos, FUZZY, told->age);
    ball.v = told->velocity;
  }
  placeSpeaker(speaker, told->centreDistance, senderDir);
}

/// The speaker is where the direction of the voice meets the circle of its distance from the centre
/// spot. From inside the circle there is one such point, from outside two or none. The distance is
/// rounded, so the listener must be inside the smallest circle that it may mean.
void Worldmodel::placeSpeaker(WPlayer& speaker, double centreDist, double direction) const {
  if (!isShirtNumber(my.number) || !(direction > NO_ANGLE) || speaker.age == 0) return;
  if (my.pos.getLength() > centreDist - PlayerMessage::DISTANCE_ERROR) return;
  Vector2d ray;
  ray.setRadAng(1, my.faceDir + direction);
  double behind = 0;
  double ahead = 0;
  if (intersectLineCircle(ray, -my.pos, centreDist, behind, ahead) != Intersect::Valid) return;
  placeAt(speaker, my.pos + ray * ahead, FUZZY, 0);
}

}  // namespace vok
