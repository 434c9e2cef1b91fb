#include "shell/ShellSupport.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace orin::shell {

namespace {
constexpr int kCornerOffset = 500 / 15;  // 500 twips at 15 twips a pixel
}

QString BoxText(std::string_view text) {
    QString shown = Q(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return shown;
}

void PlaceBelowCorner(QWidget* dialog, const QWidget* owner) {
    if (!owner) {
        CentreOn(dialog, nullptr);
        return;
    }
    dialog->move(owner->frameGeometry().topLeft() + QPoint(kCornerOffset, kCornerOffset));
}

void CentreOn(QWidget* window, const QWidget* owner) {
    QRect area;
    if (owner) {
        area = owner->frameGeometry();
    } else if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        area = screen->availableGeometry();
    } else {
        return;
    }
    const QSize size = window->frameGeometry().size();
    window->move(area.center() - QPoint(size.width() / 2, size.height() / 2));
}

}  // namespace orin::shell
