#pragma once

#include "model/uDbmEntities.h"
#include "shell/uDialogFrame.h"
#include "support/uVariant.h"
#include "widgets/uVerticalGridEditors.h"

#include <QHash>
#include <QSet>

class QLabel;
class TDataSet;
class TDbmFieldItem;
class TField;
class TDbmFieldList;
class TDbmManager;
class TVerticalGrid;
class TVerticalRow;

/// One line per column of a row that is inserted or changed. Only what the user touched is sent.
class TDataRecordDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TDataRecordDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    /// Both raise EException when the table or view is not there; the second also when the row is
    /// not.
    void InitializeCreate(TDbmManager &manager, const QString &databaseName,
                          const QString &tableName);
    void InitializeUpdate(TDbmManager &manager, const QString &databaseName,
                          const QString &tableName, const QStringList &whereFields,
                          const TVariantList &whereValues);

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override;
    void DoGetOkButtonTitle(QString &title) const override;
    void DoProcess() override;

private:
    enum TMode { rmNone, rmCreate, rmUpdate };
    struct TField
    {
        TDbmFieldEntity Entity;
        QString TypeText;
        QString Shown; // text of the initial value, as the server gave it
    };

    void Initialize(TDbmManager &manager, const QString &databaseName, const QString &tableName);
    void ReadFields(TDbmFieldList &fields);
    void TakeRow(const TDataSet &row);
    static TVariant ValueOf(const TField &field, const ::TField &column);
    void FillGrid();
    void AddRow(const TField &field);
    static TRowKind KindOf(const TDbmFieldEntity &field);
    void SetMembers(const TField &field, TVerticalRow &row);
    void ShowValue(const TField &field);
    void ShowText(const TField &field, const QString &text);
    QString TextOf(const TField &field) const;
    void EditText(const TField &field);
    void EditBlob(const TField &field);
    void SetNull();
    void ShowFocusedType();
    void TakeRows();
    TVariant TakeRow(const TField &field) const;
    void GetEditedValues(QStringList &names, TVariantList &values);
    const TField *FocusedField() const;
    TVerticalRow &Row(const TField &field) const;

    TMode FMode = rmNone;
    TDbmManager *FManager = nullptr; // not owned
    QString FDatabaseName;
    QString FTableName;
    QStringList FWhereFields;
    TVariantList FWhereValues;
    std::vector<TField> FFields;
    QHash<QString, TVariant> FInitialValues;
    QHash<QString, TVariant> FProcessValues;
    QSet<QString> FTyped; // rows whose text the user changed; FProcessValues has the others
    QHash<QString, QString> FWholeTexts; // of these, what came from the dialog of texts
    bool FFilling = false;
    TVerticalGrid *vgRecord = nullptr;
    QLabel *labType = nullptr;
};
