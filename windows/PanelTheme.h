// Whether panels are light or dark: the desktop's own word where it gives one, dark otherwise.
// Without it an icon would vanish on half of all desktops.
#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <optional>

namespace quillmere {

/// [main]
class PanelTheme final : public QObject {
  Q_OBJECT

 public:
  static PanelTheme& shared();

  /// The colour in which an icon stands out on the panel.
  [[nodiscard]] QColor foreground() const;

 Q_SIGNALS:
  void changed();

 private Q_SLOTS:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  PanelTheme();
  void setPrefersDark(std::optional<bool> preference);

  /// The desktop's preference; absent where it has none.
  std::optional<bool> prefersDark_;
};

}  // namespace quillmere
