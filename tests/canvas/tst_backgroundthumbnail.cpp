#include "TestImages.h"
#include "canvas/BackgroundThumbnail.h"
#include "model/CSSParser.h"
#include "model/CSSRuleset.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Ombrel;
using TestImages::greyPng;
using TestImages::pngBytes;

Q_DECLARE_METATYPE(QList<Ombrel::Color>)

namespace {

using Kind = BackgroundThumbnail::Kind;

const QSize frame(56, 45);

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

CSSRulesetPtr rulesetOf(const QString &declarations)
{
    return CSSParser::parse(QStringLiteral(".x { %1 }").arg(declarations)).first();
}

QColor centreOf(const QImage &image)
{
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class TestBackgroundThumbnail : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_sheet;

    QString path(const QString &name) const { return m_dir.filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_sheet = path(QStringLiteral("style.css"));
        writeFile(m_sheet, ".x {}\n");
        writeFile(path(QStringLiteral("a(1).png")), pngBytes({8, 8}, Qt::red));
        writeFile(path(QStringLiteral("a.png")), pngBytes({8, 8}, Qt::green));
        writeFile(path(QStringLiteral("big.png")), pngBytes({400, 400}, Qt::blue));
        QDir(m_dir.path()).mkdir(QStringLiteral("sub"));
        writeFile(path(QStringLiteral("sub/x.png")), pngBytes({4, 4}, Qt::yellow));
    }

    void resolvedBackgroundValue()
    {
        const CSSVariables variables = {{QStringLiteral("--hero"), QStringLiteral("url(a.png)")}};
        QCOMPARE(BackgroundImage::resolvedBackgroundValue(
                     *rulesetOf(QStringLiteral("background: red; background-image: var(--hero)")),
                     variables),
                 QStringLiteral("url(a.png)"));
        QCOMPARE(BackgroundImage::resolvedBackgroundValue(
                     *rulesetOf(QStringLiteral("background: var(--hero)")), variables),
                 QStringLiteral("url(a.png)"));
        QCOMPARE(BackgroundImage::resolvedBackgroundValue(*rulesetOf(QStringLiteral("color: red")),
                                                          variables),
                 std::nullopt);
    }

    void urlArgument_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<QString>>("expected");
        const std::optional<QString> none;
        QTest::newRow("plain") << "url(x.png)" << std::optional(QStringLiteral("x.png"));
        QTest::newRow("inner parenthesis counted")
            << "url(\"a(1).png\")" << std::optional(QStringLiteral("a(1).png"));
        QTest::newRow("blanks trimmed")
            << "url(  x.png\t)" << std::optional(QStringLiteral("x.png"));
        QTest::newRow("single quotes") << "url('x.png')" << std::optional(QStringLiteral("x.png"));
        QTest::newRow("only one pair removed")
            << "url(\"'x.png'\")" << std::optional(QStringLiteral("'x.png'"));
        QTest::newRow("no trimming inside quotes")
            << "url(\" x.png \")" << std::optional(QStringLiteral(" x.png "));
        QTest::newRow("mismatched quotes kept")
            << "url(\"x.png')" << std::optional(QStringLiteral("\"x.png'"));
        QTest::newRow("no closing parenthesis") << "url(x.png" << none;
        QTest::newRow("upper case") << "URL(x.png)" << none;
        QTest::newRow("first url wins")
            << "url(a.png), url(b.png)" << std::optional(QStringLiteral("a.png"));
    }

    void urlArgument()
    {
        QFETCH(QString, text);
        QFETCH(std::optional<QString>, expected);
        QCOMPARE(BackgroundImage::urlArgument(text), expected);
    }

    void relativeImageWithParenthesisInName()
    {
        const auto image = BackgroundImage::loadImageFromCSS(u"url(\"a(1).png\")", m_sheet, frame);
        QVERIFY(image);
        QCOMPARE(centreOf(*image), QColor(Qt::red));
    }

