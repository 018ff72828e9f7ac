// ombrel-bench-code [CORPUS_DIR]: times the code tab, offscreen, with its real
// widgets. With a corpus folder (bench/install-peers.sh prints it), on
// bootstrap's and tailwind's stylesheets:
//
// - the switch to the code tab, until idle;
// - keys: 200 single keystrokes at varied places inside declarations of the
//   text the tab shows, each from the key event until the event loop is
//   idle again (the parse, the merge, the posted change mark, the
//   recolouring, the view's update and the paint), median and worst;
// - colouring: the seven rules over the whole text as regular expressions,
//   the scanner over the whole text, and the scanner's rescan after one
//   keystroke (median);
// - the same keystrokes with the whole stylesheet, as written, pasted into
//   the tab, at-rules and comments included.
//
// Always: rulesetAndPropAt on 10,000 generated rulesets with the cursor in
// the last one, and 5 MB pasted at once, as stylesheet lines and as one
// minified line, from the paste to idle, then keys typed at its end and at
// places spread over it (the text checked whole once pasted), and the paste
// undone and redone through the window's history; beside it the same paste
// and keys in a bare QPlainTextEdit of the same font and size, the cost of
// the text view alone.

#include "canvas/widgets/CanvasView.h"
#include "code/CursorMapping.h"
#include "code/SyntaxColouring.h"
#include "code/SyntaxScanner.h"
#include "code/widgets/CodeCoordinator.h"
#include "code/widgets/CodeEditorView.h"
#include "code/widgets/CodeTextEdit.h"
#include "model/CSSParser.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QVBoxLayout>

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

// Counts the events the application delivers, to tell when it is idle.
class EventCounter : public QObject
{
public:
    qint64 count = 0;

protected:
    bool eventFilter(QObject *, QEvent *) override
    {
        ++count;
        return false;
    }
};

EventCounter *counter = nullptr;

