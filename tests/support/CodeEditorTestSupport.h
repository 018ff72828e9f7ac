#pragma once

// Shared by the tests of the code tab: a canvas window whose code tab shows
// the code editor, and readings of what the editor shows.

#include "CanvasViewTestSupport.h"
#include "canvas/widgets/CanvasTabButtons.h"
#include "code/SyntaxColouring.h"
#include "code/widgets/CodeCoordinator.h"
#include "code/widgets/CodeEditorView.h"
#include "code/widgets/CodeTextEdit.h"
#include "knowledge/Color.h"

#include <QTextBlock>
#include <QTextLayout>
#include <QTimer>
#include <QToolButton>

namespace CodeTest {

struct CodeWindow : CanvasTest::CanvasWindow
{
    explicit CodeWindow(const QString &css, QSize size = QSize(620, 520)) : CanvasWindow(css, size)
    {
        view->setPaneFactory(Ombrel::CanvasTab::Code, [](Ombrel::CanvasController &controller) {
            return new Ombrel::CodeEditorView(controller);
        });
    }

    // The code pane in front, or null.
    Ombrel::CodeEditorView *pane() const
    {
        return qobject_cast<Ombrel::CodeEditorView *>(view->currentPane());
    }
    Ombrel::CodeTextEdit *editor() const { return pane() ? pane()->textView() : nullptr; }
    Ombrel::CodeCoordinator *coordinator() const { return pane()->coordinator(); }

    void clickTab(Ombrel::CanvasTab tab) const
    {
        QTest::mouseClick(view->tabButton(tab), Qt::LeftButton);
    }

    // The cursor at offset in the editor, as a click would put it.
    void putCursor(qsizetype offset) const
    {
        QTextCursor cursor = editor()->textCursor();
        cursor.setPosition(int(offset));
        editor()->setTextCursor(cursor);
    }
};

// Types text into the widget key by key, a line feed as Return.
inline void type(QWidget *widget, const QString &text)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            QTest::keyClick(widget, Qt::Key_Return);
        if (!lines[i].isEmpty())
            QTest::keyClicks(widget, lines[i]);
    }
}

// Lets the event loop run until a delay of ms has passed, for tests that a
// deferred step did nothing: the step would have run by then.
inline void runPast(int ms)
{
    bool passed = false;
    QTimer::singleShot(ms, [&passed] { passed = true; });
    QTRY_VERIFY(passed);
}

// The colour painted at a text offset, or an invalid colour where the text
// keeps the palette's.
inline QColor colourAt(const Ombrel::CodeTextEdit *editor, qsizetype offset)
{
    const QTextBlock block = editor->document()->findBlock(int(offset));
    const qsizetype inBlock = offset - block.position();
    const QList<QTextLayout::FormatRange> ranges = block.layout()->formats();
    for (const QTextLayout::FormatRange &range : ranges) {
        if (inBlock >= range.start && inBlock < range.start + range.length)
            return range.format.foreground().color();
    }
    return QColor();
}

// Every unit's colour as the blocks show it, and as the colouring rules
// give it for the whole text: the two must agree.
inline QList<QColor> shownColours(const Ombrel::CodeTextEdit *editor)
{
    QList<QColor> colours;
    const QString text = editor->rawText();
    for (qsizetype i = 0; i < text.size(); ++i)
        colours.append(text[i] == u'\n' ? QColor() : colourAt(editor, i));
    return colours;
}

inline QList<QColor> ruleColours(const QString &text, bool dark)
{
    QList<QColor> colours(text.size());
    for (const Ombrel::ColouredRun &run : Ombrel::SyntaxColouring::colourRuns(text, dark)) {
        for (qsizetype i = run.start; i < run.start + run.length; ++i)
            colours[i] = run.colour.toQColor();
    }
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n')
            colours[i] = QColor();
    }
    return colours;
}

inline QColor qColor(double red, double green, double blue)
{
    return Ombrel::Color{red, green, blue, 1}.toQColor();
}

// A palette of the dark or the light appearance: the window darker than its
// text, or lighter.
inline QPalette appearance(bool dark)
{
    QPalette palette;
    const QColor back = dark ? QColor(30, 30, 32) : QColor(246, 246, 246);
    const QColor fore = dark ? QColor(230, 230, 230) : QColor(20, 20, 20);
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::Base, dark ? QColor(22, 22, 24) : Qt::white);
    palette.setColor(QPalette::WindowText, fore);
    palette.setColor(QPalette::Text, fore);
    palette.setColor(QPalette::ButtonText, fore);
    palette.setColor(QPalette::Button, back);
    return palette;
}

} // namespace CodeTest
