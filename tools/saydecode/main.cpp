// Prints what the say messages in some texts tell a player.
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "finder.h"
#include "reading.h"

using namespace vok;

namespace {

constexpr std::string_view HELP =
    R"(Usage: saydecode [--svg FILE] [--] [TEXT...]

Finds the say messages of coach and players in the texts, or in the lines of
standard input when there are none, and prints what a player reads in them.
A text may be the message alone or anything with messages in it: a command,
what a player heard, a line of the server's text log.

  --svg FILE  draw the last coach's message that holds as a picture
  --help      show this

Opponents are the two that the coach's statistics name; "-" is a type not yet
known. Ends with status 1 when there is no message or the command line is wrong.
)";

struct Options {
  bool help = false;
  std::string svgFile;
  std::vector<std::string> texts;
};

int fail(const std::string& reason) {
  std::cerr << "saydecode: " << reason << "\n";
  return 1;
}

/// The reason when the command line is wrong.
std::optional<std::string> parse(const std::vector<std::string>& arguments, Options& options) {
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (optionsEnded || !argument.starts_with("-")) {
      options.texts.push_back(argument);
    } else if (argument == "--") {
      optionsEnded = true;
    } else if (argument == "--help") {
      options.help = true;
    } else if (argument == "--svg") {
      if (++i == arguments.size() || arguments[i].empty()) return "--svg needs a file name";
      options.svgFile = arguments[i];
    } else {
      return "unknown option '" + argument + "' (a text that begins with '-' goes behind '--')";
    }
  }
  return std::nullopt;
}

/// Prints messages as they come and keeps the picture of the last one.
struct Reader {
  int count = 0;
  std::optional<FieldDrawing> drawing;

  void take(const AudioMsg& msg, const char* unit, long place) {
    std::cout << "message " << ++count << ", " << unit << " " << place << "\n";
    printHeader(std::cout, msg);
    const std::optional<CoachNews> news = readNews(msg);
    if (news) {
      printNews(std::cout, *news);
      drawing = draw(*news, msg);
    } else if (msg.isCoachMsg() && msg.isChkSumsValid()) {
      std::cout << "  no picture of the match in it\n";
    }
  }
};

void readAll(const std::vector<std::string>& texts, Reader& reader) {
  if (texts.empty()) {
    readMessages(std::cin, [&](const AudioMsg& msg, long line) { reader.take(msg, "line", line); });
  }
  for (std::size_t i = 0; i < texts.size(); ++i) {
    std::istringstream in(texts[i]);
    const auto place = static_cast<long>(i + 1);
    readMessages(in, [&](const AudioMsg& msg, long) { reader.take(msg, "text", place); });
  }
}

int writePicture(const std::optional<FieldDrawing>& drawing, const std::string& fileName) {
  if (!drawing) return fail("no message with a picture of the match, nothing to draw");
  std::ofstream file(fileName);
  file << *drawing << std::flush;
  return file ? 0 : fail("cannot write '" + fileName + "'");
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto reason = parse({argv + 1, argv + argc}, options)) return fail(*reason);
  if (options.help) {
    std::cout << HELP;
    return 0;
  }
  Reader reader;
  readAll(options.texts, reader);
  if (!std::cout.flush()) return fail("cannot write to standard output");
  if (reader.count == 0) return fail("no message found");
  if (options.svgFile.empty()) return 0;
  return writePicture(reader.drawing, options.svgFile);
}
