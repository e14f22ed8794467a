// Prints what the say messages in some texts tell a player.
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "commandline.h"
#include "finder.h"
#include "reading.h"

using namespace vok;
using namespace vok::saydecode;

namespace {

constexpr int NOTHING_FOUND = 1;

struct Options {
  std::string svgFile;
  std::vector<std::string> texts;
};

tools::Tool commandLine(Options& options) {
  return {"saydecode",
          "[--svg FILE] [--] [TEXT...]",
          "Finds the say messages of coach and players in the texts, or in the lines of\n"
          "standard input when there are none, and prints what a player reads in them.\n",
          {{"--svg", "FILE", "draw the last undamaged message of a coach as a picture",
            tools::text(options.svgFile)},
           {"TEXT...", "",
            "a message alone or anything with messages in it: a command, what a player heard, a "
            "line of the server's text log; one that begins with '-' goes behind '--'",
            [&options](const std::string& text) {
              options.texts.push_back(text);
              return true;
            }}},
          "Opponents are the two that the coach's statistics name; \"-\" is a type not yet\n"
          "known.\n\n"
          "Exit status: 0; 1 when there is no message, or none to draw; 2 for a wrong\n"
          "argument or a file that cannot be written.\n"};
}

/// Prints messages as they come and keeps the picture of the last one.
struct Reader {
  int count = 0;
  std::optional<tools::FieldDrawing> drawing;

  void take(const AudioMsg& msg, const char* unit, long place) {
    std::cout << "message " << ++count << ", " << unit << " " << place << "\n";
    printHeader(std::cout, msg);
    if (const auto told = CoachMessage::read(msg)) {
      printNews(std::cout, *told);
      drawing = draw(*told, msg);
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

int fail(const std::string& reason, int status = tools::BAD_ARGUMENT) {
  return tools::fail("saydecode", reason, status);
}

int writePicture(const std::optional<tools::FieldDrawing>& drawing, const std::string& fileName) {
  if (!drawing)
    return fail("no message with a picture of the match, nothing to draw", NOTHING_FOUND);
  std::ofstream file(fileName);
  file << *drawing << std::flush;
  return file ? 0 : fail("cannot write '" + fileName + "'");
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = readCommandLine(commandLine(options), argc, argv)) return *status;
  Reader reader;
  readAll(options.texts, reader);
  if (!std::cout.flush()) return fail("cannot write to standard output");
  if (reader.count == 0) return fail("no message found", NOTHING_FOUND);
  if (options.svgFile.empty()) return 0;
  return writePicture(reader.drawing, options.svgFile);
}
