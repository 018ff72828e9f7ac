#include "inspector/widgets/AutocompleteField.h"
#include "inspector/widgets/AutocompleteMenuWindow.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

using namespace Ombrel;

namespace {

// A window with the field between two plain line edits, so that the focus
// has somewhere to go.
struct FieldWindow
{
    explicit FieldWindow(const QStringList &suggestions)
    {
        auto *layout = new QVBoxLayout(&window);
        before = new QLineEdit(&window);
        field = new AutocompleteField(&window);
        after = new QLineEdit(&window);
        layout->addWidget(before);
        layout->addWidget(field);
        layout->addWidget(after);
        field->setSuggestions(suggestions);
        tester = std::make_unique<QAbstractItemModelTester>(
            &field->menu(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        connect();
        window.resize(320, 120);
    }

    void connect()
    {
        QObject::connect(field, &QLineEdit::returnPressed, field, [this] { ++submits; });
        field->setOnConfirm([this] { ++confirms; });
        field->setOnEscape([this] { ++escapes; });
    }

    bool show()
    {
        window.show();
        window.activateWindow();
        QApplication::setActiveWindow(&window);
        return QTest::qWaitForWindowActive(&window);
    }

    bool focusField()
    {
        field->setFocus(Qt::OtherFocusReason);
        return QTest::qWaitFor([this] { return field->hasFocus(); });
    }

    QWidget window;
    QLineEdit *before = nullptr;
    AutocompleteField *field = nullptr;
    QLineEdit *after = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
    int submits = 0;
    int confirms = 0;
    int escapes = 0;
};

const QStringList colours{"transparent", "inherit", "currentColor", "#ffffff", "#f3f4f6"};

} // namespace

class TestAutocompleteField : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // Any complaint of Qt is a failure, but for what the offscreen
        // platform cannot do for windows of their own.
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
    }

    void focusOpensTheMenuUnderTheFieldWithoutTakingTheFocus()
    {
        FieldWindow w(colours);
        QVERIFY(w.show());
        QVERIFY(!w.field->menuWindow()->isVisible());
        QVERIFY(w.focusField());
        QTRY_VERIFY(w.field->menuWindow()->isVisible());
        QVERIFY(w.field->hasFocus());
        QCOMPARE(QApplication::activeWindow(), &w.window);
        const QRect menu = w.field->menuWindow()->geometry();
        QCOMPARE(menu.topLeft(), w.field->mapToGlobal(QPoint(0, w.field->height())));
        QVERIFY(menu.width() >= 200);
        QVERIFY(menu.height() <= 260);
        // Focused while empty: the second suggestion is highlighted.
        QCOMPARE(w.field->menu().selectedIndex(), 1);
    }

