#pragma once

#include <QApplication>

/// Start-up services ahead of the main window.
class TMainDataModule
{
public:
    /// Loads the error names; a missing or broken file is shown, and codes then go without a name.
    TMainDataModule();
};

/// The application, whose event delivery is the last net for what an event handler throws.
class TApplication : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject *receiver, QEvent *event) override;
};
