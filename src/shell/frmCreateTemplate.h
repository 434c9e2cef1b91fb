#pragma once
// frmCreateTemplate: writes the CSV template of the main window's kind for the operation that
// the operator picks (optImportType 0 Add, 1 Del, 2 Mov, 3 Mdf) into the file named in
// txtTmpFilePath. Its message boxes go through TheOperator(), titled "ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成".

#include <QDialog>
#include <array>

#include "base/Identifiers.h"

class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace orin::shell {

class frmCreateTemplate : public QDialog {
    Q_OBJECT
  public:
    // `kind` is the kind of the main window's tab and `op` its current operation, whose option
    // is pre-selected (the export page has no template: the options stay as they are).
    frmCreateTemplate(QWidget* owner, ObjectKind kind, OperationKind op);

    // "ｲﾝﾎﾟｰﾄ用ﾃﾝﾌﾟﾚｰﾄﾌｧｲﾙの作成--" and the kind's page name.
    static QString TitleFor(ObjectKind kind);

    // The file dialog's filters, CSV files first.
    static QStringList FileFilters();

  private:
    void btnFileReferPressed();
    void btnCreatePressed();
    // The chosen option: 0, 1, 2 as they are, anything else 3.
    int16_t SelectedImportType() const;
    bool CreateTemplateFile(int16_t importType, const std::string& path) const;

    ObjectKind kind_;
    QGroupBox* Frame1_;
    QGroupBox* Frame2_;
    std::array<QRadioButton*, 4> optImportType_;
    QLineEdit* txtTmpFilePath_;
    QPushButton* btnFileRefer_;
    QPushButton* btnCreate_;
    QPushButton* btnCancel_;
};

}  // namespace orin::shell
