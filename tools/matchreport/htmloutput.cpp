#include "htmloutput.h"

#include <filesystem>
#include <memory>

#include "page.h"
#include "pagetext.h"

namespace vok::matchreport {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view HTML = ".html";

std::string stem(const std::string& name) {
  return name.ends_with(HTML) ? name.substr(0, name.size() - HTML.size()) : name;
}

/// A text log that the server wrote beside a game log.
std::string textLogOf(const std::string& source) {
  const std::size_t end = source.rfind(".rcg");
  if (end == std::string::npos) return {};
  for (const char* const ending : {".rcl", ".rcl.gz"}) {
    std::error_code error;
    if (fs::is_regular_file(source.substr(0, end) + ending, error)) {
      return source.substr(0, end) + ending;
    }
  }
  return {};
}

std::vector<HeardMessage> messagesOf(const std::string& source) {
  if (source == "-") return {};  // it cannot be read twice
  const std::string textLog = textLogOf(source);
  return coachMessages(textLog.empty() ? source : textLog);
}

std::string link(const std::string& to, const char* text) {
  return to.empty() ? "" : "<a href='" + escaped(to) + "'>" + text + "</a> ";
}

}  // namespace

bool HtmlOutput::open(const std::string& name) {
  name_ = name;
  folder_ = stem(name) + "-matches";
  file_.open(name);
  return file_.is_open();
}

MatchTaker HtmlOutput::match() {
  const auto film = std::make_shared<MatchFilm>();
  return {[film](const analysis::Frame& frame, std::string_view mode, const Match& soFar) {
            film->frame(frame, mode, soFar);
          },
          [this, film](const Match& match) {
            film->end();
            take(match, matchPage(match, *film, messagesOf(match.source)));
          }};
}

/// A name for every system and for an address: the match's key, what is special in it replaced.
std::string HtmlOutput::nameOf(const Match& match) {
  constexpr std::size_t LONGEST = 120;
  std::string name;
  for (const char c : match.key.substr(0, LONGEST)) {
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                         (c >= 'a' && c <= 'z') || c == '-' || c == '_';
    name += isPlain ? c : '_';
  }
  const std::string first = name;
  for (int n = 2; !names_.insert(name).second; ++n) name = first + "-" + std::to_string(n);
  return name.append(HTML);
}

/// A page is written when it is known whether another one follows, and its name.
void HtmlOutput::take(const Match& match, const std::string& text) {
  const std::string name = nameOf(match);
  if (table_.size() == 1) {
    std::error_code error;
    fs::create_directories(folder_, error);
  }
  if (table_.size() > 0) {
    writeLast(name);
    before_ = last_.name;
  }
  last_ = {name, text};
  table_.add(match, fs::path(folder_).filename().string() + "/" + name);
}

/// With links to its neighbours.
void HtmlOutput::writeLast(const std::string& next) {
  const std::string links = link("../" + fs::path(name_).filename().string(), "All matches") +
                            link(before_, "Match before") + link(next, "Next match");
  std::string text = std::move(last_.text);
  text.replace(text.find(LINKS), LINKS.size(), links);
  std::ofstream page(fs::path(folder_) / last_.name);
  page << text;
  if (!page.flush()) failed_ = true;
}

bool HtmlOutput::end() {
  if (table_.size() == 1) {
    file_ << last_.text;
  } else {
    if (table_.size() > 1) writeLast("");
    file_ << table_.page();
  }
  return !file_.flush().fail() && !failed_;
}

}  // namespace vok::matchreport
