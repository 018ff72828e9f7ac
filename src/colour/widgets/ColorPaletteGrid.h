#pragma once

#include "colour/ColorLists.h"

#include <QWidget>

#include <functional>

class QToolButton;

namespace Ombrel {

class ColorPickerModel;

// A page of palette colours: the list the model's paletteIndex names, up to
// 60 of its colours as 20-point cells in rows of ten, under a header that
// turns the pages when there is more than one list. A press on a cell hands
// its hex to onPick. The cells are painted by one widget. The lists are the
// caller's and must outlive the grid.
class ColorPaletteGrid : public QWidget
{
    Q_OBJECT

public:
    using PickCallback = std::function<void(const QString &hex)>;

    static constexpr int cellSide = 20;
    static constexpr int cellSpacing = 4;
    static constexpr int rowWidth = paletteColumns * cellSide + (paletteColumns - 1) * cellSpacing;

    ColorPaletteGrid(ColorPickerModel &model, const QList<ColorList> &lists, PickCallback onPick,
                     QWidget *parent = nullptr);

    // The entries of the page shown.
    const QList<ColorPaletteEntry> &entries() const { return m_entries; }
    // The header; none with a single list.
    QWidget *header() const { return m_header; }
    QToolButton *previousButton() const { return m_previous; }
    QToolButton *nextButton() const { return m_next; }
    QString title() const;
    // The widget the cells are painted in, and where entry index lies in it.
    QWidget *cellsWidget() const;
    static QRect cellRect(int index);

protected:
    void changeEvent(QEvent *event) override;

private:
    class TitleLabel;
    class PaletteCells;

    void showPage();
    void drawChevrons();

    ColorPickerModel &m_model;
    const QList<ColorList> &m_lists;
    PickCallback m_onPick;
    QList<ColorPaletteEntry> m_entries;
    QWidget *m_header = nullptr;
    QToolButton *m_previous = nullptr;
    QToolButton *m_next = nullptr;
    TitleLabel *m_title = nullptr;
    PaletteCells *m_cells = nullptr;
};

} // namespace Ombrel
