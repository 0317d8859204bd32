// The toolkit documents the switch without declaring it in a header.
#include "views/Mnemonics.h"

#include <QtGui/qtguiglobal.h>

Q_GUI_EXPORT extern void qt_set_sequence_auto_mnemonic(bool isOn);

namespace quillmere {

void ignoreMnemonics() { qt_set_sequence_auto_mnemonic(false); }

}  // namespace quillmere
