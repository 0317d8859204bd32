// LANGUAGE, then LC_ALL, LC_MESSAGES or LANG, as the C library has them.
#include "platform/linux/SessionLanguages.h"

#include <locale.h>

#include <algorithm>
#include <cstdlib>

namespace quillmere {

namespace {

bool hasLanguage(std::string_view locale) {
  const auto name = locale.substr(0, locale.find('.'));
  return !name.empty() && name != "C" && name != "POSIX";
}

}  // namespace

std::vector<std::string> languagesOf(std::string_view locale, std::string_view list) {
  std::vector<std::string> languages;
  if (!hasLanguage(locale)) return languages;
  if (list.empty()) list = locale;
  while (!list.empty()) {
    const auto end = std::min(list.find(':'), list.size());
    const auto each = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    const auto language = each.substr(0, each.find_first_of(".@"));
    // As there: what stands behind a name that means no translation counts for nothing.
    if (!language.empty() && !hasLanguage(language)) break;
    if (!language.empty()) languages.emplace_back(language);
  }
  return languages;
}

std::vector<std::string> sessionLanguages() {
  const char* locale = ::setlocale(LC_MESSAGES, "");
  const char* list = std::getenv("LANGUAGE");
  return languagesOf(locale != nullptr ? locale : "C", list != nullptr ? list : "");
}

}  // namespace quillmere
