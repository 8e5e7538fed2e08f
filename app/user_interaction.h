#pragma once

#include <QString>
#include <QStringList>

namespace tolvane {

// The modal alerts and questions of the controller. The main window answers
// them with dialogs; tests answer them from a script. Every text arrives
// localised already.
// Thread-safety: main thread only; each call returns once the user answered.
class UserInteraction {
public:
    virtual ~UserInteraction() = default;

    // An alert with a title, an informative text and an OK button.
    virtual void showAlert(const QString &title, const QString &informativeText) = 0;

    // An alert offering `buttons` (the first is the default button); returns
    // the index of the one pressed, or -1 when the alert was dismissed.
    virtual int askChoice(const QString &title, const QString &informativeText,
                          const QStringList &buttons) = 0;
};

}  // namespace tolvane
