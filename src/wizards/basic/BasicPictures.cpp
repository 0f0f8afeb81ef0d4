#include "wizards/basic/BasicPictures.h"

#include "model/TextTables.h"
#include "platform/Numbers.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

QString OrDash(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("--") : text;
}

} // namespace

PictureFile DriveModelPicture(const BasicSetup &setup)
{
    const std::int32_t code = setup.Table().Value(Param::DriveModel);
    const bool known = code >= 0 && code <= 32;
    return {"drive-model", {}, {{"model", known ? ModelText(code) : QString()}}};
}

PictureFile OperatingModePicture(const BasicSetup &setup)
{
    static constexpr const char *states[] = {"velocity", "crossover", "torque"};
    return {"operating-mode", states[setup.operatingMode]};
}

PictureFile NameplatePicture(const BasicSetup &setup)
{
    const auto text = [&](Entry entry) { return OrDash(setup.Text(entry)); };
    return {"nameplate",
            QByteArray(setup.UsesBaseFieldCurrent() ? "base " : "") +
                (setup.UsesTopFieldCurrent() ? "top" : ""),
            {{"amps", text(Entry::ArmatureCurrent)},
             {"volts", text(Entry::ArmatureVoltage)},
             {"speed", text(Entry::RatedSpeed)},
             {"base", text(Entry::BaseFieldCurrent)},
             {"top", text(Entry::TopFieldCurrent)}}};
}

PictureFile FeedbackPicture(const BasicSetup &setup, const TachJumpers &jumpers)
{
    static constexpr const char *states[] = {"none", "armature", "tachometer", "encoder"};
    PictureFile picture{"feedback", states[setup.feedback - NoFeedback]};
    const std::pair<const char *, int> shown[] = {{"j5", jumpers.j5}, {"j6", jumpers.j6}, {"j7", jumpers.j7}};
    for (const auto &[name, value] : shown) {
        const bool active = setup.feedback == TachometerFeedback;
        picture.texts[name] = active ? QString::number(value) : QStringLiteral("--");
        if (active && value != 0)
            picture.states += QByteArray(" ") + name;
    }
    return picture;
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

PictureFile ReferencesPicture(const BasicSetup &setup)
{
    return {"references",
            {},
            {{"ref1", setup.Text(Entry::Ref1)},
             {"ref2", setup.Text(Entry::Ref2)},
             {"ref3", setup.Text(Entry::Ref3)}}};
}

PictureFile StartStopPicture(const BasicSetup &setup)
{
    return {"start-stop", setup.startStopLogic == TwoWire ? "two-wire" : "three-wire"};
}

void DrawCurrentLimits(QPainter &painter, const Ink &ink, const BasicSetup &setup)
{
    const bool regenerative = setup.Table().IsRegenerative();
    constexpr qreal zero = 180;
    UsePen(painter, ink.line, 1.4);
    DrawArrow(painter, {20, zero}, {208, zero});
    DrawArrow(painter, {20, zero}, {20, 60});
    if (regenerative)
        painter.drawLine(QPointF(20, zero), QPointF(20, 295));
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
