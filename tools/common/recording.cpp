#include "recording.h"

#include <string_view>

#include "recordline.h"

namespace vok::tools {

bool Recording::read(std::istream& in, std::string& error) {
  texts.clear();
  RecordLine read;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (!read.read(line)) {
      // Where the one who wrote it was killed, the last line may be cut.
      if (in.eof() && !texts.empty()) break;
      error = "line " + std::to_string(number) +
              " is not \"MILLISECONDS<tab>TEXT\", with \"<<tab>\" or \"><tab>\" before the text "
              "or without (is it still compressed?)";
      return false;
    }
    if (!read.sent()) texts.push_back({read.milliseconds, std::string(read.text)});
  }
  if (!texts.empty() && texts.front().text.starts_with("(init ")) return true;
  error = in.bad() ? "cannot be read" : "it does not begin with the answer to a check-in";
  return false;
}

bool Recording::synchronous() const {
  for (const RecordedText& entry : texts) {
    if (entry.text.starts_with("(server_param ")) {
      return entry.text.find("(synch_mode 1)") != std::string::npos;
    }
  }
  return false;
}

std::string Recording::lastTime() const {
  constexpr std::string_view HEAD = "(see_global ";
  std::string time = "0";
  for (const RecordedText& entry : texts) {
    if (!entry.text.starts_with(HEAD)) continue;
    time = entry.text.substr(HEAD.size(), entry.text.find(' ', HEAD.size()) - HEAD.size());
  }
  return time;
}

std::string Recording::team() const {
  const bool left = texts.front().text.starts_with("(init l");
  for (const RecordedText& entry : texts) {
    if (!entry.text.starts_with("(see_global ")) continue;
    // The left team comes first, the right one last.
    const std::string_view head = "((p \"";
    const std::size_t at = left ? entry.text.find(head) : entry.text.rfind(head);
    if (at == std::string::npos) continue;
    const std::size_t begin = at + head.size();
    return entry.text.substr(begin, entry.text.find('"', begin) - begin);
  }
  return {};
}

}  // namespace vok::tools
