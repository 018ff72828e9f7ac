#include "NodeDelegate.h"

#include "SelectionFade.h"
#include "SelectorEditor.h"
#include "canvas/BackgroundThumbnail.h"
#include "canvas/NodeRoles.h"
#include "model/CSSRuleset.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace Ombrel {

namespace {

constexpr double horizontalPadding = 16;
constexpr double contentSpacing = 6;
constexpr double dotSize = 7;
constexpr double symbolSize = 10;
// The leading-aligned frame of the mark; "/>" is wider than one character.
constexpr double markWidth = 14;
constexpr double selfClosingMarkWidth = 22;
constexpr double photoSymbolSize = 16;

CSSRuleset *rulesetAt(const QModelIndex &index)
{
    return qobject_cast<CSSRuleset *>(index.data(NodeRoles::Ruleset).value<QObject *>());
}

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(float(color.alphaF() * opacity));
    return color;
}

QFont monospaced(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

template<typename Gradient> void setEvenStops(Gradient &gradient, const QList<Color> &colors)
{
    if (colors.size() == 1) {
        gradient.setColorAt(0, colors.first().toQColor());
        gradient.setColorAt(1, colors.first().toQColor());
        return;
    }
    for (qsizetype i = 0; i < colors.size(); ++i)
        gradient.setColorAt(double(i) / double(colors.size() - 1), colors[i].toQColor());
}

} // namespace

// Where the parts of one card go, in the item's coordinates.
struct NodeDelegate::Layout
{
    QRectF card;
    double radius = 0;
    // Between the horizontal paddings, over the card's full height.
    QRectF content;
    // Empty when the card shows no thumbnail.
    QRectF thumbnail;
};

NodeDelegate::NodeDelegate(QObject *parent)
    : QStyledItemDelegate(parent), m_labelFont(monospaced(11, QFont::Medium))
{
    for (int weight = 0; weight < int(m_nameFonts.size()); ++weight)
        m_nameFonts[weight] = monospaced(14, toQFontWeight(FontWeight(weight)));
}

void NodeDelegate::setVariables(const CSSVariables &variables)
{
    m_variables = variables;
}

void NodeDelegate::setFilePath(const QString &path)
{
    m_filePath = path;
}

void NodeDelegate::setShowStyling(bool showStyling)
{
    if (m_showStyling == showStyling)
        return;
    m_showStyling = showStyling;
    Q_EMIT sizeHintChanged(QModelIndex());
}

void NodeDelegate::setColorScheme(ColorScheme scheme)
{
    m_colorScheme = scheme;
}

int NodeDelegate::cardHeight() const
{
    const double padding = m_showStyling ? 14 : 10;
    const double line = QFontMetricsF(m_nameFonts[int(FontWeight::regular)]).height();
    return int(std::ceil(line + 2 * padding)) + 2 * cardMargin;
}

NodeView NodeDelegate::viewOf(const CSSRuleset &ruleset, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    return NodeView{.ruleset = ruleset,
                    .isSelected = index.data(NodeRoles::Selected).toBool(),
                    .variables = m_variables,
                    .filePath = m_filePath,
                    .isEditingSelector = index.data(NodeRoles::EditingSelector).toBool(),
                    .showStyling = m_showStyling,
                    .colorScheme = m_colorScheme,
                    .system = SystemColors::fromPalette(option.palette)};
}

NodeDelegate::Layout NodeDelegate::layoutOf(const QRectF &itemRect, const NodeBody &body) const
{
    Layout layout;
    layout.card = itemRect.adjusted(cardMargin, cardMargin, -cardMargin, -cardMargin);
    if (body.indentLevel >= 1)
        layout.card.setLeft(
            std::min(layout.card.left() + body.indentLevel * indentStep, layout.card.right()));
    layout.radius =
        std::clamp(body.cornerRadius, 0.0, std::min(layout.card.width(), layout.card.height()) / 2);
    layout.content = layout.card.adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    if (body.showsThumbnail) {
        layout.thumbnail = QRectF(layout.card.right() - thumbnailWidth, layout.card.top(),
                                  thumbnailWidth, layout.card.height());
        layout.content.setRight(layout.thumbnail.left() - 1 - horizontalPadding);
    }
    return layout;
}

void NodeDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    const CSSRuleset *ruleset = rulesetAt(index);
    if (!ruleset)
        return;
    NodeView view = viewOf(*ruleset, option, index);
    const std::optional<double> passing =
        m_selectionFade ? m_selectionFade->shown(ruleset->id()) : std::nullopt;
    const double selection = passing.value_or(view.isSelected ? 1 : 0);
    view.isSelected = selection >= 1;
    const NodeBody body = view.body();
    // While the card passes into or out of the selection, the selected look
    // lies over the plain one at the passage's opacity.
    std::optional<NodeBody> selectedBody;
    if (selection > 0 && selection < 1) {
        NodeView selected = view;
        selected.isSelected = true;
        selectedBody = selected.body();
    }
    const Layout layout = layoutOf(QRectF(option.rect), body);
    const QRectF &card = layout.card;
    if (card.width() <= 0 || card.height() <= 0)
        return;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);

    if (selectedBody)
        paintShadow(painter, card, layout.radius, selectedBody->shadowColor, selection);
    else if (body.shadowColor.alpha() > 0)
        paintShadow(painter, card, layout.radius, body.shadowColor, 1);

    QPainterPath shape;
    shape.addRoundedRect(card, layout.radius, layout.radius);
    painter->fillPath(shape, body.background);

    double nameRight = layout.content.right();
    if (body.dotColor)
        nameRight -= contentSpacing + dotSize;
    double x = layout.content.left();
    const double centreY = card.center().y();
    if (view.isEditingSelector) {
        x = nameRight;
    } else {
        const QColor markColor = withOpacity(body.textColor, 0.5);
        if (body.prefixSymbol) {
            m_symbols.paint(painter, *body.prefixSymbol,
                            QRectF(x, centreY - symbolSize / 2, symbolSize, symbolSize), symbolSize,
                            markColor);
            x += markWidth + contentSpacing;
        } else {
            const double frame =
                body.prefixLabel == QLatin1String("/>") ? selfClosingMarkWidth : markWidth;
            painter->setFont(m_labelFont);
            painter->setPen(markColor);
            painter->drawText(QRectF(x, card.top(), frame, card.height()),
                              Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                              body.prefixLabel);
            x += frame + contentSpacing;
        }
        const QFont &nameFont = m_nameFonts[int(body.fontWeight)];
        const QFontMetricsF metrics(nameFont);
        const QString name =
            metrics.elidedText(body.displayName, Qt::ElideRight, std::max(0.0, nameRight - x));
        painter->setFont(nameFont);
        painter->setPen(body.textColor);
        painter->drawText(QRectF(x, card.top(), std::max(0.0, nameRight - x), card.height()),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
        x += metrics.horizontalAdvance(name);
    }
    if (body.dotColor) {
        const QRectF dot(x + contentSpacing, centreY - dotSize / 2, dotSize, dotSize);
        painter->setPen(Qt::NoPen);
        painter->setBrush(*body.dotColor);
        painter->drawEllipse(dot);
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(QColor(0, 0, 0, 38), 0.5));
        painter->drawEllipse(dot.adjusted(0.25, 0.25, -0.25, -0.25));
    }

    if (!layout.thumbnail.isEmpty()) {
        painter->fillRect(QRectF(layout.thumbnail.left() - 1, card.top(), 1, card.height()),
                          withOpacity(view.system.label, 0.07));
        paintThumbnail(painter, *ruleset, layout.thumbnail, shape, view.system);
    }

    paintBorder(painter, card, layout.radius, body, selectedBody ? 1 - selection : 1);
    if (selectedBody)
        paintBorder(painter, card, layout.radius, *selectedBody, selection);
    painter->restore();
}

