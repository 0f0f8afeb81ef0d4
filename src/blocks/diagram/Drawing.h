#pragma once

#include "blocks/diagram/Geometry.h"
#include "blocks/diagram/ShapeLook.h"

#include <QList>
#include <QString>
#include <functional>
#include <initializer_list>
#include <limits>

namespace quorvik
{

inline constexpr double ContactRadius = 0.5; ///< of the circle of a contact, in cells

/** The vocabulary of block diagrams. */
enum class Symbol {
    Wire,       ///< orthogonal line, with an arrow head where it feeds an element
    Dot,        ///< where wires meet
    Terminal,   ///< a screw of the terminal strip
    Sum,        ///< summing point, with a sign at each input
    Multiplier, ///< product of its inputs
    Gain,       ///< triangle with a factor, of numbers
    Inverter,   ///< triangle with a bubble, of logic values
    And,
    Nand,
    Or,
    Latch,    ///< set by the rising edge at S, reset as long as R is true
    Function, ///< box with a caption
    Filter,
    Scale, ///< box with the factor between two units
    Pi,
    Delay,
    Comparator, ///< box with the relation between its left input and its level
    Limiter,
    Ramp,
    Hysteresis,
    DeadBand, ///< nothing passes within the band, all outside it
    Curve,    ///< straight line between two calibration points
    Absolute, ///< box with a V-shaped characteristic
    Switch,   ///< arm from a pivot to one of several contacts
    Contact,  ///< make contact: the arm touches or hangs
    Coil,     ///< relay coil
    Roll,     ///< wound material around its core, and rollers
    Limit,    ///< line that turns thick while the limit acts
    Link,     ///< dashed line from a selector to the arm that it moves
    Guide,    ///< dashed line between things that belong together
    Frame,    ///< outline of a group
};

/** Text that a drawing shows; the view makes a label of it. */
struct DrawnText {
    QString name; ///< object name, may be empty
    QString text;
    QPointF at; ///< left, centre or right of the line of text, by align; its vertical centre
    Qt::Alignment align = Qt::AlignHCenter;
    bool bold = false;
    QString toolTip = {};
    int node = -1;            ///< of the signal that it names, -1 for none
    QString longestText = {}; ///< what room is kept for, where the text changes
};

/** One element of a drawing, and its live state. */
struct Element {
    Symbol symbol = Symbol::Wire;
    QString name = {}; ///< may be empty; what moves has one
    QRectF rect = {};
    QPolygonF points = {}; ///< wires: the corners; switches and contacts: pivot, then the contacts;
                           ///< rolls: centre, rim of the core
    QString text = {};     ///< signs of a summing point, factor of a gain
    bool arrow = false;
    int state = 0; ///< switches: contact touched, -1 none; contacts: 1 closed; limits: line width 1 or 5;
                   ///< latches: 1 set; curves and limiters: 0 on one side of zero only, 1 on both
    bool visible = true;
    bool isFaint = false; ///< what passes it is not known to be so any more
    bool isLit = false;   ///< on the path that the user follows
    int partner = -1;     ///< links: index of the switch
    int node = -1;        ///< its index in the net, -1 where no signal passes it
    int edge = -1;        ///< wires and links: their index in the net
    int shownNode = -1;   ///< of the value that is on its way to its level, -1 where there is none
    int levelNode = -1;
    ShapeLook look = {}; ///< what it shows of the values around it
};

class Drawing;

/** Handle on a text that changes. */
class LiveText
{
public:
    LiveText() = default;
    LiveText(Drawing *drawing, int index)
        : drawing_(drawing)
        , index_(index)
    {
    }

    void Set(const QString &text) const;

private:
    Drawing *drawing_ = nullptr;
    int index_ = -1;
};

/** Handle on an element that a tick moves. */
class LivePart
{
public:
    LivePart() = default;
    LivePart(Drawing *drawing, int index)
        : drawing_(drawing)
        , index_(index)
    {
    }

