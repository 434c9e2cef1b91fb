#pragma once
// frmOptions, "ｵﾌﾟｼｮﾝ設定": edits the in-memory options of run/Options.h on working copies.
// Tab 1 "ｵﾌﾞｼﾞｪｸﾄの照合" chooses the properties a comparison leaves out, tab 2 "一括ｲﾝﾎﾟｰﾄ" what
// a bulk import does with an object that exists already. "更新" and "OK" apply the family of
// the tab that is showing, and only that one: a change on the other tab is dropped when the
// dialog closes.

#include <QDialog>
#include <array>
#include <vector>

#include "base/Options.h"

class QComboBox;
class QGroupBox;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QTabWidget;

namespace orin::shell {

class frmOptions : public QDialog {
    Q_OBJECT
  public:
    // Copies every option into the working copies and fills the list with the OU items.
    explicit frmOptions(QWidget* owner);

    // Copies the working copies of the visible tab's family into the settings.
    void UpdateOptions();

    void cmdOKPressed();
    void cmdCancelPressed();
    void cmdApplyPressed();

  protected:
    void reject() override;

  private:
    OptionResource compareResource() const;
    OptionResource importResource() const;
    void FillNotTargetList();
    void NotTargetItemChanged(QListWidgetItem* item);
    void SetAllChecks(bool checked);
    void FillSelectOption();
    void SelectOptionChosen(int choice);
    void SetAllResources();

    QTabWidget* tbsOptions_;
    QComboBox* cboSelObj_Compare_;
    QListWidget* lstNotTarget_;
    QPushButton* btnSelectAll_;
    QPushButton* btnClearAll_;
    QComboBox* cboSelObj_AllImport_;
    QComboBox* cboSelectOption_;
    QPushButton* cmdSetAllRrc_;
    QPushButton* cmdOK_;
    QPushButton* cmdCancel_;
    QPushButton* cmdApply_;

    // The working copies: DontCompare_*_Tmp and blnRepeat_*_Tmp, by resource.
    std::array<std::vector<CompareExclusion>, kCompareResourceCount> dontCompareTmp_;
    std::array<RepeatChoice, kRepeatResourceCount> repeatTmp_;
    bool filling_ = false;
};

}  // namespace orin::shell