void NodeDelegate::paintBorder(QPainter *painter, const QRectF &card, double radius,
                               const NodeBody &body, double opacity)
{
    const double strokeOpacity = body.borderOpacity * opacity;
    if (strokeOpacity <= 0)
        return;
    QPen pen(withOpacity(body.borderColor, strokeOpacity), body.borderWidth);
    pen.setCapStyle(Qt::FlatCap);
    if (!body.borderDash.isEmpty()) {
        QList<qreal> pattern;
        for (const double length : body.borderDash)
            pattern.append(length / body.borderWidth);
        pen.setDashPattern(pattern);
    }
    const double inset = body.borderWidth / 2;
    const double innerRadius = std::max(0.0, radius - inset);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(card.adjusted(inset, inset, -inset, -inset), innerRadius, innerRadius);
}

void NodeDelegate::paintShadow(QPainter *painter, const QRectF &card, double radius,
                               const QColor &color, double opacity) const
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    // The corner's extent: the margin and the whole curve of the card.
    const int corner = int(std::ceil(radius)) + cardMargin;
    const QString key = QStringLiteral("%1/%2/%3").arg(radius).arg(color.rgba(), 0, 16).arg(ratio);
    QPixmap tile = m_shadows.value(key);
    if (tile.isNull()) {
        // Rings fading outwards in the margin around a card of exactly two
        // corners, drawn once; cards then take its corners and stretch its
        // edges.
        const int side = 2 * corner + 1;
        tile = QPixmap(QSize(side, side) * ratio);
        tile.setDevicePixelRatio(ratio);
        tile.fill(Qt::transparent);
        QPainter rings(&tile);
        rings.setRenderHint(QPainter::Antialiasing);
        rings.setBrush(Qt::NoBrush);
        const QRectF inner(cardMargin, cardMargin, side - 2 * cardMargin, side - 2 * cardMargin);
        for (int ring = 1; ring <= cardMargin; ++ring) {
            const double grow = ring - 0.5;
            rings.setPen(QPen(withOpacity(color, double(cardMargin + 1 - ring) / cardMargin), 1));
            rings.drawRoundedRect(inner.adjusted(-grow, -grow, grow, grow), radius + grow,
                                  radius + grow);
        }
        rings.end();
        if (m_shadows.size() >= 64)
            m_shadows.clear();
        m_shadows.insert(key, tile);
    }

    const QRectF outer = card.adjusted(-cardMargin, -cardMargin, cardMargin, cardMargin);
    const double middleWidth = std::max(0.0, outer.width() - 2 * corner);
    const double middleHeight = std::max(0.0, outer.height() - 2 * corner);
    const double far = corner + 1;
    const auto piece = [&](double x, double y, double w, double h, double sx, double sy, double sw,
                           double sh) {
        if (w > 0 && h > 0)
            painter->drawPixmap(QRectF(x, y, w, h), tile,
                                QRectF(sx * ratio, sy * ratio, sw * ratio, sh * ratio));
    };
    const double left = outer.left();
    const double top = outer.top();
    const double before = painter->opacity();
    painter->setOpacity(before * opacity);
    const double right = outer.right() - corner;
    const double bottom = outer.bottom() - corner;
    piece(left, top, corner, corner, 0, 0, corner, corner);
    piece(right, top, corner, corner, far, 0, corner, corner);
    piece(left, bottom, corner, corner, 0, far, corner, corner);
    piece(right, bottom, corner, corner, far, far, corner, corner);
    piece(left + corner, top, middleWidth, corner, corner, 0, 1, corner);
    piece(left + corner, bottom, middleWidth, corner, corner, far, 1, corner);
    piece(left, top + corner, corner, middleHeight, 0, corner, corner, 1);
    piece(right, top + corner, corner, middleHeight, far, corner, corner, 1);
    painter->setOpacity(before);
}

