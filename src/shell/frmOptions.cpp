#include "shell/frmOptions.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "base/Trace.h"
#include "shell/ShellSupport.h"

namespace orin::shell {

namespace {

constexpr int kCompareTab = 0;

template <class Widget>
Widget* Named(Widget* widget, const char* name) {
    widget->setObjectName(name);
    return widget;
}

void TracePress(const char* procName, const char* button) {
    WriteTrace(TraceMode, true, kTraceSub, procName,
               std::string("★★★「ｵﾌﾟｼｮﾝ設定」画面の「") + button + "」ﾎﾞﾀﾝが押された★★★");
}

}  // namespace

frmOptions::frmOptions(QWidget* owner) : QDialog(owner) {
    setObjectName("frmOptions");
    setWindowTitle(Q("ｵﾌﾟｼｮﾝ設定"));
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    tbsOptions_ = Named(new QTabWidget(this), "tbsOptions");
    auto* compare = Named(new QWidget, "picOptions(0)");
    auto* import = Named(new QWidget, "picOptions(1)");
    tbsOptions_->addTab(compare, Q("ｵﾌﾞｼﾞｪｸﾄの照合"));
    tbsOptions_->addTab(import, Q("一括ｲﾝﾎﾟｰﾄ"));

    // Tab 1: the properties a comparison leaves out.
    auto* selectCompare = Named(new QGroupBox(Q("ｵﾌﾞｼﾞｪｸﾄの選択"), compare), "fraSelectObj");
    cboSelObj_Compare_ = Named(new QComboBox(selectCompare), "cboSelObj_Compare");
    for (int i = 0; i < kCompareResourceCount; ++i) {
        cboSelObj_Compare_->addItem(Q(OptionResourceName(static_cast<OptionResource>(i))));
    }
    (new QVBoxLayout(selectCompare))->addWidget(cboSelObj_Compare_);
    auto* notTarget = Named(new QGroupBox(Q("照合対象外ﾌﾟﾛﾊﾟﾃｨの選択"), compare), "fraNotTarget");
    lstNotTarget_ = Named(new QListWidget(notTarget), "lstNotTarget");
    btnSelectAll_ = Named(new QPushButton(Q("すべてを選択"), notTarget), "btnSelectAll");
    btnClearAll_ = Named(new QPushButton(Q("すべてをｸﾘｱ"), notTarget), "btnClearAll");
    auto* listButtons = new QVBoxLayout;
    listButtons->addWidget(btnSelectAll_);
    listButtons->addWidget(btnClearAll_);
    listButtons->addStretch(1);
    auto* notTargetLayout = new QHBoxLayout(notTarget);
    notTargetLayout->addWidget(lstNotTarget_, 1);
    notTargetLayout->addLayout(listButtons);
    auto* compareLayout = new QVBoxLayout(compare);
    compareLayout->addWidget(selectCompare);
    compareLayout->addWidget(notTarget, 1);

    // Tab 2: what a bulk import does with an existing object.
    auto* selectImport = Named(new QGroupBox(Q("ｵﾌﾞｼﾞｪｸﾄの選択"), import), "fraSelectObj");
    cboSelObj_AllImport_ = Named(new QComboBox(selectImport), "cboSelObj_AllImport");
    for (int i = 0; i < kRepeatResourceCount; ++i) {
        cboSelObj_AllImport_->addItem(Q(OptionResourceName(static_cast<OptionResource>(i))));
    }
    (new QVBoxLayout(selectImport))->addWidget(cboSelObj_AllImport_);
    auto* repeat = Named(new QGroupBox(Q("ｵﾌﾞｼﾞｪｸﾄ重複時の処理"), import), "fraRepeat");
    cboSelectOption_ = Named(new QComboBox(repeat), "cboSelectOption");
    cmdSetAllRrc_ = Named(new QPushButton(Q("すべてのﾘｿｰｽに適用"), repeat), "cmdSetAllRrc");
    auto* repeatLayout = new QVBoxLayout(repeat);
    repeatLayout->addWidget(cboSelectOption_);
    repeatLayout->addWidget(cmdSetAllRrc_, 0, Qt::AlignRight);
    auto* importLayout = new QVBoxLayout(import);
    importLayout->addWidget(selectImport);
    importLayout->addWidget(repeat);
    importLayout->addStretch(1);

    cmdOK_ = Named(new QPushButton(Q("OK"), this), "cmdOK");
    cmdCancel_ = Named(new QPushButton(Q("ｷｬﾝｾﾙ"), this), "cmdCancel");
    cmdApply_ = Named(new QPushButton(Q("更新"), this), "cmdApply");
    cmdOK_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdCancel_);
    buttons->addWidget(cmdApply_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tbsOptions_, 1);
    layout->addLayout(buttons);

    // The dialog works on copies; only UpdateOptions carries them over.
    for (int i = 0; i < kCompareResourceCount; ++i) {
        auto settings = DontCompareOf(static_cast<OptionResource>(i));
        dontCompareTmp_[static_cast<size_t>(i)].assign(settings.begin(), settings.end());
    }
    for (int i = 0; i < kRepeatResourceCount; ++i) {
        repeatTmp_[static_cast<size_t>(i)] = RepeatOf(static_cast<OptionResource>(i));
    }
    FillNotTargetList();
    FillSelectOption();

