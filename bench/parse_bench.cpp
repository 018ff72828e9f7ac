// ombrel-bench-parse FILE...: for each stylesheet prints one JSON line with its
// size, the rulesets found, and the throughput of a plain byte scan (the
// physical limit), of decoding UTF-8, of parsing the decoded text, of reading,
// decoding and parsing the file, and of generating the text back. Each figure
// is the best of repeated runs that together last at least a fixed time.

#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace Ombrel;

namespace {

constexpr qint64 minimumNanoseconds = 400'000'000;

// Best time of one run, in seconds, after a warm-up run, repeating until the
// total exceeds the minimum time (and at least three runs). What a run
// returns is destroyed after the clock stops, and only once the next run has
// produced its own: the code tab parses each edit while the file still holds
// the rulesets of the last one, so that is the state of the heap a parse
// meets in use.
template<typename Work> double bestSeconds(Work work)
{
    qint64 best = std::numeric_limits<qint64>::max();
    qint64 total = 0;
    int runs = 0;
    [[maybe_unused]] decltype(work()) previous = work();
    while (runs < 3 || total < minimumNanoseconds) {
        QElapsedTimer timer;
        timer.start();
        auto result = work();
        const qint64 elapsed = timer.nsecsElapsed();
        previous = std::move(result);
        best = std::min(best, elapsed);
        total += elapsed;
        ++runs;
    }
    return double(best) / 1e9;
}

double megabytesPerSecond(qint64 bytes, double seconds)
{
    return double(bytes) / 1e6 / seconds;
}

// Counts opening braces byte by byte; volatile keeps the loop from being
// dropped or folded.
qint64 scanBytes(const QByteArray &bytes)
{
    qint64 count = 0;
    for (const char byte : bytes)
        count += byte == '{';
    volatile qint64 sink = count;
    return sink;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    for (const QString &path : app.arguments().mid(1)) {
        QFile input(path);
        if (!input.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
            return 2;
        }
        const QByteArray bytes = input.readAll();
        const qint64 size = bytes.size();
        const QString text = QString::fromUtf8(bytes);

        const double scan = bestSeconds([&] { return scanBytes(bytes); });
        const double decode = bestSeconds([&] { return QString::fromUtf8(bytes); });
        const double parse = bestSeconds([&] { return CSSParser::parse(text); });
        const double readAndParse = bestSeconds([&] {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly))
                return CSSRulesetList();
            return CSSParser::parse(QString::fromUtf8(file.readAll()));
        });
        const CSSFile file(path, CSSParser::parse(text), text);
        const double generate = bestSeconds([&] { return file.generateCSS(); });
        const qsizetype rulesets = file.rulesets().size();
        const qsizetype generatedSize = file.generateCSS().size();

        const QJsonObject line{
            {QStringLiteral("file"), QFileInfo(path).fileName()},
            {QStringLiteral("bytes"), size},
            {QStringLiteral("rulesets"), rulesets},
            {QStringLiteral("scanMBps"), megabytesPerSecond(size, scan)},
            {QStringLiteral("decodeMBps"), megabytesPerSecond(size, decode)},
            {QStringLiteral("parseMBps"), megabytesPerSecond(size, parse)},
            {QStringLiteral("readDecodeParseMBps"), megabytesPerSecond(size, readAndParse)},
            // Generation is counted in bytes of the input too, so that the two
            // rates compare the same stylesheet.
            {QStringLiteral("generateMBps"), megabytesPerSecond(size, generate)},
            {QStringLiteral("generatedChars"), generatedSize}};
        const QByteArray json = QJsonDocument(line).toJson(QJsonDocument::Compact);
        std::printf("%s\n", json.constData());
        std::fflush(stdout);
    }
    return 0;
}
