// The C library chooses the language and the plural form.
#include "platform/linux/GettextTexts.h"

#include <libintl.h>

#include <string_view>

#include "core/Texts.h"
#include "platform/linux/ProgramBeside.h"

namespace quillmere {

namespace {

constexpr const char* domain = "quillmere";

constexpr TextCatalogue catalogue{[](const char* source) -> const char* { return ::dgettext(domain, source); },
                                  [](const char* one, const char* many, unsigned long number) -> const char* {
                                    return ::dngettext(domain, one, many, number);
                                  }};

}  // namespace

void useGettextTexts(const std::vector<std::string>& folders) {
  // English has a catalogue of its own: without one the library would take a text of the next language on the list.
  constexpr std::string_view english = "/en/LC_MESSAGES/quillmere.mo";
  std::vector<std::string> files;
  files.reserve(folders.size());
  for (const auto& folder : folders) files.push_back(folder + std::string(english));
  auto folder = programBeside(files);
  if (folder.empty()) return;
  folder.resize(folder.size() - english.size());
  ::bindtextdomain(domain, folder.c_str());
  // The panel and the windows read nothing else, whatever the session's encoding is.
  ::bind_textdomain_codeset(domain, "UTF-8");
  useTexts(&catalogue);
}

}  // namespace quillmere
