// Writes pictures of the inspector for review to the build folder's
// screenshots/ directory, in a light and a dark palette: one ruleset and a
// multi-selection, a row with its suggestions open, the add row, the
// variable picker and a row being dragged. The style, font and pixel ratio
// are pinned so that runs compare.

#include "InspectorViewTestSupport.h"

#include "inspector/widgets/AddPropertyRow.h"
#include "inspector/widgets/VariablePickerPopover.h"
#include "workspace/AppPreferences.h"

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QStyle>
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

QPalette lightPalette()
{
    QPalette palette = QApplication::style()->standardPalette();
    palette.setColor(QPalette::Window, QColor(0xf5, 0xf5, 0xf7));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x64, 0xd8));
    palette.setColor(QPalette::PlaceholderText, QColor(0x86, 0x86, 0x8b));
    palette.setColor(QPalette::Mid, QColor(0xd2, 0xd2, 0xd7));
    return palette;
}

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::WindowText, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::Base, QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::AlternateBase, QColor(0x32, 0x32, 0x32));
    palette.setColor(QPalette::Text, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3a));
    palette.setColor(QPalette::ButtonText, QColor(0xe8, 0xe8, 0xe8));
    palette.setColor(QPalette::PlaceholderText, QColor(0x98, 0x98, 0x9d));
    palette.setColor(QPalette::Mid, QColor(0x48, 0x48, 0x4a));
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

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
        QApplication::setStyle(QStringLiteral("Fusion"));
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSize(10);
        QApplication::setFont(font);
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
        w.window.setPalette(dark ? darkPalette() : lightPalette());
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
        w.window.setPalette(dark ? darkPalette() : lightPalette());
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
        w.window.setPalette(dark ? darkPalette() : lightPalette());
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
        w.window.setPalette(dark ? darkPalette() : lightPalette());
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
        w.window.setPalette(dark ? darkPalette() : lightPalette());
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
