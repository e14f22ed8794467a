#include "textlink.h"

namespace vok {

namespace {

constexpr std::size_t EXPECTED_COMMANDS = 64;
constexpr std::size_t EXPECTED_SIZE = 256;

}  // namespace

TextLink::TextLink(const std::vector<std::string>& texts) : waiting_(texts.begin(), texts.end()) {
  ends_.reserve(EXPECTED_COMMANDS);
  sent_.reserve(EXPECTED_COMMANDS * EXPECTED_SIZE);
}

void TextLink::send(const char* msg, bool withTerminator) {
  sent_ += msg;
  if (withTerminator) sent_ += '\0';
  ends_.push_back(sent_.size());
}

const char* TextLink::recv(int /*timeout*/, const bool* flag) {
  if (flag != nullptr && *flag) throw UDPAct();
  const char* text = tryRecv();
  if (text == nullptr) throw UDPTimeOut();
  return text;
}

const char* TextLink::tryRecv() {
  if (waiting_.empty()) return nullptr;
  received_ = std::move(waiting_.front());
  waiting_.pop_front();
  return received_.c_str();
}

std::optional<std::string> TextLink::takeCommand() {
  if (taken_ == ends_.size()) return std::nullopt;
  const std::size_t begin = taken_ == 0 ? 0 : ends_[taken_ - 1];
  std::string command = sent_.substr(begin, ends_[taken_] - begin);
  if (++taken_ == ends_.size()) dropCommands();
  return command;
}

void TextLink::dropCommands() {
  sent_.clear();
  ends_.clear();
  taken_ = 0;
}

}  // namespace vok
