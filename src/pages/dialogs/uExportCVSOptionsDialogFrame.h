#pragma once

#include "shell/uDialogFrame.h"
#include "tools/uDatasetExportText.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLineEdit;

/// How a result is written as delimited text. What was chosen is remembered.
class TExportCVSOptionsDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TExportCVSOptionsDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    TDatasetExportTextOptions FOptions; // settled by OK

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = "Export options"; }
    void DoProcess() override;

private:
    void MakeControls();
    QLineEdit *AddEdit(QFormLayout *form, const char *name, const QString &caption, int length);
    void ReadConfig();
    void WriteConfig() const;
    void FieldDelimiterChanged();
    char16_t FieldDelimiter() const;

    QComboBox *cbxFieldDelimiter = nullptr;
    QLineEdit *edFieldDelimiter = nullptr;
    QCheckBox *chkColumnTitles = nullptr;
    QComboBox *cbxTextQualifier = nullptr;
    QCheckBox *chkRegSettingCustom = nullptr;
    QGroupBox *grpRegionalSettings = nullptr;
    QLineEdit *edDecimalDelimiter = nullptr;
    QLineEdit *edDateFormat = nullptr;
    QLineEdit *edDateDelimiter = nullptr;
    QLineEdit *edTimeDelimiter = nullptr;
};