    /** Sets contact, closure or line width, as Element::state tells. */
    void Set(int state) const;
    void Show(bool visible) const;
    int Index() const { return index_; }

    /** Where a wire meets the pivot of a switch or a contact. */
    Port Pivot() const;
    /** Where a wire meets contact i, from 0 on. */
    Port Contact(int i) const;
    /** The area that arm and contacts take, with room for a hand. */
    QRectF Area() const;

private:
    Drawing *drawing_ = nullptr;
    int index_ = -1;
};

/**
 * A block diagram as data: elements with places in grid cells, built once and then moved by state, and the
 * net of the signals that they stand for. It paints nothing. What stands on a wire is placed by its left end
 * and the height of the wire; wires are drawn in the direction of their signal.
 */
class Drawing
{
public:
    static constexpr double HalfWay = std::numeric_limits<double>::quiet_NaN();

    /** Told when an element's look has changed. */
    std::function<void(const Element &)> Changed;
    /** Told when a text has changed, with its index. */
    std::function<void(int)> TextChanged;

    /** The signal paths that the elements stand for. */
    const Net &TheNet() const { return net_; }
    /** The place of a parameter's value box. Which parameter it shows may change. */
    Shape Value(const QRectF &rect, int p);
    void SetParameter(int node, int p) { net_.nodes[std::size_t(node)].param = p; }
    /** What a count of a value's parameter stands for on its wires; see Node::perCount. */
    void SetScale(const Shape &value, double perCount)
    {
        net_.nodes[std::size_t(value.Node())].perCount = perCount;
    }
    /** A rule for what an element makes of its inputs, in place of its kind's. */
    void Gives(const Shape &shape, NetFormula formula);
    /** Limits of a limiter at which no wire brings any. */
    void Holds(const Shape &limiter, double lowest, double highest);
    /** A box shows how far a value is on its way to its level: to its clamp, or to the end of its time. */
    void ShowsLevel(const Shape &shape, const Shape &value, const Shape &level);
    /** A box from which values go on together, as a set; see NodeKind::Group. */
    Shape Group(const QRectF &rect, const QString &name, std::initializer_list<Shape> members);

    /** @param bend see RouteWire(). */
    void Wire(const Port &from, const Port &to, double bend = HalfWay) { AddWire(from, to, bend, true); }
    /** A wire without an arrow head: to a dot, a contact or a pivot. */
    void Line(const Port &from, const Port &to, double bend = HalfWay) { AddWire(from, to, bend, false); }
    /** Wires from each shape's right to the next one's left. */
    void Chain(std::initializer_list<Shape> shapes);
    /** A wire from one selector to another, whose parameters are joined. */
    void ChosenWire(const Port &from, const Port &to)
    {
        AddWire(from, to, HalfWay, true, Edge::Kind::Choice);
    }
    /** A wire along given corners between its ends. */
    void Path(const Port &from, const QList<QPointF> &corners, const Port &to, bool arrow);
    /** A line that carries no signal. */
    void Stroke(const QPolygonF &corners, bool arrow);
    Port Dot(const QPointF &at);

    /** A screw at the end of a wire, with its number and what it is for beside it. */
    Shape Terminal(const QPointF &centre, int number, const QString &labelName, const QString &role);

