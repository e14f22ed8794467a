#include "recording.h"

#include <charconv>
#include <string_view>

namespace vok::tools {

namespace {

bool readLine(std::string_view line, RecordedText& entry) {
  const std::size_t tab = line.find('\t');
  if (tab == std::string_view::npos) return false;
  const auto [end, error] = std::from_chars(line.data(), line.data() + tab, entry.milliseconds);
  if (error != std::errc() || end != line.data() + tab) return false;
  if (!(entry.milliseconds >= 0 && entry.milliseconds < 1e12)) return false;
  entry.text = line.substr(tab + 1);
  return true;
}

}  // namespace

bool Recording::read(std::istream& in, std::string& error) {
  texts.clear();
  std::string line;
  while (std::getline(in, line)) {
    RecordedText entry;
    if (!readLine(line, entry)) {
      error = "line " + std::to_string(texts.size() + 1) +
              " is not \"MILLISECONDS<tab>TEXT\" (is it still compressed?)";
      return false;
    }
    texts.push_back(std::move(entry));
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
