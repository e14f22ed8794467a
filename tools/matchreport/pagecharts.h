// The pictures of a page that show values over time.
#pragma once

#include "matchfilm.h"
#include "pagetext.h"

namespace vok::matchreport {

// Each appends its pictures.

void drawPossession(std::string& out, const Match& match, const MatchFilm& film);
void drawStamina(std::string& out, const Match& match, const MatchFilm& film);
void drawShapes(std::string& out, const Match& match, const MatchFilm& film);

}  // namespace vok::matchreport
