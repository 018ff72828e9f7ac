#pragma once

#include "CardSymbols.h"
#include "canvas/NodeView.h"
#include "model/CSSVariables.h"

#include <QFont>
#include <QHash>
#include <QPixmap>
#include <QStyledItemDelegate>

#include <array>

namespace Ombrel {

class CSSRuleset;
class SelectionFade;

// Paints each ruleset of the canvas's list as its card and hosts the inline
// selector editor. It reads the card's ruleset, selection and editing state
// from the NodeRoles of the index; the inputs shared by every card of the
// file are set by the canvas through the setters, after which the canvas
// repaints its viewport.
//
// Each item holds its card inset by cardMargin on every side, room for the
// selection shadow that stays within the item's own rectangle, so a view
// shows the gap of spacing s between cards with spacing s - 2 * cardMargin.
//
// The editor is the canvas's to open and close (a persistent editor while
// the EditingSelector role holds): the delegate only reports what the user
// did in it through its signals.
class NodeDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int cardMargin = 3;
    // Width of one indent step, and of the thumbnail at the card's end.
    static constexpr int indentStep = 20;
    static constexpr int thumbnailWidth = 56;

    explicit NodeDelegate(QObject *parent = nullptr);

    // CSSFile::variables() of the file on show.
    void setVariables(const CSSVariables &variables);
    // The stylesheet's path, base of relative image paths; empty for none.
    void setFilePath(const QString &path);
    // AppPreferences::showNodeStyling. Cards change height with it.
    void setShowStyling(bool showStyling);
    // Light or dark, as colorSchemeOf() reads the view's palette.
    void setColorScheme(ColorScheme scheme);
    // The passage of cards into and out of their selected look, which must
    // outlive the delegate's painting; without one a card shows its
    // selection at once.
    void setSelectionFade(const SelectionFade *fade) { m_selectionFade = fade; }

    bool showStyling() const { return m_showStyling; }

    // Height of a card with its margins; the same for every card.
    int cardHeight() const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

Q_SIGNALS:
    // Each change of the editor's text, as the user types it.
    void selectorEdited(const QModelIndex &index, const QString &text);
    // Return, or focus leaving the editor: the canvas commits the rename.
    void selectorCommitted(const QModelIndex &index, const QString &text);
    // Escape: the canvas ends the rename without a change.
    void selectorCancelled(const QModelIndex &index);

protected:
    // The editor handles its own keys and focus; the default filter would
    // close it behind the canvas's back.
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    struct Layout;

    NodeView viewOf(const CSSRuleset &ruleset, const QStyleOptionViewItem &option,
                    const QModelIndex &index) const;
    Layout layoutOf(const QRectF &itemRect, const NodeBody &body) const;
    void paintShadow(QPainter *painter, const QRectF &card, double radius, const QColor &color,
                     double opacity) const;
    static void paintBorder(QPainter *painter, const QRectF &card, double radius,
                            const NodeBody &body, double opacity);
    void paintThumbnail(QPainter *painter, const CSSRuleset &ruleset, const QRectF &area,
                        const QPainterPath &cardShape, const SystemColors &system) const;

    CSSVariables m_variables;
    QString m_filePath;
    bool m_showStyling = true;
    ColorScheme m_colorScheme = ColorScheme::light;
    const SelectionFade *m_selectionFade = nullptr;

    std::array<QFont, 9> m_nameFonts;
    QFont m_labelFont;
    mutable CardSymbols m_symbols;
    // Shadow pixmaps by radius, colour and scale: few variants, many paints.
    mutable QHash<QString, QPixmap> m_shadows;
};

} // namespace Ombrel
