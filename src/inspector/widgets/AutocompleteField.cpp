#include "AutocompleteField.h"

#include "inspector/widgets/AutocompleteMenuWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>

#include <limits>

namespace Ombrel {

namespace {

// While its field has the focus, takes every Tab key press of the
// application before any widget sees it, and calls the field's onTab on the
// next turn of the event loop.
class TabMonitor : public QObject
{
public:
    TabMonitor(QObject *owner, std::function<void()> onTab)
        : QObject(owner), m_onTab(std::move(onTab))
    {
        qApp->installEventFilter(this);
    }
    ~TabMonitor() override { qApp->removeEventFilter(this); }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Tab && key != Qt::Key_Backtab)
            return false;
        QMetaObject::invokeMethod(parent(), m_onTab, Qt::QueuedConnection);
        return true;
    }

private:
    std::function<void()> m_onTab;
};

} // namespace

AutocompleteField::AutocompleteField(QWidget *parent)
    : QLineEdit(parent), m_menuWindow(new AutocompleteMenuWindow(m_menu, this))
{
    setFrame(false);
    // A value read from a file may be as long as it likes; the field's own
    // limit would cut it at the first keystroke.
    setMaxLength(std::numeric_limits<int>::max());
    QPalette palette = this->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    setPalette(palette);

    connect(this, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_menu.setText(text);
        updateMenuWindow();
    });
    connect(&m_menu, &AutocompleteMenu::isOpenChanged, this, [this] {
        updateMenuWindow();
        if (m_menu.isOpen())
            m_menuWindow->scrollToSelection();
    });
    connect(m_menuWindow, &AutocompleteMenuWindow::rowClicked, this, [this](int row) {
        if (const std::optional<QString> label = m_menu.pick(row))
            takeText(*label);
    });
}

AutocompleteField::~AutocompleteField()
{
    removeTabMonitor();
}

void AutocompleteField::setSuggestions(const QStringList &suggestions)
{
    m_menu.setSuggestions(suggestions);
    updateMenuWindow();
}

void AutocompleteField::setOnTab(Action action)
{
    m_onTab = std::move(action);
    removeTabMonitor();
    if (hasFocus())
        installTabMonitor();
}

QWidget *AutocompleteField::menuWindow() const
{
    return m_menuWindow;
}

QListView *AutocompleteField::menuList() const
{
    return m_menuWindow->list();
}

void AutocompleteField::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
        m_menu.moveSelection(-1);
        return;
    case Qt::Key_Down:
        m_menu.moveSelection(1);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m_menu.isOpen())
            break;
        if (const std::optional<QString> chosen = m_menu.commitSelection())
            takeText(*chosen);
        if (m_onConfirm)
            m_onConfirm();
        return;
    case Qt::Key_Escape:
        if (m_menu.isOpen()) {
            m_menu.close();
            return;
        }
        if (m_onEscape) {
            m_onEscape();
            return;
        }
        break;
    default:
        break;
    }
    QLineEdit::keyPressEvent(event);
}

void AutocompleteField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    m_menu.setFocused(true);
    removeTabMonitor();
    if (m_onTab)
        installTabMonitor();
    updateMenuWindow();
}

void AutocompleteField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    m_menu.setFocused(false);
    removeTabMonitor();
    updateMenuWindow();
}

void AutocompleteField::hideEvent(QHideEvent *event)
{
    QLineEdit::hideEvent(event);
    m_menuWindow->hide();
}

void AutocompleteField::moveEvent(QMoveEvent *event)
{
    QLineEdit::moveEvent(event);
    updateMenuWindow();
}

void AutocompleteField::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    updateMenuWindow();
}

void AutocompleteField::installTabMonitor()
{
    m_tabMonitor = new TabMonitor(this, [this] {
        if (m_onTab)
            m_onTab();
    });
}

void AutocompleteField::removeTabMonitor()
{
    delete m_tabMonitor;
}

// A row taken from the menu becomes the text, and the menu's own text rule
// follows: a changed text opens it again while the field has the focus.
void AutocompleteField::takeText(const QString &text)
{
    if (text != this->text())
        setText(text);
}

void AutocompleteField::updateMenuWindow()
{
    const bool shown = m_menu.isOpen() && isVisible();
    if (shown) {
        m_menuWindow->placeUnder(this);
        if (!m_menuWindow->isVisible())
            m_menuWindow->show();
    } else if (m_menuWindow->isVisible()) {
        m_menuWindow->hide();
    }
}

} // namespace Ombrel
