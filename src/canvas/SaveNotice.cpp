#include "SaveNotice.h"

#include <QCoreApplication>

namespace Ombrel {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Ombrel::SaveNotice", text);
}

QString counted(qsizetype count, const char *one, const char *many)
{
    return tr(count == 1 ? one : many).arg(count);
}

// "its 3 at-rules and 1 comment", or what of it is there; empty when the
// parse dropped neither.
QString droppedPhrase(const CSSParser::DroppedCounts &dropped)
{
    const QString atRules = counted(dropped.atRules, "%1 at-rule", "%1 at-rules");
    const QString comments = counted(dropped.comments, "%1 comment", "%1 comments");
    if (dropped.atRules > 0 && dropped.comments > 0)
        return tr("its %1 and %2").arg(atRules, comments);
    if (dropped.atRules > 0)
        return tr("its %1").arg(atRules);
    if (dropped.comments > 0)
        return tr("its %1").arg(comments);
    return QString();
}

} // namespace

QString saveNoticeText(OriginalState state, const CSSParser::DroppedCounts &dropped)
{
    const QString phrase = droppedPhrase(dropped);
    // A text with nothing counted loses its layout, and whatever the parse
    // could not read, to the generated form.
    switch (state) {
    case OriginalState::Whole:
        return QString();
    case OriginalState::BeforeSave:
        return phrase.isEmpty()
                   ? tr("Saving rewrites this file in Ombrel's own form; the original is kept.")
                   : tr("Saving rewrites this file without %1; the original is kept.").arg(phrase);
    case OriginalState::Kept:
        return phrase.isEmpty() ? tr("Saved in Ombrel's own form; the original is kept: "
                                     "File > Restore Original...")
                                : tr("Saved without %1; the original is kept: "
                                     "File > Restore Original...")
                                      .arg(phrase);
    case OriginalState::NotKept:
        return phrase.isEmpty()
                   ? tr("Saved in Ombrel's own form; the original could not be kept.")
                   : tr("Saved without %1; the original could not be kept.").arg(phrase);
    }
    return QString();
}

} // namespace Ombrel
