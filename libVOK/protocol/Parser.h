// One server datagram -> one SensorData.
//
// The parser never reads behind the end of the text (a NUL byte ends it as well). Texts that it
// does not understand give false; the connection reports them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pitch.h"
#include "sensordata.h"

namespace vok {

enum ObjectType { OT_NONE = 0, OT_PLAYER = 1, OT_BALL = 2, OT_GOAL = 3, OT_FLAG = 4, OT_LINE = 5 };
enum DataType { DT_NONE = 0, DT_DOUBLE = 1, DT_INT = 2, DT_STRING = 3, DT_BOOL = 4 };

/// One row of a parameter table: how an item is written, and where its value goes.
struct Token {
  const char* fmt = nullptr;  ///< the item in scanf's notation, " (key %d)%n"; null ends a table
  void* ptr = nullptr;        ///< int, double, bool or HeardText by `dt`; null for an item to skip
  DataType dt = DT_NONE;
};

class Parser {
 public:
  /// The coach-language versions are kept for the check-in and not used here.
  Parser(const char* team, client_type ctype, int clangMinVer, int clangMaxVer);

  /// Parses one datagram into a fresh record; false when it is not understood. The record is plain
  /// data and refers to nothing in the text.
  bool parseServerString(std::string_view text, SensorData& record);

  /// The play mode of a referee's name, as seen by `side`. An unknown name is reported.
  static play_mode parsePlaymode(std::string_view name, playing_side side);

  /// Our side decides what is US and what is THEM; it is known after the check-in.
  void setSide(playing_side side) { side_ = side; }
  int getCLangMinVer() const { return clangMinVer; }
  int getCLangMaxVer() const { return clangMaxVer; }

  /// Store the items of the parameter messages into the server constants; false when the head is
  /// another one. The first item that no row of the table takes ends the reading.
  bool parseServerParam(std::string_view text);
  bool parsePlayerParam(std::string_view text);

  // The readings of parts. They go on where the last call stopped, in its text and into its record:
  // call them only while both exist. Before the first call there is nothing to read.

  /// Reads a list of objects with their global places; false when it is malformed.
  bool parseExact();
  /// Reads the items of a player type behind the head; false when one is missing.
  bool parsePlayerType();
  /// Reads one item into `token.ptr`: 0 when it was read, 1 when it does not match (the position
  /// stays), -1 for an unknown data type. A number with more text behind it is stored, and the
  /// position stays before the item.
  int readToken(const Token& token);

  /// The kind of an object by the first character of its name; upper-case names are no objects.
  static ObjectType determineObject(std::string_view name);

  // Object names, without their parentheses. What a name does not tell is unknown, a number -1.
  void parsePlayer(std::string_view name, team_number& playerTeam, int& number,
                   goalie_player& goalie) const;
  void parseGoal(std::string_view name, goal_type& which, team_number& goalTeam) const;
  static void parseFlag(std::string_view name, SensorFlag& flag);
  static void parseLine(std::string_view name, SensorLine& line);

  /// The rows of the parameter messages, one for each key in any order, then an empty row.
  static const std::vector<Token> serverParamTokens;
  static const std::vector<Token> playerParamTokens;

 private:
  struct Format;
  struct TokenIndex;
  struct GlobalObject;

  bool timedHead(std::string_view head, sensor_data_type type);
  bool plainHead(std::string_view head, sensor_data_type type);
  bool parseAnswer();
  bool parseGranted();
  bool parsePlayerChanged();
  bool parseClangVersions();
  bool parseObject(const GlobalObject& object, std::size_t& players, std::size_t& goals);
  bool parseHear();
  bool parseReferee(std::string_view text);
  bool parseVoice();
  bool parseCoachMsg(std::string_view message);
  bool readItems(std::string_view text, std::string_view head, const TokenIndex& index);
  int readToken(const Format& format, const Token& token);
  // The players' own messages.
  bool parseSee();
  bool parseSenseBody();

  /// The number, or -1 when it is no shirt number.
  static int shirtNumber(int number) { return isShirtNumber(number) ? number : -1; }
  /// Copies what fits, and a terminator.
  static void copyText(std::string_view text, HeardText& into);

  std::string team_;
  playing_side side_ = SIDE_LEFT;
  bool isCoach_;
  view_width bodyViewWidth_ = VIEW_WIDTH_NONE;  ///< of the latest body sense
  SensorData* data_ = nullptr;                  ///< the record being filled; the caller's
  std::string_view msg_;                        ///< the rest of the caller's text
  int clangMinVer;
  int clangMaxVer;
};

}  // namespace vok
