// A flag says that the picture of the match follows: both goalies, the ball, and the players by
// shirt number, ours before theirs. Behind it come the opponents' types, the kicker, and the two
// defenders in one number. The fields are listed once, in `picture`, `types` and `tail`; a `Writer`
// or a `Reader` goes through the list and knows how each kind of field is laid into characters.
#include "coachmessage.h"

namespace vok {
namespace {

/// Both defenders travel in one number: this times the last one, plus the second last.
constexpr unsigned DEFENDERS_RADIX = 12;
/// -1 in the 18 bits of a large number.
constexpr unsigned NO_KICKER = (1U << 18) - 1;

class Writer {
 public:
  explicit Writer(AudioMsg& message) : message_(message) {}

  void flag(bool value) { message_ << value; }
  /// One more than the number, so that -1 travels as 0.
  void small(int number) {
    message_ << NodaChar(static_cast<unsigned char>(static_cast<unsigned>(number) + 1));
  }
  void position(const Vector2d& pos) { message_ << pos.x << pos.y; }
  void kicker(int number) { message_ << Int3B(static_cast<unsigned>(number)); }
  void defenders(int last, int secondLast) {
    message_ << Int3B(static_cast<unsigned>(secondLast) +
                      DEFENDERS_RADIX * static_cast<unsigned>(last));
  }

 private:
  AudioMsg& message_;
};

/// Leaves a value unread where the message has ended; the message's state tells.
class Reader {
 public:
  explicit Reader(AudioMsg& message) : message_(message) {}

  void flag(bool& value) { message_ >> value; }
  void small(int& number) {
    NodaChar code(0);
    message_ >> code;
    number = static_cast<char>(code) - 1;
  }
  void position(Vector2d& pos) { message_ >> pos.x >> pos.y; }
  void kicker(int& number) {
    const unsigned code = large();
    number = code == NO_KICKER ? -1 : static_cast<int>(code);
  }
  void defenders(int& last, int& secondLast) {
    const unsigned code = large();
    last = static_cast<int>(code / DEFENDERS_RADIX);
    secondLast = static_cast<int>(code % DEFENDERS_RADIX);
  }

 private:
  unsigned large() {
    Int3B number;
    message_ >> number;
    return number.getValue();
  }

  AudioMsg& message_;
};

template <typename Coder, typename Message>
void picture(Coder&& coder, Message& told) {
  coder.small(told.ourGoalie);
  coder.small(told.otherGoalie);
  coder.position(told.ball);
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    coder.position(told.ourTeam[n]);
    coder.position(told.otherTeam[n]);
  }
}

template <typename Coder, typename Types>
void types(Coder&& coder, Types& byNumber) {
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) coder.small(byNumber[n]);
}

template <typename Coder, typename Message>
void tail(Coder&& coder, Message& told) {
  coder.kicker(told.kicker);
  coder.defenders(told.lastDefender, told.secondLastDefender);
}

int shirtOrNone(int number) {
  return isShirtNumber(number) ? number : -1;
}

}  // namespace

void CoachMessage::write(AudioMsg& message) const {
  Writer writer(message);
  writer.flag(true);
  picture(writer, *this);
  types(writer, otherTypes);
  tail(writer, *this);
}

void CoachMessage::writePicture(AudioMsg& message) const {
  picture(Writer(message), *this);
}

std::optional<CoachMessage> CoachMessage::read(AudioMsg message) {
  if (!message.isChkSumsValid() || !message.isCoachMsg()) return std::nullopt;
  message.rewindRead();
  std::optional<CoachMessage> told = readPicture(message);
  if (told) tail(Reader(message), *told);
  return message.getState() ? told : std::nullopt;
}

std::optional<CoachMessage> CoachMessage::readPicture(AudioMsg& message) {
  Reader reader(message);
  bool follows = false;
  reader.flag(follows);
  if (!follows) return std::nullopt;
  CoachMessage told;
  picture(reader, told);
  types(reader, told.otherTypes);
  if (!message.getState()) return std::nullopt;
  told.ourGoalie = shirtOrNone(told.ourGoalie);
  told.otherGoalie = shirtOrNone(told.otherGoalie);
  return told;
}

/// Declared with the other values of the stream.
AudioMsg& AudioMsg::operator<<(const int* byNumber) {
  types(Writer(*this), byNumber);
  return *this;
}

}  // namespace vok
