#include "SidebarView.h"

#include "shell/FileListModel.h"
#include "shell/widgets/DesktopServices.h"
#include "shell/widgets/FileRowView.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"
#include "workspace/Workspace.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Ombrel {

namespace {

// The delays a new rename field needs: to exist before it takes the focus,
// and to hold its text before the base name is selected.
constexpr int renameStepDelayMs = 50;

QToolButton *barButton(const QString &symbol, int size, const QString &toolTip, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setAutoRaise(true);
    button->setIcon(symbolIcon(symbol, size, parent->palette().color(QPalette::Highlight)));
    button->setIconSize(QSize(size, size));
    button->setToolTip(toolTip);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

} // namespace

SidebarView::SidebarView(Workspace *workspace, QWidget *parent)
    : QWidget(parent), m_workspace(workspace), m_model(new FileListModel(workspace, this)),
      m_rowView(new FileRowView(this))
{
    setObjectName(QStringLiteral("SidebarView"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_header = makeSecondaryLabel(QString(), 11, this);
    m_header->setObjectName(QStringLiteral("sidebarHeader"));
    m_header->setFont(fontOfSize(11, QFont::DemiBold));
    m_header->setContentsMargins(12, 10, 12, 4);
    layout->addWidget(m_header);

    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("fileList"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(m_rowView);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setUniformItemSizes(true);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->installEventFilter(this);
    m_list->viewport()->installEventFilter(this);
    layout->addWidget(m_list, 1);

    auto *divider = new QFrame(this);
    divider->setFrameShape(QFrame::HLine);
    divider->setFrameShadow(QFrame::Plain);
    divider->setForegroundRole(QPalette::Mid);
    layout->addWidget(divider);

    auto *bar = new QWidget(this);
    auto *barLayout = new QHBoxLayout(bar);
    barLayout->setContentsMargins(10, 7, 10, 7);
    QToolButton *openButton =
        barButton(QStringLiteral("folder.badge.plus"), 11, tr("Open Folder…"), bar);
    openButton->setObjectName(QStringLiteral("sidebarOpenFolderButton"));
    connect(openButton, &QToolButton::clicked, workspace, &Workspace::openFolderPanel);
    barLayout->addWidget(openButton);
    barLayout->addStretch(1);
    m_newFileButton = barButton(QStringLiteral("plus"), 13, tr("New CSS File"), bar);
    m_newFileButton->setObjectName(QStringLiteral("sidebarNewFileButton"));
    connect(m_newFileButton, &QToolButton::clicked, workspace, &Workspace::createNewFile);
    barLayout->addWidget(m_newFileButton);
    layout->addWidget(bar);

    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SidebarView::selectionChangedByUser);
    // The list takes its fields down first, then these put them back up.
    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this,
            &SidebarView::rememberRenameFields);
    connect(m_model, &QAbstractItemModel::modelReset, this, &SidebarView::reopenRenameFields);
    connect(m_rowView, &FileRowView::renameSubmitted, this,
            [this](QWidget *field) { endRename(field, true); });
    connect(m_rowView, &FileRowView::renameCancelled, this,
            [this](QWidget *field) { endRename(field, false); });
    connect(m_list, &QListView::customContextMenuRequested, this, [this](const QPoint &at) {
        const QModelIndex index = m_list->indexAt(at);
        if (!index.isValid())
            return;
        QMenu *menu = createContextMenu(index.row(), this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(m_list->viewport()->mapToGlobal(at));
    });
    connect(workspace, &Workspace::filesChanged, this, [this] {
        showSelectedFile();
        servePendingRename();
    });
    connect(workspace, &Workspace::selectedFileChanged, this, &SidebarView::showSelectedFile);
    connect(workspace, &Workspace::pendingRenameFileIDChanged, this,
            &SidebarView::servePendingRename);
    connect(workspace, &Workspace::folderPathChanged, this, &SidebarView::updateFolderState);
    updateFolderState();
    showSelectedFile();
    applyPalette();
}

void SidebarView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

// The list's selection without the focus is grey, as the platform's lists
// draw it. Where the style's inactive highlight is the accent itself, the
// list takes a grey of the palette's instead, and dark text on it.
void SidebarView::applyPalette()
{
    QPalette listPalette = palette();
    if (listPalette.color(QPalette::Inactive, QPalette::Highlight) ==
        listPalette.color(QPalette::Active, QPalette::Highlight)) {
        listPalette.setColor(QPalette::Inactive, QPalette::Highlight,
                             listPalette.color(QPalette::Active, QPalette::Mid));
        listPalette.setColor(QPalette::Inactive, QPalette::HighlightedText,
                             listPalette.color(QPalette::Active, QPalette::Text));
    }
    m_list->setPalette(listPalette);
}

void SidebarView::updateFolderState()
{
    m_header->setText(m_workspace->folderName());
    m_newFileButton->setVisible(m_workspace->hasFolder());
}

void SidebarView::selectionChangedByUser()
{
    if (m_followingWorkspace)
        return;
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    // Choosing a file by hand always starts without a selected ruleset.
    m_workspace->setSelectedFile(rows.isEmpty() ? nullptr : m_model->fileAt(rows.first().row()));
    m_workspace->setSelectedRuleset(nullptr);
}

void SidebarView::showSelectedFile()
{
    const CSSFilePtr selected = m_workspace->selectedFile();
    const int row = selected ? m_model->rowOf(selected->id()) : -1;
    const QModelIndex index = m_model->index(row, 0);
    if (m_list->selectionModel()->isSelected(index) && m_list->currentIndex() == index)
        return;
    m_followingWorkspace = true;
    if (index.isValid()) {
        m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    } else {
        m_list->selectionModel()->clear();
    }
    m_followingWorkspace = false;
}

void SidebarView::servePendingRename()
{
    const QUuid pending = m_workspace->pendingRenameFileID();
    if (pending.isNull() || !isVisible())
        return;
    const int row = m_model->rowOf(pending);
    if (row < 0)
        return;
    m_workspace->setPendingRenameFileID({});
    beginRename(row);
}

void SidebarView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    servePendingRename();
}

void SidebarView::beginRename(int row)
{
    const CSSFilePtr file = m_model->fileAt(row);
    if (!file)
        return;
    const QUuid id = file->id();
    const QString name = file->name();
    m_renames.insert(id, RenameField{name});
    m_list->scrollTo(m_model->index(row, 0));
    if (QLineEdit *field = renameField(row))
        field->setText(name);
    else
        openRenameField(row, name);
    // The steps find the field again when they run: the list may have put up
    // a new one in between.
    QTimer::singleShot(renameStepDelayMs, this, [this, id, name] {
        QLineEdit *field = renameFieldOf(id);
        if (!field)
            return;
        field->setFocus(Qt::OtherFocusReason);
        QTimer::singleShot(renameStepDelayMs, this, [this, id, name] {
            QLineEdit *focused = renameFieldOf(id);
            if (focused && focused->hasFocus())
                focused->setSelection(0, int(baseNameLength(name)));
        });
    });
}

QLineEdit *SidebarView::renameField(int row) const
{
    const CSSFilePtr file = m_model->fileAt(row);
    if (!file || !m_renames.contains(file->id()))
        return nullptr;
    return qobject_cast<QLineEdit *>(m_list->indexWidget(m_model->index(row, 0)));
}

QLineEdit *SidebarView::renameFieldOf(const QUuid &fileId) const
{
    return renameField(m_model->rowOf(fileId));
}

QUuid SidebarView::renamedFileOf(const QWidget *field) const
{
    if (!field)
        return {};
    const auto found =
        std::find_if(m_renames.keyBegin(), m_renames.keyEnd(),
                     [this, field](const QUuid &id) { return renameFieldOf(id) == field; });
    return found == m_renames.keyEnd() ? QUuid() : *found;
}

QLineEdit *SidebarView::openRenameField(int row, const QString &text)
{
    const QModelIndex index = m_model->index(row, 0);
    // A persistent editor, since the list closes an ordinary one as soon as
    // another row becomes current.
    m_list->openPersistentEditor(index);
    auto *field = qobject_cast<QLineEdit *>(m_list->indexWidget(index));
    if (!field)
        return nullptr;
    field->setText(text);
    connect(field, &QLineEdit::textChanged, this,
            [this, id = m_model->fileAt(row)->id()](const QString &changed) {
                const auto rename = m_renames.find(id);
                if (rename != m_renames.end())
                    rename->text = changed;
            });
    return field;
}

void SidebarView::rememberRenameFields()
{
    for (auto rename = m_renames.begin(); rename != m_renames.end(); ++rename) {
        const QLineEdit *field = renameFieldOf(rename.key());
        if (!field)
            continue;
        rename->focused = field->hasFocus();
        rename->cursor = field->cursorPosition();
        rename->selectionStart = field->selectionStart();
        rename->selectionLength = int(field->selectedText().size());
    }
}

void SidebarView::reopenRenameFields()
{
    for (auto rename = m_renames.begin(); rename != m_renames.end();) {
        const int row = m_model->rowOf(rename.key());
        // A field lives as long as its file is in the list.
        if (row < 0) {
            rename = m_renames.erase(rename);
            continue;
        }
        if (QLineEdit *field = openRenameField(row, rename->text)) {
            if (rename->selectionStart >= 0)
                field->setSelection(rename->selectionStart, rename->selectionLength);
            else
                field->setCursorPosition(rename->cursor);
            if (rename->focused)
                field->setFocus(Qt::OtherFocusReason);
        }
        ++rename;
    }
}

void SidebarView::endRename(QWidget *field, bool commit)
{
    const QUuid id = renamedFileOf(field);
    if (id.isNull())
        return;
    const QString text = m_renames.take(id).text;
    const CSSFilePtr file = m_model->fileAt(m_model->rowOf(id));
    const bool hadFocus = field->hasFocus();
    m_list->closePersistentEditor(m_model->index(m_model->rowOf(id), 0));
    if (hadFocus)
        m_list->setFocus(Qt::OtherFocusReason);
    // A refused name leaves the file as it was, and the row shows it again.
    if (commit && file)
        m_workspace->renameFile(file, text);
}

QMenu *SidebarView::createContextMenu(int row, QWidget *parent)
{
    auto *menu = new QMenu(parent);
    const CSSFilePtr file = m_model->fileAt(row);
    if (!file)
        return menu;
    const QPointer<Workspace> workspace = m_workspace;
    menu->addAction(tr("Duplicate"), this, [workspace, file] {
        if (workspace)
            workspace->duplicateFile(file);
    });
    menu->addAction(tr("Rename…"), this, [this, file] { beginRename(m_model->rowOf(file->id())); });
    menu->addAction(showInFileManagerLabel(), this, [workspace, file] {
        if (workspace)
            workspace->showInFileManager(file);
    });
    menu->addSeparator();
    menu->addAction(tr("Delete…"), this, [workspace, file] {
        if (workspace)
            workspace->deleteFile(file);
    });
    return menu;
}

QStyleOptionViewItem SidebarView::optionFor(int row) const
{
    QStyleOptionViewItem option;
    option.initFrom(m_list);
    option.widget = m_list;
    option.rect = m_list->visualRect(m_model->index(row, 0));
    if (m_list->selectionModel()->isSelected(m_model->index(row, 0)))
        option.state |= QStyle::State_Selected;
    return option;
}

RowTint SidebarView::iconTintOf(int row) const
{
    return FileRowView::iconTint(optionFor(row), m_model->index(row, 0));
}

RowTint SidebarView::unsavedMarkTintOf(int row) const
{
    return FileRowView::markTint(optionFor(row));
}

QRect SidebarView::iconRectOf(int row) const
{
    return m_rowView->iconRect(optionFor(row), m_model->index(row, 0));
}

QRectF SidebarView::unsavedMarkRectOf(int row) const
{
    return m_rowView->unsavedMarkRect(optionFor(row), m_model->index(row, 0));
}

bool SidebarView::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_list && event->type() == QEvent::FocusOut &&
        !renamedFileOf(QApplication::focusWidget()).isNull()) {
        // The list makes the row of a field that takes the focus its current
        // row; but a rename does not choose the file, so the list goes back
        // to the workspace's selection.
        {
            const QScopedValueRollback following(m_followingWorkspace, true);
            static_cast<QObject *>(m_list)->event(event);
        }
        showSelectedFile();
        m_list->viewport()->update();
        return true;
    }
    if (object == m_list &&
        (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)) {
        // The rows' colours follow whether the list holds the focus.
        m_list->viewport()->update();
    } else if (object == m_list->viewport() && event->type() == QEvent::MouseButtonPress) {
        const auto *press = static_cast<QMouseEvent *>(event);
        const QModelIndex index = m_list->indexAt(press->position().toPoint());
        // Only a click on the name of the row that is already selected renames;
        // on any other row the click selects.
        if (press->button() == Qt::LeftButton && index.isValid() &&
            m_list->selectionModel()->isSelected(index) &&
            m_rowView->nameRect(optionFor(index.row()), index)
                .contains(press->position().toPoint())) {
            m_list->setFocus(Qt::MouseFocusReason);
            beginRename(index.row());
            return true;
        }
    }
    return QWidget::eventFilter(object, event);
}

} // namespace Ombrel
