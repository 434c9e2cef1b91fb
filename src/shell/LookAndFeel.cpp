#include "shell/LookAndFeel.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QLocale>
#include <QStyleFactory>
#include <QTranslator>

namespace orin::shell {

void ApplyLookAndFeel(QApplication& app) {
    QApplication::setApplicationName(QStringLiteral("ORIN"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    // The first Japanese family the system has; fontconfig falls back by itself otherwise.
    const QStringList families = QFontDatabase::families();
    for (const char* wanted : {"Noto Sans CJK JP", "Noto Sans JP", "IPAexGothic", "IPAGothic",
                               "TakaoPGothic", "VL PGothic"}) {
        if (families.contains(QString::fromLatin1(wanted))) {
            QFont font(QString::fromLatin1(wanted));
            font.setPointSize(9);
            QApplication::setFont(font);
            break;
        }
    }

    // Qt's own texts (the file dialog, the edit menus) in Japanese where the translations are
    // installed.
    auto* translator = new QTranslator(&app);
    if (translator->load(QLocale(QLocale::Japanese), QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(translator);
    }
}

}  // namespace orin::shell
