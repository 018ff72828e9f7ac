// ombrel-bench-workspace [CORPUS_DIR]: times what a window does with a folder.
//
// It generates, in a temporary folder of its own, 1,000 stylesheets of about
// 20 KB of varied rulesets (20 MB) and 10,000 small ones, and prints:
//  - the first open of the 1,000-file folder in a fresh process, the figure a
//    user meets at launch: it pays for every page of memory the model takes
//    from the system and for every first use of a library. It is measured in
//    several processes of its own (this program started again with
//    --first-open), and the median is printed with each run's wall time, CPU
//    time and page faults;
//  - for each folder the best time of opening it again in the same process
//    (listing, reading, decoding, parsing, sorting and starting the watch),
//    with the share of each step;
//  - the time of one rescan after a single new file appeared among the 1,000.
// With a corpus folder (bench/install-peers.sh prints it) the corpus is
// opened too. The settings that opening a folder writes go to a temporary
// folder, never to the user's own.
//
//   ombrel-bench-workspace --generate DIR     writes the two folders into DIR
//   ombrel-bench-workspace --first-open DIR   opens DIR once and prints
//                                             "first-open WALL_MS CPU_MS FAULTS"
// The two modes let a profiler watch one first open on its own, e.g.
//   perf record -g ombrel-bench-workspace --first-open DIR/thousand

#include "model/CSSParser.h"
#include "workspace/StylesheetFolder.h"
#include "workspace/Workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

using namespace Ombrel;

namespace {

constexpr int repetitions = 7;

constexpr int freshProcesses = 7;

long minorPageFaults()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

// CPU time of the process: on a machine that others share, it tells the work
// done from the time spent waiting for a processor.
double cpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

// Best milliseconds of a few runs; setup runs before each and is not timed.
double bestMs(const std::function<void()> &work, const std::function<void()> &setup = {})
{
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < repetitions; ++i) {
        if (setup)
            setup();
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, double(timer.nsecsElapsed()) / 1e6);
    }
    return best;
}

// Stylesheets shaped like a site's or a framework's: component selectors
// with pseudo-classes and combinators, colours, lengths, var() uses, custom
// properties, gradients, comments and media queries. Fixed seed, so every
// run measures the same bytes.
class StylesheetGenerator
{
public:
    QByteArray stylesheet(int index, qsizetype targetBytes)
    {
        QByteArray out = "/* Component sheet " + QByteArray::number(index) + " */\n\n";
        out += ":root {\n";
        for (int i = 0; i < 8; ++i)
            out += "    --tone-" + QByteArray::number(i) + ": " + hex() + ";\n";
        out += "}\n\n";
        for (int n = 0; out.size() < targetBytes; ++n) {
            if (pick(24) == 0) {
                out += "@media (max-width: " + QByteArray::number(480 + pick(800)) + "px) {\n  " +
                       selector(index, n) + " {\n    " + declaration() + ";\n  }\n}\n\n";
                continue;
            }
            if (pick(12) == 0)
                out += "/* " + word() + " " + word() + " */\n";
            out += selector(index, n) + " {\n";
            const int count = 2 + pick(8);
            for (int i = 0; i < count; ++i)
                out += "    " + declaration() + ";\n";
            out += "}\n\n";
        }
        return out;
    }

private:
    int pick(int n) { return int(m_random.bounded(n)); }

    QByteArray word()
    {
        static const char *const words[] = {"card",  "btn",   "nav",  "modal", "form",
                                            "table", "alert", "grid", "menu",  "badge"};
        return words[pick(10)];
    }

    QByteArray hex()
    {
        return "#" + QByteArray::number(m_random.bounded(0x1000000), 16).rightJustified(6, '0');
    }

    QByteArray length()
    {
        switch (pick(5)) {
        case 0:
            return "0";
        case 1:
            return QByteArray::number(pick(48)) + "px";
        case 2:
            return QByteArray::number(pick(8)) + "." + QByteArray::number(pick(10)) + "rem";
        case 3:
            return QByteArray::number(pick(100)) + "%";
        default:
            return QByteArray::number(pick(4)) + "em";
        }
    }

