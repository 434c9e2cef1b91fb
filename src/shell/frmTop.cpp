#include "shell/frmTop.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <exception>

#include "base/Options.h"
#include "base/RunContext.h"
#include "base/Trace.h"
#include "directory/DirectorySession.h"
#include "platform/AppFolder.h"
#include "platform/Strings.h"
#include "run/Drivers.h"
#include "run/OrinIni.h"
#include "shell/EventLogViewer.h"
#include "shell/ShellSupport.h"
#include "shell/frmAbout.h"
#include "shell/frmCreateTemplate.h"
#include "shell/frmLogin.h"
#include "shell/frmOptions.h"

namespace orin::shell {

namespace {

constexpr const char* kWindowTitle = "ORIN  管理ｺﾝｿｰﾙ";

struct ObjectButtonCaption {
    const char* name;
    const char* caption;
};
constexpr std::array<ObjectButtonCaption, 6> kObjectButtons = {{
    {"btnOU", "組織単位"},
    {"btnGroup", "ｸﾞﾙｰﾌﾟ"},
    {"btnUser", "ﾕｰｻﾞｰ"},
    {"btnComputer", "ｺﾝﾋﾟｭｰﾀ"},
    {"btnShare", "共有ﾌｫﾙﾀﾞ"},
    {"btnGPO", "GPOﾘﾝｸ"},
}};

// The marked button: 12 points, bold, on light yellow (0xC0FFFF as the window system writes
// its colours, blue-green-red).
const QColor kMarkedBackground(0xFF, 0xFF, 0xC0);

}  // namespace

frmTop::frmTop(QWidget* parent) : QMainWindow(parent) {
    setObjectName("frmTop");
    setWindowTitle(Q(kWindowTitle));

    auto* central = new QWidget(this);
    auto* column = new QWidget(central);
    column->setObjectName("fraObject");
    BuildObjectButtons(column);

    stabProc_ = new QTabWidget(central);
    stabProc_->setObjectName("stabProc");
    for (int i = 0; i < 5; ++i) {
        const auto op = static_cast<OperationKind>(i);
        pages_[static_cast<size_t>(i)] = BuildOperationPage(op);
        stabProc_->addTab(pages_[static_cast<size_t>(i)].page, Q(OperationWord(op)));
        ConnectPage(pages_[static_cast<size_t>(i)]);
    }
    connect(stabProc_, &QTabWidget::currentChanged, this,
            [this](int index) { CurrentOperation = static_cast<int16_t>(index + 1); });

    auto* layout = new QHBoxLayout(central);
    layout->addWidget(column, 0);
    layout->addWidget(stabProc_, 1);
    setCentralWidget(central);
    BuildMenu();
    ApplyTabOrder();

    // The keyboard movement lives as long as the window, in front of every widget's own keys.
    qApp->installEventFilter(this);
}

frmTop::~frmTop() {
    qApp->removeEventFilter(this);
}

void frmTop::BuildObjectButtons(QWidget* column) {
    auto* buttons = new QVBoxLayout(column);
    buttons->setContentsMargins(0, 0, 0, 0);
    for (size_t i = 0; i < objectButtons_.size(); ++i) {
        auto* button = new QPushButton(Q(kObjectButtons[i].caption), column);
        button->setObjectName(kObjectButtons[i].name);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setAutoDefault(false);
        button->setMinimumSize(140, 44);
        button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
        buttons->addWidget(button);
        objectButtons_[i] = button;
    }
    buttons->addStretch(1);
    MarkObjectButton(0);
}

void frmTop::BuildMenu() {
    mnuFile_ = menuBar()->addMenu(Q("ﾌｧｲﾙ(&F)"));
    mnuFile_->setObjectName("mnuFile");
    mnuFileOpen_ = mnuFile_->addAction(Q("ﾌｧｲﾙを選択(&S)"), this, [this] {
        OpenFile(static_cast<OperationKind>(CurrentOperation - 1));
    });
    mnuFileOpen_->setObjectName("mnuFileItem(0)");
    mnuFileTemplate_ = mnuFile_->addAction(Q("ﾃﾝﾌﾟﾚｰﾄを作成(&T)"), this, [this] {
        CreateTemplateFile(static_cast<OperationKind>(CurrentOperation - 1));
    });
    mnuFileTemplate_->setObjectName("mnuFileItem(1)");
    mnuFile_->addSeparator();
    QAction* exit = mnuFile_->addAction(Q("終了(&X)"), this, &QWidget::close);
    exit->setObjectName("mnuFileItem(3)");
    // The export page has no template.
    connect(mnuFile_, &QMenu::aboutToShow, this,
            [this] { mnuFileTemplate_->setEnabled(CurrentOperation != kOperationExp); });

    QMenu* option = menuBar()->addMenu(Q("ｵﾌﾟｼｮﾝ(&O)"));
    option->setObjectName("mnuOption");
    option->addAction(Q("ﾄﾞﾒｲﾝ接続(&D)"), this, &frmTop::ShowLoginFromMenu)
        ->setObjectName("mnuOptionItem(0)");
    option->addAction(Q("設定(&S)"), this, &frmTop::ShowOptions)->setObjectName("mnuOptionItem(1)");

    QMenu* tool = menuBar()->addMenu(Q("ﾂｰﾙ(&T)"));
    tool->setObjectName("mnuTool");
    // The bulk export and import have no dialog in this program yet.
    QAction* bulk = tool->addAction(Q("一括ｴｸｽﾎﾟｰﾄ/ｲﾝﾎﾟｰﾄ(&A)"));
    bulk->setObjectName("mnuAllExport");
    bulk->setEnabled(false);

    QMenu* help = menuBar()->addMenu(Q("ﾍﾙﾌﾟ(&H)"));
    help->setObjectName("mnuHelp");
    help->addAction(Q("ORINﾍﾙﾌﾟ(&O)"), this, &frmTop::OpenHelp)->setObjectName("mnuHelpItem(0)");
    help->addSeparator();
    help->addAction(Q("ﾊﾞｰｼﾞｮﾝ情報(&V)"), this, &frmTop::ShowAbout)
        ->setObjectName("mnuHelpItem(2)");
}

void frmTop::ConnectPage(OperationPage& p) {
    const OperationKind op = p.op;
    connect(p.btnApply, &QPushButton::clicked, this,
            [this, op] { StartRun(op, RunMode::Production); });
    if (p.btnImitate) {
        connect(p.btnImitate, &QPushButton::clicked, this,
                [this, op] { StartRun(op, RunMode::Imitate); });
    }
    connect(p.btnCompare, &QPushButton::clicked, this,
            [this, op] { StartRun(op, RunMode::Compare); });
    connect(p.btnOpenFile, &QPushButton::clicked, this, [this, op] { OpenFile(op); });
    if (p.btnCreateTmpFile) {
        connect(p.btnCreateTmpFile, &QPushButton::clicked, this,
                [this, op] { CreateTemplateFile(op); });
    }
    connect(p.btnEvent, &QPushButton::clicked, this, &frmTop::OpenEventLog);
}

void frmTop::Load() {
    TraceMode = 0;
    CreateDefaultIni();
    ReadIni();
    gSession.Password.clear();
    adjustSize();
    CentreOn(this, nullptr);

    const std::filesystem::path folder = platform::AppFolder();
    strEventLogPath = folder / "Event.log";
    gRun.strEventLogPath = strEventLogPath.string();
    HelpFilePath = folder / "orin.chm";
    InitTraceFilePath(folder);

    stabProc_->setCurrentIndex(0);
    CurrentOperation = 1;
    gSession.LoginFromMenu = false;
    ResetOptions();

    SelectObject(1);
    objectButtons_[0]->setFocus();
}

QString frmTop::FilePath(int16_t object, int16_t operation) const {
    if (object < 1 || object > 6 || operation < 1 || operation > 5) return {};
    return filePath_[static_cast<size_t>(object - 1)][static_cast<size_t>(operation - 1)];
}

DomainFields frmTop::DomainFieldsOf(OperationKind op) const {
    const OperationPage& p = page(op);
    return {S(p.txtDomainDNS->text()), S(p.txtDomainNetBIOS->text())};
}

QPushButton* frmTop::objectButton(int16_t object) const {
    if (object < 1 || object > 6) return nullptr;
    return objectButtons_[static_cast<size_t>(object - 1)];
}

void frmTop::BringToFront() {
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
}

bool frmTop::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        Activated();
    } else if (event->type() == QEvent::WindowDeactivate) {
        MainWindowActive = false;
    }
    return QMainWindow::event(event);
}

