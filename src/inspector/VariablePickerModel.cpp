#include "VariablePickerModel.h"

#include "knowledge/Color.h"
#include "text/TextScan.h"

namespace Ombrel {

VariablePickerModel::VariablePickerModel(VariableChoices variables,
                                         std::optional<QString> activeVarName, QObject *parent)
    : QAbstractListModel(parent), m_variables(std::move(variables)),
      m_activeVarName(std::move(activeVarName)), m_filtered(m_variables)
{}

int VariablePickerModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_filtered.size());
}

QVariant VariablePickerModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    const VariableChoice &choice = m_filtered[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return choice.name;
    case ValueRole:
        return choice.value;
    case IsActiveRole:
        return m_activeVarName == choice.name;
    case ColorRole:
        if (const std::optional<Color> color = Color::fromCssString(choice.value))
            return color->toQColor();
        return QColor();
    default:
        return QVariant();
    }
}

void VariablePickerModel::setSearchText(const QString &text)
{
    if (m_searchText == text)
        return;
    beginResetModel();
    m_searchText = text;
    m_filtered = matching();
    endResetModel();
    Q_EMIT searchTextChanged();
}

VariableChoices VariablePickerModel::matching() const
{
    const QStringView query = TextScan::trimmedWhitespace(m_searchText);
    if (query.isEmpty())
        return m_variables;
    VariableChoices filtered;
    for (const VariableChoice &choice : m_variables) {
        if (choice.name.contains(query, Qt::CaseInsensitive) ||
            choice.value.contains(query, Qt::CaseInsensitive))
            filtered.append(choice);
    }
    return filtered;
}

} // namespace Ombrel
