#include "bytesource.h"

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace vok::gamelogs {

struct ByteSource::Stream {
  Stream() = default;
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() {
    if (file > STDIN_FILENO) ::close(file);
    if (compressed) inflateEnd(&zip);
  }

  bool fill();
  std::size_t inflated(char* to, std::size_t size);
  std::size_t plain(char* to, std::size_t size);
  std::size_t system(char* to, std::size_t size);

  int file = -1;
  bool compressed = false;
  bool inMember = false;  ///< a gzip file may be several of them in a row
  std::string problem;
  z_stream zip{};
  std::array<char, 1U << 16U> input{};
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// One reading of the system; 0 at the end or after an error.
std::size_t ByteSource::Stream::system(char* to, std::size_t size) {
  ssize_t got = 0;
  do {
    got = ::read(file, to, size);
  } while (got < 0 && errno == EINTR);
  if (got < 0) problem = std::strerror(errno);
  return got < 0 ? 0 : static_cast<std::size_t>(got);
}

/// Gets more input behind what is left; false at the end.
bool ByteSource::Stream::fill() {
  if (begin == end) begin = end = 0;
  const std::size_t got = system(input.data() + end, input.size() - end);
  end += got;
  return got > 0;
}

std::size_t ByteSource::Stream::plain(char* to, std::size_t size) {
  if (begin == end) return system(to, size);
  const std::size_t n = std::min(size, end - begin);
  std::memcpy(to, input.data() + begin, n);
  begin += n;
  return n;
}

std::size_t ByteSource::Stream::inflated(char* to, std::size_t size) {
  zip.next_out = reinterpret_cast<Bytef*>(to);
  zip.avail_out = static_cast<uInt>(size);
  while (zip.avail_out == size && problem.empty()) {
    if (begin == end && !fill()) {
      if (inMember && problem.empty()) problem = "the compressed data end early";
      break;
    }
    zip.next_in = reinterpret_cast<Bytef*>(input.data() + begin);
    zip.avail_in = static_cast<uInt>(end - begin);
    inMember = true;
    const int result = inflate(&zip, Z_NO_FLUSH);
    begin = end - zip.avail_in;
    if (result == Z_STREAM_END) {
      inMember = false;
      inflateReset(&zip);
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
      problem = "the compressed data are damaged";
    }
  }
  return size - zip.avail_out;
}

ByteSource::ByteSource() = default;
ByteSource::~ByteSource() = default;
ByteSource::ByteSource(ByteSource&&) noexcept = default;
ByteSource& ByteSource::operator=(ByteSource&&) noexcept = default;

bool ByteSource::open(const std::string& name) {
  constexpr std::size_t MAGIC = 2;
  constexpr int GZIP_WINDOW = 16 + MAX_WBITS;
  stream_ = std::make_unique<Stream>();
  Stream& s = *stream_;
  s.file = name == "-" ? STDIN_FILENO : ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (s.file < 0) {
    s.problem = std::string("cannot be opened: ") + std::strerror(errno);
    return false;
  }
  while (s.end < MAGIC && s.fill()) {
  }
  if (!s.problem.empty()) {
    s.problem = "cannot be read: " + s.problem;
    return false;
  }
  if (s.end >= MAGIC && s.input[0] == '\x1f' && s.input[1] == '\x8b') {
    s.compressed = inflateInit2(&s.zip, GZIP_WINDOW) == Z_OK;
    if (!s.compressed) s.problem = "cannot be decompressed";
  }
  return s.problem.empty();
}

std::size_t ByteSource::read(char* to, std::size_t size) {
  return stream_->compressed ? stream_->inflated(to, size) : stream_->plain(to, size);
}

const std::string& ByteSource::problem() const {
  return stream_->problem;
}

}  // namespace vok::gamelogs
