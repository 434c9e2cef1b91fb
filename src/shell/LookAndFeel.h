#pragma once
// The look of the program, the same on every desktop: the Fusion style, and a Japanese font
// for the program's half-width katakana and kanji.

class QApplication;

namespace orin::shell {

// Sets the style, the font and the application's names. Call once, after creating the
// application object.
void ApplyLookAndFeel(QApplication& app);

}  // namespace orin::shell
