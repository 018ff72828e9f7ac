#pragma once

#include <QWidget>

class QSplitter;

namespace Ombrel {

// The split between the sidebar (180 to 300 wide, collapsible) and the rest
// of the editing layout (at least 400 wide).
class SidebarSplitView : public QWidget
{
    Q_OBJECT

public:
    SidebarSplitView(QWidget *sidebar, QWidget *detail, QWidget *parent = nullptr);

    // Collapses or shows the sidebar on the next turn of the event loop, so
    // that the split never changes in the middle of another update.
    void setShowSidebar(bool show);
    bool isSidebarCollapsed() const;

    QWidget *sidebar() const { return m_sidebar; }
    QWidget *detail() const { return m_detail; }

private:
    void setSidebarCollapsed(bool collapsed);

    QSplitter *m_split;
    QWidget *m_sidebar;
    QWidget *m_detail;
    int m_lastSidebarWidth = 220;
};

} // namespace Ombrel