void NodeDelegate::paintThumbnail(QPainter *painter, const CSSRuleset &ruleset, const QRectF &area,
                                  const QPainterPath &cardShape, const SystemColors &system) const
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    const QSize pixels = (area.size() * ratio).toSize();
    const BackgroundThumbnail thumbnail = BackgroundThumbnail::of(
        BackgroundImage::resolvedBackgroundValue(ruleset, m_variables), m_filePath, pixels);
    if (thumbnail.kind == BackgroundThumbnail::Kind::none || pixels.isEmpty())
        return;

    QPainterPath areaPath;
    areaPath.addRect(area);
    const QPainterPath clipped = cardShape.intersected(areaPath);

    switch (thumbnail.kind) {
    case BackgroundThumbnail::Kind::none:
        break;
    case BackgroundThumbnail::Kind::image: {
        // Scaled to fill: the centre of the image, covering the whole area.
        const QImage scaled = thumbnail.image.scaled(pixels, Qt::KeepAspectRatioByExpanding,
                                                     Qt::SmoothTransformation);
        const QImage filling = scaled.copy(QRect(
            QPoint((scaled.width() - pixels.width()) / 2, (scaled.height() - pixels.height()) / 2),
            pixels));
        QBrush brush(filling);
        brush.setTransform(QTransform(1 / ratio, 0, 0, 1 / ratio, area.left(), area.top()));
        painter->fillPath(clipped, brush);
        break;
    }
    case BackgroundThumbnail::Kind::photoMark:
        painter->fillPath(clipped, withOpacity(system.secondary, 0.08));
        m_symbols.paint(painter, QStringLiteral("photo"), area, photoSymbolSize, system.secondary);
        break;
    case BackgroundThumbnail::Kind::linearGradient: {
        QLinearGradient gradient(area.center().x(), area.top(), area.center().x(), area.bottom());
        setEvenStops(gradient, thumbnail.colors);
        painter->fillPath(clipped, gradient);
        break;
    }
    case BackgroundThumbnail::Kind::radialGradient: {
        QRadialGradient gradient(area.center(), BackgroundThumbnail::radialEndRadius);
        setEvenStops(gradient, thumbnail.colors);
        painter->fillPath(clipped, gradient);
        break;
    }
    }
}

QSize NodeDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const CSSRuleset *ruleset = rulesetAt(index);
    const int indent =
        ruleset ? std::max(0, SelectorKind::of(ruleset->selector()).indentLevel()) : 0;
    // Narrow on purpose: a list view stretches each card to its width.
    return {indent * indentStep + 2 * cardMargin + 120, cardHeight()};
}

QWidget *NodeDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    auto *editor = new SelectorEditor(parent);
    editor->setFont(m_nameFonts[int(FontWeight::semibold)]);
    const QPersistentModelIndex card(index);
    // The delegate is const here but its signals are not: the editor's
    // reports are the delegate's own.
    auto *self = const_cast<NodeDelegate *>(this);
    connect(editor, &QLineEdit::textEdited, self,
            [self, card](const QString &text) { Q_EMIT self->selectorEdited(card, text); });
    connect(editor, &SelectorEditor::committed, self,
            [self, card, editor] { Q_EMIT self->selectorCommitted(card, editor->text()); });
    connect(editor, &SelectorEditor::cancelled, self,
            [self, card] { Q_EMIT self->selectorCancelled(card); });
    return editor;
}

void NodeDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *field = qobject_cast<SelectorEditor *>(editor);
    const CSSRuleset *ruleset = rulesetAt(index);
    if (!field || !ruleset)
        return;
    field->start(ruleset->selector());
    // The card may restyle while its selector is edited.
    QStyleOptionViewItem option;
    option.palette = field->parentWidget() ? field->parentWidget()->palette() : field->palette();
    QPalette palette = field->palette();
    const QColor text = viewOf(*ruleset, option, index).body().textColor;
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::PlaceholderText, withOpacity(text, 0.5));
    field->setPalette(palette);
}

void NodeDelegate::setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const
{
    // The rename goes through the canvas's operation, never through the model.
}

void NodeDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    const CSSRuleset *ruleset = rulesetAt(index);
    if (!ruleset)
        return;
    const NodeBody body = viewOf(*ruleset, option, index).body();
    const Layout layout = layoutOf(QRectF(option.rect), body);
    double right = layout.content.right();
    if (body.dotColor)
        right -= contentSpacing + dotSize;
    const double height = std::min<double>(editor->sizeHint().height(), layout.card.height());
    editor->setGeometry(QRectF(layout.content.left(), layout.card.center().y() - height / 2,
                               std::max(0.0, right - layout.content.left()), height)
                            .toRect());
}

bool NodeDelegate::eventFilter(QObject *object, QEvent *event)
{
    return QObject::eventFilter(object, event);
}

} // namespace Ombrel
