// ombrel-bench-canvas [CORPUS_DIR]: times the canvas pane of a window, drawn
// offscreen with the real card delegate, on a generated stylesheet of 10,000
// varied rulesets and, with a corpus folder (bench/install-peers.sh prints
// it), on semantic-ui's stylesheet.
//
// For each it prints the time from selecting the file in the workspace to
// the first painted canvas (the first run and the median of several, each
// selection coming from another file), the paint time of one viewport while
// scrolling from the top to the bottom a viewport at a time (median and
// worst), and the resident memory the process gained from opening the
// folder to the end of the scroll, read from /proc/self/statm.

#include "GeneratedStylesheet.h"

#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/NodeListView.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

constexpr int selections = 7;

double residentMegabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toDouble() * double(sysconf(_SC_PAGESIZE)) / 1048576.0 : 0;
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

void run(const QString &label, const QString &folder, const QString &fileName)
{
    const double before = residentMegabytes();
    Workspace workspace;
    UndoManager undo;
    workspace.openFolder(folder);
    QWidget window;
    window.resize(900, 800);
    auto *view = new CanvasView(workspace, &undo, &window);
    view->resize(window.size());
    window.show();
    QApplication::processEvents();

    const QString target = QDir(folder).filePath(fileName);
    const QString other = QDir(folder).filePath(QStringLiteral("empty.css"));
    std::vector<double> firstPaint;
    for (int i = 0; i < selections; ++i) {
        workspace.selectFile(other);
        QApplication::processEvents();
        window.repaint();
        QElapsedTimer timer;
        timer.start();
        workspace.selectFile(target);
        QApplication::processEvents();
        window.repaint();
        firstPaint.push_back(double(timer.nsecsElapsed()) / 1e6);
    }

    NodeListView *list = view->nodeList();
    QScrollBar *bar = list->verticalScrollBar();
    std::vector<double> scrollPaint;
    for (int value = 0;; value += list->viewport()->height()) {
        bar->setValue(std::min(value, bar->maximum()));
        QElapsedTimer timer;
        timer.start();
        list->viewport()->repaint();
        scrollPaint.push_back(double(timer.nsecsElapsed()) / 1e6);
        if (value >= bar->maximum())
            break;
    }
    const double gained = residentMegabytes() - before;

    std::printf("%s: %lld rulesets\n", qPrintable(label),
                static_cast<long long>(workspace.selectedFile()->rulesets().size()));
    std::printf("  selection to first paint: first %.1f ms, median %.1f ms of %d\n",
                firstPaint.front(), median(firstPaint), selections);
    std::printf("  one viewport while scrolling (%zu viewports): median %.2f ms, worst %.2f ms\n",
                scrollPaint.size(), median(scrollPaint),
                *std::max_element(scrollPaint.begin(), scrollPaint.end()));
    std::printf("  resident memory gained: %.1f MB\n", gained);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir scratch;
    // Opening a folder remembers it for the next launch: keep that here.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, scratch.path());

    const QString generated = scratch.filePath(QStringLiteral("generated"));
    QDir().mkpath(generated);
    if (!writeText(generated + QStringLiteral("/generated.css"),
                   BenchStylesheet::generatedStylesheet(10'000)) ||
        !writeText(generated + QStringLiteral("/empty.css"), QString()))
        return 1;
    run(QStringLiteral("10,000 generated rulesets"), generated, QStringLiteral("generated.css"));

    if (argc > 1) {
        const QString source =
            QDir(QString::fromLocal8Bit(argv[1])).filePath(QStringLiteral("semantic-ui.css"));
        const QString corpus = scratch.filePath(QStringLiteral("semantic"));
        QDir().mkpath(corpus);
        if (!QFile::copy(source, corpus + QStringLiteral("/semantic-ui.css")) ||
            !writeText(corpus + QStringLiteral("/empty.css"), QString())) {
            std::fprintf(stderr, "no semantic-ui.css in %s\n", argv[1]);
            return 1;
        }
        run(QStringLiteral("semantic-ui.css"), corpus, QStringLiteral("semantic-ui.css"));
    }
    return 0;
}
