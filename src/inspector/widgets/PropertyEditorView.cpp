#include "PropertyEditorView.h"

#include "inspector/widgets/InspectorStyle.h"
#include "inspector/widgets/PropertyListView.h"
#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"
#include "workspace/AppPreferences.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QToolButton>
#include <QVBoxLayout>

#include <limits>

namespace Ombrel {

namespace {

constexpr int titleSize = 15;
constexpr int captionSize = 11;
constexpr int titleLines = 3;
constexpr int headerInset = 12;
constexpr int barInset = 12;

QFrame *divider(QWidget *parent)
{
    auto *line = new QFrame(parent);
    line->setObjectName(QStringLiteral("divider"));
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    return line;
}

// Text in the accent colour while enabled; a disabled button keeps the
// style's greyed text.
void setAccentText(QWidget *widget)
{
    QPalette palette = widget->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::ButtonText, InspectorStyle::accent(palette));
        palette.setColor(group, QPalette::WindowText, InspectorStyle::accent(palette));
    }
    widget->setPalette(palette);
}

} // namespace

PropertyEditorView::PropertyEditorView(Workspace &workspace, UndoManager *undoManager,
                                       QWidget *parent)
    : QWidget(parent), m_controller(workspace, undoManager)
{
    setObjectName(QStringLiteral("PropertyEditorView"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildHeader());
    layout->addWidget(divider(this));
    m_list = new PropertyListView(m_controller, this);
    layout->addWidget(m_list, 1);
    layout->addWidget(divider(this));
    layout->addWidget(buildBottomBar());

    connect(&m_controller, &PropertyEditorController::readingChanged, this,
            &PropertyEditorView::refresh);
    connect(&m_controller, &PropertyEditorController::targetChanged, this,
            &PropertyEditorView::refresh);
    connect(&m_controller, &PropertyEditorController::isAddingPropertyChanged, this,
            [this] { m_addButton->setEnabled(!m_controller.isAddingProperty()); });
    connect(&m_controller, &PropertyEditorController::isEditingSelectorChanged, this,
            &PropertyEditorView::updateHeader);
    connect(&m_controller, &PropertyEditorController::selectorTextChanged, this,
            &PropertyEditorView::updateSelectorField);
    connect(&m_controller, &PropertyEditorController::selectorFocusRequested, this, [this] {
        if (!m_selectorField->isVisible())
            return;
        m_selectorField->setFocus(Qt::OtherFocusReason);
        m_selectorField->selectAll();
    });
    connect(&m_controller, &PropertyEditorController::focusReleaseRequested, this, [this] {
        if (QWidget *focus = window()->focusWidget())
            focus->clearFocus();
    });
    connect(&AppPreferences::shared(), &AppPreferences::showColorSwatchesChanged, this,
            &PropertyEditorView::refresh);
    applyPalette();
    refresh();
}

void PropertyEditorView::setTarget(const CSSRulesetPtr &ruleset, const CSSFilePtr &file)
{
    m_controller.setTarget(ruleset, file);
}

QWidget *PropertyEditorView::buildHeader()
{
    auto *header = new QWidget(this);
    header->setObjectName(QStringLiteral("header"));
    header->setAutoFillBackground(true);
    auto *column = new QVBoxLayout(header);
    column->setContentsMargins(headerInset, headerInset, headerInset, headerInset);
    column->setSpacing(4);

    const QFont titleFont = InspectorStyle::monospacedFont(titleSize, QFont::DemiBold);
    m_title = new QLabel(header);
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setFont(titleFont);
    m_title->setWordWrap(true);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setMaximumHeight(titleLines * QFontMetrics(titleFont).lineSpacing());
    m_title->installEventFilter(this);
    column->addWidget(m_title);

    m_selectorField = new QLineEdit(header);
    m_selectorField->setObjectName(QStringLiteral("selectorField"));
    m_selectorField->setFont(titleFont);
    m_selectorField->setPlaceholderText(tr("selector"));
    m_selectorField->setFrame(false);
    m_selectorField->setMaxLength(std::numeric_limits<int>::max());
    m_selectorField->installEventFilter(this);
    m_selectorField->hide();
    connect(m_selectorField, &QLineEdit::textEdited, this,
            [this](const QString &text) { m_controller.setSelectorText(text); });
    column->addWidget(m_selectorField);

    m_subtitle = new QLabel(header);
    m_subtitle->setObjectName(QStringLiteral("subtitle"));
    QFont caption;
    caption.setPixelSize(captionSize);
    m_subtitle->setFont(caption);
    column->addWidget(m_subtitle);
    return header;
}

QWidget *PropertyEditorView::buildBottomBar()
{
    auto *bar = new QWidget(this);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(barInset, barInset, barInset, barInset);
    row->setSpacing(8);

    m_addButton = new QToolButton(bar);
    m_addButton->setText(tr("Add Property"));
    m_addButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_addButton->setIconSize(QSize(13, 13));
    m_addButton->setAutoRaise(true);
    m_addButton->setFocusPolicy(Qt::NoFocus);
    m_addButton->setCursor(Qt::PointingHandCursor);
    connect(m_addButton, &QToolButton::clicked, this, [this] { m_controller.openAddRow(); });
    row->addWidget(m_addButton);
    row->addStretch(1);

    m_sortButton = new QToolButton(bar);
    m_sortButton->setToolTip(tr("Sort Alphabetically"));
    m_sortButton->setIconSize(QSize(11, 11));
    m_sortButton->setAutoRaise(true);
    m_sortButton->setFocusPolicy(Qt::NoFocus);
    m_sortButton->setCursor(Qt::PointingHandCursor);
    connect(m_sortButton, &QToolButton::clicked, this,
            [this] { m_controller.sortPropertiesAlphabetically(); });
    row->addWidget(m_sortButton);
    return bar;
}

void PropertyEditorView::refresh()
{
    m_reading = m_controller.reading();
    const CSSFilePtr file = m_controller.file();
    // The offer is sorted and sifted for colours only when the variables
    // changed, which most keystrokes leave alone.
    const CSSVariables variables = file ? file->variables() : CSSVariables();
    if (!m_variables || m_variables->variables != variables)
        m_variables = VariableOffer::from(variables);
    updateHeader();
    m_list->refresh(m_reading, m_variables);
    m_addButton->setEnabled(!m_controller.isAddingProperty());
    const CSSRulesetPtr ruleset = m_controller.ruleset();
    m_sortButton->setVisible(!m_reading.isMultiSelect);
    m_sortButton->setEnabled(ruleset && ruleset->properties().size() >= 2);
}

void PropertyEditorView::updateHeader()
{
    const CSSRulesetPtr ruleset = m_controller.ruleset();
    const bool multi = m_reading.isMultiSelect;
    const bool editing = m_controller.isEditingSelector();
    QPalette title = m_title->palette();
    title.setColor(QPalette::WindowText, multi ? InspectorStyle::secondary(palette())
                                               : palette().color(QPalette::WindowText));
    m_title->setPalette(title);
    if (multi)
        m_title->setText(tr("%1 rulesets selected").arg(m_reading.selected.size()));
    else
        m_title->setText(ruleset ? ruleset->selector() : QString());
    m_title->setCursor(multi ? Qt::ArrowCursor : Qt::IBeamCursor);
    m_title->setVisible(multi || !editing);
    m_selectorField->setVisible(!multi && editing);
    updateSelectorField();

    const qsizetype count = ruleset ? ruleset->properties().size() : 0;
    m_subtitle->setVisible(!multi);
    m_subtitle->setText(count == 1 ? tr("%1 property").arg(count) : tr("%1 properties").arg(count));
}

void PropertyEditorView::updateSelectorField()
{
    if (m_selectorField->text() != m_controller.selectorText())
        m_selectorField->setText(m_controller.selectorText());
}

bool PropertyEditorView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_title && event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
        if (!m_reading.isMultiSelect)
            m_controller.startSelectorEdit();
        return true;
    }
    if (watched == m_selectorField && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            m_controller.commitRenameSelector();
            return true;
        case Qt::Key_Escape:
            m_controller.cancelSelectorEdit();
            return true;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            m_controller.tabFromSelector();
            return true;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void PropertyEditorView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

void PropertyEditorView::applyPalette()
{
    const QPalette palette = this->palette();
    for (QFrame *line : findChildren<QFrame *>(QStringLiteral("divider"))) {
        QPalette linePalette = line->palette();
        linePalette.setColor(QPalette::Window, InspectorStyle::separator(palette));
        line->setPalette(linePalette);
    }
    QPalette subtitle = m_subtitle->palette();
    subtitle.setColor(QPalette::WindowText, InspectorStyle::secondary(palette));
    m_subtitle->setPalette(subtitle);
    setAccentText(m_addButton);
    m_addButton->setIcon(symbolIcon(QStringLiteral("plus"), 13, InspectorStyle::accent(palette)));
    m_sortButton->setIcon(
        symbolIcon(QStringLiteral("arrow.up.arrow.down"), 11, InspectorStyle::accent(palette)));
    updateHeader();
}

} // namespace Ombrel
