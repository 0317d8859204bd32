// Asks for the user's languages.
#include "platform/macos/MacLanguages.h"

#import <Foundation/Foundation.h>

#include "foundation/Text.h"
#include "platform/macos/pure/LanguageTags.h"

namespace quillmere {

std::vector<std::string> preferredLanguages() {
  @autoreleasepool {
    std::vector<std::string> languages;
    for (NSString* tag in NSLocale.preferredLanguages) {
      if (const auto known = macos::utf8(tag)) languages.push_back(macos::localeName(*known));
    }
    return languages;
  }
}

}  // namespace quillmere
