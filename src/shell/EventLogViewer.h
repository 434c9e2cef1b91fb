#pragma once
// The event log, shown to the operator in a read-only window of the program's own, in place
// of Notepad. Event.log is CP932; the window decodes it, so it reads correctly whatever the
// desktop's editors assume, and it never changes the file. One window serves the whole
// process: opening the log again reloads it and brings the window to the front.

#include <QWidget>
#include <filesystem>

class QPlainTextEdit;
class QPushButton;

namespace orin::shell {

class EventLogViewer : public QWidget {
    Q_OBJECT
  public:
    // Shows the log at `path` (scrolled to its end, where the last run stands), opening the
    // window if it isn't open. A file that can't be read is told in a message box.
    static EventLogViewer* Show(const std::filesystem::path& path);
    // The window when it is open, else nullptr.
    static EventLogViewer* Current();

    const std::filesystem::path& path() const { return path_; }
    QString text() const;
    // Reads the file again. False when it can't be read.
    bool Reload();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    explicit EventLogViewer(const std::filesystem::path& path);
    ~EventLogViewer() override;

    std::filesystem::path path_;
    QPlainTextEdit* txtLog_;
    QPushButton* btnReload_;
    QPushButton* btnClose_;
};

}  // namespace orin::shell
