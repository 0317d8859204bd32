// The command line: whoever starts the program may have written anything there.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "shell/LaunchOptions.h"
#include "support/Bytes.h"
#include "support/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmere;
  fuzz::Bytes in(data, size);
  std::vector<std::string> words{"quillmere"};
  for (int left = 8; left > 0 && !in.isEmpty(); --left) {
    std::string word(in.text());
    // An argument ends with its first null byte.
    word.resize(std::min(word.find('\0'), word.size()));
    words.push_back(std::move(word));
  }
  if (in.flag()) words.clear();
  const auto parse = [&words](std::string& out, std::string& problems, int& exitCode) {
    auto copies = words;
    std::vector<char*> pointers;
    for (auto& word : copies) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    std::ostringstream said;
    std::ostringstream wrong;
    auto options = parseArguments(static_cast<int>(copies.size()), pointers.data(), said, wrong, exitCode);
    out = said.str();
    problems = wrong.str();
    return options;
  };
  std::string out;
  std::string problems;
  int exitCode = -1;
  const auto options = parse(out, problems, exitCode);
  // Either it starts and says nothing, or it says something and ends, well or not.
  QUILLMERE_REQUIRE(options.has_value() == (out.empty() && problems.empty()));
  QUILLMERE_REQUIRE(exitCode == (problems.empty() ? EXIT_SUCCESS : EXIT_FAILURE));
  QUILLMERE_REQUIRE(out.empty() || problems.empty());
  if (options && options->section) {
    QUILLMERE_REQUIRE(std::ranges::any_of(words, [&](const auto& word) { return word.ends_with(*options->section); }));
  }
  // The same words mean the same the second time.
  std::string outAgain;
  std::string problemsAgain;
  int codeAgain = -1;
  const auto again = parse(outAgain, problemsAgain, codeAgain);
  QUILLMERE_REQUIRE(again.has_value() == options.has_value() && outAgain == out && problemsAgain == problems);
  if (options) QUILLMERE_REQUIRE(again->section == options->section && again->inBackground == options->inBackground);
  return 0;
}
