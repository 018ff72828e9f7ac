// ombrel-bench-resolve FILE...: for each stylesheet prints one line with the
// time of one full pass of what a canvas redraw reads (the file's custom
// properties once, then the four resolved readings of every ruleset) beside
// the time of parsing the same file, the baseline measured in the same run.
// Each figure is the best of repeated runs lasting at least a fixed time.

#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace Ombrel;

namespace {

constexpr qint64 minimumNanoseconds = 400'000'000;

template<typename Work> double bestMilliseconds(Work work)
{
    qint64 best = std::numeric_limits<qint64>::max();
    qint64 total = 0;
    work();
    for (int runs = 0; runs < 3 || total < minimumNanoseconds; ++runs) {
        QElapsedTimer timer;
        timer.start();
        work();
        const qint64 elapsed = timer.nsecsElapsed();
        best = std::min(best, elapsed);
        total += elapsed;
    }
    return double(best) / 1e6;
}

// What the readings produce, summed so that none of them can be optimised
// away.
struct PassResult
{
    int colours = 0;
    double radii = 0;
    int weights = 0;
};

PassResult readEverything(const CSSFile &file)
{
    PassResult result;
    const CSSVariables variables = file.variables();
    for (const CSSRulesetPtr &ruleset : file.rulesets()) {
        result.colours += ruleset->resolvedBackgroundColor(variables).has_value();
        result.colours += ruleset->resolvedTextColor(variables).has_value();
        result.radii += ruleset->resolvedBorderRadius(variables);
        result.weights += int(ruleset->resolvedFontWeight(variables));
    }
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    std::printf("%-18s %9s %9s %13s %11s %9s\n", "file", "rulesets", "variables", "full pass ms",
                "parse ms", "pass/parse");
    for (const QString &path : app.arguments().mid(1)) {
        QFile input(path);
        if (!input.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
            return 2;
        }
        const QString text = QString::fromUtf8(input.readAll());
        const auto file = std::make_shared<CSSFile>(path, CSSParser::parse(text), text);
        volatile int sink = 0;
        const double pass = bestMilliseconds([&] { sink = sink + readEverything(*file).colours; });
        const double parse =
            bestMilliseconds([&] { sink = sink + int(CSSParser::parse(text).size()); });
        std::printf("%-18s %9lld %9lld %13.3f %11.3f %9.2f\n",
                    qPrintable(QFileInfo(path).fileName()), qlonglong(file->rulesets().size()),
                    qlonglong(file->variables().size()), pass, parse, pass / parse);
    }
    return 0;
}
