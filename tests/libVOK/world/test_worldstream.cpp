#include "worldstream.h"

#include <sstream>

#include "support/world.h"

namespace vok::test {
namespace {

std::string written(const Worldmodel& world) {
  std::ostringstream text;
  text << std::hex;  // somebody else's taste
  writeWorld(text, world);
  return text.str();
}

/// What is said when the text is read into the world; it may be read at once or not at all.
std::string said(const std::string& text, Worldmodel& into) {
  const std::string before = written(into);
  std::istringstream in(text);
  testing::internal::CaptureStderr();
  const bool taken = readWorld(in, into);
  EXPECT_EQ(written(into), taken ? text.substr(0, written(into).size()) : before);
  return testing::internal::GetCapturedStderr();
}

TEST(WorldStream, AWorldThatIsReadGoesOnAsTheWrittenOne) {
  Worldmodel world = newWorld(3);
  const char* view = "(see_global 5 ((b) 1.25 2 0.5 0) ((p \"Alpha\" 7) -3 4 0.1 0.2 30 9))";
  world.adjust(parsed(view), {});
  world.playerType.at(2).playerSpeedMax = 1.1;
  world.my = world.ourTeam[7];
  world.my.v = {1.0 / 3, -1e-300};
  world.action = {DASH_COMMAND, 0, 80, {}};
  world.place.set({1, 2}, 0.3);
  Worldmodel other = newWorld(0, "5");
  EXPECT_EQ(said(written(world) + "other things", other), "");
  for (Worldmodel* each : {&world, &other}) each->simCycle();
  EXPECT_EQ(written(other), written(world));
  EXPECT_EQ(other.playerType.at(2).playerSpeedMax, 1.1);
}

TEST(WorldStream, ADamagedTextChangesNothing) {
  Worldmodel world = newWorld(2);
  const std::string text = written(world);
  Worldmodel other = world;
  other.time = 99;
  const auto refused = [&other](const std::string& why, const std::string& damaged) {
    EXPECT_EQ(said(damaged, other), "Worldmodel: cannot read the world: " + why + "\n");
  };
  for (std::size_t at = 0; at < text.size(); at += 1 + text.size() / 100) {
    refused("it has no end", text.substr(0, std::min(at, text.rfind("end "))));
    std::string changed = text;
    changed[at] = changed[at] == '7' ? '8' : '7';
    EXPECT_TRUE(said(changed, other).starts_with("Worldmodel: cannot read the world: ")) << at;
  }
  // With a checksum that fits.
  for (const auto& [what, by, why] :
       {std::tuple("ages 32000", "ages 32001", "ages has a number out of range"),
        {"ages 32000", "ages 1e3", "ages has something that is no number"},
        {"known 0 0", "known 0 nan", "known has something that is no number"},
        {"types 2", "types 1001", "types has a number out of range"},
        {"types 2", "types 3", ""},
        {"ages", "age", "ages is not there"},
        {"world 1", "world 2", "its first line is another"}}) {
    std::string changed = text.substr(0, text.rfind("end "));
    changed.replace(changed.find(what), std::string(what).size(), by);
    changed += "end " + std::to_string(hashOf(changed)) + "\n";
    if (*why != '\0')
      refused(why, changed);
    else
      EXPECT_NE(said(changed, other), "");
  }
}

}  // namespace
}  // namespace vok::test