    void typingFiltersAndTheKeysMoveTheHighlight()
    {
        FieldWindow w(colours);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("#f"));
        QCOMPARE(w.field->menu().filtered(), (QStringList{"#ffffff", "#f3f4f6"}));
        QCOMPARE(w.field->menu().selectedIndex(), 0);
        QTest::keyClick(w.field, Qt::Key_Down);
        QTest::keyClick(w.field, Qt::Key_Down);
        QTest::keyClick(w.field, Qt::Key_Down);
        QCOMPARE(w.field->menu().selectedIndex(), 2);
        QTest::keyClick(w.field, Qt::Key_Up);
        QTest::keyClick(w.field, Qt::Key_Up);
        QTest::keyClick(w.field, Qt::Key_Up);
        QCOMPARE(w.field->menu().selectedIndex(), 0);
        QCOMPARE(w.field->text(), QStringLiteral("#f"));
    }

    void returnTakesTheHighlightedRowThenReachesTheCaller()
    {
        FieldWindow w({"flex", "inline-flex", "grid"});
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("fl"));
        QTest::keyClick(w.field, Qt::Key_Down);
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.field->text(), QStringLiteral("flex"));
        QCOMPARE(w.confirms, 1);
        QCOMPARE(w.submits, 0);
        // The text changed, so the menu opened again on the typed row.
        QVERIFY(w.field->menu().isOpen());
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.field->text(), QStringLiteral("flex"));
        QVERIFY(!w.field->menu().isOpen());
        QCOMPARE(w.submits, 0);
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.submits, 1);
    }

    void textWithoutMatchesReachesTheCallerOnTheSecondReturn()
    {
        FieldWindow w(colours);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("green"));
        QCOMPARE(w.field->menu().totalRows(), 1);
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.submits, 0);
        QCOMPARE(w.field->text(), QStringLiteral("green"));
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.submits, 1);
    }

    void escapeClosesTheMenuFirstThenReachesTheCaller()
    {
        FieldWindow w(colours);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("in"));
        QTest::keyClick(w.field, Qt::Key_Escape);
        QVERIFY(!w.field->menu().isOpen());
        QTRY_VERIFY(!w.field->menuWindow()->isVisible());
        QCOMPARE(w.escapes, 0);
        QTest::keyClick(w.field, Qt::Key_Escape);
        QCOMPARE(w.escapes, 1);
        // Typing opens it again.
        QTest::keyClicks(w.field, QStringLiteral("h"));
        QVERIFY(w.field->menu().isOpen());
    }

    void withoutSuggestionsTheMenuNeverOpensAndKeysGoToTheCaller()
    {
        FieldWindow w({});
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("10px"));
        QVERIFY(!w.field->menu().isOpen());
        QVERIFY(!w.field->menuWindow()->isVisible());
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.submits, 1);
        QTest::keyClick(w.field, Qt::Key_Escape);
        QCOMPARE(w.escapes, 1);
    }

    void tabWithOnTabIsSwallowedAndCallsItOnTheNextTurn()
    {
        FieldWindow w(colours);
        int tabs = 0;
        w.field->setOnTab([&tabs] { ++tabs; });
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QVERIFY(w.field->hasTabMonitor());
        QTest::keyClick(w.field, Qt::Key_Tab);
        QCOMPARE(tabs, 0);
        QTRY_COMPARE(tabs, 1);
        QVERIFY(w.field->hasFocus());
    }

    void tabWithoutOnTabMovesTheFocus()
    {
        FieldWindow w(colours);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QVERIFY(!w.field->hasTabMonitor());
        QTest::keyClick(w.field, Qt::Key_Tab);
        QTRY_VERIFY(w.after->hasFocus());
    }

    void losingTheFocusClosesTheMenuAndRemovesTheMonitor()
    {
        FieldWindow w(colours);
        int tabs = 0;
        w.field->setOnTab([&tabs] { ++tabs; });
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTRY_VERIFY(w.field->menuWindow()->isVisible());
        w.before->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(w.before->hasFocus());
        QVERIFY(!w.field->menu().isOpen());
        QVERIFY(!w.field->menuWindow()->isVisible());
        QVERIFY(!w.field->hasTabMonitor());
        QTest::keyClick(w.before, Qt::Key_Tab);
        QTRY_VERIFY(!w.before->hasFocus());
        QCOMPARE(tabs, 0);
    }

    void aFieldThatGoesWhileFocusedLeavesNoMonitorBehind()
    {
        FieldWindow w(colours);
        int tabs = 0;
        w.field->setOnTab([&tabs] { ++tabs; });
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        delete w.field;
        w.field = nullptr;
        w.before->setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(w.before->hasFocus());
        QTest::keyClick(w.before, Qt::Key_Tab);
        QTRY_VERIFY(w.after->hasFocus());
        QCOMPARE(tabs, 0);
    }

    void blanksShowNoTypedRowAndNeverMoreThanTwelveRowsShow()
    {
        QStringList many;
        for (int i = 0; i < 30; ++i)
            many.append(QStringLiteral("margin value-%1").arg(i));
        many.append(QStringLiteral("none"));
        FieldWindow w(many);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTRY_VERIFY(w.field->menuWindow()->isVisible());
        QListView *list = w.field->menuList();
        QCOMPARE(list->model()->rowCount(), 12);

        // Blanks: no typed row, and the blank matched as it stands, so
        // "none" is not offered.
        QTest::keyClicks(w.field, QStringLiteral(" "));
        QVERIFY(w.field->menuWindow()->isVisible());
        QCOMPARE(list->model()->rowCount(), 12);
        QCOMPARE(list->model()->index(0, 0).data().toString(), QStringLiteral("margin value-0"));
        // Without a typed row the highlight opens on the second suggestion.
        QTest::keyClick(w.field, Qt::Key_Return);
        QCOMPARE(w.field->text(), QStringLiteral("margin value-1"));

        // Typed text that matches many: the typed row and twelve more.
        QTest::keyClick(w.field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(w.field, QStringLiteral("VALUE"));
        QCOMPARE(list->model()->rowCount(), 13);
        QCOMPARE(list->model()->index(0, 0).data().toString(), QStringLiteral("VALUE"));
        QCOMPARE(list->model()->index(12, 0).data().toString(), QStringLiteral("margin value-11"));
        QVERIFY(!static_cast<AutocompleteMenuWindow *>(w.field->menuWindow())
                     ->emptyLabel()
                     ->isVisible());
    }

    void aClickOnARowTakesItWithoutConfirming()
    {
        FieldWindow w({"solid", "dashed", "dotted"});
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("d"));
        QTRY_VERIFY(w.field->menuWindow()->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(w.field->menuWindow()));
        QListView *list = w.field->menuList();
        QCOMPARE(w.field->menu().index(3).data().toString(), QStringLiteral("dotted"));
        const QPoint row = list->visualRect(w.field->menu().index(3)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, row);
        QCOMPARE(w.field->text(), QStringLiteral("dotted"));
        QCOMPARE(w.confirms, 0);
        QCOMPARE(w.submits, 0);
        QVERIFY(w.field->hasFocus());
    }

    void openingScrollsTheHighlightToTheTopAndMovingDoesNot()
    {
        QStringList many;
        for (int i = 0; i < 12; ++i)
            many.append(QStringLiteral("value-%1").arg(i));
        FieldWindow w(many);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTRY_VERIFY(w.field->menuWindow()->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(w.field->menuWindow()));
        QListView *list = w.field->menuList();
        QTRY_COMPARE(list->visualRect(w.field->menu().index(1)).top(), 0);
        const int scrolled = list->verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        for (int i = 0; i < 11; ++i)
            QTest::keyClick(w.field, Qt::Key_Down);
        QCOMPARE(w.field->menu().selectedIndex(), 11);
        QCOMPARE(list->verticalScrollBar()->value(), scrolled);
    }

    void theHighlightedRowIsPaintedOnTheAccentInWhite()
    {
        FieldWindow w({"block", "inline-block"});
        QPalette palette = w.window.palette();
        palette.setColor(QPalette::Highlight, QColor(0x0a, 0x64, 0xd8));
        palette.setColor(QPalette::Window, QColor(0xf5, 0xf5, 0xf7));
        w.window.setPalette(palette);
        w.field->menuWindow()->setPalette(palette);
        QVERIFY(w.show());
        QVERIFY(w.focusField());
        QTest::keyClicks(w.field, QStringLiteral("blo"));
        QTRY_VERIFY(w.field->menuWindow()->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(w.field->menuWindow()));
        QListView *list = w.field->menuList();
        const QImage image = list->viewport()->grab().toImage();
        const QRect typed = list->visualRect(w.field->menu().index(0));
        const QRect other = list->visualRect(w.field->menu().index(1));
        QCOMPARE(image.pixelColor(typed.right() - 2, typed.top() + 2), QColor(0x0a, 0x64, 0xd8));
        QVERIFY(image.pixelColor(other.right() - 2, other.top() + 2) != QColor(0x0a, 0x64, 0xd8));
        bool whiteText = false;
        for (int x = typed.left(); x < typed.right() && !whiteText; ++x) {
            for (int y = typed.top(); y < typed.bottom() && !whiteText; ++y)
                whiteText = image.pixelColor(x, y) == QColor(Qt::white);
        }
        QVERIFY(whiteText);
    }
};

QTEST_MAIN(TestAutocompleteField)
#include "tst_autocompletefield.moc"
