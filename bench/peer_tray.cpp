// A bare tray program: an icon and nothing else. What the program costs with everything closed is measured beside it.
#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QPixmap picture(22, 22);
  picture.fill(Qt::transparent);
  {
    QPainter painter(&picture);
    painter.setBrush(Qt::white);
    painter.drawEllipse(4, 4, 14, 14);
  }
  QSystemTrayIcon icon{QIcon(picture)};
  icon.setToolTip(QStringLiteral("peer"));
  icon.show();
  return QApplication::exec();
}