    QByteArray selector(int file, int n)
    {
        const QByteArray b = word() + "-" + QByteArray::number(file) + "-" + QByteArray::number(n);
        switch (pick(8)) {
        case 0:
            return "." + b;
        case 1:
            return "." + b + " ." + word() + "__title";
        case 2:
            return "." + b + " > li:hover";
        case 3:
            return "." + b + ":focus-visible";
        case 4:
            return "." + b + " input[type=\"text\"]";
        case 5:
            return "#" + b + " h1,\n#" + b + " h2";
        case 6:
            return "." + b + "::before";
        default:
            return "." + b + "--primary:not(:disabled)";
        }
    }

    QByteArray declaration()
    {
        switch (pick(12)) {
        case 0:
            return "color: " + hex();
        case 1:
            return "background-color: rgba(" + QByteArray::number(pick(256)) + ", " +
                   QByteArray::number(pick(256)) + ", " + QByteArray::number(pick(256)) + ", 0." +
                   QByteArray::number(pick(10)) + ")";
        case 2:
            return "border-radius: " + length();
        case 3:
            return "border: 1px solid var(--tone-" + QByteArray::number(pick(8)) + ")";
        case 4:
            return "margin: " + length() + " " + length();
        case 5:
            return "padding: " + length() + " " + length() + " " + length();
        case 6:
            return "font-family: \"Inter\", -apple-system, \"Segoe UI\", sans-serif";
        case 7:
            return "background-image: linear-gradient(" + QByteArray::number(pick(360)) + "deg, " +
                   hex() + " 0%, " + hex() + " 100%)";
        case 8:
            return "transition: opacity 0." + QByteArray::number(pick(10)) + "s ease-in-out";
        case 9:
            return "box-shadow: 0 " + length() + " " + length() + " rgba(0, 0, 0, 0.2)";
        case 10:
            return "--local-" + word() + ": " + hex();
        default:
            return "display: " + QByteArray(pick(2) ? "flex" : "grid");
        }
    }

    QRandomGenerator m_random{0x5eed};
};

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

qint64 folderBytes(const QStringList &paths)
{
    qint64 total = 0;
    for (const QString &path : paths)
        total += QFileInfo(path).size();
    return total;
}

QStringList listing(const QString &folder)
{
    return StylesheetFolder::stylesheetPaths(folder).value_or(QStringList());
}

// Opens the folder in a fresh workspace, as a new window would, and prints the
// time with the share of listing, reading and decoding, and parsing.
void reportOpen(const QString &label, const QString &folder)
{
    const QStringList paths = listing(folder);
    const qint64 bytes = folderBytes(paths);
    std::unique_ptr<Workspace> workspace;
    const double open = bestMs([&] { workspace->openFolder(folder); },
                               [&] { workspace = std::make_unique<Workspace>(); });
    workspace.reset();
    const double list = bestMs([&] { listing(folder); });
    QList<QString> texts;
    const double read = bestMs([&] {
        texts.clear();
        for (const QString &path : paths) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                texts.append(QStringDecoder(QStringConverter::Utf8).decode(file.readAll()));
        }
    });
    const double parse = bestMs([&] {
        for (const QString &text : std::as_const(texts))
            CSSParser::parse(text);
    });
    std::printf("%-28s %6lld files %6.1f MB  open again %6.1f ms  (list %.1f, read+decode %.1f, "
                "parse %.1f)\n",
                qPrintable(label), qlonglong(paths.size()), double(bytes) / 1e6, open, list, read,
                parse);
}

// One scan of the 1,000-file folder after one new stylesheet appeared in it.
void reportRescan(const QString &folder, StylesheetGenerator &generator)
{
    Workspace workspace;
    workspace.openFolder(folder);
    const qsizetype before = workspace.files().size();
    int added = 0;
    const double rescan = bestMs([&] { workspace.reloadFiles(); },
                                 [&] {
                                     ++added;
                                     const QString name = QStringLiteral("new-%1.css").arg(added);
                                     writeFile(QDir(folder).filePath(name),
                                               generator.stylesheet(100000 + added, 20000));
                                 });
    // Each scan found its one new file.
    if (workspace.files().size() != before + added) {
        std::fprintf(stderr, "rescan missed a new file\n");
        std::exit(1);
    }
    const double idle = bestMs([&] { workspace.reloadFiles(); });
    std::printf("%-28s %6lld files          rescan %6.1f ms  (with nothing new %.1f)\n",
                "one new file among 1,000", qlonglong(before), rescan, idle);
}

