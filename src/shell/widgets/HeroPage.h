#pragma once

class QLabel;
class QString;
class QVBoxLayout;
class QWidget;

namespace Ombrel {

// Lays out one of the full-window pages (welcome, empty folder): on the window
// background, with margins of 60, a centred column of glyph, title (28,
// demibold) and subtitle (secondary, 15) above the page's own content, the
// whole centred vertically. Returns the layout that takes the content, below
// the titles.
QVBoxLayout *layOutHeroPage(QWidget *page, QWidget *glyph, const QString &title, QLabel *subtitle);

} // namespace Ombrel
