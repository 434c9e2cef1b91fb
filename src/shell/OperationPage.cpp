#include "shell/OperationPage.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <string>

#include "shell/ShellSupport.h"

namespace orin::shell {

namespace {

template <class Widget>
Widget* Named(Widget* widget, const std::string& name) {
    widget->setObjectName(Q(name));
    return widget;
}

// The captions of the production and imitation buttons: "本番追加開始", "模擬追加開始"...
std::string StartCaption(const char* mode, OperationKind op) {
    if (op == OperationKind::Exp) return "ｴｸｽﾎﾟｰﾄ開始";
    return std::string(mode) + OperationWord(op) + "開始";
}

}  // namespace

OperationPage BuildOperationPage(OperationKind op) {
    const std::string suffix = OperationSuffix(op);
    const bool exportPage = op == OperationKind::Exp;
    OperationPage p;
    p.op = op;
    p.page = Named(new QWidget, "page" + suffix);

    // The file frame: the export page names the file it writes.
    p.fraFile = exportPage ? Named(new QGroupBox(Q("ｴｸｽﾎﾟｰﾄCSVﾌｧｲﾙの指定")), "fraExpFile")
                           : Named(new QGroupBox(Q("ｲﾝﾎﾟｰﾄCSVﾌｧｲﾙの指定")), "fraImpFile" + suffix);
    p.txtFilePath = Named(new QLineEdit, "txtFilePath" + suffix);
    p.txtFilePath->setMinimumWidth(320);
    p.btnOpenFile = Named(new QPushButton(Q("ﾌｧｲﾙを選択")), "btnOpenFile" + suffix);
    auto* fileRow = new QHBoxLayout(p.fraFile);
    fileRow->addWidget(p.txtFilePath, 1);
    fileRow->addWidget(p.btnOpenFile);
    if (!exportPage) {
        p.btnCreateTmpFile =
            Named(new QPushButton(Q("ﾃﾝﾌﾟﾚｰﾄを作成")), "btnCreateTmpFile" + suffix);
        fileRow->addWidget(p.btnCreateTmpFile);
    }

    p.fraDomain = Named(new QGroupBox(Q("ﾄﾞﾒｲﾝ名の指定")), "fraDomain" + suffix);
    p.lblDomainDNS = Named(new QLabel(Q("ﾄﾞﾒｲﾝの完全なDNS名 （例： active.example.co.jp）")),
                           "lblDomainDNS" + suffix);
    p.txtDomainDNS = Named(new QLineEdit, "txtDomainDNS" + suffix);
    p.lblDomainNetBIOS =
        Named(new QLabel(Q("ﾄﾞﾒｲﾝのNetBIOS名 （例： active）")), "lblDomainNetBIOS" + suffix);
    p.txtDomainNetBIOS = Named(new QLineEdit, "txtDomainNetBIOS" + suffix);
    p.lblDomainDNS->setBuddy(p.txtDomainDNS);
    p.lblDomainNetBIOS->setBuddy(p.txtDomainNetBIOS);
    auto* domain = new QGridLayout(p.fraDomain);
    domain->addWidget(p.lblDomainDNS, 0, 0);
    domain->addWidget(p.txtDomainDNS, 0, 1);
    domain->addWidget(p.lblDomainNetBIOS, 1, 0);
    domain->addWidget(p.txtDomainNetBIOS, 1, 1);
    domain->setColumnStretch(1, 1);

    p.btnApply = Named(new QPushButton(Q(StartCaption("本番", op))), "btnApply" + suffix);
    if (!exportPage) {
        p.btnImitate = Named(new QPushButton(Q(StartCaption("模擬", op))), "btnImitate" + suffix);
    }
    p.btnCompare = Named(new QPushButton(Q("ﾃﾞｰﾀ照合開始")), "btnCompare" + suffix);
    p.btnEvent = Named(new QPushButton(Q("ｲﾍﾞﾝﾄﾛｸﾞを開く")), "btnEvent" + suffix);
    auto* starts = new QHBoxLayout;
    for (QPushButton* button : {p.btnApply, p.btnImitate, p.btnCompare}) {
        if (!button) continue;
        button->setMinimumHeight(36);
        starts->addWidget(button);
    }
    starts->addStretch(1);
    starts->addWidget(p.btnEvent);

    auto* layout = new QVBoxLayout(p.page);
    layout->addWidget(p.fraFile);
    layout->addWidget(p.fraDomain);
    layout->addStretch(1);
    layout->addLayout(starts);
    return p;
}

QList<QWidget*> TabOrderOf(const OperationPage& p) {
    QList<QWidget*> order;
    for (QWidget* w :
         {static_cast<QWidget*>(p.txtFilePath), static_cast<QWidget*>(p.btnOpenFile),
          static_cast<QWidget*>(p.btnCreateTmpFile), static_cast<QWidget*>(p.txtDomainDNS),
          static_cast<QWidget*>(p.txtDomainNetBIOS), static_cast<QWidget*>(p.btnApply),
          static_cast<QWidget*>(p.btnImitate), static_cast<QWidget*>(p.btnCompare),
          static_cast<QWidget*>(p.btnEvent)}) {
        if (w) order << w;
    }
    return order;
}

}  // namespace orin::shell
