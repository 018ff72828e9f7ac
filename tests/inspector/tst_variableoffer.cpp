#include "inspector/VariableOffer.h"
#include "inspector/VariablePickerModel.h"

#include <QAbstractItemModelTester>
#include <QColor>
#include <QTest>

using namespace Ombrel;

class TestVariableOffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offersAllByNameAndOnlyColoursToColourProperties()
    {
        const VariableOfferPtr offer = VariableOffer::from({{"--space", "4px"},
                                                            {"--brand", "#3b82f6"},
                                                            {"--Alias", "var(--brand)"},
                                                            {"--warn", "orange"}});
        const VariableChoices all{{"--Alias", "var(--brand)"},
                                  {"--brand", "#3b82f6"},
                                  {"--space", "4px"},
                                  {"--warn", "orange"}};
        QCOMPARE(offer->all, all);
        // A reference is no colour until it is resolved, which is not done here.
        const VariableChoices colours{{"--brand", "#3b82f6"}, {"--warn", "orange"}};
        QCOMPARE(offer->colours, colours);
        QCOMPARE(offer->compatibleWith(QStringLiteral("color")), colours);
        QCOMPARE(offer->compatibleWith(QStringLiteral("Border-Color")), colours);
        QCOMPARE(offer->compatibleWith(QStringLiteral("margin")), all);
        QCOMPARE(offer->compatibleWith(QStringLiteral("--custom")), all);
        QVERIFY(VariableOffer::from({})->all.isEmpty());
    }

    void referencedVariable_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("found");
        QTest::newRow("plain") << "var(--accent)"
                               << "--accent" << true;
        QTest::newRow("fallback") << "var(--accent, red)"
                                  << "--accent" << true;
        QTest::newRow("spaced") << " \tvar( --a , b)  "
                                << "" << false;
        QTest::newRow("blanks around") << "  var(--a)\t"
                                       << "--a" << true;
        QTest::newRow("blanks inside") << "var(--a )"
                                       << "--a" << true;
        QTest::newRow("upper case") << "VAR(--Big)"
                                    << "--Big" << true;
        QTest::newRow("unclosed") << "var(--a"
                                  << "" << false;
        QTest::newRow("no dashes") << "var(a)"
                                   << "" << false;
        QTest::newRow("in a list") << "1px solid var(--a)"
                                   << "" << false;
        QTest::newRow("a mark on the parenthesis")
            << QStringLiteral("var(--a)\u0301") << "" << false;
        QTest::newRow("empty") << ""
                               << "" << false;
    }
    void referencedVariable()
    {
        QFETCH(QString, value);
        QFETCH(QString, name);
        QFETCH(bool, found);
        const std::optional<QString> reference = Ombrel::referencedVariable(value);
        QCOMPARE(bool(reference), found);
        if (found)
            QCOMPARE(*reference, name);
    }

    void pickerFiltersNamesAndValuesIgnoringCaseAndBlanks()
    {
        VariablePickerModel model({{"--brand", "#3B82F6"}, {"--white", "#fff"}, {"--gap", "4px"}},
                                  QStringLiteral("--gap"));
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 3);
        model.setSearchText(QStringLiteral(" #FFF\t"));
        QCOMPARE(model.filtered(), (VariableChoices{{"--white", "#fff"}}));
        model.setSearchText(QStringLiteral("b82"));
        QCOMPARE(model.filtered(), (VariableChoices{{"--brand", "#3B82F6"}}));
        model.setSearchText(QStringLiteral("GAP"));
        QCOMPARE(model.rowCount(), 1);
        QVERIFY(model.index(0).data(VariablePickerModel::IsActiveRole).toBool());
        QVERIFY(!model.index(0).data(VariablePickerModel::ColorRole).value<QColor>().isValid());
        model.setSearchText(QStringLiteral("zzz"));
        QCOMPARE(model.rowCount(), 0);
        model.setSearchText(QStringLiteral("  "));
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.index(1).data(VariablePickerModel::ColorRole).value<QColor>(),
                 QColor(Qt::white));
        QCOMPARE(model.index(1).data(VariablePickerModel::ValueRole).toString(),
                 QStringLiteral("#fff"));
    }
};

QTEST_GUILESS_MAIN(TestVariableOffer)
#include "tst_variableoffer.moc"
