#pragma once

#include "inspector/AutocompleteMenu.h"

#include <QLineEdit>
#include <QPointer>

#include <functional>

class QListView;

namespace Ombrel {

class AutocompleteMenuWindow;

// A plain one-line field with a menu of suggestions under it. The menu is a
// frameless window of its own that never takes the focus, so the field
// keeps it while the menu shows; the field handles the menu's keys itself.
//
// Keys: Up and Down move the highlight. Return with the menu open takes the
// highlighted row (the field's text becomes it) and calls onConfirm, and the
// field's returnPressed is not emitted; with the menu closed it is. Escape
// closes an open menu, and with the menu closed calls onEscape. With onTab,
// Tab (forward or back) never moves the focus: a key monitor installed while
// the field has the focus swallows it and calls onTab on the next turn of
// the event loop. Without onTab, Tab moves the focus as usual.
class AutocompleteField : public QLineEdit
{
    Q_OBJECT

public:
    using Action = std::function<void()>;

    explicit AutocompleteField(QWidget *parent = nullptr);
    ~AutocompleteField() override;

    void setSuggestions(const QStringList &suggestions);
    // Each may be empty, which is its absence.
    void setOnConfirm(Action action) { m_onConfirm = std::move(action); }
    void setOnEscape(Action action) { m_onEscape = std::move(action); }
    void setOnTab(Action action);

    AutocompleteMenu &menu() { return m_menu; }
    const AutocompleteMenu &menu() const { return m_menu; }
    // The menu's window, shown while the menu is open and the field visible.
    QWidget *menuWindow() const;
    QListView *menuList() const;
    // Whether the Tab key monitor is installed.
    bool hasTabMonitor() const { return !m_tabMonitor.isNull(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void installTabMonitor();
    void removeTabMonitor();
    void takeText(const QString &text);
    void updateMenuWindow();

    AutocompleteMenu m_menu;
    AutocompleteMenuWindow *m_menuWindow;
    Action m_onConfirm;
    Action m_onEscape;
    Action m_onTab;
    QPointer<QObject> m_tabMonitor;
};

} // namespace Ombrel
