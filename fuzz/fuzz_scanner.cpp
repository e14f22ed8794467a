// The scanner and the parser against sscanf.
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "harness.h"
#include "scanf_reference.h"
#include "scanner.h"

namespace {

using namespace vok;
using fuzz::require;

// The references have room for 300 characters.
constexpr std::size_t MAX_TEXT = 250;

/// Texts with numbers that are read differently on purpose: not finite, hexadecimal, or, of
/// integers, out of range.
bool holdsOddNumber(const std::string& text) {
  std::size_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto at = [&](std::size_t k) {
      return i + k < text.size() ? std::tolower(static_cast<unsigned char>(text[i + k])) : 0;
    };
    if (at(0) == '0' && at(1) == 'x') return true;
    if (at(0) == 'i' && at(1) == 'n' && at(2) == 'f') return true;
    if (at(0) == 'n' && at(1) == 'a' && at(2) == 'n') return true;
    digits = isDigit(text[i]) ? digits + 1 : 0;
    if (digits > 9) return true;
  }
  return false;
}

/// Three digits behind an e, which may make a real too large: no number here, infinite there.
bool holdsLongExponent(const std::string& text) {
  for (std::size_t e = 0; (e = text.find_first_of("eE", e)) != text.npos; ++e) {
    Scanner at(std::string_view(text).substr(e + 1));
    std::string_view digits;
    if (!at.literal('-')) at.literal('+');
    if (at.run(isDigit, digits) && digits.size() > 2) return true;
  }
  return false;
}

template <typename Number>
void compareNumber(const std::string& text, const char* format, bool (Scanner::*step)(Number&)) {
  Number wanted{};
  Number got{};
  int consumed = 0;
  const bool read = std::sscanf(text.c_str(), format, &wanted, &consumed) == 1;
  int wide = 0;
  if (std::sscanf(text.c_str(), "%d", &wide) == 1 && sizeof wanted == sizeof(short) &&
      static_cast<double>(wide) != static_cast<double>(wanted))
    return;
  if (!std::isfinite(static_cast<double>(wanted))) return;

  Scanner at(text);
  require((at.*step)(got) == read, "a number is read where sscanf reads one");
  require(got == wanted, "it has the same value");
  require(text.size() - at.rest().size() == static_cast<std::size_t>(consumed), "and length");
  require(at.rest().data() + at.rest().size() == text.data() + text.size(), "within the text");
}

/// Parses a text that ends where its memory ends.
bool parse(const std::string& text, SensorData& data) {
  static Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  const std::vector<char> exact(text.begin(), text.end());
  return parser.parseServerString({exact.data(), exact.size()}, data);
}

void compareView(const std::string& list) {
  SensorData wanted;
  SensorData got;
  bool isFinite = true;
  const bool read = test::scanView(list.c_str(), wanted, isFinite);
  if (!isFinite) return;
  require(parse("(see_global 5 " + list, got) == read, "a view is taken where sscanf takes it");
  require(test::motion(got.exactball) == test::motion(wanted.exactball), "its ball is the same");
  for (std::size_t g = 0; g < 2; ++g)
    require(test::motion(got.exactgoal[g]) == test::motion(wanted.exactgoal[g]), "its goals, too");
  for (std::size_t p = 0; p < 22; ++p) {
    require(test::motion(got.exactplayer[p]) == test::motion(wanted.exactplayer[p]) &&
                test::person(got.exactplayer[p]) == test::person(wanted.exactplayer[p]),
            "its players, too");
  }
}

void compareHeard(const std::string& text) {
  if (text.empty() || isBlank(text[0])) return;  // belongs to the head
  test::Heard wanted;
  SensorData got;
  const bool read = test::scanHeard(text.c_str(), wanted);
  if (!std::isfinite(wanted.direction)) return;
  require(parse("(hear 62 " + text, got) == read, "a voice is heard where sscanf hears it");
  if (!read) return;
  require(got.sender == wanted.sender && got.sender_num == test::shirt(wanted.number) &&
              std::string_view(got.sender_name.data()) == wanted.name && got.score == wanted.score,
          "from the same speaker");
  require(std::string_view(got.message.data()) == wanted.text, "the same words");
  if (wanted.direction <= NO_ANGLE) return;  // no such angle in a view
  require(got.sender_dir == test::radians(wanted.direction), "from the same direction");
}

void compareParameters(const std::string& items) {
  if (holdsLongExponent(items)) return;
  static const test::ParamKeeper KEEPER;
  static Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  const auto compare = [&](const auto& rows, const std::string& head, auto parseThem) {
    test::scanParams(items.c_str(), rows);
    const std::vector<double> wanted = KEEPER.values();
    KEEPER.restore();
    for (const double value : wanted) {
      if (!std::isfinite(value)) return;
    }
    require((parser.*parseThem)(head + items), "the head is known");
    require(KEEPER.values() == wanted, "the same parameters are stored");
    KEEPER.restore();
  };
  compare(Parser::serverParamTokens, "(server_param ", &Parser::parseServerParam);
  compare(Parser::playerParamTokens, "(player_param ", &Parser::parsePlayerParam);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool SILENT = (fuzz::silence(), true);
  std::string text(reinterpret_cast<const char*>(data), SILENT ? std::min(size, MAX_TEXT) : 0);
  text.resize(text.find('\0') == text.npos ? text.size() : text.find('\0'));
  if (holdsOddNumber(text)) return 0;
  compareNumber<int>(text, "%d%n", &Scanner::integer);
  compareNumber<short>(text, "%hd%n", &Scanner::integer);
  compareNumber<double>(text, "%lf%n", &Scanner::real);
  compareView(text);
  compareHeard(text);
  compareParameters(text);
  return 0;
}
