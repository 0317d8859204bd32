// One catalogue for the process.
#include "core/Texts.h"

namespace quillmere {

namespace {

const TextCatalogue*& catalogueInUse() {
  static const TextCatalogue* catalogue = nullptr;
  return catalogue;
}

std::string filled(std::string text, std::string_view value) {
  constexpr std::string_view place = "%1";
  if (const auto at = text.find(place); at != std::string::npos) text.replace(at, place.size(), value);
  return text;
}

}  // namespace

void useTexts(const TextCatalogue* catalogue) { catalogueInUse() = catalogue; }

std::string translated(const char* source) {
  const auto* catalogue = catalogueInUse();
  return catalogue != nullptr ? catalogue->find(source) : source;
}

std::string translated(const char* source, std::string_view value) { return filled(translated(source), value); }

std::string translatedCount(const char* one, const char* many, unsigned long number) {
  const auto* catalogue = catalogueInUse();
  const char* source = number == 1 ? one : many;
  return filled(catalogue != nullptr ? catalogue->findCounted(one, many, number) : source, std::to_string(number));
}

}  // namespace quillmere
