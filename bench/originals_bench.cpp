// ombrel-bench-originals CORPUS_DIR: what keeping originals costs.
//
// For bootstrap, primer and tailwind 2 (3.6 MB), the parse that counts the
// at-rules and comments it drops beside the parse that does not (the best of
// repeated runs of each, interleaved so that both meet the same machine).
//
// For tailwind, the time a first lossy save takes over a plain save: a plain
// save writes the same generated text over a file whose loaded text was
// already in that form; a first lossy save writes it over the file as the
// corpus has it, keeping those bytes in a store first. Each is timed on a
// fresh file, many times, and the medians are compared. The store and the
// files lie in one temporary folder on the disk of the system's temporary
// location, as a user's stylesheets and data folder usually share one disk.
// Then the same keeping where the store lies on another file system
// (/dev/shm, when it is one), where it has to copy the bytes.

#include "model/CSSFile.h"
#include "model/CSSParser.h"
#include "workspace/OriginalStore.h"
#include "workspace/StylesheetFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace Ombrel;

namespace {

constexpr int parseRounds = 41;
constexpr int saveRounds = 25;

double milliseconds(qint64 nanoseconds)
{
    return double(nanoseconds) / 1e6;
}

double median(QList<qint64> samples)
{
    std::sort(samples.begin(), samples.end());
    return milliseconds(samples.at(samples.size() / 2));
}

double best(const QList<qint64> &samples)
{
    return milliseconds(*std::min_element(samples.begin(), samples.end()));
}

template<typename Work> qint64 timed(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed();
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void parseWithAndWithoutCounting(const QString &path)
{
    const QString text = QString::fromUtf8(readBytes(path));
    QList<qint64> plain;
    QList<qint64> counting;
    CSSParser::DroppedCounts dropped;
    // Warm-up of both.
    CSSParser::parse(text);
    CSSParser::parse(text, dropped);
    // Alternating which goes first, so that neither always meets the heap
    // the other has just left.
    for (int round = 0; round < parseRounds; ++round) {
        CSSRulesetList kept;
        const auto runPlain = [&] { plain.append(timed([&] { kept = CSSParser::parse(text); })); };
        const auto runCounting = [&] {
            counting.append(timed([&] { kept = CSSParser::parse(text, dropped); }));
        };
        if (round % 2 == 0) {
            runPlain();
            runCounting();
        } else {
            runCounting();
            runPlain();
        }
    }
    const double without = best(plain);
    const double with = best(counting);
    std::printf("%-16s parse %8.2f ms   with counting %8.2f ms   %+5.1f %%   "
                "(medians %.2f / %.2f ms; %lld at-rules, %lld comments)\n",
                qPrintable(QFileInfo(path).fileName()), without, with,
                (with - without) / without * 100.0, median(plain), median(counting),
                static_cast<long long>(dropped.atRules), static_cast<long long>(dropped.comments));
}

// A loaded text with nothing counted is compared with the generated form when
// the file is made: for a text already in that form the whole of it, the
// worst case, beside the parse that came before.
void judgingAGeneratedText(const QString &path)
{
    const QString text = QString::fromUtf8(readBytes(path));
    const QString generated = CSSFile(QString(), CSSParser::parse(text), text).generateCSS();
    CSSParser::DroppedCounts dropped;
    const CSSRulesetList rulesets = CSSParser::parse(generated, dropped);
    QList<qint64> parse;
    QList<qint64> judge;
    for (int round = 0; round < parseRounds; ++round) {
        parse.append(timed([&] { CSSParser::parse(generated, dropped); }));
        judge.append(timed([&] {
            const CSSFile file(path, rulesets, generated, dropped);
            if (file.originalState() != OriginalState::Whole)
                std::fprintf(stderr, "the generated text was not judged whole\n");
        }));
    }
    std::printf("%-16s generated form, %lld characters: parse %.2f ms, judged whole in %.2f ms\n",
                qPrintable(QFileInfo(path).fileName()), static_cast<long long>(generated.size()),
                best(parse), best(judge));
}

// Saves in files, keeps in store; returns non-zero when something failed.
int firstLossySave(const QString &path, const QDir &files, const QString &storeFolder,
                   const char *where)
{
    const QByteArray original = readBytes(path);
    const QString text = QString::fromUtf8(original);
    const QByteArray generated =
        CSSFile(QString(), CSSParser::parse(text), text).generateCSS().toUtf8();
    const QDir &dir = files;
    auto store = std::make_shared<OriginalStore>(storeFolder);
    OriginalStore::install(store);

    QList<qint64> plain;
    QList<qint64> lossy;
    QList<qint64> keepOnly;
    for (int round = 0; round < saveRounds; ++round) {
        // A file whose loaded text is the generated form: the plain save.
        const QString plainPath = dir.filePath(QStringLiteral("plain-%1.css").arg(round));
        if (!writeBytes(plainPath, generated))
            return 2;
        const CSSFilePtr whole = StylesheetFolder::readStylesheet(plainPath);
        if (!whole || whole->originalState() != OriginalState::Whole)
            return 2;
        plain.append(timed([&] { whole->save(); }));

        // The file as the corpus has it: its first save keeps it.
        const QString lossyPath = dir.filePath(QStringLiteral("tailwind-%1.css").arg(round));
        if (!writeBytes(lossyPath, original))
            return 2;
        const CSSFilePtr file = StylesheetFolder::readStylesheet(lossyPath);
        if (!file || file->originalState() != OriginalState::BeforeSave)
            return 2;
        lossy.append(timed([&] { file->save(); }));
        if (file->originalState() != OriginalState::Kept ||
            readBytes(store->originals(lossyPath).value(0).path) != original) {
            std::fprintf(stderr, "the original was not kept\n");
            return 1;
        }

        // The keeping alone, of the same bytes under another name.
        const QString again = dir.filePath(QStringLiteral("again-%1.css").arg(round));
        if (!writeBytes(again, original))
            return 2;
        keepOnly.append(timed([&] { store->keep(again); }));
        QFile::remove(plainPath);
        QFile::remove(lossyPath);
        QFile::remove(again);
    }
    std::printf("\n%s, %lld bytes, saved as %lld bytes, %d rounds; files in %s, store %s:\n",
                qPrintable(QFileInfo(path).fileName()), static_cast<long long>(original.size()),
                static_cast<long long>(generated.size()), saveRounds, qPrintable(dir.path()),
                where);
    std::printf("  plain save            median %7.2f ms   best %7.2f ms\n", median(plain),
                best(plain));
    std::printf("  first lossy save      median %7.2f ms   best %7.2f ms\n", median(lossy),
                best(lossy));
    std::printf("  added by keeping      median %7.2f ms   best %7.2f ms\n",
                median(lossy) - median(plain), best(lossy) - best(plain));
    std::printf("  keeping alone         median %7.2f ms   best %7.2f ms\n", median(keepOnly),
                best(keepOnly));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (app.arguments().size() != 2) {
        std::fprintf(stderr, "usage: ombrel-bench-originals CORPUS_DIR\n");
        return 2;
    }
    const QDir corpus(app.arguments().at(1));
    for (const char *name : {"bootstrap.css", "primer.css", "tailwind.css"}) {
        if (!QFileInfo::exists(corpus.filePath(QString::fromLatin1(name)))) {
            std::fprintf(stderr, "%s is missing from the corpus\n", name);
            return 2;
        }
    }
    std::printf("Parse, best of %d, without and with counting what it drops:\n", parseRounds);
    for (const char *name : {"bootstrap.css", "primer.css", "tailwind.css"})
        parseWithAndWithoutCounting(corpus.filePath(QString::fromLatin1(name)));

    std::printf("\nA file made from a text in the generated form, best of %d:\n", parseRounds);
    for (const char *name : {"bootstrap.css", "primer.css", "tailwind.css"})
        judgingAGeneratedText(corpus.filePath(QString::fromLatin1(name)));

    const QString tailwind = corpus.filePath(QStringLiteral("tailwind.css"));
    QTemporaryDir disk;
    if (!disk.isValid() || !QDir().mkpath(disk.filePath(QStringLiteral("site"))))
        return 2;
    if (const int failed =
            firstLossySave(tailwind, QDir(disk.filePath(QStringLiteral("site"))),
                           disk.filePath(QStringLiteral("originals")), "on the same file system"))
        return failed;
    QTemporaryDir memory(QStringLiteral("/dev/shm/ombrel-bench-XXXXXX"));
    if (!memory.isValid())
        return 0;
    return firstLossySave(tailwind, QDir(memory.path()),
                          disk.filePath(QStringLiteral("copied-originals")),
                          "on the disk, apart from the files in memory (a copy)");
}
