#include "workspace/AppPreferences.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Ombrel;

namespace {

QSettings store()
{
    return QSettings(QStringLiteral("Ombrel"), QStringLiteral("Ombrel"));
}

} // namespace

class TestAppPreferences : public QObject
{
    Q_OBJECT

    // Loads the store as the next launch of the application would.
    static std::unique_ptr<AppPreferences> launch()
    {
        return std::unique_ptr<AppPreferences>(new AppPreferences);
    }

private Q_SLOTS:
    void init() { store().clear(); }

    void storeLiesOutsideTheHome()
    {
        const QString file = store().fileName();
        QVERIFY(file.startsWith(QStringLiteral(OMBREL_TEST_SETTINGS_DIR)));
        QVERIFY(!file.startsWith(QDir::homePath() + QLatin1Char('/')));
    }

    void firstLaunchHasTheDefaults()
    {
        const auto prefs = launch();
        QCOMPARE(prefs->restoreSession(), true);
        QCOMPARE(prefs->autoSave(), false);
        QCOMPARE(prefs->showColorSwatches(), true);
        QCOMPARE(prefs->showNodeStyling(), true);
        QVERIFY(store().allKeys().isEmpty());
    }

    void storedBooleansAreTakenAtTheNextLaunch()
    {
        {
            QSettings settings = store();
            settings.setValue(AppPreferences::restoreSessionKey, false);
            settings.setValue(AppPreferences::autoSaveKey, true);
            settings.setValue(AppPreferences::showColorSwatchesKey, false);
            settings.setValue(AppPreferences::showNodeStylingKey, false);
        }
        const auto prefs = launch();
        QCOMPARE(prefs->restoreSession(), false);
        QCOMPARE(prefs->autoSave(), true);
        QCOMPARE(prefs->showColorSwatches(), false);
        QCOMPARE(prefs->showNodeStyling(), false);
    }

    void valuesOfAnotherTypeAreIgnored_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("text no") << QVariant(QStringLiteral("no"));
        QTest::newRow("text yes") << QVariant(QStringLiteral("yes"));
        QTest::newRow("capitalised text") << QVariant(QStringLiteral("FALSE"));
        QTest::newRow("number") << QVariant(0);
        QTest::newRow("list") << QVariant(QStringList{QStringLiteral("false")});
    }

    void valuesOfAnotherTypeAreIgnored()
    {
        QFETCH(QVariant, stored);
        {
            QSettings settings = store();
            settings.setValue(AppPreferences::showNodeStylingKey, stored);
            settings.setValue(AppPreferences::restoreSessionKey, stored);
        }
        const auto prefs = launch();
        QCOMPARE(prefs->showNodeStyling(), true);
        QCOMPARE(prefs->restoreSession(), true);
        QCOMPARE(store().value(AppPreferences::showNodeStylingKey), stored);
    }

    void assignmentIsStoredAtOnceAndSeenByAnotherReader()
    {
        const auto window = launch();
        QSignalSpy fieldSpy(window.get(), &AppPreferences::autoSaveChanged);
        QSignalSpy changedSpy(window.get(), &AppPreferences::changed);
        window->setAutoSave(true);
        QCOMPARE(fieldSpy.count(), 1);
        QCOMPARE(changedSpy.count(), 1);

        const QSettings reader = store();
        QCOMPARE(reader.value(AppPreferences::autoSaveKey).toString(), QStringLiteral("true"));
        QCOMPARE(launch()->autoSave(), true);

        window->setShowColorSwatches(false);
        QCOMPARE(launch()->showColorSwatches(), false);
        QCOMPARE(changedSpy.count(), 2);
    }

    void eachSettingHasItsOwnKeyAndSignal_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("property");
        QTest::newRow("restoreSession")
            << AppPreferences::restoreSessionKey << QByteArray("restoreSession");
        QTest::newRow("autoSave") << AppPreferences::autoSaveKey << QByteArray("autoSave");
        QTest::newRow("showColorSwatches")
            << AppPreferences::showColorSwatchesKey << QByteArray("showColorSwatches");
        QTest::newRow("showNodeStyling")
            << AppPreferences::showNodeStylingKey << QByteArray("showNodeStyling");
    }

    void eachSettingHasItsOwnKeyAndSignal()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, property);
        const auto prefs = launch();
        const bool flipped = !prefs->property(property).toBool();
        const QMetaProperty meta =
            prefs->metaObject()->property(prefs->metaObject()->indexOfProperty(property));
        QSignalSpy spy(prefs.get(), meta.notifySignal());
        QVERIFY(prefs->setProperty(property, flipped));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(store().allKeys(), QStringList{key});
        QCOMPARE(launch()->property(property).toBool(), flipped);
    }

    void assigningThePresentValueWritesWithoutSignal()
    {
        const auto prefs = launch();
        QSignalSpy spy(prefs.get(), &AppPreferences::changed);
        prefs->setRestoreSession(true);
        QCOMPARE(spy.count(), 0);
        QCOMPARE(store().value(AppPreferences::restoreSessionKey).toString(),
                 QStringLiteral("true"));
    }

    void sharedInstanceIsOneForTheProcess()
    {
        AppPreferences &first = AppPreferences::shared();
        QCOMPARE(&AppPreferences::shared(), &first);
        const bool before = first.showNodeStyling();
        first.setShowNodeStyling(!before);
        QCOMPARE(AppPreferences::shared().showNodeStyling(), !before);
        QCOMPARE(launch()->showNodeStyling(), !before);
    }
};

QTEST_GUILESS_MAIN(TestAppPreferences)
#include "tst_apppreferences.moc"
