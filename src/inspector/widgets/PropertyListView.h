#pragma once

#include "inspector/PropertyEditorController.h"
#include "inspector/VariableOffer.h"
#include "inspector/widgets/AddPropertyRow.h"

#include <QAbstractScrollArea>
#include <QHash>
#include <QPointer>

#include <utility>

namespace Ombrel {

class PropertyRowView;

// The scrolling list of the inspector: one PropertyRowView per listed
// property, each under a divider, at a pitch of 41 (a row of 40 and its
// divider), then the add row while the panel adds a property.
//
// Only the rows in view exist, kept by property id from one refresh to the
// next, so a refresh never rebuilds the row being typed in; the row being
// edited lives on when scrolled away. A press anywhere on the list, rows
// included but not their fields and buttons, commits what is in progress;
// a drag of a row moves it one place per pitch, with a line where it will
// land and the row itself faded.
class PropertyListView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    static constexpr int rowPitch = PropertyEditorController::rowPitch;

    explicit PropertyListView(PropertyEditorController &controller, QWidget *parent = nullptr);

    // Shows the properties of a reading of the selection with the file's
    // variables.
    void refresh(const SelectionReading &reading, const VariableOfferPtr &variables);

    // The listed properties, as last refreshed.
    const CSSPropertyList &properties() const { return m_properties; }
    // The row of the listed property at index, scrolled into view first.
    PropertyRowView *rowAt(int index);
    // The row of the listed property at index if it exists now.
    PropertyRowView *existingRowAt(int index) const;
    int rowCount() const { return int(m_properties.size()); }
    AddPropertyRow *addRow() const { return m_addRow; }
    // Where the drop line stands, in viewport coordinates; empty when none.
    QRect dropLineRect() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    using RowKey = std::pair<QUuid, int>;

    RowKey keyAt(int index) const;
    int indexOf(const QUuid &id) const;
    PropertyRowView *makeRow(int index);
    void layoutRows();
    void updateScrollRange();
    void followEditing();
    void followDrag();
    void followAdding();
    void followFocusRequest();

    PropertyEditorController &m_controller;
    CSSPropertyList m_properties;
    QSet<QString> m_mixedNames;
    VariableOfferPtr m_variables;
    QHash<RowKey, PropertyRowView *> m_rows;
    QPointer<AddPropertyRow> m_addRow;
    QWidget *m_dropLine;
};

} // namespace Ombrel
