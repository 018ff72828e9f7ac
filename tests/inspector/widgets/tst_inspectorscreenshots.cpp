// Writes pictures of the inspector for review to the build folder's
// screenshots/ directory, in a light and a dark palette: one ruleset and a
// multi-selection, a row with its suggestions open, the add row, the
// variable picker and a row being dragged. The style, font and pixel ratio
// are pinned so that runs compare.

#include "InspectorViewTestSupport.h"
#include "ScreenshotSupport.h"

#include "inspector/widgets/AddPropertyRow.h"
#include "inspector/widgets/VariablePickerPopover.h"
#include "workspace/AppPreferences.h"

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QToolButton>

using namespace Ombrel;
using InspectorTest::InspectorWindow;
using InspectorTest::waitForFocus;

namespace {

const QString sampleCss = QStringLiteral(
    ":root { --accent: #3b82f6; --sand: #fef3c7; --radius: 8px; }\n"
    ".btn { background: var(--accent); color: #ffffff; border-radius: 8px; display: flex; "
    "font-weight: 600; }\n"
    ".card { background: #fef3c7; color: #1f2937; border-radius: 12px; display: grid; }\n"
    ".hero { background: linear-gradient(135deg, #6366f1, #ec4899); color: white; "
    "display: block; }\n");

} // namespace

class TestInspectorScreenshots : public QObject
{
    Q_OBJECT

    QDir m_folder;

    // The window with the windows of its own that stand over it, each drawn
    // where it stands on the screen.
    QImage save(QWidget *window, const QString &name, const QList<QWidget *> &over = {})
    {
        QApplication::processEvents();
        const QPoint origin = window->mapToGlobal(QPoint(0, 0));
        QRect bounds(QPoint(0, 0), window->size());
        for (const QWidget *popup : over)
            bounds = bounds.united(popup->geometry().translated(-origin));
        QImage image(bounds.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.drawPixmap(-bounds.topLeft(), window->grab());
        for (QWidget *popup : over)
            painter.drawPixmap(popup->geometry().topLeft() - origin - bounds.topLeft(),
                               popup->grab());
        painter.end();
        [&] { QVERIFY(image.save(m_folder.filePath(name + QStringLiteral(".png")))); }();
        return image;
    }

    static QString suffix(bool dark)
    {
        return dark ? QStringLiteral("-dark") : QStringLiteral("-light");
    }

private Q_SLOTS:
    void initTestCase()
    {
        Screenshots::pinLook();
        AppPreferences::shared().setShowColorSwatches(true);
        QVERIFY(QDir().mkpath(QStringLiteral(OMBREL_SCREENSHOT_DIR)));
        m_folder = QDir(QStringLiteral(OMBREL_SCREENSHOT_DIR));
    }

    void init()
    {
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
    }

    void singleAndMultiSelection_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void singleAndMultiSelection()
    {
        QFETCH(bool, dark);
        InspectorWindow w(sampleCss, QSize(340, 420));
        w.window.setPalette(Screenshots::palette(dark));
        w.select({".btn"});
        QVERIFY(w.show());
        QTRY_COMPARE(w.list()->rowCount(), 5);
        const QImage single = save(&w.window, QStringLiteral("inspector-single") + suffix(dark));
        w.select({".btn", ".card", ".hero"});
        QTRY_COMPARE(w.view->titleLabel()->text(), QStringLiteral("3 rulesets selected"));
        const QImage multi = save(&w.window, QStringLiteral("inspector-multi") + suffix(dark));
        QVERIFY(single != multi);
    }

    void aRowWithItsSuggestionsOpen_data() { singleAndMultiSelection_data(); }
    void aRowWithItsSuggestionsOpen()
    {
        QFETCH(bool, dark);
        InspectorWindow w(sampleCss, QSize(340, 420));
        w.window.setPalette(Screenshots::palette(dark));
        w.select({".btn"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(3);
        QCOMPARE(row->property().name, QStringLiteral("display"));
        InspectorWindow::clickCell(row, PropertyField::Value);
        QVERIFY(waitForFocus([row] { return row->valueField(); }));
        QTest::keyClick(row->valueField(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(row->valueField(), QStringLiteral("in"));
        QTest::keyClick(row->valueField(), Qt::Key_Down);
        QTRY_VERIFY(row->valueField()->menuWindow()->isVisible());
        save(&w.window, QStringLiteral("inspector-menu") + suffix(dark),
             {row->valueField()->menuWindow()});
    }

    void theAddRow_data() { singleAndMultiSelection_data(); }
    void theAddRow()
    {
        QFETCH(bool, dark);
        InspectorWindow w(sampleCss, QSize(340, 420));
        w.window.setPalette(Screenshots::palette(dark));
        w.select({".card"});
        QVERIFY(w.show());
        QTest::mouseClick(w.view->addButton(), Qt::LeftButton);
        QTRY_VERIFY(w.list()->addRow());
        AddPropertyRow *add = w.list()->addRow();
        QVERIFY(waitForFocus([add] { return add->nameField(); }));
        QTest::keyClicks(add->nameField(), QStringLiteral("padding"));
        QTest::keyClick(add->nameField(), Qt::Key_Escape);
        save(&w.window, QStringLiteral("inspector-add-row") + suffix(dark));
    }

    void theVariablePicker_data() { singleAndMultiSelection_data(); }
    void theVariablePicker()
    {
        QFETCH(bool, dark);
        InspectorWindow w(sampleCss, QSize(340, 420));
        w.window.setPalette(Screenshots::palette(dark));
        w.select({".btn"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(0);
        QCOMPARE(row->activeVarName(), std::optional<QString>(QStringLiteral("--accent")));
        QTest::mouseClick(row->variableButton(), Qt::LeftButton);
        QTRY_VERIFY(row->variablePicker() && row->variablePicker()->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(row->variablePicker()));
        save(&w.window, QStringLiteral("inspector-picker") + suffix(dark), {row->variablePicker()});
        row->variablePicker()->close();
    }

    void aDrag_data() { singleAndMultiSelection_data(); }
    void aDrag()
    {
        QFETCH(bool, dark);
        InspectorWindow w(sampleCss, QSize(340, 420));
        w.window.setPalette(Screenshots::palette(dark));
        w.select({".btn"});
        QVERIFY(w.show());
        PropertyRowView *row = w.row(1);
        const QPoint start = row->nameCell().center();
        QTest::mousePress(row, Qt::LeftButton, Qt::NoModifier, start);
        QTest::mouseMove(row, start + QPoint(0, 2 * 41 + 10));
        QTRY_VERIFY(!w.list()->dropLineRect().isNull());
        save(&w.window, QStringLiteral("inspector-drag") + suffix(dark));
        QTest::mouseRelease(row, Qt::LeftButton, Qt::NoModifier, start + QPoint(0, 2 * 41 + 10));
    }
};

QTEST_MAIN(TestInspectorScreenshots)
#include "tst_inspectorscreenshots.moc"
