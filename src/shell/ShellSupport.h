#pragma once
// Small helpers shared by the forms: text conversion between the program's UTF-8 strings and
// Qt, and the placement rules of the dialogs.

#include <QString>
#include <string>
#include <string_view>

class QWidget;

namespace orin::shell {

inline QString Q(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string S(const QString& text) {
    return text.toStdString();
}

// A message box text as the window system shows it: the carriage return between a box's
// sentences becomes a line break ("\r\n\t" continuations keep their tab).
QString BoxText(std::string_view text);

// Places `dialog` 500 twips (about 33 pixels) right of and below the top left corner of
// `owner`, the place of the login, wait and options dialogs.
void PlaceBelowCorner(QWidget* dialog, const QWidget* owner);

// Centres `window` on `owner`, or on the screen when there is no owner.
void CentreOn(QWidget* window, const QWidget* owner);

}  // namespace orin::shell
