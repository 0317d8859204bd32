// Where a permission stands, as it is shown.
#pragma once

namespace quillmere {

enum class PermissionStatus { notDetermined, granted, denied };

}  // namespace quillmere
