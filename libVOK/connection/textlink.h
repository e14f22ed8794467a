// A link without a network, for tools, tests and fuzzers.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "datagramlink.h"

namespace vok {

/// The texts to be received are set beforehand, and what is sent is kept until it is taken. A wait
/// never lasts: when no text is left it ends as if the time-out were over. Sending allocates only
/// when more commands are waiting than ever before.
class TextLink : public Link {
 public:
  TextLink() : TextLink(std::vector<std::string>()) {}
  /// A link on which these texts are waiting.
  explicit TextLink(const std::vector<std::string>& texts);

  void send(const char* msg, bool withTerminator) override;
  const char* recv(int timeout, const bool* flag) override;
  const char* tryRecv() override;

  /// Adds a text behind those that are waiting. Like a datagram it may hold NUL bytes.
  void add(std::string text) { waiting_.push_back(std::move(text)); }
  void dropTexts() { waiting_.clear(); }

  /// Takes the oldest command that was sent, with its NUL byte if it had one.
  std::optional<std::string> takeCommand();
  void dropCommands();

 private:
  std::deque<std::string> waiting_;
  std::string received_;
  // The commands follow each other without a gap; `ends_` says where each ends.
  std::string sent_;
  std::vector<std::size_t> ends_;
  std::size_t taken_ = 0;
};

}  // namespace vok
