#pragma once
// frmTop, "ORIN  管理ｺﾝｿｰﾙ": the main window. A column of six object buttons picks the kind
// (the focused button is the current one), the five pages of stabProc pick the operation, and
// each page names a CSV file and the domain and starts a production, imitation or comparison
// run. The window remembers a file path for every (kind, operation) and keeps the domain
// names the same on all pages.

#include <QMainWindow>
#include <QString>
#include <array>
#include <filesystem>

#include "base/Identifiers.h"
#include "base/Operator.h"
#include "shell/OperationPage.h"

class QAction;
class QKeyEvent;
class QLineEdit;
class QMenu;
class QPushButton;
class QTabWidget;

namespace orin::shell {

// CurrentObject numbers the kinds from 1: 1 OU ... 5 shared folder, 6 GPO link.
inline constexpr int16_t kObjectGpo = 6;
// CurrentOperation numbers the operations from 1: 1 add ... 5 export.
inline constexpr int16_t kOperationExp = 5;

class frmTop : public QMainWindow {
    Q_OBJECT
  public:
    explicit frmTop(QWidget* parent = nullptr);
    ~frmTop() override;

    // The start-up steps that follow the single-instance check: the settings file, the
    // window's place, the file paths, the trace file's name, the first page and the options.
    void Load();

    // The window's state, in the numbering of the object buttons and the pages.
    int16_t CurrentObject = 1;
    int16_t CurrentOperation = 1;
    bool MainWindowActive = false;
    std::filesystem::path strEventLogPath;
    std::filesystem::path HelpFilePath;

    // The remembered path of (object 1..6, operation 1..5); empty where there is none.
    QString FilePath(int16_t object, int16_t operation) const;
    // What the domain boxes of the page of `op` hold, as typed.
    DomainFields DomainFieldsOf(OperationKind op) const;
    const OperationPage& page(OperationKind op) const { return pages_[static_cast<size_t>(op)]; }
    QPushButton* objectButton(int16_t object) const;
    QTabWidget* tabs() const { return stabProc_; }
    QAction* templateMenuEntry() const { return mnuFileTemplate_; }
    QMenu* fileMenu() const { return mnuFile_; }

    // A second start asked this instance to come forward.
    void BringToFront();

    // The session ends under the program (shell/SessionEnd.h): once the run in work has ended
    // and every modal window is gone (each closed as its Escape closes it), the window closes
    // as the operator's close does, and the program ends.
    void EndSession();

    // What the controls do.
    void SelectObject(int16_t object);  // an object button got the focus
    void StartRun(OperationKind op, RunMode mode);
    void OpenFile(OperationKind op);
    void CreateTemplateFile(OperationKind op);
    void OpenEventLog();
    void OpenHelp();
    void ShowLoginFromMenu();
    void ShowOptions();
    void ShowAbout();

  protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void BuildObjectButtons(QWidget* column);
    void BuildMenu();
    void ConnectPage(OperationPage& page);
    void Activated();
    void MarkObjectButton(int16_t object);
    // The Tab order: stabProc, the object buttons by their TabIndex, then the pages.
    void ApplyTabOrder();
    void DomainBoxLeft(QLineEdit* box, bool dns);
    void CloseWhenIdle();
    void FilePathBoxLeft(OperationKind op);

    // The keyboard movement table (frmTopKeyboard.cpp). True when the key was acted on.
    bool MoveByKey(QWidget* focus, const QKeyEvent& key);
    int16_t ObjectOfButton(const QWidget* widget) const;  // 1..6, or 0
    int PageOfPathBox(const QWidget* widget) const;       // 0..4, or -1
    bool IsTabStrip(const QWidget* widget) const;
    void FocusObjectButton();
    void FocusPathBox(int page);
    void FocusTabStrip(int page);

    std::array<QPushButton*, 6> objectButtons_{};
    QTabWidget* stabProc_ = nullptr;
    std::array<OperationPage, 5> pages_;
    // The FilePath table: [object - 1][operation - 1]; of GPO links only the export is used.
    std::array<std::array<QString, 5>, 6> filePath_;
    // While txtFilePath_Add has the focus, the current kind's button and btnGPO trade places
    // in the Tab order, so that Shift+Tab from the box goes back to the button the operator
    // came from instead of selecting GPO links.
    bool addPathBoxFocused_ = false;
    bool running_ = false;  // a run button's driver is working
    bool ending_ = false;

    QMenu* mnuFile_ = nullptr;
    QAction* mnuFileOpen_ = nullptr;
    QAction* mnuFileTemplate_ = nullptr;
};

}  // namespace orin::shell