void frmTop::Activated() {
    WriteTrace(TraceMode, true, kTraceSub, "Form_Activate", "Enter: ★★★「ORIN管理ｺﾝｿｰﾙ」画面★★★");
    MainWindowActive = true;
    // What frmLogin left in the session shows on every page.
    for (OperationPage& p : pages_) {
        if (!gSession.DomainDNSName.empty()) p.txtDomainDNS->setText(Q(gSession.DomainDNSName));
        if (!gSession.DomainNetBIOSName.empty()) {
            p.txtDomainNetBIOS->setText(Q(gSession.DomainNetBIOSName));
        }
    }
    ApplyTabOrder();
    WriteTrace(TraceMode, true, kTraceSub, "Form_Activate", "Exit: ★★★「ORIN管理ｺﾝｿｰﾙ」画面★★★");
}

void frmTop::closeEvent(QCloseEvent* event) {
    UpdateIni();
    if (EventLogViewer* viewer = EventLogViewer::Current()) viewer->close();
    event->accept();
}

void frmTop::SelectObject(int16_t object) {
    if (object < 1 || object > 6) return;
    CurrentObject = object;
    MarkObjectButton(object);
    const bool gpo = object == kObjectGpo;
    for (int i = 0; i < 4; ++i) stabProc_->setTabVisible(i, !gpo);
    stabProc_->setTabVisible(4, true);
    if (gpo) stabProc_->setCurrentIndex(4);

    const auto& paths = filePath_[static_cast<size_t>(object - 1)];
    for (size_t i = 0; i < pages_.size(); ++i) {
        if (gpo && i != 4) continue;
        pages_[i].txtFilePath->setText(paths[i]);
    }
}

