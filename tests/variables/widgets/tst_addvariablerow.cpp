// The row for typing a new variable, as a component: its focus, its keys,
// its buttons and what a commit accepts.

#include "variables/widgets/AddVariableRow.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace Ombrel;

namespace {

struct Shown
{
    Shown()
        : committed(&row, &AddVariableRow::committed), cancelled(&row, &AddVariableRow::cancelled)
    {
        row.resize(480, 36);
    }

    bool show()
    {
        row.show();
        row.activateWindow();
        return QTest::qWaitForWindowActive(&row);
    }

    AddVariableRow row;
    QSignalSpy committed;
    QSignalSpy cancelled;
};

} // namespace

class TestAddVariableRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(
            QRegularExpression(QStringLiteral("^(?!This plugin does not support ).*")));
    }

    void itOpensInTheNameWithTheDashes()
    {
        Shown s;
        QVERIFY(s.show());
        QTRY_COMPARE(s.row.focusedField(), std::optional(AddVariableRow::Field::Name));
        QCOMPARE(s.row.nameField()->text(), QStringLiteral("--"));
        QVERIFY(s.row.valueField()->text().isEmpty());
        QCOMPARE(s.row.nameField()->placeholderText(), QStringLiteral("--variable-name"));
        QCOMPARE(s.row.valueField()->placeholderText(), QStringLiteral("value"));
    }

    void returnOrTabInTheNameMovesToTheValue_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("return") << int(Qt::Key_Return);
        QTest::newRow("tab") << int(Qt::Key_Tab);
    }
    void returnOrTabInTheNameMovesToTheValue()
    {
        QFETCH(int, key);
        Shown s;
        QVERIFY(s.show());
        QTRY_VERIFY(s.row.nameField()->hasFocus());
        QTest::keyClicks(s.row.nameField(), QStringLiteral("gap"));
        QTest::keyClick(s.row.nameField(), Qt::Key(key));
        QCOMPARE(s.row.focusedField(), std::optional(AddVariableRow::Field::Value));
        QVERIFY(s.committed.isEmpty());
        QTest::keyClicks(s.row.valueField(), QStringLiteral("  4px\t"));
        QTest::keyClick(s.row.valueField(), Qt::Key_Return);
        QCOMPARE(s.committed.count(), 1);
        QCOMPARE(s.committed.first().at(0).toString(), QStringLiteral("--gap"));
        QCOMPARE(s.committed.first().at(1).toString(), QStringLiteral("4px"));
    }

    void aCommitNeedsAFullNameAndAValue_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("taken");
        QTest::newRow("good") << QStringLiteral(" --a ") << QStringLiteral("1") << true;
        QTest::newRow("dashes alone") << QStringLiteral("--") << QStringLiteral("1") << false;
        QTest::newRow("no dashes") << QStringLiteral("abc") << QStringLiteral("1") << false;
        QTest::newRow("one dash") << QStringLiteral("-abc") << QStringLiteral("1") << false;
        QTest::newRow("blank value") << QStringLiteral("--a") << QStringLiteral(" \t") << false;
        QTest::newRow("a mark on the dash")
            << QStringLiteral("--\u0301") << QStringLiteral("1") << false;
    }
    void aCommitNeedsAFullNameAndAValue()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(bool, taken);
        Shown s;
        QVERIFY(s.show());
        s.row.nameField()->setText(name);
        s.row.valueField()->setText(value);
        QTest::mouseClick(s.row.commitButton(), Qt::LeftButton);
        QCOMPARE(s.committed.count(), taken ? 1 : 0);
        // Refused, the row stays as it was.
        QCOMPARE(s.row.nameField()->text(), name);
        QCOMPARE(s.row.valueField()->text(), value);
        QVERIFY(s.cancelled.isEmpty());
    }

    void escapeOrTheCrossCancels()
    {
        Shown s;
        QVERIFY(s.show());
        QTRY_VERIFY(s.row.nameField()->hasFocus());
        QTest::keyClick(s.row.nameField(), Qt::Key_Escape);
        QCOMPARE(s.cancelled.count(), 1);
        s.row.valueField()->setFocus();
        QTest::keyClick(s.row.valueField(), Qt::Key_Escape);
        QCOMPARE(s.cancelled.count(), 2);
        QTest::mouseClick(s.row.cancelButton(), Qt::LeftButton);
        QCOMPARE(s.cancelled.count(), 3);
        QVERIFY(s.committed.isEmpty());
    }
};

QTEST_MAIN(TestAddVariableRow)
#include "tst_addvariablerow.moc"