    void relativeImageInSubfolder()
    {
        const auto image = BackgroundImage::loadImageFromCSS(u"url(sub/x.png)", m_sheet, frame);
        QVERIFY(image);
        QCOMPARE(centreOf(*image), QColor(Qt::yellow));
    }

    void absoluteImage()
    {
        // The stylesheet lives elsewhere: only the absolute path can find it.
        QTemporaryDir other;
        const QString text = QStringLiteral("url('%1')").arg(path(QStringLiteral("a.png")));
        const auto image =
            BackgroundImage::loadImageFromCSS(text, other.filePath(QStringLiteral("s.css")), frame);
        QVERIFY(image);
        QCOMPARE(centreOf(*image), QColor(Qt::green));
    }

    void dataUrl()
    {
        const QString text = QStringLiteral("url(data:image/png;base64,%1)")
                                 .arg(QString::fromLatin1(pngBytes({6, 6}, Qt::cyan).toBase64()));
        const auto image = BackgroundImage::loadImageFromCSS(text, QString(), frame);
        QVERIFY(image);
        QCOMPARE(centreOf(*image), QColor(Qt::cyan));
    }

    void dataUrlFailures_data()
    {
        QTest::addColumn<QString>("text");
        const QString base64 = QString::fromLatin1(pngBytes({6, 6}, Qt::cyan).toBase64());
        QTest::newRow("line break in the data")
            << QStringLiteral("url(data:image/png;base64,%1\n%2)")
                   .arg(base64.left(8), base64.mid(8));
        QTest::newRow("blank in the data") << QStringLiteral("url(data:image/png;base64,%1 %2)")
                                                  .arg(base64.left(8), base64.mid(8));
        QTest::newRow("no comma") << QStringLiteral("url(data:image/png;base64)");
        QTest::newRow("not base64") << QStringLiteral("url(data:image/svg+xml,<svg></svg>)");
        QTest::newRow("missing padding")
            << QStringLiteral("url(data:image/png;base64,%1)").arg(base64.chopped(1));
        QTest::newRow("not an image")
            << QStringLiteral("url(data:text/plain;base64,%1)")
                   .arg(QString::fromLatin1(QByteArray("hello world!").toBase64()));
    }

    void dataUrlFailures()
    {
        QFETCH(QString, text);
        QCOMPARE(BackgroundImage::loadImageFromCSS(text, m_sheet, frame), std::nullopt);
    }

    void withoutFilePath()
    {
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(a.png)", QString(), frame), std::nullopt);
        const QString absolute = QStringLiteral("url(%1)").arg(path(QStringLiteral("a.png")));
        QCOMPARE(BackgroundImage::loadImageFromCSS(absolute, QString(), frame), std::nullopt);
    }

