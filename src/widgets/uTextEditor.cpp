#include "widgets/uTextEditor.h"

#include "widgets/uEditorGutter.h"
#include "widgets/uEditorSearchBar.h"
#include "widgets/uSqlHighlighter.h"
#include "widgets/uTextEditorActions.h"
#include "widgets/uTextEditorCodec.h"
#include "widgets/uTextEditorColors.h"
#include "widgets/uTextEditorCommands.h"
#include "widgets/uTextEditorControl.h"
#include "widgets/uTextEditorStyler.h"
#include "widgets/uTextEditorTrimmer.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <algorithm>

TTextEditor::TTextEditor(QWidget *parent) : QWidget(parent)
{
    MakeLayout();
    FStyler = new TTextEditorStyler(FControl);
    FTrimmer = new TTextEditorTrimmer(FControl);
    FActions = new TTextEditorActions(this);
    ConnectControl();
    ApplyColors();
    SetActiveLineVisible(true);
}

TTextEditor::~TTextEditor()
{
    // The component tells of its end (selection, focus) to an editor that is half gone.
    FControl->disconnect(this);
}

void TTextEditor::MakeLayout()
{
    FFrame = new QFrame(this);
    FControl = new TTextEditorControl(FFrame);
    FControl->setObjectName(QStringLiteral("edText"));
    FControl->setAccessibleName(tr("Text editor"));
    FGutter = new TEditorGutter(FControl, FFrame);
    FGutter->setObjectName(QStringLiteral("gutter"));
    auto *columns = new QHBoxLayout(FFrame);
    columns->setContentsMargins({});
    columns->setSpacing(0);
    columns->addWidget(FGutter);
    columns->addWidget(FControl, 1);
    FSearchBar = new TEditorSearchBar(FControl, this);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(0);
    rows->addWidget(FFrame, 1);
    rows->addWidget(FSearchBar);
    setFocusProxy(FControl);
    SetBorderVisible(true);
}

void TTextEditor::ConnectControl()
{
    connect(FControl, &QsciScintilla::textChanged, this, [this] {
        FSearchBar->TextChanged();
        Changed();
    });
    connect(FControl, &QsciScintilla::modificationChanged, this, &TTextEditor::Changed);
    connect(FControl, &QsciScintilla::SCN_UPDATEUI, this, &TTextEditor::UpdateUi);
    connect(FControl, &TTextEditorControl::OnEscape, this, &TTextEditor::Escape);
    connect(FControl, &TTextEditorControl::OnMenu, this,
            [this](const QPoint &position) { FActions->Popup(position); });
}

QString TTextEditor::Text() const
{
    return TTextEditorCodec::Decode(FControl->Range(0, FControl->Size()));
}

void TTextEditor::SetText(const QString &text)
{
    const bool readOnly = IsReadOnly();
    const QByteArray bytes = TTextEditorCodec::Encode(text);
    FLoading = true;
    FTrimmer->SetLoading(true);
    FControl->Send(QsciScintilla::SCI_SETREADONLY, false);
    FControl->Send(QsciScintilla::SCI_SETUNDOCOLLECTION, false);
    FControl->Send(QsciScintilla::SCI_CLEARALL);
    FControl->Send(QsciScintilla::SCI_SETSCROLLWIDTH, 1);
    FControl->Send(QsciScintilla::SCI_ALLOCATE, bytes.size());
    FControl->Send(QsciScintilla::SCI_APPENDTEXT, bytes.size(), bytes.constData());
    FControl->Send(QsciScintilla::SCI_SETUNDOCOLLECTION, true);
    FControl->Send(QsciScintilla::SCI_EMPTYUNDOBUFFER);
    FControl->Send(QsciScintilla::SCI_SETSAVEPOINT);
    FControl->Send(QsciScintilla::SCI_SETREADONLY, readOnly);
    TTextEditorCommands::AdoptLineEnds(*FControl, text);
    FMarkedModified = false;
    FTrimmer->SetLoading(false);
    FLoading = false;
    Changed();
}

bool TTextEditor::IsModified() const
{
    return FMarkedModified || FControl->isModified();
}

void TTextEditor::SetModified(bool modified)
{
    if (modified == IsModified())
        return;
    FMarkedModified = modified;
    if (!modified && FControl->isModified())
        FControl->Send(QsciScintilla::SCI_SETSAVEPOINT); // tells of itself
    else
        Changed();
}

bool TTextEditor::IsReadOnly() const
{
    return FControl->isReadOnly();
}

void TTextEditor::SetReadOnly(bool readOnly)
{
    if (readOnly == IsReadOnly())
        return;
    FControl->setReadOnly(readOnly);
    Changed();
}

QString TTextEditor::SelectedText() const
{
    return TTextEditorCommands::SelectedText(*FControl);
}

bool TTextEditor::HasSelection() const
{
    return !FControl->Send(QsciScintilla::SCI_GETSELECTIONEMPTY);
}

void TTextEditor::SelectAll()
{
    FControl->Send(QsciScintilla::SCI_SELECTALL);
    Changed();
}

void TTextEditor::PasteText(const QString &text)
{
    TTextEditorCommands::Paste(*FControl, text);
}

void TTextEditor::TrimTrailingSpaces()
{
    FTrimmer->TrimAll();
}

qsizetype TTextEditor::CaretLine() const
{
    return FControl->LineOf(FControl->CaretPosition());
}

