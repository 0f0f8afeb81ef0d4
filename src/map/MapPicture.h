#pragma once

#include "blocks/DriveCircuit.h"
#include "link/DriveLink.h"
#include "link/ValueStates.h"
#include "map/MapPainter.h"
#include "model/ParameterTable.h"

#include <QStringList>

namespace quorvik
{

/**
 * The map of a set that is not the open one, for paper: the blocks between the reference and the motor and
 * those that a link ties in, the wires between them, and no values. Blocks that have no part are left out.
 */
class MapPicture
{
public:
    /** @param table holds the set's selectors. */
    explicit MapPicture(const ParameterTable &table);

    /** Of what is drawn, in pixels at zoom 1. */
    QSizeF Size() const { return used_.size(); }
    /** Titles of the blocks that are drawn. */
    QStringList Blocks() const;
    /** Draws it at the painter's origin, in zoom 1, on white. */
    void Paint(QPainter &painter) const;

private:
    ParameterTable table_;
    DriveLink link_{table_};
    ValueStates states_{table_, link_};
    DriveCircuit circuit_{table_};
    MapModel model_{table_, states_};
    MapLayout layout_;
    MapLight light_;
    QRectF used_;
};

} // namespace quorvik
