// ombrel-bench-inspector: times typing into the inspector of a window, drawn
// offscreen with the real canvas and inspector, on a generated stylesheet of
// 10,000 rulesets with 1,000 of them selected, all sharing the edited
// property.
//
// Each keystroke is timed from the key event, through the change mark the
// file posts and the inspector's refresh, to the next paint of both the
// canvas and the field being typed in; each change of the shared colour
// chooser, opened from the row's swatch, likewise to the paint of the canvas
// and the swatch. It prints the median, the 90th percentile and the worst of
// each, and the same for the steps of one keystroke on their own (the live
// update over the selection, the inspector's reading of it, the file's
// change mark).

#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/NodeListView.h"
#include "colour/widgets/CSSColorPicker.h"
#include "colour/widgets/ColorPickerPopover.h"
#include "colour/widgets/ColorSwatchView.h"
#include "colour/widgets/SharedColorDialog.h"
#include "inspector/widgets/PropertyEditorView.h"
#include "inspector/widgets/PropertyListView.h"
#include "inspector/widgets/PropertyRowView.h"
#include "model/CSSParser.h"
#include "shell/widgets/MainDetailView.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Ombrel;

namespace {

constexpr int rulesetCount = 10'000;
constexpr int selectedCount = 1'000;
constexpr int keystrokes = 300;
constexpr int colourChanges = 100;

QString generatedStylesheet()
{
    QRandomGenerator random(20261123);
    QString css = QStringLiteral(":root {\n");
    for (int i = 0; i < 40; ++i)
        css += QStringLiteral("  --tone-%1: #%2;\n")
                   .arg(i)
                   .arg(random.bounded(0xffffff), 6, 16, QLatin1Char('0'));
    css += QStringLiteral("  --space: 8px;\n}\n\n");
    for (int i = 0; i < rulesetCount; ++i) {
        css += QStringLiteral(".item-%1 {\n").arg(i);
        css += QStringLiteral("  color: #%1;\n")
                   .arg(random.bounded(0xffffff), 6, 16, QLatin1Char('0'));
        css += QStringLiteral("  background-color: var(--tone-%1);\n").arg(random.bounded(40));
        css += QStringLiteral("  border-radius: %1px;\n").arg(random.bounded(16));
        css += QStringLiteral("  padding: %1px %2px;\n  margin: 0 auto;\n")
                   .arg(random.bounded(24))
                   .arg(random.bounded(24));
        css += QStringLiteral("}\n\n");
    }
    return css;
}

struct Figures
{
    std::vector<double> values;

    void add(double milliseconds) { values.push_back(milliseconds); }
    double at(double fraction) const
    {
        std::vector<double> sorted = values;
        std::sort(sorted.begin(), sorted.end());
        return sorted.empty()
                   ? 0
                   : sorted[std::min(sorted.size() - 1, size_t(fraction * double(sorted.size())))];
    }
    void print(const char *label) const
    {
        std::printf("  %-34s p50 %6.2f ms   p90 %6.2f ms   worst %6.2f ms\n", label, at(0.5),
                    at(0.9), *std::max_element(values.begin(), values.end()));
    }
};

// Counts the paints of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) : QObject(widget) { widget->installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

void sendKey(QWidget *widget, int key, const QString &text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &release);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir scratch;
    // Opening a folder remembers it for the next launch: keep that here.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, scratch.path());

    const QString folder = scratch.filePath(QStringLiteral("generated"));
    QDir().mkpath(folder);
    QFile file(folder + QStringLiteral("/generated.css"));
    if (!file.open(QIODevice::WriteOnly) || file.write(generatedStylesheet().toUtf8()) < 0)
        return 1;
    file.close();

    Workspace workspace;
    UndoManager undo;
    workspace.openFolder(folder);
    MainDetailView detail(&workspace, &undo);
    detail.resize(1200, 800);
    detail.show();
    // The swatch opens its popover only in the active window.
    detail.activateWindow();
    QApplication::setActiveWindow(&detail);
    QApplication::processEvents();

    // Every tenth ruleset, the first of them primary.
    const CSSRulesetList &rulesets = workspace.selectedFile()->rulesets();
    QSet<QUuid> ids;
    for (int i = 0; i < selectedCount; ++i)
        ids.insert(rulesets[1 + 10 * i]->id());
    workspace.setSelectedRulesetIDs(ids);
    workspace.setSelectedRuleset(rulesets[1]);
    QApplication::processEvents();
    PropertyEditorView *inspector = detail.propertyEditor();
    auto *canvas = qobject_cast<CanvasView *>(detail.contentColumn());
    if (!inspector || !canvas || !inspector->controller().isMultiSelect())
        return 1;

