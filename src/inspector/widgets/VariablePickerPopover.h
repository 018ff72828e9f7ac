#pragma once

#include "inspector/VariablePickerModel.h"
#include "inspector/widgets/SymbolButton.h"

#include <QStyledItemDelegate>
#include <QWidget>

#include <functional>

class QAbstractButton;
class QLabel;
class QLineEdit;
class QListView;

namespace Ombrel {

// Paints one variable of the picker: a swatch when its value reads as a
// colour, its name over its value, and a checkmark on the variable in use,
// whose row stands on a light wash of the accent colour.
class VariableRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit VariableRowDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QFont m_nameFont;
    QFont m_valueFont;
};

// The small window a property row's variable button opens: the variables
// that fit the property, a filter over their names and values that has the
// focus from the start, and, for a value that refers to a variable, "Use raw
// value". It writes nothing itself: a click on a row calls onSelect with
// the variable's name, and its owner closes it. A click outside closes it
// without a choice.
class VariablePickerPopover : public QWidget
{
    Q_OBJECT

public:
    static constexpr int fixedWidth = 240;
    static constexpr int maximumListHeight = 220;

    // onClearVar may be empty: then "Use raw value" is not offered.
    VariablePickerPopover(VariableChoices variables, std::optional<QString> activeVarName,
                          std::function<void(const QString &)> onSelect,
                          std::function<void()> onClearVar, QWidget *parent = nullptr);

    // Shows the picker with its top left corner at a point of the screen.
    void popup(const QPoint &globalPosition);

    VariablePickerModel &model() { return m_model; }
    QLineEdit *filterField() const { return m_filter; }
    SymbolButton *clearFilterButton() const { return m_clearFilter; }
    QListView *list() const { return m_list; }
    // "No variables" or "No matches", shown instead of an empty list.
    QLabel *emptyLabel() const { return m_empty; }
    // Null unless a clearing callback was given.
    QAbstractButton *useRawValueButton() const { return m_useRawValue; }

Q_SIGNALS:
    // The picker closed, by a choice of its owner's or a click outside.
    void closed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *buildHeader();
    void updateList();

    VariablePickerModel m_model;
    std::function<void(const QString &)> m_onSelect;
    std::function<void()> m_onClearVar;
    QLineEdit *m_filter = nullptr;
    SymbolButton *m_clearFilter = nullptr;
    QListView *m_list = nullptr;
    QLabel *m_empty = nullptr;
    QAbstractButton *m_useRawValue = nullptr;
};

} // namespace Ombrel