    /** @param signs text with one sign for the left, top, right and bottom input each, blank for none. */
    Shape Sum(const QPointF &centre, const QString &signs) { return Round(Symbol::Sum, centre, signs); }
    Shape Multiplier(const QPointF &centre) { return Round(Symbol::Multiplier, centre, {}); }
    Shape Gain(const QPointF &left, const QString &factor)
    {
        const Shape shape = Box(Symbol::Gain, left, {6, 7}, {}, factor);
        net_.nodes.back().number = factor.toDouble();
        return shape;
    }
    Shape Inverter(const QPointF &left, const QString &name = {})
    {
        return Box(Symbol::Inverter, left, {5, 5}, name);
    }
    /** Its inputs are SetInput() and ResetInput(), LatchReach above and below its middle. */
    Shape Latch(const QString &name, const QPointF &left);
    static constexpr double LatchReach = 4.5;
    static Port SetInput(const Shape &latch) { return latch.LeftAt(latch.Left().at.y() - LatchReach); }
    static Port ResetInput(const Shape &latch) { return latch.LeftAt(latch.Left().at.y() + LatchReach); }
    Shape And(const QPointF &left, const QString &labelName = {})
    {
        return Captioned(Symbol::And, left, {7, 8},
                         {QStringLiteral("AND"), labelName, QStringLiteral("And Function"), {-0.2, 0}});
    }
    Shape Nand(const QPointF &left, const QString &labelName = {})
    {
        return Captioned(Symbol::Nand, left, {8, 8}, {QStringLiteral("NAND"), labelName, {}, {-0.7, 0}});
    }
    Shape Or(const QPointF &left, const QString &labelName = {})
    {
        return Captioned(Symbol::Or, left, {7, 8},
                         {QStringLiteral("OR"), labelName, QStringLiteral("Or Function"), {-0.2, 0}});
    }
    Shape Limiter(const QPointF &left, const QString &name = {});
    Shape Ramp(const QPointF &left, const QSizeF &size = {8, 8}) { return Box(Symbol::Ramp, left, size); }
    Shape Hysteresis(const QPointF &left) { return Box(Symbol::Hysteresis, left, {8, 6}); }
    Shape DeadBand(const QPointF &left) { return Box(Symbol::DeadBand, left, {8, 6}); }
    Shape Curve(const QPointF &left, const QSizeF &size, const QString &name = {})
    {
        return Box(Symbol::Curve, left, size, name);
    }
    Shape Absolute(const QPointF &left, const QString &labelName = {})
    {
        return Captioned(
            Symbol::Absolute, left, {7, 6},
            {QStringLiteral("ABS"), labelName, QStringLiteral("Absolute Value Function"), {0, 1.7}});
    }
    Shape Coil(const QPointF &left) { return Box(Symbol::Coil, left, {5, 4}); }
    /** A box with its caption in the middle. */
    Shape Function(const QPointF &left, const QSizeF &size, const QString &caption,
                   const QString &labelName = {})
    {
        return Captioned(Symbol::Function, left, size, {caption, labelName});
    }
    Shape Filter(const QPointF &left, const QString &labelName = {})
    {
        return Captioned(Symbol::Filter, left, {9, 5}, {QStringLiteral("Filter"), labelName});
    }
    /** A change of units that only the drive knows. */
    Shape Scale(const QPointF &left, const QString &caption)
    {
        return Captioned(Symbol::Scale, left, {10, 5}, {caption, {}});
    }
    /** From percent: 100 % are the factor. */
    Shape TimesFactor(const QPointF &left, double factor);
    /** From percent: 100 % are the value of a parameter. */
    Shape TimesParameter(const QPointF &left, int p);
    /** To percent: the value of a parameter is 100 %. */
    Shape ByParameter(const QPointF &left, int p);
    Shape Pi(const QPointF &left, const QSizeF &size)
    {
        return Captioned(Symbol::Pi, left, size, {QStringLiteral("PI"), QStringLiteral("LabelPI")});
    }
    Shape Delay(const QPointF &left, const QString &caption, const QString &labelName = {})
    {
        return Captioned(Symbol::Delay, left, {12, 6}, {caption, labelName});
    }
    /** @param relation of the left input to the level, such as ">". */
    Shape Comparator(const QPointF &left, const QString &relation, const QString &labelName = {},
                     double height = 6)
    {
        return Captioned(Symbol::Comparator, left, {8, height}, {relation, labelName});
    }
    /** A roll of material; a core as large as the roll makes a bare roller of it. */
    Shape Roll(const QPointF &centre, double radius, double coreRadius);
    void Frame(const QRectF &rect, const QString &title = {});

