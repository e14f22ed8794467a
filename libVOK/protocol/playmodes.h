// The play modes: how the referee calls them, and what each means to a client.
//
// Two tables in playmodes.cpp hold all of it. Other code asks the functions here.
#pragma once

#include <string_view>

#include "protocol.h"

namespace vok {

/// The play mode of a referee's call as a client of `side` sees it. A call begins with the name
/// ("goal_l_3" is "goal_l"). `PLAY_MODE_UNKNOWN` when no name fits.
play_mode playmodeByName(std::string_view name, playing_side side);

/// The server's name of a mode as a client of `side` sees it; empty for a mode without one.
std::string_view playmodeName(play_mode mode, playing_side side);

/// The team that a mode belongs to: who takes the kick, scored or fouled. `TEAM_UNKNOWN` for the
/// modes of neither.
team_number playmodeTeam(play_mode mode);

/// The server's clock is known to stand in this mode. It also stands in some other modes, fouls
/// among them; a client notices that when further views of the same time arrive.
bool isStopped(play_mode mode);

/// Kick-off, kick-in, free kick, corner kick and goal kick of either team.
bool isSetPlay(play_mode mode);

/// Both teams have to be in their own halves, for a kick-off or on the way to one.
bool isInOwnHalves(play_mode mode);

/// The server obeys every player's "(move X Y)".
bool allowsPlacing(play_mode mode);

/// A trainer can set the mode with "(change_mode NAME)".
bool isTrainerMode(play_mode mode);

}  // namespace vok
