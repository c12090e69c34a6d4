// Replays a fuzz corpus without libFuzzer, so the suite (and its sanitizer
// build) runs every input: each argument is an input file or a directory of them.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/fuzz_target.h"

int main(int argc, char** argv) {
  std::size_t replayed = 0;
  auto replay = [&replayed](const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(data.data()), data.size());
    ++replayed;
  };
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      replay(argv[i]);
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
      if (entry.is_regular_file()) replay(entry.path());
  }
  std::printf("replayed %zu inputs\n", replayed);
  return replayed ? 0 : 1;  // an empty corpus would pass without testing anything
}
