// 5 MB pasted into the code tab at once, as stylesheet lines and as one
// minified line: the text arrives whole, the model follows it, and typing
// goes on behind it. (How long it takes is measured by ombrel-bench-code.)

#include "CodeEditorTestSupport.h"

#include "model/CSSParser.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace Ombrel;
using CodeTest::CodeWindow;

namespace {

constexpr qsizetype fiveMegabytes = 5 * 1024 * 1024;

// Rulesets with long values, so that 5 MB hold a few thousand of them.
QString stylesheetLines()
{
    const QString value(900, QLatin1Char('a'));
    QString css;
    for (int i = 0; css.size() < fiveMegabytes; ++i)
        css += QStringLiteral(".block-%1 {\n    background: url(%2);\n    margin: %3px;\n}\n\n")
                   .arg(i)
                   .arg(value)
                   .arg(i % 17);
    return css.left(fiveMegabytes);
}

QString minified(QString css)
{
    return css.replace(QStringLiteral("\n    "), QString()).remove(QLatin1Char('\n'));
}

} // namespace

class TestCodeLargeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pasteArrivesWholeAndTypingGoesOn_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::newRow("stylesheet lines") << stylesheetLines();
        QTest::newRow("one minified line") << minified(stylesheetLines());
    }

    void pasteArrivesWholeAndTypingGoesOn()
    {
        QFETCH(QString, pasted);
        CodeWindow window(QStringLiteral(".a {\n    x: 1;\n}\n"));
        QVERIFY(window.show());
        window.clickTab(CanvasTab::Code);
        QVERIFY(window.editor());
        window.editor()->setFocus();
        QTRY_VERIFY(window.editor()->hasFocus());

        QGuiApplication::clipboard()->setText(pasted);
        window.editor()->selectAll();
        QTest::keyClick(window.editor(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(window.editor()->rawText().size(), pasted.size());
        QVERIFY(window.editor()->rawText() == pasted);
        QVERIFY(window.coordinator()->text() == pasted);
        const CSSRulesetList parsed = CSSParser::parse(pasted);
        QCOMPARE(window.file->rulesets().size(), parsed.size());
        QCOMPARE(window.file->rulesets().last()->selector(), parsed.last()->selector());

        QTest::keyClick(window.editor(), Qt::Key_X);
        QVERIFY(window.coordinator()->text() == pasted + QLatin1Char('x'));
        QVERIFY(window.editor()->rawText() == pasted + QLatin1Char('x'));
        CanvasTest::endTurn();
        QTRY_VERIFY(window.file->hasUnsavedChanges());
    }
};

QTEST_MAIN(TestCodeLargeText)
#include "tst_codelargetext.moc"
