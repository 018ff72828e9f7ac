// ombrel-bench-variables: times the variables tab on a generated stylesheet
// of 10,000 rulesets, each declaring a variable and using --brand in every
// form a rename rewrites (var(--brand), var(--brand, ...), "var(--brand )"
// and inside calc()).
//
// It prints, each as the first run and the median of several:
//   - renameVariable of --brand with the change mark it posts, on the file
//     alone, and with the variables tab on screen (its list read again and
//     painted);
//   - the first paint of the variables tab, from the switch to the tab to
//     the painted window;
//   - one keystroke in the variables filter, from the key to the painted
//     list, typing "v12" and erasing it again.
// With an argument (rename, paint or filter) only that part runs, for a
// profiler's sake; the tab is opened in any case.

#include "canvas/CanvasController.h"
#include "canvas/CanvasState.h"
#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/TabContentArea.h"
#include "model/CSSParser.h"
#include "variables/VariableListModel.h"
#include "variables/VariableOperations.h"
#include "variables/widgets/VariableListView.h"
#include "variables/widgets/VariablesPanel.h"
#include "widgets/ToolbarTextField.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

constexpr int rulesetCount = 10'000;
constexpr int repeats = 7;

QString generatedStylesheet()
{
    QString css = QStringLiteral(":root {\n  --brand: #3b82f6;\n}\n\n");
    for (int i = 0; i < rulesetCount; ++i) {
        css += QStringLiteral(".block-%1 {\n"
                              "  --tone-%1: var(--brand);\n"
                              "  color: var(--brand);\n"
                              "  border: 1px solid var(--brand, #111);\n"
                              "  outline-color: var(--brand );\n"
                              "  width: calc(var(--brand) * %2);\n"
                              "  margin: 0 auto;\n"
                              "}\n\n")
                   .arg(i)
                   .arg(i % 7 + 1);
    }
    return css;
}

bool writeText(const QString &path, const QString &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double elapsedMs(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

void report(const char *what, const std::vector<double> &times)
{
    std::printf("  %s: first %.1f ms, median %.1f ms, worst %.1f ms of %zu\n", what, times.front(),
                median(times), *std::max_element(times.begin(), times.end()), times.size());
    std::fflush(stdout);
}

// The property of --brand, wherever its name now is.
std::pair<QUuid, QUuid> brandOf(const CSSFile &file)
{
    const CSSRulesetPtr root = file.rulesets().first();
    return {root->properties().first().id, root->id()};
}

// Renames back and forth; each run ends once the posted change mark and
// whatever else the rename posted have run.
std::vector<double> renames(VariableOperations &operations, CSSFile &file, QWidget *painted)
{
    std::vector<double> times;
    for (int i = 0; i < repeats; ++i) {
        const auto [propID, rulesetID] = brandOf(file);
        const QString name = i % 2 ? QStringLiteral("--brand") : QStringLiteral("--brand-main");
        QElapsedTimer timer;
        timer.start();
        operations.renameVariable(propID, rulesetID, name);
        QApplication::processEvents();
        if (painted)
            painted->repaint();
        times.push_back(elapsedMs(timer));
    }
    return times;
}

void typeKey(QWidget *field, int key, const QString &text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(field, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(field, &release);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString only = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const auto runs = [&only](const char *part) {
        return only.isEmpty() || only == QLatin1String(part);
    };
    QTemporaryDir scratch;
    // Opening a folder remembers it for the next launch: keep that here.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, scratch.path());
    const QString text = generatedStylesheet();
    if (!writeText(scratch.filePath(QStringLiteral("generated.css")), text) ||
        !writeText(scratch.filePath(QStringLiteral("empty.css")), QString()))
        return 1;
    std::printf("%d generated rulesets, %d variables, %.1f MB\n", rulesetCount, rulesetCount + 1,
                double(text.toUtf8().size()) / 1048576.0);

    if (runs("rename")) {
        const auto file = std::make_shared<CSSFile>(QString(), CSSParser::parse(text), text);
        UndoManager undo;
        VariableOperations operations(file, &undo);
        report("renameVariable with its change mark, file alone",
               renames(operations, *file, nullptr));
    }

    Workspace workspace;
    UndoManager undo;
    workspace.openFolder(scratch.path());
    workspace.selectFile(scratch.filePath(QStringLiteral("empty.css")));
    workspace.setCanvasTab(CanvasTab::Code);
    QWidget window;
    window.resize(900, 800);
    auto *view = new CanvasView(workspace, &undo, &window);
    view->resize(window.size());
    view->setPaneFactory(CanvasTab::Variables, [&undo](CanvasController &controller) {
        return new VariablesPanel(controller, &undo);
    });
    window.show();
    QApplication::processEvents();
    workspace.selectFile(scratch.filePath(QStringLiteral("generated.css")));
    QApplication::processEvents();

    std::vector<double> firstPaint;
    for (int i = 0; i < (runs("paint") ? repeats : 1); ++i) {
        workspace.setCanvasTab(CanvasTab::Code);
        QApplication::processEvents();
        window.repaint();
        QElapsedTimer timer;
        timer.start();
        workspace.setCanvasTab(CanvasTab::Variables);
        QApplication::processEvents();
        window.repaint();
        firstPaint.push_back(elapsedMs(timer));
    }
    auto *panel = qobject_cast<VariablesPanel *>(view->currentPane());
    if (!panel || panel->model()->rowCount() != 2 * (rulesetCount + 1))
        return 1;
    if (runs("paint"))
        report("variables tab, switch to first paint", firstPaint);
    // The tab has faded in before anything else is timed, and the panes it
    // replaced are gone, as an event loop that runs on would have them.
    while (view->tabContent()->leavingPane())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (window.findChildren<VariablesPanel *>().size() != 1)
        return 1;

    if (runs("rename")) {
        VariableOperations operations(workspace, &undo);
        report("renameVariable with its change mark, tab on screen",
               renames(operations, *workspace.selectedFile(), &window));
    }
    if (!runs("filter"))
        return 0;

    ToolbarTextField *filter = view->variableSearchField();
    filter->setFocus();
    QApplication::processEvents();
    std::vector<double> keystrokes;
    const QList<std::pair<int, QString>> keys{
        {Qt::Key_V, QStringLiteral("v")}, {Qt::Key_1, QStringLiteral("1")},
        {Qt::Key_2, QStringLiteral("2")}, {Qt::Key_Backspace, QString()},
        {Qt::Key_Backspace, QString()},   {Qt::Key_Backspace, QString()},
        {Qt::Key_1, QStringLiteral("1")}, {Qt::Key_Backspace, QString()}};
    for (const auto &[key, typed] : keys) {
        QElapsedTimer timer;
        timer.start();
        typeKey(filter, key, typed);
        QApplication::processEvents();
        panel->list()->viewport()->repaint();
        keystrokes.push_back(elapsedMs(timer));
    }
    if (!view->controller().state().variableSearchText().isEmpty())
        return 1;
    report("one filter keystroke (v, 1, 2, 3 x back, 1, back)", keystrokes);
    return 0;
}
