#pragma once

// The generated stylesheet the canvas benchmarks share.

#include <QRandomGenerator>
#include <QString>
#include <QStringList>

namespace BenchStylesheet {

// Rulesets of every kind a card draws differently: classes, ids, elements,
// nesting, depth, colours plain and through var(), borders of each style,
// gradients and images.
inline QString generatedStylesheet(int count)
{
    QRandomGenerator random(20261122);
    const QStringList elements{"div", "p", "a", "span", "img", "input", "li", "h2", "section"};
    const QStringList colours{"#1f2937",          "#f9fafb", "red",
                              "rgb(37, 99, 235)", "#fde68a", "hsl(200, 60%, 40%)",
                              "var(--accent)",    "white"};
    const QStringList borders{"1px solid #d1d5db", "2px dashed var(--accent)", "1px dotted red",
                              "none", "3px double #111"};
    QString css = QStringLiteral(":root {\n  --accent: #3b82f6;\n  --surface: #f3f4f6;\n}\n\n");
    for (int i = 0; i < count; ++i) {
        QString selector;
        switch (i % 6) {
        case 0:
            selector = QStringLiteral(".block-%1").arg(i);
            break;
        case 1:
            selector = QStringLiteral("#section-%1 .title").arg(i);
            break;
        case 2:
            selector = elements[i % elements.size()] + QStringLiteral(".item-%1").arg(i);
            break;
        case 3:
            selector = QStringLiteral(".nav-%1 > li > a:hover").arg(i);
            break;
        case 4:
            selector = QStringLiteral("& .nested-%1").arg(i);
            break;
        default:
            selector = QStringLiteral("main .grid .cell-%1 span em").arg(i);
            break;
        }
        css += selector + QStringLiteral(" {\n");
        css += QStringLiteral("  color: %1;\n").arg(colours[random.bounded(colours.size())]);
        if (random.bounded(3) != 0)
            css += QStringLiteral("  background-color: %1;\n")
                       .arg(colours[random.bounded(colours.size())]);
        if (random.bounded(2) == 0)
            css += QStringLiteral("  border: %1;\n").arg(borders[random.bounded(borders.size())]);
        if (random.bounded(3) == 0)
            css += QStringLiteral("  border-radius: %1px;\n").arg(random.bounded(20));
        if (random.bounded(4) == 0)
            css += QStringLiteral("  font-weight: %1;\n").arg(100 * (1 + random.bounded(9)));
        if (i % 25 == 0)
            css += QStringLiteral("  background: linear-gradient(90deg, #6366f1, #ec4899);\n");
        if (i % 97 == 0)
            css += QStringLiteral("  background-image: url(missing-%1.png);\n").arg(i);
        css += QStringLiteral("  padding: %1px %2px;\n  margin: 0 auto;\n")
                   .arg(random.bounded(24))
                   .arg(random.bounded(24));
        css += QStringLiteral("}\n\n");
    }
    return css;
}

} // namespace BenchStylesheet
