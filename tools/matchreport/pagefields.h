// The pictures of a page that show the pitch.
#pragma once

#include "matchfilm.h"
#include "pagetext.h"

namespace vok::matchreport {

// Each appends its pictures.

/// The lines of the pitch, which all of them share.
void defineField(std::string& out);

void drawNetworks(std::string& out, const Match& match, const MatchFilm& film);
void drawFormations(std::string& out, const Match& match);
void drawShots(std::string& out, const Match& match, const MatchFilm& film);
void drawGoals(std::string& out, const Match& match, const MatchFilm& film);
void drawTerritory(std::string& out, const Match& match);
void drawHeatMaps(std::string& out, const Match& match);

}  // namespace vok::matchreport