void frmTop::MarkObjectButton(int16_t object) {
    for (size_t i = 0; i < objectButtons_.size(); ++i) {
        QPushButton* button = objectButtons_[i];
        QFont font = QApplication::font();
        QPalette palette;
        if (static_cast<int16_t>(i + 1) == object) {
            font.setPointSize(12);
            font.setBold(true);
            palette = button->palette();
            palette.setColor(QPalette::Button, kMarkedBackground);
        } else {
            font.setPointSize(9);
            font.setBold(false);
        }
        button->setFont(font);
        button->setPalette(palette);
    }
}

void frmTop::ApplyTabOrder() {
    // TabIndex 5 (btnOU) to 10 (btnGPO), with the current kind and btnGPO traded while
    // txtFilePath_Add has the focus.
    std::array<QWidget*, 6> column;
    for (size_t i = 0; i < column.size(); ++i) column[i] = objectButtons_[i];
    if (addPathBoxFocused_ && CurrentObject >= 1 && CurrentObject < kObjectGpo) {
        std::swap(column[static_cast<size_t>(CurrentObject - 1)], column[5]);
    }
    QList<QWidget*> order{stabProc_};
    for (QWidget* button : column) order << button;
    for (const OperationPage& p : pages_) order << TabOrderOf(p);
    for (qsizetype i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

void frmTop::DomainBoxLeft(QLineEdit* box, bool dns) {
    const std::string text = Trim(S(box->text()));
    (dns ? gSession.DomainDNSName : gSession.DomainNetBIOSName) = text;
    for (OperationPage& p : pages_) {
        QLineEdit* other = dns ? p.txtDomainDNS : p.txtDomainNetBIOS;
        if (other != box) other->setText(Q(text));
    }
}

void frmTop::FilePathBoxLeft(OperationKind op) {
    // Stored as typed; only the start buttons trim.
    filePath_[static_cast<size_t>(CurrentObject - 1)][static_cast<size_t>(op)] =
        page(op).txtFilePath->text();
}

void frmTop::EndSession() {
    if (ending_) return;
    ending_ = true;
    CloseWhenIdle();
}

void frmTop::CloseWhenIdle() {
    if (QWidget* modal = QApplication::activeModalWidget()) {
        // frmProgress takes this as its Cancel, and closes once its run has ended.
        if (auto* dialog = qobject_cast<QDialog*>(modal)) {
            dialog->reject();
        } else {
            modal->close();
        }
    }
    if (running_ || QApplication::activeModalWidget()) {
        QTimer::singleShot(50, this, &frmTop::CloseWhenIdle);
        return;
    }
    close();
    QCoreApplication::quit();
}

void frmTop::StartRun(OperationKind op, RunMode mode) {
    if (ending_) return;
    // The driver marks the run as a CSV run, trims the path and sets the mode flags.
    const auto kind = static_cast<ObjectKind>(CurrentObject - 1);
    running_ = true;
    try {
        RunFromButton(kind, op, mode, S(page(op).txtFilePath->text()));
    } catch (const std::exception& error) {
        // Nothing a run meets should end the program; the operator hears of it instead.
        TheOperator().MessageBox(kWindowTitle,
                                 std::string("処理が異常終了しました。\r") + error.what(),
                                 MsgIcon::Critical, MsgButtons::Ok);
    }
    running_ = false;
}

void frmTop::OpenFile(OperationKind op) {
    QFileDialog dialog(this, Q("ﾌｧｲﾙを選択"));
    dialog.setObjectName("dlgCommonDialog");
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::ReadOnly);
    // A name that does not exist yet may be typed: the export page names the file it writes.
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    const QString csvFilter = Q("CSV ﾌｧｲﾙ (*.csv)");
    dialog.setNameFilters({Q("すべてのﾌｧｲﾙ (*.*)"), csvFilter});
    dialog.selectNameFilter(csvFilter);
    dialog.setLabelText(QFileDialog::LookIn, Q("ﾌｧｲﾙの場所(&I):"));
    dialog.setLabelText(QFileDialog::FileName, Q("ﾌｧｲﾙ名(&N):"));
    dialog.setLabelText(QFileDialog::FileType, Q("ﾌｧｲﾙの種類(&T):"));
    dialog.setLabelText(QFileDialog::Accept, Q("開く(&O)"));
    dialog.setLabelText(QFileDialog::Reject, Q("ｷｬﾝｾﾙ"));
    const QString current = page(op).txtFilePath->text().trimmed();
    if (!current.isEmpty()) dialog.selectFile(current);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;

    const QString chosen = dialog.selectedFiles().constFirst();
    page(op).txtFilePath->setText(chosen);
    filePath_[static_cast<size_t>(CurrentObject - 1)][static_cast<size_t>(op)] = chosen;
}

void frmTop::CreateTemplateFile(OperationKind op) {
    if (op == OperationKind::Exp) return;
    frmCreateTemplate dialog(this, static_cast<ObjectKind>(CurrentObject - 1), op);
    dialog.move(frameGeometry().topLeft());
    dialog.exec();
}

void frmTop::OpenEventLog() {
    TheOperator().OpenEventLog(strEventLogPath);
}

void frmTop::OpenHelp() {
    const bool opened = std::filesystem::is_regular_file(HelpFilePath) &&
                        QDesktopServices::openUrl(QUrl::fromLocalFile(Q(HelpFilePath.string())));
    if (opened) return;
    TheOperator().MessageBox(kWindowTitle,
                             "ﾍﾙﾌﾟﾌｧｲﾙの起動が失敗しました。\r"
                             "ﾍﾙﾌﾟﾌｧｲﾙが Orin.exe と同じﾊﾟｽにあるかどうかを確認してください。",
                             MsgIcon::Critical, MsgButtons::Ok);
}

void frmTop::ShowLoginFromMenu() {
    gSession.LoginFromMenu = true;
    {
        frmLogin dialog(this);
        dialog.ShowModal();
    }
    // The window comes back to the front, and its activation shows what the dialog changed.
    activateWindow();
}

void frmTop::ShowOptions() {
    frmOptions dialog(this);
    dialog.exec();
}

void frmTop::ShowAbout() {
    frmAbout dialog(this);
    dialog.exec();
}

}  // namespace orin::shell
