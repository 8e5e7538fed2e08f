// tolvane FILE: plays one file in a plain window. The full interface replaces
// this entry point.

#include <QApplication>
#include <QMessageBox>
#include <QSurfaceFormat>
#include <QTextStream>

#include "app/first_player_window.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"

int main(int argc, char **argv) {
    QSurfaceFormat::setDefaultFormat(tolvane::MyVideoView::preferredSurfaceFormat());
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tolvane"));
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    tolvane::installLocalizedStrings();
    tolvane::removeOwnerlessSettingsLock();

    const QStringList arguments = QApplication::arguments().mid(1);
    if (arguments.isEmpty()) {
        QTextStream(stderr) << "usage: tolvane FILE\n";
        return 2;
    }
    tolvane::FirstPlayerWindow window;
    window.show();
    const QString result = window.openAndPlay(arguments.first());
    if (result != QLatin1String(tolvane::kOpenSucceeded)) {
        QMessageBox::critical(&window, QStringLiteral("Tolvane"),
                              QStringLiteral("%1\n%2").arg(arguments.first(), result));
        return 1;
    }
    return QApplication::exec();
}
