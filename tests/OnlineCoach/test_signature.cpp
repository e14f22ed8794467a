// What the coach and a player make of recorded matches, every byte of it in one number a variation.
//
// The recordings are those of tests/data, and where they are at hand the captures of a real server
// in ../shared (or in the folder that VOK_SHARED names). A change that is to keep the behaviour
// keeps the numbers in tests/data/signatures.txt. With VOK_TRANSCRIPTS=DIR the test leaves what it
// has summed up in DIR: compare the transcripts of the old and the new code before a number is set
// anew.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <numbers>
#include <sstream>

#include "Config.h"
#include "support/coach.h"
#include "support/param_keeper.h"

namespace vok::test {
namespace {

namespace fs = std::filesystem;

/// FNV-1a.
std::uint64_t hashOf(const std::string& text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return hash;
}

fs::path sharedFolder() {
  const char* named = std::getenv("VOK_SHARED");
  return named != nullptr ? fs::path(named) : fs::path(VOK_SOURCE_DIR) / ".." / "shared";
}

/// A file of tests/data, or a compressed one of the shared folders; empty when it is not there.
std::string readRecording(const std::string& name) {
  const bool isKept = name.find('/') == std::string::npos;
  const fs::path path = isKept ? fs::path(VOK_SOURCE_DIR) / "tests/data" / (name + ".txt")
                               : sharedFolder() / (name + ".txt.gz");
  if (!fs::exists(path)) return "";
  return runCommand((isKept ? "cat " : "zcat ") + path.string()).second;
}

std::string testName(const testing::TestParamInfo<const char*>& recording) {
  std::string name = recording.param;
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

/// A line a number: "recording variation number".
std::map<std::string, std::string> keptSignatures() {
  std::map<std::string, std::string> all;
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/signatures.txt");
  for (std::string recording, variation, number; file >> recording >> variation >> number;) {
    all[recording + " " + variation] = number;
  }
  return all;
}

/// Everything that a client wrote, in order: "> " before what it sent, its lines as they are.
class Transcript : Unique {
 public:
  Transcript() : before_(std::cerr.rdbuf(text.rdbuf())) {}
  ~Transcript() { std::cerr.rdbuf(before_); }

  void takeCommands(TextServer& server, Lines* taken = nullptr) {
    for (std::string command; !(command = server.receive()).empty();) {
      text << "> " << command << '\n';
      if (taken != nullptr) taken->push_back(command);
    }
  }

  /// Holds the whole against the kept number.
  void check(const std::string& name) const {
    const std::string all = text.str();
    if (const char* folder = std::getenv("VOK_TRANSCRIPTS")) {
      std::string file = name;
      for (char& c : file) c = c == ' ' || c == '/' ? '.' : c;
      std::ofstream(fs::path(folder) / file) << all;
    }
    const auto kept = keptSignatures();
    const auto found = kept.find(name);
    EXPECT_GT(all.size(), 1000U) << name;
    EXPECT_EQ(found == kept.end() ? "none" : found->second, std::to_string(hashOf(all))) << name;
  }

  std::ostringstream text;

 private:
  std::streambuf* before_;
};

// The coach

struct Variation {
  char side;
  bool synchronous;
  bool withKeys;

  std::string name() const {
    return std::string(side == 'l' ? "left" : "right") +
           (synchronous ? ",synchronous" : ",realtime") + (withKeys ? ",keys" : ",plain");
  }
};

constexpr auto VARIATIONS = std::to_array<Variation>({{'l', true, false},
                                                      {'l', true, true},
                                                      {'l', false, false},
                                                      {'l', false, true},
                                                      {'r', true, false},
                                                      {'r', true, true},
                                                      {'r', false, false},
                                                      {'r', false, true}});

/// The texts of a capture as they come in the other mode, too: a "(think)" behind every view, or
/// none.
Lines textsFor(const std::string& capture, const Variation& variation) {
  Lines texts;
  for (const std::string& line : lines(capture)) {
    std::string text = line.substr(line.find('\t') + 1);
    if (texts.empty()) text[6] = variation.side;
    if (const auto at = text.find("(synch_mode "); at != std::string::npos) {
      text[at + 12] = variation.synchronous ? '1' : '0';
    }
    if (text == "(think)") continue;
    texts.push_back(text);
    if (variation.synchronous && text.starts_with("(see_global ")) texts.emplace_back("(think)");
  }
  return texts;
}

/// A server's answers to the requests for player types: it refuses some, for every reason in turn.
class TypeDesk {
 public:
  Lines answers(const Lines& commands) {
    Lines all;
    for (const std::string& command : commands) {
      int number = 0;
      int type = 0;
      if (std::sscanf(command.c_str(), "(change_player_type %d %d)", &number, &type) != 2) continue;
      const std::string wish = std::to_string(number) + " " + std::to_string(type) + ")";
      static const Lines REFUSALS = {"(warning max_of_that_type_on_field)",
                                     "(warning no_such_player)", "(warning no_left_of_that_type)"};
      if (++asked_ % 4 == 0) {
        all.push_back(REFUSALS[asked_ / 4 % REFUSALS.size()]);
      } else {
        all.push_back("(change_player_type " + wish);
        all.push_back("(ok change_player_type " + wish);
      }
    }
    return all;
  }

 private:
  std::size_t asked_ = 0;
};

class CoachSignature : public testing::TestWithParam<const char*> {};

void replay(const std::string& recording, const Lines& texts, const Variation& variation) {
  const char* const optional[] = {"tac_typesFromDecay", "types_withinLimits"};
  const std::string config = testing::TempDir() + "vok-signature-" + std::to_string(getpid());
  {
    std::ofstream file(config);
    file << std::ifstream(VOK_SOURCE_DIR "/tests/data/plain.conf").rdbuf();
    for (const char* key : optional) file << key << " = " << variation.withKeys << '\n';
  }
  TextServer server({texts[0], texts[1], texts[2]});
  Transcript transcript;
  TypeDesk desk;
  const char* team = variation.side == 'l' ? "Alpha" : "Beta";
  auto coach = std::make_unique<VokCoach>(team, server, config.c_str());
  server.receive();  // the init
  std::remove(config.c_str());
  ASSERT_NE(coach->world, nullptr);

  for (std::size_t i = 3; i < texts.size(); ++i) {
    coach->comm->receiveText(texts[i].c_str());
    coach->step();
    Lines commands;
    transcript.takeCommands(server, &commands);
    for (const std::string& answer : desk.answers(commands)) {
      coach->comm->receiveText(answer.c_str());
      coach->step();
    }
  }
  transcript.text << *coach->world << '\n';
  coach.reset();
  transcript.takeCommands(server);
  transcript.check(recording + " " + variation.name());
}

TEST_P(CoachSignature, IsTheSameAsEver) {
  const std::string capture = readRecording(GetParam());
  if (capture.empty()) GTEST_SKIP() << "no capture " << GetParam() << " at hand";
  const std::vector<double> parameters = ParamKeeper::values();
  for (const Variation& variation : VARIATIONS) {
    ParamKeeper::store(parameters);
    Config::clear();
    replay(GetParam(), textsFor(capture, variation), variation);
  }
}

INSTANTIATE_TEST_SUITE_P(Recordings, CoachSignature,
                         testing::Values("realtime_left", "types_left", "captures/types_left",
                                         "captures/match_left", "captures/rare_calls_left",
                                         "captures/cards_left", "captures/penalties_left"),
                         testName);

// A player

/// Sends a command of a recording through the connection, which counts it; others are left out.
void sendCommand(Comm& comm, const std::string& text) {
  constexpr double DEGREE = std::numbers::pi / 180;
  double a = 0;
  double b = 0;
  if (std::sscanf(text.c_str(), "(dash %lf)", &a) == 1) comm.sendDash(a);
  if (std::sscanf(text.c_str(), "(turn %lf)", &a) == 1) comm.sendTurn(a * DEGREE);
  if (std::sscanf(text.c_str(), "(turn_neck %lf)", &a) == 1) comm.sendTurnNeck(a * DEGREE);
  if (std::sscanf(text.c_str(), "(kick %lf %lf)", &a, &b) == 2) comm.sendKick(a, b * DEGREE);
  if (std::sscanf(text.c_str(), "(move %lf %lf)", &a, &b) == 2) comm.sendMove(a, b);
  if (std::sscanf(text.c_str(), "(pointto %lf %lf)", &a, &b) == 2) comm.sendPointTo(a, b * DEGREE);
  if (text == "(done)") comm.sendDone();
}

class PlayerSignature : public testing::TestWithParam<const char*> {};

TEST_P(PlayerSignature, IsTheSameAsEver) {
  const std::string recorded = readRecording(GetParam());
  if (recorded.empty()) GTEST_SKIP() << "no recording " << GetParam() << " at hand";
  const Lines events = lines(recorded);
  ASSERT_TRUE(Config::readFile(VOK_SOURCE_DIR "/tests/data/plain.conf"));
  TextServer server;
  for (std::size_t i = 1; i < 4; ++i) server.add(events[i].substr(events[i].find('<') + 2));
  Transcript transcript;
  Comm comm("Alpha", CLIENT_FIELDPLAYER, server, 0, false, 7, 8, SIDE_LEFT);
  ASSERT_EQ(comm.connect(), COMM_OK);
  server.receive();  // the init
  Worldmodel world(&comm);

  for (std::size_t i = 4; i < events.size(); ++i) {
    const auto arrow = events[i].find('\t') + 1;
    const std::string text = events[i].substr(arrow + 2);
    if (events[i][arrow] == '>') {
      sendCommand(comm, text);
    } else {
      comm.receiveText(text.c_str());
      if (comm.async->takeAct()) {
        world.adjust();
        transcript.text << world << '\n';
      }
    }
    transcript.takeCommands(server);
  }
  transcript.check(std::string(GetParam()) + " player");
}

INSTANTIATE_TEST_SUITE_P(Recordings, PlayerSignature,
                         testing::Values("player_left_7", "players/synch_left_7",
                                         "players/synch_left_8_views"),
                         testName);

}  // namespace
}  // namespace vok::test
