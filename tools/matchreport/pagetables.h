// The tables of a page.
#pragma once

#include "pagetext.h"

namespace vok::matchreport {

// Each appends its tables.

void writeSides(std::string& out, const Match& match);
void writeShots(std::string& out, const Match& match);
void writeSetPlays(std::string& out, const Match& match);
void writeLostBalls(std::string& out, const Match& match);
void writeOffences(std::string& out, const Match& match);
void writeShootOut(std::string& out, const Match& match);
void writePlayers(std::string& out, const Match& match);

}  // namespace vok::matchreport
