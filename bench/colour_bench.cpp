// ombrel-bench-colour: times the colour tools offscreen, in a window with a
// row of swatches.
//
// - press to popover: from a press and release on a swatch to the end of the
//   popover's first paint. The first open of a process (which reads the
//   colour lists and sets up the popover's fonts and symbols) is measured in
//   fresh processes and its median printed with each run; later opens are
//   pooled from those processes.
// - chooser change: from setting a colour on the shared colour dialog, as
//   its controls do, to the picker's onLiveColorChange call.
//
//   ombrel-bench-colour          the report
//   ombrel-bench-colour --once   one process's figures, as one line

#include "colour/widgets/CSSColorPicker.h"
#include "colour/widgets/ColorPickerPopover.h"
#include "colour/widgets/SharedColorDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

constexpr int freshProcesses = 7;
constexpr int laterOpens = 30;
constexpr int chooserChanges = 100;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double worst(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// Notes when a popover of the colour picker is painted.
class PaintWatch : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<ColorPickerPopover *>(watched))
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

void click(QWidget *widget)
{
    const QPointF pos = QRectF(widget->rect()).center();
    const QPointF global = widget->mapToGlobal(pos);
    QMouseEvent press(QEvent::MouseButtonPress, pos, global, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, pos, global, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(widget, &release);
}

// Milliseconds from a press on the picker's swatch to its popover painted.
double openPopover(CSSColorPicker *picker, PaintWatch &watch)
{
    watch.painted = false;
    QElapsedTimer timer;
    timer.start();
    click(picker->swatchButton());
    while (!watch.painted)
        QCoreApplication::processEvents();
    return double(timer.nsecsElapsed()) / 1e6;
}

void closePopover(CSSColorPicker *picker)
{
    picker->popover()->close();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int once()
{
    QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());

    QWidget window;
    auto *row = new QHBoxLayout(&window);
    QElapsedTimer changeTimer;
    std::vector<double> changes;
    const auto live = [&changeTimer, &changes](const QString &) {
        changes.push_back(double(changeTimer.nsecsElapsed()) / 1e6);
    };
    std::vector<CSSColorPicker *> pickers;
    for (const char *value : {"#3b82f6", "red", "var(--accent)", "#00000080"}) {
        pickers.push_back(new CSSColorPicker(QString::fromLatin1(value), live, {}, &window));
        row->addWidget(pickers.back());
    }
    window.resize(400, 300);
    window.show();
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    while (!window.isActiveWindow() || !window.windowHandle()->isExposed())
        QCoreApplication::processEvents();

    PaintWatch watch;
    qApp->installEventFilter(&watch);
    const double first = openPopover(pickers[0], watch);
    closePopover(pickers[0]);
    std::vector<double> later;
    for (int i = 0; i < laterOpens; ++i) {
        CSSColorPicker *picker = pickers[size_t(i) % pickers.size()];
        later.push_back(openPopover(picker, watch));
        closePopover(picker);
    }

    openPopover(pickers[0], watch);
    click(pickers[0]->popover()->panelButton());
    QColorDialog *dialog = sharedColorDialog();
    changes.clear();
    for (int i = 0; i < chooserChanges; ++i) {
        const QColor colour = QColor::fromHsv((i * 37) % 360, 200, 100 + i % 150);
        changeTimer.start();
        dialog->setCurrentColor(colour);
    }
    dialog->close();

    std::printf("once %.3f", first);
    for (double ms : later)
        std::printf(" %.3f", ms);
    std::printf(" |");
    for (double ms : changes)
        std::printf(" %.3f", ms);
    std::printf("\n");
    return changes.size() == size_t(chooserChanges) ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 2 && qstrcmp(argv[1], "--once") == 0) {
        QApplication app(argc, argv);
        return once();
    }
    QCoreApplication app(argc, argv);
    std::vector<double> firsts;
    std::vector<double> later;
    std::vector<double> changes;
    for (int i = 0; i < freshProcesses; ++i) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--once")});
        if (!child.waitForFinished(-1) || child.exitCode() != 0) {
            std::fprintf(stderr, "a run failed: %s\n", child.readAllStandardError().constData());
            return 1;
        }
        const QList<QByteArray> halves = child.readAllStandardOutput().trimmed().split('|');
        const QList<QByteArray> opens = halves.value(0).trimmed().split(' ');
        if (halves.size() != 2 || opens.size() != laterOpens + 2) {
            std::fprintf(stderr, "a run printed no figures\n");
            return 1;
        }
        firsts.push_back(opens[1].toDouble());
        for (qsizetype j = 2; j < opens.size(); ++j)
            later.push_back(opens[j].toDouble());
        for (const QByteArray &field : halves[1].trimmed().split(' '))
            changes.push_back(field.toDouble());
    }
    std::printf("press to popover, first of the process  %7.2f ms median of %d fresh processes "
                "(each:",
                median(firsts), freshProcesses);
    for (double ms : firsts)
        std::printf(" %.1f", ms);
    std::printf(")\n");
    std::printf("press to popover, later opens           %7.2f ms median, %.2f ms worst of %zu\n",
                median(later), worst(later), later.size());
    std::printf("chooser change to onLiveColorChange     %7.3f ms median, %.3f ms worst of %zu\n",
                median(changes), worst(changes), changes.size());
    return 0;
}
