#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "matchlog.h"
#include "support/server.h"

namespace vok::test {
namespace {

using analysis::Told;

class MatchPage : public testing::Test {
 protected:
  MatchPage() { std::filesystem::create_directories(folder_); }
  ~MatchPage() override { std::filesystem::remove_all(folder_); }

  std::string read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(folder_ + "/" + name).rdbuf();
    return text.str();
  }
  int write(const std::string& name, const std::string& sources) const {
    return runCommand("cd " VOK_SOURCE_DIR "/tests/data && " VOK_BIN_DIR "/matchreport --html " +
                      folder_ + "/" + name + " " + sources)
        .first;
  }

  std::string folder_ = testing::TempDir() + "page" + std::to_string(getpid());
};

std::string between(const std::string& text, const std::string& from, const std::string& to) {
  const std::size_t begin = text.find(from) + from.size();
  return text.substr(begin, text.find(to, begin) - begin);
}

/// Reads the frames of a page as filmwriter.h describes them.
class Film {
 public:
  explicit Film(const std::string& page) : text_(between(page, "id='frames'>", "</script>")) {}

  int digit() {
    static const std::string DIGITS =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    return at_ < text_.size() ? static_cast<int>(DIGITS.find(text_[at_++])) : -1;
  }
  int coordinate() {
    const int high = digit();
    return 64 * high + digit() - 2048;
  }
  Vector2d place() {
    const int x = coordinate();
    return 0.06 * Vector2d(x, coordinate());
  }
  /// The place of a player, from the one before; false when the player is not there.
  bool player(Vector2d& place, double& body, int& state) {
    const int first = digit();
    if (first == 62) return false;
    if (first == 63) {
      place = this->place();
    } else {
      place += 0.06 * Vector2d(first - 31, digit() - 31);
    }
    body = digit() * 360.0 / 64;
    state = digit();
    return true;
  }
  bool atEnd() const { return at_ == text_.size(); }

 private:
  std::string text_;
  std::size_t at_ = 0;
};

void expectNear(const Vector2d& found, const Vector2d& truth) {
  constexpr double CLOSE = 0.0301;  // metres
  EXPECT_NEAR(found.x, truth.x, CLOSE);
  EXPECT_NEAR(found.y, truth.y, CLOSE);
}

TEST_F(MatchPage, HoldsEveryFrameOfTheLog) {
  for (const std::string name : {"log4", "log5", "log6", "logjson"}) {
    ASSERT_EQ(write("page.html", name + ".rcg.gz"), 0);
    Film film(read("page.html"));
    std::string error;
    const auto log =
        gamelogs::openMatchLog(VOK_SOURCE_DIR "/tests/data/" + name + ".rcg.gz", error);
    ASSERT_TRUE(log) << error;
    analysis::ByPlayer<Vector2d> places;
    for (Told told = log->next(); told != Told::END; told = log->next()) {
      if (told != Told::FRAME) continue;
      expectNear(film.place(), log->frame().ball);
      for (int i = 0; i < analysis::PLAYERS && !HasFailure(); ++i) {
        const analysis::FramePlayer& truth = log->frame().players[i];
        double body = 0;
        int state = 0;
        ASSERT_EQ(film.player(places[i], body, state), truth.there());
        if (!truth.there()) continue;
        expectNear(places[i], truth.pos);
        EXPECT_LE(std::abs(std::remainder(body - truth.body, 360)), 3);
        EXPECT_EQ(state >= 32, truth.is(analysis::STATE_TACKLE));
        if (state % 32 < 31) {
          EXPECT_NEAR(state % 32 / 30.0, truth.stamina / 8000, 0.02);
        }
      }
    }
    EXPECT_TRUE(film.atEnd()) << name;
  }
}

TEST_F(MatchPage, EscapesWhatALogNames) {
  const std::string log = folder_ + "/evil.rcg";
  runCommand("zcat " VOK_SOURCE_DIR
             "/tests/data/log4.rcg.gz | sed 's/Alpha/<script>x<\\/script>/; "
             "s/Beta/\\x27\"\\&lt;/' >" +
             log);
  ASSERT_EQ(write("evil.html", log), 0);
  const std::string page = read("evil.html");
  for (const char* const raw : {"<script>x", "'\""}) {
    EXPECT_EQ(between(page, "</style>", "<script>").find(raw), std::string::npos) << raw;
  }
  EXPECT_NE(page.find("&#60;script&#62;x&#60;/script&#62; 0 : 1 &#39;&#34;&#38;lt;"),
            std::string::npos);
  EXPECT_NE(page.find(R"("teams":["\u003cscript>x\u003c/script>","'\"&lt;"])"), std::string::npos);
}

TEST_F(MatchPage, LinksThePagesOfSeveralMatches) {
  ASSERT_EQ(write("all.html", "log4.rcg.gz log5.rcg.gz log4.rcg.gz"), 0);
  const std::string table = read("all.html");
  const std::string first = "202611211519_Alpha_0-vs-Beta_1";
  const std::string second = between(table, "Beta_1.html", "Beta_1-2.html");
  for (const char* const name : {"", "-2"}) {
    const std::string page = read("all-matches/" + first + name + ".html");
    EXPECT_NE(table.find("'all-matches/" + first + name + ".html'"), std::string::npos) << table;
    EXPECT_NE(page.find("<a href='../all.html'>"), std::string::npos);
    EXPECT_EQ(page.find("Next match") == std::string::npos, name == std::string("-2"));
  }
}

TEST_F(MatchPage, ShowsTheCoachsMessages) {
  // The message of docs/say-message.md, as a server's text log has it.
  std::ofstream(folder_ + "/m.rcl") << "6,0\tRecv Alpha_Coach: (say (freeform "
                                       "\"vokqq0UgaaaaWbbic3CHFyFQDJGwIWEiElH4HiEMEZHAHGDeFBI8G4CIF"
                                       "dJEGqCaGRJaGOBEGtKIFaB8G7KeFyAAHOLMEWz"
                                       "4HlMiEizwIZMQDaaaaaaaaeaafaaoca\"))\n";
  runCommand("cp " VOK_SOURCE_DIR "/tests/data/log4.rcg.gz " + folder_ + "/m.rcg.gz");
  ASSERT_EQ(write("m.html", folder_ + "/m.rcg.gz"), 0);
  EXPECT_NE(
      read("m.html").find(R"("messages":[[6,{"side":"l","kicker":5,"opponents":[11,10],)"
                          R"("types":[-1,-1,-1,-1,-1,-1,-1,-1,3,-1,-1],"places":[-20.1,-3.1,)"),
      std::string::npos);
}

}  // namespace
}  // namespace vok::test
