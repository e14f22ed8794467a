// The page of a match: one HTML file with replay, pictures and tables, which needs nothing else.
#pragma once

#include <string>
#include <vector>

#include "coachmessages.h"
#include "matchfilm.h"

namespace vok::matchreport {

/// The whole page of a match that was read to its end. Where `LINKS` stands, links to other pages
/// may be put.
std::string matchPage(const Match& match, const MatchFilm& film,
                      const std::vector<HeardMessage>& messages);

/// A comment, which no text of a log can contain.
inline constexpr std::string_view LINKS = "<!--links-->";

/// What every page begins with, up to the body: title (not markup), style, and that nothing may be
/// fetched from elsewhere.
void beginPage(std::string& out, const std::string& title);

}  // namespace vok::matchreport
