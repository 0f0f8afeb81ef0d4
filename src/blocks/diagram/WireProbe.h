#pragma once

#include "blocks/diagram/DiagramView.h"

#include <QLabel>
#include <algorithm>
#include <vector>

namespace quorvik
{

/** How far from a wire the pointer still means it, in cells. */
inline constexpr double WireReach = 0.8;

/** The wire that lies nearest to a place in cells, as index of its element; -1 where none is in reach. */
int WireAt(const Drawing &drawing, const QPointF &cell, double reach = WireReach);

/** A small text on a sheet, beside what it tells of. The mouse goes through it. */
class WireTag : public QLabel
{
    Q_OBJECT

public:
    explicit WireTag(QWidget *sheet);

    /**
     * Shows the text near a place of the sheet, in the part of it that is in sight: where it covers nothing,
     * or at least none of the rectangles that must stay clear.
     * @param spared what else should not be covered, beside the controls on the sheet.
     */
    void ShowAt(const QString &text, const QPoint &place, const QList<QRect> &clear,
                const QList<QRect> &spared = {});
};

/**
 * Tells which wire of a sheet the pointer is on, and makes links of the names at the ends of wires. It looks
 * on only: whatever else the sheet does with the mouse stays as it is.
 */
class WireProbe : public QObject
{
    Q_OBJECT

public:
    /** @param parent must go before the view does: it hears what goes on there to the last. */
    WireProbe(DiagramView &view, QObject *parent);

    /** Makes a link of a text of the drawing, reached by Tab, that stands for the wire of its signal. */
    void MakeLink(int text);
    bool IsLink(int text) const { return std::ranges::find(links_, text) != links_.end(); }

Q_SIGNALS:
    /** The pointer is on a wire, or on the name at its end; told at each move. */
    void Pointed(int element, const QPoint &place);
    /** The pointer is on nothing any more. */
    void Left();
    /** A link was clicked, or Enter pressed on it. */
    void Activated(int text);
    /** A menu was asked for on a wire, or on the name at its end. */
    void MenuAsked(int element, const QPoint &globalPlace);
    /** The key for the path was pressed on a link. */
    void PathAsked(int element, const QRect &around);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void HandleSheet(QEvent *event);
    void HandleLabel(int text, QEvent *event);
    bool HandleKey(int text, int key);
    void Underline(QLabel *label, bool isHovered) const;
    int WireOfText(int text) const;
    void Leave();

    DiagramView &view_;
    std::vector<int> links_;
    bool isOn_ = false;
};

} // namespace quorvik