    /** An arm between contacts. Its state is the index of the contact touched. */
    LivePart Switch(const QString &name, const QPointF &pivot, const QList<QPointF> &contacts);
    /** A make contact, open at first. */
    LivePart Contact(const QString &name, const QPointF &pivot, const QPointF &contact);
    /** A limit line; its state is its width, 1 or 5. */
    LivePart Limit(const QString &name, const QPolygonF &line);
    /** The handle on a named element that a tick moves, shows or hides. */
    LivePart Part(const QString &name);
    /** A dashed line from a selector's value box to the middle of the arm that it moves. */
    void Link(const Port &from, const LivePart &arm);
    void Guide(const Port &from, const Port &to);

    /** The name of a signal that comes from another block, its text ending here. */
    Port From(const QPointF &end, const QString &text, int p = -1, const QString &labelName = {});
    /** The name of a signal that follows from the drive's state. */
    Port FromState(const QPointF &end, const QString &text, NetFormula formula,
                   const QString &labelName = {});
    /** The name of a signal to which a wire goes on, its text beginning here. */
    void To(const Port &from, const QPointF &begin, const QString &text, int p = -1,
            const QString &labelName = {});
    /** A fixed value that feeds a contact at its right: "0.00%", "False". */
    void Constant(const QString &labelName, const QString &text, const Port &contact);
    /** A text that changes; room is kept for the longest one. */
    LiveText LiveLabel(const QString &name, const QString &text, const QString &longestText,
                       const QPointF &at, Qt::Alignment align, bool bold = false);
    void Label(const QString &name, const QString &text, const QPointF &at,
               Qt::Alignment align = Qt::AlignHCenter, bool bold = false, const QString &toolTip = {});

    const QList<Element> &Elements() const { return elements_; }
    /** What an element does with its signals, of the symbols that have any. */
    static std::optional<NodeKind> KindOf(Symbol symbol);
    const QList<DrawnText> &Texts() const { return texts_; }
    const Element &At(int index) const { return elements_.at(index); }
    /** The element of that name, or null. */
    const Element *Find(const QString &name) const;

    void SetState(int index, int state);
    void SetText(int index, const QString &text);
    void SetLook(int index, const ShapeLook &look);
    void SetVisible(int index, bool visible);
    void SetFaint(int index, bool isFaint);
    void SetLit(int index, bool isLit);

    /** Free end of an element's arm: at a contact, or hanging. */
    static QPointF ArmEnd(const Element &element);
    /** The corners of a link as its arm stands now. */
    QPolygonF LinkLine(const Element &link) const;
    /** All that an element's ink may cover in any state. */
    static QRectF Bounds(const Element &element);

private:
    int Add(Element element);
    void AddWire(const Port &from, const Port &to, double bend, bool arrow,
                 Edge::Kind kind = Edge::Kind::Signal);
    Shape Box(Symbol symbol, const QPointF &left, const QSizeF &size, const QString &name = {},
              const QString &text = {});
    Shape Round(Symbol symbol, const QPointF &centre, const QString &text)
    {
        constexpr double radius = 1.6;
        return Box(symbol, centre - QPointF(radius, 0), {2 * radius, 2 * radius}, {}, text);
    }
    struct Caption {
        QString text;
        QString labelName;
        QString toolTip = {};
        /** From the middle of what carries it. */
        QPointF offset = {};
    };
    Shape Captioned(Symbol symbol, const QPointF &left, const QSizeF &size, const Caption &caption);
    void Announce(int index);
    int Connect(const Port &from, const Port &to, Edge::Kind kind = Edge::Kind::Signal);

    Net net_;
    QList<Element> elements_;
    QList<DrawnText> texts_;
};

} // namespace quorvik
