#pragma once

#include "widgets/uTextEditor.h"
#include "widgets/uTextEditorQsci.h"

#include <QAction>
#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

/// An SQL editor on a window of its own, with the keys and looks of a user.
class TTextEditorFixture : public testing::Test
{
protected:
    using TSci = QsciScintilla;

    void SetUp() override
    {
        Editor = std::make_unique<TSqlTextEditor>();
        Editor->resize(700, 400);
        Editor->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Editor.get()));
        Editor->setFocus();
        Settle();
    }

    /// The component tells of caret moves when it is painted.
    void Settle()
    {
        Editor->grab();
        QCoreApplication::processEvents();
    }

    void Type(const QString &text)
    {
        QTest::keyClicks(Editor->Editor(), text);
        Settle();
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(Editor->Editor(), key, modifiers);
        Settle();
    }

    void Load(const QString &text, qsizetype line = 0, qsizetype column = 0)
    {
        Editor->SetText(text);
        Editor->SetCaret(line, column);
        Settle();
    }

    template <typename T = QWidget>
    T *Part(const char *name)
    {
        T *part = Editor->findChild<T *>(QLatin1String(name));
        if (!part)
            throw std::runtime_error(name);
        return part;
    }

    long Send(unsigned int message, long wParam = 0, long lParam = 0)
    {
        return Editor->Editor()->SendScintilla(message, static_cast<unsigned long>(wParam), lParam);
    }

    int StyleAt(qsizetype position) { return int(Send(TSci::SCI_GETSTYLEAT, position)); }

    std::unique_ptr<TTextEditor> Editor;
};

inline std::ostream &operator<<(std::ostream &stream, const QString &text)
{
    return stream << qPrintable(text);
}
