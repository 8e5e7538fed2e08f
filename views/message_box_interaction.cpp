#include "views/message_box_interaction.h"

#include <QMessageBox>
#include <QPushButton>

namespace tolvane {

void MessageBoxInteraction::showAlert(const QString &title, const QString &informativeText) {
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Tolvane"), title, QMessageBox::Ok,
                    parentWindow);
    box.setInformativeText(informativeText);
    box.exec();
}

int MessageBoxInteraction::askChoice(const QString &title, const QString &informativeText,
                                     const QStringList &buttons) {
    QMessageBox box(QMessageBox::Question, QStringLiteral("Tolvane"), title, QMessageBox::NoButton,
                    parentWindow);
    box.setInformativeText(informativeText);
    QList<QAbstractButton *> added;
    for (qsizetype index = 0; index < buttons.size(); ++index) {
        // The first is the default; with several, Escape answers the last
        // (the controller's questions end in "Cancel").
        const auto role = index == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
        QPushButton *button = box.addButton(buttons[index], role);
        if (index == 0) {
            box.setDefaultButton(button);
        }
        added.append(button);
    }
    if (buttons.size() > 1) {
        box.setEscapeButton(added.last());
    }
    box.exec();
    return int(added.indexOf(box.clickedButton()));
}

}  // namespace tolvane
