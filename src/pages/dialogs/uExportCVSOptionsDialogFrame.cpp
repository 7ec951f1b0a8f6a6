#include "pages/dialogs/uExportCVSOptionsDialogFrame.h"

#include "app/uAppConfig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

const QString Section = QStringLiteral("export_cvs_options");

enum TDelimiter { fdTab, fdSemicolon, fdComma, fdSpace, fdNone, fdCustom };
constexpr char16_t Delimiters[] = {u'\t', u';', u',', u' ', 0};
constexpr char16_t Qualifiers[] = {0, u'\'', u'"'};

char16_t FirstChar(const QString &text)
{
    return text.isEmpty() ? u'\0' : text[0].unicode();
}

} // namespace

void TExportCVSOptionsDialogFrame::DoCreate()
{
    MakeControls();
    connect(cbxFieldDelimiter, &QComboBox::currentIndexChanged, this,
            &TExportCVSOptionsDialogFrame::FieldDelimiterChanged);
    connect(chkRegSettingCustom, &QCheckBox::toggled, grpRegionalSettings, &QWidget::setVisible);
    ReadConfig();
}

void TExportCVSOptionsDialogFrame::MakeControls()
{
    auto *column = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    column->addLayout(form);
    cbxFieldDelimiter = new QComboBox(this);
    cbxFieldDelimiter->setObjectName("cbxFieldDelimiter");
    cbxFieldDelimiter->addItems({"Tab", "Semicolon", "Comma", "Space", "None", "Custom"});
    edFieldDelimiter = new QLineEdit(this);
    edFieldDelimiter->setObjectName("edFieldDelimiter");
    edFieldDelimiter->setAccessibleName("Custom field delimiter");
    edFieldDelimiter->setMaxLength(1);
    auto *delimiter = new QHBoxLayout;
    delimiter->addWidget(cbxFieldDelimiter, 1);
    delimiter->addWidget(edFieldDelimiter);
    form->addRow("Field delimiter:", delimiter);
    edFieldDelimiter->setFixedWidth(fontMetrics().averageCharWidth() * 8);
    cbxTextQualifier = new QComboBox(this);
    cbxTextQualifier->setObjectName("cbxTextQualifier");
    cbxTextQualifier->addItems({"None", "'", "\""});
    form->addRow("Text qualifier:", cbxTextQualifier);
    chkColumnTitles = new QCheckBox("Include column titles", this);
    chkColumnTitles->setObjectName("chkColumnTitles");
    form->addRow(chkColumnTitles);
    chkRegSettingCustom = new QCheckBox("Custom regional settings", this);
    chkRegSettingCustom->setObjectName("chkRegSettingCustom");
    column->addWidget(chkRegSettingCustom);
    grpRegionalSettings = new QGroupBox("Regional settings", this);
    grpRegionalSettings->setObjectName("grpRegionalSettings");
    // Hidden it keeps its place, so that the window does not jump.
    QSizePolicy policy = grpRegionalSettings->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    grpRegionalSettings->setSizePolicy(policy);
    column->addWidget(grpRegionalSettings);
    column->addStretch(1);
    auto *regional = new QFormLayout(grpRegionalSettings);
    edDecimalDelimiter = AddEdit(regional, "edDecimalDelimiter", "Decimal delimiter:", 1);
    edDateFormat = AddEdit(regional, "edDateFormat", "Date format:", 40);
    edDateDelimiter = AddEdit(regional, "edDateDelimiter", "Date delimiter:", 1);
    edTimeDelimiter = AddEdit(regional, "edTimeDelimiter", "Time delimiter:", 1);
}

QLineEdit *TExportCVSOptionsDialogFrame::AddEdit(QFormLayout *form, const char *name,
                                                 const QString &caption, int length)
{
    auto *edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setMaxLength(length);
    form->addRow(caption, edit);
    return edit;
}

