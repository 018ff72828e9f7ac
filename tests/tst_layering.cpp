// Reads the includes of every source file under src/ and holds the tree to
// its two rules: nothing outside a widgets/ folder uses Qt Widgets or a
// project widget, and the top-level folders of src/ include one another in
// one direction only, down the layers listed below.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {

// From the bottom up. A folder may include only folders before it in the
// list; its widgets/ subfolder counts as part of it.
const QStringList layers = {
    QStringLiteral("text"),      QStringLiteral("knowledge"), QStringLiteral("model"),
    QStringLiteral("workspace"), QStringLiteral("widgets"),   QStringLiteral("canvas"),
    QStringLiteral("colour"),    QStringLiteral("code"),      QStringLiteral("variables"),
    QStringLiteral("inspector"), QStringLiteral("shell"),
};

struct Include
{
    QString file; // relative to src/
    int line;
    QString target; // as written between the quotes or brackets
    bool angled;
};

QList<Include> includesUnder(const QString &root)
{
    static const QRegularExpression directive(
        QStringLiteral("^\\s*#\\s*include\\s*([<\"])([^>\"]+)[>\"]"));
    QList<Include> includes;
    QDirIterator it(root, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString relative = QDir(root).relativeFilePath(path);
        int line = 0;
        while (!file.atEnd()) {
            ++line;
            const QRegularExpressionMatch match =
                directive.match(QString::fromUtf8(file.readLine()));
            if (match.hasMatch())
                includes.append(
                    {relative, line, match.captured(2), match.captured(1) == QLatin1String("<")});
        }
    }
    return includes;
}

bool isInWidgetsFolder(const QString &relativePath)
{
    return relativePath.split(QLatin1Char('/')).contains(QLatin1String("widgets"));
}

QString topFolder(const QString &relativePath)
{
    return relativePath.section(QLatin1Char('/'), 0, 0);
}

// The headers Qt Widgets installs, read from its include folder.
QSet<QString> qtWidgetsHeaders()
{
    QSet<QString> headers;
    const QDir dir(QStringLiteral(OMBREL_QT_WIDGETS_INCLUDE_DIR));
    for (const QString &name : dir.entryList(QDir::Files))
        headers.insert(name);
    return headers;
}

QString describe(const Include &include)
{
    return QStringLiteral("%1:%2 includes %3")
        .arg(include.file)
        .arg(include.line)
        .arg(include.target);
}

} // namespace

class TestLayering : public QObject
{
    Q_OBJECT

    const QString m_src = QStringLiteral(OMBREL_SOURCE_DIR "/src");

private Q_SLOTS:
    void theSourceTreeIsRead()
    {
        const QList<Include> includes = includesUnder(m_src);
        QVERIFY(includes.size() > 500);
        QVERIFY(qtWidgetsHeaders().contains(QStringLiteral("QWidget")));
    }

    void noFileOutsideAWidgetsFolderUsesWidgets()
    {
        const QSet<QString> widgetHeaders = qtWidgetsHeaders();
        QStringList offences;
        for (const Include &include : includesUnder(m_src)) {
            if (isInWidgetsFolder(include.file))
                continue;
            const QString header = include.target.section(QLatin1Char('/'), -1);
            const bool qtWidgets =
                include.angled && (widgetHeaders.contains(header) ||
                                   include.target.startsWith(QLatin1String("QtWidgets/")));
            const bool projectWidget = !include.angled && isInWidgetsFolder(include.target);
            if (qtWidgets || projectWidget)
                offences.append(describe(include));
        }
        if (!offences.isEmpty())
            QFAIL(qPrintable(QStringLiteral("widget code outside a widgets/ folder:\n") +
                             offences.join(QLatin1Char('\n'))));
    }

    void everyTopLevelFolderHasItsLayer()
    {
        const QStringList folders =
            QDir(m_src).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString &folder : folders)
            QVERIFY2(layers.contains(folder),
                     qPrintable(folder + QStringLiteral(" has no place in the list of layers")));
    }

    void foldersIncludeOnlyTheLayersBelowThem()
    {
        QStringList offences;
        for (const Include &include : includesUnder(m_src)) {
            if (include.angled || !include.target.contains(QLatin1Char('/')))
                continue;
            const QString from = topFolder(include.file);
            const QString to = topFolder(include.target);
            if (from == to || !layers.contains(to))
                continue;
            if (layers.indexOf(to) > layers.indexOf(from))
                offences.append(describe(include) + QStringLiteral(": ") + from +
                                QStringLiteral(" lies below ") + to);
        }
        if (!offences.isEmpty())
            QFAIL(qPrintable(QStringLiteral("includes that reach up the layers:\n") +
                             offences.join(QLatin1Char('\n'))));
    }

    void includesWithoutAFolderStayInTheirOwnFolder()
    {
        // A bare name finds a header beside the including file only; one that
        // does not stand there reaches elsewhere through the include path.
        QStringList offences;
        for (const Include &include : includesUnder(m_src)) {
            if (include.angled || include.target.contains(QLatin1Char('/')) ||
                include.target.endsWith(QLatin1String(".moc")))
                continue;
            const QString beside =
                QFileInfo(m_src + QLatin1Char('/') + include.file).dir().filePath(include.target);
            if (!QFileInfo::exists(beside))
                offences.append(describe(include));
        }
        if (!offences.isEmpty())
            QFAIL(qPrintable(QStringLiteral("bare includes of headers from other folders:\n") +
                             offences.join(QLatin1Char('\n'))));
    }
};

QTEST_GUILESS_MAIN(TestLayering)
#include "tst_layering.moc"
