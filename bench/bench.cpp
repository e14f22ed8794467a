#include "bench.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <fstream>
#include <iostream>

namespace vok::bench {

const char* const SHIPPED_CONFIG = VOK_SOURCE_DIR "/conf/agent.conf";
const char* const PLAIN_CONFIG = VOK_SOURCE_DIR "/tests/data/plain.conf";

namespace {

/// Lines of two columns.
std::vector<std::pair<std::string, std::string>> readColumns(const char* path) {
  std::ifstream file(path);
  std::vector<std::pair<std::string, std::string>> rows;
  for (std::string line; std::getline(file, line);) {
    const std::size_t tab = line.find('\t');
    rows.emplace_back(line.substr(0, tab), line.substr(tab + 1));
  }
  if (rows.empty()) std::cerr << "nothing in " << path << "\n";
  return rows;
}

constexpr std::string_view TYPE_HEAD = "(player_type (id ";
constexpr std::string_view VIEW_HEAD = "(see_global ";
constexpr std::size_t TIME_WIDTH = 9;

}  // namespace

std::vector<std::pair<std::string, std::string>> namedViews() {
  return readColumns(VOK_SOURCE_DIR "/bench/data/views.txt");
}

std::vector<std::string> recording(int types) {
  std::vector<std::string> texts;
  std::vector<std::string> announced;
  for (const auto& [milliseconds, text] :
       readColumns(VOK_SOURCE_DIR "/tests/data/realtime_left.txt")) {
    (text.starts_with(TYPE_HEAD) ? announced : texts).push_back(text);
  }
  if (announced.empty()) return texts;  // nothing to take types from
  std::string& playerParam = texts.at(2);
  const std::string key = "(player_types 18)";
  playerParam.replace(playerParam.find(key), key.size(),
                      "(player_types " + std::to_string(types) + ")");
  for (int id = 0; id < types; ++id) {
    std::string text = announced.at(static_cast<std::size_t>(id) % announced.size());
    text.replace(TYPE_HEAD.size(), text.find(')') - TYPE_HEAD.size(), std::to_string(id));
    texts.insert(texts.begin() + 3 + id, text);
  }
  return texts;
}

Views::Views() {
  bool playOn = false;
  for (const std::string& text : recording()) {
    if (text.starts_with("(hear ") && text.find(" referee ") != std::string::npos) {
      playOn = text.find(" play_on)") != std::string::npos;
    }
    if (!playOn || !text.starts_with(VIEW_HEAD)) continue;
    const std::size_t behind = text.find(' ', VIEW_HEAD.size());
    texts_.push_back(std::string(VIEW_HEAD) + std::string(TIME_WIDTH, ' ') + text.substr(behind));
  }
}

const std::string& Views::next() {
  std::string& text = texts_[at_];
  at_ = (at_ + 1) % texts_.size();
  char* field = text.data() + VIEW_HEAD.size();
  std::to_chars(field, field + TIME_WIDTH, ++now_);
  return text;
}

Server::Server() : sd(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in local{};
  local.sin_family = AF_INET;
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(sd, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0) std::perror("bind");
  const timeval patience{3, 0};
  setsockopt(sd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

Server::~Server() {
  close(sd);
}

int Server::port() const {
  sockaddr_in local{};
  socklen_t size = sizeof local;
  getsockname(sd, reinterpret_cast<sockaddr*>(&local), &size);
  return ntohs(local.sin_port);
}

std::string_view Server::receive() {
  socklen_t size = sizeof client_;
  const ssize_t n =
      recvfrom(sd, buffer_.data(), buffer_.size(), 0, reinterpret_cast<sockaddr*>(&client_), &size);
  return {buffer_.data(), n > 0 ? static_cast<std::size_t>(n) : 0};
}

void Server::send(const std::string& text) {
  sendto(sd, text.c_str(), text.size() + 1, 0, reinterpret_cast<const sockaddr*>(&client_),
         sizeof client_);
}

CoachInMatch::CoachInMatch(int types) {
  const std::vector<std::string> texts = recording(types);
  for (std::size_t i = 0; i < 3; ++i) link.add(texts[i]);
  // The recording calls for some lines; later ones shall be seen.
  std::cerr.setstate(std::ios::failbit);
  coach = std::make_unique<VokCoach>("Alpha", link, PLAIN_CONFIG);
  for (std::size_t i = 3; i < texts.size(); ++i) feed(texts[i]);
  std::cerr.clear();
}

void CoachInMatch::feed(const std::string& text) {
  coach->comm->receiveText(text.c_str());
  coach->step();
}

void CoachInMatch::call(const std::string& mode) {
  feed("(hear " + std::to_string(views.time()) + " referee " + mode + ")");
}

}  // namespace vok::bench
