// The keys that the status item's menu names, in every window of the program.
#pragma once

#include <QObject>
#include <functional>

class QWindow;

namespace quillmere {

/// What the keys do. [main]
struct KeyIntents {
  std::function<void()> openMainWindow;
  std::function<void()> openSettings;
  std::function<void()> quit;
};

/// Ctrl+0, Ctrl+comma and Ctrl+Q, as the menu says; Ctrl+W closes the window. What a control of the window wants for
/// itself it gets first. [main]
class WindowKeys final : public QObject {
  Q_OBJECT

 public:
  explicit WindowKeys(KeyIntents intents);

  /// For as long as the window lives.
  void serve(QWindow& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool perform(QWindow& window, int key);

  KeyIntents intents_;
  /// While a key is with the window itself.
  bool isPassingOn_ = false;
};

}  // namespace quillmere
