// Runs a fuzzer over files and the files of folders, for compilers without libFuzzer.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void runFile(const std::filesystem::path& path) {
  std::fprintf(stderr, "%s\n", path.c_str());  // so that the one that fails is named last
  std::ifstream file(path, std::ios::binary);
  const std::string input{std::istreambuf_iterator<char>(file), {}};
  // Of the exact size, without a terminator.
  const std::vector<std::uint8_t> bytes(input.begin(), input.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int runs = 0;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      runFile(argv[i]);
      ++runs;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      runFile(entry.path());
      ++runs;
    }
  }
  std::fprintf(stderr, "%d inputs\n", runs);
  return runs > 0 ? 0 : 1;
}
