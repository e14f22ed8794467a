#include "keys.h"

#include <algorithm>
#include <memory>

#include "advskills.h"
#include "vokcoach.h"

namespace vok::confcheck {

namespace {

// Nothing can be sent to this port, so the check-in fails at once.
constexpr int NO_PORT = 0;

/// Records each key that is asked for and defines it, so that the coach goes on to its next key.
class Listener : public ConfigObserver {
 public:
  Listener() { Config::observer = this; }
  ~Listener() override { Config::observer = nullptr; }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  void requested(const ConfigRequest& request) override {
    auto key = std::find_if(keys.begin(), keys.end(),
                            [&](const Key& known) { return known.name == request.key; });
    if (key == keys.end()) {
      keys.push_back({request.key, request.kind, 0, request.optional, wishes});
      key = keys.end() - 1;
    }
    key->values = std::max(key->values, request.index + 1);
    const int numbers = request.kind == ConfigRequest::VECTOR ? 2 : key->values;
    std::string value = request.kind == ConfigRequest::TEXT ? "" : "0";
    for (int i = 1; i < numbers; ++i) value += ",0";
    setEntry(request.key, value.c_str());
  }

  Keys keys;
  bool wishes = false;
};

}  // namespace

Keys keysOfCoach() {
  Config::clear();
  Listener listener;
  const auto coach =
      std::make_unique<VokCoach>("VOK", "127.0.0.1", NO_PORT, "/dev/null", "", false);
  // What the coach would build after a successful check-in.
  coach->world = std::make_unique<Worldmodel>(coach->comm.get());
  const AdvSkills forPlayers(*coach->world);
  coach->initTypeRequests();
  coach->initTeamGraphic();
  coach->act();
  listener.wishes = true;
  coach->readAgentConf();
  Config::clear();
  return listener.keys;
}

}  // namespace vok::confcheck
