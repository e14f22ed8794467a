// The commands: each is one text, sent at once or dropped.
#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <numbers>
#include <string>

#include "Comm.h"
#include "constants.h"
#include "playmodes.h"

namespace vok {

namespace {

// Not `toDegrees`: a command and the action that is noted of it keep their last bits.
constexpr double DEGREES = 180.0 / std::numbers::pi;

// Room for a command text with its terminator; a longer one is not sent.
constexpr std::size_t COMMAND_SIZE = 8192;
using CommandText = std::array<char, COMMAND_SIZE>;

constexpr std::array WIDTH_NAMES = {"narrow", "normal", "wide"};
constexpr std::array QUALITY_NAMES = {"low", "high"};

}  // namespace

bool Comm::sendText(const char* text) {
  try {
    if (link_ == nullptr) throw UDPSocketError("no socket", -1);
    link_->send(text, terminateTexts);
    return true;
  } catch (const UDPSocketError&) {
    timedCommError() << "agent cannot send " << text << " to server\n";
    return false;
  }
}

void Comm::sendFormatted(const char* format, ...) {
  CommandText text;
  va_list values;
  va_start(values, format);
  const int length = std::vsnprintf(text.data(), text.size(), format, values);
  va_end(values);
  if (length >= static_cast<int>(text.size())) {
    timedCommError() << "agent cannot send " << text.data() << "... to server\n";
    return;
  }
  sendText(text.data());
}

void Comm::sendDone() {
  sendText("(done)");
}
void Comm::sendSenseBody() {
  sendText("(sense_body)");
}
void Comm::sendEye(bool on) {
  sendText(on ? "(eye on)" : "(eye off)");
}
void Comm::sendEar(bool on) {
  sendText(on ? "(ear on)" : "(ear off)");
}
void Comm::sendLook() {
  sendText("(look)");
}
void Comm::sendCheckBall() {
  sendText("(check_ball)");
}
void Comm::sendRecover() {
  sendText("(recover)");
}
void Comm::sendPointToOff() {
  sendText("(pointto off)");
  ++async->pointToCount;
}
void Comm::sendAttentionToOff() {
  sendText("(attentionto off)");
  ++async->attentionToCount;
}

void Comm::sendChangePlayer(int number, int type) {
  sendFormatted("(change_player_type %d %d)", number, type);
}

void Comm::sendTeamGraphic(int column, int row, const char* strings) {
  sendFormatted("(team_graphic (%d %d%s))", column, row, strings);
}

bool Comm::intoRange(const char* command, double& value, double low, double high) const {
  constexpr double TOLERANCE = 1e-10;
  const auto trying = [&]() -> std::ostream& {
    return timedCommError() << "agent tries to send (" << command << " " << value << ")";
  };
  if (value < low - TOLERANCE) {
    trying() << ", normalizing to " << low << "\n";
    value = low;
  } else if (value > high + TOLERANCE) {
    trying() << ", normalizing to " << high << "\n";
    value = high;
  } else if (!(value >= low - TOLERANCE && value <= high + TOLERANCE)) {
    trying() << ", dropping command completely\n";
    return false;
  }
  return true;
}

void Comm::sendKick(double power, double dir) {
  double degrees = dir * DEGREES;
  if (!intoRange("kick", power, MINPOWER, MAXPOWER)) return;
  if (!intoRange("kick", degrees, MINMOMENT, MAXMOMENT)) return;
  sendFormatted("(kick %f %f)", power, degrees);
  async->sendAction(KICK_COMMAND, power, degrees / DEGREES);
}

void Comm::sendDash(double power) {
  if (!intoRange("dash", power, MINPOWER, MAXPOWER)) return;
  sendFormatted("(dash %f)", power);
  async->sendAction(DASH_COMMAND, power, 0);
}

void Comm::sendTurn(double moment) {
  double degrees = moment * DEGREES;
  if (!intoRange("turn", degrees, MINMOMENT, MAXMOMENT)) return;
  sendFormatted("(turn %f)", degrees);
  async->sendAction(TURN_COMMAND, degrees / DEGREES, 0);
}

void Comm::sendCatch(double dir) {
  double degrees = dir * DEGREES;
  if (!intoRange("catch", degrees, MINMOMENT, MAXMOMENT)) return;
  sendFormatted("(catch %f)", degrees);
  async->sendAction(CATCH_COMMAND, degrees / DEGREES, 0);
}

void Comm::sendMove(double x, double y) {
  // While the clock is known to stand, every player may move; otherwise only a goalie may,
  // with the ball it has caught.
  const bool goalieHolds = amIGoalie() && getPlayMode() == PLAY_MODE_FREE_KICK_US;
  if (isTimeRunning() && !goalieHolds) {
    timedCommError() << "agent tries to send (move " << x << " " << y
                     << ") game is running, agent not allowed to (move)\n";
    return;
  }
  sendFormatted("(move %f %f)", x, y);
  async->sendAction(MOVE_COMMAND, x, y);
}

void Comm::sendTurnNeck(double angle) {
  double degrees = angle * DEGREES;
  if (!intoRange("turn_neck", degrees, MINNECKMOMENT, MAXNECKMOMENT)) return;
  sendFormatted("(turn_neck %f)", degrees);
  async->incTurnNeckCount();
  async->twistNeck(degrees / DEGREES);
}

void Comm::sendChangeView(view_width width, view_quality quality, bool evenInSynchMode) {
  if (SYNCH_MODE && !evenInSynchMode) return;
  if (width < VIEW_WIDTH_NARROW || width > VIEW_WIDTH_WIDE) return;
  sendFormatted("(change_view %s %s)", WIDTH_NAMES[static_cast<std::size_t>(width)],
                QUALITY_NAMES[quality == VIEW_QUALITY_HIGH ? 1 : 0]);
  ++async->changeViewCount;
  async->chVisAngle = width;
  async->chVisQual = quality;
  async->viewModeTime = 0;
}

void Comm::sendPointTo(double dist, double dir) {
  sendFormatted("(pointto %f %f)", dist, dir * DEGREES);
  ++async->pointToCount;
}

void Comm::sendAttentionTo(int number, bool ourTeam) {
  if (!isShirtNumber(number)) {
    timedCommError() << "agent tries to send (attentionto " << number
                     << "), dropping command completely\n";
    return;
  }
  sendFormatted("(attentionto %s %d)", ourTeam ? "our" : "opp", number);
  ++async->attentionToCount;
}

void Comm::sendTackle(double power) {
  if (!intoRange("tackle", power, MINPOWER, MAXPOWER)) return;
  sendFormatted("(tackle %f)", power);
  async->sendAction(TACKLE_COMMAND, power, 0);
}

void Comm::sendChangeMode(play_mode mode) {
  const std::string name(playmodeName(mode, getMySide()));
  if (isTrainerMode(mode) && !name.empty()) {
    sendFormatted("(change_mode %s)", name.c_str());
    return;
  }
  timedCommError() << "trying to set unknown play mode: No." << static_cast<int>(mode)
                   << ", droping command\n";
}

void Comm::sendMoveObject(const char* name, double x, double y) {
  sendFormatted("(move %s %f %f)", name, x, y);
}

void Comm::sendMoveObject(const char* name, double x, double y, double dir) {
  sendFormatted("(move %s %f %f %f)", name, x, y, dir);
}

void Comm::sendMoveObject(const char* name, double x, double y, double dir, double vx, double vy) {
  sendFormatted("(move %s %f %f %f %f %f)", name, x, y, dir, vx, vy);
}

void Comm::say(AudioMsg& message) {
  audiomgr->SpeakTo(message);
  if (!message.isCoachMsg()) {
    sendSay(message.getEncoding());
    return;
  }
  CommandText wrapped;
  std::snprintf(wrapped.data(), wrapped.size(), "(freeform \"%s\")", message.getEncoding());
  sendSay(wrapped.data());
}

void Comm::sendSay(const char* text) {
  // A coach's text comes in its freeform wrapper, which has 13 characters, 12 of them granted.
  constexpr long PLAYER_LIMIT = 513;
  constexpr long SAY_WRAPPER = 8;
  const long wanted = async->isCoach() ? SAY_COACH_MSG_SIZE + 12L : PLAYER_LIMIT;
  const long limit = std::min<long>(wanted, long{COMMAND_SIZE} - SAY_WRAPPER);
  const std::size_t length = std::strlen(text);
  if (static_cast<long>(length) > limit) {
    timedCommError() << "client tries to send too long say message (len= " << length
                     << ")(msg= " << text << "), dropping it completely\n";
    return;
  }
  sendFormatted(async->isCoach() ? "(say %s)" : "(say \"%s\")", text);
  async->incSayCount();
}

void Comm::sendMCmd(const MCommand& command) {
  if (theComm != nullptr) theComm->sendNotStaticMCmd(command);
}

void Comm::sendNotStaticMCmd(const MCommand& command) {
  if (!ZELTRAmode) {
    std::cerr << "Not in ZELTRAmode dropping cmd: \"" << command.encoded << "\"\n";
    return;
  }
  CommandText text;
  const int length = std::snprintf(text.data(), text.size(), "(vokproxy %d %s)", command.duration,
                                   command.encoded.c_str());
  try {
    if (link_ == nullptr || length >= static_cast<int>(text.size())) {
      throw UDPSocketError("no socket, or no room", -1);
    }
    link_->send(text.data(), terminateTexts);
  } catch (const UDPSocketError&) {
    timedCommError() << "cannot send mcmd \"" << command.encoded << "\" to server.\n";
  }
}

}  // namespace vok