    PropertyRowView *row = inspector->list()->rowAt(0);
    if (!row || row->property().name != QStringLiteral("color"))
        return 1;
    row->startEdit(PropertyField::Value);
    QElapsedTimer wait;
    wait.start();
    while (!(row->valueField() && row->valueField()->hasFocus()) && wait.elapsed() < 2000)
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    AutocompleteField *field = row->valueField();
    if (!field || !field->hasFocus())
        return 1;

    auto *canvasPaints = new PaintCounter(canvas->nodeList()->viewport());
    auto *fieldPaints = new PaintCounter(field);
    const CSSFilePtr stylesheet = workspace.selectedFile();

    // A colour typed and taken back: "#12345" then a sixth digit and its
    // removal, over and over.
    QList<std::pair<int, QString>> keys;
    for (const QChar c : QStringLiteral("#12345"))
        keys.append({c.unicode(), QString(c)});
    while (keys.size() < keystrokes) {
        keys.append({Qt::Key_6, QStringLiteral("6")});
        keys.append({Qt::Key_Backspace, QString()});
    }

    Figures total;
    for (const auto &[key, text] : std::as_const(keys)) {
        const int canvasBefore = canvasPaints->paints;
        const int fieldBefore = fieldPaints->paints;
        QElapsedTimer timer;
        timer.start();
        sendKey(field, key, text);
        // Posted after the key was handled, so after the file's change mark.
        bool marked = false;
        QMetaObject::invokeMethod(
            &app, [&marked] { marked = true; }, Qt::QueuedConnection);
        while (
            !(marked && canvasPaints->paints > canvasBefore && fieldPaints->paints > fieldBefore) &&
            timer.elapsed() < 5000)
            QApplication::processEvents();
        total.add(double(timer.nsecsElapsed()) / 1e6);
    }

    // The colour chooser, opened from the swatch's popover as a user does.
    CSSColorPicker *swatch = row->swatchPicker();
    if (!swatch)
        return 1;
    swatch->openPopover();
    ColorPickerPopover *popover = swatch->popover();
    if (!popover)
        return 1;
    popover->panelButton()->click();
    QApplication::processEvents();
    QColorDialog *chooser = sharedColorDialog();
    if (!chooser->isVisible())
        return 1;
    auto *swatchPaints = new PaintCounter(swatch->swatch());
    Figures colour;
    for (int i = 0; i < colourChanges; ++i) {
        const int canvasBefore = canvasPaints->paints;
        const int swatchBefore = swatchPaints->paints;
        QElapsedTimer timer;
        timer.start();
        chooser->setCurrentColor(QColor::fromHsv((i * 37) % 360, 200, 200));
        bool marked = false;
        QMetaObject::invokeMethod(
            &app, [&marked] { marked = true; }, Qt::QueuedConnection);
        while (!(marked && canvasPaints->paints > canvasBefore &&
                 swatchPaints->paints > swatchBefore) &&
               timer.elapsed() < 5000)
            QApplication::processEvents();
        colour.add(double(timer.nsecsElapsed()) / 1e6);
    }
    chooser->close();
    QApplication::processEvents();

    // The steps of a keystroke on their own, on the same selection.
    PropertyEditorController &controller = inspector->controller();
    const QUuid id = row->property().id;
    Figures live;
    Figures reading;
    Figures mark;
    for (int i = 0; i < 100; ++i) {
        const QString value = i % 2 ? QStringLiteral("#123456") : QStringLiteral("#12345");
        QElapsedTimer timer;
        timer.start();
        controller.liveUpdateProperty(id, QStringLiteral("color"), value);
        live.add(double(timer.nsecsElapsed()) / 1e6);
        timer.restart();
        const SelectionReading read = controller.reading();
        const auto variables = stylesheet->variables();
        reading.add(double(timer.nsecsElapsed()) / 1e6);
        timer.restart();
        const bool dirty = stylesheet->generateCSS() != stylesheet->originalContent();
        mark.add(double(timer.nsecsElapsed()) / 1e6);
        if (read.properties.isEmpty() || variables.isEmpty() || !dirty)
            return 1;
        QApplication::processEvents();
    }

    std::printf("inspector: %d rulesets, %d selected sharing the edited property\n", rulesetCount,
                selectedCount);
    total.print("keystroke to painted canvas+field");
    colour.print("chooser change to canvas+swatch");
    live.print("live update over the selection");
    reading.print("reading + file variables");
    mark.print("change mark (generate, compare)");
    std::fflush(stdout);
    return 0;
}
