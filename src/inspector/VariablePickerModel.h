#pragma once

#include "inspector/VariableOffer.h"

#include <QAbstractListModel>

#include <optional>

namespace Ombrel {

// The rows of the variable picker: the variables offered, filtered by the
// picker's search text, with the one the value refers to marked.
// Qt::DisplayRole is a variable's name.
class VariablePickerModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        ValueRole = Qt::UserRole + 1,
        // Whether the value refers to this variable.
        IsActiveRole,
        // The colour the raw value reads as, or an invalid QColor.
        ColorRole,
    };

    VariablePickerModel(VariableChoices variables, std::optional<QString> activeVarName,
                        QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const VariableChoices &variables() const { return m_variables; }
    std::optional<QString> activeVarName() const { return m_activeVarName; }

    QString searchText() const { return m_searchText; }
    // The variables whose name or value contains the text trimmed of blanks
    // and tabs, ignoring case; all of them for a blank text.
    void setSearchText(const QString &text);
    const VariableChoices &filtered() const { return m_filtered; }

Q_SIGNALS:
    void searchTextChanged();

private:
    VariableChoices matching() const;

    VariableChoices m_variables;
    std::optional<QString> m_activeVarName;
    QString m_searchText;
    VariableChoices m_filtered;
};

} // namespace Ombrel
