#include "RestoreOriginalDialog.h"

#include "shell/OriginalListModel.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace Ombrel {

RestoreOriginalDialog::RestoreOriginalDialog(const QString &fileName,
                                             const QList<KeptOriginal> &originals, QWidget *parent)
    : QDialog(parent), m_model(new OriginalListModel(originals, this)), m_list(new QTreeView(this))
{
    setObjectName(QStringLiteral("restoreOriginalDialog"));
    setWindowTitle(tr("Restore Original"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(12);

    auto *title = new QLabel(tr("Restore \"%1\" as it was before a save").arg(fileName), this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    title->setWordWrap(true);
    layout->addWidget(title);
    auto *detail = new QLabel(tr("The chosen bytes are written back over the file. What the file "
                                 "holds now is kept first, so that it can be restored too."),
                              this);
    detail->setWordWrap(true);
    layout->addWidget(detail);

    m_list->setObjectName(QStringLiteral("originalList"));
    m_list->setModel(m_model);
    m_list->setRootIsDecorated(false);
    m_list->setItemsExpandable(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(OriginalListModel::TimeColumn, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(OriginalListModel::SizeColumn,
                                           QHeaderView::ResizeToContents);
    layout->addWidget(m_list, 1);

    auto *buttons = new QDialogButtonBox(this);
    m_restore = buttons->addButton(tr("Restore"), QDialogButtonBox::AcceptRole);
    m_restore->setObjectName(QStringLiteral("restoreButton"));
    m_restore->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.isValid())
            accept();
    });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { m_restore->setEnabled(selectedOriginal().has_value()); });

    if (m_model->rowCount() > 0)
        m_list->setCurrentIndex(m_model->index(0, OriginalListModel::TimeColumn));
    m_restore->setEnabled(selectedOriginal().has_value());
    m_list->setFocus();
    resize(440, 320);
}

std::optional<KeptOriginal> RestoreOriginalDialog::selectedOriginal() const
{
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return std::nullopt;
    return m_model->original(rows.first().row());
}

std::optional<KeptOriginal> RestoreOriginalDialog::choose(const QString &fileName,
                                                          const QList<KeptOriginal> &originals,
                                                          QWidget *parent)
{
    RestoreOriginalDialog dialog(fileName, originals, parent);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.selectedOriginal();
}

} // namespace Ombrel
