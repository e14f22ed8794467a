#include "command.h"

#include "Comm.h"
#include "constants.h"

namespace vok {

void Command::simulate(WPlayer& player) const {
  if (player.cyclesSinceTackle > TACKLE_CYCLES) {
    if (kind == DASH_COMMAND) player.dash(power);
    if (kind == TURN_COMMAND) player.turn(direction);
  }
  player.WMovedObject::simulate();
  player.recover();
  ageOneCycle(player.cyclesSinceTackle);
}

void send(Comm& comm, const Command& command) {
  switch (command.kind) {
    case DASH_COMMAND:
      comm.sendDash(command.power);
      break;
    case TURN_COMMAND:
      comm.sendTurn(command.direction);
      break;
    case KICK_COMMAND:
      comm.sendKick(command.power, command.direction);
      break;
    case TACKLE_COMMAND:
      comm.sendTackle(command.power);
      break;
    case CATCH_COMMAND:
      comm.sendCatch(command.direction);
      break;
    case MOVE_COMMAND:
      comm.sendMove(command.place.x, command.place.y);
      break;
    default:
      break;
  }
}

}  // namespace vok
