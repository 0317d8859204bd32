// Fetches one address over HTTPS and writes what is there to standard output: quillmere-feed [options] ADDRESS.
// Ends with 0 for a whole answer; otherwise the last line says what went wrong.
#include <curl/curl.h>
#include <getopt.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "core/Product.h"

namespace {

constexpr std::size_t maxBytes = std::size_t{256} * 1024;
constexpr long longestRedirection = 3;
constexpr long defaultSeconds = 20;

struct Request {
  std::string address;
  /// Certificates to trust instead of the system's; empty for those.
  std::string authorities;
  long seconds = defaultSeconds;
};

struct FreeHandle {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};

/// Taking less than is offered ends the transfer.
std::size_t take(char* data, std::size_t size, std::size_t count, void* into) {
  auto& text = *static_cast<std::string*>(into);
  if (text.size() + size * count > maxBytes) return 0;
  text.append(data, size * count);
  return size * count;
}

int fail(const char* problem) {
  std::fprintf(stderr, "%s\n", problem);
  return EXIT_FAILURE;
}

int fetch(const Request& request) {
  curl_global_init(CURL_GLOBAL_DEFAULT);
  const std::unique_ptr<CURL, FreeHandle> handle(curl_easy_init());
  if (!handle) return fail("the library does not start");
  std::string text;
  std::array<char, CURL_ERROR_SIZE> words{};
  const auto agent = "quillmere/" + std::string(quillmere::appVersion());
  const auto set = [&](auto option, auto value) { return curl_easy_setopt(handle.get(), option, value) == CURLE_OK; };
  bool isSet = set(CURLOPT_URL, request.address.c_str());
  // Nothing that could be read or changed on the way, whatever an answer points to.
  isSet = set(CURLOPT_PROTOCOLS_STR, "https") && isSet;
  isSet = set(CURLOPT_REDIR_PROTOCOLS_STR, "https") && isSet;
  isSet = set(CURLOPT_FOLLOWLOCATION, 1L) && isSet;
  isSet = set(CURLOPT_MAXREDIRS, longestRedirection) && isSet;
  isSet = set(CURLOPT_TIMEOUT, request.seconds) && isSet;
  isSet = set(CURLOPT_NOSIGNAL, 1L) && isSet;
  isSet = set(CURLOPT_FAILONERROR, 1L) && isSet;
  isSet = set(CURLOPT_USERAGENT, agent.c_str()) && isSet;
  isSet = set(CURLOPT_ERRORBUFFER, words.data()) && isSet;
  isSet = set(CURLOPT_WRITEFUNCTION, take) && isSet;
  isSet = set(CURLOPT_WRITEDATA, &text) && isSet;
  if (!request.authorities.empty()) isSet = set(CURLOPT_CAINFO, request.authorities.c_str()) && isSet;
  if (!isSet) return fail("the library is not what this program was made for");
  const auto result = curl_easy_perform(handle.get());
  if (result == CURLE_WRITE_ERROR) return fail("it is too long");
  if (result != CURLE_OK) return fail(words.front() != '\0' ? words.data() : curl_easy_strerror(result));
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const std::array<option, 3> known{{{"authorities", required_argument, nullptr, 'a'},
                                     {"seconds", required_argument, nullptr, 's'},
                                     {nullptr, 0, nullptr, 0}}};
  Request request;
  for (int choice = 0; (choice = getopt_long(argc, argv, "", known.data(), nullptr)) != -1;) {
    if (choice == 'a') {
      request.authorities = optarg;
    } else if (choice == 's') {
      request.seconds = std::strtol(optarg, nullptr, 10);
    } else {
      return EXIT_FAILURE;
    }
  }
  if (optind + 1 != argc || request.seconds < 1) {
    return fail("usage: quillmere-feed [--authorities FILE] [--seconds N] ADDRESS");
  }
  request.address = argv[optind];
  return fetch(request);
}
