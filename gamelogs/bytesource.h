// The bytes of a file or of standard input, decompressed where they are gzip's.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace vok::gamelogs {

class ByteSource {
 public:
  ByteSource();
  ~ByteSource();
  ByteSource(ByteSource&&) noexcept;
  ByteSource& operator=(ByteSource&&) noexcept;

  /// Opens a file, or standard input when the name is "-". Returns false, with the reason in
  /// `problem`, when it cannot be read.
  bool open(const std::string& name);

  /// Reads up to `size` bytes; 0 at the end, also where damaged data ends the reading early.
  std::size_t read(char* to, std::size_t size);

  /// Why the reading ended early; empty when it did not.
  const std::string& problem() const;

 private:
  struct Stream;
  std::unique_ptr<Stream> stream_;
};

}  // namespace vok::gamelogs
