#include "shell/LookAndFeel.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QLocale>
#include <QStyleFactory>
#include <QTranslator>

namespace orin::shell {
namespace {

// The button of a message box that shows and hides its detail, in the program's words.
class DetailButtonTexts final : public QTranslator {
  public:
    using QTranslator::QTranslator;
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override {
        if (qstrcmp(context, "QMessageBox") != 0) return {};
        if (qstrcmp(source, "Show Details...") == 0) return QStringLiteral("詳細(&D)");
        if (qstrcmp(source, "Hide Details...") == 0) return QStringLiteral("詳細を隠す(&D)");
        return {};
    }
};

}  // namespace

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
    // Installed last, asked first.
    QApplication::installTranslator(new DetailButtonTexts(&app));
}

}  // namespace orin::shell
