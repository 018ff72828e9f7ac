// The colour tools' rules that need no window: what Return submits, which
// keyword shows the accent, the palette pages, where a popover opens, the
// colour lists' single reading, and how the chooser's colours become text.

#include "colour/ColorLists.h"
#include "colour/ColorPanelObserver.h"
#include "colour/ColorPickerModel.h"
#include "colour/PopoverPlacement.h"
#include "colour/SharedColorPanel.h"
#include "colour/ToolkitColor.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace Ombrel;

Q_DECLARE_METATYPE(std::optional<QString>)

namespace {

ColorList numberedList(const QString &name, int count)
{
    ColorList list{name, {}, {}};
    for (int i = 0; i < count; ++i)
        list.add(QStringLiteral("c%1").arg(i), Color{i / 255.0, 0, 0, 1});
    return list;
}

} // namespace

class TestColorPickerRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void returnSubmitsTheTrimmedText_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<std::optional<QString>>("submitted");
        const std::optional<QString> nothing;
        QTest::newRow("hex") << "#3b82f6" << std::optional<QString>("#3b82f6");
        QTest::newRow("spaces and tabs trimmed")
            << " \t#3b82f6\t " << std::optional<QString>("#3b82f6");
        QTest::newRow("no-break space trimmed")
            << QStringLiteral("\u00a0#fff") << std::optional<QString>("#fff");
        QTest::newRow("line break kept") << "\n#fff" << std::optional<QString>("\n#fff");
        QTest::newRow("not validated") << "#zzz" << std::optional<QString>("#zzz");
        QTest::newRow("a variable") << "var(--x)" << std::optional<QString>("var(--x)");
        QTest::newRow("inner space kept") << " a b " << std::optional<QString>("a b");
        QTest::newRow("empty") << "" << nothing;
        QTest::newRow("blank") << " \t  " << nothing;
    }

    void returnSubmitsTheTrimmedText()
    {
        QFETCH(QString, field);
        QFETCH(std::optional<QString>, submitted);
        QCOMPARE(submittedText(field), submitted);
    }

    void keywordShowsTheAccentOnlyOnExactEquality_data()
    {
        QTest::addColumn<QString>("hexInput");
        QTest::addColumn<QString>("keyword");
        QTest::addColumn<bool>("highlighted");
        QTest::newRow("same") << "inherit"
                              << "inherit" << true;
        QTest::newRow("camel case") << "currentColor"
                                    << "currentColor" << true;
        QTest::newRow("other case") << "currentcolor"
                                    << "currentColor" << false;
        QTest::newRow("capital") << "Inherit"
                                 << "inherit" << false;
        QTest::newRow("padded") << " inherit"
                                << "inherit" << false;
        QTest::newRow("other keyword") << "transparent"
                                       << "inherit" << false;
    }

    void keywordShowsTheAccentOnlyOnExactEquality()
    {
        QFETCH(QString, hexInput);
        QFETCH(QString, keyword);
        QFETCH(bool, highlighted);
        QCOMPARE(isKeywordHighlighted(hexInput, keyword), highlighted);
    }

    void theKeywordsInTheirOrder()
    {
        QCOMPARE(colorKeywords(),
                 (QStringList{QStringLiteral("transparent"), QStringLiteral("inherit"),
                              QStringLiteral("currentColor")}));
    }

    void modelTellsEachChange()
    {
        ColorPickerModel model(QStringLiteral("#fff"));
        QCOMPARE(model.hexInput(), QStringLiteral("#fff"));
        QCOMPARE(model.paletteIndex(), 0);
        QSignalSpy hex(&model, &ColorPickerModel::hexInputChanged);
        QSignalSpy index(&model, &ColorPickerModel::paletteIndexChanged);
        model.setHexInput(QStringLiteral("#fff"));
        model.setPaletteIndex(0);
        QCOMPARE(hex.size(), 0);
        QCOMPARE(index.size(), 0);
        model.setHexInput(QStringLiteral("red"));
        model.setPaletteIndex(2);
        QCOMPARE(hex.size(), 1);
        QCOMPARE(hex.first().first().toString(), QStringLiteral("red"));
        QCOMPARE(index.size(), 1);
        QCOMPARE(index.first().first().toInt(), 2);
    }

    void pageTurnsStopAtTheEnds()
    {
        ColorPickerModel model{QString()};
        model.showPreviousList();
        QCOMPARE(model.paletteIndex(), 0);
        model.showNextList(3);
        model.showNextList(3);
        QCOMPARE(model.paletteIndex(), 2);
        model.showNextList(3);
        QCOMPARE(model.paletteIndex(), 2);
        model.showPreviousList();
        QCOMPARE(model.paletteIndex(), 1);

        QVERIFY(!canShowPreviousList(0));
        QVERIFY(canShowPreviousList(1));
        QVERIFY(canShowNextList(1, 3));
        QVERIFY(!canShowNextList(2, 3));
        QVERIFY(!canShowNextList(0, 1));
    }

    void theHeaderNeedsTwoLists()
    {
        QVERIFY(!hasPaletteHeader({}));
        QVERIFY(!hasPaletteHeader({numberedList(QStringLiteral("One"), 3)}));
        QVERIFY(hasPaletteHeader(
            {numberedList(QStringLiteral("One"), 3), numberedList(QStringLiteral("Two"), 3)}));
    }

    void aPageShowsTheFirstSixtyKeys()
    {
        const QList<ColorList> lists = {numberedList(QStringLiteral("Hundred"), 100)};
        const QList<ColorPaletteEntry> entries = paletteEntries(lists, 0);
        QCOMPARE(entries.size(), 60);
        QCOMPARE(entries.first().name, QStringLiteral("c0"));
        QCOMPARE(entries.last().name, QStringLiteral("c59"));
        QCOMPARE(entries.last().hex(), QStringLiteral("#3B0000"));
        QSet<QUuid> ids;
        for (const ColorPaletteEntry &entry : entries)
            ids.insert(entry.id);
        QCOMPARE(ids.size(), 60);
    }

    void keysWithoutAColourAreSkippedButCounted()
    {
        ColorList list = numberedList(QStringLiteral("Gaps"), 100);
        list.colors.remove(QStringLiteral("c10"));
        const QList<ColorPaletteEntry> entries = paletteEntries({list}, 0);
        QCOMPARE(entries.size(), 59);
        QCOMPARE(entries[10].name, QStringLiteral("c11"));
        QCOMPARE(entries.last().name, QStringLiteral("c59"));
    }

    void anIndexOutsideTheListsShowsNothing()
    {
        const QList<ColorList> lists = {numberedList(QStringLiteral("One"), 3)};
        QVERIFY(paletteEntries(lists, -1).isEmpty());
        QVERIFY(paletteEntries(lists, 1).isEmpty());
        QVERIFY(paletteEntries({}, 0).isEmpty());
    }

    void aListWithoutANameIsNumberedFromOne()
    {
        const QList<ColorList> lists = {numberedList(QStringLiteral("Named"), 1),
                                        numberedList(QString(), 1)};
        QCOMPARE(paletteTitle(lists, 0), QStringLiteral("Named"));
        QCOMPARE(paletteTitle(lists, 1), QStringLiteral("Palette 2"));
    }

    void aKeyAddedTwiceKeepsItsPlace()
    {
        ColorList list;
        list.add(QStringLiteral("#FFFFFF"), Color{1, 1, 1, 1});
        list.add(QStringLiteral("#000000"), Color{0, 0, 0, 1});
        list.add(QStringLiteral("#FFFFFF"), Color{1, 1, 1, 0.5});
        QCOMPARE(list.keys, (QStringList{QStringLiteral("#FFFFFF"), QStringLiteral("#000000")}));
        QCOMPARE(list.color(QStringLiteral("#FFFFFF")), std::optional(Color{1, 1, 1, 0.5}));
        QCOMPARE(list.color(QStringLiteral("#123456")), std::nullopt);
    }

    void theListsAreReadOnceFromTheReplacement()
    {
        int replacementReads = 0;
        int systemReads = 0;
        ColorListStore::replaceProvider([&replacementReads] {
            ++replacementReads;
            return QList<ColorList>{numberedList(QStringLiteral("Test"), 2)};
        });
        const ColorListProvider system = [&systemReads] {
            ++systemReads;
            return QList<ColorList>();
        };
        QCOMPARE(ColorListStore::lists(system).size(), 1);
        QCOMPARE(ColorListStore::lists(system).first().name, QStringLiteral("Test"));
        // A replacement after the first read comes too late.
        ColorListStore::replaceProvider([] { return QList<ColorList>(); });
        QCOMPARE(ColorListStore::lists(system).size(), 1);
        QCOMPARE(replacementReads, 1);
        QCOMPARE(systemReads, 0);
    }

    void popoverPlacement_data()
    {
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<QRect>("expected");
        const QSize size(260, 300);
        QTest::newRow("on the left, centred") << QPoint(500, 400) << QRect(QPoint(240, 250), size);
        QTest::newRow("no room on the left") << QPoint(100, 400) << QRect(QPoint(101, 250), size);
        QTest::newRow("pushed down from the top") << QPoint(500, 20) << QRect(QPoint(240, 0), size);
        QTest::newRow("pushed up from the bottom")
            << QPoint(500, 790) << QRect(QPoint(240, 500), size);
        QTest::newRow("just fits on the left") << QPoint(260, 400) << QRect(QPoint(0, 250), size);
    }

    void popoverPlacement()
    {
        QFETCH(QPoint, pointer);
        QFETCH(QRect, expected);
        QCOMPARE(popoverGeometry(pointer, QSize(260, 300), QRect(0, 0, 800, 800)), expected);
    }

    void popoverWithNoRoomOnEitherSideIsKeptOnScreen()
    {
        const QRect screen(0, 0, 400, 300);
        const QRect placed = popoverGeometry(QPoint(200, 150), QSize(260, 200), screen);
        QVERIFY(screen.contains(placed));
        QCOMPARE(placed.size(), QSize(260, 200));
        // Larger than the screen: the top left corner stays in sight.
        const QRect large = popoverGeometry(QPoint(200, 150), QSize(500, 400), screen);
        QCOMPARE(large.topLeft(), QPoint(0, 0));
    }

    void chooserColoursBecomeHex_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QString>("hex");
        QTest::newRow("rgb") << QColor(0x3b, 0x82, 0xf6) << "#3B82F6";
        QTest::newRow("hsv") << QColor::fromHsv(0, 255, 255) << "#FF0000";
        QTest::newRow("half opacity") << QColor(0x33, 0x66, 0x99, 128) << "#33669980";
        QTest::newRow("opaque") << QColor(0x33, 0x66, 0x99, 255) << "#336699";
        QTest::newRow("not valid") << QColor() << "#000000";
    }

    void chooserColoursBecomeHex()
    {
        QFETCH(QColor, color);
        QFETCH(QString, hex);
        QCOMPARE(cssHexOf(color), hex);
    }

    void observerAnswersOnlyWhileItHoldsTheChooser()
    {
        SharedColorPanel &panel = SharedColorPanel::instance();
        ColorPanelObserver observer;
        QStringList changes;
        QStringList closes;
        observer.onChange = [&changes](const QString &hex) { changes.append(hex); };
        observer.onClose = [&closes](const QString &hex) { closes.append(hex); };
        QVERIFY(!observer.isOpen());
        QCOMPARE(observer.currentHex(), QString());

        Q_EMIT panel.colorChanged(Qt::red);
        Q_EMIT panel.closed();
        QVERIFY(changes.isEmpty());
        QVERIFY(closes.isEmpty());

        observer.open(QStringLiteral("not a colour"));
        QVERIFY(observer.isOpen());
        QCOMPARE(observer.currentHex(), QStringLiteral("not a colour"));
        Q_EMIT panel.colorChanged(QColor(0x3b, 0x82, 0xf6));
        QCOMPARE(changes, QStringList{QStringLiteral("#3B82F6")});
        QCOMPARE(observer.currentHex(), QStringLiteral("#3B82F6"));
        Q_EMIT panel.closed();
        Q_EMIT panel.closed();
        QCOMPARE(closes, QStringList{QStringLiteral("#3B82F6")});
        QVERIFY(!observer.isOpen());
    }
};

QTEST_GUILESS_MAIN(TestColorPickerRules)
#include "tst_colorpickerrules.moc"
