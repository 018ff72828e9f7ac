#pragma once

#include "workspace/OriginalStore.h"

#include <QDialog>

#include <optional>

class QPushButton;
class QTreeView;

namespace Ombrel {

class OriginalListModel;

// The list of a file's kept originals, newest first with time and size, from
// which the user picks the one to write back. The newest is preselected;
// "Restore" or a double click takes the selected one.
class RestoreOriginalDialog : public QDialog
{
    Q_OBJECT

public:
    RestoreOriginalDialog(const QString &fileName, const QList<KeptOriginal> &originals,
                          QWidget *parent = nullptr);

    // Runs the dialog modally; the chosen original, or none when cancelled.
    static std::optional<KeptOriginal>
    choose(const QString &fileName, const QList<KeptOriginal> &originals, QWidget *parent);

    QTreeView *list() const { return m_list; }
    OriginalListModel *model() const { return m_model; }
    QPushButton *restoreButton() const { return m_restore; }
    // The selected original; none when no row is selected.
    std::optional<KeptOriginal> selectedOriginal() const;

private:
    OriginalListModel *m_model;
    QTreeView *m_list;
    QPushButton *m_restore;
};

} // namespace Ombrel
