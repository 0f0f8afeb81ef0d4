#include "wizards/basic/BasicPictures.h"

#include "model/TextTables.h"
#include "platform/Numbers.h"

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

QString Number(double value)
{
    return QString::number(value, 'f', 2);
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

PictureFile MaxSpeedPicture(const BasicSetup &setup)
{
    // The needle stands upright in the middle of an arc of 220 degrees, which begins at full reverse, or at
    // standstill where the drive has no reverse.
    const bool regenerative = setup.Table().IsRegenerative();
    const double rated = ParseNumber(setup.Text(Entry::RatedSpeed)).value_or(0);
    const auto turnFor = [&](Entry entry) {
        const double speed = ParseNumber(setup.Text(entry)).value_or(0);
        const double share = rated > 0 ? std::clamp(speed / rated, regenerative ? -1.0 : 0.0, 1.0) : 0.0;
        return regenerative ? share * 110 : share * 220 - 110;
    };
    const double forward = turnFor(Entry::ForwardMaxSpeed);
    const double reverse = regenerative ? turnFor(Entry::ReverseMaxSpeed) : -110;
    constexpr double unitsPerDegree = 82 * M_PI / 180;
    return {"max-speed",
            regenerative ? "regenerative" : "",
            {{"start", Number((std::min(forward, reverse) + 110) * unitsPerDegree)},
             {"length", Number(std::abs(forward - reverse) * unitsPerDegree)},
             {"turn", Number(forward)},
             {"forward", OrDash(setup.Text(Entry::ForwardMaxSpeed))},
             {"reverse", OrDash(setup.Text(Entry::ReverseMaxSpeed))}}};
}

PictureFile ReferencesPicture(const BasicSetup &setup)
{
    return {"references",
            {},
            {{"ref1", setup.Text(Entry::Ref1)},
             {"ref2", setup.Text(Entry::Ref2)},
             {"ref3", setup.Text(Entry::Ref3)}}};
}

PictureFile SpeedProfilePicture(bool withReverse)
{
    return {"speed-profile", withReverse ? "reverse" : ""};
}

PictureFile StartStopPicture(const BasicSetup &setup)
{
    return {"start-stop", setup.startStopLogic == TwoWire ? "two-wire" : "three-wire"};
}

PictureFile CurrentLimitsPicture(const BasicSetup &setup)
{
    const bool regenerative = setup.Table().IsRegenerative();
    constexpr double zero = 180;
    const auto level = [&](Entry entry) {
        return zero - std::clamp(ParseNumber(setup.Text(entry)).value_or(0), -200.0, 200.0) * 0.45;
    };
    const double top = level(Entry::PositiveLimit);
    const double bottom = regenerative ? level(Entry::NegativeLimit) : zero;
    QString current;
    for (int x = 24; x <= 198; x += 2) {
        const double wanted = zero - 118 * std::sin((x - 24) / 174.0 * 2 * M_PI);
        current += QStringLiteral("%1,%2 ").arg(x).arg(
            std::clamp(wanted, std::min(top, bottom), std::max(top, bottom)));
    }
    return {"current-limits",
            regenerative ? "regenerative" : "",
            {{"top", Number(top)},
             {"bottom", Number(bottom)},
             {"current", current},
             {"positive", setup.Text(Entry::PositiveLimit)},
             {"negative", setup.Text(Entry::NegativeLimit)}}};
}

} // namespace quorvik
