// The client's one connection to the simulator server: check-in, receive loop, commands.
#pragma once

#include <chrono>
#include <iosfwd>
#include <memory>
#include <optional>

#include "Parser.h"
#include "UDPSocket.h"
#include "asyncinfo.h"
#include "audiomgr.h"
#include "datagramlink.h"
#include "datastore.h"
#include "mcommand.h"
#include "ring.h"

namespace vok {

/// How a check-in ended.
enum comm_error {
  COMM_OK = 0,
  COMM_ERROR = 1,
  COMM_ERROR_SERVER_NOT_FOUND = 2,
  COMM_ERROR_SOCKET_INIT = 3,
  COMM_ERROR_SERVER_INIT = 4,
  COMM_ERROR_NO_DATA = 5,
  COMM_ERROR_PARSE = 6
};

class MatchRecorder;

/// Owns the socket (but not another link), the parser, the queue of records, the cycle timing and
/// the say-message manager. Exactly one may exist in a process; a second construction ends it.
/// Faults are reported on standard error and never thrown to the caller.
class Comm {
 public:
  /// `reconnect` is the shirt number of a player that comes back, 0 at the first time; the versions
  /// are those of the coach language that a player understands; `trainerSide` is a trainer's.
  Comm(const char* teamname, client_type clientType, const char* host, int port, int reconnect,
       bool ZELTRAmode, int clangMinVer, int clangMaxVer, playing_side trainerSide);
  /// Talks through a link that exists already, without a socket. `link` is not owned and is used up
  /// to the end of the destructor.
  Comm(const char* teamname, client_type clientType, Link& link, int reconnect, bool ZELTRAmode,
       int clangMinVer, int clangMaxVer, playing_side trainerSide);
  /// Says "(bye)" to a server that is alive.
  ~Comm();
  Comm(const Comm&) = delete;
  Comm& operator=(const Comm&) = delete;

  /// Has everything recorded that is received and sent from now on. `recorder` is used up to the
  /// end of the destructor.
  void record(MatchRecorder& recorder);

  /// Checks in at the server, one attempt. Once, and only when `isServerAlive`.
  comm_error connect();

  /// Receives and routes everything that is waiting; waits for the first datagram. Returns early
  /// when a cycle is to be run. A server that stays silent is taken for dead. Only when
  /// `isServerAlive`.
  void drainSocket();

  /// Routes the text of one datagram as if it had come from the socket.
  void receiveText(const char* text);

  comm_error checkinAtServer();
  /// Writes the check-in message; `buf` holds 8192 characters.
  void generateCheckinMessage(char* buf);
  comm_error parseCheckinResponse(const char* msg);

  // Commands, each one datagram at most. A failed one is reported and lost.
  void sendDone();
  void sendSenseBody();
  void sendEye(bool on);
  void sendEar(bool on);
  void sendLook();
  void sendCheckBall();
  void sendRecover();
  void sendPointToOff();
  void sendAttentionToOff();
  void sendChangePlayer(int number, int type);
  /// A tile of 8 x 8 pixels of the team's picture: its place, counted from the upper left one, and
  /// the strings of an XPM file, each in quotes with a blank before it.
  void sendTeamGraphic(int column, int row, const char* strings);
  /// Directions and moments in radians, powers in the server's scale, places in the field frame.
  /// Values out of range are reported and cut to it, values that are no number dropped.
  void sendKick(double power, double dir);
  void sendDash(double power);
  void sendTurn(double moment);
  void sendCatch(double dir);
  /// Refused while the game runs.
  void sendMove(double x, double y);
  void sendTurnNeck(double angle);
  /// In synchronous mode only when `evenInSynchMode`.
  void sendChangeView(view_width width, view_quality quality, bool evenInSynchMode);
  void sendPointTo(double dist, double dir);
  void sendAttentionTo(int number, bool ourTeam);
  void sendTackle(double power);
  // The trainer's: places, speeds and directions (degrees) as the server has them.
  void sendChangeMode(play_mode mode);
  void sendMoveObject(const char* name, double x, double y);
  void sendMoveObject(const char* name, double x, double y, double dir);
  void sendMoveObject(const char* name, double x, double y, double dir, double vx, double vy);

