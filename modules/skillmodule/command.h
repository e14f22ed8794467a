// One command of the body: what a skill answers, for the server or to be tried on a world.
#pragma once

#include "coordinates.h"
#include "protocol.h"
#include "worldobjects.h"

namespace vok {

class Comm;

/// The server obeys one of these in a cycle. Only the values that belong to the kind are read.
struct Command {
  CycleCommand kind = NO_COMMAND;  ///< none, kick, dash, turn, catch, move or tackle
  double power = 0;                ///< of a dash, kick or tackle, in the server's scale
  double direction = 0;            ///< radians from the body: a turn's moment, of a kick, a catch
  Vector2d place;                  ///< of a move, metres, field frame

  static Command dash(double power) { return {DASH_COMMAND, power, 0, {}}; }
  static Command turn(double moment) { return {TURN_COMMAND, 0, moment, {}}; }
  static Command kick(double power, double dir) { return {KICK_COMMAND, power, dir, {}}; }
  static Command tackle(double power) { return {TACKLE_COMMAND, power, 0, {}}; }
  static Command catchAt(double direction) { return {CATCH_COMMAND, 0, direction, {}}; }
  static Command move(const Vector2d& place) { return {MOVE_COMMAND, 0, 0, place}; }

  bool isNone() const { return kind == NO_COMMAND; }
  /// What `Worldmodel::action` has to be so that `simCycle` carries the command out.
  WAction action() const { return {kind, direction, power, place}; }
  /// Carries out a dash or a turn of a player alone, and the cycle with it: he moves, slows down
  /// and recovers. A player that lies after a tackle cannot act.
  void simulate(WPlayer& player) const;
};

/// Sends the command; sends nothing for none.
void send(Comm& comm, const Command& command);

}  // namespace vok
