// The check-in: one attempt to become the server's client.
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string_view>

#include "Comm.h"
#include "ensure.h"
#include "printable.h"
#include "scanner.h"
#include "stopsignals.h"

namespace vok {

namespace {

constexpr std::size_t CHECKIN_SIZE = 8192;

bool readSide(char letter, playing_side& side) {
  if (letter != 'l' && letter != 'r') return false;
  side = letter == 'l' ? SIDE_LEFT : SIDE_RIGHT;
  return true;
}

}  // namespace

comm_error Comm::connect() {
  const comm_error result = checkinAtServer();
  if (result != COMM_OK) return result;
  audiomgr->setStates(getMyNumber(), getMySide() == SIDE_LEFT);
  serverOK = true;
  return COMM_OK;
}

comm_error Comm::checkinAtServer() {
  try {
    return exchangeCheckin();
  } catch (const UDPTimeOut& error) {
    std::cerr << "CommError: " << error.msg() << "\n";
    return COMM_ERROR_NO_DATA;
  } catch (const UDPSocketError& error) {
    std::cerr << "CommError: " << error.msg() << "\n";
    return COMM_ERROR_SERVER_INIT;
  }
}

comm_error Comm::exchangeCheckin() {
  std::array<char, CHECKIN_SIZE> message{};
  generateCheckinMessage(message.data());
  link_->send(message.data(), false);

  const char* answer = receiveAtCheckin();
  const comm_error result = parseCheckinResponse(answer);
  if (result != COMM_OK) {
    commError() << "cannot handle server checkin response " << printable(firstLine(answer)) << "\n";
    return result;
  }
  if (ctype == CLIENT_GOALIE || ctype == CLIENT_FIELDPLAYER) {
    std::snprintf(message.data(), message.size(), "(clang (ver %d %d))", parser->getCLangMinVer(),
                  parser->getCLangMaxVer());
    link_->send(message.data(), false);
  }

  // The two parameter messages come in this order, but either is taken for the other.
  const char* text = receiveAtCheckin();
  if (!parser->parseServerParam(text)) {
    if (!parser->parsePlayerParam(text)) {
      commError() << "cannot parse server_param " << printable(firstLine(text)) << "\n";
      return COMM_ERROR_SERVER_INIT;
    }
    commError() << "got player_param instead of server_param\n";
  }
  text = receiveAtCheckin();
  if (!parser->parsePlayerParam(text)) {
    if (!parser->parseServerParam(text)) {
      commError() << "cannot parse player_param " << printable(firstLine(text)) << "\n";
      return COMM_ERROR_SERVER_INIT;
    }
    commError() << "got server_param instead of player_param\n";
  }
  return COMM_OK;
}

const char* Comm::receiveAtCheckin() {
  // An alarm from outside changes nothing: wait for the rest of the time. A request to stop ends
  // the check-in.
  for (std::optional<std::chrono::steady_clock::time_point> end;;) {
    end = endOfWait(end);
    try {
      return link_->recv(millisecondsUntil(*end), nullptr);
    } catch (const UDPSocketError& error) {
      if (error.number() != EINTR || isStopRequested()) throw;
    }
  }
}

void Comm::generateCheckinMessage(char* buf) {
  buf[0] = '\0';
  if (reconnectNumber > 0) {
    if (ctype == CLIENT_GOALIE || ctype == CLIENT_FIELDPLAYER) {
      std::snprintf(buf, CHECKIN_SIZE, "(reconnect %s %d)", getMyTeam(), reconnectNumber);
    } else if (ctype != CLIENT_UNKNOWN) {
      ensure(reconnectNumber == 0, "Comm");
    }
    return;
  }
  switch (ctype) {
    case CLIENT_GOALIE:
      std::snprintf(buf, CHECKIN_SIZE, "(init %s (version 9.00) (goalie))", getMyTeam());
      break;
    case CLIENT_FIELDPLAYER:
    case CLIENT_ONLINECOACH:
      std::snprintf(buf, CHECKIN_SIZE, "(init %s (version 9.00))", getMyTeam());
      break;
    case CLIENT_TRAINCOACH:
      std::snprintf(buf, CHECKIN_SIZE, "(init (version 9.00))");
      break;
    case CLIENT_UNKNOWN:
      break;
  }
}

comm_error Comm::parseCheckinResponse(const char* msg) {
  const bool reconnecting = reconnectNumber > 0;
  int number = -1;
  play_mode mode = PLAY_MODE_UNKNOWN;
  playing_side side = SIDE_UNKNOWN;

  switch (ctype) {
    case CLIENT_ONLINECOACH: {
      if (reconnecting) {
        ensure(reconnectNumber == 0, "Comm");
        break;
      }
      // What follows the letter is not looked at.
      Scanner scan(msg);
      char letter = 0;
      if (!scan.literal("(init") || !scan.skipBlanks().character(letter) ||
          !readSide(letter, side)) {
        return COMM_ERROR_PARSE;
      }
      number = 0;
      mode = PLAY_MODE_BEFORE_KICK_OFF;
      sendEye(true);
      break;
    }
    case CLIENT_TRAINCOACH:
      if (reconnecting) {
        ensure(reconnectNumber == 0, "Comm");
        break;
      }
      if (std::string_view(msg) != "(init ok)") return COMM_ERROR_PARSE;
      number = 0;
      side = coachSide;
      mode = coachSide == SIDE_LEFT ? PLAY_MODE_KICK_OFF_US : PLAY_MODE_KICK_OFF_THEM;
      sendEar(true);
      sendEye(true);
      break;
    case CLIENT_GOALIE:
    case CLIENT_FIELDPLAYER:
      if (!parsePlayerCheckin(msg, side, mode, number)) return COMM_ERROR_PARSE;
      break;
    case CLIENT_UNKNOWN:
      break;
  }
  // A client that comes back takes the second half for begun.
  async->setStates(number, reconnecting ? 3000 : 0, mode, side, reconnecting);
  parser->setSide(side);
  return COMM_OK;
}

bool Comm::parsePlayerCheckin(const char* msg, playing_side& side, play_mode& mode,
                              int& number) const {
  const bool reconnecting = reconnectNumber > 0;
  Scanner scan(msg);
  char letter = 0;
  std::string_view name;
  if (!scan.literal(reconnecting ? "(reconnect" : "(init") ||
      !scan.skipBlanks().character(letter)) {
    return false;
  }
  number = reconnectNumber;
  if (!reconnecting && (!scan.integer(number) || !isShirtNumber(number))) return false;
  if (!scan.skipBlanks().until(')', name) || !readSide(letter, side)) return false;
  mode = Parser::parsePlaymode(name, side);
  return true;
}

}  // namespace vok
