#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "platform/foundation/Data.h"

// replay [--show] CORPUS...: gives a fuzz target every input of packed corpora, which hold one a
// line, in hexadecimal. --show prints each before it is given, so that the last one is what broke.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int argc, char** argv) {
  bool show = false;
  std::size_t inputs = 0;
  (void)LLVMFuzzerTestOneInput(nullptr, 0);
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--show") == 0) {
      show = true;
      continue;
    }
    std::ifstream corpus(argv[i]);
    for (std::string line; std::getline(corpus, line);) {
      if (line.empty() || line.starts_with('#')) continue;
      if (show) std::fprintf(stderr, "%s\n", line.c_str());
      const auto bytes = quorin::bytesFromHex(line);
      if (!bytes) {
        std::fprintf(stderr, "%s: not hexadecimal: %s\n", argv[i], line.c_str());
        return 1;
      }
      // Of its exact size, so that a read past its end is seen.
      (void)LLVMFuzzerTestOneInput(std::vector<std::uint8_t>(*bytes).data(), bytes->size());
      ++inputs;
    }
  }
  std::printf("%zu inputs\n", inputs);
  return inputs > 0 ? 0 : 1;  // an empty corpus proves nothing
}