  /// Stamps a message and says it; a coach's goes out as freeform.
  void say(AudioMsg& message);
  /// Says a text unless it is too long for the server.
  void sendSay(const char* text);

  /// Sends a monitor command through the process's connection, with remote control only.
  static void sendMCmd(const MCommand& command);
  void sendNotStaticMCmd(const MCommand& command);

  bool isServerAlive() const { return serverOK; }
  bool isGameOver() const { return async->getPlayMode() == PLAY_MODE_TIME_OVER; }
  bool isTimeRunning() const;
  bool isActionNeeded() const { return async->actionNeeded; }
  bool inZELTRAmode() const { return ZELTRAmode; }
  long getServerTime() const { return async->getServerTime(); }
  int getMyNumber() const { return async->getNumber(); }
  bool amIGoalie() const { return async->isGoalie(); }
  const char* getMyTeam() const { return async->getTeam(); }
  playing_side getMySide() const { return async->getSide(); }
  play_mode getPlayMode() const { return async->getPlayMode(); }
  int getOurScore() const { return async->getOurScore(); }
  int getOtherScore() const { return async->getOtherScore(); }
  bool inSecondHalf() const { return async->inSecondHalf(); }
  bool getNextData(SensorData& data) { return store->getNext(data); }
  bool getNextMsg(AudioMsg& message) { return audiomgr->getNextMsg(message); }
  void getLastAction(CycleAction& action) const { async->getLastAction(action); }
  void getLostAction(CycleAction& action) const { async->getLostAction(action); }

  /// The one instance, null when none exists.
  static Comm* theComm;

  std::unique_ptr<UDPSocket> sock;  ///< null when it could not be made, or with another link
  std::unique_ptr<Parser> parser;
  std::unique_ptr<SensorDataStore> store;
  std::unique_ptr<AsyncCommInfo> async;
  std::unique_ptr<AudioMgr> audiomgr;
  Ring<Answer, 64> answers;      ///< of the server, until somebody takes them
  Ring<Answer, 64> tileAnswers;  ///< those about the tiles of the team's picture
  bool ZELTRAmode;               ///< remote control: no receive time-out, monitor commands go out
  bool serverOK = true;
  int reconnectNumber;
  client_type ctype;
  playing_side coachSide;       ///< of a trainer's check-in
  bool fakenormal = false;      ///< players: keep changing the view to feign the normal one
  bool terminateTexts = false;  ///< the server asked for NUL bytes at the ends of texts

 private:
  void claimProcess();
  void openSocket(const char* host, int port);
  void createParts(const char* teamname, int clangMinVer, int clangMaxVer);
  void route(const SensorData& data, bool newCycle, const char* text);
  void routeHear(const SensorData& data);
  void routeAnswer(const Answer& answer);
  void routeSenseBody(const SensorData& data, bool newCycle);
  void feignNormalView(view_width width);
  const char* receiveFirst();
  const char* receiveNext();
  void serverLost(const UDPSocketError& error);
  comm_error exchangeCheckin();
  bool parsePlayerCheckin(const char* msg, playing_side& side, play_mode& mode, int& number) const;
  static int receiveTimeout();
  /// When a wait for the server ends; `begun` is the end of one that a signal cut short.
  static std::chrono::steady_clock::time_point endOfWait(
      const std::optional<std::chrono::steady_clock::time_point>& begun);
  static int millisecondsUntil(std::chrono::steady_clock::time_point end);
  const char* receiveAtCheckin();
  bool sendText(const char* text);
  [[gnu::format(printf, 2, 3)]] void sendFormatted(const char* format, ...);
  bool intoRange(const char* command, double& value, double low, double high) const;
  std::ostream& commError() const;
  std::ostream& timedCommError() const;

  Link* link_ = nullptr;            ///< the socket or what is used instead; null when there is none
  std::unique_ptr<Link> recorded_;  ///< between the client and that, with a recorder

  /// When the server is taken for dead if nothing comes until then.
  std::optional<std::chrono::steady_clock::time_point> silenceEnds_;
};

}  // namespace vok
