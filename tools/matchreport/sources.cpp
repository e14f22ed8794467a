#include "sources.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>

#include "bytesource.h"
#include "scanner.h"

namespace vok::matchreport {
namespace {

namespace fs = std::filesystem;

bool isLog(const std::string& name) {
  return name.ends_with(".rcg") || name.ends_with(".rcg.gz");
}

/// A recording may have any name, so its beginning tells: milliseconds, and soon the answer to a
/// coach's check-in.
bool isRecording(const fs::path& path) {
  std::array<char, 512> first{};
  gamelogs::ByteSource bytes;
  if (!bytes.open(path.string())) return false;
  Scanner in({first.data(), bytes.read(first.data(), first.size())});
  int milliseconds = 0;
  if (!in.integer(milliseconds) || !in.startsWith("\t")) return false;
  return in.rest().find("\t(init l ok)") != std::string_view::npos ||
         in.rest().find("\t(init r ok)") != std::string_view::npos;
}

std::string stem(const std::string& name) {
  return name.substr(0, name.find('.'));
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> logs;
  std::vector<std::string> others;
  std::set<std::string> stems;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (!entry.is_regular_file(error)) continue;
    const std::string name = entry.path().filename().string();
    (isLog(name) ? logs : others).push_back(name);
    if (isLog(name)) stems.insert(stem(name));
  }
  for (const std::string& name : others) {
    if (!stems.contains(stem(name)) && isRecording(fs::path(folder) / name)) logs.push_back(name);
  }
  std::sort(logs.begin(), logs.end());
  for (std::string& name : logs) name = (fs::path(folder) / name).string();
  return logs;
}

std::string textLogOf(const std::string& name) {
  const std::size_t ending = name.rfind(".rcg");
  if (!isLog(name)) return {};
  for (const char* const other : {".rcl", ".rcl.gz"}) {
    const std::string textLog = name.substr(0, ending) + other;
    std::error_code error;
    if (fs::is_regular_file(textLog, error)) return textLog;
  }
  return {};
}

Source sourceOf(const std::string& name) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(name, error);
  return {name, textLogOf(name), "", error ? 0 : size};
}

}  // namespace

std::vector<Source> sourcesOf(const std::vector<std::string>& names) {
  std::vector<Source> sources;
  for (const std::string& name : names) {
    std::error_code error;
    if (!fs::is_directory(name, error)) {
      sources.push_back(sourceOf(name));
      continue;
    }
    const std::vector<std::string> files = filesIn(name);
    if (files.empty()) sources.push_back({name, "", "holds no game log and no recording", 0});
    for (const std::string& file : files) sources.push_back(sourceOf(file));
  }
  return sources;
}

}  // namespace vok::matchreport
