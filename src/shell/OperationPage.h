#pragma once
// One page of the main window's tab control stabProc: the CSV file, the domain names and the
// start buttons of one operation. Every control carries the page's suffix (_Add, _Del, _Mov,
// _Mdf, _Exp); the export page has no imitation button and no template button.

#include <QWidget>

#include "base/Identifiers.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orin::shell {

struct OperationPage {
    OperationKind op = OperationKind::Add;
    QWidget* page = nullptr;
    QGroupBox* fraFile = nullptr;  // fraImpFile_<op>, or fraExpFile on the export page
    QLineEdit* txtFilePath = nullptr;
    QPushButton* btnOpenFile = nullptr;
    QPushButton* btnCreateTmpFile = nullptr;  // none on the export page
    QGroupBox* fraDomain = nullptr;
    QLabel* lblDomainDNS = nullptr;
    QLineEdit* txtDomainDNS = nullptr;
    QLabel* lblDomainNetBIOS = nullptr;
    QLineEdit* txtDomainNetBIOS = nullptr;
    QPushButton* btnApply = nullptr;
    QPushButton* btnImitate = nullptr;  // none on the export page
    QPushButton* btnCompare = nullptr;
    QPushButton* btnEvent = nullptr;
};

// Builds the page of `op` with its controls named and captioned.
OperationPage BuildOperationPage(OperationKind op);

// The page's controls in the order the Tab key visits them.
QList<QWidget*> TabOrderOf(const OperationPage& page);

}  // namespace orin::shell
