// ombrel-bench-fluid [CORPUS_DIR]: how a whole window answers on large
// stylesheets, measured as a user meets it. A real window (sidebar, canvas,
// menus), offscreen, opens a folder holding a generated stylesheet of 10,000
// and then, in a process of its own, of 100,000 varied rulesets beside a
// small one; with a corpus folder (bench/install-peers.sh prints it)
// tailwind's stylesheet follows.
//
// Each run prints, from the input event to the end of all work the event
// left queued, the paint of what changed included, the wall time and the
// CPU time of the thread (which a busy machine does not inflate):
//   - a filter keystroke: the characters of a query typed into the canvas
//     filter one at a time, then taken back with Backspace (median, worst);
//   - a selection change: a click on a card;
//   - a sidebar file switch: a click on the small file's row, and on the
//     large one's;
// and the memory the shown stylesheet holds: resident memory and heap in use
// gained from a window showing a small stylesheet to the same window showing
// the large one, beside the size of the file on disk.
//
//   ombrel-bench-fluid --rulesets N      one generated run
//   ombrel-bench-fluid --file PATH       one run on a stylesheet of PATH
// either followed by "--query TEXT" (the filter typed; "cell-7", or "hover"
// for a file) and "--rounds N" (how often it is typed and erased; 3).

#include "GeneratedStylesheet.h"

#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/NodeListView.h"
#include "shell/widgets/MainDetailView.h"
#include "shell/widgets/MainWindow.h"
#include "shell/widgets/OmbrelApp.h"
#include "shell/widgets/SidebarView.h"
#include "widgets/ToolbarTextField.h"
#include "workspace/AppPreferences.h"
#include "workspace/Workspace.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QListView>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <malloc.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

double residentMegabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toDouble() * double(sysconf(_SC_PAGESIZE)) / 1048576.0 : 0;
}

double heapMegabytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / 1048576.0;
}

