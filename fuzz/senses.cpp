#include "senses.h"

#include "harness.h"

namespace vok::fuzz {

Step takeStep(std::string_view line) {
  if (line.empty()) return {1, true, {}};
  // '0' to '3', '4' to '7' without the good sense, '8' after a pause.
  const int code = (line[0] - '0') & 15;
  return {code >= 8 ? 100 : code % 4, code < 4, line.substr(1)};
}

bool checkInPlayer(std::string_view answer) {
  Match& match = Match::instance();
  setOptionalKeys(0);
  const std::string init = "(init " + std::string(answer) + ")";
  if (!match.checkIn(init, "(server_param (half_time 300))", PLAYER_PARAM)) return false;
  if (match.isCoach()) return false;
  for (int type = 0; type < 7; ++type) match.receive(playerType(type));
  return true;
}

std::string goodBodySense(long time) {
  return "(sense_body " + std::to_string(time) +
         " (view_mode high normal) (stamina 8000 1) (speed 0 0) (head_angle 0) (kick 0) (dash 0)"
         " (turn 0) (say 0) (turn_neck 0) (catch 0) (move 0) (change_view 0) (arm (movable 0)"
         " (expires 0) (target 0 0) (count 0)) (focus (target none) (count 0)) (tackle (expires 0)"
         " (count 0)))";
}

std::string goodView(long time) {
  // From (-15, 12) in the server's frame, along the x axis.
  return "(see " + std::to_string(time) +
         " ((f c) 19.3 -39 0 0) ((f r t) 81.5 -34) ((f r b) 70.8 18) ((f g r b) 67.4 -4)"
         " ((g r) 68.7 -10) ((f g r t) 70.1 -16) ((f p r b) 51.4 9) ((f p r c) 52.5 -13)"
         " ((f b r 20) 44.3 38) ((f r 0) 73.7 -9) ((f r t 30) 83.9 -30) ((f r b 20) 73 6)"
         " ((b) 20.1 -39 0 0) ((p \"Alpha\" 10) 13.5 17 0 0 0 0) ((p \"Beta\") 54.6 -19)"
         " ((l r) 67.4 90))";
}

}  // namespace vok::fuzz