void TExportCVSOptionsDialogFrame::ReadConfig()
{
    const TConfig &config = TAppConfig::Config();
    const TFormatSettings platform = TFormatSettings::System();
    const auto text = [&](const char *name, const QString &def) {
        return config.GetValue(Section, name, def);
    };
    chkColumnTitles->setChecked(config.GetValue(Section, "column_titles", false));
    cbxFieldDelimiter->setCurrentIndex(
        qBound<int>(fdTab, config.GetValue(Section, "field_delimiter_index", 0), fdCustom));
    FieldDelimiterChanged();
    edFieldDelimiter->setText(text("field_delimiter_value", edFieldDelimiter->text()));
    cbxTextQualifier->setCurrentIndex(
        qBound(0, config.GetValue(Section, "text_qualifier_index", 0), 2));
    // Deliberate: the property is set when the settings are those of the platform.
    chkRegSettingCustom->setChecked(!config.GetValue(Section, "custom_regional_settings", true));
    grpRegionalSettings->setVisible(chkRegSettingCustom->isChecked());
    edDateFormat->setText(text("date_format", platform.ShortDateFormat));
    edDateDelimiter->setText(text("date_delimiter", platform.DateSeparator));
    edTimeDelimiter->setText(text("time_delimiter", platform.TimeSeparator));
    edDecimalDelimiter->setText(text("decimal_delimiter", platform.DecimalSeparator));
}

void TExportCVSOptionsDialogFrame::WriteConfig() const
{
    TConfig &config = TAppConfig::Config();
    config.SetValue(Section, "column_titles", chkColumnTitles->isChecked());
    config.SetValue(Section, "field_delimiter_index", cbxFieldDelimiter->currentIndex());
    config.SetValue(Section, "field_delimiter_value", edFieldDelimiter->text());
    config.SetValue(Section, "text_qualifier_index", cbxTextQualifier->currentIndex());
    config.SetValue(Section, "custom_regional_settings", !chkRegSettingCustom->isChecked());
    config.SetValue(Section, "date_format", edDateFormat->text());
    config.SetValue(Section, "date_delimiter", edDateDelimiter->text());
    config.SetValue(Section, "time_delimiter", edTimeDelimiter->text());
    config.SetValue(Section, "decimal_delimiter", edDecimalDelimiter->text());
}

void TExportCVSOptionsDialogFrame::FieldDelimiterChanged()
{
    const int index = cbxFieldDelimiter->currentIndex();
    edFieldDelimiter->setEnabled(index == fdCustom);
    edFieldDelimiter->setText(index == fdSemicolon ? ";" : index == fdComma ? "," : "");
}

char16_t TExportCVSOptionsDialogFrame::FieldDelimiter() const
{
    const int index = cbxFieldDelimiter->currentIndex();
    return index == fdCustom ? FirstChar(edFieldDelimiter->text()) : Delimiters[index];
}

void TExportCVSOptionsDialogFrame::DoProcess()
{
    WriteConfig();
    const bool isCustom = chkRegSettingCustom->isChecked();
    const TFormatSettings platform = TFormatSettings::System();
    const auto chosen = [&](const QLineEdit *edit, const QString &def) {
        return isCustom ? edit->text() : def;
    };
    FOptions.FieldDelimiter = FieldDelimiter();
    FOptions.TextQualifier = Qualifiers[cbxTextQualifier->currentIndex()];
    FOptions.ColumnTitles = chkColumnTitles->isChecked();
    FOptions.DefaultRegionalSettings = !isCustom;
    FOptions.DateFormat = chosen(edDateFormat, platform.ShortDateFormat);
    FOptions.DateDelimiter = FirstChar(chosen(edDateDelimiter, platform.DateSeparator));
    FOptions.TimeDelimiter = FirstChar(chosen(edTimeDelimiter, platform.TimeSeparator));
    FOptions.DecimalDelimiter = FirstChar(chosen(edDecimalDelimiter, platform.DecimalSeparator));
}
