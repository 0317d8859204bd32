// Names that other programs have chosen stand in the texts of buttons and menus.
#pragma once

namespace quillmere {

/// Lets no control take a shortcut from its text. The toolkit reads "AT&T" as Alt+T and "Tom & Jerry" as Alt+Space, and
/// pressing it would mute or route that application. Wants the application object. [main]
void ignoreMnemonics();

}  // namespace quillmere
