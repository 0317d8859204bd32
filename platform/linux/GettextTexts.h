// The program's texts through the C library's gettext.
#pragma once

#include <string>
#include <vector>

namespace quillmere {

/// Finds texts from now on in the first of these folders, relative to the running executable's, that has the program's
/// catalogues ("<folder>/de/LC_MESSAGES/quillmere.mo"), in the languages that sessionLanguages() tells; that must have
/// been asked before. Without catalogues texts stay English. [main]
void useGettextTexts(const std::vector<std::string>& folders);

}  // namespace quillmere
