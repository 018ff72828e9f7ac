#include "inspector/widgets/VariablePickerPopover.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace Ombrel;

namespace {

const VariableChoices sample{{"--brand", "#3b82f6"}, {"--paper", "#ffffff"}, {"--gap", "4px"}};

struct Picker
{
    Picker(VariableChoices variables, std::optional<QString> active, bool clearable = true)
    {
        std::function<void()> onClear;
        if (clearable)
            onClear = [this] { ++clears; };
        popover = new VariablePickerPopover(
            std::move(variables), std::move(active),
            [this](const QString &name) { chosen.append(name); }, onClear);
        tester = std::make_unique<QAbstractItemModelTester>(
            &popover->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }
    ~Picker() { delete popover; }

    bool show()
    {
        popover->popup(QPoint(100, 100));
        return QTest::qWaitForWindowExposed(popover);
    }

    QPointer<VariablePickerPopover> popover;
    std::unique_ptr<QAbstractItemModelTester> tester;
    QStringList chosen;
    int clears = 0;
};

} // namespace

class TestVariablePickerPopover : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
    }

    void theFilterHasTheFocusFromTheStart()
    {
        Picker picker(sample, std::nullopt);
        QVERIFY(picker.show());
        QTRY_VERIFY(picker.popover->filterField()->hasFocus());
        QCOMPARE(picker.popover->width(), 240);
        QVERIFY(picker.popover->list()->height() <= 220);
        QVERIFY(!picker.popover->clearFilterButton()->isVisible());
    }

    void anEmptyListSaysNoVariables()
    {
        Picker picker({}, std::nullopt, false);
        QVERIFY(picker.show());
        QVERIFY(picker.popover->emptyLabel()->isVisible());
        QCOMPARE(picker.popover->emptyLabel()->text(), QStringLiteral("No variables"));
        QVERIFY(!picker.popover->list()->isVisible());
        QVERIFY(!picker.popover->useRawValueButton());
    }

    void aFilterWithoutHitsSaysNoMatchesAndKeepsUseRawValue()
    {
        Picker picker(sample, QStringLiteral("--gap"));
        QVERIFY(picker.show());
        QTRY_VERIFY(picker.popover->filterField()->hasFocus());
        QTest::keyClicks(picker.popover->filterField(), QStringLiteral("nothing"));
        QCOMPARE(picker.popover->emptyLabel()->text(), QStringLiteral("No matches"));
        QVERIFY(picker.popover->emptyLabel()->isVisible());
        QVERIFY(picker.popover->useRawValueButton()->isVisible());
        QVERIFY(picker.popover->clearFilterButton()->isVisible());
        QTest::mouseClick(picker.popover->clearFilterButton(), Qt::LeftButton);
        QCOMPARE(picker.popover->filterField()->text(), QString());
        QCOMPARE(picker.popover->model().rowCount(), 3);
        QVERIFY(!picker.popover->clearFilterButton()->isVisible());
    }

    void theFilterFindsVariablesByTheirColour()
    {
        Picker picker(sample, std::nullopt);
        QVERIFY(picker.show());
        QTRY_VERIFY(picker.popover->filterField()->hasFocus());
        QTest::keyClicks(picker.popover->filterField(), QStringLiteral("#fff"));
        QCOMPARE(picker.popover->model().filtered(), (VariableChoices{{"--paper", "#ffffff"}}));
    }

    void anActiveNameOutsideTheListMarksNoRowAndStillOffersRawValue()
    {
        Picker picker(sample, QStringLiteral("--elsewhere"));
        QVERIFY(picker.show());
        for (int row = 0; row < picker.popover->model().rowCount(); ++row)
            QVERIFY(!picker.popover->model()
                         .index(row)
                         .data(VariablePickerModel::IsActiveRole)
                         .toBool());
        QVERIFY(picker.popover->useRawValueButton());
        QTest::mouseClick(picker.popover->useRawValueButton(), Qt::LeftButton);
        QCOMPARE(picker.clears, 1);
    }

    void aClickOnARowChoosesItsName()
    {
        Picker picker(sample, std::nullopt);
        QVERIFY(picker.show());
        QListView *list = picker.popover->list();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualRect(picker.popover->model().index(2)).center());
        QCOMPARE(picker.chosen, QStringList{"--gap"});
    }

    void theActiveRowStandsOnTheAccentWithASwatchOnlyForColours()
    {
        Picker picker(sample, QStringLiteral("--gap"));
        QPalette palette = picker.popover->palette();
        palette.setColor(QPalette::Window, Qt::white);
        palette.setColor(QPalette::Highlight, QColor(0, 0, 255));
        picker.popover->setPalette(palette);
        QVERIFY(picker.show());
        QListView *list = picker.popover->list();
        const QImage image = list->viewport()->grab().toImage();
        const QRect active = list->visualRect(picker.popover->model().index(2));
        const QRect brand = list->visualRect(picker.popover->model().index(0));
        // White under blue at 0.08.
        const QColor wash = image.pixelColor(active.left() + 2, active.top() + 2);
        QVERIFY(qAbs(wash.red() - 235) <= 1);
        QCOMPARE(wash.blue(), 255);
        QCOMPARE(image.pixelColor(brand.left() + 2, brand.top() + 2), QColor(Qt::white));
        // The swatch of --brand at the row's start, none for --gap.
        QCOMPARE(image.pixelColor(brand.left() + 12 + 7, brand.center().y()),
                 QColor(0x3b, 0x82, 0xf6));
        const QColor noSwatch = image.pixelColor(active.left() + 12 + 7, active.center().y());
        QVERIFY(noSwatch != QColor(0x3b, 0x82, 0xf6));
    }

    void anOutsideClickClosesWithoutAChoice()
    {
        Picker picker(sample, std::nullopt);
        QSignalSpy closed(picker.popover.data(), &VariablePickerPopover::closed);
        QVERIFY(picker.show());
        QTest::mouseClick(picker.popover, Qt::LeftButton, Qt::NoModifier, QPoint(-20, -20));
        QTRY_COMPARE(closed.count(), 1);
        QTRY_VERIFY(!picker.popover);
        QVERIFY(picker.chosen.isEmpty());
    }
};

QTEST_MAIN(TestVariablePickerPopover)
#include "tst_variablepickerpopover.moc"
