#include "AutocompleteMenu.h"

#include "text/TextScan.h"

#include <algorithm>

namespace Ombrel {

AutocompleteMenu::AutocompleteMenu(QObject *parent) : QAbstractListModel(parent) {}

int AutocompleteMenu::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : totalRows();
}

QVariant AutocompleteMenu::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return labelAt(index.row());
    case IsTypedRole:
        return showTypedRow() && index.row() == 0;
    case IsSelectedRole:
        return index.row() == m_selectedIndex;
    default:
        return QVariant();
    }
}

void AutocompleteMenu::setSuggestions(const QStringList &suggestions)
{
    if (m_suggestions == suggestions)
        return;
    // The rows are few; they are replaced as a whole.
    beginResetModel();
    m_suggestions = suggestions;
    m_filtered = matching();
    endResetModel();
}

void AutocompleteMenu::setText(const QString &text)
{
    if (m_text == text)
        return;
    beginResetModel();
    m_text = text;
    m_filtered = matching();
    endResetModel();
    // The highlight first, so that a menu that opens shows it at once.
    setSelectedIndex(selectedIndexOnOpening());
    setOpen(m_focused && !m_suggestions.isEmpty());
}

void AutocompleteMenu::setFocused(bool focused)
{
    m_focused = focused;
    if (focused)
        setSelectedIndex(selectedIndexOnOpening());
    setOpen(focused && !m_suggestions.isEmpty());
}

void AutocompleteMenu::close()
{
    setOpen(false);
}

bool AutocompleteMenu::showTypedRow() const
{
    return !TextScan::trimmedWhitespace(m_text).isEmpty();
}

int AutocompleteMenu::totalRows() const
{
    return int(m_filtered.size()) + (showTypedRow() ? 1 : 0);
}

QString AutocompleteMenu::labelAt(int row) const
{
    if (showTypedRow()) {
        if (row == 0)
            return m_text;
        --row;
    }
    return row >= 0 && row < m_filtered.size() ? m_filtered[row] : QString();
}

void AutocompleteMenu::moveSelection(int step)
{
    const int total = totalRows();
    if (!m_open || total <= 0)
        return;
    setSelectedIndex(std::clamp(m_selectedIndex + step, 0, total - 1));
}

std::optional<QString> AutocompleteMenu::commitSelection()
{
    if (!m_open)
        return std::nullopt;
    if (m_selectedIndex == 0 && showTypedRow()) {
        setOpen(false);
        return std::nullopt;
    }
    const int offset = m_selectedIndex - (showTypedRow() ? 1 : 0);
    setOpen(false);
    if (offset >= 0 && offset < m_filtered.size())
        return m_filtered[offset];
    return std::nullopt;
}

std::optional<QString> AutocompleteMenu::pick(int row)
{
    if (row < 0 || row >= totalRows())
        return std::nullopt;
    const QString label = labelAt(row);
    setOpen(false);
    return label;
}

QStringList AutocompleteMenu::matching() const
{
    QStringList filtered;
    for (const QString &suggestion : m_suggestions) {
        if (filtered.size() == maxSuggestions)
            break;
        if (m_text.isEmpty() || suggestion.contains(m_text, Qt::CaseInsensitive))
            filtered.append(suggestion);
    }
    return filtered;
}

void AutocompleteMenu::setOpen(bool open)
{
    if (m_open == open)
        return;
    m_open = open;
    Q_EMIT isOpenChanged();
}

void AutocompleteMenu::setSelectedIndex(int index)
{
    if (m_selectedIndex == index)
        return;
    const int previous = m_selectedIndex;
    m_selectedIndex = index;
    for (const int row : {previous, index}) {
        if (row >= 0 && row < totalRows())
            Q_EMIT dataChanged(this->index(row), this->index(row), {IsSelectedRole});
    }
    Q_EMIT selectedIndexChanged();
}

int AutocompleteMenu::selectedIndexOnOpening() const
{
    if (showTypedRow() || m_filtered.isEmpty())
        return 0;
    return 1;
}

} // namespace Ombrel
