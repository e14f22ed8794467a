// Runs a fuzzer over files and the files of folders, for compilers without libFuzzer. With --edits
// it also runs every text that differs by a character from one in a folder; they are to be short.
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

void run(const std::string& input) {
  // Of the exact size, without a terminator.
  const std::vector<std::uint8_t> bytes(input.begin(), input.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

void runEdited(const std::string& input) {
  for (std::size_t at = 0; at < input.size(); ++at) {
    run(std::string(input).erase(at, 1));
    run(input.substr(0, at));
    for (const char c : {' ', '(', ')', '"', '+', '-', '.', '1', '9', 'e', 'E', 't'}) {
      run(std::string(input).replace(at, 1, 1, c));
      run(std::string(input).insert(at, 1, c));
    }
  }
}

std::string readFile(const std::filesystem::path& path) {
  std::fprintf(stderr, "%s\n", path.c_str());  // so that the one that fails is named last
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argc, char** argv) {
  int runs = 0;
  bool edits = false;
  for (int i = 1; i < argc; ++i) {
    if (argv[i] == std::string("--edits")) {
      edits = true;
      continue;
    }
    if (!std::filesystem::is_directory(argv[i])) {
      run(readFile(argv[i]));
      ++runs;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      const std::string input = readFile(entry.path());
      run(input);
      if (edits) runEdited(input);
      ++runs;
    }
  }
  std::fprintf(stderr, "%d inputs\n", runs);
  return runs > 0 ? 0 : 1;
}
