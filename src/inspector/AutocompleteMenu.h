#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QStringList>

#include <optional>

namespace Ombrel {

// The suggestion menu of one autocomplete field, free of widgets: which rows
// it offers for the field's text, which one is highlighted, and when it is
// open. It knows nothing of CSS; the field's owner passes the suggestions.
//
// Row 0 is the typed row, the field's own text, whenever that text is not
// blank; the suggestions that contain the text, ignoring case, follow, at
// most maxSuggestions of them. The menu opens when the focused field's text
// changes or the field takes the focus, as long as there is anything to
// suggest at all, and highlights the typed row. Without a typed row it
// highlights row 1, the second suggestion, when anything matches: an empty field that
// takes the focus offers its second suggestion first, a quirk kept on
// purpose. An empty result leaves the menu open with nothing to pick.
class AutocompleteMenu : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        // Whether the row is the typed row.
        IsTypedRole = Qt::UserRole + 1,
        // Whether the row is highlighted.
        IsSelectedRole,
    };

    static constexpr int maxSuggestions = 12;

    explicit AutocompleteMenu(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    QStringList suggestions() const { return m_suggestions; }
    void setSuggestions(const QStringList &suggestions);

    QString text() const { return m_text; }
    // The field's text changed: the menu opens (or stays open) while the
    // field has the focus and there are suggestions, and the highlight goes
    // back to the top.
    void setText(const QString &text);

    bool isFocused() const { return m_focused; }
    // The field took or lost the focus: the menu opens or closes with it.
    void setFocused(bool focused);

    bool isOpen() const { return m_open; }
    void close();

    int selectedIndex() const { return m_selectedIndex; }

    // The suggestions that match the text, in their order, at most 12.
    QStringList filtered() const { return m_filtered; }
    // The text, trimmed of blanks and tabs, is not empty.
    bool showTypedRow() const;
    int totalRows() const;
    QString labelAt(int row) const;

    // Up (-1) and Down (+1) while open: the highlight moves, clamped at both
    // ends, never wrapping.
    void moveSelection(int step);
    // Return while open: the menu closes, and the text the field takes is
    // returned, unless the typed row was highlighted.
    std::optional<QString> commitSelection();
    // A click on a row: the menu closes and the field takes its label.
    std::optional<QString> pick(int row);

Q_SIGNALS:
    void isOpenChanged();
    void selectedIndexChanged();

private:
    QStringList matching() const;
    void setOpen(bool open);
    void setSelectedIndex(int index);
    int selectedIndexOnOpening() const;

    QStringList m_suggestions;
    QString m_text;
    QStringList m_filtered;
    bool m_focused = false;
    bool m_open = false;
    int m_selectedIndex = 0;
};

} // namespace Ombrel
