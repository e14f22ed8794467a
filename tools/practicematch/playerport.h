// The players' port lets players of the coach's team in and sends them calls, senses and the
// coach's messages. Their commands have no effect on the simulated players.
#pragma once

#include <netinet/in.h>

#include <string>
#include <string_view>
#include <vector>

#include "match.h"
#include "session.h"

namespace vok::practicematch {

class PlayerPort {
 public:
  /// Players are of team `coachTeam`; while that is empty, the first player's team becomes it.
  PlayerPort(const Match& match, std::string& coachTeam) : match_(match), team_(coachTeam) {}

  bool open(int port, std::string& error);
  int port() const { return publicSocket_.port(); }
  /// Lets a session serve the players while it waits for the coach.
  Company company();

  /// Sends the texts for the coach that players get as well: calls and type changes.
  void sendNews(const std::vector<std::string>& texts) const;
  void sendSenses();
  /// Sends the coach's freeform message. Does nothing when it is empty.
  void sendMessage(const std::string& message) const;

  // Synchronous mode.
  void think();
  /// Whether all players have answered "(done)". A player that has never answered does not count,
  /// or silent ones could stop the match.
  bool allDone() const;
  /// Drops the players that have not answered three times in a row.
  void endCycle();

 private:
  struct Client {
    sockaddr_in address{};
    int number = 0;
    bool answers = false;  ///< has answered once
    bool done = false;
    int missedInRow = 0;
  };

  bool serve();
  void letIn(std::string_view text, const sockaddr_in& from);
  void take(std::string_view text, const sockaddr_in& from);
  std::vector<Client>::iterator find(const sockaddr_in& address);
  int freeNumber(bool goalie) const;
  void sendToAll(const std::string& text) const;
  std::string see(const Player& p) const;

  const Match& match_;
  std::string& team_;
  Socket publicSocket_;
  Socket ownSocket_;
  std::vector<Client> clients_;
  Clock::time_point nextSenses_;
};

}  // namespace vok::practicematch
