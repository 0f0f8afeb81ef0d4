#pragma once

#include "blocks/WireText.h"
#include "blocks/diagram/WireProbe.h"
#include "circuit/Circuit.h"
#include "desktop/Desk.h"

#include <memory>

namespace quorvik
{

class BlockForm;
class ValueBox;

/**
 * Follows signals from one block window: tells the value of the wire under the pointer, lights its path in
 * all open windows, leads from the names at the ends of wires to where the signal goes on, and opens the menu
 * of a value box. At rest it only greys the wires whose values are not the drive's any more.
 */
class SignalFollower : public QObject
{
    Q_OBJECT

public:
    /** The form has its sheet, labels and boxes already; its view shows the sheet. */
    SignalFollower(Desk &desk, BlockForm &form, DiagramView &view);

    /** Follows a box of a row; the row may come to show another parameter. */
    void AddBox(ValueBox *box, int index);
    /** Brings all that is shown up to the table. */
    void Tick();
    /** Ends what this window lights, here and in the others. */
    void End();
    /** Lights the path of a row's box, and tells its value; ends it where it is lit already. */
    void FollowBox(int index);

    /** Lights what of a path lies in this window; an empty path puts all out. */
    void Light(const Circuit &circuit, const CircuitPath &path);
    void Darken();

    /** The window in which the signal of a text at a wire's end goes on; empty for none. */
    QString WindowBeyond(int text) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /** What is followed: a wire of the net, or a box by its row. */
    struct Followed {
        int element = -1; ///< of the drawing
        int row = -1;     ///< index
        bool operator==(const Followed &) const = default;
        bool IsNothing() const { return element < 0 && row < 0; }
    };

    void Follow(const Followed &what);
    void ShowTag(QPoint place, QRect around = {});
    QString Text();
    QList<QRect> EndsOf(int element) const;
    CircuitPath PathOf(const Circuit &circuit, int block) const;
    void LightEverywhere();
    void GreyWires();
    void Jump(int text);
    bool HandleBoxKey(int index, int key, Qt::KeyboardModifiers modifiers);
    void ShowMenu(int index, const QPoint &globalPlace);
    void ShowWireMenu(int element, const QPoint &globalPlace);
    int ParamOf(int index) const;
    const NetValues &Values();
    int IndexOfBox(const QObject *box) const;
    QRect PlaceOf(int index) const;

    Desk &desk_;
    BlockForm &form_;
    DiagramView &view_;
    Drawing &drawing_;
    QString window_;
    WireText::WiresInto into_;
    WireProbe *probe_;
    WireTag *tag_;
    std::unique_ptr<NetValues> values_; ///< made when it is first asked for
    std::vector<ValueBox *> boxes_;     ///< by index of their row
    Followed followed_;
    QPoint place_; ///< by which the tag stands
    QRect around_; ///< what it must not cover
    bool isAnyFaint_ = false;
};

} // namespace quorvik
