#include "wizards/basic/BasicPictures.h"

#include "model/TextTables.h"
#include "platform/Numbers.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <span>

namespace quorvik
{

namespace
{

QString OrDash(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("--") : text;
}

void DrawAxes(QPainter &painter, const Ink &ink, QPointF origin, QPointF right, QPointF top)
{
    UsePen(painter, ink.line, 1.4);
    DrawArrow(painter, origin, right);
    DrawArrow(painter, origin, top);
}

} // namespace

void DrawBasicIntro(QPainter &painter, const Ink &ink)
{
    DrawDrive(painter, ink, {60, 40}, 100);
    UsePen(painter, ink.line, 2);
    painter.drawLine(QPointF(92, 175), QPointF(92, 238));
    painter.drawLine(QPointF(128, 175), QPointF(128, 238));
    DrawMachine(painter, ink, {110, 268}, 36, QStringLiteral("M"), true);
    UsePen(painter, ink.line, 4);
    painter.drawLine(QPointF(146, 268), QPointF(176, 268));
    UsePen(painter, ink.accent, 2);
    painter.drawArc(QRectF(158, 244, 36, 48), 60 * 16, -120 * 16);
}

void DrawDriveModel(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    DrawDrive(painter, ink, {45, 50}, 130);
    const std::int32_t code = setup.Table().Value(Param::DriveModel);
    const QRectF plate(35, 250, 150, 44);
    UseShape(painter, ink.line, ink.accent);
    painter.drawRoundedRect(plate, 5, 5);
    painter.setPen(ink.onAccent);
    const bool known = code >= 0 && code <= 32;
    DrawCaption(painter, plate.center(), known ? ModelText(code) : QString(), 16, true);
}

void DrawOperatingMode(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    // Torque and power over speed; what the chosen mode controls is the thick line.
    const QPointF origin(35, 270);
    DrawAxes(painter, ink, origin, {205, 270}, {35, 70});
    painter.setPen(ink.line);
    DrawCaption(painter, {185, 286}, QStringLiteral("Speed"));
    const bool crossover = setup.operatingMode == FieldCrossover;
    const bool torque = setup.operatingMode == Torque;
    const int base = crossover ? 105 : 180;
    UsePen(painter, ink.faint, 1.2);
    painter.setPen(QPen(ink.faint, 1.2, Qt::DashLine));
    painter.drawLine(QPointF(base, 270), QPointF(base, 100));

    QPainterPath torqueLine(QPointF(35, 120));
    torqueLine.lineTo(base, 120);
    if (crossover)
        for (int x = base; x <= 190; x += 5)
            torqueLine.lineTo(x, 270 - 150.0 * (base - 35) / (x - 35));
    UsePen(painter, torque ? ink.accent : ink.line, torque ? 4 : 1.8);
    painter.drawPath(torqueLine);
    DrawCaption(painter, {62, 105}, QStringLiteral("Torque"));

    QPainterPath power(origin);
    power.lineTo(base, 150);
    if (crossover)
        power.lineTo(190, 150);
    UsePen(painter, torque ? ink.faint : ink.accent, torque ? 1.8 : 4);
    painter.drawPath(power);
    DrawCaption(painter, {crossover ? 165.0 : 80.0, crossover ? 138.0 : 195.0}, QStringLiteral("Power"));
    painter.setPen(ink.line);
    DrawCaption(painter, QPointF(base, 302), crossover ? QStringLiteral("Base Speed") : QString());
}

void DrawNameplate(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    const QRectF plate(18, 70, 184, 220);
    UseShape(painter, ink.line, ink.body, 2);
    painter.drawRoundedRect(plate, 8, 8);
    UsePen(painter, ink.line, 1.2);
    for (const QPointF corner : {QPointF(30, 82), QPointF(190, 82), QPointF(30, 278), QPointF(190, 278)}) {
        painter.drawEllipse(corner, 4, 4);
        painter.drawLine(corner - QPointF(3, 3), corner + QPointF(3, 3));
    }
    DrawCaption(painter, {110, 92}, QStringLiteral("DC MOTOR"), 15, true);
    UsePen(painter, ink.faint, 1);
    painter.drawLine(QPointF(30, 108), QPointF(190, 108));

    struct Line {
        const char *caption;
        Entry entry;
        const char *unit;
        bool used;
    };
    const Line lines[] = {{"ARM AMPS", Entry::ArmatureCurrent, "A", true},
                          {"ARM VOLTS", Entry::ArmatureVoltage, "V", true},
                          {"SPEED", Entry::RatedSpeed, "RPM", true},
                          {"FIELD AMPS", Entry::BaseFieldCurrent, "A", setup.UsesBaseFieldCurrent()},
                          {"TOP FIELD", Entry::TopFieldCurrent, "A", setup.UsesTopFieldCurrent()}};
    qreal y = 128;
    for (const Line &line : lines) {
        if (!line.used)
            continue;
        painter.setPen(ink.line);
        DrawCaptionRight(painter, {30, y}, QString::fromLatin1(line.caption), 11);
        const QRectF field(102, y - 10, 56, 20);
        UseShape(painter, ink.faint, ink.ground, 1);
        painter.drawRect(field);
        painter.setPen(ink.line);
        DrawCaption(painter, field.center(), OrDash(setup.Text(line.entry)), 12, true);
        DrawCaptionRight(painter, {163, y}, QString::fromLatin1(line.unit), 11);
        y += 28;
    }
}

namespace
{

// A jumper block as on the board: a row of posts for each setting, a cap on the one chosen.
void DrawJumper(QPainter &painter, const Ink &ink, QPointF corner, const QString &name, int value,
                bool active)
{
    const QRectF block(corner, QSizeF(54, 62));
    UseShape(painter, active ? ink.line : ink.faint, ink.body, 1.2);
    painter.drawRoundedRect(block, 3, 3);
    DrawCaption(painter, {block.center().x(), block.top() + 11}, name, 11, true);
    for (int post = 0; post < 2; ++post) {
        const QPointF centre(block.left() + 17 + post * 20, block.top() + 29);
        UseShape(painter, active ? ink.line : ink.faint, ink.faint, 1);
        painter.drawRect(QRectF(centre.x() - 3, centre.y() - 3, 6, 6));
    }
    if (active && value != 0) {
        UseShape(painter, ink.line, ink.accent, 1.2);
        painter.drawRoundedRect(QRectF(block.left() + 10, block.top() + 22, 34, 14), 4, 4);
    }
    painter.setPen(active ? ink.line : ink.faint);
    DrawCaption(painter, {block.center().x(), block.bottom() - 11},
                active ? QString::number(value) : QStringLiteral("--"), 13, true);
}

} // namespace

void DrawFeedback(QPainter &painter, const Ink &ink, const BasicSetup &setup, const TachJumpers &jumpers)
{
    const bool tach = setup.feedback == TachometerFeedback;
    const bool encoder = setup.feedback == EncoderFeedback;
    const bool armature = setup.feedback == ArmatureFeedback;
    DrawDrive(painter, ink, {20, 24}, 58);

    UsePen(painter, armature ? ink.accent : ink.line, armature ? 3.5 : 1.6);
    painter.drawLine(QPointF(42, 103), QPointF(42, 132));
    painter.drawLine(QPointF(56, 103), QPointF(56, 132));
    DrawMachine(painter, ink, {49, 156}, 25, QStringLiteral("M"), armature);
    UsePen(painter, ink.line, 4);
    painter.drawLine(QPointF(74, 156), QPointF(128, 156));
    DrawMachine(painter, ink, {148, 156}, 20, encoder ? QStringLiteral("E") : QStringLiteral("T"),
                tach || encoder);

    UsePen(painter, tach || encoder ? ink.accent : ink.faint, tach || encoder ? 2.5 : 1.2);
    painter.drawPolyline(QPolygonF{{148, 136}, {148, 64}, {92, 64}});
    if (tach || encoder)
        DrawArrow(painter, {112, 64}, {80, 64});
    if (encoder) {
        UsePen(painter, ink.accent, 1.8);
        painter.drawPolyline(QPolygonF{{158, 110},
                                       {158, 98},
                                       {166, 98},
                                       {166, 110},
                                       {174, 110},
                                       {174, 98},
                                       {182, 98},
                                       {182, 110},
                                       {190, 110}});
    }

    painter.setPen(ink.line);
    DrawCaption(painter, {110, 206}, QStringLiteral("Control Board"), 11);
    const QRectF board(12, 218, 196, 96);
    UseShape(painter, tach ? ink.line : ink.faint, ink.ground, 1.4);
    painter.drawRoundedRect(board, 6, 6);
    DrawJumper(painter, ink, {21, 236}, QStringLiteral("J5"), jumpers.j5, tach);
    DrawJumper(painter, ink, {83, 236}, QStringLiteral("J6"), jumpers.j6, tach);
    DrawJumper(painter, ink, {145, 236}, QStringLiteral("J7"), jumpers.j7, tach);
}

void DrawMaxSpeed(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    // A dial from full reverse, or standstill where the drive has no reverse, to full forward on the right.
    const bool regenerative = setup.Table().IsRegenerative();
    const auto angleOf = [&](double share) { return regenerative ? 90 - share * 110 : 200 - share * 220; };
    const QPointF centre(110, 190);
    constexpr qreal radius = 82;
    const QRectF circle(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    UsePen(painter, ink.faint, 10);
    painter.drawArc(circle, 200 * 16, -220 * 16);

    const double rated = ParseNumber(setup.Text(Entry::RatedSpeed)).value_or(0);
    const auto share = [&](Entry entry) {
        const double speed = ParseNumber(setup.Text(entry)).value_or(0);
        return rated > 0 ? std::clamp(speed / rated, -1.0, 1.0) : 0.0;
    };
    const double forward = share(Entry::ForwardMaxSpeed);
    const double reverse = regenerative ? share(Entry::ReverseMaxSpeed) : 0.0;
    UsePen(painter, ink.accent, 10);
    painter.drawArc(circle, int(angleOf(reverse) * 16), int((angleOf(forward) - angleOf(reverse)) * 16));

    UsePen(painter, ink.line, 1.4);
    for (int mark = -4; mark <= 4; ++mark) {
        const double angle = (90 - mark * 27.5) * M_PI / 180;
        const QPointF along(std::cos(angle), -std::sin(angle));
        painter.drawLine(centre + along * (radius - 12), centre + along * (radius - 20));
    }
    const double angle = angleOf(forward) * M_PI / 180;
    UsePen(painter, ink.line, 3);
    painter.drawLine(centre, centre + QPointF(std::cos(angle), -std::sin(angle)) * (radius - 24));
    painter.setBrush(ink.line);
    painter.drawEllipse(centre, 5, 5);
    if (regenerative) {
        DrawCaption(painter, {50, 248}, QStringLiteral("Reverse"), 11);
        DrawCaption(painter, {50, 266}, OrDash(setup.Text(Entry::ReverseMaxSpeed)), 13, true);
    }
    DrawCaption(painter, {170, 248}, QStringLiteral("Forward"), 11);
    DrawCaption(painter, {170, 266}, OrDash(setup.Text(Entry::ForwardMaxSpeed)), 13, true);
    DrawCaption(painter, {110, 286}, QStringLiteral("RPM"), 11);
}

void DrawReferences(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    // Four references at the contacts of the switch that the two digital inputs turn.
    const QString texts[] = {QStringLiteral("Analog In 1"), setup.Text(Entry::Ref1), setup.Text(Entry::Ref2),
                             setup.Text(Entry::Ref3)};
    for (int i = 0; i < 4; ++i) {
        const qreal y = 90 + i * 44;
        const QRectF box(12, y - 13, 84, 26);
        UseShape(painter, ink.line, i == 0 ? ink.accent : ink.body);
        painter.drawRoundedRect(box, 3, 3);
        painter.setPen(i == 0 ? ink.onAccent : ink.line);
        DrawCaption(painter, box.center(), texts[i] + (i == 0 ? QString() : QStringLiteral(" %")), 11);
        UsePen(painter, i == 0 ? ink.accent : ink.line, i == 0 ? 2.5 : 1.6);
        painter.drawLine(QPointF(96, y), QPointF(126, y));
        painter.setBrush(ink.ground);
        painter.drawEllipse(QPointF(130, y), 4, 4);
    }
    UsePen(painter, ink.accent, 3);
    painter.drawLine(QPointF(168, 156), QPointF(134, 93));
    painter.setBrush(ink.ground);
    painter.drawEllipse(QPointF(168, 156), 4, 4);
    DrawArrow(painter, {172, 156}, {208, 156});
    UsePen(painter, ink.line, 1.4);
    painter.setPen(QPen(ink.line, 1.2, Qt::DashLine));
    painter.drawLine(QPointF(151, 130), QPointF(151, 262));
    painter.setPen(ink.line);
    DrawCaption(painter, {151, 276}, QStringLiteral("Digital In 5, 6"), 11);
}

namespace
{

// A push button or a maintained switch in a wire that runs down the canvas.
void DrawContact(QPainter &painter, const Ink &ink, qreal x, qreal y, bool opensWhenPressed, bool isButton)
{
    UseShape(painter, ink.line, ink.ground, 1.6);
    painter.drawEllipse(QPointF(x, y), 3.5, 3.5);
    painter.drawEllipse(QPointF(x, y + 34), 3.5, 3.5);
    UsePen(painter, ink.accent, 3);
    const qreal side = opensWhenPressed ? 4 : 14;
    painter.drawLine(QPointF(x, y + 34), QPointF(x - side, y + 2));
    if (isButton) {
        painter.drawLine(QPointF(x - side / 2 - 3, y + 18), QPointF(x - 26, y + 18));
        painter.drawLine(QPointF(x - 26, y + 8), QPointF(x - 26, y + 28));
    }
}

void DrawInputTerminal(QPainter &painter, const Ink &ink, QPointF centre, const QString &text)
{
    UseShape(painter, ink.line, ink.body, 1.6);
    painter.drawRect(QRectF(centre.x() - 16, centre.y() - 13, 32, 26));
    painter.drawEllipse(centre, 8, 8);
    painter.drawLine(centre - QPointF(5, 5), centre + QPointF(5, 5));
    DrawCaption(painter, centre + QPointF(0, 24), text, 11);
}

} // namespace

void DrawStartStop(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    const bool twoWire = setup.startStopLogic == TwoWire;
    UsePen(painter, ink.line, 1.8);
    painter.drawLine(QPointF(40, 84), QPointF(190, 84));
    DrawCaption(painter, {110, 68}, QStringLiteral("Common"), 11);
    struct Wire {
        qreal x;
        const char *caption;
        const char *terminal;
        bool opens;
        bool button;
    };
    static constexpr Wire twoWires[] = {{110, "Start/Stop", "DI 1", false, false}};
    static constexpr Wire threeWires[] = {{75, "Start", "DI 1", false, true},
                                          {160, "Stop", "DI 2", true, true}};
    const std::span<const Wire> wires = twoWire ? std::span<const Wire>(twoWires) : threeWires;
    for (const Wire &wire : wires) {
        UsePen(painter, ink.line, 1.8);
        painter.drawLine(QPointF(wire.x, 84), QPointF(wire.x, 130));
        painter.drawLine(QPointF(wire.x, 164), QPointF(wire.x, 232));
        DrawContact(painter, ink, wire.x, 130, wire.opens, wire.button);
        painter.setPen(ink.line);
        DrawCaptionRight(painter, {wire.x + 8, 147}, QString::fromLatin1(wire.caption), 12);
        UsePen(painter, ink.line, 1.8);
        DrawInputTerminal(painter, ink, {wire.x, 245}, QString::fromLatin1(wire.terminal));
    }
    painter.setPen(ink.line);
    DrawCaption(painter, {110, 305}, twoWire ? QStringLiteral("2 Wire") : QStringLiteral("3 Wire"), 15, true);
}

void DrawCurrentLimits(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    const bool regenerative = setup.Table().IsRegenerative();
    constexpr qreal zero = 180;
    DrawAxes(painter, ink, {20, zero}, {208, zero}, {20, 60});
    if (regenerative) {
        UsePen(painter, ink.line, 1.4);
        painter.drawLine(QPointF(20, zero), QPointF(20, 295));
    }
    painter.setPen(ink.line);
    DrawCaption(painter, {120, 66}, QStringLiteral("Armature Current"), 11);

    const auto level = [&](Entry entry) {
        return zero - std::clamp(ParseNumber(setup.Text(entry)).value_or(0), -200.0, 200.0) * 0.45;
    };
    const qreal top = level(Entry::PositiveLimit);
    const qreal bottom = regenerative ? level(Entry::NegativeLimit) : zero;
    UseShape(painter, Qt::transparent, QColor(ink.accent.red(), ink.accent.green(), ink.accent.blue(), 50));
    painter.drawRect(QRectF(QPointF(20, top), QPointF(200, bottom)));
    UsePen(painter, ink.accent, 3);
    painter.drawLine(QPointF(20, top), QPointF(200, top));
    if (regenerative)
        painter.drawLine(QPointF(20, bottom), QPointF(200, bottom));

    QPainterPath current(QPointF(24, zero));
    for (int x = 24; x <= 198; x += 2) {
        const qreal wanted = zero - 118 * std::sin((x - 24) / 174.0 * 2 * M_PI);
        current.lineTo(x, std::clamp(wanted, std::min(top, bottom), std::max(top, bottom)));
    }
    UsePen(painter, ink.line, 2);
    painter.drawPath(current);
    DrawCaption(painter, {160, top - 12}, setup.Text(Entry::PositiveLimit) + QStringLiteral(" %"), 12, true);
    if (regenerative)
        DrawCaption(painter, {70, bottom + 12}, setup.Text(Entry::NegativeLimit) + QStringLiteral(" %"), 12,
                    true);
}

} // namespace quorvik