    connect(cboSelObj_Compare_, &QComboBox::currentIndexChanged, this,
            &frmOptions::FillNotTargetList);
    connect(lstNotTarget_, &QListWidget::itemChanged, this, &frmOptions::NotTargetItemChanged);
    connect(btnSelectAll_, &QPushButton::clicked, this, [this] { SetAllChecks(true); });
    connect(btnClearAll_, &QPushButton::clicked, this, [this] { SetAllChecks(false); });
    connect(cboSelObj_AllImport_, &QComboBox::currentIndexChanged, this,
            &frmOptions::FillSelectOption);
    connect(cboSelectOption_, &QComboBox::activated, this, &frmOptions::SelectOptionChosen);
    connect(cmdSetAllRrc_, &QPushButton::clicked, this, &frmOptions::SetAllResources);
    connect(cmdOK_, &QPushButton::clicked, this, &frmOptions::cmdOKPressed);
    connect(cmdCancel_, &QPushButton::clicked, this, &frmOptions::cmdCancelPressed);
    connect(cmdApply_, &QPushButton::clicked, this, &frmOptions::cmdApplyPressed);

    resize(std::max(414, sizeHint().width()), std::max(360, sizeHint().height()));
    PlaceBelowCorner(this, owner);
}

OptionResource frmOptions::compareResource() const {
    return static_cast<OptionResource>(std::max(0, cboSelObj_Compare_->currentIndex()));
}

OptionResource frmOptions::importResource() const {
    return static_cast<OptionResource>(std::max(0, cboSelObj_AllImport_->currentIndex()));
}

void frmOptions::FillNotTargetList() {
    filling_ = true;
    lstNotTarget_->clear();
    auto& records = dontCompareTmp_[static_cast<size_t>(compareResource())];
    const auto names = CompareItemNames(compareResource());
    for (size_t row = 0; row < names.size() && row < records.size(); ++row) {
        auto* item = new QListWidgetItem(Q(names[row]), lstNotTarget_);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(records[row].blnChecked ? Qt::Checked : Qt::Unchecked);
        records[row].intListIndex = static_cast<int16_t>(row);
    }
    filling_ = false;
}

void frmOptions::NotTargetItemChanged(QListWidgetItem* item) {
    if (filling_) return;
    const int row = lstNotTarget_->row(item);
    for (CompareExclusion& record : dontCompareTmp_[static_cast<size_t>(compareResource())]) {
        if (record.intListIndex == row) record.blnChecked = item->checkState() == Qt::Checked;
    }
}

void frmOptions::SetAllChecks(bool checked) {
    for (int row = 0; row < lstNotTarget_->count(); ++row) {
        lstNotTarget_->item(row)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    }
}

void frmOptions::FillSelectOption() {
    cboSelectOption_->clear();
    for (int i = 0; i < 3; ++i) cboSelectOption_->addItem(Q(RepeatChoiceText(i)));
    const RepeatChoice& choice = repeatTmp_[static_cast<size_t>(importResource())];
    const auto chosen = std::find(choice.begin(), choice.end(), true);
    cboSelectOption_->setCurrentIndex(
        chosen == choice.end() ? -1 : static_cast<int>(chosen - choice.begin()));
}

void frmOptions::SelectOptionChosen(int choice) {
    if (choice < 0 || choice > 2) return;
    RepeatChoice& repeat = repeatTmp_[static_cast<size_t>(importResource())];
    for (size_t i = 0; i < repeat.size(); ++i) repeat[i] = static_cast<int>(i) == choice;
}

void frmOptions::SetAllResources() {
    const int choice = cboSelectOption_->currentIndex();
    if (choice < 0) return;
    for (RepeatChoice& repeat : repeatTmp_) {
        for (size_t i = 0; i < repeat.size(); ++i) repeat[i] = static_cast<int>(i) == choice;
    }
}

void frmOptions::UpdateOptions() {
    WriteTrace(TraceMode, true, kTraceSub, "UpdateOptions", "Enter");
    if (tbsOptions_->currentIndex() == kCompareTab) {
        for (int i = 0; i < kCompareResourceCount; ++i) {
            const auto& tmp = dontCompareTmp_[static_cast<size_t>(i)];
            std::copy(tmp.begin(), tmp.end(),
                      DontCompareOf(static_cast<OptionResource>(i)).begin());
        }
    } else {
        for (int i = 0; i < kRepeatResourceCount; ++i) {
            RepeatOf(static_cast<OptionResource>(i)) = repeatTmp_[static_cast<size_t>(i)];
        }
    }
    WriteTrace(TraceMode, true, kTraceSub, "UpdateOptions", "Exit");
}

void frmOptions::cmdOKPressed() {
    TracePress("cmdOK_Click", "OK");
    UpdateOptions();
    hide();
}

void frmOptions::cmdCancelPressed() {
    TracePress("cmdCancel_Click", "ｷｬﾝｾﾙ");
    hide();
}

void frmOptions::cmdApplyPressed() {
    TracePress("cmdApply_Click", "更新");
    UpdateOptions();
}

void frmOptions::reject() {
    cmdCancelPressed();
}

}  // namespace orin::shell
