#include "FileRowText.h"

#include "model/CSSFile.h"

#include <QCoreApplication>

namespace Ombrel {

QString countsLine(qsizetype rulesets, qsizetype variables)
{
    QString text = rulesets == 1 ? QCoreApplication::translate("Ombrel::FileRow", "%1 ruleset")
                                 : QCoreApplication::translate("Ombrel::FileRow", "%1 rulesets");
    text = text.arg(rulesets);
    if (variables > 0) {
        text += variables == 1 ? QCoreApplication::translate("Ombrel::FileRow", " · %1 var")
                               : QCoreApplication::translate("Ombrel::FileRow", " · %1 vars");
        text = text.arg(variables);
    }
    return text;
}

QString countsLine(const CSSFile &file)
{
    return countsLine(file.rulesets().size(), file.customPropertyCount());
}

qsizetype baseNameLength(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? fileName.size() : dot;
}

RowTint rowIconTint(bool selected, bool listFocused, bool unsaved)
{
    if (selected)
        return listFocused ? RowTint::White : RowTint::Accent;
    return unsaved ? RowTint::Accent : RowTint::Secondary;
}

RowTint unsavedMarkTint(bool selected, bool listFocused)
{
    return selected && listFocused ? RowTint::White : RowTint::Accent;
}

} // namespace Ombrel
