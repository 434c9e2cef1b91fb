#include "shell/frmCreateTemplate.h"

#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <exception>

#include "base/Operator.h"
#include "csv/CsvReader.h"
#include "csv/Templates.h"
#include "platform/Strings.h"
#include "shell/ShellSupport.h"

namespace orin::shell {
namespace {

constexpr std::string_view kBoxTitle = "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成";

const char* PageName(ObjectKind kind) {
    switch (kind) {
        case ObjectKind::OU:
            return "組織単位の管理";
        case ObjectKind::Group:
            return "ｸﾞﾙｰﾌﾟの管理";
        case ObjectKind::User:
            return "ﾕｰｻﾞｰの管理";
        case ObjectKind::Computer:
            return "ｺﾝﾋﾟｭｰﾀの管理";
        case ObjectKind::SharedFolder:
            return "共有ﾌｫﾙﾀﾞの管理";
        default:
            return "";
    }
}

}  // namespace

frmCreateTemplate::frmCreateTemplate(QWidget* owner, ObjectKind kind, OperationKind op)
    : QDialog(owner), kind_(kind) {
    setObjectName("frmCreateTemplate");
    setWindowTitle(TitleFor(kind));
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    Frame1_ = new QGroupBox(Q("ﾃﾝﾌﾟﾚｰﾄの種類"), this);
    Frame1_->setObjectName("Frame1");
    auto* options = new QHBoxLayout(Frame1_);
    const char* captions[] = {"追加", "削除", "移動", "変更"};
    for (size_t i = 0; i < optImportType_.size(); ++i) {
        optImportType_[i] = new QRadioButton(Q(captions[i]), Frame1_);
        optImportType_[i]->setObjectName(QStringLiteral("optImportType(%1)").arg(i));
        options->addWidget(optImportType_[i]);
    }
    optImportType_[0]->setChecked(true);
    if (op != OperationKind::Exp) optImportType_[static_cast<size_t>(op)]->setChecked(true);

    Frame2_ = new QGroupBox(Q("ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙ名"), this);
    Frame2_->setObjectName("Frame2");
    txtTmpFilePath_ = new QLineEdit(Frame2_);
    txtTmpFilePath_->setObjectName("txtTmpFilePath");
    txtTmpFilePath_->setMinimumWidth(360);
    btnFileRefer_ = new QPushButton(Q("参照..."), Frame2_);
    btnFileRefer_->setObjectName("btnFileRefer");
    auto* file = new QHBoxLayout(Frame2_);
    file->addWidget(txtTmpFilePath_, 1);
    file->addWidget(btnFileRefer_);

    btnCreate_ = new QPushButton(Q("作成"), this);
    btnCreate_->setObjectName("btnCreate");
    btnCreate_->setDefault(true);
    btnCancel_ = new QPushButton(Q("ｷｬﾝｾﾙ"), this);
    btnCancel_->setObjectName("btnCancel");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(btnCreate_);
    buttons->addWidget(btnCancel_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Frame1_);
    layout->addWidget(Frame2_);
    layout->addLayout(buttons);
    adjustSize();

    connect(btnFileRefer_, &QPushButton::clicked, this, &frmCreateTemplate::btnFileReferPressed);
    connect(btnCreate_, &QPushButton::clicked, this, &frmCreateTemplate::btnCreatePressed);
    connect(btnCancel_, &QPushButton::clicked, this, &QDialog::reject);
}

QString frmCreateTemplate::TitleFor(ObjectKind kind) {
    return Q("ｲﾝﾎﾟｰﾄ用ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成--") + Q(PageName(kind));
}

QStringList frmCreateTemplate::FileFilters() {
    return {Q("CSV ﾌｧｲﾙ (*.csv)"), Q("すべてのﾌｧｲﾙ (*.*)")};
}

void frmCreateTemplate::btnFileReferPressed() {
    QFileDialog dialog(this, Q("ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの保存先"));
    dialog.setObjectName("dlgCommonDialog");
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    // The overwrite question is btnCreate's.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(FileFilters());
    dialog.setLabelText(QFileDialog::LookIn, Q("保存する場所(&I):"));
    dialog.setLabelText(QFileDialog::FileName, Q("ﾌｧｲﾙ名(&N):"));
    dialog.setLabelText(QFileDialog::FileType, Q("ﾌｧｲﾙの種類(&T):"));
    dialog.setLabelText(QFileDialog::Accept, Q("保存(&S)"));
    dialog.setLabelText(QFileDialog::Reject, Q("ｷｬﾝｾﾙ"));
    const QString current = txtTmpFilePath_->text().trimmed();
    if (!current.isEmpty()) dialog.selectFile(current);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    txtTmpFilePath_->setText(dialog.selectedFiles().constFirst());
}

void frmCreateTemplate::btnCreatePressed() {
    const std::string path = Trim(S(txtTmpFilePath_->text()));
    txtTmpFilePath_->setText(Q(path));
    if (path.empty()) {
        TheOperator().MessageBox(kBoxTitle, "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙ名が指定されていません。",
                                 MsgIcon::Critical, MsgButtons::Ok);
        return;
    }
    if (FileExists(path) &&
        TheOperator().MessageBox(kBoxTitle, "同名のCSVﾌｧｲﾙはすでに存在します。\r上書きしますか？",
                                 MsgIcon::Question, MsgButtons::YesNo) != MsgAnswer::Yes)
        return;

    if (!CreateTemplateFile(SelectedImportType(), path))
        TheOperator().MessageBox(kBoxTitle,
                                 "ﾌｧｲﾙへの書込みが失敗しました！\r"
                                 "ﾌｧｲﾙが使用中かまたはﾌｧｲﾙやﾃﾞｨﾚｸﾄﾘの書込み権限があるかを確認"
                                 "してください。",
                                 MsgIcon::Critical, MsgButtons::Ok);
    accept();
}

int16_t frmCreateTemplate::SelectedImportType() const {
    for (int16_t i = 0; i < 3; ++i)
        if (optImportType_[static_cast<size_t>(i)]->isChecked()) return i;
    return 3;
}

bool frmCreateTemplate::CreateTemplateFile(int16_t importType, const std::string& path) const {
    try {
        switch (kind_) {
            case ObjectKind::OU:
                return CreateOUTemplateFile(importType, path);
            case ObjectKind::Group:
                return CreateGrpTemplateFile(importType, path);
            case ObjectKind::User:
                return CreateUsrTemplateFile(importType, path);
            case ObjectKind::Computer:
                return CreateComTemplateFile(importType, path);
            case ObjectKind::SharedFolder:
                return CreateShareTemplateFile(importType, path);
            default:
                return false;
        }
    } catch (const std::exception&) {
        return false;  // told to the operator as a failed write
    }
}

}  // namespace orin::shell
