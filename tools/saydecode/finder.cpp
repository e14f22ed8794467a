#include "finder.h"

#include <istream>
#include <string>

#include "coachmessage.h"

namespace vok::saydecode {
namespace {

constexpr std::size_t MAX_SIZE = 511;   ///< of any message
constexpr std::size_t MAX_RUN = 65536;  ///< a longer run of code characters is cut there
constexpr std::size_t COACH_MSG_SIZE = AudioMsg::HEADER_LENGTH + CoachMessage::PAYLOAD_LENGTH;

bool isCodeChar(char c) {
  return msgEncodeChars.substr(0, CODE_CHARS).find(c) != std::string_view::npos;
}

/// Size of the message at `at`, 0 when there is none.
std::size_t messageSize(std::string_view run, std::size_t at) {
  const AudioMsg header(std::string(run.substr(at, AudioMsg::HEADER_LENGTH)).c_str());
  const std::size_t size = header.getSize();
  if (size > MAX_SIZE || size > run.size() - at) return 0;
  const bool whole = size == run.size();
  // A sender rewinds the read position. So most characters within a run that look like a header by
  // chance are rejected here, before the checksum is computed.
  if (!whole && (!header.isCoachMsg() || header.getReadPos() != 0)) return 0;
  const AudioMsg msg(std::string(run.substr(at, size)).c_str());
  const bool damaged = whole && msg.isCoachMsg() && size == COACH_MSG_SIZE;
  return msg.isChkSumsValid() || damaged ? size : 0;
}

}  // namespace

std::vector<AudioMsg> findMessages(std::string_view run) {
  std::vector<AudioMsg> messages;
  std::size_t at = 0;
  while (at + AudioMsg::HEADER_LENGTH <= run.size()) {
    const std::size_t size = messageSize(run, at);
    if (size > 0) messages.emplace_back(std::string(run.substr(at, size)).c_str());
    at += size > 0 ? size : 1;
  }
  return messages;
}

void readMessages(std::istream& in, const std::function<void(const AudioMsg&, long)>& found) {
  std::string run;
  long line = 1;
  const auto endRun = [&] {
    for (const AudioMsg& msg : findMessages(run)) found(msg, line);
    run.clear();
  };
  for (char c = 0; in.get(c);) {
    if (isCodeChar(c)) {
      run += c;
      if (run.size() == MAX_RUN) endRun();
    } else {
      endRun();
    }
    if (c == '\n') ++line;
  }
  endRun();
}

}  // namespace vok::saydecode
