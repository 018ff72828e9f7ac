#pragma once

#include <QString>

namespace Ombrel {

class CSSFile;

// The counts line under a file's name: "{r} ruleset(s)", and when the file
// declares custom properties " · {v} var(s)", singular only for exactly one.
QString countsLine(const CSSFile &file);
QString countsLine(qsizetype rulesets, qsizetype variables);

// How many characters of a file name the rename field selects: the name
// without its extension, so that typing replaces the base name only.
qsizetype baseNameLength(const QString &fileName);

// The colour roles of a sidebar row's icon and unsaved mark.
enum class RowTint { Accent, Secondary, White };

// The icon: white on the highlight of a focused list, accent on a selected row
// of an unfocused list and on any unsaved file, secondary otherwise.
RowTint rowIconTint(bool selected, bool listFocused, bool unsaved);
// The unsaved mark: white on the highlight of a focused list, else accent.
RowTint unsavedMarkTint(bool selected, bool listFocused);

} // namespace Ombrel
