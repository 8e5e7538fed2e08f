#pragma once

#include <QPointer>
#include <QWidget>

#include "app/user_interaction.h"

namespace tolvane {

// The controller's alerts and questions as modal message boxes over the main
// window.
// Thread-safety: main thread only.
class MessageBoxInteraction final : public UserInteraction {
public:
    // The window the boxes are modal to; may be set later, may be null.
    void setParentWindow(QWidget *window) { parentWindow = window; }

    void showAlert(const QString &title, const QString &informativeText) override;
    int askChoice(const QString &title, const QString &informativeText,
                  const QStringList &buttons) override;

private:
    QPointer<QWidget> parentWindow;
};

}  // namespace tolvane
