#include "widgets/uTextEditorCommands.h"

#include "widgets/uTextEditorCodec.h"
#include "widgets/uTextEditorControl.h"

#include <algorithm>
#include <cstring>

namespace {

const qsizetype BraceDistance = 128 * 1024; // bytes searched for the partner of a bracket
const char CommentMark[] = "-- ";

struct TLines
{
    qsizetype First;
    qsizetype Last;
};

TLines SelectedLines(const TTextEditorControl &control)
{
    const qsizetype from = control.Send(QsciScintilla::SCI_GETSELECTIONSTART);
    const qsizetype to = control.Send(QsciScintilla::SCI_GETSELECTIONEND);
    const qsizetype first = control.LineOf(from);
    qsizetype last = control.LineOf(to);
    // Whole lines are selected up to the start of the next one, which is not meant.
    if (last > first && control.LineStart(last) == to)
        --last;
    return {first, last};
}

qsizetype IndentOf(QByteArrayView line)
{
    const auto isInk = [](char c) { return c != ' ' && c != '\t'; };
    return std::find_if(line.begin(), line.end(), isInk) - line.begin();
}

bool IsComment(QByteArrayView line)
{
    return line.sliced(IndentOf(line)).startsWith("--");
}

void Comment(TTextEditorControl &control, TLines lines, qsizetype indent)
{
    for (qsizetype line = lines.First; line <= lines.Last; ++line) {
        if (IndentOf(control.LineRange(line)) == control.LineRange(line).size())
            continue;
        const qsizetype at = control.LineStart(line) + indent;
        control.Send(QsciScintilla::SCI_INSERTTEXT, at, CommentMark);
    }
}

void Uncomment(TTextEditorControl &control, TLines lines)
{
    for (qsizetype line = lines.First; line <= lines.Last; ++line) {
        const QByteArrayView bytes = control.LineRange(line);
        const qsizetype indent = IndentOf(bytes);
        if (indent == bytes.size())
            continue;
        const qsizetype length = bytes.sliced(indent).startsWith(CommentMark) ? 3 : 2;
        const qsizetype at = control.LineStart(line) + indent;
        control.Send(QsciScintilla::SCI_DELETERANGE, at, length);
    }
}

char PartnerOf(char brace)
{
    static const char pairs[] = "()[]{}";
    const char *found = brace ? std::strchr(pairs, brace) : nullptr;
    if (!found)
        return 0;
    return (found - pairs) % 2 == 0 ? found[1] : found[-1];
}

bool IsOpening(char brace)
{
    return brace == '(' || brace == '[' || brace == '{';
}

/// Position of the partner, or -1. A bracket of another style (in a string, in a comment) is none.
qsizetype FindPartner(const TTextEditorControl &control, qsizetype brace, char own, char partner)
{
    const auto styleAt = [&](qsizetype at) {
        return control.Send(QsciScintilla::SCI_GETSTYLEAT, at);
    };
    const int step = IsOpening(own) ? 1 : -1;
    const qsizetype from = std::max<qsizetype>(0, brace - BraceDistance);
    const qsizetype to = std::min(control.Size(), brace + BraceDistance);
    const QByteArrayView text = control.Range(from, to);
    const long style = styleAt(brace);
    int depth = 0;
    for (qsizetype at = brace; at >= from && at < to; at += step) {
        const char c = text[at - from];
        if ((c != own && c != partner) || styleAt(at) != style)
            continue;
        depth += c == own ? 1 : -1;
        if (depth == 0)
            return at;
    }
    return -1;
}

qsizetype BraceAtCaret(const TTextEditorControl &control)
{
    const qsizetype caret = control.CaretPosition();
    for (const qsizetype at : {caret - 1, caret}) {
        if (at >= 0 && PartnerOf(char(control.Send(QsciScintilla::SCI_GETCHARAT, at))))
            return at;
    }
    return -1;
}

QByteArray WithLineEnds(const QByteArray &bytes, const char *lineEnd)
{
    QByteArray result;
    result.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const bool isCrLf = bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
        i += isCrLf ? 1 : 0;
        if (bytes[i] == '\n' || bytes[i] == '\r')
            result += lineEnd;
        else
            result += bytes[i];
    }
    return result;
}

