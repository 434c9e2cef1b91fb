// ORIN, the desktop program: one main window, one instance per application folder.

#include <QApplication>

#include "platform/AppFolder.h"
#include "run/RegisterEngines.h"
#include "shell/LookAndFeel.h"
#include "shell/QtOperator.h"
#include "shell/SessionEnd.h"
#include "shell/SingleInstance.h"
#include "shell/frmTop.h"

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    orin::shell::ApplyLookAndFeel(app);

    // A second start hands over to the first and ends before it touches any file.
    orin::shell::SingleInstance instance(orin::platform::AppFolder());
    if (!instance.IsFirst()) {
        instance.AskFirstToComeForward();
        return 0;
    }

    orin::RegisterAllEngines();
    orin::shell::frmTop window;
    orin::shell::QtOperator screen(&window);
    new orin::shell::SessionEnd(window, screen);  // owned by the window
    QObject::connect(&instance, &orin::shell::SingleInstance::comeForwardRequested, &window,
                     &orin::shell::frmTop::BringToFront);
    window.Load();
    window.show();
    return app.exec();
}
