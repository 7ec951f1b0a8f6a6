#pragma once

#include "shell/uDialogFrame.h"

#include <functional>

class QLabel;
class QStackedWidget;

/// A binary value: shown as a picture when it is one, else by its size; taken from and written to
/// files.
class TBlobDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TBlobDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    void SetParams(const QString &title, const QByteArray &value);
    /// Called with each value that the dialog takes; empty stands for NULL.
    void SetOnValue(std::function<void(const QByteArray &value)> event);

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = FTitle; }
    void resizeEvent(QResizeEvent *event) override;

private:
    void Display();
    void ShowImage();
    void Import();
    void Export();
    void Clear();

    QString FTitle;
    std::function<void(const QByteArray &value)> FOnValue;
    QByteArray FValue;
    QPixmap FImage;
    QStackedWidget *pcBlob = nullptr;
    QLabel *labSize = nullptr;
    QLabel *labImage = nullptr;
};
