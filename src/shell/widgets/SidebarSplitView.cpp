#include "SidebarSplitView.h"

#include <QHBoxLayout>
#include <QSplitter>

namespace Ombrel {

namespace {

constexpr int sidebarMinimumWidth = 180;
constexpr int sidebarMaximumWidth = 300;
constexpr int detailMinimumWidth = 400;

} // namespace

SidebarSplitView::SidebarSplitView(QWidget *sidebar, QWidget *detail, QWidget *parent)
    : QWidget(parent), m_split(new QSplitter(Qt::Horizontal, this)), m_sidebar(sidebar),
      m_detail(detail)
{
    setObjectName(QStringLiteral("SidebarSplitView"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_split);
    m_split->setHandleWidth(1);
    sidebar->setMinimumWidth(sidebarMinimumWidth);
    sidebar->setMaximumWidth(sidebarMaximumWidth);
    detail->setMinimumWidth(detailMinimumWidth);
    m_split->addWidget(sidebar);
    m_split->addWidget(detail);
    m_split->setCollapsible(0, true);
    m_split->setCollapsible(1, false);
    m_split->setStretchFactor(0, 0);
    m_split->setStretchFactor(1, 1);
    m_split->setSizes({m_lastSidebarWidth, 10000});
}

void SidebarSplitView::setShowSidebar(bool show)
{
    QMetaObject::invokeMethod(
        this, [this, show] { setSidebarCollapsed(!show); }, Qt::QueuedConnection);
}

bool SidebarSplitView::isSidebarCollapsed() const
{
    return m_split->sizes().constFirst() == 0;
}

void SidebarSplitView::setSidebarCollapsed(bool collapsed)
{
    if (collapsed == isSidebarCollapsed())
        return;
    const int total = m_split->width();
    if (collapsed) {
        m_lastSidebarWidth = m_split->sizes().constFirst();
        m_split->setSizes({0, total});
    } else {
        m_split->setSizes(
            {m_lastSidebarWidth, std::max(total - m_lastSidebarWidth, detailMinimumWidth)});
    }
}

} // namespace Ombrel
