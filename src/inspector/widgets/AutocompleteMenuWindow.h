#pragma once

#include <QStyledItemDelegate>
#include <QWidget>

class QLabel;
class QListView;

namespace Ombrel {

class AutocompleteMenu;

// Paints one row of the suggestion menu: the typed row with its cursor
// symbol, or a suggestion, in the monospaced body font, with a divider under
// every row but the last; the highlighted row on the accent colour.
class AutocompleteRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int horizontalInset = 10;
    static constexpr int verticalInset = 6;

    explicit AutocompleteRowDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QFont m_font;
};

// The window of the suggestion menu: a column of rows, at least 200 wide and
// at most 260 high, or "No suggestions" when nothing is offered. It never
// takes the focus: clicks pick rows while the field keeps typing.
class AutocompleteMenuWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr int minimumWidth = 200;
    static constexpr int maximumHeight = 260;
    static constexpr int verticalInset = 4;

    AutocompleteMenuWindow(AutocompleteMenu &menu, QWidget *parent);

    QListView *list() const { return m_list; }
    QLabel *emptyLabel() const { return m_empty; }

    // Lays the window out under the field, width at least the field's.
    void placeUnder(const QWidget *field);
    // Scrolls the highlighted row to the top, as the menu does on opening.
    void scrollToSelection();

Q_SIGNALS:
    void rowClicked(int row);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    static QFont fontOfCaption();

    AutocompleteMenu &m_menu;
    QListView *m_list;
    QLabel *m_empty;
};

} // namespace Ombrel