    void schemesArePathsUnderTheFolder()
    {
        const QString fileUrl = QStringLiteral("url(file://%1)").arg(path(QStringLiteral("a.png")));
        QCOMPARE(BackgroundImage::loadImageFromCSS(fileUrl, m_sheet, frame), std::nullopt);
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(a%2E.png)", m_sheet, frame), std::nullopt);
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(missing.png)", m_sheet, frame),
                 std::nullopt);
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(sub)", m_sheet, frame), std::nullopt);
    }

    void largeImageIsDecodedNoLargerThanTheFrame()
    {
        const auto image = BackgroundImage::loadImageFromCSS(u"url(big.png)", m_sheet, frame);
        QVERIFY(image);
        QCOMPARE(image->size(), QSize(56, 56));
        QCOMPARE(centreOf(*image), QColor(Qt::blue));
        // A small image keeps its own size; painting scales it.
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(a.png)", m_sheet, frame)->size(),
                 QSize(8, 8));
    }

    void hugeDeclaredImageIsNotDecoded()
    {
        writeFile(path(QStringLiteral("huge.png")), greyPng(30000, 30000, false));
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(huge.png)", m_sheet, frame), std::nullopt);
        const QString data = QStringLiteral("url(data:image/png;base64,%1)")
                                 .arg(QString::fromLatin1(greyPng(30000, 30000, false).toBase64()));
        QCOMPARE(BackgroundImage::loadImageFromCSS(data, m_sheet, frame), std::nullopt);
    }

    void imageAboveThePixelLimitIsRefused()
    {
        // Small enough for the decoder's own allocation limit, too large for a
        // thumbnail; the same image at a modest size loads.
        writeFile(path(QStringLiteral("wide.png")), greyPng(6000, 6000, true));
        writeFile(path(QStringLiteral("modest.png")), greyPng(300, 200, true));
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(wide.png)", m_sheet, frame), std::nullopt);
        const auto modest = BackgroundImage::loadImageFromCSS(u"url(modest.png)", m_sheet, frame);
        QVERIFY(modest);
        QCOMPARE(centreOf(*modest), QColor(Qt::black));
    }

    void pixelLimitIsInclusive()
    {
        writeFile(path(QStringLiteral("at-limit.png")), greyPng(400, 400, true));
        writeFile(path(QStringLiteral("one-row-more.png")), greyPng(400, 401, true));
        QCOMPARE(qint64(400 * 400), BackgroundImage::maxDecodedPixels);
        const auto atLimit =
            BackgroundImage::loadImageFromCSS(u"url(at-limit.png)", m_sheet, frame);
        QVERIFY(atLimit);
        QCOMPARE(atLimit->size(), QSize(56, 56));
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(one-row-more.png)", m_sheet, frame),
                 std::nullopt);
    }

    void jpegScalesWhileDecodingAndHasTheFullHdLimit()
    {
        QImage image(1920, 1080, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        QVERIFY(image.save(path(QStringLiteral("full-hd.jpg")), "JPEG"));
        QVERIFY(image.save(path(QStringLiteral("full-hd.png")), "PNG"));
        QVERIFY(QImage(1920, 1081, QImage::Format_RGB32)
                    .save(path(QStringLiteral("one-row-more.jpg")), "JPEG"));
        const auto fullHd = BackgroundImage::loadImageFromCSS(u"url(full-hd.jpg)", m_sheet, frame);
        QVERIFY(fullHd);
        QCOMPARE(fullHd->size(), QSize(80, 45));
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(one-row-more.jpg)", m_sheet, frame),
                 std::nullopt);
        // The same picture in a format decoded whole is refused.
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(full-hd.png)", m_sheet, frame),
                 std::nullopt);
    }

    void fileAboveTheSizeLimitIsNotRead()
    {
        const QString name = path(QStringLiteral("padded.png"));
        writeFile(name, pngBytes({8, 8}, Qt::red));
        QFile file(name);
        QVERIFY(file.resize(BackgroundImage::maxFileBytes + 1));
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(padded.png)", m_sheet, frame),
                 std::nullopt);
        QVERIFY(file.resize(BackgroundImage::maxFileBytes - 1));
        QVERIFY(BackgroundImage::loadImageFromCSS(u"url(padded.png)", m_sheet, frame));
    }

    void pipeIsNotOpened()
    {
        const QString fifo = path(QStringLiteral("pipe.png"));
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QCOMPARE(BackgroundImage::loadImageFromCSS(u"url(pipe.png)", m_sheet, frame), std::nullopt);
    }

    void gradientColors_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QList<Color>>("expected");
        const QList<Color> gray = {Palette::gray};
        QTest::newRow("angle and stop dropped")
            << "linear-gradient(45deg, red, blue 40%)" << QList{Palette::red, Palette::blue};
        // The colour reading takes the whole third part as rgb() with an
        // opacity that does not read, which counts as opaque black.
        QTest::newRow("direction, stops and rgba with a stop")
            << "linear-gradient(to right, #fff 10%, rgba(0, 0, 0, 0.5) 90%)"
            << QList{Palette::white, Palette::black};
        QTest::newRow("rgba kept whole at depth 0") << "linear-gradient(rgba(0, 0, 0, 0.5), red)"
                                                    << QList{Color{0, 0, 0, 0.5}, Palette::red};
        QTest::newRow("radial") << "radial-gradient(circle, red, blue)"
                                << QList{Palette::red, Palette::blue};
        QTest::newRow("conic") << "conic-gradient(from 90deg, yellow, cyan)"
                               << QList{Palette::yellow, Palette::cyan};
        QTest::newRow("prefix case-insensitive")
            << "LINEAR-GRADIENT(red, blue)" << QList{Palette::red, Palette::blue};
        QTest::newRow("no valid colour") << "linear-gradient(to right, nope, 10%)" << gray;
        QTest::newRow("no gradient") << "url(x.png)" << gray;
        QTest::newRow("unclosed linear falls through to radial")
            << "linear-gradient(red, radial-gradient(blue)" << QList{Palette::blue};
        QTest::newRow("empty arguments") << "linear-gradient()" << gray;
        QTest::newRow("empty middle part kept, gives nothing")
            << "linear-gradient(red,,blue)" << QList{Palette::red, Palette::blue};
        QTest::newRow("first of several gradients")
            << "linear-gradient(red, red), radial-gradient(blue, blue)"
            << QList{Palette::red, Palette::red};
    }

    void gradientColors()
    {
        QFETCH(QString, value);
        QFETCH(QList<Color>, expected);
        QCOMPARE(BackgroundImage::gradientColors(value), expected);
    }

    void thumbnailKind_data()
    {
        QTest::addColumn<QString>("declarations");
        QTest::addColumn<int>("kind");
        QTest::newRow("image") << "background: url(a.png)" << int(Kind::image);
        QTest::newRow("image by variable") << "background-image: var(--hero)" << int(Kind::image);
        QTest::newRow("unclosed url") << "background: url(x.png" << int(Kind::photoMark);
        QTest::newRow("missing file") << "background: url(none.png)" << int(Kind::photoMark);
        QTest::newRow("url before gradient")
            << "background: linear-gradient(red, blue), url(none.png)" << int(Kind::photoMark);
        QTest::newRow("linear") << "background: linear-gradient(red, blue)"
                                << int(Kind::linearGradient);
        QTest::newRow("radial") << "background: radial-gradient(circle, red, blue)"
                                << int(Kind::radialGradient);
        QTest::newRow("radial by lowercased text")
            << "background-image: Radial-gradient(red, blue)" << int(Kind::radialGradient);
        QTest::newRow("conic draws linear")
            << "background: conic-gradient(red, blue)" << int(Kind::linearGradient);
        QTest::newRow("upper-case URL") << "background-image: URL(a.png)" << int(Kind::none);
        QTest::newRow("none") << "background-image: none" << int(Kind::none);
        QTest::newRow("nothing declared") << "color: red" << int(Kind::none);
    }

    void thumbnailKind()
    {
        QFETCH(QString, declarations);
        QFETCH(int, kind);
        const CSSVariables variables = {{QStringLiteral("--hero"), QStringLiteral("url(a.png)")}};
        const BackgroundThumbnail thumbnail = BackgroundThumbnail::of(
            BackgroundImage::resolvedBackgroundValue(*rulesetOf(declarations), variables), m_sheet,
            frame);
        QCOMPARE(int(thumbnail.kind), kind);
        QCOMPARE(thumbnail.image.isNull(), kind != int(Kind::image));
    }

    void thumbnailWithoutFilePath()
    {
        QCOMPARE(BackgroundThumbnail::of(QStringLiteral("url(a.png)"), QString(), frame).kind,
                 Kind::photoMark);
        const QString data = QStringLiteral("url(data:image/png;base64,%1)")
                                 .arg(QString::fromLatin1(pngBytes({6, 6}, Qt::cyan).toBase64()));
        QCOMPARE(BackgroundThumbnail::of(data, QString(), frame).kind, Kind::image);
    }
};

QTEST_GUILESS_MAIN(TestBackgroundThumbnail)
#include "tst_backgroundthumbnail.moc"
