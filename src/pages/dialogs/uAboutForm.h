#pragma once

#include <QDialog>

/// Tells what program this is.
class TAboutForm : public QDialog
{
    Q_OBJECT
public:
    static void Execute(QWidget *owner);

private:
    explicit TAboutForm(QWidget *owner);
};
