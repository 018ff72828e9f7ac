// ombrel-bench-card [CASE...]: paints ruleset cards with the canvas's delegate into an
// image, offscreen, and prints one JSON line per kind of card with the median
// and the best time of one paint in microseconds, then one line for a
// viewport of fifteen mixed cards painted together. Images are decoded again
// at every paint, as the cards do; the files live in a temporary folder.

#include "canvas/NodeRoles.h"
#include "canvas/widgets/NodeDelegate.h"
#include "model/CSSParser.h"
#include "model/CSSRuleset.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QRandomGenerator>
#include <QStandardItemModel>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

constexpr int cardWidth = 480;
constexpr int rounds = 400;

struct Case
{
    const char *name;
    QString css;
    bool selected = false;
};

QImage solidImage(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// A gradient with noise, which compresses and decodes like a photograph
// rather than like a flat colour.
QImage photoImage(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator noise(42);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int grain = int(noise.bounded(40));
            line[x] = qRgb((x * 255 / size.width() + grain) & 255,
                           (y * 255 / size.height() + grain) & 255, (128 + grain) & 255);
        }
    }
    return image;
}

// Median and best of the per-paint times of rounds runs of paint().
template<typename Paint> std::pair<double, double> microseconds(int paintsPerRound, Paint paint)
{
    std::vector<double> times;
    paint();
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        paint();
        times.push_back(double(timer.nsecsElapsed()) / 1e3 / paintsPerRound);
    }
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times.front()};
}

void printLine(const char *name, int cards, std::pair<double, double> time)
{
    const QJsonObject line{{QStringLiteral("case"), QLatin1String(name)},
                           {QStringLiteral("cards"), cards},
                           {QStringLiteral("medianMicroseconds"), time.first},
                           {QStringLiteral("bestMicroseconds"), time.second}};
    std::printf("%s\n", QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    QTemporaryDir dir;
    solidImage({64, 64}, Qt::darkCyan).save(dir.filePath(QStringLiteral("small.png")));
    solidImage({1920, 1080}, Qt::darkRed).save(dir.filePath(QStringLiteral("hd.png")));
    solidImage({1920, 1080}, Qt::darkGreen).save(dir.filePath(QStringLiteral("hd.jpg")));
    solidImage({3840, 2160}, Qt::darkBlue).save(dir.filePath(QStringLiteral("uhd.png")));
    photoImage({400, 400}).save(dir.filePath(QStringLiteral("photo-400.png")));
    photoImage({1920, 1080}).save(dir.filePath(QStringLiteral("photo-hd.png")));
    photoImage({1920, 1080}).save(dir.filePath(QStringLiteral("photo-hd.jpg")));

    const std::vector<Case> cases = {
        {"plain", QStringLiteral(".btn { padding: 4px }")},
        {"styled",
         QStringLiteral(".btn:hover > a { background: #3b82f6; color: #fff; border: 1px dashed "
                        "red; border-radius: 8px; font-weight: bold }")},
        {"selected", QStringLiteral("#nav li a { background: #fff; border: none }"), true},
        {"dot", QStringLiteral("& .x { color: #fff }")},
        {"linear-gradient",
         QStringLiteral(".hero { background: linear-gradient(45deg, #ff7e5f, #feb47b 40%); "
                        "border-radius: 12px }")},
        {"radial-gradient", QStringLiteral("img.logo { background: radial-gradient(circle, "
                                           "yellow, purple) }")},
        {"image-64px",
         QStringLiteral(".a { background: #fff url(small.png); border-radius: 8px }")},
        {"image-missing", QStringLiteral(".a { background-image: url(missing.png) }")},
        // JPEG decodes at an eighth of its size, and a Full HD one shows.
        {"image-1920x1080-jpeg", QStringLiteral(".a { background-image: url(hd.jpg) }")},
        {"photo-1920x1080-jpeg", QStringLiteral(".a { background-image: url(photo-hd.jpg) }")},
        // PNG decodes whole: at the decoding limit, then above it, refused
        // from the header with the "photo" mark.
        {"photo-400x400-png", QStringLiteral(".a { background-image: url(photo-400.png) }")},
        {"image-1920x1080-png", QStringLiteral(".a { background-image: url(hd.png) }")},
        {"photo-1920x1080-png", QStringLiteral(".a { background-image: url(photo-hd.png) }")},
        {"image-3840x2160-png", QStringLiteral(".a { background-image: url(uhd.png) }")},
    };

    CSSRulesetList rulesets;
    QStandardItemModel model;
    for (const Case &card : cases) {
        const CSSRulesetPtr ruleset = CSSParser::parse(card.css).first();
        rulesets.append(ruleset);
        auto *item = new QStandardItem;
        item->setData(QVariant::fromValue<QObject *>(ruleset.get()), NodeRoles::Ruleset);
        item->setData(card.selected, NodeRoles::Selected);
        item->setData(false, NodeRoles::EditingSelector);
        model.appendRow(item);
    }

    NodeDelegate delegate;
    delegate.setFilePath(dir.filePath(QStringLiteral("style.css")));
    const int height = delegate.cardHeight();
    QImage canvas(cardWidth, height, QImage::Format_ARGB32_Premultiplied);
    QStyleOptionViewItem option;
    option.palette = app.palette();
    option.rect = canvas.rect();

    // Cases named on the command line, or all of them.
    const QStringList wanted = app.arguments().mid(1);
    for (int row = 0; row < int(cases.size()); ++row) {
        if (!wanted.isEmpty() && !wanted.contains(QLatin1String(cases[row].name)))
            continue;
        const QModelIndex index = model.index(row, 0);
        printLine(cases[row].name, 1, microseconds(1, [&] {
                      QPainter painter(&canvas);
                      delegate.paint(&painter, option, index);
                  }));
    }

    // A viewport as the canvas shows it: fifteen cards of the common kinds,
    // two with a gradient and one with a small image.
    if (!wanted.isEmpty() && !wanted.contains(QLatin1String("viewport")))
        return 0;
    const std::vector<int> viewportRows = {0, 1, 2, 3, 0, 1, 4, 0, 3, 1, 5, 0, 6, 1, 0};
    QImage viewport(cardWidth, height * int(viewportRows.size()),
                    QImage::Format_ARGB32_Premultiplied);
    printLine("viewport", int(viewportRows.size()), microseconds(1, [&] {
                  QPainter painter(&viewport);
                  painter.fillRect(viewport.rect(), app.palette().window());
                  for (int slot = 0; slot < int(viewportRows.size()); ++slot) {
                      QStyleOptionViewItem cardOption = option;
                      cardOption.rect = QRect(0, slot * height, cardWidth, height);
                      delegate.paint(&painter, cardOption, model.index(viewportRows[slot], 0));
                  }
              }));
    return 0;
}
