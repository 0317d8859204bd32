// The build's own words. They are given to this file alone, so that a new version compiles little.
#include "core/Product.h"

namespace quillmere {

std::string_view appVersion() { return bundleVersion().empty() ? "0.0.0" : bundleVersion(); }

std::string_view bundleVersion() { return QUILLMERE_VERSION; }

std::string_view buildNumber() { return QUILLMERE_BUILD_NUMBER; }

std::string_view webAddress() { return QUILLMERE_WEB_ADDRESS; }

std::string downloadAddress() { return std::string(webAddress()) + "/download"; }

std::string_view feedbackMailbox() { return QUILLMERE_FEEDBACK_MAILBOX; }

}  // namespace quillmere