qsizetype TTextEditor::CaretColumn() const
{
    const qsizetype start = FControl->LineStart(CaretLine());
    return TTextEditorCodec::UnitsOf(FControl->Range(start, FControl->CaretPosition()));
}

void TTextEditor::SetCaret(qsizetype line, qsizetype column)
{
    const qsizetype last = FControl->Send(QsciScintilla::SCI_GETLINECOUNT) - 1;
    const qsizetype target = std::clamp<qsizetype>(line, 0, last);
    const qsizetype bytes =
        TTextEditorCodec::BytesOf(FControl->LineRange(target), std::max<qsizetype>(0, column));
    FControl->Send(QsciScintilla::SCI_GOTOPOS, FControl->LineStart(target) + bytes);
    Changed();
}

QString TTextEditor::LineBeforeCaret() const
{
    const qsizetype caret = FControl->CaretPosition();
    const qsizetype start =
        std::max(FControl->LineStart(CaretLine()), caret - TTextEditorControl::ShownAtCaret);
    return TTextEditorCodec::Decode(FControl->Range(start, caret));
}

void TTextEditor::ReplaceBeforeCaret(qsizetype units, const QString &text)
{
    const qsizetype caret = FControl->CaretPosition();
    const qsizetype from = StartBeforeCaret(units);
    const QByteArray bytes = TTextEditorCodec::Encode(text);
    FControl->ReplaceRange(from, caret, bytes);
    FControl->Send(QsciScintilla::SCI_GOTOPOS, from + bytes.size());
    Changed();
}

qsizetype TTextEditor::StartBeforeCaret(qsizetype units) const
{
    const qsizetype bytes = TTextEditorCodec::Encode(LineBeforeCaret().right(units)).size();
    return FControl->CaretPosition() - bytes;
}

QPoint TTextEditor::PointUnderCaret(qsizetype units) const
{
    const qsizetype at = StartBeforeCaret(units);
    const int x = int(FControl->Send(QsciScintilla::SCI_POINTXFROMPOSITION, 0, at));
    const int y = int(FControl->Send(QsciScintilla::SCI_POINTYFROMPOSITION, 0, at));
    return FControl->viewport()->mapToGlobal(QPoint(x, y + LineHeight()));
}

int TTextEditor::LineHeight() const
{
    return FControl->textHeight(int(CaretLine()));
}

bool TTextEditor::IsGutterVisible() const
{
    return !FGutter->isHidden();
}

void TTextEditor::SetGutterVisible(bool visible)
{
    FGutter->setVisible(visible);
}

void TTextEditor::SetScrollBarsVisible(bool visible)
{
    const Qt::ScrollBarPolicy policy = visible ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
    FControl->setHorizontalScrollBarPolicy(policy);
    FControl->setVerticalScrollBarPolicy(policy);
}

void TTextEditor::SetBorderVisible(bool visible)
{
    FFrame->setFrameStyle(visible ? int(QFrame::StyledPanel) | QFrame::Sunken
                                  : int(QFrame::NoFrame));
}

void TTextEditor::SetTabInput(bool enabled)
{
    FControl->SetTabInput(enabled);
}

void TTextEditor::SetActiveLineVisible(bool visible)
{
    FControl->setCaretLineVisible(visible);
    FControl->Send(QsciScintilla::SCI_SETCARETLINEVISIBLEALWAYS, visible);
}

void TTextEditor::SetActiveLineColor(const QColor &color)
{
    FActiveLineColor = color;
    ApplyColors();
}

void TTextEditor::OpenSearch(bool withReplace)
{
    FSearchBar->Open(withReplace);
}

void TTextEditor::FindNext(bool forward)
{
    FSearchBar->FindNext(forward);
}

QsciScintilla *TTextEditor::Editor() const
{
    return FControl;
}

void TTextEditor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        ApplyColors();
    QWidget::changeEvent(event);
}

void TTextEditor::ApplyColors()
{
    // Setting the component's paper changes its palette, and the change comes back here.
    if (FColored || !FControl)
        return;
    FColored = true;
    const TTextEditorColors colors(palette());
    const QFont font = TTextEditorColors::EditorFont();
    colors.Apply(*FControl, font);
    const QColor line = FActiveLineColor.isValid() ? FActiveLineColor : colors.ActiveLine();
    FControl->setCaretLineBackgroundColor(line);
    FGutter->SetFont(font);
    FColored = false;
}

void TTextEditor::UpdateUi(int updated)
{
    if (updated & (QsciScintilla::SC_UPDATE_SELECTION | QsciScintilla::SC_UPDATE_CONTENT))
        TTextEditorCommands::MatchBrace(*FControl);
    if (updated & QsciScintilla::SC_UPDATE_SELECTION)
        Changed();
}

void TTextEditor::Escape(QKeyEvent *event)
{
    if (FSearchBar->isHidden())
        return;
    FSearchBar->Close();
    event->accept();
}

void TTextEditor::Changed()
{
    if (!FLoading)
        Q_EMIT OnChange();
}

TSqlTextEditor::TSqlTextEditor(QWidget *parent) : TTextEditor(parent)
{
    Editor()->setAccessibleName(tr("SQL editor"));
    Styler().SetLineStyler(&TSqlHighlighter::StyleLine);
    Trimmer().SetIsInString([this](qsizetype line) {
        const int state = Styler().LineState(line);
        return state < 0 || TSqlHighlighter::IsInQuotes(state);
    });
}
