#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

// The fixed vocabulary offered while editing: property names, value
// suggestions, and which properties take a colour. It suggests; it never
// validates.
namespace Ombrel::CSSPropertyDatabase {

// The 162 name suggestions, grouped by topic (box, layout, flex, grid, type,
// background, border, effects, animation, miscellany), in offering order.
const QStringList &allProperties();

// The 14 names that take a colour.
const QSet<QString> &colorProperties();

// Suggestions for a property name, compared exactly (no case folding, no
// trimming); empty for a name without a row.
QStringList values(const QString &property);

// Whether the lowercased name takes a colour.
bool isColorProperty(const QString &name);

// Number of suggestion rows; several names may share one row.
int valueRowCount();

} // namespace Ombrel::CSSPropertyDatabase