// Runs the event loop until a pass delivers no event at all.
void runUntilIdle()
{
    while (true) {
        const qint64 before = counter->count;
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        if (counter->count == before)
            return;
    }
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double worst(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// The CPU time of the process so far: on a machine others load too, the
// work apart from the wait.
double cpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

template<typename Work> double milliseconds(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

// A window whose canvas shows one stylesheet on its code tab.
struct CodeWindow
{
    explicit CodeWindow(const QString &text)
        : file(std::make_shared<CSSFile>(QStringLiteral("/tmp/ombrel-bench-code/style.css"),
                                         CSSParser::parse(text), text))
    {
        workspace.setFiles({file});
        workspace.setSelectedFile(file);
        canvas = new CanvasView(workspace, &undo, &window);
        canvas->setPaneFactory(CanvasTab::Code, [](CanvasController &controller) {
            return new CodeEditorView(controller);
        });
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(canvas);
        window.resize(1000, 800);
        window.show();
        runUntilIdle();
        opening = milliseconds([this] {
            workspace.setCanvasTab(CanvasTab::Code);
            runUntilIdle();
        });
        editor()->setFocus();
        runUntilIdle();
    }

    CodeEditorView *pane() const { return qobject_cast<CodeEditorView *>(canvas->currentPane()); }
    CodeTextEdit *editor() const { return pane()->textView(); }

    void putCursor(qsizetype offset) const
    {
        QTextCursor cursor = editor()->textCursor();
        cursor.setPosition(int(offset));
        editor()->setTextCursor(cursor);
    }

    // One key pressed and released in the editor, until idle.
    double key(Qt::Key key, const QString &text) const
    {
        return milliseconds([&] {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
            QApplication::sendEvent(editor(), &press);
            QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
            QApplication::sendEvent(editor(), &release);
            runUntilIdle();
        });
    }

    Workspace workspace;
    CSSFilePtr file;
    UndoManager undo;
    QWidget window;
    CanvasView *canvas = nullptr;
    // From the switch to the code tab until idle: the text set and coloured.
    double opening = 0;
};

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Places inside declarations, spread over the text: just before the ";"
// that ends one.
std::vector<qsizetype> keyPlaces(const QString &text, int count)
{
    std::vector<qsizetype> places;
    QRandomGenerator random(7);
    for (int i = 0; i < count; ++i) {
        const qsizetype from = qsizetype(random.bounded(int(text.size())));
        qsizetype semicolon = text.indexOf(u';', from);
        if (semicolon < 0)
            semicolon = text.indexOf(u';');
        places.push_back(std::max<qsizetype>(semicolon, 0));
    }
    return places;
}

void keystrokes(const char *label, CodeWindow &window, int count)
{
    const std::vector<qsizetype> places = keyPlaces(window.pane()->coordinator()->text(), count);
    std::vector<double> times;
    std::vector<double> cpu;
    for (size_t i = 0; i < places.size(); ++i) {
        // Each key typed before, at or before this place, moved it by one.
        const qsizetype moved = std::count_if(places.begin(), places.begin() + qsizetype(i),
                                              [&](qsizetype p) { return p <= places[i]; });
        window.putCursor(places[i] + moved);
        const double cpuBefore = cpuMilliseconds();
        times.push_back(window.key(Qt::Key_X, QStringLiteral("x")));
        cpu.push_back(cpuMilliseconds() - cpuBefore);
    }
    std::printf("  %-30s p50 %6.2f ms, worst %6.2f ms (CPU p50 %6.2f ms, worst %6.2f ms), %d "
                "keys\n",
                label, median(times), worst(times), median(cpu), worst(cpu), count);
}

void colouring(const QString &text)
{
    std::vector<double> regex, whole, edits;
    for (int run = 0; run < 3; ++run) {
        regex.push_back(milliseconds([&] { (void)SyntaxColouring::roleRuns(text); }));
        SyntaxScanner scanner;
        whole.push_back(milliseconds([&] { scanner.reset(text); }));
    }
    SyntaxScanner scanner;
    scanner.reset(text);
    QString edited = text;
    for (const qsizetype place : keyPlaces(text, 200)) {
        edited.insert(place, QLatin1Char('x'));
        edits.push_back(milliseconds([&] { (void)scanner.edit(edited, place, 0, 1); }));
    }
    std::printf("  colouring: rules as regular expressions %7.2f ms, scanner whole text %7.2f ms,"
                " scanner per key p50 %.4f ms worst %.4f ms\n",
                median(regex), median(whole), median(edits), worst(edits));
}

void corpusFile(const QString &corpus, const QString &name)
{
    const QString original = readText(corpus + QLatin1Char('/') + name);
    if (original.isEmpty()) {
        std::printf("%s: not found in %s\n", qPrintable(name), qPrintable(corpus));
        return;
    }
    {
        CodeWindow window(original);
        const QString shown = window.pane()->coordinator()->text();
        std::printf("%s: %lld units as written, %lld rulesets; the tab shows %lld units\n",
                    qPrintable(name), (long long)original.size(),
                    (long long)window.file->rulesets().size(), (long long)shown.size());
        const double parse = milliseconds([&] { (void)CSSParser::parse(shown); });
        const double parseOriginal = milliseconds([&] { (void)CSSParser::parse(original); });
        std::printf("  full parse: of the shown text %.2f ms, of the text as written %.2f ms\n",
                    parse, parseOriginal);
        std::printf("  the code tab opened on it: %.1f ms to idle\n", window.opening);
        keystrokes("keys in the shown text", window, 200);
        colouring(shown);
    }
    {
        CodeWindow window{QString()};
        QGuiApplication::clipboard()->setText(original);
        window.editor()->selectAll();
        const double paste = milliseconds([&] {
            window.editor()->paste();
            runUntilIdle();
        });
        std::printf("  the text as written pasted: %.1f ms to idle\n", paste);
        keystrokes("keys in the text as written", window, 200);
    }
}

QString generatedRulesets(int count)
{
    QString css;
    for (int i = 0; i < count; ++i)
        css +=
            QStringLiteral(".block-%1 .item > a:hover {\n    color: #%2;\n    margin: %3px;\n}\n\n")
                .arg(i)
                .arg(i % 4096, 3, 16, QLatin1Char('0'))
                .arg(i % 17);
    return css;
}

void cursorMapping()
{
    const QString text = generatedRulesets(10'000);
    const CSSRulesetList rulesets = CSSParser::parse(text);
    std::vector<double> times;
    CursorMapping::RulesetAndProp hit;
    for (int run = 0; run < 5; ++run)
        times.push_back(milliseconds(
            [&] { hit = CursorMapping::rulesetAndPropAt(text.size() - 10, text, rulesets); }));
    std::printf("rulesetAndPropAt, 10,000 rulesets (%lld units), cursor in the last: %.2f ms%s\n",
                (long long)text.size(), median(times),
                hit.rulesetID == rulesets.last()->id() ? "" : " (wrong ruleset!)");
}

// A stylesheet of about 23 units a line, as bootstrap's is.
QString stylesheetOfSize(qsizetype size)
{
    QString css;
    for (int i = 0; css.size() < size; ++i)
        css += QStringLiteral(".block-%1 .item > a:hover {\n  display: inline-block;\n"
                              "  padding: 0.375rem 0.75rem;\n  font-size: 1rem;\n"
                              "  line-height: 1.5;\n  color: #%2;\n"
                              "  border: 1px solid transparent;\n}\n\n")
                   .arg(i)
                   .arg(i % 4096, 3, 16, QLatin1Char('0'));
    return css.left(size);
}

struct PasteFigures
{
    double paste = 0;
    double pasteCpu = 0;
    // Whether the editor's text equalled the paste.
    bool whole = false;
    // Keys typed at the end of the paste, and at places spread over it.
    std::vector<double> keys;
    std::vector<double> spreadKeys;
};

double typeKey(QPlainTextEdit &editor)
{
    return milliseconds([&] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
        QApplication::sendEvent(&editor, &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
        QApplication::sendEvent(&editor, &release);
        runUntilIdle();
    });
}

// Pastes text into the empty editor, then types keys behind it and inside
// it; positionOf gives the cursor position of an offset of the text, holds
// whether the editor holds the text.
template<typename Positioning, typename Holding>
PasteFigures pasteAndType(QPlainTextEdit &editor, const QString &text, Positioning positionOf,
                          Holding holds)
{
    PasteFigures figures;
    QGuiApplication::clipboard()->setText(text);
    editor.selectAll();
    const double cpuBefore = cpuMilliseconds();
    figures.paste = milliseconds([&] {
        editor.paste();
        runUntilIdle();
    });
    figures.pasteCpu = cpuMilliseconds() - cpuBefore;
    figures.whole = holds(text);
    for (int i = 0; i < 5; ++i)
        figures.keys.push_back(typeKey(editor));
    for (int i = 1; i <= 9; ++i) {
        QTextCursor cursor = editor.textCursor();
        cursor.setPosition(positionOf(text.size() * i / 10));
        editor.setTextCursor(cursor);
        runUntilIdle();
        figures.spreadKeys.push_back(typeKey(editor));
    }
    return figures;
}

void largePaste(const char *label, const QString &text)
{
    PasteFigures code;
    {
        CodeWindow window{QString()};
        CodeTextEdit *editor = window.editor();
        const CodeCoordinator *coordinator = window.pane()->coordinator();
        code = pasteAndType(
            *editor, text, [editor](qsizetype offset) { return editor->documentPosition(offset); },
            [editor, coordinator](const QString &pasted) {
                return coordinator->text() == pasted && editor->rawText() == pasted;
            });
    }
    // The paste undone and redone through the window's history.
    double undo = 0;
    double redo = 0;
    bool undoneWhole = false;
    {
        CodeWindow window{QString()};
        const QString before = window.pane()->coordinator()->text();
        QGuiApplication::clipboard()->setText(text);
        window.editor()->selectAll();
        window.editor()->paste();
        runUntilIdle();
        undo = milliseconds([&] {
            window.undo.undo();
            runUntilIdle();
        });
        undoneWhole = window.pane()->coordinator()->text() == before;
        redo = milliseconds([&] {
            window.undo.redo();
            runUntilIdle();
        });
        undoneWhole = undoneWhole && window.pane()->coordinator()->text() == text &&
                      window.editor()->rawText() == text;
    }
    PasteFigures bare;
    {
        QPlainTextEdit editor;
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPixelSize(12);
        font.setStyleStrategy(QFont::PreferNoShaping);
        editor.setFont(font);
        editor.document()->setDocumentMargin(12);
        editor.resize(1000, 770);
        editor.show();
        runUntilIdle();
        bare = pasteAndType(
            editor, text, [](qsizetype offset) { return int(offset); },
            [&editor](const QString &pasted) {
                return editor.document()->toRawText().replace(QChar::ParagraphSeparator,
                                                              QLatin1Char('\n')) == pasted;
            });
    }
    std::printf("5 MB pasted, %s: %.0f ms to idle (CPU %.0f ms)%s, then keys at its end p50 %.0f "
                "ms, worst %.0f ms, inside it p50 %.0f ms, worst %.0f ms; in a bare "
                "QPlainTextEdit: %.0f ms (CPU %.0f ms), keys at its end p50 %.0f ms, inside it "
                "p50 %.0f ms\n",
                label, code.paste, code.pasteCpu, code.whole ? "" : " (text differs!)",
                median(code.keys), worst(code.keys), median(code.spreadKeys),
                worst(code.spreadKeys), bare.paste, bare.pasteCpu, median(bare.keys),
                median(bare.spreadKeys));
    std::printf("  the paste undone: %.0f ms to idle, redone: %.0f ms%s\n", undo, redo,
                undoneWhole ? "" : " (text differs!)");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    EventCounter events;
    counter = &events;
    app.installEventFilter(&events);

    if (argc > 1) {
        const QString corpus = QString::fromLocal8Bit(argv[1]);
        corpusFile(corpus, QStringLiteral("bootstrap.css"));
        corpusFile(corpus, QStringLiteral("tailwind.css"));
    }
    cursorMapping();

    const qsizetype fiveMegabytes = 5 * 1024 * 1024;
    const QString lines = stylesheetOfSize(fiveMegabytes);
    QString minified = stylesheetOfSize(fiveMegabytes * 11 / 10);
    minified.replace(QStringLiteral("\n  "), QString()).remove(QLatin1Char('\n'));
    minified.truncate(fiveMegabytes);
    largePaste("stylesheet lines", lines);
    largePaste("one minified line", minified);
    return 0;
}
