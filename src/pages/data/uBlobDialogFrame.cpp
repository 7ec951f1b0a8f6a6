#include "pages/data/uBlobDialogFrame.h"

#include "shell/uFileDialogs.h"
#include "shell/uGuard.h"
#include "support/uFileFormatUtils.h"
#include "support/uFileUtils.h"
#include "support/uFormat.h"
#include "widgets/uIcons.h"
#include "widgets/uToolBar.h"

#include <QAction>
#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

void TBlobDialogFrame::DoCreate()
{
    auto *toolBar = new TToolBar(this, "tbrBlob");
    const auto add = [&](const char *name, const char *caption, const char *icon, auto work) {
        QAction *action = toolBar->addAction(TIcons::Icon(icon), caption);
        action->setObjectName(name);
        connect(action, &QAction::triggered, this, [work] { TGuard::Run(work); });
    };
    add("actImport", "Import", "open", [this] { Import(); });
    add("actExport", "Export", "save", [this] { Export(); });
    toolBar->addSeparator();
    add("actClear", "Clear", "clear", [this] { Clear(); });
    pcBlob = new QStackedWidget(this);
    pcBlob->setObjectName("pcBlob");
    labSize = new QLabel(pcBlob);
    labSize->setObjectName("labSize");
    labImage = new QLabel(pcBlob);
    labImage->setObjectName("labImage");
    for (QLabel *label : {labSize, labImage}) {
        label->setAlignment(Qt::AlignCenter);
        label->setMinimumSize(1, 1); // a large picture must not make the dialog larger
        pcBlob->addWidget(label);
    }
    auto *column = new QVBoxLayout(this);
    column->addWidget(toolBar);
    column->addWidget(pcBlob, 1);
    resize(fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 26);
}

void TBlobDialogFrame::SetParams(const QString &title, const QByteArray &value)
{
    FTitle = title;
    FValue = value;
    Display();
}

void TBlobDialogFrame::SetOnValue(std::function<void(const QByteArray &value)> event)
{
    FOnValue = std::move(event);
    FOnValue(FValue);
}

void TBlobDialogFrame::Display()
{
    if (FOnValue)
        FOnValue(FValue);
    FImage = {};
    const char *format = TFileFormatUtils::IsPng(FValue)    ? "PNG"
                         : TFileFormatUtils::IsGif(FValue)  ? "GIF"
                         : TFileFormatUtils::IsJpeg(FValue) ? "JPEG"
                                                            : nullptr;
    if (format && FImage.loadFromData(FValue, format)) {
        pcBlob->setCurrentWidget(labImage);
        ShowImage();
        return;
    }
    labSize->setText(FValue.isEmpty() ? QString("NULL") : TFormat::SizeText(FValue.size()));
    pcBlob->setCurrentWidget(labSize);
}

void TBlobDialogFrame::ShowImage()
{
    if (FImage.isNull())
        return;
    const QSize room = pcBlob->size().boundedTo(FImage.size());
    labImage->setPixmap(FImage.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void TBlobDialogFrame::resizeEvent(QResizeEvent *event)
{
    TDialogFrame::resizeEvent(event);
    ShowImage();
}

void TBlobDialogFrame::Import()
{
    QString fileName;
    if (!TFileDialogs::Open(this, {.Filters = {"All (*)", "Images (*.png *.gif *.jpeg *.jpg)"}},
                            fileName))
        return;
    QByteArray bytes;
    TFileUtils::ReadBinary(fileName, bytes);
    FValue = bytes;
    Display();
}

void TBlobDialogFrame::Export()
{
    const QString extension = TFileFormatUtils::IsPng(FValue)    ? "png"
                              : TFileFormatUtils::IsGif(FValue)  ? "gif"
                              : TFileFormatUtils::IsJpeg(FValue) ? "jpeg"
                                                                 : "";
    QString fileName;
    if (TFileDialogs::Save(this, {.Extension = extension, .Filters = {"All (*)"}}, fileName))
        TFileUtils::WriteBinary(fileName, FValue);
}

void TBlobDialogFrame::Clear()
{
    FValue.clear();
    Display();
}
