// Pure text rules for application identifiers.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

/// The key an application's processes fall under: the identifier cut before the first ".helper", ignoring ASCII case.
[[nodiscard]] std::string parentKey(std::string_view bundleID);

}  // namespace quillmere
