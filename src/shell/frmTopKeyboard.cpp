// The keyboard movement of the main window: the arrow and Tab keys move between the object
// buttons, the tab strip and the page's file box as in the table below. It is an application
// event filter, so it sees a key before the widget that has the focus does, and it passes on
// every key it does not act on.
//
//   focus on                 key              effect
//   object button 1-5        Right            stabProc, page 0
//   object button 1-5        Tab              page 0, txtFilePath_Add
//   btnGPO                   Right            stabProc, page 4
//   btnGPO                   Tab              page 4, txtFilePath_Exp
//   stabProc                 Left, page 0     the current kind's button
//   stabProc                 Left, page 4     btnGPO, when GPO links are the current kind
//   stabProc                 Tab or Down      the file box of the page shown
//   txtFilePath_*            Left             the current kind's button
//   txtFilePath_*            Up               stabProc
//   txtFilePath_* (not Add)  Shift+Tab        stabProc, the page staying where it is

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

#include "shell/frmTop.h"

namespace orin::shell {

int16_t frmTop::ObjectOfButton(const QWidget* widget) const {
    for (size_t i = 0; i < objectButtons_.size(); ++i) {
        if (objectButtons_[i] == widget) return static_cast<int16_t>(i + 1);
    }
    return 0;
}

int frmTop::PageOfPathBox(const QWidget* widget) const {
    for (size_t i = 0; i < pages_.size(); ++i) {
        if (pages_[i].txtFilePath == widget) return static_cast<int>(i);
    }
    return -1;
}

bool frmTop::IsTabStrip(const QWidget* widget) const {
    return widget && (widget == stabProc_ || widget == stabProc_->tabBar());
}

void frmTop::FocusObjectButton() {
    if (QPushButton* button = objectButton(CurrentObject)) button->setFocus(Qt::OtherFocusReason);
}

void frmTop::FocusPathBox(int page) {
    stabProc_->setCurrentIndex(page);
    pages_[static_cast<size_t>(page)].txtFilePath->setFocus(Qt::TabFocusReason);
}

void frmTop::FocusTabStrip(int page) {
    stabProc_->setCurrentIndex(page);
    stabProc_->setFocus(Qt::OtherFocusReason);
}

bool frmTop::MoveByKey(QWidget* focus, const QKeyEvent& key) {
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
    const int k = key.key();

    if (const int16_t object = ObjectOfButton(focus)) {
        const int page = object == kObjectGpo ? 4 : 0;
        if (k == Qt::Key_Right) {
            FocusTabStrip(page);
            return true;
        }
        if (k == Qt::Key_Tab) {
            FocusPathBox(page);
            return true;
        }
        return false;
    }

    if (IsTabStrip(focus)) {
        const int page = stabProc_->currentIndex();
        if (k == Qt::Key_Left && (page == 0 || (page == 4 && CurrentObject == kObjectGpo))) {
            FocusObjectButton();
            return true;
        }
        if (k == Qt::Key_Tab || k == Qt::Key_Down) {
            FocusPathBox(page);
            return true;
        }
        return false;
    }

    if (const int page = PageOfPathBox(focus); page >= 0) {
        if (k == Qt::Key_Left) {
            FocusObjectButton();
            return true;
        }
        if (k == Qt::Key_Up || (k == Qt::Key_Backtab && page != 0)) {
            FocusTabStrip(page);
            return true;
        }
    }
    return false;
}

bool frmTop::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress: {
            // A key that a widget passes on reaches its parents too: act for the focus only.
            QWidget* focus = QApplication::focusWidget();
            if (!MainWindowActive || watched != focus) break;
            if (MoveByKey(focus, static_cast<const QKeyEvent&>(*event))) return true;
            break;
        }
        case QEvent::FocusIn:
            if (const int16_t object = ObjectOfButton(qobject_cast<QWidget*>(watched))) {
                SelectObject(object);
            } else if (watched == pages_[0].txtFilePath) {
                addPathBoxFocused_ = true;
                ApplyTabOrder();
            }
            break;
        case QEvent::FocusOut: {
            const auto* widget = qobject_cast<QWidget*>(watched);
            for (OperationPage& p : pages_) {
                if (widget == p.txtFilePath) {
                    FilePathBoxLeft(p.op);
                    if (p.op == OperationKind::Add) {
                        addPathBoxFocused_ = false;
                        ApplyTabOrder();
                    }
                } else if (widget == p.txtDomainDNS) {
                    DomainBoxLeft(p.txtDomainDNS, true);
                } else if (widget == p.txtDomainNetBIOS) {
                    DomainBoxLeft(p.txtDomainNetBIOS, false);
                }
            }
            break;
        }
        default:
            break;
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace orin::shell