const char *LineEndOf(const TTextEditorControl &control)
{
    switch (control.Send(QsciScintilla::SCI_GETEOLMODE)) {
    case QsciScintilla::SC_EOL_CRLF:
        return "\r\n";
    case QsciScintilla::SC_EOL_CR:
        return "\r";
    default:
        return "\n";
    }
}

} // namespace

void TTextEditorCommands::Paste(TTextEditorControl &control, const QString &text)
{
    if (control.isReadOnly())
        return;
    if (control.Send(QsciScintilla::SCI_GETLINECOUNT) == 1)
        AdoptLineEnds(control, text);
    const QByteArray bytes = WithLineEnds(TTextEditorCodec::Encode(text), LineEndOf(control));
    control.Send(QsciScintilla::SCI_BEGINUNDOACTION);
    control.DeleteSelection();
    const long beyond = control.Send(QsciScintilla::SCI_GETSELECTIONNCARETVIRTUALSPACE, 0);
    const QByteArray filled = QByteArray(beyond, ' ') + bytes;
    control.Send(QsciScintilla::SCI_ADDTEXT, filled.size(), filled.constData());
    control.Send(QsciScintilla::SCI_ENDUNDOACTION);
    control.Send(QsciScintilla::SCI_SCROLLCARET);
    control.Send(QsciScintilla::SCI_CHOOSECARETX);
}

void TTextEditorCommands::ToggleComment(TTextEditorControl &control)
{
    if (control.isReadOnly())
        return;
    const TLines lines = SelectedLines(control);
    qsizetype indent = -1;
    bool areComments = true;
    for (qsizetype line = lines.First; line <= lines.Last; ++line) {
        const QByteArrayView bytes = control.LineRange(line);
        const qsizetype own = IndentOf(bytes);
        if (own == bytes.size())
            continue;
        indent = indent < 0 ? own : std::min(indent, own);
        areComments = areComments && IsComment(bytes);
    }
    if (indent < 0)
        return;
    control.Send(QsciScintilla::SCI_BEGINUNDOACTION);
    if (areComments)
        Uncomment(control, lines);
    else
        Comment(control, lines, indent);
    control.Send(QsciScintilla::SCI_ENDUNDOACTION);
}

void TTextEditorCommands::MatchBrace(TTextEditorControl &control)
{
    const qsizetype brace = BraceAtCaret(control);
    if (brace < 0) {
        control.Send(QsciScintilla::SCI_BRACEHIGHLIGHT, -1, -1);
        return;
    }
    const char own = char(control.Send(QsciScintilla::SCI_GETCHARAT, brace));
    const qsizetype partner = FindPartner(control, brace, own, PartnerOf(own));
    if (partner >= 0)
        control.Send(QsciScintilla::SCI_BRACEHIGHLIGHT, brace, partner);
    else
        control.Send(QsciScintilla::SCI_BRACEBADLIGHT, brace);
}

QString TTextEditorCommands::SelectedText(const TTextEditorControl &control)
{
    if (!control.Send(QsciScintilla::SCI_SELECTIONISRECTANGLE)) {
        const qsizetype from = control.Send(QsciScintilla::SCI_GETSELECTIONSTART);
        return TTextEditorCodec::Decode(
            control.Range(from, control.Send(QsciScintilla::SCI_GETSELECTIONEND)));
    }
    // The length counts the NUL that the component puts after the text.
    QByteArray bytes(control.Send(QsciScintilla::SCI_GETSELTEXT), '\0');
    control.Send(QsciScintilla::SCI_GETSELTEXT, 0, reinterpret_cast<qsizetype>(bytes.data()));
    bytes.chop(1);
    return TTextEditorCodec::Decode(bytes);
}

void TTextEditorCommands::AdoptLineEnds(TTextEditorControl &control, const QString &text)
{
    const auto isLineEnd = [](QChar c) { return c == u'\n' || c == u'\r'; };
    const auto found = std::find_if(text.begin(), text.end(), isLineEnd);
    int mode = QsciScintilla::SC_EOL_LF;
    if (found != text.end() && *found == u'\r') {
        const bool isPair = found + 1 != text.end() && found[1] == u'\n';
        mode = isPair ? QsciScintilla::SC_EOL_CRLF : QsciScintilla::SC_EOL_CR;
    }
    control.Send(QsciScintilla::SCI_SETEOLMODE, mode);
}