bool writeText(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

// Milliseconds of CPU this thread has used: on a shared machine the wall
// time of an input includes the waits for the processor, its CPU time not.
double threadCpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

struct Sample
{
    double wallMs = 0;
    double cpuMs = 0;
};

struct Figures
{
    std::vector<Sample> samples;

    void add(Sample sample) { samples.push_back(sample); }

    static double median(std::vector<double> values)
    {
        std::sort(values.begin(), values.end());
        return values.empty() ? 0 : values[values.size() / 2];
    }
    static double worst(const std::vector<double> &values)
    {
        return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
    }
    std::vector<double> wall() const
    {
        std::vector<double> values;
        for (const Sample &sample : samples)
            values.push_back(sample.wallMs);
        return values;
    }
    std::vector<double> cpu() const
    {
        std::vector<double> values;
        for (const Sample &sample : samples)
            values.push_back(sample.cpuMs);
        return values;
    }
};

// Runs the event loop until nothing is left to do: the input's work, the
// steps it queued, and the paints it asked for, which are queued as well.
void settle()
{
    QAbstractEventDispatcher *dispatcher = QThread::currentThread()->eventDispatcher();
    while (dispatcher->processEvents(QEventLoop::AllEvents)) {
    }
}

// Lets animations and delayed steps run out, untimed.
void idle(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
}

// Out of line, so that a profiler can collect these inputs alone:
//   valgrind --tool=callgrind --toggle-collect='*timed*' ombrel-bench-fluid ...
template<typename Input> Q_NEVER_INLINE Sample timed(Input input)
{
    QElapsedTimer start;
    const double cpu = threadCpuMs();
    start.start();
    input();
    settle();
    return {double(start.nsecsElapsed()) / 1e6, threadCpuMs() - cpu};
}

void print(const char *what, const Figures &figures)
{
    std::printf("  %-34s median %7.2f ms  worst %7.2f ms   CPU median %7.2f ms  worst %7.2f ms"
                "  (%zu)\n",
                what, Figures::median(figures.wall()), Figures::worst(figures.wall()),
                Figures::median(figures.cpu()), Figures::worst(figures.cpu()),
                figures.samples.size());
}

struct Run
{
    int rulesets = 0;
    QString file;
    QString query;
    int rounds = 3;
};

int runOne(const QString &label, const QByteArray &css, const QString &query, int rounds)
{
    QTemporaryDir scratch;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, scratch.path());
    const QString start = scratch.filePath(QStringLiteral("start"));
    const QString folder = scratch.filePath(QStringLiteral("site"));
    QDir().mkpath(start);
    QDir().mkpath(folder);
    const QString large = folder + QStringLiteral("/large.css");
    const QByteArray smallText(".a {\n    color: red;\n}\n\n.b {\n    color: blue;\n}\n");
    if (!writeText(large, css) || !writeText(folder + QStringLiteral("/a-small.css"), smallText) ||
        !writeText(start + QStringLiteral("/a-small.css"), smallText))
        return 1;
    const qint64 diskBytes = css.size();

    AppPreferences::shared().setRestoreSession(false);
    AppPreferences::shared().setAutoSave(false);
    // Every prompt is answered "Don't Save"; nothing else is asked.
    ShellServices services;
    services.prompt = [](const Prompt &) { return 1001; };
    services.quitApplication = [] {};
    OmbrelApp app(services);
    malloc_trim(0);
    const double residentBefore = residentMegabytes();
    const double heapBefore = heapMegabytes();

    // The window first shows a folder of one small stylesheet; what opening
    // the large one's folder adds is the memory of that stylesheet.
    MainWindow *window = app.openWindow(WindowConfig(false, start));
    window->activateWindow();
    QApplication::setActiveWindow(window);
    if (!QTest::qWaitForWindowExposed(window) ||
        !QTest::qWaitFor([window] { return window->mainDetailView() != nullptr; }, 60'000))
        return 1;
    settle();
    const double residentWindow = residentMegabytes();
    const double heapWindow = heapMegabytes();

    const Sample open = timed([&] {
        window->workspace()->openFolder(folder);
        window->workspace()->selectFile(large);
    });
    auto *canvas = qobject_cast<CanvasView *>(window->mainDetailView()->contentColumn());
    if (!canvas || !canvas->nodeList() || !window->workspace()->selectedFile() ||
        window->workspace()->selectedFile()->path() != large)
        return 1;
    const double residentShown = residentMegabytes();
    const double heapShown = heapMegabytes();
    const qsizetype rulesets = window->workspace()->selectedFile()->rulesets().size();

    ToolbarTextField *field = canvas->searchField();
    field->setFocus(Qt::MouseFocusReason);
    idle(50);
    Figures filter;
    for (int round = 0; round < rounds; ++round) {
        for (const QChar character : query)
            filter.add(timed([&] { QTest::keyClick(field, character.toLatin1()); }));
        for (qsizetype i = 0; i < query.size(); ++i)
            filter.add(timed([&] { QTest::keyClick(field, Qt::Key_Backspace); }));
    }
    idle(50);

    NodeListView *list = canvas->nodeList();
    list->setFocus(Qt::MouseFocusReason);
    idle(50);
    Figures selection;
    for (int row = 0; row < 8; ++row) {
        const QPoint at = list->visualRect(list->model()->index(row % 4, 0)).center();
        selection.add(timed([&] { QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at); }));
        idle(200);
    }

    QListView *files = window->sidebarView()->listView();
    const auto rowPoint = [files](int row) {
        const QRect rect = files->visualRect(files->model()->index(row, 0));
        return QPoint(rect.right() - 4, rect.center().y());
    };
    Figures toSmall;
    Figures toLarge;
    for (int round = 0; round < 5; ++round) {
        toSmall.add(
            timed([&] { QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, rowPoint(0)); }));
        idle(100);
        toLarge.add(
            timed([&] { QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, rowPoint(1)); }));
        idle(100);
    }
    if (window->workspace()->selectedFile()->path() != large)
        return 1;

    std::printf("%s: %lld rulesets, %.1f MB on disk\n", qPrintable(label),
                static_cast<long long>(rulesets), double(diskBytes) / 1048576.0);
    print("filter keystroke (\"" + query.toLatin1() + "\" typed and erased):", filter);
    print("selection change (card click):", selection);
    print("sidebar switch to the small file:", toSmall);
    print("sidebar switch to the large file:", toLarge);
    std::printf("  open folder and show the large file: %.0f ms (CPU %.0f ms)\n", open.wallMs,
                open.cpuMs);
    std::printf("  window with a small file: resident %.1f MB gained, heap in use %.1f MB\n",
                residentWindow - residentBefore, heapWindow - heapBefore);
    std::printf("  the large file shown: resident %.1f MB gained (%.1fx the file), heap in use "
                "%.1f MB (%.1fx)\n",
                residentShown - residentWindow,
                (residentShown - residentWindow) * 1048576.0 / double(diskBytes),
                heapShown - heapWindow, (heapShown - heapWindow) * 1048576.0 / double(diskBytes));
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QStringList arguments = [argc, argv] {
        QStringList list;
        for (int i = 1; i < argc; ++i)
            list.append(QString::fromLocal8Bit(argv[i]));
        return list;
    }();

    // One run: "--rulesets N" or "--file PATH", and optionally the filter
    // query typed and the number of times it is typed and erased.
    Run run;
    for (qsizetype i = 0; i + 1 < arguments.size(); i += 2) {
        const QString &name = arguments[i];
        const QString &value = arguments[i + 1];
        if (name == QStringLiteral("--rulesets"))
            run.rulesets = value.toInt();
        else if (name == QStringLiteral("--file"))
            run.file = value;
        else if (name == QStringLiteral("--query"))
            run.query = value;
        else if (name == QStringLiteral("--rounds"))
            run.rounds = value.toInt();
    }
    if (run.rulesets > 0 || !run.file.isEmpty()) {
        QApplication app(argc, argv);
        QByteArray css;
        QString label;
        if (run.rulesets > 0) {
            css = BenchStylesheet::generatedStylesheet(run.rulesets).toUtf8();
            label = QStringLiteral("%1 generated rulesets").arg(run.rulesets);
        } else {
            QFile file(run.file);
            if (!file.open(QIODevice::ReadOnly))
                return 1;
            css = file.readAll();
            label = QFileInfo(run.file).fileName();
        }
        if (run.query.isEmpty())
            run.query = run.rulesets > 0 ? QStringLiteral("cell-7") : QStringLiteral("hover");
        return runOne(label, css, run.query, run.rounds);
    }

    // Each stylesheet in a fresh process, so that one's memory does not
    // count for the next.
    QCoreApplication app(argc, argv);
    QStringList runs[] = {{QStringLiteral("--rulesets"), QStringLiteral("10000")},
                          {QStringLiteral("--rulesets"), QStringLiteral("100000")},
                          {}};
    if (!arguments.isEmpty())
        runs[2] = {QStringLiteral("--file"),
                   QDir(arguments[0]).filePath(QStringLiteral("tailwind.css"))};
    for (const QStringList &run : runs) {
        if (run.isEmpty())
            continue;
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QCoreApplication::applicationFilePath(), run);
        if (!child.waitForFinished(-1) || child.exitCode() != 0) {
            std::fprintf(stderr, "run %s failed\n", qPrintable(run.join(u' ')));
            return 1;
        }
    }
    return 0;
}
