// The words of browsers' companions and host programs, one message after the other, without a socket between: where
// everything that is kept of them can be looked at.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/linux/tabs/Frames.h"
#include "platform/linux/tabs/Greetings.h"
#include "platform/linux/tabs/TabBook.h"
#include "support/Bytes.h"
#include "support/Require.h"

namespace {

using namespace quillmere;

bool isClean(const std::string& text) { return tabs::withoutControls(text) == text; }

void requireGreeting(const std::string& message) {
  for (const auto* who : {"host", "companion", "mixer"}) {
    const auto version = tabs::readGreeting(who, message);
    if (!version) continue;
    QUILLMERE_REQUIRE(isClean(*version) && version->size() <= tabs::longestVersion);
    QUILLMERE_REQUIRE(tabs::readGreeting(who, tabs::greeting(who, *version)) == version);
  }
}

void take(const std::string& message, tabs::TabBook& book) {
  requireGreeting(message);
  std::string problem;
  auto news = tabs::readTabNews(message, problem);
  QUILLMERE_REQUIRE(news.has_value() || !problem.empty());
  if (!news) return;
  for (const auto& [id, tab] : news->tabs) {
    QUILLMERE_REQUIRE(isClean(tab.title) && isClean(tab.url));
    QUILLMERE_REQUIRE(tab.title.size() <= tabs::longestTitle && tab.url.size() <= tabs::longestUrl);
  }
  static_cast<void>(book.take(std::move(*news)));
  QUILLMERE_REQUIRE(book.textBytes() <= tabs::TabBook::mostText && book.windows().size() <= tabs::TabBook::mostWindows);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  tabs::TabBook book;
  tabs::FrameReader reader;
  reader.append(bytes);
  bool isFramed = false;
  while (const auto message = reader.next()) {
    isFramed = true;
    take(*message, book);
  }
  // Most of what a fuzzer thinks of has no length before it.
  if (isFramed) return 0;
  fuzz::Bytes in(data, size);
  while (!in.isEmpty()) take(std::string(in.longText()), book);
  return 0;
}
