#pragma once

#include <QWidget>

class TTextEditorControl;

/// The line numbers beside an editor, in the manner of a ruler. Painted from what the editor shows,
/// so that a change costs the visible lines only, however many lines there are.
class TEditorGutter : public QWidget
{
    Q_OBJECT

public:
    TEditorGutter(TTextEditorControl *control, QWidget *parent);

    /// What stands beside a line; lines are counted from 0 here and from 1 on the gutter.
    static QString MarkOf(qsizetype line, qsizetype caretLine);

    void SetFont(const QFont &font);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    QFont ZoomedFont() const;
    void Refresh();
    qsizetype LineAt(int y) const;
    void SelectLines(qsizetype from, qsizetype to);

    TTextEditorControl *FControl; // beside this one, under the same parent
    QFont FFont;
    qsizetype FPressedLine = 0;
};
