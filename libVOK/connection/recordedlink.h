// A link whose texts are recorded on their way.
#pragma once

#include "datagramlink.h"
#include "matchrecorder.h"

namespace vok {

class RecordedLink final : public Link {
 public:
  /// Neither is owned.
  RecordedLink(Link& link, MatchRecorder& recorder) : link_(link), recorder_(recorder) {}

  void send(const char* msg, bool withTerminator) override {
    link_.send(msg, withTerminator);
    recorder_.sent(msg);
  }
  const char* recv(int timeout, const bool* flag) override {
    return received(link_.recv(timeout, flag));
  }
  const char* tryRecv() override { return received(link_.tryRecv()); }

 private:
  const char* received(const char* text) {
    if (text != nullptr) recorder_.received(text);
    return text;
  }

  Link& link_;
  MatchRecorder& recorder_;
};

}  // namespace vok
