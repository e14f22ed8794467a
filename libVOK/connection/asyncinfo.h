// The server's clock as the client sees it: when a cycle begins, and when to act on it.
#pragma once

#include <array>
#include <chrono>
#include <iosfwd>
#include <string>

#include "sensordata.h"

namespace vok {

/// A command as it was sent, for the world model's prediction.
struct CycleAction {
  long time = 0;  ///< server time
  CycleCommand command = NO_COMMAND;
  // As the command has them: powers; directions and moments in radians; places in metres, own
  // frame.
  double param1 = 0;
  double param2 = 0;
};

/// All that the neck was told to turn in one cycle.
struct NeckTurn {
  long time = 0;      ///< server time
  int commands = 0;   ///< how many commands that was
  double moment = 0;  ///< their sum, radians
};

/// Fed every parsed datagram; its `act` flag tells the main loop that a cycle is to be run. One
/// instance a process (the signal handler needs it): a second one is reported and stays unnamed.
///
/// For a coach a cycle begins with the first message of a later server time, or with a global view
/// or referee message while the clock is known to stand; in synchronous mode it also takes
/// "(think)".
/// asyncinfo.cpp opens with the states that lead there.
class AsyncCommInfo {
 public:
  AsyncCommInfo(const char* teamName, client_type clientType);
  ~AsyncCommInfo();
  AsyncCommInfo(const AsyncCommInfo&) = delete;
  AsyncCommInfo& operator=(const AsyncCommInfo&) = delete;

  /// Feeds one message; true when a body-sense message was accounted.
  bool adjust(const SensorData& data);
  /// Notes the arrival of a datagram.
  void setRecvTime();
  /// The server's "(think)" of synchronous mode.
  void think();

  /// Takes the act flag: true when a new cycle has begun, which is then taken.
  bool takeAct();
  /// In synchronous mode, true when "(think)" and a global view that opened no cycle have both
  /// come: the clock stands in a mode in which it is not known to, and the server waits.
  bool answerDue() const;
  /// To be called when the server gets that answer.
  void takeAnswer();

  /// The values known from the check-in.
  void setStates(int shirtNumber, long time, play_mode mode, playing_side ownSide, bool second);

  void setAction(CycleCommand command, long time, double p1, double p2, CycleAction& into);
  void clearAction(long time, CycleAction& into) { setAction(NO_COMMAND, time, 0, 0, into); }
  /// Records a body command of this cycle as sent, counts it and re-evaluates the act flag.
  void sendAction(CycleCommand command, double p1, double p2);
  void getLastAction(CycleAction& into) const { into = processedAction; }
  void getLostAction(CycleAction& into) const { into = lostAction; }

  const char* getTeam() const { return team.c_str(); }
  int getNumber() const { return number; }
  bool isOnlineCoach() const { return client == CLIENT_ONLINECOACH; }
  bool isTrainCoach() const { return client == CLIENT_TRAINCOACH; }
  bool isCoach() const { return isOnlineCoach() || isTrainCoach(); }
  bool isGoalie() const { return client == CLIENT_GOALIE; }
  bool isNeckTwisted() const { return neckTwisted; }
  long getServerTime() const { return serverTime; }
  play_mode getPlayMode() const { return playMode; }
  playing_side getSide() const { return side; }
  int getOurScore() const { return ourScore; }
  int getOtherScore() const { return otherScore; }
  bool inSecondHalf() const { return secondHalf; }
  /// Notes a turn of the neck as sent, radians.
  void twistNeck(double moment);
  void incSayCount() { ++sayCount; }
  void incTurnNeckCount() { ++turnNeckCount; }

  /// Handler of SIGALRM: the wait for a visual message is over. On a socket it runs in waits only
  /// (see stopsignals.h), so that it finds everything as it was left.
  static void alrmHandler(int);

  /// The one instance, null when none exists.
  static AsyncCommInfo* info;

  // Of every client.
  std::string team;
  int number = -1;
  client_type client;
  long serverTime = 0;
  play_mode playMode = PLAY_MODE_UNKNOWN;
  playing_side side = SIDE_UNKNOWN;
  int ourScore = 0;
  int otherScore = 0;
  bool secondHalf = false;
  bool thinking = false;      ///< "(think)" has come and is not yet answered
  bool nextTimestep = false;  ///< a cycle has begun and is not yet taken
  bool act = false;           ///< run the cycle now
  int sayCount = 0;           ///< messages that this client has said

  /// The second in which it was constructed, by a clock that nobody can set. All times are
  /// milliseconds since then.
  std::chrono::steady_clock::time_point startTime;
  long recvTime = 0;  ///< arrival of the latest datagram

  // Of a coach: where the global view of the present cycle is.
  enum class GlobalView {
    AWAITED,   ///< none has come since the last answer
    CAME,      ///< it came, and its cycle has begun
    IDLE,      ///< one came that opened no cycle
    OVERTAKEN  ///< the cycle began behind its "(think)" and without its view
  };
  GlobalView globalView = GlobalView::AWAITED;

  // Of a player: whether it may act yet.
  bool noSenseBodyYet = true;  ///< in this cycle
  bool actionNeeded = true;    ///< no body command was sent in this cycle
  bool waitForSee = false;
  bool abortWaitForSee = false;  ///< the wait for a visual message is over
  int waitForSeeTime = 40;       ///< per cent of a cycle that it waits for a visual message
  long cycleStartTime = 0;

  // Of a player: the commands that it has sent.
  int kickCount = 0;
  int dashCount = 0;
  int turnCount = 0;
  int turnNeckCount = 0;
  int moveCount = 0;
  int catchCount = 0;
  int changeViewCount = 0;
  int pointToCount = 0;
  int attentionToCount = 0;
  int tackleCount = 0;
  bool neckTwisted = false;  ///< in this cycle
  CycleAction sentAction;
  CycleAction processedAction;  ///< what the server is taken to have executed
  CycleAction lostAction;
  NeckTurn sentNeckTurn;
  NeckTurn processedNeckTurn;  ///< of the cycle before

  // Of a player: the visual messages of the last four cycles, and when the last of each came (ms in
  // the cycle).
  std::array<int, 4> seeMsgCnt{};
  std::array<long, 4> seeTime{};
  int seeMsgCntIndex = -1;

  // Of a player: the view mode, as the server has it and as it was requested.
  long viewModeTime = 0;  ///< cycles since it was changed
  bool viewModeUnknown = false;
  bool viewModeChangedAgain = false;
  view_width curVisAngle = VIEW_WIDTH_NARROW;
  view_quality curVisQual = VIEW_QUALITY_HIGH;
  view_width chVisAngle = VIEW_WIDTH_NARROW;  ///< requested
  view_quality chVisQual = VIEW_QUALITY_HIGH;

 private:
  std::ostream& report() const;
  bool adjustTime(const SensorData& data);
  long sinceStart() const;
  void newTimestep();
  void updateAct();
  void startTimer();
  void shortenWait(long& wait);
  void checkSyncCommandCount(const SensorData& data);
  void checkAsyncCommandCount(const SensorData& data);
  void hearReferee(const SensorData& data);
  void noteSee();
  void noteGlobalView(bool laterTime);
};

}  // namespace vok