// Settings that a workspace writes go to a folder of this run.
void isolateSettings(const QString &folder)
{
    for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, folder);
}

void generate(const QString &root, StylesheetGenerator &generator)
{
    const QString thousand = QDir(root).filePath(QStringLiteral("thousand"));
    QDir().mkpath(thousand);
    for (int i = 0; i < 1000; ++i)
        writeFile(
            QDir(thousand).filePath(QStringLiteral("sheet-%1.css").arg(i, 4, 10, QLatin1Char('0'))),
            generator.stylesheet(i, 20000));
    const QString tenThousand = QDir(root).filePath(QStringLiteral("ten-thousand"));
    for (int i = 0; i < 10000; ++i) {
        const QString dir = QDir(tenThousand).filePath(QStringLiteral("group-%1").arg(i / 500));
        QDir().mkpath(dir);
        writeFile(QDir(dir).filePath(QStringLiteral("small-%1.css").arg(i)),
                  generator.stylesheet(i, 600));
    }
}

// The one open of a fresh process, as the first window of a launch does it.
int firstOpen(const QString &folder)
{
    QTemporaryDir settings;
    isolateSettings(settings.path());
    const long faults = minorPageFaults();
    const double cpu = cpuMs();
    QElapsedTimer timer;
    timer.start();
    Workspace workspace;
    workspace.openFolder(folder);
    const double wall = double(timer.nsecsElapsed()) / 1e6;
    std::printf("first-open %.1f %.1f %ld %lld\n", wall, cpuMs() - cpu, minorPageFaults() - faults,
                qlonglong(workspace.files().size()));
    return 0;
}

struct FirstOpen
{
    double wallMs;
    double cpuMs;
    long pageFaults;
};

// Runs --first-open in fresh processes and prints the median with each run.
void reportFirstOpen(const QString &folder)
{
    std::vector<FirstOpen> runs;
    for (int i = 0; i < freshProcesses; ++i) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--first-open"), folder});
        if (!child.waitForFinished(-1) || child.exitCode() != 0) {
            std::fprintf(stderr, "a first open failed\n");
            std::exit(1);
        }
        const QList<QByteArray> fields = child.readAllStandardOutput().trimmed().split(' ');
        if (fields.size() != 5 || fields[4].toInt() != 1000) {
            std::fprintf(stderr, "a first open did not load the folder\n");
            std::exit(1);
        }
        runs.push_back({fields[1].toDouble(), fields[2].toDouble(), fields[3].toLong()});
    }
    std::vector<FirstOpen> byWall = runs;
    std::sort(byWall.begin(), byWall.end(),
              [](const FirstOpen &a, const FirstOpen &b) { return a.wallMs < b.wallMs; });
    const FirstOpen &median = byWall[byWall.size() / 2];
    std::printf("%-28s %6d files          FIRST OPEN %6.1f ms median of %d fresh processes "
                "(CPU %.1f ms, %ld page faults)\n",
                "1,000 generated stylesheets", 1000, median.wallMs, freshProcesses, median.cpuMs,
                median.pageFaults);
    for (const FirstOpen &run : runs)
        std::printf("%-28s %6s                 each run  %6.1f ms wall, %6.1f ms CPU, %ld page "
                    "faults\n",
                    "", "", run.wallMs, run.cpuMs, run.pageFaults);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() == 2 && arguments[0] == QLatin1String("--first-open"))
        return firstOpen(arguments[1]);

    StylesheetGenerator generator;
    if (arguments.size() == 2 && arguments[0] == QLatin1String("--generate")) {
        generate(arguments[1], generator);
        return 0;
    }

    QTemporaryDir scratch;
    if (!scratch.isValid())
        return 1;
    isolateSettings(scratch.filePath(QStringLiteral("settings")));
    generate(scratch.path(), generator);
    const QString thousand = scratch.filePath(QStringLiteral("thousand"));

    reportFirstOpen(thousand);
    reportOpen(QStringLiteral("1,000 generated stylesheets"), thousand);
    reportOpen(QStringLiteral("10,000 small stylesheets"),
               scratch.filePath(QStringLiteral("ten-thousand")));
    if (!arguments.isEmpty())
        reportOpen(QStringLiteral("real-world corpus"), arguments.first());
    reportRescan(thousand, generator);
    return 0;
}
